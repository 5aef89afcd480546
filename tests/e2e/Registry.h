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

// The Windows the scenarios run on, as the test run names it in TAMRIX_E2E_SYSTEM: "xp" for a
// 32-bit Windows XP, which has one view of the registry; otherwise a 64-bit Windows, on which a
// 32-bit program's rows of HKLM\Software are kept under WOW6432Node.
bool OnWindowsXp();

// Where a value that a program of this test program's width writes at HKLM\<path> stands, as
// the system's own (64-bit) view names it: under SOFTWARE\WOW6432Node for a 32-bit program on a
// 64-bit Windows, at the path itself otherwise. Classes, shared by both views, stays where it is.
std::string WhereHklmLands(const std::string& path);
// The other name, where the value must not be: the path itself on a 64-bit Windows when the
// program is a 32-bit one, its WOW6432Node name otherwise.
std::string WhereHklmDoesNotLand(const std::string& path);
// Whether HKLM\<path> holds a value of that name, read in the system's own view.
bool ValueInSystemView(const std::string& path, const std::string& name);

}  // namespace tamrix::e2e
