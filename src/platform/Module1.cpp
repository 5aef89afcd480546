#include "platform/Module1.h"

#include "platform/Runtime.h"

namespace tamrix::Module1 {

namespace {

// The record's size as the platform documents it for the 32-bit program.
constexpr std::uint32_t kMemoryStatusLength = 32;
// The size of the ANSI version record: without its later extension fields.
constexpr std::uint32_t kOsVersionInfoSize = 148;

constexpr std::uint32_t kPlatformWin32s = 0;
constexpr std::uint32_t kPlatformWindows = 1;
constexpr std::uint32_t kPlatformNT = 2;

// A byte count read as signed, in megabytes, halves to even.
std::int32_t Megabytes(std::uint32_t bytes) {
  double signedBytes = static_cast<std::int32_t>(bytes);
  return rt::ToInt32(signedBytes / 1024 / 1024);
}

}  // namespace

void ReadMemoryStatus(Platform& p, std::int32_t& memoryLoad, std::int32_t& totalPhys, std::int32_t& availPhys,
                      std::int32_t& totalPageFile, std::int32_t& availPageFile, std::int32_t& totalVirtual,
                      std::int32_t& availVirtual) {
  const MemoryStatus m = p.GlobalMemoryStatus(kMemoryStatusLength);
  memoryLoad = static_cast<std::int32_t>(m.dwMemoryLoad);
  totalPhys = Megabytes(m.dwTotalPhys);
  availPhys = Megabytes(m.dwAvailPhys);
  totalPageFile = Megabytes(m.dwTotalPageFile);
  availPageFile = Megabytes(m.dwAvailPageFile);
  totalVirtual = Megabytes(m.dwTotalVirtual);
  availVirtual = Megabytes(m.dwAvailVirtual);
}

std::string GetOsFamily(Platform& p) {
  const OsVersion v = p.GetVersionExA(kOsVersionInfoSize);
  if (!v.ok) return "";
  switch (v.platformId) {
    case kPlatformWin32s: return kWindows31;
    case kPlatformWindows: return kWindows98;
    case kPlatformNT: return kWindowsNT;
    default: return "";
  }
}

std::string BrowseForFolderPath(Platform& p, std::int32_t owner, const std::string& title) {
  // Flags 0: every item of the shell's tree is offered, not only folders on disk, and there is
  // no edit box.
  const std::uint32_t flags = 0;
  // A 32-bit handle widens with its sign, as the platform's own handles do.
  const auto ownerWindow = static_cast<WindowHandle>(static_cast<std::int64_t>(owner));
  const std::uint64_t itemList = p.SHBrowseForFolderA(ownerWindow, title, flags);
  if (itemList == 0) return "";  // cancelled

  std::string result;
  std::string buffer;
  if (p.SHGetPathFromIDListA(itemList, &buffer)) result = buffer.substr(0, buffer.find('\0'));
  // The item list goes back whether or not it had a path.
  p.CoTaskMemFree(itemList);
  return result;
}

}  // namespace tamrix::Module1
