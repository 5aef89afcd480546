// The hardware operations of the platform against Wine's own: volumes, drive types, the
// current directory, WMI through its locator, the priority class, the event pump and the
// regional month names, in the French prefix of the tests.
#include <windows.h>

#include <gtest/gtest.h>

#include "platform/Runtime.h"
#include "platform/win32/Win32Platform.h"

namespace tamrix::win32 {
namespace {

TEST(Win32Hardware, VolumeOfDriveCIsWhatTheSystemSays) {
  Win32Platform p;
  std::string name, fs;
  std::uint32_t serial = 0;
  ASSERT_TRUE(p.GetVolumeInformationA("C:\\", &name, &serial, &fs));
  char expectedName[MAX_PATH] = {}, expectedFs[MAX_PATH] = {};
  DWORD expectedSerial = 0;
  ASSERT_TRUE(GetVolumeInformationA("C:\\", expectedName, MAX_PATH, &expectedSerial, nullptr, nullptr, expectedFs,
                                    MAX_PATH));
  EXPECT_EQ(name, expectedName);
  EXPECT_EQ(fs, expectedFs);
  EXPECT_EQ(serial, expectedSerial);
  EXPECT_EQ(p.GetDriveTypeA("C:\\"), static_cast<std::uint32_t>(DRIVE_FIXED));
}

TEST(Win32Hardware, FreeSpaceOfDriveCHasATotalAboveItsFreePart) {
  Win32Platform p;
  std::uint64_t caller = 0, total = 0, free = 0;
  ASSERT_TRUE(p.GetDiskFreeSpaceExA("C:\\", &caller, &total, &free));
  EXPECT_GT(total, 0u);
  EXPECT_LE(caller, total);
}

TEST(Win32Hardware, ADriveThatIsNotThereFailsWithoutAnyBox) {
  Win32Platform p;
  std::string letters = p.LogicalDriveLetters();
  char missing = 'Q';
  while (letters.find(missing) != std::string::npos) ++missing;
  std::string root = std::string(1, missing) + ":\\";
  std::string name, fs;
  std::uint32_t serial = 0;
  std::uint64_t a = 0, b = 0, c = 0;
  EXPECT_FALSE(p.GetVolumeInformationA(root, &name, &serial, &fs));
  EXPECT_FALSE(p.GetDiskFreeSpaceExA(root, &a, &b, &c));
  EXPECT_EQ(p.GetDriveTypeA(root), static_cast<std::uint32_t>(DRIVE_NO_ROOT_DIR));
}

TEST(Win32Hardware, CurrentDirectoryStartsWithItsDriveLetter) {
  Win32Platform p;
  char expected[MAX_PATH] = {};
  GetCurrentDirectoryA(MAX_PATH, expected);
  EXPECT_EQ(p.GetCurrentDirectoryA(), expected);
}

TEST(Win32Hardware, TheBiosQueryAnswersAndLacksStatusAsWinesWmiDoes) {
  Win32Platform p;
  auto wmi = p.WmiGetObject("Winmgmts:");
  WmiObjects bios = wmi->ExecQuery(
      "SELECT Name,BiosCharacteristics,SMBIOSPresent,SMBIOSMajorVersion,SMBIOSMinorVersion,Version,SMBIOSBIOSVersion,"
      "ListOfLanguages,Description,CurrentLanguage,Manufacturer,Status FROM Win32_BIOS");
  ASSERT_EQ(bios.size(), 1u);
  WmiValue maker = bios[0]->Get("Manufacturer");
  EXPECT_EQ(maker.type, WmiValue::Type::Text);
  EXPECT_NE(maker.text, "");
  EXPECT_EQ(bios[0]->Get("SMBIOSMajorVersion").type, WmiValue::Type::Integer);
  EXPECT_EQ(bios[0]->Get("CurrentLanguage").type, WmiValue::Type::Null);
  try {
    bios[0]->Get("Status");
    FAIL() << "Wine's Win32_BIOS has a Status now: the BIOS buttons' road on Wine changes";
  } catch (const RuntimeError& e) {
    EXPECT_EQ(e.Number(), 438);
  }
}

TEST(Win32Hardware, ProcessorsComeFromInstancesOfWithTheirNames) {
  Win32Platform p;
  auto wmi = p.WmiGetObject("winmgmts:{impersonationLevel=impersonate}");
  auto walk = wmi->InstancesOf("Win32_Processor");
  WmiObjects cpus;
  while (auto cpu = walk->Next()) cpus.push_back(cpu);
  EXPECT_EQ(walk->Next(), nullptr);  // past the end it stays at the end
  ASSERT_GE(cpus.size(), 1u);
  EXPECT_EQ(cpus[0]->Get("name").type, WmiValue::Type::Text);
  EXPECT_EQ(cpus[0]->Get("DeviceID").text, "CPU0");
  EXPECT_EQ(cpus[0]->Get("AddressWidth").type, WmiValue::Type::Integer);
}

TEST(Win32Hardware, AQueryWinesWmiCannotReadIsAnAutomationError) {
  Win32Platform p;
  auto wmi = p.WmiGetObject("Winmgmts:");
  EXPECT_THROW(wmi->ExecQuery("SELECT FROM WHERE"), RuntimeError);
}

TEST(Win32Hardware, AMonikerThatIsNotWmisFailsToBind) {
  Win32Platform p;
  EXPECT_THROW(p.WmiGetObject("notwmi:"), RuntimeError);
}

TEST(Win32Hardware, ThePriorityRaiseReachesTheProcess) {
  Win32Platform p;
  DWORD before = GetPriorityClass(GetCurrentProcess());
  ASSERT_TRUE(p.SetPriorityClass(p.GetCurrentProcess(), HIGH_PRIORITY_CLASS));
  EXPECT_EQ(GetPriorityClass(GetCurrentProcess()), static_cast<DWORD>(HIGH_PRIORITY_CLASS));
  SetPriorityClass(GetCurrentProcess(), before);
}

TEST(Win32Hardware, TheEventPumpRunsWaitingMessagesAndLeavesTheQuitForTheLoop) {
  Win32Platform p;
  PostThreadMessageA(GetCurrentThreadId(), WM_USER + 7, 0, 0);
  p.DoEvents();
  MSG msg;
  EXPECT_FALSE(PeekMessageA(&msg, nullptr, WM_USER + 7, WM_USER + 7, PM_REMOVE)) << "the pump took it";
  PostQuitMessage(3);
  p.DoEvents();
  ASSERT_TRUE(PeekMessageA(&msg, nullptr, WM_QUIT, WM_QUIT, PM_REMOVE));
  EXPECT_EQ(msg.wParam, 3u);
}

TEST(Win32Hardware, FrenchMonthNamesAndDayFirstDates) {
  Win32Platform p;
  EXPECT_EQ(p.MonthName(3), "mars");
  EXPECT_EQ(p.MonthName(8), "août");
  EXPECT_EQ(p.MonthName(12), "décembre");
  EXPECT_EQ(p.ShortDateOrder(), 1);
  EXPECT_EQ(rt::FormatDateText("15/03/2005", "DD - mmmm - YYYY", p), "15 - mars - 2005");
}

}  // namespace
}  // namespace tamrix::win32
