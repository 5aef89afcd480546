#include "sysinfo/InfoWindowsPage.h"

namespace tamrix {

InfoWindowsPage::InfoWindowsPage(Control& testLab, Platform& platform)
    : p_(platform), fwindows(&testLab, {.name = "fwindows", .caption = "Information sur votre Windows :", .rect = {240, 360, 6975, 3135}}) {}

void InfoWindowsPage::InfoWindows() {}

}  // namespace tamrix
