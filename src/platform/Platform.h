// The platform operations: every system service the program uses, and nothing else.
// The real implementation (win32/) calls the ANSI functions of Windows; the fake of the tests
// (tests/fake/) keeps an in-memory machine that follows the same rules. Text crosses this
// interface in UTF-8; the real implementation converts it to and from the ANSI code page.
// Members carry the names of the Windows functions they stand for.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "platform/MixerRecords.h"
#include "platform/Wmi.h"

namespace tamrix {

// A registry key handle. Hives are the classic 32-bit constants; 0 is "no key".
using HKey = std::uint64_t;
using WindowHandle = std::uint64_t;
using GdiHandle = std::uint64_t;

namespace hive {
constexpr HKey CurrentUser = 0x80000001u;
constexpr HKey LocalMachine = 0x80000002u;
}  // namespace hive

namespace regtype {
constexpr std::uint32_t Sz = 1;
constexpr std::uint32_t ExpandSz = 2;
constexpr std::uint32_t Binary = 3;
constexpr std::uint32_t Dword = 4;
constexpr std::uint32_t MultiSz = 7;
constexpr std::uint32_t Qword = 11;
}  // namespace regtype

// Access bits of a key opening beyond the program's own mask: read rights, and the two registry
// views of 64-bit Windows (a 32-bit program's HKLM\Software lands in the 32-bit one unless it
// names a view). 32-bit Windows has one view and ignores both bits.
namespace keyaccess {
constexpr std::uint32_t Read = 0x20019;
constexpr std::uint32_t View64 = 0x0100;
constexpr std::uint32_t View32 = 0x0200;
}  // namespace keyaccess

// Statuses of the platform's functions that the program and its tests tell apart.
namespace status {
constexpr long Success = 0;
constexpr long FileNotFound = 2;
constexpr long AccessDenied = 5;
constexpr long InvalidHandle = 6;
constexpr long MoreData = 234;
constexpr long NoMoreItems = 259;
}  // namespace status

// Message box styles and answers, as the platform numbers them.
namespace mb {
constexpr unsigned Ok = 0x00;
constexpr unsigned OkCancel = 0x01;
constexpr unsigned YesNo = 0x04;
constexpr unsigned Critical = 0x10;
constexpr unsigned Information = 0x40;
constexpr int IdOk = 1;
constexpr int IdCancel = 2;
constexpr int IdYes = 6;
constexpr int IdNo = 7;
}  // namespace mb

// How a started process shows its window (the platform's show commands).
enum class ShowCommand { Hidden = 0, Normal = 1, MinimizedActive = 2, MinimizedInactive = 6 };

struct RectPx {
  long left = 0, top = 0, right = 0, bottom = 0;
};

// The memory status record as a 32-bit program that is not large-address-aware receives it:
// physical and virtual counts capped at 2 GB - 1, the page file's just under 4 GB (Memory32.h).
struct MemoryStatus {
  std::uint32_t dwLength = 0;
  std::uint32_t dwMemoryLoad = 0;
  std::uint32_t dwTotalPhys = 0;
  std::uint32_t dwAvailPhys = 0;
  std::uint32_t dwTotalPageFile = 0;
  std::uint32_t dwAvailPageFile = 0;
  std::uint32_t dwTotalVirtual = 0;
  std::uint32_t dwAvailVirtual = 0;
};

// What GetVersionExA fills in a record whose size field the caller set.
struct OsVersion {
  bool ok = false;  // the call's result
  std::uint32_t major = 0, minor = 0, build = 0, platformId = 0;
  std::string csdVersion;
};

struct LocalTime {
  int year = 0, month = 0, day = 0, hour = 0, minute = 0, second = 0;
};

class Platform {
 public:
  virtual ~Platform() = default;

