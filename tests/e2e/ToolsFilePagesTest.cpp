// The two file pages of the tools window on the real tamrix.exe under Wine: the OEM page writes
// a bitmap and oeminfo.ini into Wine's own Windows folder, read back here through Wine's GDI and
// profile functions; the folder page writes desktop.ini into a folder chosen through its real
// folder list, and Wine's own attrib marks it, as seen from outside.
#include <gtest/gtest.h>

#include <cctype>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <sstream>
#include <vector>

#include "e2e/Driver.h"
#include "shell/win32/ControlMessages.h"
#include "win32/OneColourBitmap.h"

namespace tamrix::e2e {
namespace {

struct DialogSearch {
  DWORD pid;
  HWND found;
};

// The common file dialog of the process: a visible dialog with a file name box.
BOOL CALLBACK FindFileDialog(HWND h, LPARAM l) {
  auto* s = reinterpret_cast<DialogSearch*>(l);
  DWORD owner = 0;
  GetWindowThreadProcessId(h, &owner);
  char cls[64] = {};
  GetClassNameA(h, cls, sizeof cls);
  if (owner == s->pid && std::string(cls) == "#32770" && IsWindowVisible(h) &&
      (GetDlgItem(h, 0x47c) || GetDlgItem(h, 0x480))) {
    s->found = h;
    return FALSE;
  }
  return TRUE;
}

std::string ReadAll(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  std::stringstream s;
  s << in.rdbuf();
  return s.str();
}

DWORD Attributes(const std::string& path) { return GetFileAttributesA(path.c_str()); }

// The Windows folder as Wine gives it to any program, with the system folder below it that a
// Windows installation has (a fresh Wine prefix lacks it, and the save would fail there).
std::string WindowsFolder() {
  char buf[MAX_PATH] = {};
  GetWindowsDirectoryA(buf, MAX_PATH);
  CreateDirectoryA((std::string(buf) + "\\system").c_str(), nullptr);
  return buf;
}

// A 16x16 icon of one colour, in the icon file layout: directory, entry, bitmap header, 32-bit
// pixels, and an AND mask of nothing transparent.
void WriteIcon(const std::string& path, BYTE r, BYTE g, BYTE b) {
  std::string pixels;
  for (int i = 0; i < 16 * 16; ++i) pixels += std::string{static_cast<char>(b), static_cast<char>(g), static_cast<char>(r), '\xFF'};
  const std::string mask(16 * 4, '\0');
  BITMAPINFOHEADER ih{};
  ih.biSize = sizeof ih;
  ih.biWidth = 16;
  ih.biHeight = 32;
  ih.biPlanes = 1;
  ih.biBitCount = 32;
  const std::string image = std::string(reinterpret_cast<const char*>(&ih), sizeof ih) + pixels + mask;
  auto u16 = [](int v) { return std::string{static_cast<char>(v & 0xFF), static_cast<char>(v >> 8)}; };
  auto u32 = [&](DWORD v) { return u16(static_cast<int>(v & 0xFFFF)) + u16(static_cast<int>(v >> 16)); };
  std::string head = u16(0) + u16(1) + u16(1);
  std::string entry = std::string{16, 16, 0, 0} + u16(1) + u16(32) + u32(static_cast<DWORD>(image.size())) + u32(6 + 16);
  std::ofstream(path, std::ios::binary) << head + entry + image;
}

// What a bitmap file holds, read by Wine's own GDI.
struct BitmapSeen {
  bool ok = false;
  int width = 0, height = 0;
  COLORREF centre = 0, corner = 0, ring = 0;
};

BitmapSeen ReadBitmap(const std::string& path) {
  BitmapSeen seen;
  const std::string bytes = ReadAll(path);
  if (bytes.size() < 54 || bytes.compare(0, 2, "BM") != 0) return seen;
  DWORD declared = 0;
  std::memcpy(&declared, bytes.data() + 2, 4);
  if (declared != bytes.size()) return seen;
  auto bmp = static_cast<HBITMAP>(LoadImageA(nullptr, path.c_str(), IMAGE_BITMAP, 0, 0, LR_LOADFROMFILE));
  if (!bmp) return seen;
  BITMAP info{};
  GetObjectA(bmp, sizeof info, &info);
  seen.ok = true;
  seen.width = info.bmWidth;
  seen.height = info.bmHeight;
  HDC dc = CreateCompatibleDC(nullptr);
  HGDIOBJ old = SelectObject(dc, bmp);
  seen.centre = GetPixel(dc, info.bmWidth / 2, info.bmHeight / 2);
  seen.corner = GetPixel(dc, 2, 2);
  seen.ring = GetPixel(dc, 60, 16);  // on the logo's blue ring
  SelectObject(dc, old);
  DeleteDC(dc);
  DeleteObject(bmp);
  return seen;
}

// The sections of a profile file and the keys of each, as Wine's profile functions read them.
std::vector<std::string> ProfileLayout(const std::string& path) {
  std::wstring wpath = Wide(path);
  std::vector<wchar_t> names(8192);
  DWORD n = GetPrivateProfileSectionNamesW(names.data(), static_cast<DWORD>(names.size()), wpath.c_str());
  std::vector<std::string> lines;
  for (const wchar_t* s = names.data(); s < names.data() + n && *s; s += wcslen(s) + 1) {
    lines.push_back("[" + Utf8(s) + "]");
    std::vector<wchar_t> keys(32768);
    DWORD k = GetPrivateProfileSectionW(s, keys.data(), static_cast<DWORD>(keys.size()), wpath.c_str());
    for (const wchar_t* e = keys.data(); e < keys.data() + k && *e; e += wcslen(e) + 1) lines.push_back(Utf8(e));
  }
  return lines;
}

class ToolsFilePagesOnWine : public ::testing::Test {
 protected:
  App app;
  HWND tools = nullptr;

