// Locale facts of the user's regional settings.
#include "platform/win32/Win32Platform.h"

#include <windows.h>
#include <oleauto.h>

#include <cstring>

#include "platform/win32/Ansi.h"
#include "platform/win32/Win32Internal.h"

namespace tamrix::win32 {

std::string Win32Platform::MonthName(int month) {
  if (month < 1 || month > 12) return "";
  char buf[80] = {};
  int n = GetLocaleInfoA(LOCALE_USER_DEFAULT, LOCALE_SMONTHNAME1 + static_cast<LCTYPE>(month - 1), buf, sizeof buf);
  return n > 0 ? FromAnsi(buf, strnlen(buf, sizeof buf)) : "";
}

int Win32Platform::ShortDateOrder() {
  char buf[8] = {};
  GetLocaleInfoA(LOCALE_USER_DEFAULT, LOCALE_IDATE, buf, sizeof buf);
  return buf[0] >= '0' && buf[0] <= '2' ? buf[0] - '0' : 0;
}

std::string Win32Platform::BooleanText(bool value) {
  BSTR text = nullptr;
  if (FAILED(VarBstrFromBool(value ? VARIANT_TRUE : VARIANT_FALSE, LOCALE_USER_DEFAULT, VAR_LOCALBOOL, &text)))
    return value ? "True" : "False";
  int n = WideCharToMultiByte(CP_UTF8, 0, text, static_cast<int>(SysStringLen(text)), nullptr, 0, nullptr, nullptr);
  std::string out(n, '\0');
  WideCharToMultiByte(CP_UTF8, 0, text, static_cast<int>(SysStringLen(text)), out.data(), n, nullptr, nullptr);
  SysFreeString(text);
  return out;
}

char Win32Platform::DecimalSign() {
  char buf[8] = {};
  GetLocaleInfoA(LOCALE_USER_DEFAULT, LOCALE_SDECIMAL, buf, sizeof buf);
  return buf[0] ? buf[0] : '.';
}

char Win32Platform::TimeSeparator() {
  char buf[8] = {};
  GetLocaleInfoA(LOCALE_USER_DEFAULT, LOCALE_STIME, buf, sizeof buf);
  return buf[0] ? buf[0] : ':';
}

}  // namespace tamrix::win32
