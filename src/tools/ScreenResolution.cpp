#include "tools/ScreenResolution.h"

#include "platform/Runtime.h"

namespace tamrix {

namespace {

constexpr int kBitsPixel = 12;
constexpr std::uint32_t kDmBitsPelsWidthHeight = 1835008;  // DM_BITSPERPEL | DM_PELSWIDTH | DM_PELSHEIGHT
constexpr std::uint32_t kCdsUpdateRegistry = 1;
constexpr long kDispChangeSuccessful = 0, kDispChangeRestart = 1;
constexpr std::uint32_t kEwxReboot = 2;
constexpr std::int32_t kFirstUpperBound = 8, kGrowth = 8;

}  // namespace

ScreenResolutionPage::ScreenResolutionPage(Form& form, Platform& platform, std::vector<DevMode>& modesEcran,
                                           std::int32_t& indexMode)
    : form_(form),
      p_(platform),
      ModesEcran(modesEcran),
      IndexMode(indexMode),
      TamrixFrm5(&form, {.name = "TamrixFrm5", .caption = "Tamrix Résolution :", .rect = {60, 60, 6165, 5610},
                         .backColor = colors::ButtonFace}),
      Label6(&TamrixFrm5, {.name = "Label6", .caption = "La liste des résolution supportées par votre Système :",
                           .rect = {120, 375, 5925, 210}, .backColor = colors::ButtonFace, .wordWrap = false}),
      List1(&TamrixFrm5, {.name = "List1", .rect = {120, 660, 5925, 4185}}),
      Command1(&TamrixFrm5, {.name = "Command1", .caption = "&Changer", .rect = {3030, 5025, 1455, 420},
                             .picture = "apply", .centerPicture = false}),
      TamrixCmd6(&TamrixFrm5, {.name = "TamrixCmd6", .caption = "&Annuler", .rect = {4590, 5025, 1455, 420},
                               .picture = "quit", .centerPicture = false}) {
  Command1.OnClick = [this] { Changer(); };
}

std::string ScreenResolutionPage::EntryText(const DevMode& mode) {
  return std::to_string(mode.dmPelsWidth) + "x" + std::to_string(mode.dmPelsHeight) + "x" +
         std::to_string(mode.dmBitsPerPel);
}

// Nothing is filtered or sorted: modes that differ only in their refresh rate stand as entries
// of the same text, and the last entry that matches the current display is the one left marked.
void ScreenResolutionPage::FillModes() {
  const auto bits = static_cast<std::uint32_t>(p_.GetDeviceCaps(form_.hWnd, kBitsPixel));
  const Platform::ScreenTwips screen = p_.GetScreenTwips();
  const auto width = static_cast<std::uint32_t>(screen.width / screen.twipsPerPixelX);
  const auto height = static_cast<std::uint32_t>(screen.height / screen.twipsPerPixelY);

  std::int32_t capacity = kFirstUpperBound;
  ModesEcran.assign(static_cast<std::size_t>(capacity) + 1, DevMode{});
  IndexMode = 0;
  bool more = p_.EnumDisplaySettingsA(0, &ModesEcran[0]);
  while (more) {
    const DevMode& mode = ModesEcran[static_cast<std::size_t>(IndexMode)];
    List1.AddItem(EntryText(mode));
    if (mode.dmBitsPerPel == bits && mode.dmPelsWidth == width && mode.dmPelsHeight == height)
      List1.SetListIndex(List1.ListCount() - 1);
    ++IndexMode;
    if (IndexMode > capacity) {
      capacity += kGrowth;
      ModesEcran.resize(static_cast<std::size_t>(capacity) + 1);  // the records read so far are kept
    }
    more = p_.EnumDisplaySettingsA(static_cast<std::uint32_t>(IndexMode),
                                   &ModesEcran[static_cast<std::size_t>(IndexMode)]);
  }
  --IndexMode;
}

void ScreenResolutionPage::Changer() {
  const int i = List1.ListIndex();
  // With nothing selected there is no record to apply: the click is ignored.
  if (i < 0 || static_cast<std::size_t>(i) >= ModesEcran.size()) return;
  DevMode& mode = ModesEcran[static_cast<std::size_t>(i)];
  mode.dmFields = kDmBitsPelsWidthHeight;  // the refresh rate isn't asked for
  const long r = p_.ChangeDisplaySettingsA(mode, kCdsUpdateRegistry);
  if (r == kDispChangeSuccessful) return;
  if (r == kDispChangeRestart) {
    if (p_.MessageBoxA("Ces changements ne seront effectuées qu'après redémarrage.  Redémarrer maintenant?", mb::YesNo,
                       rt::kAppTitle) == mb::IdYes)
      p_.ExitWindowsEx(kEwxReboot, 0);
    return;
  }
  p_.MessageBoxA("Erreur de changement de résolution!" + rt::IntToText(r), mb::Ok | mb::Information, " Tamrix Resolution");
}

}  // namespace tamrix
