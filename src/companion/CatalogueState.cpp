#include "companion/CatalogueState.h"

#include <cstdio>

#include "platform/Ini.h"
#include "platform/Registre.h"
#include "platform/Utf16.h"

namespace tamrix::companion {

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

namespace {

bool IsText(std::uint32_t type) {
  return type == regtype::Sz || type == regtype::ExpandSz || type == regtype::MultiSz;
}

// The value as stored.
long ReadValue(Platform& p, HKey key, const std::string& name, Finding& f) {
  long s = QueryStored(p, key, name, &f.type, &f.raw);
  if (s != status::Success) {
    f.type = 0;
    f.raw.clear();
    return s;
  }
  f.present = true;
  if (!IsText(f.type)) {
    f.data = f.raw;
  } else if (auto text = Utf16LeToUtf8(f.raw)) {
    f.data = *text;
  } else {
    f.data = "(texte illisible)";
  }
  return s;
}

}  // namespace

Finding Inspect(Platform& p, const RegistryPlace& place, std::uint32_t view) {
  Finding f;
  HKey key = 0;
  long s = p.RegOpenKeyExA(place.hive, place.keyPath, 0, Registre::kAccessMask | view, &key);
  bool refused = s == status::AccessDenied;
  // Refused as the program opens it: what stands there is still shown where reading is allowed.
  if (refused) s = p.RegOpenKeyExA(place.hive, place.keyPath, 0, keyaccess::Read | view, &key);
  if (s != status::Success) {
    f.atKey = true;
    f.status = refused ? status::AccessDenied : s;
    f.known = !refused && s == status::FileNotFound;
    f.state = refused ? State::Refused : s == status::FileNotFound ? State::KeyMissing : State::Error;
    return f;
  }
  s = ReadValue(p, key, place.valueName, f);
  p.RegCloseKey(key);
  if (s != status::Success && s != status::FileNotFound) {
    f.known = false;
    f.status = s;
    f.state = refused ? State::Refused : s == status::AccessDenied ? State::Denied : State::Error;
    return f;
  }
  if (refused) {
    f.status = status::AccessDenied;
    f.state = State::Refused;
  } else if (!f.present) {
    f.state = State::Absent;
    f.status = s;
  } else if (place.writes.empty()) {
    f.state = State::Present;
  } else {
    f.state = State::Different;
    for (const RegValue& w : place.writes)
      if (Matches(place.type, w, f.type, f.data)) f.state = State::AlreadySo;
  }
  return f;
}

namespace {

void ReadTreeInto(Platform& p, HKey hive, const std::string& path, std::uint32_t view, KeyTree& tree, int depth) {
  HKey key = 0;
  tree.status = p.RegOpenKeyExA(hive, path, 0, keyaccess::Read | view, &key);
  if (tree.status != status::Success) return;
  std::vector<std::string> names;
  long s = status::Success;
  for (std::uint32_t i = 0; s == status::Success; ++i) {
    KeyTree::Value v;
    s = p.RegEnumValueW(key, i, &v.name, &v.type, &v.raw);
    if (s == status::Success) tree.values.push_back(std::move(v));
  }
  if (s == status::NoMoreItems) s = status::Success;
  for (std::uint32_t i = 0; s == status::Success; ++i) {
    std::string name;
    s = p.RegEnumKeyExW(key, i, &name);
    if (s == status::Success) names.push_back(std::move(name));
  }
  p.RegCloseKey(key);
  if (s != status::NoMoreItems) {
    tree.status = s;
    return;
  }
  // The registry goes 512 levels deep; a backup stops well before, and says so.
  if (depth > 64 && !names.empty()) {
    tree.status = status::MoreData;
    return;
  }
  for (const std::string& name : names) {
    KeyTree sub;
    sub.name = name;
    ReadTreeInto(p, hive, path + "\\" + name, view, sub, depth + 1);
    tree.subkeys.push_back(std::move(sub));
  }
}

}  // namespace

KeyTree ReadTree(Platform& p, HKey hive, const std::string& keyPath, std::uint32_t view) {
  KeyTree tree;
  std::size_t slash = keyPath.find_last_of('\\');
  tree.name = slash == std::string::npos ? keyPath : keyPath.substr(slash + 1);
  ReadTreeInto(p, hive, keyPath, view, tree, 0);
  return tree;
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

long QueryStored(Platform& p, HKey key, const std::string& name, std::uint32_t* type, std::string* raw) {
  long s = status::Success;
  for (int attempt = 0; attempt < 3; ++attempt) {
    std::uint32_t size = 0;
    s = p.RegQueryValueExW(key, name, type, nullptr, &size);
    if (s == status::Success) s = p.RegQueryValueExW(key, name, type, raw, &size);
    if (s != status::MoreData) break;
  }
  return s;
}

bool TwoViews(Platform& p) {
  HKey probe = 0;
  bool two = p.RegOpenKeyExA(hive::LocalMachine, "SOFTWARE\\WOW6432Node", 0, keyaccess::Read | keyaccess::View64,
                             &probe) == status::Success;
  if (probe) p.RegCloseKey(probe);
  return two;
}

std::string SystemIni(Platform& p) {
  std::string buffer(260, '\0');
  std::uint32_t n = p.GetWindowsDirectoryA(&buffer, 260);
  return ini::SystemIniPath(buffer.substr(0, n < 260 ? n : 0));
}

std::vector<CatalogueState> InspectAll(Platform& p, const std::vector<Catalogue>& catalogues, std::uint32_t view) {
  std::string iniPath = SystemIni(p);
  std::vector<CatalogueState> all;
  for (const Catalogue& c : catalogues) {
    CatalogueState s{&c, {}, {}, {}};
    for (const RegistryPlace& place : c.registry) s.registry.push_back(Inspect(p, place, view));
    for (const ProfilePlace& place : c.systemIni) s.systemIni.push_back(Inspect(p, iniPath, place));
    for (const KeyPlace& key : c.deletedKeys) s.deletedKeys.push_back(ReadTree(p, key.hive, key.keyPath, view));
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
    case regtype::Qword: return "REG_QWORD";
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

}  // namespace tamrix::companion
