// Registry primitives: the ANSI functions, a key handle carried as a number.
#include "platform/win32/Win32Platform.h"

#include <windows.h>

#include "platform/win32/Ansi.h"
#include "platform/win32/Win32Internal.h"

namespace tamrix::win32 {

namespace {

// Hives are the classic 32-bit constants, which Windows sign-extends in a 64-bit HKEY.
HKEY ToHkey(HKey k) {
  if (k >= 0x80000000u && k <= 0x800000FFu)
    return reinterpret_cast<HKEY>(static_cast<ULONG_PTR>(static_cast<LONG_PTR>(static_cast<LONG>(static_cast<DWORD>(k)))));
  return reinterpret_cast<HKEY>(static_cast<ULONG_PTR>(k));
}

bool IsText(DWORD type) { return type == REG_SZ || type == REG_EXPAND_SZ || type == REG_MULTI_SZ; }

}  // namespace

long Win32Platform::RegOpenKeyExA(HKey parent, const std::string& subKey, std::uint32_t options,
                                  std::uint32_t samDesired, HKey* result) {
  HKEY out = nullptr;
  LONG s = ::RegOpenKeyExA(ToHkey(parent), ToAnsi(subKey).c_str(), options, samDesired, &out);
  *result = s == ERROR_SUCCESS ? static_cast<HKey>(reinterpret_cast<ULONG_PTR>(out)) : 0;
  return s;
}

long Win32Platform::RegCloseKey(HKey key) { return ::RegCloseKey(ToHkey(key)); }

long Win32Platform::RegQueryValueExA(HKey key, const std::string& valueName, std::uint32_t* type, std::string* data,
                                     std::uint32_t* size) {
  DWORD t = 0, sz = size ? *size : 0;
  std::string name = ToAnsi(valueName);
  if (!data) {
    LONG s = ::RegQueryValueExA(ToHkey(key), name.c_str(), nullptr, &t, nullptr, &sz);
    if (type) *type = t;
    if (size) *size = sz;
    return s;
  }
  std::vector<BYTE> buffer(sz + 1);
  LONG s = ::RegQueryValueExA(ToHkey(key), name.c_str(), nullptr, &t, buffer.data(), &sz);
  if (type) *type = t;
  if (size) *size = sz;
  if (s == ERROR_SUCCESS) {
    const char* bytes = reinterpret_cast<const char*>(buffer.data());
    *data = IsText(t) ? FromAnsi(bytes, sz) : std::string(bytes, sz);
  }
  return s;
}

long Win32Platform::RegSetValueExA(HKey key, const std::string& valueName, std::uint32_t type, const std::string& data,
                                   std::uint32_t size) {
  std::string bytes = IsText(type) ? ToAnsi(data) : data;
  DWORD n = std::min<DWORD>(size, static_cast<DWORD>(bytes.size()));
  if (IsText(type)) {
    // The NT family quietly adds a terminator the size left out when one follows the text in
    // memory. The text is stored exactly as counted, so what follows it here is no NUL.
    bytes.resize(n);
    bytes.push_back('\x01');
  }
  return ::RegSetValueExA(ToHkey(key), ToAnsi(valueName).c_str(), 0, type,
                          reinterpret_cast<const BYTE*>(bytes.data()), n);
}

long Win32Platform::RegDeleteKeyA(HKey parent, const std::string& subKey) {
  return ::RegDeleteKeyA(ToHkey(parent), ToAnsi(subKey).c_str());
}

long Win32Platform::RegDeleteValueA(HKey key, const std::string& valueName) {
  return ::RegDeleteValueA(ToHkey(key), ToAnsi(valueName).c_str());
}

}  // namespace tamrix::win32
