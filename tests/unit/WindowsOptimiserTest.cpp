// The Windows optimiser: its catalogue, row by row and in order, the click that writes it, and
// the seventeen-second show on the virtual clock.
#include <gtest/gtest.h>

#include "contract/ExpectedCatalogues.h"
#include "fake/FakePlatform.h"
#include "fake/VirtualClock.h"
#include "optimisers/WindowsOptimiser.h"
#include "platform/Ini.h"
#include "forms/Form1.h"

namespace tamrix {
namespace {

using Calls = std::vector<std::string>;

// The catalogue as it must stand, written out by hand in the shared expectations so that a
// slip in the data is caught.
using namespace expected;
using namespace expected::windows;

const char* const kSystemIni = "C:\\WINDOWS\\system.ini";

std::string HiveName(HKey h) { return h == CU ? "HKCU" : "HKLM"; }

std::string Row(const RegExpect& r) {
  return HiveName(r.hive) + "|" + r.path + "|" + r.name + "|" + std::to_string(r.type) + "|" + r.data;
}
std::string Row(const ProfileExpect& r) { return std::string(r.section) + "|" + r.key + "|" + r.value; }

// The calls the fake records for one registry row written into an existing key.
Calls RegistryCalls(const RegExpect& r) {
  std::string size = r.type == DW ? "4" : std::to_string(std::string(r.data).size());
  return {"RegOpenKeyExA(" + HiveName(r.hive) + "," + r.path + ",0,0x3F)",
          "RegSetValueExA(key," + std::string(r.name) + "," + std::to_string(r.type) + "," + r.data + "," + size + ")",
          "RegCloseKey(key)"};
}

// --- the catalogue as data ------------------------------------------------------------------

TEST(WindowsCatalogue, RegistryTableHoldsTheRowsInWritingOrder) {
  ASSERT_EQ(WindowsOptimiser::kRegistryRows.size(), 21u);
  for (int i = 0; i < 21; ++i) {
    SCOPED_TRACE(i + 1);
    const auto& row = WindowsOptimiser::kRegistryRows[i];
    EXPECT_EQ(row.hive, kRegistry[i].hive);
    EXPECT_EQ(row.keyPath, kRegistry[i].path);
    EXPECT_EQ(row.valueName, kRegistry[i].name);
    EXPECT_EQ(row.type, kRegistry[i].type);
    if (row.type == SZ) {
      EXPECT_EQ(row.data.kind, catalogue::Data::Kind::Text);
      EXPECT_EQ(row.data.text, kRegistry[i].data);
    } else {
      EXPECT_EQ(row.data.kind, catalogue::Data::Kind::Number);
      EXPECT_EQ(std::to_string(row.data.number), kRegistry[i].data);
    }
  }
}

TEST(WindowsCatalogue, ProfileTablesHoldTheRowsInWritingOrder) {
  ASSERT_EQ(WindowsOptimiser::kProfileRowsBeforeTimer.size(), 26u);
  ASSERT_EQ(WindowsOptimiser::kProfileRowsAfterTimer.size(), 19u);
  for (int i = 0; i < 26; ++i) {
    const auto& row = WindowsOptimiser::kProfileRowsBeforeTimer[i];
    EXPECT_EQ(std::string(row.section) + "|" + std::string(row.key) + "|" + std::string(row.value), Row(kBeforeTimer[i]));
  }
  for (int i = 0; i < 19; ++i) {
    const auto& row = WindowsOptimiser::kProfileRowsAfterTimer[i];
    EXPECT_EQ(std::string(row.section) + "|" + std::string(row.key) + "|" + std::string(row.value), Row(kAfterTimer[i]));
  }
}

TEST(WindowsCatalogue, RunnerWritesRegistryThenFirstBlockThenStartsTimerThenSecondBlockAndNothingElse) {
  Calls log;
  WindowsOptimiser::Run(
      [&](HKey hive, const std::string& path, const std::string& name, const RegValue& data, std::uint32_t type) {
        log.push_back(HiveName(hive) + "|" + path + "|" + name + "|" + std::to_string(type) + "|" + data.ToText());
      },
      [&](const std::string& section, const std::string& key, const std::string& value) {
        log.push_back(section + "|" + key + "|" + value);
      },
      [&] { log.push_back("timer on"); });
  Calls expected;
  for (const auto& r : kRegistry) expected.push_back(Row(r));
  for (const auto& r : kBeforeTimer) expected.push_back(Row(r));
  expected.push_back("timer on");
  for (const auto& r : kAfterTimer) expected.push_back(Row(r));
  ASSERT_EQ(log.size(), 67u);
  for (std::size_t i = 0; i < expected.size(); ++i) EXPECT_EQ(log[i], expected[i]) << "write " << i + 1;
}

TEST(WindowsCatalogue, RegistryRowsCarryNumbersAndTextsOfTheirOwnKind) {
  // The numbers go out as numbers and the texts as texts, whatever the type would make of them.
  std::vector<RegValue> values;
  catalogue::WriteRows(WindowsOptimiser::kRegistryRows,
                       [&](HKey, const std::string&, const std::string&, const RegValue& v, std::uint32_t) {
                         values.push_back(v);
                       });
  for (int i = 0; i < 21; ++i) EXPECT_EQ(values[i].IsNumber(), kRegistry[i].type == DW) << i + 1;
}

TEST(WindowsCatalogue, StageTableHoldsTheEightCaptionsWithTheirThresholds) {
  const std::pair<double, const char*> stages[8] = {
      {5, "Règlage : Boot.."},          {22, "Règlage : Démarrage.."},        {35, "Règlage : Stabilité.."},
      {48, "Règlage : Rapidité.."},     {55, "Règlage : Ports.."},            {65, "Règlage : Materiels.."},
      {85, "Règlage : Defragmentation.."}, {90, "Règlage : Configuration.."}};
  ASSERT_EQ(WindowsOptimiser::kStages.size(), 8u);
  for (int i = 0; i < 8; ++i) {
    EXPECT_EQ(WindowsOptimiser::kStages[i].atLeast, stages[i].first);
    EXPECT_EQ(WindowsOptimiser::kStages[i].caption, stages[i].second);
  }
}

// --- the click on the page ------------------------------------------------------------------

struct OptimiserFixture : ::testing::Test {
  fake::FakePlatform p;
  Form1 form{p};
  WindowsPage& page = form.windowsPage;
  void SetUp() override {
    ini::ProfilePath.clear();
    form.Load();
    form.win.Click();
    p.ClearCalls();
  }
  void TearDown() override { ini::ProfilePath.clear(); }
  void CreateCatalogueKeys(fake::FakePlatform& q) {
    for (const auto& r : kRegistry) q.CreateKey(r.hive, r.path);
  }
  std::string Stored(HKey hive, const char* path, const char* name) {
    const auto* v = p.GetValue(hive, path, name);
    if (!v) return "<none>";
    if (v->type == DW) {
      std::uint32_t u = 0;
      for (int i = 3; i >= 0; --i) u = (u << 8) | static_cast<unsigned char>(v->data[i]);
      return std::to_string(u);
    }
    return v->data;
  }
};

TEST_F(OptimiserFixture, ClickMakesExactlyTheCatalogueCallsInOrderAndNothingElse) {
  CreateCatalogueKeys(p);
  page.command6.Click();
  Calls expected = {"GetWindowsDirectoryA(128)"};
  for (const auto& r : kRegistry)
    for (const auto& c : RegistryCalls(r)) expected.push_back(c);
  for (const auto& r : kBeforeTimer)
    expected.push_back("WritePrivateProfileStringA(" + std::string(r.section) + "," + r.key + "," + r.value + "," +
                       kSystemIni + ")");
  for (const auto& r : kAfterTimer)
    expected.push_back("WritePrivateProfileStringA(" + std::string(r.section) + "," + r.key + "," + r.value + "," +
                       kSystemIni + ")");
  ASSERT_EQ(p.calls.size(), expected.size());
  for (std::size_t i = 0; i < expected.size(); ++i) EXPECT_EQ(p.calls[i], expected[i]) << "call " << i;
  EXPECT_EQ(p.OpenHandles(), 0u);
  EXPECT_TRUE(form.Timer4.Enabled());
}

TEST_F(OptimiserFixture, EveryRowLandsWithItsTypeAndData) {
  CreateCatalogueKeys(p);
  page.command6.Click();
  for (const auto& r : kRegistry) {
    const auto* v = p.GetValue(r.hive, r.path, r.name);
    ASSERT_NE(v, nullptr) << r.name;
    EXPECT_EQ(v->type, r.type) << r.name;
    EXPECT_EQ(Stored(r.hive, r.path, r.name), r.data) << r.name;
  }
}

TEST_F(OptimiserFixture, SameWritesInTheSameOrderOnEverySystemFamily) {
  Calls seen[3];
  const std::uint32_t families[3] = {0, 1, 2};  // Windows 3.1, 9.x, NT
  for (int i = 0; i < 3; ++i) {
    fake::FakePlatform q;
    q.version.platformId = families[i];
    q.version.major = i == 1 ? 4 : 5;
    CreateCatalogueKeys(q);
    Form1 f(q);
    f.Load();
    q.ClearCalls();
    f.windowsPage.command6.Click();
    seen[i] = q.calls;
    for (const auto& c : q.calls) EXPECT_EQ(c.find("GetVersionExA"), std::string::npos);
  }
  EXPECT_EQ(seen[0].size(), 1u + 21 * 3 + 45);
  EXPECT_EQ(seen[0], seen[1]);
  EXPECT_EQ(seen[1], seen[2]);
}

TEST_F(OptimiserFixture, AbsentSystemIniIsMadeWithTheEightSectionsInOrderOfFirstNaming) {
  ASSERT_FALSE(p.HasFile(kSystemIni));
  page.command6.Click();
  EXPECT_EQ(p.File(kSystemIni), kFreshSystemIni);
}

TEST_F(OptimiserFixture, MaxBpsIsReplacedInItsSectionAndAKeyOfTheSameNameElsewhereIsLeftAlone) {
  p.File(kSystemIni) = "[boot]\r\nshell=Explorer.exe\r\n[386Enh]\r\nMaxBps=1200\r\n[other]\r\nMaxBps=1200\r\n";
  page.command6.Click();
  const std::string& ini = p.File(kSystemIni);
  EXPECT_EQ(ini.rfind("[boot]\r\nshell=Explorer.exe\r\n[386Enh]\r\nMaxBps=65530\r\n32BitDiskAccess=on\r\n", 0), 0u)
      << ini;
  EXPECT_NE(ini.find("[other]\r\nMaxBps=1200\r\n[display]\r\n"), std::string::npos) << ini;
  EXPECT_EQ(ini.find("MaxBps=65530"), ini.rfind("MaxBps=65530")) << "one line only";
}

TEST_F(OptimiserFixture, ProfilePathStillNamesSystemIniAfterTheRun) {
  page.command6.Click();
  fake::VirtualClock clock(form);
  clock.Advance(20000);
  EXPECT_EQ(ini::ProfilePath, kSystemIni);
}

TEST_F(OptimiserFixture, WindowsDirectoryIsTakenAsGivenWithNoCheckOfItsSeparator) {
  p.windowsDirectory = "C:\\";
  page.command6.Click();
  EXPECT_EQ(ini::ProfilePath, "C:\\\\system.ini");
  EXPECT_TRUE(p.HasFile("C:\\\\system.ini"));
}

TEST_F(OptimiserFixture, SmoothScrollIsANumberBesideMinAnimateATextInTheSameKey) {
  CreateCatalogueKeys(p);
  page.command6.Click();
  const auto* smooth = p.GetValue(CU, "Control Panel\\Desktop", "SmoothScroll");
  const auto* animate = p.GetValue(CU, "Control Panel\\Desktop", "MinAnimate");
  ASSERT_TRUE(smooth && animate);
  EXPECT_EQ(smooth->type, regtype::Dword);
  EXPECT_EQ(smooth->data, std::string(4, '\0'));
  EXPECT_EQ(animate->type, regtype::Sz);
  EXPECT_EQ(animate->data, "0");
}

TEST_F(OptimiserFixture, TimeoutsGoToBothHivesWithTheSameText) {
  CreateCatalogueKeys(p);
  page.command6.Click();
  for (const char* name : {"WaitToKillServiceTimeOut", "WaitToKillAppTimeout", "HungAppTimeOut"}) {
    const auto* user = p.GetValue(CU, "Control Panel\\Desktop", name);
    const auto* machine = p.GetValue(LM, "SYSTEM\\CurrentControlSet\\Control", name);
    ASSERT_TRUE(user && machine) << name;
    EXPECT_EQ(user->type, regtype::Sz);
    EXPECT_EQ(machine->type, regtype::Sz);
    EXPECT_EQ(user->data, machine->data) << name;
  }
  EXPECT_EQ(p.GetValue(CU, "Control Panel\\Desktop", "WaitToKillServiceTimeOut")->data, "1");
  EXPECT_EQ(p.GetValue(CU, "Control Panel\\Desktop", "HungAppTimeOut")->data, "1000");
}

TEST_F(OptimiserFixture, RowsOfMissingKeysAreLostAndNoKeyIsCreated) {
  // Only the user's desktop keys exist: every machine row and the WindowMetrics row are lost,
  // and the misspelt paths stay absent.
  p.CreateKey(CU, "Control Panel\\Desktop");
  page.command6.Click();
  EXPECT_FALSE(p.KeyExists(CU, "Control Panel\\Desktop\\WindowMetrics"));
  EXPECT_FALSE(p.KeyExists(LM, "System\\CurrentControlSet\\Control\\SessionManager\\Memory Managment"));
  EXPECT_FALSE(p.KeyExists(LM, "SOFTWARE\\Microsoft\\Dfrg\\BootOptimizeFunction"));
  EXPECT_FALSE(p.KeyExists(LM, "System\\CurrentControlSet\\control\\FileSystem\\CDFS"));
  EXPECT_EQ(Stored(CU, "Control Panel\\Desktop", "MenuShowDelay"), "0");
  EXPECT_EQ(Stored(CU, "Control Panel\\Desktop", "SmoothScroll"), "0");
  EXPECT_TRUE(form.Timer4.Enabled()) << "the show runs all the same";
  EXPECT_TRUE(p.boxes.empty());
}

TEST_F(OptimiserFixture, MachineRowsWithoutWriteAccessAreLostInSilence) {
  CreateCatalogueKeys(p);
  for (const auto& r : kRegistry)
    if (r.hive == LM) p.DenyWrite(LM, r.path);
  page.command6.Click();
  for (const auto& r : kRegistry) {
    if (r.hive == LM) EXPECT_EQ(p.GetValue(LM, r.path, r.name), nullptr) << r.name;
    else EXPECT_NE(p.GetValue(CU, r.path, r.name), nullptr) << r.name;
  }
  fake::VirtualClock clock(form);
  clock.Advance(17000);
  EXPECT_FALSE(form.Timer4.Enabled());
  EXPECT_TRUE(p.boxes.empty());
}

TEST_F(OptimiserFixture, Command6IsNeverDisabledByTheRun) {
  fake::VirtualClock clock(form);
  page.command6.Click();
  for (int i = 0; i < 34; ++i) {
    clock.Advance(500);
    EXPECT_TRUE(page.command6.Enabled());
  }
}

// --- the show ---------------------------------------------------------------------------------

struct TickSeen {
  std::int64_t ms;
  double value;
  bool barShown;
  bool captionShown;
  std::string caption;
  bool windowEnabled;
  bool timerOn;
};

struct ShowFixture : OptimiserFixture {
  std::unique_ptr<fake::VirtualClock> clock;
  std::vector<TickSeen> ticks;
  void SetUp() override {
    OptimiserFixture::SetUp();
    clock = std::make_unique<fake::VirtualClock>(form);
    auto tick = form.Timer4.OnTimer;
    form.Timer4.OnTimer = [this, tick] {
      tick();
      ticks.push_back({clock->Now(), page.TamrixPBar1.Value(), page.TamrixPBar1.Visible(), page.Label16.Visible(),
                       page.Label16.Caption(), form.Enabled(), form.Timer4.Enabled()});
    };
  }
  // The first tick at which a caption shows, 1-based, or 0.
  int FirstTickWith(const std::string& caption) {
    for (std::size_t i = 0; i < ticks.size(); ++i)
      if (ticks[i].captionShown && ticks[i].caption == caption) return static_cast<int>(i) + 1;
    return 0;
  }
};

TEST_F(ShowFixture, StagesShowAtTheirTicksAndTimesAndTheRunEndsAtTick34After17Seconds) {
  page.command6.Click();
  clock->Advance(30000);
  ASSERT_EQ(ticks.size(), 34u);
  struct Stage {
    const char* caption;
    int tick;
    std::int64_t ms;
  };
  const Stage stages[] = {{"Patientez ..", 1, 500},
                          {"Règlage : Boot..", 2, 1000},
                          {"Règlage : Démarrage..", 8, 4000},
                          {"Règlage : Stabilité..", 12, 6000},
                          {"Règlage : Rapidité..", 16, 8000},
                          {"Règlage : Ports..", 19, 9500},
                          {"Règlage : Materiels..", 22, 11000},
                          {"Règlage : Defragmentation..", 29, 14500},
                          {"Règlage : Configuration..", 30, 15000}};
  for (const auto& s : stages) {
    EXPECT_EQ(FirstTickWith(s.caption), s.tick) << s.caption;
    EXPECT_EQ(ticks[s.tick - 1].ms, s.ms) << s.caption;
  }
  EXPECT_EQ(ticks.back().ms, 17000);
  EXPECT_FALSE(ticks.back().timerOn);
  EXPECT_FALSE(ticks.back().captionShown);
  EXPECT_FALSE(ticks.back().barShown);
}

TEST_F(ShowFixture, BarShowsThreeSixNineUpTo99AndGoesStraightToHidden) {
  page.command6.Click();
  clock->Advance(30000);
  ASSERT_EQ(ticks.size(), 34u);
  for (int k = 1; k <= 33; ++k) {
    EXPECT_EQ(ticks[k - 1].value, 3.0 * k) << "tick " << k;
    EXPECT_TRUE(ticks[k - 1].barShown) << "tick " << k;
  }
  EXPECT_FALSE(ticks[33].barShown);
  EXPECT_EQ(ticks[33].value, 0) << "ready for another run";
  for (const auto& t : ticks) EXPECT_FALSE(t.barShown && t.value >= 100);
}

TEST_F(ShowFixture, WindowIsShutFromTheFirstTickToTheLastAndComesBackInSilence) {
  page.command6.Click();
  EXPECT_TRUE(form.Enabled()) << "open for the first half second";
  clock->Advance(499);
  EXPECT_TRUE(form.Enabled());
  clock->Advance(30000);
  for (int k = 1; k <= 33; ++k) EXPECT_FALSE(ticks[k - 1].windowEnabled) << "tick " << k;
  EXPECT_TRUE(ticks[33].windowEnabled);
  EXPECT_TRUE(form.Enabled());
  EXPECT_TRUE(p.boxes.empty()) << "no message";
  EXPECT_EQ(p.beeps, 0) << "no sound";
}

TEST_F(ShowFixture, WindowIsShutAgainAtEveryTick) {
  page.command6.Click();
  clock->Advance(500);
  form.SetEnabled(true);  // whatever opened it in between
  clock->Advance(500);
  EXPECT_FALSE(form.Enabled());
}

TEST_F(ShowFixture, IntervalStaysAtHalfASecondAndTheRunCanStartAgainAtOnce) {
  page.command6.Click();
  clock->Advance(17000);
  EXPECT_EQ(form.Timer4.Interval(), 500);
  EXPECT_EQ(page.TamrixPBar1.Value(), 0);
  p.ClearCalls();
  page.command6.Click();
  EXPECT_EQ(p.calls.size(), 1u + 21 * 3 + 45) << "every run writes the whole catalogue again";
  clock->Advance(17000);
  EXPECT_EQ(ticks.size(), 68u);
  EXPECT_EQ(ticks.back().ms, 34000);
}

TEST_F(ShowFixture, SecondRunOpensOnTheLastCaptionUntilTheSecondTick) {
  page.command6.Click();
  clock->Advance(17000);
  EXPECT_EQ(page.Label16.Caption(), "Règlage : Configuration..") << "kept while hidden";
  ticks.clear();
  page.command6.Click();
  clock->Advance(1000);
  ASSERT_EQ(ticks.size(), 2u);
  EXPECT_EQ(ticks[0].caption, "Règlage : Configuration..");
  EXPECT_EQ(ticks[1].caption, "Règlage : Boot..");
}

TEST_F(ShowFixture, SecondClickInTheFirstHalfSecondWritesAgainAndLeavesTheShowUnchanged) {
  page.command6.Click();
  clock->Advance(300);
  p.ClearCalls();
  page.command6.Click();
  EXPECT_EQ(p.calls.size(), 1u + 21 * 3 + 45);
  clock->Advance(30000);
  ASSERT_EQ(ticks.size(), 34u);
  EXPECT_EQ(ticks[0].ms, 500);
  EXPECT_EQ(ticks.back().ms, 17000);
}

TEST_F(ShowFixture, ShowGoesOnWhenTheUserLeavesThePage) {
  page.command6.Click();
  clock->Advance(2000);
  form.command3.Click();
  EXPECT_FALSE(page.Frame1.Visible());
  clock->Advance(15000);
  EXPECT_EQ(ticks.size(), 34u);
  EXPECT_TRUE(form.Enabled());
}

TEST_F(ShowFixture, EveryStageTickedShowsTheHighestCaptionReached) {
  page.command6.Click();
  clock->Advance(17000);
  for (std::size_t i = 0; i + 1 < ticks.size(); ++i) {
    const double v = ticks[i].value;
    std::string expected = "Patientez ..";
    for (const auto& s : WindowsOptimiser::kStages)
      if (v >= s.atLeast) expected = std::string(s.caption);
    EXPECT_EQ(ticks[i].caption, expected) << "value " << v;
  }
}

// --- the page's design ------------------------------------------------------------------------

TEST_F(OptimiserFixture, PageWordsStandAsDesigned) {
  EXPECT_EQ(page.Label1.Caption(),
            "Pour une meilleure performance de Windows Cliquer  sur ( Optimisez Votre Windows ), le Windows sera plus "
            "rapide, plus stable... ");
  EXPECT_EQ(page.command6.Caption(), "&Optimisez votre windows");
  EXPECT_EQ(page.command6.design().picture, "apply");
  EXPECT_FALSE(page.command6.design().centerPicture);
  EXPECT_FALSE(page.command6.design().centerText);
  EXPECT_EQ(page.Label16.Caption(), "Patientez ..");
  EXPECT_FALSE(page.Label16.Visible());
  EXPECT_FALSE(page.TamrixPBar1.Visible());
  EXPECT_EQ(page.TamrixPBar1.Value(), 0);
  EXPECT_EQ(page.TamrixPBar1.Rect().width, 5055);
  EXPECT_EQ(page.TamrixPBar1.Rect().height, 135);
  EXPECT_EQ(page.TamrixPBar1.design().barColor, 0xC000u);
  EXPECT_FALSE(page.TamrixPBar1.design().showCaption);
  EXPECT_EQ(form.Timer4.Interval(), 500);
}

}  // namespace
}  // namespace tamrix
