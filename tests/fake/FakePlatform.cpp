#include "fake/FakePlatform.h"

#include <algorithm>
#include <cctype>
#include <cstdio>

#include "platform/AnsiText.h"
#include "platform/FileFaults.h"
#include "platform/Runtime.h"
#include "platform/Utf16.h"

namespace tamrix::fake {

std::string FakePlatform::Lower(std::string s) {
  std::transform(s.begin(), s.end(), s.begin(), [](unsigned char c) { return std::tolower(c); });
  return s;
}

namespace {

std::string Hex(std::uint64_t v) {
  char buf[32];
  std::snprintf(buf, sizeof buf, "0x%llX", static_cast<unsigned long long>(v));
  return buf;
}

constexpr std::uint32_t kKeySetValue = 0x0002, kKeyCreateSubKey = 0x0004, kKeyCreateLink = 0x0020;
constexpr std::uint32_t kWriteRights = kKeySetValue | kKeyCreateSubKey | kKeyCreateLink;



}  // namespace

std::string HiveName(HKey hive) {
  if (hive == hive::CurrentUser) return "HKCU";
  if (hive == hive::LocalMachine) return "HKLM";
  return Hex(hive);
}

std::string FakePlatform::Full(HKey hive, const std::string& path) {
  std::string full = HiveName(hive);
  if (!path.empty()) full += "\\" + path;
  return Lower(full);
}

void FakePlatform::CreateKey(HKey hive, const std::string& path) {
  std::string full = HiveName(hive);
  keys_[Lower(full)];
  std::size_t start = 0;
  while (start <= path.size() && !path.empty()) {
    std::size_t end = path.find('\\', start);
    full = Full(hive, path.substr(0, end));
    Key& k = keys_[full];
    if (k.spelt.empty()) {
      std::string upTo = path.substr(0, end);
      std::size_t last = upTo.find_last_of('\\');
      k.spelt = last == std::string::npos ? upTo : upTo.substr(last + 1);
    }
    if (end == std::string::npos) break;
    start = end + 1;
  }
}

bool FakePlatform::KeyExists(HKey hive, const std::string& path) const { return keys_.count(Full(hive, path)) > 0; }

FakePlatform::Value* FakePlatform::FindValue(Key& key, const std::string& name) {
  for (auto& [n, v] : key.values)
    if (Lower(n) == Lower(name)) return &v;
  return nullptr;
}

void FakePlatform::SetValue(HKey hive, const std::string& path, const std::string& name, std::uint32_t type,
                            std::string data) {
  CreateKey(hive, path);
  Key& key = keys_[Full(hive, path)];
  if (Value* v = FindValue(key, name)) {
    *v = {type, std::move(data)};
  } else {
    key.values.push_back({name, {type, std::move(data)}});
  }
}

void FakePlatform::SetDword(HKey hive, const std::string& path, const std::string& name, std::uint32_t data) {
  std::string bytes(4, '\0');
  for (int i = 0; i < 4; ++i) bytes[i] = static_cast<char>((data >> (8 * i)) & 0xFF);
  SetValue(hive, path, name, regtype::Dword, bytes);
}

const FakePlatform::Value* FakePlatform::GetValue(HKey hive, const std::string& path, const std::string& name) const {
  auto it = keys_.find(Full(hive, path));
  if (it == keys_.end()) return nullptr;
  for (auto& [n, v] : it->second.values)
    if (Lower(n) == Lower(name)) return &v;
  return nullptr;
}

std::uint32_t FakePlatform::SizeOf(const Value& v) {
  return v.type == regtype::Sz || v.type == regtype::ExpandSz || v.type == regtype::MultiSz
             ? AnsiLength(v.data)
             : static_cast<std::uint32_t>(v.data.size());
}

void FakePlatform::DenyWrite(HKey hive, const std::string& path) {
  CreateKey(hive, path);
  keys_[Full(hive, path)].denyWrite = true;
}

void FakePlatform::DeleteKeyTree(HKey hive, const std::string& path) {
  std::string full = Full(hive, path);
  for (auto it = keys_.begin(); it != keys_.end();)
    it = it->first == full || it->first.rfind(full + "\\", 0) == 0 ? keys_.erase(it) : std::next(it);
}

std::vector<std::string> FakePlatform::Subkeys(HKey hive, const std::string& path) const {
  std::string full = Full(hive, path);
  std::vector<std::string> names;
  for (const auto& [name, key] : keys_)
    if (name.rfind(full + "\\", 0) == 0 && name.find('\\', full.size() + 1) == std::string::npos)
      names.push_back(key.spelt);
  return names;
}

std::vector<std::pair<std::string, FakePlatform::Value>> FakePlatform::Values(HKey hive, const std::string& path) const {
  auto it = keys_.find(Full(hive, path));
  return it == keys_.end() ? std::vector<std::pair<std::string, Value>>{} : it->second.values;
}

bool FakePlatform::Resolve(HKey key, std::string* path, std::uint32_t* access) const {
  if (key == hive::CurrentUser || key == hive::LocalMachine) {
    *path = Lower(HiveName(key));
    *access = 0x3F;
    return true;
  }
  auto it = handles_.find(key);
  if (it == handles_.end()) return false;
  *path = it->second.path;
  *access = it->second.access;
  return true;
}

long FakePlatform::RegOpenKeyExA(HKey parent, const std::string& subKey, std::uint32_t options,
                                 std::uint32_t samDesired, HKey* result) {
  calls.push_back("RegOpenKeyExA(" + HiveName(parent) + "," + subKey + "," + std::to_string(options) + "," +
                  Hex(samDesired) + ")");
  *result = 0;
  std::string base;
  std::uint32_t access;
  if (!Resolve(parent, &base, &access)) return status::InvalidHandle;
  std::string full = subKey.empty() ? base : base + "\\" + Lower(InView(parent, subKey, samDesired));
  auto it = keys_.find(full);
  if (it == keys_.end()) return status::FileNotFound;
  if (it->second.denyWrite && (samDesired & kWriteRights)) return status::AccessDenied;
  *result = nextHandle_++;
  handles_[*result] = {full, samDesired};
  return status::Success;
}

std::string FakePlatform::InView(HKey parent, const std::string& subKey, std::uint32_t samDesired) const {
  if (!windows64 || parent != hive::LocalMachine) return subKey;
  bool view32 = (samDesired & keyaccess::View32) || (process32 && !(samDesired & keyaccess::View64));
  std::string lower = Lower(subKey);
  if (!view32 || lower.rfind("software\\", 0) != 0 || lower.rfind("software\\classes", 0) == 0 ||
      lower.rfind("software\\wow6432node", 0) == 0)
    return subKey;
  return subKey.substr(0, 9) + "WOW6432Node\\" + subKey.substr(9);
}

long FakePlatform::RegCloseKey(HKey key) {
  calls.push_back("RegCloseKey(" + std::string(key ? "key" : "0") + ")");
  return handles_.erase(key) ? status::Success : status::InvalidHandle;
}

long FakePlatform::FindForQuery(HKey key, const std::string& valueName, Value** found) {
  std::string path;
  std::uint32_t access;
  if (!Resolve(key, &path, &access)) return status::InvalidHandle;
  auto it = keys_.find(path);
  if (it == keys_.end()) return status::FileNotFound;
  *found = FindValue(it->second, valueName);
  return *found ? status::Success : status::FileNotFound;
}

namespace {

// What a query gives once the value is found: its type, then its size alone, or its bytes when
// the room offered holds them, and the size needed when it doesn't.
long Deliver(std::uint32_t valueType, std::uint32_t needed, const std::string& bytes, std::uint32_t* type,
             std::string* data, std::uint32_t* size) {
  if (type) *type = valueType;
  if (!data) {
    if (size) *size = needed;
    return status::Success;
  }
  if (*size < needed) {
    *size = needed;
    return status::MoreData;
  }
  *data = bytes;
  *size = needed;
  return status::Success;
}

}  // namespace

long FakePlatform::RegQueryValueExA(HKey key, const std::string& valueName, std::uint32_t* type,
                                    std::string* data, std::uint32_t* size) {
  calls.push_back("RegQueryValueExA(" + std::string(key ? "key" : "0") + "," + valueName + "," +
                  (data ? "buffer " + std::to_string(*size) : std::string("no buffer")) + ")");
  Value* v = nullptr;
  if (long found = FindForQuery(key, valueName, &v); found != status::Success) return found;
  return Deliver(v->type, SizeOf(*v), v->data, type, data, size);
}

long FakePlatform::RegSetValueExA(HKey key, const std::string& valueName, std::uint32_t type,
                                  const std::string& data, std::uint32_t size) {
  std::string shown = type == regtype::Dword ? std::to_string(static_cast<unsigned char>(data[0]) |
                                                              static_cast<unsigned char>(data[1]) << 8 |
                                                              static_cast<unsigned char>(data[2]) << 16 |
                                                              static_cast<unsigned>(static_cast<unsigned char>(data[3])) << 24)
                                             : data;
  calls.push_back("RegSetValueExA(" + std::string(key ? "key" : "0") + "," + valueName + "," + std::to_string(type) +
                  "," + shown + "," + std::to_string(size) + ")");
  std::string path;
  std::uint32_t access;
  if (!Resolve(key, &path, &access)) return status::InvalidHandle;
  if (!(access & kKeySetValue)) return status::AccessDenied;
  Key& k = keys_[path];
  std::string stored = type == regtype::Sz ? FirstChars(data, size) : data.substr(0, size);
  if (Value* v = FindValue(k, valueName)) {
    *v = {type, stored};
  } else {
    k.values.push_back({valueName, {type, stored}});
  }
  return status::Success;
}

long FakePlatform::RegDeleteKeyA(HKey parent, const std::string& subKey) {
  calls.push_back("RegDeleteKeyA(" + HiveName(parent) + "," + subKey + ")");
  std::string base;
  std::uint32_t access;
  if (!Resolve(parent, &base, &access)) return status::InvalidHandle;
  std::string full = base + "\\" + Lower(subKey);
  auto it = keys_.find(full);
  if (it == keys_.end()) return status::FileNotFound;
  // As on the NT family: a key that still has subkeys stays.
  auto next = std::next(it);
  if (next != keys_.end() && next->first.rfind(full + "\\", 0) == 0) return status::AccessDenied;
  keys_.erase(it);
  return status::Success;
}

std::string FakePlatform::WideBytes(const Value& v) {
  if (v.type != regtype::Sz && v.type != regtype::ExpandSz && v.type != regtype::MultiSz) return v.data;
  if (auto wide = Utf8ToUtf16Le(v.data)) return *wide;
  std::string out;  // bytes that are no UTF-8 are taken one a character, as Latin-1
  for (char c : v.data) out += std::string{c, '\0'};
  return out;
}

long FakePlatform::RegQueryValueExW(HKey key, const std::string& valueName, std::uint32_t* type, std::string* data,
                                    std::uint32_t* size) {
  calls.push_back("RegQueryValueExW(" + std::string(key ? "key" : "0") + "," + valueName + ")");
  Value* v = nullptr;
  if (long found = FindForQuery(key, valueName, &v); found != status::Success) return found;
  std::string bytes = WideBytes(*v);
  return Deliver(v->type, static_cast<std::uint32_t>(bytes.size()), bytes, type, data, size);
}

long FakePlatform::RegEnumValueW(HKey key, std::uint32_t index, std::string* name, std::uint32_t* type,
                                 std::string* data) {
  calls.push_back("RegEnumValueW(" + std::string(key ? "key" : "0") + "," + std::to_string(index) + ")");
  std::string path;
  std::uint32_t access;
  if (!Resolve(key, &path, &access)) return status::InvalidHandle;
  auto it = keys_.find(path);
  if (it == keys_.end()) return status::FileNotFound;
  if (index >= it->second.values.size()) return status::NoMoreItems;
  const auto& [n, v] = it->second.values[index];
  *name = n;
  *type = v.type;
  *data = WideBytes(v);
  return status::Success;
}

long FakePlatform::RegEnumKeyExW(HKey key, std::uint32_t index, std::string* name) {
  calls.push_back("RegEnumKeyExW(" + std::string(key ? "key" : "0") + "," + std::to_string(index) + ")");
  std::string path;
  std::uint32_t access;
  if (!Resolve(key, &path, &access)) return status::InvalidHandle;
  if (!keys_.count(path)) return status::FileNotFound;
  std::uint32_t n = 0;
  for (auto it = keys_.upper_bound(path + "\\"); it != keys_.end() && it->first.rfind(path + "\\", 0) == 0; ++it) {
    if (it->first.find('\\', path.size() + 1) != std::string::npos) continue;  // deeper down
    if (n++ == index) {
      *name = it->second.spelt;
      return status::Success;
    }
  }
  return status::NoMoreItems;
}

long FakePlatform::RegDeleteValueA(HKey key, const std::string& valueName) {
  calls.push_back("RegDeleteValueA(" + std::string(key ? "key" : "0") + "," + valueName + ")");
  std::string path;
  std::uint32_t access;
  if (!Resolve(key, &path, &access)) return status::InvalidHandle;
  auto& values = keys_[path].values;
  for (auto it = values.begin(); it != values.end(); ++it) {
    if (Lower(it->first) == Lower(valueName)) {
      values.erase(it);
      return status::Success;
    }
  }
  return status::FileNotFound;
}

bool FakePlatform::EarlierInstanceRunning() {
  calls.push_back("EarlierInstanceRunning");
  return earlierInstance;
}

void FakePlatform::StartProcess(const std::string& commandLine, ShowCommand show) {
  calls.push_back("StartProcess(" + commandLine + "," + std::to_string(static_cast<int>(show)) + ")");
  std::string program = commandLine.substr(0, commandLine.find(' '));
  if (missingPrograms.count(Lower(program))) throw rt::FileNotFound();
  started.push_back({commandLine, show});
}

int FakePlatform::MessageBoxA(const std::string& text, unsigned style, const std::string& title) {
  calls.push_back("MessageBoxA(" + title + ")");
  boxes.push_back({text, style, title});
  if (answers.empty()) return mb::IdOk;
  int a = answers.front();
  answers.pop_front();
  return a;
}

void FakePlatform::Beep() {
  calls.push_back("Beep");
  ++beeps;
}

RectPx FakePlatform::GetClientRect(WindowHandle window) {
  calls.push_back("GetClientRect(" + Hex(window) + ")");
  return clientRect;
}

GdiHandle FakePlatform::CreateRoundRectRgn(long left, long top, long right, long bottom, long ellipseWidth,
                                           long ellipseHeight) {
  GdiHandle h = nextGdi_++;
  calls.push_back("CreateRoundRectRgn(" + std::to_string(left) + "," + std::to_string(top) + "," +
                  std::to_string(right) + "," + std::to_string(bottom) + "," + std::to_string(ellipseWidth) + "," +
                  std::to_string(ellipseHeight) + ")=" + Hex(h));
  return h;
}

int FakePlatform::SetWindowRgn(WindowHandle window, GdiHandle region, bool redraw) {
  calls.push_back("SetWindowRgn(" + Hex(window) + "," + Hex(region) + "," + (redraw ? "true" : "false") + ")");
  return 1;
}

bool FakePlatform::DeleteObject(GdiHandle object) {
  calls.push_back("DeleteObject(" + Hex(object) + ")");
  return true;
}

bool FakePlatform::ReleaseCapture() {
  calls.push_back("ReleaseCapture");
  return true;
}

std::int64_t FakePlatform::SendMessageA(WindowHandle window, unsigned message, std::uint64_t wParam,
                                        std::int64_t lParam) {
  calls.push_back("SendMessageA(" + Hex(window) + "," + std::to_string(message) + "," + std::to_string(wParam) +
                  "," + std::to_string(lParam) + ")");
  return 0;
}

// Profile files as the platform's own functions treat them (the same expectations run against
// Wine's in the profile contract). Every call reads the file afresh: blank lines are dropped,
// each line is trimmed, a section header is the text between "[" and the first "]" (trimmed,
// whatever follows is lost), a line with "=" is a key and its value (both trimmed), any other
// line (a comment, say) is a key without a value. A write saves the whole file in that form
// with CRLF line ends: a new key goes at the end of its section, a new section at the end of
// the file, with no blank line; a key or section that exists keeps its own capitals. Lookups
// ignore case and surrounding blanks, and only the first of two sections of one name counts.
namespace {

struct ProfileEntry {
  std::string key;
  bool hasValue = false;
  std::string value;
};
struct ProfileSection {
  std::string name;  // "" for the lines before the first header
  std::vector<ProfileEntry> entries;
};

bool IsProfileBlank(char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; }

std::string Trim(const std::string& s) {
  std::size_t b = 0, e = s.size();
  while (b < e && IsProfileBlank(s[b])) ++b;
  while (e > b && IsProfileBlank(s[e - 1])) --e;
  return s.substr(b, e - b);
}

std::string TrimLeading(const std::string& s) {
  std::size_t b = 0;
  while (b < s.size() && IsProfileBlank(s[b])) ++b;
  return s.substr(b);
}

std::vector<ProfileSection> ParseProfile(const std::string& text) {
  std::vector<ProfileSection> sections(1);
  std::size_t start = 0;
  while (start < text.size()) {
    std::size_t end = text.find_first_of("\r\n", start);
    if (end == std::string::npos) end = text.size();
    std::string line = Trim(text.substr(start, end - start));
    start = end + 1;
    if (line.empty()) continue;
    if (line.front() == '[') {
      std::size_t close = line.find(']');
      if (close != std::string::npos) {
        sections.push_back({Trim(line.substr(1, close - 1)), {}});
        continue;
      }
    }
    std::size_t eq = line.find('=');
    if (eq == std::string::npos)
      sections.back().entries.push_back({line, false, ""});
    else
      sections.back().entries.push_back({Trim(line.substr(0, eq)), true, Trim(line.substr(eq + 1))});
  }
  return sections;
}

std::string SaveProfile(const std::vector<ProfileSection>& sections) {
  std::string text;
  for (const ProfileSection& section : sections) {
    if (!section.name.empty()) text += "[" + section.name + "]\r\n";
    for (const ProfileEntry& e : section.entries) text += e.key + (e.hasValue ? "=" + e.value : "") + "\r\n";
  }
  return text;
}

bool SameName(const std::string& stored, const std::string& asked) {
  return FakePlatform::Lower(Trim(stored)) == FakePlatform::Lower(Trim(asked));
}

ProfileSection* FindSection(std::vector<ProfileSection>& sections, const std::string& name) {
  for (ProfileSection& s : sections)
    if (SameName(s.name, name)) return &s;
  return nullptr;
}

ProfileEntry* FindEntry(ProfileSection& section, const std::string& key) {
  for (ProfileEntry& e : section.entries)
    if (SameName(e.key, key)) return &e;
  return nullptr;
}

}  // namespace

std::uint32_t FakePlatform::GetPrivateProfileStringA(const std::string& section, const std::string& key,
                                                     const std::string& defaultValue, std::string* buffer,
                                                     std::uint32_t size, const std::string& path) {
  calls.push_back("GetPrivateProfileStringA(" + section + "," + key + "," + std::to_string(size) + "," + path + ")");
  // The default loses its trailing blanks; a value found loses one pair of enclosing quotes.
  std::string value = defaultValue;
  while (!value.empty() && value.back() == ' ') value.pop_back();
  auto it = files.find(Lower(path));
  if (it != files.end()) {
    std::vector<ProfileSection> sections = ParseProfile(it->second);
    if (ProfileSection* s = FindSection(sections, section)) {
      if (ProfileEntry* e = FindEntry(*s, key); e && e->hasValue) {
        value = e->value.substr(0, e->value.find('\0'));  // a C string ends at its first NUL
        if (value.size() >= 2 && (value.front() == '"' || value.front() == '\'') && value.back() == value.front())
          value = value.substr(1, value.size() - 2);
      }
    }
  }
  if (size == 0) return 0;
  std::uint32_t n = std::min<std::uint32_t>(AnsiLength(value), size - 1);
  *buffer = FirstChars(value, n);
  return n;
}

bool FakePlatform::WritePrivateProfileStringA(const std::string& section, const std::string& key,
                                              const std::string& value, const std::string& path) {
  calls.push_back("WritePrivateProfileStringA(" + section + "," + key + "," + value + "," + path + ")");
  if (readOnlyFiles.count(Lower(path))) return false;
  auto it = files.find(Lower(path));
  std::vector<ProfileSection> sections = it != files.end() ? ParseProfile(it->second) : ParseProfile("");
  // New names and the value lose their leading blanks only: trailing ones reach the file, and
  // go at the next reading.
  ProfileSection* s = FindSection(sections, section);
  if (!s) {
    sections.push_back({TrimLeading(section), {}});
    s = &sections.back();
  }
  if (ProfileEntry* e = FindEntry(*s, key)) {
    e->hasValue = true;
    e->value = TrimLeading(value);
  } else {
    s->entries.push_back({TrimLeading(key), true, TrimLeading(value)});
  }
  files[Lower(path)] = SaveProfile(sections);
  return true;
}

std::uint32_t FakePlatform::GetWindowsDirectoryA(std::string* buffer, std::uint32_t size) {
  calls.push_back("GetWindowsDirectoryA(" + std::to_string(size) + ")");
  auto n = AnsiLength(windowsDirectory);
  // Too small a buffer is left as the system found it, which for the real platform is a fresh
  // one of zeros, the size asked for; the size needed comes back.
  if (n >= size) {
    *buffer = std::string(size, '\0');
    return n + 1;
  }
  *buffer = windowsDirectory;
  return n;
}

std::uint32_t FakePlatform::GetSystemDirectoryA(std::string* buffer, std::uint32_t size) {
  calls.push_back("GetSystemDirectoryA(" + std::to_string(size) + ")");
  auto n = AnsiLength(systemDirectory);
  // Too small a buffer is left as the system found it, which for the real platform is a fresh
  // one of zeros, the size asked for; the size needed comes back.
  if (n >= size) {
    *buffer = std::string(size, '\0');
    return n + 1;
  }
  *buffer = systemDirectory;
  return n;
}

MemoryStatus FakePlatform::GlobalMemoryStatus(std::uint32_t length) {
  calls.push_back("GlobalMemoryStatus(" + std::to_string(length) + ")");
  MemoryStatus m = memory;
  m.dwLength = length;
  return m;
}

std::string FakePlatform::LogicalDriveLetters() {
  calls.push_back("LogicalDriveLetters()");
  return driveLetters;
}

// Hardware: drives, WMI, priority, common controls, event pump.
namespace {

const FakePlatform::Volume* VolumeOf(const std::map<char, FakePlatform::Volume>& volumes, const std::string& root) {
  if (root.empty()) return nullptr;
  auto it = volumes.find(static_cast<char>(std::toupper(static_cast<unsigned char>(root[0]))));
  return it == volumes.end() ? nullptr : &it->second;
}

class FakeWmiObject : public WmiObject {
 public:
  FakeWmiObject(FakePlatform& p, FakePlatform::WmiProps props) : p_(p), props_(std::move(props)) {}
  WmiValue Get(const std::string& name) override {
    p_.calls.push_back("WmiGet(" + name + ")");
    for (const auto& [key, value] : props_)
      if (FakePlatform::Lower(key) == FakePlatform::Lower(name)) return value;
    throw RuntimeError(438, "Object doesn't support this property or method");
  }

