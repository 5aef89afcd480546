// UTF-8 inside, UTF-16 little-endian where the registry keeps its texts and where a REGEDIT5
// file stands. Both directions are strict: the round trip gives back the same bytes, or says it
// can't (an unpaired surrogate, an odd count of bytes, a byte that is not UTF-8).
#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace tamrix {

// UTF-8 to UTF-16 LE bytes; nullopt when the text is not UTF-8.
inline std::optional<std::string> Utf8ToUtf16Le(const std::string& utf8) {
  std::string out;
  out.reserve(utf8.size() * 2);
  auto unit = [&out](std::uint32_t u) {
    out.push_back(static_cast<char>(u & 0xFF));
    out.push_back(static_cast<char>(u >> 8));
  };
  for (std::size_t i = 0; i < utf8.size();) {
    unsigned char c = static_cast<unsigned char>(utf8[i]);
    std::uint32_t cp;
    std::size_t n;
    if (c < 0x80) cp = c, n = 1;
    else if ((c & 0xE0) == 0xC0) cp = c & 0x1F, n = 2;
    else if ((c & 0xF0) == 0xE0) cp = c & 0x0F, n = 3;
    else if ((c & 0xF8) == 0xF0) cp = c & 0x07, n = 4;
    else return std::nullopt;
    if (i + n > utf8.size()) return std::nullopt;
    for (std::size_t k = 1; k < n; ++k) {
      unsigned char cc = static_cast<unsigned char>(utf8[i + k]);
      if ((cc & 0xC0) != 0x80) return std::nullopt;
      cp = (cp << 6) | (cc & 0x3F);
    }
    // Overlong forms, surrogates and what lies past the last plane are no UTF-8.
    static constexpr std::uint32_t kLeast[] = {0, 0, 0x80, 0x800, 0x10000};
    if (cp < kLeast[n] || cp > 0x10FFFF || (cp >= 0xD800 && cp <= 0xDFFF)) return std::nullopt;
    if (cp >= 0x10000) {
      cp -= 0x10000;
      unit(0xD800 | (cp >> 10));
      unit(0xDC00 | (cp & 0x3FF));
    } else {
      unit(cp);
    }
    i += n;
  }
  return out;
}

// UTF-16 LE bytes to UTF-8; nullopt for an odd count or an unpaired surrogate.
inline std::optional<std::string> Utf16LeToUtf8(const std::string& bytes) {
  if (bytes.size() % 2) return std::nullopt;
  std::string out;
  auto at = [&bytes](std::size_t i) {
    return static_cast<std::uint32_t>(static_cast<unsigned char>(bytes[i])) |
           static_cast<std::uint32_t>(static_cast<unsigned char>(bytes[i + 1])) << 8;
  };
  for (std::size_t i = 0; i < bytes.size(); i += 2) {
    std::uint32_t cp = at(i);
    if (cp >= 0xDC00 && cp <= 0xDFFF) return std::nullopt;
    if (cp >= 0xD800 && cp <= 0xDBFF) {
      if (i + 2 >= bytes.size()) return std::nullopt;
      std::uint32_t low = at(i + 2);
      if (low < 0xDC00 || low > 0xDFFF) return std::nullopt;
      cp = 0x10000 + ((cp - 0xD800) << 10) + (low - 0xDC00);
      i += 2;
    }
    if (cp < 0x80) {
      out.push_back(static_cast<char>(cp));
    } else if (cp < 0x800) {
      out.push_back(static_cast<char>(0xC0 | (cp >> 6)));
      out.push_back(static_cast<char>(0x80 | (cp & 0x3F)));
    } else if (cp < 0x10000) {
      out.push_back(static_cast<char>(0xE0 | (cp >> 12)));
      out.push_back(static_cast<char>(0x80 | ((cp >> 6) & 0x3F)));
      out.push_back(static_cast<char>(0x80 | (cp & 0x3F)));
    } else {
      out.push_back(static_cast<char>(0xF0 | (cp >> 18)));
      out.push_back(static_cast<char>(0x80 | ((cp >> 12) & 0x3F)));
      out.push_back(static_cast<char>(0x80 | ((cp >> 6) & 0x3F)));
      out.push_back(static_cast<char>(0x80 | (cp & 0x3F)));
    }
  }
  return out;
}

}  // namespace tamrix
