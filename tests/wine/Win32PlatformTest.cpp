// The platform operations against Wine's real services, in the French prefix of the tests.
#include <windows.h>

#include <gtest/gtest.h>

#include <cctype>
#include <cstring>

#include "platform/Runtime.h"
#include "platform/win32/Win32Platform.h"

namespace tamrix::win32 {
namespace {

TEST(Win32Platform, FrenchRegionalSettingsGiveTheCommaAndVrai) {
  Win32Platform p;
  EXPECT_EQ(p.DecimalSign(), ',');
  EXPECT_EQ(p.BooleanText(true), "Vrai");
  EXPECT_EQ(p.BooleanText(false), "Faux");
}

TEST(Win32Platform, WindowsDirectoryComesWithItsLength) {
  Win32Platform p;
  std::string dir;
  std::uint32_t n = p.GetWindowsDirectoryA(&dir, 128);
  EXPECT_EQ(n, dir.size());
  EXPECT_STRCASEEQ(dir.c_str(), "C:\\windows");
  std::string small;
  EXPECT_GT(p.GetWindowsDirectoryA(&small, 4), 4u);  // too small: the size needed
}

// The fake gives the same for a directory longer than the program's buffer of 128.
TEST(Win32Platform, ATooSmallBufferComesBackAsZerosOfItsSizeWithTheSizeNeeded) {
  Win32Platform p;
  char own[MAX_PATH] = {};
  UINT length = ::GetWindowsDirectoryA(own, MAX_PATH);
  ASSERT_GT(length, 4u);
  std::string buffer = "left over";
  EXPECT_EQ(p.GetWindowsDirectoryA(&buffer, 4), length + 1);
  EXPECT_EQ(buffer, std::string(4, '\0'));
  length = ::GetSystemDirectoryA(own, MAX_PATH);
  buffer = "left over";
  EXPECT_EQ(p.GetSystemDirectoryA(&buffer, 4), length + 1);
  EXPECT_EQ(buffer, std::string(4, '\0'));
}

// A buffer just the directory's length leaves no room for its end: too small, as the fake has it.
TEST(Win32Platform, ABufferJustTheDirectorysLengthIsTooSmall) {
  Win32Platform p;
  char own[MAX_PATH] = {};
  const UINT windows = ::GetWindowsDirectoryA(own, MAX_PATH);
  std::string buffer = "left over";
  EXPECT_EQ(p.GetWindowsDirectoryA(&buffer, windows), windows + 1);
  EXPECT_EQ(buffer, std::string(windows, '\0'));
  EXPECT_EQ(p.GetWindowsDirectoryA(&buffer, windows + 1), windows);
  EXPECT_EQ(buffer.substr(0, windows), std::string(own, windows));
  const UINT system = ::GetSystemDirectoryA(own, MAX_PATH);
  EXPECT_EQ(p.GetSystemDirectoryA(&buffer, system), system + 1);
  EXPECT_EQ(buffer, std::string(system, '\0'));
}

TEST(Win32Platform, DriveLettersAreThoseThePrefixMaps) {
  Win32Platform p;
  // The drive strings list the same drives, one "X:\\" root each.
  char roots[512] = {};
  DWORD n = GetLogicalDriveStringsA(sizeof roots, roots);
  std::string expected;
  for (const char* r = roots; r < roots + n && *r; r += strlen(r) + 1) expected += static_cast<char>(toupper(*r));
  EXPECT_EQ(p.LogicalDriveLetters(), expected);
  // A new prefix maps C: to drive_c and Z: to the root of the Unix side.
  EXPECT_NE(expected.find('C'), std::string::npos);
  EXPECT_NE(expected.find('Z'), std::string::npos);
}

TEST(Win32Platform, VersionRecordOfSize148IsFilled) {
  Win32Platform p;
  OsVersion v = p.GetVersionExA(148);
  EXPECT_TRUE(v.ok);
  EXPECT_EQ(v.platformId, 2u);  // the NT family, as the prefix is set up
}

TEST(Win32Platform, MemoryStatusFitsThirtyTwoBits) {
  Win32Platform p;
  MemoryStatus m = p.GlobalMemoryStatus(32);
  EXPECT_EQ(m.dwLength, 32u);
  EXPECT_GT(m.dwTotalPhys, 0u);
  EXPECT_LE(m.dwAvailPhys, m.dwTotalPhys);
}

TEST(Win32Platform, ProfileStringsRoundTripThroughARealFile) {
  Win32Platform p;
  char temp[MAX_PATH];
  GetTempPathA(MAX_PATH, temp);
  std::string path = std::string(temp) + "tamrix-profile-test.ini";
  DeleteFileA(path.c_str());
  EXPECT_TRUE(p.WritePrivateProfileStringA("opti", "bmp", "1", path));
  std::string value;
  EXPECT_EQ(p.GetPrivateProfileStringA("opti", "bmp", "", &value, 255, path), 1u);
  EXPECT_EQ(value, "1");
  EXPECT_EQ(p.GetPrivateProfileStringA("opti", "missing", "", &value, 255, path), 0u);
  EXPECT_EQ(value, "");
  DeleteFileA(path.c_str());
}

TEST(Win32Platform, AppPathIsTheExecutablesFolderWithoutSeparator) {
  Win32Platform p;
  std::string dir = p.AppPath();
  ASSERT_FALSE(dir.empty());
  EXPECT_NE(dir.back(), '\\');
  char exe[MAX_PATH];
  GetModuleFileNameA(nullptr, exe, MAX_PATH);
  EXPECT_EQ(std::string(exe).rfind(dir + "\\", 0), 0u);
}

TEST(Win32Platform, StartingAMissingProgramIsRunTimeError53) {
  Win32Platform p;
  try {
    p.StartProcess("C:\\Windows\\System\\regsvr32.exe -u c:\\windows\\system\\regwizc.dll", ShowCommand::MinimizedActive);
    FAIL() << "no fault";
  } catch (const RuntimeError& e) {
    EXPECT_EQ(e.Number(), 53);
  }
}

}  // namespace
}  // namespace tamrix::win32
