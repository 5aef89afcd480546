// The About page (Propos): what the program offers, in one tall label that a scroll bar moves
// inside the page, under a white header strip.
#pragma once

#include "shell/Controls.h"

namespace tamrix {

class AboutPage {
 public:
  explicit AboutPage(Control& form);

  // The two steps of "&A propos": the text, then, once the frames are set, the scroll range.
  void SetText();
  void SetScrollRange();

  // The label's top for a scroll value: it starts from 460, five twips above its design top, so
  // the first step moves the text by one small step and five twips.
  static constexpr int kTopAtZero = 460;

  TamrixFrm Propos;
  VScrollBar VScroll1;
  PictureBox Picture1;
  Image Image8;
  Label Label21;
  Label Label20;
};

}  // namespace tamrix
