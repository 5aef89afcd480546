// The companion tamrix-etat.exe beside the real tamrix.exe, against Wine's real registry and
// C:\windows\system.ini: what it reports before and after the optimisers, and a backup taken
// before them that, imported with reg.exe, gives the machine back exactly as it was.
#include <gtest/gtest.h>

#include <memory>
#include <vector>

#include "e2e/Companion.h"
#include "e2e/Driver.h"
#include "e2e/Registry.h"
#include "e2e/RegistrySnapshot.h"

namespace tamrix::e2e {
namespace {

const HKEY CU = HKEY_CURRENT_USER, LM = HKEY_LOCAL_MACHINE;
const char* const kDesktop = "Control Panel\\Desktop";
const char* const kUpdate = "SYSTEM\\CurrentControlSet\\Control\\Update";
const char* const kDfrg = "SOFTWARE\\Microsoft\\Dfrg\\BootOptimizeFunction";
const char* const kInet = "Software\\Microsoft\\Windows\\CurrentVersion\\Internet Settings";
const char* const kTcpip = "SYSTEM\\CurrentControlSet\\Services\\Tcpip\\Parameters";
const char* const kRunKey = "SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Run";
// The keys the two shell toggles delete when unticked.
const char* const kPaintIcon = "Software\\CLASSES\\Paint.Picture\\DefaultIcon";
const char* const kOpenAsCommand = "*\\shell\\openas\\command\\rundll32.exe shell32.dll,OpenAs_RunDLL %1";

// A REGEDIT5 file's text: UTF-16 after its byte-order mark, in UTF-8 here; "<not UTF-16>" else.
std::string RegText(const std::string& bytes) {
  if (bytes.size() < 2 || bytes.substr(0, 2) != std::string("\xff\xfe", 2) || bytes.size() % 2) return "<not UTF-16>";
  std::wstring w(reinterpret_cast<const wchar_t*>(bytes.data() + 2), (bytes.size() - 2) / 2);
  return Utf8(w);
}

std::string WindowsDirectory() {
  char dir[MAX_PATH];
  UINT n = GetWindowsDirectoryA(dir, MAX_PATH);
  return std::string(dir, n);
}
std::string JsonText(const std::string& s) {
  std::string out;
  for (char c : s) {
    if (c == '\\') out += '\\';
    out += c;
  }
  return out;
}

// The state a JSON report gives one row of one catalogue.
std::string StateIn(const std::string& json, const std::string& title, const std::string& row) {
  std::size_t at = json.find("\"titre\": \"" + title + "\"");
  if (at == std::string::npos) return "<no catalogue " + title + ">";
  std::size_t end = json.find("\"titre\": ", at + 1);
  std::size_t found = json.find(row, at);
  if (found == std::string::npos || found > end) return "<no row " + row + ">";
  std::size_t s = json.find("\"etat\": \"", found) + 9;
  return json.substr(s, json.find('"', s) - s);
}
std::string RegRow(const std::string& key, const std::string& name) {
  return "\"cle\": \"" + JsonText(key) + "\", \"valeur\": \"" + name + "\"";
}
std::string IniRow(const std::string& section, const std::string& key) {
  return "\"section\": \"" + section + "\", \"cle\": \"" + key + "\"";
}

void SetSz(HKEY hive, const std::string& path, const std::string& name, const std::string& text) {
  HKEY k;
  ASSERT_EQ(RegOpenKeyExA(hive, path.c_str(), 0, KEY_SET_VALUE, &k), ERROR_SUCCESS) << path;
  RegSetValueExA(k, name.c_str(), 0, REG_SZ, reinterpret_cast<const BYTE*>(text.c_str()), static_cast<DWORD>(text.size() + 1));
  RegCloseKey(k);
}
void SetDword(HKEY hive, const std::string& path, const std::string& name, DWORD n) {
  HKEY k;
  ASSERT_EQ(RegOpenKeyExA(hive, path.c_str(), 0, KEY_SET_VALUE, &k), ERROR_SUCCESS) << path;
  RegSetValueExA(k, name.c_str(), 0, REG_DWORD, reinterpret_cast<const BYTE*>(&n), 4);
  RegCloseKey(k);
}
void SetRaw(HKEY hive, const std::string& path, const std::string& name, DWORD type, const std::string& bytes) {
  HKEY k;
  ASSERT_EQ(RegOpenKeyExA(hive, path.c_str(), 0, KEY_SET_VALUE, &k), ERROR_SUCCESS) << path;
  RegSetValueExA(k, name.c_str(), 0, type, reinterpret_cast<const BYTE*>(bytes.data()), static_cast<DWORD>(bytes.size()));
  RegCloseKey(k);
}
void SetWide(HKEY hive, const std::string& path, const std::wstring& name, const std::wstring& text) {
  HKEY k;
  ASSERT_EQ(RegOpenKeyExA(hive, path.c_str(), 0, KEY_SET_VALUE, &k), ERROR_SUCCESS) << path;
  RegSetValueExW(k, name.c_str(), 0, REG_SZ, reinterpret_cast<const BYTE*>(text.c_str()),
                 static_cast<DWORD>((text.size() + 1) * sizeof(wchar_t)));
  RegCloseKey(k);
}
void Clear(HKEY hive, const std::string& path, const std::string& name) {
  HKEY k;
  if (RegOpenKeyExA(hive, path.c_str(), 0, KEY_SET_VALUE, &k) != ERROR_SUCCESS) return;
  RegDeleteValueA(k, name.c_str());
  RegCloseKey(k);
}

struct Machine {
  Export user, machine;
  std::string systemIni;
};

class CompanionOnWine : public ::testing::Test {
 protected:
  void TearDown() override {
    if (app.Running()) EndProcess(app.Pid());
    // A scenario stopped half-way still leaves the catalogues as it found them.
    if (GetFileAttributesA(backup.c_str()) != INVALID_FILE_ATTRIBUTES) RunAndWait("reg.exe import \"" + backup + "\"");
    made.Restore();
    DeleteFileA(backup.c_str());
    DeleteFileA(backupIni.c_str());
  }
  Machine Take() { return {ExportBranch("HKCU"), ExportBranch("HKLM"), ReadWholeFile(systemIni.path()).value_or("<none>")}; }

