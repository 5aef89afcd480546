// The process, its windows' shape, profile files, system facts, drives and the event pump.
#include "platform/win32/Win32Platform.h"

#include <windows.h>
#include <commctrl.h>

#include <algorithm>
#include <cstring>

#include "platform/Memory32.h"
#include "platform/Runtime.h"
#include "platform/win32/Ansi.h"
#include "platform/win32/ProgramModal.h"
#include "platform/win32/Win32Internal.h"

namespace tamrix::win32 {

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
  return ProgramModalMessageBox(ToAnsi(text).c_str(), ToAnsi(title).c_str(), style);
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

std::string Win32Platform::LogicalDriveLetters() {
  DWORD mask = ::GetLogicalDrives();
  std::string letters;
  for (int i = 0; i < 26; ++i)
    if (mask & (1u << i)) letters += static_cast<char>('A' + i);
  return letters;
}

bool Win32Platform::GetVolumeInformationA(const std::string& root, std::string* volumeName,
                                          std::uint32_t* serialNumber, std::string* fileSystem) {
  char name[MAX_PATH + 1] = {}, fs[MAX_PATH + 1] = {};
  DWORD serial = 0, maxComponent = 0, flags = 0;
  // A drive without its disc must not bring up the system's "insert a disc" box.
  UINT mode = SetErrorMode(SEM_FAILCRITICALERRORS);
  BOOL ok = ::GetVolumeInformationA(ToAnsi(root).c_str(), name, sizeof name, &serial, &maxComponent, &flags, fs,
                                    sizeof fs);
  SetErrorMode(mode);
  if (!ok) return false;
  *volumeName = FromAnsi(name, strnlen(name, sizeof name));
  *fileSystem = FromAnsi(fs, strnlen(fs, sizeof fs));
  *serialNumber = serial;
  return true;
}

bool Win32Platform::GetDiskFreeSpaceExA(const std::string& root, std::uint64_t* freeToCaller,
                                        std::uint64_t* totalBytes, std::uint64_t* totalFree) {
  ULARGE_INTEGER caller{}, total{}, free{};
  UINT mode = SetErrorMode(SEM_FAILCRITICALERRORS);
  BOOL ok = ::GetDiskFreeSpaceExA(ToAnsi(root).c_str(), &caller, &total, &free);
  SetErrorMode(mode);
  if (!ok) return false;
  *freeToCaller = caller.QuadPart;
  *totalBytes = total.QuadPart;
  *totalFree = free.QuadPart;
  return true;
}

std::uint32_t Win32Platform::GetDriveTypeA(const std::string& root) { return ::GetDriveTypeA(ToAnsi(root).c_str()); }

std::string Win32Platform::GetCurrentDirectoryA() {
  char buf[MAX_PATH + 1] = {};
  DWORD n = ::GetCurrentDirectoryA(sizeof buf, buf);
  return FromAnsi(buf, std::min<DWORD>(n, MAX_PATH));
}

std::uint64_t Win32Platform::GetCurrentProcess() {
  return static_cast<std::uint64_t>(reinterpret_cast<ULONG_PTR>(::GetCurrentProcess()));
}

bool Win32Platform::SetPriorityClass(std::uint64_t process, std::uint32_t priorityClass) {
  return ::SetPriorityClass(reinterpret_cast<HANDLE>(static_cast<ULONG_PTR>(process)), priorityClass) != 0;
}

void Win32Platform::InitCommonControls() { ::InitCommonControls(); }

void Win32Platform::DoEvents() {
  MSG msg;
  while (PeekMessageA(&msg, nullptr, 0, 0, PM_REMOVE)) {
    if (msg.message == WM_QUIT) {  // the message loop must still see it
      PostQuitMessage(static_cast<int>(msg.wParam));
      break;
    }
    TranslateMessage(&msg);
    DispatchMessageA(&msg);
  }
}

}  // namespace tamrix::win32
