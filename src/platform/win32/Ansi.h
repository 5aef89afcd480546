// Text crosses into Windows in the system's ANSI code page; inside the program it is UTF-8.
#pragma once

#include <string>

namespace tamrix::win32 {

std::string ToAnsi(const std::string& utf8);
std::string FromAnsi(const char* ansi, std::size_t length);
inline std::string FromAnsi(const std::string& ansi) { return FromAnsi(ansi.data(), ansi.size()); }

}  // namespace tamrix::win32
