// Shell: documents opened by their verb, the folder browser, special folders.
#include "platform/win32/Win32Platform.h"

#include <windows.h>
#include <shellapi.h>
#include <shlobj.h>

#include <cstring>

#include "platform/win32/Ansi.h"
#include "platform/win32/Win32Internal.h"

namespace tamrix::win32 {

std::int64_t Win32Platform::ShellExecuteA(WindowHandle owner, const std::string& verb, const std::string& file,
                                          const std::string& parameters, const std::string& directory, int show) {
  return reinterpret_cast<INT_PTR>(::ShellExecuteA(ToHwnd(owner), ToAnsi(verb).c_str(), ToAnsi(file).c_str(),
                                                   ToAnsi(parameters).c_str(), ToAnsi(directory).c_str(), show));
}

std::uint64_t Win32Platform::SHBrowseForFolderA(WindowHandle owner, const std::string& title, std::uint32_t flags) {
  std::string ansiTitle = ToAnsi(title);
  BROWSEINFOA bi{};
  bi.hwndOwner = ToHwnd(owner);
  bi.lpszTitle = ansiTitle.c_str();
  bi.ulFlags = flags;
  return reinterpret_cast<ULONG_PTR>(::SHBrowseForFolderA(&bi));
}

bool Win32Platform::SHGetPathFromIDListA(std::uint64_t itemList, std::string* path) {
  char buffer[260] = {};
  BOOL ok = ::SHGetPathFromIDListA(reinterpret_cast<PCIDLIST_ABSOLUTE>(static_cast<ULONG_PTR>(itemList)), buffer);
  *path = ok ? FromAnsi(buffer, strnlen(buffer, sizeof buffer)) : std::string();
  return ok;
}

void Win32Platform::CoTaskMemFree(std::uint64_t itemList) {
  ::CoTaskMemFree(reinterpret_cast<void*>(static_cast<ULONG_PTR>(itemList)));
}

long Win32Platform::SHGetSpecialFolderLocation(WindowHandle owner, int folder, std::uint64_t* itemList) {
  PIDLIST_ABSOLUTE list = nullptr;
  HRESULT hr = ::SHGetSpecialFolderLocation(ToHwnd(owner), folder, &list);
  *itemList = SUCCEEDED(hr) ? reinterpret_cast<ULONG_PTR>(list) : 0;
  return hr;
}

}  // namespace tamrix::win32
