// The home page of the real tamrix.exe under Wine: the memory monitor and the clock, on the home
// page and behind another page, and the download offer of the link.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <fstream>

#include "e2e/Driver.h"
#include "shell/win32/ControlMessages.h"

namespace tamrix::e2e {
namespace {

const char* const kMemoryLabels[] = {"lcd1", "lcd2", "lcd3", "l1", "l2", "l3", "l4", "l5", "l6"};

char LocaleChar(LCTYPE what, char fallback) {
  char buf[8] = {};
  GetLocaleInfoA(LOCALE_USER_DEFAULT, what, buf, sizeof buf);
  return buf[0] ? buf[0] : fallback;
}

bool StartsWith(const std::string& s, const std::string& prefix) { return s.rfind(prefix, 0) == 0; }
bool EndsWith(const std::string& s, const std::string& suffix) {
  return s.size() >= suffix.size() && s.compare(s.size() - suffix.size(), suffix.size(), suffix) == 0;
}

// A whole number as the page writes it: an optional minus and digits.
bool IsWhole(const std::string& s) {
  std::size_t i = s.size() > 1 && s[0] == '-' ? 1 : 0;
  if (i == s.size()) return false;
  for (; i < s.size(); ++i)
    if (s[i] < '0' || s[i] > '9') return false;
  return true;
}

// A number with one decimal, behind the regional decimal sign.
bool IsOneDecimal(const std::string& s, char sign) {
  return s.size() >= 3 && s[s.size() - 2] == sign && IsWhole(s.substr(0, s.size() - 2)) &&
         s.back() >= '0' && s.back() <= '9';
}

// The general number form: digits with at most one decimal sign.
bool IsNumber(const std::string& s, char sign) {
  std::size_t at = s.find(sign);
  if (at == std::string::npos) return IsWhole(s);
  return IsWhole(s.substr(0, at)) && at + 1 < s.size() && IsWhole(s.substr(at + 1)) && s[at + 1] != '-';
}

std::string Between(const std::string& s, const std::string& prefix, const std::string& suffix) {
  if (!StartsWith(s, prefix) || !EndsWith(s, suffix) || s.size() < prefix.size() + suffix.size()) return "<" + s + ">";
  return s.substr(prefix.size(), s.size() - prefix.size() - suffix.size());
}

// What the system gives a 32-bit program that is not large-address-aware, from the wide counts:
// physical memory capped at 2 GB - 1, the page-file total at 4 GB - 512 KB - 1, and a virtual
// space of 2 GB less 128 KB. Both builds of the program must show these.
MEMORYSTATUSEX Wide() {
  MEMORYSTATUSEX m{};
  m.dwLength = sizeof m;
  GlobalMemoryStatusEx(&m);
  return m;
}
std::uint32_t TotalPhys32() { return static_cast<std::uint32_t>(std::min<DWORDLONG>(Wide().ullTotalPhys, 0x7FFFFFFF)); }
std::uint32_t TotalPageFile32() {
  return static_cast<std::uint32_t>(std::min<DWORDLONG>(Wide().ullTotalPageFile, 0xFFF7FFFF));
}
constexpr std::uint32_t kTotalVirtual32 = 0x7FFE0000;

// Whole megabytes of a count read as signed, halves to even, as the lines show them.
std::string SignedMegabytes(std::uint32_t bytes) {
  return std::to_string(static_cast<long long>(std::nearbyint(static_cast<std::int32_t>(bytes) / 1048576.0)));
}

// Megabytes of the signed count plus one, rounded half away from zero.
std::string TotalText() {
  double v = static_cast<std::int32_t>(TotalPhys32()) / 1048576.0 + 1;
  double r = std::floor(std::fabs(v) + 0.5);
  return (v < 0 ? "-" : "") + std::to_string(static_cast<long long>(r));
}

class HomePage : public ::testing::Test {
 protected:
  void TearDown() override {
    if (app.Running()) {
      app.Click("TamrixCmd1");
      app.WaitExit();
    }
  }
  void Start() {
    ASSERT_TRUE(app.Start());
    ASSERT_TRUE(WaitUntil([&] { return !app.Text("l6").empty() && !app.Text("Label19").empty(); }, 5000));
  }
  void CheckMemoryLines() {
    const char sign = LocaleChar(LOCALE_SDECIMAL, '.');
    std::string free = Between(app.Text("lcd1"), "Mémoire libre:         ", "Mo");
    EXPECT_TRUE(IsOneDecimal(free, sign)) << app.Text("lcd1");
    EXPECT_NE(free.back(), ' ');
    std::string used = Between(app.Text("lcd2"), "Mémoire utilisée:     ", " Mo");
    EXPECT_TRUE(IsNumber(used, sign)) << app.Text("lcd2");
    EXPECT_EQ(app.Text("lcd3"), "Mémoire Vive Totale:     " + TotalText() + " Mo");
    EXPECT_EQ(app.Text("l1"), "Mémoire Virtuelle : " + SignedMegabytes(kTotalVirtual32) + " Mo");
    const std::string freeVirtual = Between(app.Text("l2"), "Mémoire Virtuelle libre : ", " Mo");
    ASSERT_TRUE(IsWhole(freeVirtual)) << app.Text("l2");
    // The program holds far less than 512 MB of its 2 GB space.
    EXPECT_GT(std::stoi(freeVirtual), 1536) << app.Text("l2");
    EXPECT_TRUE(IsWhole(Between(app.Text("l3"), "Mémoire Virtuelle occupée : ", " Mo"))) << app.Text("l3");
    EXPECT_EQ(app.Text("l4"), "Taille du fichier de pagination : " + SignedMegabytes(TotalPageFile32()) + " Mo");
    EXPECT_TRUE(IsWhole(Between(app.Text("l5"), "dont : ", " Mo libres"))) << app.Text("l5");
    EXPECT_TRUE(IsWhole(Between(app.Text("l6"), "dont : ", " Mo chargés"))) << app.Text("l6");
  }
  App app;
};

TEST_F(HomePage, MemoryMonitorFillsItsNineLinesAndTheRoundBar) {
  Start();
  CheckMemoryLines();
  DWORD_PTR bar = 0;
  SendMessageTimeoutA(app.Find("TamrixPBar2"), win32::kMsgGetBarValue, 0, 0, SMTO_ABORTIFHUNG, 5000, &bar);
  EXPECT_LE(bar, 10000u);  // a percentage, kept within 0..100
  EXPECT_EQ(app.Text("Label17"), "La Ram libre :");
  EXPECT_EQ(app.Text("Label14"), "Optimisez la mémoire Vive");
  Screenshot("home-memory-monitor");
}

TEST_F(HomePage, ClockShowsTheTimeAndChangesEverySecond) {
  Start();
  const char sep = LocaleChar(LOCALE_STIME, ':');
  std::string first = app.Text("Label19");
  ASSERT_EQ(first.size(), 8u) << first;
  EXPECT_EQ(first[2], sep);
  EXPECT_EQ(first[5], sep);
  SYSTEMTIME now;
  GetLocalTime(&now);
  int shown = std::stoi(first.substr(0, 2)) * 3600 + std::stoi(first.substr(3, 2)) * 60 + std::stoi(first.substr(6, 2));
  int real = now.wHour * 3600 + now.wMinute * 60 + now.wSecond;
  int apart = std::abs(real - shown);
  EXPECT_LE(std::min(apart, 86400 - apart), 3) << first;  // midnight may fall between the two
  EXPECT_TRUE(WaitUntil([&] { return app.Text("Label19") != first; }, 2500)) << "the clock stood still";
  std::string second = app.Text("Label19");
  EXPECT_TRUE(WaitUntil([&] { return app.Text("Label19") != second; }, 2500)) << "the clock stood still";
}

TEST_F(HomePage, MonitorAndClockRunWhileAnotherPageIsShown) {
  Start();
  app.Click("TamrixCmd7");
  ASSERT_TRUE(WaitUntil([&] { return app.Shown("frmprot") && !app.Shown("Frame4"); }));
  // Wipe the labels behind the program's back: only a tick of the monitor writes them again.
  for (const char* name : kMemoryLabels) SendMessageW(app.Find(name), WM_SETTEXT, 0, reinterpret_cast<LPARAM>(L"?"));
  std::string clock = app.Text("Label19");
  EXPECT_TRUE(WaitUntil([&] {
    for (const char* name : kMemoryLabels)
      if (app.Text(name) == "?") return false;
    return true;
  }, 2000)) << "the monitor did not tick behind the Protection page";
  EXPECT_TRUE(WaitUntil([&] { return app.Text("Label19") != clock; }, 2500)) << "the clock stood still";
  EXPECT_FALSE(app.Shown("Frame4"));
  CheckMemoryLines();
  app.Click("command3");
  ASSERT_TRUE(WaitUntil([&] { return app.Shown("Frame4"); }));
  Screenshot("home-page-back");
}

// The browser of the prefix is swapped for a command that writes the address it is given into a
// file, and put back afterwards.
class DownloadOffer : public HomePage {
 protected:
  static constexpr const char* kHttpOpen = "Software\\Classes\\http\\shell\\open\\command";
  void SetUp() override {
    char temp[MAX_PATH];
    GetTempPathA(MAX_PATH, temp);
    probe_ = std::string(temp) + "tamrix-libra-address.txt";
    DeleteFileA(probe_.c_str());
    HKEY k;
    ASSERT_EQ(RegOpenKeyExA(HKEY_LOCAL_MACHINE, kHttpOpen, 0, KEY_QUERY_VALUE | KEY_SET_VALUE, &k), ERROR_SUCCESS);
    char buf[1024] = {};
    DWORD size = sizeof buf, type = 0;
    saved_ = RegQueryValueExA(k, nullptr, nullptr, &type, reinterpret_cast<BYTE*>(buf), &size) == ERROR_SUCCESS;
    if (saved_) browser_.assign(buf, strnlen(buf, sizeof buf));
    std::string probe = "C:\\windows\\system32\\cmd.exe /c echo %1> \"" + probe_ + "\"";
    overridden_ = RegSetValueExA(k, nullptr, 0, REG_SZ, reinterpret_cast<const BYTE*>(probe.c_str()),
                                 static_cast<DWORD>(probe.size() + 1)) == ERROR_SUCCESS;
    RegCloseKey(k);
  }
  void TearDown() override {
    HomePage::TearDown();
    HKEY k;
    if (overridden_ && RegOpenKeyExA(HKEY_LOCAL_MACHINE, kHttpOpen, 0, KEY_SET_VALUE, &k) == ERROR_SUCCESS) {
      if (saved_)
        RegSetValueExA(k, nullptr, 0, REG_SZ, reinterpret_cast<const BYTE*>(browser_.c_str()),
                       static_cast<DWORD>(browser_.size() + 1));
      else
        RegDeleteValueA(k, nullptr);
      RegCloseKey(k);
    }
    DeleteFileA(probe_.c_str());
  }
  std::string Opened() {
    std::ifstream in(probe_);
    std::string line;
    std::getline(in, line);
    while (!line.empty() && (line.back() == '\r' || line.back() == ' ')) line.pop_back();
    return line;
  }
  MessageBoxSeen Offer() {
    app.Click("Label14");
    auto box = app.WaitMessageBox();
    EXPECT_TRUE(box);
    if (!box) return {};
    EXPECT_EQ(box->title, "Tamrix Corporation - Centre de téléchargement");
    EXPECT_EQ(box->text,
              " Vous avez besoin d'un logiciel qui optimise la mémoire vive, la mémoire cache \r"
              "du processeur ( pour de meilleurs performances ) et accélère votre Windows ?\r"
              "Téléchargez gratuitement notre logiciel  ' Tamrix Libra ' . \r"
              "\r"
              "Voulez vous le télécharger maintenant ?");
    EXPECT_NE(GetDlgItem(box->hwnd, IDYES), nullptr);
    EXPECT_NE(GetDlgItem(box->hwnd, IDNO), nullptr);
    EXPECT_EQ(GetDlgItem(box->hwnd, IDOK), nullptr);
    EXPECT_EQ(GetDlgItem(box->hwnd, IDCANCEL), nullptr);
    return *box;
  }
  std::string probe_, browser_;
  bool saved_ = false, overridden_ = false;
};

TEST_F(DownloadOffer, NoOpensNothing) {
  Start();
  MessageBoxSeen box = Offer();
  ASSERT_TRUE(box.hwnd);
  Screenshot("home-download-offer");
  App::Answer(box, IDNO);
  Sleep(2000);
  EXPECT_EQ(GetFileAttributesA(probe_.c_str()), INVALID_FILE_ATTRIBUTES) << "something was opened: " << Opened();
  EXPECT_TRUE(app.Running());
  EXPECT_FALSE(app.WaitMessageBox(500));
}

TEST_F(DownloadOffer, YesOpensTheDownloadAddressInTheBrowser) {
  Start();
  MessageBoxSeen box = Offer();
  ASSERT_TRUE(box.hwnd);
  App::Answer(box, IDYES);
  ASSERT_TRUE(WaitUntil([&] { return !Opened().empty(); }, 15000)) << "the browser was not started";
  EXPECT_EQ(Opened(), "http://www.tamrix.example/TamrixLibra.zip");
  EXPECT_TRUE(app.Running());
}

}  // namespace
}  // namespace tamrix::e2e
