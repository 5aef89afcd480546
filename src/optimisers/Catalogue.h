// Catalogue rows and the small runner that walks them. A catalogue is plain ordered data: the
// order of its rows is part of what it does, so the runner writes them exactly as they stand and
// never looks at a result. The writers are handed in, so that a catalogue can be walked without
// any platform behind it.
#pragma once

#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <string_view>

#include "platform/Platform.h"
#include "platform/RegValue.h"

namespace tamrix::catalogue {

// What a registry row writes: a literal text, a literal number, or one of the run's variables
// (numbered by the catalogue that uses them), whose value is known only when the run starts.
struct Data {
  enum class Kind { Text, Number, Variable };
  Kind kind;
  std::string_view text;
  std::int32_t number;

  constexpr Data(const char* t) : kind(Kind::Text), text(t), number(0) {}
  constexpr Data(std::int32_t n) : kind(Kind::Number), text(), number(n) {}
  static constexpr Data Variable(std::int32_t index) {
    Data d(index);
    d.kind = Kind::Variable;
    return d;
  }
};

struct RegRow {
  HKey hive;
  std::string_view keyPath;
  std::string_view valueName;
  std::uint32_t type;
  Data data;
};

struct ProfileRow {
  std::string_view section;
  std::string_view key;
  std::string_view value;
};

using RegWriter = std::function<void(HKey hive, const std::string& keyPath, const std::string& valueName,
                                     const RegValue& data, std::uint32_t type)>;
using ProfileWriter = std::function<void(const std::string& section, const std::string& key, const std::string& value)>;
// The value of variable number i for this run.
using Variables = std::function<RegValue(std::int32_t index)>;

// Writes every row, in order, each by a call of its own.
void WriteRows(std::span<const RegRow> rows, const RegWriter& write, const Variables& variables = {});
void WriteRows(std::span<const ProfileRow> rows, const ProfileWriter& write);

// The writers of the running program: the registry module and the profile module.
RegWriter RegistryWriter(Platform& p);
ProfileWriter ProfileFileWriter(Platform& p);

}  // namespace tamrix::catalogue
