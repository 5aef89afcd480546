#include "platform/Memory32.h"

#include <algorithm>

namespace tamrix {

namespace {

constexpr std::uint64_t kTwoGigabytesLessOne = 0x7FFFFFFFu;
constexpr std::uint64_t kFourGigabytesLessOne = 0xFFFFFFFFu;
// The page-file total keeps 512 KB under 4 GB: old installers add to it and must not overflow.
constexpr std::uint64_t kPageFileTotalCap = 0xFFF7FFFFu;
constexpr std::uint32_t kTwoGigabytes = 0x80000000u;

std::uint32_t Capped(std::uint64_t bytes, std::uint64_t cap) { return static_cast<std::uint32_t>(std::min(bytes, cap)); }

}  // namespace

MemoryStatus AsThirtyTwoBitProgramSees(const WideMemoryStatus& wide, std::uint32_t length) {
  MemoryStatus m;
  m.dwLength = length;
  m.dwMemoryLoad = wide.memoryLoad;
  m.dwTotalPhys = Capped(wide.totalPhys, kTwoGigabytesLessOne);
  m.dwAvailPhys = Capped(wide.availPhys, kTwoGigabytesLessOne);
  m.dwTotalPageFile = Capped(wide.totalPageFile, kPageFileTotalCap);
  m.dwAvailPageFile = Capped(wide.availPageFile, kFourGigabytesLessOne);

  // A 32-bit program has 2 GB of its own to address; what the asking program already holds
  // there is not free.
  const std::uint64_t held = wide.totalVirtual - std::min(wide.availVirtual, wide.totalVirtual);
  m.dwTotalVirtual = kUserSpace32;
  m.dwAvailVirtual = kUserSpace32 - Capped(held, kUserSpace32);

  // Free physical memory and free page file must not reach 2 GB together, added as the
  // system adds them: in 32 bits, where a sum past 4 GB wraps round.
  const std::uint32_t together = m.dwAvailPhys + m.dwAvailPageFile;
  if (together >= kTwoGigabytes) m.dwAvailPageFile = kTwoGigabytes - m.dwAvailPhys - 1;
  return m;
}

}  // namespace tamrix
