#include "platform/win32/Win32Platform.h"

#include <windows.h>
#include <oleauto.h>
#include <shellapi.h>
#include <shlobj.h>
#include <commctrl.h>
#include <mmsystem.h>
#include <wbemidl.h>

#include <algorithm>
#include <cstring>
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

std::string Win32Platform::LogicalDriveLetters() {
  DWORD mask = ::GetLogicalDrives();
  std::string letters;
  for (int i = 0; i < 26; ++i)
    if (mask & (1u << i)) letters += static_cast<char>('A' + i);
  return letters;
}

// Hardware: drives, WMI, priority, common controls, event pump.
namespace {

std::string Utf8(const wchar_t* w, int length) {
  int n = WideCharToMultiByte(CP_UTF8, 0, w, length, nullptr, 0, nullptr, nullptr);
  std::string out(static_cast<std::size_t>(n), '\0');
  WideCharToMultiByte(CP_UTF8, 0, w, length, out.data(), n, nullptr, nullptr);
  return out;
}

BSTR Bstr(const std::string& utf8) {
  int n = MultiByteToWideChar(CP_UTF8, 0, utf8.data(), static_cast<int>(utf8.size()), nullptr, 0);
  BSTR b = SysAllocStringLen(nullptr, static_cast<UINT>(n));
  MultiByteToWideChar(CP_UTF8, 0, utf8.data(), static_cast<int>(utf8.size()), b, n);
  return b;
}

// A failed COM call surfaces as the runtime's automation error, numbered by its HRESULT.
[[noreturn]] void AutomationError(HRESULT hr) { throw RuntimeError(static_cast<int>(hr), "Automation error"); }

WmiValue FromVariant(const VARIANT& v);

WmiValue FromScalar(VARTYPE type, const void* data) {
  WmiValue out;
  switch (type) {
    case VT_BOOL: out.type = WmiValue::Type::Boolean; out.boolean = *static_cast<const VARIANT_BOOL*>(data) != 0; break;
    case VT_I1: out.type = WmiValue::Type::Integer; out.integer = *static_cast<const signed char*>(data); break;
    case VT_UI1: out.type = WmiValue::Type::Integer; out.integer = *static_cast<const unsigned char*>(data); break;
    case VT_I2: out.type = WmiValue::Type::Integer; out.integer = *static_cast<const SHORT*>(data); break;
    case VT_UI2: out.type = WmiValue::Type::Integer; out.integer = *static_cast<const USHORT*>(data); break;
    case VT_I4:
    case VT_INT: out.type = WmiValue::Type::Integer; out.integer = *static_cast<const LONG*>(data); break;
    case VT_UI4:
    case VT_UINT: out.type = WmiValue::Type::Integer; out.integer = *static_cast<const ULONG*>(data); break;
    case VT_I8: out.type = WmiValue::Type::Integer; out.integer = *static_cast<const LONGLONG*>(data); break;
    case VT_UI8: out.type = WmiValue::Type::Integer; out.integer = static_cast<std::int64_t>(*static_cast<const ULONGLONG*>(data)); break;
    case VT_R4: out.type = WmiValue::Type::Double; out.number = *static_cast<const float*>(data); break;
    case VT_R8: out.type = WmiValue::Type::Double; out.number = *static_cast<const double*>(data); break;
    case VT_BSTR: {
      BSTR b = *static_cast<const BSTR*>(data);
      out.type = WmiValue::Type::Text;
      out.text = b ? Utf8(b, static_cast<int>(SysStringLen(b))) : std::string();
      break;
    }
    case VT_VARIANT: return FromVariant(*static_cast<const VARIANT*>(data));
    case VT_NULL: out.type = WmiValue::Type::Null; break;
    default: break;  // Empty
  }
  return out;
}

WmiValue FromVariant(const VARIANT& v) {
  if (!(v.vt & VT_ARRAY)) return v.vt == VT_VARIANT ? WmiValue{} : FromScalar(v.vt, &v.llVal);
  WmiValue out;
  out.type = WmiValue::Type::Array;
  SAFEARRAY* a = v.parray;
  LONG lower = 0, upper = -1;
  if (!a || SafeArrayGetLBound(a, 1, &lower) != S_OK || SafeArrayGetUBound(a, 1, &upper) != S_OK) return out;
  VARTYPE type = v.vt & VT_TYPEMASK;
  for (LONG i = lower; i <= upper; ++i) {
    alignas(16) unsigned char buffer[sizeof(VARIANT)] = {};
    if (SafeArrayGetElement(a, &i, buffer) != S_OK) continue;
    out.items.push_back(FromScalar(type, buffer));
    if (type == VT_BSTR) SysFreeString(*reinterpret_cast<BSTR*>(buffer));
    if (type == VT_VARIANT) VariantClear(reinterpret_cast<VARIANT*>(buffer));
  }
  return out;
}

class ComWmiObject : public WmiObject {
 public:
  explicit ComWmiObject(IWbemClassObject* o) : o_(o) {}
  ~ComWmiObject() override { o_->Release(); }
  WmiValue Get(const std::string& name) override {
    BSTR n = Bstr(name);
    VARIANT v;
    VariantInit(&v);
    HRESULT hr = o_->Get(n, 0, &v, nullptr, nullptr);
    SysFreeString(n);
    // The scripting objects know no such property: what the runtime calls a missing member.
    if (hr == WBEM_E_NOT_FOUND) throw RuntimeError(438, "Object doesn't support this property or method");
    if (FAILED(hr)) AutomationError(hr);
    WmiValue out = FromVariant(v);
    VariantClear(&v);
    return out;
  }

