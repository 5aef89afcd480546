#include "platform/WmiMoniker.h"

#include <cctype>

namespace tamrix::wmi {

namespace {

std::string Lower(std::string s) {
  for (char& c : s) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  return s;
}

}  // namespace

Moniker ParseMoniker(const std::string& moniker) {
  Moniker m;
  const std::string lower = Lower(moniker);
  if (lower.rfind("winmgmts:", 0) != 0) return m;
  std::string rest = moniker.substr(9);
  if (!rest.empty() && rest[0] == '{') {
    std::size_t close = rest.find('}');
    if (close == std::string::npos) return m;
    std::string braces = Lower(rest.substr(1, close - 1));
    const std::pair<const char*, std::uint32_t> levels[] = {
        {"impersonationlevel=anonymous", 1}, {"impersonationlevel=identify", 2},
        {"impersonationlevel=impersonate", 3}, {"impersonationlevel=delegate", 4}};
    for (const auto& [text, level] : levels)
      if (braces.find(text) != std::string::npos) m.level = level;
    rest = rest.substr(close + 1);
  }
  if (!rest.empty() && rest[0] == '!') rest = rest.substr(1);
  if (!rest.empty()) m.path = rest;
  m.valid = true;
  return m;
}

std::uint32_t ImpersonationLevel(const Moniker& m, std::optional<std::uint32_t> scriptingDefault) {
  if (m.level) return *m.level;
  if (scriptingDefault && *scriptingDefault >= 1 && *scriptingDefault <= 4) return *scriptingDefault;
  return kImpersonate;
}

}  // namespace tamrix::wmi
