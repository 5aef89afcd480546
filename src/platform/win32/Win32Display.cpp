// Tools window: display modes, the screen's size and shutdown.
#include "platform/win32/Win32Platform.h"

#include <windows.h>

#include <algorithm>

#include "platform/win32/Ansi.h"
#include "platform/win32/Win32Internal.h"

namespace tamrix::win32 {

int Win32Platform::GetDeviceCaps(WindowHandle window, int index) {
  HWND hwnd = ToHwnd(window);
  HDC dc = ::GetDC(hwnd);
  int value = ::GetDeviceCaps(dc, index);
  ::ReleaseDC(hwnd, dc);
  return value;
}

// As the toolkit's screen object gives them: a pixel is 1440 / dpi twips, a whole number.
Platform::ScreenTwips Win32Platform::GetScreenTwips() {
  HDC dc = ::GetDC(nullptr);
  long perX = 1440 / std::max(1, ::GetDeviceCaps(dc, LOGPIXELSX));
  long perY = 1440 / std::max(1, ::GetDeviceCaps(dc, LOGPIXELSY));
  ::ReleaseDC(nullptr, dc);
  return {::GetSystemMetrics(SM_CXSCREEN) * perX, ::GetSystemMetrics(SM_CYSCREEN) * perY, perX, perY};
}

bool Win32Platform::EnumDisplaySettingsA(std::uint32_t modeNumber, DevMode* mode) {
  DEVMODEA dm{};
  dm.dmSize = sizeof dm;
  if (!::EnumDisplaySettingsA(nullptr, modeNumber, &dm)) return false;
  *mode = {dm.dmFields, dm.dmBitsPerPel, dm.dmPelsWidth, dm.dmPelsHeight, dm.dmDisplayFrequency};
  return true;
}

long Win32Platform::ChangeDisplaySettingsA(const DevMode& mode, std::uint32_t flags) {
  DEVMODEA dm{};
  dm.dmSize = sizeof dm;
  dm.dmFields = mode.dmFields;
  dm.dmBitsPerPel = mode.dmBitsPerPel;
  dm.dmPelsWidth = mode.dmPelsWidth;
  dm.dmPelsHeight = mode.dmPelsHeight;
  dm.dmDisplayFrequency = mode.dmDisplayFrequency;
  return ::ChangeDisplaySettingsA(&dm, flags);
}

bool Win32Platform::ExitWindowsEx(std::uint32_t flags, std::uint32_t reserved) {
  return ::ExitWindowsEx(flags, reserved) != FALSE;
}

}  // namespace tamrix::win32
