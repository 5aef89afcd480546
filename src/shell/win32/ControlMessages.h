// What a control's window answers besides the usual messages, so that an outside program (the
// end-to-end driver, an accessibility tool) can read the state the skin paints. WM_GETTEXT gives
// the caption, BM_GETCHECK the value of a box or an option, BM_CLICK clicks.
#pragma once

namespace tamrix::win32 {

// The window property whose value is the global atom of the control's design name.
inline constexpr const char* kDesignNameProp = "TamrixDesignName";

inline constexpr unsigned kMsgGetForeColor = 0x8000 + 1;  // WM_APP + 1: text colour, BGR
inline constexpr unsigned kMsgGetFaceColor = 0x8000 + 2;  // WM_APP + 2: face colour of the moment, BGR
inline constexpr unsigned kMsgGetBarValue = 0x8000 + 3;   // WM_APP + 3: a bar's value as set, times 100
inline constexpr unsigned kMsgIsShown = 0x8000 + 4;       // WM_APP + 4: the control's own Visible

inline constexpr const char* kFormClass = "TamrixForm";
inline constexpr const char* kControlClass = "TamrixControl";

}  // namespace tamrix::win32
