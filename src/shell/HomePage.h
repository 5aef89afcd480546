// The home page (Frame4): the introduction, the live memory monitor, the clock and the download
// offer.
#pragma once

#include "platform/Platform.h"
#include "shell/Controls.h"

namespace tamrix {

class HomePage {
 public:
  HomePage(Control& form, Platform& platform);

  // The memory monitor, five times a second, and the clock, once a second.
  void Timer1Tick();
  void Timer2Tick();

 private:
  Platform& p_;

 public:
  TamrixFrm Frame4;
};

}  // namespace tamrix
