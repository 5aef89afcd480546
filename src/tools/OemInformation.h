// The OEM information page (TamrixFrm2): its frame and its two buttons. What the page writes
// comes with the page itself.
#pragma once

#include "shell/Controls.h"

namespace tamrix {

class OemInformationPage {
 public:
  explicit OemInformationPage(Form& form)
      : TamrixFrm2(&form, {.name = "TamrixFrm2", .caption = "Tamrix Information OEM :", .rect = {60, 60, 6165, 5610},
                           .backColor = colors::ButtonFace}),
        TamrixCmd4(&TamrixFrm2, {.name = "TamrixCmd4", .caption = "&Appliquer", .rect = {3030, 5025, 1455, 420},
                                 .picture = "apply", .centerPicture = false}),
        TamrixCmd5(&TamrixFrm2, {.name = "TamrixCmd5", .caption = "&Annuler", .rect = {4590, 5025, 1455, 420},
                                 .picture = "quit", .centerPicture = false}) {}

  TamrixFrm TamrixFrm2;
  TamrixCmd TamrixCmd4;  // "&Appliquer"
  TamrixCmd TamrixCmd5;  // "&Annuler"
};

}  // namespace tamrix
