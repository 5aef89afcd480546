// Virtual drives: the two frames of the Windows page that map a drive letter onto a folder with
// subst.exe, and take such a mapping away; a mapping can be made to come back at each log-on
// through the machine's Run key.
#pragma once

#include <string>

#include "optimisers/WindowsPage.h"
#include "platform/Platform.h"
#include "shell/Controls.h"

namespace tamrix {

class VirtualDrives {
 public:
  VirtualDrives(WindowsPage& page, Form& form, Platform& platform);

  // The two letter lists, filled once at start-up: the free letters, and all 26, from Z: down.
  void FillLists();

  // The one handler of the cmdCheminVirtuel buttons: 0 "...", 1 "&Créer lecteur", 2 "&Supprimer".
  void cmdCheminVirtuelClick(int index);

  std::string CheminLecteur;  // the folder from the browser; the text box only shows it
  std::string LettresLibres;
  std::string LettresToutes;

  // A permanent drive is one text value of the machine's Run key, holding the subst.exe command
  // that maps it again at each log-on.
  static constexpr HKey kRunHive = hive::LocalMachine;
  static constexpr const char* kRunKey = "SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Run";
  static constexpr std::uint32_t kRunType = regtype::Sz;
  // The value's name in the Run key: the last two characters of the list's entry ("Z:" or
  // whatever stands there), in lower case; an empty list gives the key's default value.
  static std::string RunValueName(const std::string& entry);

 private:
  WindowsPage& page_;
  Form& form_;
  Platform& p_;
};

}  // namespace tamrix
