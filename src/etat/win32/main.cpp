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

#include <string>
#include <vector>

#include "etat/Commande.h"
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

}  // namespace

int main(int argc, char** argv) {
  tamrix::win32::Win32Platform platform;
  tamrix::etat::Io io;
  tamrix::etat::UseStandardFiles(io);
  io.out = [](const std::string& s) { Write(STD_OUTPUT_HANDLE, s); };
  io.err = [](const std::string& s) { Write(STD_ERROR_HANDLE, s); };
  io.toAnsi = [](const std::string& s) { return tamrix::win32::ToAnsi(s); };
  io.fromAnsi = [](const std::string& s) { return tamrix::win32::FromAnsi(s); };
  io.replaceFile = [](const std::string& from, const std::string& to) {
    return MoveFileExA(from.c_str(), to.c_str(), MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH) != 0;
  };
  std::vector<std::string> args(argv + 1, argv + argc);
  return tamrix::etat::Run(args, platform, io);
}
