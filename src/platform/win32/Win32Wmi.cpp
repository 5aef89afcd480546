// WMI through its COM interfaces, as the scripting moniker reaches it.
#include "platform/win32/Win32Platform.h"

#include <windows.h>
#include <oleauto.h>
#include <wbemidl.h>

#include <cctype>

#include "platform/Runtime.h"
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

}  // namespace tamrix::win32
