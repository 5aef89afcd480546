// Start-up under Wine, as a user waits for it.
//
//   bench_startup.exe --runs N NAME=EXE...   measured from outside, the programs started in turn,
//       N rounds: from CreateProcess to the first visible top-level window of the process, and to
//       the first moment it waits for input with that window shown and painted (the system's
//       input-idle). Medians, and each program's ratio to the last one named (notepad.exe).
//   bench_startup.exe --to-exit N NAME=COMMAND...   console commands, N rounds in turn: from
//       CreateProcess to the end of the process, its output thrown away. Medians.
//   bench_startup.exe --steps                 the load of tamrix's main window in this process,
//       step by step: the loader and the run-time before main, the process's first window, the
//       platform, the binding, the form's objects, making and showing the windows with the form's
//       load, the first paint.
#include <windows.h>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

#include "forms/Form1.h"
#include "platform/win32/Win32Platform.h"
#include "shell/win32/Binding.h"

namespace {

double NowMs() {
  static LARGE_INTEGER frequency = [] {
    LARGE_INTEGER f;
    QueryPerformanceFrequency(&f);
    return f;
  }();
  LARGE_INTEGER c;
  QueryPerformanceCounter(&c);
  return 1000.0 * static_cast<double>(c.QuadPart) / static_cast<double>(frequency.QuadPart);
}

double Median(std::vector<double> v) {
  std::sort(v.begin(), v.end());
  return v.empty() ? 0 : v[v.size() / 2];
}

struct Search {
  DWORD pid;
  HWND found;
};

BOOL CALLBACK FindVisible(HWND h, LPARAM l) {
  auto* s = reinterpret_cast<Search*>(l);
  DWORD owner = 0;
  GetWindowThreadProcessId(h, &owner);
  if (owner == s->pid && IsWindowVisible(h) && !GetWindow(h, GW_OWNER)) {
    s->found = h;
    return FALSE;
  }
  return TRUE;
}

HWND VisibleWindowOf(DWORD pid) {
  Search s{pid, nullptr};
  EnumWindows(FindVisible, reinterpret_cast<LPARAM>(&s));
  return s.found;
}

struct Timing {
  double visible = -1, idle = -1;
};

Timing OneStart(const std::string& exe) {
  STARTUPINFOA si{};
  si.cb = sizeof si;
  PROCESS_INFORMATION pi{};
  std::string line = "\"" + exe + "\"";
  Timing t;
  const double start = NowMs();
  if (!CreateProcessA(nullptr, line.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &si, &pi)) return t;
  HWND window = nullptr;
  while (!window && NowMs() - start < 60000) {
    window = VisibleWindowOf(pi.dwProcessId);
    if (!window) Sleep(1);
  }
  if (window) {
    t.visible = NowMs() - start;
    if (WaitForInputIdle(pi.hProcess, 60000) == 0) t.idle = NowMs() - start;
    PostMessageA(window, WM_CLOSE, 0, 0);
  }
  if (WaitForSingleObject(pi.hProcess, 10000) != WAIT_OBJECT_0) TerminateProcess(pi.hProcess, 1);
  CloseHandle(pi.hThread);
  CloseHandle(pi.hProcess);
  Sleep(300);  // the previous program's windows are gone from the server before the next start
  return t;
}

int FromOutside(int runs, const std::vector<std::pair<std::string, std::string>>& programs) {
  std::vector<std::vector<double>> visible(programs.size()), idle(programs.size());
  for (int r = 0; r < runs; ++r) {
    for (std::size_t i = 0; i < programs.size(); ++i) {
      Timing t = OneStart(programs[i].second);
      if (t.visible < 0) {
        std::printf("%s: no window within 60 s\n", programs[i].first.c_str());
        return 1;
      }
      visible[i].push_back(t.visible);
      idle[i].push_back(t.idle);
    }
  }
  const double baseVisible = Median(visible.back()), baseIdle = Median(idle.back());
  std::printf("  %-16s %14s %22s   (medians of %d alternating runs)\n", "", "window shown", "shown and painted", runs);
  for (std::size_t i = 0; i < programs.size(); ++i) {
    double v = Median(visible[i]), p = Median(idle[i]);
    std::printf("  %-16s %11.0f ms %19.0f ms   ratio to %s: %.2f shown, %.2f painted\n", programs[i].first.c_str(), v, p,
                programs.back().first.c_str(), v / baseVisible, p / baseIdle);
  }
  return 0;
}

// One run of a console command to its end, its output thrown away; -1 when it didn't end.
double OneRun(std::string line) {
  SECURITY_ATTRIBUTES sa{sizeof sa, nullptr, TRUE};
  HANDLE nul = CreateFileA("NUL", GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE, &sa, OPEN_EXISTING, 0, nullptr);
  STARTUPINFOA si{};
  si.cb = sizeof si;
  si.dwFlags = STARTF_USESTDHANDLES;
  si.hStdOutput = si.hStdError = nul;
  PROCESS_INFORMATION pi{};
  double ms = -1;
  const double start = NowMs();
  if (CreateProcessA(nullptr, line.data(), nullptr, nullptr, TRUE, CREATE_NO_WINDOW, nullptr, nullptr, &si, &pi)) {
    if (WaitForSingleObject(pi.hProcess, 120000) == WAIT_OBJECT_0) ms = NowMs() - start;
    else TerminateProcess(pi.hProcess, 1);
    CloseHandle(pi.hThread);
    CloseHandle(pi.hProcess);
  }
  CloseHandle(nul);
  return ms;
}

int ToExit(int runs, const std::vector<std::pair<std::string, std::string>>& commands) {
  std::vector<std::vector<double>> times(commands.size());
  for (int r = 0; r < runs; ++r) {
    for (std::size_t i = 0; i < commands.size(); ++i) {
      double ms = OneRun(commands[i].second);
      if (ms < 0) {
        std::printf("%s: did not end within 120 s\n", commands[i].first.c_str());
        return 1;
      }
      times[i].push_back(ms);
    }
  }
  for (std::size_t i = 0; i < commands.size(); ++i)
    std::printf("  %-24s %9.0f ms to its end   (median of %d runs; fastest %.0f ms)\n", commands[i].first.c_str(), Median(times[i]),
                runs, *std::min_element(times[i].begin(), times[i].end()));
  return 0;
}

double MsSinceProcessStart() {
  FILETIME created, exited, kernel, user, now;
  GetProcessTimes(GetCurrentProcess(), &created, &exited, &kernel, &user);
  GetSystemTimeAsFileTime(&now);
  auto ticks = [](FILETIME f) { return (static_cast<unsigned long long>(f.dwHighDateTime) << 32) | f.dwLowDateTime; };
  return static_cast<double>(ticks(now) - ticks(created)) / 10000.0;
}

BOOL CALLBACK CountOne(HWND, LPARAM l) {
  ++*reinterpret_cast<int*>(l);
  return TRUE;
}

int CountWindows(HWND parent) {
  int n = 0;
  EnumChildWindows(parent, CountOne, reinterpret_cast<LPARAM>(&n));
  return n;
}

int Steps() {
  const double beforeMain = MsSinceProcessStart();
  double t = NowMs();
  auto step = [&](const char* what) {
    double now = NowMs();
    std::printf("    %-52s %8.1f ms\n", what, now - t);
    t = now;
  };
  std::printf("    %-52s %8.1f ms\n", "loader, run-time and statics before main", beforeMain);
  // The process's first window starts Wine's display driver, whatever the window: timed apart.
  DestroyWindow(CreateWindowExA(0, "STATIC", "", WS_POPUP, 0, 0, 1, 1, nullptr, nullptr, nullptr, nullptr));
  step("the first window (Wine's display driver starts)");
  tamrix::win32::Win32Platform platform;
  platform.ReadMixersAhead();
  step("the platform (sound devices read on another thread)");
  tamrix::win32::Binding binding(platform, GetModuleHandleA(nullptr));
  step("the binding (window classes, control library)");
  tamrix::Form1 form1(platform);
  step("the form's objects (every page and control)");
  if (!binding.Show(form1)) {
    std::printf("another tamrix is running: no window\n");
    return 1;
  }
  step("windows made, the form's load run, window shown");
  HWND main = VisibleWindowOf(GetCurrentProcessId());
  MSG msg;
  while (PeekMessageA(&msg, nullptr, 0, 0, PM_REMOVE)) {
    TranslateMessage(&msg);
    DispatchMessageA(&msg);
  }
  step("the first paint (the queue emptied)");
  std::printf("    %-52s %8d\n", "windows in the main window", main ? CountWindows(main) : 0);
  std::fflush(stdout);
  ExitProcess(0);
}

}  // namespace

int main(int argc, char** argv) {
  if (argc >= 2 && std::strcmp(argv[1], "--steps") == 0) return Steps();
  const bool toExit = argc >= 4 && std::strcmp(argv[1], "--to-exit") == 0;
  if (argc >= 4 && (toExit || std::strcmp(argv[1], "--runs") == 0)) {
    std::vector<std::pair<std::string, std::string>> programs;
    for (int i = 3; i < argc; ++i) {
      std::string a = argv[i];
      auto eq = a.find('=');
      if (eq == std::string::npos) return 2;
      programs.push_back({a.substr(0, eq), a.substr(eq + 1)});
    }
    int runs = std::max(1, std::atoi(argv[2]));
    return toExit ? ToExit(runs, programs) : FromOutside(runs, programs);
  }
  std::fprintf(stderr, "usage: bench_startup.exe --runs N NAME=EXE... | --to-exit N NAME=COMMAND... | --steps\n");
  return 2;
}
