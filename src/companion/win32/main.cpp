// tamrix-etat.exe: the companion console program. The real platform, the command line as the
// system gives it (ANSI), and a console that shows French letters right.
//
// Output: on a console, the text goes out as UTF-16 through WriteConsoleW, which shows every
// letter whatever code page the console is set to (850 on a French system, 437 elsewhere, or
// what chcp made of it), on Windows and in Wine's console alike. Redirected to a file or a pipe,
// it goes out in the console's output code page (the OEM code page when there is no console),
// the bytes every console tool of the system writes, so that "type", "more" and "findstr" show
// them right. The JSON report is ASCII, the same in every code page.
#include <windows.h>

#include <optional>
#include <string>
#include <vector>

#include "companion/Command.h"
#include "companion/Menu.h"
#include "platform/win32/Ansi.h"
#include "platform/win32/Win32Platform.h"

namespace {

std::wstring Wide(const std::string& utf8) {
  if (utf8.empty()) return {};
  int n = MultiByteToWideChar(CP_UTF8, 0, utf8.data(), static_cast<int>(utf8.size()), nullptr, 0);
  std::wstring w(n, L'\0');
  MultiByteToWideChar(CP_UTF8, 0, utf8.data(), static_cast<int>(utf8.size()), w.data(), n);
  return w;
}

void Write(DWORD which, const std::string& utf8) {
  HANDLE h = GetStdHandle(which);
  if (h == nullptr || h == INVALID_HANDLE_VALUE) return;
  std::wstring w = Wide(utf8);
  DWORD mode = 0, done = 0;
  if (GetConsoleMode(h, &mode)) {
    WriteConsoleW(h, w.data(), static_cast<DWORD>(w.size()), &done, nullptr);
    return;
  }
  UINT cp = GetConsoleOutputCP();
  if (cp == 0) cp = GetOEMCP();
  int n = WideCharToMultiByte(cp, 0, w.data(), static_cast<int>(w.size()), nullptr, 0, nullptr, nullptr);
  std::string bytes(n, '\0');
  WideCharToMultiByte(cp, 0, w.data(), static_cast<int>(w.size()), bytes.data(), n, nullptr, nullptr);
  WriteFile(h, bytes.data(), static_cast<DWORD>(bytes.size()), &done, nullptr);
}

// Started from Explorer: a console of its own, which no other process shares and which closes
// with the program, and the keyboard and screen both that console's. Started from a command
// prompt, or with its output going to a file or a pipe, the companion stays a command.
bool OwnConsole() {
  DWORD processes[2];
  DWORD mode = 0;
  return GetConsoleProcessList(processes, 2) == 1 && GetConsoleMode(GetStdHandle(STD_INPUT_HANDLE), &mode) &&
         GetConsoleMode(GetStdHandle(STD_OUTPUT_HANDLE), &mode);
}

// One key at a time, as it is pressed, without waiting for Enter and without echo; Escape comes
// as a key too. Ctrl+Z is the console's end of input.
std::optional<char32_t> ReadKey() {
  HANDLE in = GetStdHandle(STD_INPUT_HANDLE);
  for (;;) {
    INPUT_RECORD record;
    DWORD read = 0;
    if (!ReadConsoleInputW(in, &record, 1, &read) || read == 0) return std::nullopt;
    if (record.EventType != KEY_EVENT || !record.Event.KeyEvent.bKeyDown) continue;
    wchar_t c = record.Event.KeyEvent.uChar.UnicodeChar;
    if (record.Event.KeyEvent.wVirtualKeyCode == VK_ESCAPE) return char32_t{0x1B};
    if (c == 0x1A) return std::nullopt;
    if (c != 0) return static_cast<char32_t>(c);
  }
}

// A line as typed, echoed, edited with the console's own keys and ended by Enter; nothing at the
// end of input (Ctrl+Z).
std::optional<std::string> ReadLine() {
  HANDLE in = GetStdHandle(STD_INPUT_HANDLE);
  DWORD mode = 0;
  GetConsoleMode(in, &mode);
  SetConsoleMode(in, ENABLE_LINE_INPUT | ENABLE_ECHO_INPUT | ENABLE_PROCESSED_INPUT);
  std::wstring line;
  wchar_t buffer[512];
  DWORD read = 0;
  bool ok = true;
  while ((ok = ReadConsoleW(in, buffer, 512, &read, nullptr) && read > 0)) {
    line.append(buffer, read);
    if (line.back() == L'\n') break;
  }
  SetConsoleMode(in, mode);
  if (line.find(L'\x1A') != std::wstring::npos || (!ok && line.empty())) return std::nullopt;
  while (!line.empty() && (line.back() == L'\n' || line.back() == L'\r')) line.pop_back();
  if (line.empty()) return std::string();
  int n = WideCharToMultiByte(CP_UTF8, 0, line.data(), static_cast<int>(line.size()), nullptr, 0, nullptr, nullptr);
  std::string utf8(n, '\0');
  WideCharToMultiByte(CP_UTF8, 0, line.data(), static_cast<int>(line.size()), utf8.data(), n, nullptr, nullptr);
  return utf8;
}

}  // namespace

