// Reading a registry-editor file: what "regedit" and "reg export" write, and the companion's own
// backup. REGEDIT5 files come in UTF-16 after their byte-order mark (or, written by hand, in UTF-8
// after its mark), REGEDIT4 files in the ANSI code page. A line that can't be read is noted with
// its number and the reading goes on, as the registry editor's own import does; only a file whose
// first line is not a registry-editor heading is refused whole. The reader never looks past the
// bytes it is given.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "platform/Platform.h"

namespace tamrix::companion {

struct RegFileValue {
  std::string name;  // UTF-8; "" for the default value (@)
  bool deleted = false;  // "name"=-
  std::uint32_t type = 0;
  std::string raw;  // as the registry keeps it: texts in UTF-16 LE
  std::size_t line = 0;
};

struct RegFileKey {
  std::string name;  // as the file spells it, the hive's full name first
  HKey hive = 0;     // HKEY_CURRENT_USER or HKEY_LOCAL_MACHINE; 0 for the other three hives
  std::string path;  // below the hive; "" for the hive itself
  bool deleted = false;  // [-KEY]
  std::size_t line = 0;
  std::vector<RegFileValue> values;
};

struct RegFileProblem {
  std::size_t line = 0;
  std::string why;  // French, for the user
};

struct RegFile {
  int version = 5;  // 5 or 4, from the first line
  std::vector<std::string> header;  // the comment lines before the first key, without their ';'
  std::vector<RegFileKey> keys;
  std::vector<RegFileProblem> problems;
};

// fromAnsi turns text of the ANSI code page into UTF-8; it is used for files without a
// byte-order mark. nullopt: the first line is no registry-editor heading.
std::optional<RegFile> ReadRegFile(const std::string& bytes,
                                   const std::function<std::string(const std::string&)>& fromAnsi);

}  // namespace tamrix::companion
