#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "fake/FakePlatform.h"
#include "fake/VirtualClock.h"
#include "shell/Controls.h"
#include "platform/Runtime.h"
#include "shell/Dispatch.h"

namespace tamrix {
namespace {

struct Page : Form {
  Page() : Form({.name = "Page"}) {}
  TamrixFrm panel{this, {.name = "panel"}};
  TamrixCB box{&panel, {.name = "box", .caption = "x"}};
  TamrixOpButton a{&panel, {.name = "a"}, 1};
  TamrixOpButton b{&panel, {.name = "b"}};
  TamrixOpButton elsewhere{this, {.name = "elsewhere"}, 1};
  TamrixPBar bar{&panel, {.name = "bar"}};
  TamrixCmd flat{this, {.name = "flat", .backColor = colors::Beige, .buttonType = 1}};
  TamrixCmd plain{this, {.name = "plain"}};
  Timer fast{this, {.name = "fast", .enabled = true, .interval = 200}};
  Timer slow{this, {.name = "slow", .enabled = false, .interval = 500}};
};

TEST(Controls, CheckBoxReadsZeroBeforeAnyTick) {
  Page page;
  EXPECT_EQ(page.box.Value(), 0);
}

TEST(Controls, UserClickTogglesTheBoxAndRaisesItsEvent) {
  Page page;
  int clicks = 0;
  page.box.OnClick = [&] { ++clicks; };
  page.box.Click();
  EXPECT_EQ(page.box.Value(), 1);
  page.box.Click();
  EXPECT_EQ(page.box.Value(), 0);
  EXPECT_EQ(clicks, 2);
}

TEST(Controls, ValueSetFromCodeRaisesNoClick) {
  Page page;
  int clicks = 0;
  page.box.OnClick = [&] { ++clicks; };
  page.box.SetValue(1);
  EXPECT_EQ(page.box.Value(), 1);
  EXPECT_EQ(clicks, 0);
}

TEST(Controls, OptionsOfOneContainerExcludeOneAnother) {
  Page page;
  EXPECT_EQ(page.a.Value(), 1);
  page.b.Click();
  EXPECT_EQ(page.a.Value(), 0);
  EXPECT_EQ(page.b.Value(), 1);
  EXPECT_EQ(page.elsewhere.Value(), 1);  // another container keeps its choice
}

TEST(Controls, SelectingAnOptionFromCodeRaisesItsClickOnlyWhenItWasNotSelected) {
  Page page;
  int clicks = 0;
  page.b.OnClick = [&] { ++clicks; };
  page.b.SetValue(1);
  page.b.SetValue(1);
  EXPECT_EQ(clicks, 1);
  EXPECT_EQ(page.a.Value(), 0);
}

TEST(Controls, BarKeepsTheValueItIsGivenFractionAndAll) {
  Page page;
  page.bar.SetValue(37.25);
  EXPECT_DOUBLE_EQ(page.bar.Value(), 37.25);
  EXPECT_DOUBLE_EQ(page.bar.Shown(), 37.25);
}

TEST(Controls, BarKeepsAValueOutOfRangeAndPaintsItWithinZeroToHundred) {
  Page page;
  page.bar.SetValue(102.5);
  EXPECT_DOUBLE_EQ(page.bar.Value(), 102.5);  // read back as set, so 99 + 3 reaches past 100
  EXPECT_DOUBLE_EQ(page.bar.Shown(), 100);
  page.bar.SetValue(-3);
  EXPECT_DOUBLE_EQ(page.bar.Value(), -3);
  EXPECT_DOUBLE_EQ(page.bar.Shown(), 0);
  page.bar.SetValue(std::numeric_limits<double>::infinity());
  EXPECT_DOUBLE_EQ(page.bar.Shown(), 100);
}

TEST(Controls, BarGivenNaNPaintsEmpty) {
  Page page;
  page.bar.SetValue(std::nan(""));
  EXPECT_TRUE(std::isnan(page.bar.Value()));
  EXPECT_DOUBLE_EQ(page.bar.Shown(), 0);
}

TEST(Controls, FlatButtonTakesTheHoverColourUnderThePointerAndGivesItBack) {
  Page page;
  EXPECT_EQ(page.flat.FaceColor(), colors::Beige);
  page.flat.SetHovered(true);
  EXPECT_EQ(page.flat.FaceColor(), 0xFF8080u);
  page.flat.SetHovered(false);
  EXPECT_EQ(page.flat.FaceColor(), colors::Beige);
}

TEST(Controls, ButtonOfTheDefaultStyleKeepsItsFaceUnderThePointer) {
  Page page;
  page.plain.SetHovered(true);
  EXPECT_EQ(page.plain.FaceColor(), colors::White);
}

TEST(Controls, FindsControlsByDesignName) {
  Page page;
  EXPECT_EQ(FindControl(page, "box"), &page.box);
  EXPECT_EQ(FindControl(page, "nothing"), nullptr);
  EXPECT_EQ(page.box.ParentForm(), &page);
}

TEST(VirtualClock, FiresRunningTimersAtTheirIntervals) {
  Page page;
  page.Load();
  fake::VirtualClock clock(page);
  int fast = 0, slow = 0;
  page.fast.OnTimer = [&] { ++fast; };
  page.slow.OnTimer = [&] { ++slow; };
  clock.Advance(1000);
  EXPECT_EQ(fast, 5);
  EXPECT_EQ(slow, 0);
  page.slow.SetEnabled(true);
  clock.Advance(1000);
  EXPECT_EQ(slow, 2);
  EXPECT_EQ(fast, 10);
}

TEST(VirtualClock, ChangingTheIntervalRestartsTheCountdown) {
  Page page;
  page.Load();
  fake::VirtualClock clock(page);
  int ticks = 0;
  page.fast.OnTimer = [&] { ++ticks; };
  clock.Advance(150);
  page.fast.SetInterval(100);
  clock.Advance(99);
  EXPECT_EQ(ticks, 0);
  clock.Advance(1);
  EXPECT_EQ(ticks, 1);
  EXPECT_EQ(clock.Now(), 250);
}

TEST(VirtualClock, TimersStopWithTheirWindow) {
  Page page;
  page.Load();
  fake::VirtualClock clock(page);
  int ticks = 0;
  page.fast.OnTimer = [&] { ++ticks; };
  page.Unload();
  clock.Advance(1000);
  EXPECT_EQ(ticks, 0);
}

TEST(Dispatch, UncaughtFaultShowsTheRuntimeBoxAndAsksToEnd) {
  fake::FakePlatform p;
  bool goOn = RunHandler(p, [] { throw RuntimeError(6, "Overflow"); });
  EXPECT_FALSE(goOn);
  ASSERT_EQ(p.boxes.size(), 1u);
  EXPECT_EQ(p.boxes[0].text, "Run-time error '6':\r\rOverflow");
  EXPECT_EQ(p.boxes[0].title, "Tamrix Utility");
  EXPECT_EQ(p.boxes[0].style, mb::Ok | mb::Critical);
}

TEST(Dispatch, HandlerWithoutFaultShowsNothing) {
  fake::FakePlatform p;
  int ran = 0;
  EXPECT_TRUE(RunHandler(p, [&] { ++ran; }));
  EXPECT_EQ(ran, 1);
  EXPECT_TRUE(p.boxes.empty());
}

}  // namespace
}  // namespace tamrix

