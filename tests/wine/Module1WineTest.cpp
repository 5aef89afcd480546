// The shared system helpers and the time separator against Wine's real services, in the French
// prefix of the tests.
#include <windows.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "platform/Module1.h"
#include "platform/Runtime.h"
#include "platform/win32/Win32Platform.h"

namespace tamrix::win32 {
namespace {

TEST(Module1OnWine, TheNtPrefixIsTheWindowsNtFamily) {
  Win32Platform p;
  EXPECT_EQ(Module1::GetOsFamily(p), "WindowsNT");
}

TEST(Module1OnWine, MemorySnapshotIsThePlatformRecordInSignedMegabytes) {
  Win32Platform p;
  std::int32_t load, totalPhys, availPhys, totalPage, availPage, totalVirtual, availVirtual;
  Module1::ReadMemoryStatus(p, load, totalPhys, availPhys, totalPage, availPage, totalVirtual, availVirtual);
  MemoryStatus m = p.GlobalMemoryStatus(32);
  auto mb = [](std::uint32_t bytes) {
    return rt::ToInt32(static_cast<std::int32_t>(bytes) / 1024.0 / 1024.0);
  };
  EXPECT_GE(load, 0);
  EXPECT_LE(load, 100);
  EXPECT_EQ(totalPhys, mb(m.dwTotalPhys));
  EXPECT_EQ(totalPage, mb(m.dwTotalPageFile));
  EXPECT_EQ(totalVirtual, mb(m.dwTotalVirtual));
  // Every count lies in the range a signed 32-bit byte count allows.
  for (std::int32_t v : {totalPhys, availPhys, totalPage, availPage, totalVirtual, availVirtual}) {
    EXPECT_GE(v, -2048);
    EXPECT_LE(v, 2048);
  }
}

// What Windows and Wine give a 32-bit program that is not large-address-aware, written out
// here from their documentation and Wine's own GlobalMemoryStatus: both builds must show it.
TEST(Module1OnWine, MemoryRecordIsWhatAThirtyTwoBitProgramIsGiven) {
  Win32Platform p;
  MEMORYSTATUSEX wide{};
  wide.dwLength = sizeof wide;
  ASSERT_TRUE(GlobalMemoryStatusEx(&wide));
  MemoryStatus m = p.GlobalMemoryStatus(32);
  const std::uint64_t twoGbLessOne = 0x7FFFFFFF, pageFileCap = 0xFFF7FFFF, space32 = 0x7FFE0000;
  EXPECT_EQ(m.dwLength, 32u);
  EXPECT_EQ(m.dwTotalPhys, std::min<std::uint64_t>(wide.ullTotalPhys, twoGbLessOne));
  EXPECT_EQ(m.dwTotalPageFile, std::min<std::uint64_t>(wide.ullTotalPageFile, pageFileCap));
  EXPECT_EQ(m.dwTotalVirtual, space32);
  EXPECT_LE(m.dwAvailVirtual, m.dwTotalVirtual);
  EXPECT_GT(m.dwAvailVirtual, space32 - 512u * 1024 * 1024) << "the program holds far less than 512 MB";
  if (wide.ullAvailPhys > twoGbLessOne + 256ull * 1024 * 1024) EXPECT_EQ(m.dwAvailPhys, twoGbLessOne);
  else EXPECT_LE(m.dwAvailPhys, twoGbLessOne);
  if (wide.ullAvailPhys > 4ull << 30 && wide.ullAvailPageFile > 4ull << 30) {
    // 2 GB - 1 and 4 GB - 1 add up, in 32 bits, to under 2 GB: the free page file stays full.
    EXPECT_EQ(m.dwAvailPageFile, 0xFFFFFFFFu);
  }
}

TEST(Module1OnWine, FrenchRegionalSettingsSeparateTheTimeWithAColon) {
  Win32Platform p;
  EXPECT_EQ(p.TimeSeparator(), ':');
  LocalTime t = p.Now();
  std::string shown = rt::FormatTime(t, "HH:MM:SS", p.TimeSeparator());
  ASSERT_EQ(shown.size(), 8u);
  EXPECT_EQ(shown[2], ':');
  EXPECT_EQ(std::stoi(shown.substr(0, 2)), t.hour);
  EXPECT_EQ(std::stoi(shown.substr(3, 2)), t.minute);
}

}  // namespace
}  // namespace tamrix::win32
