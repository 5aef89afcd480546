#include "optimisers/WindowsPage.h"

#include "optimisers/ShellToggles.h"
#include "platform/Ini.h"
#include "platform/Runtime.h"

namespace tamrix {

namespace {

// Kept whole on one line, so that the words can be searched for as the page shows them.
// clang-format off
constexpr const char* kLabel1 = "Pour une meilleure performance de Windows Cliquer  sur ( Optimisez Votre Windows ), le Windows sera plus rapide, plus stable... ";
// clang-format on

// Two columns under the optimiser: the drive panels on the left, the tool buttons on the right,
// level with command6 and box8. Twips, relative to Frame1.
constexpr int kLeft = 120, kRight = 4410, kRightW = 2820, kPanelW = 4170;
constexpr int kToolTop = 1710, kToolH = 375, kToolPitch = 450;

Design Tool(const char* name, const char* caption, int row) {
  return {.name = name, .caption = caption, .rect = {kRight, kToolTop + row * kToolPitch, kRightW, kToolH}};
}

Design Box(const char* name, const char* caption, Twips rect) {
  return {.name = name, .caption = caption, .rect = rect, .backColor = colors::Beige, .backStyle = 0};
}

Design Line(const char* name, const char* caption, Twips rect) {
  return {.name = name, .caption = caption, .rect = rect, .backColor = colors::Beige, .backStyle = 0,
          .wordWrap = false};
}

}  // namespace

const std::array<TamrixCB WindowsPage::*, 3> WindowsPage::kToggleBoxes = {
    &WindowsPage::box5, &WindowsPage::box7, &WindowsPage::box8};

WindowsPage::WindowsPage(Form& form, Platform& platform, Timer& timer)
    : form_(form),
      p_(platform),
      Timer4(timer),
      Frame1(&form, {.name = "Frame1", .caption = " Windows ", .rect = {285, 1440, 7350, 4005}}),
      Label1(&Frame1, {.name = "Label1", .caption = kLabel1, .rect = {150, 345, 4140, 585}, .backColor = colors::Beige,
                       .backStyle = 0}),
      command6(&Frame1, {.name = "command6", .caption = "&Optimisez votre windows", .rect = {kRight, 345, kRightW, 585},
                         .picture = "apply", .centerPicture = false, .centerText = false}),
      Label16(&Frame1, {.name = "Label16", .caption = WindowsOptimiser::kFirstCaption, .rect = {150, 990, 5055, 210},
                        .backColor = colors::Beige, .visible = false, .backStyle = 0, .wordWrap = false}),
      TamrixPBar1(&Frame1, {.name = "TamrixPBar1", .rect = {150, 1215, 5055, 135}, .visible = false,
                            .barColor = colors::Green, .showCaption = false}),
      box5(&Frame1, Box("box5", "Visualiser *.bmp", {180, 1410, 1950, 240})),
      box7(&Frame1, Box("box7", "Lecture de DVD", {2280, 1410, 1950, 240})),
      box8(&Frame1, Box("box8", "Activer Ouvrir avec ..", {kRight, 1410, kRightW, 240})),
      TamrixFrm2(&Frame1, {.name = "TamrixFrm2", .caption = "Créer un nouveau lecteur virtuel",
                           .rect = {kLeft, 1710, kPanelW, 1410}}),
      lblLettreDispo0(&TamrixFrm2, Line("lblLettreDispo(0)", "Lettre de lecteur disponibles:", {120, 420, 2580, 210})),
      cmbLecteurDispo0(&TamrixFrm2, {.name = "cmbLecteurDispo(0)", .rect = {2760, 360, 870, 315}}),
      lblGuil(&TamrixFrm2, {.name = "lblGuil", .caption = "\"", .rect = {3720, 420, 150, 210}, .visible = false}),
      lblLettreDispo1(&TamrixFrm2, Line("lblLettreDispo(1)", "Choisir le dossier:", {120, 765, 1560, 210})),
      txtChemLecteur(&TamrixFrm2, {.name = "txtChemLecteur", .rect = {1710, 705, 1920, 300}}),
      cmdCheminVirtuel0(&TamrixFrm2, {.name = "cmdCheminVirtuel(0)", .caption = "...", .rect = {3690, 705, 360, 300}}),
      chkCreerLecteurVirtuel(&TamrixFrm2, Box("chkCreerLecteurVirtuel", "Lecteur permanant", {120, 1065, 2100, 255})),
      cmdCheminVirtuel1(&TamrixFrm2, {.name = "cmdCheminVirtuel(1)", .caption = "&Créer lecteur",
                                      .rect = {2430, 1050, 1620, 300}}),
      TamrixFrm3(&Frame1, {.name = "TamrixFrm3", .caption = "Supprimer un lecteur virtuel",
                           .rect = {kLeft, 3180, kPanelW, 705}}),
      cmbLecteurDispo1(&TamrixFrm3, {.name = "cmbLecteurDispo(1)", .rect = {120, 345, 870, 315}}),
      cmdCheminVirtuel2(&TamrixFrm3, {.name = "cmdCheminVirtuel(2)", .caption = "&Supprimer",
                                      .rect = {1110, 345, 1350, 315}}),
      TamrixCB1(&TamrixFrm3, Box("TamrixCB1", "Démarrage", {2640, 375, 1410, 255})),
      TamrixCmd12(&Frame1, Tool("TamrixCmd12", "&Dossiers spéciales", 0)),
      TamrixCmd5(&Frame1, Tool("TamrixCmd5", "&Personnalisez Dossier", 1)),
      TamrixCmd13(&Frame1, Tool("TamrixCmd13", "&Information OEM", 2)),
      TamrixCmd14(&Frame1, Tool("TamrixCmd14", "&Résolution Ecran", 3)),
      TamrixCmd15(&Frame1, Tool("TamrixCmd15", "&Arrêter le Pc", 4)),
      show_(TamrixPBar1, Label16, Timer4, form_) {
  command6.OnClick = [this] { WindowsOptimiser::Optimise(p_, Timer4); };
  for (std::size_t i = 0; i < kToggleBoxes.size(); ++i) {
    TamrixCB& box = this->*kToggleBoxes[i];
    const ShellToggles::Toggle& toggle = ShellToggles::kToggles[i];
    box.OnClick = [this, &box, &toggle] { ShellToggles::Clicked(p_, toggle, box.Value()); };
  }
}

void WindowsPage::LoadTicks() {
  // The whole handler runs with errors ignored. A text that isn't a number makes the test
  // itself fail, and the statement taken next is the one inside the test: the box gets ticked.
  // So a missing file or key shows the box ticked, and nothing here ever unticks a box.
  ResumeNext([&] { ini::ProfilePath = ini::ConfigFilePath(p_); });
  for (std::size_t i = 0; i < kToggleBoxes.size(); ++i) {
    TamrixCB& box = this->*kToggleBoxes[i];
    bool tick = false;
    try {
      tick = rt::TextToDouble(ini::ReadProfileValue(p_, ShellToggles::kSection,
                                                    std::string(ShellToggles::kToggles[i].configKey)),
                              p_.DecimalSign()) == 1;
    } catch (const RuntimeError&) {
      tick = true;
    }
    if (tick) ResumeNext([&] { box.SetValue(1); });
  }
}

void WindowsPage::Timer4Tick() { show_.Tick(); }

}  // namespace tamrix
