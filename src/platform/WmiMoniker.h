// What a "winmgmts:" moniker asks for, read as the scripting moniker reads it.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace tamrix::wmi {

// The impersonation levels of COM: anonymous 1, identify 2, impersonate 3, delegate 4.
constexpr std::uint32_t kImpersonate = 3;

struct Moniker {
  bool valid = false;                    // it names WMI and its braces close
  std::string path = "root\\cimv2";      // the namespace, when the moniker names none
  std::optional<std::uint32_t> level;    // the impersonation level its braces ask for, if any
};

Moniker ParseMoniker(const std::string& moniker);

// The level a bind takes: the moniker's own, else the machine's scripting default (the value
// "Default Impersonation Level" under HKLM\SOFTWARE\Microsoft\WBEM\Scripting, when it holds a
// level), else impersonate, which is what that value holds on a fresh system.
std::uint32_t ImpersonationLevel(const Moniker& m, std::optional<std::uint32_t> scriptingDefault);

}  // namespace tamrix::wmi
