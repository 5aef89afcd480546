#include "optimisers/WindowsPage.h"

namespace tamrix {

WindowsPage::WindowsPage(Form& form, Platform& platform, Timer& timer)
    : form_(form),
      p_(platform),
      Timer4(timer),
      Frame1(&form, {.name = "Frame1", .caption = " Windows ", .rect = {285, 1440, 7350, 4005}}) {}

void WindowsPage::LoadTicks() {}

void WindowsPage::Timer4Tick() {}

}  // namespace tamrix
