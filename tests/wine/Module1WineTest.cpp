// The shared system helpers and the time separator against Wine's real services, in the French
// prefix of the tests.
#include <windows.h>

#include <gtest/gtest.h>

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

TEST(Module1OnWine, CountsOfFourGigabytesOrMoreReadAsAllOnes) {
  Win32Platform p;
  MemoryStatus m = p.GlobalMemoryStatus(32);
  MEMORYSTATUSEX real{};
  real.dwLength = sizeof real;
  ASSERT_TRUE(GlobalMemoryStatusEx(&real));
  if (real.ullTotalPhys >= 0x100000000ull) EXPECT_EQ(m.dwTotalPhys, 0xFFFFFFFFu);
  if (real.ullTotalVirtual >= 0x100000000ull) EXPECT_EQ(m.dwTotalVirtual, 0xFFFFFFFFu);
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
