// The fake machine of the tests: an in-memory registry that follows the Windows rules (case-
// insensitive keys, access masks, value types and sizes, the stored terminator, no key created by
// a value write), scripted message-box answers, and a recorder of every platform call.
#pragma once

#include <deque>
#include <functional>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "platform/Platform.h"

namespace tamrix::fake {

struct MessageBoxCall {
  std::string text;
  unsigned style;
  std::string title;
};

struct StartedProcess {
  std::string commandLine;
  ShowCommand show;
};

class FakePlatform : public Platform {
 public:
  // --- the machine, as tests set it up and read it back ---
  struct Value {
    std::uint32_t type = 0;
    std::string data;  // REG_SZ: UTF-8 text, a stored terminator included; others: raw bytes
  };
  void CreateKey(HKey hive, const std::string& path);  // with every missing parent
  bool KeyExists(HKey hive, const std::string& path) const;
  void SetValue(HKey hive, const std::string& path, const std::string& name, std::uint32_t type, std::string data);
  void SetDword(HKey hive, const std::string& path, const std::string& name, std::uint32_t data);
  const Value* GetValue(HKey hive, const std::string& path, const std::string& name) const;
  // Size as the registry counts it (ANSI bytes).
  static std::uint32_t SizeOf(const Value& v);
  // A key this account may read but not write: opening it with any write right is refused.
  void DenyWrite(HKey hive, const std::string& path);
  // The key with everything under it, as an import's [-key] deletes it.
  void DeleteKeyTree(HKey hive, const std::string& path);
  // The last names of the subkeys, as first spelt.
  std::vector<std::string> Subkeys(HKey hive, const std::string& path) const;
  // Every value of a key, in order; empty for a missing key.
  std::vector<std::pair<std::string, Value>> Values(HKey hive, const std::string& path) const;
  std::size_t OpenHandles() const { return handles_.size(); }
  // Stored bytes as the wide functions give them: texts in UTF-16 LE.
  static std::string WideBytes(const Value& v);
  bool admin = true;
  // 64-bit Windows keeps two views of HKLM\Software (Software\Classes shared between them, as
  // since Windows 7): the 32-bit one under WOW6432Node. A 32-bit process lands there unless it
  // names the 64-bit view.
  bool windows64 = false;
  bool process32 = false;

  bool earlierInstance = false;
  char decimalSign = ',';
  char timeSeparator = ':';
  std::set<std::string> missingPrograms;  // executables that can't be started
  std::deque<int> answers;                // message box answers, IdOk when none is left
  RectPx clientRect{0, 0, 524, 416};

  // Profile files, by path (compared without regard to case), as text with CRLF line ends.
  std::map<std::string, std::string> files;
  std::string& File(const std::string& path) { return files[Lower(path)]; }
  bool HasFile(const std::string& path) const { return files.count(Lower(path)) > 0; }
  std::set<std::string> readOnlyFiles;  // writes to these paths fail
  // The attributes of files, by path (compared without regard to case); a file not named here has
  // none. A plain delete leaves a read-only file; a forced one takes any.
  static constexpr unsigned kReadOnly = 1, kHidden = 2, kSystem = 4;
  std::map<std::string, unsigned> fileAttributes;
  unsigned& Attributes(const std::string& path) { return fileAttributes[Lower(path)]; }
  // Files that no delete takes, forced or not (another program holds them open).
  std::set<std::string> lockedFiles;

  std::string appPath = "C:\\Program Files\\Tamrix";
  std::string windowsDirectory = "C:\\WINDOWS";
  std::string systemDirectory = "C:\\WINDOWS\\system32";
  MemoryStatus memory{32, 40, 536870912u, 134217728u, 1073741824u, 805306368u, 2147352576u, 2138243072u};
  OsVersion version{true, 5, 1, 2600, 2, "Service Pack 2"};
  std::uint32_t tickCount = 0;
  LocalTime now{2026, 11, 21, 20, 50, 35};
  std::string driveLetters = "ACD";

  // Hardware: drives, WMI, priority, common controls, event pump.
  struct Volume {
    std::string label, fileSystem = "NTFS";
    std::uint32_t serial = 0;
    std::uint32_t type = 3;
    bool medium = true;  // false: a drive without its disc, whose volume reads fail
    std::uint64_t totalBytes = 0, freeBytes = 0;
  };
  std::map<char, Volume> volumes;  // by capital letter; a letter without an entry has type 1
  std::string currentDirectory = "C:\\Program Files\\Tamrix";
  // WMI: the objects of each class, by class name; a property missing from an object isn't there.
  using WmiProps = std::map<std::string, WmiValue>;
  std::map<std::string, std::vector<WmiProps>> wmiClasses;
  // Class (in lower case) -> the rank of the object whose fetch fails in a walk of its instances.
  std::map<std::string, std::size_t> wmiFetchFailsAt;
  bool wmiBindFails = false;
  bool wmiQueryFails = false;
  std::uint32_t priorityClass = 0x20;  // NORMAL_PRIORITY_CLASS
  int doEvents = 0;
  std::function<void()> onDoEvents;  // what the waiting events do, when a test says so
  // The clock: each read moves it on by tickStep; a tickSource, when set, answers instead.
  std::uint32_t tickStep = 0;
  std::function<std::uint32_t()> tickSource;
  int shortDateOrder = 1;  // day-month-year
  // The folder browser: the path of the chosen item, "" for a virtual item, nullopt for Cancel.
  std::deque<std::optional<std::string>> browseAnswers;
  std::vector<std::uint64_t> freedItemLists;
  std::string trueWord = "Vrai", falseWord = "Faux";

