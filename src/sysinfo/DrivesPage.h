// The drives sub-page of Test Lab (disque): the selected drive's use and type.
#pragma once

#include "platform/Platform.h"
#include "shell/Controls.h"

namespace tamrix {

class DrivesPage {
 public:
  DrivesPage(Control& testLab, Platform& platform);

  // Reports on the selected drive; run from "Info Lecteurs".
  void InfoLecteur();

 private:
  Platform& p_;

 public:
  TamrixFrm disque;
};

}  // namespace tamrix
