#include "sysinfo/BiosPage.h"

namespace tamrix {

BiosPage::BiosPage(Control& testLab, Platform& platform)
    : p_(platform), FrmBios(&testLab, {.name = "FrmBios", .caption = "Information sur votre BIOS :", .rect = {120, 240, 7215, 3255}}) {}

}  // namespace tamrix
