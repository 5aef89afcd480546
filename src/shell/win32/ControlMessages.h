// What a control's window answers besides the usual messages, so that an outside program (the
// end-to-end driver, an accessibility tool) can read the state the skin paints. WM_GETTEXT gives
// the caption, BM_GETCHECK the value of a box or an option, BM_CLICK clicks.
#pragma once

#include <windows.h>

#include <cmath>
#include <limits>

namespace tamrix::win32 {

// The window property whose value is the global atom of the control's design name.
inline constexpr const char* kDesignNameProp = "TamrixDesignName";

inline constexpr unsigned kMsgGetForeColor = 0x8000 + 1;  // WM_APP + 1: text colour, BGR
inline constexpr unsigned kMsgGetFaceColor = 0x8000 + 2;  // WM_APP + 2: face colour of the moment, BGR
inline constexpr unsigned kMsgGetBarValue = 0x8000 + 3;   // WM_APP + 3: a bar's value as set, times 100
inline constexpr unsigned kMsgIsShown = 0x8000 + 4;       // WM_APP + 4: the control's own Visible

// A bar's value as kMsgGetBarValue gives it: times 100, rounded; NaN reads 0 and the infinities the
// largest counts, so that no value the pages set makes the conversion undefined. The answer is an
// LRESULT, 32 bits in the i686 program: there the counts stop at its largest, 2147483647; in the
// x86_64 one at 9e15, below 2^53, where every whole double is exact.
inline LRESULT BarValueTimes100(double value) {
  if (std::isnan(value)) return 0;
  constexpr double kLargest = static_cast<double>(std::numeric_limits<LRESULT>::max());
  const double limit = kLargest < 9.0e15 ? kLargest : 9.0e15;
  const double v = std::round(value * 100);
  return static_cast<LRESULT>(v > limit ? limit : v < -limit ? -limit : v);
}

inline constexpr const char* kFormClass = "TamrixForm";
inline constexpr const char* kControlClass = "TamrixControl";

}  // namespace tamrix::win32
