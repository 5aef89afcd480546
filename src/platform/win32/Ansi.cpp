#include "platform/win32/Ansi.h"

#include <windows.h>

#include <vector>

namespace tamrix::win32 {

namespace {

std::string Convert(const char* text, std::size_t length, UINT from, UINT to) {
  if (length == 0) return {};
  int wide = MultiByteToWideChar(from, 0, text, static_cast<int>(length), nullptr, 0);
  std::vector<wchar_t> w(wide);
  MultiByteToWideChar(from, 0, text, static_cast<int>(length), w.data(), wide);
  int narrow = WideCharToMultiByte(to, 0, w.data(), wide, nullptr, 0, nullptr, nullptr);
  std::string out(narrow, '\0');
  WideCharToMultiByte(to, 0, w.data(), wide, out.data(), narrow, nullptr, nullptr);
  return out;
}

}  // namespace

std::string ToAnsi(const std::string& utf8) { return Convert(utf8.data(), utf8.size(), CP_UTF8, CP_ACP); }

std::string FromAnsi(const char* ansi, std::size_t length) { return Convert(ansi, length, CP_ACP, CP_UTF8); }

}  // namespace tamrix::win32
