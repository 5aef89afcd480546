// The BIOS sub-page of Test Lab: the table of 40 characteristics that the load fills, the
// report and the list of technologies from WMI's Win32_BIOS, and the road of a failing WMI.
#include <gtest/gtest.h>

#include "fake/FakePlatform.h"
#include "forms/Form1.h"
#include "platform/Runtime.h"
#include "shell/Dispatch.h"

namespace tamrix {
namespace {

using Items = std::vector<std::string>;
using Calls = std::vector<std::string>;
using T = WmiValue::Type;

const char* const kQuery =
    "SELECT Name,BiosCharacteristics,SMBIOSPresent,SMBIOSMajorVersion,SMBIOSMinorVersion,Version,SMBIOSBIOSVersion,"
    "ListOfLanguages,Description,CurrentLanguage,Manufacturer,Status FROM Win32_BIOS";

const char* const kTable[40] = {
    "Réserver",
    "Réserver",
    "Inconnu",
    "Caractéristiques du BIOS non supportées",
    "ISA est supportée",
    "MCA est supportée",
    "EISA est supportée",
    "PCI est supportée",
    "PC Card (PCMCIA) est supportée",
    "Plug and Play est supportée",
    "APM est supportée",
    "BIOS est mis à jour (Flash)",
    "BIOS shadowing est activé",
    "VL-VESA est supportée",
    "ESCD support est activé",
    "Boot from CD est supportée",
    "Selectable Boot est supportée",
    "BIOS ROM est présente",
    "Boot From PC Card (PCMCIA) est supportée",
    "EDD (Enhanced Disk Drive) Specification est supportée",
    "Int 13h - Japanese Floppy for NEC 9800 1.2mb (3.5, 1k Bytes/Sector, 360 RPM) est supportée",
    "Int 13h - Japanese Floppy for Toshiba 1.2mb (3.5, 360 RPM) est supportée",
    "Int 13h - 5.25 / 360 KB Floppy Services sont supportés",
    "Int 13h - 5.25 /1.2MB Floppy Services sont supportés",
    "Int 13h - 3.5 / 720 KB Floppy Services sont supportés",
    "Int 13h - 3.5 / 2.88 MB Floppy Services sont supportés",
    "Int 5h, Print Screen Service est supportée",
    "Int 9h, 8042 Keyboard services sont supportés",
    "Int 14h, Serial Services sont supportés",
    "Int 17h, printer services sont supportés",
    "Int 10h, CGA/Mono Video Services sont supportés",
    "NEC PC-98",
    "ACPI supported",
    "USB Legacy est supportée",
    "AGP est supportée",
    "I2O boot est supportée",
    "LS-120 boot est supportée",
    "ATAPI ZIP Drive boot est supportée",
    "1394 boot est supportée",
    "Smart Battery supported",
};

const char* const kIntroduction =
    "      Tamrix Info Bios est une nouvelle technologie de teste du \r\n"
    "materiels informatiques se base sur le code QX0Y1B05 créé \r\n"
    "par Tamrix Corporation pour donner toutes les informations \r\n"
    "système du BIOS et de tester les supports technologiques \r\n"
    "supportées par le BIOS.\r\n"
    "\r\n"
    "  -  Pour afficher les informations concernant la version, \r\n"
    "langue, type .. du Bios cliquez sur Info Bios.\r\n"
    " \r\n"
    "   - Pour afficher les technologies supportées par le Bios \r\n"
    "cliquez \r\n"
    "sur Tech Support.\r\n";

const std::string kHeading = "System BIOS Details : \r\n---------------------\r\n";
const std::string kRule = "----------------------------------------------------------\r\n";

WmiValue Text(const std::string& t) { return {.type = T::Text, .text = t}; }
WmiValue Int(std::int64_t n) { return {.type = T::Integer, .integer = n}; }
WmiValue Bool(bool b) { return {.type = T::Boolean, .boolean = b}; }
WmiValue Null() { return {.type = T::Null}; }
WmiValue Array(std::vector<WmiValue> items) { return {.type = T::Array, .items = std::move(items)}; }
WmiValue Ints(std::initializer_list<std::int64_t> ns) {
  std::vector<WmiValue> items;
  for (auto n : ns) items.push_back(Int(n));
  return Array(items);
}
WmiValue Texts(std::initializer_list<const char*> ts) {
  std::vector<WmiValue> items;
  for (auto t : ts) items.push_back(Text(t));
  return Array(items);
}

fake::FakePlatform::WmiProps Bios() {
  return {
      {"Name", Text("Phoenix ROM BIOS PLUS Version 1.10 A05")},
      {"BiosCharacteristics", Ints({7, 4, 7, 9, 15})},
      {"SMBIOSPresent", Bool(true)},
      {"SMBIOSMajorVersion", Int(2)},
      {"SMBIOSMinorVersion", Int(3)},
      {"Version", Text("DELL   - 27d70402")},
      {"SMBIOSBIOSVersion", Text("A05")},
      {"ListOfLanguages", Texts({"en|US|iso8859-1", "fr|FR|iso8859-1", "   ", "de|DE|iso8859-1", "es|ES|iso8859-1"})},
      {"Description", Text("Phoenix ROM BIOS PLUS Version 1.10 A05")},
      {"CurrentLanguage", Text("en|US|iso8859-1")},
      {"Manufacturer", Text("Dell Computer Corporation")},
      {"Status", Text("OK")},
  };
}

struct Page {
  fake::FakePlatform p;
  Form1 form{p};
  BiosPage& page = form.biosPage;
  Page() {
    form.Load();
    p.wmiClasses["Win32_BIOS"] = {Bios()};
  }
  fake::FakePlatform::WmiProps& object() { return p.wmiClasses["Win32_BIOS"][0]; }
};

std::string FullReport() {
  return kHeading +
         "Manufacturer:\tDell Computer Corporation\r\n"
         "Description:\tPhoenix ROM BIOS PLUS Version 1.10 A05\r\n"
         "Release Date:\tDELL   -\r\n"
         "Status\t:\tOK\r\n"
         "BIOS Version:\tA05\r\n"
         "Language Courrent\t:\ten|US|iso8859-1\r\n" +
         kRule +
         "SM BIOS Present\t\t:\tVrai\r\n"
         "SM BIOS Version majeure\t:\t3\r\n"
         "SM BIOS Version mineure\t:\t2\r\n" +
         kRule +
         "BIOS Installable Languages\t : \tfr|FR|iso8859-1\r\n"
         "BIOS Installable Languages\t : \tde|DE|iso8859-1\r\n" +
         kRule;
}

TEST(BiosCharacteristics, TheLoadFillsTheFortyTextsInTheirOrder) {
  fake::FakePlatform p;
  Form1 form(p);
  for (const auto& text : form.BiosCharacteristics) EXPECT_EQ(text, "");
  form.Load();
  for (int i = 0; i < 40; ++i) EXPECT_EQ(form.BiosCharacteristics[i], kTable[i]) << "index " << i;
}

TEST(BiosCharacteristics, ASecondInstanceLeavesBeforeTheTableIsFilled) {
  fake::FakePlatform p;
  p.earlierInstance = true;
  Form1 form(p);
  form.Load();
  EXPECT_EQ(form.BiosCharacteristics[7], "");
}

TEST(BiosPage, TextOneStartsWithTheIntroductionAndTheListIsHidden) {
  Page s;
  EXPECT_EQ(s.page.Text1.Text(), kIntroduction);
  EXPECT_TRUE(s.page.Text1.Visible());
  EXPECT_FALSE(s.page.List1.Visible());
}

TEST(BiosPage, InfoBiosOpensThePageAndTouchesNeitherTextNorList) {
  Page s;
  s.form.sys.Click();
  s.page.TamrixCmd10.Click();
  s.form.command2.Click();
  s.form.TamrixCmd6.Click();
  EXPECT_TRUE(s.form.FrmBios.Visible());
  EXPECT_FALSE(s.form.pc.Visible());
  EXPECT_TRUE(s.page.List1.Visible());
  EXPECT_FALSE(s.page.Text1.Visible());
  EXPECT_EQ(s.page.List1.ListCount(), 4);
  EXPECT_EQ(s.page.Text1.Text(), kIntroduction);
}

TEST(BiosPage, TheReportBindsTheMonikerWithoutImpersonationAndRunsTheQueryInOnePiece) {
  Page s;
  s.p.ClearCalls();
  s.page.TamrixCmd9.Click();
  ASSERT_GE(s.p.calls.size(), 2u);
  EXPECT_EQ(s.p.calls[0], "WmiGetObject(Winmgmts:)");
  EXPECT_EQ(s.p.calls[1], std::string("ExecQuery(") + kQuery + ")");
}

TEST(BiosPage, TheListRunsTheSameQuery) {
  Page s;
  s.p.ClearCalls();
  s.page.TamrixCmd10.Click();
  ASSERT_GE(s.p.calls.size(), 2u);
  EXPECT_EQ(s.p.calls[0], "WmiGetObject(Winmgmts:)");
  EXPECT_EQ(s.p.calls[1], std::string("ExecQuery(") + kQuery + ")");
}

TEST(BiosPage, TheReportStandsLineByLineWithItsSeparatorsAndCrossedVersions) {
  Page s;
  s.page.TamrixCmd9.Click();
  EXPECT_EQ(s.page.Text1.Text(), FullReport());
  EXPECT_TRUE(s.page.Text1.Visible());
  EXPECT_FALSE(s.page.List1.Visible());
}

TEST(BiosPage, TheMajorLineShowsTheMinorVersionAndTheMinorLineTheMajor) {
  Page s;
  s.object()["SMBIOSMajorVersion"] = Int(7);
  s.object()["SMBIOSMinorVersion"] = Int(1);
  s.page.TamrixCmd9.Click();
  EXPECT_NE(s.page.Text1.Text().find("SM BIOS Version majeure\t:\t1\r\n"), std::string::npos);
  EXPECT_NE(s.page.Text1.Text().find("SM BIOS Version mineure\t:\t7\r\n"), std::string::npos);
}

TEST(BiosPage, SmBiosPresentShowsAsTheSystemsWordForFalseToo) {
  Page s;
  s.object()["SMBIOSPresent"] = Bool(false);
  s.page.TamrixCmd9.Click();
  EXPECT_NE(s.page.Text1.Text().find("SM BIOS Present\t\t:\tFaux\r\n"), std::string::npos);
}

TEST(BiosPage, AVersionThatBeginsWithAMakersWordShowsItsFirstEightCharacters) {
  Page s;
  s.object()["Version"] = Text("WINE   - 1");
  s.page.TamrixCmd9.Click();
  EXPECT_NE(s.page.Text1.Text().find("Release Date:\tWINE   -\r\n"), std::string::npos);
}

TEST(BiosPage, AVersionWithAnAccentedLetterKeepsItsFirstEightCharactersWhole) {
  Page s;
  s.object()["Version"] = Text("Sécurité 2004");
  s.page.TamrixCmd9.Click();
  EXPECT_NE(s.page.Text1.Text().find("Release Date:\tSécurité\r\n"), std::string::npos) << s.page.Text1.Text();
}

TEST(BiosPage, AVersionThatBeginsWithADateShowsItThroughTheDatePattern) {
  Page s;
  s.object()["Version"] = Text("03/15/05 Award");
  s.page.TamrixCmd9.Click();
  EXPECT_NE(s.page.Text1.Text().find("Release Date:\t15 - mars - 2005\r\n"), std::string::npos);
}

TEST(BiosPage, ANullPropertyShowsAsNothingBehindItsLabel) {
  Page s;
  s.object()["CurrentLanguage"] = Null();
  s.object()["Status"] = Null();
  s.page.TamrixCmd9.Click();
  EXPECT_NE(s.page.Text1.Text().find("Status\t:\t\r\nBIOS Version:\tA05\r\nLanguage Courrent\t:\t\r\n"),
            std::string::npos);
}

TEST(BiosPage, TheLanguageLoopLeavesOutTheFirstAndTheLastAndBlankOnes) {
  Page s;
  s.page.TamrixCmd9.Click();
  const std::string& t = s.page.Text1.Text();
  EXPECT_EQ(t.find("en|US"), t.rfind("en|US"));  // only on the current language's line
  EXPECT_EQ(t.find("es|ES"), std::string::npos);
  EXPECT_NE(t.find("BIOS Installable Languages\t : \tfr|FR|iso8859-1\r\n"), std::string::npos);
}

TEST(BiosPage, OneOrTwoLanguagesListNone) {
  for (WmiValue languages : {Texts({"en|US|iso8859-1"}), Texts({"en|US|iso8859-1", "fr|FR|iso8859-1"}), Texts({})}) {
    Page s;
    s.object()["ListOfLanguages"] = languages;
    s.page.TamrixCmd9.Click();
    EXPECT_EQ(s.page.Text1.Text().find("BIOS Installable Languages"), std::string::npos);
    EXPECT_EQ(s.page.Text1.Text().substr(s.page.Text1.Text().size() - 2 * kRule.size()), kRule + kRule);
  }
}

TEST(BiosPage, EachObjectOfTheResultAddsItsOwnLines) {
  Page s;
  s.p.wmiClasses["Win32_BIOS"].push_back(Bios());
  s.page.TamrixCmd9.Click();
  EXPECT_EQ(s.page.Text1.Text(), FullReport() + FullReport().substr(kHeading.size()));
}

TEST(BiosPage, AnEmptyResultLeavesTextOneWithJustTheHeadingAndTheListEmpty) {
  Page s;
  s.p.wmiClasses.clear();
  s.page.TamrixCmd9.Click();
  EXPECT_EQ(s.page.Text1.Text(), kHeading);
  s.page.TamrixCmd10.Click();
  EXPECT_EQ(s.page.List1.ListCount(), 0);
}

TEST(BiosPage, TechSupportListsTheTableTextsInWmisOrderLeavingOutTheLastValue) {
  Page s;
  s.page.TamrixCmd10.Click();
  EXPECT_EQ(s.page.List1.Items(),
            (Items{"PCI est supportée", "ISA est supportée", "PCI est supportée", "Plug and Play est supportée"}));
  EXPECT_TRUE(s.page.List1.Visible());
  EXPECT_FALSE(s.page.Text1.Visible());
}

TEST(BiosPage, ABiosCharacteristicsArrayOfOneElementAddsNothing) {
  Page s;
  s.object()["BiosCharacteristics"] = Ints({7});
  s.page.TamrixCmd10.Click();
  EXPECT_EQ(s.page.List1.ListCount(), 0);
}

TEST(BiosPage, ASecondTechSupportGivesTheListOnceNotTwice) {
  Page s;
  s.page.TamrixCmd10.Click();
  s.page.TamrixCmd10.Click();
  EXPECT_EQ(s.page.List1.ListCount(), 4);
}

TEST(BiosPage, AValueBeyondTheTableShowsItsDigitsWithoutAFault) {
  Page s;
  s.object()["BiosCharacteristics"] = Ints({40, 39, 63, 0});
  EXPECT_TRUE(RunHandler(s.p, [&] { s.page.TamrixCmd10.Click(); }));
  EXPECT_EQ(s.page.List1.Items(), (Items{"40", "Smart Battery supported", "63"}));
}

TEST(BiosPage, ReportAndListTakeTurnsOnOneSpot) {
  Page s;
  s.page.TamrixCmd10.Click();
  s.page.TamrixCmd9.Click();
  EXPECT_TRUE(s.page.Text1.Visible());
  EXPECT_FALSE(s.page.List1.Visible());
  EXPECT_EQ(s.page.Text1.Rect().left, s.page.List1.Rect().left);
  EXPECT_EQ(s.page.Text1.Rect().top, s.page.List1.Rect().top);
}

TEST(BiosPage, WithoutWmiTheReportEndsInTheRuntimeErrorBoxWithTextOneAlreadyShown) {
  Page s;
  s.page.TamrixCmd10.Click();
  s.p.wmiBindFails = true;
  s.p.boxes.clear();
  EXPECT_FALSE(RunHandler(s.p, [&] { s.page.TamrixCmd9.Click(); }));
  ASSERT_EQ(s.p.boxes.size(), 1u);
  EXPECT_EQ(s.p.boxes[0].text, "Run-time error '429':\r\rActiveX component can't create object");
  EXPECT_TRUE(s.page.Text1.Visible());
  EXPECT_FALSE(s.page.List1.Visible());
  EXPECT_EQ(s.page.Text1.Text(), kIntroduction);
}

TEST(BiosPage, AFailingQueryEndsTheListWithTheListAlreadyShownAndCleared) {
  Page s;
  s.page.TamrixCmd10.Click();
  s.p.wmiQueryFails = true;
  EXPECT_FALSE(RunHandler(s.p, [&] { s.page.TamrixCmd10.Click(); }));
  EXPECT_TRUE(s.page.List1.Visible());
  EXPECT_FALSE(s.page.Text1.Visible());
  EXPECT_EQ(s.page.List1.ListCount(), 0);
}

// What Wine's WMI gives: a BIOS object without Status, BiosCharacteristics, ListOfLanguages and
// SMBIOSPresent.
TEST(BiosPage, AMissingPropertyEndsTheReportWithError438AndNoReportWritten) {
  Page s;
  for (const char* missing : {"Status", "BiosCharacteristics", "ListOfLanguages", "SMBIOSPresent"})
    s.object().erase(missing);
  s.p.boxes.clear();
  EXPECT_FALSE(RunHandler(s.p, [&] { s.page.TamrixCmd9.Click(); }));
  ASSERT_EQ(s.p.boxes.size(), 1u);
  EXPECT_EQ(s.p.boxes[0].text, "Run-time error '438':\r\rObject doesn't support this property or method");
  EXPECT_EQ(s.p.boxes[0].title, "Tamrix Utility");
  EXPECT_EQ(s.page.Text1.Text(), kIntroduction);
  EXPECT_FALSE(RunHandler(s.p, [&] { s.page.TamrixCmd10.Click(); }));
  EXPECT_TRUE(s.page.List1.Visible());
  EXPECT_EQ(s.page.List1.ListCount(), 0);
}

}  // namespace
}  // namespace tamrix

namespace tamrix {
namespace {

TEST(BiosPage, AFailingQueryShowsTheAutomationErrorWithItsCodeInHex) {
  fake::FakePlatform p;
  Form1 form(p);
  form.Load();
  p.wmiQueryFails = true;
  EXPECT_FALSE(RunHandler(p, [&] { form.biosPage.TamrixCmd9.Click(); }));
  ASSERT_EQ(p.boxes.size(), 1u);
  EXPECT_EQ(p.boxes[0].text, "Run-time error '-2147217385 (80041017)':\r\rAutomation error");
}

}  // namespace
}  // namespace tamrix