  // The places whose keys this scenario makes sure of; the snapshot puts their values back and
  // removes the keys it had to make, whatever happens to the test.
  RegistrySnapshot made{{
      {CU, kDesktop, "MenuShowDelay"},
      {CU, kDesktop, "AutoEndTasks"},
      {CU, kDesktop, "WaitToKillAppTimeout"},
      {CU, kDesktop, "MinAnimate"},
      {CU, kDesktop, "HungAppTimeOut"},
      {LM, kUpdate, "UpDateMode"},
      {CU, kInet, "MaxConnectionsPerServer"},
      {CU, kInet, "MaxConnectionsPer1_0Server"},
      {LM, kTcpip, "DefaultTTL"},
      {LM, kTcpip, "TcpWindowSize"},
      {CU, kExplorer, "NoClose"},
      {CU, kExplorer, "NoDesktop"},
      {CU, kExplorer, "Norun"},
      {CU, kExplorer, "Nofind"},
      {CU, kExplorer, "NoFavoritesMenu"},
      {CU, kRestrictRun, "EnforceShellExtensionSecurity"},
      {CU, kDesktop, "WaitToKillServiceTimeOut"},
      {CU, kExplorer, "NoNetHood"},
      {LM, kRunKey, ""},
      {LM, kPaintIcon, ""},
      {CU, kOpenAsCommand, ""},
  }};
  FileGuard systemIni{WindowsDirectory() + "\\system.ini"};
  FileGuard config{ExeDirectory() + "\\config.dll"};
  std::string backup = TempPath("tamrix-avant.reg");
  std::string backupIni = TempPath("tamrix-avant.system.ini");
  App app;
};

TEST_F(CompanionOnWine, ABackupTakenBeforeTheOptimisersGivesTheRegistryAndSystemIniBackExactly) {
  // The machine before: some catalogue values stand with other data, some are absent, one key
  // is missing, and system.ini has keys of its own.
  made.CreateKeys();
  SetSz(CU, kDesktop, "MenuShowDelay", "400");
  SetSz(CU, kDesktop, "AutoEndTasks", "0");
  Clear(CU, kDesktop, "WaitToKillAppTimeout");
  // Values the backup carries in hex() lines: a text stored without its terminator, as the
  // program itself stores texts (Wine's ANSI functions give it out with one), an expandable text
  // with letters of the ANSI code page, and bytes.
  SetRaw(CU, kDesktop, "MinAnimate", REG_SZ, "1");
  SetRaw(CU, kDesktop, "HungAppTimeOut", REG_EXPAND_SZ, std::string("%SystemRoot%\\d\xe9j\xe0", 17));
  SetRaw(CU, kExplorer, "NoFavoritesMenu", REG_BINARY, std::string("\x01\x00\xff", 3));
  SetDword(LM, kUpdate, "UpDateMode", 3);
  SetDword(CU, kInet, "MaxConnectionsPerServer", 2);
  Clear(CU, kInet, "MaxConnectionsPer1_0Server");
  SetDword(LM, kTcpip, "DefaultTTL", 32);
  Clear(LM, kTcpip, "TcpWindowSize");
  SetDword(CU, kExplorer, "NoClose", 5);
  SetSz(CU, kExplorer, "NoDesktop", "1");
  SetDword(CU, kExplorer, "Norun", 1);
  Clear(CU, kExplorer, "Nofind");
  Clear(CU, kRestrictRun, "EnforceShellExtensionSecurity");
  // A REG_QWORD, a REG_MULTI_SZ, a text outside the ANSI code page in the Run key's default
  // value, and the two keys the toggles delete, with values of their own.
  SetRaw(CU, kDesktop, "WaitToKillServiceTimeOut", REG_QWORD, std::string("\x01\x02\x03\x04\x05\x06\x07\x08", 8));
  SetRaw(CU, kExplorer, "NoNetHood", REG_MULTI_SZ, std::string("un\0deux\0\0", 10));
  SetWide(LM, kRunKey, L"", L"subst.exe Y: \"C:\\\x0414\x043e\x043a\x0443\x043c\x0435\x043d\x0442\x044b\"");
  SetRaw(LM, kPaintIcon, "", REG_EXPAND_SZ, std::string("%SystemRoot%\\system32\\mspaint.exe,1\0", 37));
  SetDword(LM, kPaintIcon, "Taille", 32);
  SetSz(CU, kOpenAsCommand, "", "ouvrir avec");
  ASSERT_FALSE(KeyExists(LM, kDfrg));
  WriteWholeFile(systemIni.path(), "[boot]\r\nshell=Explorer.exe\r\n[386Enh]\r\nMaxBps=1200\r\n");
  DeleteFileA(config.path().c_str());
  Machine before = Take();
  const std::vector<Place> rawPlaces = {{CU, kDesktop, "MinAnimate"},         {CU, kDesktop, "HungAppTimeOut"},
                                        {CU, kExplorer, "NoFavoritesMenu"},    {CU, kDesktop, "WaitToKillServiceTimeOut"},
                                        {CU, kExplorer, "NoNetHood"},          {LM, kRunKey, ""},
                                        {LM, kPaintIcon, ""},                  {CU, kOpenAsCommand, ""}};
  std::vector<std::optional<StoredValue>> rawBefore;
  for (const Place& p : rawPlaces) rawBefore.push_back(ReadValue(p.hive, p.path, p.name));

  Output etatBefore = RunEtat("--json");
  ASSERT_EQ(etatBefore.code, 0u) << etatBefore.err;
  Output textBefore = RunEtat("");
  ASSERT_EQ(textBefore.code, 0u);
  Output saved = RunEtat("sauvegarde \"" + backup + "\"");
  ASSERT_EQ(saved.code, 0u) << saved.err;
  // The x86_64 companion on a 64-bit Windows names the 64-bit view, which the import is told of;
  // a 32-bit Windows has one view, and the import is told nothing.
  const std::string view = OnWindowsXp() ? "" : " /reg:64";
  EXPECT_NE(FromOem(saved.out).find("Pour tout remettre : reg import \"" + backup + "\"" + view + ", puis copiez \"" + backupIni +
                                    "\" sur \"" + systemIni.path() + "\"."),
            std::string::npos)
      << FromOem(saved.out);
  EXPECT_EQ(ReadWholeFile(backupIni).value_or("<none>"), before.systemIni);
  std::string reg = RegText(ReadWholeFile(backup).value_or(""));
  EXPECT_EQ(reg.rfind("Windows Registry Editor Version 5.00\r\n", 0), 0u) << reg.substr(0, 80);
  EXPECT_NE(reg.find("[HKEY_CURRENT_USER\\Software\\Microsoft\\Windows\\CurrentVersion\\Policies\\Explorer]\r\n"
                     "\"Nofind\"=-\r\n\"Norun\"=dword:00000001\r\n\"NoFavoritesMenu\"=hex:01,00,ff\r\n"),
            std::string::npos)
      << reg;
  EXPECT_NE(reg.find("\"NoDesktop\"=\"1\"\r\n"), std::string::npos);
  EXPECT_NE(reg.find("; [HKEY_LOCAL_MACHINE\\SOFTWARE\\Microsoft\\Dfrg\\BootOptimizeFunction] : clé absente, laissée absente\r\n"),
            std::string::npos)
      << "the missing key only noted";
  EXPECT_NE(reg.find("\"WaitToKillServiceTimeOut\"=hex(b):01,02,03,04,05,06,07,08\r\n"), std::string::npos) << reg;
  EXPECT_NE(reg.find("@=\"subst.exe Y: \\\"C:\\\\Документы\\\"\"\r\n"), std::string::npos) << reg;
  EXPECT_NE(reg.find("[-HKEY_LOCAL_MACHINE\\Software\\CLASSES\\Paint.Picture\\DefaultIcon]\r\n"), std::string::npos) << reg;
  EXPECT_TRUE(Changes(before.machine, ExportBranch("HKLM")).empty()) << "the backup wrote nothing";

  // The three catalogues through the real program.
  ASSERT_TRUE(app.Start());
  app.Click("TamrixCmd7");
  ASSERT_TRUE(WaitUntil([&] { return app.Shown("frmprot"); }));
  app.Click("ReyCommand2");
  auto box = app.WaitMessageBox();
  ASSERT_TRUE(box);
  App::Answer(*box, IDOK);
  app.Click("win");
  ASSERT_TRUE(WaitUntil([&] { return app.Shown("Frame1"); }));
  app.Click("command6");
  ASSERT_TRUE(WaitUntil([&] { return !IsWindowEnabled(app.Main()); }));  // every write made
  EndProcess(app.Pid());
  App again;
  ASSERT_TRUE(again.Start());
  again.Click("internet");
  ASSERT_TRUE(WaitUntil([&] { return again.Shown("Frame2") && again.Value("Modem1") == 1; }));
  again.Click("Command1");
  ASSERT_TRUE(WaitUntil([&] { return !IsWindowEnabled(again.Main()); }));
  EndProcess(again.Pid());
  // The two toggles that delete a key, ticked then unticked, and a permanent virtual drive.
  App third;
  ASSERT_TRUE(third.Start());
  third.Click("win");
  ASSERT_TRUE(WaitUntil([&] { return third.Shown("Frame1"); }));
  for (const char* toggle : {"box5", "box8"}) {
    int was = third.Value(toggle);
    third.Click(toggle);
    ASSERT_TRUE(WaitUntil([&] { return third.Value(toggle) != was; })) << toggle;
    if (third.Value(toggle) == 1) {
      third.Click(toggle);
      ASSERT_TRUE(WaitUntil([&] { return third.Value(toggle) == 0; })) << toggle;
    }
  }
  EXPECT_FALSE(KeyExists(LM, kPaintIcon)) << "unticking deleted it";
  EXPECT_FALSE(KeyExists(CU, kOpenAsCommand));
  std::string letter = third.Text("cmbLecteurDispo(0)");  // the first free one, from Z: down
  ASSERT_EQ(letter.size(), 2u);
  third.Click("chkCreerLecteurVirtuel");
  ASSERT_TRUE(WaitUntil([&] { return third.Value("chkCreerLecteurVirtuel") == 1; }));
  third.Click("cmdCheminVirtuel(1)");
  auto done = third.WaitMessageBox();
  ASSERT_TRUE(done);
  App::Answer(*done, IDOK);
  EXPECT_TRUE(ReadValue(LM, kRunKey, Lower(letter)).has_value()) << "the permanent drive's Run value";
  EndProcess(third.Pid());

  // What the companion says before and after.
  Output etatAfter = RunEtat("--json");
  ASSERT_EQ(etatAfter.code, 0u);
  struct Change {
    const char* title;
    std::string row;
    const char* before;
    const char* after;
  };
  const std::string win = "Optimiseur Windows : registre", ini = "Optimiseur Windows : system.ini",
                    modem = "Optimiseur Internet : modem", prot = "Protection : restrictions de l'utilisateur";
  const std::vector<Change> changes = {
      {win.c_str(), RegRow(kDesktop, "MenuShowDelay"), "different", "deja_ainsi"},
      {win.c_str(), RegRow(kDesktop, "AutoEndTasks"), "different", "deja_ainsi"},
      {win.c_str(), RegRow(kDesktop, "WaitToKillAppTimeout"), "absent", "deja_ainsi"},
      {win.c_str(), RegRow(kUpdate, "UpDateMode"), "different", "deja_ainsi"},
      {win.c_str(), RegRow(kDfrg, "Enable"), "cle_manquante", "cle_manquante"},
      {ini.c_str(), IniRow("386Enh", "MaxBps"), "different", "deja_ainsi"},
      {ini.c_str(), IniRow("386Enh", "32BitDiskAccess"), "absent", "deja_ainsi"},
      {ini.c_str(), IniRow("Ports", "COM4:"), "absent", "deja_ainsi"},
      {modem.c_str(), RegRow(kInet, "MaxConnectionsPerServer"), "different", "deja_ainsi"},
      {modem.c_str(), RegRow(kInet, "MaxConnectionsPer1_0Server"), "absent", "deja_ainsi"},
      {modem.c_str(), RegRow(kTcpip, "DefaultTTL"), "different", "deja_ainsi"},
      {modem.c_str(), RegRow(kTcpip, "TcpWindowSize"), "absent", "deja_ainsi"},
      {prot.c_str(), RegRow(kExplorer, "NoClose"), "different", "deja_ainsi"},
      {prot.c_str(), RegRow(kExplorer, "NoDesktop"), "different", "deja_ainsi"},
      {prot.c_str(), RegRow(kExplorer, "Nofind"), "absent", "deja_ainsi"},
      {prot.c_str(), RegRow(kExplorer, "Norun"), "deja_ainsi", "deja_ainsi"},
      {prot.c_str(), RegRow(kRestrictRun, "EnforceShellExtensionSecurity"), "absent", "deja_ainsi"},
  };
  for (const Change& c : changes) {
    EXPECT_EQ(StateIn(etatBefore.out, c.title, c.row), c.before) << c.title << " " << c.row;
    EXPECT_EQ(StateIn(etatAfter.out, c.title, c.row), c.after) << c.title << " " << c.row;
  }
  std::string textAfter = FromOem(RunEtat("").out);
  EXPECT_NE(FromOem(textBefore.out).find("  différent     HKCU\\Control Panel\\Desktop \"MenuShowDelay\" | écrirait \"0\" "
                                         "(REG_SZ) | a \"400\" (REG_SZ)\r\n"),
            std::string::npos)
      << FromOem(textBefore.out);
  EXPECT_NE(textAfter.find("  déjà ainsi    HKCU\\Control Panel\\Desktop \"MenuShowDelay\" | écrirait \"0\" (REG_SZ) | "
                           "a \"0\" (REG_SZ)\r\n"),
            std::string::npos)
      << textAfter;

  // Back as before: the backup imported by the system's reg.exe, system.ini copied back.
  EXPECT_EQ(RunAndWait("reg.exe import \"" + backup + "\"" + view), 0u);
  ASSERT_TRUE(CopyFileA(backupIni.c_str(), systemIni.path().c_str(), FALSE));
  Machine restored = Take();
  auto user = Changes(before.user, restored.user);
  EXPECT_TRUE(user.empty()) << user.begin()->first << " " << user.begin()->second;
  auto machine = Changes(before.machine, restored.machine);
  EXPECT_TRUE(machine.empty()) << machine.begin()->first << " " << machine.begin()->second;
  EXPECT_EQ(restored.systemIni, before.systemIni);
  // The values of other types and texts, byte for byte as the registry gives them out.
  for (std::size_t i = 0; i < rawPlaces.size(); ++i) {
    auto now = ReadValue(rawPlaces[i].hive, rawPlaces[i].path, rawPlaces[i].name);
    ASSERT_TRUE(now && rawBefore[i]) << rawPlaces[i].name;
    EXPECT_EQ(now->type, rawBefore[i]->type) << rawPlaces[i].name;
    EXPECT_EQ(now->bytes, rawBefore[i]->bytes) << rawPlaces[i].name;
  }
  EXPECT_EQ(RunEtat("--json").out, etatBefore.out) << "the companion sees the machine as before";
}

TEST_F(CompanionOnWine, BadInputGetsAFrenchSentenceCode2AndLeavesNothingBehind) {
  Output unknown = RunEtat("restaurer");
  EXPECT_EQ(unknown.code, 2u);
  EXPECT_TRUE(unknown.out.empty());
  EXPECT_EQ(FromOem(unknown.err).rfind("tamrix-etat : commande inconnue : \"restaurer\".\r\n", 0), 0u) << unknown.err;

  Output noName = RunEtat("sauvegarde");
  EXPECT_EQ(noName.code, 2u);
  EXPECT_EQ(FromOem(noName.err).rfind("tamrix-etat : il manque le nom du fichier de sauvegarde.\r\n", 0), 0u);

  std::string nowhere = TempPath("pas-de-dossier\\avant.reg");
  Output unwritable = RunEtat("sauvegarde \"" + nowhere + "\"");
  EXPECT_EQ(unwritable.code, 2u);
  EXPECT_EQ(FromOem(unwritable.err).rfind("tamrix-etat : impossible d'écrire \"" + nowhere + "\"", 0), 0u)
      << FromOem(unwritable.err);
  EXPECT_EQ(GetFileAttributesA(TempPath("pas-de-dossier").c_str()), INVALID_FILE_ATTRIBUTES);

  // A folder where the copy of system.ini goes: the .reg is not left behind either.
  CreateDirectoryA(backupIni.c_str(), nullptr);
  Output blocked = RunEtat("sauvegarde \"" + backup + "\"");
  EXPECT_EQ(blocked.code, 2u);
  EXPECT_EQ(GetFileAttributesA(backup.c_str()), INVALID_FILE_ATTRIBUTES);
  EXPECT_EQ(GetFileAttributesA((backup + ".partiel").c_str()), INVALID_FILE_ATTRIBUTES);
  EXPECT_EQ(GetFileAttributesA((backupIni + ".partiel").c_str()), INVALID_FILE_ATTRIBUTES);
  RemoveDirectoryA(backupIni.c_str());

  // system.ini itself, and anything in the Windows directory, whatever is said.
  std::string ini = ReadWholeFile(systemIni.path()).value_or("<none>");
  Output onIni = RunEtat("sauvegarde \"" + systemIni.path() + "\" --remplacer");
  EXPECT_EQ(onIni.code, 2u);
  EXPECT_EQ(ReadWholeFile(systemIni.path()).value_or("<none>"), ini);
  Output inWindows = RunEtat("sauvegarde \"" + WindowsDirectory() + "\\tamrix-sauvegarde.reg\"");
  EXPECT_EQ(inWindows.code, 2u);
  EXPECT_EQ(GetFileAttributesA((WindowsDirectory() + "\\tamrix-sauvegarde.reg").c_str()), INVALID_FILE_ATTRIBUTES);
}

TEST_F(CompanionOnWine, ASecondBackupNeverTakesTheFirstsPlaceUnlessToldAndNeverOverAReadOnlyCopy) {
  WriteWholeFile(systemIni.path(), "[386Enh]\r\nMaxBps=1200\r\n");
  ASSERT_EQ(RunEtat("sauvegarde \"" + backup + "\"").code, 0u);
  std::string first = ReadWholeFile(backup).value_or("<none>"), firstIni = ReadWholeFile(backupIni).value_or("<none>");
  ASSERT_EQ(firstIni, "[386Enh]\r\nMaxBps=1200\r\n");
  WriteWholeFile(systemIni.path(), "[386Enh]\r\nMaxBps=65530\r\n");

  Output again = RunEtat("sauvegarde \"" + backup + "\"");
  EXPECT_EQ(again.code, 2u);
  EXPECT_NE(FromOem(again.err).find("existe déjà : ajoutez --remplacer"), std::string::npos) << FromOem(again.err);
  EXPECT_EQ(ReadWholeFile(backup).value_or("<none>"), first);
  EXPECT_EQ(ReadWholeFile(backupIni).value_or("<none>"), firstIni);

  ASSERT_TRUE(SetFileAttributesA(backupIni.c_str(), FILE_ATTRIBUTE_READONLY));
  Output readOnly = RunEtat("sauvegarde \"" + backup + "\" --remplacer");
  EXPECT_EQ(readOnly.code, 2u);
  EXPECT_NE(FromOem(readOnly.err).find("est en lecture seule"), std::string::npos) << FromOem(readOnly.err);
  EXPECT_EQ(ReadWholeFile(backup).value_or("<none>"), first);
  EXPECT_EQ(ReadWholeFile(backupIni).value_or("<none>"), firstIni);
  SetFileAttributesA(backupIni.c_str(), FILE_ATTRIBUTE_NORMAL);

  Output replaced = RunEtat("sauvegarde \"" + backup + "\" --remplacer");
  EXPECT_EQ(replaced.code, 0u) << FromOem(replaced.err);
  EXPECT_EQ(ReadWholeFile(backupIni).value_or("<none>"), "[386Enh]\r\nMaxBps=65530\r\n");
}

}  // namespace
}  // namespace tamrix::e2e