 private:
  IWbemClassObject* o_;
};

class ComWmiService : public WmiService {
 public:
  ComWmiService(IWbemServices* s, bool impersonate) : s_(s) {
    if (impersonate)
      CoSetProxyBlanket(s_, RPC_C_AUTHN_WINNT, RPC_C_AUTHZ_NONE, nullptr, RPC_C_AUTHN_LEVEL_CALL,
                        RPC_C_IMP_LEVEL_IMPERSONATE, nullptr, EOAC_NONE);
  }
  ~ComWmiService() override { s_->Release(); }
  WmiObjects ExecQuery(const std::string& query) override {
    BSTR language = SysAllocString(L"WQL");
    BSTR q = Bstr(query);
    IEnumWbemClassObject* e = nullptr;
    HRESULT hr = s_->ExecQuery(language, q, WBEM_FLAG_FORWARD_ONLY | WBEM_FLAG_RETURN_IMMEDIATELY, nullptr, &e);
    SysFreeString(language);
    SysFreeString(q);
    return Walk(hr, e);
  }
  WmiObjects InstancesOf(const std::string& className) override {
    BSTR c = Bstr(className);
    IEnumWbemClassObject* e = nullptr;
    HRESULT hr = s_->CreateInstanceEnum(c, WBEM_FLAG_SHALLOW | WBEM_FLAG_FORWARD_ONLY, nullptr, &e);
    SysFreeString(c);
    return Walk(hr, e);
  }

 private:
  static WmiObjects Walk(HRESULT hr, IEnumWbemClassObject* e) {
    if (FAILED(hr) || !e) AutomationError(FAILED(hr) ? hr : E_FAIL);
    WmiObjects out;
    for (;;) {
      IWbemClassObject* o = nullptr;
      ULONG n = 0;
      hr = e->Next(static_cast<LONG>(WBEM_INFINITE), 1, &o, &n);
      if (hr != WBEM_S_NO_ERROR || n == 0) break;
      out.push_back(std::make_shared<ComWmiObject>(o));
    }
    e->Release();
    if (FAILED(hr)) AutomationError(hr);
    return out;
  }
  IWbemServices* s_;
};

}  // namespace

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

