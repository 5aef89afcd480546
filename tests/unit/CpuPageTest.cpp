// The processor sub-page of Test Lab: what its opening does and in which order, the ten labels
// from WMI, the 15-second test on a clock that moves with each reading, the score and its words
// and pictures.
#include <gtest/gtest.h>

#include <climits>

#include "fake/FakePlatform.h"
#include "forms/Form1.h"
#include "platform/Runtime.h"
#include "shell/Dispatch.h"

namespace tamrix {
namespace {

using Calls = std::vector<std::string>;
using T = WmiValue::Type;

const char* const kWarning =
    "Le test va durer 15 secondes, ne touchez pas au clavier ni à la souris et fermez les programmes en cours "
    "d'exécution.";

WmiValue Text(const std::string& t) { return {.type = T::Text, .text = t}; }
WmiValue Int(std::int64_t n) { return {.type = T::Integer, .integer = n}; }

fake::FakePlatform::WmiProps Processor() {
  return {
      {"DeviceID", Text("CPU0")},          {"Availability", Int(3)},    {"AddressWidth", Int(32)},
      {"CpuStatus", Int(1)},               {"CurrentClockSpeed", Int(2394)}, {"MaxClockSpeed", Int(2400)},
      {"L2CacheSize", Int(512)},           {"L2CacheSpeed", Int(1200)}, {"VoltageCaps", Int(4)},
      {"Name", Text("Intel(R) Pentium(R) 4 CPU 2.40GHz")},
  };
}

// Writes each frame's change of visibility into the platform's record, so that the order of
// frames and platform calls can be read in one list.
class FramesIntoCalls : public Peer {
 public:
  FramesIntoCalls(fake::FakePlatform& p, std::initializer_list<Control*> frames) : p_(p), frames_(frames) {
    for (Control* f : frames_) f->peer = this;
  }
  ~FramesIntoCalls() override {
    for (Control* f : frames_) f->peer = nullptr;
  }
  void Refresh(Control& c) override { p_.calls.push_back((c.Visible() ? "S " : "H ") + c.Name()); }

