// The tools window of the real tamrix.exe under Wine: each of the five buttons of the Windows
// page opens its page and hides the main window; every close comes back to a minimised main
// window; the guard of a running countdown; the special folders and the display modes against
// what Wine reports to a probe of its own (shell_probe.exe, beside the tests).
#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <map>
#include <sstream>
#include <thread>
#include <vector>

#include "e2e/Driver.h"
#include "shell/win32/ControlMessages.h"

namespace tamrix::e2e {
namespace {

HWND ToolsWindow(DWORD pid) { return FormOf(pid, "Form2"); }
HWND Child(HWND parent, const std::string& name) { return ChildOf(parent, name); }

std::string ExeDirectory(const std::string& exe) { return exe.substr(0, exe.find_last_of('\\')); }

std::string TestsDirectory() {
  char path[MAX_PATH] = {};
  GetModuleFileNameA(nullptr, path, MAX_PATH);
  return ExeDirectory(path);
}

// Runs the probe and gives its lines.
std::vector<std::string> Probe(const std::string& what) {
  char temp[MAX_PATH] = {};
  GetTempPathA(MAX_PATH, temp);
  std::string out = std::string(temp) + "tamrix-probe-" + what + ".txt";
  DeleteFileA(out.c_str());
  DWORD rc = RunAndWait("\"" + TestsDirectory() + "\\shell_probe.exe\" " + what + " \"" + out + "\"");
  EXPECT_EQ(rc, 0u) << "shell_probe " << what;
  std::ifstream in(out, std::ios::binary);
  std::vector<std::string> lines;
  for (std::string line; std::getline(in, line);) lines.push_back(line);
  return lines;
}

struct Page {
  const char* button;  // on the Windows page of the main window
  const char* frame;
  const char* close;   // its way out
};
const Page kPages[] = {
    {"TamrixCmd12", "TamrixFrm1", "TamrixCmd1"}, {"TamrixCmd13", "TamrixFrm2", "TamrixCmd5"},
    {"TamrixCmd14", "TamrixFrm5", "TamrixCmd6"}, {"TamrixCmd15", "TamrixFrm6", "btn(0)"},
    {"TamrixCmd5", "fraPerso", "TamrixCd3"},
};
const char* const kFrames[] = {"TamrixFrm1", "TamrixFrm2", "TamrixFrm5", "TamrixFrm6", "fraPerso"};

class ToolsWindowOnWine : public ::testing::Test {
 protected:
  App app;
  HWND tools = nullptr;

  void SetUp() override { ASSERT_TRUE(app.Start()); }

