#include "e2e/Registry.h"

#include <cstdlib>
#include <fstream>
#include <sstream>
#include <vector>

#include "e2e/Driver.h"

namespace tamrix::e2e {

std::optional<DWORD> ReadDword(HKEY hive, const std::string& path, const std::string& name) {
  HKEY k;
  if (RegOpenKeyExA(hive, path.c_str(), 0, KEY_QUERY_VALUE, &k) != ERROR_SUCCESS) return std::nullopt;
  DWORD type = 0, data = 0, size = sizeof data;
  LONG s = RegQueryValueExA(k, name.c_str(), nullptr, &type, reinterpret_cast<BYTE*>(&data), &size);
  RegCloseKey(k);
  if (s != ERROR_SUCCESS || type != REG_DWORD) return std::nullopt;
  return data;
}

std::optional<DWORD> ValueType(HKEY hive, const std::string& path, const std::string& name) {
  HKEY k;
  if (RegOpenKeyExA(hive, path.c_str(), 0, KEY_QUERY_VALUE, &k) != ERROR_SUCCESS) return std::nullopt;
  DWORD type = 0;
  LONG s = RegQueryValueExA(k, name.c_str(), nullptr, &type, nullptr, nullptr);
  RegCloseKey(k);
  if (s != ERROR_SUCCESS) return std::nullopt;
  return type;
}

bool KeyExists(HKEY hive, const std::string& path) {
  HKEY k;
  if (RegOpenKeyExA(hive, path.c_str(), 0, KEY_READ, &k) != ERROR_SUCCESS) return false;
  RegCloseKey(k);
  return true;
}

void CreateKey(HKEY hive, const std::string& path) {
  HKEY k;
  if (RegCreateKeyExA(hive, path.c_str(), 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &k, nullptr) == ERROR_SUCCESS)
    RegCloseKey(k);
}

void DeleteTree(HKEY hive, const std::string& path) { RegDeleteTreeA(hive, path.c_str()); RegDeleteKeyA(hive, path.c_str()); }

Export ExportBranch(const std::string& branch) {
  char temp[MAX_PATH];
  GetTempPathA(MAX_PATH, temp);
  std::string file = std::string(temp) + "tamrix-export.reg";
  DeleteFileA(file.c_str());
  RunAndWait("reg.exe export \"" + branch + "\" \"" + file + "\" /y");
  std::ifstream in(file, std::ios::binary);
  std::string bytes((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
  std::string text;
  if (bytes.size() >= 2 && static_cast<unsigned char>(bytes[0]) == 0xFF && static_cast<unsigned char>(bytes[1]) == 0xFE)
    text = Utf8(std::wstring(reinterpret_cast<const wchar_t*>(bytes.data() + 2), (bytes.size() - 2) / 2));
  else
    text = bytes;
  Export entries;
  std::istringstream lines(text);
  std::string line, key, pending;
  while (std::getline(lines, line)) {
    if (!line.empty() && line.back() == '\r') line.pop_back();
    if (!pending.empty()) {
      line = pending + line;
      pending.clear();
    }
    if (!line.empty() && line.back() == '\\') {  // a value that continues on the next line
      line.pop_back();
      pending = line;
      continue;
    }
    if (line.empty()) continue;
    if (line.front() == '[') {
      key = line;
      entries[key] = "";
    } else if (line.front() == '"' || line.front() == '@') {
      std::size_t eq = line.find("\"=");
      std::string name = line.front() == '@' ? "@" : line.substr(0, eq + 1);
      entries[key + "\\" + name] = line;
    }
  }
  DeleteFileA(file.c_str());
  return entries;
}

std::map<std::string, std::string> Difference(const Export& before, const Export& after) {
  std::map<std::string, std::string> diff;
  for (const auto& [k, v] : after) {
    auto it = before.find(k);
    if (it == before.end()) diff[k] = "+" + v;
    else if (it->second != v) diff[k] = "~" + v;
  }
  for (const auto& [k, v] : before)
    if (!after.count(k)) diff[k] = "-" + v;
  return diff;
}

bool OnWindowsXp() {
  const char* system = std::getenv("TAMRIX_E2E_SYSTEM");
  return system && std::string(system) == "xp";
}

namespace {

std::string Lowered(std::string s) {
  for (char& c : s)
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  return s;
}

bool RedirectedBranch(const std::string& path) {
  std::string low = Lowered(path);
  return low.rfind("software\\", 0) == 0 && low.rfind("software\\classes", 0) != 0;
}

std::string Wow6432Name(const std::string& path) { return "SOFTWARE\\WOW6432Node" + path.substr(8); }

}  // namespace

std::string WhereHklmLands(const std::string& path) {
  bool redirected = sizeof(void*) == 4 && !OnWindowsXp() && RedirectedBranch(path);
  return redirected ? Wow6432Name(path) : path;
}

std::string WhereHklmDoesNotLand(const std::string& path) {
  if (!RedirectedBranch(path)) return "";
  return WhereHklmLands(path) == path ? Wow6432Name(path) : path;
}

bool ValueInSystemView(const std::string& path, const std::string& name) {
  // On a 32-bit Windows the flag has no view to choose and is passed over.
  HKEY k;
  if (RegOpenKeyExA(HKEY_LOCAL_MACHINE, path.c_str(), 0, KEY_QUERY_VALUE | KEY_WOW64_64KEY, &k) != ERROR_SUCCESS)
    return false;
  LONG s = RegQueryValueExA(k, name.c_str(), nullptr, nullptr, nullptr, nullptr);
  RegCloseKey(k);
  return s == ERROR_SUCCESS;
}

}  // namespace tamrix::e2e
