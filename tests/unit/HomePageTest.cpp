// The home page: its design, the memory monitor of Timer1, the clock of Timer2, and the download
// offer of its link.
#include <gtest/gtest.h>

#include <algorithm>

#include "fake/FakePlatform.h"
#include "fake/VirtualClock.h"
#include "platform/Runtime.h"
#include "forms/Form1.h"
#include "shell/Maker.h"

namespace tamrix {
namespace {

using Calls = std::vector<std::string>;

constexpr std::uint32_t MB = 1024 * 1024;

// Bytes of a fractional megabyte count, as close as whole bytes get.
std::uint32_t Bytes(double megabytes) { return static_cast<std::uint32_t>(megabytes * MB + 0.5); }

struct HomeFixture : ::testing::Test {
  fake::FakePlatform p;
  Form1 form{p};
  HomePage& page = form.homePage;
  void SetUp() override {
    form.Load();
    p.ClearCalls();
  }
  void Tick() { page.Timer1Tick(); }
  std::vector<Label*> MemoryLabels() {
    return {&page.lcd1, &page.lcd2, &page.lcd3, &page.l1, &page.l2, &page.l3, &page.l4, &page.l5, &page.l6};
  }
};

TEST_F(HomeFixture, PageWordsStandAsDesigned) {
  EXPECT_EQ(page.Frame4.Caption(), "  Tamrix Utility  ");
  EXPECT_EQ(page.Label18.Caption(),
            "Tamrix Utility est un logiciel très  Util qui va vous permettre à optimiser votre système, Windows, "
            "et même votre connexion (Réseaux ou Internet) comme des Pro, et il est très simple à utiliser. Grâce "
            "à Tamrix utility vous pouvez savoir tout sur votre PC.");
  EXPECT_EQ(page.Label17.Caption(), "La Ram libre :");
  EXPECT_EQ(page.Label14.Caption(), "Optimisez la mémoire Vive");
}

TEST_F(HomeFixture, EveryControlLivesOnFrame4) {
  for (const char* name : {"Label18", "lcd3", "lcd2", "lcd1", "Label17", "TamrixPBar2", "l1", "l2", "l3", "l4", "l5",
                           "l6", "Label19", "Label14", "Shape8", "Shape10", "Shape11", "Shape12", "Shape13", "Image1",
                           "Image2", "Image3"}) {
    Control* c = FindControl(form, name);
    ASSERT_NE(c, nullptr) << name;
    EXPECT_EQ(c->Parent(), &page.Frame4) << name;
  }
}

TEST_F(HomeFixture, RoundBarIsTheGreenRoundStyleWithoutCaption) {
  const Design& d = page.TamrixPBar2.design();
  EXPECT_EQ(d.progressType, 1);
  EXPECT_EQ(d.direction, 4);
  EXPECT_EQ(d.barColor, 0xC000u);
  EXPECT_FALSE(d.showCaption);
  EXPECT_EQ(d.rect.width, 615);
  EXPECT_EQ(d.rect.height, 615);
}

TEST_F(HomeFixture, ClockIsArialBoldDarkBlueAndTheLinkBlueWithAHand) {
  const Design& clock = page.Label19.design();
  EXPECT_EQ(clock.font.name, "Arial");
  EXPECT_DOUBLE_EQ(clock.font.size, 11.25);
  EXPECT_TRUE(clock.font.bold);
  EXPECT_EQ(page.Label19.ForeColor(), 0x800000u);
  EXPECT_EQ(page.Label14.ForeColor(), 0xFF0000u);
  EXPECT_EQ(page.Label14.design().mousePointer, 99);
}

TEST_F(HomeFixture, ControlsLieInsideTheFrameAndBelowItsTitle) {
  const Twips frame = page.Frame4.Rect();
  for (Control* c : page.Frame4.Children()) {
    const Twips& r = c->Rect();
    EXPECT_GE(r.left, 60) << c->Name();
    EXPECT_GE(r.top, 20 * 15) << c->Name();
    EXPECT_LE(r.left + r.width, frame.width - 60) << c->Name();
    EXPECT_LE(r.top + r.height, frame.height - 60) << c->Name();
  }
}

bool Overlap(const Twips& a, const Twips& b) {
  return a.left < b.left + b.width && b.left < a.left + a.width && a.top < b.top + b.height && b.top < a.top + a.height;
}

TEST_F(HomeFixture, NothingThatShowsCoversAnotherAndEachLineSitsInItsBox) {
  std::vector<Control*> shown;
  for (Control* c : page.Frame4.Children())
    if (c->kind() != Kind::Shape) shown.push_back(c);
  for (std::size_t i = 0; i < shown.size(); ++i)
    for (std::size_t j = i + 1; j < shown.size(); ++j)
      EXPECT_FALSE(Overlap(shown[i]->Rect(), shown[j]->Rect())) << shown[i]->Name() << " / " << shown[j]->Name();
  auto inside = [](const Control& c, const Control& box) {
    const Twips &r = c.Rect(), &b = box.Rect();
    return r.left >= b.left && r.top >= b.top && r.left + r.width <= b.left + b.width &&
           r.top + r.height <= b.top + b.height;
  };
  for (Control* c : {static_cast<Control*>(&page.lcd1), static_cast<Control*>(&page.lcd2),
                     static_cast<Control*>(&page.lcd3), static_cast<Control*>(&page.Image2)})
    EXPECT_TRUE(inside(*c, page.Shape8)) << c->Name();
  EXPECT_TRUE(inside(page.Label17, page.Shape10));
  EXPECT_TRUE(inside(page.TamrixPBar2, page.Shape10));
  for (Label* l : {&page.l1, &page.l2, &page.l3}) EXPECT_TRUE(inside(*l, page.Shape11)) << l->Name();
  for (Label* l : {&page.l4, &page.l5, &page.l6}) EXPECT_TRUE(inside(*l, page.Shape12)) << l->Name();
  EXPECT_TRUE(inside(page.Label19, page.Shape13));
  EXPECT_TRUE(inside(page.Image3, page.Shape13));
}

TEST_F(HomeFixture, LabelsStayEmptyUntilTheFirstTick) {
  for (Label* l : MemoryLabels()) EXPECT_EQ(l->Caption(), "") << l->Name();
  EXPECT_EQ(page.Label19.Caption(), "");
  EXPECT_EQ(page.TamrixPBar2.Value(), 0);
}

TEST_F(HomeFixture, TickMakesExactlyTwoPlatformCalls) {
  Tick();
  EXPECT_EQ(p.calls, (Calls{"GlobalMemoryStatus(32)", "GlobalMemoryStatus(32)"}));
}

TEST_F(HomeFixture, TickWritesTheTenLinesAndTheBar) {
  p.decimalSign = ',';
  p.memory = {32, 40, Bytes(511.6), Bytes(128.04), 1536 * MB, 1100 * MB, 2047 * MB, 1990 * MB};
  Tick();
  EXPECT_EQ(page.lcd1.Caption(), "Mémoire libre:         128,0Mo");
  EXPECT_EQ(page.lcd2.Caption(), "Mémoire utilisée:     385 Mo");
  EXPECT_EQ(page.lcd3.Caption(), "Mémoire Vive Totale:     513 Mo");
  EXPECT_EQ(page.l1.Caption(), "Mémoire Virtuelle : 2047 Mo");
  EXPECT_EQ(page.l2.Caption(), "Mémoire Virtuelle libre : 1990 Mo");
  EXPECT_EQ(page.l3.Caption(), "Mémoire Virtuelle occupée : 57 Mo");
  EXPECT_EQ(page.l4.Caption(), "Taille du fichier de pagination : 1536 Mo");
  EXPECT_EQ(page.l5.Caption(), "dont : 1100 Mo libres");
  EXPECT_EQ(page.l6.Caption(), "dont : 436 Mo chargés");
  EXPECT_DOUBLE_EQ(page.TamrixPBar2.Value(), 128.0 / 513 * 100);
}

TEST_F(HomeFixture, TotalOf511Point6ShowsAs513NotAs512) {
  p.memory.dwTotalPhys = Bytes(511.6);
  Tick();
  EXPECT_EQ(page.lcd3.Caption(), "Mémoire Vive Totale:     513 Mo");
}

TEST_F(HomeFixture, TheAddedMegabyteStaysOnAnExactTotal) {
  p.memory.dwTotalPhys = 256 * MB;
  Tick();
  EXPECT_EQ(page.lcd3.Caption(), "Mémoire Vive Totale:     257 Mo");
}

TEST_F(HomeFixture, FreeOf128Point04ShowsAs128Point0WithThePointOfAPointLocale) {
  p.decimalSign = '.';
  p.memory.dwTotalPhys = Bytes(511.6);
  p.memory.dwAvailPhys = Bytes(128.04);
  Tick();
  EXPECT_EQ(page.lcd1.Caption(), "Mémoire libre:         128.0Mo");
  EXPECT_EQ(page.lcd2.Caption(), "Mémoire utilisée:     385 Mo");
}

TEST_F(HomeFixture, FreeOf128Point04ShowsAs128Comma0WithTheCommaOfAFrenchLocale) {
  p.decimalSign = ',';
  p.memory.dwTotalPhys = Bytes(511.6);
  p.memory.dwAvailPhys = Bytes(128.04);
  Tick();
  EXPECT_EQ(page.lcd1.Caption(), "Mémoire libre:         128,0Mo");
}

TEST_F(HomeFixture, BarAndUsedMemoryComeFromTheRoundedTextsNotFromTheBytes) {
  p.memory.dwTotalPhys = Bytes(511.6);
  p.memory.dwAvailPhys = Bytes(128.04);
  Tick();
  EXPECT_DOUBLE_EQ(page.TamrixPBar2.Value(), 128.0 / 513 * 100);
  EXPECT_NE(page.TamrixPBar2.Value(), 128.04 / 513 * 100);
  EXPECT_NE(page.TamrixPBar2.Value(), 128.04 / 512.6 * 100);
  EXPECT_EQ(page.lcd2.Caption(), "Mémoire utilisée:     385 Mo");  // not 384.96 nor 383.56
}

TEST_F(HomeFixture, UsedMemoryShowsAFractionWithACommaInACommaLocale) {
  p.decimalSign = ',';
  p.memory.dwTotalPhys = 512 * MB;              // "513"
  p.memory.dwAvailPhys = Bytes(128.4);          // "128,4"
  Tick();
  EXPECT_EQ(page.lcd1.Caption(), "Mémoire libre:         128,4Mo");
  EXPECT_EQ(page.lcd2.Caption(), "Mémoire utilisée:     384,6 Mo");
}

TEST_F(HomeFixture, UsedMemoryShowsAFractionWithAPointInAPointLocale) {
  p.decimalSign = '.';
  p.memory.dwTotalPhys = 512 * MB;
  p.memory.dwAvailPhys = Bytes(128.4);
  Tick();
  EXPECT_EQ(page.lcd1.Caption(), "Mémoire libre:         128.4Mo");
  EXPECT_EQ(page.lcd2.Caption(), "Mémoire utilisée:     384.6 Mo");
}

TEST_F(HomeFixture, BarValueIsAFractionSuchAs24Point15) {
  p.decimalSign = ',';
  p.memory.dwTotalPhys = 999 * MB;      // "1000"
  p.memory.dwAvailPhys = Bytes(241.5);  // "241,5"
  Tick();
  EXPECT_DOUBLE_EQ(page.TamrixPBar2.Value(), 24.15);
}

TEST_F(HomeFixture, BarShowsTheFreeShareNotTheLoad) {
  p.memory = {32, 90, 999 * MB, 750 * MB, 0, 0, 0, 0};
  Tick();
  EXPECT_DOUBLE_EQ(page.TamrixPBar2.Value(), 75.0);
}

TEST_F(HomeFixture, OnlyTheFreeLineHasNoBlankBeforeMo) {
  Tick();
  const std::string free = page.lcd1.Caption(), used = page.lcd2.Caption(), total = page.lcd3.Caption();
  ASSERT_GE(free.size(), 3u);
  EXPECT_EQ(free.substr(free.size() - 3), "0Mo");  // the digit stands right against "Mo"
  EXPECT_EQ(used.substr(used.size() - 3), " Mo");
  EXPECT_EQ(total.substr(total.size() - 3), " Mo");
}

TEST_F(HomeFixture, ThreeGigabyteMachineShowsNegativeFigures) {
  p.decimalSign = ',';
  p.memory = {32, 20, 3072u * MB, 2560u * MB, 3584u * MB, 3000u * MB, 2047 * MB, 1900 * MB};
  Tick();
  EXPECT_EQ(page.lcd3.Caption(), "Mémoire Vive Totale:     -1023 Mo");  // -1024 + 1
  EXPECT_EQ(page.lcd1.Caption(), "Mémoire libre:         -1536,0Mo");
  EXPECT_EQ(page.lcd2.Caption(), "Mémoire utilisée:     513 Mo");       // -1023 - (-1536)
  EXPECT_EQ(page.l4.Caption(), "Taille du fichier de pagination : -512 Mo");
  EXPECT_EQ(page.l5.Caption(), "dont : -1096 Mo libres");
  EXPECT_EQ(page.l6.Caption(), "dont : 584 Mo chargés");
  // 150 %: the bar keeps it as given, and only its painting stops at a full dial.
  EXPECT_DOUBLE_EQ(page.TamrixPBar2.Value(), -1536.0 / -1023 * 100);
  EXPECT_DOUBLE_EQ(page.TamrixPBar2.Shown(), 100);
}

TEST_F(HomeFixture, OverflowValueOfABigMachineShowsAsItIs) {
  // Four gigabytes or more read as all ones: minus one byte.
  p.decimalSign = ',';
  p.memory = {32, 30, 0xFFFFFFFFu, 0xFFFFFFFFu, 0xFFFFFFFFu, 0xFFFFFFFFu, 0xFFFFFFFFu, 0xFFFFFFFFu};
  Tick();
  EXPECT_EQ(page.lcd3.Caption(), "Mémoire Vive Totale:     1 Mo");
  EXPECT_EQ(page.lcd1.Caption(), "Mémoire libre:         -0,0Mo");
  EXPECT_EQ(page.lcd2.Caption(), "Mémoire utilisée:     1 Mo");
  EXPECT_EQ(page.l1.Caption(), "Mémoire Virtuelle : 0 Mo");
  EXPECT_EQ(page.l3.Caption(), "Mémoire Virtuelle occupée : 0 Mo");
  EXPECT_EQ(page.TamrixPBar2.Value(), 0);
}

TEST_F(HomeFixture, TwentyFourGigabyteMachineShowsWhatAThirtyTwoBitProgramIsGiven) {
  // The record both builds give on a machine of 24 GB: physical memory at 2 GB - 1, the page
  // file at its caps, a 2 GB address space of which the program holds 7 MB.
  p.decimalSign = ',';
  p.memory = {32, 4, 0x7FFFFFFFu, 0x7FFFFFFFu, 0xFFF7FFFFu, 0xFFFFFFFFu, 0x7FFE0000u, 0x7FFE0000u - 7 * MB};
  Tick();
  EXPECT_EQ(page.lcd3.Caption(), "Mémoire Vive Totale:     2049 Mo");
  EXPECT_EQ(page.lcd1.Caption(), "Mémoire libre:         2048,0Mo");
  EXPECT_EQ(page.lcd2.Caption(), "Mémoire utilisée:     1 Mo");
  EXPECT_EQ(page.l1.Caption(), "Mémoire Virtuelle : 2048 Mo");
  EXPECT_EQ(page.l2.Caption(), "Mémoire Virtuelle libre : 2041 Mo");
  EXPECT_EQ(page.l3.Caption(), "Mémoire Virtuelle occupée : 7 Mo");
  EXPECT_EQ(page.l4.Caption(), "Taille du fichier de pagination : -1 Mo");  // just under 4 GB, read signed
  EXPECT_EQ(page.l5.Caption(), "dont : 0 Mo libres");
  EXPECT_EQ(page.l6.Caption(), "dont : -1 Mo chargés");
}

TEST_F(HomeFixture, TotalTextOfZeroEndsTheTickInTheDivisionFault) {
  // Just under 4 GB, the total plus one rounds to "0": the share is a division by zero, which
  // nothing traps.
  p.memory.dwTotalPhys = 0xFFFFFFFFu - MB;
  p.memory.dwAvailPhys = 100 * MB;
  try {
    Tick();
    FAIL() << "the tick should have faulted";
  } catch (const RuntimeError& e) {
    EXPECT_EQ(e.Number(), 11);
  }
  EXPECT_EQ(page.lcd3.Caption(), "Mémoire Vive Totale:     -0 Mo");  // the lines before it were written
}

TEST_F(HomeFixture, MemoryLoadAndPhysicalMegabytesOfTheSnapshotAreNotShown) {
  p.memory = {32, 77, 300 * MB, 200 * MB, 0, 0, 0, 0};
  Tick();
  for (Label* l : MemoryLabels()) {
    EXPECT_EQ(l->Caption().find("77"), std::string::npos) << l->Name();
    EXPECT_EQ(l->Caption().find("300 "), std::string::npos) << l->Name();
  }
}

TEST_F(HomeFixture, ClockShowsHoursMinutesSecondsOnATwentyFourHourClock) {
  p.now = {2026, 11, 21, 20, 50, 35};
  page.Timer2Tick();
  EXPECT_EQ(page.Label19.Caption(), "20:50:35");
  p.now = {2026, 11, 22, 7, 5, 9};
  page.Timer2Tick();
  EXPECT_EQ(page.Label19.Caption(), "07:05:09");
}

TEST_F(HomeFixture, ClockUsesTheRegionalTimeSeparator) {
  p.timeSeparator = '.';
  p.now = {2026, 11, 21, 20, 50, 35};
  page.Timer2Tick();
  EXPECT_EQ(page.Label19.Caption(), "20.50.35");
}

TEST_F(HomeFixture, ClockTickTouchesNothingButTheClock) {
  std::vector<std::string> before;
  for (Label* l : MemoryLabels()) before.push_back(l->Caption());
  page.Timer2Tick();
  for (std::size_t i = 0; i < before.size(); ++i) EXPECT_EQ(MemoryLabels()[i]->Caption(), before[i]);
  EXPECT_TRUE(p.calls.empty()) << p.calls.front();
}

TEST_F(HomeFixture, TimersKeepTheLabelsFreshWhileAnotherPageIsShown) {
  fake::VirtualClock clock(form);
  form.TamrixCmd7.Click();  // the Protection page
  ASSERT_FALSE(page.Frame4.Visible());
  p.ClearCalls();
  p.memory.dwAvailPhys = 100 * MB;
  p.now = {2026, 11, 21, 9, 0, 0};
  clock.Advance(1000);
  EXPECT_EQ(page.lcd1.Caption(), "Mémoire libre:         100,0Mo");
  EXPECT_EQ(page.Label19.Caption(), "09:00:00");
  p.memory.dwAvailPhys = 50 * MB;
  p.now = {2026, 11, 21, 9, 0, 1};
  clock.Advance(1000);
  EXPECT_EQ(page.lcd1.Caption(), "Mémoire libre:         50,0Mo");
  EXPECT_EQ(page.Label19.Caption(), "09:00:01");
  EXPECT_FALSE(page.Frame4.Visible());
  // Ten monitor ticks in two seconds, two platform calls each.
  EXPECT_EQ(std::count(p.calls.begin(), p.calls.end(), "GlobalMemoryStatus(32)"), 20);
}

TEST_F(HomeFixture, DownloadOfferAsksWithItsTitleLinesAndButtons) {
  p.answers.push_back(mb::IdNo);
  page.Label14.Click();
  ASSERT_EQ(p.boxes.size(), 1u);
  EXPECT_EQ(p.boxes[0].title, "Tamrix Corporation - Centre de téléchargement");
  EXPECT_EQ(p.boxes[0].text,
            " Vous avez besoin d'un logiciel qui optimise la mémoire vive, la mémoire cache \r"
            "du processeur ( pour de meilleurs performances ) et accélère votre Windows ?\r"
            "Téléchargez gratuitement notre logiciel  ' Tamrix Libra ' . \r"
            "\r"
            "Voulez vous le télécharger maintenant ?");
  EXPECT_EQ(p.boxes[0].style, 0x04u | 0x40u);  // Yes and No, the information icon
}

TEST_F(HomeFixture, YesOpensTheDownloadAddressThroughTheShell) {
  p.answers.push_back(mb::IdYes);
  page.Label14.Click();
  EXPECT_EQ(p.calls, (Calls{"MessageBoxA(Tamrix Corporation - Centre de téléchargement)",
                            "ShellExecuteA(0x0,open,http://www.tamrix.example/TamrixLibra.zip,,,1)"}));
}

TEST_F(HomeFixture, NoDoesNothingElse) {
  p.answers.push_back(mb::IdNo);
  page.Label14.Click();
  EXPECT_EQ(p.calls, (Calls{"MessageBoxA(Tamrix Corporation - Centre de téléchargement)"}));
}

TEST_F(HomeFixture, DownloadAddressIsAFileOnTheMakersSite) {
  p.answers.push_back(mb::IdYes);
  page.Label14.Click();
  const std::string& call = p.calls.back();
  EXPECT_NE(call.find(std::string(maker::kWebSite) + "/TamrixLibra.zip"), std::string::npos);
  EXPECT_EQ(std::string(maker::kWebSite).find(".example"), std::string("http://www.tamrix").size());
}

}  // namespace
}  // namespace tamrix
