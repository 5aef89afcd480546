// The real tamrix.exe under Wine: start-up, the single instance, the window's shape, its ways
// out, and the page switch of the Protection button.
#include <gtest/gtest.h>

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
  ASSERT_TRUE(second.Launch());
  EXPECT_TRUE(second.WaitExit(15000)) << "the second instance should leave at once";
  EXPECT_EQ(second.ExitCode(), 0u);
  EXPECT_FALSE(second.WaitMainWindow(0));
  EXPECT_TRUE(first.Running());
  EXPECT_TRUE(IsWindowVisible(before));
  EXPECT_TRUE(first.Shown("Frame4"));
  EXPECT_EQ(first.OtherWindow(), nullptr) << "no message of any kind";
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
