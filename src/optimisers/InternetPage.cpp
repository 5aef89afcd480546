#include "optimisers/InternetPage.h"

namespace tamrix {

namespace {

// The leading blanks indent the first line.
// Kept whole on one line, so that the words can be searched for as the page shows them.
// clang-format off
constexpr const char* kLabel12 = "                    Avec Tamrix Utility Internet, vous pouvez optimiser la configuration de Winodws pour Internet ou pour votre Réseau ... Pour une performance qui peut atteindre 150 % dans certains PC quelque soit le type du materiels ..";
// clang-format on

// Rows of options inside their panels, in twips.
constexpr int kOptionLeft = 150, kOptionTop = 345;

Design Connection(const char* name, const char* caption, int row) {
  return {.name = name, .caption = caption, .rect = {kOptionLeft, kOptionTop + row * 270, 3120, 270}};
}

Design Speed(const char* name, const char* caption, int row) {
  return {.name = name, .caption = caption, .rect = {kOptionLeft, kOptionTop + row * 255, 3195, 255},
          .backColor = colors::Beige};
}

}  // namespace

const std::array<TamrixOpButton InternetPage::*, 6> InternetPage::kSpeedButtons = {
    &InternetPage::r33, &InternetPage::r56, &InternetPage::r64, &InternetPage::r128, &InternetPage::r512,
    &InternetPage::r1024};

InternetPage::InternetPage(Form& form, Platform& platform, Timer& timer)
    : form_(form),
      p_(platform),
      Timer3(timer),
      Frame2(&form, {.name = "Frame2", .caption = " Internet ", .rect = {360, 1560, 7215, 3735}}),
      Label12(&Frame2, {.name = "Label12", .caption = kLabel12, .rect = {150, 360, 6930, 780}, .backColor = colors::Beige,
                        .backStyle = 0}),
      TamrixFrm5(&Frame2, {.name = "TamrixFrm5", .caption = "Type de connection :", .rect = {120, 1185, 3390, 1215}}),
      Adsl1(&TamrixFrm5, Connection("Adsl1", "ADSL ou Cable ( Haut débit ..)", 0)),
      Modem1(&TamrixFrm5, Connection("Modem1", "Modem", 1), true),
      Lan1(&TamrixFrm5, Connection("Lan1", "Réseaux local (Lan)", 2)),
      TamrixFrm4(&Frame2, {.name = "TamrixFrm4", .caption = "Votre vitesse de connexion",
                           .rect = {3600, 1185, 3495, 1920}}),
      r33(&TamrixFrm4, Speed("r33", "33,6 kbps (RTC)", 0)),
      r56(&TamrixFrm4, Speed("r56", "56  kbps (RTC)", 1), 1),
      r64(&TamrixFrm4, Speed("r64", "64 kbps (ISDN)", 2)),
      r128(&TamrixFrm4, Speed("r128", "128  kbps (ISDN ou cable)", 3)),
      r512(&TamrixFrm4, Speed("r512", "512 kbps (ADSL ou cable)", 4)),
      r1024(&TamrixFrm4, Speed("r1024", "1 024 kbps (ADSL ou cable)", 5)),
      Command1(&Frame2, {.name = "Command1", .caption = "Optimisez Votre Connexion Internet",
                         .rect = {120, 2475, 3390, 630}}),
      Label2(&Frame2, {.name = "Label2", .rect = {150, 3150, 4500, 210}, .backColor = colors::Beige, .visible = false,
                       .backStyle = 0, .wordWrap = false}),
      Bar1(&Frame2, {.name = "Bar1", .rect = {120, 3390, 3735, 255}, .visible = false, .barColor = colors::Green,
                     .showCaption = false}),
      show_(platform, Bar1, Label2, Timer3, form_) {
  // The connection type only switches the speed panel; the speed buttons keep their state, and
  // a disabled panel doesn't stop the click from reading them.
  Adsl1.OnClick = [this] {
    if (Adsl1.Value()) TamrixFrm4.SetEnabled(true);
  };
  Modem1.OnClick = [this] {
    if (Modem1.Value()) TamrixFrm4.SetEnabled(true);
  };
  Lan1.OnClick = [this] {
    if (Lan1.Value()) TamrixFrm4.SetEnabled(false);
  };
  Command1.OnClick = [this] { Optimise(); };
}

void InternetPage::Optimise() {
  InternetOptimiser::Choice choice;
  choice.speedValue = [this](std::string_view button) -> double {
    for (std::size_t i = 0; i < kSpeedButtons.size(); ++i)
      if (InternetOptimiser::kSpeeds[i].button == button) return (this->*kSpeedButtons[i]).Value();
    return 0;
  };
  choice.lan = Lan1.Value();
  choice.modem = Modem1.Value();
  choice.adsl = Adsl1.Value();
  InternetOptimiser::Apply(choice, p_.BooleanText(true), catalogue::RegistryWriter(p_));
  show_.Start();
}

void InternetPage::Timer3Tick() { show_.Tick(); }

}  // namespace tamrix
