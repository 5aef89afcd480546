// The Internet optimiser: the rows each connection type gives, the speed test that only -1
// passes, the panel switched by the connection type, and the 28-second show with its message.
#include <gtest/gtest.h>

#include "contract/ExpectedCatalogues.h"
#include "fake/FakePlatform.h"
#include "fake/VirtualClock.h"
#include "optimisers/InternetOptimiser.h"
#include "forms/Form1.h"

namespace tamrix {
namespace {

using Calls = std::vector<std::string>;

// The rows a run must write, written out by hand in the shared expectations.
using namespace expected;
using namespace expected::internet;

std::string HiveName(HKey h) { return h == CU ? "HKCU" : "HKLM"; }

std::string Row(const RegExpect& r, const std::string& ttl, const std::string& speed) {
  std::string data = r.data;
  if (data == "TTL") data = ttl;
  if (data == "SPEED") data = speed;
  return HiveName(r.hive) + "|" + r.path + "|" + r.name + "|" + std::to_string(r.type) + "|" + data;
}

// The rows a run must write, in order: the connection rows, then the common ones.
Calls Expected(const RegExpect* connection, int n, const std::string& ttl, const std::string& speed = "0") {
  Calls rows;
  for (int i = 0; i < n; ++i) rows.push_back(Row(connection[i], "", ""));
  for (const auto& r : kCommon) rows.push_back(Row(r, ttl, speed));
  return rows;
}

// What the runner writes, as rows; a number is written in decimal, empty as 0 in a number row.
struct Recorder {
  Calls rows;
  catalogue::RegWriter writer() {
    return [this](HKey hive, const std::string& path, const std::string& name, const RegValue& v, std::uint32_t type) {
      std::string data = type == DW ? std::to_string(static_cast<std::uint32_t>(v.ToInt32(','))) : v.ToText();
      rows.push_back(HiveName(hive) + "|" + path + "|" + name + "|" + std::to_string(type) + "|" + data);
    };
  }
};

InternetOptimiser::Choice ChoiceOf(bool lan, bool modem, bool adsl, std::map<std::string, double> speeds = {}) {
  InternetOptimiser::Choice c;
  c.speedValue = [speeds](std::string_view b) {
    auto it = speeds.find(std::string(b));
    return it == speeds.end() ? 0.0 : it->second;
  };
  c.lan = lan;
  c.modem = modem;
  c.adsl = adsl;
  return c;
}

// --- the catalogue -----------------------------------------------------------------------

TEST(InternetCatalogue, CommonTableHoldsTheRowsInWritingOrder) {
  using Kind = catalogue::Data::Kind;
  ASSERT_EQ(InternetOptimiser::kCommonRows.size(), 35u);
  for (int i = 0; i < 35; ++i) {
    SCOPED_TRACE(i + 1);
    const auto& row = InternetOptimiser::kCommonRows[i];
    const std::string data = kCommon[i].data;
    EXPECT_EQ(row.hive, kCommon[i].hive);
    EXPECT_EQ(row.keyPath, kCommon[i].path);
    EXPECT_EQ(row.valueName, kCommon[i].name);
    EXPECT_EQ(row.type, kCommon[i].type);
    if (data == "TTL" || data == "SPEED" || data == "Vrai") {
      EXPECT_EQ(row.data.kind, Kind::Variable);
      EXPECT_EQ(row.data.number, data == "TTL"     ? InternetOptimiser::ConnectionTtl
                                 : data == "SPEED" ? InternetOptimiser::SpeedWindow
                                                   : InternetOptimiser::TrueText);
    } else if (row.type == SZ) {
      EXPECT_EQ(row.data.kind, Kind::Text);
      EXPECT_EQ(row.data.text, data);
    } else {
      EXPECT_EQ(row.data.kind, Kind::Number);
      EXPECT_EQ(std::to_string(row.data.number), data);
    }
  }
}

TEST(InternetCatalogue, ConnectionTablesHoldTheirTwoRowsEach) {
  Recorder lan, modem;
  catalogue::WriteRows(InternetOptimiser::kLanRows, lan.writer());
  catalogue::WriteRows(InternetOptimiser::kModemRows, modem.writer());
  EXPECT_EQ(lan.rows, (Calls{Row(kLan[0], "", ""), Row(kLan[1], "", "")}));
  EXPECT_EQ(modem.rows, (Calls{Row(kModem[0], "", ""), Row(kModem[1], "", "")}));
}

TEST(InternetCatalogue, ModemRunWritesModemRowsThenTheCommonRowsAndNothingElse) {
  Recorder rec;
  InternetOptimiser::Apply(ChoiceOf(false, true, false, {{"r56", 1}}), "Vrai", rec.writer());
  Calls expected = Expected(kModem, 2, "64");
  ASSERT_EQ(rec.rows.size(), expected.size());
  for (std::size_t i = 0; i < expected.size(); ++i) EXPECT_EQ(rec.rows[i], expected[i]) << "row " << i + 1;
}

TEST(InternetCatalogue, LanRunWritesLanRowsAndTheTtlAsZero) {
  Recorder rec;
  InternetOptimiser::Apply(ChoiceOf(true, false, false), "Vrai", rec.writer());
  EXPECT_EQ(rec.rows, Expected(kLan, 2, "0"));
}

TEST(InternetCatalogue, AdslRunWritesNoConnectionRowsAndTheTtl128) {
  Recorder rec;
  InternetOptimiser::Apply(ChoiceOf(false, false, true), "Vrai", rec.writer());
  EXPECT_EQ(rec.rows, Expected(nullptr, 0, "128"));
  for (const auto& r : rec.rows) {
    EXPECT_EQ(r.find("DefaultRcvWindow"), std::string::npos);
    EXPECT_EQ(r.find("MaxMTU"), std::string::npos);
  }
}

TEST(InternetCatalogue, SpeedButtonThatReadsOneLeavesTcpWindowSizeAtZero) {
  for (const auto& s : InternetOptimiser::kSpeeds) {
    Recorder rec;
    InternetOptimiser::Apply(ChoiceOf(false, true, false, {{std::string(s.button), 1}}), "Vrai", rec.writer());
    EXPECT_EQ(rec.rows, Expected(kModem, 2, "64", "0")) << s.button;
  }
}

TEST(InternetCatalogue, SpeedButtonThatReadsMinusOneGivesItsWindow) {
  const std::pair<const char*, const char*> table[6] = {{"r33", "2048"},  {"r56", "4096"},  {"r64", "4096"},
                                                        {"r128", "6144"}, {"r512", "8192"}, {"r1024", "12288"}};
  for (const auto& [button, window] : table) {
    Recorder rec;
    InternetOptimiser::Apply(ChoiceOf(false, true, false, {{button, -1}}), "Vrai", rec.writer());
    EXPECT_EQ(rec.rows, Expected(kModem, 2, "64", window)) << button;
  }
}

TEST(InternetCatalogue, LaterSpeedHitOverwritesAnEarlierOne) {
  Recorder rec;
  InternetOptimiser::Apply(ChoiceOf(false, false, true, {{"r33", -1}, {"r512", -1}}), "Vrai", rec.writer());
  EXPECT_EQ(rec.rows[1], Row(kCommon[1], "", "8192"));
}

TEST(InternetCatalogue, BooleanRowTakesTheSystemsWordForTrue) {
  Recorder rec;
  InternetOptimiser::Apply(ChoiceOf(false, false, true), "True", rec.writer());
  EXPECT_EQ(rec.rows[15], "HKLM|" + std::string(kMstcp) + "|ReadAheadAutoScrolling|1|True");
}

TEST(InternetCatalogue, StageTableHoldsTheFiveStages) {
  struct S {
    double value;
    int interval;
    const char* caption;
  };
  const S stages[5] = {{1, 0, "Analyse de la configuration .."},
                       {15, 1100, "Configuration de Windows .."},
                       {25, 100, "Accélération du téléchargement .."},
                       {40, 500, "Activation de la connexion haut débit .."},
                       {60, 80, "Accélaration du chargement .."}};
  ASSERT_EQ(InternetOptimiser::kStages.size(), 5u);
  for (int i = 0; i < 5; ++i) {
    EXPECT_EQ(InternetOptimiser::kStages[i].value, stages[i].value);
    EXPECT_EQ(InternetOptimiser::kStages[i].interval, stages[i].interval);
    EXPECT_EQ(InternetOptimiser::kStages[i].caption, stages[i].caption);
  }
}

// --- the page -----------------------------------------------------------------------------

// A fake that notes how the page stands when the closing message comes.
struct WatchedPlatform : fake::FakePlatform {
  std::function<void()> onBox;
  int MessageBoxA(const std::string& text, unsigned style, const std::string& title) override {
    if (onBox) onBox();
    return fake::FakePlatform::MessageBoxA(text, style, title);
  }
};

struct InternetFixture : ::testing::Test {
  WatchedPlatform p;
  Form1 form{p};
  InternetPage& page = form.internetPage;
  void SetUp() override {
    form.Load();
    form.internet.Click();
    p.ClearCalls();
  }
  void CreateKeys(fake::FakePlatform& q) {
    for (const auto& r : kCommon) q.CreateKey(r.hive, r.path);
    for (const auto& r : kLan) q.CreateKey(r.hive, r.path);
  }
  // The registry calls of a run, as rows (the fake's RegSetValueExA shows numbers in decimal).
  Calls WrittenRows() {
    Calls rows;
    std::string open;
    for (const auto& c : p.calls) {
      if (c.rfind("RegOpenKeyExA(", 0) == 0) {
        std::string args = c.substr(14, c.size() - 15);
        std::string hive = args.substr(0, 4);
        std::string path = args.substr(5, args.size() - 5 - std::string(",0,0x3F").size());
        open = hive + "|" + path;
      } else if (c.rfind("RegSetValueExA(", 0) == 0) {
        std::string args = c.substr(15, c.size() - 16);
        args = args.substr(args.find(',') + 1);  // drop the handle
        std::string name = args.substr(0, args.find(','));
        args = args.substr(name.size() + 1);
        std::string type = args.substr(0, args.find(','));
        args = args.substr(type.size() + 1);
        std::string data = args.substr(0, args.rfind(','));
        rows.push_back(open + "|" + name + "|" + type + "|" + data);
      } else if (c.rfind("RegCloseKey", 0) != 0 && c.rfind("MessageBoxA", 0) != 0) {
        rows.push_back("other: " + c);
      }
    }
    return rows;
  }
};

TEST_F(InternetFixture, PageStandsAsDesigned) {
  EXPECT_EQ(page.Frame2.Caption(), " Internet ");
  EXPECT_EQ(page.Label12.Caption(),
            "                    Avec Tamrix Utility Internet, vous pouvez optimiser la configuration de Winodws pour "
            "Internet ou pour votre Réseau ... Pour une performance qui peut atteindre 150 % dans certains PC quelque "
            "soit le type du materiels ..");
  EXPECT_EQ(page.TamrixFrm5.Caption(), "Type de connection :");
  EXPECT_EQ(page.Adsl1.Caption(), "ADSL ou Cable ( Haut débit ..)");
  EXPECT_EQ(page.Modem1.Caption(), "Modem");
  EXPECT_EQ(page.Lan1.Caption(), "Réseaux local (Lan)");
  EXPECT_EQ(page.TamrixFrm4.Caption(), "Votre vitesse de connexion");
  const char* speeds[6] = {"33,6 kbps (RTC)",          "56  kbps (RTC)",           "64 kbps (ISDN)",
                           "128  kbps (ISDN ou cable)", "512 kbps (ADSL ou cable)", "1 024 kbps (ADSL ou cable)"};
  for (int i = 0; i < 6; ++i) {
    TamrixOpButton& b = page.*InternetPage::kSpeedButtons[i];
    EXPECT_EQ(b.Name(), InternetOptimiser::kSpeeds[i].button);
    EXPECT_EQ(b.Caption(), speeds[i]);
    EXPECT_EQ(b.Parent(), &page.TamrixFrm4);
  }
  EXPECT_EQ(page.Command1.Caption(), "Optimisez Votre Connexion Internet");
  EXPECT_EQ(page.Label2.Caption(), "");
  EXPECT_FALSE(page.Bar1.Visible());
  EXPECT_EQ(page.Bar1.Rect().width, 3735);
  EXPECT_EQ(page.Bar1.Rect().height, 255);
  EXPECT_EQ(page.Bar1.design().barColor, 0xC000u);
  EXPECT_EQ(form.Timer3.Interval(), 150);
}

TEST_F(InternetFixture, DesignChoicesAreModemAndR56) {
  fake::FakePlatform q;
  Form1 f(q);
  EXPECT_TRUE(f.internetPage.Modem1.Value());
  EXPECT_FALSE(f.internetPage.Adsl1.Value());
  EXPECT_FALSE(f.internetPage.Lan1.Value());
  EXPECT_EQ(f.internetPage.r56.Value(), 1);
  for (auto b : InternetPage::kSpeedButtons) {
    if (b != &InternetPage::r56) {
      EXPECT_EQ((f.internetPage.*b).Value(), 0);
    }
  }
  EXPECT_TRUE(f.internetPage.TamrixFrm4.Enabled());
}

TEST_F(InternetFixture, ModemRunWritesExactlyItsRowsInOrder) {
  CreateKeys(p);
  page.Command1.Click();
  EXPECT_EQ(WrittenRows(), Expected(kModem, 2, "64"));
  EXPECT_EQ(p.OpenHandles(), 0u);
}

TEST_F(InternetFixture, LanRunWritesL1L2DisablesTheSpeedPanelAndSendsTtlZeroAndTheText128) {
  CreateKeys(p);
  page.Lan1.Click();
  EXPECT_FALSE(page.TamrixFrm4.Enabled());
  page.Command1.Click();
  EXPECT_EQ(WrittenRows(), Expected(kLan, 2, "0"));
  EXPECT_EQ(p.GetValue(LM, kTcpip, "DefaultTTL")->data, std::string(4, '\0'));
  EXPECT_EQ(p.GetValue(LM, kVxdMstcp, "DefaultTTL")->data, "128");
  EXPECT_EQ(p.GetValue(LM, kMstcpLower, "DefaultRcvWindow")->data, "5840");
  EXPECT_EQ(p.GetValue(LM, kNetTrans, "MaxMTU")->data, "1500");
}

TEST_F(InternetFixture, AdslRunLeavesDefaultRcvWindowAndMaxMtuAsTheyStood) {
  CreateKeys(p);
  p.SetValue(LM, kMstcpLower, "DefaultRcvWindow", SZ, "9999");
  p.SetValue(LM, kNetTrans, "MaxMTU", SZ, "1234");
  page.Adsl1.Click();
  EXPECT_TRUE(page.TamrixFrm4.Enabled());
  page.Command1.Click();
  EXPECT_EQ(WrittenRows(), Expected(nullptr, 0, "128"));
  EXPECT_EQ(p.GetValue(LM, kMstcpLower, "DefaultRcvWindow")->data, "9999");
  EXPECT_EQ(p.GetValue(LM, kNetTrans, "MaxMTU")->data, "1234");
}

TEST_F(InternetFixture, ModemRunSendsTtl64AndStillTheText128UnderVxd) {
  CreateKeys(p);
  page.Command1.Click();
  EXPECT_EQ(p.GetValue(LM, kTcpip, "DefaultTTL")->data, std::string("\x40\0\0\0", 4));
  EXPECT_EQ(p.GetValue(LM, kVxdMstcp, "DefaultTTL")->data, "128");
}

TEST_F(InternetFixture, WhateverSpeedIsChosenTcpWindowSizeIsZero) {
  CreateKeys(p);
  for (auto b : InternetPage::kSpeedButtons) {
    (page.*b).Click();
    EXPECT_EQ((page.*b).Value(), 1);
    p.ClearCalls();
    page.Command1.Click();
    EXPECT_EQ(WrittenRows()[3], Row(kCommon[1], "", "0")) << (page.*b).Name();
    EXPECT_EQ(p.GetValue(LM, kTcpip, "TcpWindowSize")->data, std::string(4, '\0'));
    form.Timer3.SetEnabled(false);
    form.SetEnabled(true);
  }
}

TEST_F(InternetFixture, BooleanRowIsTheFrenchWordForTrue) {
  CreateKeys(p);
  page.Command1.Click();
  EXPECT_EQ(p.GetValue(LM, kMstcp, "ReadAheadAutoScrolling")->data, "Vrai");
}

TEST_F(InternetFixture, LanThenModemEnablesThePanelAgainAndKeepsTheSpeed) {
  page.r512.Click();
  page.Lan1.Click();
  EXPECT_FALSE(page.TamrixFrm4.Enabled());
  page.Modem1.Click();
  EXPECT_TRUE(page.TamrixFrm4.Enabled());
  EXPECT_EQ(page.r512.Value(), 1);
  EXPECT_EQ(page.r56.Value(), 0);
}

TEST_F(InternetFixture, LanThenAnotherPageAndBackShowsModemAndThePanelEnabled) {
  page.Lan1.Click();
  form.command3.Click();
  form.internet.Click();
  EXPECT_TRUE(page.Modem1.Value());
  EXPECT_FALSE(page.Lan1.Value());
  EXPECT_TRUE(page.TamrixFrm4.Enabled());
}

TEST_F(InternetFixture, ConnectionClicksWriteNothing) {
  page.Lan1.Click();
  page.Adsl1.Click();
  page.Modem1.Click();
  EXPECT_TRUE(p.calls.empty());
}

TEST_F(InternetFixture, DisabledPanelDoesNotStopTheSpeedButtonsBeingRead) {
  // With the local network the panel is off, yet the speed walk still reads every button: one
  // that read -1 would still give its window.
  page.Lan1.Click();
  ASSERT_FALSE(page.TamrixFrm4.Enabled());
  std::vector<std::string> read;
  InternetOptimiser::Choice c = ChoiceOf(page.Lan1.Value(), page.Modem1.Value(), page.Adsl1.Value());
  c.speedValue = [&](std::string_view b) {
    read.emplace_back(b);
    return b == "r128" ? -1.0 : 0.0;
  };
  Recorder rec;
  InternetOptimiser::Apply(c, "Vrai", rec.writer());
  EXPECT_EQ(read, (std::vector<std::string>{"r33", "r56", "r64", "r128", "r512", "r1024"}));
  EXPECT_EQ(rec.rows, Expected(kLan, 2, "0", "6144"));
}

TEST_F(InternetFixture, MissingVxdKeysLoseTheirRowsAndTheRunEndsWithTheSameMessage) {
  for (const auto& r : kCommon)
    if (std::string(r.path).find("VxD") == std::string::npos && std::string(r.path).find("VXD") == std::string::npos)
      p.CreateKey(r.hive, r.path);
  fake::VirtualClock clock(form);
  page.Command1.Click();
  EXPECT_FALSE(p.KeyExists(LM, "System\\CurrentControlSet\\Services\\VxD"));
  EXPECT_NE(p.GetValue(LM, kTcpip, "DefaultTTL"), nullptr);
  clock.Advance(30000);
  ASSERT_EQ(p.boxes.size(), 1u);
  EXPECT_EQ(p.boxes[0].title, "Tamrix Utility 3.0 Pro - Opération Terminée");
}

TEST_F(InternetFixture, MissingTcpipAndDnscacheKeysLoseTheirRowsInSilence) {
  p.CreateKey(CU, kInet);
  fake::VirtualClock clock(form);
  page.Command1.Click();
  EXPECT_FALSE(p.KeyExists(LM, kTcpip));
  EXPECT_FALSE(p.KeyExists(LM, kDns));
  EXPECT_NE(p.GetValue(CU, kInet, "MaxConnectionsPerServer"), nullptr);
  clock.Advance(30000);
  ASSERT_EQ(p.boxes.size(), 1u);
  EXPECT_EQ(p.boxes[0].text,
            "Votre connexion Internet est maintenant Boostée\rRedémarrez Windows pour que les changements soient pris "
            "en compte.");
}

// --- the show -------------------------------------------------------------------------------

struct Seen {
  std::int64_t ms;
  double value;
  int interval;
  std::string caption;
};

struct InternetShow : InternetFixture {
  std::unique_ptr<fake::VirtualClock> clock;
  std::vector<Seen> ticks;
  struct AtBox {
    std::int64_t ms;
    std::string caption;
    bool timerOn, windowEnabled, barShown, captionShown;
  };
  std::vector<AtBox> atBox;
  void SetUp() override {
    InternetFixture::SetUp();
    clock = std::make_unique<fake::VirtualClock>(form);
    auto tick = form.Timer3.OnTimer;
    form.Timer3.OnTimer = [this, tick] {
      tick();
      ticks.push_back({clock->Now(), page.Bar1.Value(), form.Timer3.Interval(), page.Label2.Caption()});
    };
    p.onBox = [this] {
      atBox.push_back({clock->Now(), page.Label2.Caption(), form.Timer3.Enabled(), form.Enabled(), page.Bar1.Visible(),
                       page.Label2.Visible()});
    };
  }
  std::int64_t FirstTimeAt(double value) {
    for (const auto& t : ticks)
      if (t.value == value) return t.ms;
    return -1;
  }
};

TEST_F(InternetShow, ClickShutsTheWindowAtOnceAndShowsCaptionAndBar) {
  page.Command1.Click();
  EXPECT_FALSE(form.Enabled());
  EXPECT_TRUE(page.Label2.Visible());
  EXPECT_TRUE(page.Bar1.Visible());
  EXPECT_TRUE(form.Timer3.Enabled());
  EXPECT_TRUE(ticks.empty()) << "every write is made before the first stage";
}

TEST_F(InternetShow, FirstRunTakes27950MillisecondsStageByStage) {
  page.Command1.Click();
  clock->Advance(40000);
  ASSERT_EQ(ticks.size(), 100u);
  EXPECT_EQ(FirstTimeAt(1), 150);
  EXPECT_EQ(FirstTimeAt(15), 2250);
  EXPECT_EQ(FirstTimeAt(25), 13250);
  EXPECT_EQ(FirstTimeAt(40), 14750);
  EXPECT_EQ(FirstTimeAt(60), 24750);
  EXPECT_EQ(FirstTimeAt(100), 27950);
  ASSERT_EQ(atBox.size(), 1u);
  EXPECT_EQ(atBox[0].ms, 27950);
}

TEST_F(InternetShow, LongestStageIsTheTenTicksAt1100Milliseconds) {
  page.Command1.Click();
  clock->Advance(40000);
  int slow = 0;
  for (std::size_t i = 1; i < ticks.size(); ++i) slow += ticks[i].ms - ticks[i - 1].ms == 1100;
  EXPECT_EQ(slow, 10);
  for (std::size_t i = 15; i < 25; ++i) EXPECT_EQ(ticks[i].ms - ticks[i - 1].ms, 1100) << "value " << ticks[i].value;
}

TEST_F(InternetShow, CaptionsChangeOnlyAtTheirExactValuesAndStayBetween) {
  page.Command1.Click();
  clock->Advance(40000);
  std::string expected;
  for (const auto& t : ticks) {
    for (const auto& s : InternetOptimiser::kStages)
      if (t.value == s.value) expected = std::string(s.caption);
    if (t.value == 100) expected = "";
    EXPECT_EQ(t.caption, expected) << "value " << t.value;
  }
  EXPECT_EQ(ticks[0].caption, "Analyse de la configuration ..");
  EXPECT_EQ(ticks[0].interval, 150);
  EXPECT_EQ(ticks[14].interval, 1100);
  EXPECT_EQ(ticks[59].caption, "Accélaration du chargement ..");
  EXPECT_EQ(ticks[59].interval, 80);
}

TEST_F(InternetShow, AtOneHundredTheCaptionIsEmptiedAndTheWindowOpenedBeforeTheMessage) {
  page.Command1.Click();
  clock->Advance(40000);
  ASSERT_EQ(atBox.size(), 1u);
  EXPECT_EQ(atBox[0].caption, "");
  EXPECT_FALSE(atBox[0].timerOn) << "no tick can come while the message stands";
  EXPECT_TRUE(atBox[0].windowEnabled);
  EXPECT_FALSE(atBox[0].barShown);
  EXPECT_TRUE(atBox[0].captionShown) << "the caption stays visible, empty";
  ASSERT_EQ(p.boxes.size(), 1u);
  EXPECT_EQ(p.boxes[0].title, "Tamrix Utility 3.0 Pro - Opération Terminée");
  EXPECT_EQ(p.boxes[0].text,
            "Votre connexion Internet est maintenant Boostée\rRedémarrez Windows pour que les changements soient pris "
            "en compte.");
  EXPECT_EQ(p.boxes[0].style, mb::Ok | mb::Information);
}

TEST_F(InternetShow, EndOfARunRestoresNothingElse) {
  page.Command1.Click();
  clock->Advance(40000);
  EXPECT_EQ(page.Bar1.Value(), 100);
  EXPECT_EQ(form.Timer3.Interval(), 80);
  EXPECT_TRUE(page.Label2.Visible());
  EXPECT_FALSE(form.Timer3.Enabled());
}

TEST_F(InternetShow, SecondRunKeepsTheWindowShutWithTheBarRisingPastTheLastStage) {
  page.Command1.Click();
  clock->Advance(40000);
  ticks.clear();
  atBox.clear();
  p.ClearCalls();
  page.Command1.Click();
  EXPECT_FALSE(form.Enabled());
  EXPECT_EQ(WrittenRows(), Expected(kModem, 2, "64")) << "all writes again";
  clock->Advance(8000);
  // The bar keeps what it is given: from 100 it goes on rising, at the last pace of 80 ms, and
  // never meets a stage value again.
  EXPECT_EQ(ticks.size(), 100u);
  EXPECT_DOUBLE_EQ(page.Bar1.Value(), 200);
  EXPECT_TRUE(atBox.empty());
  EXPECT_FALSE(form.Enabled());
  EXPECT_TRUE(form.Timer3.Enabled());
}

}  // namespace
}  // namespace tamrix
