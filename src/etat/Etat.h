// What the machine has now at each place of the catalogues, and how that stands against what the
// program would write there. Every read goes through the platform's registry functions with read
// rights only: the companion never opens a key for writing, so a key it may read but not write
// still shows its value.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "etat/Catalogues.h"
#include "platform/Platform.h"

namespace tamrix::etat {

// KEY_READ: query, enumerate, notify and the right to read the key's security.
inline constexpr std::uint32_t kReadAccess = 0x20019;

enum class State {
  AlreadySo,   // the machine has one of the values the program would write
  Different,   // a value stands there, of other data or another type
  Absent,      // the key is there, the value is not: the program would create it
  KeyMissing,  // the program never creates a key, so its row would be lost in silence
  Denied,      // this account may not read it: nothing can be said
  Present,     // a value with no fixed model (the Run key): shown as it stands
};

struct Finding {
  State state = State::Absent;
  long status = 0;          // the platform's status when the read failed
  bool atKey = false;       // the failure came from opening the key, not from the value
  std::uint32_t type = 0;   // what stands there now, when something does
  std::string data;         // REG_SZ and the other texts as text (terminator included), others raw
};

Finding Inspect(Platform& p, const RegistryPlace& place);

// system.ini rows: the file and the section are made by the platform when missing, so a key is
// either there with some value, or absent.
struct ProfileFinding {
  State state = State::Absent;
  std::string value;
};
ProfileFinding Inspect(Platform& p, const std::string& iniPath, const ProfilePlace& place);

// The path of system.ini in the Windows directory, as the Windows optimiser names it.
std::string SystemIni(Platform& p);

struct CatalogueState {
  const Catalogue* catalogue;
  std::vector<Finding> registry;      // one per place, in order
  std::vector<ProfileFinding> systemIni;
};

std::vector<CatalogueState> InspectAll(Platform& p, const std::vector<Catalogue>& catalogues);

// The text a value shows in the report: "1000" for a text, 12 for a number, with its type.
std::string Describe(std::uint32_t type, const std::string& data);
std::string Describe(std::uint32_t type, const RegValue& value);
std::string TypeName(std::uint32_t type);

}  // namespace tamrix::etat
