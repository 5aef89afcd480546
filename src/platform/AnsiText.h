// Counting text as the ANSI functions count it. Inside the program text is UTF-8; the platform
// sees it in the system's single-byte code page, one byte a character, so sizes and cuts that the
// platform speaks of are in characters here.
#pragma once

#include <cstdint>
#include <string>

namespace tamrix {

// The number of characters, which is the ANSI size in bytes.
inline std::uint32_t AnsiLength(const std::string& utf8) {
  std::uint32_t n = 0;
  for (unsigned char c : utf8)
    if ((c & 0xC0) != 0x80) ++n;
  return n;
}

// The first n characters.
inline std::string FirstChars(const std::string& utf8, std::uint32_t n) {
  std::size_t i = 0;
  for (std::uint32_t count = 0; i < utf8.size() && count < n; ++count) {
    ++i;
    while (i < utf8.size() && (static_cast<unsigned char>(utf8[i]) & 0xC0) == 0x80) ++i;
  }
  return utf8.substr(0, i);
}

}  // namespace tamrix
