// The keyboard's walk over the forms: Tab in the order the pages declare their controls, the
// arrows inside a group of options, Alt and a caption's marked letter.
#include <gtest/gtest.h>

#include "fake/FakePlatform.h"
#include "forms/Form1.h"
#include "shell/Keyboard.h"
#include "unit/ToolsFixture.h"

namespace tamrix {
namespace {

using Names = std::vector<std::string>;

Names StopNames(Control& form) {
  Names names;
  for (Control* c : keyboard::TabStops(form)) names.push_back(c->Name());
  return names;
}

struct KeyboardFixture : ::testing::Test {
  fake::FakePlatform p;
  Form1 form{p};
  void SetUp() override { form.Load(); }
};

TEST_F(KeyboardFixture, TabOnTheHomePageWalksTheNavigationButtonsInTheirDesignOrder) {
  EXPECT_EQ(StopNames(form), (Names{"command3", "win", "internet", "sys", "TamrixCmd7", "apro", "TamrixCmd1"}));
}

TEST_F(KeyboardFixture, TabFromTheLastControlWrapsToTheFirstAndShiftTabGoesBack) {
  EXPECT_EQ(keyboard::NextTabStop(form, &form.TamrixCmd1, false), &form.command3);
  EXPECT_EQ(keyboard::NextTabStop(form, &form.command3, true), &form.TamrixCmd1);
  EXPECT_EQ(keyboard::NextTabStop(form, &form.win, false), &form.internet);
  EXPECT_EQ(keyboard::NextTabStop(form, nullptr, false), &form.command3);
  EXPECT_EQ(keyboard::NextTabStop(form, nullptr, true), &form.TamrixCmd1);
}

TEST_F(KeyboardFixture, TheProtectionPageComesFirstInTheWalkWithItsBoxesThenOneStopForItsOptionsThenApply) {
  form.TamrixCmd7.Click();
  // Neither option is chosen when the page opens: the group's stop is its first option.
  ASSERT_FALSE(form.protection.Option10.Selected());
  ASSERT_FALSE(form.protection.Option9.Selected());
  Names stops = StopNames(form);
  ASSERT_GE(stops.size(), 21u);
  EXPECT_EQ(Names(stops.begin(), stops.begin() + 21),
            (Names{"box2", "box1", "box3", "box4", "box6", "box9", "box10", "box11", "box12", "box13", "box14",
                   "Check1", "box15", "box16", "box17", "box18", "box19", "box20",
                   "Option10", "ReyCommand2", "command3"}));
  EXPECT_EQ(keyboard::FirstTabStop(form.frmprot), &form.protection.box2);
}

TEST_F(KeyboardFixture, HiddenPagesAndHiddenOrDisabledControlsAreSkipped) {
  form.TamrixCmd7.Click();
  form.protection.box1.SetVisible(false);
  form.protection.box3.SetEnabled(false);
  EXPECT_EQ(keyboard::NextTabStop(form, &form.protection.box2, false), &form.protection.box4);
  form.win.Click();  // the Protection page is hidden now
  for (Control* c : keyboard::TabStops(form)) EXPECT_NE(c->Parent()->Parent(), &form.frmprot) << c->Name();
  EXPECT_FALSE(keyboard::Reachable(form.protection.box2));
}

TEST_F(KeyboardFixture, ADisabledPanelTakesItsOptionsOutOfTheWalk) {
  form.internet.Click();
  InternetPage& page = form.internetPage;
  page.Lan1.Click();  // the local network needs no speed: the speed panel goes grey
  ASSERT_FALSE(page.TamrixFrm4.Enabled());
  for (Control* c : keyboard::TabStops(form)) EXPECT_NE(c->Parent(), &page.TamrixFrm4) << c->Name();
  page.Modem1.Click();
  Names stops = StopNames(form);
  EXPECT_EQ(Names(stops.begin(), stops.begin() + 3), (Names{"Modem1", "r56", "Command1"}));
}

TEST_F(KeyboardFixture, TheArrowsMoveInsideTheSpeedGroupAndWrapAtItsEnds) {
  form.internet.Click();
  InternetPage& page = form.internetPage;
  EXPECT_EQ(keyboard::NextOption(page.r56, false), &page.r64);
  EXPECT_EQ(keyboard::NextOption(page.r56, true), &page.r33);
  EXPECT_EQ(keyboard::NextOption(page.r1024, false), &page.r33);
  EXPECT_EQ(keyboard::NextOption(page.r33, true), &page.r1024);
  // The connection options are another group, of another kind, in another panel.
  EXPECT_EQ(keyboard::NextOption(page.Lan1, false), &page.Adsl1);
}

TEST(AccessKeys, TheMarkedLetterIsTheOneAfterTheAmpersandInUpperCase) {
  EXPECT_EQ(keyboard::AccessKeyOf("&Windows"), 'W');
  EXPECT_EQ(keyboard::AccessKeyOf("Test &Lab"), 'L');
  EXPECT_EQ(keyboard::AccessKeyOf("Choisir un &fichier :"), 'F');
  EXPECT_EQ(keyboard::AccessKeyOf("Ping && Pong"), 0);
  EXPECT_EQ(keyboard::AccessKeyOf("A && &B"), 'B');
  EXPECT_EQ(keyboard::AccessKeyOf("Sans lettre"), 0);
  EXPECT_EQ(keyboard::AccessKeyOf("fin&"), 0);
  EXPECT_EQ(keyboard::ShownCaption("Test &Lab"), "Test Lab");
  EXPECT_EQ(keyboard::ShownCaption("A && &B"), "A & B");
}

TEST_F(KeyboardFixture, AltLetterOfAButtonOnTheVisiblePageReachesAndPressesIt) {
  form.TamrixCmd7.Click();
  keyboard::AccessKeyHit hit = keyboard::FindAccessKey(form, 'a', &form.protection.box2);
  EXPECT_EQ(hit.focus, &form.protection.ReyCommand2);  // "&Appliquer"; "&A propos" has the same letter
  EXPECT_FALSE(hit.press);
  hit = keyboard::FindAccessKey(form, 'A', &form.protection.ReyCommand2);
  EXPECT_EQ(hit.focus, &form.apro);  // the toolkit cycles through the controls that share a letter
  EXPECT_FALSE(hit.press);
  hit = keyboard::FindAccessKey(form, 'A', &form.apro);
  EXPECT_EQ(hit.focus, &form.protection.ReyCommand2);  // and starts again at the first
  hit = keyboard::FindAccessKey(form, 'w', nullptr);
  EXPECT_EQ(hit.focus, &form.win);
  EXPECT_TRUE(hit.press);
}

TEST_F(KeyboardFixture, ALetterNoVisibleControlCarriesReachesNothing) {
  keyboard::AccessKeyHit hit = keyboard::FindAccessKey(form, 'Z', nullptr);
  EXPECT_EQ(hit.focus, nullptr);
  // "&Appliquer" of the hidden Protection page doesn't count: "&A propos" is the only A.
  hit = keyboard::FindAccessKey(form, 'A', nullptr);
  EXPECT_EQ(hit.focus, &form.apro);
  EXPECT_TRUE(hit.press);
}

struct ToolsKeyboard : ::testing::Test, test::Tools {};

TEST_F(ToolsKeyboard, TheShutdownPageWalksTheThreeBoxesThenLancezThenTheChosenAction) {
  Open(Form2::Page::ShutDown);
  ShutdownTimerPage& page = w().shutdown;
  EXPECT_EQ(keyboard::FirstTabStop(page.TamrixFrm6), &page.hr);
  EXPECT_EQ(keyboard::NextTabStop(w(), &page.hr, false), &page.min);
  EXPECT_EQ(keyboard::NextTabStop(w(), &page.min, false), &page.sec);
  EXPECT_EQ(keyboard::NextTabStop(w(), &page.sec, false), &page.option1);
}

TEST_F(ToolsKeyboard, ControlsSharingALetterAreWalkedInTurnAndNoneIsPressed) {
  Open(Form2::Page::ShutDown);
  ShutdownTimerPage& page = w().shutdown;
  page.TamrixOpButton2.Click();
  keyboard::AccessKeyHit hit = keyboard::FindAccessKey(w(), 'E', &page.hr);
  EXPECT_EQ(hit.focus, &page.TamrixOpButton1);
  EXPECT_FALSE(hit.press);
  hit = keyboard::FindAccessKey(w(), 'E', &page.TamrixOpButton1);
  EXPECT_EQ(hit.focus, &page.TamrixOpButton3);
  hit = keyboard::FindAccessKey(w(), 'e', &page.TamrixOpButton3);
  EXPECT_EQ(hit.focus, &page.TamrixOpButton1);
  // "&Redémarrer l'ordinateur" and " &Réduire" share theirs too.
  hit = keyboard::FindAccessKey(w(), 'R', &page.hr);
  EXPECT_EQ(hit.focus, &page.TamrixOpButton2);
  EXPECT_FALSE(hit.press);
  hit = keyboard::FindAccessKey(w(), 'R', &page.TamrixOpButton2);
  EXPECT_EQ(hit.focus, &page.TamrixCmd7);
  EXPECT_FALSE(hit.press);
  // A letter of its own presses at once: "&Lancez".
  hit = keyboard::FindAccessKey(w(), 'L', &page.hr);
  EXPECT_EQ(hit.focus, &page.option1);
  EXPECT_TRUE(hit.press);
}

TEST_F(ToolsKeyboard, ALabelsLetterHandsTheFocusToTheControlDeclaredAfterIt) {
  Open(Form2::Page::Personnalisation);
  FolderCustomisationPage& page = w().perso;
  keyboard::AccessKeyHit hit = keyboard::FindAccessKey(w(), 'D', nullptr);
  EXPECT_EQ(hit.focus, &page.txtPersonnaliser);  // "&Dossier à personnaliser :"
  EXPECT_FALSE(hit.press);
  // An option's letter chooses it.
  hit = keyboard::FindAccessKey(w(), 'F', nullptr);
  EXPECT_EQ(hit.focus, &page.optFichier);
  EXPECT_TRUE(hit.press);
}

}  // namespace
}  // namespace tamrix
