// The catalogues as the companion walks them: every place the program may write, with what it
// may write there. Nothing here is a copy: the rows come from the program's own tables, and where
// a catalogue has a runner, from running that runner with writers that only take notes.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "platform/Platform.h"
#include "platform/RegValue.h"

namespace tamrix::companion {

struct RegistryPlace {
  HKey hive;
  std::string keyPath;
  std::string valueName;
  std::uint32_t type;
  // Every value the program may write here. More than one when a choice of the user decides
  // (a box ticked or not); none when the data is the user's own (a folder), as for the Run key.
  std::vector<RegValue> writes;
  std::string note;  // what decides between the values, when more than one
};

struct ProfilePlace {
  std::string section;
  std::string key;
  std::string value;
};

// A key the program may delete whole: the backup keeps it with everything in it.
struct KeyPlace {
  HKey hive;
  std::string keyPath;
};

struct Catalogue {
  std::string title;
  std::string note;  // one line under the title, or nothing
  std::vector<RegistryPlace> registry;
  std::vector<ProfilePlace> systemIni;  // keys of system.ini in the Windows directory
  // The Run key: the places are the 26 possible drives, and only those the machine has are shown.
  bool onlyPresent = false;
  std::vector<KeyPlace> deletedKeys;
};

// Every catalogue in the order of the program's pages: the Windows optimiser (registry, then
// system.ini), the Internet optimiser once per connection type, the Protection page, the shell
// toggles, and the permanent virtual drives. trueText is the system's word for true, which one
// Internet row writes.
std::vector<Catalogue> Catalogues(const std::string& trueText);

}  // namespace tamrix::companion
