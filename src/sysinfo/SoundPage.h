// The sound sub-page of Test Lab (Frmson): the mixers and their lines. Filled at start-up by the
// mixer slice, then by the cascade of its three drop-down lists: a mixer rewrites everything
// below it, a destination its report and the sources, a source its report.
#pragma once

#include "platform/Platform.h"
#include "platform/Runtime.h"
#include "shell/Controls.h"
#include "sysinfo/CMixer.h"

namespace tamrix {

class SoundPage {
 public:
  SoundPage(Control& testLab, Platform& platform, CMixer& mixer);

  // The mixer slice of the start-up: the hourglass, Create, the list of mixers and the first
  // selection. False when the rest of the start-up must not run.
  bool LoadMixers(Form& form);

 private:
  void MixerListClick();
  void DstLineListClick();
  void SrcLineListClick();
  void ShowDstLineInfo();
  void ShowSrcLineInfo();
  // The box of a pending error: its words, " src: " and where it came from.
  void ShowError(const ErrObject& err);

  Platform& p_;
  CMixer& mixer_;

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
