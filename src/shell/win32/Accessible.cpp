#include "shell/win32/Accessible.h"

#include <oleacc.h>

#include <cmath>

#include "platform/win32/Ansi.h"
#include "shell/Keyboard.h"
#include "shell/win32/Binding.h"

namespace tamrix::win32 {

namespace {

// The interface's own identity. The one mingw's uuid library carries for IID_IAccessible is not
// it, and a client across processes asks for this one.
constexpr GUID kIidAccessible = {0x618736E0, 0x3C3D, 0x11CF, {0x81, 0x0C, 0x00, 0xAA, 0x00, 0x38, 0x9B, 0x71}};

long RoleOf(const Control& c) {
  switch (c.kind()) {
    case Kind::TamrixCmd: return ROLE_SYSTEM_PUSHBUTTON;
    case Kind::TamrixCB: return ROLE_SYSTEM_CHECKBUTTON;
    case Kind::TamrixOpButton:
    case Kind::OptionButton: return ROLE_SYSTEM_RADIOBUTTON;
    case Kind::TamrixPBar: return ROLE_SYSTEM_PROGRESSBAR;
    case Kind::ListBox:
    case Kind::DirListBox: return ROLE_SYSTEM_LIST;
    case Kind::ComboBox:
    case Kind::DriveListBox: return ROLE_SYSTEM_COMBOBOX;
    case Kind::Label: return ROLE_SYSTEM_STATICTEXT;
    case Kind::TamrixFrm:
    case Kind::Frame: return ROLE_SYSTEM_GROUPING;
    case Kind::Image:
    case Kind::PictureBox: return ROLE_SYSTEM_GRAPHIC;
    default: return ROLE_SYSTEM_CLIENT;
  }
}

bool Checked(const Control& c) {
  if (c.kind() == Kind::TamrixCB) return static_cast<const TamrixCB&>(c).Value() == 1;
  if (keyboard::IsOption(c)) return static_cast<const OptionBase&>(c).Selected();
  return false;
}

long StateOf(HWND window, const Control& c) {
  long state = 0;
  if (!IsWindowVisible(window)) state |= STATE_SYSTEM_INVISIBLE;
  if (!keyboard::Reachable(c) && c.Visible()) state |= STATE_SYSTEM_UNAVAILABLE;
  if (keyboard::TakesFocus(c)) state |= STATE_SYSTEM_FOCUSABLE;
  if (GetFocus() == window) state |= STATE_SYSTEM_FOCUSED;
  if (Checked(c)) state |= STATE_SYSTEM_CHECKED;
  if (c.kind() == Kind::Label || c.kind() == Kind::TamrixPBar) state |= STATE_SYSTEM_READONLY;
  return state;
}

bool IsList(const Control& c) {
  return c.kind() == Kind::ListBox || c.kind() == Kind::DirListBox || c.kind() == Kind::ComboBox ||
         c.kind() == Kind::DriveListBox;
}

// What is read out: the caption as it shows, without the "&" of the access key. A list has no
// caption: the system names it by the label in front of it, here the label declared just before
// it in its container.
std::string NameOf(const Control& c) {
  if (c.kind() == Kind::TamrixPBar) return {};
  if (IsList(c)) {
    const Control* before = nullptr;
    if (const Control* parent = c.Parent())
      for (const Control* sibling : parent->Children()) {
        if (sibling == &c) break;
        before = sibling;
      }
    return before && before->kind() == Kind::Label ? keyboard::ShownCaption(before->Caption()) : std::string();
  }
  return keyboard::ShownCaption(c.Caption());
}

// A bar says its value as a percentage, as the platform's progress bar does; a drop-down says
// its chosen line.
std::string ValueOf(const Control& c) {
  if (c.kind() == Kind::ComboBox || c.kind() == Kind::DriveListBox) return static_cast<const ListBase&>(c).Text();
  if (c.kind() != Kind::TamrixPBar) return {};
  return std::to_string(static_cast<long>(std::lround(static_cast<const TamrixPBar&>(c).Shown()))) + "%";
}

BSTR ToBstr(const std::string& utf8) {
  std::string ansi = ToAnsi(utf8);
  int n = MultiByteToWideChar(CP_ACP, 0, ansi.c_str(), static_cast<int>(ansi.size()), nullptr, 0);
  BSTR b = SysAllocStringLen(nullptr, static_cast<UINT>(n));
  if (b && n) MultiByteToWideChar(CP_ACP, 0, ansi.c_str(), static_cast<int>(ansi.size()), b, n);
  return b;
}

bool IsSelf(const VARIANT& child) { return child.vt == VT_I4 && child.lVal == CHILDID_SELF; }

// One control's client object. It asks the binding for the control at each question, so that
// a reader holding it after the window is gone gets an error, never a control that isn't there;
// what is the same for every window (its place, its parent, hit tests) is the system's object.
class ControlAccessible final : public IAccessible {
 public:
  ControlAccessible(Binding& binding, HWND window, IAccessible* standard)
      : binding_(binding), window_(window), standard_(standard) {}

