#include "sysinfo/InfoPcPage.h"

namespace tamrix {

InfoPcPage::InfoPcPage(Control& testLab, Platform& platform)
    : p_(platform), pc(&testLab, {.name = "pc", .caption = "Information sur votre PC :", .rect = {240, 360, 6975, 3135}}) {}

void InfoPcPage::InfoPc() {}

}  // namespace tamrix
