#include "etat/Sauvegarde.h"

#include <cstdio>
#include <map>

namespace tamrix::etat {

namespace {

std::string HiveName(HKey h) {
  return h == hive::CurrentUser ? "HKEY_CURRENT_USER" : h == hive::LocalMachine ? "HKEY_LOCAL_MACHINE" : "?";
}

std::string Lower(std::string s) {
  for (char& c : s)
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  return s;
}

// Inside double quotes the file escapes the backslash and the quote, and nothing else.
std::string Escaped(const std::string& s) {
  std::string out;
  for (char c : s) {
    if (c == '\\' || c == '"') out += '\\';
    out += c;
  }
  return out;
}

std::string HexBytes(const std::string& raw) {
  std::string out;
  char b[4];
  for (unsigned char c : raw) {
    std::snprintf(b, sizeof b, out.empty() ? "%02x" : ",%02x", c);
    out += b;
  }
  return out;
}

bool IsText(std::uint32_t type) {
  return type == regtype::Sz || type == regtype::ExpandSz || type == regtype::MultiSz;
}

// A text the quoted form gives back byte for byte: one terminator at the end and no other NUL,
// and no line break, which a quoted text can't hold.
bool QuotedFormKeepsIt(const std::string& data) {
  if (data.empty() || data.back() != '\0') return false;
  return data.find_first_of(std::string("\0\r\n", 3)) == data.size() - 1;
}

}  // namespace

std::string RegLine(const std::string& valueName, const Finding& f,
                    const std::function<std::string(const std::string&)>& toAnsi) {
  std::string name = valueName.empty() ? "@" : "\"" + Escaped(valueName) + "\"";
  if (f.state == State::Absent) return name + "=-";
  if (f.type == regtype::Sz && QuotedFormKeepsIt(f.data))
    return name + "=\"" + Escaped(f.data.substr(0, f.data.size() - 1)) + "\"";
  if (f.type == regtype::Dword && f.data.size() == 4) {
    std::uint32_t n = 0;
    for (std::size_t i = 0; i < 4; ++i) n |= std::uint32_t(std::uint8_t(f.data[i])) << (8 * i);
    char b[16];
    std::snprintf(b, sizeof b, "dword:%08x", n);
    return name + "=" + b;
  }
  std::string bytes = IsText(f.type) ? toAnsi(f.data) : f.data;
  std::string kind = f.type == regtype::Binary ? "hex" : "hex(" + std::to_string(f.type) + ")";
  return name + "=" + kind + ":" + HexBytes(bytes);
}

std::string RegFileText(const std::vector<CatalogueState>& states, const std::vector<std::string>& header,
                        const std::function<std::string(const std::string&)>& toAnsi) {
  // Keys in the order they first appear, each value once: the registry doesn't tell capitals
  // apart, and several catalogues write the same places.
  struct Key {
    std::string name;  // as first spelt
    bool missing = false, denied = false;  // the key itself could not be opened
    long status = 0;
    std::vector<std::string> lines;
    std::map<std::string, bool> seen;
  };
  std::vector<Key> keys;
  std::map<std::string, std::size_t> index;
  for (const CatalogueState& cs : states) {
    const Catalogue& c = *cs.catalogue;
    for (std::size_t i = 0; i < c.registry.size(); ++i) {
      const RegistryPlace& place = c.registry[i];
      const Finding& f = cs.registry[i];
      std::string name = HiveName(place.hive) + "\\" + place.keyPath;
      auto [it, fresh] = index.emplace(Lower(name), keys.size());
      if (fresh)
        keys.push_back({name, f.state == State::KeyMissing, f.atKey && f.state == State::Denied, f.status, {}, {}});
      Key& key = keys[it->second];
      if (key.missing || key.denied) continue;
      if (key.seen[Lower(place.valueName)]) continue;
      key.seen[Lower(place.valueName)] = true;
      if (f.state == State::Denied) {
        key.lines.push_back("; \"" + Escaped(place.valueName) + "\" : illisible (accès refusé, code " +
                            std::to_string(f.status) + "), laissée telle quelle");
        continue;
      }
      key.lines.push_back(RegLine(place.valueName, f, toAnsi));
    }
  }

  std::string out = "REGEDIT4\r\n\r\n";
  for (const std::string& line : header) out += "; " + line + "\r\n";
  if (!header.empty()) out += "\r\n";
  for (const Key& key : keys) {
    if (key.missing) {
      out += "; [" + key.name + "] : clé absente, laissée absente\r\n\r\n";
      continue;
    }
    if (key.denied) {
      out += "; [" + key.name + "] : illisible (accès refusé, code " + std::to_string(key.status) +
             "), laissée telle quelle\r\n\r\n";
      continue;
    }
    out += "[" + key.name + "]\r\n";
    for (const std::string& line : key.lines) out += line + "\r\n";
    out += "\r\n";
  }
  return out;
}

}  // namespace tamrix::etat
