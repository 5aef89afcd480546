#include "shell/HomePage.h"

namespace tamrix {

HomePage::HomePage(Control& form, Platform& platform)
    : p_(platform), Frame4(&form, {.name = "Frame4", .caption = "  Tamrix Utility  ", .rect = {360, 1505, 7215, 3855}}) {}

void HomePage::Timer1Tick() {}

void HomePage::Timer2Tick() {}

}  // namespace tamrix
