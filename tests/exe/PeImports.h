// Reads the import table of a Windows executable: which DLL functions the loader must find
// before the program's first line runs.
#pragma once

#include <string>
#include <vector>

namespace tamrix::pe {

struct Import {
  std::string dll;       // as the executable names it, in its own case
  std::string function;  // empty for an import by ordinal
  unsigned ordinal = 0;  // set when imported by ordinal only
};

// Throws std::runtime_error when the file is not a PE executable or its table is damaged.
std::vector<Import> ReadImports(const std::string& path);

// The list of what Windows XP SP3's DLLs export, as kept in xp-sp3-exports.txt: lines of
// "DLL function", '#' starts a comment. DLL names compare without case.
struct ExportList {
  std::vector<std::pair<std::string, std::string>> entries;  // dll in lower case, function
  bool Has(const std::string& dll, const std::string& function) const;
};
ExportList ReadExportList(const std::string& path);

// Every import the list lacks, as "dll!function" (or "dll#ordinal").
std::vector<std::string> NotIn(const std::vector<Import>& imports, const ExportList& list);

}  // namespace tamrix::pe
