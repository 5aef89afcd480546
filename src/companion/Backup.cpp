#include "companion/Backup.h"

#include <cstdio>
#include <map>

#include "platform/Utf16.h"
#include "platform/AsciiCase.h"

namespace tamrix::companion {

namespace {

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

bool FitsALine(const std::string& s) { return s.find_first_of(std::string("\0\r\n", 3)) == std::string::npos; }

std::optional<std::string> NameField(const std::string& name) {
  if (!FitsALine(name)) return std::nullopt;
  return name.empty() ? std::string("@") : "\"" + Escaped(name) + "\"";
}

// A REG_SZ that the quoted form gives back byte for byte: its UTF-16 ends with one terminator,
// holds no other NUL and no line break, and reads as text.
std::optional<std::string> QuotedText(const std::string& raw) {
  if (raw.size() < 2 || raw.size() % 2 || raw[raw.size() - 1] != '\0' || raw[raw.size() - 2] != '\0')
    return std::nullopt;
  auto text = Utf16LeToUtf8(raw.substr(0, raw.size() - 2));
  if (!text || !FitsALine(*text)) return std::nullopt;
  return text;
}

}  // namespace

std::string IniCopyName(const std::string& regPath) {
  std::string base = regPath;
  std::size_t slash = base.find_last_of("\\/");
  std::size_t dot = base.rfind('.');
  if (dot != std::string::npos && (slash == std::string::npos || dot > slash)) {
    if (AsciiLower(base.substr(dot)) == ".reg") base.resize(dot);
  }
  return base + ".system.ini";
}

std::string KeyName(HKey hive, const std::string& keyPath, Naming naming) {
  std::string name = hive == hive::CurrentUser ? "HKEY_CURRENT_USER" : hive == hive::LocalMachine ? "HKEY_LOCAL_MACHINE" : "?";
  std::string path = keyPath, lower = AsciiLower(keyPath);
  if (naming.wow6432Node && hive == hive::LocalMachine && lower.rfind("software\\", 0) == 0 &&
      lower.rfind("software\\classes", 0) != 0 && lower.rfind("software\\wow6432node", 0) != 0)
    path = keyPath.substr(0, 8) + "\\WOW6432Node" + keyPath.substr(8);
  return name + "\\" + path;
}

// The catalogues' value names are the program's own, each on one line.
std::string DeletionLine(const std::string& name) { return NameField(name).value_or("@") + "=-"; }

std::optional<std::string> ValueLine(const std::string& name, std::uint32_t type, const std::string& raw) {
  auto field = NameField(name);
  if (!field) return std::nullopt;
  if (type == regtype::Sz)
    if (auto text = QuotedText(raw)) return *field + "=\"" + Escaped(*text) + "\"";
  if (type == regtype::Dword && raw.size() == 4) {
    std::uint32_t n = 0;
    for (std::size_t i = 0; i < 4; ++i) n |= std::uint32_t(std::uint8_t(raw[i])) << (8 * i);
    char b[16];
    std::snprintf(b, sizeof b, "dword:%08x", n);
    return *field + "=" + b;
  }
  // The type goes in hexadecimal, as the file's readers take it: REG_QWORD is hex(b).
  char kind[24];
  if (type == regtype::Binary)
    std::snprintf(kind, sizeof kind, "hex");
  else
    std::snprintf(kind, sizeof kind, "hex(%x)", static_cast<unsigned>(type));
  return *field + "=" + kind + ":" + HexBytes(raw);
}

std::string Utf16File(const std::string& utf8) {
  // The text is made here of UTF-8 that the program built itself, so it always converts.
  return std::string("\xff\xfe", 2) + Utf8ToUtf16Le(utf8).value_or(std::string());
}

namespace {

std::string Unreadable(long status) {
  return status == status::AccessDenied ? "illisible (accès refusé, code 5), laissée telle quelle"
                                        : "illisible (code " + std::to_string(status) + "), laissée telle quelle";
}

bool Complete(const KeyTree& tree) {
  if (tree.status != status::Success) return false;
  for (const KeyTree& sub : tree.subkeys)
    if (!Complete(sub)) return false;
  return true;
}

void WriteTree(std::string& out, const KeyTree& tree, const std::string& name) {
  if (!FitsALine(name)) {
    out += "; une sous-clé dont le nom tient sur plusieurs lignes ne peut pas être écrite\r\n\r\n";
    return;
  }
  if (tree.status != status::Success) {
    out += "; [" + name + "] : " + Unreadable(tree.status) + "\r\n\r\n";
    return;
  }
  out += "[" + name + "]\r\n";
  for (const KeyTree::Value& v : tree.values) {
    if (auto line = ValueLine(v.name, v.type, v.raw))
      out += *line + "\r\n";
    else
      out += "; une valeur dont le nom tient sur plusieurs lignes ne peut pas être écrite\r\n";
  }
  out += "\r\n";
  for (const KeyTree& sub : tree.subkeys) WriteTree(out, sub, name + "\\" + sub.name);
}

}  // namespace

std::string RegFileText(const std::vector<CatalogueState>& states, const std::vector<std::string>& header,
                        Naming naming) {
  // Keys in the order they first appear, each value once: the registry doesn't tell capitals
  // apart, and several catalogues write the same places.
  struct Key {
    std::string name;  // as first spelt
    bool missing = false, unreadable = false;  // the key itself could not be opened
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
      std::string name = KeyName(place.hive, place.keyPath, naming);
      auto [it, fresh] = index.emplace(AsciiLower(name), keys.size());
      if (fresh)
        keys.push_back({name, f.state == State::KeyMissing, f.atKey && !f.known, f.status, {}, {}});
      Key& key = keys[it->second];
      if (key.missing || key.unreadable) continue;
      if (key.seen[AsciiLower(place.valueName)]) continue;
      key.seen[AsciiLower(place.valueName)] = true;
      if (!f.known) {
        key.lines.push_back("; " + NameField(place.valueName).value_or("@") + " : " + Unreadable(f.status));
        continue;
      }
      key.lines.push_back(f.present ? ValueLine(place.valueName, f.type, f.raw).value_or("; ?") : DeletionLine(place.valueName));
    }
  }

