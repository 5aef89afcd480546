// The Windows page (Frame1): the Windows optimiser, the three shell toggles, the buttons that
// open the tools window, and the virtual drives.
#pragma once

#include "platform/Platform.h"
#include "shell/Controls.h"

namespace tamrix {

class WindowsPage {
 public:
  WindowsPage(Form& form, Platform& platform, Timer& Timer4);

  // One tick of the Windows optimiser's show.
  void Timer4Tick();

  // The entry of "&Windows": loads the three ticks from config.dll.
  void LoadTicks();

 private:
  Form& form_;
  Platform& p_;
  Timer& Timer4;

 public:
  TamrixFrm Frame1;
};

}  // namespace tamrix
