#include "etat/Etat.h"

#include <cstdio>

#include "platform/Ini.h"

namespace tamrix::etat {

namespace {

std::int32_t Dword(const std::string& raw) {
  std::uint32_t n = 0;
  for (std::size_t i = 0; i < 4 && i < raw.size(); ++i) n |= std::uint32_t(std::uint8_t(raw[i])) << (8 * i);
  return static_cast<std::int32_t>(n);
}

// The program stores its texts without a terminator and other tools with one; both read the
// same to Windows, so terminators at the end don't make a value different.
std::string WithoutTerminators(std::string s) {
  while (!s.empty() && s.back() == '\0') s.pop_back();
  return s;
}

bool Matches(std::uint32_t wantedType, const RegValue& wanted, std::uint32_t type, const std::string& data) {
  if (type != wantedType) return false;
  if (type == regtype::Dword) return data.size() == 4 && Dword(data) == wanted.ToInt32('.');
  if (type == regtype::Sz) return WithoutTerminators(data) == wanted.ToText();
  return false;
}

}  // namespace

Finding Inspect(Platform& p, const RegistryPlace& place) {
  Finding f;
  HKey key = 0;
  long s = p.RegOpenKeyExA(place.hive, place.keyPath, 0, kReadAccess, &key);
  if (s != status::Success) {
    f.state = s == status::FileNotFound ? State::KeyMissing : State::Denied;
    f.status = s;
    f.atKey = true;
    return f;
  }
  // A value that grows between the two queries is asked for again with its new size.
  for (int attempt = 0; attempt < 3; ++attempt) {
    std::uint32_t size = 0;
    s = p.RegQueryValueExA(key, place.valueName, &f.type, nullptr, &size);
    if (s == status::Success) s = p.RegQueryValueExA(key, place.valueName, &f.type, &f.data, &size);
    if (s != status::MoreData) break;
  }
  p.RegCloseKey(key);
  if (s != status::Success) {
    f.state = s == status::FileNotFound ? State::Absent : State::Denied;
    f.status = s;
    f.type = 0;
    f.data.clear();
    return f;
  }
  if (place.writes.empty()) {
    f.state = State::Present;
    return f;
  }
  f.state = State::Different;
  for (const RegValue& w : place.writes)
    if (Matches(place.type, w, f.type, f.data)) f.state = State::AlreadySo;
  return f;
}

ProfileFinding Inspect(Platform& p, const std::string& iniPath, const ProfilePlace& place) {
  // A default no file holds tells a missing key from an empty one.
  static const std::string kNone = "\x01\x02";
  std::string buffer;
  std::uint32_t n = p.GetPrivateProfileStringA(place.section, place.key, kNone, &buffer, 1024, iniPath);
  std::string value = buffer.substr(0, n);
  if (value == kNone) return {State::Absent, {}};
  return {value == place.value ? State::AlreadySo : State::Different, value};
}

std::string SystemIni(Platform& p) {
  std::string buffer(260, '\0');
  std::uint32_t n = p.GetWindowsDirectoryA(&buffer, 260);
  return ini::SystemIniPath(buffer.substr(0, n < 260 ? n : 0));
}

std::vector<CatalogueState> InspectAll(Platform& p, const std::vector<Catalogue>& catalogues) {
  std::string iniPath = SystemIni(p);
  std::vector<CatalogueState> all;
  for (const Catalogue& c : catalogues) {
    CatalogueState s{&c, {}, {}};
    for (const RegistryPlace& place : c.registry) s.registry.push_back(Inspect(p, place));
    for (const ProfilePlace& place : c.systemIni) s.systemIni.push_back(Inspect(p, iniPath, place));
    all.push_back(std::move(s));
  }
  return all;
}

std::string TypeName(std::uint32_t type) {
  switch (type) {
    case regtype::Sz: return "REG_SZ";
    case regtype::ExpandSz: return "REG_EXPAND_SZ";
    case regtype::Binary: return "REG_BINARY";
    case regtype::Dword: return "REG_DWORD";
    case regtype::MultiSz: return "REG_MULTI_SZ";
    default: return "type " + std::to_string(type);
  }
}

namespace {

std::string Quoted(const std::string& text) {
  std::string out = "\"";
  for (char c : text) {
    if (c == '\0')
      out += "\\0";
    else
      out += c;
  }
  return out + "\"";
}

std::string Hex(const std::string& raw) {
  std::string out;
  char b[4];
  for (unsigned char c : raw) {
    std::snprintf(b, sizeof b, out.empty() ? "%02x" : ",%02x", c);
    out += b;
  }
  return out;
}

}  // namespace

std::string Describe(std::uint32_t type, const std::string& data) {
  std::string shown;
  if (type == regtype::Dword && data.size() == 4)
    shown = std::to_string(Dword(data));
  else if (type == regtype::Sz || type == regtype::ExpandSz || type == regtype::MultiSz)
    shown = Quoted(WithoutTerminators(data));
  else
    shown = data.empty() ? "(vide)" : Hex(data);
  return shown + " (" + TypeName(type) + ")";
}

std::string Describe(std::uint32_t type, const RegValue& value) {
  if (type == regtype::Dword) return std::to_string(value.ToInt32('.')) + " (REG_DWORD)";
  return Quoted(value.ToText()) + " (" + TypeName(type) + ")";
}

}  // namespace tamrix::etat
