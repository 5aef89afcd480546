// Reading and preparing Wine's real registry around a scenario, behind the program's back.
#pragma once

#include <windows.h>

#include <map>
#include <optional>
#include <string>

#include "platform/Platform.h"

namespace tamrix::e2e {

// The portable types of the shared expectations are the registry's own numbers.
static_assert(REG_SZ == regtype::Sz && REG_DWORD == regtype::Dword);

// A hive of the shared expectations as the registry functions take it.
inline HKEY ToHkey(HKey h) {
  return h == hive::CurrentUser ? HKEY_CURRENT_USER : h == hive::LocalMachine ? HKEY_LOCAL_MACHINE : nullptr;
}

constexpr const char* kExplorer = "Software\\Microsoft\\Windows\\CurrentVersion\\Policies\\Explorer";
constexpr const char* kRestrictRun = "Software\\Microsoft\\Windows\\CurrentVersion\\Policies\\Explorer\\RestrictRun";

std::optional<DWORD> ReadDword(HKEY hive, const std::string& path, const std::string& name);
std::optional<DWORD> ValueType(HKEY hive, const std::string& path, const std::string& name);
bool KeyExists(HKEY hive, const std::string& path);
void CreateKey(HKEY hive, const std::string& path);
void DeleteTree(HKEY hive, const std::string& path);

// A registry branch as reg.exe exports it: one entry per key line and per value line.
using Export = std::map<std::string, std::string>;  // "[key]\\name" -> value line
Export ExportBranch(const std::string& branch);
// Entries that differ between two exports, as "+entry" / "-entry" lines.
std::map<std::string, std::string> Difference(const Export& before, const Export& after);

}  // namespace tamrix::e2e
