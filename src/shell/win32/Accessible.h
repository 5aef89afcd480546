// What a screen reader hears of the skin's controls, through the platform's accessibility
// interface (MSAA): each window answers WM_GETOBJECT with an object that gives the control's
// name, role and state, and tells the system when they change. The toolkit's own windows (edit,
// list, drop-down) are answered by the system itself.
#pragma once

#include <windows.h>

#include <string>

#include "shell/Controls.h"

namespace tamrix::win32 {

class Binding;

// The name and state a screen reader was last told of.
struct Spoken {
  bool told = false;
  std::string name;
  long state = 0;
  std::string value;
};

// The object for the control's client area, or 0 to let the system answer.
LRESULT AnswerGetObject(Binding& binding, HWND window, WPARAM wParam, LPARAM lParam);

// Tells the system of a new name, state or value, after the first showing.
void Announce(HWND window, Control& control, Spoken& spoken);

}  // namespace tamrix::win32
