// The binding of the control objects to real windows: it makes a window for each control, keeps
// it in step with the object, and routes the window's messages to the object's handlers, each
// through one wrapper that lets no C++ exception escape into Windows.
#pragma once

#include <windows.h>

#include <map>
#include <memory>
#include <vector>

#include "platform/Platform.h"
#include "shell/Controls.h"
#include "shell/FormHost.h"
#include "shell/win32/Painting.h"

namespace tamrix::win32 {

class WindowPeer;

class Binding : public FormHost {
 public:
  Binding(Platform& platform, HINSTANCE instance);
  ~Binding();

  // Makes the form's windows, runs its load, and shows it unless the load unloaded it.
  bool Show(Form& form);
  // A second form: its windows and its load now, shown modeless later, as often as it is loaded.
  void LoadForm(Form& form) override;
  void ShowForm(Form& form) override;
  // The message loop, until the last form is gone.
  int Run();

  // Runs one event handler; an uncaught run-time fault shows the runtime's box and ends the program.
  void Invoke(const std::function<void()>& handler);

  Resources& resources() { return resources_; }
  void FormGone();

  // The control whose window this is, and the window of a control; null when it has none.
  Control* ControlOf(HWND window) const;
  HWND WindowOf(const Control& control) const;

  // The keyboard (Keyboard.cpp): Tab and Shift+Tab, the arrows in a group of options, Space and
  // Enter, Alt and a marked letter. True when the key was ours and is not to be dispatched.
  bool HandleKey(const MSG& msg);
  // Focus cues show once the keyboard has been used, as the system shows them.
  bool ShowsFocus() const { return keyboardUsed_; }
  void FocusControl(Control& control);
  // A control's window took the focus: the form comes back to it when it is active again.
  void FocusTaken(Control& control);
  // Containers shown or hidden, controls disabled: once the handler is over, the focus goes
  // to the first control of a page that opened, and never stays where it can't be seen.
  void ReachChanged(Control& control, bool pageOpened);
  void KeepFocusReachable(HWND formWindow);

 private:
  friend class WindowPeer;
  void Create(Control& control, HWND parent, Form& form);
  HWND CreateFormWindow(Form& form);
  void ShowFirstTime(WindowPeer& formPeer);
  void MakeToolTips(HWND formWindow);
  bool IsFormWindow(HWND window) const;
  void FormWindowGone(Form& form);
  void CreateTimers(Control& container, Form& form);
  void MakeShownPages(Form& form);
  bool AccessKey(HWND window, char key);
  Form* FormOfWindow(HWND window) const;
  static LRESULT CALLBACK FormProc(HWND, UINT, WPARAM, LPARAM);
  static LRESULT CALLBACK ControlProc(HWND, UINT, WPARAM, LPARAM);

  Platform& platform_;
  HINSTANCE instance_;
  Resources resources_;
  std::vector<std::unique_ptr<WindowPeer>> peers_;
  int liveForms_ = 0;
  bool keyboardUsed_ = false;
  HWND spaceDown_ = nullptr;  // the control the Space key went down on: its release clicks it
  std::map<const Form*, Control*> lastFocus_;
  std::map<const Form*, std::vector<Control*>> openedPages_;  // shown since the focus was last kept
  std::map<HWND, bool> keepPosted_;
};

}  // namespace tamrix::win32