  void SetUp() override { ASSERT_TRUE(app.Start()); }

  void Open(const char* button) {
    app.Click("win");
    app.Click(button);
    ASSERT_TRUE(WaitUntil([&] {
      tools = FormOf(app.Pid(), "Form2");
      return tools && IsWindowVisible(tools) && !IsWindowVisible(app.Main());
    })) << "the tools window didn't come up for " << button;
  }
  HWND In(const char* name) { return WaitChild(tools, name); }
  void Settle() { SendMessageTimeoutA(tools, WM_NULL, 0, 0, SMTO_ABORTIFHUNG, 5000, nullptr); }
  void Shot(const std::string& name) {
    Settle();
    Sleep(300);
    Screenshot(name);
  }
  void Click(const char* name) { PostMessageA(In(name), BM_CLICK, 0, 0); }
  std::string Text(const char* name) { return TextOf(In(name)); }
  // The message box that the click brings, answered with OK.
  MessageBoxSeen Confirm() {
    auto box = app.WaitMessageBox();
    EXPECT_TRUE(box.has_value()) << "no message box";
    if (!box) return {};
    App::Answer(*box, IDOK);
    return *box;
  }
  HWND FileDialog() {
    HWND found = nullptr;
    WaitUntil([&] {
      DialogSearch s{app.Pid(), nullptr};
      EnumWindows(FindFileDialog, reinterpret_cast<LPARAM>(&s));
      found = s.found;
      return found != nullptr;
    });
    return found;
  }
  // The user types a name into the file dialog and says Open.
  void ChooseFile(HWND dialog, const std::string& path) {
    for (int id : {0x47c, 0x480})
      if (HWND box = GetDlgItem(dialog, id)) SendMessageA(box, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(path.c_str()));
    PostMessageA(dialog, WM_COMMAND, IDOK, 0);
  }
  // A selection in the drive list, as the user's choice makes it.
  void ChooseDrive(const char* drive) {
    HWND list = In("Drive1");
    auto index = SendMessageA(list, CB_FINDSTRING, static_cast<WPARAM>(-1), reinterpret_cast<LPARAM>(drive));
    ASSERT_GE(index, 0) << drive;
    SendMessageA(list, CB_SETCURSEL, static_cast<WPARAM>(index), 0);
    SendMessageA(GetParent(list), WM_COMMAND, MAKEWPARAM(GetDlgCtrlID(list), CBN_SELCHANGE), reinterpret_cast<LPARAM>(list));
    Settle();
  }
  // A double click on the folder list's entry of that name, with the mouse.
  void OpenFolder(const std::string& name) {
    HWND list = In("Dir1");
    LRESULT count = SendMessageA(list, LB_GETCOUNT, 0, 0);
    int index = -1;
    std::string seen;
    for (LRESULT i = 0; i < count; ++i) {
      wchar_t buf[MAX_PATH] = {};
      SendMessageW(list, LB_GETTEXT, static_cast<WPARAM>(i), reinterpret_cast<LPARAM>(buf));
      std::string text = Utf8(buf);
      seen += "[" + text + "]";
      std::size_t first = text.find_first_not_of(' ');
      if (first != std::string::npos && text.substr(first) == name) index = static_cast<int>(i);
    }
    ASSERT_GE(index, 0) << name << " is not in the folder list: " << seen;
    SendMessageA(list, LB_SETTOPINDEX, static_cast<WPARAM>(index), 0);
    RECT r{};
    SendMessageA(list, LB_GETITEMRECT, static_cast<WPARAM>(index), reinterpret_cast<LPARAM>(&r));
    LPARAM at = MAKELPARAM(r.left + 10, (r.top + r.bottom) / 2);
    SendMessageA(list, WM_LBUTTONDOWN, MK_LBUTTON, at);
    SendMessageA(list, WM_LBUTTONUP, 0, at);
    SendMessageA(list, WM_LBUTTONDBLCLK, MK_LBUTTON, at);
    SendMessageA(list, WM_LBUTTONUP, 0, at);
    Settle();
  }
};

TEST_F(ToolsFilePagesOnWine, ApplyWritesTheLogoAsABitmapAndTheSevenKeysKeepingAnOlderFilesOthers) {
  const std::string info = WindowsFolder() + "\\system\\oeminfo.ini";
  const std::string logo = WindowsFolder() + "\\system\\oemlogo.bmp";
  DeleteFileA(logo.c_str());
  {
    std::ofstream old(info, std::ios::binary);
    old << "[General]\r\nManufacturer=Ancien\r\nSupportURL=http://ancien.example\r\n[Autre]\r\nGarde=1\r\n";
  }
  Open("TamrixCmd13");
  EXPECT_EQ(Text("Text1"), "Tamrix Corporation");
  EXPECT_EQ(Text("Text3"), "Site Web : http://www.tamrix.example");
  Shot("tools-oem-page");
  Click("TamrixCmd4");
  MessageBoxSeen box = Confirm();
  EXPECT_EQ(box.title, " Tamrix OEM Maker");
  EXPECT_EQ(box.text, " Le Logo est créé avec succés ");
  EXPECT_TRUE(WaitUntil([&] { return !IsWindow(tools) || !IsWindowVisible(tools); })) << "the window stays after Apply";
  EXPECT_TRUE(WaitUntil([&] { return IsWindowVisible(app.Main()); }));

  BitmapSeen seen = ReadBitmap(logo);
  ASSERT_TRUE(seen.ok) << "oemlogo.bmp is no valid bitmap";
  EXPECT_EQ(seen.width, 120);
  EXPECT_EQ(seen.height, 90);
  // The logo: a blue ring on a light, warm background.
  EXPECT_GT(GetBValue(seen.ring), GetRValue(seen.ring) + 60) << std::hex << seen.ring;
  EXPECT_GT(GetRValue(seen.corner), 220) << std::hex << seen.corner;
  EXPECT_GT(GetGValue(seen.corner), 220) << std::hex << seen.corner;

  EXPECT_EQ(ProfileLayout(info), (std::vector<std::string>{
                                     "[General]",
                                     "Manufacturer=Tamrix Corporation",
                                     "SupportURL=http://ancien.example",
                                     "Model=Tamrix Pc",
                                     "[Autre]",
                                     "Garde=1",
                                     "[Support Information]",
                                     "Line1=Site Web : http://www.tamrix.example",
                                     "Line2=",
                                     "Line3=",
                                     "Line4=OEM créé avec Tamrix Utility 3.0 Pro",
                                     "Line5=Téléchargez gratuitement http://www.tamrix.example",
                                 }));

  // "&Supprimer" takes the logo away, and says so.
  Open("TamrixCmd13");
  Click("TamrixCmd3");
  box = Confirm();
  EXPECT_EQ(box.title, " Tamrix OEM Maker");
  EXPECT_EQ(box.text, " Le Logo est supprimé avec succés ");
  EXPECT_EQ(Attributes(logo), INVALID_FILE_ATTRIBUTES);
  EXPECT_TRUE(std::ifstream(info).good());
  // And a second time, with no logo on disk, the same message.
  Click("TamrixCmd3");
  box = Confirm();
  EXPECT_EQ(box.text, " Le Logo est supprimé avec succés ");
}

TEST_F(ToolsFilePagesOnWine, TheOpenDialogTakesAChosenPictureAndItsCancelEmptiesTheLogoSoApplyEndsTheProgram) {
  const std::string info = WindowsFolder() + "\\system\\oeminfo.ini";
  const std::string logo = WindowsFolder() + "\\system\\oemlogo.bmp";
  const std::string picture = WindowsFolder() + "\\temp\\tamrix-e2e-logo.bmp";
  CreateDirectoryA((WindowsFolder() + "\\temp").c_str(), nullptr);
  testfiles::WriteOneColourBitmap(picture, 40, 20, 200, 30, 30);
  DeleteFileA(logo.c_str());

  Open("TamrixCmd13");
  Click("TamrixCmd2");
  HWND dialog = FileDialog();
  ASSERT_TRUE(dialog) << "no open dialog";
  Shot("tools-oem-open-dialog");
  ChooseFile(dialog, picture);
  ASSERT_TRUE(WaitUntil([&] { return !IsWindow(dialog); })) << "the dialog didn't take the file";
  Shot("tools-oem-chosen-logo");
  Click("TamrixCmd4");
  Confirm();
  BitmapSeen seen = ReadBitmap(logo);
  ASSERT_TRUE(seen.ok);
  EXPECT_EQ(seen.width, 40);
  EXPECT_EQ(seen.height, 20);
  EXPECT_EQ(seen.centre, RGB(200, 30, 30));

  // Cancel empties the picture; the save of an empty picture is a fault that ends the program
  // before oeminfo.ini is touched.
  {
    std::ofstream mark(info, std::ios::binary);
    mark << "[General]\r\nManufacturer=Avant\r\n";
  }
  Open("TamrixCmd13");
  Click("TamrixCmd2");
  dialog = FileDialog();
  ASSERT_TRUE(dialog);
  PostMessageA(dialog, WM_COMMAND, IDCANCEL, 0);
  ASSERT_TRUE(WaitUntil([&] { return !IsWindow(dialog); }));
  Settle();
  Click("TamrixCmd4");
  auto fault = app.WaitMessageBox();
  ASSERT_TRUE(fault.has_value()) << "no run-time error box";
  EXPECT_EQ(fault->title, "Tamrix Utility");
  EXPECT_EQ(fault->text.rfind("Run-time error '380':", 0), 0u) << fault->text;
  App::Answer(*fault, IDOK);
  EXPECT_TRUE(app.WaitExit()) << "the program goes on after the fault";
  EXPECT_EQ(ReadAll(info), "[General]\r\nManufacturer=Avant\r\n");
  DeleteFileA(picture.c_str());
}

TEST_F(ToolsFilePagesOnWine, DesktopIniInAFolderChosenThroughTheFolderListAndWinesAttribMarksThenRestore) {
  const std::string folder = "C:\\tamrix-e2e-perso\\Photos";
  const std::string ini = folder + "\\desktop.ini";
  CreateDirectoryA("C:\\tamrix-e2e-perso", nullptr);
  CreateDirectoryA(folder.c_str(), nullptr);
  SetFileAttributesA(ini.c_str(), FILE_ATTRIBUTE_NORMAL);
  DeleteFileA(ini.c_str());
  SetFileAttributesA(folder.c_str(), FILE_ATTRIBUTE_DIRECTORY);

  Open("TamrixCmd5");
  Shot("tools-folder-page");
  Click("par");
  Settle();
  EXPECT_FALSE(IsWindowEnabled(In("txtPersonnaliser")));
  ChooseDrive("c:");
  OpenFolder("tamrix-e2e-perso");
  OpenFolder("Photos");
  Shot("tools-folder-browse");
  Click("TamrixCd1");
  Settle();
  EXPECT_EQ(Text("txtPersonnaliser"), "c:\\tamrix-e2e-perso\\Photos");
  Click("picIcones(2)");
  Settle();
  Shot("tools-folder-icon-chosen");
  Click("cmdPersonnaliser");
  MessageBoxSeen box = Confirm();
  EXPECT_EQ(box.title, " Tamrix Utility 3.0 Pro ");
  EXPECT_EQ(box.text, "Opération effectuée avec succées!");

  // The program's own file in lower case, as the test runs it.
  std::string exe = App::ExePath();
  for (auto& ch : exe) ch = static_cast<char>(std::tolower(static_cast<unsigned char>(ch)));
  EXPECT_EQ(ReadAll(ini), "[.ShellClassInfo]\r\nIconFile=\"" + exe + "\"\r\nIconIndex=3\r\n");
  // attrib runs in the background: its marks come when they come.
  EXPECT_TRUE(WaitUntil([&] { return (Attributes(ini) & FILE_ATTRIBUTE_HIDDEN) != 0; }, 20000))
      << "desktop.ini isn't hidden: " << std::hex << Attributes(ini);
  EXPECT_TRUE(WaitUntil([&] { return (Attributes(folder) & FILE_ATTRIBUTE_SYSTEM) != 0; }, 20000))
      << "the folder isn't system: " << std::hex << Attributes(folder);

  // A second run with an icon file of the user's, chosen through the real dialog: the hidden
  // desktop.ini of the first run is replaced without a word.
  const std::string icon = "C:\\tamrix-e2e-perso\\maison.ico";
  WriteIcon(icon, 20, 160, 60);
  Click("optFichier");
  Click("cmdChoisirFichier");
  HWND dialog = FileDialog();
  ASSERT_TRUE(dialog) << "no open dialog";
  char title[128] = {};
  GetWindowTextA(dialog, title, sizeof title);
  EXPECT_STREQ(title, "Ouvrir un icone");
  ChooseFile(dialog, icon);
  ASSERT_TRUE(WaitUntil([&] { return !IsWindow(dialog); })) << "the dialog didn't take the icon";
  Settle();
  EXPECT_EQ(Text("txtAfficherFichier"), icon);
  Shot("tools-folder-icon-file");
  Click("cmdPersonnaliser");
  box = Confirm();
  EXPECT_EQ(box.text, "Opération effectuée avec succées!");
  EXPECT_EQ(ReadAll(ini), "[.ShellClassInfo]\r\nIconFile=\"" + icon + "\"\r\nIconIndex=0\r\n");
  EXPECT_TRUE(WaitUntil([&] { return (Attributes(ini) & FILE_ATTRIBUTE_HIDDEN) != 0; }, 20000));

  Click("TamrixCd2");
  box = Confirm();
  EXPECT_EQ(box.text, "Opération effectuée avec succées!");
  EXPECT_EQ(Attributes(ini), INVALID_FILE_ATTRIBUTES);
  EXPECT_TRUE(WaitUntil([&] { return (Attributes(folder) & FILE_ATTRIBUTE_SYSTEM) == 0; }, 20000))
      << "the folder is still system: " << std::hex << Attributes(folder);
  RemoveDirectoryA(folder.c_str());
  DeleteFileA(icon.c_str());
  RemoveDirectoryA("C:\\tamrix-e2e-perso");
}

}  // namespace
}  // namespace tamrix::e2e
