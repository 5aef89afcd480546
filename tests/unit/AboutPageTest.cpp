#include <gtest/gtest.h>

#include "fake/ChangeLog.h"
#include "fake/FakePlatform.h"
#include "forms/Form1.h"

namespace tamrix {
namespace {

struct AboutFixture : ::testing::Test {
  fake::FakePlatform p;
  Form1 form{p};
  AboutPage& about = form.aboutPage;
  void SetUp() override { form.Load(); }
  void Scroll(int value) { about.VScroll1.SetValue(value); }
};

TEST_F(AboutFixture, DesignValuesBeforeTheFirstVisit) {
  EXPECT_EQ(about.Label20.Caption(), "Label20");
  EXPECT_EQ(about.Label20.Rect().top, 465);
  EXPECT_EQ(about.Label20.Rect().left, 360);
  EXPECT_EQ(about.Label20.Rect().width, 6615);
  EXPECT_EQ(about.Label20.Rect().height, 5085);
  EXPECT_EQ(about.VScroll1.Rect().left, 7080);
  EXPECT_EQ(about.VScroll1.Rect().top, 240);
  EXPECT_EQ(about.VScroll1.Rect().width, 255);
  EXPECT_EQ(about.VScroll1.Rect().height, 3615);
  EXPECT_EQ(about.VScroll1.SmallChange(), 20);
  EXPECT_EQ(about.VScroll1.LargeChange(), 30);
  EXPECT_EQ(about.Label21.Caption(), "A propos de Tamrix Utility 3.0 Pro :");
  EXPECT_DOUBLE_EQ(about.Label21.design().font.size, 9);
  EXPECT_TRUE(about.Label21.design().font.bold);
  EXPECT_EQ(about.Picture1.Rect().width, 7095);
  EXPECT_EQ(about.Picture1.Rect().height, 615);
}

TEST_F(AboutFixture, TextStandsLineForLineJoinedByCarriageReturns) {
  form.apro.Click();
  const std::string expected =
      "  \r"
      "-   Tamrix Utility est un ensemble d'utilitaires très précieux qui \r"
      "vont vous aidez à tester votre materiels et savoir tous sur tous\r"
      "les composants.\r"
      "\r"
      "-    Tamrix Utility avec l'option 'Optimisez windows' teste votre \r"
      "système et l'optimise de manière intelligente et efficace.\r"
      "\r"
      "-   Boostez votre connexion internet avec les différents types de\r"
      "connexions : modem, réseaux, ADSL ..\r"
      "\r"
      "-   Protégez votre Pc en cachant les icons et les options de windows\r"
      "pour une restriction d'accés.\r"
      "\r"
      "-   Changez votre résolution de manière sécurisée car Tamrix Utility teste\r"
      "et vous donne que les résolutions accéptées par votre système.\r"
      "\r"
      "-   Supprimez les informations revedeur et créez des informations OEM \r"
      "personnlisées.\r"
      "\r"
      "-   Changez l'apparence de vos dossiers en les personnalisant avec vos \r"
      "icones favoris.\r"
      "_________________________________________________________\r"
      "Tamrix Utility 3.0 Pro - Tous droits réservés\r"
      "Auteur : L'équipe Tamrix Utility\r"
      "Site web : http://www.tamrix.example\r"
      "E-mail : contact@tamrix.example\r";
  EXPECT_EQ(about.Label20.Caption(), expected);
  EXPECT_EQ(about.Label20.Caption().find('\n'), std::string::npos);
}

TEST_F(AboutFixture, ScrollRangeIsHalfTheLabelHeightRoundedToEven) {
  form.apro.Click();
  EXPECT_EQ(about.VScroll1.Min(), 0);
  EXPECT_EQ(about.VScroll1.Max(), 2542);  // 5085 / 2 = 2542.5, a half to the even neighbour
}

TEST_F(AboutFixture, ShowsThePageBeforeSettingTheTextAndHidesTheOthersAfter) {
  form.Frame3.SetVisible(true);
  fake::ChangeLog log(form);
  form.apro.Click();
  EXPECT_EQ(log.entries, (std::vector<std::string>{"S Propos", "C Label20", "H Frame4", "H Frame3"}));
}

TEST_F(AboutFixture, DesignTopHoldsUntilTheFirstMove) {
  form.apro.Click();
  EXPECT_EQ(about.Label20.Rect().top, 465);
}

TEST_F(AboutFixture, FirstSmallStepMovesTheLabelByTwentyFiveTwips) {
  form.apro.Click();
  Scroll(about.VScroll1.Value() + about.VScroll1.SmallChange());
  EXPECT_EQ(about.Label20.Rect().top, 440);  // 465 - 25
}

TEST_F(AboutFixture, AtTheEndTheLabelStandsAtMinus2082AndEndsInsideThePage) {
  form.apro.Click();
  Scroll(about.VScroll1.Max());
  EXPECT_EQ(about.Label20.Rect().top, -2082);
  EXPECT_EQ(about.Label20.Rect().top + about.Label20.Rect().height, 3003);
  EXPECT_LT(3003, about.Propos.Rect().height);
}

TEST_F(AboutFixture, PositionIsKeptBetweenVisits) {
  form.apro.Click();
  Scroll(600);
  form.command3.Click();
  form.apro.Click();
  EXPECT_EQ(about.VScroll1.Value(), 600);
  EXPECT_EQ(about.Label20.Rect().top, 460 - 600);
}

TEST_F(AboutFixture, SetTextAgainOnEachVisitGivesTheSameText) {
  form.apro.Click();
  std::string first = about.Label20.Caption();
  form.apro.Click();
  EXPECT_EQ(about.Label20.Caption(), first);
}

}  // namespace
}  // namespace tamrix
