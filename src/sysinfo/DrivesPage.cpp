#include "sysinfo/DrivesPage.h"

namespace tamrix {

DrivesPage::DrivesPage(Control& testLab, Platform& platform)
    : p_(platform), disque(&testLab, {.name = "disque", .caption = "Information sur vos disques :", .rect = {240, 360, 6975, 3135}}) {}

void DrivesPage::InfoLecteur() {}

}  // namespace tamrix