// The moniker names WMI ("winmgmts:"), maybe a security clause in braces, maybe "!" and a
// namespace; without one the namespace is root\cimv2, as the scripting moniker has it.
std::shared_ptr<WmiService> Win32Platform::WmiGetObject(const std::string& moniker) {
  std::string lower = moniker;
  for (char& c : lower) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  if (lower.rfind("winmgmts:", 0) != 0) AutomationError(MK_E_SYNTAX);
  std::string rest = moniker.substr(9);
  bool impersonate = lower.find("impersonationlevel=impersonate") != std::string::npos;
  if (!rest.empty() && rest[0] == '{') {
    std::size_t close = rest.find('}');
    if (close == std::string::npos) AutomationError(MK_E_SYNTAX);
    rest = rest.substr(close + 1);
  }
  if (!rest.empty() && rest[0] == '!') rest = rest.substr(1);
  std::string path = rest.empty() ? "root\\cimv2" : rest;

  CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);  // once is enough; later calls only count
  IWbemLocator* locator = nullptr;
  HRESULT hr = CoCreateInstance(CLSID_WbemLocator, nullptr, CLSCTX_INPROC_SERVER, IID_IWbemLocator,
                                reinterpret_cast<void**>(&locator));
  if (FAILED(hr)) throw RuntimeError(429, "ActiveX component can't create object");
  BSTR ns = Bstr(path);
  IWbemServices* services = nullptr;
  hr = locator->ConnectServer(ns, nullptr, nullptr, nullptr, 0, nullptr, nullptr, &services);
  SysFreeString(ns);
  locator->Release();
  if (FAILED(hr)) AutomationError(hr);
  return std::make_shared<ComWmiService>(services, impersonate);
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

std::string Win32Platform::MonthName(int month) {
  if (month < 1 || month > 12) return "";
  char buf[80] = {};
  int n = GetLocaleInfoA(LOCALE_USER_DEFAULT, LOCALE_SMONTHNAME1 + static_cast<LCTYPE>(month - 1), buf, sizeof buf);
  return n > 0 ? FromAnsi(buf, strnlen(buf, sizeof buf)) : "";
}