int main(int argc, char** argv) {
  tamrix::win32::Win32Platform platform;
  tamrix::companion::Io io;
  io.readFile = [](const std::string& path) -> std::optional<std::string> {
    HANDLE h = CreateFileA(path.c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, OPEN_EXISTING,
                           FILE_ATTRIBUTE_NORMAL, nullptr);
    if (h == INVALID_HANDLE_VALUE) return std::nullopt;
    std::string bytes;
    char buffer[65536];
    DWORD n = 0;
    bool ok = true;
    while ((ok = ReadFile(h, buffer, sizeof buffer, &n, nullptr)) && n > 0) bytes.append(buffer, n);
    CloseHandle(h);
    if (!ok) return std::nullopt;
    return bytes;
  };
  io.out = [](const std::string& s) { Write(STD_OUTPUT_HANDLE, s); };
  io.err = [](const std::string& s) { Write(STD_ERROR_HANDLE, s); };
  io.toAnsi = [](const std::string& s) { return tamrix::win32::ToAnsi(s); };
  io.fromAnsi = [](const std::string& s) { return tamrix::win32::FromAnsi(s); };
  io.writeFile = [](const std::string& path, const std::string& bytes) {
    HANDLE h = CreateFileA(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (h == INVALID_HANDLE_VALUE) return false;
    DWORD done = 0;
    bool ok = WriteFile(h, bytes.data(), static_cast<DWORD>(bytes.size()), &done, nullptr) && done == bytes.size();
    // On the disk before anything takes the place of an earlier file.
    ok = FlushFileBuffers(h) && ok;
    ok = CloseHandle(h) && ok;
    return ok;
  };
  io.moveFile = [](const std::string& from, const std::string& to) {
    return MoveFileExA(from.c_str(), to.c_str(), MOVEFILE_WRITE_THROUGH) != 0;
  };
  io.removeFile = [](const std::string& path) { DeleteFileA(path.c_str()); };
  io.exists = [](const std::string& path) { return GetFileAttributesA(path.c_str()) != INVALID_FILE_ATTRIBUTES; };
  io.readOnly = [](const std::string& path) {
    DWORD a = GetFileAttributesA(path.c_str());
    return a != INVALID_FILE_ATTRIBUTES && !(a & FILE_ATTRIBUTE_DIRECTORY) && (a & FILE_ATTRIBUTE_READONLY);
  };
  io.findFiles = [](const std::string& folder, const std::string& prefix, const std::string& suffix) {
    std::vector<std::string> names;
    WIN32_FIND_DATAA found;
    HANDLE h = FindFirstFileA((folder + "\\" + prefix + "*" + suffix).c_str(), &found);
    if (h == INVALID_HANDLE_VALUE) return names;
    do {
      if (!(found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY)) names.push_back(found.cFileName);
    } while (FindNextFileA(h, &found));
    FindClose(h);
    return names;
  };
  io.fullPath = [](const std::string& path) {
    char buffer[MAX_PATH * 4];
    DWORD n = GetFullPathNameA(path.c_str(), sizeof buffer, buffer, nullptr);
    return n == 0 || n >= sizeof buffer ? path : std::string(buffer, n);
  };
  std::vector<std::string> args(argv + 1, argv + argc);
  // The program of the same build writes this view: the i686 one is redirected to the 32-bit
  // view on a 64-bit Windows, the x86_64 one writes the 64-bit view.
  constexpr std::uint32_t ownView = sizeof(void*) == 4 ? tamrix::keyaccess::View32 : tamrix::keyaccess::View64;
  if (args.empty() && OwnConsole()) {
    SetConsoleTitleW(L"Tamrix Utility 3.0 Pro");
    return tamrix::companion::Menu(platform, io, {ReadKey, ReadLine}, ownView);
  }
  return tamrix::companion::Run(args, platform, io, ownView);
}
