// The design of the other pages of the main window: every control inside its container, clear
// of the title band and of its siblings, but for the controls that lie on one another on purpose.
#include <gtest/gtest.h>

#include "fake/FakePlatform.h"
#include "fake/LayoutCheck.h"
#include "forms/Form1.h"

namespace tamrix {
namespace {

using test::ExpectTidy;

struct PagesLayout : ::testing::Test {
  fake::FakePlatform p;
  Form1 form{p};
};

TEST_F(PagesLayout, ProtectionPage) { ExpectTidy(form.frmprot); }

TEST_F(PagesLayout, HomePage) { ExpectTidy(form.Frame4); }

TEST_F(PagesLayout, WindowsAndPcSubPages) {
  ExpectTidy(form.fwindows);
  ExpectTidy(form.pc);
}

TEST_F(PagesLayout, DrivesSubPageWithItsShadowedTitle) { ExpectTidy(form.disque, {{"Label5", "Label6"}}); }

TEST_F(PagesLayout, BiosSubPageWhereTheReportAndTheListTakeTurns) { ExpectTidy(form.FrmBios, {{"Text1", "List1"}}); }

TEST_F(PagesLayout, CpuSubPageWhereEachLitSymbolCoversItsGreyOne) {
  ExpectTidy(form.FrmCpu,
             {{"iImage5", "iImage1"}, {"iImage6", "iImage2"}, {"iImage7", "iImage3"}, {"iImage8", "iImage4"}});
  for (auto [lit, grey] : {std::pair{&form.cpuPage.iImage5, &form.cpuPage.iImage1},
                           std::pair{&form.cpuPage.iImage6, &form.cpuPage.iImage2},
                           std::pair{&form.cpuPage.iImage7, &form.cpuPage.iImage3},
                           std::pair{&form.cpuPage.iImage8, &form.cpuPage.iImage4}}) {
    EXPECT_EQ(lit->Rect().left, grey->Rect().left);
    EXPECT_EQ(lit->Rect().top, grey->Rect().top);
    EXPECT_EQ(lit->Rect().width, 375);  // 25 by 24 pixels
    EXPECT_EQ(lit->Rect().height, 360);
    EXPECT_FALSE(lit->Visible());
    EXPECT_TRUE(grey->Visible());
  }
}

TEST_F(PagesLayout, SoundSubPage) { ExpectTidy(form.Frmson); }

TEST_F(PagesLayout, TestLabStripStandsBelowTheSubPages) {
  for (Control* sub : {&form.FrmBios, &form.fwindows, &form.pc, &form.disque, &form.FrmCpu, &form.Frmson})
    EXPECT_LE(sub->Rect().top + sub->Rect().height, 3525) << sub->Name();
}

TEST_F(PagesLayout, AboutPageWhereTheTextRunsUnderItsHeader) {
  ExpectTidy(form.aboutPage.Picture1);
  EXPECT_EQ(form.aboutPage.Picture1.Parent(), &form.Propos);
  EXPECT_EQ(form.aboutPage.Image8.Rect().width, 480);  // a 32 by 32 icon
  EXPECT_EQ(form.aboutPage.Image8.Rect().height, 480);
}

}  // namespace
}  // namespace tamrix