namespace tamrix {
namespace {

struct ToolkitPage : Form {
  ToolkitPage() : Form({.name = "ToolkitPage"}) {}
  TextBox text{this, {.name = "text"}};
  ListBox list{this, {.name = "list"}};
  ComboBox combo{this, {.name = "combo"}};
  VScrollBar bar{this, {.name = "bar", .smallChange = 20, .largeChange = 30}};
};

TEST(Toolkit, TextBoxRaisesChangeOnlyWhenItsTextChanges) {
  ToolkitPage page;
  int changes = 0;
  page.text.OnChange = [&] { ++changes; };
  page.text.SetText("abc");
  page.text.SetText("abc");
  EXPECT_EQ(changes, 1);
  page.text.SetText(std::string("a\0b", 3));
  EXPECT_EQ(page.text.Text(), std::string("a\0b", 3));  // the object keeps all of it
}

TEST(Toolkit, NewListIndexRaisesClickButClearingDoesNot) {
  ToolkitPage page;
  int clicks = 0;
  page.combo.OnClick = [&] { ++clicks; };
  page.combo.AddItem("a");
  page.combo.AddItem("b");
  EXPECT_EQ(page.combo.ListIndex(), -1);
  page.combo.SetListIndex(1);
  page.combo.SetListIndex(1);
  EXPECT_EQ(clicks, 1);
  EXPECT_EQ(page.combo.Text(), "b");
  page.combo.Clear();
  EXPECT_EQ(clicks, 1);
  EXPECT_EQ(page.combo.ListIndex(), -1);
  EXPECT_EQ(page.combo.ListCount(), 0);
}

TEST(Toolkit, ListIndexOutOfRangeIsInvalidPropertyValue) {
  ToolkitPage page;
  page.list.AddItem("only");
  try {
    page.list.SetListIndex(3);
    FAIL();
  } catch (const RuntimeError& e) {
    EXPECT_EQ(e.Number(), 380);
  }
}

TEST(Toolkit, ScrollBarKeepsItsValueInRangeAndRaisesChange) {
  ToolkitPage page;
  std::vector<int> seen;
  page.bar.OnChange = [&] { seen.push_back(page.bar.Value()); };
  page.bar.SetMax(2542);
  page.bar.SetValue(20);
  page.bar.SetValue(5000);
  page.bar.SetValue(-3);
  EXPECT_EQ(seen, (std::vector<int>{20, 2542, 0}));
  EXPECT_EQ(page.bar.SmallChange(), 20);
  EXPECT_EQ(page.bar.LargeChange(), 30);
}

}  // namespace
}  // namespace tamrix
