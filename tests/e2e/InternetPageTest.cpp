// The Internet page of the real tamrix.exe: each connection type's rows in Wine's real registry,
// the speed that never counts, the 28-second show and its closing message.
#include <gtest/gtest.h>

#include <cstring>
#include <map>

#include "contract/ExpectedCatalogues.h"
#include "e2e/Driver.h"
#include "e2e/Registry.h"
#include "e2e/RegistrySnapshot.h"
#include "shell/win32/ControlMessages.h"

namespace tamrix::e2e {
namespace {

// The rows a run must write, written out by hand in the shared expectations.
using namespace expected::internet;
using expected::RegExpect;
const HKEY LM = HKEY_LOCAL_MACHINE;

const char* const kDoneTitle = "Tamrix Utility 3.0 Pro - Opération Terminée";
const char* const kDoneText =
    "Votre connexion Internet est maintenant Boostée\rRedémarrez Windows pour que les changements soient pris en compte.";

std::vector<Place> Places() {
  std::vector<Place> places;
  for (const auto& r : kLan) places.push_back({ToHkey(r.hive), r.path, r.name});
  for (const auto& r : kCommon) places.push_back({ToHkey(r.hive), r.path, r.name});
  return places;
}

class InternetOptimiserOnWine : public ::testing::Test {
 protected:
  void TearDown() override {
    if (app.Running()) EndProcess(app.Pid());
    snapshot.Restore();
  }
  // Chooses the connection, optimises, and waits until the click has made its writes and shut
  // the window. Gives the registry's changes meanwhile.
  std::map<std::string, std::string> Run(const char* connection, const char* speed = nullptr) {
    snapshot.CreateKeys();
    snapshot.ClearValues();
    Export user = ExportBranch("HKCU"), system = ExportBranch("HKLM\\System"), software = ExportBranch("HKLM\\Software");
    EXPECT_TRUE(app.Start());
    app.Click("internet");
    EXPECT_TRUE(WaitUntil([&] { return app.Shown("Frame2") && app.Value("Modem1") == 1; }));
    app.Click(connection);
    EXPECT_TRUE(WaitUntil([&] { return app.Value(connection) == 1; }));
    if (speed) {
      app.Click(speed);
      EXPECT_TRUE(WaitUntil([&] { return app.Value(speed) == 1; }));
    }
    app.Click("Command1");
    clickedAt = GetTickCount();
    EXPECT_TRUE(WaitUntil([&] { return !IsWindowEnabled(app.Main()); }));
    auto changes = Changes(user, ExportBranch("HKCU"));
    for (auto& kv : Changes(system, ExportBranch("HKLM\\System"))) changes.insert(kv);
    for (auto& kv : Changes(software, ExportBranch("HKLM\\Software"))) changes.insert(kv);
    return changes;
  }
  // Every row landed with its type and data, and the changes are exactly these rows.
  // No speed button reads -1 on the page, so the speed's window is always 0.
  void ExpectRows(std::map<std::string, std::string> changes, const RegExpect* connection, int n,
                  const std::string& ttl) {
    std::vector<RegExpect> rows(connection, connection + n);
    rows.insert(rows.end(), std::begin(kCommon), std::end(kCommon));
    for (const RegExpect& r : rows) {
      const std::string data = std::string(r.data) == "TTL" ? ttl : std::string(r.data) == "SPEED" ? "0" : r.data;
      auto v = ReadValue(ToHkey(r.hive), r.path, r.name);
      ASSERT_TRUE(v) << r.path << " " << r.name;
      EXPECT_EQ(v->type, r.type) << r.name;
      EXPECT_EQ(AsRowData(*v), data) << r.path << " " << r.name;
      std::string entry = EntryOf(ToHkey(r.hive), r.path, r.name);
      EXPECT_TRUE(changes.count(entry)) << entry;
      changes.erase(entry);
    }
    EXPECT_TRUE(changes.empty()) << "changed outside the catalogue: " << changes.begin()->first;
  }
  RegistrySnapshot snapshot{Places()};
  App app;
  DWORD clickedAt = 0;  // when the optimiser's button was clicked, before the registry is exported
};

TEST_F(InternetOptimiserOnWine, LocalNetworkWritesItsTwoRowsAndTheTtlAsZeroWithThePanelOff) {
  auto changes = Run("Lan1");
  EXPECT_FALSE(IsWindowEnabled(app.Find("TamrixFrm4")));
  ExpectRows(changes, kLan, 2, "0");
}

TEST_F(InternetOptimiserOnWine, HighSpeedWritesNoConnectionRowsTheTtl128AndTcpWindowSizeZero) {
  auto changes = Run("Adsl1", "r1024");
  EXPECT_TRUE(IsWindowEnabled(app.Find("TamrixFrm4")));
  ExpectRows(changes, nullptr, 0, "128");
}

TEST_F(InternetOptimiserOnWine, ModemRunsTheShowToItsMessageAndASecondRunKeepsTheWindowShut) {
  auto changes = Run("Modem1");
  ExpectRows(changes, kModem, 2, "64");
  ASSERT_TRUE(WaitUntil([&] { return app.Text("Label2") == "Configuration de Windows .."; }, 5000));
  EXPECT_TRUE(app.Shown("Bar1"));
  Screenshot("internet-optimiser-show");
  // Timed from the click itself: the registry exports between the click and the caption's
  // reading take a varying share of the show.
  auto box = app.WaitMessageBox(40000);
  ASSERT_TRUE(box);
  EXPECT_GT(GetTickCount() - clickedAt, 25000u) << "about 28 seconds after the click";
  EXPECT_EQ(box->title, kDoneTitle);
  EXPECT_EQ(box->text, kDoneText);
  EXPECT_FALSE(app.Shown("Bar1"));
  EXPECT_EQ(app.Text("Label2"), "");
  EXPECT_TRUE(app.Shown("Label2"));
  Screenshot("internet-closing-message");
  App::Answer(*box, IDOK);
  // The window was given back before the message; the modal box held it only while it stood.
  EXPECT_TRUE(WaitUntil([&] { return IsWindowEnabled(app.Main()); }, 2000));

  // The bar keeps what it is given: from its 100 it rises past every stage, so the second run
  // shuts the window, shows no message and goes on until the process is ended from outside.
  app.Click("Command1");
  EXPECT_TRUE(WaitUntil([&] { return !IsWindowEnabled(app.Main()); }, 2000));
  EXPECT_FALSE(app.WaitMessageBox(3000));
  EXPECT_FALSE(IsWindowEnabled(app.Main()));
  DWORD_PTR bar = 0;
  SendMessageTimeoutA(app.Find("Bar1"), win32::kMsgGetBarValue, 0, 0, SMTO_ABORTIFHUNG, 5000, &bar);
  EXPECT_GT(bar, 10000u) << "past 100";
  Screenshot("internet-second-run-shut");
}

TEST_F(InternetOptimiserOnWine, MissingKeysLoseTheirRowsAndNoKeyIsCreated) {
  DeleteTree(LM, kDns);
  DeleteTree(LM, "System\\CurrentControlSet\\Services\\VxD\\NWLink");
  ASSERT_TRUE(app.Start());
  app.Click("internet");
  ASSERT_TRUE(WaitUntil([&] { return app.Shown("Frame2"); }));
  app.Click("Command1");
  ASSERT_TRUE(WaitUntil([&] { return !IsWindowEnabled(app.Main()); }));
  EXPECT_FALSE(KeyExists(LM, kDns));
  EXPECT_FALSE(KeyExists(LM, "System\\CurrentControlSet\\Services\\VxD\\NWLink"));
}

TEST_F(InternetOptimiserOnWine, ConnectionTypeSwitchesTheSpeedPanel) {
  ASSERT_TRUE(app.Start());
  app.Click("internet");
  ASSERT_TRUE(WaitUntil([&] { return app.Shown("Frame2"); }));
  HWND panel = app.Find("TamrixFrm4");
  EXPECT_TRUE(IsWindowEnabled(panel));
  app.Click("r512");
  app.Click("Lan1");
  ASSERT_TRUE(WaitUntil([&] { return !IsWindowEnabled(panel); }));
  Screenshot("internet-page-lan");
  app.Click("Modem1");
  ASSERT_TRUE(WaitUntil([&] { return IsWindowEnabled(panel); }));
  EXPECT_EQ(app.Value("r512"), 1) << "the speed chosen before still stands";
  app.Click("Lan1");
  ASSERT_TRUE(WaitUntil([&] { return !IsWindowEnabled(panel); }));
  app.Click("command3");
  app.Click("internet");
  ASSERT_TRUE(WaitUntil([&] { return IsWindowEnabled(panel) && app.Value("Modem1") == 1; }));
  EXPECT_EQ(app.Value("Lan1"), 0);
  Screenshot("internet-page");
}

}  // namespace
}  // namespace tamrix::e2e
