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
  Label lblMxList;
  ComboBox cbMixerList;
  Frame framDestInfo;
  Label Label23;
  ComboBox cbDstLineList;
  ListBox lstDstLineInfo;
  Frame framSrcInfo;
  Label Label24;
  ComboBox cbSrcLineList;
  ListBox lstSrcLineInfo;
};

}  // namespace tamrix
