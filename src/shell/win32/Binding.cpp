#include "shell/win32/Binding.h"

#include <commctrl.h>

#include <cctype>
#include <cmath>

#include "platform/win32/Ansi.h"
#include "platform/win32/ProgramModal.h"
#include "shell/Dispatch.h"
#include "shell/Keyboard.h"
#include "shell/win32/Accessible.h"
#include "shell/win32/ControlMessages.h"
#include "shell/win32/Keyboard.h"

namespace tamrix::win32 {

namespace {

int Px(int twips) { return Resources::ToPixels(twips); }

// The toolkit's own windows; every other control is drawn by the skin.
const char* ToolkitClass(Kind kind) {
  switch (kind) {
    case Kind::TextBox: return "EDIT";
    case Kind::ListBox:
    case Kind::DirListBox: return "LISTBOX";
    case Kind::ComboBox:
    case Kind::DriveListBox: return "COMBOBOX";
    case Kind::VScrollBar: return "SCROLLBAR";
    default: return nullptr;
  }
}

bool IsOwnDrawn(Kind kind) { return ToolkitClass(kind) == nullptr; }

DWORD ToolkitStyle(const Control& c) {
  const Design& d = c.design();
  switch (c.kind()) {
    case Kind::TextBox:
      return WS_BORDER | WS_TABSTOP | (d.multiLine ? ES_MULTILINE | ES_AUTOVSCROLL | WS_VSCROLL : ES_AUTOHSCROLL) |
             (d.locked ? ES_READONLY : 0);
    case Kind::ListBox:
    case Kind::DirListBox: return WS_BORDER | WS_VSCROLL | WS_TABSTOP | LBS_NOTIFY | LBS_NOINTEGRALHEIGHT;
    case Kind::ComboBox:
    case Kind::DriveListBox: return WS_VSCROLL | WS_TABSTOP | CBS_DROPDOWNLIST;
    case Kind::VScrollBar: return SBS_VERT;
    default: return 0;
  }
}

int Shift() {
  return (GetKeyState(VK_SHIFT) < 0 ? 1 : 0) | (GetKeyState(VK_CONTROL) < 0 ? 2 : 0) |
         (GetKeyState(VK_MENU) < 0 ? 4 : 0);
}

}  // namespace

// Everything of a control that its painting shows, in one comparable text.
std::string Appearance(Control& c) {
  std::string a = c.Caption();
  auto add = [&a](long long v) { a += '\x1f' + std::to_string(v); };
  add(c.ForeColor());
  add(c.BackColor());
  add(c.Enabled());
  switch (c.kind()) {
    case Kind::TamrixCmd:
      add(static_cast<TamrixCmd&>(c).FaceColor());
      break;
    case Kind::TamrixCB:
      add(static_cast<TamrixCB&>(c).Value());
      break;
    case Kind::TamrixOpButton:
    case Kind::OptionButton:
      add(static_cast<OptionBase&>(c).Selected());
      break;
    case Kind::TamrixPBar:
      add(static_cast<long long>(static_cast<TamrixPBar&>(c).Shown() * 1000));
      break;
    case Kind::Image:
      add(static_cast<long long>(static_cast<Image&>(c).Picture()));
      break;
    case Kind::PictureBox:
      add(static_cast<long long>(static_cast<PictureBox&>(c).Picture()));
      add(static_cast<PictureBox&>(c).BorderStyle());
      break;
    default:
      break;
  }
  return a;
}

// One control's window, kept in step with the control.
class WindowPeer : public Peer {
 public:
  WindowPeer(Binding& b, Control& c, Form& form) : binding(b), control(c), form(form) {}

  void Refresh(Control& c) override;

  Binding& binding;
  Control& control;
  Form& form;
  HWND hwnd = nullptr;
  bool pressed = false;
  bool tracking = false;
  bool shownOnce = false;
  bool activatedOnce = false;
  UINT_PTR timerId = 0;
  int timerInterval = 0;  // the interval the Win32 timer runs at, 0 when it is off
  HWND formWindow = nullptr;  // timers tick on their form's window
  std::string tipAnsi;
  int windowState = 0;
  int mousePointer = 0;
  bool updating = false;                  // keeps our own writes from echoing back as user input
  std::string painted;                    // what the window last showed of its control
  std::vector<std::string> shownItems;    // the list as the window holds it
  bool childrenPending = false;           // a container whose controls get windows when it shows
  Spoken spoken;                          // what screen readers were last told of the control

  // Makes the windows of a container's controls the first time it is to be seen, and so on down
  // for the containers among them that are to be seen too.
  void MakeChildrenIfShown();

  // A notification of a toolkit window (edit, list, drop-down, scroll bar) about the user's doing.
  void Notify(UINT msg, WPARAM wParam);

 private:
  void SyncContent();

