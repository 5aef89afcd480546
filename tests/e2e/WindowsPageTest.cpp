// The Windows page of the real tamrix.exe: the optimiser against Wine's real registry and
// C:\windows\system.ini, the shell toggles, and config.dll beside the executable.
#include <gtest/gtest.h>

#include <cstring>
#include <map>
#include <memory>

#include "contract/ExpectedCatalogues.h"
#include "e2e/Driver.h"
#include "e2e/Registry.h"
#include "e2e/RegistrySnapshot.h"

namespace tamrix::e2e {
namespace {

// The optimiser's rows and the toggles, written out by hand in the shared expectations.
using namespace expected::windows;
using namespace expected::toggles;
using expected::RegExpect;
const HKEY LM = HKEY_LOCAL_MACHINE;

std::string WindowsDirectory() {
  char dir[MAX_PATH];
  UINT n = GetWindowsDirectoryA(dir, MAX_PATH);
  return std::string(dir, n);
}

std::string ExeDirectory() {
  std::string exe = App::ExePath();
  return exe.substr(0, exe.find_last_of('\\'));
}

std::vector<Place> CataloguePlaces() {
  std::vector<Place> places;
  for (const auto& r : kRegistry) places.push_back({ToHkey(r.hive), r.path, r.name});
  // The toggles' places, so that a scenario leaves them as it found them.
  for (const auto& t : kToggles) places.push_back({ToHkey(t.hive), t.path, t.name});
  return places;
}

struct Exports {
  Export user, software, system;
  static Exports Take() { return {ExportBranch("HKCU"), ExportBranch("HKLM\\Software"), ExportBranch("HKLM\\System")}; }
};

std::map<std::string, std::string> Changes(const Exports& a, const Exports& b) {
  auto out = e2e::Changes(a.user, b.user);
  for (auto& kv : e2e::Changes(a.software, b.software)) out.insert(kv);
  for (auto& kv : e2e::Changes(a.system, b.system)) out.insert(kv);
  return out;
}

class WindowsOptimiserOnWine : public ::testing::Test {
 protected:
  void TearDown() override {
    if (app.Running()) EndProcess(app.Pid());
    snapshot->Restore();
  }
  void OpenPage() {
    ASSERT_TRUE(app.Start());
    app.Click("win");
    ASSERT_TRUE(WaitUntil([&] { return app.Shown("Frame1"); }));
  }
  // The click returns after every write; the first tick, half a second later, shuts the window.
  void OptimiseAndWaitForTheFirstTick() {
    app.Click("command6");
    ASSERT_TRUE(WaitUntil([&] { return !IsWindowEnabled(app.Main()); }, 10000));
  }
  std::unique_ptr<RegistrySnapshot> snapshot = std::make_unique<RegistrySnapshot>(CataloguePlaces());
  FileGuard systemIni{WindowsDirectory() + "\\system.ini"};
  FileGuard config{ExeDirectory() + "\\config.dll"};
  App app;
};

TEST_F(WindowsOptimiserOnWine, EveryRowLandsWithItsTypeAndDataAndNothingElseChanges) {
  snapshot->CreateKeys();
  snapshot->ClearValues();
  DeleteFileA(config.path().c_str());
  Exports before = Exports::Take();
  // The rows of HKLM\Software, by the name the system's own view gives the place where they must
  // not land: nothing may come there.
  std::map<std::string, bool> elsewhere;
  for (const RegExpect& r : kRegistry)
    if (ToHkey(r.hive) == LM && !WhereHklmDoesNotLand(r.path).empty())
      elsewhere[WhereHklmDoesNotLand(r.path) + "\\" + r.name] = ValueInSystemView(WhereHklmDoesNotLand(r.path), r.name);
  ASSERT_FALSE(elsewhere.empty()) << "the catalogue writes rows of HKLM\\Software";
  OpenPage();
  OptimiseAndWaitForTheFirstTick();

  // A 32-bit program's rows land under WOW6432Node on a 64-bit Windows, and in HKLM\Software
  // itself on a 32-bit one, which has no WOW6432Node at all.
  for (const RegExpect& r : kRegistry) {
    if (ToHkey(r.hive) != LM || WhereHklmDoesNotLand(r.path).empty()) continue;
    EXPECT_TRUE(ValueInSystemView(WhereHklmLands(r.path), r.name)) << WhereHklmLands(r.path) << " " << r.name;
    std::string other = WhereHklmDoesNotLand(r.path);
    EXPECT_EQ(ValueInSystemView(other, r.name), elsewhere[other + "\\" + r.name]) << other << " " << r.name;
  }
  if (OnWindowsXp()) {
    EXPECT_FALSE(KeyExists(LM, "SOFTWARE\\WOW6432Node")) << "a 32-bit Windows has one view of the registry";
  }

  for (const RegExpect& r : kRegistry) {
    auto v = ReadValue(ToHkey(r.hive), r.path, r.name);
    ASSERT_TRUE(v) << r.name;
    EXPECT_EQ(v->type, r.type) << r.name;
    EXPECT_EQ(AsRowData(*v), r.data) << r.name;
    if (r.type == REG_SZ) {
      EXPECT_EQ(v->bytes.size(), strlen(r.data)) << r.name << ": no terminator stored";
    }
  }

  // The show: the window stays shut, the caption climbs, the bar is out.
  ASSERT_TRUE(WaitUntil([&] { return app.Text("Label16") == "Règlage : Rapidité.."; }, 15000));
  EXPECT_TRUE(app.Shown("Label16"));
  EXPECT_TRUE(app.Shown("TamrixPBar1"));
  EXPECT_FALSE(IsWindowEnabled(app.Main()));
  Screenshot("windows-optimiser-show");
  ASSERT_TRUE(WaitUntil([&] { return IsWindowEnabled(app.Main()); }, 15000)) << "the show ends by itself";
  EXPECT_FALSE(app.Shown("Label16"));
  EXPECT_FALSE(app.Shown("TamrixPBar1"));
  EXPECT_EQ(app.Text("Label16"), "Règlage : Configuration..");
  EXPECT_FALSE(app.WaitMessageBox(1500)) << "the run ends in silence";
  Screenshot("windows-optimiser-done");

  auto changes = Changes(before, Exports::Take());
  for (const RegExpect& r : kRegistry) {
    std::string entry = EntryOf(ToHkey(r.hive), r.path, r.name);
    EXPECT_TRUE(changes.count(entry)) << entry;
    changes.erase(entry);
  }
  EXPECT_TRUE(changes.empty()) << "changed outside the catalogue: " << changes.begin()->first;
  EXPECT_FALSE(ReadWholeFile(config.path())) << "the optimiser leaves config.dll alone";
}

TEST_F(WindowsOptimiserOnWine, MissingKeysLoseTheirRowsAndNoKeyIsCreated) {
  snapshot->CreateKeys();
  const char* absent[] = {"System\\CurrentControlSet\\Control\\SessionManager\\Memory Managment",
                          "SOFTWARE\\Microsoft\\Dfrg\\BootOptimizeFunction"};
  for (const char* path : absent) DeleteTree(LM, path);
  OpenPage();
  OptimiseAndWaitForTheFirstTick();
  for (const char* path : absent) EXPECT_FALSE(KeyExists(LM, path)) << path;
  auto v = ReadValue(LM, "System\\CurrentControlSet\\control\\FileSystem\\CDFS", "Prefetch");
  ASSERT_TRUE(v);
  EXPECT_EQ(AsRowData(*v), "1792");
}

TEST_F(WindowsOptimiserOnWine, AbsentSystemIniIsMadeWithTheEightSectionsInOrderOfFirstNaming) {
  DeleteFileA(systemIni.path().c_str());
  OpenPage();
  OptimiseAndWaitForTheFirstTick();
  EXPECT_EQ(ReadWholeFile(systemIni.path()).value_or("<none>"), kFreshSystemIni);
}

TEST_F(WindowsOptimiserOnWine, ExistingSystemIniKeepsItsOwnSectionsAndGetsTheKeys) {
  WriteWholeFile(systemIni.path(), "[boot]\r\nshell=Explorer.exe\r\n[386Enh]\r\nMaxBps=1200\r\n[mci]\r\nMaxBps=1200\r\n");
  OpenPage();
  OptimiseAndWaitForTheFirstTick();
  std::string ini = ReadWholeFile(systemIni.path()).value_or("");
  EXPECT_EQ(ini.rfind("[boot]\r\nshell=Explorer.exe\r\n[386Enh]\r\nMaxBps=65530\r\n32BitDiskAccess=on\r\n", 0), 0u) << ini;
  EXPECT_NE(ini.find("[mci]\r\nMaxBps=1200\r\n[display]\r\n"), std::string::npos) << ini;
  char value[64];
  GetPrivateProfileStringA("Ports", "COM4:", "", value, sizeof value, systemIni.path().c_str());
  EXPECT_STREQ(value, "921600,n,8,1,x");
}

TEST_F(WindowsOptimiserOnWine, UntickingAfterTheRunWritesIntoSystemIniAndConfigDllKeepsItsOne) {
  WriteWholeFile(config.path(), "[opti]\r\nbmp=0\r\ndvd=0\r\nopen=0\r\n");
  OpenPage();
  ASSERT_EQ(app.Value("box5"), 0);
  app.Click("box5");
  ASSERT_TRUE(WaitUntil([&] { return app.Value("box5") == 1; }));
  EXPECT_EQ(ReadWholeFile(config.path()).value_or(""), "[opti]\r\nbmp=1\r\ndvd=0\r\nopen=0\r\n");
  OptimiseAndWaitForTheFirstTick();
  ASSERT_TRUE(WaitUntil([&] { return IsWindowEnabled(app.Main()); }, 20000));
  app.Click("box5");
  ASSERT_TRUE(WaitUntil([&] { return app.Value("box5") == 0; }));
  ASSERT_TRUE(WaitUntil([&] {
    return ReadWholeFile(systemIni.path()).value_or("").ends_with("COM4:=921600,n,8,1,x\r\n[opti]\r\nbmp=0\r\n");
  }));
  EXPECT_EQ(ReadWholeFile(config.path()).value_or(""), "[opti]\r\nbmp=1\r\ndvd=0\r\nopen=0\r\n");
}

// Quitting while the show runs: the timer simply stops with the window, and the program ends
// as it always does, with nothing left on the screen.
TEST_F(WindowsOptimiserOnWine, QuitButtonRightAfterTheClickEndsTheProgramWithTheShowStarted) {
  snapshot->CreateKeys();
  OpenPage();
  app.Click("command6");
  // The window stays open to the user until the first tick, half a second later.
  app.Click("TamrixCmd1");
  EXPECT_TRUE(app.WaitExit(15000));
  EXPECT_EQ(app.ExitCode(), 0u);
  // The click ran to its end before the quit: the catalogue is written.
  auto v = ReadValue(LM, "System\\CurrentControlSet\\control\\FileSystem\\CDFS", "Prefetch");
  ASSERT_TRUE(v);
  EXPECT_EQ(AsRowData(*v), "1792");
}

TEST_F(WindowsOptimiserOnWine, ClosingTheShutWindowWhileTheShowRunsEndsTheProgramCleanly) {
  OpenPage();
  OptimiseAndWaitForTheFirstTick();
  ASSERT_TRUE(WaitUntil([&] { return IsWindowVisible(app.Find("TamrixPBar1")) != FALSE; }, 5000));
  Screenshot("windows-show-running");
  // The user cannot reach a disabled window; the system can: the task list's "End task" and
  // the end of a session ask it to close.
  PostMessageA(app.Main(), WM_CLOSE, 0, 0);
  EXPECT_TRUE(app.WaitExit(15000));
  EXPECT_EQ(app.ExitCode(), 0u);
}

class ShellTogglesOnWine : public WindowsOptimiserOnWine {};

TEST_F(ShellTogglesOnWine, ConfigDllBesideTheExeHoldsOptiWithTheKeysInTheOrderFirstWritten) {
  WriteWholeFile(config.path(), "[opti]\r\nbmp=0\r\ndvd=0\r\nopen=0\r\n");
  Exports before = Exports::Take();
  OpenPage();
  EXPECT_EQ(app.Value("box5") + app.Value("box7") + app.Value("box8"), 0);
  DeleteFileA(config.path().c_str());
  app.Click("box8");
  ASSERT_TRUE(WaitUntil([&] { return app.Value("box8") == 1; }));
  app.Click("box5");
  ASSERT_TRUE(WaitUntil([&] { return app.Value("box5") == 1; }));
  app.Click("box7");
  auto notice = app.WaitMessageBox();
  ASSERT_TRUE(notice);
  EXPECT_EQ(notice->title, kDvdTitle);
  EXPECT_EQ(notice->text, kDvdText);
  Screenshot("windows-dvd-notice");
  App::Answer(*notice, IDOK);
  EXPECT_EQ(ReadWholeFile(config.path()).value_or("<none>"), "[opti]\r\nopen=1\r\nbmp=1\r\ndvd=1\r\n");
  // None of the three keys exists in this prefix: nothing is written and nothing is created.
  for (const auto& t : kToggles) EXPECT_FALSE(KeyExists(ToHkey(t.hive), t.path)) << t.path;
  auto changes = Changes(before, Exports::Take());
  EXPECT_TRUE(changes.empty()) << changes.begin()->first;

  app.Click("TamrixCmd1");
  ASSERT_TRUE(app.WaitExit());
  App again;
  ASSERT_TRUE(again.Start());
  EXPECT_EQ(again.Value("box5") + again.Value("box7") + again.Value("box8"), 0) << "unticked until the page opens";
  again.Click("win");
  ASSERT_TRUE(WaitUntil([&] { return again.Value("box5") + again.Value("box7") + again.Value("box8") == 3; }));
  again.Click("TamrixCmd1");
  again.WaitExit();
}

TEST_F(ShellTogglesOnWine, FirstVisitWithoutConfigDllShowsEveryBoxTicked) {
  DeleteFileA(config.path().c_str());
  OpenPage();
  EXPECT_EQ(app.Value("box5"), 1);
  EXPECT_EQ(app.Value("box7"), 1);
  EXPECT_EQ(app.Value("box8"), 1);
  EXPECT_FALSE(app.WaitMessageBox(1000)) << "no DVD notice from a tick set by the page";
  EXPECT_FALSE(ReadWholeFile(config.path()));
  Screenshot("windows-page");
}

TEST_F(ShellTogglesOnWine, StoredZeroKeepsItsBoxAndAMissingKeyTicksIt) {
  WriteWholeFile(config.path(), "[opti]\r\nbmp=0\r\ndvd=1\r\n");
  OpenPage();
  EXPECT_EQ(app.Value("box5"), 0);
  EXPECT_EQ(app.Value("box7"), 1);
  EXPECT_EQ(app.Value("box8"), 1);
}

TEST_F(ShellTogglesOnWine, TickingWritesTheValuesWhereTheKeysExist) {
  snapshot->CreateKeys();
  snapshot->ClearValues();
  WriteWholeFile(config.path(), "[opti]\r\nbmp=0\r\ndvd=0\r\nopen=0\r\n");
  OpenPage();
  app.Click("box5");
  app.Click("box8");
  ASSERT_TRUE(WaitUntil([&] { return app.Value("box8") == 1; }));
  app.Click("box7");
  auto notice = app.WaitMessageBox();
  ASSERT_TRUE(notice);
  App::Answer(*notice, IDOK);
  const auto& [bmpRow, dvdRow, openRow] = kToggles;
  auto Read = [](const expected::toggles::ToggleExpect& t) { return ReadValue(ToHkey(t.hive), t.path, t.name); };
  auto bmp = Read(bmpRow);
  auto dvd = Read(dvdRow);
  auto open = Read(openRow);
  ASSERT_TRUE(bmp && dvd && open);
  EXPECT_EQ(bmp->bytes, "%1");
  EXPECT_EQ(dvd->bytes, "yes");
  EXPECT_EQ(open->bytes, kOpenAsCommand);
  EXPECT_EQ(open->type, static_cast<DWORD>(REG_SZ));
  // Unticking: box7 writes "no"; box5 and box8 delete keys that aren't there, and the values stay.
  app.Click("box7");
  app.Click("box5");
  app.Click("box8");
  ASSERT_TRUE(WaitUntil([&] { return app.Value("box8") == 0; }));
  EXPECT_EQ(Read(dvdRow)->bytes, "no");
  EXPECT_EQ(Read(bmpRow)->bytes, "%1");
  EXPECT_EQ(Read(openRow)->bytes, kOpenAsCommand);
  EXPECT_EQ(ReadWholeFile(config.path()).value_or(""), "[opti]\r\nbmp=0\r\ndvd=0\r\nopen=0\r\n");
}

}  // namespace
}  // namespace tamrix::e2e
