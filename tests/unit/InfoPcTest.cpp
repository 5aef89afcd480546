// The PC sub-page of Test Lab: its design texts, the NT table and the table of every other
// family, the memory figure, and the lines whose reads go nowhere.
#include <gtest/gtest.h>

#include "fake/FakePlatform.h"
#include "forms/Form1.h"

namespace tamrix {
namespace {

using Calls = std::vector<std::string>;
using S = InfoPcPage::Source;

const char* const kCpu0 = "hardware\\Description\\system\\CentralProcessor\\0";
const char* const kName = "System\\CurrentControlSet\\Control\\ComputerName\\ComputerName";
const char* const kCvNt = "software\\microsoft\\windows nt\\currentversion";
const char* const kSystem = "hardware\\Description\\system";
const char* const kBoard = "enum\\root\\*PNP0C01\\0000";

constexpr std::uint32_t MB = 1024 * 1024;

const char* const kDesign[8][2] = {
    {"t12", "Nom du Bios :                            Inconnu"},
    {"t13", "Version du Bios  :                       Inconnu"},
    {"t14", "Date du Bios :                             Inconnu"},
    {"t15", "Type du Bus :                              Inconnu"},
    {"t1", "Type du Processeur :                 Inconnu"},
    {"t2", "Constructeur du Processeur :    Inconnu"},
    {"t5", "Nom de la machine :                     Inconnu"},
    {"freq", "Fréquence du Processeur en MHz :  Inconnu"},
};

// The two tables as they must stand: box ("" for none), label, source, key, value name.
struct Expected {
  const char* box;
  const char* label;
  S source;
  const char* key;
  const char* value;
};
const Expected kNt[9] = {
    {"t1", "Type du Processeur:                 ", S::Value, kCpu0, "Identifier"},
    {"t2", "Constructeur du Processeur:      ", S::Value, kCpu0, "VendorIdentifier"},
    {"", "Nom du processeur :                 ", S::Value, kCpu0, "VendorIdentifier"},
    {"freq", "Fréquence du processeur en MHz :   ", S::Value, kCpu0, "~Mhz"},
    {"t5", "Nom de la machine:                   ", S::Value, kName, "ComputerName"},
    {"t12", "Type du Processeur:                ", S::Value, kCvNt, "CurrentType"},
    {"t13", "La mémoire physique:               ", S::Memory, nullptr, nullptr},
    {"t14", "La date du Bios :                      ", S::Value, kSystem, "SystemBiosDate"},
    {"t15", "Carte Video Date:                      ", S::Value, kSystem, "VideoBiosDate"},
};
const Expected kOther[9] = {
    {"t1", "Type du Processeur:                 ", S::Value, kCpu0, "Identifier"},
    {"t2", "Constructeur du Processeur:      ", S::Value, kCpu0, "VendorIdentifier"},
    {"", "Nom du processeur :                 ", S::Composite, nullptr, nullptr},
    {"freq", "Fréquence du processeur en MHz :   ", S::Composite, nullptr, nullptr},
    {"t5", "Nom de la machine:                   ", S::Value, kName, "ComputerName"},
    {"t12", "Nom du Bios:                           ", S::Value, kBoard, "BIOSName"},
    {"t13", "Version du Bios:                       ", S::Value, kBoard, "BIOSVersion"},
    {"t14", "La date du Bios:                      ", S::Value, kBoard, "BIOSdate"},
    {"t15", "Type du BUS:                          ", S::Value, kBoard, "Bustype"},
};

std::string Sz(const std::string& text) { return text + '\0'; }

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

std::string R(const char* key, const char* value) { return std::string(key) + "|" + value; }

struct PcInfoFixture : ::testing::Test {
  fake::FakePlatform p;
  Form1 form{p};
  InfoPcPage& page = form.infoPc;
  void SetUp() override {
    form.Load();
    p.memory.dwTotalPhys = 256 * MB;
    p.ClearCalls();
  }
  TextBox& Box(const char* name) { return *static_cast<TextBox*>(FindControl(page.pc, name)); }
  std::string Shown(const char* name) {
    const std::string& t = Box(name).Text();
    return t.substr(0, t.find('\0'));
  }
  void Family(std::uint32_t platformId) { p.version.platformId = platformId; }
  void FillMachine() {
    p.SetValue(hive::LocalMachine, kCpu0, "Identifier", regtype::Sz, Sz("x86 Family 6 Model 8 Stepping 3"));
    p.SetValue(hive::LocalMachine, kCpu0, "VendorIdentifier", regtype::Sz, Sz("GenuineIntel"));
    p.SetDword(hive::LocalMachine, kCpu0, "~Mhz", 866);
    p.SetValue(hive::LocalMachine, kName, "ComputerName", regtype::Sz, Sz("ATELIER"));
    p.SetValue(hive::LocalMachine, kCvNt, "CurrentType", regtype::Sz, Sz("Uniprocessor Free"));
    p.SetValue(hive::LocalMachine, kSystem, "SystemBiosDate", regtype::Sz, Sz("04/12/01"));
    p.SetValue(hive::LocalMachine, kSystem, "VideoBiosDate", regtype::Sz, Sz("08/21/00"));
    p.SetValue(hive::LocalMachine, kBoard, "Identifier", regtype::Sz, Sz("Carte mere PNP"));
    p.SetValue(hive::LocalMachine, kBoard, "BIOSName", regtype::Sz, Sz("Award"));
    p.SetValue(hive::LocalMachine, kBoard, "BIOSVersion", regtype::Sz, Sz("6.00 PG"));
    p.SetValue(hive::LocalMachine, kBoard, "BIOSdate", regtype::Sz, Sz("04/12/01"));
    p.SetValue(hive::LocalMachine, kBoard, "Bustype", regtype::Sz, Sz("ISA"));
  }
  Calls AllLines() {
    Calls out;
    for (const char* b : {"t1", "t2", "freq", "t5", "t12", "t13", "t14", "t15"}) out.push_back(Box(b).Text());
    return out;
  }
};

TEST_F(PcInfoFixture, BoxesStandOneUnderAnotherInsideThePageBelowItsTitle) {
  const Twips page_ = page.pc.Rect();
  int bottom = 20 * 15;  // the title band
  for (Control* c : page.pc.Children()) {
    const Twips& r = c->Rect();
    EXPECT_GE(r.top, bottom) << c->Name();
    EXPECT_GE(r.left, 60) << c->Name();
    EXPECT_LE(r.left + r.width, page_.width - 60) << c->Name();
    EXPECT_GE(r.height, 20 * 15) << c->Name();  // room for a line of text and the box's border
    bottom = r.top + r.height;
  }
  EXPECT_LE(bottom, page_.height - 60);
}

TEST_F(PcInfoFixture, DesignTextsSayInconnu) {
  EXPECT_EQ(page.pc.Caption(), "Information sur votre PC :");
  for (const auto& d : kDesign) EXPECT_EQ(Box(d[0]).Text(), d[1]) << d[0];
  EXPECT_EQ(page.pc.Children().size(), 8u);
}

void CheckTable(const std::array<InfoPcPage::Row, 9>& rows, const Expected (&expected)[9], InfoPcPage& page) {
  for (int i = 0; i < 9; ++i) {
    SCOPED_TRACE(i + 1);
    const auto& row = rows[static_cast<std::size_t>(i)];
    if (*expected[i].box == '\0') {
      EXPECT_EQ(row.box, nullptr);
    } else {
      ASSERT_NE(row.box, nullptr);
      EXPECT_EQ((page.*row.box).Name(), expected[i].box);
    }
    EXPECT_STREQ(row.label, expected[i].label);
    EXPECT_EQ(row.source, expected[i].source);
    if (expected[i].key) {
      EXPECT_STREQ(row.key, expected[i].key);
      EXPECT_STREQ(row.valueName, expected[i].value);
    }
  }
}

TEST_F(PcInfoFixture, NtTableStandsInOrder) { CheckTable(InfoPcPage::kNtRows, kNt, page); }

TEST_F(PcInfoFixture, OtherTableStandsInOrder) { CheckTable(InfoPcPage::kOtherRows, kOther, page); }

TEST_F(PcInfoFixture, NtRunReadsMemoryFirstThenTheFamilyThenTheRowsInOrder) {
  Family(2);
  page.InfoPc();
  ASSERT_GE(p.calls.size(), 2u);
  EXPECT_EQ(p.calls[0], "GlobalMemoryStatus(32)");
  EXPECT_EQ(p.calls[1], "GetVersionExA(148)");
  EXPECT_EQ(Reads(p.calls), (Calls{R(kCpu0, "Identifier"), R(kCpu0, "VendorIdentifier"),
                                   R(kCpu0, "VendorIdentifier"),  // the processor's name, unseen
                                   R(kCpu0, "~Mhz"), R(kName, "ComputerName"), R(kCvNt, "CurrentType"),
                                   R(kSystem, "SystemBiosDate"), R(kSystem, "VideoBiosDate")}));
  for (const auto& c : p.calls) EXPECT_EQ(c.rfind("RegSet", 0), std::string::npos) << c;
  EXPECT_EQ(p.OpenHandles(), 0u);
}

TEST_F(PcInfoFixture, OtherRunMakesTheUnseenNameReadsAndTheCompositeReads) {
  Family(1);
  page.InfoPc();
  EXPECT_EQ(Reads(p.calls), (Calls{R(kCpu0, "Identifier"), R(kCpu0, "VendorIdentifier"),
                                   R(kCpu0, "VendorIdentifier"), R(kBoard, "Identifier"),  // the name, unseen
                                   R(kCpu0, "VendorIdentifier"), R(kBoard, "Identifier"),  // the frequency line
                                   R(kName, "ComputerName"), R(kBoard, "BIOSName"), R(kBoard, "BIOSVersion"),
                                   R(kBoard, "BIOSdate"), R(kBoard, "Bustype")}));
}

TEST_F(PcInfoFixture, NtLinesAreLabelAndValue) {
  Family(2);
  FillMachine();
  page.InfoPc();
  EXPECT_EQ(Box("t1").Text(), "Type du Processeur:                 " + Sz("x86 Family 6 Model 8 Stepping 3"));
  EXPECT_EQ(Box("t2").Text(), "Constructeur du Processeur:      " + Sz("GenuineIntel"));
  EXPECT_EQ(Box("freq").Text(), "Fréquence du processeur en MHz :   866");
  EXPECT_EQ(Box("t5").Text(), "Nom de la machine:                   " + Sz("ATELIER"));
  EXPECT_EQ(Box("t12").Text(), "Type du Processeur:                " + Sz("Uniprocessor Free"));
  EXPECT_EQ(Box("t13").Text(), "La mémoire physique:               257   Méga Octets");
  EXPECT_EQ(Box("t14").Text(), "La date du Bios :                      " + Sz("04/12/01"));
  EXPECT_EQ(Box("t15").Text(), "Carte Video Date:                      " + Sz("08/21/00"));
}

TEST_F(PcInfoFixture, OtherFamilyLinesAreLabelAndValue) {
  Family(1);
  FillMachine();
  page.InfoPc();
  EXPECT_EQ(Shown("t1"), "Type du Processeur:                 x86 Family 6 Model 8 Stepping 3");
  EXPECT_EQ(Shown("t2"), "Constructeur du Processeur:      GenuineIntel");
  EXPECT_EQ(Shown("t5"), "Nom de la machine:                   ATELIER");
  EXPECT_EQ(Box("t12").Text(), "Nom du Bios:                           " + Sz("Award"));
  EXPECT_EQ(Box("t13").Text(), "Version du Bios:                       " + Sz("6.00 PG"));
  EXPECT_EQ(Box("t14").Text(), "La date du Bios:                      " + Sz("04/12/01"));
  EXPECT_EQ(Box("t15").Text(), "Type du BUS:                          " + Sz("ISA"));
}

TEST_F(PcInfoFixture, FrequencyLineOfTheOtherFamilyHoldsMakerAndIdentifierBehindANul) {
  Family(1);
  FillMachine();
  page.InfoPc();
  EXPECT_EQ(Box("freq").Text(),
            "Fréquence du processeur en MHz :   " + Sz("GenuineIntel") + " (" + Sz("Carte mere PNP") + " )");
  // A box stops at the NUL: the label and the maker alone, and no frequency is made up.
  EXPECT_EQ(Shown("freq"), "Fréquence du processeur en MHz :   GenuineIntel");
  EXPECT_EQ(Box("freq").Text().find("866"), std::string::npos);
}

TEST_F(PcInfoFixture, MemoryFigureIsTheRoundingOfMegabytesPlusOne) {
  EXPECT_EQ(InfoPcPage::MemoryFigure(268435456u, ','), 257);  // not 256
  EXPECT_EQ(InfoPcPage::MemoryFigure(0, ','), 1);
  EXPECT_EQ(InfoPcPage::MemoryFigure(static_cast<std::uint32_t>(511.6 * MB), ','), 513);
  EXPECT_EQ(InfoPcPage::MemoryFigure(static_cast<std::uint32_t>(511.4 * MB), '.'), 512);
  EXPECT_EQ(InfoPcPage::MemoryFigure(MB / 2, ','), 2);  // 1.5 goes away from zero in the pattern
}

TEST_F(PcInfoFixture, TwoGigabytesOrMoreGiveANegativeFigure) {
  EXPECT_EQ(InfoPcPage::MemoryFigure(0x80000000u, ','), -2047);
  EXPECT_EQ(InfoPcPage::MemoryFigure(3072u * MB, ','), -1023);
  EXPECT_EQ(InfoPcPage::MemoryFigure(0xFFFFFFFFu, ','), 1);  // the overflow value: minus one byte
  Family(2);
  p.memory.dwTotalPhys = 3072u * MB;
  page.InfoPc();
  EXPECT_EQ(Box("t13").Text(), "La mémoire physique:               -1023   Méga Octets");
}

TEST_F(PcInfoFixture, FigureThatDoesNotFitSixteenBitsLeavesZero) {
  EXPECT_EQ(InfoPcPage::MemoryFigureOf(40000.0, ','), 0);
  EXPECT_EQ(InfoPcPage::MemoryFigureOf(-40000.0, ','), 0);
  EXPECT_EQ(InfoPcPage::MemoryFigureOf(32767.4, ','), 32767);
  EXPECT_EQ(InfoPcPage::MemoryFigureOf(32767.5, ','), 0);  // the pattern rounds it to 32768 first
}

TEST_F(PcInfoFixture, MissingFrequencyGivesTheBareLabel) {
  Family(2);
  page.InfoPc();
  EXPECT_EQ(Box("freq").Text(), "Fréquence du processeur en MHz :   ");
}

TEST_F(PcInfoFixture, MissingKeysLeaveLabelsAloneAndInconnuIsGone) {
  Family(2);
  page.InfoPc();
  for (const auto& row : kNt) {
    if (!*row.box || row.source == S::Memory) continue;
    EXPECT_EQ(Box(row.box).Text(), row.label) << row.box;
  }
  for (const auto& line : AllLines()) EXPECT_EQ(line.find("Inconnu"), std::string::npos) << line;
}

TEST_F(PcInfoFixture, CompositeOfAnEmptyMachineKeepsItsBrackets) {
  Family(1);
  page.InfoPc();
  EXPECT_EQ(Box("freq").Text(), "Fréquence du processeur en MHz :    ( )");
}

TEST_F(PcInfoFixture, WindowsThreeOneAndAnEmptyFamilyFollowTheOtherTable) {
  FillMachine();
  Family(0);
  page.InfoPc();
  EXPECT_EQ(Shown("t12"), "Nom du Bios:                           Award");
  Family(1);
  page.InfoPc();
  Calls nineX = AllLines();
  p.version.ok = false;  // the empty family
  page.InfoPc();
  EXPECT_EQ(AllLines(), nineX);
  Family(7);
  p.version.ok = true;
  page.InfoPc();
  EXPECT_EQ(AllLines(), nineX);
}

TEST(PcInfoTables, OnlyTheExactNtWordTakesTheNtTable) {
  EXPECT_EQ(&InfoPcPage::TableFor("WindowsNT"), &InfoPcPage::kNtRows);
  for (const char* other : {"windowsnt", "WINDOWSNT", "WindowsNT ", "Windows98", "Windows3.1", ""})
    EXPECT_EQ(&InfoPcPage::TableFor(other), &InfoPcPage::kOtherRows) << '"' << other << '"';
}

TEST_F(PcInfoFixture, TwoClicksGiveTheSameLinesAndTheMemoryShowsOnlyOnNt) {
  FillMachine();
  Family(2);
  form.sys.Click();
  form.command2.Click();
  Calls first = AllLines();
  form.command2.Click();
  EXPECT_EQ(AllLines(), first);
  EXPECT_NE(Box("t13").Text().find("Méga Octets"), std::string::npos);

  Family(1);
  form.command2.Click();
  Calls other = AllLines();
  form.command2.Click();
  EXPECT_EQ(AllLines(), other);
  for (const auto& line : other) EXPECT_EQ(line.find("Méga Octets"), std::string::npos) << line;
}

TEST_F(PcInfoFixture, MemoryFigureIsMadeOnBothFamilies) {
  Family(1);
  page.InfoPc();
  EXPECT_EQ(p.calls[0], "GlobalMemoryStatus(32)");
}

TEST_F(PcInfoFixture, InfoPcButtonShowsThePageAndFillsIt) {
  Family(2);
  form.sys.Click();
  form.command2.Click();
  EXPECT_TRUE(page.pc.Visible());
  EXPECT_FALSE(form.fwindows.Visible());
  EXPECT_EQ(Box("t13").Text(), "La mémoire physique:               257   Méga Octets");
}

}  // namespace
}  // namespace tamrix
