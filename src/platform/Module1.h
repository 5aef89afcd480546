// Module1: three small services that several pages share. A memory snapshot in whole megabytes,
// the OS family as a word, and the folder browser. They keep no state.
#pragma once

#include <cstdint>
#include <string>

#include "platform/Platform.h"

namespace tamrix::Module1 {

// The OS family words. Pages compare them for equality, in exactly this case.
inline constexpr const char* kWindows31 = "Windows3.1";
inline constexpr const char* kWindows98 = "Windows98";  // the whole 9.x family
inline constexpr const char* kWindowsNT = "WindowsNT";  // NT 4.0, 2000, XP and 2003 alike

// The memory snapshot, in the order of the platform's record: the load as the platform gives
// it, then six counts in megabytes. The counts are read as signed 32-bit numbers on purpose, so
// 2 GB or more comes out negative. One platform call and no allocation: it runs five times a
// second.
void ReadMemoryStatus(Platform& p, std::int32_t& memoryLoad, std::int32_t& totalPhys, std::int32_t& availPhys,
                      std::int32_t& totalPageFile, std::int32_t& availPageFile, std::int32_t& totalVirtual,
                      std::int32_t& availVirtual);

// "Windows3.1", "Windows98", "WindowsNT", or "" when the call fails or the platform is another.
std::string GetOsFamily(Platform& p);

// The folder browser, offering the whole shell tree. The chosen folder's path, or "" on Cancel
// and for an item that has no path on disk (the Control Panel and the like).
std::string BrowseForFolderPath(Platform& p, std::int32_t owner, const std::string& title);

}  // namespace tamrix::Module1
