// The PC sub-page of Test Lab (pc): the machine's facts from the registry, by OS family.
#pragma once

#include "platform/Platform.h"
#include "shell/Controls.h"

namespace tamrix {

class InfoPcPage {
 public:
  InfoPcPage(Control& testLab, Platform& platform);

  // Fills the page; run from "Info  PC".
  void InfoPc();

 private:
  Platform& p_;

 public:
  TamrixFrm pc;
};

}  // namespace tamrix
