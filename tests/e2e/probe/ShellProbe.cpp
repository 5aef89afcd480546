// shell_probe.exe: what the platform itself reports, written to a file for the end-to-end tests,
// with nothing of the program in between.
//   shell_probe folders FILE   one line per folder: "csidl=path" (UTF-8); the Windows and system
//                              directories as "windows=" and "system="
//   shell_probe modes FILE     one line per display mode: "WxHxB", in the driver's order, then
//                              "current=WxHxB" from the screen's size and depth
#include <windows.h>
#include <shlobj.h>

#include <cstdio>
#include <string>

namespace {

std::string Utf8(const wchar_t* w) {
  int n = WideCharToMultiByte(CP_UTF8, 0, w, -1, nullptr, 0, nullptr, nullptr);
  std::string s(n > 0 ? n - 1 : 0, '\0');
  if (n > 1) WideCharToMultiByte(CP_UTF8, 0, w, -1, s.data(), n, nullptr, nullptr);
  return s;
}

void Folders(FILE* out) {
  const int folders[] = {0, 2, 5, 6, 7, 8, 9, 11, 19, 20, 21, 25, 26, 27, 32, 33, 34};
  for (int csidl : folders) {
    PIDLIST_ABSOLUTE list = nullptr;
    wchar_t path[MAX_PATH] = {};
    if (SUCCEEDED(SHGetSpecialFolderLocation(nullptr, csidl, &list))) {
      if (!SHGetPathFromIDListW(list, path)) path[0] = 0;
      CoTaskMemFree(list);
    }
    std::fprintf(out, "%d=%s\n", csidl, Utf8(path).c_str());
  }
  wchar_t dir[MAX_PATH] = {};
  GetWindowsDirectoryW(dir, MAX_PATH);
  std::fprintf(out, "windows=%s\n", Utf8(dir).c_str());
  GetSystemDirectoryW(dir, MAX_PATH);
  std::fprintf(out, "system=%s\n", Utf8(dir).c_str());
}

void Modes(FILE* out) {
  DEVMODEW mode{};
  mode.dmSize = sizeof mode;
  for (DWORD i = 0; EnumDisplaySettingsW(nullptr, i, &mode); ++i)
    std::fprintf(out, "%lux%lux%lu\n", mode.dmPelsWidth, mode.dmPelsHeight, mode.dmBitsPerPel);
  HDC screen = GetDC(nullptr);
  std::fprintf(out, "current=%dx%dx%d\n", GetSystemMetrics(SM_CXSCREEN), GetSystemMetrics(SM_CYSCREEN),
               GetDeviceCaps(screen, BITSPIXEL));
  ReleaseDC(nullptr, screen);
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 3) return 2;
  FILE* out = std::fopen(argv[2], "wb");
  if (!out) return 3;
  std::string what = argv[1];
  if (what == "folders")
    Folders(out);
  else if (what == "modes")
    Modes(out);
  else
    return 2;
  std::fclose(out);
  return 0;
}
