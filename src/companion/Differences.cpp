#include "companion/Differences.h"

#include <algorithm>

#include "companion/Backup.h"
#include "companion/CatalogueState.h"
#include "platform/AsciiCase.h"

namespace tamrix::companion {

namespace {

// What an import leaves behind, key by key, from the file's lines in their order: a [-KEY] takes
// away what came before it under that key, and a key put back under a deleted one holds exactly
// what the file lists, nothing else.
struct Expected {
  HKey hive;
  std::string path, name;
  bool exact = false;
  std::vector<RegFileValue> values;  // one per name: the last line wins, at the place of the first
};
struct Deletion {
  HKey hive;
  std::string path, name;
};

// The hive itself ("" path) holds every key.
bool Under(HKey hive, const std::string& path, HKey rootHive, const std::string& root) {
  if (hive != rootHive) return false;
  std::string p = AsciiLower(path), r = AsciiLower(root);
  return r.empty() || p == r || p.rfind(r + "\\", 0) == 0;
}

std::string HiveName(HKey h) { return h == hive::CurrentUser ? "HKEY_CURRENT_USER" : "HKEY_LOCAL_MACHINE"; }

Expected& Expect(std::vector<Expected>& keys, HKey hive, const std::string& path, const std::string& name, bool exact) {
  for (Expected& e : keys)
    if (e.hive == hive && AsciiLower(e.path) == AsciiLower(path)) {
      e.exact = e.exact || exact;
      return e;
    }
  keys.push_back({hive, path, name, exact, {}});
  return keys.back();
}

void Deleted(const RegFileKey& k, std::vector<Expected>& keys, std::vector<Deletion>& deletions) {
  std::erase_if(keys, [&](const Expected& e) { return Under(e.hive, e.path, k.hive, k.path); });
  for (const Deletion& d : deletions)
    if (d.hive == k.hive && AsciiLower(d.path) == AsciiLower(k.path)) return;
  deletions.push_back({k.hive, k.path, k.name});
}

void Put(const RegFileKey& k, std::vector<Expected>& keys, const std::vector<Deletion>& deletions) {
  const Deletion* root = nullptr;
  for (const Deletion& d : deletions)
    if (Under(k.hive, k.path, d.hive, d.path) && (!root || d.path.size() < root->path.size())) root = &d;
  if (root) {
    // The keys between the deleted one and this one are made again by the import, empty.
    std::string path = root->path;
    Expect(keys, k.hive, path, root->name, true);
    while (path.size() < k.path.size()) {
      std::size_t next = k.path.find('\\', path.size() + (path.empty() ? 0 : 1));
      path = k.path.substr(0, next == std::string::npos ? k.path.size() : next);
      Expect(keys, k.hive, path, HiveName(k.hive) + "\\" + path, true);
    }
  }
  Expected& e = Expect(keys, k.hive, k.path, k.name, root != nullptr);
  for (const RegFileValue& v : k.values) {
    auto same = std::find_if(e.values.begin(), e.values.end(), [&](const RegFileValue& w) { return AsciiLower(w.name) == AsciiLower(v.name); });
    if (same == e.values.end())
      e.values.push_back(v);
    else
      *same = v;
  }
}

long ReadStored(Platform& p, HKey key, const std::string& name, Stored& s) {
  long status = QueryStored(p, key, name, &s.type, &s.raw);
  s.present = status == status::Success;
  if (!s.present) s = {};
  return status;
}

// Windows reads a text the same with or without its terminators.
std::string Trimmed(std::uint32_t type, std::string raw) {
  if (type != regtype::Sz && type != regtype::ExpandSz) return raw;
  while (raw.size() >= 2 && raw.size() % 2 == 0 && raw[raw.size() - 1] == '\0' && raw[raw.size() - 2] == '\0')
    raw.resize(raw.size() - 2);
  return raw;
}

bool SameValue(const Stored& a, const Stored& b) {
  return a.type == b.type && Trimmed(a.type, a.raw) == Trimmed(b.type, b.raw);
}

Stored FromFile(const RegFileValue& v) { return {!v.deleted, v.type, v.raw}; }

// A key the file doesn't have, standing now: it and everything in it appeared.
void AppendTree(std::vector<KeyChange>& out, const KeyTree& tree, const std::string& name) {
  KeyChange k{name, Change::Appeared, 0, {}};
  if (tree.status != status::Success) {
    k.change = Change::Unreadable;
    k.status = tree.status;
  }
  for (const KeyTree::Value& v : tree.values) k.values.push_back({v.name, Change::Appeared, {}, {true, v.type, v.raw}, 0, 0});
  out.push_back(std::move(k));
  for (const KeyTree& sub : tree.subkeys) AppendTree(out, sub, name + "\\" + sub.name);
}

// Names of what the key holds now: its values, then its subkeys.
void Contents(Platform& p, HKey key, std::vector<KeyTree::Value>& values, std::vector<std::string>& subkeys) {
  KeyTree::Value v;
  for (std::uint32_t i = 0; p.RegEnumValueW(key, i, &v.name, &v.type, &v.raw) == status::Success; ++i) values.push_back(v);
  std::string name;
  for (std::uint32_t i = 0; p.RegEnumKeyExW(key, i, &name) == status::Success; ++i) subkeys.push_back(name);
}

void CompareKey(Platform& p, const Expected& e, const std::vector<Expected>& keys, std::uint32_t bits,
                std::vector<KeyChange>& out) {
  KeyChange k{e.name, Change::Same, 0, {}};
  HKey key = 0;
  long s = p.RegOpenKeyExA(e.hive, e.path, 0, keyaccess::Read | bits, &key);
  if (s != status::Success) {
    k.change = s == status::FileNotFound ? Change::Gone : Change::Unreadable;
    k.status = s == status::FileNotFound ? 0 : s;
    for (const RegFileValue& v : e.values) {
      Change c = k.change == Change::Unreadable ? Change::Unreadable : v.deleted ? Change::Same : Change::Gone;
      k.values.push_back({v.name, c, FromFile(v), {}, v.line, k.status});
    }
    out.push_back(std::move(k));
    return;
  }
  for (const RegFileValue& v : e.values) {
    ValueChange c{v.name, Change::Same, FromFile(v), {}, v.line, 0};
    long read = ReadStored(p, key, v.name, c.now);
    if (read != status::Success && read != status::FileNotFound) {
      c.change = Change::Unreadable;
      c.status = read;
    } else if (v.deleted) {
      c.change = c.now.present ? Change::Appeared : Change::Same;
    } else {
      c.change = !c.now.present ? Change::Gone : SameValue(c.before, c.now) ? Change::Same : Change::Changed;
    }
    k.values.push_back(std::move(c));
  }
  std::vector<KeyTree::Value> values;
  std::vector<std::string> subkeys;
  if (e.exact) Contents(p, key, values, subkeys);
  p.RegCloseKey(key);
  auto named = [&](const std::string& name) {
    return std::any_of(e.values.begin(), e.values.end(), [&](const RegFileValue& v) { return AsciiLower(v.name) == AsciiLower(name); });
  };
  for (const KeyTree::Value& v : values)
    if (!named(v.name)) k.values.push_back({v.name, Change::Appeared, {}, {true, v.type, v.raw}, 0, 0});
  out.push_back(std::move(k));
  for (const std::string& sub : subkeys) {
    std::string path = e.path.empty() ? sub : e.path + "\\" + sub;
    bool listed = std::any_of(keys.begin(), keys.end(), [&](const Expected& x) { return Under(x.hive, x.path, e.hive, path); });
    if (!listed) AppendTree(out, ReadTree(p, e.hive, path, bits), e.name + "\\" + sub);
  }
}

// A key named under WOW6432Node is the 32-bit view already: it is opened as named, in the 64-bit
// view, where that name stands.
std::uint32_t BitsFor(HKey hive, const std::string& path, std::uint32_t viewBits) {
  if (viewBits && hive == hive::LocalMachine && (AsciiLower(path) + "\\").rfind("software\\wow6432node\\", 0) == 0)
    return keyaccess::View64;
  return viewBits;
}

}  // namespace

std::vector<KeyChange> CompareRegistry(const RegFile& file, Platform& p, std::uint32_t viewBits) {
  std::vector<Expected> keys;
  std::vector<Deletion> deletions;
  for (const RegFileKey& k : file.keys) {
    if (!k.hive) continue;
    if (k.deleted)
      Deleted(k, keys, deletions);
    else
      Put(k, keys, deletions);
  }
  std::vector<KeyChange> out;
  for (const Expected& e : keys) CompareKey(p, e, keys, BitsFor(e.hive, e.path, viewBits), out);
  for (const Deletion& d : deletions) {
    bool putBack = std::any_of(keys.begin(), keys.end(), [&](const Expected& e) { return Under(e.hive, e.path, d.hive, d.path); });
    if (putBack) continue;
    KeyTree tree = ReadTree(p, d.hive, d.path, BitsFor(d.hive, d.path, viewBits));
    if (tree.status == status::FileNotFound)
      out.push_back({d.name, Change::Same, 0, {}});
    else
      AppendTree(out, tree, d.name);
  }
  return out;
}

namespace {

struct Section {
  std::string name;
  std::vector<std::pair<std::string, std::string>> keys;
};

std::string Trim(const std::string& s) {
  std::size_t a = s.find_first_not_of(" \t\r");
  if (a == std::string::npos) return {};
  return s.substr(a, s.find_last_not_of(" \t\r") - a + 1);
}

// As the profile functions read a file: the first section of a name and the first key of a name
// in it are the ones that count.
std::vector<Section> Sections(const std::string& text) {
  std::vector<Section> sections;
  Section* current = nullptr;
  std::size_t start = 0;
  while (start < text.size()) {
    std::size_t end = text.find('\n', start);
    if (end == std::string::npos) end = text.size();
    std::string line = Trim(text.substr(start, end - start));
    start = end + 1;
    if (line.empty() || line[0] == ';') continue;
    if (line[0] == '[') {
      std::string name = Trim(line.substr(1, line.find(']') == std::string::npos ? std::string::npos : line.find(']') - 1));
      current = nullptr;
      bool seen = std::any_of(sections.begin(), sections.end(), [&](const Section& s) { return AsciiLower(s.name) == AsciiLower(name); });
      if (!seen) current = &sections.emplace_back(Section{name, {}});
      continue;
    }
    std::size_t eq = line.find('=');
    if (!current || eq == std::string::npos) continue;
    std::string key = Trim(line.substr(0, eq));
    bool seen = std::any_of(current->keys.begin(), current->keys.end(), [&](const auto& k) { return AsciiLower(k.first) == AsciiLower(key); });
    if (!seen) current->keys.push_back({key, Trim(line.substr(eq + 1))});
  }
  return sections;
}

const Section* Find(const std::vector<Section>& sections, const std::string& name) {
  for (const Section& s : sections)
    if (AsciiLower(s.name) == AsciiLower(name)) return &s;
  return nullptr;
}

const std::string* Find(const Section* s, const std::string& key) {
  if (!s) return nullptr;
  for (const auto& k : s->keys)
    if (AsciiLower(k.first) == AsciiLower(key)) return &k.second;
  return nullptr;
}

}  // namespace

std::vector<IniChange> CompareIni(const std::string& before, const std::string& now) {
  std::vector<Section> was = Sections(before), is = Sections(now);
  std::vector<IniChange> out;
  for (const Section& s : was) {
    const Section* there = Find(is, s.name);
    for (const auto& [key, value] : s.keys) {
      const std::string* v = Find(there, key);
      out.push_back({s.name, key, value, v ? *v : "", !v ? Change::Gone : *v == value ? Change::Same : Change::Changed});
    }
  }
  for (const Section& s : is) {
    const Section* before = Find(was, s.name);
    for (const auto& [key, value] : s.keys)
      if (!Find(before, key)) out.push_back({s.name, key, "", value, Change::Appeared});
  }
  // Grouped by section, in the order the sections first come.
  std::stable_sort(out.begin(), out.end(), [&](const IniChange& a, const IniChange& b) {
    auto rank = [&](const std::string& name) {
      for (std::size_t i = 0; i < was.size(); ++i)
        if (AsciiLower(was[i].name) == AsciiLower(name)) return i;
      for (std::size_t i = 0; i < is.size(); ++i)
        if (AsciiLower(is[i].name) == AsciiLower(name)) return was.size() + i;
      return was.size() + is.size();
    };
    return rank(a.section) < rank(b.section);
  });
  return out;
}

bool AnyDifference(const Comparison& c) {
  for (const KeyChange& k : c.keys) {
    if (k.change != Change::Same) return true;
    for (const ValueChange& v : k.values)
      if (v.change != Change::Same) return true;
  }
  for (const IniChange& i : c.ini)
    if (i.change != Change::Same) return true;
  return false;
}

namespace {

int Refused(const Io& io, const std::string& sentence) {
  io.err("tamrix-etat : " + sentence + "\r\n");
  return kBadInput;
}

bool Says(const std::vector<std::string>& header, const std::string& words) {
  return std::any_of(header.begin(), header.end(), [&](const std::string& line) { return line.find(words) != std::string::npos; });
}

void CompareSystemIni(Comparison& c, const std::string& regPath, const RegFile& file, Platform& p, const Io& io) {
  std::string copyPath = IniCopyName(regPath);
  std::string iniPath = SystemIni(p);
  std::optional<std::string> copy = io.readFile(copyPath);
  std::string before;
  if (copy) {
    c.iniNote = "system.ini comparé à sa copie \"" + io.fromAnsi(copyPath) + "\".";
    before = *copy;
  } else if (c.backup && Says(file.header, "il n'existait pas lors de la sauvegarde")) {
    c.iniNote = "system.ini n'existait pas lors de la sauvegarde.";
  } else {
    if (c.backup)
      c.iniNote = "Pas de copie de system.ini à côté de la sauvegarde (\"" + io.fromAnsi(copyPath) +
                  "\") : system.ini n'est pas comparé.";
    return;
  }
  c.iniCompared = true;
  std::optional<std::string> now = io.readFile(io.toAnsi(iniPath));
  if (!now) c.iniNote += " \"" + iniPath + "\" n'existe pas maintenant.";
  c.ini = CompareIni(io.fromAnsi(before), io.fromAnsi(now.value_or("")));
}

}  // namespace

int Differences(const std::string& regPath, const DifferencesOptions& options, Platform& p, const Io& io,
                std::uint32_t ownView) {
  std::string shown = io.fromAnsi(regPath);
  std::optional<std::string> bytes = io.readFile(regPath);
  if (!bytes) return Refused(io, "le fichier \"" + shown + "\" est introuvable ou illisible.");
  std::optional<RegFile> file = ReadRegFile(*bytes, io.fromAnsi);
  if (!file)
    return Refused(io, "\"" + shown + "\" n'est pas un fichier de l'Éditeur du Registre : sa première ligne n'est ni "
                       "\"Windows Registry Editor Version 5.00\" ni \"REGEDIT4\".");
  Comparison c;
  c.file = shown;
  c.problems = file->problems;
  c.backup = !file->header.empty() && file->header[0].rfind("Tamrix Utility : sauvegarde", 0) == 0;
  std::uint32_t view = ownView;
  c.viewFrom = "celle du compagnon";
  if (options.view) {
    view = *options.view;
    c.viewFrom = "choisie par --vue";
  } else if (Says(file->header, "Vue du registre : celle du programme 32 bits.")) {
    view = keyaccess::View32;
    c.viewFrom = "celle de la sauvegarde";
  } else if (Says(file->header, "Vue du registre : celle du programme 64 bits.")) {
    view = keyaccess::View64;
    c.viewFrom = "celle de la sauvegarde";
  }
  bool two = TwoViews(p);
  c.view = !two ? 0 : view == keyaccess::View32 ? 32 : 64;
  for (const RegFileKey& k : file->keys)
    if (!k.hive && std::find(c.otherHives.begin(), c.otherHives.end(), k.name) == c.otherHives.end())
      c.otherHives.push_back(k.name);
  c.keys = CompareRegistry(*file, p, two ? view : 0);
  CompareSystemIni(c, regPath, *file, p, io);
  io.out(options.json ? DifferencesJson(c) : DifferencesText(c));
  return AnyDifference(c) ? 1 : kOk;
}

}  // namespace tamrix::companion
