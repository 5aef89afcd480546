// The keyboard, as a form of the classic toolkit answers it. The rules of the walk (which
// control comes next, which letter reaches which control) are the portable ones of
// shell/Keyboard; here the keys are read off the message loop and the real focus is moved.
#include "shell/win32/Keyboard.h"

#include "shell/Keyboard.h"
#include "shell/win32/Binding.h"

namespace tamrix::win32 {

namespace {

bool IsOwnDrawnFocusTaker(const Control& c) {
  return c.kind() == Kind::TamrixCmd || c.kind() == Kind::TamrixCB || keyboard::IsOption(c);
}

bool Down(int key) { return GetKeyState(key) < 0; }

}  // namespace

void DrawFocusCue(HDC dc, const RECT& rc, const Control& control) {
  if (!IsOwnDrawnFocusTaker(control)) return;
  RECT r = rc;
  InflateRect(&r, -3, -3);
  if (r.right <= r.left || r.bottom <= r.top) return;
  SetTextColor(dc, RGB(0, 0, 0));
  SetBkColor(dc, RGB(255, 255, 255));
  DrawFocusRect(dc, &r);
}

Form* Binding::FormOfWindow(HWND window) const {
  if (!window) return nullptr;
  Control* c = ControlOf(GetAncestor(window, GA_ROOT));
  return c && c->kind() == Kind::Form ? static_cast<Form*>(c) : nullptr;
}

void Binding::FocusControl(Control& control) {
  HWND window = WindowOf(control);
  if (!window) return;
  FocusTaken(control);
  if (GetFocus() != window) SetFocus(window);
  // A text box reached from the keyboard has its text chosen, so that what is typed replaces it,
  // as in the platform's dialogs.
  if (control.kind() == Kind::TextBox) SendMessageA(window, EM_SETSEL, 0, -1);
}

void Binding::FocusTaken(Control& control) {
  if (Form* form = control.ParentForm()) lastFocus_[form] = &control;
}

// Alt and a letter: a control with that letter on the visible page is reached, and pressed when
// it is the only one; several are walked in turn.
bool Binding::AccessKey(HWND window, char key) {
  Form* form = FormOfWindow(window);
  if (!form) return false;
  keyboard::AccessKeyHit hit = keyboard::FindAccessKey(*form, key, ControlOf(GetFocus()));
  if (!hit.focus) return false;
  keyboardUsed_ = true;
  Control& target = *hit.focus;
  FocusControl(target);
  if (hit.press) Invoke([&] { target.Click(); });
  return true;
}

bool Binding::HandleKey(const MSG& msg) {
  if (msg.message == WM_SYSCHAR) return AccessKey(msg.hwnd, static_cast<char>(msg.wParam));
  if (msg.message != WM_KEYDOWN && msg.message != WM_KEYUP) return false;
  Form* form = FormOfWindow(msg.hwnd);
  if (!form) return false;
  Control* focused = ControlOf(GetFocus());
  if (focused && focused->ParentForm() != form) focused = nullptr;
  const auto key = static_cast<int>(msg.wParam);

  if (msg.message == WM_KEYUP) {
    // A button, a box or an option is pressed as Space comes back up, on the control it went
    // down on.
    if (key != VK_SPACE || !spaceDown_) return false;
    HWND down = spaceDown_;
    spaceDown_ = nullptr;
    if (focused && WindowOf(*focused) == down && IsOwnDrawnFocusTaker(*focused) && keyboard::Reachable(*focused)) {
      Control& c = *focused;
      Invoke([&] { c.Click(); });
    }
    return true;
  }

  if (key == VK_TAB && !Down(VK_CONTROL) && !Down(VK_MENU)) {
    keyboardUsed_ = true;
    if (Control* next = keyboard::NextTabStop(*form, focused, Down(VK_SHIFT))) {
      if (HWND old = GetFocus()) InvalidateRect(old, nullptr, FALSE);
      FocusControl(*next);
      InvalidateRect(WindowOf(*next), nullptr, FALSE);
    }
    return true;
  }
  if (!focused || !IsOwnDrawnFocusTaker(*focused)) return false;
  switch (key) {
    case VK_SPACE:
      keyboardUsed_ = true;
      spaceDown_ = WindowOf(*focused);
      return true;
    case VK_RETURN:
      if (focused->kind() != Kind::TamrixCmd) return false;
      Invoke([&] { focused->Click(); });
      return true;
    case VK_LEFT:
    case VK_UP:
    case VK_RIGHT:
    case VK_DOWN: {
      if (!keyboard::IsOption(*focused)) return false;
      // Inside a group of options the arrows move and choose, as the platform's option buttons do.
      keyboardUsed_ = true;
      Control* next = keyboard::NextOption(*focused, key == VK_LEFT || key == VK_UP);
      if (next && next != focused) {
        FocusControl(*next);
        Invoke([&] { next->Click(); });
      }
      return true;
    }
    default:
      return false;
  }
}

void Binding::ReachChanged(Control& control, bool pageOpened) {
  Form* form = control.ParentForm();
  HWND formWindow = form ? WindowOf(*form) : nullptr;
  if (!formWindow) return;
  if (pageOpened) openedPages_[form].push_back(&control);
  if (keepPosted_[formWindow]) return;
  keepPosted_[formWindow] = true;
  PostMessageA(formWindow, kMsgKeepFocus, 0, 0);
}

// After the handler: a page that opened gets the focus on its first control; a focus left on a
// control that can't be seen or used, or on nothing, goes back to the last control the user was
// on, or to the form's first. A form that isn't the active one is left alone: it is seen to when
// it is activated.
void Binding::KeepFocusReachable(HWND formWindow) {
  keepPosted_[formWindow] = false;
  Form* form = FormOfWindow(formWindow);
  if (!form || GetActiveWindow() != formWindow || !IsWindowEnabled(formWindow) || IsIconic(formWindow)) return;
  std::vector<Control*> pages = std::move(openedPages_[form]);
  openedPages_[form].clear();
  for (Control* page : pages) {
    if (!keyboard::Reachable(*page)) continue;  // shown, then hidden again by the same handler
    if (Control* first = keyboard::FirstTabStop(*page)) {
      FocusControl(*first);
      return;
    }
  }
  Control* focused = ControlOf(GetFocus());
  if (focused && focused->ParentForm() == form && keyboard::TakesFocus(*focused) && keyboard::Reachable(*focused))
    return;
  Control* last = lastFocus_[form];
  if (last && keyboard::Reachable(*last)) {
    FocusControl(*last);
  } else if (Control* first = keyboard::NextTabStop(*form, nullptr, false)) {
    FocusControl(*first);
  }
}

}  // namespace tamrix::win32
