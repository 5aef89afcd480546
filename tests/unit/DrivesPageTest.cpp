// The drives sub-page of Test Lab: the drive list as the classic drive list box shows it, the
// six lines and the bar that the drive facts fill for the chosen drive, and when they are filled.
#include <gtest/gtest.h>

#include <algorithm>

#include "fake/FakePlatform.h"
#include "forms/Form1.h"
#include "platform/Runtime.h"

namespace tamrix {
namespace {

using Items = std::vector<std::string>;

constexpr std::uint64_t MB = 1024 * 1024;

struct Machine {
  fake::FakePlatform p;
  Machine() {
    p.driveLetters = "ACDZ";
    p.volumes['A'] = {.label = "DISQUETTE", .fileSystem = "FAT", .serial = 0x11112222, .type = 2,
                      .totalBytes = 1457664, .freeBytes = 1457664};
    // 5807.464 and 1249.208 megabytes, as the control's design values stand.
    p.volumes['C'] = {.label = "SYSTEME", .fileSystem = "NTFS", .serial = 0x1A2B3C4D, .type = 3,
                      .totalBytes = 6089567371ull, .freeBytes = 1309889528ull};
    p.volumes['D'] = {.label = "", .fileSystem = "CDFS", .serial = 0, .type = 5, .medium = false};
    p.volumes['Z'] = {.label = "", .fileSystem = "NTFS", .serial = 0x0000BEEF, .type = 3,
                      .totalBytes = 100 * MB, .freeBytes = 25 * MB};
    p.currentDirectory = "C:\\Program Files\\Tamrix";
  }
};

struct Page : Machine {
  Form1 form{p};
  DrivesPage& page = form.drivesPage;
  Page() { form.Load(); }
  void Open() { form.TamrixCmd3.Click(); }
};

int Count(const std::vector<std::string>& calls, const std::string& call) {
  return static_cast<int>(std::count(calls.begin(), calls.end(), call));
}

TEST(DrivesPageDesign, TheFreeSpaceDialIsSevenHundredTwentyTwipsSquare) {
  Page s;
  EXPECT_EQ(s.page.TamrixPBar3.Rect().width, 720);
  EXPECT_EQ(s.page.TamrixPBar3.Rect().height, 720);
}

TEST(DriveList, ShowsEachDriveAsItsSmallLetterAColonAndTheLabelInBrackets) {
  Machine m;
  DriveListBox list(nullptr, {.name = "Drive1"}, m.p);
  list.Refresh();
  EXPECT_EQ(list.Items(), (Items{"a:", "c: [SYSTEME]", "d:", "z:"}));
}

TEST(DriveList, ReadsNoLabelOfARemovableDrive) {
  Machine m;
  DriveListBox list(nullptr, {.name = "Drive1"}, m.p);
  list.Refresh();
  EXPECT_EQ(Count(m.p.calls, "GetVolumeInformationA(A:\\)"), 0);
  EXPECT_EQ(Count(m.p.calls, "GetVolumeInformationA(C:\\)"), 1);
}

TEST(DriveList, StartsOnTheCurrentDrive) {
  Machine m;
  m.p.currentDirectory = "Z:\\home";
  DriveListBox list(nullptr, {.name = "Drive1"}, m.p);
  EXPECT_EQ(list.Drive(), "z:");
  EXPECT_EQ(list.ListIndex(), 3);
}

TEST(DriveList, IsReadFromTheMachineAtTheFirstQuestionAndNotBefore) {
  Machine m;
  DriveListBox list(nullptr, {.name = "Drive1"}, m.p);
  EXPECT_TRUE(m.p.calls.empty());
  EXPECT_FALSE(list.Filled());
  EXPECT_EQ(list.Drive(), "c: [SYSTEME]");
  EXPECT_TRUE(list.Filled());
}

TEST(DriveList, TheFirstChoiceOfTheCurrentDriveRaisesNoChange) {
  Machine m;
  DriveListBox list(nullptr, {.name = "Drive1"}, m.p);
  int changes = 0;
  list.OnChange = [&] { ++changes; };
  list.Refresh();
  EXPECT_EQ(changes, 0);
}

TEST(DriveList, ANewChoiceRaisesTheChangeAndTheSameChoiceAgainDoesNot) {
  Machine m;
  DriveListBox list(nullptr, {.name = "Drive1"}, m.p);
  list.Refresh();
  int changes = 0;
  list.OnChange = [&] { ++changes; };
  list.SetListIndex(1);  // c: is already chosen
  EXPECT_EQ(changes, 0);
  list.SetListIndex(3);
  EXPECT_EQ(changes, 1);
  list.SetListIndex(3);
  EXPECT_EQ(changes, 1);
}

TEST(DriveList, SetDriveChoosesByTheFirstLetterAndAnUnknownDriveIsError68) {
  Machine m;
  DriveListBox list(nullptr, {.name = "Drive1"}, m.p);
  list.SetDrive("Z:\\");
  EXPECT_EQ(list.Drive(), "z:");
  try {
    list.SetDrive("q:");
    FAIL() << "no error";
  } catch (const RuntimeError& e) {
    EXPECT_EQ(e.Number(), 68);
  }
  EXPECT_EQ(list.Drive(), "z:");
}

TEST(DrvFact, AnswersForTheLetterOfTheTextItIsGivenInMegabytesToTheThousandth) {
  Machine m;
  DrvFact fact(nullptr, {.name = "Fact", .visible = false}, m.p);
  fact.setDrive("c: [SYSTEME]");
  EXPECT_EQ(fact.drive(), "c: [SYSTEME]");
  EXPECT_EQ(fact.volumename(), "SYSTEME");
  EXPECT_EQ(fact.filesystem(), "NTFS");
  EXPECT_EQ(fact.serialnumber(), "1A2B-3C4D");
  EXPECT_DOUBLE_EQ(fact.totalsize(), 5807.464);
  EXPECT_DOUBLE_EQ(fact.freesize(), 1249.208);
  EXPECT_EQ(fact.drivetype(), 3);
  EXPECT_EQ(Count(m.p.calls, "GetDriveTypeA(C:\\)"), 1);
}

TEST(DrvFact, ADriveWithoutItsDiscHasSizesOfZeroAndItsTextsFailWithError68) {
  Machine m;
  DrvFact fact(nullptr, {.name = "Fact"}, m.p);
  fact.setDrive("d:");
  EXPECT_EQ(fact.totalsize(), 0.0);
  EXPECT_EQ(fact.freesize(), 0.0);
  EXPECT_EQ(fact.drivetype(), 5);
  try {
    fact.volumename();
    FAIL() << "no error";
  } catch (const RuntimeError& e) {
    EXPECT_EQ(e.Number(), 68);
  }
}

TEST(DrivesPage, LinesAreEmptyUntilThePageIsOpened) {
  Page s;
  for (TextBox* line : {&s.page.d1, &s.page.d2, &s.page.d3, &s.page.d4, &s.page.d5, &s.page.d6})
    EXPECT_EQ(line->Text(), "") << line->Name();
  EXPECT_EQ(s.page.TamrixPBar3.Value(), 0);
  EXPECT_FALSE(s.page.Fact.Visible());
}

TEST(DrivesPage, OpeningReportsOnTheCurrentDriveWithTheLabelsTrailingBlanks) {
  Page s;
  s.Open();
  EXPECT_EQ(s.page.Fact.drive(), "c: [SYSTEME]");
  EXPECT_EQ(s.page.d1.Text(), "Nom du Volume :     SYSTEME");
  EXPECT_EQ(s.page.d2.Text(), "Système de fichier : NTFS");
  EXPECT_EQ(s.page.d3.Text(), "N°= de Série :         1A2B-3C4D");
  EXPECT_EQ(s.page.d4.Text(), "Espace Total :         5807,464");
  EXPECT_EQ(s.page.d5.Text(), "Espace Libre :         1249,208");
  EXPECT_EQ(s.page.d6.Text(), "Type du Lecteur :      Lecteur Fixe");
  EXPECT_DOUBLE_EQ(s.page.TamrixPBar3.Value(), 1249.208 / 5807.464 * 100);
}

TEST(DrivesPage, SizesShowUnroundedWithTheRegionalDecimalSign) {
  Page s;
  s.p.decimalSign = '.';
  s.p.volumes['C'].totalBytes = 1536 * 1024;  // 1.5 MB
  s.Open();
  EXPECT_EQ(s.page.d4.Text(), "Espace Total :         1.5");
}

TEST(DrivesPage, TheBarShowsTheFreeShareNotTheUsedOne) {
  Page s;
  s.page.Drive1.SetDrive("z");
  EXPECT_EQ(s.page.TamrixPBar3.Value(), 25.0);
}

TEST(DrivesPage, TotalOfZeroGivesAnEmptyBarAndZeroInBothSizeLines) {
  Page s;
  s.page.Drive1.SetDrive("z");
  ASSERT_EQ(s.page.TamrixPBar3.Value(), 25.0);
  s.p.volumes['Z'].totalBytes = 0;
  s.p.volumes['Z'].freeBytes = 0;
  s.Open();
  EXPECT_EQ(s.page.TamrixPBar3.Value(), 0);
  EXPECT_EQ(s.page.d4.Text(), "Espace Total :         0");
  EXPECT_EQ(s.page.d5.Text(), "Espace Libre :         0");
}

TEST(DrivesPage, FreeSizeEqualToTheTotalGivesABarOfExactlyOneHundred) {
  Page s;
  s.p.volumes['C'].freeBytes = s.p.volumes['C'].totalBytes;
  s.Open();
  EXPECT_EQ(s.page.TamrixPBar3.Value(), 100.0);
}

TEST(DrivesPage, EachDriveTypeGivesItsLine) {
  const std::pair<std::uint32_t, const char*> kRows[] = {
      {5, "Type du Lecteur :      CDROM"},
      {3, "Type du Lecteur :      Lecteur Fixe"},
      {6, "Type du Lecteur :      Lecteur RAM"},
      {2, "Type du Lecteur :      Lecteur Removable"},
      {4, "Type du Lecteur :      Lecteur à distance"},
      {0, "Type du lecteur :      Lecteur unconnu"},
      {1, "Type du lecteur :      Lecteur unconnu"},
      {7, "Type du lecteur :      Lecteur unconnu"},
  };
  for (const auto& [type, line] : kRows) {
    Page s;
    s.p.volumes['C'].type = type;
    s.Open();
    EXPECT_EQ(s.page.d6.Text(), line) << "type " << type;
  }
}

TEST(DrivesPage, DriveTypesZeroAndOneGiveTheUnknownLineWithItsSmallL) {
  for (std::uint32_t type : {0u, 1u}) {
    Page s;
    s.p.volumes['C'].type = type;
    s.Open();
    EXPECT_EQ(s.page.d6.Text(), "Type du lecteur :      Lecteur unconnu");
  }
}

TEST(DrivesPage, TheTypeIsReadAfreshForEachComparison) {
  Page s;
  s.p.volumes['C'].type = 0;
  s.page.Drive1.Refresh();
  s.p.ClearCalls();
  s.page.InfoLecteur();
  EXPECT_EQ(Count(s.p.calls, "GetDriveTypeA(C:\\)"), 5);
  s.p.volumes['C'].type = 5;
  s.p.ClearCalls();
  s.page.InfoLecteur();
  EXPECT_EQ(Count(s.p.calls, "GetDriveTypeA(C:\\)"), 1);
}

TEST(DrivesPage, ChoosingAnotherDriveReportsOnIt) {
  Page s;
  s.Open();
  s.page.Drive1.SetListIndex(3);  // the user picks z:
  EXPECT_EQ(s.page.d3.Text(), "N°= de Série :         0000-BEEF");
  EXPECT_EQ(s.page.d4.Text(), "Espace Total :         100");
  EXPECT_EQ(s.page.d5.Text(), "Espace Libre :         25");
}

TEST(DrivesPage, ChoosingTheSameDriveAgainDoesNotRefillButTheButtonDoes) {
  Page s;
  s.Open();
  s.p.volumes['C'].label = "AUTRE";
  s.page.Drive1.SetListIndex(s.page.Drive1.ListIndex());
  EXPECT_EQ(s.page.d1.Text(), "Nom du Volume :     SYSTEME");
  s.Open();
  EXPECT_EQ(s.page.d1.Text(), "Nom du Volume :     AUTRE");
}

TEST(DrivesPage, ADriveWithoutItsDiscKeepsTheEarlierTextLinesAndShowsZeroSizesAndAnEmptyBar) {
  Page s;
  s.Open();
  ASSERT_GT(s.page.TamrixPBar3.Value(), 0);
  s.page.Drive1.SetListIndex(2);  // d:, the CD drive without its disc
  EXPECT_EQ(s.page.d1.Text(), "Nom du Volume :     SYSTEME");
  EXPECT_EQ(s.page.d2.Text(), "Système de fichier : NTFS");
  EXPECT_EQ(s.page.d3.Text(), "N°= de Série :         1A2B-3C4D");
  EXPECT_EQ(s.page.d4.Text(), "Espace Total :         0");
  EXPECT_EQ(s.page.d5.Text(), "Espace Libre :         0");
  EXPECT_EQ(s.page.TamrixPBar3.Value(), 0);
  EXPECT_EQ(s.page.d6.Text(), "Type du Lecteur :      CDROM");
}

TEST(DrivesPage, AMachineWithNoDrivesLeavesTheLinesAloneWithoutAFault) {
  Page s;
  s.p.driveLetters = "";
  s.p.volumes.clear();
  s.Open();
  EXPECT_EQ(s.page.Drive1.ListCount(), 0);
  EXPECT_EQ(s.page.d1.Text(), "");
  EXPECT_EQ(s.page.d6.Text(), "Type du lecteur :      Lecteur unconnu");
}

TEST(DrivesPage, InfoLecteursShowsTheDrivesPageAndHidesTheOtherSubPages) {
  Page s;
  s.form.sys.Click();
  s.Open();
  EXPECT_TRUE(s.form.disque.Visible());
  for (Control* other : {&s.form.fwindows, &s.form.pc, &s.form.FrmBios, &s.form.FrmCpu, &s.form.Frmson})
    EXPECT_FALSE(other->Visible()) << other->Name();
}

}  // namespace
}  // namespace tamrix
