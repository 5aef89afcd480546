// The page switch: each navigation and sub-page button sets its frames in its own order.
#include <gtest/gtest.h>

#include "fake/ChangeLog.h"
#include "fake/FakePlatform.h"
#include "forms/Form1.h"

namespace tamrix {
namespace {

using Entries = std::vector<std::string>;

struct NavigationFixture : ::testing::Test {
  fake::FakePlatform p;
  Form1 form{p};
  void SetUp() override { form.Load(); }
  // Shows every page and sub-page, so that every write of a switch is a change the log sees.
  void ShowAll() {
    for (Control* c : {static_cast<Control*>(&form.Frame4), static_cast<Control*>(&form.Frame1),
                       static_cast<Control*>(&form.Frame2), static_cast<Control*>(&form.Frame3),
                       static_cast<Control*>(&form.Propos), static_cast<Control*>(&form.frmprot)})
      c->SetVisible(true);
    for (Control* c : SubPages()) c->SetVisible(true);
  }
  std::vector<Control*> SubPages() {
    return {&form.FrmBios, &form.fwindows, &form.pc, &form.disque, &form.FrmCpu, &form.Frmson};
  }
  // Hides everything, so that every "show" of a switch is a change the log sees.
  void HideAll() {
    ShowAll();
    for (Control* c : {static_cast<Control*>(&form.Frame4), static_cast<Control*>(&form.Frame1),
                       static_cast<Control*>(&form.Frame2), static_cast<Control*>(&form.Frame3),
                       static_cast<Control*>(&form.Propos), static_cast<Control*>(&form.frmprot)})
      c->SetVisible(false);
    for (Control* c : SubPages()) c->SetVisible(false);
  }
};

// Hidden frames in order, from a click with every frame shown.
Entries HiddenInOrder(Form1& form, TamrixCmd& button, const std::vector<Control*>& everything) {
  for (Control* c : everything) c->SetVisible(true);
  fake::ChangeLog log(form);
  button.Click();
  Entries hidden;
  for (const auto& e : log.entries)
    if (e[0] == 'H') hidden.push_back(e.substr(2));
  return hidden;
}

TEST_F(NavigationFixture, EachPageButtonHidesItsFramesInItsOwnOrder) {
  std::vector<Control*> all = {&form.Frame4, &form.Frame1, &form.Frame2, &form.Frame3, &form.Propos, &form.frmprot,
                               &form.FrmBios, &form.fwindows, &form.pc, &form.disque, &form.FrmCpu, &form.Frmson};
  EXPECT_EQ(HiddenInOrder(form, form.command3, all), (Entries{"Frame3", "Frame2", "Frame1", "Propos", "frmprot"}));
  EXPECT_EQ(HiddenInOrder(form, form.win, all), (Entries{"Propos", "Frame2", "Frame3", "Frame4", "frmprot"}));
  EXPECT_EQ(HiddenInOrder(form, form.internet, all), (Entries{"Frame1", "Propos", "Frame3", "Frame4", "frmprot"}));
  EXPECT_EQ(HiddenInOrder(form, form.sys, all),
            (Entries{"Frame1", "Frame4", "Frame2", "FrmBios", "Propos", "FrmCpu", "frmprot", "Frmson", "disque"}));
  EXPECT_EQ(HiddenInOrder(form, form.TamrixCmd7, all), (Entries{"Frame1", "Propos", "Frame2", "Frame3", "Frame4"}));
  EXPECT_EQ(HiddenInOrder(form, form.apro, all), (Entries{"Frame4", "Frame3", "Frame2", "Frame1", "frmprot"}));
}

TEST_F(NavigationFixture, EachPageButtonShowsItsFramesAtTheirPlaceInTheOrder) {
  // From all hidden, the full sequence of a click shows where the "S" writes stand.
  auto sequence = [&](TamrixCmd& button, std::vector<Control*> shownBefore) {
    HideAll();
    for (Control* c : shownBefore) c->SetVisible(true);
    fake::ChangeLog log(form);
    button.Click();
    Entries switches;
    for (const auto& e : log.entries)
      if (e[0] != 'C') switches.push_back(e);
    return switches;
  };
  EXPECT_EQ(sequence(form.command3, {&form.Frame3}), (Entries{"S Frame4", "H Frame3"}));
  EXPECT_EQ(sequence(form.win, {&form.Propos, &form.Frame4}), (Entries{"S Frame1", "H Propos", "H Frame4"}));
  EXPECT_EQ(sequence(form.internet, {&form.Frame1, &form.Frame3}), (Entries{"H Frame1", "S Frame2", "H Frame3"}));
  EXPECT_EQ(sequence(form.sys, {&form.FrmCpu, &form.frmprot}),
            (Entries{"S Frame3", "H FrmCpu", "S fwindows", "H frmprot"}));
  EXPECT_EQ(sequence(form.TamrixCmd7, {&form.Frame4}), (Entries{"H Frame4", "S frmprot"}));
}

TEST_F(NavigationFixture, AboutShowsItsPageSetsTheTextThenHidesTheOthers) {
  HideAll();
  form.Frame4.SetVisible(true);
  form.frmprot.SetVisible(true);
  fake::ChangeLog log(form);
  form.apro.Click();
  EXPECT_EQ(log.entries, (Entries{"S Propos", "C Label20", "H Frame4", "H frmprot"}));
}

TEST_F(NavigationFixture, EachSubPageButtonSwitchesInItsOwnOrder) {
  auto hidden = [&](TamrixCmd& button) { return HiddenInOrder(form, button, SubPages()); };
  EXPECT_EQ(hidden(form.command2), (Entries{"fwindows", "disque", "FrmBios", "FrmCpu", "Frmson"}));
  EXPECT_EQ(hidden(form.TamrixCmd2), (Entries{"pc", "disque", "FrmBios", "FrmCpu", "Frmson"}));
  EXPECT_EQ(hidden(form.TamrixCmd3), (Entries{"fwindows", "pc", "FrmBios", "FrmCpu", "Frmson"}));
  EXPECT_EQ(hidden(form.TamrixCmd6), (Entries{"pc", "fwindows", "disque", "FrmCpu", "Frmson"}));
  EXPECT_EQ(hidden(form.TamrixCmd11), (Entries{"pc", "fwindows", "disque", "FrmBios", "FrmCpu"}));
  EXPECT_EQ(hidden(form.TamrixCmd4), (Entries{"FrmBios", "pc", "fwindows", "disque", "Frmson"}));
  auto shown = [&](TamrixCmd& button) {
    HideAll();
    fake::ChangeLog log(form);
    button.Click();
    Entries s;
    for (const auto& e : log.entries)
      if (e[0] == 'S') s.push_back(e.substr(2));
    return s;
  };
  EXPECT_EQ(shown(form.command2), Entries{"pc"});
  EXPECT_EQ(shown(form.TamrixCmd2), Entries{"fwindows"});
  EXPECT_EQ(shown(form.TamrixCmd3), Entries{"disque"});
  EXPECT_EQ(shown(form.TamrixCmd6), Entries{"FrmBios"});
  EXPECT_EQ(shown(form.TamrixCmd11), Entries{"Frmson"});
  EXPECT_EQ(shown(form.TamrixCmd4), Entries{"FrmCpu"});
}

TEST_F(NavigationFixture, TestLabLandsOnTheWindowsSubPageWhateverCameBefore) {
  for (TamrixCmd* before : {&form.TamrixCmd3, &form.TamrixCmd11, &form.TamrixCmd6, &form.TamrixCmd4, &form.command2}) {
    form.sys.Click();
    before->Click();
    form.command3.Click();
    form.sys.Click();
    SCOPED_TRACE(before->Name());
    EXPECT_TRUE(form.Frame3.Visible());
    EXPECT_TRUE(form.fwindows.Visible());
    EXPECT_FALSE(form.FrmBios.Visible());
    EXPECT_FALSE(form.FrmCpu.Visible());
    EXPECT_FALSE(form.Frmson.Visible());
    EXPECT_FALSE(form.disque.Visible());
  }
}

TEST_F(NavigationFixture, TestLabLeavesAnOpenPcSubPageBehindTheWindowsOne) {
  form.sys.Click();
  form.command2.Click();
  form.win.Click();
  form.sys.Click();
  EXPECT_TRUE(form.fwindows.Visible());
  EXPECT_TRUE(form.pc.Visible());
  // fwindows lies in front: it is declared before pc among Frame3's children.
  const auto& kids = form.Frame3.Children();
  auto at = [&](Control* c) { return std::find(kids.begin(), kids.end(), c) - kids.begin(); };
  EXPECT_LT(at(&form.fwindows), at(&form.pc));
}

TEST_F(NavigationFixture, SubPagesStackFromFrontToBackInTheirOrder) {
  const auto& kids = form.Frame3.Children();
  std::vector<Control*> frames;
  for (Control* c : kids)
    if (c->kind() == Kind::TamrixFrm) frames.push_back(c);
  EXPECT_EQ(frames, (std::vector<Control*>{&form.FrmBios, &form.fwindows, &form.pc, &form.disque, &form.FrmCpu,
                                            &form.Frmson}));
}

TEST_F(NavigationFixture, InternetAlwaysEndsWithModemSelected) {
  form.internet.Click();
  form.internetPage.Lan1.Click();
  EXPECT_FALSE(form.internetPage.Modem1.Value());
  form.command3.Click();
  form.internet.Click();
  EXPECT_TRUE(form.internetPage.Modem1.Value());
  EXPECT_FALSE(form.internetPage.Lan1.Value());
}

TEST_F(NavigationFixture, SubPageStripStandsInItsRowWithTheFlatScheme) {
  struct Row {
    TamrixCmd* b;
    const char* caption;
    int left, width;
  };
  const Row rows[] = {{&form.TamrixCmd3, "Info Lecteurs", 120, 1215}, {&form.TamrixCmd11, "Info Son", 1440, 1095},
                      {&form.TamrixCmd2, "Info Windows", 2640, 1215}, {&form.command2, "Info  PC", 3960, 975},
                      {&form.TamrixCmd6, "Info BIOS", 5040, 975},     {&form.TamrixCmd4, "Test du CPU", 6120, 1215}};
  for (const Row& r : rows) {
    SCOPED_TRACE(r.caption);
    EXPECT_EQ(r.b->Caption(), r.caption);
    EXPECT_EQ(r.b->Rect().left, r.left);
    EXPECT_EQ(r.b->Rect().width, r.width);
    EXPECT_EQ(r.b->Rect().top, 3525);
    EXPECT_EQ(r.b->Rect().height, 375);
    EXPECT_EQ(r.b->Parent(), &form.Frame3);
    EXPECT_EQ(r.b->design().buttonType, 1);
    EXPECT_EQ(r.b->design().officeOverColor, 0xFF8080u);
    EXPECT_EQ(r.b->BackColor(), 0xCEE7EFu);
  }
}

TEST_F(NavigationFixture, SubPagesStandAtTheirRectanglesWithTheirCaptions) {
  struct Row {
    Control* f;
    const char* caption;
    Twips r;
  };
  const Row rows[] = {
      {&form.fwindows, "Information sur votre Windows :", {240, 360, 6975, 3135}},
      {&form.pc, "Information sur votre PC :", {240, 360, 6975, 3135}},
      {&form.disque, "Information sur vos disques :", {240, 360, 6975, 3135}},
      {&form.FrmBios, "Information sur votre BIOS :", {120, 240, 7215, 3255}},
      {&form.FrmCpu, " Laboratoire de test du processeur :", {120, 240, 7215, 3255}},
      {&form.Frmson, "Information sur le materiel de son :", {120, 240, 7215, 3255}},
  };
  for (const Row& r : rows) {
    SCOPED_TRACE(r.f->Name());
    EXPECT_EQ(r.f->Caption(), r.caption);
    EXPECT_EQ(r.f->Rect().left, r.r.left);
    EXPECT_EQ(r.f->Rect().top, r.r.top);
    EXPECT_EQ(r.f->Rect().width, r.r.width);
    EXPECT_EQ(r.f->Rect().height, r.r.height);
    EXPECT_TRUE(r.f->Visible());  // all visible by design, lying on one another
  }
}

}  // namespace
}  // namespace tamrix
