// The Windows page (Frame1): the Windows optimiser, the three shell toggles, the buttons that
// open the tools window, and the virtual drives.
#pragma once

#include "platform/Platform.h"
#include "shell/Controls.h"

namespace tamrix {

class WindowsPage {
 public:
  WindowsPage(Control& form, Platform& platform);

  // The entry of "&Windows": loads the three ticks from config.dll.
  void LoadTicks();

 private:
  Platform& p_;

 public:
  TamrixFrm Frame1;
};

}  // namespace tamrix
