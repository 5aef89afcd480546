// Tools window's file pages: open dialog, pictures, files and folders.
#include "platform/win32/Win32Platform.h"

#include <windows.h>
#include <commdlg.h>
#include <olectl.h>

#include <algorithm>
#include <cstring>
#include <string>
#include <vector>

#include "platform/FileFaults.h"
#include "platform/Runtime.h"
#include "platform/win32/Ansi.h"
#include "platform/win32/Win32Internal.h"

namespace tamrix::win32 {

namespace {

// The picture services decode JPEG through COM objects, which want the thread's apartment.
void EnsureCom() {
  thread_local bool done = false;
  if (!done) {
    CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
    done = true;
  }
}

IPicture* ToPicture(Platform::PictureHandle h) { return reinterpret_cast<IPicture*>(static_cast<ULONG_PTR>(h)); }
Platform::PictureHandle FromPicture(IPicture* p) { return static_cast<Platform::PictureHandle>(reinterpret_cast<ULONG_PTR>(p)); }

// Bytes to a picture, by the platform's own decoders (bitmap, JPEG, GIF, icon).
IPicture* PictureFromBytes(const void* data, std::size_t size) {
  EnsureCom();
  HGLOBAL mem = GlobalAlloc(GMEM_MOVEABLE, size);
  if (!mem) return nullptr;
  std::memcpy(GlobalLock(mem), data, size);
  GlobalUnlock(mem);
  IStream* stream = nullptr;
  if (FAILED(CreateStreamOnHGlobal(mem, TRUE, &stream))) {
    GlobalFree(mem);
    return nullptr;
  }
  IPicture* picture = nullptr;
  HRESULT hr = OleLoadPicture(stream, static_cast<LONG>(size), FALSE, IID_IPicture, reinterpret_cast<void**>(&picture));
  stream->Release();
  return SUCCEEDED(hr) ? picture : nullptr;
}

std::string ParentFolder(const std::string& ansiPath) {
  std::size_t slash = ansiPath.find_last_of('\\');
  return slash == std::string::npos ? std::string(".") : ansiPath.substr(0, slash == 2 && ansiPath[1] == ':' ? 3 : slash);
}

// A failure to create a file: the folder's absence is told apart from any other refusal.
RuntimeError WriteFault(const std::string& ansiPath) {
  DWORD a = GetFileAttributesA(ParentFolder(ansiPath).c_str());
  if (a == INVALID_FILE_ATTRIBUTES || !(a & FILE_ATTRIBUTE_DIRECTORY)) return rt::PathNotFound();
  return rt::PathFileAccess();
}

}  // namespace

bool Win32Platform::GetOpenFileNameA(WindowHandle owner, OpenFileRequest* request) {
  // The common dialog takes its filter with NULs where the user writes bars.
  std::string filter = ToAnsi(request->filter);
  std::replace(filter.begin(), filter.end(), '|', '\0');
  filter.append(2, '\0');
  std::string title = ToAnsi(request->title);
  std::string file = ToAnsi(request->fileName);
  file.resize(std::max<std::size_t>(file.size() + 1, 1024), '\0');
  OPENFILENAMEA ofn{};
  ofn.lStructSize = sizeof ofn;
  ofn.hwndOwner = owner ? ToHwnd(owner) : GetActiveWindow();
  ofn.lpstrFilter = filter.c_str();
  ofn.nFilterIndex = 1;
  ofn.lpstrFile = file.data();
  ofn.nMaxFile = static_cast<DWORD>(file.size());
  ofn.lpstrTitle = title.empty() ? nullptr : title.c_str();
  ofn.Flags = request->flags | OFN_EXPLORER;
  if (!::GetOpenFileNameA(&ofn)) return false;
  request->fileName = FromAnsi(std::string(file.c_str()));
  return true;
}

Platform::PictureHandle Win32Platform::LoadPicture(const std::string& path) {
  if (path.empty()) return 0;
  HANDLE file = CreateFileA(ToAnsi(path).c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING,
                            FILE_ATTRIBUTE_NORMAL, nullptr);
  if (file == INVALID_HANDLE_VALUE) throw rt::FileNotFound();
  std::string bytes;
  char chunk[65536];
  DWORD got = 0;
  while (ReadFile(file, chunk, sizeof chunk, &got, nullptr) && got > 0) bytes.append(chunk, got);
  CloseHandle(file);
  IPicture* picture = bytes.empty() ? nullptr : PictureFromBytes(bytes.data(), bytes.size());
  if (!picture) throw rt::InvalidPicture();
  return FromPicture(picture);
}

Platform::PictureHandle Win32Platform::LoadResourceIcon(int id) {
  EnsureCom();
  auto icon = static_cast<HICON>(LoadImageA(GetModuleHandleA(nullptr), MAKEINTRESOURCEA(id), IMAGE_ICON, 32, 32, 0));
  if (!icon) return 0;
  PICTDESC desc{};
  desc.cbSizeofstruct = sizeof desc;
  desc.picType = PICTYPE_ICON;
  desc.icon.hicon = icon;
  IPicture* picture = nullptr;
  if (FAILED(OleCreatePictureIndirect(&desc, IID_IPicture, TRUE, reinterpret_cast<void**>(&picture)))) {
    DestroyIcon(icon);
    return 0;
  }
  return FromPicture(picture);
}

Platform::PictureHandle Win32Platform::LoadResourcePicture(const std::string& name) {
  HMODULE module = GetModuleHandleA(nullptr);
  HRSRC res = FindResourceA(module, ToAnsi(name).c_str(), MAKEINTRESOURCEA(10));  // RT_RCDATA
  if (!res) return 0;
  HGLOBAL data = LoadResource(module, res);
  if (!data) return 0;
  return FromPicture(PictureFromBytes(LockResource(data), SizeofResource(module, res)));
}

void Win32Platform::ReleasePicture(PictureHandle picture) {
  if (picture) ToPicture(picture)->Release();
}

// The picture is drawn at its own size onto a 24-bit surface and written as a bitmap file, so a
// JPEG or an icon comes out as a bitmap too.
void Win32Platform::SavePicture(PictureHandle picture, const std::string& path) {
  if (!picture) throw rt::InvalidPropertyValue();
  IPicture* pic = ToPicture(picture);
  OLE_XSIZE_HIMETRIC hmWidth = 0;
  OLE_YSIZE_HIMETRIC hmHeight = 0;
  pic->get_Width(&hmWidth);
  pic->get_Height(&hmHeight);
  HDC screen = GetDC(nullptr);
  const int width = MulDiv(hmWidth, ::GetDeviceCaps(screen, LOGPIXELSX), 2540);
  const int height = MulDiv(hmHeight, ::GetDeviceCaps(screen, LOGPIXELSY), 2540);
  if (width <= 0 || height <= 0) {
    ReleaseDC(nullptr, screen);
    throw rt::InvalidPropertyValue();
  }
  BITMAPINFO info{};
  info.bmiHeader.biSize = sizeof info.bmiHeader;
  info.bmiHeader.biWidth = width;
  info.bmiHeader.biHeight = height;
  info.bmiHeader.biPlanes = 1;
  info.bmiHeader.biBitCount = 24;
  info.bmiHeader.biCompression = BI_RGB;
  void* bits = nullptr;
  HBITMAP dib = CreateDIBSection(screen, &info, DIB_RGB_COLORS, &bits, nullptr, 0);
  HDC dc = CreateCompatibleDC(screen);
  ReleaseDC(nullptr, screen);
  HGDIOBJ old = SelectObject(dc, dib);
  RECT all{0, 0, width, height};
  FillRect(dc, &all, static_cast<HBRUSH>(GetStockObject(WHITE_BRUSH)));
  pic->Render(dc, 0, 0, width, height, 0, hmHeight, hmWidth, -hmHeight, nullptr);
  GdiFlush();
  const DWORD stride = ((static_cast<DWORD>(width) * 3 + 3) / 4) * 4;
  const DWORD imageSize = stride * static_cast<DWORD>(height);
  BITMAPFILEHEADER head{};
  head.bfType = 0x4D42;  // "BM"
  head.bfOffBits = sizeof head + sizeof info.bmiHeader;
  head.bfSize = head.bfOffBits + imageSize;
  info.bmiHeader.biSizeImage = imageSize;
  std::string ansi = ToAnsi(path);
  HANDLE file = CreateFileA(ansi.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
  bool ok = file != INVALID_HANDLE_VALUE;
  if (ok) {
    DWORD written = 0;
    ok = WriteFile(file, &head, sizeof head, &written, nullptr) &&
         WriteFile(file, &info.bmiHeader, sizeof info.bmiHeader, &written, nullptr) &&
         WriteFile(file, bits, imageSize, &written, nullptr);
    CloseHandle(file);
  }
  SelectObject(dc, old);
  DeleteDC(dc);
  ::DeleteObject(dib);
  if (!ok) throw WriteFault(ansi);
}

bool Win32Platform::FileExists(const std::string& path) {
  DWORD a = GetFileAttributesA(ToAnsi(path).c_str());
  return a != INVALID_FILE_ATTRIBUTES && !(a & FILE_ATTRIBUTE_DIRECTORY);
}

bool Win32Platform::FolderExists(const std::string& path) {
  if (path.empty()) return false;
  DWORD a = GetFileAttributesA(ToAnsi(path).c_str());
  return a != INVALID_FILE_ATTRIBUTES && (a & FILE_ATTRIBUTE_DIRECTORY);
}

// Forced: the hidden, system and read-only marks are taken off first, as they stop a delete.
bool Win32Platform::DeleteFileForce(const std::string& path) {
  std::string ansi = ToAnsi(path);
  DWORD a = GetFileAttributesA(ansi.c_str());
  if (a == INVALID_FILE_ATTRIBUTES || (a & FILE_ATTRIBUTE_DIRECTORY)) return false;
  SetFileAttributesA(ansi.c_str(), FILE_ATTRIBUTE_NORMAL);
  if (::DeleteFileA(ansi.c_str())) return true;
  SetFileAttributesA(ansi.c_str(), a);
  return false;
}

bool Win32Platform::DeleteFilePlain(const std::string& path) { return ::DeleteFileA(ToAnsi(path).c_str()) != 0; }

void Win32Platform::WriteTextLines(const std::string& path, const std::vector<std::string>& lines) {
  std::string ansi = ToAnsi(path);
  HANDLE file = CreateFileA(ansi.c_str(), GENERIC_WRITE, FILE_SHARE_READ, nullptr, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL,
                            nullptr);
  if (file == INVALID_HANDLE_VALUE) throw WriteFault(ansi);
  std::string text;
  for (const auto& line : lines) text += ToAnsi(line) + "\r\n";
  DWORD written = 0;
  bool ok = WriteFile(file, text.data(), static_cast<DWORD>(text.size()), &written, nullptr) && written == text.size();
  CloseHandle(file);
  if (!ok) throw rt::PathFileAccess();
}

std::string Win32Platform::ExeName() {
  char path[MAX_PATH] = {};
  DWORD n = GetModuleFileNameA(nullptr, path, MAX_PATH);
  std::string name(path, n);
  name = name.substr(name.find_last_of('\\') + 1);
  std::size_t dot = name.find_last_of('.');
  if (dot != std::string::npos) name.resize(dot);
  return FromAnsi(name);
}

std::vector<std::string> Win32Platform::ListFolders(const std::string& path) {
  std::string pattern = ToAnsi(path);
  if (pattern.empty() || pattern.back() != '\\') pattern += '\\';
  pattern += '*';
  std::vector<std::string> names;
  WIN32_FIND_DATAA found{};
  HANDLE h = FindFirstFileA(pattern.c_str(), &found);
  if (h == INVALID_HANDLE_VALUE) return names;
  do {
    std::string name = found.cFileName;
    if ((found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) && name != "." && name != "..")
      names.push_back(FromAnsi(name));
  } while (FindNextFileA(h, &found));
  FindClose(h);
  std::sort(names.begin(), names.end(), [](const std::string& a, const std::string& b) {
    return lstrcmpiA(ToAnsi(a).c_str(), ToAnsi(b).c_str()) < 0;
  });
  return names;
}

}  // namespace tamrix::win32
