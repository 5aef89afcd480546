// The keyboard's side of the binding: what the message loop hands to Binding::HandleKey, and the
// focus cue the skin draws on the control that has the focus.
#pragma once

#include <windows.h>

#include "shell/Controls.h"

namespace tamrix::win32 {

// Posted to a form once a handler has shown, hidden or disabled something: the focus is then
// put where the user can see it.
inline constexpr UINT kMsgKeepFocus = WM_APP + 16;

// The dotted rectangle inside the face of the focused control, the system's way.
void DrawFocusCue(HDC dc, const RECT& rc, const Control& control);

}  // namespace tamrix::win32
