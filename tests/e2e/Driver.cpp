#include "e2e/Driver.h"

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <vector>

#include "shell/win32/ControlMessages.h"

namespace tamrix::e2e {

using namespace tamrix::win32;

std::string Utf8(const std::wstring& w) {
  if (w.empty()) return {};
  int n = WideCharToMultiByte(CP_UTF8, 0, w.data(), static_cast<int>(w.size()), nullptr, 0, nullptr, nullptr);
  std::string s(n, '\0');
  WideCharToMultiByte(CP_UTF8, 0, w.data(), static_cast<int>(w.size()), s.data(), n, nullptr, nullptr);
  return s;
}

std::wstring Wide(const std::string& utf8) {
  if (utf8.empty()) return {};
  int n = MultiByteToWideChar(CP_UTF8, 0, utf8.data(), static_cast<int>(utf8.size()), nullptr, 0);
  std::wstring w(n, L'\0');
  MultiByteToWideChar(CP_UTF8, 0, utf8.data(), static_cast<int>(utf8.size()), w.data(), n);
  return w;
}

double FigureAfter(const std::string& line, const std::string& label) {
  std::string digits = line.substr(std::min(label.size(), line.size()));
  for (char& c : digits)
    if (c == ',') c = '.';
  return std::atof(digits.c_str());
}

// How much longer than on a native Wine the program may take: TAMRIX_E2E_PATIENCE, a whole factor
// that the test script sets where the program runs emulated, several times slower.
DWORD Patience() {
  static const DWORD factor = [] {
    const char* v = std::getenv("TAMRIX_E2E_PATIENCE");
    int n = v ? std::atoi(v) : 1;
    return static_cast<DWORD>(n >= 1 && n <= 20 ? n : 1);
  }();
  return factor;
}

bool WaitUntil(const std::function<bool()>& done, DWORD timeoutMs) {
  timeoutMs *= Patience();
  DWORD start = GetTickCount();
  for (;;) {
    if (done()) return true;
    if (GetTickCount() - start > timeoutMs) return false;
    Sleep(50);
  }
}

namespace {

std::string WindowText(HWND h) {
  wchar_t buf[2048];
  DWORD_PTR n = 0;
  if (!SendMessageTimeoutW(h, WM_GETTEXT, 2048, reinterpret_cast<LPARAM>(buf), SMTO_ABORTIFHUNG, 5000, &n)) return {};
  return Utf8(std::wstring(buf, n));
}

std::string ClassName(HWND h) {
  char buf[256] = {};
  GetClassNameA(h, buf, sizeof buf);
  return buf;
}

std::string DesignName(HWND h) {
  auto atom = static_cast<ATOM>(reinterpret_cast<ULONG_PTR>(GetPropA(h, kDesignNameProp)));
  if (!atom) return {};
  char buf[256] = {};
  GlobalGetAtomNameA(atom, buf, sizeof buf);
  return buf;
}

LRESULT Ask(HWND h, UINT msg) {
  DWORD_PTR r = 0;
  SendMessageTimeoutA(h, msg, 0, 0, SMTO_ABORTIFHUNG, 5000, &r);
  return static_cast<LRESULT>(r);
}

struct Search {
  DWORD pid;
  std::string cls;
  HWND exclude;
  HWND found;
};

BOOL CALLBACK FindTopLevel(HWND h, LPARAM l) {
  auto* s = reinterpret_cast<Search*>(l);
  DWORD pid = 0;
  GetWindowThreadProcessId(h, &pid);
  if (pid == s->pid && h != s->exclude && IsWindowVisible(h) && (s->cls.empty() || ClassName(h) == s->cls)) {
    s->found = h;
    return FALSE;
  }
  return TRUE;
}

struct NameSearch {
  std::string name;
  HWND found;
};

BOOL CALLBACK FindByName(HWND h, LPARAM l) {
  auto* s = reinterpret_cast<NameSearch*>(l);
  if (DesignName(h) == s->name) {
    s->found = h;
    return FALSE;
  }
  return TRUE;
}

struct FormSearch {
  DWORD pid;
  std::string name;
  HWND found;
};

BOOL CALLBACK FindForm(HWND h, LPARAM l) {
  auto* s = reinterpret_cast<FormSearch*>(l);
  DWORD pid = 0;
  GetWindowThreadProcessId(h, &pid);
  if (pid == s->pid && ClassName(h) == kFormClass && DesignName(h) == s->name) {
    s->found = h;
    return FALSE;
  }
  return TRUE;
}

}  // namespace

std::string TextOf(HWND window) { return WindowText(window); }

HWND FormOf(DWORD pid, const std::string& designName) {
  FormSearch s{pid, designName, nullptr};
  EnumWindows(FindForm, reinterpret_cast<LPARAM>(&s));
  return s.found;
}

HWND ChildOf(HWND parent, const std::string& designName) {
  NameSearch s{designName, nullptr};
  EnumChildWindows(parent, FindByName, reinterpret_cast<LPARAM>(&s));
  return s.found;
}

HWND WaitChild(HWND parent, const std::string& designName, DWORD timeoutMs) {
  HWND found = nullptr;
  WaitUntil([&] { return (found = ChildOf(parent, designName)) != nullptr; }, timeoutMs);
  return found;
}

App::~App() {
  if (pi_.hProcess) {
    if (Running()) {
      TerminateProcess(pi_.hProcess, 1);
      WaitForSingleObject(pi_.hProcess, 5000);
    }
    CloseHandle(pi_.hProcess);
    CloseHandle(pi_.hThread);
  }
}

std::string App::ExePath() {
  const char* exe = std::getenv("TAMRIX_EXE");
  return exe ? exe : "tamrix.exe";
}

namespace {

// The program's own mark of a running instance: a named mutex that lives as long as it does.
bool InstanceRunning() {
  HANDLE mutex = OpenMutexA(SYNCHRONIZE, FALSE, "Tamrix Utility 3.0 Pro - instance");
  if (!mutex) return false;
  CloseHandle(mutex);
  return true;
}

}  // namespace

bool App::Launch(bool alongside) {
  if (!alongside) WaitUntil([] { return !InstanceRunning(); }, 60000);
  std::string line = "\"" + ExePath() + "\"";
  STARTUPINFOA si{};
  si.cb = sizeof si;
  return CreateProcessA(nullptr, line.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &si, &pi_);
}

bool App::WaitMainWindow(DWORD timeoutMs) {
  return WaitUntil(
      [&] {
        Search s{pi_.dwProcessId, kFormClass, nullptr, nullptr};
        EnumWindows(FindTopLevel, reinterpret_cast<LPARAM>(&s));
        main_ = s.found;
        return main_ != nullptr;
      },
      timeoutMs);
}

bool App::Start(DWORD timeoutMs) { return Launch() && WaitMainWindow(timeoutMs); }

bool App::WaitExit(DWORD timeoutMs) { return WaitForSingleObject(pi_.hProcess, timeoutMs * Patience()) == WAIT_OBJECT_0; }

DWORD App::ExitCode() {
  DWORD code = 0;
  GetExitCodeProcess(pi_.hProcess, &code);
  return code;
}

bool App::Running() { return pi_.hProcess && WaitForSingleObject(pi_.hProcess, 0) == WAIT_TIMEOUT; }

HWND App::Find(const std::string& designName) {
  if (!main_) return nullptr;
  if (DesignName(main_) == designName) return main_;
  return ChildOf(main_, designName);
}

void App::Click(const std::string& designName) {
  HWND button = Find(designName);
  if (!button && main_) button = WaitChild(main_, designName);
  PostMessageA(button, BM_CLICK, 0, 0);
}

std::string App::Text(const std::string& designName) { return WindowText(Find(designName)); }

int App::Value(const std::string& designName) { return static_cast<int>(Ask(Find(designName), BM_GETCHECK)); }

bool App::Shown(const std::string& designName) { return Ask(Find(designName), kMsgIsShown) != 0; }

COLORREF App::ForeColor(const std::string& designName) {
  return static_cast<COLORREF>(Ask(Find(designName), kMsgGetForeColor));
}

COLORREF App::FaceColor(const std::string& designName) {
  return static_cast<COLORREF>(Ask(Find(designName), kMsgGetFaceColor));
}

std::vector<std::string> App::Items(const std::string& designName) {
  HWND h = Find(designName);
  bool combo = ClassName(h) == "ComboBox" || ClassName(h) == "COMBOBOX";
  std::vector<std::string> items;
  auto count = static_cast<int>(SendMessageW(h, combo ? CB_GETCOUNT : LB_GETCOUNT, 0, 0));
  for (int i = 0; i < count; ++i) {
    auto length = SendMessageW(h, combo ? CB_GETLBTEXTLEN : LB_GETTEXTLEN, i, 0);
    if (length < 0) length = 0;
    std::wstring text(static_cast<std::size_t>(length) + 1, L'\0');
    auto got = SendMessageW(h, combo ? CB_GETLBTEXT : LB_GETTEXT, i, reinterpret_cast<LPARAM>(text.data()));
    text.resize(got > 0 ? static_cast<std::size_t>(got) : 0);
    items.push_back(Utf8(text));
  }
  return items;
}

int App::Selection(const std::string& designName) {
  HWND h = Find(designName);
  bool combo = ClassName(h) == "ComboBox" || ClassName(h) == "COMBOBOX";
  return static_cast<int>(SendMessageW(h, combo ? CB_GETCURSEL : LB_GETCURSEL, 0, 0));
}

void App::Choose(const std::string& designName, int index) {
  HWND h = Find(designName);
  bool combo = ClassName(h) == "ComboBox" || ClassName(h) == "COMBOBOX";
  SendMessageW(h, combo ? CB_SETCURSEL : LB_SETCURSEL, index, 0);
  WORD code = combo ? CBN_SELCHANGE : LBN_SELCHANGE;
  PostMessageW(GetParent(h), WM_COMMAND, MAKEWPARAM(GetDlgCtrlID(h), code), reinterpret_cast<LPARAM>(h));
}

HCURSOR App::CursorOver(const std::string& designName) { return CursorOverWindow(Find(designName)); }

HCURSOR App::CursorOverWindow(HWND window) {
  RECT r{};
  GetWindowRect(window, &r);
  // A move away and back, so that the window is asked for its pointer again.
  SetCursorPos(r.left + 2, r.top + 2);
  Sleep(200);
  SetCursorPos((r.left + r.right) / 2, (r.top + r.bottom) / 2);
  Sleep(500);
  CURSORINFO info{};
  info.cbSize = sizeof info;
  GetCursorInfo(&info);
  return info.hCursor;
}

namespace {

BOOL CALLBACK FindMainAnyState(HWND h, LPARAM l) {
  auto* s = reinterpret_cast<Search*>(l);
  DWORD pid = 0;
  GetWindowThreadProcessId(h, &pid);
  if (pid == s->pid && ClassName(h) == s->cls) {
    s->found = h;
    return FALSE;
  }
  return TRUE;
}

}  // namespace

bool App::MainWindowExists() {
  Search s{pi_.dwProcessId, kFormClass, nullptr, nullptr};
  EnumWindows(FindMainAnyState, reinterpret_cast<LPARAM>(&s));
  return s.found != nullptr;
}

bool App::MainWindowShown() {
  Search s{pi_.dwProcessId, kFormClass, nullptr, nullptr};
  EnumWindows(FindTopLevel, reinterpret_cast<LPARAM>(&s));
  return s.found != nullptr;
}

HWND App::BoxIcon(const MessageBoxSeen& box) {
  // The icon of a message box stands in the static with id 0x0440.
  HWND icon = GetDlgItem(box.hwnd, 0x0440);
  return icon && IsWindowVisible(icon) ? icon : nullptr;
}

std::optional<MessageBoxSeen> App::WaitMessageBox(DWORD timeoutMs) {
  HWND box = nullptr;
  WaitUntil(
      [&] {
        Search s{pi_.dwProcessId, "#32770", nullptr, nullptr};
        EnumWindows(FindTopLevel, reinterpret_cast<LPARAM>(&s));
        box = s.found;
        return box != nullptr;
      },
      timeoutMs);
  if (!box) return std::nullopt;
  MessageBoxSeen seen{box, WindowText(box), {}};
  // The text of a message box stands in the static with id 0xFFFF.
  HWND text = GetDlgItem(box, 0xFFFF);
  if (text) seen.text = WindowText(text);
  return seen;
}

void App::Answer(const MessageBoxSeen& box, int buttonId) {
  HWND button = GetDlgItem(box.hwnd, buttonId);
  if (button)
    PostMessageA(button, BM_CLICK, 0, 0);
  else
    PostMessageA(box.hwnd, WM_COMMAND, buttonId, 0);
  WaitUntil([&] { return !IsWindow(box.hwnd); }, 5000);
}

std::string App::TipOver(const std::string& designName) {
  HWND window = Find(designName);
  if (!window) return {};
  RECT r{};
  GetWindowRect(window, &r);
  INPUT move{};
  move.type = INPUT_MOUSE;
  move.mi.dwFlags = MOUSEEVENTF_MOVE;
  SetCursorPos(r.left - 100, r.top - 100);
  SendInput(1, &move, sizeof move);
  Sleep(200);
  SetCursorPos((r.left + r.right) / 2, (r.top + r.bottom) / 2);
  SendInput(1, &move, sizeof move);
  Search s{pi_.dwProcessId, "tooltips_class32", main_, nullptr};
  WaitUntil([&] {
    s.found = nullptr;
    EnumWindows(FindTopLevel, reinterpret_cast<LPARAM>(&s));
    return s.found != nullptr;
  }, 5000);
  return s.found ? TextOf(s.found) : std::string();
}

HWND App::OtherWindow() {
  Search s{pi_.dwProcessId, "", main_, nullptr};
  EnumWindows(FindTopLevel, reinterpret_cast<LPARAM>(&s));
  return s.found;
}

namespace {

struct TakingInput {
  DWORD pid;
  HWND except;
  std::vector<HWND> found;
};

BOOL CALLBACK CollectTakingInput(HWND h, LPARAM l) {
  auto* t = reinterpret_cast<TakingInput*>(l);
  DWORD pid = 0;
  GetWindowThreadProcessId(h, &pid);
  if (pid == t->pid && h != t->except && IsWindowEnabled(h)) t->found.push_back(h);
  return TRUE;
}

}  // namespace

std::vector<HWND> WindowsTakingInput(DWORD pid, HWND except) {
  TakingInput t{pid, except, {}};
  EnumWindows(CollectTakingInput, reinterpret_cast<LPARAM>(&t));
  return t.found;
}

void MouseClick(HWND window) {
  RECT r{};
  GetWindowRect(window, &r);
  SetCursorPos((r.left + r.right) / 2, (r.top + r.bottom) / 2);
  INPUT in[2]{};
  in[0].type = in[1].type = INPUT_MOUSE;
  in[0].mi.dwFlags = MOUSEEVENTF_LEFTDOWN;
  in[1].mi.dwFlags = MOUSEEVENTF_LEFTUP;
  SendInput(1, &in[0], sizeof(INPUT));
  Sleep(100);
  SendInput(1, &in[1], sizeof(INPUT));
}

namespace {

// Saves a part of the screen as a BMP in TAMRIX_SHOTS.
void SaveScreen(const std::string& name, RECT r) {
  const char* dir = std::getenv("TAMRIX_SHOTS");
  if (!dir) return;
  Sleep(300);  // let the last paint land
  int w = r.right - r.left, h = r.bottom - r.top;
  if (w <= 0 || h <= 0) return;
  HDC screen = GetDC(nullptr);
  HDC mem = CreateCompatibleDC(screen);
  BITMAPINFO bi{};
  bi.bmiHeader = {sizeof(BITMAPINFOHEADER), w, h, 1, 24, BI_RGB, 0, 0, 0, 0, 0};
  void* bits = nullptr;
  HBITMAP dib = CreateDIBSection(screen, &bi, DIB_RGB_COLORS, &bits, nullptr, 0);
  HGDIOBJ old = SelectObject(mem, dib);
  BitBlt(mem, 0, 0, w, h, screen, r.left, r.top, SRCCOPY);
  GdiFlush();
  DWORD stride = ((w * 3 + 3) / 4) * 4, size = stride * h;
  BITMAPFILEHEADER fh{0x4D42, static_cast<DWORD>(sizeof fh + sizeof bi.bmiHeader + size), 0, 0,
                      static_cast<DWORD>(sizeof fh + sizeof bi.bmiHeader)};
  std::ofstream out(std::string(dir) + "\\" + name + ".bmp", std::ios::binary);
  out.write(reinterpret_cast<const char*>(&fh), sizeof fh);
  out.write(reinterpret_cast<const char*>(&bi.bmiHeader), sizeof bi.bmiHeader);
  out.write(static_cast<const char*>(bits), size);
  SelectObject(mem, old);
  DeleteObject(dib);
  DeleteDC(mem);
  ReleaseDC(nullptr, screen);
}

}  // namespace

void Screenshot(const std::string& name) {
  SaveScreen(name, {0, 0, GetSystemMetrics(SM_CXSCREEN), GetSystemMetrics(SM_CYSCREEN)});
}

void WindowShot(HWND window, const std::string& name) {
  // The client area: the title bar is the window manager's, and a display without one leaves it black.
  RECT r{};
  if (!GetClientRect(window, &r)) return;
  MapWindowPoints(window, nullptr, reinterpret_cast<POINT*>(&r), 2);
  // Only what lies on the screen.
  r.left = std::max<LONG>(r.left, 0);
  r.top = std::max<LONG>(r.top, 0);
  r.right = std::min<LONG>(r.right, GetSystemMetrics(SM_CXSCREEN));
  r.bottom = std::min<LONG>(r.bottom, GetSystemMetrics(SM_CYSCREEN));
  SaveScreen(name, r);
}

COLORREF ScreenPixel(int x, int y) {
  HDC screen = GetDC(nullptr);
  COLORREF c = GetPixel(screen, x, y);
  ReleaseDC(nullptr, screen);
  return c;
}

Reds RedAndBlue(HWND window) {
  Reds r;
  RECT rc{};
  if (!window || !GetWindowRect(window, &rc)) return r;
  HDC screen = GetDC(nullptr);
  for (int y = rc.top; y < rc.bottom; ++y)
    for (int x = rc.left; x < rc.right; ++x) {
      COLORREF c = GetPixel(screen, x, y);
      int R = GetRValue(c), G = GetGValue(c), B = GetBValue(c);
      ++r.total;
      if (R > 150 && G < 100 && B < 100) ++r.red;
      if (B > 150 && R < 100) ++r.blue;
    }
  ReleaseDC(nullptr, screen);
  return r;
}

DWORD RunAndWait(const std::string& commandLine, DWORD timeoutMs) {
  std::string line = commandLine;
  STARTUPINFOA si{};
  si.cb = sizeof si;
  PROCESS_INFORMATION pi{};
  if (!CreateProcessA(nullptr, line.data(), nullptr, nullptr, FALSE, CREATE_NO_WINDOW, nullptr, nullptr, &si, &pi))
    return static_cast<DWORD>(-1);
  WaitForSingleObject(pi.hProcess, timeoutMs);
  DWORD code = 0;
  GetExitCodeProcess(pi.hProcess, &code);
  CloseHandle(pi.hThread);
  CloseHandle(pi.hProcess);
  return code;
}

}  // namespace tamrix::e2e
