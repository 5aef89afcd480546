// The profile module and the settings file config.dll: who points the current profile file
// where, and how the Windows page gets its three ticks back from it.
#include <gtest/gtest.h>

#include "fake/FakePlatform.h"
#include "platform/Ini.h"
#include "forms/Form1.h"

namespace tamrix {
namespace {

using Calls = std::vector<std::string>;

const char* const kConfig = "C:\\Program Files\\Tamrix\\config.dll";
const char* const kSystemIni = "C:\\WINDOWS\\system.ini";

struct SettingsFixture : ::testing::Test {
  fake::FakePlatform p;
  Form1 form{p};
  WindowsPage& page = form.windowsPage;
  void SetUp() override {
    ini::ProfilePath.clear();  // a fresh process
    form.Load();
    p.ClearCalls();
  }
  void TearDown() override { ini::ProfilePath.clear(); }
  void OpenWindowsPage() { form.win.Click(); }
  // A visit that leaves the boxes unticked: config.dll says 0 for all three.
  void OpenWithBoxesUnticked() {
    p.File(kConfig) = "[opti]\r\nbmp=0\r\ndvd=0\r\nopen=0\r\n";
    OpenWindowsPage();
    p.files.erase(fake::FakePlatform::Lower(kConfig));
  }
  int Ticks() { return page.box5.Value() + page.box7.Value() + page.box8.Value(); }
};

// --- the module ---------------------------------------------------------------------------

TEST_F(SettingsFixture, ProfilePathStartsEmpty) { EXPECT_EQ(ini::ProfilePath, ""); }

TEST_F(SettingsFixture, ReadAsksForTheKeyWithAnEmptyDefaultAndA255CharacterBuffer) {
  ini::ProfilePath = "C:\\x.ini";
  EXPECT_EQ(ini::ReadProfileValue(p, "opti", "bmp"), "");
  EXPECT_EQ(p.calls, (Calls{"GetPrivateProfileStringA(opti,bmp,255,C:\\x.ini)"}));
}

TEST_F(SettingsFixture, WriteGoesToTheFileNamedAtThatMomentAndGivesBackNothing) {
  ini::ProfilePath = "C:\\a.ini";
  EXPECT_EQ(ini::WriteProfileValue(p, "opti", "bmp", "1"), "");
  ini::ProfilePath = "C:\\b.ini";
  EXPECT_EQ(ini::WriteProfileValue(p, "opti", "bmp", "0"), "");
  EXPECT_EQ(p.File("C:\\a.ini"), "[opti]\r\nbmp=1\r\n");
  EXPECT_EQ(p.File("C:\\b.ini"), "[opti]\r\nbmp=0\r\n");
}

TEST_F(SettingsFixture, WriteThatCannotReachTheFileIsDroppedWithoutAWord) {
  p.readOnlyFiles.insert(fake::FakePlatform::Lower(kConfig));
  ini::ProfilePath = kConfig;
  EXPECT_EQ(ini::WriteProfileValue(p, "opti", "bmp", "1"), "");
  EXPECT_FALSE(p.HasFile(kConfig));
  EXPECT_TRUE(p.boxes.empty());
}

TEST_F(SettingsFixture, ValueOfMoreThan254CharactersReadsBackCutTo254) {
  ini::ProfilePath = kConfig;
  p.File(kConfig) = "[opti]\r\nbmp=" + std::string(300, '7') + "\r\n";
  EXPECT_EQ(ini::ReadProfileValue(p, "opti", "bmp"), std::string(254, '7'));
}

// A platform that fills the caller's buffer in place, as the real function does with its
// array of characters: the value, a NUL, and the rest of the buffer as it was.
struct InPlaceProfile : fake::FakePlatform {
  std::uint32_t GetPrivateProfileStringA(const std::string& section, const std::string& key,
                                         const std::string& def, std::string* buffer, std::uint32_t size,
                                         const std::string& path) override {
    std::string value;
    std::uint32_t n = fake::FakePlatform::GetPrivateProfileStringA(section, key, def, &value, size, path);
    seenSize = buffer->size();
    seenNuls = buffer->find_first_not_of('\0') == std::string::npos;
    buffer->replace(0, value.size(), value);
    return n;
  }
  std::size_t seenSize = 0;
  bool seenNuls = false;
};

TEST_F(SettingsFixture, ReadNeverGivesBackTheNulsOfItsBuffer) {
  InPlaceProfile q;
  ini::ProfilePath = kConfig;
  q.File(kConfig) = "[opti]\r\nbmp=1\r\ndvd=Règlage\r\n";
  EXPECT_EQ(ini::ReadProfileValue(q, "opti", "bmp"), "1");
  EXPECT_EQ(q.seenSize, 255u);
  EXPECT_TRUE(q.seenNuls) << "the buffer is 255 NULs";
  // The count is in characters, so an accented value keeps all its letters and no NUL.
  EXPECT_EQ(ini::ReadProfileValue(q, "opti", "dvd"), "Règlage");
  EXPECT_EQ(ini::ReadProfileValue(q, "opti", "open"), "");
}

// --- who points ProfilePath where ----------------------------------------------------------

TEST_F(SettingsFixture, WinPointsTheProfileAtConfigDllBesideTheExecutable) {
  OpenWindowsPage();
  EXPECT_EQ(ini::ProfilePath, kConfig);
}

TEST_F(SettingsFixture, InTheRootOfADriveTheSeparatorIsDoubled) {
  p.appPath = "D:\\";
  OpenWindowsPage();
  EXPECT_EQ(ini::ProfilePath, "D:\\\\config.dll");
}

TEST_F(SettingsFixture, WinReadsBmpDvdOpenInThisOrderFromSectionOpti) {
  OpenWindowsPage();
  Calls reads;
  for (const auto& c : p.calls)
    if (c.rfind("GetPrivateProfileStringA", 0) == 0) reads.push_back(c);
  EXPECT_EQ(reads, (Calls{"GetPrivateProfileStringA(opti,bmp,255," + std::string(kConfig) + ")",
                          "GetPrivateProfileStringA(opti,dvd,255," + std::string(kConfig) + ")",
                          "GetPrivateProfileStringA(opti,open,255," + std::string(kConfig) + ")"}));
}

TEST_F(SettingsFixture, ConfigFileIsReadOnEveryClickOnWinAndNeverAtStartUp) {
  fake::FakePlatform fresh;
  Form1 f(fresh);
  f.Load();
  for (const auto& c : fresh.calls) EXPECT_EQ(c.find("Profile"), std::string::npos) << c;
  f.win.Click();
  f.win.Click();
  int reads = 0;
  for (const auto& c : fresh.calls) reads += c.rfind("GetPrivateProfileStringA", 0) == 0;
  EXPECT_EQ(reads, 6);
}

TEST_F(SettingsFixture, TickingPointsTheProfileBackAtConfigDll) {
  OpenWithBoxesUnticked();
  ini::ProfilePath = "C:\\elsewhere.ini";
  page.box5.Click();
  EXPECT_EQ(ini::ProfilePath, kConfig);
  EXPECT_EQ(p.File(kConfig), "[opti]\r\nbmp=1\r\n");
  EXPECT_FALSE(p.HasFile("C:\\elsewhere.ini"));
}

TEST_F(SettingsFixture, UntickingWritesZeroToWhicheverFileWasNamedLast) {
  OpenWithBoxesUnticked();
  page.box7.Click();  // ticked: "1" into config.dll, notice
  ini::ProfilePath = "C:\\elsewhere.ini";
  page.box7.Click();  // unticked
  EXPECT_EQ(ini::ProfilePath, "C:\\elsewhere.ini");
  EXPECT_EQ(p.File("C:\\elsewhere.ini"), "[opti]\r\ndvd=0\r\n");
  EXPECT_EQ(p.File(kConfig), "[opti]\r\ndvd=1\r\n");
}

TEST_F(SettingsFixture, OptimiserPointsTheProfileAtSystemIniAndLeavesItThere) {
  OpenWindowsPage();
  page.command6.Click();
  EXPECT_EQ(ini::ProfilePath, kSystemIni);
}

TEST_F(SettingsFixture, UntickingAfterOptimiserWritesIntoSystemIni) {
  OpenWithBoxesUnticked();
  page.box5.Click();  // ticked, config.dll holds bmp=1
  page.command6.Click();
  page.box5.Click();  // unticked, without a new visit of the page
  const std::string& ini = p.File(kSystemIni);
  EXPECT_TRUE(ini.ends_with("COM4:=921600,n,8,1,x\r\n[opti]\r\nbmp=0\r\n")) << ini;
  EXPECT_EQ(p.File(kConfig), "[opti]\r\nbmp=1\r\n");
}

TEST_F(SettingsFixture, OemApplyPointsBelowTheFolderItNamesWithoutCheckingTheSeparator) {
  EXPECT_EQ(ini::OemInfoPath("C:\\WINDOWS"), "C:\\WINDOWS\\system\\oeminfo.ini");
  EXPECT_EQ(ini::OemInfoPath("C:\\"), "C:\\\\system\\oeminfo.ini");
  EXPECT_EQ(ini::SystemIniPath("C:\\WINDOWS"), kSystemIni);
}

// --- the three ticks -------------------------------------------------------------------------

TEST_F(SettingsFixture, FirstVisitWithoutConfigFileTicksAllThreeBoxes) {
  ASSERT_FALSE(p.HasFile(kConfig));
  OpenWindowsPage();
  EXPECT_EQ(page.box5.Value(), 1);
  EXPECT_EQ(page.box7.Value(), 1);
  EXPECT_EQ(page.box8.Value(), 1);
  EXPECT_FALSE(p.HasFile(kConfig)) << "reading makes no file";
}

TEST_F(SettingsFixture, StoredOnesTickTheBoxes) {
  p.File(kConfig) = "[opti]\r\nbmp=1\r\ndvd=1\r\nopen=1\r\n";
  OpenWindowsPage();
  EXPECT_EQ(Ticks(), 3);
}

TEST_F(SettingsFixture, ZeroLeavesTheBoxAsItStands) {
  p.File(kConfig) = "[opti]\r\nbmp=0\r\ndvd=0\r\nopen=0\r\n";
  OpenWindowsPage();
  EXPECT_EQ(Ticks(), 0);
}

TEST_F(SettingsFixture, ZeroNeverUnticksABoxTickedEarlierInTheRun) {
  p.File(kConfig) = "[opti]\r\nbmp=0\r\ndvd=0\r\nopen=0\r\n";
  OpenWindowsPage();
  page.box5.Click();  // ticked by the user: config.dll now says bmp=1
  p.File(kConfig) = "[opti]\r\nbmp=0\r\ndvd=0\r\nopen=0\r\n";
  OpenWindowsPage();
  EXPECT_EQ(page.box5.Value(), 1);
}

TEST_F(SettingsFixture, TwoBehavesLikeZero) {
  p.File(kConfig) = "[opti]\r\nbmp=2\r\ndvd=0\r\nopen=0\r\n";
  OpenWindowsPage();
  EXPECT_EQ(page.box5.Value(), 0);
}

TEST_F(SettingsFixture, TextThatIsNotANumberTicksLikeAMissingKey) {
  p.File(kConfig) = "[opti]\r\nbmp=abc\r\ndvd=0\r\n";
  OpenWindowsPage();
  EXPECT_EQ(page.box5.Value(), 1) << "abc";
  EXPECT_EQ(page.box7.Value(), 0) << "0";
  EXPECT_EQ(page.box8.Value(), 1) << "missing key";
}

TEST_F(SettingsFixture, NumbersAreReadTheRegionalWay) {
  p.decimalSign = ',';
  p.File(kConfig) = "[opti]\r\nbmp=1,0\r\ndvd= 1 \r\nopen=1,5\r\n";
  OpenWindowsPage();
  EXPECT_EQ(page.box5.Value(), 1) << "1,0 is one on a French system";
  EXPECT_EQ(page.box7.Value(), 1);
  EXPECT_EQ(page.box8.Value(), 0) << "1,5 is a number other than one";
}

TEST_F(SettingsFixture, OtherSectionOrFileLeavesEveryBoxTicked) {
  p.File(kConfig) = "[autre]\r\nbmp=0\r\ndvd=0\r\nopen=0\r\n";
  OpenWindowsPage();
  EXPECT_EQ(Ticks(), 3);
}

TEST_F(SettingsFixture, LoadingTheTicksWritesNothingAndRunsNoBoxHandler) {
  OpenWindowsPage();
  for (const auto& c : p.calls) {
    EXPECT_EQ(c.find("RegOpenKeyExA"), std::string::npos) << c;
    EXPECT_EQ(c.find("WritePrivateProfileStringA"), std::string::npos) << c;
  }
  EXPECT_TRUE(p.boxes.empty()) << "no DVD notice from a tick set by the page";
}

TEST_F(SettingsFixture, ConfigDllHoldsTheKeysInTheOrderFirstWritten) {
  OpenWithBoxesUnticked();
  page.box8.Click();
  page.box5.Click();
  page.box7.Click();
  EXPECT_EQ(p.File(kConfig), "[opti]\r\nopen=1\r\nbmp=1\r\ndvd=1\r\n");
}

}  // namespace
}  // namespace tamrix