  // Registry. Sizes count bytes of the ANSI code page, as RegQueryValueExA does: a REG_SZ
  // text of n characters, its terminator included, has size n.
  virtual long RegOpenKeyExA(HKey parent, const std::string& subKey, std::uint32_t options,
                             std::uint32_t samDesired, HKey* result) = 0;
  virtual long RegCloseKey(HKey key) = 0;
  // With data == nullptr it learns the type and the size. With data, *size is the room offered;
  // on success *data holds what was delivered (REG_SZ as UTF-8 text, other types raw) and *size
  // the count of bytes delivered.
  virtual long RegQueryValueExA(HKey key, const std::string& valueName, std::uint32_t* type,
                                std::string* data, std::uint32_t* size) = 0;
  // REG_SZ: the first `size` bytes of the text are stored, with no terminator added.
  // REG_DWORD: data holds the four little-endian bytes.
  virtual long RegSetValueExA(HKey key, const std::string& valueName, std::uint32_t type,
                              const std::string& data, std::uint32_t size) = 0;
  virtual long RegDeleteKeyA(HKey parent, const std::string& subKey) = 0;
  virtual long RegDeleteValueA(HKey key, const std::string& valueName) = 0;
  // What a backup needs beyond the program's own reads: values exactly as stored (texts in
  // UTF-16 LE, as the registry keeps them, so nothing outside the ANSI code page is lost) and
  // the walk of a key. Names cross in UTF-8. RegQueryValueExW sizes as RegQueryValueExA does,
  // in stored bytes; the two enumerations deliver whole names and data, and NoMoreItems past
  // the last index.
  virtual long RegQueryValueExW(HKey key, const std::string& valueName, std::uint32_t* type, std::string* data,
                                std::uint32_t* size) = 0;
  virtual long RegEnumValueW(HKey key, std::uint32_t index, std::string* name, std::uint32_t* type,
                             std::string* data) = 0;
  virtual long RegEnumKeyExW(HKey key, std::uint32_t index, std::string* name) = 0;
  // Whether this process runs with an administrator's rights, which writes to HKLM need (on
  // Vista and later, an elevated prompt).
  virtual bool IsUserAnAdmin() = 0;

  // The platform's own idea of the same executable already running; no side effect on it.
  virtual bool EarlierInstanceRunning() = 0;
  // Starts a command line as it stands: no shell between, no wait. A process that can't be
  // started raises run-time error 53.
  virtual void StartProcess(const std::string& commandLine, ShowCommand show) = 0;

  virtual int MessageBoxA(const std::string& text, unsigned style, const std::string& title) = 0;
  virtual void Beep() = 0;

  // What the main window's shape and dragging use.
  virtual RectPx GetClientRect(WindowHandle window) = 0;
  virtual GdiHandle CreateRoundRectRgn(long left, long top, long right, long bottom, long ellipseWidth,
                                       long ellipseHeight) = 0;
  virtual int SetWindowRgn(WindowHandle window, GdiHandle region, bool redraw) = 0;
  virtual bool DeleteObject(GdiHandle object) = 0;
  virtual bool ReleaseCapture() = 0;
  virtual std::int64_t SendMessageA(WindowHandle window, unsigned message, std::uint64_t wParam,
                                    std::int64_t lParam) = 0;

  // Profile files. GetPrivateProfileStringA copies at most size - 1 characters into *buffer
  // and gives back the count copied.
  virtual std::uint32_t GetPrivateProfileStringA(const std::string& section, const std::string& key,
                                                 const std::string& defaultValue, std::string* buffer,
                                                 std::uint32_t size, const std::string& path) = 0;
  virtual bool WritePrivateProfileStringA(const std::string& section, const std::string& key,
                                          const std::string& value, const std::string& path) = 0;

  // System facts.
  virtual std::string AppPath() = 0;  // the executable's directory, as the platform gives it
  // Both fill a buffer of `size` characters and give back the length of the path (or the size
  // needed, when the buffer is too small).
  virtual std::uint32_t GetWindowsDirectoryA(std::string* buffer, std::uint32_t size) = 0;
  virtual std::uint32_t GetSystemDirectoryA(std::string* buffer, std::uint32_t size) = 0;
  virtual MemoryStatus GlobalMemoryStatus(std::uint32_t length) = 0;
  virtual OsVersion GetVersionExA(std::uint32_t size) = 0;
  virtual std::uint32_t GetTickCount() = 0;
  virtual LocalTime Now() = 0;

