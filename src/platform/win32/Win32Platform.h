// The platform operations on real Windows (and on Wine): the ANSI functions, with text converted
// to and from the system's code page at each call.
#pragma once

#include "platform/Platform.h"

namespace tamrix::win32 {

class Win32Platform : public Platform {
 public:
  Win32Platform() = default;
  ~Win32Platform() override;
  Win32Platform(const Win32Platform&) = delete;
  Win32Platform& operator=(const Win32Platform&) = delete;

  // Has the system read its list of sound devices on a thread of its own, while the caller goes
  // on: the first mixer call otherwise waits for that reading (on Wine, the sound server's
  // devices, some 30 ms). Every mixer call waits for the reading to end first, so the mixers
  // are asked in the order the program asks them, never at the same time.
  void ReadMixersAhead();

  long RegOpenKeyExA(HKey parent, const std::string& subKey, std::uint32_t options, std::uint32_t samDesired,
                     HKey* result) override;
  long RegCloseKey(HKey key) override;
  long RegQueryValueExA(HKey key, const std::string& valueName, std::uint32_t* type, std::string* data,
                        std::uint32_t* size) override;
  long RegSetValueExA(HKey key, const std::string& valueName, std::uint32_t type, const std::string& data,
                      std::uint32_t size) override;
  long RegDeleteKeyA(HKey parent, const std::string& subKey) override;
  long RegDeleteValueA(HKey key, const std::string& valueName) override;
  long RegQueryValueExW(HKey key, const std::string& valueName, std::uint32_t* type, std::string* data,
                        std::uint32_t* size) override;
  long RegEnumValueW(HKey key, std::uint32_t index, std::string* name, std::uint32_t* type,
                     std::string* data) override;
  long RegEnumKeyExW(HKey key, std::uint32_t index, std::string* name) override;
  bool IsUserAnAdmin() override;
  bool EarlierInstanceRunning() override;
  void StartProcess(const std::string& commandLine, ShowCommand show) override;
  int MessageBoxA(const std::string& text, unsigned style, const std::string& title) override;
  void Beep() override;
  RectPx GetClientRect(WindowHandle window) override;
  GdiHandle CreateRoundRectRgn(long left, long top, long right, long bottom, long ellipseWidth,
                               long ellipseHeight) override;
  int SetWindowRgn(WindowHandle window, GdiHandle region, bool redraw) override;
  bool DeleteObject(GdiHandle object) override;
  bool ReleaseCapture() override;
  std::int64_t SendMessageA(WindowHandle window, unsigned message, std::uint64_t wParam, std::int64_t lParam) override;
  std::uint32_t GetPrivateProfileStringA(const std::string& section, const std::string& key,
                                         const std::string& defaultValue, std::string* buffer, std::uint32_t size,
                                         const std::string& path) override;
  bool WritePrivateProfileStringA(const std::string& section, const std::string& key, const std::string& value,
                                  const std::string& path) override;
  std::string AppPath() override;
  std::uint32_t GetWindowsDirectoryA(std::string* buffer, std::uint32_t size) override;
  std::uint32_t GetSystemDirectoryA(std::string* buffer, std::uint32_t size) override;
  MemoryStatus GlobalMemoryStatus(std::uint32_t length) override;
  OsVersion GetVersionExA(std::uint32_t size) override;
  std::uint32_t GetTickCount() override;
  LocalTime Now() override;
  std::string LogicalDriveLetters() override;

  // Hardware: drives, WMI, priority, common controls, event pump.
  bool GetVolumeInformationA(const std::string& root, std::string* volumeName, std::uint32_t* serialNumber,
                             std::string* fileSystem) override;
  bool GetDiskFreeSpaceExA(const std::string& root, std::uint64_t* freeToCaller, std::uint64_t* totalBytes,
                           std::uint64_t* totalFree) override;
  std::uint32_t GetDriveTypeA(const std::string& root) override;
  std::string GetCurrentDirectoryA() override;
  std::shared_ptr<WmiService> WmiGetObject(const std::string& moniker) override;
  std::uint64_t GetCurrentProcess() override;
  bool SetPriorityClass(std::uint64_t process, std::uint32_t priorityClass) override;
  void InitCommonControls() override;
  void DoEvents() override;
  std::string MonthName(int month) override;
  int ShortDateOrder() override;
  std::int64_t ShellExecuteA(WindowHandle owner, const std::string& verb, const std::string& file,
                             const std::string& parameters, const std::string& directory, int show) override;
  std::uint64_t SHBrowseForFolderA(WindowHandle owner, const std::string& title, std::uint32_t flags) override;
  bool SHGetPathFromIDListA(std::uint64_t itemList, std::string* path) override;
  void CoTaskMemFree(std::uint64_t itemList) override;
  // Audio mixers of winmm and the mouse pointer.
  std::uint32_t mixerGetNumDevs() override;
  std::uint32_t mixerGetDevCapsA(std::uint32_t deviceId, MixerCaps* caps, std::uint32_t size) override;
  std::uint32_t mixerOpen(MixerHandle* handle, std::uint32_t deviceId, std::uint64_t callback, std::uint64_t instance,
                          std::uint32_t flags) override;
  std::uint32_t mixerClose(MixerHandle handle) override;
  std::uint32_t mixerGetLineInfoA(MixerHandle handle, MixerLine* line, std::uint32_t flags) override;
  char DecimalSign() override;
  char TimeSeparator() override;
  std::string BooleanText(bool value) override;

  // Tools window: special folders, display modes, shutdown, key filtering.
  long SHGetSpecialFolderLocation(WindowHandle owner, int folder, std::uint64_t* itemList) override;
  int GetDeviceCaps(WindowHandle window, int index) override;
  ScreenTwips GetScreenTwips() override;
  bool EnumDisplaySettingsA(std::uint32_t modeNumber, DevMode* mode) override;
  long ChangeDisplaySettingsA(const DevMode& mode, std::uint32_t flags) override;
  bool ExitWindowsEx(std::uint32_t flags, std::uint32_t reserved) override;

  // Tools window's file pages: open dialog, pictures, files and folders. A picture handle here is
  // an IPicture pointer that the caller gives back through ReleasePicture.
  bool GetOpenFileNameA(WindowHandle owner, OpenFileRequest* request) override;
  PictureHandle LoadPicture(const std::string& path) override;
  PictureHandle LoadResourceIcon(int id) override;
  PictureHandle LoadResourcePicture(const std::string& name) override;
  void ReleasePicture(PictureHandle picture) override;
  void SavePicture(PictureHandle picture, const std::string& path) override;
  bool FileExists(const std::string& path) override;
  bool FolderExists(const std::string& path) override;
  bool DeleteFileForce(const std::string& path) override;
  bool DeleteFilePlain(const std::string& path) override;
  void WriteTextLines(const std::string& path, const std::vector<std::string>& lines) override;
  std::string ExeName() override;
  std::vector<std::string> ListFolders(const std::string& path) override;

 private:
  void AwaitMixersReadAhead();

  void* mixersReadAhead_ = nullptr;  // the reading thread, until a mixer call has waited for it
};

}  // namespace tamrix::win32
