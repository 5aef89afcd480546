#include "companion/StateReport.h"

#include <array>
#include <cstdio>

namespace tamrix::companion {

namespace {

constexpr std::array<State, kStateCount> kStates = {State::AlreadySo, State::Different, State::Absent,
                                                    State::KeyMissing, State::Refused,  State::Denied,
                                                    State::Error,     State::Present};
constexpr std::size_t kPresentAt = 7;

std::string HiveShort(HKey h) { return h == hive::CurrentUser ? "HKCU" : h == hive::LocalMachine ? "HKLM" : "?"; }
std::string HiveLong(HKey h) {
  return h == hive::CurrentUser ? "HKEY_CURRENT_USER" : h == hive::LocalMachine ? "HKEY_LOCAL_MACHINE" : "?";
}

// Pads to a width counted in characters, not in the bytes of UTF-8.
std::string Padded(const std::string& s, std::size_t width) {
  std::size_t chars = 0;
  for (unsigned char c : s)
    if ((c & 0xC0) != 0x80) ++chars;
  return chars >= width ? s + " " : s + std::string(width - chars, ' ');
}

std::string Would(const RegistryPlace& place) {
  if (place.writes.empty()) return "(varie)";
  std::string out;
  for (const RegValue& w : place.writes) out += (out.empty() ? "" : " ou ") + Describe(place.type, w);
  if (!place.note.empty()) out += " [" + place.note + "]";
  return out;
}

std::string Now(const Finding& f) {
  switch (f.state) {
    case State::KeyMissing: return "(pas de clé)";
    case State::Absent: return "(aucune valeur)";
    case State::Denied: return "(illisible : accès refusé, code " + std::to_string(f.status) + ")";
    case State::Error: return "(illisible : erreur " + std::to_string(f.status) + ")";
    case State::Refused:
      if (!f.known) return "(illisible aussi en lecture)";
      return f.present ? Describe(f.type, f.data) : "(aucune valeur)";
    default: return Describe(f.type, f.data);
  }
}

std::string Summary(const std::array<int, kStateCount>& counts, bool onlyPresent) {
  if (onlyPresent) {
    std::string s = "  => " + std::to_string(counts[kPresentAt]) + " lecteur(s) permanent(s)";
    if (counts[3]) s += " ; clé manquante : le programme perdrait ces valeurs en silence";
    if (counts[4]) s += " ; refusé : le programme perdrait ces valeurs en silence";
    if (counts[5]) s += " ; accès refusé : " + std::to_string(counts[5]);
    if (counts[6]) s += " ; erreur : " + std::to_string(counts[6]);
    return s + "\r\n";
  }
  int total = 0;
  for (int n : counts) total += n;
  std::string s = "  => " + std::to_string(total) + " lignes : ";
  for (std::size_t i = 0; i < kPresentAt; ++i) {
    s += (i ? ", " : "") + StateWord(kStates[i]) + " " + std::to_string(counts[i]);
    if ((kStates[i] == State::KeyMissing || kStates[i] == State::Refused) && counts[i])
      s += " (lignes que le programme perdrait en silence)";
  }
  return s + "\r\n";
}

std::array<int, kStateCount> Count(const CatalogueState& cs) {
  std::array<int, kStateCount> counts{};
  for (const Finding& f : cs.registry) ++counts[static_cast<std::size_t>(f.state)];
  for (const ProfileFinding& f : cs.systemIni) ++counts[static_cast<std::size_t>(f.state)];
  return counts;
}

}  // namespace

std::string StateWord(State s) {
  switch (s) {
    case State::AlreadySo: return "déjà ainsi";
    case State::Different: return "différent";
    case State::Absent: return "absent";
    case State::KeyMissing: return "clé manquante";
    case State::Refused: return "refusé";
    case State::Denied: return "accès refusé";
    case State::Error: return "erreur";
    case State::Present: return "présent";
  }
  return {};
}

std::string StateCode(State s) {
  switch (s) {
    case State::AlreadySo: return "deja_ainsi";
    case State::Different: return "different";
    case State::Absent: return "absent";
    case State::KeyMissing: return "cle_manquante";
    case State::Refused: return "refuse";
    case State::Denied: return "acces_refuse";
    case State::Error: return "erreur";
    case State::Present: return "present";
  }
  return {};
}

namespace {

std::string AdminLine(bool admin) {
  return admin ? "Lu avec les droits d'administrateur : les refus sont ceux que rencontrerait le programme lancé ainsi.\r\n"
               : "Lu sans les droits d'administrateur : les lignes HKLM refusées ici le seraient aussi au programme "
                 "lancé de même.\r\n";
}

}  // namespace

std::string TextReport(const std::vector<CatalogueState>& states, bool admin) {
  std::string out;
  for (const CatalogueState& cs : states) {
    const Catalogue& c = *cs.catalogue;
    out += c.title + "\r\n";
    if (!c.note.empty()) out += "  " + c.note + "\r\n";
    bool keyMissingShown = false;
    for (std::size_t i = 0; i < c.registry.size(); ++i) {
      const RegistryPlace& place = c.registry[i];
      const Finding& f = cs.registry[i];
      if (c.onlyPresent) {
        // A drive letter with no value is no news; a key that can't be seen is, once.
        if (f.state == State::Absent) continue;
        if (!f.present) {
          if (keyMissingShown) continue;
          keyMissingShown = true;
          out += "  " + Padded(StateWord(f.state), 14) + HiveShort(place.hive) + "\\" + place.keyPath + "\r\n";
          continue;
        }
      }
      out += "  " + Padded(StateWord(f.state), 14) + HiveShort(place.hive) + "\\" + place.keyPath + " \"" +
             place.valueName + "\" | écrirait " + Would(place) + " | a " + Now(f) + "\r\n";
    }
    for (std::size_t i = 0; i < c.systemIni.size(); ++i) {
      const ProfilePlace& place = c.systemIni[i];
      const ProfileFinding& f = cs.systemIni[i];
      out += "  " + Padded(StateWord(f.state), 14) + "system.ini [" + place.section + "] " + place.key +
             " | écrirait \"" + place.value + "\" | a " +
             (f.state == State::Absent ? std::string("(aucune valeur)") : "\"" + f.value + "\"") + "\r\n";
    }
    out += Summary(Count(cs), c.onlyPresent) + "\r\n";
  }
  return out + AdminLine(admin);
}

namespace {

void AppendJsonString(std::string& out, const std::string& s) {
  out += '"';
  for (std::size_t i = 0; i < s.size();) {
    unsigned char c = s[i];
    std::uint32_t cp = c;
    std::size_t len = 1;
    if (c >= 0xF0 && i + 3 < s.size()) {
      cp = ((c & 0x07u) << 18) | ((s[i + 1] & 0x3Fu) << 12) | ((s[i + 2] & 0x3Fu) << 6) | (s[i + 3] & 0x3Fu);
      len = 4;
    } else if (c >= 0xE0 && i + 2 < s.size()) {
      cp = ((c & 0x0Fu) << 12) | ((s[i + 1] & 0x3Fu) << 6) | (s[i + 2] & 0x3Fu);
      len = 3;
    } else if (c >= 0xC0 && i + 1 < s.size()) {
      cp = ((c & 0x1Fu) << 6) | (s[i + 1] & 0x3Fu);
      len = 2;
    }
    i += len;
    char b[16];
    if (cp == '"' || cp == '\\') {
      out += '\\';
      out += static_cast<char>(cp);
    } else if (cp >= 0x20 && cp < 0x7F) {
      out += static_cast<char>(cp);
    } else if (cp >= 0x10000) {
      cp -= 0x10000;
      std::snprintf(b, sizeof b, "\\u%04x\\u%04x", 0xD800 + (cp >> 10), 0xDC00 + (cp & 0x3FF));
      out += b;
    } else {
      std::snprintf(b, sizeof b, "\\u%04x", cp);
      out += b;
    }
  }
  out += '"';
}

}  // namespace

std::string JsonString(const std::string& s) {
  std::string out;
  AppendJsonString(out, s);
  return out;
}

namespace {

std::string JsonValue(std::uint32_t type, const std::string& data) {
  if (type == regtype::Dword && data.size() == 4) {
    std::uint32_t n = 0;
    for (std::size_t i = 0; i < 4; ++i) n |= std::uint32_t(std::uint8_t(data[i])) << (8 * i);
    return std::to_string(static_cast<std::int32_t>(n));
  }
  if (type == regtype::Sz || type == regtype::ExpandSz || type == regtype::MultiSz) return JsonString(data);
  std::string hex;
  char b[4];
  for (unsigned char c : data) {
    std::snprintf(b, sizeof b, "%02x", c);
    hex += b;
  }
  return JsonString(hex);
}

}  // namespace

std::string JsonReport(const std::vector<CatalogueState>& states, bool admin) {
  std::string out = std::string("{\"administrateur\": ") + (admin ? "true" : "false") + ", \"catalogues\": [";
  bool firstCatalogue = true;
  for (const CatalogueState& cs : states) {
    const Catalogue& c = *cs.catalogue;
    out += firstCatalogue ? "\r\n  {" : ",\r\n  {";
    firstCatalogue = false;
    out += "\"titre\": " + JsonString(c.title) + ", \"note\": " + JsonString(c.note) + ", \"lignes\": [";
    bool first = true;
    for (std::size_t i = 0; i < c.registry.size(); ++i) {
      const RegistryPlace& place = c.registry[i];
      const Finding& f = cs.registry[i];
      if (c.onlyPresent && !f.present && (f.state == State::Absent || (f.state == State::Refused && f.known))) continue;
      out += first ? "\r\n    {" : ",\r\n    {";
      first = false;
      out += "\"ruche\": " + JsonString(HiveLong(place.hive)) + ", \"cle\": " + JsonString(place.keyPath) +
             ", \"valeur\": " + JsonString(place.valueName) + ", \"type\": " + JsonString(TypeName(place.type)) +
             ", \"ecrirait\": [";
      for (std::size_t w = 0; w < place.writes.size(); ++w) {
        const RegValue& v = place.writes[w];
        out += (w ? ", " : "") + (place.type == regtype::Dword ? std::to_string(v.ToInt32('.')) : JsonString(v.ToText()));
      }
      out += "], \"etat\": " + JsonString(StateCode(f.state));
      if (f.present)
        out += ", \"type_actuel\": " + JsonString(TypeName(f.type)) + ", \"actuel\": " + JsonValue(f.type, f.data);
      if (f.state == State::Denied || f.state == State::Refused || f.state == State::Error)
        out += ", \"code\": " + std::to_string(f.status);
      out += "}";
    }
    for (std::size_t i = 0; i < c.systemIni.size(); ++i) {
      const ProfilePlace& place = c.systemIni[i];
      const ProfileFinding& f = cs.systemIni[i];
      out += first ? "\r\n    {" : ",\r\n    {";
      first = false;
      out += "\"fichier\": \"system.ini\", \"section\": " + JsonString(place.section) + ", \"cle\": " +
             JsonString(place.key) + ", \"ecrirait\": [" + JsonString(place.value) + "], \"etat\": " +
             JsonString(StateCode(f.state));
      if (f.state != State::Absent) out += ", \"actuel\": " + JsonString(f.value);
      out += "}";
    }
    out += "],\r\n   \"resume\": {";
    auto counts = Count(cs);
    for (std::size_t i = 0; i < kStates.size(); ++i)
      out += (i ? ", " : "") + JsonString(StateCode(kStates[i])) + ": " + std::to_string(counts[i]);
    out += "}}";
  }
  return out + "\r\n]}\r\n";
}

}  // namespace tamrix::companion
