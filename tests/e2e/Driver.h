// The end-to-end driver: starts the real tamrix.exe, finds its controls by their design names,
// clicks them, reads what they show, answers its message boxes, and photographs the screen.
#pragma once

#include <windows.h>

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace tamrix::e2e {

std::string Utf8(const std::wstring& w);
std::wstring Wide(const std::string& utf8);

// The figure behind a label, as the pages write sizes: "Espace Libre :         74892,84", with the
// decimal comma of the French system.
double FigureAfter(const std::string& line, const std::string& label);

// Polls until the predicate holds or the time is up.
bool WaitUntil(const std::function<bool()>& done, DWORD timeoutMs = 10000);

struct MessageBoxSeen {
  HWND hwnd = nullptr;
  std::string title;
  std::string text;
};

class App {
 public:
  App() = default;
  ~App();  // a process left running is ended
  App(const App&) = delete;
  App& operator=(const App&) = delete;

  static std::string ExePath();  // TAMRIX_EXE

  // Starts the process, without waiting for its window. A scenario starts from a machine where
  // no earlier instance runs: the start waits for the one a scenario before ended to be gone,
  // since a program still ending would turn this start into a second instance that leaves at
  // once. alongside: the scenario wants this start beside a running instance.
  bool Launch(bool alongside = false);
  bool Start(DWORD timeoutMs = 30000);  // starts it and waits for the main window
  bool WaitMainWindow(DWORD timeoutMs = 30000);
  bool WaitExit(DWORD timeoutMs = 10000);
  DWORD ExitCode();
  DWORD Pid() const { return pi_.dwProcessId; }
  bool Running();
  HWND Main() const { return main_; }

  HWND Find(const std::string& designName);
  // Posted, so a message box it opens doesn't block us. A page's controls get their windows when
  // the page first shows, so the click waits, as a user would, for the button to be there.
  void Click(const std::string& designName);
  std::string Text(const std::string& designName);
  int Value(const std::string& designName);  // BM_GETCHECK
  bool Shown(const std::string& designName);  // the control's own Visible
  COLORREF ForeColor(const std::string& designName);
  COLORREF FaceColor(const std::string& designName);

  // The entries of a list box or drop-down list, and the chosen one (-1: none).
  std::vector<std::string> Items(const std::string& designName);
  int Selection(const std::string& designName);
  // Picks an entry of a drop-down list or list box as the user's click does: the window's
  // selection, then its notification to the container (posted, so a box it opens doesn't block
  // us).
  void Choose(const std::string& designName, int index);
  // The pointer that the screen shows with the mouse over the control's centre, as a handle of
  // the program's process: comparable only with other pointers of the same run.
  HCURSOR CursorOver(const std::string& designName);
  static HCURSOR CursorOverWindow(HWND window);
  // The tip that shows with the mouse resting on the control's centre, as the screen shows it:
  // the text of the process's tip window once it stands (empty when none shows).
  std::string TipOver(const std::string& designName);
  // A window of the main window's class, shown or not.
  bool MainWindowExists();
  bool MainWindowShown();

  // A message box of this process, once it stands.
  std::optional<MessageBoxSeen> WaitMessageBox(DWORD timeoutMs = 10000);
  static void Answer(const MessageBoxSeen& box, int buttonId);
  // The window of the icon a message box shows, or null for none.
  static HWND BoxIcon(const MessageBoxSeen& box);

  // Any visible top-level window of this process other than the main window.
  HWND OtherWindow();

 private:
  PROCESS_INFORMATION pi_{};
  HWND main_ = nullptr;
};

// Windows of any process by the design names the program gives them.
std::string TextOf(HWND window);
HWND FormOf(DWORD pid, const std::string& designName);  // a top-level form, shown or not
HWND ChildOf(HWND parent, const std::string& designName);
// The same, once it is there: a page makes its controls' windows when it first shows.
HWND WaitChild(HWND parent, const std::string& designName, DWORD timeoutMs = 5000);

// A picture of the whole screen, saved as a BMP in TAMRIX_SHOTS (the test script turns it into
// a PNG). Returns the pixels' reader for checks.
void Screenshot(const std::string& name);
// The same, of one window's client area alone as the screen shows it.
void WindowShot(HWND window, const std::string& name);
COLORREF ScreenPixel(int x, int y);

// How many pixels of a window, as the screen shows it, are mostly red and how many mostly blue:
// the critical icon is a red disc, the information icon a blue one. Each process has its own
// handles for the system's icons, and another process's icon can't be read, so the screen is
// what tells them apart.
struct Reds {
  int red = 0, blue = 0, total = 0;
};
Reds RedAndBlue(HWND window);

// The top-level windows of a process, shown or not, that would take the user's input, other
// than the one named (a message box): its forms, its tips, whatever else it made.
std::vector<HWND> WindowsTakingInput(DWORD pid, HWND except);

// A click of the real mouse in the middle of a window, as the user makes it: it reaches whatever
// the screen has there, if that takes input.
void MouseClick(HWND window);

// Runs a command line (reg.exe and the like) and waits for it.
DWORD RunAndWait(const std::string& commandLine, DWORD timeoutMs = 60000);

}  // namespace tamrix::e2e
