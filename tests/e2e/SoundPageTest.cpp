// The sound page of the real tamrix.exe against Wine's mixers: with the test's PulseAudio null
// sink, the lists and both reports as a probe program of our own reads them from winmm; with the
// prefix's audio driver switched off, the box before the main window, the hourglass and the
// empty lists.
#include <gtest/gtest.h>

#include <fstream>
#include <map>
#include <memory>
#include <sstream>
#include <vector>

#include "e2e/Driver.h"
#include "e2e/Registry.h"
#include "e2e/RegistrySnapshot.h"

namespace tamrix::e2e {
namespace {

using Items = std::vector<std::string>;

// One line as the probe wrote it.
struct ProbeLine {
  std::string shortName, name;
  unsigned long fdwLine = 0, channels = 0, controls = 0, connections = 0, type = 0, target = 0;
};
struct ProbeDestination {
  ProbeLine line;
  std::vector<ProbeLine> sources;
};
struct ProbeMixer {
  std::string name;
  std::vector<ProbeDestination> destinations;
};

std::string FromAnsi(const std::string& ansi) {
  if (ansi.empty()) return {};
  int n = MultiByteToWideChar(CP_ACP, 0, ansi.data(), static_cast<int>(ansi.size()), nullptr, 0);
  std::wstring w(n, L'\0');
  MultiByteToWideChar(CP_ACP, 0, ansi.data(), static_cast<int>(ansi.size()), w.data(), n);
  return Utf8(w);
}

std::vector<std::string> Split(const std::string& line) {
  std::vector<std::string> f;
  std::stringstream ss(line);
  std::string part;
  while (std::getline(ss, part, '\t')) f.push_back(part);
  return f;
}

ProbeLine ReadLine(const std::vector<std::string>& f, std::size_t at) {
  ProbeLine l;
  l.shortName = FromAnsi(f.at(at));
  l.name = FromAnsi(f.at(at + 1));
  l.fdwLine = std::stoul(f.at(at + 2));
  l.channels = std::stoul(f.at(at + 3));
  l.controls = std::stoul(f.at(at + 4));
  l.connections = std::stoul(f.at(at + 5));
  l.type = std::stoul(f.at(at + 6));
  l.target = std::stoul(f.at(at + 7));
  return l;
}

std::string ExeDirectory() {
  std::string exe = App::ExePath();
  return exe.substr(0, exe.find_last_of('\\'));
}

// What winmm says, asked by the probe beside tamrix.exe.
std::vector<ProbeMixer> Probe() {
  char temp[MAX_PATH];
  GetTempPathA(MAX_PATH, temp);
  std::string out = std::string(temp) + "tamrix-mixer-probe.txt";
  DeleteFileA(out.c_str());
  DWORD rc = RunAndWait("\"" + ExeDirectory() + "\\mixer_probe.exe\" \"" + out + "\"");
  EXPECT_EQ(rc, 0u) << "mixer_probe.exe";
  std::vector<ProbeMixer> mixers;
  std::ifstream in(out, std::ios::binary);
  std::string line;
  while (std::getline(in, line)) {
    auto f = Split(line);
    if (f.empty()) continue;
    if (f[0] == "M") mixers.push_back({FromAnsi(f.at(2)), {}});
    if (f[0] == "D") mixers.at(std::stoul(f.at(1))).destinations.push_back({ReadLine(f, 3), {}});
    if (f[0] == "S")
      mixers.at(std::stoul(f.at(1))).destinations.at(std::stoul(f.at(2))).sources.push_back(ReadLine(f, 4));
    if (f[0] == "E") ADD_FAILURE() << "the probe could not read a source: " << line;
  }
  return mixers;
}

// The words of the types Wine's lines carry, written out here.
const std::map<unsigned long, std::string> kTypeWords = {
    {4, "ADJUSTABLE LEVEL SPEAKER DESTINATION"}, {7, "WAVEIN (ADC) RECORDING DESTINATION"},
    {4099, "MICROPHONE RECORDING SOURCE"},       {4104, "WAVEOUT (DAC) SOURCE"},
    {1, "DIGITAL DESTINATION"},                  {2, "LINE LEVEL DESTINATION"},
};
const std::map<unsigned long, std::string> kTargetWords = {
    {0, "UNDEFINED"}, {1, "WAVE OUT"}, {2, "WAVE IN"}, {3, "MIDI OUT"}, {4, "MIDI IN"}, {5, "AUX AUDIO"},
};

std::string Word(const std::map<unsigned long, std::string>& words, unsigned long v) {
  auto it = words.find(v);
  EXPECT_NE(it, words.end()) << "a type the test has no words for: " << v;
  return it == words.end() ? "?" : it->second;
}

// The report of a line as the page must show it, on a French system.
Items Report(const ProbeLine& l, int id, const char* connectionsLabel) {
  auto yes = [](bool b) { return std::string(b ? "Vrai" : "Faux"); };
  return {"=========================",
          l.name,
          "=========================",
          "Line ID: " + std::to_string(id),
          "Line is disconnected: " + yes((l.fdwLine & 0x8000) != 0),
          "Line is active: " + yes((l.fdwLine & 1) != 0),
          "Nombres de Canneaux: " + std::to_string(l.channels),
          "Nombres de Controls: " + std::to_string(l.controls),
          std::string(connectionsLabel) + std::to_string(l.connections),
          "Audio Line Type: " + Word(kTypeWords, l.type),
          "Line Target Type: " + Word(kTargetWords, l.target)};
}

Items Names(const std::vector<ProbeMixer>& mixers) {
  Items names;
  for (const auto& m : mixers) names.push_back(m.name);
  return names;
}

class SoundPageOnWine : public ::testing::Test {
 protected:
  void OpenPage() {
    ASSERT_TRUE(app.Start());
    app.Click("sys");
    ASSERT_TRUE(WaitUntil([&] { return app.Shown("Frame3"); }));
    app.Click("TamrixCmd11");
    ASSERT_TRUE(WaitUntil([&] { return app.Shown("Frmson"); }));
  }
  // The page shows mixer m, its destination 0 and that destination's source 0.
  void ExpectShows(const ProbeMixer& m) {
    ASSERT_FALSE(m.destinations.empty());
    Items dst;
    for (const auto& d : m.destinations) dst.push_back(d.line.name);
    EXPECT_EQ(app.Items("cbDstLineList"), dst);
    EXPECT_EQ(app.Selection("cbDstLineList"), 0);
    const ProbeDestination& d0 = m.destinations[0];
    EXPECT_EQ(app.Items("lstDstLineInfo"), Report(d0.line, 0, "Nombres de Connections: "));
    Items src;
    for (const auto& s : d0.sources) src.push_back(s.name);
    if (src.empty()) src.push_back("<none>");
    EXPECT_EQ(app.Items("cbSrcLineList"), src);
    EXPECT_EQ(app.Selection("cbSrcLineList"), 0);
    if (!d0.sources.empty())
      EXPECT_EQ(app.Items("lstSrcLineInfo"), Report(d0.sources[0], 0, "Nombres de Connections:: "));
  }
  App app;
};

TEST_F(SoundPageOnWine, ListsAndBothReportsShowWhatWinmmReports) {
  std::vector<ProbeMixer> mixers = Probe();
  ASSERT_GE(mixers.size(), 2u) << "the test's PulseAudio null sink gives Wine several mixers";
  OpenPage();
  EXPECT_EQ(app.Items("cbMixerList"), Names(mixers));
  EXPECT_EQ(app.Selection("cbMixerList"), 0);
  ExpectShows(mixers[0]);
  // The load put the pointer back to the default: the page and a drop-down list show the same
  // arrow, and a text box its own I-beam.
  HCURSOR arrow = app.CursorOver("Frmson");
  EXPECT_NE(arrow, nullptr);
  EXPECT_EQ(app.CursorOver("cbMixerList"), arrow);
  app.Click("win");
  ASSERT_TRUE(WaitUntil([&] { return app.Shown("Frame1"); }));
  EXPECT_NE(app.CursorOver("txtChemLecteur"), arrow);
  app.Click("sys");
  ASSERT_TRUE(WaitUntil([&] { return app.Shown("Frame3"); }));
  app.Click("TamrixCmd11");
  ASSERT_TRUE(WaitUntil([&] { return app.Shown("Frmson"); }));
  Screenshot("sound-page");
  // A click on a line of a report makes that line the report's tip.
  Items report = app.Items("lstDstLineInfo");
  ASSERT_GE(report.size(), 2u);
  app.Choose("lstDstLineInfo", 1);
  EXPECT_EQ(app.TipOver("lstDstLineInfo"), report[1]);
}

TEST_F(SoundPageOnWine, ChangeOfMixerRewritesTheDestinationsTheSourcesAndBothReports) {
  std::vector<ProbeMixer> mixers = Probe();
  ASSERT_GE(mixers.size(), 3u);
  OpenPage();
  // A mixer of another name whose first destination is of another type, if Wine has one, so
  // that the change shows on the screen too.
  std::size_t other = mixers.size() - 1;
  for (std::size_t i = mixers.size() - 1; i >= 1; --i)
    if (!mixers[i].destinations.empty() && !mixers[0].destinations.empty() && mixers[i].name != mixers[0].name &&
        mixers[i].destinations[0].line.type != mixers[0].destinations[0].line.type) {
      other = i;
      break;
    }
  Items before = app.Items("lstDstLineInfo");
  app.Choose("cbMixerList", static_cast<int>(other));
  ASSERT_TRUE(WaitUntil([&] { return app.Items("lstDstLineInfo") != before; }, 5000))
      << "the destination report of mixer " << other << " reads like mixer 0's";
  EXPECT_EQ(app.Selection("cbMixerList"), static_cast<int>(other));
  ExpectShows(mixers[other]);
  // The picture shows the end of both reports, where the line types stand.
  SendMessageW(app.Find("lstDstLineInfo"), LB_SETTOPINDEX, 6, 0);
  SendMessageW(app.Find("lstSrcLineInfo"), LB_SETTOPINDEX, 6, 0);
  Screenshot("sound-page-other-mixer");

  // Back to the first: its destination again, chosen by the cascade. Wine gives each mixer a
  // single destination, so a change of destination shows here only through a change of mixer.
  app.Choose("cbMixerList", 0);
  ASSERT_TRUE(WaitUntil([&] { return app.Items("lstDstLineInfo") == before; }, 5000));
  ExpectShows(mixers[0]);
  EXPECT_FALSE(app.WaitMessageBox(500).has_value()) << "no error box on the way";
}

class SoundPageWithoutAudio : public ::testing::Test {
 protected:
  void SetUp() override {
    snapshot.CreateKeys();
    HKEY key = nullptr;
    ASSERT_EQ(RegOpenKeyExA(HKEY_CURRENT_USER, kDrivers, 0, KEY_SET_VALUE, &key), ERROR_SUCCESS);
    // The empty list of drivers: Wine's own way of a machine without audio.
    RegSetValueExA(key, "Audio", 0, REG_SZ, reinterpret_cast<const BYTE*>(""), 1);
    RegCloseKey(key);
  }
  void TearDown() override {
    if (app.Running()) EndProcess(app.Pid());
    snapshot.Restore();
  }
  static constexpr const char* kDrivers = "Software\\Wine\\Drivers";
  RegistrySnapshot snapshot{{{HKEY_CURRENT_USER, kDrivers, "Audio"}}};
  App app;
};

TEST_F(SoundPageWithoutAudio, BoxComesBeforeTheWindowThenHourglassAndEmptyLists) {
  ASSERT_TRUE(Probe().empty()) << "winmm still reports mixers with the audio driver off";
  ASSERT_TRUE(app.Launch());
  auto box = app.WaitMessageBox(30000);
  ASSERT_TRUE(box.has_value());
  EXPECT_FALSE(app.MainWindowShown()) << "the main window must wait for the box";
  EXPECT_EQ(box->title, "Tamrix Utility");
  EXPECT_EQ(box->text, "No Audio Mixers Detected!");
  Reds icon = RedAndBlue(App::BoxIcon(*box));
  EXPECT_GT(icon.red, icon.total / 5) << "the critical icon is a red disc";
  EXPECT_EQ(icon.blue, 0);
  EXPECT_NE(GetDlgItem(box->hwnd, IDOK), nullptr);
  EXPECT_EQ(GetDlgItem(box->hwnd, IDCANCEL), nullptr);
  Screenshot("no-mixer-box");
  HCURSOR arrow = App::CursorOverWindow(box->hwnd);  // the box's own arrow
  App::Answer(*box, IDOK);

  ASSERT_TRUE(app.WaitMainWindow());
  EXPECT_TRUE(app.Shown("Frame4"));
  // Not the arrow: the hourglass set at the start of the load stays, over the whole window.
  HCURSOR shown = app.CursorOver("Frame4");
  EXPECT_NE(shown, nullptr);
  EXPECT_NE(shown, arrow);
  app.Click("sys");
  ASSERT_TRUE(WaitUntil([&] { return app.Shown("Frame3"); }));
  app.Click("TamrixCmd11");
  ASSERT_TRUE(WaitUntil([&] { return app.Shown("Frmson"); }));
  for (const char* list : {"cbMixerList", "cbDstLineList", "lstDstLineInfo", "cbSrcLineList", "lstSrcLineInfo"})
    EXPECT_EQ(app.Items(list), Items{}) << list;
  EXPECT_EQ(app.CursorOver("Frmson"), shown);
  Screenshot("sound-page-no-mixer");
  app.Click("win");
  ASSERT_TRUE(WaitUntil([&] { return app.Shown("Frame1"); }));
  EXPECT_EQ(app.Items("cmbLecteurDispo(0)"), Items{});
  EXPECT_EQ(app.Items("cmbLecteurDispo(1)"), Items{});
  EXPECT_EQ(app.CursorOver("txtChemLecteur"), shown) << "the window's pointer wins over the text box's I-beam";
  // The rest of the program works: the home page comes back.
  app.Click("command3");
  EXPECT_TRUE(WaitUntil([&] { return app.Shown("Frame4"); }));
}

}  // namespace
}  // namespace tamrix::e2e
