#include <gtest/gtest.h>

#include <memory>

#include "fake/ChangeLog.h"
#include "fake/VirtualClock.h"
#include "unit/ToolsFixture.h"

namespace tamrix {
namespace {

using Calls = std::vector<std::string>;
using Page = Form2::Page;
using test::Tools;

constexpr const char* kGuard = "Etes vous sure de vouloir quitter l'applocation et désactiver \rla minutrie en cours !!";

std::vector<Control*> Frames(Form2::Window& w) {
  return {&w.TamrixFrm1, &w.TamrixFrm2, &w.TamrixFrm5, &w.TamrixFrm6, &w.fraPerso};
}

TEST(Form2Window, IsAFixedDialogOfTheDesignedSizeWithItsCaption) {
  Tools t;
  t.Open(Page::DossiersSpeciaux);
  EXPECT_EQ(t.w().Name(), "Form2");
  EXPECT_EQ(t.w().Caption(), " Tamrix Utility 3.0 Pro   - Orvane Interactive 2004");
  EXPECT_EQ(t.w().design().borderStyle, 3);
  EXPECT_EQ(t.w().Rect().width, 6285);
  EXPECT_EQ(t.w().Rect().height, 5730);
}

TEST(Form2Window, EachToolButtonShowsItsFrameAloneHidesTheMainWindowMinimised) {
  struct Case {
    TamrixCmd WindowsPage::*button;
    int frame;  // index in Frames()
  };
  const Case cases[] = {{&WindowsPage::TamrixCmd12, 0}, {&WindowsPage::TamrixCmd13, 1}, {&WindowsPage::TamrixCmd14, 2},
                        {&WindowsPage::TamrixCmd15, 3}, {&WindowsPage::TamrixCmd5, 4}};
  for (const Case& c : cases) {
    Tools t;
    (t.form1.windowsPage.*c.button).Click();
    SCOPED_TRACE((t.form1.windowsPage.*c.button).Name());
    ASSERT_TRUE(t.form2.Loaded());
    auto frames = Frames(t.w());
    for (int i = 0; i < 5; ++i) EXPECT_EQ(frames[static_cast<std::size_t>(i)]->Visible(), i == c.frame) << frames[static_cast<std::size_t>(i)]->Name();
    EXPECT_TRUE(t.w().Visible());
    EXPECT_FALSE(t.form1.Visible());
    EXPECT_EQ(t.form1.WindowState(), 1);
    EXPECT_EQ(t.host.requests, (Calls{"Load Form2", "Show Form2"}));
  }
}

TEST(Form2Window, FramesOfTheFivePagesCarryTheirTitles) {
  Tools t;
  t.Open(Page::InformationOem);
  EXPECT_EQ(t.w().TamrixFrm1.Caption(), "Dossiers spéciaux de windows :");
  EXPECT_EQ(t.w().TamrixFrm2.Caption(), "Tamrix Information OEM :");
  EXPECT_EQ(t.w().TamrixFrm5.Caption(), "Tamrix Résolution :");
  EXPECT_EQ(t.w().TamrixFrm6.Caption(), "Tamrix ShutDown Pc :");
  EXPECT_EQ(t.w().fraPerso.Caption(), "Personnalisez vos dossiers :");
}

TEST(Form2Window, OpeningTheOemPageAlsoFillsTheResolutionsAndEveryFolderBox) {
  Tools t;
  t.Open(Page::InformationOem);
  EXPECT_EQ(t.w().resolution.List1.ListCount(), 3);
  EXPECT_EQ(t.w().dossiers.ChDos(1).Text(), "C:\\Documents and Settings\\Marc\\Bureau");
  EXPECT_EQ(t.w().dossiers.ChDos(19).Text(), "C:\\WINDOWS");
  EXPECT_EQ(t.w().dossiers.ChDos(20).Text(), "C:\\WINDOWS\\system32");
  EXPECT_EQ(t.w().dossiers.ChDos(10).Text(), "C:\\Documents and Settings\\Marc\\Voisinage réseau");
}

TEST(Form2Window, LoadRunsInitializeThenFoldersThenModesThenStopsTheTimer) {
  Tools t;
  t.Open(Page::ShutDown);
  EXPECT_FALSE(t.w().shutdown.pbtime.Visible());
  EXPECT_FALSE(t.w().Timer.Enabled());
  EXPECT_EQ(t.w().Timer.Interval(), 1000);
  // The folders are asked for before the display is read.
  auto first = [&](const std::string& prefix) {
    for (std::size_t i = 0; i < t.p.calls.size(); ++i)
      if (t.p.calls[i].rfind(prefix, 0) == 0) return i;
    return t.p.calls.size();
  };
  EXPECT_LT(first("SHGetSpecialFolderLocation"), first("GetDeviceCaps"));
  EXPECT_LT(first("GetSystemDirectoryA"), first("GetDeviceCaps"));
  EXPECT_LT(first("GetDeviceCaps"), first("EnumDisplaySettingsA"));
}

TEST(Form2Window, TheSpecialFoldersButtonSelectsTheDefaultIconChoiceAndTheFolderButtonDoesNot) {
  Tools t;
  t.Open(Page::Personnalisation);
  t.w().perso.optFichier.Click();
  t.Open(Page::Personnalisation);  // the window is still open: only the frames switch
  EXPECT_EQ(t.w().perso.optDefaut.Value(), 0);
  t.Open(Page::DossiersSpeciaux);
  EXPECT_EQ(t.w().perso.optDefaut.Value(), 1);
  EXPECT_EQ(t.w().perso.optFichier.Value(), 0);
}

TEST(Form2Window, EveryOpeningOfTheShutdownPageSelectsTheFirstAction) {
  Tools t;
  t.Open(Page::ShutDown);
  t.w().shutdown.TamrixOpButton3.Click();
  t.Open(Page::ShutDown);
  EXPECT_EQ(t.w().shutdown.TamrixOpButton1.Value(), 1);
  EXPECT_EQ(t.w().shutdown.TamrixOpButton3.Value(), 0);
}

TEST(Form2Window, AfterAnyCloseTheMainWindowIsVisibleAgainStillMinimised) {
  using W = Form2::Window;
  auto viaQuitter = [](W& w) { w.dossiers.TamrixCmd1.Click(); };
  auto viaOemAnnuler = [](W& w) { w.oem.TamrixCmd5.Click(); };
  auto viaShutdownQuitter = [](W& w) { w.shutdown.btn0.Click(); };
  auto viaResolutionAnnuler = [](W& w) { w.resolution.TamrixCmd6.Click(); };
  auto viaPersoQuitter = [](W& w) { w.perso.TamrixCd3.Click(); };
  auto viaWindowManager = [](W& w) { w.Unload(); };
  for (const auto& close : {+viaQuitter, +viaOemAnnuler, +viaShutdownQuitter, +viaResolutionAnnuler,
                            +viaPersoQuitter, +viaWindowManager}) {
    Tools t;
    t.Open(Page::DossiersSpeciaux);
    close(t.w());
    EXPECT_FALSE(t.form2.Loaded());
    EXPECT_TRUE(t.form1.Visible());
    EXPECT_EQ(t.form1.WindowState(), 1);
    EXPECT_EQ(t.host.requests.back(), "Show Form1");
    EXPECT_TRUE(t.p.boxes.empty());
  }
}

TEST(Form2Window, TheResolutionPagesAnnulerMakesTheMainWindowVisibleOnceMoreThanTheOtherCloses) {
  auto refreshesOfForm1 = [](bool annuler) {
    Tools t;
    t.Open(Page::Resolution);
    fake::ChangeLog log(t.form1);
    if (annuler)
      t.w().resolution.TamrixCmd6.Click();
    else
      t.w().dossiers.TamrixCmd1.Click();
    EXPECT_TRUE(t.form1.Visible());
    return log.refreshes[&t.form1];
  };
  EXPECT_EQ(refreshesOfForm1(true), refreshesOfForm1(false) + 1);
}

TEST(Form2Window, RunningCountdownMakesTheCloseAskTheGuardQuestion) {
  Tools t;
  t.Open(Page::ShutDown);
  t.w().shutdown.min.SetText("5");
  t.w().shutdown.option1.Click();
  t.p.answers = {mb::IdYes};
  t.w().shutdown.btn0.Click();
  ASSERT_EQ(t.p.boxes.size(), 1u);
  EXPECT_EQ(t.p.boxes[0].text, kGuard);
  EXPECT_EQ(t.p.boxes[0].title, "Tamrix Utility 3.0  -  Minutrie Active");
  EXPECT_EQ(t.p.boxes[0].style, mb::YesNo | mb::Information);
}

// Writes down, at each change of the main window, whether it is visible and how many boxes stood.
struct VisibleWhenAsked : Peer {
  explicit VisibleWhenAsked(fake::FakePlatform& p) : p(p) {}
  void Refresh(Control& c) override { seen.emplace_back(c.Visible(), p.boxes.size()); }
  fake::FakePlatform& p;
  std::vector<std::pair<bool, std::size_t>> seen;
};

TEST(Form2Window, TheMainWindowIsVisibleBeforeTheGuardAsks) {
  Tools t;
  t.Open(Page::ShutDown);
  t.w().shutdown.sec.SetText("10");
  t.w().shutdown.option1.Click();
  VisibleWhenAsked watch(t.p);
  t.form1.peer = &watch;
  t.p.answers = {mb::IdNo};
  t.w().shutdown.btn0.Click();
  t.form1.peer = nullptr;
  ASSERT_FALSE(watch.seen.empty());
  EXPECT_EQ(watch.seen.front(), std::make_pair(true, std::size_t{0}));
  EXPECT_EQ(t.p.boxes.size(), 1u);
}

TEST(Form2Window, AnsweringNoLeavesBothWindowsVisibleAndTheCountdownRunning) {
  Tools t;
  t.Open(Page::ShutDown);
  fake::VirtualClock clock(t.w());
  t.w().shutdown.sec.SetText("30");
  t.w().shutdown.option1.Click();
  clock.Advance(5000);
  t.p.answers = {mb::IdNo};
  t.w().shutdown.btn0.Click();
  EXPECT_TRUE(t.form2.Loaded());
  EXPECT_TRUE(t.w().Visible());
  EXPECT_TRUE(t.form1.Visible());
  EXPECT_TRUE(t.w().Timer.Enabled());
  clock.Advance(1000);
  EXPECT_EQ(t.form2.SecondesRestantes, 24);
}

TEST(Form2Window, AnsweringYesClosesAndTheCountSurvivesSoTheNextCloseAsksAgain) {
  Tools t;
  t.Open(Page::ShutDown);
  auto clock = std::make_unique<fake::VirtualClock>(t.w());
  t.w().shutdown.sec.SetText("30");
  t.w().shutdown.option1.Click();
  clock->Advance(2000);
  t.p.answers = {mb::IdYes};
  t.w().shutdown.btn0.Click();
  EXPECT_FALSE(t.form2.Loaded());
  EXPECT_TRUE(t.form1.Visible());
  EXPECT_EQ(t.form1.WindowState(), 1);
  EXPECT_EQ(t.host.requests.back(), "Show Form1");
  EXPECT_EQ(t.form2.SecondesRestantes, 28);
  clock.reset();  // its timers go with the window's controls at the next opening

  t.Open(Page::DossiersSpeciaux);
  EXPECT_FALSE(t.w().Timer.Enabled());  // the abandoned countdown really ended
  t.p.answers = {mb::IdYes};
  t.w().dossiers.TamrixCmd1.Click();
  ASSERT_EQ(t.p.boxes.size(), 2u);
  EXPECT_EQ(t.p.boxes[1].text, kGuard);
  EXPECT_FALSE(t.form2.Loaded());
  EXPECT_TRUE(t.p.exitCalls.empty());
}

TEST(Form2Window, TheSystemsEndOfSessionAsksTheGuardAndANoRefusesItWithTheCountGoingOn) {
  Tools t;
  t.Open(Page::ShutDown);
  fake::VirtualClock clock(t.w());
  t.w().shutdown.sec.SetText("30");
  t.w().shutdown.option1.Click();
  clock.Advance(2000);
  t.p.answers = {mb::IdNo};
  EXPECT_FALSE(t.w().QueryEndSession());
  ASSERT_EQ(t.p.boxes.size(), 1u);
  EXPECT_EQ(t.p.boxes[0].text, kGuard);
  EXPECT_TRUE(t.form2.Loaded());
  EXPECT_TRUE(t.form1.Visible());
  clock.Advance(1000);
  EXPECT_EQ(t.form2.SecondesRestantes, 27);

  t.p.answers = {mb::IdYes};
  EXPECT_TRUE(t.w().QueryEndSession());
  EXPECT_FALSE(t.form2.Loaded());
}

TEST(Form2Window, TheSystemsEndOfSessionWithoutACountGoesOnWithoutAQuestion) {
  Tools t;
  t.Open(Page::ShutDown);
  EXPECT_TRUE(t.w().QueryEndSession());
  EXPECT_TRUE(t.p.boxes.empty());
  EXPECT_TRUE(t.form1.Visible());
}

TEST(Form2Window, AfterANoAToolButtonSwitchesTheOpenWindowsFrameAndItsActivationStopsTheTimer) {
  Tools t;
  t.Open(Page::ShutDown);
  fake::VirtualClock clock(t.w());
  t.w().shutdown.sec.SetText("30");
  t.w().shutdown.option1.Click();
  clock.Advance(3000);
  t.p.answers = {mb::IdNo};
  t.w().shutdown.btn0.Click();
  t.host.active = &t.form1;  // the user goes back to the main window
  Form2::Window* before = &t.w();
  t.form1.windowsPage.TamrixCmd14.Click();
  EXPECT_EQ(&t.w(), before);  // not loaded again
  EXPECT_TRUE(t.w().TamrixFrm5.Visible());
  EXPECT_FALSE(t.w().TamrixFrm6.Visible());
  EXPECT_FALSE(t.w().Timer.Enabled());
  EXPECT_EQ(t.form2.SecondesRestantes, 27);  // stopped silently, the count left as it stood
  EXPECT_TRUE(t.w().shutdown.pbtime.Visible());
  EXPECT_NEAR(t.w().shutdown.pbtime.Value(), 90.0, 1e-9);
  EXPECT_EQ(t.p.boxes.size(), 1u);
}

TEST(Form2Window, ActivationStopsTheCountdownInSilence) {
  Tools t;
  t.Open(Page::ShutDown);
  fake::VirtualClock clock(t.w());
  t.w().shutdown.sec.SetText("10");
  t.w().shutdown.option1.Click();
  clock.Advance(4000);
  t.w().Activate();
  clock.Advance(10000);
  EXPECT_EQ(t.form2.SecondesRestantes, 6);
  EXPECT_NEAR(t.w().shutdown.pbtime.Value(), 60.0, 1e-9);
  EXPECT_TRUE(t.p.exitCalls.empty());
  EXPECT_TRUE(t.p.boxes.empty());
}

TEST(Form2Window, MinimiseKeepsTheCountdownRunning) {
  Tools t;
  t.Open(Page::ShutDown);
  fake::VirtualClock clock(t.w());
  t.w().shutdown.sec.SetText("3");
  t.w().shutdown.option1.Click();
  t.w().shutdown.TamrixCmd7.Click();
  EXPECT_EQ(t.w().WindowState(), 1);
  EXPECT_EQ(t.w().shutdown.TamrixCmd7.Caption(), " &Réduire");
  clock.Advance(3000);
  EXPECT_EQ(t.p.exitCalls, (std::vector<std::uint32_t>{1}));
}

TEST(Form2Window, EachLoadHidesTheRoundBarAgain) {
  Tools t;
  t.Open(Page::ShutDown);
  t.w().shutdown.option1.Click();
  EXPECT_TRUE(t.w().shutdown.pbtime.Visible());
  t.form2.SecondesRestantes = 0;
  t.w().shutdown.btn0.Click();
  t.Open(Page::ShutDown);
  EXPECT_FALSE(t.w().shutdown.pbtime.Visible());
  EXPECT_EQ(t.w().shutdown.hr.Text(), "00");
}

TEST(Form2Window, CloseButtonsCarryTheirCaptions) {
  Tools t;
  t.Open(Page::DossiersSpeciaux);
  EXPECT_EQ(t.w().dossiers.TamrixCmd1.Caption(), "&Quitter");
  EXPECT_EQ(t.w().oem.TamrixCmd5.Caption(), "&Annuler");
  EXPECT_EQ(t.w().oem.TamrixCmd4.Caption(), "&Appliquer");
  EXPECT_EQ(t.w().shutdown.btn0.Caption(), "&Quitter");
  EXPECT_EQ(t.w().shutdown.btn0.Name(), "btn(0)");
  EXPECT_EQ(t.w().resolution.TamrixCmd6.Caption(), "&Annuler");
  EXPECT_EQ(t.w().perso.TamrixCd3.Caption(), "&Quitter");
}

}  // namespace
}  // namespace tamrix
