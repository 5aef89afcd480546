// The Windows page of the real tamrix.exe: the optimiser against Wine's real registry and
// C:\windows\system.ini, the shell toggles, and config.dll beside the executable.
#include <gtest/gtest.h>

#include <cstring>
#include <map>
#include <memory>

#include "e2e/Driver.h"
#include "e2e/Registry.h"
#include "e2e/RegistrySnapshot.h"

namespace tamrix::e2e {
namespace {

struct Row {
  HKEY hive;
  const char* path;
  const char* name;
  DWORD type;
  const char* data;  // the text, or the number in decimal
};
const HKEY CU = HKEY_CURRENT_USER, LM = HKEY_LOCAL_MACHINE;
const Row kRegistry[21] = {
    {CU, "Control Panel\\Desktop", "WaitToKillAppTimeout", REG_SZ, "1000"},
    {LM, "SYSTEM\\CurrentControlSet\\Control", "WaitToKillAppTimeout", REG_SZ, "1000"},
    {CU, "Control Panel\\Desktop", "AutoEndTasks", REG_SZ, "1"},
    {CU, "Control Panel\\Desktop", "HungAppTimeOut", REG_SZ, "1000"},
    {LM, "SYSTEM\\CurrentControlSet\\Control", "HungAppTimeOut", REG_SZ, "1000"},
    {CU, "Control Panel\\Desktop", "MenuShowDelay", REG_SZ, "0"},
    {CU, "Control Panel\\Desktop", "WaitToKillServiceTimeOut", REG_SZ, "1"},
    {LM, "SYSTEM\\CurrentControlSet\\Control", "WaitToKillServiceTimeOut", REG_SZ, "1"},
    {LM, "SYSTEM\\CurrentControlSet\\Control\\Update", "UpDateMode", REG_DWORD, "7"},
    {LM, "SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Explorer", "AlwaysUnloadDll", REG_DWORD, "1"},
    {CU, "Control Panel\\Desktop", "MinAnimate", REG_SZ, "0"},
    {CU, "Control Panel\\Desktop", "SmoothScroll", REG_DWORD, "0"},
    {CU, "Control Panel\\Desktop\\WindowMetrics", "Shell Icon BPP", REG_SZ, "16"},
    {LM, "System\\CurrentControlSet\\Control\\SessionManager\\Memory Managment", "SecondLevelDataCache", REG_DWORD, "512"},
    {LM, "System\\CurrentControlSet\\Control\\FileSystem", "ContigFileAllocSize", REG_DWORD, "512"},
    {LM, "Software\\Microsoft\\Windows\\CurrentVersion\\Applets\\Defrag\\AppStartParams", "MaxApps", REG_DWORD, "120"},
    {LM, "System\\CurrentControlSet\\control\\FileSystem\\CDFS", "CacheSize", REG_DWORD, "2476"},
    {LM, "System\\CurrentControlSet\\control\\FileSystem\\CDFS", "Prefetch", REG_DWORD, "1792"},
    {LM, "Software\\Microsoft\\Windows\\CurrentVersion\\Applets\\Defrag\\AppStartParams", "MaxNoUseDays", REG_DWORD, "90"},
    {LM, "Software\\Microsoft\\Windows\\CurrentVersion\\Applets\\Defrag\\AppStartParams", "MinLogSize", REG_DWORD, "500"},
    {LM, "SOFTWARE\\Microsoft\\Dfrg\\BootOptimizeFunction", "Enable", REG_SZ, "Y"},
};

const char* const kFreshSystemIni =
    "[386Enh]\r\n32BitDiskAccess=on\r\n32BitFileAccess=on\r\nWindowUpdateTime=200\r\nVGAMonoText=off\r\n"
    "COM1Buffer=2048\r\nCom1Irq4Buffer=2048\r\nCom2Buffer=2048\r\nCom2Irq4Buffer=2048\r\nCOMBoostTime=1\r\n"
    "DMABufferSize=64\r\nDualDisplay=on\r\nMaxBps=65530\r\nMinSPs=128\r\nMinTimeSlice=40\r\nPageBuffers=32\r\n"
    "[display]\r\nBlockWrite=1\r\nDDC=1\r\nDevBmp=1\r\nFive6Five=1\r\nOutEngine=1\r\nVAD=0\r\n"
    "[vcache]\r\nCHUNKSIZE=4096\r\nMaxFileCache=16384\r\nMinFileCache=16384\r\n"
    "[Debug]\r\nDINPUT=0x00\r\nDMBAND=0\r\nDMCOMPOS=0\r\nDMIME=0\r\nDMLOADER=0\r\nDMSTYLE=0\r\nDMSYNTH=0\r\nDMUSIC=0\r\n"
    "[Direct3D]\r\ndebug=0\r\n"
    "[DirectDraw]\r\ndebug=0\r\nnohwblt=0\r\nnohwfill=0\r\nnohwtrans=0\r\n"
    "[DirectPlay]\r\ndebug=0\r\nBreakOnAssert=1\r\n"
    "[Ports]\r\nCOM1:=921600,n,8,1,x\r\nCOM2:=921600,n,8,1,x\r\nCOM3:=921600,n,8,1,x\r\nCOM4:=921600,n,8,1,x\r\n";

// The toggles' places, so that a scenario leaves them as it found them.
const Place kTogglePlaces[] = {
    {LM, "Software\\CLASSES\\Paint.Picture", "DefaultIcon"},
    {CU, "Software\\Microsoft\\MediaPlayer\\Player\\Settings", "EnableDVDUI"},
    {CU, "*\\shell\\openas", "command"},
};

const char* const kDvdText =
    "Le lecteur Windows Media Player dans sa version 6\r"
    "ne peut pas lire les DVD, mais avec Tamrix votre \r"
    "lecteur Media est dopté avec cette option .\r"
    "\r"
    "Pour voir le changement : \r"
    "Ouvrez Windows Media Player puis Cliquer sur \r"
    "fichier et un menu est ajouté : Ouvrir DVD\r"
    "   _____________________________________\r"
    "                     Orvane Interactive 2004";

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
  for (const auto& r : kRegistry) places.push_back({r.hive, r.path, r.name});
  for (const auto& p : kTogglePlaces) places.push_back(p);
  return places;
}

// What a value of the registry reads, as a row gives it.
std::string Shown(const StoredValue& v) {
  if (v.type == REG_DWORD && v.bytes.size() == 4) {
    DWORD d;
    memcpy(&d, v.bytes.data(), 4);
    return std::to_string(d);
  }
  return v.bytes;
}

// Entries that differ between two exports, without the ones Wine changes by itself.
std::map<std::string, std::string> Changes(const Export& before, const Export& after) {
  std::map<std::string, std::string> out;
  for (const auto& [k, v] : Difference(before, after)) {
    std::string key = Lower(k);
    if (key.find("hkey_current_user\\software\\wine\\") != std::string::npos) continue;
    if (key.find("\\control\\video\\") != std::string::npos || key.find("driverdatedata") != std::string::npos) continue;
    out[key] = v;
  }
  return out;
}

struct Exports {
  Export user, software, system;
  static Exports Take() { return {ExportBranch("HKCU"), ExportBranch("HKLM\\Software"), ExportBranch("HKLM\\System")}; }
};

std::map<std::string, std::string> Changes(const Exports& a, const Exports& b) {
  auto out = Changes(a.user, b.user);
  for (auto& kv : Changes(a.software, b.software)) out.insert(kv);
  for (auto& kv : Changes(a.system, b.system)) out.insert(kv);
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
  OpenPage();
  OptimiseAndWaitForTheFirstTick();

  for (const Row& r : kRegistry) {
    auto v = ReadValue(r.hive, r.path, r.name);
    ASSERT_TRUE(v) << r.name;
    EXPECT_EQ(v->type, r.type) << r.name;
    EXPECT_EQ(Shown(*v), r.data) << r.name;
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
  for (const Row& r : kRegistry) {
    std::string entry = EntryOf(r.hive, r.path, r.name);
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
  EXPECT_EQ(Shown(*v), "1792");
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
  EXPECT_EQ(notice->title, " Tamrix Corporation 2004");
  EXPECT_EQ(notice->text, kDvdText);
  Screenshot("windows-dvd-notice");
  App::Answer(*notice, IDOK);
  EXPECT_EQ(ReadWholeFile(config.path()).value_or("<none>"), "[opti]\r\nopen=1\r\nbmp=1\r\ndvd=1\r\n");
  // None of the three keys exists in this prefix: nothing is written and nothing is created.
  for (const auto& p : kTogglePlaces) EXPECT_FALSE(KeyExists(p.hive, p.path)) << p.path;
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
  auto bmp = ReadValue(LM, "Software\\CLASSES\\Paint.Picture", "DefaultIcon");
  auto dvd = ReadValue(CU, "Software\\Microsoft\\MediaPlayer\\Player\\Settings", "EnableDVDUI");
  auto open = ReadValue(CU, "*\\shell\\openas", "command");
  ASSERT_TRUE(bmp && dvd && open);
  EXPECT_EQ(bmp->bytes, "%1");
  EXPECT_EQ(dvd->bytes, "yes");
  EXPECT_EQ(open->bytes, "rundll32.exe shell32.dll,OpenAs_RunDLL %1");
  EXPECT_EQ(open->type, static_cast<DWORD>(REG_SZ));
  // Unticking: box7 writes "no"; box5 and box8 delete keys that aren't there, and the values stay.
  app.Click("box7");
  app.Click("box5");
  app.Click("box8");
  ASSERT_TRUE(WaitUntil([&] { return app.Value("box8") == 0; }));
  EXPECT_EQ(ReadValue(CU, "Software\\Microsoft\\MediaPlayer\\Player\\Settings", "EnableDVDUI")->bytes, "no");
  EXPECT_EQ(ReadValue(LM, "Software\\CLASSES\\Paint.Picture", "DefaultIcon")->bytes, "%1");
  EXPECT_EQ(ReadValue(CU, "*\\shell\\openas", "command")->bytes, "rundll32.exe shell32.dll,OpenAs_RunDLL %1");
  EXPECT_EQ(ReadWholeFile(config.path()).value_or(""), "[opti]\r\nbmp=0\r\ndvd=0\r\nopen=0\r\n");
}

}  // namespace
}  // namespace tamrix::e2e
