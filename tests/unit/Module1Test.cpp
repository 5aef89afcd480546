// The shared system helpers: the memory snapshot in megabytes, the OS family word and the folder
// browser, against the fake machine.
#include <gtest/gtest.h>

#include "fake/FakePlatform.h"
#include "platform/Module1.h"

namespace tamrix {
namespace {

using Calls = std::vector<std::string>;

constexpr std::uint32_t MB = 1024 * 1024;

struct Snapshot {
  std::int32_t load = -7, totalPhys = -7, availPhys = -7, totalPage = -7, availPage = -7, totalVirtual = -7,
               availVirtual = -7;
};

Snapshot Read(fake::FakePlatform& p) {
  Snapshot s;
  Module1::ReadMemoryStatus(p, s.load, s.totalPhys, s.availPhys, s.totalPage, s.availPage, s.totalVirtual,
                            s.availVirtual);
  return s;
}

TEST(ReadMemoryStatus, MakesOnePlatformCallWithTheLengthThirtyTwo) {
  fake::FakePlatform p;
  Read(p);
  EXPECT_EQ(p.calls, (Calls{"GlobalMemoryStatus(32)"}));
}

TEST(ReadMemoryStatus, FillsTheSevenNumbersInTheRecordsOrder) {
  fake::FakePlatform p;
  p.memory = {32, 63, 256 * MB, 100 * MB, 1024 * MB, 700 * MB, 2047 * MB, 1500 * MB};
  Snapshot s = Read(p);
  EXPECT_EQ(s.load, 63);  // the load stands as the platform gives it, a percentage
  EXPECT_EQ(s.totalPhys, 256);
  EXPECT_EQ(s.availPhys, 100);
  EXPECT_EQ(s.totalPage, 1024);
  EXPECT_EQ(s.availPage, 700);
  EXPECT_EQ(s.totalVirtual, 2047);
  EXPECT_EQ(s.availVirtual, 1500);
}

TEST(ReadMemoryStatus, HalfMegabytesGoToTheEvenNeighbour) {
  fake::FakePlatform p;
  p.memory = {32, 0, 1023 * MB + MB / 2, 511 * MB + MB / 2, 512 * MB + MB / 2, 513 * MB + MB / 2, 0, MB / 2};
  Snapshot s = Read(p);
  EXPECT_EQ(s.totalPhys, 1024);  // 1023.5
  EXPECT_EQ(s.availPhys, 512);   // 511.5
  EXPECT_EQ(s.totalPage, 512);   // 512.5
  EXPECT_EQ(s.availPage, 514);   // 513.5
  EXPECT_EQ(s.totalVirtual, 0);
  EXPECT_EQ(s.availVirtual, 0);  // 0.5
}

TEST(ReadMemoryStatus, AnythingOffTheHalfRoundsToTheNearest) {
  fake::FakePlatform p;
  p.memory = {32, 0, 511 * MB + MB / 2 + 1, 511 * MB + MB / 2 - 1, 0, 0, 0, 0};
  Snapshot s = Read(p);
  EXPECT_EQ(s.totalPhys, 512);
  EXPECT_EQ(s.availPhys, 511);
}

TEST(ReadMemoryStatus, ThreeGigabytesOfMemoryReadAsANegativeCount) {
  fake::FakePlatform p;
  p.memory = {32, 10, 3072u * MB, 2560u * MB, 0xFFFFFFFFu, 0x80000000u, 0x7FFFFFFFu, 2048u * MB};
  Snapshot s = Read(p);
  EXPECT_EQ(s.totalPhys, -1024);  // 3 GB as a signed 32-bit count is -1 GB
  EXPECT_EQ(s.availPhys, -1536);
  EXPECT_EQ(s.totalPage, 0);      // the overflow value, all ones, is -1 byte
  EXPECT_EQ(s.availPage, -2048);
  EXPECT_EQ(s.totalVirtual, 2048);
  EXPECT_EQ(s.availVirtual, -2048);
}

TEST(GetOsFamily, AsksWithTheRecordSizeOf148) {
  fake::FakePlatform p;
  Module1::GetOsFamily(p);
  EXPECT_EQ(p.calls, (Calls{"GetVersionExA(148)"}));
}

TEST(GetOsFamily, GivesTheWordOfEachPlatformId) {
  fake::FakePlatform p;
  p.version.platformId = 0;
  EXPECT_EQ(Module1::GetOsFamily(p), "Windows3.1");
  p.version.platformId = 1;
  EXPECT_EQ(Module1::GetOsFamily(p), "Windows98");
  p.version.platformId = 2;
  EXPECT_EQ(Module1::GetOsFamily(p), "WindowsNT");
}

TEST(GetOsFamily, OtherPlatformIdGivesTheEmptyText) {
  fake::FakePlatform p;
  p.version.platformId = 3;
  EXPECT_EQ(Module1::GetOsFamily(p), "");
}

TEST(GetOsFamily, FailingCallGivesTheEmptyText) {
  fake::FakePlatform p;
  p.version = {false, 0, 0, 0, 2, ""};
  EXPECT_EQ(Module1::GetOsFamily(p), "");
}

TEST(GetOsFamily, SaysTheFamilyNotTheVersion) {
  fake::FakePlatform p;
  p.version = {true, 4, 0, 1381, 2, "Service Pack 6"};  // NT 4.0
  EXPECT_EQ(Module1::GetOsFamily(p), "WindowsNT");
  p.version = {true, 5, 2, 3790, 2, ""};  // 2003
  EXPECT_EQ(Module1::GetOsFamily(p), "WindowsNT");
  p.version = {true, 4, 90, 3000, 1, ""};  // Me
  EXPECT_EQ(Module1::GetOsFamily(p), "Windows98");
}

TEST(BrowseForFolderPath, ChosenFolderComesBackAndItsItemListIsFreed) {
  fake::FakePlatform p;
  p.browseAnswers.push_back("C:\\Program Files\\Jeux");
  EXPECT_EQ(Module1::BrowseForFolderPath(p, 0x1234, "Choisissez un dossier"), "C:\\Program Files\\Jeux");
  EXPECT_EQ(p.calls, (Calls{"SHBrowseForFolderA(0x1234,Choisissez un dossier,0)", "SHGetPathFromIDListA(0x3000)",
                            "CoTaskMemFree(0x3000)"}));
}

TEST(BrowseForFolderPath, OffersTheWholeShellTreeWithFlagsZero) {
  fake::FakePlatform p;
  p.browseAnswers.push_back("C:\\");
  Module1::BrowseForFolderPath(p, 7, "t");
  ASSERT_FALSE(p.calls.empty());
  EXPECT_EQ(p.calls[0], "SHBrowseForFolderA(0x7,t,0)");
}

TEST(BrowseForFolderPath, CancelGivesTheEmptyTextAndFreesNothing) {
  fake::FakePlatform p;
  p.browseAnswers.push_back(std::nullopt);
  EXPECT_EQ(Module1::BrowseForFolderPath(p, 0x1234, "t"), "");
  EXPECT_EQ(p.calls, (Calls{"SHBrowseForFolderA(0x1234,t,0)"}));
  EXPECT_TRUE(p.freedItemLists.empty());
}

TEST(BrowseForFolderPath, VirtualItemSuchAsTheControlPanelGivesTheEmptyTextLikeCancel) {
  fake::FakePlatform p;
  p.browseAnswers.push_back("");  // an item with no path on disk
  EXPECT_EQ(Module1::BrowseForFolderPath(p, 0x1234, "t"), "");
  EXPECT_EQ(p.calls, (Calls{"SHBrowseForFolderA(0x1234,t,0)", "SHGetPathFromIDListA(0x3000)",
                            "CoTaskMemFree(0x3000)"}));
  EXPECT_EQ(p.freedItemLists, (std::vector<std::uint64_t>{0x3000}));
}

TEST(BrowseForFolderPath, PathOfExactly259CharactersComesBackWhole) {
  fake::FakePlatform p;
  std::string path = "C:\\" + std::string(256, 'd');
  ASSERT_EQ(path.size(), 259u);
  p.browseAnswers.push_back(path);
  EXPECT_EQ(Module1::BrowseForFolderPath(p, 0, "t"), path);
  EXPECT_EQ(p.freedItemLists.size(), 1u);
}

TEST(BrowseForFolderPath, PathThatDoesNotFitTheBufferOf260GivesTheEmptyText) {
  fake::FakePlatform p;
  p.browseAnswers.push_back("C:\\" + std::string(257, 'd'));  // 260 characters and no room for the NUL
  EXPECT_EQ(Module1::BrowseForFolderPath(p, 0, "t"), "");
  EXPECT_EQ(p.freedItemLists.size(), 1u);
}

TEST(BrowseForFolderPath, ThirtyTwoBitOwnerWidensWithItsSign) {
  fake::FakePlatform p;
  p.browseAnswers.push_back(std::nullopt);
  Module1::BrowseForFolderPath(p, -2, "t");
  EXPECT_EQ(p.calls[0], "SHBrowseForFolderA(0xFFFFFFFFFFFFFFFE,t,0)");
}

}  // namespace
}  // namespace tamrix
