#include <gtest/gtest.h>

#include <limits>

#include "fake/VirtualClock.h"
#include "platform/Runtime.h"
#include "unit/ToolsFixture.h"

namespace tamrix {
namespace {

using Flags = std::vector<std::uint32_t>;
using Page = Form2::Page;

struct Shutdown : test::Tools {
  std::unique_ptr<fake::VirtualClock> clock;
  Shutdown() {
    Open(Page::ShutDown);
    clock = std::make_unique<fake::VirtualClock>(w());
  }
  ShutdownTimerPage& page() { return w().shutdown; }
  void Set(const char* h, const char* m, const char* s) {
    page().hr.SetText(h);
    page().min.SetText(m);
    page().sec.SetText(s);
  }
  void Launch(const char* h, const char* m, const char* s) {
    Set(h, m, s);
    page().option1.Click();
  }
};

TEST(ShutdownTimer, ThePageReadsAsDesigned) {
  Shutdown s;
  EXPECT_EQ(s.page().TamrixFrm8.Caption(), "Reglez la minutrie :");
  EXPECT_EQ(s.page().TamrixFrm7.Caption(), "Selectionnez une action :");
  EXPECT_EQ(s.page().option1.Caption(), "&Lancez");
  EXPECT_EQ(s.page().TamrixOpButton1.Caption(), "&Eteindre l'ordinateur ");
  EXPECT_EQ(s.page().TamrixOpButton2.Caption(), "&Redémarrer l'ordinateur");
  EXPECT_EQ(s.page().TamrixOpButton3.Caption(), "&Eteindre l'ordinateur (Power-Management)");
  EXPECT_EQ(s.page().TamrixCB1.Caption(), "Forcez les applications qui ne répond pas");
  EXPECT_EQ(s.page().Label3.Caption(), "Heures");
  EXPECT_EQ(s.page().Label4.Caption(), "Minutes");
  EXPECT_EQ(s.page().Label5.Caption(), "Secondes");
  EXPECT_EQ(s.page().hr.Text(), "00");
  EXPECT_EQ(s.page().min.Text(), "00");
  EXPECT_EQ(s.page().sec.Text(), "00");
  EXPECT_FALSE(s.page().pbtime.Visible());
}

TEST(ShutdownTimer, OneSecondRunsTheActionOnTheFirstTick) {
  Shutdown s;
  s.Launch("00", "00", "01");
  EXPECT_TRUE(s.p.exitCalls.empty());
  s.clock->Advance(999);
  EXPECT_TRUE(s.p.exitCalls.empty());
  s.clock->Advance(1);
  EXPECT_EQ(s.p.exitCalls, (Flags{1}));
  EXPECT_EQ(s.p.calls.back(), "ExitWindowsEx(1,0)");
}

TEST(ShutdownTimer, ZeroGoesToMinusOneTheBarTakesTheDivisionByZeroWithoutAFaultAndTheActionStillRuns) {
  Shutdown s;
  s.Launch("00", "00", "00");
  EXPECT_EQ(s.page().pbtime.Tag, "0");
  // The tick hands the bar -1 / 0 * 100, negative infinity, with no fault; the bar keeps that
  // value and shows empty.
  s.clock->Advance(1000);
  EXPECT_EQ(s.form2.SecondesRestantes, -1);
  EXPECT_EQ(s.page().pbtime.Value(), -std::numeric_limits<double>::infinity());
  EXPECT_EQ(s.page().pbtime.Shown(), 0.0);
  EXPECT_EQ(s.p.exitCalls, (Flags{1}));
}

TEST(ShutdownTimer, NineHoursSixMinutesSevenSecondsIsAcceptedAndOneSecondMoreFaults) {
  Shutdown s;
  s.Launch("09", "06", "07");
  EXPECT_EQ(s.form2.SecondesRestantes, 32767);
  EXPECT_EQ(s.page().pbtime.Tag, "32767");
  s.Set("09", "06", "08");
  try {
    s.page().option1.Click();
    FAIL() << "no fault";
  } catch (const RuntimeError& e) {
    EXPECT_EQ(e.Number(), 6);
    EXPECT_EQ(e.Description(), "Overflow");
  }
}

TEST(ShutdownTimer, NinetyNineMinutesCountFiftyNineHundredAndFortySeconds) {
  Shutdown s;
  s.Launch("00", "99", "00");
  EXPECT_EQ(s.form2.SecondesRestantes, 5940);
  s.Launch("01", "02", "75");
  EXPECT_EQ(s.form2.SecondesRestantes, 3600 + 120 + 75);
}

TEST(ShutdownTimer, ABoxTheUserClearsShowsZeroZeroAtOnce) {
  Shutdown s;
  s.page().min.SetText("5");
  s.page().min.SetText("");
  EXPECT_EQ(s.page().min.Text(), "00");
  s.page().hr.SetText("");
  EXPECT_EQ(s.page().hr.Text(), "00");
  s.page().sec.SetText("");
  EXPECT_EQ(s.page().sec.Text(), "00");
}

TEST(ShutdownTimer, OnlyDigitsAndBackspacePassAnyOtherKeyIsSwallowedWithABeep) {
  Shutdown s;
  int expectedBeeps = 0;
  for (TextBox* box : {&s.page().hr, &s.page().min, &s.page().sec}) {
    for (int key : {int{'0'}, int{'5'}, int{'9'}, 8}) {
      int k = key;
      box->KeyPress(k);
      EXPECT_EQ(k, key);
    }
    EXPECT_EQ(s.p.beeps, expectedBeeps);
    for (int key : {int{'a'}, int{'-'}, int{' '}, int{'/'}, int{':'}, 13}) {
      int k = key;
      box->KeyPress(k);
      EXPECT_EQ(k, 0) << key;
    }
    expectedBeeps += 6;
  }
  EXPECT_EQ(s.p.beeps, 18);
}

TEST(ShutdownTimer, TextWithoutLeadingDigitsCountsZero) {
  Shutdown s;
  s.Launch("1x", "abc", "7 2");
  EXPECT_EQ(s.form2.SecondesRestantes, 3600 + 7);
}

TEST(ShutdownTimer, LancezStartsTheTimerTheBarAtZeroAndShowsIt) {
  Shutdown s;
  s.Launch("00", "00", "10");
  EXPECT_TRUE(s.w().Timer.Enabled());
  EXPECT_TRUE(s.page().pbtime.Visible());
  EXPECT_EQ(s.page().pbtime.Value(), 0.0);
  EXPECT_EQ(s.page().pbtime.Tag, "10");
  EXPECT_TRUE(s.page().option1.Enabled());
  s.clock->Advance(1000);
  EXPECT_NEAR(s.page().pbtime.Value(), 90.0, 1e-9);  // the share that remains
  s.clock->Advance(8000);
  EXPECT_NEAR(s.page().pbtime.Value(), 10.0, 1e-9);
  EXPECT_TRUE(s.p.exitCalls.empty());
  EXPECT_EQ(s.page().sec.Text(), "10");  // the boxes show the time set, not the time left
}

TEST(ShutdownTimer, ASecondClickRestartsWithWhatTheBoxesHoldThen) {
  Shutdown s;
  s.Launch("00", "00", "10");
  s.clock->Advance(4000);
  s.Launch("00", "00", "20");
  EXPECT_EQ(s.form2.SecondesRestantes, 20);
  EXPECT_EQ(s.page().pbtime.Value(), 0.0);
  s.clock->Advance(1000);
  EXPECT_EQ(s.form2.SecondesRestantes, 19);
}

TEST(ShutdownTimer, TheRestartChoiceCallsRestartThenLogOffOnEveryTickFromZero) {
  Shutdown s;
  s.page().TamrixOpButton2.Click();
  s.Launch("00", "00", "02");
  s.clock->Advance(2000);
  EXPECT_EQ(s.p.exitCalls, (Flags{2, 0}));
  s.clock->Advance(2000);
  EXPECT_EQ(s.p.exitCalls, (Flags{2, 0, 2, 0, 2, 0}));
  EXPECT_EQ(s.form2.SecondesRestantes, -2);
}

TEST(ShutdownTimer, TheShutdownChoiceIsAskedForAgainEachSecondWhileTheMachineRuns) {
  Shutdown s;
  s.Launch("00", "00", "01");
  s.clock->Advance(3000);
  EXPECT_EQ(s.p.exitCalls, (Flags{1, 1, 1}));
  EXPECT_TRUE(s.w().Timer.Enabled());
}

TEST(ShutdownTimer, TheThirdOptionRunsPastZeroAndWrapsFromMinus32768To32767WithoutAFault) {
  Shutdown s;
  s.page().TamrixOpButton3.Click();
  s.Launch("00", "00", "01");
  s.clock->Advance(1000);
  EXPECT_EQ(s.form2.SecondesRestantes, 0);
  s.form2.SecondesRestantes = -32767;
  s.clock->Advance(1000);
  EXPECT_EQ(s.form2.SecondesRestantes, -32768);
  s.clock->Advance(1000);
  EXPECT_EQ(s.form2.SecondesRestantes, 32767);
  EXPECT_EQ(s.page().pbtime.Value(), 3276700.0);  // 32767 / 1 * 100, kept as given
  EXPECT_EQ(s.page().pbtime.Shown(), 100.0);      // and painted full
  EXPECT_TRUE(s.p.exitCalls.empty());
}

TEST(ShutdownTimer, TheForceBoxMakesNoDifference) {
  Flags withBox, withoutBox;
  for (bool ticked : {true, false}) {
    Shutdown s;
    if (ticked) s.page().TamrixCB1.Click();
    s.page().TamrixOpButton2.Click();
    s.Launch("00", "00", "01");
    s.clock->Advance(1000);
    (ticked ? withBox : withoutBox) = s.p.exitCalls;
  }
  EXPECT_EQ(withBox, (Flags{2, 0}));
  EXPECT_EQ(withBox, withoutBox);
}

}  // namespace
}  // namespace tamrix
