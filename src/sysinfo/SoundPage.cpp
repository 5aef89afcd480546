#include "sysinfo/SoundPage.h"

namespace tamrix {

SoundPage::SoundPage(Control& testLab, Platform& platform)
    : p_(platform), Frmson(&testLab, {.name = "Frmson", .caption = "Information sur le materiel de son :", .rect = {120, 240, 7215, 3255}}) {}

}  // namespace tamrix
