// The ANSI code page of a French system for the letters of Latin-1, as the tests' fromAnsi: each
// byte is the letter of the same number, given in UTF-8.
#pragma once

#include <string>

namespace tamrix::fake {

inline std::string Latin1(const std::string& s) {
  std::string out;
  for (unsigned char c : s) {
    if (c < 0x80) {
      out += static_cast<char>(c);
    } else {
      out += static_cast<char>(0xC0 | (c >> 6));
      out += static_cast<char>(0x80 | (c & 0x3F));
    }
  }
  return out;
}

}  // namespace tamrix::fake
