#include <gtest/gtest.h>

#include "fake/LayoutCheck.h"
#include "unit/ToolsFixture.h"

namespace tamrix {
namespace {

using Calls = std::vector<std::string>;
using Page = Form2::Page;
using test::Tools;

struct Expected {
  int box;
  int label;
  const char* caption;
  int column;
  int row;
};

// Box, label, caption, column (0 left), row: the page as it reads.
const Expected kExpected[] = {
    {1, 1, "Bureau :", 0, 1},
    {2, 0, "Démarrer\\Programmes :", 0, 2},
    {3, 4, "Mes Documents :", 0, 3},
    {4, 6, "Favoris :", 0, 4},
    {5, 8, "Démarrer\\Programmes\\Démarrer :", 0, 5},
    {6, 10, "Recents :", 0, 6},
    {7, 12, "SendTo :", 0, 7},
    {8, 14, "Menu Démarrer :", 0, 8},
    {19, 17, "Windows :", 0, 9},
    {20, 19, "Windows\\System", 0, 10},
    {11, 2, "Fonts :", 1, 1},
    {12, 3, "ShellNew :", 1, 2},
    {13, 5, "All users\\Bureau :", 1, 3},
    {14, 7, "Application Data :", 1, 4},
    {15, 9, "PrintHood :", 1, 5},
    {16, 11, "Cache Internet :", 1, 6},
    {17, 13, "Cookies :", 1, 7},
    {18, 15, "Historique :", 1, 8},
    {10, 18, "Voisinnage Réseau :", 1, 9},
};

TEST(SpecialFolders, NineteenBoxesUnderNineteenLabelsWithoutNumberNine) {
  Tools t;
  t.Open(Page::DossiersSpeciaux);
  SpecialFoldersPage& page = t.w().dossiers;
  int boxes = 0, labels = 0;
  for (int i = 0; i <= 20; ++i) boxes += page.HasChDos(i) ? 1 : 0;
  for (int i = 0; i <= 19; ++i) labels += page.HasLabel2(i) ? 1 : 0;
  EXPECT_EQ(boxes, 19);
  EXPECT_EQ(labels, 19);
  EXPECT_FALSE(page.HasChDos(9));
  EXPECT_FALSE(page.HasChDos(0));
  EXPECT_FALSE(page.HasLabel2(16));
  EXPECT_EQ(FindControl(t.w(), "ChDos(9)"), nullptr);
  EXPECT_EQ(FindControl(t.w(), "Label2(16)"), nullptr);
}

TEST(SpecialFolders, EachBoxStandsRightUnderItsLabelInItsColumnAndRow) {
  Tools t;
  t.Open(Page::DossiersSpeciaux);
  SpecialFoldersPage& page = t.w().dossiers;
  int columnLeft[2] = {page.Label2(1).Rect().left, page.Label2(2).Rect().left};
  EXPECT_LT(columnLeft[0], columnLeft[1]);
  for (const Expected& e : kExpected) {
    SCOPED_TRACE(e.caption);
    const Twips& label = page.Label2(e.label).Rect();
    const Twips& box = page.ChDos(e.box).Rect();
    EXPECT_EQ(page.Label2(e.label).Caption(), e.caption);
    EXPECT_EQ(label.left, columnLeft[e.column]);
    EXPECT_EQ(box.left, label.left);
    EXPECT_EQ(box.top, label.top + label.height);
    // Rows go down one by one, the same pitch in both columns.
    EXPECT_EQ(label.top, page.Label2(1).Rect().top + (e.row - 1) * (page.Label2(0).Rect().top - page.Label2(1).Rect().top));
  }
}

TEST(SpecialFolders, OnlyTheSystemDirectoryLabelHasNoColon) {
  Tools t;
  t.Open(Page::DossiersSpeciaux);
  for (const Expected& e : kExpected) {
    const std::string& caption = t.w().dossiers.Label2(e.label).Caption();
    bool colon = caption.size() >= 2 && caption.compare(caption.size() - 2, 2, " :") == 0;
    EXPECT_EQ(colon, e.label != 19) << caption;
  }
  EXPECT_EQ(t.w().dossiers.Label2(19).Caption(), "Windows\\System");
}

TEST(SpecialFolders, BoxesFillInTheOrderOfTheirIndexesFromTheShellAndTheTwoDirectories) {
  Tools t;
  t.Open(Page::DossiersSpeciaux);
  Calls asked;
  for (const std::string& c : t.p.calls)
    if (c.rfind("SHGetSpecialFolderLocation", 0) == 0 || c.rfind("GetWindowsDirectoryA", 0) == 0 ||
        c.rfind("GetSystemDirectoryA", 0) == 0)
      asked.push_back(c);
  // Box 1..8, 10..18, 19, 20: the owner is the main window's handle; the buffers are of 128.
  EXPECT_EQ(asked, (Calls{"SHGetSpecialFolderLocation(0x42,0)", "SHGetSpecialFolderLocation(0x42,2)",
                          "SHGetSpecialFolderLocation(0x42,5)", "SHGetSpecialFolderLocation(0x42,6)",
                          "SHGetSpecialFolderLocation(0x42,7)", "SHGetSpecialFolderLocation(0x42,8)",
                          "SHGetSpecialFolderLocation(0x42,9)", "SHGetSpecialFolderLocation(0x42,11)",
                          "SHGetSpecialFolderLocation(0x42,19)", "SHGetSpecialFolderLocation(0x42,20)",
                          "SHGetSpecialFolderLocation(0x42,21)", "SHGetSpecialFolderLocation(0x42,25)",
                          "SHGetSpecialFolderLocation(0x42,26)", "SHGetSpecialFolderLocation(0x42,27)",
                          "SHGetSpecialFolderLocation(0x42,32)", "SHGetSpecialFolderLocation(0x42,33)",
                          "SHGetSpecialFolderLocation(0x42,34)", "GetWindowsDirectoryA(128)",
                          "GetSystemDirectoryA(128)"}));
  SpecialFoldersPage& page = t.w().dossiers;
  EXPECT_EQ(page.ChDos(2).Text(), "C:\\Documents and Settings\\Marc\\Menu Démarrer\\Programmes");
  EXPECT_EQ(page.ChDos(11).Text(), "C:\\WINDOWS\\Fonts");
  EXPECT_EQ(page.ChDos(13).Text(), "C:\\Documents and Settings\\All Users\\Bureau");
  EXPECT_EQ(page.ChDos(18).Text(), "C:\\Documents and Settings\\Marc\\Local Settings\\Historique");
  EXPECT_EQ(page.ChDos(19).Text(), "C:\\WINDOWS");
  EXPECT_EQ(page.ChDos(20).Text(), "C:\\WINDOWS\\system32");
  EXPECT_TRUE(t.p.freedItemLists.empty());  // the item lists are never given back
}

TEST(SpecialFolders, TheDesktopGivesItsFileSystemPathThroughTheSameTwoCalls) {
  Tools t;
  t.Open(Page::DossiersSpeciaux);
  auto at = std::find(t.p.calls.begin(), t.p.calls.end(), "SHGetSpecialFolderLocation(0x42,0)");
  ASSERT_NE(at, t.p.calls.end());
  EXPECT_EQ(*(at + 1), "SHGetPathFromIDListA(0x3000)");
  EXPECT_EQ(t.w().dossiers.ChDos(1).Text(), "C:\\Documents and Settings\\Marc\\Bureau");
}

TEST(SpecialFolders, AFolderTheSystemLacksLeavesItsBoxEmptyAndNothingIsSaid) {
  Tools t;
  t.p.specialFolders.erase(25);           // no common desktop on an older system
  t.p.specialFolders[32] = "";            // a virtual folder: the path call fails
  t.Open(Page::DossiersSpeciaux);
  EXPECT_EQ(t.w().dossiers.ChDos(13).Text(), "");
  EXPECT_EQ(t.w().dossiers.ChDos(16).Text(), "");
  EXPECT_EQ(t.w().dossiers.ChDos(14).Text(), "C:\\Documents and Settings\\Marc\\Application Data");
  EXPECT_TRUE(t.p.boxes.empty());
}

TEST(SpecialFolders, ADirectoryLongerThanTheBufferFillsItsBoxWithTheWholeBufferOfZeros) {
  Tools t;
  t.p.windowsDirectory = "C:\\" + std::string(140, 'w');
  t.Open(Page::DossiersSpeciaux);
  EXPECT_EQ(t.w().dossiers.ChDos(19).Text(), std::string(128, '\0'));
  EXPECT_EQ(t.w().dossiers.ChDos(20).Text(), "C:\\WINDOWS\\system32");
}

TEST(SpecialFolders, ASystemDirectoryLongerThanTheBufferFillsItsBoxWithTheWholeBufferOfZeros) {
  Tools t;
  t.p.systemDirectory = "C:\\" + std::string(125, 's');  // 128: no room left for its end
  t.Open(Page::DossiersSpeciaux);
  EXPECT_EQ(t.w().dossiers.ChDos(20).Text(), std::string(128, '\0'));
  EXPECT_EQ(t.w().dossiers.ChDos(19).Text(), "C:\\WINDOWS");
}

TEST(SpecialFolders, TheBoxesAreFilledAgainAtEachOpening) {
  Tools t;
  t.Open(Page::DossiersSpeciaux);
  t.w().dossiers.ChDos(19).SetText("D:\\edited");
  t.w().dossiers.TamrixCmd1.Click();
  t.p.windowsDirectory = "C:\\WINNT";
  t.Open(Page::ShutDown);
  EXPECT_EQ(t.w().dossiers.ChDos(19).Text(), "C:\\WINNT");
}

TEST(SpecialFolders, ClicksAndEditsOfTheBoxesDoNothing) {
  Tools t;
  t.Open(Page::DossiersSpeciaux);
  t.p.ClearCalls();
  t.w().dossiers.ChDos(1).Click();
  t.w().dossiers.ChDos(1).SetText("x");
  EXPECT_TRUE(t.p.calls.empty());
}

TEST(ToolsLayout, EveryPageOfTheToolsWindowIsTidy) {
  Tools t;
  t.Open(Page::DossiersSpeciaux);
  for (Control* frame : {static_cast<Control*>(&t.w().TamrixFrm1), static_cast<Control*>(&t.w().TamrixFrm2),
                         static_cast<Control*>(&t.w().TamrixFrm5), static_cast<Control*>(&t.w().TamrixFrm6),
                         static_cast<Control*>(&t.w().fraPerso)}) {
    const Twips& r = frame->Rect();
    EXPECT_LE(r.left + r.width, t.w().Rect().width) << frame->Name();
    EXPECT_LE(r.top + r.height, t.w().Rect().height) << frame->Name();
    // The folder page's two panels take the same place, one shown at a time.
    test::ExpectTidy(*frame, {{"fraIcone", "Frame1"}});
  }
}

}  // namespace
}  // namespace tamrix
