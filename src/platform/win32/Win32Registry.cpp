// Registry primitives: the ANSI functions, a key handle carried as a number.
#include "platform/win32/Win32Platform.h"

#include <windows.h>
#include <shlobj.h>

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

std::wstring Wide(const std::string& utf8) {
  if (utf8.empty()) return {};
  int n = MultiByteToWideChar(CP_UTF8, 0, utf8.data(), static_cast<int>(utf8.size()), nullptr, 0);
  std::wstring w(static_cast<std::size_t>(n), L'\0');
  MultiByteToWideChar(CP_UTF8, 0, utf8.data(), static_cast<int>(utf8.size()), w.data(), n);
  return w;
}

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

long Win32Platform::RegQueryValueExW(HKey key, const std::string& valueName, std::uint32_t* type, std::string* data,
                                     std::uint32_t* size) {
  DWORD t = 0, sz = size ? *size : 0;
  std::wstring name = Wide(valueName);
  std::vector<BYTE> buffer(data ? sz + 1 : 0);
  LONG s = ::RegQueryValueExW(ToHkey(key), name.c_str(), nullptr, &t, data ? buffer.data() : nullptr, &sz);
  if (type) *type = t;
  if (size) *size = sz;
  if (data && s == ERROR_SUCCESS) data->assign(reinterpret_cast<const char*>(buffer.data()), sz);
  return s;
}

// The longest name and data of the key are asked first; a value that grows in between is
// asked again with the new room.
long Win32Platform::RegEnumValueW(HKey key, std::uint32_t index, std::string* name, std::uint32_t* type,
                                  std::string* data) {
  for (int attempt = 0; attempt < 3; ++attempt) {
    DWORD maxName = 0, maxData = 0;
    LONG s = ::RegQueryInfoKeyW(ToHkey(key), nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, &maxName,
                                &maxData, nullptr, nullptr);
    if (s != ERROR_SUCCESS) return s;
    std::vector<wchar_t> n(maxName + 1);
    std::vector<BYTE> d(maxData + 1);
    DWORD nameLength = maxName + 1, dataSize = maxData + 1, t = 0;
    s = ::RegEnumValueW(ToHkey(key), index, n.data(), &nameLength, nullptr, &t, d.data(), &dataSize);
    if (s == ERROR_MORE_DATA) continue;
    if (s != ERROR_SUCCESS) return s;
    *name = Utf8(n.data(), static_cast<int>(nameLength));
    *type = t;
    data->assign(reinterpret_cast<const char*>(d.data()), dataSize);
    return s;
  }
  return ERROR_MORE_DATA;
}

long Win32Platform::RegEnumKeyExW(HKey key, std::uint32_t index, std::string* name) {
  // A key name is at most 255 characters.
  wchar_t n[256];
  DWORD length = 256;
  LONG s = ::RegEnumKeyExW(ToHkey(key), index, n, &length, nullptr, nullptr, nullptr, nullptr);
  if (s == ERROR_SUCCESS) *name = Utf8(n, static_cast<int>(length));
  return s;
}

bool Win32Platform::IsUserAnAdmin() { return ::IsUserAnAdmin() != FALSE; }

}  // namespace tamrix::win32
