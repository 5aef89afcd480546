// What the system tells a 32-bit program that is not large-address-aware about memory. The
// 32-bit build asks the system and gets exactly this; the 64-bit build is given wide counts and
// turns them into the same record here, so both builds show the same figures on one machine.
#pragma once

#include <cstdint>

#include "platform/Platform.h"

namespace tamrix {

// The counts as a 64-bit program reads them: bytes, nothing capped. The virtual pair is the
// asking program's own address space.
struct WideMemoryStatus {
  std::uint32_t memoryLoad = 0;
  std::uint64_t totalPhys = 0, availPhys = 0;
  std::uint64_t totalPageFile = 0, availPageFile = 0;
  std::uint64_t totalVirtual = 0, availVirtual = 0;
};

// The user-mode address space of a 32-bit program without the large-address flag: from 64 KB up
// to 2 GB less 64 KB.
inline constexpr std::uint32_t kUserSpace32 = 0x7FFE0000u;

// The record of a 32-bit program on Windows 2000 or later (and on Wine): physical counts capped
// at 2 GB - 1, its virtual space the 2 GB one less what the asking program already holds, the
// page-file total capped at 4 GB - 512 KB - 1 and the free page file at 4 GB - 1, and the free
// page file lowered so that it and the free physical memory add up (in 32 bits) to under 2 GB.
MemoryStatus AsThirtyTwoBitProgramSees(const WideMemoryStatus& wide, std::uint32_t length);

}  // namespace tamrix
