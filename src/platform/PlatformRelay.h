// A platform that hands every operation to another one. A caller that must answer a few
// operations itself (a console program that may show no message box) derives from it and
// overrides just those.
#pragma once

#include "platform/Platform.h"

namespace tamrix {

class PlatformRelay : public Platform {
 public:
  explicit PlatformRelay(Platform& inner) : inner_(inner) {}

  // clang-format off
  long RegOpenKeyExA(HKey parent, const std::string& subKey, std::uint32_t options, std::uint32_t samDesired, HKey* result) override { return inner_.RegOpenKeyExA(parent, subKey, options, samDesired, result); }
  long RegCloseKey(HKey key) override { return inner_.RegCloseKey(key); }
  long RegQueryValueExA(HKey key, const std::string& valueName, std::uint32_t* type, std::string* data, std::uint32_t* size) override { return inner_.RegQueryValueExA(key, valueName, type, data, size); }
  long RegSetValueExA(HKey key, const std::string& valueName, std::uint32_t type, const std::string& data, std::uint32_t size) override { return inner_.RegSetValueExA(key, valueName, type, data, size); }
  long RegDeleteKeyA(HKey parent, const std::string& subKey) override { return inner_.RegDeleteKeyA(parent, subKey); }
  long RegDeleteValueA(HKey key, const std::string& valueName) override { return inner_.RegDeleteValueA(key, valueName); }
  long RegQueryValueExW(HKey key, const std::string& valueName, std::uint32_t* type, std::string* data, std::uint32_t* size) override { return inner_.RegQueryValueExW(key, valueName, type, data, size); }
  long RegEnumValueW(HKey key, std::uint32_t index, std::string* name, std::uint32_t* type, std::string* data) override { return inner_.RegEnumValueW(key, index, name, type, data); }
  long RegEnumKeyExW(HKey key, std::uint32_t index, std::string* name) override { return inner_.RegEnumKeyExW(key, index, name); }
  bool IsUserAnAdmin() override { return inner_.IsUserAnAdmin(); }
  bool EarlierInstanceRunning() override { return inner_.EarlierInstanceRunning(); }
  void StartProcess(const std::string& commandLine, ShowCommand show) override { inner_.StartProcess(commandLine, show); }
  int MessageBoxA(const std::string& text, unsigned style, const std::string& title) override { return inner_.MessageBoxA(text, style, title); }
  void Beep() override { inner_.Beep(); }
  RectPx GetClientRect(WindowHandle window) override { return inner_.GetClientRect(window); }
  GdiHandle CreateRoundRectRgn(long left, long top, long right, long bottom, long ellipseWidth, long ellipseHeight) override { return inner_.CreateRoundRectRgn(left, top, right, bottom, ellipseWidth, ellipseHeight); }
  int SetWindowRgn(WindowHandle window, GdiHandle region, bool redraw) override { return inner_.SetWindowRgn(window, region, redraw); }
  bool DeleteObject(GdiHandle object) override { return inner_.DeleteObject(object); }
  bool ReleaseCapture() override { return inner_.ReleaseCapture(); }
  std::int64_t SendMessageA(WindowHandle window, unsigned message, std::uint64_t wParam, std::int64_t lParam) override { return inner_.SendMessageA(window, message, wParam, lParam); }
  std::uint32_t GetPrivateProfileStringA(const std::string& section, const std::string& key, const std::string& defaultValue, std::string* buffer, std::uint32_t size, const std::string& path) override { return inner_.GetPrivateProfileStringA(section, key, defaultValue, buffer, size, path); }
  bool WritePrivateProfileStringA(const std::string& section, const std::string& key, const std::string& value, const std::string& path) override { return inner_.WritePrivateProfileStringA(section, key, value, path); }
  std::string AppPath() override { return inner_.AppPath(); }
  std::uint32_t GetWindowsDirectoryA(std::string* buffer, std::uint32_t size) override { return inner_.GetWindowsDirectoryA(buffer, size); }
  std::uint32_t GetSystemDirectoryA(std::string* buffer, std::uint32_t size) override { return inner_.GetSystemDirectoryA(buffer, size); }
  MemoryStatus GlobalMemoryStatus(std::uint32_t length) override { return inner_.GlobalMemoryStatus(length); }
  OsVersion GetVersionExA(std::uint32_t size) override { return inner_.GetVersionExA(size); }
  std::uint32_t GetTickCount() override { return inner_.GetTickCount(); }
  LocalTime Now() override { return inner_.Now(); }
  std::string LogicalDriveLetters() override { return inner_.LogicalDriveLetters(); }
  bool GetVolumeInformationA(const std::string& root, std::string* volumeName, std::uint32_t* serialNumber, std::string* fileSystem) override { return inner_.GetVolumeInformationA(root, volumeName, serialNumber, fileSystem); }
  bool GetDiskFreeSpaceExA(const std::string& root, std::uint64_t* freeToCaller, std::uint64_t* totalBytes, std::uint64_t* totalFree) override { return inner_.GetDiskFreeSpaceExA(root, freeToCaller, totalBytes, totalFree); }
  std::uint32_t GetDriveTypeA(const std::string& root) override { return inner_.GetDriveTypeA(root); }
  std::string GetCurrentDirectoryA() override { return inner_.GetCurrentDirectoryA(); }
  std::shared_ptr<WmiService> WmiGetObject(const std::string& moniker) override { return inner_.WmiGetObject(moniker); }
  std::uint64_t GetCurrentProcess() override { return inner_.GetCurrentProcess(); }
  bool SetPriorityClass(std::uint64_t process, std::uint32_t priorityClass) override { return inner_.SetPriorityClass(process, priorityClass); }
  void InitCommonControls() override { inner_.InitCommonControls(); }
  void DoEvents() override { inner_.DoEvents(); }
  std::string MonthName(int month) override { return inner_.MonthName(month); }
  int ShortDateOrder() override { return inner_.ShortDateOrder(); }
  std::int64_t ShellExecuteA(WindowHandle owner, const std::string& verb, const std::string& file, const std::string& parameters, const std::string& directory, int show) override { return inner_.ShellExecuteA(owner, verb, file, parameters, directory, show); }
  std::uint64_t SHBrowseForFolderA(WindowHandle owner, const std::string& title, std::uint32_t flags) override { return inner_.SHBrowseForFolderA(owner, title, flags); }
  bool SHGetPathFromIDListA(std::uint64_t itemList, std::string* path) override { return inner_.SHGetPathFromIDListA(itemList, path); }
  void CoTaskMemFree(std::uint64_t itemList) override { inner_.CoTaskMemFree(itemList); }
  std::uint32_t mixerGetNumDevs() override { return inner_.mixerGetNumDevs(); }
  std::uint32_t mixerGetDevCapsA(std::uint32_t deviceId, MixerCaps* caps, std::uint32_t size) override { return inner_.mixerGetDevCapsA(deviceId, caps, size); }
  std::uint32_t mixerOpen(MixerHandle* handle, std::uint32_t deviceId, std::uint64_t callback, std::uint64_t instance, std::uint32_t flags) override { return inner_.mixerOpen(handle, deviceId, callback, instance, flags); }
  std::uint32_t mixerClose(MixerHandle handle) override { return inner_.mixerClose(handle); }
  std::uint32_t mixerGetLineInfoA(MixerHandle handle, MixerLine* line, std::uint32_t flags) override { return inner_.mixerGetLineInfoA(handle, line, flags); }
  char DecimalSign() override { return inner_.DecimalSign(); }
  char TimeSeparator() override { return inner_.TimeSeparator(); }
  std::string BooleanText(bool value) override { return inner_.BooleanText(value); }
  long SHGetSpecialFolderLocation(WindowHandle owner, int folder, std::uint64_t* itemList) override { return inner_.SHGetSpecialFolderLocation(owner, folder, itemList); }
  int GetDeviceCaps(WindowHandle window, int index) override { return inner_.GetDeviceCaps(window, index); }
  ScreenTwips GetScreenTwips() override { return inner_.GetScreenTwips(); }
  bool EnumDisplaySettingsA(std::uint32_t modeNumber, DevMode* mode) override { return inner_.EnumDisplaySettingsA(modeNumber, mode); }
  long ChangeDisplaySettingsA(const DevMode& mode, std::uint32_t flags) override { return inner_.ChangeDisplaySettingsA(mode, flags); }
  bool ExitWindowsEx(std::uint32_t flags, std::uint32_t reserved) override { return inner_.ExitWindowsEx(flags, reserved); }
  bool GetOpenFileNameA(WindowHandle owner, OpenFileRequest* request) override { return inner_.GetOpenFileNameA(owner, request); }
  PictureHandle LoadPicture(const std::string& path) override { return inner_.LoadPicture(path); }
  PictureHandle LoadResourceIcon(int id) override { return inner_.LoadResourceIcon(id); }
  PictureHandle LoadResourcePicture(const std::string& name) override { return inner_.LoadResourcePicture(name); }
  void ReleasePicture(PictureHandle picture) override { inner_.ReleasePicture(picture); }
  void SavePicture(PictureHandle picture, const std::string& path) override { inner_.SavePicture(picture, path); }
  bool FileExists(const std::string& path) override { return inner_.FileExists(path); }
  bool FolderExists(const std::string& path) override { return inner_.FolderExists(path); }
  bool DeleteFileForce(const std::string& path) override { return inner_.DeleteFileForce(path); }
  bool DeleteFilePlain(const std::string& path) override { return inner_.DeleteFilePlain(path); }
  void WriteTextLines(const std::string& path, const std::vector<std::string>& lines) override { inner_.WriteTextLines(path, lines); }
  std::string ExeName() override { return inner_.ExeName(); }
  std::vector<std::string> ListFolders(const std::string& path) override { return inner_.ListFolders(path); }
  // clang-format on

 protected:
  Platform& inner_;
};

}  // namespace tamrix
