// The three shell toggles of the Windows page: what each tick and untick writes or deletes, the
// DVD notice, and the record in config.dll.
#include <gtest/gtest.h>

#include "contract/ExpectedCatalogues.h"
#include "fake/FakePlatform.h"
#include "optimisers/ShellToggles.h"
#include "platform/Ini.h"
#include "forms/Form1.h"

namespace tamrix {
namespace {

using Calls = std::vector<std::string>;

const char* const kConfig = "C:\\Program Files\\Tamrix\\config.dll";
// The toggles' keys, values and notice, written out by hand in the shared expectations.
using namespace expected::toggles;

struct TogglesFixture : ::testing::Test {
  fake::FakePlatform p;
  Form1 form{p};
  WindowsPage& page = form.windowsPage;
  void SetUp() override {
    ini::ProfilePath.clear();
    form.Load();
    p.CreateKey(hive::LocalMachine, kPaint);
    p.CreateKey(hive::CurrentUser, kPlayer);
    p.CreateKey(hive::CurrentUser, kOpenAs);
    // A visit that leaves the boxes unticked.
    p.File(kConfig) = "[opti]\r\nbmp=0\r\ndvd=0\r\nopen=0\r\n";
    form.win.Click();
    p.files.clear();
    p.ClearCalls();
  }
  void TearDown() override { ini::ProfilePath.clear(); }
  std::string Text(HKey hive, const char* path, const char* name) {
    const auto* v = p.GetValue(hive, path, name);
    return v ? v->data : "<none>";
  }
};

TEST_F(TogglesFixture, TableStandsAsTheBoxesAndKeysSayWithTheirCaptions) {
  ASSERT_EQ(ShellToggles::kToggles.size(), 3u);
  const char* captions[3] = {"Visualiser *.bmp", "Lecture de DVD", "Activer Ouvrir avec .."};
  for (int i = 0; i < 3; ++i) {
    SCOPED_TRACE(kToggles[i].box);
    const auto& row = ShellToggles::kToggles[i];
    EXPECT_EQ(row.box, kToggles[i].box);
    EXPECT_EQ(row.configKey, kToggles[i].configKey);
    EXPECT_EQ(row.hive, kToggles[i].hive);
    EXPECT_EQ(row.keyPath, kToggles[i].path);
    EXPECT_EQ(row.valueName, kToggles[i].name);
    EXPECT_EQ(row.tickedData, kToggles[i].tickedData);
    EXPECT_EQ(row.untick == ShellToggles::Toggle::Untick::DeleteKey, kToggles[i].untickDeletesKey);
    EXPECT_EQ(row.untickTarget, kToggles[i].untickTarget);
    EXPECT_EQ(row.dvdNotice, kToggles[i].dvdNotice);
    TamrixCB& box = page.*WindowsPage::kToggleBoxes[i];
    EXPECT_EQ(box.Name(), kToggles[i].box);
    EXPECT_EQ(box.Caption(), captions[i]);
    EXPECT_EQ(box.Parent(), &page.Frame1);
  }
}

TEST_F(TogglesFixture, BoxesStartUntickedAtDesign) {
  fake::FakePlatform fresh;
  Form1 f(fresh);
  EXPECT_EQ(f.windowsPage.box5.Value() + f.windowsPage.box7.Value() + f.windowsPage.box8.Value(), 0);
}

TEST_F(TogglesFixture, TickingBox5WritesTheValueThenRecordsOneInConfigDll) {
  page.box5.Click();
  EXPECT_EQ(p.calls, (Calls{"RegOpenKeyExA(HKLM,Software\\CLASSES\\Paint.Picture,0,0x3F)",
                            "RegSetValueExA(key,DefaultIcon,1,%1,2)", "RegCloseKey(key)",
                            "WritePrivateProfileStringA(opti,bmp,1," + std::string(kConfig) + ")"}));
  EXPECT_EQ(Text(hive::LocalMachine, kPaint, "DefaultIcon"), "%1");
}

TEST_F(TogglesFixture, TickingBox5LeavesASubkeyDefaultIconAloneAndUntickingDeletesItButNotTheValue) {
  p.SetValue(hive::LocalMachine, kPaintIcon, "", regtype::Sz, "shimgvw.dll,2");
  page.box5.Click();
  EXPECT_TRUE(p.KeyExists(hive::LocalMachine, kPaintIcon));
  EXPECT_EQ(Text(hive::LocalMachine, kPaintIcon, ""), "shimgvw.dll,2");
  EXPECT_EQ(Text(hive::LocalMachine, kPaint, "DefaultIcon"), "%1");
  p.ClearCalls();
  page.box5.Click();
  EXPECT_EQ(p.calls, (Calls{"RegDeleteKeyA(HKLM,Software\\CLASSES\\Paint.Picture\\DefaultIcon)",
                            "WritePrivateProfileStringA(opti,bmp,0," + std::string(kConfig) + ")"}));
  EXPECT_FALSE(p.KeyExists(hive::LocalMachine, kPaintIcon));
  EXPECT_EQ(Text(hive::LocalMachine, kPaint, "DefaultIcon"), "%1") << "the value stays behind";
}

TEST_F(TogglesFixture, UntickingBox5WithoutTheSubkeyDoesNothingToTheRegistry) {
  page.box5.Click();
  page.box5.Click();
  EXPECT_TRUE(p.KeyExists(hive::LocalMachine, kPaint));
  EXPECT_EQ(Text(hive::LocalMachine, kPaint, "DefaultIcon"), "%1");
  EXPECT_EQ(p.File(kConfig), "[opti]\r\nbmp=0\r\n");
}

TEST_F(TogglesFixture, Box7TwiceGivesYesNoYesNoAndTheNoticeTwice) {
  Calls seen;
  for (int i = 0; i < 4; ++i) {
    page.box7.Click();
    seen.push_back(Text(hive::CurrentUser, kPlayer, "EnableDVDUI"));
  }
  EXPECT_EQ(seen, (Calls{"yes", "no", "yes", "no"}));
  ASSERT_EQ(p.boxes.size(), 2u);
  for (const auto& box : p.boxes) {
    EXPECT_EQ(box.title, kDvdTitle);
    EXPECT_EQ(box.text, kDvdText);
    EXPECT_EQ(box.style, mb::Ok | mb::Information);
  }
}

TEST_F(TogglesFixture, DvdNoticeHasNineLinesJoinedByCarriageReturnsAlone) {
  page.box7.Click();
  ASSERT_EQ(p.boxes.size(), 1u);
  const std::string& t = p.boxes[0].text;
  EXPECT_EQ(t.find('\n'), std::string::npos);
  EXPECT_EQ(std::count(t.begin(), t.end(), '\r'), 8);
}

TEST_F(TogglesFixture, DvdNoticeComesLastAfterBothWrites) {
  page.box7.Click();
  EXPECT_EQ(p.calls, (Calls{"RegOpenKeyExA(HKCU,Software\\Microsoft\\MediaPlayer\\Player\\Settings,0,0x3F)",
                            "RegSetValueExA(key,EnableDVDUI,1,yes,3)", "RegCloseKey(key)",
                            "WritePrivateProfileStringA(opti,dvd,1," + std::string(kConfig) + ")",
                            "MessageBoxA( Tamrix Corporation 2004)"}));
}

TEST_F(TogglesFixture, UntickingBox7WritesNoAndShowsNoNotice) {
  page.box7.Click();
  p.ClearCalls();
  p.boxes.clear();
  page.box7.Click();
  EXPECT_EQ(p.calls, (Calls{"RegOpenKeyExA(HKCU,Software\\Microsoft\\MediaPlayer\\Player\\Settings,0,0x3F)",
                            "RegSetValueExA(key,EnableDVDUI,1,no,2)", "RegCloseKey(key)",
                            "WritePrivateProfileStringA(opti,dvd,0," + std::string(kConfig) + ")"}));
  EXPECT_TRUE(p.boxes.empty());
}

TEST_F(TogglesFixture, Box7WithoutThePlayerKeyStillShowsTheNoticeAndRecordsOne) {
  fake::FakePlatform bare;
  Form1 f(bare);
  f.Load();
  bare.File(kConfig) = "[opti]\r\ndvd=0\r\n";
  f.win.Click();
  f.windowsPage.box7.Click();
  EXPECT_FALSE(bare.KeyExists(hive::CurrentUser, kPlayer));
  EXPECT_EQ(bare.boxes.size(), 1u);
  EXPECT_EQ(bare.File(kConfig), "[opti]\r\ndvd=1\r\n");
  EXPECT_EQ(f.windowsPage.box7.Value(), 1);
}

TEST_F(TogglesFixture, TickingBox8WritesTheCommandValueUnderTheCurrentUser) {
  page.box8.Click();
  EXPECT_EQ(p.calls, (Calls{"RegOpenKeyExA(HKCU,*\\shell\\openas,0,0x3F)",
                            "RegSetValueExA(key,command,1,rundll32.exe shell32.dll,OpenAs_RunDLL %1,41)",
                            "RegCloseKey(key)", "WritePrivateProfileStringA(opti,open,1," + std::string(kConfig) + ")"}));
  EXPECT_EQ(Text(hive::CurrentUser, kOpenAs, "command"), "rundll32.exe shell32.dll,OpenAs_RunDLL %1");
  EXPECT_EQ(p.GetValue(hive::LocalMachine, kOpenAs, "command"), nullptr);
}

TEST_F(TogglesFixture, UntickingBox8DeletesAKeyNamedAfterTheValueAndItsDataAndTheValueStays) {
  p.CreateKey(hive::CurrentUser, kOpenAsOdd);
  page.box8.Click();
  p.ClearCalls();
  page.box8.Click();
  EXPECT_EQ(p.calls, (Calls{"RegDeleteKeyA(HKCU," + std::string(kOpenAsOdd) + ")",
                            "WritePrivateProfileStringA(opti,open,0," + std::string(kConfig) + ")"}));
  EXPECT_FALSE(p.KeyExists(hive::CurrentUser, kOpenAsOdd));
  EXPECT_EQ(Text(hive::CurrentUser, kOpenAs, "command"), "rundll32.exe shell32.dll,OpenAs_RunDLL %1");
}

TEST_F(TogglesFixture, Box8WithoutTheOpenAsKeyWritesNothingAndRecordsOne) {
  fake::FakePlatform bare;
  Form1 f(bare);
  f.Load();
  bare.File(kConfig) = "[opti]\r\nopen=0\r\n";
  f.win.Click();
  f.windowsPage.box8.Click();
  EXPECT_FALSE(bare.KeyExists(hive::CurrentUser, kOpenAs));
  EXPECT_FALSE(bare.KeyExists(hive::CurrentUser, "*"));
  EXPECT_EQ(bare.File(kConfig), "[opti]\r\nopen=1\r\n");
  EXPECT_EQ(f.windowsPage.box8.Value(), 1) << "the box keeps the user's tick";
}

TEST_F(TogglesFixture, WinWithBmpZeroDvdOneAndNoOpenKeyTicksBox7AndBox8Only) {
  p.File(kConfig) = "[opti]\r\nbmp=0\r\ndvd=1\r\n";
  form.win.Click();
  EXPECT_EQ(page.box5.Value(), 0);
  EXPECT_EQ(page.box7.Value(), 1);
  EXPECT_EQ(page.box8.Value(), 1);
  EXPECT_TRUE(p.boxes.empty());
}

TEST_F(TogglesFixture, BoxUntickedIntoSystemIniIsTickedAgainAtTheNextVisit) {
  page.box5.Click();  // config.dll: bmp=1
  page.command6.Click();
  page.box5.Click();  // the "0" goes into system.ini
  EXPECT_EQ(page.box5.Value(), 0);
  EXPECT_EQ(p.File(kConfig), "[opti]\r\nbmp=1\r\n");
  form.command3.Click();
  form.win.Click();
  EXPECT_EQ(page.box5.Value(), 1);
}

}  // namespace
}  // namespace tamrix
