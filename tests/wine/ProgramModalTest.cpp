// A message box of the program stands over every window of the program: those there when it came,
// and one made while it stands, such as the tips window that a timer makes once the queue first
// runs empty. All come back enabled when it goes.
#include <windows.h>

#include <gtest/gtest.h>

#include <string>

#include "platform/win32/ProgramModal.h"

namespace tamrix::win32 {
namespace {

struct Seen {
  HWND before = nullptr, made = nullptr;
  bool beforeEnabled = true, madeEnabled = true;
  bool ticked = false;
};
Seen* gSeen = nullptr;

HWND Popup() {
  return CreateWindowExA(0, "STATIC", "", WS_POPUP, 0, 0, 10, 10, nullptr, nullptr, GetModuleHandleA(nullptr), nullptr);
}

BOOL CALLBACK FindBox(HWND h, LPARAM l) {
  char cls[16] = {};
  GetClassNameA(h, cls, sizeof cls);
  if (std::string(cls) == "#32770") {
    *reinterpret_cast<HWND*>(l) = h;
    return FALSE;
  }
  return TRUE;
}

// Runs under the box: makes the new window as the tips' timer does, looks, and closes the box.
void CALLBACK UnderTheBox(HWND, UINT, UINT_PTR id, DWORD) {
  HWND box = nullptr;
  EnumThreadWindows(GetCurrentThreadId(), FindBox, reinterpret_cast<LPARAM>(&box));
  if (!box || gSeen->ticked) return;
  gSeen->ticked = true;
  KillTimer(nullptr, id);
  gSeen->made = Popup();
  HoldNewWindow(gSeen->made);
  gSeen->beforeEnabled = IsWindowEnabled(gSeen->before) != FALSE;
  gSeen->madeEnabled = IsWindowEnabled(gSeen->made) != FALSE;
  PostMessageA(box, WM_COMMAND, IDOK, 0);
}

TEST(ProgramModalBox, AWindowMadeWhileTheBoxStandsIsHeldDisabledAndComesBackWithTheOthers) {
  Seen seen;
  gSeen = &seen;
  seen.before = Popup();
  ASSERT_NE(seen.before, nullptr);
  SetTimer(nullptr, 0, 50, UnderTheBox);
  EXPECT_EQ(ProgramModalMessageBox("Sous la boîte", "Tamrix Utility", MB_OK), IDOK);
  ASSERT_TRUE(seen.ticked);
  EXPECT_FALSE(seen.beforeEnabled);
  EXPECT_FALSE(seen.madeEnabled);
  EXPECT_TRUE(IsWindowEnabled(seen.before));
  EXPECT_TRUE(IsWindowEnabled(seen.made));
  DestroyWindow(seen.made);
  DestroyWindow(seen.before);
  gSeen = nullptr;
}

TEST(ProgramModalBox, WithoutABoxANewWindowIsLeftAsItIs) {
  HWND w = Popup();
  HoldNewWindow(w);
  EXPECT_TRUE(IsWindowEnabled(w));
  DestroyWindow(w);
}

}  // namespace
}  // namespace tamrix::win32