  // Drives. The letters of the drives that exist now, in alphabetical order ("ACDZ"): what the
  // file-system object's drive collection and the drive list box both walk.
  virtual std::string LogicalDriveLetters() = 0;

  // Hardware: drives, WMI, priority, common controls, event pump.
  // A drive's root is "C:\\". Volume and free-space reads fail (false) on a drive without a medium.
  virtual bool GetVolumeInformationA(const std::string& root, std::string* volumeName, std::uint32_t* serialNumber,
                                     std::string* fileSystem) = 0;
  virtual bool GetDiskFreeSpaceExA(const std::string& root, std::uint64_t* freeToCaller, std::uint64_t* totalBytes,
                                   std::uint64_t* totalFree) = 0;
  // 0 unknown, 1 no such root, 2 removable, 3 fixed, 4 remote, 5 CD-ROM, 6 RAM disk.
  virtual std::uint32_t GetDriveTypeA(const std::string& root) = 0;
  virtual std::string GetCurrentDirectoryA() = 0;
  // Binds a WMI moniker such as "winmgmts:"; a moniker that can't be bound raises a run-time error.
  virtual std::shared_ptr<WmiService> WmiGetObject(const std::string& moniker) = 0;
  virtual std::uint64_t GetCurrentProcess() = 0;
  virtual bool SetPriorityClass(std::uint64_t process, std::uint32_t priorityClass) = 0;
  virtual void InitCommonControls() = 0;
  // Lets the window events that are waiting run, then comes back.
  virtual void DoEvents() = 0;
  // The regional full month name, month 1 to 12 ("mars" on a French system).
  virtual std::string MonthName(int month) = 0;
  // The regional order of a short date: 0 month-day-year, 1 day-month-year, 2 year-month-day.
  virtual int ShortDateOrder() = 0;

  // Shell.
  virtual std::int64_t ShellExecuteA(WindowHandle owner, const std::string& verb, const std::string& file,
                                     const std::string& parameters, const std::string& directory, int show) = 0;
  // The folder browser: an item list, or 0 when the user cancelled.
  virtual std::uint64_t SHBrowseForFolderA(WindowHandle owner, const std::string& title, std::uint32_t flags) = 0;
  // Fills *path from a buffer of 260 characters, up to its first NUL.
  virtual bool SHGetPathFromIDListA(std::uint64_t itemList, std::string* path) = 0;
  virtual void CoTaskMemFree(std::uint64_t itemList) = 0;

  // Audio mixers of winmm and the mouse pointer.
  // The records are the ANSI ones; fixed text fields come whole, NULs and what follows them
  // included, and the caller cuts them. Every function but mixerGetNumDevs gives 0 or an
  // MMSYSERR/MIXERR code, as winmm does.
  virtual std::uint32_t mixerGetNumDevs() = 0;
  virtual std::uint32_t mixerGetDevCapsA(std::uint32_t deviceId, MixerCaps* caps, std::uint32_t size) = 0;
  virtual std::uint32_t mixerOpen(MixerHandle* handle, std::uint32_t deviceId, std::uint64_t callback,
                                  std::uint64_t instance, std::uint32_t flags) = 0;
  virtual std::uint32_t mixerClose(MixerHandle handle) = 0;
  // flags: mixerline::GetDestination with dwDestination set, or mixerline::GetSource with
  // dwDestination and dwSource set; cbStruct must hold mixerline::kSize.
  virtual std::uint32_t mixerGetLineInfoA(MixerHandle handle, MixerLine* line, std::uint32_t flags) = 0;

  // Locale facts of the user's regional settings.
  virtual char DecimalSign() = 0;
  // The separator of hours, minutes and seconds (":" on a French system).
  virtual char TimeSeparator() = 0;
  // The system's word for a Boolean ("Vrai" / "Faux" on a French system).
  virtual std::string BooleanText(bool value) = 0;

