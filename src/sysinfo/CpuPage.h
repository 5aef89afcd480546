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
  TamrixFrm TamrixFrm1;
  Label lc1, lc2, lc3, lc4, lc5, lc6, lc7, lc8, lc9, lc10;  // the captions beside the values
  Label Cpu1, Cpu2, Cpu3, Cpu4, Cpu5, Cpu6, Cpu7, Cpu8, Cpu9, Cpu10;
  TamrixCmd Test;
  Label Label22;
  // The coloured pictures lie in front of the grey ones of the same rank.
  Image iImage5, iImage6, iImage7, iImage8;
  Image iImage1, iImage2, iImage3, iImage4;
  Label rst;
  Label iLabel1;
};

}  // namespace tamrix
