// A file's bytes as the tests read them back, or "<absent>" where there is no file.
#pragma once

#include <cstdio>
#include <filesystem>
#include <string>

namespace tamrix::test {

inline std::string FileBytes(const std::filesystem::path& p) {
  std::FILE* f = std::fopen(p.string().c_str(), "rb");
  if (!f) return "<absent>";
  std::string s;
  char b[4096];
  std::size_t n;
  while ((n = std::fread(b, 1, sizeof b, f)) > 0) s.append(b, n);
  std::fclose(f);
  return s;
}

}  // namespace tamrix::test
