#include "platform/win32/Win32Platform.h"

#include <windows.h>
#include <oleauto.h>
#include <shellapi.h>
#include <shlobj.h>

#include <vector>

#include "platform/Memory32.h"
#include "platform/Runtime.h"
#include "platform/win32/Ansi.h"

namespace tamrix::win32 {

namespace {

// Hives are the classic 32-bit constants, which Windows sign-extends in a 64-bit HKEY.
HKEY ToHkey(HKey k) {
  if (k >= 0x80000000u && k <= 0x800000FFu)
    return reinterpret_cast<HKEY>(static_cast<ULONG_PTR>(static_cast<LONG_PTR>(static_cast<LONG>(static_cast<DWORD>(k)))));
  return reinterpret_cast<HKEY>(static_cast<ULONG_PTR>(k));
}

HWND ToHwnd(WindowHandle h) { return reinterpret_cast<HWND>(static_cast<ULONG_PTR>(h)); }

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

bool Win32Platform::EarlierInstanceRunning() {
  // A named mutex that lives as long as the first process: the second sees it and leaves,
  // without touching the first. The handle is kept open on purpose.
  static const bool earlier = [] {
    HANDLE mutex = CreateMutexA(nullptr, FALSE, "Tamrix Utility 3.0 Pro - instance");
    return mutex && GetLastError() == ERROR_ALREADY_EXISTS;
  }();
  return earlier;
}

void Win32Platform::StartProcess(const std::string& commandLine, ShowCommand show) {
  std::string line = ToAnsi(commandLine);
  STARTUPINFOA si{};
  si.cb = sizeof si;
  si.dwFlags = STARTF_USESHOWWINDOW;
  si.wShowWindow = static_cast<WORD>(show);
  PROCESS_INFORMATION pi{};
  if (!CreateProcessA(nullptr, line.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &si, &pi))
    throw rt::FileNotFound();
  CloseHandle(pi.hThread);
  CloseHandle(pi.hProcess);  // never waited for
}

int Win32Platform::MessageBoxA(const std::string& text, unsigned style, const std::string& title) {
  return ::MessageBoxA(GetActiveWindow(), ToAnsi(text).c_str(), ToAnsi(title).c_str(), style);
}

void Win32Platform::Beep() { ::MessageBeep(MB_OK); }

RectPx Win32Platform::GetClientRect(WindowHandle window) {
  RECT r{};
  ::GetClientRect(ToHwnd(window), &r);
  return {r.left, r.top, r.right, r.bottom};
}

GdiHandle Win32Platform::CreateRoundRectRgn(long left, long top, long right, long bottom, long ellipseWidth,
                                            long ellipseHeight) {
  return reinterpret_cast<ULONG_PTR>(::CreateRoundRectRgn(left, top, right, bottom, ellipseWidth, ellipseHeight));
}

int Win32Platform::SetWindowRgn(WindowHandle window, GdiHandle region, bool redraw) {
  return ::SetWindowRgn(ToHwnd(window), reinterpret_cast<HRGN>(static_cast<ULONG_PTR>(region)), redraw);
}

bool Win32Platform::DeleteObject(GdiHandle object) {
  return ::DeleteObject(reinterpret_cast<HGDIOBJ>(static_cast<ULONG_PTR>(object)));
}

bool Win32Platform::ReleaseCapture() { return ::ReleaseCapture(); }

std::int64_t Win32Platform::SendMessageA(WindowHandle window, unsigned message, std::uint64_t wParam,
                                         std::int64_t lParam) {
  return ::SendMessageA(ToHwnd(window), message, static_cast<WPARAM>(wParam), static_cast<LPARAM>(lParam));
}

std::uint32_t Win32Platform::GetPrivateProfileStringA(const std::string& section, const std::string& key,
                                                      const std::string& defaultValue, std::string* buffer,
                                                      std::uint32_t size, const std::string& path) {
  std::string ansi(size, '\0');
  DWORD n = ::GetPrivateProfileStringA(ToAnsi(section).c_str(), ToAnsi(key).c_str(), ToAnsi(defaultValue).c_str(),
                                       ansi.data(), size, ToAnsi(path).c_str());
  *buffer = FromAnsi(ansi.data(), n);
  return n;
}

bool Win32Platform::WritePrivateProfileStringA(const std::string& section, const std::string& key,
                                               const std::string& value, const std::string& path) {
  return ::WritePrivateProfileStringA(ToAnsi(section).c_str(), ToAnsi(key).c_str(), ToAnsi(value).c_str(),
                                      ToAnsi(path).c_str());
}

std::string Win32Platform::AppPath() {
  char path[MAX_PATH] = {};
  DWORD n = GetModuleFileNameA(nullptr, path, MAX_PATH);
  std::string dir(path, n);
  dir = dir.substr(0, dir.find_last_of('\\'));
  if (!dir.empty() && dir.back() == ':') dir += '\\';  // a drive's root keeps its separator
  return FromAnsi(dir);
}

std::uint32_t Win32Platform::GetWindowsDirectoryA(std::string* buffer, std::uint32_t size) {
  std::string ansi(size, '\0');
  UINT n = ::GetWindowsDirectoryA(ansi.data(), size);
  *buffer = FromAnsi(ansi.data(), std::min<UINT>(n, size));
  return n;
}

std::uint32_t Win32Platform::GetSystemDirectoryA(std::string* buffer, std::uint32_t size) {
  std::string ansi(size, '\0');
  UINT n = ::GetSystemDirectoryA(ansi.data(), size);
  *buffer = FromAnsi(ansi.data(), std::min<UINT>(n, size));
  return n;
}

MemoryStatus Win32Platform::GlobalMemoryStatus(std::uint32_t length) {
#ifdef _WIN64
  // The 64-bit build reads the wide counts and shows what the 32-bit build is given.
  MEMORYSTATUSEX e{};
  e.dwLength = sizeof e;
  ::GlobalMemoryStatusEx(&e);
  return AsThirtyTwoBitProgramSees({e.dwMemoryLoad, e.ullTotalPhys, e.ullAvailPhys, e.ullTotalPageFile,
                                    e.ullAvailPageFile, e.ullTotalVirtual, e.ullAvailVirtual},
                                   length);
#else
  // The 32-bit build shows what the system gives it, as it gives it.
  MEMORYSTATUS m{};
  m.dwLength = sizeof m;
  ::GlobalMemoryStatus(&m);
  return {length,           m.dwMemoryLoad,    m.dwTotalPhys,    m.dwAvailPhys,
          m.dwTotalPageFile, m.dwAvailPageFile, m.dwTotalVirtual, m.dwAvailVirtual};
#endif
}

OsVersion Win32Platform::GetVersionExA(std::uint32_t size) {
  OSVERSIONINFOA v{};
  v.dwOSVersionInfoSize = size;
  OsVersion out;
  out.ok = ::GetVersionExA(&v) != 0;
  if (out.ok) {
    out.major = v.dwMajorVersion;
    out.minor = v.dwMinorVersion;
    out.build = v.dwBuildNumber;
    out.platformId = v.dwPlatformId;
    out.csdVersion = FromAnsi(v.szCSDVersion, strnlen(v.szCSDVersion, sizeof v.szCSDVersion));
  }
  return out;
}

std::uint32_t Win32Platform::GetTickCount() { return ::GetTickCount(); }

LocalTime Win32Platform::Now() {
  SYSTEMTIME t;
  GetLocalTime(&t);
  return {t.wYear, t.wMonth, t.wDay, t.wHour, t.wMinute, t.wSecond};
}

std::int64_t Win32Platform::ShellExecuteA(WindowHandle owner, const std::string& verb, const std::string& file,
                                          const std::string& parameters, const std::string& directory, int show) {
  return reinterpret_cast<INT_PTR>(::ShellExecuteA(ToHwnd(owner), ToAnsi(verb).c_str(), ToAnsi(file).c_str(),
                                                   ToAnsi(parameters).c_str(), ToAnsi(directory).c_str(), show));
}

std::uint64_t Win32Platform::SHBrowseForFolderA(WindowHandle owner, const std::string& title, std::uint32_t flags) {
  std::string ansiTitle = ToAnsi(title);
  BROWSEINFOA bi{};
  bi.hwndOwner = ToHwnd(owner);
  bi.lpszTitle = ansiTitle.c_str();
  bi.ulFlags = flags;
  return reinterpret_cast<ULONG_PTR>(::SHBrowseForFolderA(&bi));
}

bool Win32Platform::SHGetPathFromIDListA(std::uint64_t itemList, std::string* path) {
  char buffer[260] = {};
  BOOL ok = ::SHGetPathFromIDListA(reinterpret_cast<PCIDLIST_ABSOLUTE>(static_cast<ULONG_PTR>(itemList)), buffer);
  *path = ok ? FromAnsi(buffer, strnlen(buffer, sizeof buffer)) : std::string();
  return ok;
}

void Win32Platform::CoTaskMemFree(std::uint64_t itemList) {
  ::CoTaskMemFree(reinterpret_cast<void*>(static_cast<ULONG_PTR>(itemList)));
}

std::string Win32Platform::BooleanText(bool value) {
  BSTR text = nullptr;
  if (FAILED(VarBstrFromBool(value ? VARIANT_TRUE : VARIANT_FALSE, LOCALE_USER_DEFAULT, VAR_LOCALBOOL, &text)))
    return value ? "True" : "False";
  int n = WideCharToMultiByte(CP_UTF8, 0, text, static_cast<int>(SysStringLen(text)), nullptr, 0, nullptr, nullptr);
  std::string out(n, '\0');
  WideCharToMultiByte(CP_UTF8, 0, text, static_cast<int>(SysStringLen(text)), out.data(), n, nullptr, nullptr);
  SysFreeString(text);
  return out;
}

char Win32Platform::DecimalSign() {
  char buf[8] = {};
  GetLocaleInfoA(LOCALE_USER_DEFAULT, LOCALE_SDECIMAL, buf, sizeof buf);
  return buf[0] ? buf[0] : '.';
}

char Win32Platform::TimeSeparator() {
  char buf[8] = {};
  GetLocaleInfoA(LOCALE_USER_DEFAULT, LOCALE_STIME, buf, sizeof buf);
  return buf[0] ? buf[0] : ':';
}

}  // namespace tamrix::win32