  // IUnknown
  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** out) override {
    if (!out) return E_POINTER;
    if (iid == IID_IUnknown || iid == IID_IDispatch || iid == kIidAccessible) {
      *out = static_cast<IAccessible*>(this);
      AddRef();
      return S_OK;
    }
    *out = nullptr;
    return E_NOINTERFACE;
  }
  ULONG STDMETHODCALLTYPE AddRef() override { return static_cast<ULONG>(InterlockedIncrement(&refs_)); }
  ULONG STDMETHODCALLTYPE Release() override {
    LONG left = InterlockedDecrement(&refs_);
    if (left == 0) {
      if (standard_) standard_->Release();
      delete this;
    }
    return static_cast<ULONG>(left);
  }

  // IDispatch: no type information; clients call the interface itself.
  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override {
    if (count) *count = 0;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*, UINT*) override {
    return E_NOTIMPL;
  }

  // IAccessible: what is the control's own.
  HRESULT STDMETHODCALLTYPE get_accName(VARIANT child, BSTR* name) override {
    return Answer(child, name, [](HWND, const Control& c, BSTR* out) {
      std::string n = NameOf(c);
      *out = n.empty() ? nullptr : ToBstr(n);
      return n.empty() ? S_FALSE : S_OK;
    });
  }
  HRESULT STDMETHODCALLTYPE get_accValue(VARIANT child, BSTR* value) override {
    return Answer(child, value, [](HWND, const Control& c, BSTR* out) {
      std::string v = ValueOf(c);
      *out = v.empty() ? nullptr : ToBstr(v);
      return v.empty() ? S_FALSE : S_OK;
    });
  }
  HRESULT STDMETHODCALLTYPE get_accRole(VARIANT child, VARIANT* role) override {
    return Answer(child, role, [](HWND, const Control& c, VARIANT* out) {
      out->vt = VT_I4;
      out->lVal = RoleOf(c);
      return S_OK;
    });
  }
  HRESULT STDMETHODCALLTYPE get_accState(VARIANT child, VARIANT* state) override {
    return Answer(child, state, [](HWND w, const Control& c, VARIANT* out) {
      out->vt = VT_I4;
      out->lVal = StateOf(w, c);
      return S_OK;
    });
  }
  HRESULT STDMETHODCALLTYPE get_accKeyboardShortcut(VARIANT child, BSTR* shortcut) override {
    return Answer(child, shortcut, [](HWND, const Control& c, BSTR* out) {
      char key = keyboard::AccessKeyOf(c.Caption());
      *out = key ? ToBstr(std::string("Alt+") + key) : nullptr;
      return key ? S_OK : S_FALSE;
    });
  }
  HRESULT STDMETHODCALLTYPE get_accDefaultAction(VARIANT child, BSTR* action) override {
    return Answer(child, action, [](HWND, const Control& c, BSTR* out) {
      const char* word = c.kind() == Kind::TamrixCmd ? "Appuyer"
                         : c.kind() == Kind::TamrixCB ? (Checked(c) ? "Décocher" : "Cocher")
                         : keyboard::IsOption(c) ? "Sélectionner" : nullptr;
      *out = word ? ToBstr(word) : nullptr;
      return word ? S_OK : S_FALSE;
    });
  }
  HRESULT STDMETHODCALLTYPE accDoDefaultAction(VARIANT child) override {
    if (!IsSelf(child)) return E_INVALIDARG;
    Control* c = binding_.ControlOf(window_);
    if (!c) return RPC_E_DISCONNECTED;
    if (c->kind() != Kind::TamrixCmd && c->kind() != Kind::TamrixCB && !keyboard::IsOption(*c)) return DISP_E_MEMBERNOTFOUND;
    // As a click does, once this call has returned: the handler may open a message box.
    PostMessageA(window_, BM_CLICK, 0, 0);
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE get_accChildCount(long* count) override {
    if (!count) return E_POINTER;
    *count = 0;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE get_accChild(VARIANT, IDispatch** child) override {
    if (child) *child = nullptr;
    return E_INVALIDARG;
  }
  HRESULT STDMETHODCALLTYPE get_accFocus(VARIANT* focus) override {
    if (!focus) return E_POINTER;
    focus->vt = VT_EMPTY;
    if (GetFocus() == window_) {
      focus->vt = VT_I4;
      focus->lVal = CHILDID_SELF;
    }
    return S_OK;
  }

  // The system's answers: place, parent, navigation, hit tests, selection, help.
  HRESULT STDMETHODCALLTYPE get_accParent(IDispatch** parent) override { return Std()->get_accParent(parent); }
  HRESULT STDMETHODCALLTYPE get_accDescription(VARIANT child, BSTR* d) override {
    return Std()->get_accDescription(child, d);
  }
  HRESULT STDMETHODCALLTYPE get_accHelp(VARIANT child, BSTR* help) override { return Std()->get_accHelp(child, help); }
  HRESULT STDMETHODCALLTYPE get_accHelpTopic(BSTR* file, VARIANT child, long* topic) override {
    return Std()->get_accHelpTopic(file, child, topic);
  }
  HRESULT STDMETHODCALLTYPE get_accSelection(VARIANT* selection) override { return Std()->get_accSelection(selection); }
  HRESULT STDMETHODCALLTYPE accSelect(long flags, VARIANT child) override { return Std()->accSelect(flags, child); }
  HRESULT STDMETHODCALLTYPE accLocation(long* x, long* y, long* w, long* h, VARIANT child) override {
    return Std()->accLocation(x, y, w, h, child);
  }
  HRESULT STDMETHODCALLTYPE accNavigate(long dir, VARIANT start, VARIANT* end) override {
    return Std()->accNavigate(dir, start, end);
  }
  HRESULT STDMETHODCALLTYPE accHitTest(long x, long y, VARIANT* child) override { return Std()->accHitTest(x, y, child); }
  HRESULT STDMETHODCALLTYPE put_accName(VARIANT, BSTR) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE put_accValue(VARIANT, BSTR) override { return E_NOTIMPL; }

 private:
  IAccessible* Std() { return standard_; }

  template <typename Out, typename Fn>
  HRESULT Answer(const VARIANT& child, Out* out, Fn fn) {
    if (!out) return E_POINTER;
    if (!IsSelf(child)) return E_INVALIDARG;
    Control* c = binding_.ControlOf(window_);
    if (!c) return RPC_E_DISCONNECTED;
    return fn(window_, *c, out);
  }

  LONG refs_ = 1;
  Binding& binding_;
  HWND window_;
  IAccessible* standard_;
};

}  // namespace

LRESULT AnswerGetObject(Binding& binding, HWND window, WPARAM wParam, LPARAM lParam) {
  if (static_cast<LONG>(lParam) != OBJID_CLIENT) return 0;
  CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);  // once is enough; later calls only count
  IAccessible* standard = nullptr;
  if (FAILED(CreateStdAccessibleObject(window, OBJID_CLIENT, kIidAccessible, reinterpret_cast<void**>(&standard))))
    return 0;
  auto* object = new ControlAccessible(binding, window, standard);
  LRESULT answer = LresultFromObject(kIidAccessible, wParam, static_cast<IAccessible*>(object));
  object->Release();  // the answer holds its own reference
  return answer > 0 ? answer : 0;
}

void Announce(HWND window, Control& control, Spoken& spoken) {
  std::string name = NameOf(control), value = ValueOf(control);
  long state = Checked(control) ? STATE_SYSTEM_CHECKED : 0;
  if (!control.Enabled()) state |= STATE_SYSTEM_UNAVAILABLE;
  if (spoken.told) {
    if (name != spoken.name) NotifyWinEvent(EVENT_OBJECT_NAMECHANGE, window, OBJID_CLIENT, CHILDID_SELF);
    if (state != spoken.state) NotifyWinEvent(EVENT_OBJECT_STATECHANGE, window, OBJID_CLIENT, CHILDID_SELF);
    if (value != spoken.value) NotifyWinEvent(EVENT_OBJECT_VALUECHANGE, window, OBJID_CLIENT, CHILDID_SELF);
  }
  spoken = {true, std::move(name), state, std::move(value)};
}

}  // namespace tamrix::win32
