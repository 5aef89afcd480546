// The memory record a 32-bit program is given, made from the wide counts of a 64-bit program.
#include <gtest/gtest.h>

#include "platform/Memory32.h"

namespace tamrix {
namespace {

constexpr std::uint64_t MB = 1024 * 1024;
constexpr std::uint64_t GB = 1024 * MB;

// A 64-bit program's own address space, as Windows and Wine report it: 128 TB less 128 KB.
constexpr std::uint64_t kSpace64 = 0x7FFFFFFE0000ull;

TEST(AsThirtyTwoBitProgramSees, TwentyFourGigabyteMachineGivesTheCappedCounts) {
  // This machine as a 64-bit program under Wine reads it, holding 7 MB of its address space.
  WideMemoryStatus wide{4, 24 * GB, 22 * GB, 24 * GB + 8192, 22 * GB, kSpace64, kSpace64 - 7 * MB};
  MemoryStatus m = AsThirtyTwoBitProgramSees(wide, 32);
  EXPECT_EQ(m.dwLength, 32u);
  EXPECT_EQ(m.dwMemoryLoad, 4u);
  EXPECT_EQ(m.dwTotalPhys, 0x7FFFFFFFu);
  EXPECT_EQ(m.dwAvailPhys, 0x7FFFFFFFu);
  EXPECT_EQ(m.dwTotalPageFile, 0xFFF7FFFFu);
  EXPECT_EQ(m.dwAvailPageFile, 0xFFFFFFFFu);  // 2 GB - 1 + 4 GB - 1 wraps to under 2 GB: kept
  EXPECT_EQ(m.dwTotalVirtual, 0x7FFE0000u);
  EXPECT_EQ(m.dwAvailVirtual, 0x7FFE0000u - 7 * MB);
}

TEST(AsThirtyTwoBitProgramSees, SmallMachineKeepsItsCountsAsTheyAre) {
  WideMemoryStatus wide{55, 512 * MB, 200 * MB, 1 * GB, 700 * MB, kSpace64, kSpace64 - 20 * MB};
  MemoryStatus m = AsThirtyTwoBitProgramSees(wide, 32);
  EXPECT_EQ(m.dwMemoryLoad, 55u);
  EXPECT_EQ(m.dwTotalPhys, 512 * MB);
  EXPECT_EQ(m.dwAvailPhys, 200 * MB);
  EXPECT_EQ(m.dwTotalPageFile, 1 * GB);
  EXPECT_EQ(m.dwAvailPageFile, 700 * MB);  // 900 MB together: under 2 GB
  EXPECT_EQ(m.dwTotalVirtual, 0x7FFE0000u);
  EXPECT_EQ(m.dwAvailVirtual, 0x7FFE0000u - 20 * MB);
}

TEST(AsThirtyTwoBitProgramSees, ThreeGigabytesOfMemoryReadAsTwoGigabytesLessOneByte) {
  WideMemoryStatus wide{20, 3 * GB, 2 * GB + 512 * MB, 3 * GB, 100 * MB, kSpace64, kSpace64};
  MemoryStatus m = AsThirtyTwoBitProgramSees(wide, 32);
  EXPECT_EQ(m.dwTotalPhys, 0x7FFFFFFFu);
  EXPECT_EQ(m.dwAvailPhys, 0x7FFFFFFFu);
}

TEST(AsThirtyTwoBitProgramSees, ExactlyTwoGigabytesIsAlreadyOneByteTooMany) {
  WideMemoryStatus wide{0, 2 * GB, 2 * GB - 1, 0, 0, kSpace64, kSpace64};
  MemoryStatus m = AsThirtyTwoBitProgramSees(wide, 32);
  EXPECT_EQ(m.dwTotalPhys, 0x7FFFFFFFu);
  EXPECT_EQ(m.dwAvailPhys, 0x7FFFFFFFu);
}

TEST(AsThirtyTwoBitProgramSees, PageFileTotalStopsHalfAMegabyteShortOfFourGigabytes) {
  WideMemoryStatus wide{0, 0, 0, 0xFFF80000u, 0, kSpace64, kSpace64};
  EXPECT_EQ(AsThirtyTwoBitProgramSees(wide, 32).dwTotalPageFile, 0xFFF7FFFFu);
  wide.totalPageFile = 0xFFF7FFFFu;
  EXPECT_EQ(AsThirtyTwoBitProgramSees(wide, 32).dwTotalPageFile, 0xFFF7FFFFu);
  wide.totalPageFile = 0xFFF7FFFEu;
  EXPECT_EQ(AsThirtyTwoBitProgramSees(wide, 32).dwTotalPageFile, 0xFFF7FFFEu);
}

TEST(AsThirtyTwoBitProgramSees, FreePageFileIsLoweredSoThatWithFreeMemoryItStaysUnderTwoGigabytes) {
  WideMemoryStatus wide{0, 2 * GB, 1 * GB, 3 * GB, 1 * GB + 512 * MB, kSpace64, kSpace64};
  MemoryStatus m = AsThirtyTwoBitProgramSees(wide, 32);
  EXPECT_EQ(m.dwAvailPhys, 1 * GB);
  EXPECT_EQ(m.dwAvailPageFile, 1 * GB - 1);
}

TEST(AsThirtyTwoBitProgramSees, FreePageFileOfExactlyTheRestOfTwoGigabytesIsLoweredByOne) {
  WideMemoryStatus wide{0, 1 * GB, 512 * MB, 3 * GB, 1536 * MB, kSpace64, kSpace64};
  EXPECT_EQ(AsThirtyTwoBitProgramSees(wide, 32).dwAvailPageFile, 1536 * MB - 1);
  wide.availPageFile = 1536 * MB - 1;
  EXPECT_EQ(AsThirtyTwoBitProgramSees(wide, 32).dwAvailPageFile, 1536 * MB - 1);
}

TEST(AsThirtyTwoBitProgramSees, FreeCountsThatWrapPastFourGigabytesTogetherAreLeftAlone) {
  // 1.5 GB + 3 GB is 4.5 GB, which in 32 bits reads as 512 MB.
  WideMemoryStatus wide{0, 2 * GB, 1536 * MB, 8 * GB, 3 * GB, kSpace64, kSpace64};
  EXPECT_EQ(AsThirtyTwoBitProgramSees(wide, 32).dwAvailPageFile, 3 * GB);
}

TEST(AsThirtyTwoBitProgramSees, AProgramHoldingMoreThanTwoGigabytesHasNoVirtualMemoryLeft) {
  WideMemoryStatus wide{0, 1 * GB, 1 * GB, 1 * GB, 0, kSpace64, kSpace64 - 3 * GB};
  MemoryStatus m = AsThirtyTwoBitProgramSees(wide, 32);
  EXPECT_EQ(m.dwTotalVirtual, 0x7FFE0000u);
  EXPECT_EQ(m.dwAvailVirtual, 0u);
}

TEST(AsThirtyTwoBitProgramSees, TheLengthIsTheOneAskedWith) {
  WideMemoryStatus wide{};
  EXPECT_EQ(AsThirtyTwoBitProgramSees(wide, 0).dwLength, 0u);
  EXPECT_EQ(AsThirtyTwoBitProgramSees(wide, 64).dwLength, 64u);
}

}  // namespace
}  // namespace tamrix
