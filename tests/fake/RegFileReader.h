// A small reader of REGEDIT5 files, as "reg import" reads them, for the tests: the byte-order
// mark and UTF-16 LE, the first line, [key] and [-key], and value lines in their four forms
// ("text", dword:, hex:, hex(type):) or deleted (=-). It is strict where the companion's files
// must be exact: anything it can't read makes the whole file unreadable. ImportInto puts a file's
// keys into the fake machine as an import would.
#pragma once

#include <cstdint>
#include <cstdlib>
#include <optional>
#include <string>
#include <vector>

#include "fake/FakePlatform.h"
#include "platform/Utf16.h"

namespace tamrix::fake {

struct RegFileValue {
  std::string name;  // "" for the default value (@)
  bool deleted = false;
  std::uint32_t type = 0;
  std::string raw;  // as the registry keeps it: texts in UTF-16 LE
};

struct RegFileKey {
  std::string name;  // with the hive's full name
  bool deleted = false;
  std::vector<RegFileValue> values;
};

// The file's text: nullopt when it is no UTF-16 REGEDIT5 file.
inline std::optional<std::string> RegFileLines(const std::string& bytes) {
  if (bytes.size() < 2 || bytes.substr(0, 2) != std::string("\xff\xfe", 2)) return std::nullopt;
  return Utf16LeToUtf8(bytes.substr(2));
}

namespace regfile {

// A quoted text from *at (just past its opening quote) to its closing quote; \\ and \" only.
inline std::optional<std::string> Quoted(const std::string& line, std::size_t* at) {
  std::string out;
  for (std::size_t i = *at; i < line.size(); ++i) {
    if (line[i] == '"') {
      *at = i + 1;
      return out;
    }
    if (line[i] == '\\') {
      if (i + 1 >= line.size() || (line[i + 1] != '\\' && line[i + 1] != '"')) return std::nullopt;
      ++i;
    }
    out += line[i];
  }
  return std::nullopt;
}

inline std::optional<std::string> HexList(const std::string& text) {
  std::string out;
  if (text.empty()) return out;
  for (std::size_t i = 0;; i += 3) {
    if (i + 2 > text.size()) return std::nullopt;
    std::string two = text.substr(i, 2);
    if (two.find_first_not_of("0123456789abcdef") != std::string::npos) return std::nullopt;
    out += static_cast<char>(std::strtoul(two.c_str(), nullptr, 16));
    if (i + 2 == text.size()) return out;
    if (text[i + 2] != ',') return std::nullopt;
  }
}

inline std::optional<RegFileValue> ValueOf(const std::string& line) {
  RegFileValue v;
  std::size_t at = 0;
  if (line.rfind("@=", 0) == 0) {
    at = 1;
  } else if (!line.empty() && line[0] == '"') {
    at = 1;
    auto name = Quoted(line, &at);
    if (!name) return std::nullopt;
    v.name = *name;
  } else {
    return std::nullopt;
  }
  if (at >= line.size() || line[at] != '=') return std::nullopt;
  std::string data = line.substr(at + 1);
  if (data == "-") {
    v.deleted = true;
    return v;
  }
  if (!data.empty() && data[0] == '"') {
    std::size_t q = 1;
    auto text = Quoted(data, &q);
    if (!text || q != data.size()) return std::nullopt;
    auto wide = Utf8ToUtf16Le(*text);
    if (!wide) return std::nullopt;
    v.type = regtype::Sz;
    v.raw = *wide + std::string(2, '\0');
    return v;
  }
  if (data.rfind("dword:", 0) == 0) {
    std::string digits = data.substr(6);
    if (digits.size() != 8 || digits.find_first_not_of("0123456789abcdef") != std::string::npos) return std::nullopt;
    std::uint32_t n = static_cast<std::uint32_t>(std::strtoul(digits.c_str(), nullptr, 16));
    v.type = regtype::Dword;
    for (int i = 0; i < 4; ++i) v.raw += static_cast<char>((n >> (8 * i)) & 0xFF);
    return v;
  }
  std::string list;
  if (data.rfind("hex:", 0) == 0) {
    v.type = regtype::Binary;
    list = data.substr(4);
  } else if (data.rfind("hex(", 0) == 0) {
    std::size_t close = data.find("):");
    if (close == std::string::npos || close == 4 || close > 12) return std::nullopt;
    std::string t = data.substr(4, close - 4);
    if (t.find_first_not_of("0123456789abcdef") != std::string::npos) return std::nullopt;
    v.type = static_cast<std::uint32_t>(std::strtoul(t.c_str(), nullptr, 16));
    list = data.substr(close + 2);
  } else {
    return std::nullopt;
  }
  auto bytes = HexList(list);
  if (!bytes) return std::nullopt;
  v.raw = *bytes;
  return v;
}

}  // namespace regfile

inline std::optional<std::vector<RegFileKey>> ReadRegFile(const std::string& bytes) {
  auto text = RegFileLines(bytes);
  if (!text) return std::nullopt;
  std::vector<RegFileKey> keys;
  std::size_t start = 0;
  bool first = true;
  while (start < text->size()) {
    std::size_t end = text->find("\r\n", start);
    if (end == std::string::npos) return std::nullopt;  // every line ends with CR LF
    std::string line = text->substr(start, end - start);
    start = end + 2;
    if (first) {
      if (line != "Windows Registry Editor Version 5.00") return std::nullopt;
      first = false;
      continue;
    }
    if (line.empty() || line[0] == ';') continue;
    if (line[0] == '[') {
      if (line.back() != ']') return std::nullopt;
      RegFileKey key;
      key.deleted = line.size() > 1 && line[1] == '-';
      key.name = line.substr(key.deleted ? 2 : 1, line.size() - (key.deleted ? 3 : 2));
      keys.push_back(key);
      continue;
    }
    if (keys.empty() || keys.back().deleted) return std::nullopt;
    auto v = regfile::ValueOf(line);
    if (!v) return std::nullopt;
    keys.back().values.push_back(*v);
  }
  if (first) return std::nullopt;
  return keys;
}

// The hive and the path of a key's name in a file.
inline bool SplitKeyName(const std::string& name, HKey* hive, std::string* path) {
  for (auto [prefix, h] : {std::pair<const char*, HKey>{"HKEY_CURRENT_USER\\", hive::CurrentUser},
                           std::pair<const char*, HKey>{"HKEY_LOCAL_MACHINE\\", hive::LocalMachine}}) {
    std::string p(prefix);
    if (name.rfind(p, 0) == 0) {
      *hive = h;
      *path = name.substr(p.size());
      return true;
    }
  }
  return false;
}

// As an import does: a deleted key goes with everything in it, a key is made with its parents,
// values are set or deleted. Texts go into the fake in its own form, UTF-8.
inline void ImportInto(FakePlatform& m, const std::vector<RegFileKey>& keys) {
  for (const RegFileKey& key : keys) {
    HKey h = 0;
    std::string path;
    if (!SplitKeyName(key.name, &h, &path)) continue;
    if (key.deleted) {
      m.DeleteKeyTree(h, path);
      continue;
    }
    m.CreateKey(h, path);
    for (const RegFileValue& v : key.values) {
      if (v.deleted) {
        HKey k = 0;
        if (m.RegOpenKeyExA(h, path, 0, 0x3F, &k) == status::Success) {
          m.RegDeleteValueA(k, v.name);
          m.RegCloseKey(k);
        }
        continue;
      }
      bool text = v.type == regtype::Sz || v.type == regtype::ExpandSz || v.type == regtype::MultiSz;
      m.SetValue(h, path, v.name, v.type, text ? Utf16LeToUtf8(v.raw).value_or(v.raw) : v.raw);
    }
  }
}

}  // namespace tamrix::fake
