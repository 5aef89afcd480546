// The i686 tamrix.exe on the system its title names: a 32-bit Windows XP, in a prefix of its own
// (TAMRIX_E2E_SYSTEM=xp). What differs from a 64-bit Windows: the system's version and name on
// the Windows page, one view of the registry, and the companion's "--vue" with nothing to choose.
#include <gtest/gtest.h>

#include "e2e/Companion.h"
#include "e2e/Driver.h"
#include "e2e/Registry.h"
#include "e2e/RegistrySnapshot.h"

namespace tamrix::e2e {
namespace {

const char* const kCvNt = "SOFTWARE\\Microsoft\\Windows NT\\CurrentVersion";

std::string Sz(HKEY hive, const std::string& path, const std::string& name) {
  HKEY k;
  if (RegOpenKeyExA(hive, path.c_str(), 0, KEY_QUERY_VALUE, &k) != ERROR_SUCCESS) return "<no key>";
  char data[512] = {};
  DWORD size = sizeof data - 1, type = 0;
  LONG s = RegQueryValueExA(k, name.c_str(), nullptr, &type, reinterpret_cast<BYTE*>(data), &size);
  RegCloseKey(k);
  if (s != ERROR_SUCCESS || type != REG_SZ) return "<no text>";
  return data;
}

class WindowsXp : public ::testing::Test {
 protected:
  void SetUp() override {
    if (!OnWindowsXp()) GTEST_SKIP() << "for the Windows XP prefix (TAMRIX_E2E_SYSTEM=xp)";
  }
  void TearDown() override {
    if (app.Running()) {
      app.Click("TamrixCmd1");
      if (!app.WaitExit()) EndProcess(app.Pid());
    }
  }
  App app;
};

TEST_F(WindowsXp, TheSystemIsA32BitWindowsXpWithOneViewOfTheRegistry) {
  OSVERSIONINFOA v{};
  v.dwOSVersionInfoSize = sizeof v;
  ASSERT_TRUE(GetVersionExA(&v));
  EXPECT_EQ(v.dwPlatformId, static_cast<DWORD>(VER_PLATFORM_WIN32_NT));
  EXPECT_EQ(v.dwMajorVersion, 5u);
  EXPECT_EQ(v.dwMinorVersion, 1u);
  EXPECT_EQ(Sz(HKEY_LOCAL_MACHINE, kCvNt, "ProductName"), "Microsoft Windows XP");
  EXPECT_EQ(Sz(HKEY_LOCAL_MACHINE, kCvNt, "CurrentVersion"), "5.1");
  BOOL wow64 = TRUE;
  ASSERT_TRUE(IsWow64Process(GetCurrentProcess(), &wow64));
  EXPECT_FALSE(wow64);
  EXPECT_FALSE(KeyExists(HKEY_LOCAL_MACHINE, "SOFTWARE\\WOW6432Node"));
  SYSTEM_INFO native{};
  GetNativeSystemInfo(&native);
  EXPECT_EQ(native.wProcessorArchitecture, PROCESSOR_ARCHITECTURE_INTEL);
}

TEST_F(WindowsXp, TheHomePageShowsAndTheWindowsPageNamesWindowsXpAndItsVersion) {
  ASSERT_TRUE(app.Start());
  // The memory monitor has filled its lines.
  ASSERT_TRUE(WaitUntil([&] { return app.Text("lcd3").find(" Mo") != std::string::npos; })) << app.Text("lcd3");
  Screenshot("xp-home-page");
  app.Click("sys");
  ASSERT_TRUE(WaitUntil([&] { return app.Shown("fwindows") && app.Shown("Frame3"); }));
  ASSERT_TRUE(WaitUntil([&] { return app.Text("t3").find("Inconnu") == std::string::npos; }, 5000)) << app.Text("t3");
  EXPECT_EQ(app.Text("t3"), "Système d'exploitation:            Microsoft Windows XP");
  EXPECT_EQ(app.Text("t4"), "Version du Windows:                 5.1");
  Screenshot("xp-windows-page");
}

const char* const kOneView =
    "tamrix-etat : ce Windows n'a qu'une vue du registre (Windows 32 bits) : --vue n'y change rien.\r\n";

TEST_F(WindowsXp, TheCompanionSaysTheViewAskedForChangesNothingAndGivesTheState) {
  for (const char* asked : {"32", "64"}) {
    Output etat = RunEtat(std::string("--vue ") + asked);
    EXPECT_EQ(etat.code, 0u) << asked << ": " << etat.err;
    EXPECT_EQ(FromOem(etat.err), kOneView) << asked;
    EXPECT_NE(FromOem(etat.out).find("HKCU\\Control Panel\\Desktop \"MenuShowDelay\""), std::string::npos)
        << asked << ": " << FromOem(etat.out).substr(0, 400);
  }
  Output plain = RunEtat("");
  EXPECT_EQ(plain.code, 0u);
  EXPECT_EQ(plain.err, "") << "without the option nothing is said";
}

}  // namespace
}  // namespace tamrix::e2e
