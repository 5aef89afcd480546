// Registre: the only road to the registry. Deliberately silent: nothing here reports a failure
// that a caller looks at, and nothing here ever creates a key.
#pragma once

#include <cstdint>
#include <string>

#include "platform/Platform.h"
#include "platform/RegValue.h"

namespace tamrix::Registre {

// Every opening asks for this mask, reads included, so a key the account may read but not
// write reads as missing.
constexpr std::uint32_t kAccessMask = 0x3F;

RegValue ReadRegValue(Platform& p, HKey hive, const std::string& keyPath, const std::string& valueName);
void WriteRegValue(Platform& p, HKey hive, const std::string& keyPath, const std::string& valueName,
                   const RegValue& data, std::uint32_t valueType);
void DeleteRegKey(Platform& p, HKey hive, const std::string& keyPath);
void DeleteRegValue(Platform& p, HKey hive, const std::string& keyPath, const std::string& valueName);

// The two operations on an open handle, used only by the four above.
std::int32_t QueryOpenKeyValue(Platform& p, HKey key, const std::string& valueName, RegValue& value);
std::int32_t SetOpenKeyValue(Platform& p, HKey key, const std::string& valueName, std::uint32_t valueType,
                             const RegValue& data);

}  // namespace tamrix::Registre
