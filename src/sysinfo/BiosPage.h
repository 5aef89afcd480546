// The BIOS sub-page of Test Lab (FrmBios): filled by its own buttons from WMI.
#pragma once

#include "platform/Platform.h"
#include "shell/Controls.h"

namespace tamrix {

class BiosPage {
 public:
  BiosPage(Control& testLab, Platform& platform);

 private:
  Platform& p_;

 public:
  TamrixFrm FrmBios;
};

}  // namespace tamrix
