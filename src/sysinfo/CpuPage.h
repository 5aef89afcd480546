// The processor sub-page of Test Lab (FrmCpu): the processor's facts and the CPU test.
#pragma once

#include "platform/Platform.h"
#include "shell/Controls.h"

namespace tamrix {

class CpuPage {
 public:
  CpuPage(Control& testLab, Platform& platform);

  // Raises the priority, prepares the common controls and fills the processor labels; run from "Test du CPU".
  void FillProcessorLabels();

 private:
  Platform& p_;

 public:
  TamrixFrm FrmCpu;
};

}  // namespace tamrix
