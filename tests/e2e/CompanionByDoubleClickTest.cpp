// tamrix-etat.exe started as Explorer starts it, by `start`, into a console window of its own:
// its menu stands and waits, keys typed on the X display as a person types them choose, the
// system report lands on the Desktop, the window stays open, and 0 closes it.
#include <gtest/gtest.h>

#include <shlobj.h>
#include <tlhelp32.h>

#include <algorithm>
#include <optional>
#include <string>
#include <vector>

#include "e2e/Companion.h"
#include "e2e/Driver.h"
#include "e2e/RegistrySnapshot.h"

namespace tamrix::e2e {
namespace {

std::string DesktopFolder() {
  char path[MAX_PATH] = {};
  SHGetFolderPathA(nullptr, CSIDL_DESKTOPDIRECTORY, nullptr, 0, path);
  return path;
}

std::vector<std::string> Files(const std::string& desktop, const std::string& pattern) {
  std::vector<std::string> names;
  WIN32_FIND_DATAA found;
  HANDLE h = FindFirstFileA((desktop + "\\" + pattern).c_str(), &found);
  if (h == INVALID_HANDLE_VALUE) return names;
  do names.push_back(found.cFileName);
  while (FindNextFileA(h, &found));
  FindClose(h);
  return names;
}
std::vector<std::string> Reports(const std::string& desktop) { return Files(desktop, "Tamrix rapport *.html"); }
std::vector<std::string> Backups(const std::string& desktop) { return Files(desktop, "Tamrix sauvegarde *"); }

// The companion's process, found by its name, as a task list shows it.
DWORD CompanionPid() {
  DWORD pid = 0;
  HANDLE snap = CreateToolhelp32Snapshot(TH32CS_SNAPPROCESS, 0);
  PROCESSENTRY32 e{};
  e.dwSize = sizeof e;
  for (BOOL more = Process32First(snap, &e); more; more = Process32Next(snap, &e))
    if (lstrcmpiA(e.szExeFile, "tamrix-etat.exe") == 0) pid = e.th32ProcessID;
  CloseHandle(snap);
  return pid;
}

// The console window the companion's menu names itself in.
BOOL CALLBACK TakeConsoleWindow(HWND h, LPARAM found) {
  if (IsWindowVisible(h) && TextOf(h) == "Tamrix Utility 3.0 Pro") *reinterpret_cast<HWND*>(found) = h;
  return TRUE;
}
HWND ConsoleWindow() {
  HWND found = nullptr;
  EnumWindows(TakeConsoleWindow, reinterpret_cast<LPARAM>(&found));
  return found;
}

// What the console window shows, line by line, read from its screen buffer.
std::string ConsoleText(DWORD pid) {
  std::string text;
  FreeConsole();
  if (!AttachConsole(pid)) return text;
  HANDLE out = CreateFileA("CONOUT$", GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                           OPEN_EXISTING, 0, nullptr);
  CONSOLE_SCREEN_BUFFER_INFO info{};
  if (out != INVALID_HANDLE_VALUE && GetConsoleScreenBufferInfo(out, &info)) {
    std::wstring row(info.dwSize.X, L' ');
    for (SHORT y = 0; y <= info.dwCursorPosition.Y; ++y) {
      DWORD read = 0;
      ReadConsoleOutputCharacterW(out, row.data(), info.dwSize.X, {0, y}, &read);
      std::wstring line = row.substr(0, read);
      // A row filled to its last column goes on in the next one, as the console wrapped it.
      bool wrapped = line.size() == static_cast<std::size_t>(info.dwSize.X) && line.back() != L' ';
      line.erase(line.find_last_not_of(L' ') + 1);
      text += Utf8(line) + (wrapped ? "" : "\n");
    }
  }
  if (out != INVALID_HANDLE_VALUE) CloseHandle(out);
  FreeConsole();
  return text;
}

// The program the system starts for an HTML page, for the scenario's time: a windowed witness that
// writes down its command line (the probe that stands in for subst.exe elsewhere, built as a
// program with windows, as a browser is: it shares no console), copied to a folder of its own.
// What the machine had is put back after.
class BrowserWitness {
 public:
  BrowserWitness() {
    char exe[MAX_PATH] = {};
    GetModuleFileNameA(nullptr, exe, MAX_PATH);
    std::string tests(exe);
    tests.resize(tests.find_last_of('\\'));
    folder_ = TempPath("tamrix-navigateur");
    CreateDirectoryA(folder_.c_str(), nullptr);
    DeleteFileA(Started().c_str());
    CopyFileA((tests + "\\browser_witness.exe").c_str(), (folder_ + "\\navigateur.exe").c_str(), FALSE);
    extension_ = Get(".html");
    command_ = Get("htmlfile\\shell\\open\\command");
    Set(".html", "htmlfile");
    Set("htmlfile\\shell\\open\\command", "\"" + folder_ + "\\navigateur.exe\" \"%1\"");
  }
  ~BrowserWitness() {
    Put(".html", extension_);
    Put("htmlfile\\shell\\open\\command", command_);
    Sleep(3500);  // the witness writes its end three seconds after its start
    DeleteFileA(Started().c_str());
    DeleteFileA((folder_ + "\\witness-ended.txt").c_str());
    DeleteFileA((folder_ + "\\navigateur.exe").c_str());
    RemoveDirectoryA(folder_.c_str());
  }
  std::string Started() const { return folder_ + "\\witness-started.txt"; }