  std::string out = "Windows Registry Editor Version 5.00\r\n\r\n";
  for (const std::string& line : header) out += "; " + line + "\r\n";
  if (!header.empty()) out += "\r\n";
  for (const Key& key : keys) {
    if (key.missing) {
      out += "; [" + key.name + "] : clé absente, laissée absente\r\n\r\n";
      continue;
    }
    if (key.unreadable) {
      out += "; [" + key.name + "] : " + Unreadable(key.status) + "\r\n\r\n";
      continue;
    }
    out += "[" + key.name + "]\r\n";
    for (const std::string& line : key.lines) out += line + "\r\n";
    out += "\r\n";
  }

  // The keys the program deletes come back whole: emptied first, so the import leaves them
  // exactly as they are now, or deleted where they aren't there now. One that could not be
  // read to the end is only put back as far as it was read, never emptied.
  std::map<std::string, bool> done;
  for (const CatalogueState& cs : states) {
    const Catalogue& c = *cs.catalogue;
    for (std::size_t i = 0; i < c.deletedKeys.size() && i < cs.deletedKeys.size(); ++i) {
      std::string name = KeyName(c.deletedKeys[i].hive, c.deletedKeys[i].keyPath, naming);
      if (done[AsciiLower(name)]) continue;
      done[AsciiLower(name)] = true;
      const KeyTree& tree = cs.deletedKeys[i];
      if (tree.status == status::FileNotFound) {
        out += "; clé que le programme supprime, absente lors de la sauvegarde\r\n[-" + name + "]\r\n\r\n";
        continue;
      }
      out += "; clé que le programme supprime, remise telle quelle avec tout ce qu'elle contient\r\n";
      if (Complete(tree)) out += "[-" + name + "]\r\n\r\n";
      WriteTree(out, tree, name);
    }
  }
  return out;
}

}  // namespace tamrix::companion