 public:
  void SyncToolTip(Control& c);
  void AddToolTip(HWND tips);
  bool tipAdded = false;  // the form's tips window knows this window's tip
};

// The window of a control's container, where a windowless control is drawn.
HWND ContainerWindow(Control& c);

constexpr char kToolTipsProp[] = "TamrixTips";
constexpr UINT_PTR kToolTipsTimer = 0x7A000001;  // far above the controls' timers, numbered from 1

// A tip set at run time replaces the one of the design, or is the first one. A form's tips window
// comes after its first paint; the tips set before are added to it then.
void WindowPeer::SyncToolTip(Control& c) {
  std::string tip = ToAnsi(c.design().tip);
  if (tip == tipAnsi || !hwnd) return;
  tipAnsi = std::move(tip);
  if (auto tips = reinterpret_cast<HWND>(GetPropA(formWindow, kToolTipsProp))) AddToolTip(tips);
}

void WindowPeer::AddToolTip(HWND tips) {
  TOOLINFOA ti{};
  ti.cbSize = sizeof ti;
  ti.uFlags = TTF_IDISHWND | TTF_SUBCLASS;
  ti.hwnd = hwnd;
  ti.uId = reinterpret_cast<UINT_PTR>(hwnd);
  ti.lpszText = tipAnsi.data();
  SendMessageA(tips, tipAdded ? TTM_UPDATETIPTEXTA : TTM_ADDTOOLA, 0, reinterpret_cast<LPARAM>(&ti));
  tipAdded = true;
}

void WindowPeer::MakeChildrenIfShown() {
  if (!childrenPending || !control.Visible()) return;
  childrenPending = false;
  for (Control* child : control.Children()) binding.Create(*child, hwnd, form);
  for (Control* child : control.Children())
    if (auto* peer = dynamic_cast<WindowPeer*>(child->peer)) peer->MakeChildrenIfShown();
}

void WindowPeer::Refresh(Control& c) {
  if (c.kind() == Kind::Timer) {
    auto& t = static_cast<Timer&>(c);
    if (!formWindow || !IsWindow(formWindow)) return;
    // A timer's countdown starts again when it is switched on or given a new interval, and only
    // then: switching on a running timer leaves its countdown alone.
    int interval = t.Enabled() ? t.Interval() : 0;
    if (interval == timerInterval) return;
    timerInterval = interval;
    if (interval > 0)
      SetTimer(formWindow, timerId, static_cast<UINT>(interval), nullptr);
    else
      KillTimer(formWindow, timerId);
    return;
  }
  if (c.kind() == Kind::Shape) {
    if (HWND container = ContainerWindow(c)) InvalidateRect(container, nullptr, FALSE);
    return;
  }
  if (!hwnd) return;
  if (c.kind() == Kind::Form) {
    auto& f = static_cast<Form&>(c);
    if (!f.Loaded()) {
      DestroyWindow(hwnd);
      return;
    }
    if (f.WindowState() != windowState) {
      windowState = f.WindowState();
      if (shownOnce) ShowWindow(hwnd, windowState == 1 ? SW_MINIMIZE : SW_RESTORE);
    }
    // A form made visible again keeps its state: a minimised one comes back minimised.
    if (shownOnce && (IsWindowVisible(hwnd) != FALSE) != c.Visible())
      ShowWindow(hwnd, !c.Visible() ? SW_HIDE : windowState == 1 ? SW_SHOWMINNOACTIVE : SW_SHOWNA);
    {
      // While a message box stands, the form stays disabled and its wish waits for the box to go.
      bool wasEnabled = IsWindowEnabled(hwnd) != FALSE;
      EnableProgramWindow(hwnd, c.Enabled());
      if (wasEnabled != (IsWindowEnabled(hwnd) != FALSE)) binding.ReachChanged(c, false);
    }
    SetWindowTextA(hwnd, ToAnsi(c.Caption()).c_str());
    if (f.MousePointer() != mousePointer) {
      // A new pointer shows at once under a mouse that stands still over the window.
      mousePointer = f.MousePointer();
      POINT pt{};
      GetCursorPos(&pt);
      HWND under = WindowFromPoint(pt);
      if (under && (under == hwnd || IsChild(hwnd, under)))
        SendMessageA(under, WM_SETCURSOR, reinterpret_cast<WPARAM>(under), MAKELPARAM(HTCLIENT, WM_MOUSEMOVE));
    }
    return;
  }
  SyncContent();
  SyncToolTip(c);
  if (IsWindowEnabled(hwnd) != static_cast<BOOL>(c.Enabled())) {
    EnableWindow(hwnd, c.Enabled());
    binding.ReachChanged(c, false);
  }
  RECT r;
  GetWindowRect(hwnd, &r);
  MapWindowPoints(HWND_DESKTOP, GetParent(hwnd), reinterpret_cast<POINT*>(&r), 2);
  const Twips& t = c.Rect();
  if (r.left != Px(t.left) || r.top != Px(t.top) || r.right - r.left != Px(t.width) || r.bottom - r.top != Px(t.height))
    SetWindowPos(hwnd, nullptr, Px(t.left), Px(t.top), Px(t.width), Px(t.height), SWP_NOZORDER | SWP_NOACTIVATE);
  MakeChildrenIfShown();
  bool visible = (GetWindowLongA(hwnd, GWL_STYLE) & WS_VISIBLE) != 0;
  if (visible != c.Visible()) {
    ShowWindow(hwnd, c.Visible() ? SW_SHOWNA : SW_HIDE);
    const bool container = c.kind() == Kind::TamrixFrm || c.kind() == Kind::Frame || c.kind() == Kind::PictureBox;
    binding.ReachChanged(c, container && c.Visible());
  }
  if (IsOwnDrawn(c.kind())) {
    std::string shown = Appearance(c);
    if (shown != painted) {  // the monitor's ticks set the same captions over and over
      painted = std::move(shown);
      InvalidateRect(hwnd, nullptr, FALSE);
      Announce(hwnd, c, spoken);
    }
  }
}

HWND ContainerWindow(Control& c) {
  Control* parent = c.Parent();
  auto* peer = parent ? dynamic_cast<WindowPeer*>(parent->peer) : nullptr;
  return peer ? peer->hwnd : nullptr;
}

void WindowPeer::SyncContent() {
  updating = true;
  switch (control.kind()) {
    case Kind::ListBox:
    case Kind::DirListBox:
    case Kind::ComboBox:
    case Kind::DriveListBox: {
      auto& list = static_cast<ListBase&>(control);
      const bool combo = control.kind() == Kind::ComboBox || control.kind() == Kind::DriveListBox;
      if (list.Items() != shownItems) {
        SendMessageA(hwnd, combo ? CB_RESETCONTENT : LB_RESETCONTENT, 0, 0);
        for (const auto& item : list.Items())
          SendMessageA(hwnd, combo ? CB_ADDSTRING : LB_ADDSTRING, 0, reinterpret_cast<LPARAM>(ToAnsi(item).c_str()));
        shownItems = list.Items();
      }
      SendMessageA(hwnd, combo ? CB_SETCURSEL : LB_SETCURSEL, static_cast<WPARAM>(list.ListIndex()), 0);
      break;
    }
    case Kind::VScrollBar: {
      auto& bar = static_cast<VScrollBar&>(control);
      SCROLLINFO si{sizeof si, SIF_RANGE | SIF_POS | SIF_PAGE, bar.Min(), bar.Max(), 0, bar.Value(), 0};
      SetScrollInfo(hwnd, SB_CTL, &si, TRUE);
      break;
    }
    default: {
      // The window shows a text up to its first NUL, as the platform's windows do.
      std::string caption = ToAnsi(control.Caption());
      int length = GetWindowTextLengthA(hwnd);
      std::string current(static_cast<std::size_t>(length) + 1, '\0');
      GetWindowTextA(hwnd, current.data(), length + 1);
      current.resize(static_cast<std::size_t>(length));
      if (std::string(caption.c_str()) != current) SetWindowTextA(hwnd, caption.c_str());
      break;
    }
  }
  updating = false;
}

void WindowPeer::Notify(UINT msg, WPARAM wParam) {
  if (updating) return;
  Control& c = control;
  if (msg == WM_COMMAND) {
    WORD code = HIWORD(wParam);
    if (c.kind() == Kind::TextBox && code == EN_CHANGE) {
      int length = GetWindowTextLengthA(hwnd);
      std::string text(static_cast<std::size_t>(length) + 1, '\0');
      GetWindowTextA(hwnd, text.data(), length + 1);
      text.resize(static_cast<std::size_t>(length));
      binding.Invoke([&] { static_cast<TextBox&>(c).SetText(FromAnsi(text)); });
    } else if (c.kind() == Kind::DirListBox && code == LBN_DBLCLK) {
      // Opening an entry of the folder list makes it the list's folder.
      auto index = static_cast<int>(SendMessageA(hwnd, LB_GETCURSEL, 0, 0));
      if (index >= 0) binding.Invoke([&] { static_cast<DirListBox&>(c).OpenItem(index); });
    } else if (((c.kind() == Kind::ListBox || c.kind() == Kind::DirListBox) && code == LBN_SELCHANGE) ||
               ((c.kind() == Kind::ComboBox || c.kind() == Kind::DriveListBox) && code == CBN_SELCHANGE)) {
      auto index = static_cast<int>(
          SendMessageA(hwnd, c.kind() == Kind::ListBox || c.kind() == Kind::DirListBox ? LB_GETCURSEL : CB_GETCURSEL, 0, 0));
      binding.Invoke([&] { static_cast<ListBase&>(c).SetListIndex(index); });
    }
  } else if (msg == WM_VSCROLL && c.kind() == Kind::VScrollBar) {
    auto& bar = static_cast<VScrollBar&>(c);
    int v = bar.Value();
    switch (LOWORD(wParam)) {
      case SB_LINEUP: v -= bar.SmallChange(); break;
      case SB_LINEDOWN: v += bar.SmallChange(); break;
      case SB_PAGEUP: v -= bar.LargeChange(); break;
      case SB_PAGEDOWN: v += bar.LargeChange(); break;
      case SB_TOP: v = bar.Min(); break;
      case SB_BOTTOM: v = bar.Max(); break;
      case SB_THUMBTRACK:
      case SB_THUMBPOSITION: {
        SCROLLINFO si{sizeof si, SIF_TRACKPOS};
        GetScrollInfo(hwnd, SB_CTL, &si);
        v = si.nTrackPos;
        break;
      }
      default: return;
    }
    binding.Invoke([&] { bar.SetValue(v); });
  }
}

namespace {

// A text box with a key-press handler sees each typed character first; a code set to 0 is
// swallowed.
LRESULT CALLBACK KeyPressProc(HWND hwnd, UINT msg, WPARAM wParam, LPARAM lParam, UINT_PTR id, DWORD_PTR data) {
  if (msg == WM_CHAR) {
    auto* p = reinterpret_cast<WindowPeer*>(data);
    auto& box = static_cast<TextBox&>(p->control);
    int key = static_cast<unsigned char>(wParam);
    p->binding.Invoke([&] { box.KeyPress(key); });
    if (key == 0) return 0;
    wParam = static_cast<unsigned char>(key);
  } else if (msg == WM_NCDESTROY) {
    RemoveWindowSubclass(hwnd, KeyPressProc, id);
  }
  return DefSubclassProc(hwnd, msg, wParam, lParam);
}

bool IsListKind(Kind kind) {
  return kind == Kind::ListBox || kind == Kind::DirListBox || kind == Kind::ComboBox || kind == Kind::DriveListBox;
}

// The system's list and drop-down windows answer screen readers with their own role and the
// name of the label in front of them; the rest of their answers stay the system's.
LRESULT CALLBACK ListProc(HWND hwnd, UINT msg, WPARAM wParam, LPARAM lParam, UINT_PTR id, DWORD_PTR data) {
  if (msg == WM_GETOBJECT) {
    auto* p = reinterpret_cast<WindowPeer*>(data);
    if (LRESULT answer = AnswerGetObject(p->binding, hwnd, wParam, lParam)) return answer;
  } else if (msg == WM_NCDESTROY) {
    RemoveWindowSubclass(hwnd, ListProc, id);
  }
  return DefSubclassProc(hwnd, msg, wParam, lParam);
}

}  // namespace

Binding::Binding(Platform& platform, HINSTANCE instance)
    : platform_(platform), instance_(instance), resources_(instance) {
  INITCOMMONCONTROLSEX icc{sizeof icc, ICC_WIN95_CLASSES};
  InitCommonControlsEx(&icc);

  WNDCLASSA form{};
  form.style = CS_DBLCLKS;
  form.lpfnWndProc = FormProc;
  form.hInstance = instance;
  form.hIcon = LoadIconA(instance, MAKEINTRESOURCEA(1));
  form.hCursor = LoadCursorA(nullptr, MAKEINTRESOURCEA(32512));
  form.lpszClassName = kFormClass;
  RegisterClassA(&form);

  WNDCLASSA ctl{};
  ctl.lpfnWndProc = ControlProc;
  ctl.hInstance = instance;
  ctl.hCursor = LoadCursorA(nullptr, MAKEINTRESOURCEA(32512));
  ctl.lpszClassName = kControlClass;
  RegisterClassA(&ctl);
}

Binding::~Binding() = default;

void Binding::Invoke(const std::function<void()>& handler) {
  if (!RunHandler(platform_, handler)) ExitProcess(0);  // the runtime ends the program after its box
}

void Binding::FormGone() {
  if (--liveForms_ == 0) PostQuitMessage(0);
}

// Timers tick on their form's window whether their container is seen or not: they are made with
// the form, wherever they stand.
void Binding::CreateTimers(Control& c, Form& form) {
  for (Control* child : c.Children()) {
    if (child->kind() == Kind::Timer) Create(*child, nullptr, form);
    CreateTimers(*child, form);
  }
}

void Binding::Create(Control& c, HWND parent, Form& form) {
  if (c.peer) return;  // a timer, made ahead of its container's controls
  auto peer = std::make_unique<WindowPeer>(*this, c, form);
  WindowPeer* p = peer.get();
  peers_.push_back(std::move(peer));
  c.peer = p;
  p->formWindow = reinterpret_cast<HWND>(static_cast<ULONG_PTR>(form.hWnd));

  if (c.kind() == Kind::Timer) {
    p->timerId = peers_.size();
    p->Refresh(c);
    return;
  }
  if (c.kind() == Kind::Shape) return;  // drawn by its form, it has no window of its own
  if (c.kind() == Kind::DrvFact) return;  // invisible at run time: it only answers questions
  // The drive list reads the machine's drives as its window is made, as the classic one does.
  if (c.kind() == Kind::DriveListBox && !static_cast<DriveListBox&>(c).Filled()) static_cast<DriveListBox&>(c).Refresh();

  const Twips& t = c.Rect();
  DWORD style = WS_CHILD | WS_CLIPSIBLINGS | (c.Visible() ? WS_VISIBLE : 0) | (c.Enabled() ? 0 : WS_DISABLED);
  if (c.kind() == Kind::TamrixFrm || c.kind() == Kind::Frame || c.kind() == Kind::PictureBox) style |= WS_CLIPCHILDREN;
  const char* toolkit = ToolkitClass(c.kind());
  if (toolkit) {
    style |= ToolkitStyle(c);
    // A drop-down list's window is as tall as its open list; the design height is the closed box.
    int height = c.kind() == Kind::ComboBox || c.kind() == Kind::DriveListBox ? Px(t.height) * 10 : Px(t.height);
    std::string text = c.kind() == Kind::TextBox ? ToAnsi(c.Caption()) : std::string();
    p->hwnd = CreateWindowExA(0, toolkit, text.c_str(), style, Px(t.left), Px(t.top), Px(t.width), height, parent,
                              nullptr, instance_, nullptr);
    SetWindowLongPtrA(p->hwnd, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(p));
    if (c.kind() == Kind::TextBox && static_cast<TextBox&>(c).OnKeyPress)
      SetWindowSubclass(p->hwnd, KeyPressProc, 1, reinterpret_cast<DWORD_PTR>(p));
    if (IsListKind(c.kind())) SetWindowSubclass(p->hwnd, ListProc, 2, reinterpret_cast<DWORD_PTR>(p));
    SendMessageA(p->hwnd, WM_SETFONT, reinterpret_cast<WPARAM>(resources_.Font(c.design().font)), FALSE);
    p->Refresh(c);
  } else {
    p->hwnd = CreateWindowExA(0, kControlClass, ToAnsi(c.Caption()).c_str(), style, Px(t.left), Px(t.top),
                              Px(t.width), Px(t.height), parent, nullptr, instance_, p);
    // What the window shows as it is made is what a screen reader is first told: the first
    // change after it, a box ticked or a caption rewritten, is then announced as a change.
    p->painted = Appearance(c);
    Announce(p->hwnd, c, p->spoken);
  }
  // Siblings stack in the order they are declared, the first in front. A window the system
  // already put behind its siblings is left where it is: the move costs a round of messages.
  if (GetWindow(p->hwnd, GW_HWNDNEXT))
    SetWindowPos(p->hwnd, HWND_BOTTOM, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
  SetPropA(p->hwnd, kDesignNameProp,
           reinterpret_cast<HANDLE>(static_cast<ULONG_PTR>(GlobalAddAtomA(c.Name().c_str()))));
  p->SyncToolTip(c);
  // A container's controls get their windows when it is first to be seen: at start-up the user
  // waits only for the windows of the page the form's load leaves showing.
  if (c.kind() == Kind::TamrixFrm || c.kind() == Kind::Frame || c.kind() == Kind::PictureBox) {
    p->childrenPending = true;
    CreateTimers(c, form);
    return;
  }
  for (Control* child : c.Children()) Create(*child, p->hwnd, form);
}

HWND Binding::CreateFormWindow(Form& form) {
  auto peer = std::make_unique<WindowPeer>(*this, form, form);
  WindowPeer* p = peer.get();
  peers_.push_back(std::move(peer));

  // The skin's main window draws its own frame; a fixed dialog frame is the platform's, with a
  // caption and a close box but neither minimise nor maximise, around the designed client area.
  const bool dialog = form.design().borderStyle == 3;
  const DWORD style = dialog ? WS_POPUP | WS_CAPTION | WS_SYSMENU | WS_CLIPCHILDREN
                             : WS_POPUP | WS_SYSMENU | WS_MINIMIZEBOX | WS_CLIPCHILDREN;
  const DWORD exStyle = WS_EX_APPWINDOW | (dialog ? WS_EX_DLGMODALFRAME : 0);
  RECT frame{0, 0, Px(form.Rect().width), Px(form.Rect().height)};
  if (dialog) AdjustWindowRectEx(&frame, style, FALSE, exStyle);
  const int w = frame.right - frame.left, h = frame.bottom - frame.top;
  const int x = (GetSystemMetrics(SM_CXSCREEN) - w) / 2, y = (GetSystemMetrics(SM_CYSCREEN) - h) / 2;
  HWND hwnd = CreateWindowExA(exStyle, kFormClass, ToAnsi(form.Caption()).c_str(), style, x, y, w, h, nullptr,
                              nullptr, instance_, p);
  ++liveForms_;
  p->hwnd = hwnd;
  p->formWindow = hwnd;
  form.hWnd = reinterpret_cast<ULONG_PTR>(hwnd);
  form.peer = p;
  SetPropA(hwnd, kDesignNameProp, reinterpret_cast<HANDLE>(static_cast<ULONG_PTR>(GlobalAddAtomA(form.Name().c_str()))));
  for (Control* child : form.Children()) Create(*child, hwnd, form);
  return hwnd;
}

// The tips window is a window of its own on the screen, and nobody points at a control before
// the form has painted: a timer, which fires only once the queue is empty, makes it then.
void Binding::ShowFirstTime(WindowPeer& p) {
  p.shownOnce = true;
  ShowWindow(p.hwnd, p.form.WindowState() == 1 ? SW_SHOWMINIMIZED : SW_SHOWNORMAL);
  UpdateWindow(p.hwnd);
  SetTimer(p.hwnd, kToolTipsTimer, USER_TIMER_MINIMUM, nullptr);
}

void Binding::MakeToolTips(HWND formWindow) {
  if (GetPropA(formWindow, kToolTipsProp)) return;
  HWND tips = CreateWindowExA(WS_EX_TOPMOST, TOOLTIPS_CLASSA, nullptr, WS_POPUP | TTS_NOPREFIX | TTS_ALWAYSTIP,
                              CW_USEDEFAULT, CW_USEDEFAULT, CW_USEDEFAULT, CW_USEDEFAULT, formWindow, nullptr, instance_,
                              nullptr);
  SetPropA(formWindow, kToolTipsProp, tips);
  HoldNewWindow(tips);
  for (auto& peer : peers_)
    if (peer->formWindow == formWindow && peer->hwnd && !peer->tipAnsi.empty()) peer->AddToolTip(tips);
}

bool Binding::Show(Form& form) {
  CreateFormWindow(form);
  Invoke([&] { form.Load(); });
  if (!form.Loaded()) return false;
  MakeShownPages(form);
  ShowFirstTime(*static_cast<WindowPeer*>(form.peer));
  return true;
}

void Binding::LoadForm(Form& form) {
  auto* p = dynamic_cast<WindowPeer*>(form.peer);
  if (!p || !p->hwnd) CreateFormWindow(form);
  form.Load();  // inside the caller's handler: a fault here is the caller's
}

// The pages a form shows get their controls' windows before the form first paints; a page that
// was visible from its design on has seen no change that would have made them.
void Binding::MakeShownPages(Form& form) {
  for (Control* child : form.Children())
    if (auto* peer = dynamic_cast<WindowPeer*>(child->peer)) peer->MakeChildrenIfShown();
}

void Binding::ShowForm(Form& form) {
  auto* p = dynamic_cast<WindowPeer*>(form.peer);
  if (!p || !p->hwnd) return;
  MakeShownPages(form);
  if (!p->shownOnce) {
    ShowFirstTime(*p);
  } else {
    ShowWindow(p->hwnd, SW_SHOW);  // a minimised window stays minimised
  }
  SetForegroundWindow(p->hwnd);
}

bool Binding::IsFormWindow(HWND window) const {
  if (!window) return false;
  for (const auto& peer : peers_)
    if (peer->hwnd == window && &peer->control == &peer->form) return true;
  return false;
}

// A form's controls may be made anew at its next load: their peers go with its window.
void Binding::FormWindowGone(Form& form) {
  std::erase_if(peers_, [&form](const std::unique_ptr<WindowPeer>& peer) {
    if (&peer->form != &form) return false;
    if (peer->control.peer == peer.get()) peer->control.peer = nullptr;
    return true;
  });
  FormGone();
}

Control* Binding::ControlOf(HWND window) const {
  if (!window) return nullptr;
  for (const auto& peer : peers_)
    if (peer->hwnd == window) return &peer->control;
  return nullptr;
}

HWND Binding::WindowOf(const Control& control) const {
  auto* peer = dynamic_cast<WindowPeer*>(control.peer);
  return peer ? peer->hwnd : nullptr;
}

int Binding::Run() {
  MSG msg;
  while (GetMessageA(&msg, nullptr, 0, 0) > 0) {
    if (HandleKey(msg)) continue;
    TranslateMessage(&msg);
    DispatchMessageA(&msg);
  }
  return static_cast<int>(msg.wParam);
}

namespace {

WindowPeer* PeerOf(HWND hwnd, UINT msg, LPARAM lParam) {
  if (msg == WM_NCCREATE) {
    auto* p = static_cast<WindowPeer*>(reinterpret_cast<CREATESTRUCTA*>(lParam)->lpCreateParams);
    SetWindowLongPtrA(hwnd, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(p));
    return p;
  }
  return reinterpret_cast<WindowPeer*>(GetWindowLongPtrA(hwnd, GWLP_USERDATA));
}

// Twips inside the control, as mouse events carry them.
int TwipsX(LPARAM l) { return static_cast<short>(LOWORD(l)) * 15; }
int TwipsY(LPARAM l) { return static_cast<short>(HIWORD(l)) * 15; }

// Shapes have no window: their container draws them over its face.
void DrawShapes(HDC dc, Control& container) {
  for (Control* child : container.Children()) {
    if (child->kind() != Kind::Shape || !child->Visible()) continue;
    const Twips& t = child->Rect();
    HPEN pen = CreatePen(PS_SOLID, 1, ToColorRef(child->design().borderColor));
    HGDIOBJ op = SelectObject(dc, pen), ob = SelectObject(dc, GetStockObject(NULL_BRUSH));
    RoundRect(dc, Px(t.left), Px(t.top), Px(t.left + t.width), Px(t.top + t.height), 12, 12);
    SelectObject(dc, op);
    SelectObject(dc, ob);
    DeleteObject(pen);
  }
}

void PaintBuffered(HWND hwnd, WindowPeer& p) {
  PAINTSTRUCT ps;
  HDC dc = BeginPaint(hwnd, &ps);
  RECT rc;
  GetClientRect(hwnd, &rc);
  Resources& res = p.binding.resources();
  HDC mem = res.BackBuffer(dc, rc.right, rc.bottom);
  const int state = SaveDC(mem);
  if (p.control.kind() == Kind::Form) {
    HBITMAP pic = res.Picture(p.control.design().picture);
    if (pic) {
      HDC src = CreateCompatibleDC(dc);
      HGDIOBJ o = SelectObject(src, pic);
      BitBlt(mem, 0, 0, rc.right, rc.bottom, src, 0, 0, SRCCOPY);
      SelectObject(src, o);
      DeleteDC(src);
    } else {
      FillRect(mem, &rc, GetSysColorBrush(COLOR_BTNFACE));
    }
    DrawShapes(mem, p.control);
  } else {
    PaintBehind(mem, hwnd, p.control, res);
    PaintControl(mem, rc, p.control, res, p.pressed);
    DrawShapes(mem, p.control);
    if (GetFocus() == hwnd && p.binding.ShowsFocus()) DrawFocusCue(mem, rc, p.control);
  }
  RestoreDC(mem, state);
  BitBlt(dc, 0, 0, rc.right, rc.bottom, mem, 0, 0, SRCCOPY);
  EndPaint(hwnd, &ps);
}

// Messages by which outside programs read what the skin paints.
bool AnswerQuery(WindowPeer& p, UINT msg, LRESULT* result) {
  Control& c = p.control;
  switch (msg) {
    case BM_GETCHECK:
      if (c.kind() == Kind::TamrixCB) *result = static_cast<TamrixCB&>(c).Value();
      else if (c.kind() == Kind::TamrixOpButton || c.kind() == Kind::OptionButton)
        *result = static_cast<OptionBase&>(c).Selected() ? 1 : 0;
      else *result = 0;
      return true;
    case kMsgGetForeColor:
      *result = static_cast<LRESULT>(c.ForeColor());
      return true;
    case kMsgGetFaceColor:
      *result = static_cast<LRESULT>(c.kind() == Kind::TamrixCmd ? static_cast<TamrixCmd&>(c).FaceColor() : c.BackColor());
      return true;
    case kMsgGetBarValue:
      *result = c.kind() == Kind::TamrixPBar ? BarValueTimes100(static_cast<TamrixPBar&>(c).Value()) : 0;
      return true;
    case kMsgIsShown:
      *result = c.Visible() ? 1 : 0;
      return true;
    default:
      return false;
  }
}

bool SetCursorFor(WindowPeer& p) {
  if (p.form.MousePointer() == 11) {
    SetCursor(LoadCursorA(nullptr, MAKEINTRESOURCEA(32514)));  // the hourglass, over the whole window
    return true;
  }
  if (p.control.design().mousePointer == 99) {
    SetCursor(LoadCursorA(nullptr, MAKEINTRESOURCEA(32649)));  // the hand of a link
    return true;
  }
  return false;
}

}  // namespace

namespace {

// What forms and controls answer alike; true when the message is handled, with its result.
bool HandleShared(WindowPeer& p, HWND hwnd, UINT msg, WPARAM wParam, LPARAM lParam, LRESULT* result) {
  if (AnswerQuery(p, msg, result)) return true;
  *result = 0;
  switch (msg) {
    case WM_ERASEBKGND:
      *result = 1;
      return true;
    case WM_PAINT:
      PaintBuffered(hwnd, p);
      return true;
    case WM_RBUTTONDOWN:
    case WM_MBUTTONDOWN: {
      int button = msg == WM_RBUTTONDOWN ? 2 : 4;
      p.binding.Invoke([&] { p.control.MouseDown(button, Shift(), TwipsX(lParam), TwipsY(lParam)); });
      return true;
    }
    case WM_COMMAND:
    case WM_VSCROLL: {
      // The toolkit's windows tell their container of the user's doing.
      if (!lParam) return false;
      auto* child = reinterpret_cast<WindowPeer*>(GetWindowLongPtrA(reinterpret_cast<HWND>(lParam), GWLP_USERDATA));
      if (child && child->hwnd == reinterpret_cast<HWND>(lParam)) child->Notify(msg, wParam);
      return true;
    }
    case WM_SETCURSOR:
      if (!SetCursorFor(p)) return false;
      *result = TRUE;
      return true;
    default:
      return false;
  }
}

}  // namespace

LRESULT CALLBACK Binding::FormProc(HWND hwnd, UINT msg, WPARAM wParam, LPARAM lParam) {
  WindowPeer* p = PeerOf(hwnd, msg, lParam);
  if (!p) return DefWindowProcA(hwnd, msg, wParam, lParam);
  LRESULT result;
  if (HandleShared(*p, hwnd, msg, wParam, lParam, &result)) return result;
  Form& form = p->form;
  Binding& b = p->binding;
  switch (msg) {
    case WM_LBUTTONDOWN:
      b.Invoke([&] { form.MouseDown(1, Shift(), TwipsX(lParam), TwipsY(lParam)); });
      return 0;
    case WM_TIMER:
      if (wParam == kToolTipsTimer) {
        KillTimer(hwnd, wParam);
        b.MakeToolTips(hwnd);
        return 0;
      }
      for (auto& peer : b.peers_) {
        if (peer->timerId == wParam && peer->formWindow == hwnd && peer->control.kind() == Kind::Timer) {
          auto& timer = static_cast<Timer&>(peer->control);
          if (timer.Enabled()) b.Invoke([&] { timer.Tick(); });
          break;
        }
      }
      return 0;
    case WM_SIZE:
      // The task bar's restore and minimise keep the form's state in step.
      p->windowState = wParam == SIZE_MINIMIZED ? 1 : 0;
      break;
    case WM_CLOSE:
      b.Invoke([&] { form.Unload(Form::kUnloadByCloseBox); });
      return 0;
    case WM_QUERYENDSESSION: {
      // The system's log-off or shutdown is a way out too: the form's query decides.
      bool goOn = true;
      b.Invoke([&] { goOn = form.QueryEndSession(); });
      return goOn;
    }
    case WM_SETFOCUS:
      // The form is active again (or for the first time): its focus goes back to a control.
      b.ReachChanged(form, false);
      return 0;
    case kMsgKeepFocus:
      b.KeepFocusReachable(hwnd);
      return 0;
    case WM_ACTIVATE:
      // The form's activation, as the toolkit raises it: when it is first shown, and when it takes
      // over from another of the program's forms; not on a return from another program, nor from
      // one of its own message boxes.
      if (LOWORD(wParam) != WA_INACTIVE &&
          (!p->activatedOnce || b.IsFormWindow(reinterpret_cast<HWND>(lParam)))) {
        p->activatedOnce = true;
        b.Invoke([&] { form.Activate(); });
      }
      break;
    case WM_NCDESTROY:
      p->hwnd = nullptr;
      for (auto& peer : b.peers_)
        if (peer->formWindow == hwnd) {
          peer->hwnd = nullptr;
          peer->formWindow = nullptr;
        }
      b.FormWindowGone(form);  // p is gone from here on
      return DefWindowProcA(hwnd, msg, wParam, lParam);
    default:
      break;
  }
  return DefWindowProcA(hwnd, msg, wParam, lParam);
}

LRESULT CALLBACK Binding::ControlProc(HWND hwnd, UINT msg, WPARAM wParam, LPARAM lParam) {
  WindowPeer* p = PeerOf(hwnd, msg, lParam);
  if (!p) return DefWindowProcA(hwnd, msg, wParam, lParam);
  LRESULT result;
  if (HandleShared(*p, hwnd, msg, wParam, lParam, &result)) return result;
  Control& c = p->control;
  Binding& b = p->binding;
  switch (msg) {
    case WM_LBUTTONDOWN:
      if (keyboard::TakesFocus(c) && GetFocus() != hwnd) SetFocus(hwnd);  // a click gives the focus, as on a button
      SetCapture(hwnd);
      p->pressed = true;
      InvalidateRect(hwnd, nullptr, FALSE);
      b.Invoke([&] { c.MouseDown(1, Shift(), TwipsX(lParam), TwipsY(lParam)); });
      return 0;
    case WM_LBUTTONUP: {
      bool wasPressed = p->pressed;
      p->pressed = false;
      if (GetCapture() == hwnd) ReleaseCapture();
      RECT rc;
      GetClientRect(hwnd, &rc);
      POINT pt{static_cast<short>(LOWORD(lParam)), static_cast<short>(HIWORD(lParam))};
      if (p->hwnd) InvalidateRect(hwnd, nullptr, FALSE);
      if (wasPressed && PtInRect(&rc, pt)) b.Invoke([&] { c.Click(); });
      return 0;
    }
    case WM_CAPTURECHANGED:
      if (p->pressed) {
        p->pressed = false;
        InvalidateRect(hwnd, nullptr, FALSE);
      }
      return 0;
    case BM_CLICK:
      b.Invoke([&] { c.Click(); });
      return 0;
    case WM_MOUSEMOVE:
      if (c.kind() == Kind::TamrixCmd && !p->tracking) {
        TRACKMOUSEEVENT tme{sizeof tme, TME_LEAVE, hwnd, 0};
        p->tracking = TrackMouseEvent(&tme);
        static_cast<TamrixCmd&>(c).SetHovered(true);
      }
      return 0;
    case WM_MOUSELEAVE:
      p->tracking = false;
      if (c.kind() == Kind::TamrixCmd) static_cast<TamrixCmd&>(c).SetHovered(false);
      return 0;
    case WM_NCPAINT:
      return 0;  // our controls have no frame: there is nothing to paint around their face
    case WM_SETFOCUS:
      b.FocusTaken(c);
      InvalidateRect(hwnd, nullptr, FALSE);
      return 0;
    case WM_KILLFOCUS:
      InvalidateRect(hwnd, nullptr, FALSE);
      return 0;
    case WM_GETOBJECT:
      if (LRESULT answer = AnswerGetObject(b, hwnd, wParam, lParam)) return answer;
      break;
    case WM_NCDESTROY:
      p->hwnd = nullptr;
      break;
    default:
      break;
  }
  return DefWindowProcA(hwnd, msg, wParam, lParam);
}

}  // namespace tamrix::win32
