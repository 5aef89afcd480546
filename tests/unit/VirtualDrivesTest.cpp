// Virtual drives: the two letter lists of the start-up, and the "...", "&Créer lecteur" and
// "&Supprimer" buttons with their subst.exe command lines, the Run value and their messages.
#include <gtest/gtest.h>

#include "fake/FakePlatform.h"
#include "forms/Form1.h"

namespace tamrix {
namespace {

using Items = std::vector<std::string>;

constexpr const char* kRun = "SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Run";

struct DrivesFixture : ::testing::Test {
  fake::FakePlatform p;
  std::unique_ptr<Form1> form;
  void Load() {
    p.CreateKey(hive::LocalMachine, kRun);
    form = std::make_unique<Form1>(p);
    form->hWnd = 0x42;
    form->Load();
    p.ClearCalls();
  }
  WindowsPage& page() { return form->windowsPage; }
  void Choose(const std::string& folder) {
    p.browseAnswers.push_back(folder);
    page().cmdCheminVirtuel0.Click();
  }
  std::string Run(const std::string& name) {
    const auto* v = p.GetValue(hive::LocalMachine, kRun, name);
    return v ? v->data.substr(0, v->data.find('\0')) : "<none>";
  }
};

TEST_F(DrivesFixture, FreeLettersFromZDownWithoutTheDrivesAndAllTwentySixInTheOtherList) {
  p.driveLetters = "ACDZ";
  Load();
  Items free;
  for (char c = 'Y'; c >= 'E'; --c) free.push_back(std::string(1, c) + ":");
  free.push_back("B:");
  EXPECT_EQ(page().cmbLecteurDispo0.Items(), free);
  EXPECT_EQ(page().cmbLecteurDispo0.Text(), "Y:");
  Items all;
  for (char c = 'Z'; c >= 'A'; --c) all.push_back(std::string(1, c) + ":");
  EXPECT_EQ(page().cmbLecteurDispo1.Items(), all);
  EXPECT_EQ(page().cmbLecteurDispo1.Text(), "Z:");
}

TEST_F(DrivesFixture, DotsPutTheChosenFolderInTheTextBox) {
  Load();
  Choose("C:\\outils");
  EXPECT_EQ(p.calls[0], "SHBrowseForFolderA(0x42,,0)");
  EXPECT_EQ(page().txtChemLecteur.Text(), "C:\\outils");
  EXPECT_EQ(form->virtualDrives.CheminLecteur, "C:\\outils");
}

TEST_F(DrivesFixture, CancelledBrowserEmptiesTheFolderButLeavesTheTextBox) {
  Load();
  Choose("C:\\outils");
  p.browseAnswers.push_back(std::nullopt);
  page().cmdCheminVirtuel0.Click();
  EXPECT_EQ(form->virtualDrives.CheminLecteur, "");
  EXPECT_EQ(page().txtChemLecteur.Text(), "C:\\outils");
}

TEST_F(DrivesFixture, CreateRunsSubstHiddenWithoutWaitingThenSaysSuccess) {
  p.driveLetters = "ACD";
  Load();
  Choose("c:\\outils");
  p.ClearCalls();
  page().cmdCheminVirtuel1.Click();
  ASSERT_EQ(p.started.size(), 1u);
  EXPECT_EQ(p.started[0].commandLine, "subst.exe Z: \"c:\\outils\"");
  EXPECT_EQ(p.started[0].show, ShowCommand::Hidden);
  ASSERT_EQ(p.boxes.size(), 1u);
  EXPECT_EQ(p.boxes[0].text, "Création termninée avec succès !");
  EXPECT_EQ(p.boxes[0].style, 0x40u);
  EXPECT_EQ(p.boxes[0].title, "Tamrix Utility");
  EXPECT_EQ(Run("z:"), "<none>");  // not permanent
}

TEST_F(DrivesFixture, CreateWithNoFolderChosenEndsInTwoQuotesAndStillSaysSuccess) {
  Load();
  page().cmdCheminVirtuel1.Click();
  ASSERT_EQ(p.started.size(), 1u);
  EXPECT_EQ(p.started[0].commandLine, "subst.exe Z: \"\"");
  ASSERT_EQ(p.boxes.size(), 1u);
  EXPECT_EQ(p.boxes[0].text, "Création termninée avec succès !");
}

TEST_F(DrivesFixture, TextTypedIntoTheBoxHasNoEffectOnTheCommand) {
  Load();
  Choose("C:\\Jeux");
  page().txtChemLecteur.SetText("D:\\autre");
  page().cmdCheminVirtuel1.Click();
  EXPECT_EQ(p.started.at(0).commandLine, "subst.exe Z: \"C:\\Jeux\"");
}

TEST_F(DrivesFixture, PermanentDriveGoesToTheRunKeyUnderTheLowerCaseNameWithTheUpperCaseCommand) {
  Load();
  Choose("c:\\outils");
  page().chkCreerLecteurVirtuel.Click();
  ASSERT_EQ(page().chkCreerLecteurVirtuel.Value(), 1);
  page().cmdCheminVirtuel1.Click();
  EXPECT_EQ(Run("z:"), "subst.exe Z: \"c:\\outils\"");
  const auto* v = p.GetValue(hive::LocalMachine, kRun, "z:");
  ASSERT_NE(v, nullptr);
  EXPECT_EQ(v->type, regtype::Sz);
  EXPECT_EQ(p.boxes.size(), 1u);
}

TEST_F(DrivesFixture, LetterStaysInTheFirstListAfterCreate) {
  Load();
  page().cmdCheminVirtuel1.Click();
  EXPECT_EQ(page().cmbLecteurDispo0.List(0), "Z:");
  EXPECT_EQ(page().cmbLecteurDispo0.Text(), "Z:");
}

TEST_F(DrivesFixture, RemoveWithoutDemarrageUnmapsAndKeepsTheRunValue) {
  p.SetValue(hive::LocalMachine, kRun, "z:", regtype::Sz, std::string("subst.exe Z: \"c:\\outils\"") + '\0');
  Load();
  page().cmdCheminVirtuel2.Click();
  ASSERT_EQ(p.started.size(), 1u);
  EXPECT_EQ(p.started[0].commandLine, "subst.exe /D Z:");
  EXPECT_EQ(p.started[0].show, ShowCommand::Hidden);
  EXPECT_EQ(Run("z:"), "subst.exe Z: \"c:\\outils\"");
  ASSERT_EQ(p.boxes.size(), 1u);
  EXPECT_EQ(p.boxes[0].text, "Suppression termninée avec succès !");
  EXPECT_EQ(p.boxes[0].style, 0x40u);
  EXPECT_EQ(p.boxes[0].title, "Tamrix Utility");
}

TEST_F(DrivesFixture, RemoveWithDemarrageAlsoDeletesTheRunValue) {
  p.SetValue(hive::LocalMachine, kRun, "z:", regtype::Sz, std::string("subst.exe Z: \"c:\\outils\"") + '\0');
  p.SetValue(hive::LocalMachine, kRun, "y:", regtype::Sz, std::string("subst.exe Y: \"c:\\jeux\"") + '\0');
  Load();
  page().TamrixCB1.Click();
  page().cmdCheminVirtuel2.Click();
  EXPECT_EQ(Run("z:"), "<none>");
  EXPECT_EQ(Run("y:"), "subst.exe Y: \"c:\\jeux\"");
  EXPECT_EQ(p.boxes.size(), 1u);
}

TEST_F(DrivesFixture, SecondListOffersRealDrivesAndTheirRemovalStillSaysSuccess) {
  p.driveLetters = "ACD";
  Load();
  page().cmbLecteurDispo1.SetListIndex(23);
  ASSERT_EQ(page().cmbLecteurDispo1.Text(), "C:");
  page().cmdCheminVirtuel2.Click();
  EXPECT_EQ(p.started.at(0).commandLine, "subst.exe /D C:");
  EXPECT_EQ(p.boxes.at(0).text, "Suppression termninée avec succès !");
}

TEST_F(DrivesFixture, RunKeyThatTheUserMayNotWriteLosesTheValueInSilence) {
  p.DenyWrite(hive::LocalMachine, kRun);
  Load();
  page().chkCreerLecteurVirtuel.Click();
  page().cmdCheminVirtuel1.Click();
  EXPECT_EQ(Run("z:"), "<none>");
  EXPECT_EQ(p.boxes.at(0).text, "Création termninée avec succès !");
}

TEST_F(DrivesFixture, EmptyListsGiveACommandWithAnEmptyLetter) {
  p.mixers.clear();  // the start-up stops before the lists
  Load();
  p.boxes.clear();
  page().cmdCheminVirtuel1.Click();
  page().cmdCheminVirtuel2.Click();
  ASSERT_EQ(p.started.size(), 2u);
  EXPECT_EQ(p.started[0].commandLine, "subst.exe  \"\"");
  EXPECT_EQ(p.started[1].commandLine, "subst.exe /D ");
}

TEST_F(DrivesFixture, MissingSubstEndsInTheRuntimesFault) {
  p.missingPrograms.insert("subst.exe");
  Load();
  EXPECT_THROW(page().cmdCheminVirtuel1.Click(), RuntimeError);
  EXPECT_TRUE(p.boxes.empty());
}

}  // namespace
}  // namespace tamrix
