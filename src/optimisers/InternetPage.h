// The Internet page (Frame2): connection type and speed, and the Internet optimiser.
#pragma once

#include "platform/Platform.h"
#include "shell/Controls.h"

namespace tamrix {

class InternetPage {
 public:
  InternetPage(Control& form, Platform& platform);

 private:
  Platform& p_;

 public:
  TamrixFrm Frame2;
  TamrixFrm TamrixFrm5;
  OptionButton Adsl1;
  OptionButton Modem1;
  OptionButton Lan1;
};

}  // namespace tamrix
