#include <gtest/gtest.h>

#include "fake/FakePlatform.h"
#include "forms/Form1.h"

namespace tamrix {
namespace {

using Calls = std::vector<std::string>;

const char* const kExplorer = "Software\\Microsoft\\Windows\\CurrentVersion\\Policies\\Explorer";
const char* const kRestrictRun = "Software\\Microsoft\\Windows\\CurrentVersion\\Policies\\Explorer\\RestrictRun";

// The catalogue as it must stand, written out here so that a slip in the data is caught:
// box, caption, value name, key, place in the order of reading.
struct Expected {
  const char* box;
  const char* caption;
  const char* valueName;
  const char* key;
  int readPlace;
};
const Expected kCatalogue[18] = {
    {"box1", "Rechercher", "Nofind", kExplorer, 2},
    {"box2", "Exécuter", "Norun", kExplorer, 1},
    {"box3", "Favoris", "NoFavoritesMenu", kExplorer, 3},
    {"Check1", "Voisinage Réseaux", "NoNetHood", kExplorer, 12},
    {"box4", "Icônes du Bureau", "NoDesktop", kExplorer, 4},
    {"box6", "Documents récents", "ClearRecentDocsOnExit", kExplorer, 5},
    {"box9", "Boutton Arrêter", "NoClose", kExplorer, 6},
    {"box10", "Active desktop", "NoActiveDesktop", kExplorer, 7},
    {"box11", "Windows update", "NoWindowsUpdate", kExplorer, 8},
    {"box12", "Changer de session", "NoLogOff", kExplorer, 9},
    {"box13", "Supprimer Imprimante", "NoDeletePrinter", kExplorer, 10},
    {"box14", "Ajout Imprimante", "NoAddPrinter", kExplorer, 11},
    {"box15", "Config Barre de tâche", "NoSetTaskbar", kExplorer, 13},
    {"box16", "Ecran d'accueil Windows", "NoStartBanner", kExplorer, 14},
    {"box17", "Iexplorer du  bureau ", "NoInternetIcon", kExplorer, 15},
    {"box18", "Menus contextuels ", "NoViewContextMenu", kExplorer, 16},
    {"box19", "Partage de fichiers ", "NoFileSharingControl", kExplorer, 17},
    {"box20", "Fichier non enregistrés", "EnforceShellExtensionSecurity", kRestrictRun, 18},
};

struct ProtectionFixture : ::testing::Test {
  fake::FakePlatform p;
  Form1 form{p};
  ProtectionPage& page = form.protection;
  void SetUp() override {
    form.Load();
    p.CreateKey(hive::CurrentUser, kExplorer);
    p.CreateKey(hive::CurrentUser, kRestrictRun);
    p.ClearCalls();
  }
  TamrixCB& Box(const char* name) { return *static_cast<TamrixCB*>(FindControl(form, name)); }
  void Open() { form.TamrixCmd7.Click(); }
  void Apply() { page.ReyCommand2.Click(); }
  int Ticked() {
    int n = 0;
    for (const auto& row : kCatalogue) n += Box(row.box).Value();
    return n;
  }
};

TEST_F(ProtectionFixture, CatalogueRowsStandInWritingOrder) {
  ASSERT_EQ(ProtectionPage::kRows.size(), 18u);
  for (int i = 0; i < 18; ++i) {
    SCOPED_TRACE(kCatalogue[i].box);
    const auto& row = ProtectionPage::kRows[i];
    EXPECT_EQ(&(page.*row.box), &Box(kCatalogue[i].box));
    EXPECT_STREQ(row.valueName, kCatalogue[i].valueName);
    EXPECT_STREQ(row.keyPath, kCatalogue[i].key);
    EXPECT_EQ(row.readPlace, kCatalogue[i].readPlace);
    EXPECT_EQ(Box(kCatalogue[i].box).Caption(), kCatalogue[i].caption);
    EXPECT_EQ(Box(kCatalogue[i].box).Parent(), &page.TamrixFrm6);
  }
}

TEST_F(ProtectionFixture, PageWordsStandAsDesigned) {
  EXPECT_EQ(page.frmprot.Caption(), " Protection Pc : ");
  EXPECT_EQ(page.TamrixFrm6.Caption(), "Cochez les options à cacher");
  EXPECT_EQ(page.ReyCommand2.Caption(), "&Appliquer");
  EXPECT_EQ(page.Label4.Caption(), "Le redémarrage est obligatoire pour appliquer les changements");
  EXPECT_EQ(page.Option10.Caption(), "Win NT");
  EXPECT_EQ(page.Option9.Caption(), "Win9.x");
  EXPECT_EQ(page.Label15.Caption(), "Enlever les éspions de Microsoft");
  EXPECT_EQ(page.Option9.design().backStyle, 0);
  EXPECT_EQ(page.Option10.design().backStyle, 0);
}

TEST_F(ProtectionFixture, AllBoxesStartUnticked) { EXPECT_EQ(Ticked(), 0); }

TEST_F(ProtectionFixture, OpeningReadsInTheOrderOfReading) {
  Open();
  Calls opened;
  for (const auto& c : p.calls)
    if (c.rfind("RegQueryValueExA", 0) == 0) opened.push_back(c);
  Calls expected(18);
  for (const auto& row : kCatalogue) expected[row.readPlace - 1] = "RegQueryValueExA(key," + std::string(row.valueName) + ",no buffer)";
  EXPECT_EQ(opened, expected);
}

TEST_F(ProtectionFixture, NorunSetToOneTicksBox2) {
  p.SetDword(hive::CurrentUser, kExplorer, "Norun", 1);
  Open();
  EXPECT_EQ(page.box2.Value(), 1);
  EXPECT_EQ(Ticked(), 1);
}

TEST_F(ProtectionFixture, EveryRestrictionSetToOneTicksItsBox) {
  for (const auto& row : kCatalogue) p.SetDword(hive::CurrentUser, row.key, row.valueName, 1);
  Open();
  EXPECT_EQ(Ticked(), 18);
}

TEST_F(ProtectionFixture, BoxTickedByHandStaysTickedOnReopening) {
  p.SetDword(hive::CurrentUser, kExplorer, "Norun", 0);
  Open();
  page.box2.Click();
  form.command3.Click();
  Open();
  EXPECT_EQ(page.box2.Value(), 1);
}

TEST_F(ProtectionFixture, OnlyTheNumberOneTicks) {
  p.SetValue(hive::CurrentUser, kExplorer, "Nofind", regtype::Sz, std::string("1\0", 2));
  p.SetDword(hive::CurrentUser, kExplorer, "NoDesktop", 2);
  p.SetDword(hive::CurrentUser, kExplorer, "NoClose", 0xFFFFFFFF);
  Open();
  EXPECT_EQ(Ticked(), 0);
}

TEST_F(ProtectionFixture, MissingEnforceValueLeavesBox20Alone) {
  Open();
  EXPECT_EQ(page.box20.Value(), 0);
  page.box20.SetValue(1);
  Open();
  EXPECT_EQ(page.box20.Value(), 1);
}

TEST_F(ProtectionFixture, MissingRestrictRunKeyReadsTheSame) {
  fake::FakePlatform bare;
  Form1 f(bare);
  f.Load();
  bare.CreateKey(hive::CurrentUser, kExplorer);
  f.TamrixCmd7.Click();
  EXPECT_EQ(f.protection.box20.Value(), 0);
}

TEST_F(ProtectionFixture, EnforceValueIsTakenAsASixteenBitNumber) {
  p.SetValue(hive::CurrentUser, kRestrictRun, "EnforceShellExtensionSecurity", regtype::Sz, "1");
  Open();
  EXPECT_EQ(page.box20.Value(), 1);  // text "1" converts to the number 1 on this row alone
}

TEST_F(ProtectionFixture, EnforceValueThatOverflowsIsDroppedInSilence) {
  p.SetDword(hive::CurrentUser, kRestrictRun, "EnforceShellExtensionSecurity", 65537);
  Open();
  EXPECT_EQ(page.box20.Value(), 0);
  EXPECT_TRUE(p.boxes.empty());
}

TEST_F(ProtectionFixture, ApplyWithNothingTickedWritesEighteenZeros) {
  Apply();
  Calls writes;
  for (const auto& c : p.calls)
    if (c.rfind("RegSetValueExA", 0) == 0) writes.push_back(c);
  Calls expected;
  for (const auto& row : kCatalogue) expected.push_back("RegSetValueExA(key," + std::string(row.valueName) + ",4,0,4)");
  EXPECT_EQ(writes, expected);
  for (const auto& row : kCatalogue) {
    const auto* v = p.GetValue(hive::CurrentUser, row.key, row.valueName);
    ASSERT_NE(v, nullptr) << row.valueName;
    EXPECT_EQ(v->type, regtype::Dword);
    EXPECT_EQ(v->data, std::string(4, '\0'));
  }
}

TEST_F(ProtectionFixture, ApplyWritesOnesForTickedBoxesInTableOrder) {
  page.box2.Click();
  page.box20.Click();
  page.Check1.Click();
  Apply();
  Calls writes;
  for (const auto& c : p.calls)
    if (c.rfind("RegSetValueExA", 0) == 0) writes.push_back(c);
  Calls expected;
  for (const auto& row : kCatalogue) {
    bool on = std::string(row.box) == "box2" || std::string(row.box) == "box20" || std::string(row.box) == "Check1";
    expected.push_back("RegSetValueExA(key," + std::string(row.valueName) + ",4," + (on ? "1" : "0") + ",4)");
  }
  EXPECT_EQ(writes, expected);
  // Each write opens its key with the full mask and closes it again.
  EXPECT_EQ(p.calls[0], "RegOpenKeyExA(HKCU," + std::string(kExplorer) + ",0,0x3F)");
  EXPECT_EQ(p.OpenHandles(), 0u);
}

TEST_F(ProtectionFixture, ApplyEndsWithItsMessageWhateverTheWrites) {
  fake::FakePlatform bare;  // no Policies keys at all: every write is lost
  Form1 f(bare);
  f.Load();
  f.protection.ReyCommand2.Click();
  EXPECT_FALSE(bare.KeyExists(hive::CurrentUser, kExplorer));
  ASSERT_EQ(bare.boxes.size(), 1u);
  EXPECT_EQ(bare.boxes[0].title, " Tamrix Utility 3.0 Pro - Terminée");
  EXPECT_EQ(bare.boxes[0].text,
            " Les options sont enregistrées avec succés ! \r\r Redémarrez votre Pc pour voir les changements.");
  EXPECT_EQ(bare.boxes[0].style, mb::Ok | mb::Information);
}

TEST_F(ProtectionFixture, MissingRestrictRunKeyLosesItsRowOnly) {
  fake::FakePlatform bare;
  Form1 f(bare);
  f.Load();
  bare.CreateKey(hive::CurrentUser, kExplorer);
  f.protection.ReyCommand2.Click();
  EXPECT_FALSE(bare.KeyExists(hive::CurrentUser, kRestrictRun));
  EXPECT_NE(bare.GetValue(hive::CurrentUser, kExplorer, "NoFileSharingControl"), nullptr);
  EXPECT_EQ(bare.GetValue(hive::CurrentUser, kExplorer, "EnforceShellExtensionSecurity"), nullptr);
}

TEST_F(ProtectionFixture, SecondOpeningAfterApplyKeepsTheBoxes) {
  Open();
  page.box3.Click();
  page.box19.Click();
  Apply();
  Open();
  EXPECT_EQ(page.box3.Value(), 1);
  EXPECT_EQ(page.box19.Value(), 1);
  EXPECT_EQ(Ticked(), 2);
}

TEST_F(ProtectionFixture, UntickedBoxWritesZeroRatherThanDeleting) {
  p.SetDword(hive::CurrentUser, kExplorer, "NoClose", 1);
  Open();
  page.box9.Click();
  Apply();
  const auto* v = p.GetValue(hive::CurrentUser, kExplorer, "NoClose");
  ASSERT_NE(v, nullptr);
  EXPECT_EQ(v->data, std::string(4, '\0'));
}

const char* const kConfirmNt =
    "Si la manipulation a bien fonctionné, vous devriez avoir un avertissement avec indiqué ceci: DllUnregisterServer "
    "dans c:\\windows\\system32\\regwizc.dll réussi";
const char* const kConfirm9x =
    "Si la manipulation a bien fonctionné, vous devriez avoir un avertissement avec indiqué ceci: DllUnregisterServer "
    "dans c:\\windows\\system\\regwizc.dll réussi";

TEST_F(ProtectionFixture, WinNtBeepsAsksAndStartsTheCommandMinimisedWithoutWaiting) {
  page.Option10.Click();
  EXPECT_EQ(p.calls, (Calls{"Beep", "MessageBoxA(Avertissement)",
                            "StartProcess(C:\\Windows\\System32\\regsvr32.exe -u c:\\windows\\system32\\regwizc.dll,2)"}));
  EXPECT_EQ(p.boxes[0].text, kConfirmNt);
  EXPECT_EQ(p.boxes[0].style, mb::OkCancel | mb::Information);
  EXPECT_EQ(page.Option10.ForeColor(), 0x80FFu);
}

TEST_F(ProtectionFixture, WinNtWithoutRegsvr32ShowsTheFailureAndKeepsItsColour) {
  p.missingPrograms.insert("c:\\windows\\system32\\regsvr32.exe");
  page.Option10.Click();
  ASSERT_EQ(p.boxes.size(), 2u);
  EXPECT_EQ(p.boxes[1].title, "Tamrix Corporation");
  EXPECT_EQ(p.boxes[1].text, " Fichier introuvable, vérifier votre sytème d'éxploitation");
  EXPECT_EQ(p.boxes[1].style, mb::Ok | mb::Information);
  EXPECT_EQ(page.Option10.ForeColor(), colors::Black);
}

TEST_F(ProtectionFixture, Win9xWithoutRegsvr32SaysNothingAndChangesColour) {
  p.missingPrograms.insert("c:\\windows\\system\\regsvr32.exe");
  page.Option9.Click();
  EXPECT_EQ(p.beeps, 1);
  ASSERT_EQ(p.boxes.size(), 1u);
  EXPECT_EQ(p.boxes[0].text, kConfirm9x);
  EXPECT_EQ(p.boxes[0].title, "Avertissement");
  EXPECT_TRUE(p.started.empty());
  EXPECT_EQ(page.Option9.ForeColor(), 0x80FFu);
}

TEST_F(ProtectionFixture, Win9xStartsItsOwnCommand) {
  page.Option9.Click();
  ASSERT_EQ(p.started.size(), 1u);
  EXPECT_EQ(p.started[0].commandLine, "C:\\Windows\\System\\regsvr32.exe -u c:\\windows\\system\\regwizc.dll");
  EXPECT_EQ(p.started[0].show, ShowCommand::MinimizedActive);
}

TEST_F(ProtectionFixture, CancelRunsNoCommandAndStillChangesTheColour) {
  p.answers = {mb::IdCancel, mb::IdCancel};
  page.Option10.Click();
  page.Option9.Click();
  EXPECT_TRUE(p.started.empty());
  EXPECT_EQ(page.Option10.ForeColor(), 0x80FFu);
  EXPECT_EQ(page.Option9.ForeColor(), 0x80FFu);
  EXPECT_EQ(p.boxes.size(), 2u);
}

TEST_F(ProtectionFixture, WindowsDirectoryElsewhereMakesBothCommandsFail) {
  // The paths are literals: on a machine whose Windows lives on D:, C:\Windows holds nothing.
  p.missingPrograms.insert("c:\\windows\\system32\\regsvr32.exe");
  p.missingPrograms.insert("c:\\windows\\system\\regsvr32.exe");
  page.Option10.Click();
  page.Option9.Click();
  EXPECT_TRUE(p.started.empty());
  EXPECT_EQ(p.boxes.back().title, "Avertissement");  // Option9: no failure message
  EXPECT_EQ(p.boxes[1].title, "Tamrix Corporation");  // Option10: the failure message
}

TEST_F(ProtectionFixture, ButtonsCanBeClickedAgain) {
  page.Option10.Click();
  page.Option10.Click();
  EXPECT_EQ(p.started.size(), 2u);
  EXPECT_EQ(p.beeps, 2);
}

}  // namespace
}  // namespace tamrix
