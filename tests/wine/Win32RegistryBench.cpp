// The Registre expectations on Wine's real registry. The bench works under a key of its own in
// HKCU and HKLM, made fresh for each test and removed afterwards.
#include <windows.h>
#include <sddl.h>

#include <memory>
#include <string>

#include "contract/RegistryBench.h"
#include "platform/win32/Win32Platform.h"

namespace tamrix::test {

namespace {

HKEY Hive(HKey h) { return h == hive::LocalMachine ? HKEY_LOCAL_MACHINE : HKEY_CURRENT_USER; }

class WineBench : public RegistryBench {
 public:
  WineBench() {
    static int counter = 0;
    scratch_ = "Software\\TamrixTest\\Case" + std::to_string(GetCurrentProcessId()) + "_" + std::to_string(++counter);
  }
  ~WineBench() override {
    GiveBackRights(HKEY_LOCAL_MACHINE);
    RegDeleteTreeA(HKEY_CURRENT_USER, scratch_.c_str());
    RegDeleteTreeA(HKEY_LOCAL_MACHINE, scratch_.c_str());
  }
  Platform& platform() override { return platform_; }
  std::string Scratch() override { return scratch_; }
  void CreateKey(HKey hive, const std::string& path) override {
    HKEY k;
    if (RegCreateKeyExA(Hive(hive), path.c_str(), 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &k, nullptr) == ERROR_SUCCESS)
      RegCloseKey(k);
  }
  bool KeyExists(HKey hive, const std::string& path) override {
    HKEY k;
    if (RegOpenKeyExA(Hive(hive), path.c_str(), 0, KEY_READ, &k) != ERROR_SUCCESS) return false;
    RegCloseKey(k);
    return true;
  }
  void SetRaw(HKey hive, const std::string& path, const std::string& name, std::uint32_t type,
              const std::string& data) override {
    HKEY k;
    if (RegOpenKeyExA(Hive(hive), path.c_str(), 0, KEY_SET_VALUE, &k) != ERROR_SUCCESS) return;
    RegSetValueExA(k, name.c_str(), 0, type, reinterpret_cast<const BYTE*>(data.data()), static_cast<DWORD>(data.size()));
    RegCloseKey(k);
  }
  RawValue GetRaw(HKey hive, const std::string& path, const std::string& name) override {
    HKEY k;
    RawValue v;
    if (RegOpenKeyExA(Hive(hive), path.c_str(), 0, KEY_QUERY_VALUE, &k) != ERROR_SUCCESS) return v;
    DWORD type = 0, size = 0;
    if (RegQueryValueExA(k, name.c_str(), nullptr, &type, nullptr, &size) == ERROR_SUCCESS) {
      std::string data(size, '\0');
      RegQueryValueExA(k, name.c_str(), nullptr, &type, reinterpret_cast<BYTE*>(data.data()), &size);
      v = {true, type, data.substr(0, size), size};
    }
    RegCloseKey(k);
    return v;
  }
  // Leaves the key readable but takes the write rights away from everyone, this account included.
  bool DenyWrite(HKey hive, const std::string& path) override {
    PSECURITY_DESCRIPTOR sd = nullptr;
    if (!ConvertStringSecurityDescriptorToSecurityDescriptorA("D:P(A;;KR;;;WD)(A;;KA;;;SY)", SDDL_REVISION_1, &sd,
                                                              nullptr))
      return false;
    HKEY k;
    bool ok = RegOpenKeyExA(Hive(hive), path.c_str(), 0, WRITE_DAC, &k) == ERROR_SUCCESS;
    if (ok) {
      ok = RegSetKeySecurity(k, DACL_SECURITY_INFORMATION, sd) == ERROR_SUCCESS;
      RegCloseKey(k);
    }
    LocalFree(sd);
    if (!ok) return false;
    // Where the registry doesn't enforce the rights, the case can't be made here.
    HKEY probe;
    if (RegOpenKeyExA(Hive(hive), path.c_str(), 0, KEY_SET_VALUE, &probe) == ERROR_SUCCESS) {
      RegCloseKey(probe);
      return false;
    }
    return true;
  }

 private:
  void GiveBackRights(HKEY hive) {
    PSECURITY_DESCRIPTOR sd = nullptr;
    if (!ConvertStringSecurityDescriptorToSecurityDescriptorA("D:(A;;KA;;;WD)", SDDL_REVISION_1, &sd, nullptr)) return;
    HKEY k;
    if (RegOpenKeyExA(hive, scratch_.c_str(), 0, WRITE_DAC, &k) == ERROR_SUCCESS) {
      RegSetKeySecurity(k, DACL_SECURITY_INFORMATION, sd);
      RegCloseKey(k);
    }
    LocalFree(sd);
  }

  win32::Win32Platform platform_;
  std::string scratch_;
};

}  // namespace

std::unique_ptr<RegistryBench> MakeRegistryBench() { return std::make_unique<WineBench>(); }

}  // namespace tamrix::test
