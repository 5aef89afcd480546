// The backup: a REGEDIT5 file that, imported with "reg import" or by a double-click, puts back
// every value of every catalogue as the machine has it now, deletes the ones it doesn't have now,
// and puts back whole the keys the program deletes (deleting them where they weren't). Keys of
// single values that don't exist are only noted: those the import never creates.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "companion/CatalogueState.h"

namespace tamrix::companion {

struct Naming {
  // The 32-bit view of a 64-bit Windows: HKLM\Software is named under WOW6432Node, where any
  // import, from a 32-bit program or a 64-bit one, finds it. Software\Classes is one key for both
  // views, as since Windows 7, and keeps its name.
  bool wow6432Node = false;
};

// The file's text in UTF-8, lines ended by CR LF: REGEDIT5's first line, the header as comment
// lines, then the keys. The file itself is that text in UTF-16 LE after its byte-order mark.
std::string RegFileText(const std::vector<CatalogueState>& states, const std::vector<std::string>& header,
                        Naming naming = {});

// One value line: "name"="text", "name"=dword:0000000c, "name"=hex(b):..., and nothing when the
// name can't stand in a file (a line break or a NUL in it). raw is as the registry keeps it.
std::optional<std::string> ValueLine(const std::string& name, std::uint32_t type, const std::string& raw);
// "name"=- : the value is deleted on import.
std::string DeletionLine(const std::string& name);

// The file's bytes: the byte-order mark, then the text in UTF-16 LE.
std::string Utf16File(const std::string& utf8);

// The copy of system.ini stands beside the backup, named after it: "avant.reg" has
// "avant.system.ini".
std::string IniCopyName(const std::string& regPath);

// The key's name in the file, after its hive's full name.
std::string KeyName(HKey hive, const std::string& keyPath, Naming naming);

}  // namespace tamrix::companion