 private:
  static std::optional<std::string> Get(const std::string& key) {
    char data[1024] = {};
    LONG size = sizeof data;
    if (RegQueryValueA(HKEY_CLASSES_ROOT, key.c_str(), data, &size) != ERROR_SUCCESS) return std::nullopt;
    return std::string(data);
  }
  static void Set(const std::string& key, const std::string& value) {
    RegSetValueA(HKEY_CLASSES_ROOT, key.c_str(), REG_SZ, value.c_str(), static_cast<DWORD>(value.size()));
  }
  static void Put(const std::string& key, const std::optional<std::string>& value) {
    if (value)
      Set(key, *value);
    else
      RegDeleteKeyA(HKEY_CLASSES_ROOT, key.c_str());
  }
  std::string folder_;
  std::optional<std::string> extension_, command_;
};

// Runs a program of the X side. Wine starts it itself and gives no handle to wait on: the
// callers wait for what it does.
void X(const std::string& command) {
  std::string line = command;
  STARTUPINFOA si{};
  si.cb = sizeof si;
  PROCESS_INFORMATION pi{};
  ASSERT_TRUE(CreateProcessA(nullptr, line.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &si, &pi)) << line;
  if (pi.hProcess) CloseHandle(pi.hProcess);
  if (pi.hThread) CloseHandle(pi.hThread);
}

// Types keys into the companion's window as a person does: the window is given the focus first,
// as a click on it would (the page's browser, another program, may have taken it), then the keys
// go through the X test extension to whatever has the focus.
void Type(const std::string& keys) {
  X("/usr/bin/xdotool search --name \"^Tamrix Utility 3.0 Pro$\" windowfocus --sync");
  Sleep(700);
  X("/usr/bin/xdotool key --delay 100 " + keys);
  Sleep(500);
}

TEST(CompanionByDoubleClick, ItsMenuStaysOpenWritesTheReportOnTheDesktopAndZeroClosesIt) {
  const std::string desktop = DesktopFolder();
  ASSERT_FALSE(desktop.empty());
  CreateDirectoryA(desktop.c_str(), nullptr);
  for (const std::string& name : Reports(desktop)) DeleteFileA((desktop + "\\" + name).c_str());
  for (const std::string& name : Backups(desktop)) DeleteFileA((desktop + "\\" + name).c_str());
  ASSERT_EQ(CompanionPid(), 0u) << "no companion runs before the scenario";
  BrowserWitness browser;

  // As Explorer does: no argument, a console of its own.
  ASSERT_EQ(RunAndWait("start.exe \"" + EtatPath() + "\""), 0u);
  HWND console = nullptr;
  ASSERT_TRUE(WaitUntil([&] { return (console = ConsoleWindow()) != nullptr; }, 30000)) << "the console window came up";
  DWORD pid = CompanionPid();
  ASSERT_NE(pid, 0u);
  HANDLE process = OpenProcess(SYNCHRONIZE | PROCESS_QUERY_INFORMATION | PROCESS_TERMINATE, FALSE, pid);
  ASSERT_NE(process, nullptr);
  // Whatever happens below, no companion is left running for the next scenario.
  struct Ender {
    HANDLE process;
    ~Ender() {
      if (WaitForSingleObject(process, 0) == WAIT_TIMEOUT) TerminateProcess(process, 1);
      CloseHandle(process);
    }
  } ender{process};

  // It waits for a choice, and goes on waiting: nothing closes it on its own.
  Sleep(2000);
  EXPECT_EQ(WaitForSingleObject(process, 0), static_cast<DWORD>(WAIT_TIMEOUT));
  EXPECT_TRUE(IsWindowVisible(console));
  std::string shown = ConsoleText(pid);
  EXPECT_NE(shown.find("  1  Ce que chaque optimisation changerait sur cette machine\n"
                       "  2  Une sauvegarde sur le Bureau, pour tout remettre comme avant\n"
                       "  3  Le rapport système sur le Bureau, ouvert dans le navigateur\n"
                       "  4  Ce qui a changé depuis une sauvegarde\n"
                       "  0  Quitter (ou Q, ou Échap)\n"
                       "\n"
                       "Votre choix :\n"),
            std::string::npos)
      << shown;
  WindowShot(console, "compagnon-menu");

  // 2: a dated backup and its system.ini copy on the Desktop; 4 then Enter: compared at once with
  // the machine, nothing has changed.
  Type("2");
  std::vector<std::string> backup;
  ASSERT_TRUE(WaitUntil([&] { return (backup = Backups(desktop)).size() == 2; }, 30000)) << "the backup on the Desktop";
  std::sort(backup.begin(), backup.end());
  EXPECT_EQ(backup[0].rfind("Tamrix sauvegarde 20", 0), 0u) << backup[0];
  EXPECT_EQ(backup[0].substr(backup[0].size() - 4), ".reg");
  EXPECT_EQ(backup[1], backup[0].substr(0, backup[0].size() - 4) + ".system.ini");
  ASSERT_TRUE(WaitUntil([&] { return ConsoleText(pid).find("Pour tout remettre : reg import") != std::string::npos; }));
  Type("4");
  ASSERT_TRUE(WaitUntil([&] { return ConsoleText(pid).find("Entrée pour la comparer") != std::string::npos; }));
  Type("Return");
  ASSERT_TRUE(WaitUntil([&] {
    shown = ConsoleText(pid);
    return shown.find("=> aucune différence : ") != std::string::npos;
  }, 30000)) << shown;
  EXPECT_NE(shown.find("La sauvegarde la plus récente du Bureau est \"" + desktop + "\\" + backup[0]), std::string::npos)
      << shown;
  for (const std::string& name : backup) DeleteFileA((desktop + "\\" + name).c_str());

  Type("3");
  std::vector<std::string> written;
  ASSERT_TRUE(WaitUntil([&] { return !(written = Reports(desktop)).empty(); }, 60000)) << "the report on the Desktop";
  ASSERT_EQ(written.size(), 1u);
  EXPECT_EQ(written[0].rfind("Tamrix rapport 20", 0), 0u) << written[0];
  std::string page;
  ASSERT_TRUE(WaitUntil([&] {
    page = ReadWholeFile(desktop + "\\" + written[0]).value_or("");
    return page.find("</html>") != std::string::npos;
  }));
  EXPECT_EQ(page.rfind("<!DOCTYPE html>", 0), 0u);
  EXPECT_NE(page.find("Information sur votre PC"), std::string::npos);

  // The browser was asked to open that very page.
  std::string started;
  ASSERT_TRUE(WaitUntil([&] { return !(started = ReadWholeFile(browser.Started()).value_or("")).empty(); }));
  EXPECT_NE(started.find("\"" + desktop + "\\" + written[0] + "\""), std::string::npos) << started;

  // The console says where the page went, that it opened, and is back at the menu, still open.
  ASSERT_TRUE(WaitUntil([&] {
    shown = ConsoleText(pid);
    return shown.find("Ouvert dans votre navigateur.\n") != std::string::npos;
  })) << shown;
  EXPECT_NE(shown.find("Votre choix : 3\n"), std::string::npos) << shown;
  EXPECT_NE(shown.find("Rapport écrit dans \"" + desktop + "\\" + written[0]), std::string::npos) << shown;
  EXPECT_EQ(shown.substr(shown.size() - std::string("Votre choix :\n").size()), "Votre choix :\n") << shown;
  Sleep(2000);
  EXPECT_EQ(WaitForSingleObject(process, 0), static_cast<DWORD>(WAIT_TIMEOUT));
  EXPECT_TRUE(IsWindowVisible(console));
  WindowShot(console, "compagnon-rapport-ecrit");

  Type("0");
  EXPECT_EQ(WaitForSingleObject(process, 15000), static_cast<DWORD>(WAIT_OBJECT_0)) << "0 ends the companion";
  DWORD code = 99;
  GetExitCodeProcess(process, &code);
  EXPECT_EQ(code, 0u);
  EXPECT_TRUE(WaitUntil([&] { return !IsWindow(console) || !IsWindowVisible(console); })) << "and its window closes";
  DeleteFileA((desktop + "\\" + written[0]).c_str());
}

}  // namespace
}  // namespace tamrix::e2e
