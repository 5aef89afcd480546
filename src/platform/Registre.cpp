#include "platform/Registre.h"

#include "platform/AnsiText.h"

namespace tamrix::Registre {

RegValue ReadRegValue(Platform& p, HKey hive, const std::string& keyPath, const std::string& valueName) {
  HKey key = 0;
  RegValue value;
  p.RegOpenKeyExA(hive, keyPath, 0, kAccessMask, &key);
  QueryOpenKeyValue(p, key, valueName, value);
  p.RegCloseKey(key);  // even when the opening failed and the handle is still 0
  return value;
}

void WriteRegValue(Platform& p, HKey hive, const std::string& keyPath, const std::string& valueName,
                   const RegValue& data, std::uint32_t valueType) {
  HKey key = 0;
  p.RegOpenKeyExA(hive, keyPath, 0, kAccessMask, &key);
  SetOpenKeyValue(p, key, valueName, valueType, data);
  p.RegCloseKey(key);
}

void DeleteRegKey(Platform& p, HKey hive, const std::string& keyPath) { p.RegDeleteKeyA(hive, keyPath); }

void DeleteRegValue(Platform& p, HKey hive, const std::string& keyPath, const std::string& valueName) {
  HKey key = 0;
  p.RegOpenKeyExA(hive, keyPath, 0, kAccessMask, &key);
  p.RegDeleteValueA(key, valueName);
  p.RegCloseKey(key);
}

std::int32_t QueryOpenKeyValue(Platform& p, HKey key, const std::string& valueName, RegValue& value) {
  std::uint32_t type = 0, size = 0;
  long status = p.RegQueryValueExA(key, valueName, &type, nullptr, &size);
  if (status != status::Success) return static_cast<std::int32_t>(status);  // value stays as it was

  switch (type) {
    case regtype::Sz: {
      // The whole stored text, its terminator included: the read keeps the NUL on purpose.
      std::string buffer(size, '\0');
      status = p.RegQueryValueExA(key, valueName, &type, &buffer, &size);
      value = status == status::Success ? RegValue(buffer) : RegValue();
      return static_cast<std::int32_t>(status);
    }
    case regtype::Dword: {
      std::string buffer(4, '\0');
      status = p.RegQueryValueExA(key, valueName, &type, &buffer, &size);
      if (status == status::Success) {
        std::uint32_t u = 0;
        for (int i = 3; i >= 0; --i) u = (u << 8) | static_cast<unsigned char>(buffer[i]);
        value = RegValue(static_cast<std::int32_t>(u));
      }
      return static_cast<std::int32_t>(status);
    }
    default:
      return -1;
  }
}

std::int32_t SetOpenKeyValue(Platform& p, HKey key, const std::string& valueName, std::uint32_t valueType,
                             const RegValue& data) {
  switch (valueType) {
    case regtype::Sz: {
      // The size is the text's length: no terminator counted or appended.
      std::string text = data.ToText();
      return static_cast<std::int32_t>(p.RegSetValueExA(key, valueName, regtype::Sz, text, AnsiLength(text)));
    }
    case regtype::Dword: {
      auto u = static_cast<std::uint32_t>(data.ToInt32(p.DecimalSign()));
      std::string bytes(4, '\0');
      for (int i = 0; i < 4; ++i) bytes[i] = static_cast<char>((u >> (8 * i)) & 0xFF);
      return static_cast<std::int32_t>(p.RegSetValueExA(key, valueName, regtype::Dword, bytes, 4));
    }
    default:
      return 0;
  }
}

}  // namespace tamrix::Registre