  // Tools window: special folders, display modes, shutdown, key filtering.
  // The fields of a display mode record that the program reads and writes.
  struct DevMode {
    std::uint32_t dmFields = 0;
    std::uint32_t dmBitsPerPel = 0;
    std::uint32_t dmPelsWidth = 0;
    std::uint32_t dmPelsHeight = 0;
    std::uint32_t dmDisplayFrequency = 0;
  };
  // The screen's size in twips and the twips of one pixel, each direction.
  struct ScreenTwips {
    long width = 0, height = 0;
    long twipsPerPixelX = 15, twipsPerPixelY = 15;
  };
  // 0 on success, with an item list that the caller owns.
  virtual long SHGetSpecialFolderLocation(WindowHandle owner, int folder, std::uint64_t* itemList) = 0;
  // A device capability of the window's device context (12: bits per pixel).
  virtual int GetDeviceCaps(WindowHandle window, int index) = 0;
  virtual ScreenTwips GetScreenTwips() = 0;
  // Fills *mode with the mode of that number of the display; false once the numbers run out.
  virtual bool EnumDisplaySettingsA(std::uint32_t modeNumber, DevMode* mode) = 0;
  virtual long ChangeDisplaySettingsA(const DevMode& mode, std::uint32_t flags) = 0;
  virtual bool ExitWindowsEx(std::uint32_t flags, std::uint32_t reserved) = 0;

  // Tools window's file pages: open dialog, pictures, files and folders.
  // The common dialog's open mode: its settings, and after it the chosen file's full name.
  struct OpenFileRequest {
    std::string title;
    std::string filter;  // description|pattern pairs, as the common dialog takes them
    std::uint32_t flags = 0;
    std::string fileName;  // the start name; the chosen file once the user said Open
  };
  // False when the user cancelled; fileName is then left as it was.
  virtual bool GetOpenFileNameA(WindowHandle owner, OpenFileRequest* request) = 0;
  // A picture the platform holds; 0 is the empty picture. Each one is given back by ReleasePicture.
  using PictureHandle = std::uint64_t;
  // A JPEG, bitmap or icon file. The empty name gives the empty picture; a missing file is fault
  // 53, a file that is no picture fault 481.
  virtual PictureHandle LoadPicture(const std::string& path) = 0;
  // One of the program's icon resources, by its number; 0 when there is none.
  virtual PictureHandle LoadResourceIcon(int id) = 0;
  // A picture stored as raw data among the program's resources (the OEM logo), by name.
  virtual PictureHandle LoadResourcePicture(const std::string& name) = 0;
  virtual void ReleasePicture(PictureHandle picture) = 0;
  // Saves the picture as a Windows bitmap. The empty picture is fault 380, a missing folder fault
  // 76, any other failure to write fault 75; nothing is written then.
  virtual void SavePicture(PictureHandle picture, const std::string& path) = 0;
  virtual bool FileExists(const std::string& path) = 0;  // a file, not a folder
  virtual bool FolderExists(const std::string& path) = 0;
  // Deletes the file even when it is hidden, system or read-only; false when it couldn't.
  virtual bool DeleteFileForce(const std::string& path) = 0;
  // Deletes the file as the language's own delete does: a read-only file stays; false then.
  virtual bool DeleteFilePlain(const std::string& path) = 0;
  // Creates or empties the file and writes each line in the ANSI code page, ended by CR LF. A
  // missing folder is fault 76, any other failure fault 75.
  virtual void WriteTextLines(const std::string& path, const std::vector<std::string>& lines) = 0;
  // The executable's file name without its ".exe", as the platform spells it.
  virtual std::string ExeName() = 0;
  // The names of the folders inside a folder, sorted without regard to case.
  virtual std::vector<std::string> ListFolders(const std::string& path) = 0;
};

}  // namespace tamrix
