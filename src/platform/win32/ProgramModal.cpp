#include "platform/win32/ProgramModal.h"

#include <vector>

namespace tamrix::win32 {

namespace {

struct Held {
  HWND window;
  bool wanted;  // what the program wants for it once the box is gone
};
using HeldList = std::vector<Held>;

// One list per standing box, the innermost last: a tick may show a box while another stands.
std::vector<HeldList*>& Standing() {
  static std::vector<HeldList*> boxes;
  return boxes;
}

struct Disabling {
  HWND owner;
  HeldList* held;
};

BOOL CALLBACK DisableOne(HWND window, LPARAM param) {
  auto& d = *reinterpret_cast<Disabling*>(param);
  // The box's owner is disabled and enabled again by the box itself, which then hands the
  // activation back to it; it is only remembered here.
  if (window == d.owner || !IsWindowEnabled(window)) return TRUE;
  d.held->push_back({window, true});
  EnableWindow(window, FALSE);
  return TRUE;
}

}  // namespace

int ProgramModalMessageBox(const char* text, const char* title, UINT style) {
  HWND owner = GetActiveWindow();
  HeldList held;
  if (owner) held.push_back({owner, IsWindowEnabled(owner) != FALSE});
  Disabling d{owner, &held};
  EnumThreadWindows(GetCurrentThreadId(), DisableOne, reinterpret_cast<LPARAM>(&d));
  Standing().push_back(&held);
  int answer = ::MessageBoxA(owner, text, title, style);
  Standing().pop_back();
  for (const Held& h : held)
    if (IsWindow(h.window) && (IsWindowEnabled(h.window) != FALSE) != h.wanted) EnableWindow(h.window, h.wanted);
  return answer;
}

void EnableProgramWindow(HWND window, bool enabled) {
  auto& boxes = Standing();
  if (boxes.empty()) {
    if ((IsWindowEnabled(window) != FALSE) != enabled) EnableWindow(window, enabled);
    return;
  }
  for (auto box = boxes.rbegin(); box != boxes.rend(); ++box)
    for (Held& h : **box)
      if (h.window == window) {
        h.wanted = enabled;
        return;
      }
  // A window that was already disabled when the box came stays so while it stands.
  boxes.back()->push_back({window, enabled});
}

void HoldNewWindow(HWND window) {
  auto& boxes = Standing();
  if (boxes.empty() || !IsWindowEnabled(window)) return;
  // The outermost box gives it back: an inner box that goes first leaves it as it is.
  boxes.front()->push_back({window, true});
  EnableWindow(window, FALSE);
}

}  // namespace tamrix::win32
