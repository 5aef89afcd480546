// A message box of this program stands over the whole program, as the classic runtime's
// application-modal box does: while it stands no window of the program takes input, and its
// timers still tick.
#pragma once

#include <windows.h>

namespace tamrix::win32 {

// Shows the box with every top-level window of this thread disabled, and gives each window back
// the state the program wants for it once the box is gone.
int ProgramModalMessageBox(const char* text, const char* title, UINT style);

// Enables or disables a form's window. While a box stands, a tick's wish is kept until the box
// goes, so that nothing under it takes input and nothing comes back enabled that was disabled.
void EnableProgramWindow(HWND window, bool enabled);

// A top-level window made while a box stands (the tips window, made once the queue first runs
// empty) is held as those that were there when the box came: disabled until the last box goes.
void HoldNewWindow(HWND window);

}  // namespace tamrix::win32
