#include <gtest/gtest.h>

#include <algorithm>

#include "platform/FileFaults.h"
#include "shell/Dispatch.h"
#include "unit/ToolsFixture.h"

namespace tamrix {
namespace {

using Page = Form2::Page;

constexpr const char* kFolder = "D:\\Photos";
constexpr const char* kIni = "D:\\Photos\\desktop.ini";
constexpr const char* kOwnFile = "c:\\program files\\tamrix\\tamrix utility.exe";

struct Perso : test::Tools {
  Perso() {
    p.AddFolder("C:\\");
    p.AddFolder("D:\\");
    p.AddFolder("C:\\Program Files\\Tamrix");
    p.AddFolder("D:\\Photos");
    p.AddFolder("D:\\Photos\\Vacances");
    p.AddFolder("D:\\Musique");
    p.File("D:\\Icones\\maison.ico") = std::string("\0\0\1\0 icon", 9);
    p.File("D:\\Icones\\faux.ico") = "not an icon";
    Open(Page::Personnalisation);
    p.ClearCalls();
  }
  FolderCustomisationPage& page() { return w().perso; }
  void Folder(const std::string& path) { page().txtPersonnaliser.SetText(path); }
  std::vector<std::string> Commands() {
    std::vector<std::string> lines;
    for (const auto& s : p.started) lines.push_back(s.commandLine);
    return lines;
  }
};

TEST(FolderCustomisation, ThePageReadsAsDesigned) {
  Perso t;
  auto& pg = t.page();
  EXPECT_EQ(pg.fraPerso.Caption(), "Personnalisez vos dossiers :");
  EXPECT_EQ(pg.lblTexte0.Caption(), "&Dossier à personnaliser :");
  EXPECT_EQ(pg.txtPersonnaliser.Text(), "");
  EXPECT_EQ(pg.par.Caption(), "Parcourir..");
  EXPECT_EQ(pg.cmdPersonnaliser.Caption(), "&Personnalisez");
  EXPECT_EQ(pg.TamrixCd2.Caption(), "&Rétablir");
  EXPECT_EQ(pg.TamrixCd3.Caption(), "&Quitter");
  EXPECT_EQ(pg.fraIcone.Caption(), "Changer l'icone");
  EXPECT_EQ(pg.optDefaut.Caption(), "Choisir dans la &liste :");
  EXPECT_EQ(pg.optDefaut.Value(), 1);
  EXPECT_EQ(pg.optFichier.Caption(), "Choisir un &fichier :");
  EXPECT_EQ(pg.cmdChoisirFichier.Caption(), "...");
  EXPECT_EQ(pg.cdlOuvrir.DialogTitle, "Ouvrir un icone");
  EXPECT_EQ(pg.cdlOuvrir.Filter, "Icones (*.ico)|*.ico");
  EXPECT_EQ(pg.cdlOuvrir.Flags, 3168268);
  EXPECT_FALSE(pg.cdlOuvrir.CancelError);
  EXPECT_EQ(pg.Frame1.Caption(), "Choisissez un dossier : ");
  EXPECT_EQ(pg.lblLecteur.Caption(), "Choisissez le lecteur  :");
  EXPECT_EQ(pg.TamrixCd1.Caption(), "&Ok");
  EXPECT_TRUE(pg.fraIcone.Visible());
  EXPECT_FALSE(pg.Frame1.Visible());
  EXPECT_EQ(pg.Frame1.Rect().left, pg.fraIcone.Rect().left);
  EXPECT_EQ(pg.Frame1.Rect().top, pg.fraIcone.Rect().top);
  EXPECT_EQ(pg.Frame1.Rect().width, pg.fraIcone.Rect().width);
  EXPECT_EQ(pg.Frame1.Rect().height, pg.fraIcone.Rect().height);
}

TEST(FolderCustomisation, TheLoadShowsTheSixIconResourcesInOrderAndNoneIsMarked) {
  Perso t;
  for (int i = 0; i < 6; ++i) {
    auto& pic = t.page().picIcones[static_cast<std::size_t>(i)];
    EXPECT_EQ(t.p.pictures[pic.Picture()], "icon:" + std::to_string(101 + i)) << i;
    EXPECT_EQ(pic.BorderStyle(), 0) << i;
  }
  EXPECT_EQ(t.form2.Compteur, 6);  // the loop ran over all six
}

TEST(FolderCustomisation, TheDefaultIconIsTheFirstOfTheRowInTheProgramsOwnFileInLowerCase) {
  Perso t;
  EXPECT_EQ(t.form2.FichierIcone, kOwnFile);
  EXPECT_EQ(t.form2.IndexIcone, 1);
}

TEST(FolderCustomisation, TheThirdIconOfAProgramInOutilsIsWrittenInLowerCase) {
  Perso t;
  t.p.appPath = "C:\\Outils";
  t.p.exeName = "Tamrix Utility";
  t.page().picIcones[2].Click();
  t.Folder(kFolder);
  t.page().cmdPersonnaliser.Click();
  EXPECT_EQ(t.p.File(kIni), "[.ShellClassInfo]\r\nIconFile=\"c:\\outils\\tamrix utility.exe\"\r\nIconIndex=3\r\n");
}

TEST(FolderCustomisation, EveryCapitalOfThePathGoesToLowerCaseAsTheLanguagesLowerCaseDoes) {
  Perso t;
  t.p.appPath = "C:\\ŒUVRES\\ŠKODA ŽĽUTÝ\\ŸSER\\ΑΘΗΝΑ\\ПРОГРАММЫ";
  t.p.exeName = "TAMRIX ÆØ";
  EXPECT_EQ(t.page().OwnFile(), "c:\\œuvres\\škoda žľutý\\ÿser\\αθηνα\\программы\\tamrix æø.exe");
}

TEST(FolderCustomisation, AccentedCapitalsOfTheProgramsPathGoToLowerCaseToo) {
  Perso t;
  t.p.appPath = "C:\\Programmes\\ÉTÉ";
  EXPECT_EQ(t.page().OwnFile(), "c:\\programmes\\été\\tamrix utility.exe");
}

TEST(FolderCustomisation, AProgramInADrivesRootGetsADoubledSeparator) {
  Perso t;
  t.p.appPath = "E:\\";
  t.p.exeName = "TAMRIX";
  EXPECT_EQ(t.page().OwnFile(), "e:\\\\tamrix.exe");
}

TEST(FolderCustomisation, NothingToChooseWritesTheProgramsFileWithIndexOne) {
  Perso t;
  t.Folder(kFolder);
  t.page().cmdPersonnaliser.Click();
  EXPECT_EQ(t.p.File(kIni), std::string("[.ShellClassInfo]\r\nIconFile=\"") + kOwnFile + "\"\r\nIconIndex=1\r\n");
}

TEST(FolderCustomisation, ClickingAnIconMarksItAloneAndChoosesItsIndex) {
  Perso t;
  t.page().picIcones[4].Click();
  t.page().picIcones[2].Click();
  for (int i = 0; i < 6; ++i) EXPECT_EQ(t.page().picIcones[static_cast<std::size_t>(i)].BorderStyle(), i == 2 ? 1 : 0);
  EXPECT_EQ(t.form2.IndexIcone, 3);
  EXPECT_EQ(t.form2.FichierIcone, kOwnFile);
  t.Folder(kFolder);
  t.page().cmdPersonnaliser.Click();
  EXPECT_EQ(t.p.File(kIni), std::string("[.ShellClassInfo]\r\nIconFile=\"") + kOwnFile + "\"\r\nIconIndex=3\r\n");
}

TEST(FolderCustomisation, AnIconClickDoesNotSelectTheListOption) {
  Perso t;
  t.page().optFichier.Click();
  t.page().picIcones[1].Click();
  EXPECT_EQ(t.page().optDefaut.Value(), 0);
  EXPECT_EQ(t.page().optFichier.Value(), 1);
}

TEST(FolderCustomisation, PersonaliseRunsItsStepsInOrderHiddenAndWithoutAShell) {
  Perso t;
  t.Folder(kFolder);
  t.page().cmdPersonnaliser.Click();
  std::vector<std::string> order;
  for (const auto& c : t.p.calls)
    if (c.rfind("WriteTextLines", 0) == 0 || c.rfind("MessageBoxA", 0) == 0 || c.rfind("StartProcess", 0) == 0)
      order.push_back(c.substr(0, c.find('(')));
  ASSERT_EQ(t.p.started.size(), 2u);
  EXPECT_EQ(t.Commands(), (std::vector<std::string>{"attrib +s \"D:\\Photos\"", "attrib +h \"D:\\Photos\\desktop.ini\""}));
  for (const auto& s : t.p.started) EXPECT_EQ(s.show, ShowCommand::Hidden);
  // attrib +s before the file is written, attrib +h after it is closed, and the message last.
  std::size_t write = 0, box = 0;
  for (std::size_t i = 0; i < t.p.calls.size(); ++i) {
    if (t.p.calls[i].rfind("WriteTextLines", 0) == 0) write = i;
    if (t.p.calls[i].rfind("MessageBoxA", 0) == 0) box = i;
  }
  EXPECT_LT(write, box);
  ASSERT_EQ(t.p.boxes.size(), 1u);
  EXPECT_EQ(t.p.boxes[0].text, "Opération effectuée avec succées!");
  EXPECT_EQ(t.p.boxes[0].title, " Tamrix Utility 3.0 Pro ");
  EXPECT_EQ(t.p.boxes[0].style, mb::Ok | mb::Information);
}

TEST(FolderCustomisation, AChosenFileWritesItsPathWithIndexZeroAndIsKept) {
  Perso t;
  t.p.openAnswers = {std::string("D:\\Icones\\maison.ico")};
  t.page().cmdChoisirFichier.Click();
  EXPECT_EQ(t.page().txtAfficherFichier.Text(), "D:\\Icones\\maison.ico");
  EXPECT_EQ(t.p.pictures[t.page().picView.Picture()], "file:D:\\Icones\\maison.ico");
  ASSERT_EQ(t.p.openRequests.size(), 1u);
  EXPECT_EQ(t.p.openRequests[0].title, "Ouvrir un icone");
  EXPECT_EQ(t.p.openRequests[0].filter, "Icones (*.ico)|*.ico");
  EXPECT_EQ(t.p.openRequests[0].flags, 3168268u);
  t.page().optFichier.Click();
  t.Folder(kFolder);
  t.page().cmdPersonnaliser.Click();
  EXPECT_EQ(t.p.File(kIni), "[.ShellClassInfo]\r\nIconFile=\"D:\\Icones\\maison.ico\"\r\nIconIndex=0\r\n");
  EXPECT_EQ(t.form2.FichierIcone, "D:\\Icones\\maison.ico");
}

TEST(FolderCustomisation, AfterAChosenFileTheListChoiceWritesTheIcoPathWithTheListsIndex) {
  Perso t;
  t.p.openAnswers = {std::string("D:\\Icones\\maison.ico")};
  t.page().cmdChoisirFichier.Click();
  t.page().optFichier.Click();
  t.Folder(kFolder);
  t.page().cmdPersonnaliser.Click();
  t.page().optDefaut.Click();
  t.page().cmdPersonnaliser.Click();
  EXPECT_EQ(t.p.File(kIni), "[.ShellClassInfo]\r\nIconFile=\"D:\\Icones\\maison.ico\"\r\nIconIndex=1\r\n");
}

TEST(FolderCustomisation, AHiddenSystemDesktopIniIsReplacedWithoutError) {
  Perso t;
  t.p.File(kIni) = "[.ShellClassInfo]\r\nIconResource=C:\\old.ico,0\r\nInfoTip=Old\r\n";
  t.p.Attributes(kIni) = fake::FakePlatform::kHidden | fake::FakePlatform::kSystem | fake::FakePlatform::kReadOnly;
  t.Folder(kFolder);
  t.page().cmdPersonnaliser.Click();
  EXPECT_EQ(t.p.File(kIni), std::string("[.ShellClassInfo]\r\nIconFile=\"") + kOwnFile + "\"\r\nIconIndex=1\r\n");
  // The forced delete came before the file was opened.
  auto del = std::find(t.p.calls.begin(), t.p.calls.end(), std::string("DeleteFileForce(") + kIni + ")");
  auto write = std::find(t.p.calls.begin(), t.p.calls.end(), std::string("WriteTextLines(") + kIni + ")");
  EXPECT_LT(del, write);
}

TEST(FolderCustomisation, ADesktopIniThatWontGoEndsTheProgramBeforeAttribRuns) {
  Perso t;
  t.p.File(kIni) = "[.ShellClassInfo]\r\nInfoTip=Old\r\n";
  t.p.lockedFiles.insert(fake::FakePlatform::Lower(kIni));
  t.Folder(kFolder);
  EXPECT_FALSE(RunHandler(t.p, [&] { t.page().cmdPersonnaliser.Click(); }));
  ASSERT_EQ(t.p.boxes.size(), 1u);
  EXPECT_EQ(t.p.boxes[0].text, "Run-time error '70':\r\rPermission denied");
  EXPECT_TRUE(t.p.started.empty()) << "attrib must not run";
  EXPECT_EQ(t.p.File(kIni), "[.ShellClassInfo]\r\nInfoTip=Old\r\n");
}

TEST(FolderCustomisation, AnEmptyFolderBoxGivesTheFirstMessageAndNothingElse) {
  Perso t;
  t.page().cmdPersonnaliser.Click();
  ASSERT_EQ(t.p.boxes.size(), 1u);
  EXPECT_EQ(t.p.boxes[0].text, "Vous devez indiquer toutes les informations du dossier!");
  EXPECT_EQ(t.p.boxes[0].title, "Attention");
  EXPECT_EQ(t.p.boxes[0].style, mb::Ok | mb::Information);
  EXPECT_TRUE(t.p.started.empty());
}

TEST(FolderCustomisation, FileOptionWithAFileEmptiedByACancelGivesTheSecondMessage) {
  Perso t;
  // The user types a file's name, then opens the dialog and cancels it: the dialog's name, still
  // empty, takes the box's place.
  t.page().txtAfficherFichier.SetText("D:\\Icones\\maison.ico");
  t.page().optFichier.Click();
  t.p.openAnswers = {std::nullopt};
  t.page().cmdChoisirFichier.Click();
  EXPECT_EQ(t.page().txtAfficherFichier.Text(), "");
  t.Folder(kFolder);
  t.page().cmdPersonnaliser.Click();
  ASSERT_EQ(t.p.boxes.size(), 1u);
  EXPECT_EQ(t.p.boxes[0].text, "Vous devez indiquer toutes les informations !");
  EXPECT_EQ(t.p.boxes[0].title, "Attention");
  EXPECT_EQ(t.p.boxes[0].style, mb::Ok | mb::Information);
  EXPECT_FALSE(t.p.HasFile(kIni));
  EXPECT_TRUE(t.p.started.empty());
}

TEST(FolderCustomisation, ACancelAtTheFirstChoiceEmptiesTheBoxAndThePreview) {
  Perso t;
  t.p.openAnswers = {std::nullopt};
  t.page().cmdChoisirFichier.Click();
  EXPECT_EQ(t.page().txtAfficherFichier.Text(), "");
  EXPECT_EQ(t.page().picView.Picture(), 0u);
  t.page().optFichier.Click();
  t.Folder(kFolder);
  t.page().cmdPersonnaliser.Click();
  ASSERT_EQ(t.p.boxes.size(), 1u);
  EXPECT_EQ(t.p.boxes[0].text, "Vous devez indiquer toutes les informations !");
}

TEST(FolderCustomisation, ACancelAfterAChoiceShowsTheEarlierNameAgain) {
  Perso t;
  t.p.openAnswers = {std::string("D:\\Icones\\maison.ico"), std::nullopt};
  t.page().cmdChoisirFichier.Click();
  t.page().txtAfficherFichier.SetText("");
  t.page().cmdChoisirFichier.Click();
  EXPECT_EQ(t.page().txtAfficherFichier.Text(), "D:\\Icones\\maison.ico");
  EXPECT_EQ(t.p.pictures[t.page().picView.Picture()], "file:D:\\Icones\\maison.ico");
}

TEST(FolderCustomisation, ChoosingAFileDoesNotSelectTheFileOption) {
  Perso t;
  t.p.openAnswers = {std::string("D:\\Icones\\maison.ico")};
  t.page().cmdChoisirFichier.Click();
  EXPECT_EQ(t.page().optDefaut.Value(), 1);
  EXPECT_EQ(t.page().optFichier.Value(), 0);
}

TEST(FolderCustomisation, APreviewOfAFileThatIsNoPictureIsARunTimeFault) {
  Perso t;
  t.p.openAnswers = {std::string("D:\\Icones\\faux.ico")};
  try {
    t.page().cmdChoisirFichier.Click();
    FAIL() << "the preview's load must not be caught";
  } catch (const RuntimeError& e) {
    EXPECT_EQ(e.Number(), 481);
  }
  EXPECT_EQ(t.page().txtAfficherFichier.Text(), "D:\\Icones\\faux.ico");
}

TEST(FolderCustomisation, AMissingFolderGivesItsMessageAndTouchesNothing) {
  Perso t;
  t.Folder("D:\\Nulle part");
  t.page().cmdPersonnaliser.Click();
  ASSERT_EQ(t.p.boxes.size(), 1u);
  EXPECT_EQ(t.p.boxes[0].text, "Le dossier indiqué à personnaliser est introuvable !");
  EXPECT_EQ(t.p.boxes[0].title, "Attention");
  EXPECT_TRUE(t.p.started.empty());
}

TEST(FolderCustomisation, AFolderThatCantBeWrittenIsARunTimeFaultAfterTheSystemMark) {
  Perso t;
  t.p.readOnlyFiles.insert(fake::FakePlatform::Lower(kIni));
  t.Folder(kFolder);
  try {
    t.page().cmdPersonnaliser.Click();
    FAIL() << "a failed write must not be caught";
  } catch (const RuntimeError& e) {
    EXPECT_EQ(e.Number(), 75);
  }
  EXPECT_EQ(t.Commands(), (std::vector<std::string>{"attrib +s \"D:\\Photos\""}));
  EXPECT_TRUE(t.p.boxes.empty());
}

TEST(FolderCustomisation, RestoreTakesTheSystemMarkAndTheFileAway) {
  Perso t;
  t.p.File(kIni) = "[.ShellClassInfo]\r\nInfoTip=written by someone else\r\n";
  t.Folder(kFolder);
  t.page().TamrixCd2.Click();
  EXPECT_EQ(t.Commands(), (std::vector<std::string>{"attrib -s \"D:\\Photos\""}));
  EXPECT_EQ(t.p.started[0].show, ShowCommand::Hidden);
  EXPECT_FALSE(t.p.HasFile(kIni));
  ASSERT_EQ(t.p.boxes.size(), 1u);
  EXPECT_EQ(t.p.boxes[0].text, "Opération effectuée avec succées!");
  EXPECT_EQ(t.p.boxes[0].title, " Tamrix Utility 3.0 Pro ");
}

TEST(FolderCustomisation, RestoreWithNoDesktopIniSaysNothingAndChangesNothing) {
  Perso t;
  t.Folder(kFolder);
  t.page().TamrixCd2.Click();
  EXPECT_TRUE(t.p.started.empty());
  EXPECT_TRUE(t.p.boxes.empty());
}

TEST(FolderCustomisation, RestoreOnAnEmptyOrMissingFolderGivesTheNotFoundMessage) {
  for (const char* folder : {"", "D:\\Nulle part"}) {
    Perso t;
    t.Folder(folder);
    t.page().TamrixCd2.Click();
    ASSERT_EQ(t.p.boxes.size(), 1u) << folder;
    EXPECT_EQ(t.p.boxes[0].text, "Le dossier indiqué à personnaliser est introuvable !");
    EXPECT_EQ(t.p.boxes[0].title, "Attention");
    EXPECT_TRUE(t.p.started.empty());
  }
}

TEST(FolderCustomisation, BrowseSwapsThePanelsAndLocksTheBoxForGood) {
  Perso t;
  t.page().par.Click();
  EXPECT_FALSE(t.page().txtPersonnaliser.Enabled());
  EXPECT_TRUE(t.page().Frame1.Visible());
  EXPECT_FALSE(t.page().fraIcone.Visible());
  t.page().TamrixCd1.Click();
  EXPECT_TRUE(t.page().fraIcone.Visible());
  EXPECT_FALSE(t.page().Frame1.Visible());
  EXPECT_FALSE(t.page().txtPersonnaliser.Enabled());
}

TEST(FolderCustomisation, TheFolderListStartsWhereTheProgramStandsAndOkTakesItsPath) {
  Perso t;
  EXPECT_EQ(t.page().Dir1.Path(), "C:\\Program Files\\Tamrix");
  EXPECT_EQ(t.page().Drive1.Items(), (std::vector<std::string>{"a:", "c:", "d:"}));
  EXPECT_EQ(t.page().Drive1.Drive(), "c:");
  t.page().par.Click();
  t.page().Drive1.SetListIndex(2);
  EXPECT_EQ(t.page().Dir1.Path(), "d:\\");
  EXPECT_EQ(t.page().Dir1.Items(), (std::vector<std::string>{"d:\\", "  musique", "  photos"}));
  t.page().Dir1.OpenItem(2);
  EXPECT_EQ(t.page().Dir1.Path(), "d:\\photos");
  EXPECT_EQ(t.page().Dir1.Items(), (std::vector<std::string>{"d:\\", "  photos", "    vacances"}));
  t.page().TamrixCd1.Click();
  EXPECT_EQ(t.page().txtPersonnaliser.Text(), "d:\\photos");
}

TEST(FolderCustomisation, ADriveThatIsNotReadyIsARunTimeFault) {
  Perso t;
  try {
    t.page().Drive1.SetListIndex(0);  // a:, no disc in it
    FAIL() << "a drive that isn't ready must not be caught";
  } catch (const RuntimeError& e) {
    EXPECT_EQ(e.Number(), 68);
  }
}

TEST(FolderCustomisation, TheFolderListRefusesAFolderThatIsNotThere) {
  Perso t;
  try {
    t.page().Dir1.SetPath("D:\\Nulle part");
    FAIL();
  } catch (const RuntimeError& e) {
    EXPECT_EQ(e.Number(), 76);
  }
  EXPECT_EQ(t.page().Dir1.Path(), "C:\\Program Files\\Tamrix");
}

}  // namespace
}  // namespace tamrix
