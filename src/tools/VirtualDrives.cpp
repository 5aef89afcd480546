#include "tools/VirtualDrives.h"

#include <cctype>
#include <cstdint>

#include "platform/Module1.h"
#include "platform/Registre.h"
#include "platform/Runtime.h"

namespace tamrix {

namespace {

constexpr const char* kAlphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZ";

// Every occurrence, exactly as written: the drive's letter comes upper case, as the list has it.
void RemoveAll(std::string& text, const std::string& what) {
  if (what.empty()) return;
  for (std::size_t at = text.find(what); at != std::string::npos; at = text.find(what, at)) text.erase(at, what.size());
}

}  // namespace

std::string VirtualDrives::RunValueName(const std::string& entry) {
  std::string name = entry.size() > 2 ? entry.substr(entry.size() - 2) : entry;
  for (char& c : name) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  return name;
}

VirtualDrives::VirtualDrives(WindowsPage& page, Form& form, Platform& platform)
    : page_(page), form_(form), p_(platform) {
  page_.cmdCheminVirtuel0.OnClick = [this] { cmdCheminVirtuelClick(0); };
  page_.cmdCheminVirtuel1.OnClick = [this] { cmdCheminVirtuelClick(1); };
  page_.cmdCheminVirtuel2.OnClick = [this] { cmdCheminVirtuelClick(2); };
}

// Runs with errors ignored, on the start-up road where the mixers were listed. The lists aren't
// filled again: a letter taken by a new drive stays on offer until the next start.
void VirtualDrives::FillLists() {
  ErrObject err;
  LettresLibres = kAlphabet;
  LettresToutes = kAlphabet;
  ComboBox& libres = page_.cmbLecteurDispo0;
  ComboBox& toutes = page_.cmbLecteurDispo1;
  libres.Clear();
  toutes.Clear();
  std::string drives;
  err.Run([&] { drives = p_.LogicalDriveLetters(); });
  for (char driveLetter : drives) RemoveAll(LettresLibres, std::string(1, driveLetter));
  for (std::size_t i = LettresLibres.size(); i-- > 0;) libres.AddItem(std::string(1, LettresLibres[i]) + ":");
  for (std::size_t i = LettresToutes.size(); i-- > 0;) toutes.AddItem(std::string(1, LettresToutes[i]) + ":");
  err.Run([&] { libres.SetListIndex(0); });
  err.Run([&] { toutes.SetListIndex(0); });
}

// Nothing is checked: not the letter, not the folder, not what subst.exe makes of them. The
// message of success follows the start of the command.
void VirtualDrives::cmdCheminVirtuelClick(int index) {
  switch (index) {
    case 0: {
      CheminLecteur = Module1::BrowseForFolderPath(p_, static_cast<std::int32_t>(form_.hWnd), "");
      if (!CheminLecteur.empty()) page_.txtChemLecteur.SetText(CheminLecteur);
      break;
    }
    case 1: {
      const std::string L = page_.cmbLecteurDispo0.Text();
      const std::string Q = page_.lblGuil.Caption();
      // For instance: subst.exe Z: "c:\outils"
      std::string Ligne = "subst.exe " + L + " " + Q + CheminLecteur + Q;
      p_.StartProcess(Ligne, ShowCommand::Hidden);
      if (page_.chkCreerLecteurVirtuel.Value() == 1) {
        Ligne = "subst.exe " + L + " " + Q + CheminLecteur + Q;
        Registre::WriteRegValue(p_, kRunHive, kRunKey, RunValueName(L), RegValue(Ligne), kRunType);
      }
      p_.MessageBoxA("Création termninée avec succès !", mb::Ok | mb::Information, rt::kAppTitle);
      break;
    }
    case 2: {
      const std::string L = page_.cmbLecteurDispo1.Text();
      p_.StartProcess("subst.exe" + std::string(" /D ") + L, ShowCommand::Hidden);
      if (page_.TamrixCB1.Value() == 1) Registre::DeleteRegValue(p_, kRunHive, kRunKey, RunValueName(L));
      p_.MessageBoxA("Suppression termninée avec succès !", mb::Ok | mb::Information, rt::kAppTitle);
      break;
    }
    default: break;
  }
}

}  // namespace tamrix
