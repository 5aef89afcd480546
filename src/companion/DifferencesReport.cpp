// The two forms of "differences": French text grouped by key, for people, and one JSON object
// with the same facts, for scripts.
#include <array>
#include <cstdio>

#include "companion/CatalogueState.h"
#include "companion/Differences.h"
#include "companion/StateReport.h"
#include "platform/Utf16.h"

namespace tamrix::companion {

std::string ChangeWord(Change c) {
  switch (c) {
    case Change::Same: return "identique";
    case Change::Changed: return "changée";
    case Change::Gone: return "disparue";
    case Change::Appeared: return "apparue";
    case Change::Unreadable: return "illisible";
  }
  return {};
}

std::string ChangeCode(Change c) {
  switch (c) {
    case Change::Same: return "identique";
    case Change::Changed: return "changee";
    case Change::Gone: return "disparue";
    case Change::Appeared: return "apparue";
    case Change::Unreadable: return "illisible";
  }
  return {};
}

namespace {

bool IsText(std::uint32_t type) { return type == regtype::Sz || type == regtype::ExpandSz || type == regtype::MultiSz; }

// Texts in UTF-8, terminators and all, as etat shows them.
std::string Data(const Stored& s) {
  if (!IsText(s.type)) return s.raw;
  return Utf16LeToUtf8(s.raw).value_or("(texte illisible)");
}

std::string Shown(const Stored& s) { return Describe(s.type, Data(s)); }

std::string NameShown(const std::string& name) { return name.empty() ? "@" : "\"" + name + "\""; }

// Pads to a width counted in characters, not in the bytes of UTF-8.
std::string Padded(const std::string& s, std::size_t width) {
  std::size_t chars = 0;
  for (unsigned char c : s)
    if ((c & 0xC0) != 0x80) ++chars;
  return chars >= width ? s + " " : s + std::string(width - chars, ' ');
}

std::string Detail(const ValueChange& v) {
  switch (v.change) {
    case Change::Changed: return "avant " + Shown(v.before) + ", maintenant " + Shown(v.now);
    case Change::Gone: return "avant " + Shown(v.before) + ", maintenant absente";
    case Change::Appeared: return "absente du fichier, maintenant " + Shown(v.now);
    case Change::Unreadable: return "illisible maintenant (code " + std::to_string(v.status) + ")";
    case Change::Same: return "identique";
  }
  return {};
}

std::string IniDetail(const IniChange& i) {
  switch (i.change) {
    case Change::Changed: return "avant \"" + i.before + "\", maintenant \"" + i.now + "\"";
    case Change::Gone: return "avant \"" + i.before + "\", maintenant absente";
    case Change::Appeared: return "absente de la copie, maintenant \"" + i.now + "\"";
    default: return "identique";
  }
}

struct Tally {
  std::array<int, 5> values{};  // by Change
  std::array<int, 5> keys{};
  int Differing() const { return values[1] + values[2] + values[3] + values[4]; }
};

Tally Count(const Comparison& c) {
  Tally t;
  for (const KeyChange& k : c.keys) {
    ++t.keys[static_cast<std::size_t>(k.change)];
    for (const ValueChange& v : k.values) ++t.values[static_cast<std::size_t>(v.change)];
  }
  for (const IniChange& i : c.ini) ++t.values[static_cast<std::size_t>(i.change)];
  return t;
}

// French puts the plural on every word: "2 valeurs identiques".
std::string Counted(int n, const std::string& one, const std::string& many) {
  return std::to_string(n) + " " + (n > 1 ? many : one);
}
std::string Counted(int n, const std::string& word) { return Counted(n, word, word + "s"); }

std::string Summary(const Tally& t) {
  if (t.Differing() == 0 && t.keys[2] + t.keys[3] + t.keys[4] == 0)
    return "=> aucune différence : " + Counted(t.values[0], "valeur identique", "valeurs identiques") + ".\r\n";
  std::string s = "=> " + Counted(t.Differing(), "différence") + " : " + Counted(t.values[1], "changée") + ", " +
                  Counted(t.values[3], "apparue") + ", " + Counted(t.values[2], "disparue");
  if (t.values[4]) s += ", " + Counted(t.values[4], "illisible");
  s += " ; " + Counted(t.values[0], "identique");
  if (t.keys[2] || t.keys[3] || t.keys[4]) {
    s += " ; clés : " + Counted(t.keys[3], "apparue") + ", " + Counted(t.keys[2], "disparue");
    if (t.keys[4]) s += ", " + Counted(t.keys[4], "illisible");
  }
  return s + ".\r\n";
}

std::string KeyText(const KeyChange& k) {
  bool differs = k.change != Change::Same;
  for (const ValueChange& v : k.values) differs = differs || v.change != Change::Same;
  if (!differs) return {};
  std::string out = "[" + k.name + "]\r\n";
  if (k.change == Change::Gone) out += "  clé disparue : le fichier la remet, elle n'existe plus\r\n";
  if (k.change == Change::Appeared) out += "  clé apparue : le fichier ne l'a pas, elle existe maintenant\r\n";
  if (k.change == Change::Unreadable) out += "  clé illisible maintenant (code " + std::to_string(k.status) + ")\r\n";
  for (const ValueChange& v : k.values)
    if (v.change != Change::Same) out += "  " + Padded(ChangeWord(v.change), 10) + NameShown(v.name) + " : " + Detail(v) + "\r\n";
  return out + "\r\n";
}

}  // namespace

std::string DifferencesText(const Comparison& c) {
  std::string out = (c.backup ? "Ce qui a changé depuis la sauvegarde \"" : "Ce qui diffère du fichier \"") + c.file +
                    "\" sur cette machine.\r\n";
  if (c.view) out += "Vue du registre : " + std::to_string(c.view) + " bits (" + c.viewFrom + ").\r\n";
  if (!c.problems.empty()) {
    out += "Lignes illisibles, passées :\r\n";
    for (const RegFileProblem& p : c.problems) out += "  ligne " + std::to_string(p.line) + " : " + p.why + "\r\n";
  }
  for (const std::string& name : c.otherHives) out += "Clé d'une ruche que le compagnon ne compare pas : [" + name + "]\r\n";
  out += "\r\n";
  for (const KeyChange& k : c.keys) out += KeyText(k);
  if (!c.iniNote.empty()) out += c.iniNote + "\r\n";
  std::string section;
  for (const IniChange& i : c.ini) {
    if (i.change == Change::Same) continue;
    if (i.section != section) out += "system.ini [" + i.section + "]\r\n";
    section = i.section;
    out += "  " + Padded(ChangeWord(i.change), 10) + i.key + " : " + IniDetail(i) + "\r\n";
  }
  if (!c.iniNote.empty()) out += "\r\n";
  if (c.keys.empty() && c.ini.empty()) out += "Le fichier ne nomme aucune valeur.\r\n";
  return out + Summary(Count(c));
}

namespace {

std::string JsonData(const Stored& s) {
  if (!s.present) return "null";
  std::string data;
  if (s.type == regtype::Dword && s.raw.size() == 4) {
    std::uint32_t n = 0;
    for (std::size_t i = 0; i < 4; ++i) n |= std::uint32_t(std::uint8_t(s.raw[i])) << (8 * i);
    data = std::to_string(static_cast<std::int32_t>(n));
  } else if (IsText(s.type)) {
    std::string text = Data(s);
    if (s.type != regtype::MultiSz)
      while (!text.empty() && text.back() == '\0') text.pop_back();
    data = JsonString(text);
  } else {
    char b[4];
    for (unsigned char ch : s.raw) {
      std::snprintf(b, sizeof b, "%02x", ch);
      data += b;
    }
    data = JsonString(data);
  }
  return "{\"type\": " + JsonString(TypeName(s.type)) + ", \"donnee\": " + data + "}";
}

std::string JsonIniText(Change c, const std::string& text, bool before) {
  bool absent = before ? c == Change::Appeared : c == Change::Gone;
  return absent ? "null" : JsonString(text);
}

}  // namespace

std::string DifferencesJson(const Comparison& c) {
  Tally t = Count(c);
  std::string out = "{\"fichier\": " + JsonString(c.file) + ", \"sauvegarde\": " + (c.backup ? "true" : "false") +
                    ", \"vue\": " + (c.view ? std::to_string(c.view) : "null") + ", \"vue_selon\": " +
                    (c.view ? JsonString(c.viewFrom) : "null") + ",\r\n \"differences\": " + std::to_string(t.Differing()) +
                    ", \"identiques\": " + std::to_string(t.values[0]) + ",\r\n \"cles\": [";
  for (std::size_t k = 0; k < c.keys.size(); ++k) {
    const KeyChange& key = c.keys[k];
    out += std::string(k ? "," : "") + "\r\n  {\"cle\": " + JsonString(key.name) + ", \"etat\": " + JsonString(ChangeCode(key.change));
    if (key.status) out += ", \"code\": " + std::to_string(key.status);
    out += ", \"valeurs\": [";
    for (std::size_t i = 0; i < key.values.size(); ++i) {
      const ValueChange& v = key.values[i];
      out += std::string(i ? "," : "") + "\r\n    {\"nom\": " + JsonString(v.name) + ", \"etat\": " + JsonString(ChangeCode(v.change)) +
             ", \"ligne\": " + (v.line ? std::to_string(v.line) : "null") + ", \"avant\": " + JsonData(v.before) +
             ", \"maintenant\": " + JsonData(v.now);
      if (v.status) out += ", \"code\": " + std::to_string(v.status);
      out += "}";
    }
    out += "]}";
  }
  out += "],\r\n \"system_ini\": {\"compare\": " + std::string(c.iniCompared ? "true" : "false") +
         ", \"note\": " + JsonString(c.iniNote) + ", \"cles\": [";
  for (std::size_t i = 0; i < c.ini.size(); ++i) {
    const IniChange& x = c.ini[i];
    out += std::string(i ? "," : "") + "\r\n    {\"section\": " + JsonString(x.section) + ", \"cle\": " + JsonString(x.key) +
           ", \"etat\": " + JsonString(ChangeCode(x.change)) + ", \"avant\": " + JsonIniText(x.change, x.before, true) +
           ", \"maintenant\": " + JsonIniText(x.change, x.now, false) + "}";
  }
  out += "]},\r\n \"autres_ruches\": [";
  for (std::size_t i = 0; i < c.otherHives.size(); ++i) out += (i ? ", " : "") + JsonString(c.otherHives[i]);
  out += "],\r\n \"lignes_illisibles\": [";
  for (std::size_t i = 0; i < c.problems.size(); ++i)
    out += std::string(i ? ", " : "") + "{\"ligne\": " + std::to_string(c.problems[i].line) + ", \"raison\": " +
           JsonString(c.problems[i].why) + "}";
  return out + "]}\r\n";
}

}  // namespace tamrix::companion
