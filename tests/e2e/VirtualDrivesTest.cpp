// Virtual drives in the real tamrix.exe: the letter lists; with Wine's own subst.exe the
// messages, the Run value of a permanent drive and its removal, a registry export before and
// after showing nothing else changed; and with a witness in subst.exe's place, the command lines
// as the started program receives them, hidden, from tamrix.exe itself, not waited for.
// Wine 8's own subst.exe is a stub that maps nothing, so where a drive must really be there the
// test maps it itself, as subst.exe does on Windows.
#include <gtest/gtest.h>

#include <cstring>
#include <fstream>
#include <map>
#include <memory>
#include <vector>

#include "e2e/Driver.h"
#include "e2e/Registry.h"
#include "e2e/RegistrySnapshot.h"

namespace tamrix::e2e {
namespace {

using Items = std::vector<std::string>;

constexpr const char* kRun = "SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Run";

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

bool Exists(const std::string& path) { return GetFileAttributesA(path.c_str()) != INVALID_FILE_ATTRIBUTES; }

// The letters of the drives that exist now, as Windows lists them.
std::string DriveLetters() {
  std::string letters;
  DWORD mask = GetLogicalDrives();
  for (int i = 0; i < 26; ++i)
    if (mask & (1u << i)) letters += static_cast<char>('A' + i);
  return letters;
}

class VirtualDrivesOnWine : public ::testing::Test {
 protected:
  void SetUp() override {
    snapshot.CreateKeys();
    snapshot.ClearValues();
  }
  void TearDown() override {
    if (app.Running()) EndProcess(app.Pid());
    if (!mapped.empty()) DefineDosDeviceA(DDD_REMOVE_DEFINITION, mapped.c_str(), nullptr);
    snapshot.Restore();
  }
  // A drive for the letter, on the folder, that Windows lists among its drives.
  void MapDrive(const std::string& drive, const std::string& folder) {
    ASSERT_TRUE(DefineDosDeviceA(0, drive.c_str(), folder.c_str()));
    mapped = drive;
    ASSERT_NE(DriveLetters().find(drive[0]), std::string::npos) << drive << " isn't among the drives";
  }
  void OpenPage() {
    ASSERT_TRUE(app.Start());
    app.Click("win");
    ASSERT_TRUE(WaitUntil([&] { return app.Shown("Frame1"); }));
  }
  // "..." and the browser's OK on the folder it opens on; the text box then shows that folder.
  std::string ChooseFolder() {
    app.Click("cmdCheminVirtuel(0)");
    auto browser = app.WaitMessageBox();
    EXPECT_TRUE(browser.has_value());
    if (!browser) return {};
    Screenshot("virtual-drive-folder-browser");
    App::Answer(*browser, IDOK);
    EXPECT_TRUE(WaitUntil([&] { return !app.Text("txtChemLecteur").empty(); }));
    return app.Text("txtChemLecteur");
  }
  void ExpectBox(const char* text) {
    auto box = app.WaitMessageBox();
    ASSERT_TRUE(box.has_value());
    EXPECT_EQ(box->title, "Tamrix Utility");
    EXPECT_EQ(box->text, text);
    Reds icon = RedAndBlue(App::BoxIcon(*box));
    EXPECT_GT(icon.blue, icon.total / 10) << "the information icon is blue";
    EXPECT_EQ(icon.red, 0);
    EXPECT_EQ(GetDlgItem(box->hwnd, IDCANCEL), nullptr);
    App::Answer(*box, IDOK);
  }
  RegistrySnapshot snapshot{{{HKEY_LOCAL_MACHINE, kRun, "y:"}, {HKEY_LOCAL_MACHINE, kRun, "x:"}}};
  App app;
  std::string letter, mapped;
};

TEST_F(VirtualDrivesOnWine, ListsOfferTheFreeLettersFromZDownAndAllTwentySix) {
  OpenPage();
  std::string drives = DriveLetters();
  Items free, all;
  for (char c = 'Z'; c >= 'A'; --c) {
    all.push_back(std::string(1, c) + ":");
    if (drives.find(c) == std::string::npos) free.push_back(std::string(1, c) + ":");
  }
  EXPECT_EQ(app.Items("cmbLecteurDispo(0)"), free);
  EXPECT_EQ(app.Selection("cmbLecteurDispo(0)"), 0);
  EXPECT_EQ(app.Items("cmbLecteurDispo(1)"), all);
  EXPECT_EQ(app.Selection("cmbLecteurDispo(1)"), 0);
}

TEST_F(VirtualDrivesOnWine, PermanentDriveWritesItsRunValueAndRemovalWithDemarrageTakesItAway) {
  OpenPage();
  Items free = app.Items("cmbLecteurDispo(0)");
  ASSERT_FALSE(free.empty());
  letter = free[0];  // the first free letter, from Z down
  std::string folder = ChooseFolder();
  ASSERT_FALSE(folder.empty());
  app.Click("chkCreerLecteurVirtuel");
  ASSERT_TRUE(WaitUntil([&] { return app.Value("chkCreerLecteurVirtuel") == 1; }));
  Screenshot("windows-page-virtual-drives");

  Exports before = Exports::Take();
  // Wine's subst.exe maps nothing, so the drive is made here, as subst.exe makes it on Windows:
  // from now on a list filled again would lose the letter.
  MapDrive(letter, folder);
  app.Click("cmdCheminVirtuel(1)");
  ExpectBox("Création termninée avec succès !");

  // The lower-case name, the command with the list's upper-case letter.
  std::string name = Lower(letter);
  auto value = ReadValue(HKEY_LOCAL_MACHINE, kRun, name);
  ASSERT_TRUE(value.has_value());
  EXPECT_EQ(value->type, static_cast<DWORD>(REG_SZ));
  EXPECT_EQ(AsRowData(*value), "subst.exe " + letter + " \"" + folder + "\"");
  auto changed = Changes(before, Exports::Take());
  EXPECT_EQ(changed.size(), 1u);
  EXPECT_EQ(changed.count(EntryOf(HKEY_LOCAL_MACHINE, kRun, name)), 1u);
  for (const auto& [entry, line] : changed)
    if (entry != EntryOf(HKEY_LOCAL_MACHINE, kRun, name)) ADD_FAILURE() << "changed too: " << entry << " " << line;

  // The letter stays on offer until the next start, though the drive is there.
  EXPECT_EQ(app.Items("cmbLecteurDispo(0)"), free);
  app.Click("command3");
  ASSERT_TRUE(WaitUntil([&] { return !app.Shown("Frame1"); }));
  app.Click("win");
  ASSERT_TRUE(WaitUntil([&] { return app.Shown("Frame1"); }));
  EXPECT_EQ(app.Items("cmbLecteurDispo(0)"), free) << "the page shown again keeps its lists";

  app.Choose("cmbLecteurDispo(1)", 'Z' - letter[0]);
  ASSERT_TRUE(WaitUntil([&] { return app.Text("cmbLecteurDispo(1)") == letter; }));
  app.Click("TamrixCB1");
  ASSERT_TRUE(WaitUntil([&] { return app.Value("TamrixCB1") == 1; }));
  app.Click("cmdCheminVirtuel(2)");
  ExpectBox("Suppression termninée avec succès !");
  EXPECT_EQ(app.Items("cmbLecteurDispo(0)"), free);
  EXPECT_FALSE(ReadValue(HKEY_LOCAL_MACHINE, kRun, name).has_value());
  EXPECT_TRUE(Changes(before, Exports::Take()).empty());
}

TEST_F(VirtualDrivesOnWine, RemovalWithoutDemarrageKeepsTheRunValue) {
  OpenPage();
  letter = app.Items("cmbLecteurDispo(0)").at(0);
  std::string folder = ChooseFolder();
  app.Click("chkCreerLecteurVirtuel");
  ASSERT_TRUE(WaitUntil([&] { return app.Value("chkCreerLecteurVirtuel") == 1; }));
  app.Click("cmdCheminVirtuel(1)");
  ExpectBox("Création termninée avec succès !");

  app.Choose("cmbLecteurDispo(1)", 'Z' - letter[0]);
  ASSERT_TRUE(WaitUntil([&] { return app.Text("cmbLecteurDispo(1)") == letter; }));
  app.Click("cmdCheminVirtuel(2)");
  ExpectBox("Suppression termninée avec succès !");
  auto value = ReadValue(HKEY_LOCAL_MACHINE, kRun, Lower(letter));
  ASSERT_TRUE(value.has_value()) << "the drive comes back at the next log-on";
  EXPECT_EQ(AsRowData(*value), "subst.exe " + letter + " \"" + folder + "\"");
}

// A REG_SZ value as the 64-bit view of the registry has it, whatever this test program's width.
std::optional<std::string> ReadIn64BitView(const std::string& path, const std::string& name) {
  HKEY key;
  if (RegOpenKeyExA(HKEY_LOCAL_MACHINE, path.c_str(), 0, KEY_READ | KEY_WOW64_64KEY, &key) != ERROR_SUCCESS)
    return std::nullopt;
  char data[1024];
  DWORD size = sizeof data, type = 0;
  LONG rc = RegQueryValueExA(key, name.c_str(), nullptr, &type, reinterpret_cast<BYTE*>(data), &size);
  RegCloseKey(key);
  if (rc != ERROR_SUCCESS || type != REG_SZ) return std::nullopt;
  return std::string(data, strnlen(data, size));
}

// In a 64-bit prefix, as on 64-bit Windows, the i686 program runs under WoW64 and its
// HKLM\Software rows land under WOW6432Node, where 64-bit programs don't look; the x86_64
// program's land where they are named. In the Windows XP prefix, a 32-bit system, there is one
// view and the i686 program's rows land where they are named.
TEST_F(VirtualDrivesOnWine, PermanentDriveRunValueLandsInTheRegistryViewOfTheProgramsWidth) {
  OpenPage();
  letter = app.Items("cmbLecteurDispo(0)").at(0);
  std::string folder = ChooseFolder();
  app.Click("chkCreerLecteurVirtuel");
  ASSERT_TRUE(WaitUntil([&] { return app.Value("chkCreerLecteurVirtuel") == 1; }));
  app.Click("cmdCheminVirtuel(1)");
  ExpectBox("Création termninée avec succès !");

  const std::string name = Lower(letter), command = "subst.exe " + letter + " \"" + folder + "\"";
  const std::string named = kRun, redirected = "SOFTWARE\\WOW6432Node\\Microsoft\\Windows\\CurrentVersion\\Run";
  BOOL wow64 = FALSE;
  ASSERT_TRUE(IsWow64Process(GetCurrentProcess(), &wow64));
  if (OnWindowsXp()) {
    // A 32-bit Windows: one view, the value where it is named.
    EXPECT_FALSE(wow64) << "no WoW64 on a 32-bit Windows";
    EXPECT_FALSE(KeyExists(HKEY_LOCAL_MACHINE, "SOFTWARE\\WOW6432Node"));
    EXPECT_EQ(ReadIn64BitView(named, name), command);
  } else if (sizeof(void*) == 4) {
    EXPECT_TRUE(wow64) << "the 32-bit program runs under WoW64 in a 64-bit prefix";
    EXPECT_EQ(ReadIn64BitView(redirected, name), command);
    EXPECT_EQ(ReadIn64BitView(named, name), std::nullopt);
  } else {
    EXPECT_FALSE(wow64);
    EXPECT_EQ(ReadIn64BitView(named, name), command);
    EXPECT_EQ(ReadIn64BitView(redirected, name), std::nullopt);
  }
}

// subst.exe found beside the program, before the system's: the witness.
class VirtualDrivesWithWitness : public VirtualDrivesOnWine {
 protected:
  void SetUp() override {
    VirtualDrivesOnWine::SetUp();
    std::string dir = ExeDirectory();
    stand = dir + "\\subst.exe";
    started = dir + "\\witness-started.txt";
    ended = dir + "\\witness-ended.txt";
    ASSERT_TRUE(CopyFileA((dir + "\\subst_witness.exe").c_str(), stand.c_str(), FALSE));
    Forget();
  }
  void TearDown() override {
    VirtualDrivesOnWine::TearDown();
    WaitUntil([&] { return DeleteFileA(stand.c_str()) != 0 || !Exists(stand); }, 10000);
    Forget();
  }
  void Forget() {
    DeleteFileA(started.c_str());
    DeleteFileA(ended.c_str());
  }
  // What the witness wrote: command line, STARTF_USESHOWWINDOW, show command, parent.
  std::vector<std::string> Started() {
    std::ifstream in(started, std::ios::binary);
    std::vector<std::string> lines;
    std::string line;
    while (std::getline(in, line)) lines.push_back(line);
    return lines;
  }
  static std::string ExeDirectory() {
    std::string exe = App::ExePath();
    return exe.substr(0, exe.find_last_of('\\'));
  }
  std::string stand, started, ended;
};

TEST_F(VirtualDrivesWithWitness, CreateAndRemoveStartSubstHiddenFromTheProgramItselfWithoutWaiting) {
  OpenPage();
  letter = app.Items("cmbLecteurDispo(0)").at(0);
  std::string folder = ChooseFolder();
  app.Click("cmdCheminVirtuel(1)");
  auto box = app.WaitMessageBox();
  ASSERT_TRUE(box.has_value());
  EXPECT_EQ(box->text, "Création termninée avec succès !");
  ASSERT_TRUE(WaitUntil([&] { return Started().size() == 4; }));
  EXPECT_FALSE(Exists(ended)) << "the message came while subst.exe still ran";
  std::vector<std::string> seen = Started();
  EXPECT_EQ(seen[0], "subst.exe " + letter + " \"" + folder + "\"");
  EXPECT_EQ(seen[1], "1");  // the show command is given
  EXPECT_EQ(seen[2], "0");  // SW_HIDE
  EXPECT_EQ(seen[3], std::to_string(app.Pid())) << "no shell between";
  App::Answer(*box, IDOK);
  ASSERT_TRUE(WaitUntil([&] { return Exists(ended); }, 10000));

  Forget();
  app.Choose("cmbLecteurDispo(1)", 'Z' - letter[0]);
  ASSERT_TRUE(WaitUntil([&] { return app.Text("cmbLecteurDispo(1)") == letter; }));
  app.Click("cmdCheminVirtuel(2)");
  box = app.WaitMessageBox();
  ASSERT_TRUE(box.has_value());
  EXPECT_EQ(box->text, "Suppression termninée avec succès !");
  ASSERT_TRUE(WaitUntil([&] { return Started().size() == 4; }));
  EXPECT_FALSE(Exists(ended));
  seen = Started();
  EXPECT_EQ(seen[0], "subst.exe /D " + letter);
  EXPECT_EQ(seen[2], "0");
  EXPECT_EQ(seen[3], std::to_string(app.Pid()));
  App::Answer(*box, IDOK);
  WaitUntil([&] { return Exists(ended); }, 10000);
}

TEST_F(VirtualDrivesWithWitness, CreateWithNoFolderChosenEndsInTwoQuotes) {
  OpenPage();
  letter = app.Items("cmbLecteurDispo(0)").at(0);
  app.Click("cmdCheminVirtuel(1)");
  auto box = app.WaitMessageBox();
  ASSERT_TRUE(box.has_value());
  EXPECT_EQ(box->text, "Création termninée avec succès !");
  ASSERT_TRUE(WaitUntil([&] { return Started().size() == 4; }));
  EXPECT_EQ(Started()[0], "subst.exe " + letter + " \"\"");
  App::Answer(*box, IDOK);
  WaitUntil([&] { return Exists(ended); }, 10000);
}

}  // namespace
}  // namespace tamrix::e2e
