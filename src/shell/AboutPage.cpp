#include "shell/AboutPage.h"

namespace tamrix {

AboutPage::AboutPage(Control& form) : Propos(&form, {.name = "Propos", .rect = {240, 1440, 7335, 3975}}) {}

void AboutPage::SetText() {}

void AboutPage::SetScrollRange() {}

}  // namespace tamrix
