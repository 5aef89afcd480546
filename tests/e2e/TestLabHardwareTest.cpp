// The drive, BIOS and processor pages of Test Lab in the real tamrix.exe, against what Wine's own
// tools say of the machine: `vol` and `dir` of cmd for the drive, `wmic` for the processor and for
// the BIOS properties that Wine's WMI lacks; and one full run of the 15-second CPU test.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <map>
#include <optional>
#include <regex>
#include <string>
#include <vector>

#include "e2e/Driver.h"

namespace tamrix::e2e {
namespace {

// Runs a command with its output in a file and gives the output back, as bytes.
std::string Capture(const std::string& commandLine) {
  char dir[MAX_PATH], path[MAX_PATH];
  GetTempPathA(MAX_PATH, dir);
  GetTempFileNameA(dir, "tmx", 0, path);
  SECURITY_ATTRIBUTES sa{sizeof sa, nullptr, TRUE};
  HANDLE out = CreateFileA(path, GENERIC_WRITE, FILE_SHARE_READ, &sa, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
  STARTUPINFOA si{};
  si.cb = sizeof si;
  si.dwFlags = STARTF_USESTDHANDLES;
  si.hStdOutput = si.hStdError = out;
  si.hStdInput = GetStdHandle(STD_INPUT_HANDLE);
  PROCESS_INFORMATION pi{};
  std::string line = commandLine;
  // Wine's console programs write nothing into a redirected handle when made without a console.
  if (CreateProcessA(nullptr, line.data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr, &si, &pi)) {
    WaitForSingleObject(pi.hProcess, 60000);
    CloseHandle(pi.hThread);
    CloseHandle(pi.hProcess);
  }
  CloseHandle(out);
  std::string bytes;
  HANDLE in = CreateFileA(path, GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr);
  char buf[4096];
  DWORD n = 0;
  while (ReadFile(in, buf, sizeof buf, &n, nullptr) && n) bytes.append(buf, n);
  CloseHandle(in);
  DeleteFileA(path);
  return bytes;
}

std::string Lower(std::string s) {
  for (char& c : s) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  return s;
}

// One property of the first object, as wmic prints it: a header line with the property's name,
// then the value. wmic writes UTF-16, and the line ends of the redirected output come through
// as single bytes, so the text is read back as ASCII: every NUL byte dropped. An unknown
// property gives no value line.
std::optional<std::string> Wmic(const std::string& alias, const std::string& property) {
  std::string bytes = Capture("wmic.exe " + alias + " get " + property);
  std::string text;
  for (char c : bytes)
    if (c != '\0' && c != '\xFF' && c != '\xFE') text += c;
  std::vector<std::string> lines;
  std::size_t start = 0;
  while (start <= text.size()) {
    std::size_t end = text.find('\n', start);
    std::string line = text.substr(start, end == std::string::npos ? std::string::npos : end - start);
    while (!line.empty() && (line.back() == '\r' || line.back() == ' ')) line.pop_back();
    if (!line.empty()) lines.push_back(line);
    if (end == std::string::npos) break;
    start = end + 1;
  }
  if (lines.size() < 2 || Lower(lines[0]) != Lower(property)) return std::nullopt;
  return lines[1];
}

// A size line as the page writes it, read back as a number (the decimal comma of the French system).
double SizeOf(const std::string& line, const std::string& label) {
  EXPECT_EQ(line.rfind(label, 0), 0u) << line;
  return FigureAfter(line, label);
}

class TestLabHardware : public ::testing::Test {
 protected:
  void TearDown() override {
    if (app.Running()) {
      app.Click("TamrixCmd1");
      app.WaitExit();
    }
  }
  void OpenTestLab() {
    ASSERT_TRUE(app.Start());
    app.Click("sys");
    ASSERT_TRUE(WaitUntil([&] { return app.Shown("fwindows") && app.Shown("Frame3"); }));
  }
  App app;
};

TEST_F(TestLabHardware, DrivePageReportsDriveCAsWinesOwnToolsSeeIt) {
  OpenTestLab();
  app.Click("TamrixCmd3");
  ASSERT_TRUE(WaitUntil([&] { return app.Shown("disque") && !app.Text("d6").empty(); }));
  // The list starts on the current drive, the one the program was started in (ours).
  char cwd[MAX_PATH] = {};
  GetCurrentDirectoryA(MAX_PATH, cwd);
  EXPECT_EQ(app.Text("Drive1").substr(0, 2), std::string(1, static_cast<char>(std::tolower(cwd[0]))) + ":");
  // The user picks c: in the list, and the page reports on it.
  HWND list = app.Find("Drive1");
  int c = static_cast<int>(SendMessageA(list, CB_FINDSTRING, static_cast<WPARAM>(-1), reinterpret_cast<LPARAM>("c:")));
  ASSERT_GE(c, 0) << "the list holds c:";
  if (static_cast<int>(SendMessageA(list, CB_GETCURSEL, 0, 0)) != c) {
    SendMessageA(list, CB_SETCURSEL, c, 0);
    SendMessageA(GetParent(list), WM_COMMAND, MAKEWPARAM(GetDlgCtrlID(list), CBN_SELCHANGE),
                 reinterpret_cast<LPARAM>(list));
    ASSERT_TRUE(WaitUntil([&] { return app.Text("d6") == "Type du Lecteur :      Lecteur Fixe"; }));
  }

  // vol: "Le volume dans le lecteur c n'a pas de label." or "... c est NAME", and the serial.
  std::string vol = Capture("cmd.exe /c vol c:");
  std::smatch m;
  ASSERT_TRUE(std::regex_search(vol, m, std::regex("([0-9a-fA-F]{4}-[0-9a-fA-F]{4})"))) << vol;
  const std::string serial = m[1];
  std::string label;
  if (std::regex_search(vol, m, std::regex("lecteur c est (.*)\r"))) label = m[1];

  EXPECT_EQ(app.Text("Drive1"), label.empty() ? "c:" : "c: [" + label + "]");
  EXPECT_EQ(app.Text("d1"), "Nom du Volume :     " + label);
  wchar_t fs[MAX_PATH] = {};
  ASSERT_TRUE(GetVolumeInformationW(L"C:\\", nullptr, 0, nullptr, nullptr, nullptr, fs, MAX_PATH));
  EXPECT_EQ(app.Text("d2"), "Système de fichier : " + Utf8(fs));
  EXPECT_EQ(Lower(app.Text("d3")), Lower("N°= de Série :         " + serial));
  EXPECT_EQ(app.Text("d6"), "Type du Lecteur :      Lecteur Fixe");

  ULARGE_INTEGER caller{}, total{}, free{};
  ASSERT_TRUE(GetDiskFreeSpaceExW(L"C:\\", &caller, &total, &free));
  double totalMb = SizeOf(app.Text("d4"), "Espace Total :         ");
  EXPECT_NEAR(totalMb, static_cast<double>(total.QuadPart) / 1048576.0, 0.0005);
  // dir: "N directories   78,146,949,120 bytes free". Others write to this disk too, so the
  // free space may have moved a little between the two readings.
  std::string dir = Capture("cmd.exe /c dir c:\\");
  ASSERT_TRUE(std::regex_search(dir, m, std::regex("([0-9][0-9,. \xA0\xFF]*) bytes free"))) << dir;
  std::string freeDigits;
  for (char c : std::string(m[1]))
    if (c >= '0' && c <= '9') freeDigits += c;
  double dirFreeMb = std::strtod(freeDigits.c_str(), nullptr) / 1048576.0;
  double freeMb = SizeOf(app.Text("d5"), "Espace Libre :         ");
  EXPECT_NEAR(freeMb, dirFreeMb, 512.0);
  // The bar shows the free share of the total, in hundredths as the driver reads it.
  int bar = static_cast<int>(SendMessageA(app.Find("TamrixPBar3"), 0x8000 + 3, 0, 0));
  EXPECT_NEAR(bar / 100.0, freeMb / totalMb * 100.0, 0.02);
  EXPECT_GT(bar, 0);
  Screenshot("testlab-drives");
}

TEST_F(TestLabHardware, CpuPageRaisesThePriorityAndShowsWinesProcessor) {
  OpenTestLab();
  HANDLE process = OpenProcess(PROCESS_QUERY_INFORMATION, FALSE, app.Pid());
  ASSERT_TRUE(process);
  EXPECT_NE(GetPriorityClass(process), static_cast<DWORD>(HIGH_PRIORITY_CLASS));
  app.Click("TamrixCmd4");
  ASSERT_TRUE(WaitUntil([&] { return app.Shown("FrmCpu") && !app.Text("Cpu10").empty(); }));
  EXPECT_EQ(GetPriorityClass(process), static_cast<DWORD>(HIGH_PRIORITY_CLASS));
  CloseHandle(process);

  const std::pair<const char*, const char*> kShown[] = {{"Cpu1", "DeviceID"},          {"Cpu3", "AddressWidth"},
                                                       {"Cpu4", "CpuStatus"},         {"Cpu5", "CurrentClockSpeed"},
                                                       {"Cpu6", "MaxClockSpeed"},     {"Cpu10", "Name"}};
  for (const auto& [label, property] : kShown) {
    auto value = Wmic("cpu", property);
    ASSERT_TRUE(value) << "wmic knows " << property;
    EXPECT_EQ(app.Text(label), *value) << label;
  }
  // What Wine's processor lacks, as its own wmic says, leaves its label empty.
  const std::pair<const char*, const char*> kLacking[] = {
      {"Cpu2", "Availability"}, {"Cpu7", "L2CacheSize"}, {"Cpu8", "L2CacheSpeed"}, {"Cpu9", "VoltageCaps"}};
  for (const auto& [label, property] : kLacking) {
    EXPECT_FALSE(Wmic("cpu", property)) << property;
    EXPECT_EQ(app.Text(label), "") << label;
  }
  Screenshot("testlab-cpu-opened");
}

TEST_F(TestLabHardware, TheTestsWarningStandsOverTheWholeProgramWhileTheClockTicksOn) {
  OpenTestLab();
  app.Click("TamrixCmd4");
  ASSERT_TRUE(WaitUntil([&] { return app.Shown("FrmCpu") && !app.Text("Cpu10").empty(); }));
  app.Click("Test");
  auto box = app.WaitMessageBox();
  ASSERT_TRUE(box);
  ASSERT_EQ(box->title, "Tamrix Utility");

  auto taking = WindowsTakingInput(app.Pid(), box->hwnd);
  std::string classes;
  for (HWND h : taking) {
    char cls[64] = {};
    GetClassNameA(h, cls, sizeof cls);
    classes += std::string(cls) + "; ";
  }
  EXPECT_TRUE(taking.empty()) << classes;
  EXPECT_FALSE(IsWindowEnabled(app.Main()));
  Screenshot("testlab-cpu-warning");

  // The clock of the main window, a one-second timer, goes on under the box.
  std::string clock = app.Text("Label19");
  EXPECT_TRUE(WaitUntil([&] { return app.Text("Label19") != clock; }, 3000)) << clock;
  EXPECT_TRUE(IsWindow(box->hwnd));

  App::Answer(*box, IDCANCEL);
  EXPECT_TRUE(WaitUntil([&] { return IsWindowEnabled(app.Main()); }, 5000));
  EXPECT_EQ(app.Text("Test"), "Démarrer le Test");
}

TEST_F(TestLabHardware, TheFifteenSecondTestRunsToItsScoreWordsAndPictures) {
  OpenTestLab();
  app.Click("TamrixCmd4");
  ASSERT_TRUE(WaitUntil([&] { return app.Shown("FrmCpu") && !app.Text("Cpu10").empty(); }));
  EXPECT_EQ(app.Text("iLabel1"), "Indice");
  EXPECT_EQ(app.Text("rst"), "");

  app.Click("Test");
  auto box = app.WaitMessageBox();
  ASSERT_TRUE(box);
  EXPECT_EQ(box->title, "Tamrix Utility");
  EXPECT_EQ(box->text,
            "Le test va durer 15 secondes, ne touchez pas au clavier ni à la souris et fermez les programmes en "
            "cours d'exécution.");
  App::Answer(*box, IDOK);
  DWORD started = GetTickCount();

  // The settling seconds pump events: the page still answers, and tells the user to wait.
  ASSERT_TRUE(WaitUntil([&] { return !IsWindowEnabled(app.Main()); }, 2000));
  EXPECT_FALSE(IsWindowEnabled(app.Find("Test")));
  EXPECT_EQ(app.Text("rst"), "Veuillez Patientez . . .");
  EXPECT_EQ(app.Text("Test"), "Test en cours ...");
  EXPECT_EQ(app.Text("iLabel1"), "");
  Screenshot("testlab-cpu-running");

  // The window stays disabled through the frozen count, and comes back after 15 seconds.
  Sleep(6000);
  EXPECT_FALSE(IsWindowEnabled(app.Main()));
  ASSERT_TRUE(WaitUntil([&] { return IsWindowEnabled(app.Main()); }, 30000));
  DWORD took = GetTickCount() - started;
  EXPECT_GE(took, 14500u);
  EXPECT_LE(took, 20000u);
  ASSERT_TRUE(WaitUntil([&] { return app.Text("Test") == "Démarrer le test"; }, 5000)) << app.Text("Test");
  EXPECT_TRUE(IsWindowEnabled(app.Find("Test")));

  std::string score = app.Text("iLabel1");
  ASSERT_TRUE(std::regex_match(score, std::regex("[0-9]+"))) << score;
  const int s = std::atoi(score.c_str());
  EXPECT_GT(s, 0) << "the machine counts more than 50000 passes in 13 seconds";
  struct Level {
    int upTo;
    const char* words;
    int lit;
  };
  const Level kLevels[] = {{40, "Résultat: Faible", 1},
                           {55, "Résultat: performant", 1},
                           {110, "Résultat: Ultra performant", 2},
                           {165, "Résultat: Excelent", 3},
                           {INT_MAX, "Résultat: qualité maximale", 4}};
  const Level* level = kLevels;
  while (s > level->upTo) ++level;
  EXPECT_EQ(app.Text("rst"), level->words) << "score " << s;
  const char* coloured[] = {"iImage5", "iImage6", "iImage7", "iImage8"};
  for (int i = 0; i < 4; ++i) EXPECT_EQ(app.Shown(coloured[i]), i < level->lit) << coloured[i] << " at score " << s;
  for (const char* grey : {"iImage1", "iImage2", "iImage3", "iImage4"}) EXPECT_TRUE(app.Shown(grey)) << grey;
  std::printf("CPU test score under Wine: %d (%s)\n", s, level->words);
  Screenshot("testlab-cpu-score");
}

// Wine's Win32_BIOS has no Status, BiosCharacteristics, ListOfLanguages nor SMBIOSPresent, as its
// own wmic says: the report stops at Status and the list at BiosCharacteristics, each with the
// runtime's error box, and the program ends.
class TestLabBios : public TestLabHardware {
 protected:
  void OpenBiosPage() {
    OpenTestLab();
    app.Click("TamrixCmd6");
    ASSERT_TRUE(WaitUntil([&] { return app.Shown("FrmBios") && !app.Shown("fwindows"); }));
  }
  void ExpectTheErrorBoxThenTheEnd() {
    auto box = app.WaitMessageBox();
    ASSERT_TRUE(box);
    EXPECT_EQ(box->title, "Tamrix Utility");
    EXPECT_EQ(box->text, "Run-time error '438':\r\rObject doesn't support this property or method");
    bool textShown = IsWindowVisible(app.Find("Text1")), listShown = IsWindowVisible(app.Find("List1"));
    introAtTheBox = app.Text("Text1");
    App::Answer(*box, IDOK);
    EXPECT_TRUE(app.WaitExit(10000)) << "the program ends after the box";
    shown = {textShown, listShown};
  }
  std::pair<bool, bool> shown;
  std::string introAtTheBox;
};

TEST_F(TestLabBios, WinesBiosLacksThePropertiesThatTheQueryNames) {
  for (const char* property : {"Status", "BiosCharacteristics", "ListOfLanguages", "SMBIOSPresent"})
    EXPECT_FALSE(Wmic("bios", property)) << property;
  auto maker = Wmic("bios", "Manufacturer");
  ASSERT_TRUE(maker);
  EXPECT_NE(*maker, "");
}

TEST_F(TestLabBios, InfoBiosSwitchesToTheTextThenEndsInTheRuntimeErrorBox) {
  OpenBiosPage();
  EXPECT_TRUE(app.Text("Text1").rfind("      Tamrix Info Bios est une nouvelle technologie", 0) == 0);
  Screenshot("testlab-bios");
  app.Click("TamrixCmd9");
  ExpectTheErrorBoxThenTheEnd();
  EXPECT_TRUE(shown.first);
  EXPECT_FALSE(shown.second);
  EXPECT_EQ(introAtTheBox.rfind("      Tamrix Info Bios est une nouvelle technologie", 0), 0u) << "no report written";
}

TEST_F(TestLabBios, TechSupportSwitchesToTheListThenEndsInTheRuntimeErrorBox) {
  OpenBiosPage();
  app.Click("TamrixCmd10");
  auto box = app.WaitMessageBox();
  ASSERT_TRUE(box);
  Screenshot("testlab-bios-error");
  EXPECT_EQ(box->text, "Run-time error '438':\r\rObject doesn't support this property or method");
  EXPECT_FALSE(IsWindowVisible(app.Find("Text1")));
  EXPECT_TRUE(IsWindowVisible(app.Find("List1")));
  App::Answer(*box, IDOK);
  EXPECT_TRUE(app.WaitExit(10000)) << "the program ends after the box";
}

}  // namespace
}  // namespace tamrix::e2e
