// The Internet page (Frame2): connection type and speed, and the Internet optimiser.
#pragma once

#include <array>

#include "optimisers/InternetOptimiser.h"
#include "platform/Platform.h"
#include "shell/Controls.h"

namespace tamrix {

class InternetPage {
 public:
  InternetPage(Form& form, Platform& platform, Timer& Timer3);

  // One tick of the Internet optimiser's show.
  void Timer3Tick();

  // The speed buttons, in the order of the speed table.
  static const std::array<TamrixOpButton InternetPage::*, 6> kSpeedButtons;

 private:
  Form& form_;
  Platform& p_;
  Timer& Timer3;

 public:
  TamrixFrm Frame2;
  Label Label12;
  TamrixFrm TamrixFrm5;
  OptionButton Adsl1;
  OptionButton Modem1;
  OptionButton Lan1;
  TamrixFrm TamrixFrm4;
  TamrixOpButton r33, r56, r64, r128, r512, r1024;
  TamrixCmd Command1;
  Label Label2;
  TamrixPBar Bar1;

 private:
  void Optimise();
  InternetOptimiser::Show show_;
};

}  // namespace tamrix
