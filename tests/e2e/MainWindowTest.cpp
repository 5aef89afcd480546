// The real tamrix.exe under Wine: start-up, the single instance, the window's shape, its ways
// out, and the page switch of the Protection button.
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "e2e/Driver.h"

namespace tamrix::e2e {
namespace {

const char* const kPages[] = {"Frame1", "Frame2", "Frame3", "Propos", "frmprot"};

TEST(MainWindow, StartsOnTheHomePage) {
  App app;
  ASSERT_TRUE(app.Start());
  EXPECT_EQ(app.Text("Form1"), " Tamrix Utility 3.0 Pro (Win 9.x - NT4.0 - 2000 - Xp - 2003)");
  EXPECT_TRUE(app.Shown("Frame4"));
  EXPECT_TRUE(IsWindowVisible(app.Find("Frame4")));
  for (const char* page : kPages) EXPECT_FALSE(app.Shown(page)) << page;
  RECT client;
  GetClientRect(app.Main(), &client);
  EXPECT_EQ(client.right, 524);
  EXPECT_EQ(client.bottom, 416);
  RECT window;
  GetWindowRect(app.Main(), &window);
  EXPECT_NEAR(window.left, (GetSystemMetrics(SM_CXSCREEN) - 524) / 2, 1);  // centred
  EXPECT_NEAR(window.top, (GetSystemMetrics(SM_CYSCREEN) - 416) / 2, 1);
  EXPECT_EQ(app.Text("command3"), "Accueil");
  EXPECT_EQ(app.Text("TamrixCmd1"), "&Quitter");
  Screenshot("home-page");
}

TEST(MainWindow, SecondStartShowsNoWindowAndLeavesTheFirstAlone) {
  App first;
  ASSERT_TRUE(first.Start());
  HWND before = first.Main();
  App second;
  ASSERT_TRUE(second.Launch(/*alongside=*/true));
  EXPECT_TRUE(second.WaitExit(15000)) << "the second instance should leave at once";
  EXPECT_EQ(second.ExitCode(), 0u);
  EXPECT_FALSE(second.WaitMainWindow(0));
  EXPECT_TRUE(first.Running());
  EXPECT_TRUE(IsWindowVisible(before));
  EXPECT_TRUE(first.Shown("Frame4"));
  EXPECT_EQ(first.OtherWindow(), nullptr) << "no message of any kind";
}

// Starts tamrix.exe as its debugger and lists, in lower case, the files of the modules the
// system maps into it, until it ends or until a module whose path holds `stopAt` comes (then the
// process is ended). What a process loads is seen from outside, not from the program's record.
struct Loaded {
  std::vector<std::string> modules;
  bool exited = false;
  DWORD exitCode = 0;
  bool Has(const std::string& part) const {
    return std::any_of(modules.begin(), modules.end(), [&](const std::string& m) { return m.find(part) != std::string::npos; });
  }
};

std::string PathOf(HANDLE file) {
  char path[MAX_PATH * 2] = {};
  if (!file || !GetFinalPathNameByHandleA(file, path, sizeof path, 0)) return {};
  std::string s = path;
  std::transform(s.begin(), s.end(), s.begin(), [](unsigned char c) { return static_cast<char>(tolower(c)); });
  return s;
}

Loaded ModulesLoadedBy(const std::string& stopAt, DWORD timeoutMs) {
  Loaded out;
  std::string line = "\"" + App::ExePath() + "\"";
  STARTUPINFOA si{};
  si.cb = sizeof si;
  PROCESS_INFORMATION pi{};
  if (!CreateProcessA(nullptr, line.data(), nullptr, nullptr, FALSE, DEBUG_ONLY_THIS_PROCESS, nullptr, nullptr, &si, &pi))
    return out;
  const DWORD start = GetTickCount();
  bool ending = false;
  for (;;) {
    DEBUG_EVENT ev{};
    if (!WaitForDebugEvent(&ev, 1000)) {
      if (!ending && GetTickCount() - start > timeoutMs) {
        TerminateProcess(pi.hProcess, 1);
        ending = true;
      }
      continue;
    }
    DWORD status = DBG_CONTINUE;
    if (ev.dwDebugEventCode == CREATE_PROCESS_DEBUG_EVENT && ev.u.CreateProcessInfo.hFile) {
      CloseHandle(ev.u.CreateProcessInfo.hFile);
    } else if (ev.dwDebugEventCode == LOAD_DLL_DEBUG_EVENT) {
      out.modules.push_back(PathOf(ev.u.LoadDll.hFile));
      if (ev.u.LoadDll.hFile) CloseHandle(ev.u.LoadDll.hFile);
      if (!ending && !stopAt.empty() && out.modules.back().find(stopAt) != std::string::npos) {
        TerminateProcess(pi.hProcess, 1);
        ending = true;
      }
    } else if (ev.dwDebugEventCode == EXCEPTION_DEBUG_EVENT &&
               ev.u.Exception.ExceptionRecord.ExceptionCode != EXCEPTION_BREAKPOINT) {
      status = DBG_EXCEPTION_NOT_HANDLED;
    }
    if (ev.dwDebugEventCode == EXIT_PROCESS_DEBUG_EVENT) {
      out.exited = !ending;
      out.exitCode = ev.u.ExitProcess.dwExitCode;
      ContinueDebugEvent(ev.dwProcessId, ev.dwThreadId, status);
      break;
    }
    ContinueDebugEvent(ev.dwProcessId, ev.dwThreadId, status);
  }
  WaitForSingleObject(pi.hProcess, 10000);
  CloseHandle(pi.hThread);
  CloseHandle(pi.hProcess);
  return out;
}

// Wine's winmm reaches the sound devices through its audio device API, mmdevapi.dll, which
// loads the sound server's driver: a process that never looks at the devices never maps it.
constexpr const char* kSoundDevices = "mmdevapi.dll";

TEST(MainWindow, AFirstStartLoadsTheSoundDevicesAsItStarts) {
  Loaded first = ModulesLoadedBy(kSoundDevices, 30000);
  EXPECT_TRUE(first.Has(kSoundDevices)) << first.modules.size() << " modules, none of the sound devices";
}

TEST(MainWindow, ASecondStartEndsWithoutLoadingTheSoundDevices) {
  App first;
  ASSERT_TRUE(first.Start());
  Loaded second = ModulesLoadedBy("", 15000);
  ASSERT_TRUE(second.exited) << "the second instance should leave at once";
  EXPECT_EQ(second.exitCode, 0u);
  EXPECT_FALSE(second.modules.empty());
  EXPECT_FALSE(second.Has(kSoundDevices));
  for (const char* driver : {"winepulse.drv", "winealsa.drv", "wineoss.drv"}) EXPECT_FALSE(second.Has(driver)) << driver;
  EXPECT_TRUE(first.Running());
}

TEST(MainWindow, CornersAreCutRound) {
  App app;
  ASSERT_TRUE(app.Start());
  RECT w;
  GetWindowRect(app.Main(), &w);
  HRGN region = CreateRectRgn(0, 0, 0, 0);
  ASSERT_NE(GetWindowRgn(app.Main(), region), ERROR);
  // Outside the 50 by 50 ellipse at each corner, inside just next to it.
  EXPECT_FALSE(PtInRegion(region, 1, 1));
  EXPECT_FALSE(PtInRegion(region, 522, 1));
  EXPECT_FALSE(PtInRegion(region, 1, 414));
  EXPECT_FALSE(PtInRegion(region, 522, 414));
  EXPECT_TRUE(PtInRegion(region, 25, 1));
  EXPECT_TRUE(PtInRegion(region, 1, 25));
  EXPECT_TRUE(PtInRegion(region, 262, 208));
  DeleteObject(region);
  Sleep(500);
  // What the screen shows at a cut corner is the desktop, not the skin.
  COLORREF corner = ScreenPixel(w.left + 1, w.top + 1);
  COLORREF desktop = ScreenPixel(w.left - 5, w.top - 5);
  EXPECT_EQ(corner, desktop);
}

TEST(MainWindow, ButtonsShowTheirTipUnderTheMousePointer) {
  App app;
  ASSERT_TRUE(app.Start());
  EXPECT_EQ(app.TipOver("win"), ".. Optimisez votre Windows ..");
  EXPECT_EQ(app.TipOver("TamrixCmd7"), ".. Protégez votre système ..");
  Screenshot("button-tip");
}

TEST(MainWindow, QuitButtonEndsTheProgram) {
  App app;
  ASSERT_TRUE(app.Start());
  app.Click("TamrixCmd1");
  EXPECT_TRUE(app.WaitExit());
  EXPECT_EQ(app.ExitCode(), 0u);
}

TEST(MainWindow, ClosePictureEndsTheProgramLikeTheQuitButton) {
  App app;
  ASSERT_TRUE(app.Start());
  app.Click("Closed");
  EXPECT_TRUE(app.WaitExit());
  EXPECT_EQ(app.ExitCode(), 0u);
}

TEST(MainWindow, MinimisePictureMinimisesTheWindow) {
  App app;
  ASSERT_TRUE(app.Start());
  app.Click("Minimised");
  EXPECT_TRUE(WaitUntil([&] { return IsIconic(app.Main()) != FALSE; }));
  EXPECT_TRUE(app.Running());
}

TEST(MainWindow, RightButtonOnTheBackgroundDoesNotMoveTheWindow) {
  App app;
  ASSERT_TRUE(app.Start());
  RECT before, after;
  GetWindowRect(app.Main(), &before);
  PostMessageA(app.Main(), WM_RBUTTONDOWN, MK_RBUTTON, MAKELPARAM(300, 100));
  PostMessageA(app.Main(), WM_MOUSEMOVE, MK_RBUTTON, MAKELPARAM(340, 140));
  PostMessageA(app.Main(), WM_RBUTTONUP, 0, MAKELPARAM(340, 140));
  Sleep(500);
  GetWindowRect(app.Main(), &after);
  EXPECT_EQ(before.left, after.left);
  EXPECT_EQ(before.top, after.top);
}

TEST(MainWindow, LeftDragOnTheBackgroundMovesTheWindow) {
  App app;
  ASSERT_TRUE(app.Start());
  RECT before, after;
  GetWindowRect(app.Main(), &before);
  SetForegroundWindow(app.Main());
  POINT start{before.left + 300, before.top + 6};  // the header, beside the title picture
  SetCursorPos(start.x, start.y);
  Sleep(200);
  INPUT in[1] = {};
  in[0].type = INPUT_MOUSE;
  in[0].mi.dwFlags = MOUSEEVENTF_LEFTDOWN;
  SendInput(1, in, sizeof(INPUT));
  Sleep(300);
  for (int i = 1; i <= 10; ++i) {
    SetCursorPos(start.x + 4 * i, start.y + 3 * i);
    INPUT move{};
    move.type = INPUT_MOUSE;
    move.mi.dwFlags = MOUSEEVENTF_MOVE;
    SendInput(1, &move, sizeof(INPUT));
    Sleep(50);
  }
  in[0].mi.dwFlags = MOUSEEVENTF_LEFTUP;
  SendInput(1, in, sizeof(INPUT));
  WaitUntil([&] {
    GetWindowRect(app.Main(), &after);
    return after.left != before.left;
  }, 3000);
  EXPECT_EQ(after.left - before.left, 40);
  EXPECT_EQ(after.top - before.top, 30);
}

TEST(MainWindow, ProtectionButtonShowsOnlyTheProtectionPage) {
  App app;
  ASSERT_TRUE(app.Start());
  app.Click("TamrixCmd7");
  ASSERT_TRUE(WaitUntil([&] { return app.Shown("frmprot"); }));
  EXPECT_FALSE(app.Shown("Frame4"));
  for (const char* page : {"Frame1", "Frame2", "Frame3", "Propos"}) EXPECT_FALSE(app.Shown(page)) << page;
  app.Click("command3");
  ASSERT_TRUE(WaitUntil([&] { return app.Shown("Frame4"); }));
  EXPECT_FALSE(app.Shown("frmprot"));
}

}  // namespace
}  // namespace tamrix::e2e
