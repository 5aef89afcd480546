#include "optimisers/Protection.h"

#include <algorithm>

#include "platform/Registre.h"
#include "platform/Runtime.h"

namespace tamrix {

namespace {

constexpr const char* kExplorer = "Software\\Microsoft\\Windows\\CurrentVersion\\Policies\\Explorer";
constexpr const char* kRestrictRun = "Software\\Microsoft\\Windows\\CurrentVersion\\Policies\\Explorer\\RestrictRun";

constexpr const char* kAppliedTitle = " Tamrix Utility 3.0 Pro - Terminée";
constexpr const char* kAppliedText =
    " Les options sont enregistrées avec succés ! \r\r Redémarrez votre Pc pour voir les changements.";
constexpr const char* kWarningTitle = "Avertissement";
constexpr const char* kConfirmNt = "Si la manipulation a bien fonctionné, vous devriez avoir un avertissement avec indiqué ceci: DllUnregisterServer dans c:\\windows\\system32\\regwizc.dll réussi";
constexpr const char* kCommandNt = "C:\\Windows\\System32\\regsvr32.exe -u c:\\windows\\system32\\regwizc.dll";
constexpr const char* kFailureTitle = "Tamrix Corporation";
constexpr const char* kFailureText = " Fichier introuvable, vérifier votre sytème d'éxploitation";
constexpr const char* kConfirm9x = "Si la manipulation a bien fonctionné, vous devriez avoir un avertissement avec indiqué ceci: DllUnregisterServer dans c:\\windows\\system\\regwizc.dll réussi";
constexpr const char* kCommand9x = "C:\\Windows\\System\\regsvr32.exe -u c:\\windows\\system\\regwizc.dll";

}  // namespace

// In the order of writing. The value names keep their capitals (Nofind, Norun); the last row
// lives in a key of its own.
const std::array<ProtectionPage::Row, 18> ProtectionPage::kRows = {{
    {&ProtectionPage::box1, kExplorer, "Nofind", 2},
    {&ProtectionPage::box2, kExplorer, "Norun", 1},
    {&ProtectionPage::box3, kExplorer, "NoFavoritesMenu", 3},
    {&ProtectionPage::Check1, kExplorer, "NoNetHood", 12},
    {&ProtectionPage::box4, kExplorer, "NoDesktop", 4},
    {&ProtectionPage::box6, kExplorer, "ClearRecentDocsOnExit", 5},
    {&ProtectionPage::box9, kExplorer, "NoClose", 6},
    {&ProtectionPage::box10, kExplorer, "NoActiveDesktop", 7},
    {&ProtectionPage::box11, kExplorer, "NoWindowsUpdate", 8},
    {&ProtectionPage::box12, kExplorer, "NoLogOff", 9},
    {&ProtectionPage::box13, kExplorer, "NoDeletePrinter", 10},
    {&ProtectionPage::box14, kExplorer, "NoAddPrinter", 11},
    {&ProtectionPage::box15, kExplorer, "NoSetTaskbar", 13},
    {&ProtectionPage::box16, kExplorer, "NoStartBanner", 14},
    {&ProtectionPage::box17, kExplorer, "NoInternetIcon", 15},
    {&ProtectionPage::box18, kExplorer, "NoViewContextMenu", 16},
    {&ProtectionPage::box19, kExplorer, "NoFileSharingControl", 17},
    {&ProtectionPage::box20, kRestrictRun, "EnforceShellExtensionSecurity", 18},
}};

// The boxes stand in two columns in the order of reading, which groups them by theme.
ProtectionPage::ProtectionPage(Control& form, Platform& platform)
    : p_(platform),
      frmprot(&form, {.name = "frmprot", .caption = " Protection Pc : ", .rect = {240, 1440, 7335, 3975}}),
      TamrixFrm6(&frmprot, {.name = "TamrixFrm6", .caption = "Cochez les options à cacher", .rect = {120, 330, 5460, 2895}}),
      box2(&TamrixFrm6, {.name = "box2", .caption = "Exécuter", .rect = Cell(0, 0), .backColor = colors::Beige, .backStyle = 0}),
      box1(&TamrixFrm6, {.name = "box1", .caption = "Rechercher", .rect = Cell(0, 1), .backColor = colors::Beige, .backStyle = 0}),
      box3(&TamrixFrm6, {.name = "box3", .caption = "Favoris", .rect = Cell(0, 2), .backColor = colors::Beige, .backStyle = 0}),
      box4(&TamrixFrm6, {.name = "box4", .caption = "Icônes du Bureau", .rect = Cell(0, 3), .backColor = colors::Beige, .backStyle = 0}),
      box6(&TamrixFrm6, {.name = "box6", .caption = "Documents récents", .rect = Cell(0, 4), .backColor = colors::Beige, .backStyle = 0}),
      box9(&TamrixFrm6, {.name = "box9", .caption = "Boutton Arrêter", .rect = Cell(0, 5), .backColor = colors::Beige, .backStyle = 0}),
      box10(&TamrixFrm6, {.name = "box10", .caption = "Active desktop", .rect = Cell(0, 6), .backColor = colors::Beige, .backStyle = 0}),
      box11(&TamrixFrm6, {.name = "box11", .caption = "Windows update", .rect = Cell(0, 7), .backColor = colors::Beige, .backStyle = 0}),
      box12(&TamrixFrm6, {.name = "box12", .caption = "Changer de session", .rect = Cell(0, 8), .backColor = colors::Beige, .backStyle = 0}),
      box13(&TamrixFrm6, {.name = "box13", .caption = "Supprimer Imprimante", .rect = Cell(1, 0), .backColor = colors::Beige, .backStyle = 0}),
      box14(&TamrixFrm6, {.name = "box14", .caption = "Ajout Imprimante", .rect = Cell(1, 1), .backColor = colors::Beige, .backStyle = 0}),
      Check1(&TamrixFrm6, {.name = "Check1", .caption = "Voisinage Réseaux", .rect = Cell(1, 2), .backColor = colors::Beige, .backStyle = 0}),
      box15(&TamrixFrm6, {.name = "box15", .caption = "Config Barre de tâche", .rect = Cell(1, 3), .backColor = colors::Beige, .backStyle = 0}),
      box16(&TamrixFrm6, {.name = "box16", .caption = "Ecran d'accueil Windows", .rect = Cell(1, 4), .backColor = colors::Beige, .backStyle = 0}),
      box17(&TamrixFrm6, {.name = "box17", .caption = "Iexplorer du  bureau ", .rect = Cell(1, 5), .backColor = colors::Beige, .backStyle = 0}),
      box18(&TamrixFrm6, {.name = "box18", .caption = "Menus contextuels ", .rect = Cell(1, 6), .backColor = colors::Beige, .backStyle = 0}),
      box19(&TamrixFrm6, {.name = "box19", .caption = "Partage de fichiers ", .rect = Cell(1, 7), .backColor = colors::Beige, .backStyle = 0}),
      box20(&TamrixFrm6, {.name = "box20", .caption = "Fichier non enregistrés", .rect = Cell(1, 8), .backColor = colors::Beige, .backStyle = 0}),
      Label15(&frmprot, {.name = "Label15", .caption = "Enlever les éspions de Microsoft", .rect = {5670, 360, 1575, 660},
                         .backColor = colors::Beige, .backStyle = 0, .alignment = 2}),
      Option10(&frmprot, {.name = "Option10", .caption = "Win NT", .rect = {5820, 1110, 1275, 285}, .backStyle = 0}),
      Option9(&frmprot, {.name = "Option9", .caption = "Win9.x", .rect = {5820, 1440, 1275, 285}, .backStyle = 0}),
      ReyCommand2(&frmprot, {.name = "ReyCommand2", .caption = "&Appliquer", .rect = {5760, 2700, 1395, 495},
                             .picture = "apply", .centerPicture = false, .centerText = false}),
      Label4(&frmprot, {.name = "Label4", .caption = "Le redémarrage est obligatoire pour appliquer les changements",
                        .rect = {120, 3420, 7095, 255}, .backColor = colors::Beige, .backStyle = 0, .alignment = 2}) {
  ReyCommand2.OnClick = [this] { Apply(); };
  Option10.OnClick = [this] { UnregisterNt(); };
  Option9.OnClick = [this] { Unregister9x(); };
}

void ProtectionPage::LoadRestrictions() {
  std::array<const Row*, 18> reading;
  for (std::size_t i = 0; i < kRows.size(); ++i) reading[i] = &kRows[i];
  std::sort(reading.begin(), reading.end(), [](const Row* a, const Row* b) { return a->readPlace < b->readPlace; });

  std::array<RegValue, 18> values;
  for (std::size_t i = 0; i < reading.size(); ++i)
    values[i] = Registre::ReadRegValue(p_, kHive, reading[i]->keyPath, reading[i]->valueName);

  // Only the number 1 ticks a box; nothing here unticks one.
  for (std::size_t i = 0; i + 1 < reading.size(); ++i)
    if (values[i].EqualsNumber(1)) (this->*(reading[i]->box)).SetValue(1);

  // The last restriction goes through a 16-bit conversion; a fault there leaves it at 0.
  std::int16_t enforce = 0;
  ResumeNext([&] { enforce = values.back().ToInt16(p_.DecimalSign()); });
  if (enforce == 1) (this->*(reading.back()->box)).SetValue(1);
}

void ProtectionPage::Apply() {
  for (const Row& row : kRows) {
    TamrixCB& box = this->*row.box;
    ResumeNext([&] {
      if (box.Value() == 1)
        Registre::WriteRegValue(p_, kHive, row.keyPath, row.valueName, kTicked, kType);
      else if (box.Value() == 0)
        Registre::WriteRegValue(p_, kHive, row.keyPath, row.valueName, kUnticked, kType);
    });
  }
  ResumeNext([&] { p_.MessageBoxA(kAppliedText, mb::Ok | mb::Information, kAppliedTitle); });
}

void ProtectionPage::UnregisterNt() {
  // A command that can't be started goes straight to the failure message, and the colour stays.
  try {
    p_.Beep();
    if (p_.MessageBoxA(kConfirmNt, mb::OkCancel | mb::Information, kWarningTitle) == mb::IdOk)
      p_.StartProcess(kCommandNt, ShowCommand::MinimizedActive);
    Option10.SetForeColor(colors::Orange);
  } catch (const RuntimeError&) {
    p_.MessageBoxA(kFailureText, mb::Ok | mb::Information, kFailureTitle);
  }
}

void ProtectionPage::Unregister9x() {
  // Unlike its neighbour, this one ignores every fault: no message, and the colour changes anyway.
  int answer = 0;
  ResumeNext([&] { p_.Beep(); });
  ResumeNext([&] { answer = p_.MessageBoxA(kConfirm9x, mb::OkCancel | mb::Information, kWarningTitle); });
  if (answer == mb::IdOk) ResumeNext([&] { p_.StartProcess(kCommand9x, ShowCommand::MinimizedActive); });
  ResumeNext([&] { Option9.SetForeColor(colors::Orange); });
}

}  // namespace tamrix
