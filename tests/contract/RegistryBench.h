// A registry to run the Registre expectations against: the fake, or Wine's real registry.
// The bench sets values up and reads them back behind Registre's back, with the platform's own
// functions, so that both backends answer the same questions.
#pragma once

#include <memory>
#include <string>

#include "platform/Platform.h"

namespace tamrix::test {

struct RawValue {
  bool exists = false;
  std::uint32_t type = 0;
  std::string data;  // REG_SZ: the text, stored terminator included; others: raw bytes
  std::uint32_t size = 0;
};

class RegistryBench {
 public:
  virtual ~RegistryBench() = default;
  virtual Platform& platform() = 0;
  // A fresh key path under HKCU (or HKLM) that belongs to this test alone.
  virtual std::string Scratch() = 0;
  virtual void CreateKey(HKey hive, const std::string& path) = 0;
  virtual bool KeyExists(HKey hive, const std::string& path) = 0;
  // Stores exactly `data` (raw bytes; a REG_SZ text is taken as it stands, terminator or not).
  virtual void SetRaw(HKey hive, const std::string& path, const std::string& name, std::uint32_t type,
                      const std::string& data) = 0;
  virtual RawValue GetRaw(HKey hive, const std::string& path, const std::string& name) = 0;
  // Makes the key readable but not writable for this account; false where the backend can't.
  virtual bool DenyWrite(HKey hive, const std::string& path) = 0;
};

// Each test binary gives its own.
std::unique_ptr<RegistryBench> MakeRegistryBench();

}  // namespace tamrix::test
