// "tamrix-etat differences" beside the real tamrix.exe, against Wine's real registry and
// C:\windows\system.ini: a backup, then the Windows optimiser, the Internet optimiser, two
// Protection boxes and one shell toggle clicked, and the companion must list exactly what those
// clicks changed; after the backup is imported and system.ini copied back, nothing.
#include <gtest/gtest.h>

#include <cstdio>
#include <map>
#include <set>
#include <vector>

#include "contract/ExpectedCatalogues.h"
#include "e2e/Companion.h"
#include "e2e/Driver.h"
#include "e2e/Registry.h"
#include "e2e/RegistrySnapshot.h"

namespace tamrix::e2e {
namespace {

const HKEY CU = HKEY_CURRENT_USER;
const char* const kDesktop = "Control Panel\\Desktop";
constexpr bool k32Bit = sizeof(void*) == 4;

// The eighteen Protection rows, in writing order.
const char* const kProtection[18] = {"Nofind", "Norun", "NoFavoritesMenu", "NoNetHood", "NoDesktop", "ClearRecentDocsOnExit",
                                     "NoClose", "NoActiveDesktop", "NoWindowsUpdate", "NoLogOff", "NoDeletePrinter",
                                     "NoAddPrinter", "NoSetTaskbar", "NoStartBanner", "NoInternetIcon",
                                     "NoViewContextMenu", "NoFileSharingControl", "EnforceShellExtensionSecurity"};
const char* ProtectionKey(std::size_t i) { return i < 17 ? kExplorer : kRestrictRun; }

std::string WindowsDirectory() {
  char dir[MAX_PATH];
  UINT n = GetWindowsDirectoryA(dir, MAX_PATH);
  return std::string(dir, n);
}

// The key as a backup of this build's view names it: the 32-bit view of HKLM\Software under
// WOW6432Node, Software\Classes shared.
std::string KeyInBackup(HKey hive, const std::string& path) {
  std::string lower = Lower(path);
  std::string name = hive == expected::CU ? "HKEY_CURRENT_USER\\" : "HKEY_LOCAL_MACHINE\\";
  if (k32Bit && hive == expected::LM && lower.rfind("software\\", 0) == 0 && lower.rfind("software\\classes", 0) != 0)
    return name + path.substr(0, 9) + "WOW6432Node\\" + path.substr(9);
  return name + path;
}

std::string Data(std::uint32_t type, const std::string& data) {
  return type == REG_DWORD ? data + " (REG_DWORD)" : "\"" + data + "\" (REG_SZ)";
}

// The lines of a "differences" report, each after its group ("[key]" or "system.ini [section]")
// in lower case: "group | line". Headings, notes and the summary are not in it.
std::set<std::string> Listed(const std::string& out) {
  std::set<std::string> lines;
  std::string group;
  std::size_t start = 0;
  while (start < out.size()) {
    std::size_t end = out.find("\r\n", start);
    if (end == std::string::npos) end = out.size();
    std::string line = out.substr(start, end - start);
    start = end + 2;
    if (line.rfind("[", 0) == 0 || line.rfind("system.ini [", 0) == 0)
      group = Lower(line);
    else if (line.rfind("  ", 0) == 0 && !group.empty())
      lines.insert(group + " | " + line);
    else if (line.empty())
      group.clear();
  }
  return lines;
}

std::string Show(const std::set<std::string>& lines) {
  std::string s;
  for (const std::string& l : lines) s += "\n    " + l;
  return s;
}

class DifferencesOnWine : public ::testing::Test {
 protected:
  static std::vector<Place> Places() {
    std::vector<Place> places;
    for (const auto& r : expected::windows::kRegistry) places.push_back({ToHkey(r.hive), r.path, r.name});
    for (const auto& r : expected::internet::kModem) places.push_back({ToHkey(r.hive), r.path, r.name});
    for (const auto& r : expected::internet::kCommon) places.push_back({ToHkey(r.hive), r.path, r.name});
    for (std::size_t i = 0; i < 18; ++i) places.push_back({CU, ProtectionKey(i), kProtection[i]});
    places.push_back({HKEY_LOCAL_MACHINE, expected::toggles::kPaintIcon, ""});
    places.push_back({HKEY_LOCAL_MACHINE, expected::toggles::kPaint, "DefaultIcon"});
    return places;
  }
  void TearDown() override {
    if (app.Running()) EndProcess(app.Pid());
    made.Restore();
    DeleteFileA(backup.c_str());
    DeleteFileA(backupIni.c_str());
    DeleteFileA(exported.c_str());
  }
  // Output in UTF-8, as the console would show it.
  Output Etat(const std::string& arguments) {
    Output o = RunEtat(arguments);
    o.out = FromOem(o.out);
    o.err = FromOem(o.err);
    return o;
  }

