#include "fake/FakePlatform.h"

#include <algorithm>
#include <cctype>
#include <cstdio>

#include "platform/Runtime.h"

namespace tamrix::fake {

namespace {

std::string Lower(std::string s) {
  std::transform(s.begin(), s.end(), s.begin(), [](unsigned char c) { return std::tolower(c); });
  return s;
}

std::string Hex(std::uint64_t v) {
  char buf[32];
  std::snprintf(buf, sizeof buf, "0x%llX", static_cast<unsigned long long>(v));
  return buf;
}

constexpr std::uint32_t kKeySetValue = 0x0002, kKeyCreateSubKey = 0x0004, kKeyCreateLink = 0x0020;
constexpr std::uint32_t kWriteRights = kKeySetValue | kKeyCreateSubKey | kKeyCreateLink;

std::uint32_t AnsiLength(const std::string& utf8) {
  std::uint32_t n = 0;
  for (unsigned char c : utf8)
    if ((c & 0xC0) != 0x80) ++n;
  return n;
}

// The first n characters of a UTF-8 text, each character counting as one ANSI byte.
std::string FirstChars(const std::string& utf8, std::uint32_t n) {
  std::size_t i = 0;
  std::uint32_t count = 0;
  while (i < utf8.size() && count < n) {
    ++i;
    while (i < utf8.size() && (static_cast<unsigned char>(utf8[i]) & 0xC0) == 0x80) ++i;
    ++count;
  }
  return utf8.substr(0, i);
}

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
    keys_[full];
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
  std::string full = subKey.empty() ? base : base + "\\" + Lower(subKey);
  auto it = keys_.find(full);
  if (it == keys_.end()) return status::FileNotFound;
  if (it->second.denyWrite && (samDesired & kWriteRights)) return status::AccessDenied;
  *result = nextHandle_++;
  handles_[*result] = {full, samDesired};
  return status::Success;
}

long FakePlatform::RegCloseKey(HKey key) {
  calls.push_back("RegCloseKey(" + std::string(key ? "key" : "0") + ")");
  return handles_.erase(key) ? status::Success : status::InvalidHandle;
}

long FakePlatform::RegQueryValueExA(HKey key, const std::string& valueName, std::uint32_t* type,
                                    std::string* data, std::uint32_t* size) {
  calls.push_back("RegQueryValueExA(" + std::string(key ? "key" : "0") + "," + valueName + "," +
                  (data ? "buffer " + std::to_string(*size) : std::string("no buffer")) + ")");
  std::string path;
  std::uint32_t access;
  if (!Resolve(key, &path, &access)) return status::InvalidHandle;
  auto it = keys_.find(path);
  if (it == keys_.end()) return status::FileNotFound;
  Value* v = FindValue(it->second, valueName);
  if (!v) return status::FileNotFound;
  std::uint32_t needed = SizeOf(*v);
  if (type) *type = v->type;
  if (!data) {
    if (size) *size = needed;
    return status::Success;
  }
  if (*size < needed) {
    *size = needed;
    return status::MoreData;
  }
  *data = v->data;
  *size = needed;
  return status::Success;
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

}  // namespace tamrix::fake
