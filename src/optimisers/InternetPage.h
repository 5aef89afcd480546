// The Internet page (Frame2): connection type and speed, and the Internet optimiser.
#pragma once

#include "platform/Platform.h"
#include "shell/Controls.h"

namespace tamrix {

class InternetPage {
 public:
  InternetPage(Form& form, Platform& platform, Timer& Timer3);

  // One tick of the Internet optimiser's show.
  void Timer3Tick();

 private:
  Form& form_;
  Platform& p_;
  Timer& Timer3;

 public:
  TamrixFrm Frame2;
  TamrixFrm TamrixFrm5;
  OptionButton Adsl1;
  OptionButton Modem1;
  OptionButton Lan1;
};

}  // namespace tamrix
