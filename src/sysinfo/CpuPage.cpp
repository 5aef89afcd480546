#include "sysinfo/CpuPage.h"

namespace tamrix {

CpuPage::CpuPage(Control& testLab, Platform& platform)
    : p_(platform), FrmCpu(&testLab, {.name = "FrmCpu", .caption = " Laboratoire de test du processeur :", .rect = {120, 240, 7215, 3255}}) {}

void CpuPage::FillProcessorLabels() {}

}  // namespace tamrix
