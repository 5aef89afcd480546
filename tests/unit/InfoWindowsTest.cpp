// The Windows sub-page of Test Lab: its design texts, its two columns of registry reads, and the
// third family that leaves it as designed.
#include <gtest/gtest.h>

#include "fake/FakePlatform.h"
#include "forms/Form1.h"

namespace tamrix {
namespace {

using Calls = std::vector<std::string>;

const char* const kCv9x = "software\\microsoft\\windows\\currentversion";
const char* const kCvNt = "software\\microsoft\\windows nt\\currentversion";
const char* const kTz = "system\\currentcontrolset\\control\\TimeZoneInformation";
const char* const kDx = "software\\microsoft\\directx";
const char* const kIe = "software\\microsoft\\internet explorer";

// The page as it must stand, written out here: box, design text, label and value on each family.
struct Expected {
  const char* box;
  const char* designText;
  const char* label9x;
  const char* key9x;
  const char* value9x;
  const char* labelNt;
  const char* keyNt;
  const char* valueNt;
};
const Expected kPage[8] = {
    {"t3", "Système d'exploitation :   Inconnu", "Système d'exploitation:            ", kCv9x, "productname",
     "Système d'exploitation:            ", kCvNt, "productname"},
    {"t4", "Version du Windows :      Inconnu", "Version du Windows:                 ", kCv9x, "versionnumber",
     "Version du Windows:                 ", kCvNt, "currentversion"},
    {"t6", "Nom de l'organisation :    Inconnu", "Nom de l'organisation:              ", kCv9x,
     "RegisteredOrganization", "Nom de l'organisation:              ", kCvNt, "RegisteredOrganization"},
    {"t7", "ID de Windows :             Inconnu", "ID de Windows:                      ", kCv9x, "productid",
     "ID de Windows:                      ", kCvNt, "productid"},
    {"t8", "Clé de Windows :            Inconnu", "Clé de Windows:                     ", kCv9x, "productkey",
     "Nom d'utilisateur:                     ", kCvNt, "RegisteredOwner"},
    {"t9", "La zone géographique :    Inconnu", "La zone géographique:               ", kTz, "StandardName",
     "La zone géographique:               ", kTz, "StandardName"},
    {"t10", "La version de Direct X :    Inconnu", "La version de DirectX:               ", kDx, "version",
     "La version de DirectX:               ", kDx, "version"},
    {"t11", "Version d'Internet Explorer : Inconnu", "La version d'internet Explorer:  ", kIe, "version",
     "La version d'internet Explorer:  ", kIe, "version"},
};

std::string Sz(const std::string& text) { return text + std::string(1, '\0'); }

// "key|value" for each value the run asked for, in order.
Calls Reads(const Calls& calls) {
  Calls out;
  std::string key;
  for (const auto& c : calls) {
    if (c.rfind("RegOpenKeyExA(HKLM,", 0) == 0) key = c.substr(19, c.find(",0,0x3F)") - 19);
    if (c.rfind("RegQueryValueExA(", 0) == 0 && c.find(",no buffer)") != std::string::npos) {
      std::size_t from = c.find(',') + 1;
      out.push_back(key + "|" + c.substr(from, c.find(",no buffer)") - from));
    }
  }
  return out;
}

struct WindowsInfoFixture : ::testing::Test {
  fake::FakePlatform p;
  Form1 form{p};
  InfoWindowsPage& page = form.infoWindows;
  void SetUp() override {
    form.Load();
    p.ClearCalls();
  }
  TextBox& Box(const char* name) { return *static_cast<TextBox*>(FindControl(page.fwindows, name)); }
  void Family(std::uint32_t platformId) { p.version.platformId = platformId; }
  // A machine whose every value of both columns holds the text "<key>|<value name>".
  static std::string Stored(const char* key, const char* value) { return std::string(key) + "|" + value; }
  void FillBothColumns() {
    for (const auto& row : kPage) {
      p.SetValue(hive::LocalMachine, row.key9x, row.value9x, regtype::Sz, Sz(Stored(row.key9x, row.value9x)));
      p.SetValue(hive::LocalMachine, row.keyNt, row.valueNt, regtype::Sz, Sz(Stored(row.keyNt, row.valueNt)));
    }
  }
  // What the box shows: the text up to its first NUL.
  std::string Shown(const char* name) {
    const std::string& t = Box(name).Text();
    return t.substr(0, t.find('\0'));
  }
};

TEST_F(WindowsInfoFixture, BoxesStandOneUnderAnotherInsideThePageBelowItsTitle) {
  const Twips page_ = page.fwindows.Rect();
  int bottom = 20 * 15;  // the title band
  for (Control* c : page.fwindows.Children()) {
    const Twips& r = c->Rect();
    EXPECT_GE(r.top, bottom) << c->Name();
    EXPECT_GE(r.left, 60) << c->Name();
    EXPECT_LE(r.left + r.width, page_.width - 60) << c->Name();
    EXPECT_GE(r.height, 20 * 15) << c->Name();  // room for a line of text and the box's border
    bottom = r.top + r.height;
  }
  EXPECT_LE(bottom, page_.height - 60);
}

TEST_F(WindowsInfoFixture, DesignTextsSayInconnu) {
  for (const auto& row : kPage) EXPECT_EQ(Box(row.box).Text(), row.designText) << row.box;
  EXPECT_EQ(page.fwindows.Caption(), "Information sur votre Windows :");
  EXPECT_EQ(FindControl(page.fwindows, "t5"), nullptr);  // t5 belongs to the PC page
  EXPECT_EQ(page.fwindows.Children().size(), 8u);
}

TEST_F(WindowsInfoFixture, CatalogueRowsStandInWritingOrder) {
  ASSERT_EQ(InfoWindowsPage::kRows.size(), 8u);
  for (int i = 0; i < 8; ++i) {
    SCOPED_TRACE(kPage[i].box);
    const auto& row = InfoWindowsPage::kRows[i];
    EXPECT_EQ(&(page.*row.box), &Box(kPage[i].box));
    EXPECT_STREQ(row.label9x, kPage[i].label9x);
    EXPECT_STREQ(row.key9x, kPage[i].key9x);
    EXPECT_STREQ(row.value9x, kPage[i].value9x);
    EXPECT_STREQ(row.labelNt, kPage[i].labelNt);
    EXPECT_STREQ(row.keyNt, kPage[i].keyNt);
    EXPECT_STREQ(row.valueNt, kPage[i].valueNt);
  }
}

TEST_F(WindowsInfoFixture, NtRunAsksTheFamilyThenReadsTheNtColumnInOrderAndWritesNothing) {
  Family(2);
  page.InfoWindows();
  ASSERT_FALSE(p.calls.empty());
  EXPECT_EQ(p.calls[0], "GetVersionExA(148)");
  Calls expected;
  for (const auto& row : kPage) expected.push_back(std::string(row.keyNt) + "|" + row.valueNt);
  EXPECT_EQ(Reads(p.calls), expected);
  for (const auto& c : p.calls) EXPECT_EQ(c.rfind("RegSet", 0), std::string::npos) << c;
  EXPECT_EQ(p.OpenHandles(), 0u);
}

TEST_F(WindowsInfoFixture, NineXRunReadsTheNineXColumnInOrder) {
  Family(1);
  page.InfoWindows();
  Calls expected;
  for (const auto& row : kPage) expected.push_back(std::string(row.key9x) + "|" + row.value9x);
  EXPECT_EQ(Reads(p.calls), expected);
}

TEST_F(WindowsInfoFixture, NtLinesAreLabelAndValueAndNothingBetween) {
  Family(2);
  FillBothColumns();
  page.InfoWindows();
  for (const auto& row : kPage)
    EXPECT_EQ(Box(row.box).Text(), std::string(row.labelNt) + Sz(Stored(row.keyNt, row.valueNt))) << row.box;
}

TEST_F(WindowsInfoFixture, NineXLinesAreLabelAndValue) {
  Family(1);
  FillBothColumns();
  page.InfoWindows();
  for (const auto& row : kPage)
    EXPECT_EQ(Box(row.box).Text(), std::string(row.label9x) + Sz(Stored(row.key9x, row.value9x))) << row.box;
  EXPECT_EQ(Shown("t8"), "Clé de Windows:                     software\\microsoft\\windows\\currentversion|productkey");
}

TEST_F(WindowsInfoFixture, OnNtTheWindowsKeyBoxShowsTheOwnerForGood) {
  Family(2);
  FillBothColumns();
  form.sys.Click();
  EXPECT_EQ(Shown("t8"), "Nom d'utilisateur:                     software\\microsoft\\windows nt\\currentversion|RegisteredOwner");
  EXPECT_EQ(Box("t8").Text().find("Clé de Windows"), std::string::npos);
  form.TamrixCmd2.Click();
  EXPECT_EQ(Box("t8").Text().find("Clé de Windows"), std::string::npos);
  for (const auto& r : Reads(p.calls)) EXPECT_EQ(r.find("productkey"), std::string::npos) << r;
}

TEST_F(WindowsInfoFixture, OwnerIsNotReadOnTheNineXFamily) {
  Family(1);
  page.InfoWindows();
  for (const auto& r : Reads(p.calls)) EXPECT_EQ(r.find("RegisteredOwner"), std::string::npos) << r;
}

TEST_F(WindowsInfoFixture, ThirdFamilyLeavesTheDesignTextsStanding) {
  Family(0);  // "Windows3.1"
  FillBothColumns();
  page.InfoWindows();
  for (const auto& row : kPage) EXPECT_EQ(Box(row.box).Text(), row.designText) << row.box;
  EXPECT_EQ(p.calls, (Calls{"GetVersionExA(148)"}));
}

TEST_F(WindowsInfoFixture, EmptyFamilyLeavesTheDesignTextsStanding) {
  p.version.ok = false;
  FillBothColumns();
  page.InfoWindows();
  for (const auto& row : kPage) EXPECT_EQ(Box(row.box).Text(), row.designText) << row.box;
  Family(3);
  p.version.ok = true;
  page.InfoWindows();
  for (const auto& row : kPage) EXPECT_EQ(Box(row.box).Text(), row.designText) << row.box;
}

TEST_F(WindowsInfoFixture, LinesWrittenBeforeStayWhenTheFamilyIsLaterUnknown) {
  Family(2);
  FillBothColumns();
  page.InfoWindows();
  std::string before = Box("t3").Text();
  Family(0);
  page.InfoWindows();
  EXPECT_EQ(Box("t3").Text(), before);
}

TEST(WindowsInfoColumns, FamilyIsComparedExactlyCaseIncluded) {
  using C = InfoWindowsPage::Column;
  EXPECT_EQ(InfoWindowsPage::ColumnFor("Windows98"), C::NineX);
  EXPECT_EQ(InfoWindowsPage::ColumnFor("WindowsNT"), C::Nt);
  for (const char* other : {"windows98", "WINDOWS98", "windowsnt", "WindowsNt", "WindowsNT ", " Windows98",
                            "Windows95", "Windows3.1", ""})
    EXPECT_EQ(InfoWindowsPage::ColumnFor(other), C::None) << '"' << other << '"';
}

TEST_F(WindowsInfoFixture, MissingValueLeavesTheBareLabelAndInconnuIsGone) {
  Family(2);
  page.InfoWindows();  // an empty machine
  for (const auto& row : kPage) EXPECT_EQ(Box(row.box).Text(), row.labelNt) << row.box;
}

TEST_F(WindowsInfoFixture, ValueOfAnotherTypeLeavesTheBareLabel) {
  Family(2);
  p.SetValue(hive::LocalMachine, kCvNt, "productname", regtype::Binary, "\x01\x02");
  p.SetValue(hive::LocalMachine, kCvNt, "currentversion", regtype::ExpandSz, Sz("%x%"));
  p.SetValue(hive::LocalMachine, kCvNt, "productid", regtype::MultiSz, std::string("a\0b\0\0", 5));
  page.InfoWindows();
  EXPECT_EQ(Box("t3").Text(), "Système d'exploitation:            ");
  EXPECT_EQ(Box("t4").Text(), "Version du Windows:                 ");
  EXPECT_EQ(Box("t7").Text(), "ID de Windows:                      ");
}

TEST_F(WindowsInfoFixture, NumberValueShowsItsDecimalDigits) {
  Family(2);
  p.SetDword(hive::LocalMachine, kDx, "version", 9);
  page.InfoWindows();
  EXPECT_EQ(Box("t10").Text(), "La version de DirectX:               9");
}

TEST_F(WindowsInfoFixture, StoredTerminatorIsKeptInTheLineAndTheBoxShowsUpToIt) {
  Family(2);
  p.SetValue(hive::LocalMachine, kCvNt, "productname", regtype::Sz, Sz("Microsoft Windows XP"));
  page.InfoWindows();
  EXPECT_EQ(Box("t3").Text(), std::string("Système d'exploitation:            Microsoft Windows XP") + '\0');
  EXPECT_EQ(Shown("t3"), "Système d'exploitation:            Microsoft Windows XP");
}

TEST_F(WindowsInfoFixture, TimeZoneNameStandsUnderTheGeographicLabel) {
  Family(2);
  p.SetValue(hive::LocalMachine, kTz, "StandardName", regtype::Sz, Sz("Paris, Madrid"));
  page.InfoWindows();
  EXPECT_EQ(Shown("t9"), "La zone géographique:               Paris, Madrid");
}

TEST_F(WindowsInfoFixture, EveryEntryToTestLabFillsThePageAgain) {
  Family(2);
  form.sys.Click();
  EXPECT_EQ(Box("t3").Text(), kPage[0].labelNt);
  p.SetValue(hive::LocalMachine, kCvNt, "productname", regtype::Sz, Sz("Windows 2000"));
  form.sys.Click();
  EXPECT_EQ(Shown("t3"), "Système d'exploitation:            Windows 2000");
  p.SetValue(hive::LocalMachine, kCvNt, "productname", regtype::Sz, Sz("Windows 2003"));
  form.TamrixCmd2.Click();
  EXPECT_EQ(Shown("t3"), "Système d'exploitation:            Windows 2003");
}

}  // namespace
}  // namespace tamrix
