#include <gtest/gtest.h>

#include "unit/ToolsFixture.h"

namespace tamrix {
namespace {

using Calls = std::vector<std::string>;
using Page = Form2::Page;
using Items = std::vector<std::string>;

DevMode Mode(std::uint32_t w, std::uint32_t h, std::uint32_t bits, std::uint32_t hz = 60) { return {0, bits, w, h, hz}; }

struct Resolution : test::Tools {
  void OpenWith(std::vector<DevMode> modes) {
    p.displayModes = std::move(modes);
    Open(Page::Resolution);
  }
  ScreenResolutionPage& page() { return w().resolution; }
};

TEST(ScreenResolution, ThePageReadsAsDesigned) {
  Resolution r;
  r.OpenWith({});
  EXPECT_EQ(r.page().Label6.Caption(), "La liste des résolution supportées par votre Système :");
  EXPECT_EQ(r.page().Command1.Caption(), "&Changer");
  EXPECT_EQ(r.page().TamrixCmd6.Caption(), "&Annuler");
}

TEST(ScreenResolution, EveryModeIsListedAsWidthHeightBitsUnsortedWithNothingFilteredOut) {
  Resolution r;
  r.OpenWith({Mode(1024, 768, 32, 60), Mode(640, 480, 8), Mode(1024, 768, 32, 75), Mode(800, 600, 16)});
  EXPECT_EQ(r.page().List1.Items(), (Items{"1024x768x32", "640x480x8", "1024x768x32", "800x600x16"}));
  EXPECT_EQ(r.form2.IndexMode, 3);
}

TEST(ScreenResolution, TheCurrentModeIsSelectedTheLastMatchStays) {
  Resolution r;
  r.OpenWith({Mode(1024, 768, 32, 60), Mode(640, 480, 8), Mode(1024, 768, 32, 75), Mode(800, 600, 16)});
  EXPECT_EQ(r.page().List1.ListIndex(), 2);
  // The display is read on the tools window's own device context.
  EXPECT_NE(std::find(r.p.calls.begin(), r.p.calls.end(), "GetDeviceCaps(0x70,12)"), r.p.calls.end());
}

TEST(ScreenResolution, TheCurrentSizeIsTheScreenInTwipsOverTheTwipsOfAPixel) {
  Resolution r;
  r.p.screen = {800 * 12, 600 * 12, 12, 12};  // 120 dots per inch
  r.p.bitsPerPixel = 16;
  r.OpenWith({Mode(1024, 768, 16), Mode(800, 600, 16), Mode(800, 600, 32)});
  EXPECT_EQ(r.page().List1.ListIndex(), 1);
}

TEST(ScreenResolution, WhenNoModeMatchesNothingIsSelected) {
  Resolution r;
  r.OpenWith({Mode(640, 480, 8), Mode(800, 600, 16), Mode(1024, 768, 16)});
  EXPECT_EQ(r.page().List1.ListIndex(), -1);
  EXPECT_EQ(r.page().List1.ListCount(), 3);
}

TEST(ScreenResolution, EightModesNeverGrowTheArray) {
  Resolution r;
  std::vector<DevMode> modes;
  for (std::uint32_t i = 0; i < 8; ++i) modes.push_back(Mode(640 + i, 480, 32));
  r.OpenWith(modes);
  EXPECT_EQ(r.form2.ModesEcran.size(), 9u);  // upper bound 8
  EXPECT_EQ(r.form2.IndexMode, 7);
  EXPECT_EQ(r.page().List1.ListCount(), 8);
}

TEST(ScreenResolution, NineModesGrowTheArrayOnceBeforeTheReadThatEndsTheLoop) {
  Resolution r;
  std::vector<DevMode> modes;
  for (std::uint32_t i = 0; i < 9; ++i) modes.push_back(Mode(640 + i, 480, 32));
  r.OpenWith(modes);
  EXPECT_EQ(r.form2.ModesEcran.size(), 17u);  // upper bound 16
  EXPECT_EQ(r.form2.IndexMode, 8);
  // The records read before the growth are kept.
  for (std::uint32_t i = 0; i < 9; ++i) EXPECT_EQ(r.form2.ModesEcran[i].dmPelsWidth, 640 + i);
  Calls reads;
  for (const std::string& c : r.p.calls)
    if (c.rfind("EnumDisplaySettingsA", 0) == 0) reads.push_back(c);
  ASSERT_EQ(reads.size(), 10u);
  EXPECT_EQ(reads.back(), "EnumDisplaySettingsA(9)");
}

TEST(ScreenResolution, SeventeenModesGrowTheArrayTwice) {
  Resolution r;
  std::vector<DevMode> modes;
  for (std::uint32_t i = 0; i < 17; ++i) modes.push_back(Mode(640 + i, 480, 32));
  r.OpenWith(modes);
  EXPECT_EQ(r.form2.ModesEcran.size(), 25u);
  EXPECT_EQ(r.page().List1.ListCount(), 17);
}

TEST(ScreenResolution, ChangerOnTheCurrentModeAppliesItAgainWithNoVisibleReply) {
  Resolution r;
  r.OpenWith({Mode(640, 480, 8), Mode(1024, 768, 32, 75)});
  ASSERT_EQ(r.page().List1.ListIndex(), 1);
  r.page().Command1.Click();
  ASSERT_EQ(r.p.changes.size(), 1u);
  EXPECT_EQ(r.p.changes[0].first.dmFields, 1835008u);
  EXPECT_EQ(r.p.changes[0].first.dmPelsWidth, 1024u);
  EXPECT_EQ(r.p.changes[0].first.dmPelsHeight, 768u);
  EXPECT_EQ(r.p.changes[0].first.dmBitsPerPel, 32u);
  EXPECT_EQ(r.p.changes[0].second, 1u);  // CDS_UPDATEREGISTRY
  EXPECT_TRUE(r.p.boxes.empty());
  EXPECT_TRUE(r.form2.Loaded());
}

TEST(ScreenResolution, ARestartAnswerAsksAndYesRestarts) {
  Resolution r;
  r.OpenWith({Mode(640, 480, 8), Mode(1024, 768, 32)});
  r.page().List1.SetListIndex(0);
  r.p.changeResults = {1};
  r.p.answers = {mb::IdYes};
  r.page().Command1.Click();
  ASSERT_EQ(r.p.boxes.size(), 1u);
  EXPECT_EQ(r.p.boxes[0].text, "Ces changements ne seront effectuées qu'après redémarrage.  Redémarrer maintenant?");
  EXPECT_EQ(r.p.boxes[0].style, mb::YesNo);
  EXPECT_EQ(r.p.boxes[0].title, "Tamrix Utility");
  EXPECT_EQ(r.p.exitCalls, (std::vector<std::uint32_t>{2}));
  EXPECT_EQ(r.p.calls.back(), "ExitWindowsEx(2,0)");
}

TEST(ScreenResolution, ARestartAnswerWithNoDoesNothingMore) {
  Resolution r;
  r.OpenWith({Mode(640, 480, 8), Mode(1024, 768, 32)});
  r.p.changeResults = {1};
  r.p.answers = {mb::IdNo};
  r.page().Command1.Click();
  EXPECT_EQ(r.p.boxes.size(), 1u);
  EXPECT_TRUE(r.p.exitCalls.empty());
}

TEST(ScreenResolution, AnyOtherAnswerShowsTheErrorWithTheCodeRightBehind) {
  Resolution r;
  r.OpenWith({Mode(640, 480, 8), Mode(1024, 768, 32)});
  r.p.changeResults = {-1, -2};
  r.page().Command1.Click();
  r.page().Command1.Click();
  ASSERT_EQ(r.p.boxes.size(), 2u);
  EXPECT_EQ(r.p.boxes[0].text, "Erreur de changement de résolution!-1");
  EXPECT_EQ(r.p.boxes[0].title, " Tamrix Resolution");
  EXPECT_EQ(r.p.boxes[0].style, mb::Ok | mb::Information);
  EXPECT_EQ(r.p.boxes[1].text, "Erreur de changement de résolution!-2");
  EXPECT_TRUE(r.p.exitCalls.empty());
}

TEST(ScreenResolution, AClickWithNothingSelectedIsIgnored) {
  Resolution r;
  r.OpenWith({Mode(640, 480, 8)});
  ASSERT_EQ(r.page().List1.ListIndex(), -1);
  r.p.ClearCalls();
  r.page().Command1.Click();
  EXPECT_TRUE(r.p.calls.empty());
  EXPECT_TRUE(r.p.changes.empty());
}

TEST(ScreenResolution, TheListIsNotRebuiltAfterAChangeAndTheUsersEntryStaysMarked) {
  Resolution r;
  r.OpenWith({Mode(640, 480, 8), Mode(1024, 768, 32)});
  r.page().List1.SetListIndex(0);
  r.page().Command1.Click();
  EXPECT_EQ(r.page().List1.ListIndex(), 0);
  EXPECT_EQ(r.page().List1.ListCount(), 2);
}

}  // namespace
}  // namespace tamrix
