// Letters A to Z made small, and nothing else: command words, file names and registry key names
// compared as Windows compares their ASCII letters, whatever the code page.
#pragma once

#include <string>

namespace tamrix {

inline std::string AsciiLower(std::string s) {
  for (char& c : s)
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  return s;
}

}  // namespace tamrix