  void Open(const char* button) {
    app.Click("win");
    app.Click(button);
    ASSERT_TRUE(WaitUntil([&] {
      tools = ToolsWindow(app.Pid());
      return tools && IsWindowVisible(tools) && !IsWindowVisible(app.Main());
    })) << "the tools window didn't come up for " << button;
  }
  HWND In(const char* name) { return Child(tools, name); }
  // A picture once the tools window has gone through what it was told; its paints follow
  // within the picture's own wait, even on a busy machine.
  void Shot(const std::string& name) {
    SendMessageTimeoutA(tools, WM_NULL, 0, 0, SMTO_ABORTIFHUNG, 5000, nullptr);
    Sleep(300);
    Screenshot(name);
  }
  void Click(const char* name) { PostMessageA(In(name), BM_CLICK, 0, 0); }
  void Type(const char* name, const char* text) {
    SendMessageTimeoutA(In(name), WM_SETTEXT, 0, reinterpret_cast<LPARAM>(text), SMTO_ABORTIFHUNG, 5000, nullptr);
  }
  int Bar() {
    DWORD_PTR r = 0;
    SendMessageTimeoutA(In("pbtime"), win32::kMsgGetBarValue, 0, 0, SMTO_ABORTIFHUNG, 5000, &r);
    return static_cast<int>(r);
  }
  bool ToolsGone() { return !IsWindow(tools); }
  bool MainBackMinimised() { return IsWindowVisible(app.Main()) && IsIconic(app.Main()); }
};

TEST_F(ToolsWindowOnWine, EachButtonOpensItsPageAloneHidesTheMainWindowAndItsCloseBringsItBackMinimised) {
  for (const Page& page : kPages) {
    SCOPED_TRACE(page.button);
    Open(page.button);
    EXPECT_TRUE(IsIconic(app.Main()));
    for (const char* frame : kFrames)
      EXPECT_EQ(IsWindowVisible(In(frame)) != FALSE, std::string(frame) == page.frame) << frame;
    // The shutdown page opens on its first action. (The special folders' button also selects the
    // folder page's optDefaut, but that page's controls get their windows only when it shows, so
    // that choice is checked on the form itself, natively.)
    if (std::string(page.button) == "TamrixCmd15") {
      EXPECT_EQ(SendMessageA(In("TamrixOpButton1"), BM_GETCHECK, 0, 0), 1);
    }
    Shot(std::string("tools-") + page.frame);
    Click(page.close);
    EXPECT_TRUE(WaitUntil([&] { return ToolsGone() && MainBackMinimised(); }));
  }
}

TEST_F(ToolsWindowOnWine, TheWindowIsAFixedDialogCentredWithItsCaption) {
  Open("TamrixCmd14");
  EXPECT_EQ(TextOf(tools), " Tamrix Utility 3.0 Pro   - Orvane Interactive 2004");
  LONG style = GetWindowLongA(tools, GWL_STYLE);
  EXPECT_TRUE(style & WS_CAPTION);
  EXPECT_TRUE(style & WS_SYSMENU);
  EXPECT_FALSE(style & WS_MINIMIZEBOX);
  EXPECT_FALSE(style & WS_MAXIMIZEBOX);
  EXPECT_FALSE(style & WS_THICKFRAME);
  EXPECT_TRUE(GetWindowLongA(tools, GWL_EXSTYLE) & WS_EX_DLGMODALFRAME);
  RECT client{};
  GetClientRect(tools, &client);
  EXPECT_EQ(client.right, 6285 / 15);
  EXPECT_EQ(client.bottom, 5730 / 15);
  RECT r{};
  GetWindowRect(tools, &r);
  EXPECT_NEAR((r.left + r.right) / 2, GetSystemMetrics(SM_CXSCREEN) / 2, 1);
  EXPECT_NEAR((r.top + r.bottom) / 2, GetSystemMetrics(SM_CYSCREEN) / 2, 1);
}

TEST_F(ToolsWindowOnWine, TheWindowManagersCloseComesBackMinimisedToo) {
  Open("TamrixCmd12");
  PostMessageA(tools, WM_CLOSE, 0, 0);
  EXPECT_TRUE(WaitUntil([&] { return ToolsGone() && MainBackMinimised(); }));
  EXPECT_FALSE(app.WaitMessageBox(1000).has_value());
}

TEST_F(ToolsWindowOnWine, TheGuardAsksWhileACountRunsNoKeepsBothWindowsAndTheCountYesCloses) {
  Open("TamrixCmd15");
  Type("sec", "30");
  Click("option1");
  ASSERT_TRUE(WaitUntil([&] { return IsWindowVisible(In("pbtime")) && Bar() > 0; }, 5000));
  Shot("tools-shutdown-running");
  PostMessageA(tools, WM_CLOSE, 0, 0);
  auto box = app.WaitMessageBox();
  ASSERT_TRUE(box.has_value());
  EXPECT_EQ(box->title, "Tamrix Utility 3.0  -  Minutrie Active");
  EXPECT_EQ(box->text, "Etes vous sure de vouloir quitter l'applocation et désactiver \rla minutrie en cours !!");
  EXPECT_TRUE(IsWindowVisible(app.Main()));  // made visible before the question
  Shot("tools-guard");
  App::Answer(*box, IDNO);
  // Both windows stand, and the count goes on.
  int before = Bar();
  Sleep(2500);
  EXPECT_TRUE(IsWindowVisible(tools));
  EXPECT_TRUE(IsWindowVisible(app.Main()));
  EXPECT_LT(Bar(), before);

  Click("btn(0)");
  box = app.WaitMessageBox();
  ASSERT_TRUE(box.has_value());
  App::Answer(*box, IDYES);
  EXPECT_TRUE(WaitUntil([&] { return ToolsGone() && MainBackMinimised(); }));

  // The count outlived the window: the next close asks again, though no timer runs.
  Open("TamrixCmd12");
  Click("TamrixCmd1");
  box = app.WaitMessageBox();
  ASSERT_TRUE(box.has_value());
  EXPECT_EQ(box->title, "Tamrix Utility 3.0  -  Minutrie Active");
  App::Answer(*box, IDYES);
  EXPECT_TRUE(WaitUntil([&] { return ToolsGone() && MainBackMinimised(); }));
}

// The classes of windows that would take input, for a failure's message.
std::string Classes(const std::vector<HWND>& windows) {
  std::string out;
  for (HWND h : windows) {
    char cls[64] = {};
    GetClassNameA(h, cls, sizeof cls);
    out += std::string(cls) + " \"" + TextOf(h) + "\"; ";
  }
  return out;
}

TEST_F(ToolsWindowOnWine, TheGuardsQuestionStandsOverBothWindowsWhileTheCountTicksOn) {
  Open("TamrixCmd15");
  Type("sec", "30");
  Click("option1");
  ASSERT_TRUE(WaitUntil([&] { return IsWindowVisible(In("pbtime")) && Bar() > 0; }, 5000));
  PostMessageA(tools, WM_CLOSE, 0, 0);
  auto box = app.WaitMessageBox();
  ASSERT_TRUE(box.has_value());
  ASSERT_EQ(box->title, "Tamrix Utility 3.0  -  Minutrie Active");
  ASSERT_TRUE(IsWindowVisible(app.Main()));

  // No window of the program takes input while the question stands, the main window that was
  // made visible before it included.
  auto taking = WindowsTakingInput(app.Pid(), box->hwnd);
  EXPECT_TRUE(taking.empty()) << Classes(taking);
  EXPECT_FALSE(IsWindowEnabled(app.Main()));
  EXPECT_FALSE(IsWindowEnabled(tools));

  // The user brings the main window up from the task bar and clicks its "&Quitter": nothing
  // happens under the question, the main window stays and the question still stands.
  ShowWindow(app.Main(), SW_RESTORE);
  ASSERT_TRUE(WaitUntil([&] { return !IsIconic(app.Main()); }, 5000));
  HWND quit = ChildOf(app.Main(), "TamrixCmd1");
  ASSERT_NE(quit, nullptr);
  RECT q{}, b{};
  GetWindowRect(quit, &q);
  GetWindowRect(box->hwnd, &b);
  RECT both{};
  if (IntersectRect(&both, &q, &b))  // the click must land on the button, not on the question
    SetWindowPos(box->hwnd, nullptr, 0, 0, 0, 0, SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
  Shot("tools-guard-over-main-window");
  MouseClick(quit);
  Sleep(1000);
  EXPECT_TRUE(app.Running());
  EXPECT_TRUE(IsWindow(app.Main()));
  EXPECT_TRUE(IsWindowVisible(app.Main()));
  EXPECT_TRUE(IsWindow(box->hwnd));

  // The count's timer ticks on under the question.
  int before = Bar();
  Sleep(2500);
  EXPECT_LT(Bar(), before);
  EXPECT_TRUE(IsWindow(box->hwnd));

  // Answered, the windows take input again.
  App::Answer(*box, IDNO);
  EXPECT_TRUE(WaitUntil([&] { return IsWindowEnabled(app.Main()) && IsWindowEnabled(tools); }, 5000));
  EXPECT_TRUE(IsWindowVisible(tools));
  Click("btn(0)");
  box = app.WaitMessageBox();
  ASSERT_TRUE(box.has_value());
  App::Answer(*box, IDYES);
  EXPECT_TRUE(WaitUntil([&] { return ToolsGone(); }));
}

// The system's question at log-off or shutdown, sent as the system sends it, from a thread of
// ours since the answer waits for the user; gives the window's answer (-1: none came).
class EndOfSession {
 public:
  explicit EndOfSession(HWND window) : window_(window), thread_([this] {
    DWORD_PTR r = 0;
    if (SendMessageTimeoutA(window_, WM_QUERYENDSESSION, 0, ENDSESSION_LOGOFF, SMTO_NORMAL, 30000, &r))
      answer_ = static_cast<LRESULT>(r);
  }) {}
  ~EndOfSession() {
    if (thread_.joinable()) thread_.join();  // a test that stopped early still waits for the answer
  }
  LRESULT Answer() {
    thread_.join();
    return answer_;
  }

 private:
  HWND window_;
  LRESULT answer_ = -1;
  std::thread thread_;
};

TEST_F(ToolsWindowOnWine, TheSystemsEndOfSessionAsksTheGuardANoRefusesItAndAYesLetsItGo) {
  Open("TamrixCmd15");
  Type("sec", "30");
  Click("option1");
  ASSERT_TRUE(WaitUntil([&] { return IsWindowVisible(In("pbtime")) && Bar() > 0; }, 5000));

  EndOfSession refused(tools);
  auto box = app.WaitMessageBox();
  ASSERT_TRUE(box.has_value());
  EXPECT_EQ(box->title, "Tamrix Utility 3.0  -  Minutrie Active");
  EXPECT_EQ(box->text, "Etes vous sure de vouloir quitter l'applocation et désactiver \rla minutrie en cours !!");
  EXPECT_TRUE(IsWindowVisible(app.Main()));
  Shot("tools-guard-end-of-session");
  App::Answer(*box, IDNO);
  EXPECT_EQ(refused.Answer(), 0) << "a No refuses the end of session";
  int before = Bar();
  Sleep(2500);
  EXPECT_TRUE(IsWindowVisible(tools));
  EXPECT_LT(Bar(), before) << "the count goes on";

  EndOfSession allowed(tools);
  box = app.WaitMessageBox();
  ASSERT_TRUE(box.has_value());
  App::Answer(*box, IDYES);
  EXPECT_NE(allowed.Answer(), 0) << "a Yes lets the session end";
  EXPECT_TRUE(WaitUntil([&] { return ToolsGone(); }));
}

TEST_F(ToolsWindowOnWine, MinimisedTheCountGoesOnAfterANoAMainWindowButtonSwitchesThePageAndStopsIt) {
  Open("TamrixCmd15");
  Type("sec", "40");
  Click("option1");
  ASSERT_TRUE(WaitUntil([&] { return IsWindowVisible(In("pbtime")) && Bar() > 0; }, 5000));
  Click("TamrixCmd7");
  ASSERT_TRUE(WaitUntil([&] { return IsIconic(tools) != FALSE; }, 5000));
  int before = Bar();
  Sleep(2500);
  EXPECT_LT(Bar(), before);  // minimised, the count goes on

  PostMessageA(tools, WM_CLOSE, 0, 0);
  auto box = app.WaitMessageBox();
  ASSERT_TRUE(box.has_value());
  App::Answer(*box, IDNO);
  ASSERT_TRUE(IsWindowVisible(app.Main()));
  // The main window is back beside the tools window: one of its buttons switches the page of the
  // window that is still open, and that window's activation stops the count in silence.
  // The user turns to the main window first, as a click on it does.
  SetForegroundWindow(app.Main());
  ASSERT_TRUE(WaitUntil([&] { return GetForegroundWindow() == app.Main(); }, 5000));
  app.Click("TamrixCmd14");
  ASSERT_TRUE(WaitUntil([&] { return IsWindowVisible(In("TamrixFrm5")) && !IsWindowVisible(In("TamrixFrm6")); }));
  EXPECT_EQ(ToolsWindow(app.Pid()), tools);  // the same window, not a new one
  Sleep(1500);
  int stopped = Bar();
  Sleep(2500);
  EXPECT_EQ(Bar(), stopped);
  EXPECT_GT(stopped, 0);
  EXPECT_FALSE(app.WaitMessageBox(500).has_value());

  // The count stays, so the close still asks.
  PostMessageA(tools, WM_CLOSE, 0, 0);
  box = app.WaitMessageBox();
  ASSERT_TRUE(box.has_value());
  App::Answer(*box, IDYES);
  EXPECT_TRUE(WaitUntil([&] { return ToolsGone() && MainBackMinimised(); }));
}

TEST_F(ToolsWindowOnWine, TheTimeBoxesTakeDigitsOnlyAndAClearedBoxShowsZeroZero) {
  Open("TamrixCmd15");
  HWND min = In("min");
  SetFocus(min);
  SendMessageTimeoutA(min, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(""), SMTO_ABORTIFHUNG, 5000, nullptr);
  EXPECT_TRUE(WaitUntil([&] { return TextOf(min) == "00"; }, 3000));
  for (char c : std::string("4x-2")) PostMessageA(min, WM_CHAR, static_cast<unsigned char>(c), 1);
  EXPECT_TRUE(WaitUntil([&] { return TextOf(min).find("42") != std::string::npos; }, 3000)) << TextOf(min);
  EXPECT_EQ(TextOf(min).find('x'), std::string::npos);
  EXPECT_EQ(TextOf(min).find('-'), std::string::npos);
}

TEST_F(ToolsWindowOnWine, TheSpecialFoldersAreWhatWinesShellReportsToAProbe) {
  std::map<std::string, std::string> probe;
  for (const std::string& line : Probe("folders")) {
    auto eq = line.find('=');
    if (eq != std::string::npos) probe[line.substr(0, eq)] = line.substr(eq + 1);
  }
  ASSERT_EQ(probe.size(), 19u);
  Open("TamrixCmd12");
  const std::pair<const char*, const char*> boxes[] = {
      {"ChDos(1)", "0"},   {"ChDos(2)", "2"},   {"ChDos(3)", "5"},   {"ChDos(4)", "6"},   {"ChDos(5)", "7"},
      {"ChDos(6)", "8"},   {"ChDos(7)", "9"},   {"ChDos(8)", "11"},  {"ChDos(10)", "19"}, {"ChDos(11)", "20"},
      {"ChDos(12)", "21"}, {"ChDos(13)", "25"}, {"ChDos(14)", "26"}, {"ChDos(15)", "27"}, {"ChDos(16)", "32"},
      {"ChDos(17)", "33"}, {"ChDos(18)", "34"}, {"ChDos(19)", "windows"}, {"ChDos(20)", "system"}};
  int nonEmpty = 0;
  for (const auto& [box, key] : boxes) {
    EXPECT_EQ(TextOf(In(box)), probe[key]) << box << " / " << key;
    nonEmpty += probe[key].empty() ? 0 : 1;
  }
  EXPECT_GE(nonEmpty, 15);  // Wine knows nearly all of them
  EXPECT_EQ(In("ChDos(9)"), nullptr);
  EXPECT_EQ(TextOf(In("Label2(19)")), "Windows\\System");
  Shot("tools-special-folders");
}

TEST_F(ToolsWindowOnWine, TheModeListIsWinesEnumerationAndChangerOnTheCurrentModeIsSilent) {
  std::vector<std::string> modes = Probe("modes");
  ASSERT_FALSE(modes.empty());
  std::string current = modes.back().substr(std::string("current=").size());
  modes.pop_back();
  ASSERT_FALSE(modes.empty());
  Open("TamrixCmd14");
  HWND list = In("List1");
  auto count = static_cast<int>(SendMessageA(list, LB_GETCOUNT, 0, 0));
  std::vector<std::string> shown;
  for (int i = 0; i < count; ++i) {
    wchar_t item[64] = {};
    SendMessageW(list, LB_GETTEXT, static_cast<WPARAM>(i), reinterpret_cast<LPARAM>(item));
    shown.push_back(Utf8(item));
  }
  EXPECT_EQ(shown, modes);
  int last = -1;
  for (int i = 0; i < static_cast<int>(modes.size()); ++i)
    if (modes[static_cast<std::size_t>(i)] == current) last = i;
  ASSERT_GE(last, 0) << current;
  EXPECT_EQ(SendMessageA(list, LB_GETCURSEL, 0, 0), last);
  Shot("tools-resolution");

  const int width = GetSystemMetrics(SM_CXSCREEN), height = GetSystemMetrics(SM_CYSCREEN);
  Click("Command1");
  EXPECT_FALSE(app.WaitMessageBox(3000).has_value());
  EXPECT_TRUE(IsWindowVisible(tools));
  EXPECT_EQ(GetSystemMetrics(SM_CXSCREEN), width);
  EXPECT_EQ(GetSystemMetrics(SM_CYSCREEN), height);
}

// Arms a real countdown of 00:00:03 with the action named in TAMRIX_SHUTDOWN_ACTION and leaves
// tamrix.exe running. It runs only in a prefix made for it alone: tests/e2e/shutdown-countdown.sh
// makes one, runs this, and watches from outside what Wine does when the count reaches zero.
TEST(ShutdownCountdownArmed, ThreeSecondsWithTheChosenActionLeftRunning) {
  const char* action = std::getenv("TAMRIX_SHUTDOWN_ACTION");
  if (!action) GTEST_SKIP() << "needs a prefix of its own: tests/e2e/shutdown-countdown.sh";
  std::string line = "\"" + App::ExePath() + "\"";
  STARTUPINFOA si{};
  si.cb = sizeof si;
  PROCESS_INFORMATION pi{};
  ASSERT_TRUE(CreateProcessA(nullptr, line.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &si, &pi));
  CloseHandle(pi.hThread);
  HWND main = nullptr, tools = nullptr;
  ASSERT_TRUE(WaitUntil([&] { return (main = FormOf(pi.dwProcessId, "Form1")) && IsWindowVisible(main); }, 30000));
  PostMessageA(Child(main, "win"), BM_CLICK, 0, 0);
  PostMessageA(WaitChild(main, "TamrixCmd15"), BM_CLICK, 0, 0);
  ASSERT_TRUE(WaitUntil([&] { return (tools = FormOf(pi.dwProcessId, "Form2")) && IsWindowVisible(tools); }));
  for (const char* box : {"hr", "min"})
    SendMessageTimeoutA(Child(tools, box), WM_SETTEXT, 0, reinterpret_cast<LPARAM>("00"), SMTO_ABORTIFHUNG, 5000, nullptr);
  SendMessageTimeoutA(Child(tools, "sec"), WM_SETTEXT, 0, reinterpret_cast<LPARAM>("03"), SMTO_ABORTIFHUNG, 5000, nullptr);
  PostMessageA(Child(tools, action), BM_CLICK, 0, 0);
  ASSERT_TRUE(WaitUntil([&] { return SendMessageA(Child(tools, action), BM_GETCHECK, 0, 0) == 1; }, 5000));
  // The moment of the click, in milliseconds since 1970 on the host's clock, which Wine's system
  // time is: the watching script measures the end of the count from here.
  FILETIME now{};
  GetSystemTimeAsFileTime(&now);
  const unsigned long long ticks = static_cast<unsigned long long>(now.dwHighDateTime) << 32 | now.dwLowDateTime;
  const long long clickedMs = static_cast<long long>((ticks - 116444736000000000ull) / 10000);
  PostMessageA(Child(tools, "option1"), BM_CLICK, 0, 0);
  std::printf("clicked-at-ms %lld\n", clickedMs);
  std::fflush(stdout);
  ASSERT_TRUE(WaitUntil([&] { return IsWindowVisible(Child(tools, "pbtime")) != FALSE; }, 5000));
  EXPECT_EQ(WaitForSingleObject(pi.hProcess, 0), static_cast<DWORD>(WAIT_TIMEOUT));  // armed, and running
  CloseHandle(pi.hProcess);
}

}  // namespace
}  // namespace tamrix::e2e
