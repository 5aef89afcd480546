#include <gtest/gtest.h>

#include "fake/ChangeLog.h"
#include "fake/FakePlatform.h"
#include "fake/VirtualClock.h"
#include "forms/Form1.h"

namespace tamrix {
namespace {

using Calls = std::vector<std::string>;

struct Started {
  fake::FakePlatform p;
  Form1 form{p};
  Started() { form.hWnd = 0x42; }
};

TEST(Form1Startup, SecondInstanceUnloadsInSilenceBeforeAnythingElse) {
  Started s;
  s.p.earlierInstance = true;
  s.form.Load();
  EXPECT_FALSE(s.form.Loaded());
  EXPECT_EQ(s.p.calls, (Calls{"EarlierInstanceRunning"}));
  EXPECT_TRUE(s.p.boxes.empty());
}

TEST(Form1Startup, CutsTheCornersThenDeletesTheRegionAfterTheWindowTookIt) {
  Started s;
  s.form.Load();
  EXPECT_TRUE(s.form.Loaded());
  EXPECT_EQ(s.p.calls, (Calls{"EarlierInstanceRunning", "GetClientRect(0x42)",
                              "CreateRoundRectRgn(0,0,524,416,50,50)=0x2000", "SetWindowRgn(0x42,0x2000,true)",
                              "DeleteObject(0x2000)"}));
}

TEST(Form1Startup, CornerEllipseIsFiftyWhateverTheClientArea) {
  Started s;
  s.p.clientRect = {0, 0, 800, 600};
  s.form.Load();
  EXPECT_EQ(s.p.calls[2], "CreateRoundRectRgn(0,0,800,600,50,50)=0x2000");
}

TEST(Form1Startup, ShowsTheHomePageAndStopsTheShowTimers) {
  Started s;
  s.form.Timer3.SetEnabled(true);
  s.form.Timer4.SetEnabled(true);
  fake::ChangeLog log(s.form);
  s.form.Load();
  EXPECT_TRUE(s.form.Frame4.Visible());
  for (Control* page : {static_cast<Control*>(&s.form.Frame1), static_cast<Control*>(&s.form.Frame2),
                        static_cast<Control*>(&s.form.Frame3), static_cast<Control*>(&s.form.Propos),
                        static_cast<Control*>(&s.form.frmprot)})
    EXPECT_FALSE(page->Visible()) << page->Name();
  EXPECT_EQ(log.entries, (Calls{"H Frame1", "H Propos", "H frmprot", "H Frame3", "H Frame2"}));
  EXPECT_FALSE(s.form.Timer3.Enabled());
  EXPECT_FALSE(s.form.Timer4.Enabled());
  EXPECT_TRUE(s.form.Timer1.Enabled());
  EXPECT_TRUE(s.form.Timer2.Enabled());
  EXPECT_EQ(s.form.Timer1.Interval(), 200);
  EXPECT_EQ(s.form.Timer2.Interval(), 1000);
  EXPECT_EQ(s.form.Timer3.Interval(), 150);
  EXPECT_EQ(s.form.Timer4.Interval(), 500);
}

TEST(Form1Startup, ReadsNeitherSettingsNorRegistry) {
  Started s;
  s.form.Load();
  for (const auto& call : s.p.calls) EXPECT_EQ(call.find("Reg"), std::string::npos) << call;
}

TEST(Form1Design, WindowCaptionSizeAndFont) {
  fake::FakePlatform p;
  Form1 form(p);
  EXPECT_EQ(form.Caption(), " Tamrix Utility 3.0 Pro (Win 9.x - NT4.0 - 2000 - Xp - 2003)");
  EXPECT_EQ(form.Rect().width, 7860);
  EXPECT_EQ(form.Rect().height, 6240);
  EXPECT_EQ(form.design().font.name, "Verdana");
  EXPECT_DOUBLE_EQ(form.design().font.size, 8.25);
  EXPECT_FALSE(form.design().font.bold);
}

TEST(Form1Dragging, LeftButtonOnTheBackgroundHandsTheMoveToTheSystem) {
  Started s;
  s.form.Load();
  s.p.ClearCalls();
  s.form.MouseDown(1, 0, 100, 100);
  EXPECT_EQ(s.p.calls, (Calls{"ReleaseCapture", "SendMessageA(0x42,161,2,0)"}));
}

TEST(Form1Dragging, LeftButtonOnTheTitlePictureMovesTheWindowToo) {
  Started s;
  s.form.Load();
  s.p.ClearCalls();
  s.form.Image7.MouseDown(1, 0, 10, 10);
  EXPECT_EQ(s.p.calls, (Calls{"ReleaseCapture", "SendMessageA(0x42,161,2,0)"}));
}

TEST(Form1Dragging, RightOrMiddleButtonDoesNothing) {
  Started s;
  s.form.Load();
  s.p.ClearCalls();
  s.form.MouseDown(2, 0, 100, 100);
  s.form.Image7.MouseDown(4, 0, 10, 10);
  EXPECT_TRUE(s.p.calls.empty());
}

TEST(Form1Closing, MinimisedSetsTheWindowStateToOne) {
  Started s;
  s.form.Load();
  s.form.Minimised.Click();
  EXPECT_EQ(s.form.WindowState(), 1);
  EXPECT_TRUE(s.form.Loaded());
}

TEST(Form1Closing, QuitButtonUnloadsWithoutAQuestion) {
  Started s;
  s.form.Load();
  s.form.TamrixCmd1.Click();
  EXPECT_FALSE(s.form.Loaded());
  EXPECT_TRUE(s.p.boxes.empty());
  EXPECT_EQ(s.form.TamrixCmd1.Caption(), "&Quitter");
}

TEST(Form1Closing, ClosePictureRunsTheQuitButtonsHandler) {
  Started s;
  s.form.Load();
  int quits = 0;
  auto quit = s.form.TamrixCmd1.OnClick;
  s.form.TamrixCmd1.OnClick = [&] {
    ++quits;
    quit();
  };
  s.form.Closed.Click();
  EXPECT_EQ(quits, 1);
  EXPECT_FALSE(s.form.Loaded());
}

TEST(Form1Closing, ShowTimersStopWithTheWindow) {
  Started s;
  s.form.Load();
  fake::VirtualClock clock(s.form);
  int ticks = 0;
  s.form.Timer4.OnTimer = [&] { ++ticks; };
  s.form.Timer3.OnTimer = [&] { ++ticks; };
  s.form.Timer4.SetEnabled(true);
  s.form.Timer3.SetEnabled(true);
  clock.Advance(1000);
  EXPECT_GT(ticks, 0);
  int before = ticks;
  s.form.Closed.Click();
  clock.Advance(5000);
  EXPECT_EQ(ticks, before);
}

TEST(Form1Navigation, HomeButtonSwitchesInItsOrder) {
  Started s;
  s.form.Load();
  s.form.TamrixCmd7.Click();
  fake::ChangeLog log(s.form);
  s.form.command3.Click();
  EXPECT_EQ(log.entries, (Calls{"S Frame4", "H frmprot"}));
}

TEST(Form1Navigation, ProtectionButtonSwitchesInItsOrderThenReadsTheRestrictions) {
  Started s;
  s.form.Load();
  s.form.Frame1.SetVisible(true);
  s.form.Frame2.SetVisible(true);
  s.form.Frame3.SetVisible(true);
  s.form.Propos.SetVisible(true);
  fake::ChangeLog log(s.form);
  s.p.ClearCalls();
  s.form.TamrixCmd7.Click();
  EXPECT_EQ(log.entries, (Calls{"H Frame1", "H Propos", "H Frame2", "H Frame3", "H Frame4", "S frmprot"}));
  EXPECT_EQ(s.p.calls.front(), "RegOpenKeyExA(HKCU,Software\\Microsoft\\Windows\\CurrentVersion\\Policies\\Explorer,0,0x3F)");
}

TEST(Form1Navigation, ButtonsStandInTheirRowWithTheirTips) {
  fake::FakePlatform p;
  Form1 f(p);
  struct Row { TamrixCmd* b; const char* caption; int left, top, width, height; const char* tip; };
  const Row rows[] = {
      {&f.command3, "Accueil", 240, 5650, 735, 460, ".. Retour à la page de démarrage .."},
      {&f.win, "&Windows", 1080, 5650, 975, 460, ".. Optimisez votre Windows .."},
      {&f.internet, "&Internet", 2160, 5650, 975, 460, ".. Optimisez votre connexion internet .."},
      {&f.sys, "Test &Lab", 3240, 5650, 1215, 460, ".. Testez votre materiels .."},
      {&f.TamrixCmd7, "&Protection", 4560, 5640, 1095, 465, ".. Protégez votre système .."},
      {&f.apro, "&A propos", 5760, 5650, 975, 460, ".. Pour savoir plus sur Tamrix Utility 3.0 Pro .."},
      {&f.TamrixCmd1, "&Quitter", 6840, 5650, 735, 460, ""},
  };
  for (const Row& r : rows) {
    SCOPED_TRACE(r.b->Name());
    EXPECT_EQ(r.b->Caption(), r.caption);
    EXPECT_EQ(r.b->Rect().left, r.left);
    EXPECT_EQ(r.b->Rect().top, r.top);
    EXPECT_EQ(r.b->Rect().width, r.width);
    EXPECT_EQ(r.b->Rect().height, r.height);
    EXPECT_EQ(r.b->design().tip, r.tip);
  }
}

TEST(Form1Pages, PagesStandAtTheirRectanglesWithTheirCaptions) {
  fake::FakePlatform p;
  Form1 f(p);
  struct Row { Control* page; const char* caption; Twips r; };
  const Row rows[] = {
      {&f.Frame4, "  Tamrix Utility  ", {360, 1505, 7215, 3855}},
      {&f.Frame1, " Windows ", {285, 1440, 7350, 4005}},
      {&f.Frame2, " Internet ", {360, 1560, 7215, 3735}},
      {&f.Frame3, "Information  Système", {240, 1440, 7455, 3975}},
      {&f.frmprot, " Protection Pc : ", {240, 1440, 7335, 3975}},
      {&f.Propos, "", {240, 1440, 7335, 3975}},
  };
  for (const Row& r : rows) {
    SCOPED_TRACE(r.page->Name());
    EXPECT_EQ(r.page->Caption(), r.caption);
    EXPECT_EQ(r.page->Rect().left, r.r.left);
    EXPECT_EQ(r.page->Rect().top, r.r.top);
    EXPECT_EQ(r.page->Rect().width, r.r.width);
    EXPECT_EQ(r.page->Rect().height, r.r.height);
    EXPECT_EQ(r.page->Parent(), &f);
  }
}

}  // namespace
}  // namespace tamrix
