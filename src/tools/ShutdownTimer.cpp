#include "tools/ShutdownTimer.h"

#include <cctype>

#include "platform/Runtime.h"

namespace tamrix {

namespace {

constexpr std::uint32_t kEwxLogoff = 0, kEwxShutdown = 1, kEwxReboot = 2;
constexpr int kBackspace = 8;

// The number that the leading digits of a text make; text with none counts 0.
double LeadingDigits(const std::string& text) {
  double value = 0;
  for (char c : text) {
    if (!std::isdigit(static_cast<unsigned char>(c))) break;
    value = value * 10 + (c - '0');
  }
  return value;
}

Design Choice(const char* name, const char* caption, int top) {
  return {.name = name, .caption = caption, .rect = {120, top, 5655, 300}, .font = {"Verdana", 9.75},
          .backColor = colors::ButtonFace};
}

Design Unit(const char* name, const char* caption, int left) {
  return {.name = name, .caption = caption, .rect = {left, 345, 855, 210}, .backColor = colors::ButtonFace,
          .alignment = 2, .wordWrap = false};
}

Design Digits(const char* name, int left) {
  return {.name = name, .caption = "00", .rect = {left, 570, 855, 315}};
}

}  // namespace

ShutdownTimerPage::ShutdownTimerPage(Form& form, Platform& platform, Timer& timer, std::int16_t& secondesRestantes)
    : p_(platform),
      Timer_(timer),
      SecondesRestantes(secondesRestantes),
      TamrixFrm6(&form, {.name = "TamrixFrm6", .caption = "Tamrix ShutDown Pc :", .rect = {60, 60, 6165, 5610},
                         .backColor = colors::ButtonFace}),
      TamrixFrm8(&TamrixFrm6, {.name = "TamrixFrm8", .caption = "Reglez la minutrie :", .rect = {120, 360, 5925, 1230},
                               .backColor = colors::ButtonFace}),
      Label3(&TamrixFrm8, Unit("Label3", "Heures", 120)),
      Label4(&TamrixFrm8, Unit("Label4", "Minutes", 1095)),
      Label5(&TamrixFrm8, Unit("Label5", "Secondes", 2070)),
      hr(&TamrixFrm8, Digits("hr", 120)),
      min(&TamrixFrm8, Digits("min", 1095)),
      sec(&TamrixFrm8, Digits("sec", 2070)),
      option1(&TamrixFrm8, {.name = "option1", .caption = "&Lancez", .rect = {3045, 540, 1455, 375},
                            .picture = "apply", .centerPicture = false}),
      pbtime(&TamrixFrm8, {.name = "pbtime", .rect = {4815, 345, 735, 735}, .font = {"Arial", 8.25},
                           .progressType = 1, .direction = 4}),
      TamrixFrm7(&TamrixFrm6, {.name = "TamrixFrm7", .caption = "Selectionnez une action :",
                               .rect = {120, 1710, 5925, 1995}, .backColor = colors::ButtonFace}),
      TamrixOpButton1(&TamrixFrm7, Choice("TamrixOpButton1", "&Eteindre l'ordinateur ", 390)),
      TamrixOpButton2(&TamrixFrm7, Choice("TamrixOpButton2", "&Redémarrer l'ordinateur", 750)),
      TamrixOpButton3(&TamrixFrm7, Choice("TamrixOpButton3", "&Eteindre l'ordinateur (Power-Management)", 1110)),
      TamrixCB1(&TamrixFrm7, {.name = "TamrixCB1", .caption = "Forcez les applications qui ne répond pas",
                              .rect = {120, 1530, 5655, 300}, .backColor = colors::ButtonFace}),
      TamrixCmd7(&TamrixFrm6, {.name = "TamrixCmd7", .caption = " &Réduire", .rect = {3030, 5025, 1455, 420},
                               .font = {"Verdana", 9}, .picture = "minimise", .centerPicture = false}),
      btn0(&TamrixFrm6, {.name = "btn(0)", .caption = "&Quitter", .rect = {4590, 5025, 1455, 420},
                         .font = {"Verdana", 9}, .picture = "quit", .centerPicture = false}) {
  for (TextBox* box : {&hr, &min, &sec}) {
    box->OnKeyPress = [this](int& keyAscii) { DigitsOnly(keyAscii); };
    box->OnChange = [box] { EmptyIsZero(*box); };
  }
  option1.OnClick = [this] { Lancez(); };
  Timer_.OnTimer = [this] { TimerTick(); };
}

// Digits and the backspace pass; anything else is swallowed with the system beep.
void ShutdownTimerPage::DigitsOnly(int& keyAscii) {
  if ((keyAscii >= '0' && keyAscii <= '9') || keyAscii == kBackspace) return;
  keyAscii = 0;
  p_.Beep();
}

void ShutdownTimerPage::EmptyIsZero(TextBox& box) {
  if (box.Text().empty()) box.SetText("00");
}

// Each step is held in 16 bits: a total beyond 9:06:07 is the runtime's overflow, and nothing
// here catches it. Minutes and seconds aren't limited to 59.
void ShutdownTimerPage::Lancez() {
  SecondesRestantes = rt::ToInt16(LeadingDigits(sec.Text()));
  SecondesRestantes = rt::ToInt16(LeadingDigits(min.Text()) * 60 + SecondesRestantes);
  SecondesRestantes = rt::ToInt16(LeadingDigits(hr.Text()) * 3600 + SecondesRestantes);
  Timer_.SetEnabled(true);
  pbtime.SetValue(0);
  pbtime.Tag = rt::IntToText(SecondesRestantes);
  pbtime.SetVisible(true);
}

// The timer isn't stopped at zero: if the machine keeps running, the action is asked for again
// every second, with a count that goes negative (and wraps from -32768 to 32767, unchecked).
void ShutdownTimerPage::TimerTick() {
  SecondesRestantes = static_cast<std::int16_t>(static_cast<std::uint16_t>(SecondesRestantes) - 1u);
  const double total = rt::TextToDouble(pbtime.Tag, p_.DecimalSign());
  // A total of 0 divides by zero in floating point, without a trap: the bar gets -infinity.
  pbtime.SetValue(SecondesRestantes / total * 100);
  if (SecondesRestantes >= 1) return;
  if (TamrixOpButton1.Value() == 1) p_.ExitWindowsEx(kEwxShutdown, 0);
  if (TamrixOpButton2.Value() == 1) p_.ExitWindowsEx(kEwxReboot, 0);
  // The restart choice is tested a second time here, so it logs off right behind the restart,
  // and the power-management choice calls nothing.
  if (TamrixOpButton2.Value() == 1) p_.ExitWindowsEx(kEwxLogoff, 0);
}

}  // namespace tamrix
