// A stand-in for subst.exe that only bears witness: copied beside tamrix.exe for one scenario,
// where the program's bare "subst.exe" finds it first, it writes down how it was started (its
// command line, how its window was to show, its parent process) to witness-started.txt, waits
// three seconds, then writes witness-ended.txt, both beside itself. The scenario can then tell
// whether the program waited for it.
#include <windows.h>
#include <tlhelp32.h>

#include <cstdio>
#include <string>

namespace {

DWORD ParentPid() {
  DWORD me = GetCurrentProcessId(), parent = 0;
  HANDLE snap = CreateToolhelp32Snapshot(TH32CS_SNAPPROCESS, 0);
  PROCESSENTRY32 e{};
  e.dwSize = sizeof e;
  for (BOOL ok = Process32First(snap, &e); ok; ok = Process32Next(snap, &e))
    if (e.th32ProcessID == me) parent = e.th32ParentProcessID;
  CloseHandle(snap);
  return parent;
}

std::string Beside(const char* name) {
  char path[MAX_PATH];
  DWORD n = GetModuleFileNameA(nullptr, path, MAX_PATH);
  std::string dir(path, n);
  return dir.substr(0, dir.find_last_of('\\') + 1) + name;
}

}  // namespace

int main() {
  STARTUPINFOA si{};
  GetStartupInfoA(&si);
  std::string started = Beside("witness-started.txt");
  if (FILE* f = std::fopen(started.c_str(), "wb")) {
    std::fprintf(f, "%s\n%lu\n%u\n%lu\n", GetCommandLineA(), si.dwFlags & STARTF_USESHOWWINDOW,
                 static_cast<unsigned>(si.wShowWindow), ParentPid());
    std::fclose(f);
  }
  Sleep(3000);
  std::string ended = Beside("witness-ended.txt");
  if (FILE* f = std::fopen(ended.c_str(), "wb")) std::fclose(f);
  return 0;
}