  RegistrySnapshot made{Places()};
  FileGuard systemIni{WindowsDirectory() + "\\system.ini"};
  FileGuard config{ExeDirectory() + "\\config.dll"};
  std::string backup = TempPath("tamrix-differences.reg");
  std::string backupIni = TempPath("tamrix-differences.system.ini");
  std::string exported = TempPath("tamrix-export-bureau.reg");
  App app;
};

TEST_F(DifferencesOnWine, ListExactlyWhatTheClicksChangedSinceABackupAndNothingAfterItIsPutBack) {
  // Every key of the places there and every value absent, so that each write the clicks make
  // lands and shows; the Protection values at 0, so that only the two ticked boxes change them;
  // the key the bitmap toggle deletes with a value of its own; system.ini with a key of the
  // Windows optimiser at another value.
  made.CreateKeys();
  made.ClearValues();
  for (std::size_t i = 0; i < 18; ++i) {
    HKEY k;
    ASSERT_EQ(RegOpenKeyExA(CU, ProtectionKey(i), 0, KEY_SET_VALUE, &k), ERROR_SUCCESS);
    DWORD zero = 0;
    RegSetValueExA(k, kProtection[i], 0, REG_DWORD, reinterpret_cast<const BYTE*>(&zero), 4);
    RegCloseKey(k);
  }
  const std::string icon = "%SystemRoot%\\system32\\mspaint.exe,1";
  HKEY k;
  ASSERT_EQ(RegOpenKeyExA(HKEY_LOCAL_MACHINE, expected::toggles::kPaintIcon, 0, KEY_SET_VALUE, &k), ERROR_SUCCESS);
  RegSetValueExA(k, "", 0, REG_SZ, reinterpret_cast<const BYTE*>(icon.c_str()), static_cast<DWORD>(icon.size() + 1));
  RegCloseKey(k);
  WriteWholeFile(systemIni.path(), "[boot]\r\nshell=Explorer.exe\r\n[386Enh]\r\nMaxBps=1200\r\n");
  DeleteFileA(config.path().c_str());

  Output saved = Etat("sauvegarde \"" + backup + "\"");
  ASSERT_EQ(saved.code, 0u) << saved.err;
  Output before = Etat("differences \"" + backup + "\"");
  EXPECT_EQ(before.code, 0u) << before.out << before.err;

  // The shell toggle first, while the page's profile file is still config.dll: with no
  // config.dll the page shows the bitmap box ticked, and a click unticks it.
  ASSERT_TRUE(app.Start());
  app.Click("win");
  ASSERT_TRUE(WaitUntil([&] { return app.Shown("Frame1") && app.Value("box5") == 1; }));
  app.Click("box5");
  ASSERT_TRUE(WaitUntil([&] { return app.Value("box5") == 0; }));
  ASSERT_TRUE(WaitUntil([&] { return !KeyExists(HKEY_LOCAL_MACHINE, expected::toggles::kPaintIcon); }));
  app.Click("command6");
  ASSERT_TRUE(WaitUntil([&] { return !IsWindowEnabled(app.Main()); }));  // every write made
  EndProcess(app.Pid());
  App internet;
  ASSERT_TRUE(internet.Start());
  internet.Click("internet");
  ASSERT_TRUE(WaitUntil([&] { return internet.Shown("Frame2") && internet.Value("Modem1") == 1; }));
  internet.Click("Command1");
  ASSERT_TRUE(WaitUntil([&] { return !IsWindowEnabled(internet.Main()); }));
  EndProcess(internet.Pid());
  App protection;
  ASSERT_TRUE(protection.Start());
  protection.Click("TamrixCmd7");
  ASSERT_TRUE(WaitUntil([&] { return protection.Shown("frmprot"); }));
  for (const char* box : {"box1", "box2"}) {
    protection.Click(box);
    ASSERT_TRUE(WaitUntil([&] { return protection.Value(box) == 1; })) << box;
  }
  protection.Click("ReyCommand2");
  auto box = protection.WaitMessageBox();
  ASSERT_TRUE(box);
  App::Answer(*box, IDOK);
  EndProcess(protection.Pid());

  // What those clicks changed, from the catalogues' rows: every registry row of the Windows
  // optimiser and of the modem's Internet rows appeared (the speed the page passes on gives the
  // window 0, the modem's TTL is 64, the system's word for true is "Vrai"); the two ticked
  // Protection values went from 0 to 1; the bitmap toggle's key went with its value; every
  // system.ini key of the Windows optimiser appeared but MaxBps, which changed.
  std::set<std::string> expected;
  std::map<std::string, std::string> rows;  // place -> line; a place written twice shows its last data
  auto row = [&](const expected::RegExpect& r, const char* ttl) {
    std::string data = r.data;
    if (data == "TTL") data = ttl;
    if (data == "SPEED") data = "0";
    rows[Lower("[" + KeyInBackup(r.hive, r.path) + "]") + " | " + Lower(r.name)] =
        "  apparue   \"" + std::string(r.name) + "\" : absente du fichier, maintenant " + Data(r.type, data);
  };
  for (const auto& r : expected::windows::kRegistry) row(r, "");
  for (const auto& r : expected::internet::kModem) row(r, "64");
  for (const auto& r : expected::internet::kCommon) row(r, "64");
  for (const auto& [place, line] : rows) expected.insert(place.substr(0, place.find(" | ")) + " | " + line);
  std::string explorer = Lower("[HKEY_CURRENT_USER\\" + std::string(kExplorer) + "]");
  expected.insert(explorer + " | " + "  changée   \"Nofind\" : avant 0 (REG_DWORD), maintenant 1 (REG_DWORD)");
  expected.insert(explorer + " | " + "  changée   \"Norun\" : avant 0 (REG_DWORD), maintenant 1 (REG_DWORD)");
  std::string paint = Lower("[HKEY_LOCAL_MACHINE\\" + std::string(expected::toggles::kPaintIcon) + "]");
  expected.insert(paint + " | " + "  clé disparue : le fichier la remet, elle n'existe plus");
  expected.insert(paint + " | " + "  disparue  @ : avant \"" + icon + "\" (REG_SZ), maintenant absente");
  std::map<std::string, std::string> ini;
  for (const auto& r : expected::windows::kBeforeTimer) ini[Lower(r.section) + "|" + Lower(r.key)] = r.section;
  for (const auto& r : expected::windows::kAfterTimer) ini[Lower(r.section) + "|" + Lower(r.key)] = r.section;
  auto iniLine = [&](const expected::ProfileExpect& r) {
    std::string group = Lower("system.ini [" + std::string(r.section) + "]") + " | ";
    if (std::string(r.key) == "MaxBps") return group + "  changée   MaxBps : avant \"1200\", maintenant \"65530\"";
    return group + "  apparue   " + r.key + " : absente de la copie, maintenant \"" + r.value + "\"";
  };
  for (const auto& r : expected::windows::kBeforeTimer) expected.insert(iniLine(r));
  for (const auto& r : expected::windows::kAfterTimer) expected.insert(iniLine(r));

  Output after = Etat("differences \"" + backup + "\"");
  EXPECT_EQ(after.code, 1u) << after.err;
  std::printf("---- differences after the clicks ----\n%s---- (exit code %lu)\n", after.out.c_str(), after.code);
  std::set<std::string> listed = Listed(after.out);
  std::set<std::string> missing, extra;
  for (const std::string& l : expected)
    if (!listed.count(l)) missing.insert(l);
  for (const std::string& l : listed)
    if (!expected.count(l)) extra.insert(l);
  EXPECT_TRUE(missing.empty()) << "not listed:" << Show(missing);
  EXPECT_TRUE(extra.empty()) << "listed, not changed by the clicks:" << Show(extra);
  EXPECT_EQ(listed.size(), rows.size() + 4 + ini.size());
  EXPECT_EQ(after.out.rfind("Ce qui a changé depuis la sauvegarde \"" + backup + "\" sur cette machine.\r\n", 0), 0u);
  Output json = Etat("differences \"" + backup + "\" --json");
  EXPECT_EQ(json.code, 1u);
  EXPECT_NE(json.out.find("\"differences\": " + std::to_string(listed.size() - 1) + ","), std::string::npos)
      << "one line of the list is the key's own; " << json.out.substr(0, 300);

  // Back as it was: the backup imported as the companion says, system.ini copied back.
  std::size_t from = saved.out.find("Pour tout remettre : "), to = saved.out.find(", puis copiez");
  ASSERT_TRUE(from != std::string::npos && to != std::string::npos) << saved.out;
  std::string import = saved.out.substr(from + 21, to - from - 21);
  EXPECT_EQ(import, "reg import \"" + backup + "\"" + (k32Bit ? "" : " /reg:64"));
  EXPECT_EQ(RunAndWait(import), 0u) << import;
  ASSERT_TRUE(CopyFileA(backupIni.c_str(), systemIni.path().c_str(), FALSE));
  Output restored = Etat("differences \"" + backup + "\"");
  std::printf("---- differences after the restore ----\n%s---- (exit code %lu)\n", restored.out.c_str(), restored.code);
  EXPECT_EQ(restored.code, 0u) << restored.out;
  EXPECT_TRUE(Listed(restored.out).empty()) << Show(Listed(restored.out));
}

TEST_F(DifferencesOnWine, AFileThatRegExportWroteOfACatalogueKeyIsReadAndCompared) {
  made.CreateKeys();
  HKEY k;
  ASSERT_EQ(RegOpenKeyExA(CU, kDesktop, 0, KEY_SET_VALUE, &k), ERROR_SUCCESS);
  RegSetValueExA(k, "MenuShowDelay", 0, REG_SZ, reinterpret_cast<const BYTE*>("400"), 4);
  RegCloseKey(k);
  ASSERT_EQ(RunAndWait("reg.exe export \"HKCU\\Control Panel\\Desktop\" \"" + exported + "\" /y"), 0u);
  Output same = Etat("differences \"" + exported + "\"");
  EXPECT_EQ(same.code, 0u) << same.out << same.err;
  EXPECT_EQ(same.out.find("Lignes illisibles"), std::string::npos) << "reg export's every line reads: " << same.out;
  EXPECT_NE(same.out.find("=> aucune différence : "), std::string::npos) << same.out;

  ASSERT_EQ(RegOpenKeyExA(CU, kDesktop, 0, KEY_SET_VALUE, &k), ERROR_SUCCESS);
  RegSetValueExA(k, "MenuShowDelay", 0, REG_SZ, reinterpret_cast<const BYTE*>("0"), 1);
  RegCloseKey(k);
  Output changed = Etat("differences \"" + exported + "\"");
  EXPECT_EQ(changed.code, 1u);
  EXPECT_EQ(Listed(changed.out), (std::set<std::string>{
                                     "[hkey_current_user\\control panel\\desktop] | "
                                     "  changée   \"MenuShowDelay\" : avant \"400\" (REG_SZ), maintenant \"0\" (REG_SZ)"}))
      << changed.out;
  EXPECT_EQ(changed.out.rfind("Ce qui diffère du fichier \"" + exported + "\" sur cette machine.\r\n", 0), 0u) << changed.out;
}

TEST_F(DifferencesOnWine, BadInputGetsOneSentenceAndCode2) {
  Output missing = Etat("differences \"" + TempPath("pas-de-fichier.reg") + "\"");
  EXPECT_EQ(missing.code, 2u);
  EXPECT_EQ(missing.err, "tamrix-etat : le fichier \"" + TempPath("pas-de-fichier.reg") + "\" est introuvable ou illisible.\r\n");
  Output notReg = Etat("differences \"" + systemIni.path() + "\"");
  EXPECT_EQ(notReg.code, 2u);
  EXPECT_EQ(notReg.err.rfind("tamrix-etat : \"" + systemIni.path() + "\" n'est pas un fichier de l'Éditeur du Registre", 0), 0u)
      << notReg.err;
  // The accented word as a command prompt of the ANSI code page passes it.
  Output option = Etat("diff\xe9rences \"" + systemIni.path() + "\" --remplacer");
  EXPECT_EQ(option.code, 2u);
}

}  // namespace
}  // namespace tamrix::e2e
