// What the machine has now at each place of the catalogues, and how that stands against what the
// program would write there. Each key is opened first as the program opens it, with its own
// access mask, so a key this account may read but not write shows as the program would meet it:
// refused. Opening a key for writing writes nothing; the companion never sets or deletes.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "companion/Catalogues.h"
#include "platform/Platform.h"

namespace tamrix::companion {

enum class State {
  AlreadySo,   // the machine has one of the values the program would write
  Different,   // a value stands there, of other data or another type
  Absent,      // the key is there, the value is not: the program would create it
  KeyMissing,  // the program never creates a key, so its row would be lost in silence
  Refused,     // the program's own opening of the key is refused: its click would lose the row
  Denied,      // the key opens as the program opens it, but the value may not be read
  Error,       // any other failure, shown with its status
  Present,     // a value with no fixed model (the Run key): shown as it stands
};
inline constexpr std::size_t kStateCount = 8;

struct Finding {
  State state = State::Absent;
  long status = 0;         // the status of the failure that decided the state
  bool atKey = false;      // that failure came from opening the key, not from reading the value
  bool known = true;       // what stands there is known: a value, or none
  bool present = false;    // a value stands there, as type, raw and data tell
  std::uint32_t type = 0;
  std::string raw;         // the bytes as the registry keeps them (texts in UTF-16 LE)
  std::string data;        // texts as UTF-8, terminators included; other types as raw
};

// view: 0, or the view bit of keyaccess that every opening adds.
Finding Inspect(Platform& p, const RegistryPlace& place, std::uint32_t view = 0);

// A key as it stands, with everything in it: what a backup needs to put back a key the program
// deletes. status is Success, FileNotFound for a key that isn't there, or the failure met.
struct KeyTree {
  std::string name;  // the last name of the key, as the machine spells it
  long status = 0;
  struct Value {
    std::string name;
    std::uint32_t type = 0;
    std::string raw;
  };
  std::vector<Value> values;
  std::vector<KeyTree> subkeys;
};
KeyTree ReadTree(Platform& p, HKey hive, const std::string& keyPath, std::uint32_t view = 0);

// system.ini rows: the file and the section are made by the platform when missing, so a key is
// either there with some value, or absent.
struct ProfileFinding {
  State state = State::Absent;
  std::string value;
};
ProfileFinding Inspect(Platform& p, const std::string& iniPath, const ProfilePlace& place);

// Only a 64-bit Windows has two views, and only there do the view bits go with an opening:
// Windows 2000 takes them for an error.
bool TwoViews(Platform& p);

// A value's type and bytes as the registry keeps them (texts in UTF-16 LE), by the wide query:
// one that grows between the size and the read is asked for again with its new size.
long QueryStored(Platform& p, HKey key, const std::string& name, std::uint32_t* type, std::string* raw);

// The path of system.ini in the Windows directory, as the Windows optimiser names it.
std::string SystemIni(Platform& p);

struct CatalogueState {
  const Catalogue* catalogue;
  std::vector<Finding> registry;      // one per place, in order
  std::vector<ProfileFinding> systemIni;
  std::vector<KeyTree> deletedKeys;   // one per key the program may delete
};

std::vector<CatalogueState> InspectAll(Platform& p, const std::vector<Catalogue>& catalogues, std::uint32_t view = 0);

// The text a value shows in the report: "1000" for a text, 12 for a number, with its type.
std::string Describe(std::uint32_t type, const std::string& data);
std::string Describe(std::uint32_t type, const RegValue& value);
std::string TypeName(std::uint32_t type);

}  // namespace tamrix::companion
