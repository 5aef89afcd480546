// The home page (Frame4): the introduction, the live memory monitor, the clock and the download
// offer.
#pragma once

#include "platform/Platform.h"
#include "shell/Controls.h"

namespace tamrix {

class HomePage {
 public:
  HomePage(Control& form, Platform& platform);

  // The memory monitor, five times a second, and the clock, once a second. Both run on every
  // page, so the labels are fresh whenever the page comes back.
  void Timer1Tick();
  void Timer2Tick();

 private:
  Platform& p_;

 public:
  TamrixFrm Frame4;
  Label Label18;  // the introduction
  Label lcd3, lcd2, lcd1;  // physical memory: total, used, free
  Label Label17;
  TamrixPBar TamrixPBar2;  // the free share of physical memory
  Label l1, l2, l3;  // virtual memory: total, free, used
  Label l4, l5, l6;  // paging file: size, free, loaded
  Label Label19;  // the clock
  Label Label14;  // the download offer
  Image Image1, Image2, Image3;
  Shape Shape8, Shape10, Shape11, Shape12, Shape13;

 private:
  void OfferLibraDownload();
};

}  // namespace tamrix
