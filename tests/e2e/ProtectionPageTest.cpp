// The Protection page of the real tamrix.exe against Wine's real registry.
#include <gtest/gtest.h>

#include <vector>

#include "e2e/Driver.h"
#include "e2e/Registry.h"

namespace tamrix::e2e {
namespace {

struct Row {
  const char* box;
  const char* key;
  const char* value;
};
const std::vector<Row> kRows = {
    {"box1", kExplorer, "Nofind"},
    {"box2", kExplorer, "Norun"},
    {"box3", kExplorer, "NoFavoritesMenu"},
    {"Check1", kExplorer, "NoNetHood"},
    {"box4", kExplorer, "NoDesktop"},
    {"box6", kExplorer, "ClearRecentDocsOnExit"},
    {"box9", kExplorer, "NoClose"},
    {"box10", kExplorer, "NoActiveDesktop"},
    {"box11", kExplorer, "NoWindowsUpdate"},
    {"box12", kExplorer, "NoLogOff"},
    {"box13", kExplorer, "NoDeletePrinter"},
    {"box14", kExplorer, "NoAddPrinter"},
    {"box15", kExplorer, "NoSetTaskbar"},
    {"box16", kExplorer, "NoStartBanner"},
    {"box17", kExplorer, "NoInternetIcon"},
    {"box18", kExplorer, "NoViewContextMenu"},
    {"box19", kExplorer, "NoFileSharingControl"},
    {"box20", kRestrictRun, "EnforceShellExtensionSecurity"},
};

class ProtectionPage : public ::testing::Test {
 protected:
  void SetUp() override {
    DeleteTree(HKEY_CURRENT_USER, kRestrictRun);
    DeleteTree(HKEY_CURRENT_USER, kExplorer);
    CreateKey(HKEY_CURRENT_USER, kRestrictRun);
  }
  void TearDown() override {
    if (app.Running()) {
      app.Click("TamrixCmd1");
      app.WaitExit();
    }
    DeleteTree(HKEY_CURRENT_USER, kRestrictRun);
    DeleteTree(HKEY_CURRENT_USER, kExplorer);
  }
  void Open() {
    ASSERT_TRUE(app.Start());
    app.Click("TamrixCmd7");
    ASSERT_TRUE(WaitUntil([&] { return app.Shown("frmprot"); }));
  }
  App app;
};

TEST_F(ProtectionPage, NorunAddedWithRegTicksBox2OnOpening) {
  ASSERT_EQ(RunAndWait("reg.exe add \"HKCU\\" + std::string(kExplorer) + "\" /v Norun /t REG_DWORD /d 1 /f"), 0u);
  Open();
  EXPECT_EQ(app.Value("box2"), 1);
  for (const Row& r : kRows) {
    if (std::string(r.box) == "box2") continue;
    EXPECT_EQ(app.Value(r.box), 0) << r.box;
  }
  Screenshot("protection-page");
}

TEST_F(ProtectionPage, ApplyWritesTheEighteenValuesAndNothingElse) {
  Export userBefore = ExportBranch("HKCU");
  Export machineBefore = ExportBranch("HKLM\\Software");
  Open();
  const std::vector<std::string> ticked = {"box2", "Check1", "box16", "box20"};
  for (const auto& b : ticked) app.Click(b);
  ASSERT_TRUE(WaitUntil([&] { return app.Value("box20") == 1; }));
  Screenshot("protection-page-ticked");
  app.Click("ReyCommand2");
  auto box = app.WaitMessageBox();
  ASSERT_TRUE(box);
  EXPECT_EQ(box->title, " Tamrix Utility 3.0 Pro - Terminée");
  EXPECT_EQ(box->text, " Les options sont enregistrées avec succés ! \r\r Redémarrez votre Pc pour voir les changements.");
  Screenshot("protection-applied-message");
  App::Answer(*box, IDOK);

  for (const Row& r : kRows) {
    bool on = std::find(ticked.begin(), ticked.end(), r.box) != ticked.end();
    EXPECT_EQ(ValueType(HKEY_CURRENT_USER, r.key, r.value), std::optional<DWORD>(REG_DWORD)) << r.value;
    EXPECT_EQ(ReadDword(HKEY_CURRENT_USER, r.key, r.value), std::optional<DWORD>(on ? 1 : 0)) << r.value;
  }
  app.Click("TamrixCmd1");
  ASSERT_TRUE(app.WaitExit());

  auto userDiff = Difference(userBefore, ExportBranch("HKCU"));
  for (const Row& r : kRows) {
    std::string entry = "[HKEY_CURRENT_USER\\" + std::string(r.key) + "]\\\"" + r.value + "\"";
    ASSERT_TRUE(userDiff.count(entry)) << entry;
    userDiff.erase(entry);
  }
  EXPECT_TRUE(userDiff.empty()) << "changed outside the catalogue: " << userDiff.begin()->first;
  auto machineDiff = Difference(machineBefore, ExportBranch("HKLM\\Software"));
  EXPECT_TRUE(machineDiff.empty()) << machineDiff.begin()->first;
}

TEST_F(ProtectionPage, MissingRestrictRunKeyLosesItsRowInSilence) {
  DeleteTree(HKEY_CURRENT_USER, kRestrictRun);
  Open();
  app.Click("box20");
  app.Click("ReyCommand2");
  auto box = app.WaitMessageBox();
  ASSERT_TRUE(box);
  EXPECT_EQ(box->title, " Tamrix Utility 3.0 Pro - Terminée");
  App::Answer(*box, IDOK);
  EXPECT_FALSE(KeyExists(HKEY_CURRENT_USER, kRestrictRun));
  EXPECT_EQ(ValueType(HKEY_CURRENT_USER, kExplorer, "EnforceShellExtensionSecurity"), std::nullopt);
  EXPECT_EQ(ReadDword(HKEY_CURRENT_USER, kExplorer, "NoFileSharingControl"), std::optional<DWORD>(0));
}

TEST_F(ProtectionPage, MissingPoliciesKeyWritesNothingButStillThanks) {
  DeleteTree(HKEY_CURRENT_USER, kRestrictRun);
  DeleteTree(HKEY_CURRENT_USER, kExplorer);
  Open();
  app.Click("ReyCommand2");
  auto box = app.WaitMessageBox();
  ASSERT_TRUE(box);
  App::Answer(*box, IDOK);
  EXPECT_FALSE(KeyExists(HKEY_CURRENT_USER, kExplorer));
}

TEST_F(ProtectionPage, Win9xButtonWithoutItsRegsvr32SaysNothingAndTurnsOrange) {
  ASSERT_EQ(GetFileAttributesA("C:\\Windows\\System\\regsvr32.exe"), INVALID_FILE_ATTRIBUTES);
  Open();
  app.Click("Option9");
  auto box = app.WaitMessageBox();
  ASSERT_TRUE(box);
  EXPECT_EQ(box->title, "Avertissement");
  EXPECT_EQ(box->text,
            "Si la manipulation a bien fonctionné, vous devriez avoir un avertissement avec indiqué ceci: "
            "DllUnregisterServer dans c:\\windows\\system\\regwizc.dll réussi");
  Screenshot("protection-confirm-9x");
  App::Answer(*box, IDOK);
  EXPECT_TRUE(WaitUntil([&] { return app.ForeColor("Option9") == 0x80FF; }));
  EXPECT_FALSE(app.WaitMessageBox(1500)) << "no failure message";
  Screenshot("protection-option9-orange");
}

TEST_F(ProtectionPage, CancelOnWinNtRunsNothingAndStillTurnsOrange) {
  Open();
  app.Click("Option10");
  auto box = app.WaitMessageBox();
  ASSERT_TRUE(box);
  EXPECT_EQ(box->title, "Avertissement");
  App::Answer(*box, IDCANCEL);
  EXPECT_TRUE(WaitUntil([&] { return app.ForeColor("Option10") == 0x80FF; }));
  EXPECT_FALSE(app.WaitMessageBox(1500));
}

TEST_F(ProtectionPage, WinNtButtonStartsRegsvr32WithoutWaitingAndTurnsOrange) {
  Open();
  app.Click("Option10");
  auto box = app.WaitMessageBox();
  ASSERT_TRUE(box);
  App::Answer(*box, IDOK);
  EXPECT_TRUE(WaitUntil([&] { return app.ForeColor("Option10") == 0x80FF; }));
  EXPECT_FALSE(app.WaitMessageBox(1500)) << "a command that starts brings no message of ours";
  Screenshot("protection-option10-orange");
}

TEST_F(ProtectionPage, WinNtButtonWithoutRegsvr32ShowsTheFailureAndKeepsItsColour) {
  const char* program = "C:\\Windows\\System32\\regsvr32.exe";
  const char* aside = "C:\\Windows\\System32\\regsvr32.exe.aside";
  ASSERT_TRUE(MoveFileExA(program, aside, MOVEFILE_REPLACE_EXISTING));
  Open();
  COLORREF before = app.ForeColor("Option10");
  app.Click("Option10");
  auto confirm = app.WaitMessageBox();
  ASSERT_TRUE(confirm);
  EXPECT_EQ(confirm->title, "Avertissement");
  EXPECT_EQ(confirm->text,
            "Si la manipulation a bien fonctionné, vous devriez avoir un avertissement avec indiqué ceci: "
            "DllUnregisterServer dans c:\\windows\\system32\\regwizc.dll réussi");
  App::Answer(*confirm, IDOK);
  auto failure = app.WaitMessageBox();
  MoveFileExA(aside, program, MOVEFILE_REPLACE_EXISTING);
  ASSERT_TRUE(failure);
  EXPECT_EQ(failure->title, "Tamrix Corporation");
  EXPECT_EQ(failure->text, " Fichier introuvable, vérifier votre sytème d'éxploitation");
  Screenshot("protection-failure-nt");
  App::Answer(*failure, IDOK);
  EXPECT_EQ(app.ForeColor("Option10"), before);
}

}  // namespace
}  // namespace tamrix::e2e
