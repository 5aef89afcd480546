// What changed since a backup: every value a registry-editor file names, against the machine now,
// in the registry's view the file names, and a backup's copy of system.ini against system.ini,
// key by key. Nothing is ever written: keys are opened for reading only.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "companion/Command.h"
#include "companion/RegFile.h"
#include "platform/Platform.h"

namespace tamrix::companion {

enum class Change {
  Same,        // as the file has it
  Changed,     // another type or other data now
  Gone,        // the file has it, the machine has it no more
  Appeared,    // the machine has it now, the file has it absent ("name"=- or [-KEY])
  Unreadable,  // the machine would not let it be read: nothing can be said
};

struct Stored {
  bool present = false;
  std::uint32_t type = 0;
  std::string raw;  // as the registry keeps it: texts in UTF-16 LE
};

struct ValueChange {
  std::string name;  // UTF-8; "" is the default value
  Change change = Change::Same;
  Stored before, now;
  std::size_t line = 0;  // in the file; 0 for a value the file doesn't name
  long status = 0;       // the failure, for an unreadable one
};

struct KeyChange {
  std::string name;  // the hive's full name, then the path as the file spells it
  // Same: the key stands as the file says (there, or absent). Gone: the file has it, the machine
  // has it no more. Appeared: the file deletes it, or a key it restores whole has it not, and it
  // stands now. Unreadable: it could not be opened.
  Change change = Change::Same;
  long status = 0;
  std::vector<ValueChange> values;
};

struct IniChange {
  std::string section, key, before, now;  // UTF-8
  Change change = Change::Same;
};

struct Comparison {
  std::string file;     // the file's name as the user gave it, UTF-8
  bool backup = false;  // made by "sauvegarde"
  int view = 0;         // 32 or 64 on a Windows with two views, 0 on one with one
  std::string viewFrom;  // why that view: "--vue", the backup's word, or the companion's own
  std::vector<KeyChange> keys;
  std::vector<std::string> otherHives;  // keys of hives the companion doesn't compare
  bool iniCompared = false;
  std::string iniNote;  // what was or wasn't compared of system.ini
  std::vector<IniChange> ini;
  std::vector<RegFileProblem> problems;
};

// viewBits: the view the file names, as keyaccess bits (0 on a Windows with one view).
std::vector<KeyChange> CompareRegistry(const RegFile& file, Platform& p, std::uint32_t viewBits);
// Two profile files' texts, key by key, section by section: sections and keys match whatever
// their case, as the profile functions match them; a value matches only letter for letter.
std::vector<IniChange> CompareIni(const std::string& before, const std::string& now);

// Whether anything differs: the exit code is 1 then, 0 otherwise.
bool AnyDifference(const Comparison& c);

struct DifferencesOptions {
  bool json = false;
  std::optional<std::uint32_t> view;  // keyaccess::View32 or View64 when asked for
};

// The command "differences FICHIER.reg": prints the comparison and gives the exit code, 0 when
// nothing differs, 1 when something does, 2 for a file that is missing or no registry-editor
// file. regPath is as the command line gave it (ANSI on Windows).
int Differences(const std::string& regPath, const DifferencesOptions& options, Platform& p, const Io& io,
                std::uint32_t ownView);

// The words of a change, as the text report prints them, and their JSON names.
std::string ChangeWord(Change c);
std::string ChangeCode(Change c);

std::string DifferencesText(const Comparison& c);
std::string DifferencesJson(const Comparison& c);

}  // namespace tamrix::companion
