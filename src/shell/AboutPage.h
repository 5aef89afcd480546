// The About page (Propos): what the program offers, in one tall label that a scroll bar moves.
#pragma once

#include "shell/Controls.h"

namespace tamrix {

class AboutPage {
 public:
  explicit AboutPage(Control& form);

  // The two steps of "&A propos": the text, then (once the frames are set) the scroll range.
  void SetText();
  void SetScrollRange();

  TamrixFrm Propos;
};

}  // namespace tamrix