 private:
  FakePlatform& p_;
  FakePlatform::WmiProps props_;
};

class FakeWmiCollection : public WmiCollection {
 public:
  FakeWmiCollection(WmiObjects objects, std::size_t failAt) : objects_(std::move(objects)), failAt_(failAt) {}
  std::shared_ptr<WmiObject> Next() override {
    if (next_ == failAt_) throw RuntimeError(-2147217406, "Automation error");
    return next_ < objects_.size() ? objects_[next_++] : nullptr;
  }

 private:
  WmiObjects objects_;
  std::size_t failAt_;
  std::size_t next_ = 0;
};

class FakeWmiService : public WmiService {
 public:
  explicit FakeWmiService(FakePlatform& p) : p_(p) {}
  WmiObjects ExecQuery(const std::string& query) override {
    p_.calls.push_back("ExecQuery(" + query + ")");
    if (p_.wmiQueryFails) throw RuntimeError(-2147217385, "Automation error");
    std::size_t from = FakePlatform::Lower(query).find(" from ");
    return Objects(from == std::string::npos ? std::string() : query.substr(from + 6));
  }
  std::shared_ptr<WmiCollection> InstancesOf(const std::string& className) override {
    p_.calls.push_back("InstancesOf(" + className + ")");
    if (p_.wmiQueryFails) throw RuntimeError(-2147217392, "Automation error");
    auto failing = p_.wmiFetchFailsAt.find(FakePlatform::Lower(className));
    std::size_t failAt = failing == p_.wmiFetchFailsAt.end() ? static_cast<std::size_t>(-1) : failing->second;
    return std::make_shared<FakeWmiCollection>(Objects(className), failAt);
  }

