#include "optimisers/WindowsPage.h"

namespace tamrix {

WindowsPage::WindowsPage(Control& form, Platform& platform)
    : p_(platform), Frame1(&form, {.name = "Frame1", .caption = " Windows ", .rect = {285, 1440, 7350, 4005}}) {}

void WindowsPage::LoadTicks() {}

}  // namespace tamrix