int Win32Platform::ShortDateOrder() {
  char buf[8] = {};
  GetLocaleInfoA(LOCALE_USER_DEFAULT, LOCALE_IDATE, buf, sizeof buf);
  return buf[0] >= '0' && buf[0] <= '2' ? buf[0] - '0' : 0;
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

// Audio mixers of winmm and the mouse pointer. The program hands over the sizes of a 32-bit
// program's records; this build's own records may be larger (a 64-bit dwUser), so a size that
// names the record stands for this build's record, and any other size goes through as it is.

namespace {

HMIXER ToHmixer(MixerHandle h) { return reinterpret_cast<HMIXER>(static_cast<ULONG_PTR>(h)); }

UINT RecordSize(std::uint32_t asked, std::uint32_t named, UINT own) { return asked == named ? own : asked; }

DWORD WINAPI ReadMixers(LPVOID) { return ::mixerGetNumDevs(); }

}  // namespace

Win32Platform::~Win32Platform() { AwaitMixersReadAhead(); }

void Win32Platform::ReadMixersAhead() {
  if (!mixersReadAhead_) mixersReadAhead_ = CreateThread(nullptr, 0, ReadMixers, nullptr, 0, nullptr);
}

void Win32Platform::AwaitMixersReadAhead() {
  if (!mixersReadAhead_) return;
  WaitForSingleObject(mixersReadAhead_, INFINITE);
  CloseHandle(mixersReadAhead_);
  mixersReadAhead_ = nullptr;
}

std::uint32_t Win32Platform::mixerGetNumDevs() {
  AwaitMixersReadAhead();
  return ::mixerGetNumDevs();
}

std::uint32_t Win32Platform::mixerGetDevCapsA(std::uint32_t deviceId, MixerCaps* caps, std::uint32_t size) {
  AwaitMixersReadAhead();
  MIXERCAPSA c{};
  MMRESULT r = ::mixerGetDevCapsA(deviceId, &c, RecordSize(size, mixerline::kCapsSize, sizeof c));
  if (r != MMSYSERR_NOERROR) return r;
  caps->wMid = c.wMid;
  caps->wPid = c.wPid;
  caps->vDriverVersion = c.vDriverVersion;
  caps->szPname = FromAnsi(c.szPname, sizeof c.szPname);
  caps->fdwSupport = c.fdwSupport;
  caps->cDestinations = c.cDestinations;
  return r;
}

std::uint32_t Win32Platform::mixerOpen(MixerHandle* handle, std::uint32_t deviceId, std::uint64_t callback,
                                       std::uint64_t instance, std::uint32_t flags) {
  AwaitMixersReadAhead();
  HMIXER h = nullptr;
  MMRESULT r = ::mixerOpen(&h, deviceId, static_cast<DWORD_PTR>(callback), static_cast<DWORD_PTR>(instance), flags);
  *handle = r == MMSYSERR_NOERROR ? static_cast<MixerHandle>(reinterpret_cast<ULONG_PTR>(h)) : 0;
  return r;
}

std::uint32_t Win32Platform::mixerClose(MixerHandle handle) {
  AwaitMixersReadAhead();
  return ::mixerClose(ToHmixer(handle));
}

std::uint32_t Win32Platform::mixerGetLineInfoA(MixerHandle handle, MixerLine* line, std::uint32_t flags) {
  AwaitMixersReadAhead();
  MIXERLINEA l{};
  l.cbStruct = RecordSize(line->cbStruct, mixerline::kSize, sizeof l);
  l.dwDestination = line->dwDestination;
  l.dwSource = line->dwSource;
  l.dwLineID = line->dwLineID;
  l.dwComponentType = line->dwComponentType;
  l.Target.dwType = line->Target.dwType;
  MMRESULT r = ::mixerGetLineInfoA(reinterpret_cast<HMIXEROBJ>(ToHmixer(handle)), &l, flags);
  if (r != MMSYSERR_NOERROR) return r;
  line->dwDestination = l.dwDestination;
  line->dwSource = l.dwSource;
  line->dwLineID = l.dwLineID;
  line->fdwLine = l.fdwLine;
  line->dwUser = l.dwUser;
  line->dwComponentType = l.dwComponentType;
  line->cChannels = l.cChannels;
  line->cConnections = l.cConnections;
  line->cControls = l.cControls;
  line->szShortName = FromAnsi(l.szShortName, sizeof l.szShortName);
  line->szName = FromAnsi(l.szName, sizeof l.szName);
  line->Target.dwType = l.Target.dwType;
  line->Target.dwDeviceID = l.Target.dwDeviceID;
  line->Target.wMid = l.Target.wMid;
  line->Target.wPid = l.Target.wPid;
  line->Target.vDriverVersion = l.Target.vDriverVersion;
  line->Target.szPname = FromAnsi(l.Target.szPname, sizeof l.Target.szPname);
  return r;
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

// Tools window: special folders, display modes, shutdown, key filtering.
long Win32Platform::SHGetSpecialFolderLocation(WindowHandle owner, int folder, std::uint64_t* itemList) {
  PIDLIST_ABSOLUTE list = nullptr;
  HRESULT hr = ::SHGetSpecialFolderLocation(ToHwnd(owner), folder, &list);
  *itemList = SUCCEEDED(hr) ? reinterpret_cast<ULONG_PTR>(list) : 0;
  return hr;
}

int Win32Platform::GetDeviceCaps(WindowHandle window, int index) {
  HWND hwnd = ToHwnd(window);
  HDC dc = ::GetDC(hwnd);
  int value = ::GetDeviceCaps(dc, index);
  ::ReleaseDC(hwnd, dc);
  return value;
}

// As the toolkit's screen object gives them: a pixel is 1440 / dpi twips, a whole number.
Platform::ScreenTwips Win32Platform::GetScreenTwips() {
  HDC dc = ::GetDC(nullptr);
  long perX = 1440 / std::max(1, ::GetDeviceCaps(dc, LOGPIXELSX));
  long perY = 1440 / std::max(1, ::GetDeviceCaps(dc, LOGPIXELSY));
  ::ReleaseDC(nullptr, dc);
  return {::GetSystemMetrics(SM_CXSCREEN) * perX, ::GetSystemMetrics(SM_CYSCREEN) * perY, perX, perY};
}

bool Win32Platform::EnumDisplaySettingsA(std::uint32_t modeNumber, DevMode* mode) {
  DEVMODEA dm{};
  dm.dmSize = sizeof dm;
  if (!::EnumDisplaySettingsA(nullptr, modeNumber, &dm)) return false;
  *mode = {dm.dmFields, dm.dmBitsPerPel, dm.dmPelsWidth, dm.dmPelsHeight, dm.dmDisplayFrequency};
  return true;
}

long Win32Platform::ChangeDisplaySettingsA(const DevMode& mode, std::uint32_t flags) {
  DEVMODEA dm{};
  dm.dmSize = sizeof dm;
  dm.dmFields = mode.dmFields;
  dm.dmBitsPerPel = mode.dmBitsPerPel;
  dm.dmPelsWidth = mode.dmPelsWidth;
  dm.dmPelsHeight = mode.dmPelsHeight;
  dm.dmDisplayFrequency = mode.dmDisplayFrequency;
  return ::ChangeDisplaySettingsA(&dm, flags);
}

bool Win32Platform::ExitWindowsEx(std::uint32_t flags, std::uint32_t reserved) {
  return ::ExitWindowsEx(flags, reserved) != FALSE;
}

}  // namespace tamrix::win32

// Tools window's file pages: open dialog, pictures, files and folders.

#include <commdlg.h>
#include <olectl.h>


#include "platform/FileFaults.h"

namespace tamrix::win32 {

namespace {

// The picture services decode JPEG through COM objects, which want the thread's apartment.
void EnsureCom() {
  thread_local bool done = false;
  if (!done) {
    CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
    done = true;
  }
}

IPicture* ToPicture(Platform::PictureHandle h) { return reinterpret_cast<IPicture*>(static_cast<ULONG_PTR>(h)); }
Platform::PictureHandle FromPicture(IPicture* p) { return static_cast<Platform::PictureHandle>(reinterpret_cast<ULONG_PTR>(p)); }

// Bytes to a picture, by the platform's own decoders (bitmap, JPEG, GIF, icon).
IPicture* PictureFromBytes(const void* data, std::size_t size) {
  EnsureCom();
  HGLOBAL mem = GlobalAlloc(GMEM_MOVEABLE, size);
  if (!mem) return nullptr;
  std::memcpy(GlobalLock(mem), data, size);
  GlobalUnlock(mem);
  IStream* stream = nullptr;
  if (FAILED(CreateStreamOnHGlobal(mem, TRUE, &stream))) {
    GlobalFree(mem);
    return nullptr;
  }
  IPicture* picture = nullptr;
  HRESULT hr = OleLoadPicture(stream, static_cast<LONG>(size), FALSE, IID_IPicture, reinterpret_cast<void**>(&picture));
  stream->Release();
  return SUCCEEDED(hr) ? picture : nullptr;
}

std::string ParentFolder(const std::string& ansiPath) {
  std::size_t slash = ansiPath.find_last_of('\\');
  return slash == std::string::npos ? std::string(".") : ansiPath.substr(0, slash == 2 && ansiPath[1] == ':' ? 3 : slash);
}

// A failure to create a file: the folder's absence is told apart from any other refusal.
RuntimeError WriteFault(const std::string& ansiPath) {
  DWORD a = GetFileAttributesA(ParentFolder(ansiPath).c_str());
  if (a == INVALID_FILE_ATTRIBUTES || !(a & FILE_ATTRIBUTE_DIRECTORY)) return rt::PathNotFound();
  return rt::PathFileAccess();
}

}  // namespace

bool Win32Platform::GetOpenFileNameA(WindowHandle owner, OpenFileRequest* request) {
  // The common dialog takes its filter with NULs where the user writes bars.
  std::string filter = ToAnsi(request->filter);
  std::replace(filter.begin(), filter.end(), '|', '\0');
  filter.append(2, '\0');
  std::string title = ToAnsi(request->title);
  std::string file = ToAnsi(request->fileName);
  file.resize(std::max<std::size_t>(file.size() + 1, 1024), '\0');
  OPENFILENAMEA ofn{};
  ofn.lStructSize = sizeof ofn;
  ofn.hwndOwner = owner ? ToHwnd(owner) : GetActiveWindow();
  ofn.lpstrFilter = filter.c_str();
  ofn.nFilterIndex = 1;
  ofn.lpstrFile = file.data();
  ofn.nMaxFile = static_cast<DWORD>(file.size());
  ofn.lpstrTitle = title.empty() ? nullptr : title.c_str();
  ofn.Flags = request->flags | OFN_EXPLORER;
  if (!::GetOpenFileNameA(&ofn)) return false;
  request->fileName = FromAnsi(std::string(file.c_str()));
  return true;
}

Platform::PictureHandle Win32Platform::LoadPicture(const std::string& path) {
  if (path.empty()) return 0;
  HANDLE file = CreateFileA(ToAnsi(path).c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING,
                            FILE_ATTRIBUTE_NORMAL, nullptr);
  if (file == INVALID_HANDLE_VALUE) throw rt::FileNotFound();
  std::string bytes;
  char chunk[65536];
  DWORD got = 0;
  while (ReadFile(file, chunk, sizeof chunk, &got, nullptr) && got > 0) bytes.append(chunk, got);
  CloseHandle(file);
  IPicture* picture = bytes.empty() ? nullptr : PictureFromBytes(bytes.data(), bytes.size());
  if (!picture) throw rt::InvalidPicture();
  return FromPicture(picture);
}

Platform::PictureHandle Win32Platform::LoadResourceIcon(int id) {
  EnsureCom();
  auto icon = static_cast<HICON>(LoadImageA(GetModuleHandleA(nullptr), MAKEINTRESOURCEA(id), IMAGE_ICON, 32, 32, 0));
  if (!icon) return 0;
  PICTDESC desc{};
  desc.cbSizeofstruct = sizeof desc;
  desc.picType = PICTYPE_ICON;
  desc.icon.hicon = icon;
  IPicture* picture = nullptr;
  if (FAILED(OleCreatePictureIndirect(&desc, IID_IPicture, TRUE, reinterpret_cast<void**>(&picture)))) {
    DestroyIcon(icon);
    return 0;
  }
  return FromPicture(picture);
}

Platform::PictureHandle Win32Platform::LoadResourcePicture(const std::string& name) {
  HMODULE module = GetModuleHandleA(nullptr);
  HRSRC res = FindResourceA(module, ToAnsi(name).c_str(), MAKEINTRESOURCEA(10));  // RT_RCDATA
  if (!res) return 0;
  HGLOBAL data = LoadResource(module, res);
  if (!data) return 0;
  return FromPicture(PictureFromBytes(LockResource(data), SizeofResource(module, res)));
}

void Win32Platform::ReleasePicture(PictureHandle picture) {
  if (picture) ToPicture(picture)->Release();
}

// The picture is drawn at its own size onto a 24-bit surface and written as a bitmap file, so a
// JPEG or an icon comes out as a bitmap too.
void Win32Platform::SavePicture(PictureHandle picture, const std::string& path) {
  if (!picture) throw rt::InvalidPropertyValue();
  IPicture* pic = ToPicture(picture);
  OLE_XSIZE_HIMETRIC hmWidth = 0;
  OLE_YSIZE_HIMETRIC hmHeight = 0;
  pic->get_Width(&hmWidth);
  pic->get_Height(&hmHeight);
  HDC screen = GetDC(nullptr);
  const int width = MulDiv(hmWidth, ::GetDeviceCaps(screen, LOGPIXELSX), 2540);
  const int height = MulDiv(hmHeight, ::GetDeviceCaps(screen, LOGPIXELSY), 2540);
  if (width <= 0 || height <= 0) {
    ReleaseDC(nullptr, screen);
    throw rt::InvalidPropertyValue();
  }
  BITMAPINFO info{};
  info.bmiHeader.biSize = sizeof info.bmiHeader;
  info.bmiHeader.biWidth = width;
  info.bmiHeader.biHeight = height;
  info.bmiHeader.biPlanes = 1;
  info.bmiHeader.biBitCount = 24;
  info.bmiHeader.biCompression = BI_RGB;
  void* bits = nullptr;
  HBITMAP dib = CreateDIBSection(screen, &info, DIB_RGB_COLORS, &bits, nullptr, 0);
  HDC dc = CreateCompatibleDC(screen);
  ReleaseDC(nullptr, screen);
  HGDIOBJ old = SelectObject(dc, dib);
  RECT all{0, 0, width, height};
  FillRect(dc, &all, static_cast<HBRUSH>(GetStockObject(WHITE_BRUSH)));
  pic->Render(dc, 0, 0, width, height, 0, hmHeight, hmWidth, -hmHeight, nullptr);
  GdiFlush();
  const DWORD stride = ((static_cast<DWORD>(width) * 3 + 3) / 4) * 4;
  const DWORD imageSize = stride * static_cast<DWORD>(height);
  BITMAPFILEHEADER head{};
  head.bfType = 0x4D42;  // "BM"
  head.bfOffBits = sizeof head + sizeof info.bmiHeader;
  head.bfSize = head.bfOffBits + imageSize;
  info.bmiHeader.biSizeImage = imageSize;
  std::string ansi = ToAnsi(path);
  HANDLE file = CreateFileA(ansi.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
  bool ok = file != INVALID_HANDLE_VALUE;
  if (ok) {
    DWORD written = 0;
    ok = WriteFile(file, &head, sizeof head, &written, nullptr) &&
         WriteFile(file, &info.bmiHeader, sizeof info.bmiHeader, &written, nullptr) &&
         WriteFile(file, bits, imageSize, &written, nullptr);
    CloseHandle(file);
  }
  SelectObject(dc, old);
  DeleteDC(dc);
  ::DeleteObject(dib);
  if (!ok) throw WriteFault(ansi);
}

bool Win32Platform::FileExists(const std::string& path) {
  DWORD a = GetFileAttributesA(ToAnsi(path).c_str());
  return a != INVALID_FILE_ATTRIBUTES && !(a & FILE_ATTRIBUTE_DIRECTORY);
}

bool Win32Platform::FolderExists(const std::string& path) {
  if (path.empty()) return false;
  DWORD a = GetFileAttributesA(ToAnsi(path).c_str());
  return a != INVALID_FILE_ATTRIBUTES && (a & FILE_ATTRIBUTE_DIRECTORY);
}

// Forced: the hidden, system and read-only marks are taken off first, as they stop a delete.
bool Win32Platform::DeleteFileForce(const std::string& path) {
  std::string ansi = ToAnsi(path);
  DWORD a = GetFileAttributesA(ansi.c_str());
  if (a == INVALID_FILE_ATTRIBUTES || (a & FILE_ATTRIBUTE_DIRECTORY)) return false;
  SetFileAttributesA(ansi.c_str(), FILE_ATTRIBUTE_NORMAL);
  if (::DeleteFileA(ansi.c_str())) return true;
  SetFileAttributesA(ansi.c_str(), a);
  return false;
}

void Win32Platform::WriteTextLines(const std::string& path, const std::vector<std::string>& lines) {
  std::string ansi = ToAnsi(path);
  HANDLE file = CreateFileA(ansi.c_str(), GENERIC_WRITE, FILE_SHARE_READ, nullptr, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL,
                            nullptr);
  if (file == INVALID_HANDLE_VALUE) throw WriteFault(ansi);
  std::string text;
  for (const auto& line : lines) text += ToAnsi(line) + "\r\n";
  DWORD written = 0;
  bool ok = WriteFile(file, text.data(), static_cast<DWORD>(text.size()), &written, nullptr) && written == text.size();
  CloseHandle(file);
  if (!ok) throw rt::PathFileAccess();
}

std::string Win32Platform::ExeName() {
  char path[MAX_PATH] = {};
  DWORD n = GetModuleFileNameA(nullptr, path, MAX_PATH);
  std::string name(path, n);
  name = name.substr(name.find_last_of('\\') + 1);
  std::size_t dot = name.find_last_of('.');
  if (dot != std::string::npos) name.resize(dot);
  return FromAnsi(name);
}

std::vector<std::string> Win32Platform::ListFolders(const std::string& path) {
  std::string pattern = ToAnsi(path);
  if (pattern.empty() || pattern.back() != '\\') pattern += '\\';
  pattern += '*';
  std::vector<std::string> names;
  WIN32_FIND_DATAA found{};
  HANDLE h = FindFirstFileA(pattern.c_str(), &found);
  if (h == INVALID_HANDLE_VALUE) return names;
  do {
    std::string name = found.cFileName;
    if ((found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) && name != "." && name != "..")
      names.push_back(FromAnsi(name));
  } while (FindNextFileA(h, &found));
  FindClose(h);
  std::sort(names.begin(), names.end(), [](const std::string& a, const std::string& b) {
    return lstrcmpiA(ToAnsi(a).c_str(), ToAnsi(b).c_str()) < 0;
  });
  return names;
}

}  // namespace tamrix::win32
