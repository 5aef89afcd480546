// Small conversions that the platform's files share: window handles carried as numbers, and
// UTF-16 text of the COM services to and from the program's UTF-8.
#pragma once

#include <windows.h>
#include <oleauto.h>

#include <string>

#include "platform/Platform.h"

namespace tamrix::win32 {

inline HWND ToHwnd(WindowHandle h) { return reinterpret_cast<HWND>(static_cast<ULONG_PTR>(h)); }

inline std::string Utf8(const wchar_t* w, int length) {
  int n = WideCharToMultiByte(CP_UTF8, 0, w, length, nullptr, 0, nullptr, nullptr);
  std::string out(static_cast<std::size_t>(n), '\0');
  WideCharToMultiByte(CP_UTF8, 0, w, length, out.data(), n, nullptr, nullptr);
  return out;
}

inline BSTR Bstr(const std::string& utf8) {
  int n = MultiByteToWideChar(CP_UTF8, 0, utf8.data(), static_cast<int>(utf8.size()), nullptr, 0);
  BSTR b = SysAllocStringLen(nullptr, static_cast<UINT>(n));
  MultiByteToWideChar(CP_UTF8, 0, utf8.data(), static_cast<int>(utf8.size()), b, n);
  return b;
}

}  // namespace tamrix::win32
