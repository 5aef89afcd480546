#include "companion/RegFile.h"

#include "platform/Utf16.h"

namespace tamrix::companion {

namespace {

using FromAnsi = std::function<std::string(const std::string&)>;

// UTF-16 LE to UTF-8 that never refuses: a unit that can't stand alone becomes U+FFFD, an odd
// last byte is dropped. A file is read as far as it goes.
std::string Utf16Lenient(const std::string& bytes) {
  std::string out, unit;
  for (std::size_t i = 0; i + 1 < bytes.size(); i += 2) {
    unit.assign(bytes, i, 2);
    std::uint32_t u = std::uint8_t(bytes[i]) | std::uint32_t(std::uint8_t(bytes[i + 1])) << 8;
    if (u >= 0xD800 && u <= 0xDBFF && i + 3 < bytes.size()) {
      std::uint32_t low = std::uint8_t(bytes[i + 2]) | std::uint32_t(std::uint8_t(bytes[i + 3])) << 8;
      if (low >= 0xDC00 && low <= 0xDFFF) {
        unit.assign(bytes, i, 4);
        i += 2;
      }
    }
    out += Utf16LeToUtf8(unit).value_or("\xEF\xBF\xBD");
  }
  return out;
}

std::string Text(const std::string& bytes, const FromAnsi& fromAnsi) {
  if (bytes.size() >= 2 && bytes.compare(0, 2, "\xff\xfe", 2) == 0) return Utf16Lenient(bytes.substr(2));
  if (bytes.size() >= 3 && bytes.compare(0, 3, "\xef\xbb\xbf", 3) == 0) return bytes.substr(3);
  return fromAnsi(bytes);
}

std::vector<std::string> Lines(const std::string& text) {
  std::vector<std::string> lines;
  std::size_t start = 0;
  while (start <= text.size()) {
    std::size_t end = text.find('\n', start);
    if (end == std::string::npos) end = text.size();
    std::string line = text.substr(start, end - start);
    if (!line.empty() && line.back() == '\r') line.pop_back();
    lines.push_back(std::move(line));
    start = end + 1;
  }
  return lines;
}

bool Blank(char c) { return c == ' ' || c == '\t'; }
std::string TrimLeft(const std::string& s) {
  std::size_t i = 0;
  while (i < s.size() && Blank(s[i])) ++i;
  return s.substr(i);
}
std::string TrimRight(std::string s) {
  while (!s.empty() && Blank(s.back())) s.pop_back();
  return s;
}

int HexDigit(char c) {
  if (c >= '0' && c <= '9') return c - '0';
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  if (c >= 'A' && c <= 'F') return c - 'A' + 10;
  return -1;
}

// 1 to 8 hexadecimal digits, the whole text.
std::optional<std::uint32_t> HexNumber(const std::string& s) {
  if (s.empty() || s.size() > 8) return std::nullopt;
  std::uint32_t n = 0;
  for (char c : s) {
    int d = HexDigit(c);
    if (d < 0) return std::nullopt;
    n = n << 4 | static_cast<std::uint32_t>(d);
  }
  return n;
}

struct Hive {
  const char* name;
  HKey hive;
};
constexpr Hive kHives[] = {{"HKEY_CURRENT_USER", hive::CurrentUser}, {"HKEY_LOCAL_MACHINE", hive::LocalMachine},
                           {"HKEY_CLASSES_ROOT", 0}, {"HKEY_USERS", 0}, {"HKEY_CURRENT_CONFIG", 0}};

std::string Upper(std::string s) {
  for (char& c : s)
    if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
  return s;
}

// "[KEY]" or "[-KEY]": the key, or the reason it can't be read.
std::optional<std::string> KeyOf(const std::string& line, RegFileKey& key) {
  std::string trimmed = TrimRight(line);
  if (trimmed.back() != ']') return "il manque le crochet fermant de la clé.";
  key.deleted = trimmed.size() > 1 && trimmed[1] == '-';
  key.name = trimmed.substr(key.deleted ? 2 : 1, trimmed.size() - (key.deleted ? 3 : 2));
  if (key.name.empty()) return "la clé n'a pas de nom.";
  std::string first = Upper(key.name.substr(0, key.name.find('\\')));
  for (const Hive& h : kHives) {
    if (first != h.name) continue;
    key.hive = h.hive;
    key.path = key.name.size() > first.size() ? key.name.substr(first.size() + 1) : "";
    if (key.deleted && key.path.empty()) return "une ruche entière ne se supprime pas.";
    return std::nullopt;
  }
  return "la clé ne commence pas par le nom d'une ruche (HKEY_CURRENT_USER, HKEY_LOCAL_MACHINE...).";
}

// A quoted text from *at, just past its opening quote, to its closing quote; the file escapes the
// backslash and the quote only.
std::optional<std::string> Quoted(const std::string& s, std::size_t* at, std::string* why) {
  std::string out;
  for (std::size_t i = *at; i < s.size(); ++i) {
    if (s[i] == '"') {
      *at = i + 1;
      return out;
    }
    if (s[i] == '\\') {
      if (i + 1 >= s.size() || (s[i + 1] != '\\' && s[i + 1] != '"')) {
        *why = "séquence d'échappement inconnue (seuls \\\\ et \\\" sont admis entre guillemets).";
        return std::nullopt;
      }
      ++i;
    }
    out += s[i];
  }
  *why = "il manque le guillemet fermant.";
  return std::nullopt;
}

// "01,02,ff": bytes of one or two hexadecimal digits, separated by commas, blanks allowed around.
std::optional<std::string> HexList(const std::string& list) {
  std::string out;
  std::size_t i = 0;
  auto skip = [&] {
    while (i < list.size() && Blank(list[i])) ++i;
  };
  skip();
  while (i < list.size()) {
    int hi = HexDigit(list[i]);
    if (hi < 0) return std::nullopt;
    int value = hi;
    ++i;
    if (i < list.size() && HexDigit(list[i]) >= 0) value = value * 16 + HexDigit(list[i++]);
    out += static_cast<char>(value);
    skip();
    if (i == list.size()) break;
    if (list[i] != ',') return std::nullopt;
    ++i;
    skip();
  }
  return out;
}

// Texts of a REGEDIT4 file's hex lines are bytes of the ANSI code page; the registry keeps UTF-16.
std::string AnsiTextToUtf16(const std::string& bytes, const FromAnsi& fromAnsi) {
  std::string out;
  std::size_t start = 0;
  while (start <= bytes.size()) {
    std::size_t nul = bytes.find('\0', start);
    std::size_t end = nul == std::string::npos ? bytes.size() : nul;
    std::string piece = fromAnsi(bytes.substr(start, end - start));
    out += Utf8ToUtf16Le(piece).value_or(std::string());
    if (nul == std::string::npos) break;
    out += std::string(2, '\0');
    start = nul + 1;
  }
  return out;
}

bool IsText(std::uint32_t type) { return type == regtype::Sz || type == regtype::ExpandSz || type == regtype::MultiSz; }

std::optional<std::string> DataOf(const std::string& data, int version, const FromAnsi& fromAnsi, RegFileValue& v) {
  std::string why;
  if (data == "-") {
    v.deleted = true;
    return std::nullopt;
  }
  if (!data.empty() && data[0] == '"') {
    std::size_t at = 1;
    auto text = Quoted(data, &at, &why);
    if (!text) return why;
    if (!TrimLeft(data.substr(at)).empty()) return "du texte suit le guillemet fermant.";
    auto wide = Utf8ToUtf16Le(*text);
    if (!wide) return "le texte n'est pas lisible dans son codage.";
    v.type = regtype::Sz;
    v.raw = *wide + std::string(2, '\0');
    return std::nullopt;
  }
  std::string lower = data.substr(0, 6);
  for (char& c : lower)
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  if (lower == "dword:") {
    auto n = HexNumber(data.substr(6));
    if (!n) return "un dword prend de 1 à 8 chiffres hexadécimaux.";
    v.type = regtype::Dword;
    for (int i = 0; i < 4; ++i) v.raw += static_cast<char>((*n >> (8 * i)) & 0xFF);
    return std::nullopt;
  }
  std::string list;
  if (lower.rfind("hex:", 0) == 0) {
    v.type = regtype::Binary;
    list = data.substr(4);
  } else if (lower.rfind("hex(", 0) == 0) {
    std::size_t close = data.find("):");
    auto type = close == std::string::npos ? std::nullopt : HexNumber(data.substr(4, close - 4));
    if (!type) return "le type de hex(...) doit être un nombre hexadécimal de 1 à 8 chiffres.";
    v.type = *type;
    list = data.substr(close + 2);
  } else {
    return "donnée inconnue : ni \"texte\", ni dword:, ni hex:, ni - pour supprimer.";
  }
  auto bytes = HexList(list);
  if (!bytes) return "octets illisibles : deux chiffres hexadécimaux chacun, séparés par des virgules.";
  v.raw = version == 4 && IsText(v.type) ? AnsiTextToUtf16(*bytes, fromAnsi) : *bytes;
  return std::nullopt;
}

// A value line, with the lines that continue it (a hex list ends a line with a backslash).
// *next is the index of the line after it on return.
std::optional<std::string> ValueOf(const std::vector<std::string>& lines, std::size_t* next, int version,
                                   const FromAnsi& fromAnsi, RegFileValue& v) {
  std::string line = TrimLeft(lines[*next]);
  ++*next;
  std::size_t at = 1;
  std::string why;
  if (line[0] == '"') {
    auto name = Quoted(line, &at, &why);
    if (!name) return "nom de valeur illisible : " + why;
    v.name = *name;
  }
  while (at < line.size() && Blank(line[at])) ++at;
  if (at >= line.size() || line[at] != '=') return "il manque le signe = après le nom de la valeur.";
  std::string data = TrimRight(TrimLeft(line.substr(at + 1)));
  std::string start = data.substr(0, 4);
  for (char& c : start)
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  if (start == "hex:" || start == "hex(") {
    while (!data.empty() && data.back() == '\\' && *next < lines.size()) {
      data.pop_back();
      data += TrimRight(TrimLeft(lines[(*next)++]));
    }
    if (!data.empty() && data.back() == '\\') data.pop_back();
  }
  return DataOf(data, version, fromAnsi, v);
}

}  // namespace

std::optional<RegFile> ReadRegFile(const std::string& bytes, const FromAnsi& fromAnsi) {
  std::vector<std::string> lines = Lines(Text(bytes, fromAnsi));
  RegFile file;
  std::string first = TrimRight(lines[0]);
  if (first == "Windows Registry Editor Version 5.00")
    file.version = 5;
  else if (first == "REGEDIT4")
    file.version = 4;
  else
    return std::nullopt;
  bool inKey = false;  // the values that follow belong to a key that could be read
  bool badKey = false;  // they follow a key line that could not
  for (std::size_t i = 1; i < lines.size();) {
    std::size_t number = i + 1;
    std::string line = TrimLeft(lines[i]);
    if (line.empty() || line[0] == ';') {
      if (!line.empty() && file.keys.empty() && !badKey) file.header.push_back(TrimLeft(line.substr(1)));
      ++i;
      continue;
    }
    if (line[0] == '[') {
      ++i;
      RegFileKey key;
      key.line = number;
      if (auto why = KeyOf(line, key)) {
        file.problems.push_back({number, *why});
        inKey = false;
        badKey = true;
        continue;
      }
      file.keys.push_back(std::move(key));
      inKey = true;
      badKey = false;
      continue;
    }
    if (line[0] != '"' && line[0] != '@') {
      ++i;
      file.problems.push_back({number, "ligne illisible : ni [clé], ni \"valeur\"=..., ni @=..., ni ; commentaire."});
      continue;
    }
    RegFileValue v;
    v.line = number;
    auto why = ValueOf(lines, &i, file.version, fromAnsi, v);
    if (badKey) continue;  // its key line is reported already
    if (!why && !inKey) why = "valeur hors de toute clé : il faut une ligne [clé] avant elle.";
    if (!why && file.keys.back().deleted) why = "valeur sous une clé supprimée ([-...]) : l'import n'en fait rien.";
    if (why)
      file.problems.push_back({number, *why});
    else
      file.keys.back().values.push_back(std::move(v));
  }
  return file;
}

}  // namespace tamrix::companion
