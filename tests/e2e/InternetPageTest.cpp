// The Internet page of the real tamrix.exe: each connection type's rows in Wine's real registry,
// the speed that never counts, the 28-second show and its closing message.
#include <gtest/gtest.h>

#include <cstring>
#include <map>

#include "e2e/Driver.h"
#include "e2e/Registry.h"
#include "e2e/RegistrySnapshot.h"

namespace tamrix::e2e {
namespace {

struct Row {
  HKEY hive;
  const char* path;
  const char* name;
  DWORD type;
  const char* data;  // "TTL" stands for the connection's TTL
};
const HKEY CU = HKEY_CURRENT_USER, LM = HKEY_LOCAL_MACHINE;
const char* const kMstcpLower = "system\\currentcontrolset\\services\\VxD\\Mstcp";
const char* const kNetTrans = "System\\CurrentControlSet\\Services\\Class\\NetTrans\\0000";
const Row kLan[2] = {{LM, kMstcpLower, "DefaultRcvWindow", REG_SZ, "5840"}, {LM, kNetTrans, "MaxMTU", REG_SZ, "1500"}};
const Row kModem[2] = {{LM, kMstcpLower, "DefaultRcvWindow", REG_SZ, "2144"}, {LM, kNetTrans, "MaxMTU", REG_SZ, "576"}};

const char* const kTcpip = "SYSTEM\\CurrentControlSet\\Services\\Tcpip\\Parameters";
const char* const kInet = "Software\\Microsoft\\Windows\\CurrentVersion\\Internet Settings";
const char* const kDns = "SYSTEM\\CurrentControlSet\\Services\\Dnscache\\Parameters";
const char* const kLanman = "SYSTEM\\CurrentControlSet\\Services\\LanmanWorkstation\\Parameters";
const char* const kMstcp = "System\\CurrentControlSet\\Services\\VxD\\MSTCP";
const char* const kMstcpParams = "System\\CurrentControlSet\\Services\\VxD\\MSTCP\\Parameters";
const char* const kParams = "System\\CurrentControlSet\\Services\\VxD\\NWLink\\Ndi\\params";
const Row kCommon[35] = {
    {LM, kTcpip, "DefaultTTL", REG_DWORD, "TTL"},
    {LM, kTcpip, "TcpWindowSize", REG_DWORD, "0"},
    {CU, kInet, "MaxConnectionsPer1_0Server", REG_DWORD, "8"},
    {CU, kInet, "MaxConnectionsPerServer", REG_DWORD, "4"},
    {LM, kDns, "CacheHashTableBucketSize", REG_DWORD, "1"},
    {LM, kDns, "CacheHashTableSize", REG_DWORD, "384"},
    {LM, kDns, "MaxCacheEntryTtlLimit", REG_DWORD, "64000"},
    {LM, kDns, "MaxSOACacheEntryTtlLimit", REG_DWORD, "301"},
    {LM, "System\\CurrentControlSet\\Services\\VXD\\MSTCP", "DefaultTTL", REG_SZ, "128"},
    {LM, kNetTrans, "MaxMSS", REG_SZ, "1460"},
    {LM, kLanman, "MaxCmds", REG_DWORD, "100"},
    {LM, kLanman, "DMaxThreads", REG_DWORD, "100"},
    {LM, kMstcp, "MaxDupAcks", REG_DWORD, "3"},
    {LM, kMstcp, "PMTUBlackHoleDetect", REG_SZ, "0"},
    {LM, kMstcp, "PMTUDiscovery", REG_SZ, "1"},
    {LM, kMstcp, "ReadAheadAutoScrolling", REG_SZ, "Vrai"},
    {LM, kMstcp, "SackOpts", REG_SZ, "1"},
    {LM, kMstcp, "Tcp1323Opts", REG_SZ, "1"},
    {LM, kMstcpParams, "GlobalMaxTcpWindoSize", REG_SZ, "8912"},
    {LM, kMstcpParams, "MaxDupAcks", REG_DWORD, "3"},
    {LM, kMstcpParams, "SackOpts", REG_SZ, "1"},
    {LM, kMstcpParams, "Tcp1323Opts", REG_SZ, "1"},
    {LM, "System\\CurrentControlSet\\Services\\VxD\\MTRR", "Start", REG_DWORD, "0"},
    {LM, "System\\CurrentControlSet\\Services\\VxD\\MTRR", "StaticVxD", REG_SZ, "*mtrr"},
    {LM, "System\\CurrentControlSet\\Services\\VxD\\NDIS", "NetClean", REG_SZ, "01"},
    {LM, "System\\CurrentControlSet\\Services\\VxD\\NDIS", "Start", REG_SZ, "00"},
    {LM, "System\\CurrentControlSet\\Services\\VxD\\NTKern", "Start", REG_SZ, "00"},
    {LM, "System\\CurrentControlSet\\Services\\VxD\\NTKern", "StaticVxD", REG_SZ, "*NTKERN"},
    {LM, kParams, "cachesize", REG_SZ, "64"},
    {LM, kParams, "maxconnect", REG_SZ, "64"},
    {LM, "System\\CurrentControlSet\\Services\\VxD\\NWLink\\Ndi\\params\\maxconnect", "Max", REG_SZ, "128"},
    {LM, "System\\CurrentControlSet\\Services\\VxD\\NWLink\\Ndi\\params\\maxconnect", "Min", REG_SZ, "2"},
    {LM, kParams, "maxsockets", REG_SZ, "255"},
    {LM, "System\\CurrentControlSet\\Services\\VxD\\NWLink\\Ndi\\params\\maxsockets", "max", REG_SZ, "1020"},
    {LM, "System\\CurrentControlSet\\Services\\VxD\\NWLink\\Ndi\\params\\maxsockets", "min", REG_SZ, "32"},
};

const char* const kDoneTitle = "Tamrix Utility 3.0 Pro - Opération Terminée";
const char* const kDoneText =
    "Votre connexion Internet est maintenant Boostée\rRedémarrez Windows pour que les changements soient pris en compte.";

std::vector<Place> Places() {
  std::vector<Place> places;
  for (const auto& r : kLan) places.push_back({r.hive, r.path, r.name});
  for (const auto& r : kCommon) places.push_back({r.hive, r.path, r.name});
  return places;
}

std::string Shown(const StoredValue& v) {
  if (v.type == REG_DWORD && v.bytes.size() == 4) {
    DWORD d;
    memcpy(&d, v.bytes.data(), 4);
    return std::to_string(d);
  }
  return v.bytes;
}

std::map<std::string, std::string> Changes(const Export& before, const Export& after) {
  std::map<std::string, std::string> out;
  for (const auto& [k, v] : Difference(before, after)) {
    std::string key = Lower(k);
    if (key.find("hkey_current_user\\software\\wine\\") != std::string::npos) continue;
    if (key.find("\\control\\video\\") != std::string::npos || key.find("driverdatedata") != std::string::npos) continue;
    out[key] = v;
  }
  return out;
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
    EXPECT_TRUE(WaitUntil([&] { return !IsWindowEnabled(app.Main()); }));
    auto changes = Changes(user, ExportBranch("HKCU"));
    for (auto& kv : Changes(system, ExportBranch("HKLM\\System"))) changes.insert(kv);
    for (auto& kv : Changes(software, ExportBranch("HKLM\\Software"))) changes.insert(kv);
    return changes;
  }
  // Every row landed with its type and data, and the changes are exactly these rows.
  void ExpectRows(std::map<std::string, std::string> changes, const Row* connection, int n, const std::string& ttl) {
    std::vector<Row> rows(connection, connection + n);
    rows.insert(rows.end(), std::begin(kCommon), std::end(kCommon));
    for (const Row& r : rows) {
      std::string data = std::string(r.data) == "TTL" ? ttl : r.data;
      auto v = ReadValue(r.hive, r.path, r.name);
      ASSERT_TRUE(v) << r.path << " " << r.name;
      EXPECT_EQ(v->type, r.type) << r.name;
      EXPECT_EQ(Shown(*v), data) << r.path << " " << r.name;
      std::string entry = EntryOf(r.hive, r.path, r.name);
      EXPECT_TRUE(changes.count(entry)) << entry;
      changes.erase(entry);
    }
    EXPECT_TRUE(changes.empty()) << "changed outside the catalogue: " << changes.begin()->first;
  }
  RegistrySnapshot snapshot{Places()};
  App app;
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

TEST_F(InternetOptimiserOnWine, ModemRunsTheShowToItsMessageAndASecondRunEndsAtOnce) {
  auto changes = Run("Modem1");
  ExpectRows(changes, kModem, 2, "64");
  ASSERT_TRUE(WaitUntil([&] { return app.Text("Label2") == "Configuration de Windows .."; }, 5000));
  EXPECT_TRUE(app.Shown("Bar1"));
  Screenshot("internet-optimiser-show");
  DWORD start = GetTickCount();
  auto box = app.WaitMessageBox(40000);
  ASSERT_TRUE(box);
  EXPECT_GT(GetTickCount() - start, 20000u) << "about 28 seconds after the click";
  EXPECT_EQ(box->title, kDoneTitle);
  EXPECT_EQ(box->text, kDoneText);
  EXPECT_FALSE(app.Shown("Bar1"));
  EXPECT_EQ(app.Text("Label2"), "");
  EXPECT_TRUE(app.Shown("Label2"));
  Screenshot("internet-closing-message");
  App::Answer(*box, IDOK);
  // The window was given back before the message; the modal box held it only while it stood.
  EXPECT_TRUE(WaitUntil([&] { return IsWindowEnabled(app.Main()); }, 2000));

  // The bar stays at 100, which is the end of the show: the second run ends at its first tick.
  app.Click("Command1");
  start = GetTickCount();
  auto again = app.WaitMessageBox(5000);
  ASSERT_TRUE(again);
  EXPECT_LT(GetTickCount() - start, 3000u);
  EXPECT_EQ(again->title, kDoneTitle);
  App::Answer(*again, IDOK);
  EXPECT_TRUE(WaitUntil([&] { return IsWindowEnabled(app.Main()); }));
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
