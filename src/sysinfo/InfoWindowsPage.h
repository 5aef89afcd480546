// The Windows sub-page of Test Lab (fwindows): the system's facts from the registry, by OS family.
#pragma once

#include "platform/Platform.h"
#include "shell/Controls.h"

namespace tamrix {

class InfoWindowsPage {
 public:
  InfoWindowsPage(Control& testLab, Platform& platform);

  // Fills the page; run on every entry to Test Lab and from "Info Windows".
  void InfoWindows();

 private:
  Platform& p_;

 public:
  TamrixFrm fwindows;
};

}  // namespace tamrix