 private:
  fake::FakePlatform& p_;
  std::vector<Control*> frames_;
};

struct Page {
  fake::FakePlatform p;
  Form1 form{p};
  CpuPage& page = form.cpuPage;
  Page() {
    form.Load();
    p.wmiClasses["Win32_Processor"] = {Processor()};
  }
  std::vector<std::string> Labels() {
    std::vector<std::string> out;
    for (Label* l : {&page.Cpu1, &page.Cpu2, &page.Cpu3, &page.Cpu4, &page.Cpu5, &page.Cpu6, &page.Cpu7, &page.Cpu8,
                     &page.Cpu9, &page.Cpu10})
      out.push_back(l->Caption());
    return out;
  }
  std::vector<bool> Lit() {
    return {page.iImage5.Visible(), page.iImage6.Visible(), page.iImage7.Visible(), page.iImage8.Visible()};
  }
  // A clock for one run that counts exactly `passes` in the measuring phase: T0 at 0, the
  // settling over at the next reading, T1 at 2000, then `passes` readings of 2000 and one of 15000.
  void ClockCounting(double passes) {
    auto reads = std::make_shared<double>(0);
    p.tickSource = [reads, passes]() -> std::uint32_t {
      double n = ++*reads;
      if (n == 1) return 0;
      if (n <= 3) return 2000;
      return n <= 3 + passes ? 2000 : 15000;
    };
  }
};

TEST(CpuPageDesign, TheTestButtonCarriesNoPicture) {
  Page s;
  EXPECT_EQ(s.page.Test.design().picture, "");
  EXPECT_EQ(s.page.Test.Caption(), "Démarrer le Test");
}

TEST(CpuPageOpening, RaisesThePriorityAndInitialisesTheCommonControlsBeforeTheFramesSwitch) {
  Page s;
  s.form.sys.Click();
  s.p.ClearCalls();
  FramesIntoCalls frames(s.p, {&s.form.FrmBios, &s.form.pc, &s.form.fwindows, &s.form.disque, &s.form.FrmCpu,
                               &s.form.Frmson});
  s.form.TamrixCmd4.Click();
  Calls head(s.p.calls.begin(), s.p.calls.begin() + 11);
  EXPECT_EQ(head, (Calls{"GetCurrentProcess", "SetPriorityClass(0xFFFFFFFFFFFFFFFF,128)", "InitCommonControls",
                         "H FrmBios", "H pc", "H fwindows", "H disque", "S FrmCpu", "H Frmson",
                         "WmiGetObject(winmgmts:{impersonationLevel=impersonate})", "InstancesOf(Win32_Processor)"}));
  EXPECT_EQ(s.p.priorityClass, 128u);
}

TEST(CpuPageOpening, FillsTheTenLabelsFromTheProcessorsProperties) {
  Page s;
  s.form.TamrixCmd4.Click();
  EXPECT_EQ(s.Labels(), (std::vector<std::string>{"CPU0", "3", "32", "1", "2394", "2400", "512", "1200", "4",
                                                  "Intel(R) Pentium(R) 4 CPU 2.40GHz"}));
}

TEST(CpuPageOpening, ReadsEachPropertyByItsNameInTheOrderOfTheLabels) {
  Page s;
  s.p.ClearCalls();
  s.form.TamrixCmd4.Click();
  Calls reads;
  for (const auto& c : s.p.calls)
    if (c.rfind("WmiGet(", 0) == 0) reads.push_back(c);
  EXPECT_EQ(reads, (Calls{"WmiGet(DeviceID)", "WmiGet(Availability)", "WmiGet(AddressWidth)", "WmiGet(CpuStatus)",
                          "WmiGet(CurrentClockSpeed)", "WmiGet(MaxClockSpeed)", "WmiGet(L2CacheSize)",
                          "WmiGet(L2CacheSpeed)", "WmiGet(VoltageCaps)", "WmiGet(name)"}));
}

TEST(CpuPageOpening, ANullOrAbsentPropertyIsSkippedAndItsLabelKeepsItsText) {
  Page s;
  s.form.TamrixCmd4.Click();
  auto& cpu = s.p.wmiClasses["Win32_Processor"][0];
  cpu.erase("Availability");
  cpu.erase("L2CacheSize");
  cpu["VoltageCaps"] = {.type = T::Null};
  cpu["CurrentClockSpeed"] = Int(1000);
  s.form.TamrixCmd4.Click();
  EXPECT_EQ(s.Labels(), (std::vector<std::string>{"CPU0", "3", "32", "1", "1000", "2400", "512", "1200", "4",
                                                  "Intel(R) Pentium(R) 4 CPU 2.40GHz"}));
}

TEST(CpuPageOpening, WhatWinesProcessorLacksLeavesThoseLabelsEmpty) {
  Page s;
  auto& cpu = s.p.wmiClasses["Win32_Processor"][0];
  for (const char* missing : {"Availability", "L2CacheSize", "L2CacheSpeed", "VoltageCaps"}) cpu.erase(missing);
  s.form.TamrixCmd4.Click();
  EXPECT_EQ(s.Labels(), (std::vector<std::string>{"CPU0", "", "32", "1", "2394", "2400", "", "", "",
                                                  "Intel(R) Pentium(R) 4 CPU 2.40GHz"}));
}

TEST(CpuPageOpening, WithSeveralProcessorsTheLastOneStays) {
  Page s;
  auto second = Processor();
  second["DeviceID"] = Text("CPU1");
  second.erase("L2CacheSize");
  s.p.wmiClasses["Win32_Processor"].push_back(second);
  s.form.TamrixCmd4.Click();
  EXPECT_EQ(s.page.Cpu1.Caption(), "CPU1");
  EXPECT_EQ(s.page.Cpu7.Caption(), "512");  // the first one's value, which the second didn't overwrite
}

TEST(CpuPageOpening, AnEmptyCollectionLeavesTheLabelsAsTheyWere) {
  Page s;
  s.form.TamrixCmd4.Click();
  s.p.wmiClasses.clear();
  s.form.TamrixCmd4.Click();
  EXPECT_EQ(s.page.Cpu1.Caption(), "CPU0");
  EXPECT_EQ(s.page.Cpu10.Caption(), "Intel(R) Pentium(R) 4 CPU 2.40GHz");
}

TEST(CpuPageOpening, WithoutWmiTheProgramEndsAfterThePriorityRaiseAndTheFrameSwitch) {
  Page s;
  s.p.wmiBindFails = true;
  EXPECT_FALSE(RunHandler(s.p, [&] { s.form.TamrixCmd4.Click(); }));
  EXPECT_EQ(s.p.priorityClass, 128u);
  EXPECT_TRUE(s.form.FrmCpu.Visible());
  ASSERT_EQ(s.p.boxes.size(), 1u);
  EXPECT_EQ(s.p.boxes[0].text, "Run-time error '429':\r\rActiveX component can't create object");
  for (Label* l : {&s.page.Cpu1, &s.page.Cpu10}) EXPECT_EQ(l->Caption(), "");
}

TEST(CpuPageOpening, AFailingInstancesOfEndsTheProgramToo) {
  Page s;
  s.p.wmiQueryFails = true;
  EXPECT_FALSE(RunHandler(s.p, [&] { s.form.TamrixCmd4.Click(); }));
}

TEST(CpuPageOpening, ALaterProcessorThatCantBeFetchedLeavesTheFirstOnesLabelsAndTheProgramRuns) {
  Page s;
  s.p.wmiClasses["Win32_Processor"].push_back(Processor());
  s.p.wmiFetchFailsAt["win32_processor"] = 1;
  EXPECT_TRUE(RunHandler(s.p, [&] { s.form.TamrixCmd4.Click(); }));
  EXPECT_TRUE(s.p.boxes.empty());
  EXPECT_EQ(s.page.Cpu1.Caption(), "CPU0");
  EXPECT_EQ(s.page.Cpu10.Caption(), "Intel(R) Pentium(R) 4 CPU 2.40GHz");
}

TEST(CpuPageOpening, AFirstProcessorThatCantBeFetchedEndsTheProgram) {
  Page s;
  s.p.wmiFetchFailsAt["win32_processor"] = 0;
  EXPECT_FALSE(RunHandler(s.p, [&] { s.form.TamrixCmd4.Click(); }));
  for (Label* l : {&s.page.Cpu1, &s.page.Cpu10}) EXPECT_EQ(l->Caption(), "");
}

TEST(CpuTest, BeforeTheFirstRunTheScoreSaysIndiceAndNoColouredPictureShows) {
  Page s;
  EXPECT_EQ(s.page.iLabel1.Caption(), "Indice");
  EXPECT_EQ(s.page.rst.Caption(), "");
  EXPECT_EQ(s.Lit(), (std::vector<bool>{false, false, false, false}));
  for (Image* grey : {&s.page.iImage1, &s.page.iImage2, &s.page.iImage3, &s.page.iImage4})
    EXPECT_TRUE(grey->Visible());
  EXPECT_EQ(s.page.Test.Caption(), "Démarrer le Test");
}

TEST(CpuTest, AsksFirstWithTheInformationBoxOkAndCancel) {
  Page s;
  s.p.answers = {mb::IdCancel};
  s.page.Test.Click();
  ASSERT_EQ(s.p.boxes.size(), 1u);
  EXPECT_EQ(s.p.boxes[0].text, kWarning);
  EXPECT_EQ(s.p.boxes[0].style, 65u);
  EXPECT_EQ(s.p.boxes[0].title, "Tamrix Utility");
}

TEST(CpuTest, CancellingKeepsTheEarlierScoreWordsAndPictures) {
  Page s;
  s.ClockCounting(6000000);
  s.page.Test.Click();
  ASSERT_EQ(s.page.iLabel1.Caption(), "60");
  s.p.answers = {mb::IdCancel};
  s.p.tickSource = [] { return 0u; };
  s.p.ClearCalls();
  s.page.Test.Click();
  EXPECT_EQ(s.page.iLabel1.Caption(), "60");
  EXPECT_EQ(s.page.rst.Caption(), "Résultat: Ultra performant");
  EXPECT_EQ(s.Lit(), (std::vector<bool>{true, true, false, false}));
  EXPECT_EQ(s.page.Test.Caption(), "Démarrer le test");
  EXPECT_EQ(s.p.calls, (Calls{"MessageBoxA(Tamrix Utility)"}));
}

TEST(CpuTest, DuringARunTheWindowIsDisabledTheWordsSayWaitAndTheScoreAndColouredPicturesAreGone) {
  Page s;
  s.ClockCounting(6000000);
  s.page.Test.Click();  // a first run lights two pictures
  s.p.tickStep = 1;
  s.p.tickSource = nullptr;
  int checked = 0;
  s.p.onDoEvents = [&] {
    if (checked++) return;
    EXPECT_FALSE(s.form.Enabled());
    EXPECT_FALSE(s.page.Test.Enabled());
    EXPECT_EQ(s.page.Test.Caption(), "Test en cours ...");
    EXPECT_EQ(s.page.rst.Caption(), "Veuillez Patientez . . .");
    EXPECT_EQ(s.page.iLabel1.Caption(), "");
    EXPECT_EQ(s.Lit(), (std::vector<bool>{false, false, false, false}));
  };
  s.page.Test.Click();
  EXPECT_GT(checked, 0);
  EXPECT_TRUE(s.form.Enabled());
  EXPECT_TRUE(s.page.Test.Enabled());
}

TEST(CpuTest, TheRunSettlesTwoSecondsWithTheEventPumpThenCountsThirteenWithout) {
  Page s;
  s.p.tickCount = 1000;
  s.p.tickStep = 1;
  int pumpsWhileMeasuring = 0;
  s.p.onDoEvents = [&] {
    if (s.p.tickCount > 1000 + 2001) ++pumpsWhileMeasuring;
  };
  s.page.Test.Click();
  // Settling: T0 = 1000, the readings 1001..2999 pump, 3000 ends it.
  EXPECT_EQ(s.p.doEvents, 1999);
  EXPECT_EQ(pumpsWhileMeasuring, 0);
  // Measuring: T1 = 3001, one pass per reading 3002..16000: 12999 passes, a score of 0.
  EXPECT_EQ(s.page.iLabel1.Caption(), "0");
  EXPECT_EQ(s.page.rst.Caption(), "Résultat: Faible");
  EXPECT_EQ(s.p.tickCount, 16002u);
}

TEST(CpuTest, AFullRunEndsEnabledWithTheSmallTCaptionTheScoreTheWordsThePicturesAndABeep) {
  Page s;
  s.ClockCounting(12345678);
  s.page.Test.Click();
  EXPECT_TRUE(s.form.Enabled());
  EXPECT_TRUE(s.page.Test.Enabled());
  EXPECT_EQ(s.page.Test.Caption(), "Démarrer le test");
  EXPECT_EQ(s.page.iLabel1.Caption(), "123");
  EXPECT_EQ(s.page.rst.Caption(), "Résultat: Excelent");
  EXPECT_EQ(s.Lit(), (std::vector<bool>{true, true, true, false}));
  EXPECT_EQ(s.p.beeps, 1);
  EXPECT_EQ(s.p.calls.back(), "Beep");
}

TEST(CpuTest, FourMillionFiftyThousandPassesRoundToFortyAndStayWeak) {
  Page s;
  s.ClockCounting(4050000);
  s.page.Test.Click();
  EXPECT_EQ(s.page.iLabel1.Caption(), "40");
  EXPECT_EQ(s.page.rst.Caption(), "Résultat: Faible");
  EXPECT_EQ(s.Lit(), (std::vector<bool>{true, false, false, false}));
}

TEST(CpuTest, FourMillionOneHundredFiftyThousandPassesRoundToFortyTwoAndReadPerformant) {
  Page s;
  s.ClockCounting(4150000);
  s.page.Test.Click();
  EXPECT_EQ(s.page.iLabel1.Caption(), "42");
  EXPECT_EQ(s.page.rst.Caption(), "Résultat: performant");
  EXPECT_EQ(s.Lit(), (std::vector<bool>{true, false, false, false}));
}

TEST(CpuTest, AScoreOfZeroIsWrittenLikeAnyOther) {
  Page s;
  s.ClockCounting(49999);
  s.page.Test.Click();
  EXPECT_EQ(s.page.iLabel1.Caption(), "0");
  EXPECT_EQ(s.page.rst.Caption(), "Résultat: Faible");
}

TEST(CpuClassification, EachLevelItsWordsAndPictures) {
  struct Row {
    const char* score;
    const char* words;
    std::vector<bool> lit;
  };
  const Row kRows[] = {
      {"0", "Résultat: Faible", {true, false, false, false}},
      {"40", "Résultat: Faible", {true, false, false, false}},
      {"41", "Résultat: performant", {true, false, false, false}},
      {"55", "Résultat: performant", {true, false, false, false}},
      {"56", "Résultat: Ultra performant", {true, true, false, false}},
      {"110", "Résultat: Ultra performant", {true, true, false, false}},
      {"111", "Résultat: Excelent", {true, true, true, false}},
      {"165", "Résultat: Excelent", {true, true, true, false}},
      {"166", "Résultat: qualité maximale", {true, true, true, true}},
      {"9000", "Résultat: qualité maximale", {true, true, true, true}},
  };
  for (const Row& row : kRows) {
    Page s;
    s.page.iLabel1.SetCaption(row.score);
    EXPECT_EQ(s.page.rst.Caption(), row.words) << row.score;
    EXPECT_EQ(s.Lit(), row.lit) << row.score;
  }
}

TEST(CpuClassification, TheExactBoundsBelongToTheLevelBelow) {
  const std::pair<const char*, const char*> kBounds[] = {{"40", "Résultat: Faible"},
                                                         {"55", "Résultat: performant"},
                                                         {"110", "Résultat: Ultra performant"},
                                                         {"165", "Résultat: Excelent"}};
  for (const auto& [score, words] : kBounds) {
    Page s;
    s.page.iLabel1.SetCaption(score);
    EXPECT_EQ(s.page.rst.Caption(), words) << score;
  }
}

TEST(CpuClassification, AnEmptyCaptionHidesTheColouredPicturesAndLeavesTheWords) {
  Page s;
  s.page.iLabel1.SetCaption("200");
  s.page.iLabel1.SetCaption("");
  EXPECT_EQ(s.Lit(), (std::vector<bool>{false, false, false, false}));
  EXPECT_EQ(s.page.rst.Caption(), "Résultat: qualité maximale");
}

TEST(CpuClassification, LeavingThePageAndComingBackChangesNothing) {
  Page s;
  s.page.iLabel1.SetCaption("120");
  s.form.TamrixCmd3.Click();
  s.form.TamrixCmd4.Click();
  EXPECT_EQ(s.page.iLabel1.Caption(), "120");
  EXPECT_EQ(s.page.rst.Caption(), "Résultat: Excelent");
  EXPECT_EQ(s.Lit(), (std::vector<bool>{true, true, true, false}));
}

TEST(CpuTestClock, TheEndTicksAreComputedWithoutWrapping) {
  EXPECT_EQ(EndTick(1000, 2000), 3000);
  EXPECT_EQ(EndTick(INT_MAX - 100, 2000), 2147485547LL);
  EXPECT_GT(EndTick(INT_MAX - 100, 13000), static_cast<std::int64_t>(INT_MAX));
  EXPECT_EQ(EndTick(-5000, 13000), 8000);  // the signed tick after 24.9 days
}

TEST(CpuTestClock, AWaitThatStartsBelowTheTopOfTheSignedTickStillEnds) {
  fake::FakePlatform p;
  p.tickCount = static_cast<std::uint32_t>(INT_MAX) - 20000;
  p.tickStep = 1;
  PassCounter passes = MeasurePasses(p, 13000);
  EXPECT_EQ(passes.Value(), 12999);
}

TEST(CpuTestClock, TheMeasuringPhaseReadsTheTickOncePerPass) {
  fake::FakePlatform p;
  int reads = 0;
  p.tickSource = [&]() -> std::uint32_t { return ++reads > 501 ? 13000u : 0u; };
  PassCounter passes = MeasurePasses(p, 13000);
  EXPECT_EQ(passes.Value(), 500);
  EXPECT_EQ(reads, 502);  // T1, one per pass, and the one past the end
}

TEST(PassCounter, GrowsFromSixteenToThirtyTwoBitsToADoubleWithoutWrapping) {
  PassCounter c;
  EXPECT_EQ(c.width(), PassCounter::Width::Int16);
  for (int i = 0; i < 32767; ++i) c.AddOne();
  EXPECT_EQ(c.Value(), 32767);
  EXPECT_EQ(c.width(), PassCounter::Width::Int16);
  c.AddOne();
  EXPECT_EQ(c.Value(), 32768);
  EXPECT_EQ(c.width(), PassCounter::Width::Int32);

  PassCounter big = PassCounter::At(2147483647.0);
  EXPECT_EQ(big.width(), PassCounter::Width::Int32);
  big.AddOne();
  EXPECT_EQ(big.width(), PassCounter::Width::Double);
  EXPECT_EQ(big.Value(), 2147483648.0);
  big.AddOne();
  EXPECT_EQ(big.Value(), 2147483649.0);
}

TEST(PassCounter, TheScoreIsThePassesByOneHundredThousandRoundedHalfToEven) {
  EXPECT_EQ(ScoreOf(PassCounter::At(4050000)), 40);
  EXPECT_EQ(ScoreOf(PassCounter::At(4150000)), 42);
  EXPECT_EQ(ScoreOf(PassCounter::At(4049999)), 40);
  EXPECT_EQ(ScoreOf(PassCounter::At(4050001)), 41);
  EXPECT_EQ(ScoreOf(PassCounter::At(3000000000.0)), 30000);
}

}  // namespace
}  // namespace tamrix
