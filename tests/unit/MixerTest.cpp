// The mixer class against scripted sound cards: what Create reads and in which order, the
// selection by number, the getters, the raised errors with their numbers, sources and
// sentences, and the three text tables of Module2.
#include <gtest/gtest.h>

#include "fake/FakePlatform.h"
#include "platform/Runtime.h"
#include "sysinfo/CMixer.h"
#include "sysinfo/Module2.h"
#include "unit/MixerTestMachines.h"

namespace tamrix {
namespace {

using Calls = std::vector<std::string>;
using namespace test;

struct MixerFixture : ::testing::Test {
  fake::FakePlatform p;
  // Two cards: the first with a speaker line of two sources and a recording line of one, the
  // second with a single line of one source.
  void TwoCards() {
    p.mixers = {Mixer("Card A", {Destination("Speakers", "Master Volume", {Line("Wave", "Wave Out"), Line("CD", "CD Audio", 4101)}),
                                 Destination("Rec", "Recording Control", {Line("Mic", "Microphone", 4099, 2)}, 7, 2)}),
                Mixer("Card B", {Destination("Out", "Line Out", {Line("Synth", "Synthesizer", 4100, 3)}, 2, 3)})};
  }
  // Runs f and gives back the error it raised; fails the test when it raised none.
  template <class F>
  RuntimeError Raised(F f) {
    try {
      f();
    } catch (const RuntimeError& e) {
      return e;
    }
    ADD_FAILURE() << "no error raised";
    return RuntimeError(0, "");
  }
};

TEST_F(MixerFixture, NoMixerOnTheMachineCreateGivesZeroAndRaisesNothing) {
  p.mixers.clear();
  CMixer m(p);
  EXPECT_EQ(m.Create(0x42), 0);
  EXPECT_EQ(m.NumMixerDevs(), 0);
  EXPECT_EQ(p.calls, (Calls{"mixerGetNumDevs()"}));
}

TEST_F(MixerFixture, CreateReadsCapsOpensEveryMixerReadsEveryDestinationThenSourceZero) {
  TwoCards();
  CMixer m(p);
  EXPECT_EQ(m.Create(0x42), 2);
  EXPECT_EQ(p.calls, (Calls{"mixerGetNumDevs()", "mixerGetDevCapsA(0,48)", "mixerGetDevCapsA(1,48)",
                            "mixerOpen(0,0,0,0)", "mixerOpen(1,0,0,0)",
                            "mixerGetLineInfoA(0x5000,0,0)", "mixerGetLineInfoA(0x5000,1,0)",
                            "mixerGetLineInfoA(0x5001,0,0)", "mixerGetLineInfoA(0x5000,0,0,1)"}));
  EXPECT_EQ(p.openMixers.size(), 2u);
  EXPECT_EQ(m.MixerName(), "Card A");
  EXPECT_EQ(m.numDestinations(), 2);
  EXPECT_EQ(m.hMixer(), 0x5000u);
  EXPECT_EQ(m.SrcLineName(true), "Wave Out");
}

TEST_F(MixerFixture, NamesAreCutAtTheFirstNulOfTheirFields) {
  TwoCards();
  CMixer m(p);
  m.Create(0);
  EXPECT_EQ(m.MixerName(), "Card A");
  EXPECT_EQ(m.DstLineName(), "Speakers");
  EXPECT_EQ(m.DstLineName(false), "Speakers");
  EXPECT_EQ(m.DstLineName(true), "Master Volume");
  EXPECT_EQ(m.SrcLineName(), "Wave");
  EXPECT_EQ(m.SrcLineName(true), "Wave Out");
}

TEST_F(MixerFixture, DriverVersionSplitsTheLowWordIntoMajorAndMinor) {
  p.mixers = {Mixer("Card", {Destination("Out", "Out", {Line("W", "W")})}, 0x12340A05)};
  CMixer m(p);
  m.Create(0);
  EXPECT_EQ(m.MixerVerMajor(), 10);
  EXPECT_EQ(m.MixerVerMinor(), 5);
}

TEST_F(MixerFixture, GettersOfBothLinesReadTheirRecords) {
  TwoCards();
  p.mixers[0].destinations[1].line.fdwLine = 0x8000;      // disconnected, not active
  p.mixers[0].destinations[1].sources[0].fdwLine = 0x8001;  // both
  p.mixers[0].destinations[1].sources[0].cConnections = 4;
  CMixer m(p);
  m.Create(0);
  EXPECT_TRUE(m.DstLineActive());
  EXPECT_FALSE(m.DstLineDisconnected());
  m.SetDstLineID(1);
  m.SetSrcLineID(0);
  EXPECT_EQ(m.DstLineID(), 1);
  EXPECT_FALSE(m.DstLineActive());
  EXPECT_TRUE(m.DstLineDisconnected());
  EXPECT_EQ(m.numDstLineChannels(), 2);
  EXPECT_EQ(m.numDstLineControls(), 3);
  EXPECT_EQ(m.numDstLineConnections(), 1);
  EXPECT_EQ(m.DstLineType(), 7);
  EXPECT_EQ(m.DstLineTarget(), 2);
  EXPECT_TRUE(m.SrcLineActive());
  EXPECT_TRUE(m.SrcLineDisconnected());
  EXPECT_EQ(m.numSrcLineChannels(), 2);
  EXPECT_EQ(m.numSrcLineControls(), 3);
  EXPECT_EQ(m.numSrcLineConnections(), 4);
  EXPECT_EQ(m.SrcLineType(), 4099);
  EXPECT_EQ(m.SrcLineTarget(), 2);
  EXPECT_EQ(m.SrcLineName(true), "Microphone");
}

TEST_F(MixerFixture, OnlyMixerWithoutDestinationsKeepsOneRowAndRefusesEveryDestination) {
  p.mixers = {Mixer("Empty", {})};
  CMixer m(p);
  // Source 0 of destination 0 is read all the same, and the platform refuses it.
  RuntimeError e = Raised([&] { m.Create(0); });
  EXPECT_EQ(e.Number(), 1024);
  EXPECT_EQ(e.Source(), "CMixer:InitializeSrcLine");
  EXPECT_EQ(m.numDestinations(), 0);
  EXPECT_EQ(m.DstLineName(true), "");  // the one row is there, never filled
  e = Raised([&] { m.SetDstLineID(0); });
  EXPECT_EQ(e.Number(), 380);
  EXPECT_EQ(e.Source(), "CMixer:DstLineID[LET]");
  EXPECT_EQ(e.Description(), "There are only 0 destination lines on this mixer.");
}

TEST_F(MixerFixture, SecondCreateClosesEveryHandleFirstAndGivesTheSamePicture) {
  TwoCards();
  CMixer m(p);
  m.Create(0);
  m.SetMixerID(1);
  p.ClearCalls();
  EXPECT_EQ(m.Create(0), 2);
  ASSERT_GE(p.calls.size(), 3u);
  EXPECT_EQ(Calls(p.calls.begin(), p.calls.begin() + 3),
            (Calls{"mixerClose(0x5000)", "mixerClose(0x5001)", "mixerGetNumDevs()"}));
  EXPECT_EQ(p.openMixers, (std::set<MixerHandle>{0x5002, 0x5003}));
  EXPECT_EQ(m.MixerID(), 0);
  EXPECT_EQ(m.MixerName(), "Card A");
  EXPECT_EQ(m.DstLineName(true), "Master Volume");
  EXPECT_EQ(m.SrcLineName(true), "Wave Out");
}

TEST_F(MixerFixture, MixerIdOutOfRangeKeepsTheSelectionAndReportsNothing) {
  TwoCards();
  CMixer m(p);
  m.Create(0);
  m.SetMixerID(1);
  EXPECT_NO_THROW(m.SetMixerID(-1));
  EXPECT_EQ(m.MixerID(), 1);
  EXPECT_NO_THROW(m.SetMixerID(2));
  EXPECT_EQ(m.MixerID(), 1);
  EXPECT_EQ(m.MixerName(), "Card B");
}

TEST_F(MixerFixture, SettingMixerIdOnlyStoresTheNumberAndReadsNothing) {
  TwoCards();
  CMixer m(p);
  m.Create(0);
  p.ClearCalls();
  m.SetMixerID(1);
  EXPECT_TRUE(p.calls.empty());
  EXPECT_EQ(m.SrcLineName(true), "Wave Out");  // still the line of the first card
}

TEST_F(MixerFixture, SourceZeroOnDestinationWithoutConnectionsRaises380WithCountZero) {
  p.mixers = {Mixer("Card", {Destination("Speakers", "Master Volume", {Line("Wave", "Wave Out")}),
                             Destination("Mono", "Mono Out", {})})};
  CMixer m(p);
  m.Create(0);
  m.SetDstLineID(1);
  p.ClearCalls();
  RuntimeError e = Raised([&] { m.SetSrcLineID(0); });
  EXPECT_EQ(e.Number(), 380);
  EXPECT_EQ(e.Source(), "CMixer:SrcLineID[LET]");
  EXPECT_EQ(e.Description(), "There are only 0 source lines associated with the current destination line ( Mono )");
  EXPECT_TRUE(p.calls.empty());
  EXPECT_EQ(m.SrcLineID(), 0);
  EXPECT_EQ(m.SrcLineName(true), "Wave Out");
}

TEST_F(MixerFixture, DestinationIdOutOfRangeRaisesWithTheCount) {
  TwoCards();
  CMixer m(p);
  m.Create(0);
  RuntimeError e = Raised([&] { m.SetDstLineID(2); });
  EXPECT_EQ(e.Number(), 380);
  EXPECT_EQ(e.Description(), "There are only 2 destination lines on this mixer.");
  EXPECT_EQ(m.DstLineID(), 0);
  e = Raised([&] { m.SetDstLineID(-1); });
  EXPECT_EQ(e.Source(), "CMixer:DstLineID[LET]");
}

TEST_F(MixerFixture, DestinationIsKeptPerMixerWhileTheSourceIsOneForAll) {
  TwoCards();
  CMixer m(p);
  m.Create(0);
  m.SetDstLineID(1);
  m.SetSrcLineID(0);
  m.SetMixerID(1);
  EXPECT_EQ(m.DstLineID(), 0);
  m.SetMixerID(0);
  EXPECT_EQ(m.DstLineID(), 1);
  EXPECT_EQ(m.DstLineName(true), "Recording Control");

  m.SetDstLineID(0);
  m.SetSrcLineID(1);
  m.SetMixerID(1);
  EXPECT_EQ(m.SrcLineID(), 1);  // the same number on the other card, though it has one source only
}

TEST_F(MixerFixture, EachSettingOfTheSourceIsAFreshRead) {
  TwoCards();
  CMixer m(p);
  m.Create(0);
  p.ClearCalls();
  m.SetSrcLineID(1);
  m.SetSrcLineID(1);
  EXPECT_EQ(p.calls, (Calls{"mixerGetLineInfoA(0x5000,0,1,1)", "mixerGetLineInfoA(0x5000,0,1,1)"}));
  EXPECT_EQ(m.SrcLineName(true), "CD Audio");
}

TEST_F(MixerFixture, ChangingTheDestinationLeavesTheSourceStaleUntilTheSourceIsSet) {
  TwoCards();
  CMixer m(p);
  m.Create(0);
  p.ClearCalls();
  m.SetDstLineID(1);
  EXPECT_TRUE(p.calls.empty());
  EXPECT_EQ(m.SrcLineName(true), "Wave Out");
  m.SetSrcLineID(0);
  EXPECT_EQ(m.SrcLineName(true), "Microphone");
}

TEST_F(MixerFixture, UnreadableSourceRaisesThePlatformCodeAndKeepsTheLineShownBefore) {
  TwoCards();
  p.mixers[0].destinations[0].sourceErrors[1] = 1;
  CMixer m(p);
  m.Create(0);
  RuntimeError e = Raised([&] { m.SetSrcLineID(1); });
  EXPECT_EQ(e.Number(), 1);
  EXPECT_EQ(e.Source(), "CMixer:InitializeSrcLine");
  EXPECT_EQ(e.Description(), "Could not retrieve line info for Card A\r\nError: unspecified error");
  EXPECT_EQ(m.SrcLineID(), 0);
  EXPECT_EQ(m.SrcLineName(true), "Wave Out");
}

TEST_F(MixerFixture, CapsFailureRaisesTheCodeWithItsWordsAlone) {
  TwoCards();
  p.mixers[1].capsError = 6;
  CMixer m(p);
  RuntimeError e = Raised([&] { m.Create(0); });
  EXPECT_EQ(e.Number(), 6);
  EXPECT_EQ(e.Source(), "CMixer:Create");
  EXPECT_EQ(e.Description(), "no device driver present");
  EXPECT_EQ(m.NumMixerDevs(), 2);
  EXPECT_TRUE(p.openMixers.empty());
}

TEST_F(MixerFixture, ThirdMixerFailingToOpenIsNamedAfterTheFirstAndTheOthersStayOpen) {
  TwoCards();
  p.mixers.push_back(Mixer("Card C", {Destination("Out", "Out", {Line("W", "W")})}));
  p.mixers[2].openError = 4;
  CMixer m(p);
  RuntimeError e = Raised([&] { m.Create(0); });
  EXPECT_EQ(e.Number(), 4);
  EXPECT_EQ(e.Source(), "CMixer:OpenMixers");
  EXPECT_EQ(e.Description(), "Could not open Card A\r\nError: device already allocated");
  EXPECT_EQ(m.NumMixerDevs(), 3);
  EXPECT_EQ(p.openMixers.size(), 2u);  // half built: what was opened stays open
}

TEST_F(MixerFixture, UnreadableDestinationRaisesWithTheWordsOfTheLineInfo) {
  TwoCards();
  p.mixers[1].destinations[0].error = 1024;
  CMixer m(p);
  RuntimeError e = Raised([&] { m.Create(0); });
  EXPECT_EQ(e.Number(), 1024);
  EXPECT_EQ(e.Source(), "CMixer:InitializeDestLines");
  EXPECT_EQ(e.Description(), "Could not retrieve line info for Card A\r\nError: invalid line");
}

TEST_F(MixerFixture, TheObjectsEndClosesItsMixers) {
  TwoCards();
  {
    CMixer m(p);
    m.Create(0);
    EXPECT_EQ(p.openMixers.size(), 2u);
  }
  EXPECT_TRUE(p.openMixers.empty());
}

TEST_F(MixerFixture, GettersBeforeCreateFaultInsteadOfReadingNothing) {
  CMixer m(p);
  RuntimeError e = Raised([&] { (void)m.MixerName(); });
  EXPECT_EQ(e.Number(), 9);
  e = Raised([&] { (void)m.DstLineName(true); });
  EXPECT_EQ(e.Number(), 9);
}

// --- Module2 ---

TEST(Module2, MixerErrorTextEveryRow) {
  const std::vector<std::pair<int, const char*>> rows = {
      {0, "no error"},
      {1, "unspecified error"},
      {2, "device ID out of range"},
      {3, "driver failed enable"},
      {4, "device already allocated"},
      {5, "device handle is invalid"},
      {6, "no device driver present"},
      {7, "memory allocation error"},
      {8, "function isn't supported"},
      {9, "error value out of range"},
      {10, "invalid flag passed"},
      {11, "invalid parameter passed"},
      {12, "handle being used"},
      {13, "specified alias not found"},
      {14, "bad registry database"},
      {15, "registry key not found"},
      {16, "registry read error"},
      {17, "registry write error"},
      {18, "registry delete error"},
      {19, "registry value not found"},
      {20, "driver does not call DriverCallback"},
      {1024, "invalid line"},
      {1025, "invalid control"},
      {1026, "invalid value"},
  };
  for (const auto& [code, text] : rows) EXPECT_EQ(Module2::MixerErrorText(code), text) << code;
  for (int other : {21, -1, 1023, 1027, 380}) EXPECT_EQ(Module2::MixerErrorText(other), "unknown error") << other;
}

TEST(Module2, LineTypeTextEveryRow) {
  const std::vector<std::pair<int, const char*>> rows = {
      {0, "UNDEFINED LINE TYPE"},
      {1, "DIGITAL DESTINATION"},
      {2, "LINE LEVEL DESTINATION"},
      {3, "MONITOR DESTINATION"},
      {4, "ADJUSTABLE LEVEL SPEAKER DESTINATION"},
      {5, "ADJUSTABLE LEVEL HEADPHONES DESTINATION"},
      {6, "TELEPHONE LINE DESTINATION"},
      {7, "WAVEIN (ADC) RECORDING DESTINATION"},
      {8, "VOICE RECORDING DESTINATION"},
      {4096, "NON-STANDARD SOURCE"},
      {4097, "DIGITAL SOURCE"},
      {4098, "LINE LEVEL SOURCE"},
      {4099, "MICROPHONE RECORDING SOURCE"},
      {4100, "INTERNAL SYNTHESIZER SOURCE"},
      {4101, "INTERNAL AUDIO CD SOURCE"},
      {4102, "TELEPHONE LINE SOURCE"},
      {4103, "PC SPEAKER SOURCE"},
      {4104, "WAVEOUT (DAC) SOURCE"},
      {4105, "AUXILIARY AUDIO SOURCE"},
      {4106, "ANALOG SOURCE"},
  };
  for (const auto& [value, text] : rows) EXPECT_EQ(Module2::LineTypeText(value), text) << value;
  for (int other : {4107, 9, 4095, -1}) EXPECT_EQ(Module2::LineTypeText(other), "UNKNOWN") << other;
}

TEST(Module2, LineTargetTextEveryRow) {
  const std::vector<std::pair<int, const char*>> rows = {
      {0, "UNDEFINED"}, {1, "WAVE OUT"}, {2, "WAVE IN"}, {3, "MIDI OUT"}, {4, "MIDI IN"}, {5, "AUX AUDIO"},
  };
  for (const auto& [value, text] : rows) EXPECT_EQ(Module2::LineTargetText(value), text) << value;
  for (int other : {6, -1, 4096}) EXPECT_EQ(Module2::LineTargetText(other), "UNKNOWN") << other;
}

TEST(Module2, BitHelpers) {
  EXPECT_EQ(Module2::LoWord(0x12345678u), 0x5678);
  EXPECT_EQ(Module2::LoByte(0x5678), 0x78);
  EXPECT_EQ(Module2::HiByte(0x5678), 0x56);
  EXPECT_EQ(Module2::HiByte(Module2::LoWord(0xFFFF0A05u)), 0x0A);
}

}  // namespace
}  // namespace tamrix