  std::vector<std::string> calls;  // every platform call, in order
  std::vector<MessageBoxCall> boxes;
  std::vector<StartedProcess> started;
  int beeps = 0;
  void ClearCalls() { calls.clear(); }

  // --- Platform ---
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
  bool IsUserAnAdmin() override { return admin; }
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
  std::string AppPath() override { return appPath; }
  std::uint32_t GetWindowsDirectoryA(std::string* buffer, std::uint32_t size) override;
  std::uint32_t GetSystemDirectoryA(std::string* buffer, std::uint32_t size) override;
  MemoryStatus GlobalMemoryStatus(std::uint32_t length) override;
  OsVersion GetVersionExA(std::uint32_t size) override;
  std::uint32_t GetTickCount() override;
  LocalTime Now() override { return now; }
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
  int ShortDateOrder() override { return shortDateOrder; }
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
  // The scripted mixers: each destination with its sources; a non-zero error is the code that
  // the matching call gives back. caps.cDestinations and a line's cConnections are what the
  // device claims, and may differ from what the script lists: a line the script doesn't list
  // reads as MIXERR_INVALLINE.
  struct FakeDestination {
    MixerLine line;
    std::vector<MixerLine> sources;
    std::uint32_t error = 0;
    std::map<std::uint32_t, std::uint32_t> sourceErrors;  // by source index
  };
  struct FakeMixer {
    MixerCaps caps;
    std::vector<FakeDestination> destinations;
    std::uint32_t capsError = 0;
    std::uint32_t openError = 0;
  };
  // A plain sound card: "Fake Sound Card", one speaker destination with two sources. Tests of
  // other machines replace or clear the list.
  static FakeMixer SoundCard();
  std::vector<FakeMixer> mixers = {SoundCard()};
  std::set<MixerHandle> openMixers;  // handles open now
  static constexpr std::uint32_t kInvalidLine = 1024;
  char DecimalSign() override { return decimalSign; }
  char TimeSeparator() override { return timeSeparator; }
  std::string BooleanText(bool value) override { return value ? trueWord : falseWord; }
  static std::string Lower(std::string s);

  // Tools window: special folders, display modes, shutdown, key filtering.
  std::map<int, std::string> specialFolders;  // by folder number; a number left out is refused
  int bitsPerPixel = 32;
  ScreenTwips screen{1024 * 15, 768 * 15, 15, 15};
  std::vector<DevMode> displayModes;          // the driver's modes, in its order
  std::deque<long> changeResults;             // ChangeDisplaySettingsA's answers, 0 when none is left
  std::vector<std::pair<DevMode, std::uint32_t>> changes;  // every mode asked for, with its flags
  std::vector<std::uint32_t> exitCalls;       // the flags of every ExitWindowsEx
  long SHGetSpecialFolderLocation(WindowHandle owner, int folder, std::uint64_t* itemList) override;
  int GetDeviceCaps(WindowHandle window, int index) override;
  ScreenTwips GetScreenTwips() override { return screen; }
  bool EnumDisplaySettingsA(std::uint32_t modeNumber, DevMode* mode) override;
  long ChangeDisplaySettingsA(const DevMode& mode, std::uint32_t flags) override;
  bool ExitWindowsEx(std::uint32_t flags, std::uint32_t reserved) override;

  // Tools window's file pages: open dialog, pictures, files and folders.
  // Files live in `files` (by lower-case path); a picture file is one whose content starts with
  // "BM", the JPEG mark "\xFF\xD8" or the icon header "\0\0\1\0". Folders are their own set.
  std::set<std::string> folders;  // lower-case paths, no trailing separator
  bool HasFolder(const std::string& path) const { return folders.count(Lower(path)) > 0; }
  void AddFolder(const std::string& path) { folders.insert(Lower(path)); }
  // The open dialog: the file the user picks, nullopt for Cancel; Cancel when none is left.
  std::deque<std::optional<std::string>> openAnswers;
  std::vector<OpenFileRequest> openRequests;  // every dialog shown, as it was asked
  // Pictures by handle: what each shows ("file:<path>", "icon:<id>", "resource:<name>").
  std::map<PictureHandle, std::string> pictures;
  std::set<int> iconResources{1, 101, 102, 103, 104, 105, 106};
  std::string exeName = "Tamrix Utility";
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
  std::string ExeName() override { return exeName; }
  std::vector<std::string> ListFolders(const std::string& path) override;

 private:
  struct Key {
    std::string spelt;  // the last name of its path as first spelt
    std::vector<std::pair<std::string, Value>> values;  // in the order of creation
    bool denyWrite = false;
  };
  struct Handle {
    std::string path;  // full path, lower case
    std::uint32_t access;
  };
  static std::string Full(HKey hive, const std::string& path);
  bool Resolve(HKey key, std::string* path, std::uint32_t* access) const;
  Value* FindValue(Key& key, const std::string& name);
  // The value a query of an open key names, or the status that says why there is none.
  long FindForQuery(HKey key, const std::string& valueName, Value** found);
  std::string InView(HKey parent, const std::string& subKey, std::uint32_t samDesired) const;

  std::map<std::string, Key> keys_;
  std::map<HKey, Handle> handles_;
  std::map<std::uint64_t, std::string> itemLists_;
  std::uint64_t nextItemList_ = 0x3000;
  HKey nextHandle_ = 0x1000;
  GdiHandle nextGdi_ = 0x2000;
  MixerHandle nextMixer_ = 0x5000;
  std::map<MixerHandle, std::uint32_t> mixerOfHandle_;
  PictureHandle nextPicture_ = 0x5000;
  static std::string ParentOf(const std::string& path);
};

// The registry functions' short names in the recorder.
std::string HiveName(HKey hive);

}  // namespace tamrix::fake