 private:
  WmiObjects Objects(const std::string& className) {
    WmiObjects out;
    for (const auto& [name, objects] : p_.wmiClasses)
      if (FakePlatform::Lower(name) == FakePlatform::Lower(className))
        for (const auto& props : objects) out.push_back(std::make_shared<FakeWmiObject>(p_, props));
    return out;
  }
  FakePlatform& p_;
};

}  // namespace

bool FakePlatform::GetVolumeInformationA(const std::string& root, std::string* volumeName,
                                         std::uint32_t* serialNumber, std::string* fileSystem) {
  calls.push_back("GetVolumeInformationA(" + root + ")");
  const Volume* v = VolumeOf(volumes, root);
  if (!v || !v->medium) return false;
  *volumeName = v->label;
  *serialNumber = v->serial;
  *fileSystem = v->fileSystem;
  return true;
}

bool FakePlatform::GetDiskFreeSpaceExA(const std::string& root, std::uint64_t* freeToCaller, std::uint64_t* totalBytes,
                                       std::uint64_t* totalFree) {
  calls.push_back("GetDiskFreeSpaceExA(" + root + ")");
  const Volume* v = VolumeOf(volumes, root);
  if (!v || !v->medium) return false;
  *freeToCaller = *totalFree = v->freeBytes;
  *totalBytes = v->totalBytes;
  return true;
}

std::uint32_t FakePlatform::GetDriveTypeA(const std::string& root) {
  calls.push_back("GetDriveTypeA(" + root + ")");
  const Volume* v = VolumeOf(volumes, root);
  return v ? v->type : 1;
}

std::string FakePlatform::GetCurrentDirectoryA() {
  calls.push_back("GetCurrentDirectoryA");
  return currentDirectory;
}

std::shared_ptr<WmiService> FakePlatform::WmiGetObject(const std::string& moniker) {
  calls.push_back("WmiGetObject(" + moniker + ")");
  if (wmiBindFails) throw RuntimeError(429, "ActiveX component can't create object");
  return std::make_shared<FakeWmiService>(*this);
}

std::uint64_t FakePlatform::GetCurrentProcess() {
  calls.push_back("GetCurrentProcess");
  return 0xFFFFFFFFFFFFFFFFull;  // the pseudo-handle of the process itself
}

bool FakePlatform::SetPriorityClass(std::uint64_t process, std::uint32_t cls) {
  calls.push_back("SetPriorityClass(" + Hex(process) + "," + std::to_string(cls) + ")");
  priorityClass = cls;
  return true;
}

void FakePlatform::InitCommonControls() { calls.push_back("InitCommonControls"); }

void FakePlatform::DoEvents() {
  ++doEvents;
  if (onDoEvents) onDoEvents();
}

std::string FakePlatform::MonthName(int month) {
  static const char* const kMonths[12] = {"janvier", "février", "mars",      "avril",   "mai",      "juin",
                                          "juillet", "août",    "septembre", "octobre", "novembre", "décembre"};
  return month >= 1 && month <= 12 ? kMonths[month - 1] : "";
}

std::uint32_t FakePlatform::GetTickCount() {
  if (tickSource) return tickSource();
  std::uint32_t now = tickCount;
  tickCount += tickStep;
  return now;
}

OsVersion FakePlatform::GetVersionExA(std::uint32_t size) {
  calls.push_back("GetVersionExA(" + std::to_string(size) + ")");
  return version;
}

std::int64_t FakePlatform::ShellExecuteA(WindowHandle owner, const std::string& verb, const std::string& file,
                                         const std::string& parameters, const std::string& directory, int show) {
  calls.push_back("ShellExecuteA(" + Hex(owner) + "," + verb + "," + file + "," + parameters + "," + directory + "," +
                  std::to_string(show) + ")");
  return 42;
}

std::uint64_t FakePlatform::SHBrowseForFolderA(WindowHandle owner, const std::string& title, std::uint32_t flags) {
  calls.push_back("SHBrowseForFolderA(" + Hex(owner) + "," + title + "," + std::to_string(flags) + ")");
  if (browseAnswers.empty() || !browseAnswers.front()) {
    if (!browseAnswers.empty()) browseAnswers.pop_front();
    return 0;
  }
  std::uint64_t item = nextItemList_++;
  itemLists_[item] = *browseAnswers.front();
  browseAnswers.pop_front();
  return item;
}

bool FakePlatform::SHGetPathFromIDListA(std::uint64_t itemList, std::string* path) {
  calls.push_back("SHGetPathFromIDListA(" + Hex(itemList) + ")");
  auto it = itemLists_.find(itemList);
  if (it == itemLists_.end() || it->second.empty() || AnsiLength(it->second) >= 260) {
    *path = "";
    return false;
  }
  *path = it->second;
  return true;
}

void FakePlatform::CoTaskMemFree(std::uint64_t itemList) {
  calls.push_back("CoTaskMemFree(" + Hex(itemList) + ")");
  freedItemLists.push_back(itemList);
}

// Audio mixers of winmm and the mouse pointer.
namespace {

std::string Field(const std::string& text, std::size_t length) {
  std::string f = text;
  f.resize(length, '\0');
  return f;
}

MixerLine Line(std::uint32_t type, std::uint32_t target, const std::string& shortName, const std::string& name,
               std::uint32_t connections) {
  MixerLine l;
  l.fdwLine = 1;
  l.dwComponentType = type;
  l.cChannels = 2;
  l.cControls = 2;
  l.cConnections = connections;
  l.szShortName = Field(shortName, mixerline::kShortNameLength);
  l.szName = Field(name, mixerline::kNameLength);
  l.Target.dwType = target;
  return l;
}

}  // namespace

FakePlatform::FakeMixer FakePlatform::SoundCard() {
  FakeMixer m;
  m.caps.vDriverVersion = 0x0501;
  m.caps.szPname = Field("Fake Sound Card", mixerline::kPnameLength);
  m.caps.cDestinations = 1;
  FakeDestination speakers;
  speakers.line = Line(4, 1, "Speakers", "Master Volume", 2);
  speakers.sources = {Line(4104, 1, "Wave", "Wave Out", 0), Line(4101, 0, "CD", "CD Audio", 0)};
  m.destinations = {speakers};
  return m;
}

std::uint32_t FakePlatform::mixerGetNumDevs() {
  calls.push_back("mixerGetNumDevs()");
  return static_cast<std::uint32_t>(mixers.size());
}

std::uint32_t FakePlatform::mixerGetDevCapsA(std::uint32_t deviceId, MixerCaps* caps, std::uint32_t size) {
  calls.push_back("mixerGetDevCapsA(" + std::to_string(deviceId) + "," + std::to_string(size) + ")");
  if (deviceId >= mixers.size()) return 2;  // MMSYSERR_BADDEVICEID
  if (size != mixerline::kCapsSize) return 11;  // MMSYSERR_INVALPARAM
  if (mixers[deviceId].capsError) return mixers[deviceId].capsError;
  *caps = mixers[deviceId].caps;
  return 0;
}

std::uint32_t FakePlatform::mixerOpen(MixerHandle* handle, std::uint32_t deviceId, std::uint64_t callback,
                                      std::uint64_t instance, std::uint32_t flags) {
  calls.push_back("mixerOpen(" + std::to_string(deviceId) + "," + std::to_string(callback) + "," +
                  std::to_string(instance) + "," + std::to_string(flags) + ")");
  if (deviceId >= mixers.size()) return 2;
  if (mixers[deviceId].openError) return mixers[deviceId].openError;
  *handle = nextMixer_++;
  openMixers.insert(*handle);
  mixerOfHandle_[*handle] = deviceId;
  return 0;
}

std::uint32_t FakePlatform::mixerClose(MixerHandle handle) {
  calls.push_back("mixerClose(" + Hex(handle) + ")");
  if (!openMixers.erase(handle)) return 5;  // MMSYSERR_INVALHANDLE
  return 0;
}

std::uint32_t FakePlatform::mixerGetLineInfoA(MixerHandle handle, MixerLine* line, std::uint32_t flags) {
  calls.push_back("mixerGetLineInfoA(" + Hex(handle) + "," + std::to_string(line->dwDestination) + "," +
                  (flags == mixerline::GetSource ? std::to_string(line->dwSource) + "," : std::string()) +
                  std::to_string(flags) + ")");
  if (!openMixers.count(handle)) return 5;
  if (line->cbStruct != mixerline::kSize) return 11;
  FakeMixer& m = mixers[mixerOfHandle_[handle]];
  std::uint32_t d = line->dwDestination, src = line->dwSource;
  if (d >= m.destinations.size()) return kInvalidLine;
  FakeDestination& dst = m.destinations[d];
  const MixerLine* found = nullptr;
  if (flags == mixerline::GetDestination) {
    if (dst.error) return dst.error;
    found = &dst.line;
  } else if (flags == mixerline::GetSource) {
    if (dst.sourceErrors.count(src)) return dst.sourceErrors[src];
    if (src >= dst.sources.size()) return kInvalidLine;
    found = &dst.sources[src];
  } else {
    return 10;  // MMSYSERR_INVALFLAG
  }
  std::uint32_t size = line->cbStruct;
  *line = *found;
  line->cbStruct = size;
  line->dwDestination = d;
  if (flags == mixerline::GetSource) line->dwSource = src;
  return 0;
}

// Tools window: special folders, display modes, shutdown, key filtering.
long FakePlatform::SHGetSpecialFolderLocation(WindowHandle owner, int folder, std::uint64_t* itemList) {
  calls.push_back("SHGetSpecialFolderLocation(" + Hex(owner) + "," + std::to_string(folder) + ")");
  auto it = specialFolders.find(folder);
  if (it == specialFolders.end()) {
    *itemList = 0;
    return static_cast<long>(0x80070057);  // E_INVALIDARG, as for a folder this system lacks
  }
  *itemList = nextItemList_++;
  itemLists_[*itemList] = it->second;
  return 0;
}

int FakePlatform::GetDeviceCaps(WindowHandle window, int index) {
  calls.push_back("GetDeviceCaps(" + Hex(window) + "," + std::to_string(index) + ")");
  return index == 12 ? bitsPerPixel : 0;
}

bool FakePlatform::EnumDisplaySettingsA(std::uint32_t modeNumber, DevMode* mode) {
  calls.push_back("EnumDisplaySettingsA(" + std::to_string(modeNumber) + ")");
  if (modeNumber >= displayModes.size()) return false;
  *mode = displayModes[modeNumber];
  return true;
}

long FakePlatform::ChangeDisplaySettingsA(const DevMode& mode, std::uint32_t flags) {
  calls.push_back("ChangeDisplaySettingsA(" + std::to_string(mode.dmPelsWidth) + "x" + std::to_string(mode.dmPelsHeight) +
                  "x" + std::to_string(mode.dmBitsPerPel) + "," + std::to_string(flags) + ")");
  changes.emplace_back(mode, flags);
  if (changeResults.empty()) return 0;
  long r = changeResults.front();
  changeResults.pop_front();
  return r;
}

bool FakePlatform::ExitWindowsEx(std::uint32_t flags, std::uint32_t reserved) {
  calls.push_back("ExitWindowsEx(" + std::to_string(flags) + "," + std::to_string(reserved) + ")");
  exitCalls.push_back(flags);
  return false;  // refused, as a process without the shutdown privilege is
}

}  // namespace tamrix::fake

