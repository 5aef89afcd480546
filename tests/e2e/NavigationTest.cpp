// Every navigation and sub-page button of the real window, the frames each one leaves visible
// and on top, as the windows on the screen say, the hover colour of the flat strip, and a
// picture of every page.
#include <gtest/gtest.h>

#include <map>
#include <string>
#include <vector>

#include "e2e/Driver.h"

namespace tamrix::e2e {
namespace {

const std::vector<std::string> kPages = {"Frame4", "Frame1", "Frame2", "Frame3", "Propos", "frmprot"};
const std::vector<std::string> kSubPages = {"FrmBios", "fwindows", "pc", "disque", "FrmCpu", "Frmson"};

// The direct child of `container` that the user sees at a point of the screen: the deepest
// window there, followed up to that level.
HWND FrameSeenAt(HWND container, POINT screen) {
  HWND h = WindowFromPoint(screen);
  while (h && GetParent(h) != container) h = GetParent(h);
  return h;
}

// The middle of a frame, in screen coordinates.
POINT Middle(HWND frame) {
  RECT r;
  GetWindowRect(frame, &r);
  return {(r.left + r.right) / 2, (r.top + r.bottom) / 2};
}

class Navigation : public ::testing::Test {
 protected:
  void SetUp() override { ASSERT_TRUE(app.Start()); }
  // Whether the frame's real window is visible, its parents included.
  bool Visible(const std::string& name) { return IsWindowVisible(app.Find(name)) != FALSE; }
  // The frame on top at the middle of `frame`, as the screen answers and as the container's
  // own children, skipping the hidden ones, answer.
  void ExpectOnTop(const std::string& container, const std::string& frame) {
    HWND parent = app.Find(container), top = app.Find(frame);
    ASSERT_NE(parent, nullptr) << container;
    ASSERT_NE(top, nullptr) << frame;
    POINT screen = Middle(top);
    EXPECT_EQ(FrameSeenAt(parent, screen), top) << frame << " is not what the screen shows";
    POINT client = screen;
    ScreenToClient(parent, &client);
    EXPECT_EQ(ChildWindowFromPointEx(parent, client, CWP_SKIPINVISIBLE), top) << frame << " is not the top frame";
  }
  void TearDown() override {
    if (app.Running()) {
      app.Click("TamrixCmd1");
      app.WaitExit();
    }
  }
  // Clicks and waits until the expected page's window is the only one visible, and on top.
  void Go(const std::string& button, const std::string& page) {
    app.Click(button);
    ASSERT_TRUE(WaitUntil([&] {
      for (const auto& p : kPages)
        if (Visible(p) != (p == page)) return false;
      return true;
    })) << button;
    // The page shows early in its button's handler, which then goes on with the sub-pages (and
    // makes their windows the first time): a message sent now is served once the handler is done.
    SendMessageTimeoutA(app.Main(), WM_NULL, 0, 0, SMTO_ABORTIFHUNG, 5000, nullptr);
    ExpectOnTop("Form1", page);
  }
  void ExpectSubPages(const std::map<std::string, bool>& expected) {
    for (const auto& [name, shown] : expected) EXPECT_EQ(Visible(name), shown) << name;
  }
  App app;
};

TEST_F(Navigation, EachPageButtonShowsItsPageAlone) {
  const std::vector<std::pair<std::string, std::string>> route = {
      {"win", "Frame1"},   {"internet", "Frame2"}, {"sys", "Frame3"},     {"TamrixCmd7", "frmprot"},
      {"apro", "Propos"},  {"command3", "Frame4"}, {"apro", "Propos"},    {"win", "Frame1"},
  };
  const std::map<std::string, std::string> shot = {{"Frame1", "page-windows"}, {"Frame2", "page-internet"},
                                                   {"Frame3", "page-testlab"}, {"frmprot", "page-protection"},
                                                   {"Propos", "page-about"},   {"Frame4", "page-home"}};
  for (const auto& [button, page] : route) {
    Go(button, page);
    Screenshot(shot.at(page));
  }
}

TEST_F(Navigation, TestLabAlwaysLandsOnTheWindowsSubPage) {
  Go("sys", "Frame3");
  ExpectSubPages({{"fwindows", true}, {"FrmBios", false}, {"FrmCpu", false}, {"Frmson", false}, {"disque", false}});
  ExpectOnTop("Frame3", "fwindows");
  app.Click("TamrixCmd11");
  ASSERT_TRUE(WaitUntil([&] { return Visible("Frmson"); }));
  ExpectOnTop("Frame3", "Frmson");
  Go("command3", "Frame4");
  Go("sys", "Frame3");
  ExpectSubPages({{"fwindows", true}, {"FrmBios", false}, {"FrmCpu", false}, {"Frmson", false}, {"disque", false}});
  ExpectOnTop("Frame3", "fwindows");
}

TEST_F(Navigation, TestLabLeavesThePcSubPageBehindTheWindowsOne) {
  Go("sys", "Frame3");
  app.Click("command2");
  ASSERT_TRUE(WaitUntil([&] { return Visible("pc") && !Visible("fwindows"); }));
  ExpectOnTop("Frame3", "pc");
  Go("win", "Frame1");
  Go("sys", "Frame3");
  EXPECT_TRUE(Visible("fwindows"));
  EXPECT_TRUE(Visible("pc"));  // untouched by sys, behind fwindows
  ExpectOnTop("Frame3", "fwindows");
  Screenshot("subpage-pc-behind-fwindows");
}

TEST_F(Navigation, EachSubPageButtonShowsItsSubPageAlone) {
  Go("sys", "Frame3");
  const std::vector<std::pair<std::string, std::string>> strip = {
      {"TamrixCmd3", "disque"}, {"TamrixCmd11", "Frmson"}, {"TamrixCmd2", "fwindows"},
      {"command2", "pc"},       {"TamrixCmd6", "FrmBios"}, {"TamrixCmd4", "FrmCpu"},
  };
  for (const auto& [button, sub] : strip) {
    app.Click(button);
    ASSERT_TRUE(WaitUntil([&] {
      for (const auto& s : kSubPages)
        if (Visible(s) != (s == sub)) return false;
      return true;
    })) << button;
    EXPECT_TRUE(Visible("Frame3"));
    ExpectOnTop("Frame3", sub);
    Screenshot("subpage-" + sub);
  }
}

TEST_F(Navigation, InternetAlwaysComesBackOnModem) {
  Go("internet", "Frame2");
  EXPECT_EQ(app.Value("Modem1"), 1);
  app.Click("Lan1");
  ASSERT_TRUE(WaitUntil([&] { return app.Value("Lan1") == 1; }));
  EXPECT_EQ(app.Value("Modem1"), 0);
  Go("command3", "Frame4");
  Go("internet", "Frame2");
  EXPECT_EQ(app.Value("Modem1"), 1);
  EXPECT_EQ(app.Value("Lan1"), 0);
}

TEST_F(Navigation, FlatStripButtonTurnsBlueUnderThePointerAndBack) {
  Go("sys", "Frame3");
  HWND button = app.Find("TamrixCmd6");
  ASSERT_NE(button, nullptr);
  EXPECT_EQ(app.FaceColor("TamrixCmd6"), 0xCEE7EFu);
  RECT r;
  GetWindowRect(button, &r);
  SetCursorPos((r.left + r.right) / 2, (r.top + r.bottom) / 2);
  INPUT move{};
  move.type = INPUT_MOUSE;
  move.mi.dwFlags = MOUSEEVENTF_MOVE;
  SendInput(1, &move, sizeof move);
  EXPECT_TRUE(WaitUntil([&] { return app.FaceColor("TamrixCmd6") == 0xFF8080u; }, 3000));
  Screenshot("strip-hover");
  SetCursorPos(r.left - 200, r.top - 200);
  SendInput(1, &move, sizeof move);
  EXPECT_TRUE(WaitUntil([&] { return app.FaceColor("TamrixCmd6") == 0xCEE7EFu; }, 3000));
}

TEST_F(Navigation, AboutScrollsAndKeepsItsPlace) {
  Go("apro", "Propos");
  HWND bar = app.Find("VScroll1");
  ASSERT_NE(bar, nullptr);
  SCROLLINFO si{sizeof si, SIF_RANGE | SIF_POS};
  GetScrollInfo(bar, SB_CTL, &si);
  EXPECT_EQ(si.nMin, 0);
  EXPECT_EQ(si.nMax, 2542);
  RECT label, page;
  GetWindowRect(app.Find("Propos"), &page);
  GetWindowRect(app.Find("Label20"), &label);
  EXPECT_EQ(label.top - page.top, 31);  // 465 twips, the design top
  // One click on the arrow: one small step, and the label moves from 460 minus 20.
  PostMessageA(GetParent(bar), WM_VSCROLL, MAKEWPARAM(SB_LINEDOWN, 0), reinterpret_cast<LPARAM>(bar));
  ASSERT_TRUE(WaitUntil([&] {
    GetScrollInfo(bar, SB_CTL, &si);
    return si.nPos == 20;
  }));
  GetWindowRect(app.Find("Label20"), &label);
  EXPECT_EQ(label.top - page.top, 29);  // 440 twips
  PostMessageA(GetParent(bar), WM_VSCROLL, MAKEWPARAM(SB_BOTTOM, 0), reinterpret_cast<LPARAM>(bar));
  ASSERT_TRUE(WaitUntil([&] {
    GetScrollInfo(bar, SB_CTL, &si);
    return si.nPos == 2542;
  }));
  Screenshot("page-about-scrolled");
  Go("command3", "Frame4");
  Go("apro", "Propos");
  GetScrollInfo(bar, SB_CTL, &si);
  EXPECT_EQ(si.nPos, 2542);
  GetWindowRect(app.Find("Label20"), &label);
  EXPECT_EQ(label.top - page.top, -139);  // -2082 twips
}

}  // namespace
}  // namespace tamrix::e2e
