#include "optimisers/InternetPage.h"

namespace tamrix {

InternetPage::InternetPage(Form& form, Platform& platform, Timer& timer)
    : form_(form),
      p_(platform),
      Timer3(timer),
      Frame2(&form, {.name = "Frame2", .caption = " Internet ", .rect = {360, 1560, 7215, 3735}}),
      TamrixFrm5(&Frame2, {.name = "TamrixFrm5", .caption = "Type de connection :", .rect = {120, 330, 3375, 1335}}),
      Adsl1(&TamrixFrm5, {.name = "Adsl1", .caption = "ADSL ou Cable ( Haut débit ..)", .rect = {150, 330, 3135, 285}}),
      Modem1(&TamrixFrm5, {.name = "Modem1", .caption = "Modem", .rect = {150, 630, 3135, 285}}, true),
      Lan1(&TamrixFrm5, {.name = "Lan1", .caption = "Réseaux local (Lan)", .rect = {150, 930, 3135, 285}}) {}

void InternetPage::Timer3Tick() {}

}  // namespace tamrix
