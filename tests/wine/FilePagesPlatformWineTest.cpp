// The platform operations of the tools window's file pages against Wine's real files, folders
// and picture services.
#include <windows.h>

#include <gtest/gtest.h>

#include <fstream>
#include <functional>
#include <sstream>

#include "platform/Runtime.h"
#include "platform/win32/Win32Platform.h"
#include "win32/OneColourBitmap.h"

namespace tamrix::win32 {
namespace {

std::string Temp() {
  char buf[MAX_PATH] = {};
  GetTempPathA(MAX_PATH, buf);
  std::string dir = std::string(buf) + "tamrix-filepages";
  CreateDirectoryA(dir.c_str(), nullptr);
  return dir;
}

std::string ReadAll(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  std::stringstream s;
  s << in.rdbuf();
  return s.str();
}

void WriteAll(const std::string& path, const std::string& bytes) {
  std::ofstream(path, std::ios::binary) << bytes;
}

int FaultOf(const std::function<void()>& f) {
  try {
    f();
  } catch (const RuntimeError& e) {
    return e.Number();
  }
  return 0;
}

TEST(FilePagesPlatformOnWine, ABitmapLoadedAndSavedComesBackAsABitmapOfItsSizeAndColour) {
  Win32Platform p;
  const std::string in = Temp() + "\\in.bmp", out = Temp() + "\\out.bmp";
  testfiles::WriteOneColourBitmap(in, 30, 12, 10, 120, 240);
  DeleteFileA(out.c_str());
  auto picture = p.LoadPicture(in);
  ASSERT_NE(picture, 0u);
  p.SavePicture(picture, out);
  p.ReleasePicture(picture);
  const std::string bytes = ReadAll(out);
  ASSERT_GE(bytes.size(), 54u);
  EXPECT_EQ(bytes.substr(0, 2), "BM");
  auto bmp = static_cast<HBITMAP>(LoadImageA(nullptr, out.c_str(), IMAGE_BITMAP, 0, 0, LR_LOADFROMFILE));
  ASSERT_NE(bmp, nullptr);
  BITMAP info{};
  GetObjectA(bmp, sizeof info, &info);
  EXPECT_EQ(info.bmWidth, 30);
  EXPECT_EQ(info.bmHeight, 12);
  HDC dc = CreateCompatibleDC(nullptr);
  HGDIOBJ old = SelectObject(dc, bmp);
  EXPECT_EQ(GetPixel(dc, 15, 6), RGB(10, 120, 240));
  SelectObject(dc, old);
  DeleteDC(dc);
  DeleteObject(bmp);
}

TEST(FilePagesPlatformOnWine, TheEmptyNameIsTheEmptyPictureWhoseSaveIsFault380AndWritesNothing) {
  Win32Platform p;
  const std::string out = Temp() + "\\empty.bmp";
  DeleteFileA(out.c_str());
  EXPECT_EQ(p.LoadPicture(""), 0u);
  EXPECT_EQ(FaultOf([&] { p.SavePicture(0, out); }), 380);
  EXPECT_EQ(GetFileAttributesA(out.c_str()), INVALID_FILE_ATTRIBUTES);
}

TEST(FilePagesPlatformOnWine, AFileThatIsNoPictureIsFault481AndAMissingOneFault53) {
  Win32Platform p;
  const std::string text = Temp() + "\\notes.txt";
  WriteAll(text, "pas une image");
  EXPECT_EQ(FaultOf([&] { p.LoadPicture(text); }), 481);
  EXPECT_EQ(FaultOf([&] { p.LoadPicture(Temp() + "\\absent.jpg"); }), 53);
}

TEST(FilePagesPlatformOnWine, SavingIntoAMissingFolderIsFault76) {
  Win32Platform p;
  const std::string in = Temp() + "\\in2.bmp";
  testfiles::WriteOneColourBitmap(in, 4, 4, 0, 0, 0);
  auto picture = p.LoadPicture(in);
  EXPECT_EQ(FaultOf([&] { p.SavePicture(picture, Temp() + "\\no such folder\\oemlogo.bmp"); }), 76);
  p.ReleasePicture(picture);
}

TEST(FilePagesPlatformOnWine, TextLinesGoInTheAnsiCodePageEachEndedByCrLfReplacingTheFile) {
  Win32Platform p;
  const std::string file = Temp() + "\\lines.ini";
  WriteAll(file, "old content that is longer than the new one\r\n");
  p.WriteTextLines(file, {"[.ShellClassInfo]", "IconFile=\"c:\\été\\x.ico\"", "IconIndex=0"});
  EXPECT_EQ(ReadAll(file), "[.ShellClassInfo]\r\nIconFile=\"c:\\\xE9t\xE9\\x.ico\"\r\nIconIndex=0\r\n");
  EXPECT_EQ(FaultOf([&] { p.WriteTextLines(Temp() + "\\no such folder\\desktop.ini", {"x"}); }), 76);
}

TEST(FilePagesPlatformOnWine, AForcedDeleteTakesAHiddenSystemReadOnlyFileAndSaysWhenThereIsNone) {
  Win32Platform p;
  const std::string file = Temp() + "\\desktop.ini";
  SetFileAttributesA(file.c_str(), FILE_ATTRIBUTE_NORMAL);
  WriteAll(file, "x");
  ASSERT_TRUE(SetFileAttributesA(file.c_str(), FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM | FILE_ATTRIBUTE_READONLY));
  EXPECT_TRUE(p.FileExists(file));
  EXPECT_TRUE(p.DeleteFileForce(file));
  EXPECT_EQ(GetFileAttributesA(file.c_str()), INVALID_FILE_ATTRIBUTES);
  EXPECT_FALSE(p.FileExists(file));
  EXPECT_FALSE(p.DeleteFileForce(file));
}

TEST(FilePagesPlatformOnWine, FilesAndFoldersAreToldApart) {
  Win32Platform p;
  const std::string file = Temp() + "\\a file";
  WriteAll(file, "x");
  EXPECT_TRUE(p.FolderExists(Temp()));
  EXPECT_FALSE(p.FileExists(Temp()));
  EXPECT_TRUE(p.FileExists(file));
  EXPECT_FALSE(p.FolderExists(file));
  EXPECT_FALSE(p.FolderExists(""));
  EXPECT_TRUE(p.FolderExists("C:\\"));
}

TEST(FilePagesPlatformOnWine, TheFoldersOfAFolderComeSortedWithoutFiles) {
  Win32Platform p;
  const std::string dir = Temp() + "\\list";
  CreateDirectoryA(dir.c_str(), nullptr);
  for (const char* name : {"\\zeta", "\\Alpha", "\\beta"}) CreateDirectoryA((dir + name).c_str(), nullptr);
  WriteAll(dir + "\\file.txt", "x");
  EXPECT_EQ(p.ListFolders(dir), (std::vector<std::string>{"Alpha", "beta", "zeta"}));
  EXPECT_EQ(p.ListFolders(dir + "\\"), (std::vector<std::string>{"Alpha", "beta", "zeta"}));
}

TEST(FilePagesPlatformOnWine, TheProgramsNameAndTheDrivesAreThePlatforms) {
  Win32Platform p;
  char path[MAX_PATH] = {};
  GetModuleFileNameA(nullptr, path, MAX_PATH);
  std::string name = path;
  name = name.substr(name.find_last_of('\\') + 1);
  EXPECT_EQ(p.ExeName() + ".exe", name);
  EXPECT_NE(p.LogicalDriveLetters().find('C'), std::string::npos);
}

}  // namespace
}  // namespace tamrix::win32