// Tools window's file pages: open dialog, pictures, files and folders.
namespace tamrix::fake {

std::string FakePlatform::ParentOf(const std::string& path) {
  std::size_t slash = path.find_last_of('\\');
  return slash == std::string::npos ? std::string() : path.substr(0, slash);
}

bool FakePlatform::GetOpenFileNameA(WindowHandle owner, OpenFileRequest* request) {
  calls.push_back("GetOpenFileNameA(" + Hex(owner) + "," + std::to_string(request->flags) + ")");
  openRequests.push_back(*request);
  std::optional<std::string> answer;
  if (!openAnswers.empty()) {
    answer = openAnswers.front();
    openAnswers.pop_front();
  }
  if (!answer) return false;
  request->fileName = *answer;
  return true;
}

FakePlatform::PictureHandle FakePlatform::LoadPicture(const std::string& path) {
  calls.push_back("LoadPicture(" + path + ")");
  if (path.empty()) return 0;
  if (!HasFile(path)) throw rt::FileNotFound();
  const std::string& data = File(path);
  const bool picture = data.rfind("BM", 0) == 0 || data.rfind("\xFF\xD8", 0) == 0 ||
                       data.rfind(std::string("\0\0\1\0", 4), 0) == 0;
  if (!picture) throw rt::InvalidPicture();
  pictures[nextPicture_] = "file:" + path;
  return nextPicture_++;
}

FakePlatform::PictureHandle FakePlatform::LoadResourceIcon(int id) {
  calls.push_back("LoadResourceIcon(" + std::to_string(id) + ")");
  if (!iconResources.count(id)) return 0;
  pictures[nextPicture_] = "icon:" + std::to_string(id);
  return nextPicture_++;
}

FakePlatform::PictureHandle FakePlatform::LoadResourcePicture(const std::string& name) {
  calls.push_back("LoadResourcePicture(" + name + ")");
  pictures[nextPicture_] = "resource:" + name;
  return nextPicture_++;
}

void FakePlatform::ReleasePicture(PictureHandle picture) { pictures.erase(picture); }

void FakePlatform::SavePicture(PictureHandle picture, const std::string& path) {
  calls.push_back("SavePicture(" + path + ")");
  auto it = pictures.find(picture);
  if (picture == 0 || it == pictures.end()) throw rt::InvalidPropertyValue();
  if (!HasFolder(ParentOf(path))) throw rt::PathNotFound();
  if (readOnlyFiles.count(Lower(path))) throw rt::PathFileAccess();
  File(path) = "BM bitmap of " + it->second;
}

bool FakePlatform::FileExists(const std::string& path) {
  calls.push_back("FileExists(" + path + ")");
  return HasFile(path);
}

bool FakePlatform::FolderExists(const std::string& path) {
  calls.push_back("FolderExists(" + path + ")");
  return HasFolder(path);
}

bool FakePlatform::DeleteFileForce(const std::string& path) {
  calls.push_back("DeleteFileForce(" + path + ")");
  if (lockedFiles.count(Lower(path))) return false;
  fileAttributes.erase(Lower(path));
  return files.erase(Lower(path)) > 0;
}

bool FakePlatform::DeleteFilePlain(const std::string& path) {
  calls.push_back("DeleteFilePlain(" + path + ")");
  auto a = fileAttributes.find(Lower(path));
  if (lockedFiles.count(Lower(path)) || (a != fileAttributes.end() && (a->second & kReadOnly))) return false;
  if (a != fileAttributes.end()) fileAttributes.erase(a);
  return files.erase(Lower(path)) > 0;
}

void FakePlatform::WriteTextLines(const std::string& path, const std::vector<std::string>& lines) {
  calls.push_back("WriteTextLines(" + path + ")");
  if (!HasFolder(ParentOf(path))) throw rt::PathNotFound();
  if (readOnlyFiles.count(Lower(path))) throw rt::PathFileAccess();
  std::string text;
  for (const auto& line : lines) text += line + "\r\n";
  File(path) = text;
}

std::vector<std::string> FakePlatform::ListFolders(const std::string& path) {
  calls.push_back("ListFolders(" + path + ")");
  std::string prefix = Lower(path);
  if (prefix.empty() || prefix.back() != '\\') prefix += '\\';
  std::vector<std::string> names;
  for (const auto& f : folders)
    if (f.size() > prefix.size() && f.rfind(prefix, 0) == 0 && f.find('\\', prefix.size()) == std::string::npos)
      names.push_back(f.substr(prefix.size()));
  return names;
}

}  // namespace tamrix::fake
