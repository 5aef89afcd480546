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
  static LRESULT CALLBACK FormProc(HWND, UINT, WPARAM, LPARAM);
  static LRESULT CALLBACK ControlProc(HWND, UINT, WPARAM, LPARAM);

  Platform& platform_;
  HINSTANCE instance_;
  Resources resources_;
  std::vector<std::unique_ptr<WindowPeer>> peers_;
  int liveForms_ = 0;
};

}  // namespace tamrix::win32
