// The real tamrix.exe from the keyboard alone, with keys typed into the X display through its
// test extension (xdotool), as a person types them; and what a screen reader hears, read from
// outside through the platform's accessibility interface. The focus is read from outside too.
#include <gtest/gtest.h>
#include <oleacc.h>

#include <algorithm>
#include <functional>
#include <string>
#include <vector>

#include "e2e/Driver.h"
#include "e2e/Registry.h"
#include "e2e/RegistrySnapshot.h"

namespace tamrix::e2e {
namespace {

// The interface's real identity: mingw's uuid library carries another value for IID_IAccessible.
constexpr GUID kIidAccessible = {0x618736E0, 0x3C3D, 0x11CF, {0x81, 0x0C, 0x00, 0xAA, 0x00, 0x38, 0x9B, 0x71}};

// The window that has the keyboard focus in the program's thread, as the system knows it.
HWND FocusOf(HWND anyWindowOfTheProgram) {
  GUITHREADINFO info{};
  info.cbSize = sizeof info;
  if (!GetGUIThreadInfo(GetWindowThreadProcessId(anyWindowOfTheProgram, nullptr), &info)) return nullptr;
  return info.hwndFocus;
}

// Types keys on the X display: each word is one xdotool key name ("Tab", "space", "alt+p",
// "shift+Tab", "2"). Wine runs the Unix program itself and gives no handle to wait on: the
// callers wait for what the keys do, after the time the keys take to be typed.
void Keys(const std::string& keys) {
  std::string line = "/usr/bin/xdotool key --delay 100 " + keys;
  STARTUPINFOA si{};
  si.cb = sizeof si;
  PROCESS_INFORMATION pi{};
  ASSERT_TRUE(CreateProcessA(nullptr, line.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &si, &pi)) << line;
  if (pi.hProcess) CloseHandle(pi.hProcess);
  if (pi.hThread) CloseHandle(pi.hThread);
  Sleep(300 + 100 * static_cast<DWORD>(std::count(keys.begin(), keys.end(), ' ')));
}

struct Heard {
  bool read = false;
  std::string name;
  long role = 0;
  long state = 0;
  std::string value;
};

std::string FromBstr(BSTR b) {
  if (!b) return {};
  std::string s = Utf8(std::wstring(b, SysStringLen(b)));
  SysFreeString(b);
  return s;
}

// What a screen reader hears of a window's client area.
Heard Hear(HWND window) {
  Heard h;
  IAccessible* acc = nullptr;
  if (FAILED(AccessibleObjectFromWindow(window, OBJID_CLIENT, kIidAccessible, reinterpret_cast<void**>(&acc))) || !acc)
    return h;
  VARIANT self{};
  self.vt = VT_I4;
  self.lVal = CHILDID_SELF;
  BSTR name = nullptr, value = nullptr;
  if (SUCCEEDED(acc->get_accName(self, &name))) h.name = FromBstr(name);
  if (SUCCEEDED(acc->get_accValue(self, &value))) h.value = FromBstr(value);
  VARIANT role{}, state{};
  if (SUCCEEDED(acc->get_accRole(self, &role)) && role.vt == VT_I4) h.role = role.lVal;
  if (SUCCEEDED(acc->get_accState(self, &state)) && state.vt == VT_I4) h.state = state.lVal;
  acc->Release();
  h.read = true;
  return h;
}


// What a screen reader is told: the events the program sends, caught by a hook outside its
// process, with what the object said when it was asked at once, as a reader asks.
struct Told {
  DWORD event;
  HWND window;
  LONG object;
  Heard heard;
};
std::vector<Told>* g_told = nullptr;

void CALLBACK OnEvent(HWINEVENTHOOK, DWORD event, HWND window, LONG object, LONG child, DWORD, DWORD) {
  if (!g_told) return;
  Told t{event, window, object, {}};
  IAccessible* acc = nullptr;
  VARIANT self{};
  if (object == OBJID_CLIENT && SUCCEEDED(AccessibleObjectFromEvent(window, object, child, &acc, &self)) && acc) {
    BSTR name = nullptr;
    if (SUCCEEDED(acc->get_accName(self, &name))) t.heard.name = FromBstr(name);
    VARIANT role{}, state{};
    if (SUCCEEDED(acc->get_accRole(self, &role)) && role.vt == VT_I4) t.heard.role = role.lVal;
    if (SUCCEEDED(acc->get_accState(self, &state)) && state.vt == VT_I4) t.heard.state = state.lVal;
    t.heard.read = true;
    acc->Release();
  }
  g_told->push_back(t);
}

// For a failure's message: what was heard, and from which window.
std::string Describe(const std::vector<Told>& told, HWND watched) {
  std::string out;
  for (const Told& t : told) {
    char line[160];
    snprintf(line, sizeof line, "[%#lx %s read=%d role=%ld state=%#lx '%s'] ", t.event,
             t.window == watched ? "watched" : "other", t.heard.read, t.heard.role, t.heard.state, t.heard.name.c_str());
    out += line;
  }
  return out;
}

// A hook out of the program's context: its events come to this thread as messages, so the
// waits pump them.
class Listener {
 public:
  explicit Listener(DWORD pid) {
    g_told = &told;
    hook_ = SetWinEventHook(EVENT_OBJECT_CREATE, EVENT_OBJECT_VALUECHANGE, nullptr, OnEvent, pid, 0,
                            WINEVENT_OUTOFCONTEXT);
  }
  ~Listener() {
    if (hook_) UnhookWinEvent(hook_);
    g_told = nullptr;
  }
  bool Hooked() const { return hook_ != nullptr; }
  // Pumps until an event of this kind has come for the window and `ok` holds for it.
  const Told* WaitFor(DWORD event, HWND window, const std::function<bool(const Told&)>& ok, DWORD timeoutMs = 5000) {
    DWORD start = GetTickCount();
    for (;;) {
      MSG m;
      while (PeekMessageA(&m, nullptr, 0, 0, PM_REMOVE)) {
        TranslateMessage(&m);
        DispatchMessageA(&m);
      }
      for (const Told& t : told)
        if (t.event == event && t.window == window && ok(t)) return &t;
      if (GetTickCount() - start > timeoutMs) return nullptr;
      MsgWaitForMultipleObjects(0, nullptr, FALSE, 50, QS_ALLINPUT);
    }
  }
  std::vector<Told> told;

