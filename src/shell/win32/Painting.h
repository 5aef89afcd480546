// How each control of the skin paints itself. The libraries of the original look aren't
// available, so bevels, the round bar and the hover face are ours, within what the controls'
// properties describe.
#pragma once

#include <windows.h>

#include <cmath>
#include <map>
#include <string>
#include <tuple>

#include "shell/Controls.h"

namespace tamrix::win32 {

class Resources {
 public:
  explicit Resources(HINSTANCE instance) : instance_(instance) {}
  ~Resources();
  HFONT Font(const FontSpec& font);
  HBITMAP Picture(const std::string& name);  // a BITMAP resource named in upper case; null when absent
  // One memory surface, at least width by height, that every window paints into before its one
  // copy to the screen: made once and grown, not made at each paint. The caller leaves its
  // drawing state as it found it.
  HDC BackBuffer(HDC screen, int width, int height);
  static int ToPixels(int twips) { return static_cast<int>(std::lround(twips / 15.0)); }  // 15 twips a pixel at 96 dpi

 private:
  HINSTANCE instance_;
  std::map<std::tuple<std::string, int, bool>, HFONT> fonts_;
  std::map<std::string, HBITMAP> pictures_;
  HDC back_ = nullptr;
  HBITMAP backBitmap_ = nullptr;
  HGDIOBJ backFirstBitmap_ = nullptr;
  SIZE backSize_{0, 0};
};

// Paints a control into dc, whose origin is the control's top-left corner, over what lies behind
// it; `pressed` is the mouse button held down on it.
void PaintControl(HDC dc, const RECT& rc, Control& control, Resources& res, bool pressed);

// Paints what lies behind a control with a transparent background: its container's face.
void PaintBehind(HDC dc, HWND window, Control& control, Resources& res);

COLORREF ToColorRef(Color c);

}  // namespace tamrix::win32
