#include "e2e/RegistrySnapshot.h"

#include <cstring>

#include <algorithm>
#include <fstream>
#include <iterator>

namespace tamrix::e2e {

std::string Lower(std::string s) {
  std::transform(s.begin(), s.end(), s.begin(), [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  return s;
}

std::optional<StoredValue> ReadValue(HKEY hive, const std::string& path, const std::string& name) {
  HKEY k;
  if (RegOpenKeyExA(hive, path.c_str(), 0, KEY_QUERY_VALUE, &k) != ERROR_SUCCESS) return std::nullopt;
  DWORD type = 0, size = 0;
  LONG s = RegQueryValueExA(k, name.c_str(), nullptr, &type, nullptr, &size);
  StoredValue v;
  if (s == ERROR_SUCCESS) {
    v.type = type;
    v.bytes.resize(size);
    s = RegQueryValueExA(k, name.c_str(), nullptr, &type, reinterpret_cast<BYTE*>(v.bytes.data()), &size);
    v.bytes.resize(size);
  }
  RegCloseKey(k);
  if (s != ERROR_SUCCESS) return std::nullopt;
  return v;
}

RegistrySnapshot::RegistrySnapshot(std::vector<Place> places) {
  for (auto& p : places) saved_.push_back({p, ReadValue(p.hive, p.path, p.name)});
}

void RegistrySnapshot::CreateKeys() {
  for (const auto& s : saved_) {
    const Place& p = s.place;
    if (KeyExists(p.hive, p.path)) continue;
    // The highest missing key is the one to remove afterwards.
    std::size_t at = 0;
    for (;;) {
      std::size_t next = p.path.find('\\', at);
      std::string prefix = p.path.substr(0, next);
      if (!KeyExists(p.hive, prefix)) {
        created_.push_back({p.hive, prefix});
        break;
      }
      if (next == std::string::npos) break;
      at = next + 1;
    }
    CreateKey(p.hive, p.path);
  }
}

void RegistrySnapshot::ClearValues() {
  for (const auto& s : saved_) {
    HKEY k;
    if (RegOpenKeyExA(s.place.hive, s.place.path.c_str(), 0, KEY_SET_VALUE, &k) != ERROR_SUCCESS) continue;
    RegDeleteValueA(k, s.place.name.c_str());
    RegCloseKey(k);
  }
}

void RegistrySnapshot::Restore() {
  for (auto it = created_.rbegin(); it != created_.rend(); ++it) DeleteTree(it->first, it->second);
  created_.clear();
  for (const auto& s : saved_) {
    HKEY k;
    if (RegOpenKeyExA(s.place.hive, s.place.path.c_str(), 0, KEY_SET_VALUE, &k) != ERROR_SUCCESS) continue;
    if (s.value)
      RegSetValueExA(k, s.place.name.c_str(), 0, s.value->type, reinterpret_cast<const BYTE*>(s.value->bytes.data()),
                     static_cast<DWORD>(s.value->bytes.size()));
    else
      RegDeleteValueA(k, s.place.name.c_str());
    RegCloseKey(k);
  }
}

std::string EntryOf(HKEY hive, const std::string& path, const std::string& name) {
  std::string root = hive == HKEY_CURRENT_USER ? "HKEY_CURRENT_USER" : "HKEY_LOCAL_MACHINE";
  return Lower("[" + root + "\\" + path + "]\\\"" + name + "\"");
}

std::optional<std::string> ReadWholeFile(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  if (!in) return std::nullopt;
  return std::string((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
}

void WriteWholeFile(const std::string& path, const std::string& bytes) {
  std::ofstream out(path, std::ios::binary | std::ios::trunc);
  out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
}

void FileGuard::Restore() {
  if (saved_)
    WriteWholeFile(path_, *saved_);
  else
    DeleteFileA(path_.c_str());
}

void EndProcess(DWORD pid) {
  HANDLE h = OpenProcess(PROCESS_TERMINATE | SYNCHRONIZE, FALSE, pid);
  if (!h) return;
  TerminateProcess(h, 1);
  WaitForSingleObject(h, 5000);
  CloseHandle(h);
}

std::string AsRowData(const StoredValue& v) {
  if (v.type == REG_DWORD && v.bytes.size() == 4) {
    DWORD d;
    memcpy(&d, v.bytes.data(), 4);
    return std::to_string(d);
  }
  return v.bytes;
}

std::map<std::string, std::string> Changes(const Export& before, const Export& after) {
  std::map<std::string, std::string> out;
  for (const auto& [k, v] : Difference(before, after)) {
    std::string key = Lower(k);
    if (key.find("hkey_current_user\\software\\wine\\") != std::string::npos) continue;
    if (key.find("\\control\\video\\") != std::string::npos || key.find("driverdatedata") != std::string::npos) continue;
    // Wine's audio layer records the endpoints of the sound server the first time a program
    // opens the mixers, as the program does at every start.
    if (key.find("\\currentversion\\mmdevices") != std::string::npos) continue;
    out[key] = v;
  }
  return out;
}

}  // namespace tamrix::e2e