 private:
  HWINEVENTHOOK hook_ = nullptr;
};

class Keyboard : public ::testing::Test {
 protected:
  static void SetUpTestSuite() { CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED); }

  void SetUp() override {
    ASSERT_TRUE(app.Start());
    // The X server sends the keys to the window under the pointer: it stands on the main window.
    RECT r{};
    GetWindowRect(app.Main(), &r);
    SetCursorPos((r.left + r.right) / 2, r.top + 40);
    ASSERT_TRUE(WaitUntil([&] { return FocusOf(app.Main()) == app.Find("command3"); }))
        << "the first control has the focus at start";
  }
  void TearDown() override {
    if (app.Running()) {
      PostMessageA(app.Main(), WM_CLOSE, 0, 0);
      if (!app.WaitExit()) app.Click("TamrixCmd1");
      app.WaitExit();
    }
  }
  // Types the keys, then waits until the focus is on the named control of `form`.
  bool KeysTo(const std::string& keys, HWND form, const std::string& name) {
    Keys(keys);
    HWND want = nullptr;
    return WaitUntil([&] { return (want = ChildOf(form, name)) && FocusOf(form) == want; }, 5000);
  }
  std::string Focused(HWND form) {
    HWND f = FocusOf(form);
    char buf[256] = {};
    auto atom = static_cast<ATOM>(reinterpret_cast<ULONG_PTR>(GetPropA(f, "TamrixDesignName")));
    if (atom) GlobalGetAtomNameA(atom, buf, sizeof buf);
    return buf;
  }
  void Shot(const std::string& name) {
    SendMessageTimeoutA(app.Main(), WM_NULL, 0, 0, SMTO_ABORTIFHUNG, 5000, nullptr);
    Sleep(400);
    Screenshot(name);
  }
  App app;
};

TEST_F(Keyboard, TabWalksTheHomePageInDesignOrderWrapsAndEachButtonIsHeardByName) {
  struct Stop {
    const char* name;
    const char* heard;  // the caption as it is read: the access key's "&" isn't said
  };
  const std::vector<Stop> stops = {{"win", "Windows"},          {"internet", "Internet"}, {"sys", "Test Lab"},
                                   {"TamrixCmd7", "Protection"}, {"apro", "A propos"},   {"TamrixCmd1", "Quitter"},
                                   {"command3", "Accueil"}};
  for (const Stop& s : stops) {
    ASSERT_TRUE(KeysTo("Tab", app.Main(), s.name)) << "Tab should reach " << s.name << ", the focus is on " << Focused(app.Main());
    Heard h = Hear(app.Find(s.name));
    ASSERT_TRUE(h.read) << s.name;
    EXPECT_EQ(h.name, s.heard);
    EXPECT_EQ(h.role, ROLE_SYSTEM_PUSHBUTTON) << s.name;
    EXPECT_TRUE(h.state & STATE_SYSTEM_FOCUSED) << s.name;
    EXPECT_TRUE(h.state & STATE_SYSTEM_FOCUSABLE) << s.name;
    if (std::string(s.name) == "internet") Shot("keyboard-focused-button");
  }
  EXPECT_TRUE(KeysTo("shift+Tab", app.Main(), "TamrixCmd1")) << Focused(app.Main());
  // The window itself reads as a client area with its caption; a label as static text, the
  // memory bar as a progress bar with its value.
  Heard form = Hear(app.Main());
  EXPECT_EQ(form.role, ROLE_SYSTEM_CLIENT);
  EXPECT_EQ(form.name, " Tamrix Utility 3.0 Pro (Win 9.x - NT4.0 - 2000 - Xp - 2003)");
  Heard label = Hear(app.Find("Label17"));
  EXPECT_EQ(label.role, ROLE_SYSTEM_STATICTEXT);
  Heard bar = Hear(app.Find("TamrixPBar2"));
  EXPECT_EQ(bar.role, ROLE_SYSTEM_PROGRESSBAR);
  EXPECT_NE(bar.value.find('%'), std::string::npos) << bar.value;
}

TEST_F(Keyboard, OnTheProtectionPageTabAndSpaceTickTwoBoxesAndAppliquerByItsLetterWritesThem) {
  DeleteTree(HKEY_CURRENT_USER, kRestrictRun);
  DeleteTree(HKEY_CURRENT_USER, kExplorer);
  CreateKey(HKEY_CURRENT_USER, kRestrictRun);
  // Alt+P opens the page; its first box takes the focus.
  ASSERT_TRUE(KeysTo("alt+p", app.Main(), "box2")) << Focused(app.Main());
  Heard before = Hear(app.Find("box2"));
  EXPECT_EQ(before.role, ROLE_SYSTEM_CHECKBUTTON);
  EXPECT_FALSE(before.state & STATE_SYSTEM_CHECKED);
  Keys("space");
  ASSERT_TRUE(WaitUntil([&] { return app.Value("box2") == 1; }, 5000));
  EXPECT_TRUE(Hear(app.Find("box2")).state & STATE_SYSTEM_CHECKED);
  ASSERT_TRUE(KeysTo("Tab", app.Main(), "box1")) << Focused(app.Main());
  Keys("space");
  ASSERT_TRUE(WaitUntil([&] { return app.Value("box1") == 1; }, 5000));
  Shot("keyboard-focused-box");
  EXPECT_EQ(app.Value("box3"), 0);
  // "&Appliquer" shares its letter with "&A propos": the first Alt+A reaches it, Enter presses it.
  ASSERT_TRUE(KeysTo("alt+a", app.Main(), "ReyCommand2")) << Focused(app.Main());
  EXPECT_FALSE(ReadDword(HKEY_CURRENT_USER, kExplorer, "Norun").has_value()) << "reaching is not pressing";
  Keys("Return");
  EXPECT_TRUE(WaitUntil([&] { return ReadDword(HKEY_CURRENT_USER, kExplorer, "Norun") == 1u; }, 5000));
  EXPECT_EQ(ReadDword(HKEY_CURRENT_USER, kExplorer, "Nofind"), 1u);
  EXPECT_EQ(ReadDword(HKEY_CURRENT_USER, kExplorer, "NoFavoritesMenu"), 0u);
  DeleteTree(HKEY_CURRENT_USER, kRestrictRun);
  DeleteTree(HKEY_CURRENT_USER, kExplorer);
}

TEST_F(Keyboard, OnTheInternetPageTheArrowsMoveTheSpeedChoice) {
  ASSERT_TRUE(KeysTo("alt+i", app.Main(), "Modem1")) << Focused(app.Main());
  ASSERT_TRUE(KeysTo("Tab", app.Main(), "r56")) << Focused(app.Main());
  EXPECT_EQ(Hear(app.Find("r56")).role, ROLE_SYSTEM_RADIOBUTTON);
  ASSERT_TRUE(KeysTo("Down", app.Main(), "r64")) << Focused(app.Main());
  EXPECT_TRUE(WaitUntil([&] { return app.Value("r64") == 1 && app.Value("r56") == 0; }, 5000));
  EXPECT_TRUE(Hear(app.Find("r64")).state & STATE_SYSTEM_CHECKED);
  EXPECT_FALSE(Hear(app.Find("r56")).state & STATE_SYSTEM_CHECKED);
  Shot("keyboard-focused-option");
  ASSERT_TRUE(KeysTo("Up Up", app.Main(), "r33")) << Focused(app.Main());
  EXPECT_TRUE(WaitUntil([&] { return app.Value("r33") == 1 && app.Value("r64") == 0; }, 5000));
  ASSERT_TRUE(KeysTo("Up", app.Main(), "r1024")) << "the group wraps; " << Focused(app.Main());
}

TEST_F(Keyboard, InTheToolsWindowTheShutdownBoxesTakeDigitsTypedAfterTab) {
  app.Click("win");
  app.Click("TamrixCmd15");
  HWND tools = nullptr;
  ASSERT_TRUE(WaitUntil([&] { return (tools = FormOf(app.Pid(), "Form2")) && IsWindowVisible(tools); }));
  RECT r{};
  GetWindowRect(tools, &r);
  SetCursorPos((r.left + r.right) / 2, (r.top + r.bottom) / 2);
  ASSERT_TRUE(WaitUntil([&] { return FocusOf(tools) == ChildOf(tools, "hr"); }, 5000)) << Focused(tools);
  Keys("1");
  EXPECT_TRUE(WaitUntil([&] { return TextOf(ChildOf(tools, "hr")) == "1"; }, 5000)) << TextOf(ChildOf(tools, "hr"));
  ASSERT_TRUE(KeysTo("Tab", tools, "min")) << Focused(tools);
  Keys("2");
  EXPECT_TRUE(WaitUntil([&] { return TextOf(ChildOf(tools, "min")) == "2"; }, 5000)) << TextOf(ChildOf(tools, "min"));
  ASSERT_TRUE(KeysTo("Tab", tools, "sec")) << Focused(tools);
  Keys("3 4");
  EXPECT_TRUE(WaitUntil([&] { return TextOf(ChildOf(tools, "sec")) == "34"; }, 5000)) << TextOf(ChildOf(tools, "sec"));
  Heard sec = Hear(ChildOf(tools, "sec"));
  EXPECT_EQ(sec.role, ROLE_SYSTEM_TEXT);
  EXPECT_TRUE(sec.state & STATE_SYSTEM_FOCUSED);
  ASSERT_TRUE(KeysTo("Tab", tools, "option1")) << Focused(tools);
  EXPECT_EQ(Hear(ChildOf(tools, "option1")).name, "Lancez");
  // The window goes without a countdown: nothing was launched.
  PostMessageA(tools, WM_CLOSE, 0, 0);
  EXPECT_TRUE(WaitUntil([&] { return !IsWindow(tools) || !IsWindowVisible(tools); }));
}

TEST_F(Keyboard, APageHiddenUnderTheFocusHandsItToAControlThatCanBeSeen) {
  ASSERT_TRUE(KeysTo("alt+p", app.Main(), "box2")) << Focused(app.Main());
  app.Click("command3");  // the mouse goes home: the Protection page hides with the focus on it
  EXPECT_TRUE(WaitUntil([&] { return FocusOf(app.Main()) == app.Find("command3"); }, 5000)) << Focused(app.Main());
  EXPECT_TRUE(IsWindowVisible(FocusOf(app.Main())));
}

TEST_F(Keyboard, ABoxTickedBySpaceAndAButtonsNewCaptionAreToldToAHookOutsideTheProgram) {
  DeleteTree(HKEY_CURRENT_USER, kRestrictRun);
  DeleteTree(HKEY_CURRENT_USER, kExplorer);
  CreateKey(HKEY_CURRENT_USER, kRestrictRun);
  ASSERT_TRUE(KeysTo("alt+p", app.Main(), "box2")) << Focused(app.Main());
  Listener listener(app.Pid());
  ASSERT_TRUE(listener.Hooked());
  HWND box = app.Find("box2");
  Keys("space");
  const Told* ticked = listener.WaitFor(EVENT_OBJECT_STATECHANGE, box, [](const Told& t) {
    return t.heard.read && (t.heard.state & STATE_SYSTEM_CHECKED);
  });
  ASSERT_TRUE(ticked) << "no state change heard for box2; heard: " << Describe(listener.told, box);
  EXPECT_EQ(ticked->heard.role, ROLE_SYSTEM_CHECKBUTTON);
  EXPECT_EQ(app.Value("box2"), 1);
  Keys("space");
  EXPECT_TRUE(listener.WaitFor(EVENT_OBJECT_STATECHANGE, box, [](const Told& t) {
    return t.heard.read && !(t.heard.state & STATE_SYSTEM_CHECKED);
  })) << "the box unticked is told too";

  // The processor test's button changes its caption when the run starts.
  app.Click("sys");
  ASSERT_TRUE(WaitUntil([&] { return app.Shown("Frame3"); }));
  app.Click("TamrixCmd4");
  ASSERT_TRUE(WaitUntil([&] { return app.Shown("FrmCpu") && !app.Text("Cpu10").empty(); }));
  HWND test = app.Find("Test");
  app.Click("Test");
  auto warning = app.WaitMessageBox();
  ASSERT_TRUE(warning);
  App::Answer(*warning, IDOK);
  const Told* renamed = listener.WaitFor(EVENT_OBJECT_NAMECHANGE, test, [](const Told& t) {
    return t.heard.read && t.heard.name == "Test en cours ...";
  });
  EXPECT_TRUE(renamed) << "no name change heard for the Test button";
  if (renamed) {
    EXPECT_EQ(renamed->heard.role, ROLE_SYSTEM_PUSHBUTTON);
  }
  // The run would hold the window for fifteen seconds: the test ends it from outside.
  EndProcess(app.Pid());
  app.WaitExit();
  DeleteTree(HKEY_CURRENT_USER, kRestrictRun);
  DeleteTree(HKEY_CURRENT_USER, kExplorer);
}

// The sound page's lists are the system's list and drop-down windows: Tab walks into and out of
// them, and a screen reader hears each as the system's own list (33) or drop-down (46), named
// by the label before it, as the system names a list by the text in front of it.
TEST_F(Keyboard, TheSoundPagesListsAreReachedByTabAndHeardAsTheSystemsListsAndDropDowns) {
  app.Click("sys");
  ASSERT_TRUE(WaitUntil([&] { return app.Shown("Frame3"); }));
  app.Click("TamrixCmd11");
  ASSERT_TRUE(WaitUntil([&] { return app.Shown("Frmson"); }));
  ASSERT_TRUE(WaitUntil([&] { return FocusOf(app.Main()) == app.Find("cbMixerList"); }, 5000)) << Focused(app.Main());
  for (const char* name : {"cbDstLineList", "lstDstLineInfo", "cbSrcLineList", "lstSrcLineInfo"})
    ASSERT_TRUE(KeysTo("Tab", app.Main(), name)) << "Tab should reach " << name << ", the focus is on " << Focused(app.Main());
  ASSERT_TRUE(app.Running());
  struct List {
    const char* name;
    long role;
    const char* heard;
  };
  const std::vector<List> lists = {{"cbMixerList", ROLE_SYSTEM_COMBOBOX, "Carte Son :"},
                                   {"cbDstLineList", ROLE_SYSTEM_COMBOBOX, "Entrées:"},
                                   {"lstDstLineInfo", ROLE_SYSTEM_LIST, ""},
                                   {"cbSrcLineList", ROLE_SYSTEM_COMBOBOX, "Entrées:"},
                                   {"lstSrcLineInfo", ROLE_SYSTEM_LIST, ""}};
  for (const List& l : lists) {
    Heard h = Hear(app.Find(l.name));
    ASSERT_TRUE(h.read) << l.name;
    EXPECT_EQ(h.role, l.role) << l.name;
    EXPECT_EQ(h.name, l.heard) << l.name;
    EXPECT_TRUE(h.state & STATE_SYSTEM_FOCUSABLE) << l.name;
  }
  EXPECT_TRUE(Hear(app.Find("lstSrcLineInfo")).state & STATE_SYSTEM_FOCUSED);
  // A drop-down's value is its chosen line, as the window shows it.
  EXPECT_EQ(Hear(app.Find("cbMixerList")).value, TextOf(app.Find("cbMixerList")));
}

// The windows of a page are made when it is first shown: the system tells a screen reader of
// each one as it is made, as of any window.
TEST_F(Keyboard, TheWindowsAPageMakesWhenItFirstShowsAreAnnouncedAsMade) {
  Listener listener(app.Pid());
  ASSERT_TRUE(listener.Hooked());
  ASSERT_FALSE(ChildOf(app.Main(), "box2")) << "the Protection page's boxes are made when it first shows";
  ASSERT_TRUE(KeysTo("alt+p", app.Main(), "box2")) << Focused(app.Main());
  for (const char* name : {"box2", "box1", "ReyCommand2"}) {
    HWND made = app.Find(name);
    EXPECT_TRUE(listener.WaitFor(EVENT_OBJECT_CREATE, made, [](const Told& t) { return t.object == OBJID_WINDOW; }))
        << name << " made unheard; heard " << listener.told.size() << " events";
  }
}

}  // namespace
}  // namespace tamrix::e2e
