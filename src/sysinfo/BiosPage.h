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
  TextBox Text1;
  ListBox List1;  // takes Text1's place for the list of technologies
  Image Image5;
  TamrixCmd TamrixCmd9;
  TamrixCmd TamrixCmd10;
  Image Image6;
};

}  // namespace tamrix
