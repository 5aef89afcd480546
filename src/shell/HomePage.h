// The home page (Frame4): the introduction, the live memory monitor, the clock and the download
// offer.
#pragma once

#include "platform/Platform.h"
#include "shell/Controls.h"

namespace tamrix {

class HomePage {
 public:
  HomePage(Control& form, Platform& platform);

 private:
  Platform& p_;

 public:
  TamrixFrm Frame4;
};

}  // namespace tamrix
