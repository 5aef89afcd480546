// WMI through its COM interfaces, as the scripting moniker reaches it.
#include "platform/win32/Win32Platform.h"

#include <windows.h>
#include <oleauto.h>
#include <wbemidl.h>

#include <optional>

#include "platform/Runtime.h"
#include "platform/WmiMoniker.h"
#include "platform/win32/Ansi.h"
#include "platform/win32/Win32Internal.h"

namespace tamrix::win32 {

namespace {

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

class ComWmiCollection : public WmiCollection {
 public:
  explicit ComWmiCollection(IEnumWbemClassObject* e) : e_(e) {}
  ~ComWmiCollection() override { e_->Release(); }
  std::shared_ptr<WmiObject> Next() override {
    IWbemClassObject* o = nullptr;
    ULONG n = 0;
    HRESULT hr = e_->Next(static_cast<LONG>(WBEM_INFINITE), 1, &o, &n);
    if (FAILED(hr)) AutomationError(hr);
    if (hr != WBEM_S_NO_ERROR || n == 0) return nullptr;
    return std::make_shared<ComWmiObject>(o);
  }

 private:
  IEnumWbemClassObject* e_;
};

class ComWmiService : public WmiService {
 public:
  ComWmiService(IWbemServices* s, DWORD impersonationLevel) : s_(s) {
    // Where the service is reached in the process itself (as on Wine) there is no proxy to set,
    // and the call fails without harm.
    CoSetProxyBlanket(s_, RPC_C_AUTHN_WINNT, RPC_C_AUTHZ_NONE, nullptr, RPC_C_AUTHN_LEVEL_CALL, impersonationLevel,
                      nullptr, EOAC_NONE);
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
  // As the scripting objects ask: the call returns at once, and each object comes when the walk
  // fetches it.
  std::shared_ptr<WmiCollection> InstancesOf(const std::string& className) override {
    BSTR c = Bstr(className);
    IEnumWbemClassObject* e = nullptr;
    const long flags = static_cast<long>(WBEM_FLAG_SHALLOW) | static_cast<long>(WBEM_FLAG_FORWARD_ONLY) |
                       static_cast<long>(WBEM_FLAG_RETURN_IMMEDIATELY);
    HRESULT hr = s_->CreateInstanceEnum(c, flags, nullptr, &e);
    SysFreeString(c);
    if (FAILED(hr) || !e) AutomationError(FAILED(hr) ? hr : E_FAIL);
    return std::make_shared<ComWmiCollection>(e);
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

// The scripting moniker's default impersonation level, as the machine's WMI scripting settings
// give it; none when the value is missing or not a number.
static std::optional<std::uint32_t> ScriptingDefaultLevel() {
  DWORD level = 0, size = sizeof level, type = 0;
  HKEY key = nullptr;
  if (RegOpenKeyExA(HKEY_LOCAL_MACHINE, "SOFTWARE\\Microsoft\\WBEM\\Scripting", 0, KEY_QUERY_VALUE, &key) != ERROR_SUCCESS)
    return std::nullopt;
  LONG r = RegQueryValueExA(key, "Default Impersonation Level", nullptr, &type, reinterpret_cast<BYTE*>(&level), &size);
  RegCloseKey(key);
  if (r != ERROR_SUCCESS || type != REG_DWORD) return std::nullopt;
  return level;
}

// The moniker names WMI ("winmgmts:"), maybe a security clause in braces, maybe "!" and a
// namespace; without one the namespace is root\cimv2, as the scripting moniker has it. A bare
// "winmgmts:" runs at the level the scripting moniker takes by default, not at COM's own default,
// at which Windows may refuse some classes' queries.
std::shared_ptr<WmiService> Win32Platform::WmiGetObject(const std::string& moniker) {
  const wmi::Moniker m = wmi::ParseMoniker(moniker);
  if (!m.valid) AutomationError(MK_E_SYNTAX);
  const std::string& path = m.path;

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
  return std::make_shared<ComWmiService>(services, wmi::ImpersonationLevel(m, ScriptingDefaultLevel()));
}

}  // namespace tamrix::win32
