// The sound sub-page and the mixer slice of the start-up: the no-mixer road, the list of mixers,
// the cascade of the three drop-down lists with "<none>" and "<error>", the two eleven-row
// reports, and the boxes of the class's errors.
#include <gtest/gtest.h>

#include "fake/FakePlatform.h"
#include "forms/Form1.h"
#include "unit/MixerTestMachines.h"

namespace tamrix {
namespace {

using Items = std::vector<std::string>;
using namespace test;

struct SoundFixture : ::testing::Test {
  fake::FakePlatform p;
  std::unique_ptr<Form1> form;
  void Load() {
    form = std::make_unique<Form1>(p);
    form->hWnd = 0x42;
    form->Load();
  }
  SoundPage& page() { return form->soundPage; }
  void TwoCards() {
    p.mixers = {Mixer("Card A", {Destination("Speakers", "Master Volume", {Line("Wave", "Wave Out"), Line("CD", "CD Audio", 4101, 0)}),
                                 Destination("Rec", "Recording Control", {Line("Mic", "Microphone", 4099, 2)}, 7, 2)}),
                Mixer("Card B", {Destination("Out", "Line Out", {Line("Synth", "Synthesizer", 4100, 3)}, 2, 3)})};
  }
  std::vector<std::string> BoxTexts() const {
    std::vector<std::string> texts;
    for (const auto& b : p.boxes) texts.push_back(b.text);
    return texts;
  }
};

TEST_F(SoundFixture, NoMixerShowsTheBoxDuringLoadKeepsTheHourglassAndLeavesEveryListEmpty) {
  p.mixers.clear();
  Load();
  ASSERT_EQ(p.boxes.size(), 1u);
  EXPECT_EQ(p.boxes[0].text, "No Audio Mixers Detected!");
  EXPECT_EQ(p.boxes[0].style, 16u);
  EXPECT_EQ(p.boxes[0].title, "Tamrix Utility");
  EXPECT_EQ(form->MousePointer(), 11);
  EXPECT_TRUE(form->Loaded());
  EXPECT_TRUE(form->Frame4.Visible());  // the home page all the same
  for (ListBase* list : std::initializer_list<ListBase*>{&page().cbMixerList, &page().cbDstLineList, &page().lstDstLineInfo,
                                                         &page().cbSrcLineList, &page().lstSrcLineInfo,
                                                         &form->windowsPage.cmbLecteurDispo0,
                                                         &form->windowsPage.cmbLecteurDispo1})
    EXPECT_EQ(list->ListCount(), 0) << list->Name();
  // The drive lists aren't even looked for.
  EXPECT_EQ(std::count(p.calls.begin(), p.calls.end(), "LogicalDriveLetters()"), 0);
}

TEST_F(SoundFixture, MixerThatFailsInCreateGivesTheSameBoxAndNotTheClassSentence) {
  TwoCards();
  p.mixers[1].openError = 4;
  Load();
  EXPECT_EQ(BoxTexts(), (Items{"No Audio Mixers Detected!"}));
  EXPECT_EQ(p.boxes[0].style, 16u);
  EXPECT_EQ(form->MousePointer(), 11);
  EXPECT_EQ(page().cbMixerList.ListCount(), 0);
  EXPECT_EQ(form->windowsPage.cmbLecteurDispo0.ListCount(), 0);
}

TEST_F(SoundFixture, LoadWithMixersShowsMixerZeroItsFirstDestinationAndThatSourceThenTheArrow) {
  TwoCards();
  Load();
  EXPECT_TRUE(p.boxes.empty());
  EXPECT_EQ(form->MousePointer(), 0);
  EXPECT_EQ(page().cbMixerList.Items(), (Items{"Card A", "Card B"}));
  EXPECT_EQ(page().cbMixerList.ListIndex(), 0);
  EXPECT_EQ(page().cbDstLineList.Items(), (Items{"Master Volume", "Recording Control"}));  // long names
  EXPECT_EQ(page().cbDstLineList.ListIndex(), 0);
  EXPECT_EQ(page().cbSrcLineList.Items(), (Items{"Wave Out", "CD Audio"}));
  EXPECT_EQ(page().cbSrcLineList.ListIndex(), 0);
  EXPECT_EQ(page().lstDstLineInfo.Items(), (Items{"=========================", "Master Volume",
                                                  "=========================", "Line ID: 0",
                                                  "Line is disconnected: Faux", "Line is active: Vrai",
                                                  "Nombres de Canneaux: 2", "Nombres de Controls: 3",
                                                  "Nombres de Connections: 2",
                                                  "Audio Line Type: ADJUSTABLE LEVEL SPEAKER DESTINATION",
                                                  "Line Target Type: WAVE OUT"}));
  EXPECT_EQ(page().lstSrcLineInfo.Items(), (Items{"=========================", "Wave Out",
                                                  "=========================", "Line ID: 0",
                                                  "Line is disconnected: Faux", "Line is active: Vrai",
                                                  "Nombres de Canneaux: 2", "Nombres de Controls: 3",
                                                  "Nombres de Connections:: 0",
                                                  "Audio Line Type: WAVEOUT (DAC) SOURCE",
                                                  "Line Target Type: WAVE OUT"}));
  // The drive lists follow the mixers.
  EXPECT_EQ(form->windowsPage.cmbLecteurDispo1.ListCount(), 26);
}

TEST_F(SoundFixture, SourceReportHasTwoColonsInItsConnectionsRowTheDestinationReportOne) {
  TwoCards();
  Load();
  EXPECT_EQ(page().lstDstLineInfo.List(8), "Nombres de Connections: 2");
  EXPECT_EQ(page().lstSrcLineInfo.List(8), "Nombres de Connections:: 0");
}

TEST_F(SoundFixture, ReportRowFourIsTheChosenIndexNotThePlatformsLineId) {
  TwoCards();
  p.mixers[0].destinations[1].line.dwLineID = 0xFFFF0001;
  Load();
  page().cbDstLineList.SetListIndex(1);
  EXPECT_EQ(page().lstDstLineInfo.List(3), "Line ID: 1");
  page().cbSrcLineList.SetListIndex(0);
  EXPECT_EQ(page().lstSrcLineInfo.List(3), "Line ID: 0");
}

TEST_F(SoundFixture, ChoosingADestinationRewritesItsReportTheSourcesAndTheSourceReport) {
  TwoCards();
  Load();
  page().cbDstLineList.SetListIndex(1);
  EXPECT_TRUE(p.boxes.empty());
  EXPECT_EQ(page().lstDstLineInfo.List(1), "Recording Control");
  EXPECT_EQ(page().lstDstLineInfo.List(9), "Audio Line Type: WAVEIN (ADC) RECORDING DESTINATION");
  EXPECT_EQ(page().lstDstLineInfo.List(10), "Line Target Type: WAVE IN");
  EXPECT_EQ(page().cbSrcLineList.Items(), (Items{"Microphone"}));
  EXPECT_EQ(page().lstSrcLineInfo.List(1), "Microphone");
  EXPECT_EQ(page().lstSrcLineInfo.List(9), "Audio Line Type: MICROPHONE RECORDING SOURCE");
}

TEST_F(SoundFixture, ChoosingASourceRewritesOnlyItsReport) {
  TwoCards();
  Load();
  page().cbSrcLineList.SetListIndex(1);
  EXPECT_EQ(page().lstSrcLineInfo.List(1), "CD Audio");
  EXPECT_EQ(page().lstSrcLineInfo.List(3), "Line ID: 1");
  EXPECT_EQ(page().lstSrcLineInfo.List(10), "Line Target Type: UNDEFINED");
  EXPECT_EQ(page().lstDstLineInfo.List(1), "Master Volume");
}

TEST_F(SoundFixture, ChangeOfMixerGoesBackToDestinationZeroThoughTheClassRemembersALine) {
  TwoCards();
  Load();
  page().cbDstLineList.SetListIndex(1);
  page().cbMixerList.SetListIndex(1);
  EXPECT_EQ(page().cbDstLineList.Items(), (Items{"Line Out"}));
  EXPECT_EQ(page().lstDstLineInfo.List(1), "Line Out");
  EXPECT_EQ(page().cbSrcLineList.Items(), (Items{"Synthesizer"}));
  EXPECT_EQ(page().lstSrcLineInfo.List(1), "Synthesizer");
  page().cbMixerList.SetListIndex(0);
  EXPECT_EQ(page().cbDstLineList.ListIndex(), 0);
  EXPECT_EQ(page().lstDstLineInfo.List(1), "Master Volume");
  EXPECT_EQ(page().cbSrcLineList.Items(), (Items{"Wave Out", "CD Audio"}));
  EXPECT_TRUE(p.boxes.empty());
}

TEST_F(SoundFixture, DestinationWithoutConnectionsListsNoneAndTheClassBoxFollows) {
  p.mixers = {Mixer("Card", {Destination("Speakers", "Master Volume", {Line("Wave", "Wave Out")}),
                             Destination("Mono", "Mono Out Line", {})})};
  Load();
  page().cbDstLineList.SetListIndex(1);
  EXPECT_EQ(page().cbSrcLineList.Items(), (Items{"<none>"}));
  EXPECT_EQ(BoxTexts(), (Items{"There are only 0 source lines associated with the current destination line ( Mono ) "
                               "src: CMixer:SrcLineID[LET]"}));
  EXPECT_EQ(p.boxes[0].style, 0u);
  EXPECT_EQ(p.boxes[0].title, "Tamrix Utility");
  // The source report keeps the line shown before.
  EXPECT_EQ(page().lstSrcLineInfo.List(1), "Wave Out");
}

TEST_F(SoundFixture, FirstDestinationWithoutSourceAtLoadIsTheNoMixerBoxSinceCreateItselfFails) {
  // Create reads source 0 of the first destination; a destination without sources makes the
  // platform refuse it, and the start-up takes that for no mixer at all.
  p.mixers = {Mixer("Card", {Destination("Mono", "Mono Out Line", {})})};
  Load();
  EXPECT_EQ(BoxTexts(), (Items{"No Audio Mixers Detected!"}));
}

TEST_F(SoundFixture, OneUnreadableSourceAmongThreeListsErrorBetweenTheOthers) {
  p.mixers = {Mixer("Card", {Destination("Speakers", "Master Volume",
                                         {Line("Wave", "Wave Out"), Line("CD", "CD Audio"), Line("Aux", "Aux In")})})};
  p.mixers[0].destinations[0].sourceErrors[1] = 1;
  Load();
  EXPECT_EQ(page().cbSrcLineList.Items(), (Items{"Wave Out", "<error>", "Aux In"}));
  EXPECT_TRUE(p.boxes.empty());
  page().cbSrcLineList.SetListIndex(1);
  EXPECT_EQ(BoxTexts(), (Items{"Could not retrieve line info for Card\r\nError: unspecified error src: "
                               "CMixer:InitializeSrcLine"}));
  // The report of the line shown before stays: the first, which the list chose after filling.
  EXPECT_EQ(page().lstSrcLineInfo.List(1), "Wave Out");
}

TEST_F(SoundFixture, ListShowsLongNamesWhileTheSourceErrorUsesTheShortName) {
  p.mixers = {Mixer("Card", {Destination("Spk", "Speaker Output Volume", {Line("Wave", "Wave Out")}),
                             Destination("Mono", "Mono Output Volume", {}), Destination("Hp", "Headphones", {})})};
  Load();
  EXPECT_EQ(page().cbDstLineList.Items(), (Items{"Speaker Output Volume", "Mono Output Volume", "Headphones"}));
  page().cbDstLineList.SetListIndex(2);
  ASSERT_EQ(p.boxes.size(), 1u);
  EXPECT_NE(p.boxes[0].text.find("( Hp )"), std::string::npos) << p.boxes[0].text;
  EXPECT_EQ(p.boxes[0].text.find("Headphones"), std::string::npos);
}

TEST_F(SoundFixture, ClickOnAReportRowPutsItsTextInTheListsTip) {
  TwoCards();
  Load();
  page().lstDstLineInfo.SetListIndex(9);
  EXPECT_EQ(page().lstDstLineInfo.ToolTipText(), "Audio Line Type: ADJUSTABLE LEVEL SPEAKER DESTINATION");
  page().lstSrcLineInfo.SetListIndex(1);
  EXPECT_EQ(page().lstSrcLineInfo.ToolTipText(), "Wave Out");
}

TEST_F(SoundFixture, InfoSonOnlySwitchesFramesAndReadsNothing) {
  TwoCards();
  Load();
  form->sys.Click();
  p.ClearCalls();
  form->TamrixCmd11.Click();
  EXPECT_TRUE(form->Frmson.Visible());
  EXPECT_FALSE(form->fwindows.Visible());
  for (const auto& c : p.calls) EXPECT_EQ(c.rfind("mixer", 0), std::string::npos) << c;
}

TEST_F(SoundFixture, BooleansShowInTheSystemsWords) {
  TwoCards();
  p.trueWord = "True";
  p.falseWord = "False";
  p.mixers[0].destinations[0].line.fdwLine = 0x8000;
  Load();
  EXPECT_EQ(page().lstDstLineInfo.List(4), "Line is disconnected: True");
  EXPECT_EQ(page().lstDstLineInfo.List(5), "Line is active: False");
}

}  // namespace
}  // namespace tamrix
