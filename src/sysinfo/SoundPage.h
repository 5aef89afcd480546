// The sound sub-page of Test Lab (Frmson): the mixers and their lines, filled at start-up.
#pragma once

#include "platform/Platform.h"
#include "shell/Controls.h"

namespace tamrix {

class SoundPage {
 public:
  SoundPage(Control& testLab, Platform& platform);

 private:
  Platform& p_;

 public:
  TamrixFrm Frmson;
};

}  // namespace tamrix
