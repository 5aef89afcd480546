// Where a permanent virtual drive lives: one value of the machine's Run key per drive, named after
// the drive letter in lower case with its colon ("z:"), holding the subst.exe command line that
// maps it again at each log-on. The program's virtual-drive handlers write exactly there; this
// block is the one place the companion knows it from.
#pragma once

#include <string>

#include "platform/Platform.h"

namespace tamrix::etat {

inline constexpr HKey kVirtualDriveRunHive = hive::LocalMachine;
inline constexpr const char* kVirtualDriveRunKey = "SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Run";
inline constexpr std::uint32_t kVirtualDriveRunType = regtype::Sz;
// The value name of a drive letter: "Z" gives "z:".
inline std::string VirtualDriveRunName(char letter) {
  char lower = (letter >= 'A' && letter <= 'Z') ? static_cast<char>(letter - 'A' + 'a') : letter;
  return std::string(1, lower) + ":";
}

}  // namespace tamrix::etat
