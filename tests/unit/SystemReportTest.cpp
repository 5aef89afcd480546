// The companion's system report: each section holds what the program's own page shows on the
// same machine, the BIOS road that would end the program, a machine without mixers, a drive
// without a medium, the CPU test, the three forms and the command's rules.
#include <gtest/gtest.h>

#include <filesystem>

#include "companion/Command.h"
#include "companion/SystemReport.h"
#include "fake/FakePlatform.h"
#include "forms/Form1.h"
#include "unit/FileBytes.h"
#include "unit/MixerTestMachines.h"

namespace tamrix {
namespace {

using fake::FakePlatform;
using companion::Block;
using companion::Shown;
using companion::SystemReport;
using Lines = std::vector<std::string>;
using T = WmiValue::Type;
namespace fs = std::filesystem;

constexpr std::uint64_t MB = 1024 * 1024;

std::string Sz(const std::string& text) { return text + std::string(1, '\0'); }
WmiValue Text(const std::string& t) { return {.type = T::Text, .text = t}; }
WmiValue Int(std::int64_t n) { return {.type = T::Integer, .integer = n}; }
WmiValue Ints(std::initializer_list<std::int64_t> ns) {
  WmiValue a{.type = T::Array};
  for (auto n : ns) a.items.push_back(Int(n));
  return a;
}

// An XP machine with its registry facts, four drives (a floppy, the system disk, a CD drive
// without its disc, a network drive), a BIOS and a processor in WMI, and two sound cards.
struct Machine {
  FakePlatform p;
  Machine() {
    const char* cv = "software\\microsoft\\windows nt\\currentversion";
    p.SetValue(hive::LocalMachine, cv, "productname", regtype::Sz, Sz("Microsoft Windows XP"));
    p.SetValue(hive::LocalMachine, cv, "currentversion", regtype::Sz, Sz("5.1"));
    p.SetValue(hive::LocalMachine, cv, "RegisteredOwner", regtype::Sz, Sz("Amélie"));
    p.SetValue(hive::LocalMachine, cv, "CurrentType", regtype::Sz, Sz("Uniprocessor Free"));
    p.SetValue(hive::LocalMachine, "system\\currentcontrolset\\control\\TimeZoneInformation", "StandardName", regtype::Sz,
               Sz("Paris, Madrid"));
    const char* cpu = "hardware\\Description\\system\\CentralProcessor\\0";
    p.SetValue(hive::LocalMachine, cpu, "Identifier", regtype::Sz, Sz("x86 Family 15 Model 2 Stepping 9"));
    p.SetValue(hive::LocalMachine, cpu, "VendorIdentifier", regtype::Sz, Sz("GenuineIntel"));
    p.SetValue(hive::LocalMachine, cpu, "~Mhz", regtype::Dword, std::string("\x5A\x09\0\0", 4));  // 2394
    p.driveLetters = "ACDZ";
    p.volumes['A'] = {.label = "", .fileSystem = "FAT", .serial = 0x11112222, .type = 2, .totalBytes = 1457664, .freeBytes = 1457664};
    p.volumes['C'] = {.label = "SYSTEME", .fileSystem = "NTFS", .serial = 0x1A2B3C4D, .type = 3,
                      .totalBytes = 6089567371ull, .freeBytes = 1309889528ull};
    p.volumes['D'] = {.label = "", .fileSystem = "CDFS", .type = 5, .medium = false};
    p.volumes['Z'] = {.label = "PARTAGE", .fileSystem = "NTFS", .serial = 0xBEEF, .type = 4, .totalBytes = 100 * MB, .freeBytes = 25 * MB};
    p.wmiClasses["Win32_BIOS"] = {{
        {"Name", Text("Phoenix")},          {"BiosCharacteristics", Ints({7, 4, 9, 15})},
        {"SMBIOSPresent", {.type = T::Boolean, .boolean = true}},
        {"SMBIOSMajorVersion", Int(2)},     {"SMBIOSMinorVersion", Int(3)},
        {"Version", Text("DELL   - 27d70402")}, {"SMBIOSBIOSVersion", Text("A05")},
        {"ListOfLanguages", {.type = T::Array, .items = {Text("en"), Text("fr"), Text("de")}}},
        {"Description", Text("Phoenix ROM BIOS")}, {"CurrentLanguage", Text("en|US|iso8859-1")},
        {"Manufacturer", Text("Dell Computer Corporation")}, {"Status", Text("OK")},
    }};
    p.wmiClasses["Win32_Processor"] = {{
        {"DeviceID", Text("CPU0")},          {"Availability", Int(3)},    {"AddressWidth", Int(32)},
        {"CpuStatus", Int(1)},               {"CurrentClockSpeed", Int(2394)}, {"MaxClockSpeed", Int(2400)},
        {"L2CacheSize", Int(512)},           {"L2CacheSpeed", Int(1200)}, {"VoltageCaps", Int(4)},
        {"Name", Text("Intel(R) Pentium(R) 4 CPU 2.40GHz")},
    }};
    using namespace test;
    p.mixers = {Mixer("Card A", {Destination("Speakers", "Master Volume", {Line("Wave", "Wave Out"), Line("CD", "CD Audio", 4101, 0)}),
                                 Destination("Rec", "Recording Control", {Line("Mic", "Microphone", 4099, 2)}, 7, 2)}),
                Mixer("Card B", {Destination("Out", "Line Out", {}, 2, 3)})};
  }
};

const Block& Section(const SystemReport& r, const std::string& key) {
  for (const Block& b : r.sections)
    if (b.key == key) return b;
  throw std::runtime_error("no section " + key);
}

const Shown& Of(const Block& b, const std::string& control) {
  for (const Shown& s : b.shown)
    if (s.control == control) return s;
  throw std::runtime_error("no control " + control + " in " + b.title);
}

std::string Line(const Block& b, const std::string& control) {
  const Shown& s = Of(b, control);
  return s.lines.empty() ? std::string() : s.lines[0];
}

// What a window shows of a text box or a label: up to the first NUL.
std::string Window(const Control& c) { return c.Caption().substr(0, c.Caption().find('\0')); }

Lines Split(const std::string& text) {
  Lines lines;
  std::size_t start = 0, end;
  while ((end = text.find("\r\n", start)) != std::string::npos) {
    lines.push_back(text.substr(start, end - start));
    start = end + 2;
  }
  if (start < text.size()) lines.push_back(text.substr(start));
  return lines;
}

// The program itself, on the same machine, its pages opened by their buttons.
struct Program {
  Form1 form;
  explicit Program(FakePlatform& p) : form(p) {
    form.Load();
    form.Timer1.Tick();
    form.sys.Click();  // Test Lab: the Windows page
    form.command2.Click();
  }
};

TEST(SystemReport, TheSectionsComeInTheOrderOfThePages) {
  Machine m;
  SystemReport r = companion::TakeSystemReport(m.p, false);
  Lines keys, titles;
  for (const Block& b : r.sections) {
    keys.push_back(b.key);
    titles.push_back(b.title);
  }
  EXPECT_EQ(keys, (Lines{"accueil", "windows", "pc", "disques", "bios", "processeur", "son"}));
  EXPECT_EQ(titles, (Lines{"Mémoire (page d'accueil)", "Information sur votre Windows :", "Information sur votre PC :",
                           "Information sur vos disques :", "Information sur votre BIOS :",
                           "Laboratoire de test du processeur :", "Information sur le materiel de son :"}));
}

TEST(SystemReport, TheHomeWindowsAndPcSectionsHoldWhatTheirPagesShow) {
  Machine m;
  SystemReport r = companion::TakeSystemReport(m.p, false);
  Program program(m.p);
  const Block& home = Section(r, "accueil");
  auto& hp = program.form.homePage;
  Lines expected, got;
  for (const Label* l : {&hp.lcd3, &hp.lcd2, &hp.lcd1, &hp.l1, &hp.l2, &hp.l3, &hp.l4, &hp.l5, &hp.l6}) {
    expected.push_back(Window(*l));
    got.push_back(Line(home, l->Name()));
  }
  EXPECT_EQ(got, expected);
  // The fake's 512 MB, 128 MB free: the total's added 1 and the decimal comma stand.
  EXPECT_EQ(Line(home, "lcd3"), "Mémoire Vive Totale:     513 Mo");
  EXPECT_EQ(Line(home, "lcd1"), "Mémoire libre:         128,0Mo");
  EXPECT_DOUBLE_EQ(*Of(home, "TamrixPBar2").bar, hp.TamrixPBar2.Shown());
  EXPECT_EQ(Of(home, "TamrixPBar2").caption, "La Ram libre :");

  const Block& windows = Section(r, "windows");
  auto& wp = program.form.infoWindows;
  expected.clear(), got.clear();
  for (const TextBox* t : {&wp.t3, &wp.t4, &wp.t6, &wp.t7, &wp.t8, &wp.t9, &wp.t10, &wp.t11}) {
    expected.push_back(Window(*t));
    got.push_back(Line(windows, t->Name()));
  }
  EXPECT_EQ(got, expected);
  EXPECT_EQ(Line(windows, "t8"), "Nom d'utilisateur:                     Amélie");

  const Block& pc = Section(r, "pc");
  auto& pp = program.form.infoPc;
  expected.clear(), got.clear();
  for (const TextBox* t : {&pp.t1, &pp.t2, &pp.freq, &pp.t5, &pp.t12, &pp.t13, &pp.t14, &pp.t15}) {
    expected.push_back(Window(*t));
    got.push_back(Line(pc, t->Name()));
  }
  EXPECT_EQ(got, expected);
  EXPECT_EQ(Line(pc, "freq"), "Fréquence du processeur en MHz :   2394");
  EXPECT_EQ(Line(pc, "t13"), "La mémoire physique:               513   Méga Octets");
  EXPECT_EQ(Line(pc, "t1"), "Type du Processeur:                 x86 Family 15 Model 2 Stepping 9");  // cut at its NUL
}

TEST(SystemReport, EveryDriveOfTheListHasItsBlockWithTheLinesItsPageShows) {
  Machine m;
  SystemReport r = companion::TakeSystemReport(m.p, false);
  Program program(m.p);
  auto& dp = program.form.drivesPage;
  program.form.TamrixCmd3.Click();
  const Block& drives = Section(r, "disques");
  ASSERT_EQ(drives.blocks.size(), 4u);
  Lines entries;
  for (const Block& d : drives.blocks) entries.push_back(d.title);
  EXPECT_EQ(entries, (Lines{"a:", "c: [SYSTEME]", "d:", "z: [PARTAGE]"}));
  for (int i : {0, 1, 3}) {  // each readable drive, chosen in the program's own list
    dp.Drive1.SetListIndex(i);
    const Block& d = drives.blocks[static_cast<std::size_t>(i)];
    EXPECT_EQ(d.control, "Drive1");
    for (const TextBox* t : {&dp.d1, &dp.d6, &dp.d2, &dp.d3, &dp.d4, &dp.d5}) EXPECT_EQ(Line(d, t->Name()), Window(*t)) << d.title;
    EXPECT_DOUBLE_EQ(*Of(d, "TamrixPBar3").bar, dp.TamrixPBar3.Shown()) << d.title;
  }
  const Block& c = drives.blocks[1];
  EXPECT_EQ(Line(c, "d3"), "N°= de Série :         1A2B-3C4D");
  EXPECT_EQ(Line(c, "d6"), "Type du Lecteur :      Lecteur Fixe");
  EXPECT_EQ(Line(drives.blocks[3], "d6"), "Type du Lecteur :      Lecteur à distance");
  EXPECT_DOUBLE_EQ(*Of(drives.blocks[3], "TamrixPBar3").bar, 25.0);
}

TEST(SystemReport, ADriveWithoutAMediumShowsEmptyLinesAndNoSizeNeverTheDriveBefore) {
  Machine m;
  SystemReport r = companion::TakeSystemReport(m.p, false);
  const Block& d = Section(r, "disques").blocks[2];
  EXPECT_EQ(d.title, "d:");
  EXPECT_EQ(Line(d, "d1"), "");
  EXPECT_EQ(Line(d, "d2"), "");
  EXPECT_EQ(Line(d, "d3"), "");
  EXPECT_EQ(Line(d, "d4"), "Espace Total :         0");
  EXPECT_EQ(Line(d, "d5"), "Espace Libre :         0");
  EXPECT_EQ(Line(d, "d6"), "Type du Lecteur :      CDROM");
  EXPECT_DOUBLE_EQ(*Of(d, "TamrixPBar3").bar, 0.0);
}

TEST(SystemReport, TheBiosReportAndItsTechnologiesAreThoseOfThePageButtons) {
  Machine m;
  SystemReport r = companion::TakeSystemReport(m.p, false);
  Program program(m.p);
  auto& bp = program.form.biosPage;
  const Block& bios = Section(r, "bios");
  ASSERT_EQ(bios.blocks.size(), 2u);
  bp.TamrixCmd9.Click();
  EXPECT_EQ(Of(bios.blocks[0], "Text1").lines, Split(bp.Text1.Text()));
  EXPECT_EQ(Of(bios.blocks[0], "Text1").lines[0], "System BIOS Details : ");
  bp.TamrixCmd10.Click();
  EXPECT_EQ(Of(bios.blocks[1], "List1").lines, bp.List1.Items());
  // The last value is left out, as the page leaves it.
  EXPECT_EQ(Of(bios.blocks[1], "List1").lines, (Lines{"PCI est supportée", "ISA est supportée", "Plug and Play est supportée"}));
}

TEST(SystemReport, ABiosObjectWithoutAPropertyKeepsTheSectionWithOneSentenceAndTheReportGoesOn) {
  Machine m;
  m.p.wmiClasses["Win32_BIOS"][0].erase("Status");
  m.p.wmiClasses["Win32_BIOS"][0].erase("BiosCharacteristics");
  SystemReport r = companion::TakeSystemReport(m.p, false);
  const Block& bios = Section(r, "bios");
  for (const Block& part : bios.blocks) {
    EXPECT_EQ(part.missing,
              "le programme s'arrêterait ici sur cette machine, avec son erreur d'exécution 438 (Object doesn't support "
              "this property or method).")
        << part.title;
    EXPECT_TRUE(part.shown.empty());
  }
  EXPECT_EQ(Line(Section(r, "processeur"), "Cpu1"), "CPU0");
  EXPECT_FALSE(Section(r, "son").blocks.empty());
  std::string text = companion::SystemReportText(r);
  EXPECT_NE(text.find("  Info Bios\r\n    Absent : le programme s'arrêterait ici"), std::string::npos) << text;
}

TEST(SystemReport, WithoutWmiTheProcessorSectionSaysWhyAndKeepsNoLabel) {
  Machine m;
  m.p.wmiBindFails = true;
  SystemReport r = companion::TakeSystemReport(m.p, false);
  const Block& cpu = Section(r, "processeur");
  EXPECT_NE(cpu.missing.find("le programme s'arrêterait ici"), std::string::npos);
  EXPECT_TRUE(cpu.shown.empty());
  EXPECT_EQ(m.p.priorityClass, 0x20u);  // without the CPU test the priority stays
}

TEST(SystemReport, AMemoryTickThatWouldEndTheProgramLeavesItsSectionWithTheSentenceAndTheReportGoesOn) {
  Machine m;
  // A total of -1 MB as the signed field reads it: the total text is "0", and the free share divides by it.
  m.p.memory.dwTotalPhys = 0xFFF00000u;
  m.p.memory.dwAvailPhys = 0;
  SystemReport r = companion::TakeSystemReport(m.p, false);
  const Block& home = Section(r, "accueil");
  EXPECT_EQ(home.missing, "le programme s'arrêterait ici sur cette machine, avec son erreur d'exécution 6 (Overflow).");
  EXPECT_TRUE(home.shown.empty());
  EXPECT_EQ(r.sections.size(), 7u);
  EXPECT_EQ(Line(Section(r, "windows"), "t3"), "Système d'exploitation:            Microsoft Windows XP");
}

TEST(SystemReport, TheProcessorLabelsStandBesideTheirCaptions) {
  Machine m;
  SystemReport r = companion::TakeSystemReport(m.p, false);
  const Block& cpu = Section(r, "processeur");
  Lines lines;
  for (const Shown& s : cpu.shown) lines.push_back(s.caption + " " + s.lines.at(0));
  EXPECT_EQ(lines, (Lines{"CpuID: CPU0", "Avail: 3", "AddrWd: 32", "Status: 1", "VitesseMnt: 2394", "VitesseMax: 2400",
                          "CacheL2: 512", "L2Spd: 1200", "VoltCap: 4", "Nom: Intel(R) Pentium(R) 4 CPU 2.40GHz"}));
}

TEST(SystemReport, TheSoundSectionWalksEveryCardDestinationAndSourceAsThePageShowsThem) {
  Machine m;
  SystemReport r = companion::TakeSystemReport(m.p, false);
  Program program(m.p);
  auto& sp = program.form.soundPage;
  const Block& sound = Section(r, "son");
  EXPECT_TRUE(sound.boxes.empty());
  ASSERT_EQ(sound.blocks.size(), 2u);
  EXPECT_EQ(sound.blocks[0].title, "Card A");
  ASSERT_EQ(sound.blocks[0].blocks.size(), 2u);
  // Card A, Recording Control, Microphone: chosen in the program as the user would.
  sp.cbDstLineList.SetListIndex(1);
  const Block& rec = sound.blocks[0].blocks[1];
  EXPECT_EQ(rec.title, "Recording Control");
  EXPECT_EQ(Of(rec, "lstDstLineInfo").lines, sp.lstDstLineInfo.Items());
  ASSERT_EQ(rec.blocks.size(), 1u);
  EXPECT_EQ(rec.blocks[0].title, "Microphone");
  EXPECT_EQ(Of(rec.blocks[0], "lstSrcLineInfo").lines, sp.lstSrcLineInfo.Items());
  EXPECT_EQ(Of(rec.blocks[0], "lstSrcLineInfo").lines.at(8), "Nombres de Connections:: 0");
  // Card A, Master Volume, CD Audio.
  sp.cbDstLineList.SetListIndex(0);
  sp.cbSrcLineList.SetListIndex(1);
  EXPECT_EQ(Of(sound.blocks[0].blocks[0].blocks[1], "lstSrcLineInfo").lines, sp.lstSrcLineInfo.Items());
  EXPECT_TRUE(m.p.boxes.empty());
}

TEST(SystemReport, ADestinationWithoutSourcesListsNoneAndKeepsTheBoxOfTheClassInWords) {
  Machine m;
  SystemReport r = companion::TakeSystemReport(m.p, false);
  // Choosing the card chooses its first destination and that one's first source: the box stands
  // with the card.
  const Block& card = Section(r, "son").blocks[1];
  ASSERT_EQ(card.boxes.size(), 1u);
  EXPECT_NE(card.boxes[0].find(" src: CMixer:SrcLineID"), std::string::npos) << card.boxes[0];
  const Block& out = card.blocks[0];
  EXPECT_EQ(out.title, "Line Out");
  EXPECT_TRUE(out.boxes.empty());
  ASSERT_EQ(out.blocks.size(), 1u);
  EXPECT_EQ(out.blocks[0].title, "<none>");
  EXPECT_TRUE(out.blocks[0].shown.empty());  // the page would keep the report of the line before
  EXPECT_TRUE(m.p.boxes.empty());  // no box shows: a console command has no window
}

TEST(SystemReport, AMachineWithoutMixersKeepsTheWordsOfTheBoxAndNoCard) {
  Machine m;
  m.p.mixers.clear();
  SystemReport r = companion::TakeSystemReport(m.p, false);
  const Block& sound = Section(r, "son");
  EXPECT_EQ(sound.boxes, (Lines{"No Audio Mixers Detected!"}));
  EXPECT_TRUE(sound.blocks.empty());
  EXPECT_TRUE(m.p.boxes.empty());
  EXPECT_NE(companion::SystemReportText(r).find("Information sur le materiel de son :\r\n  Message : No Audio Mixers Detected!\r\n"),
            std::string::npos);
}

TEST(SystemReport, TheCpuTestAddsTheScoreItsWordsAndItsPicturesWithoutBoxOrBeep) {
  Machine m;
  // T0 at 0, the settling over at the next reading, T1 at 2000, then 4,150,000 passes: 41.5 rounds to 42.
  auto reads = std::make_shared<double>(0);
  m.p.tickSource = [reads]() -> std::uint32_t {
    double n = ++*reads;
    if (n == 1) return 0;
    if (n <= 3) return 2000;
    return n <= 3 + 4150000 ? 2000 : 15000;
  };
  SystemReport r = companion::TakeSystemReport(m.p, true);
  const Block& cpu = Section(r, "processeur");
  EXPECT_EQ(Line(cpu, "iLabel1"), "42");
  EXPECT_EQ(Of(cpu, "rst").caption, "Appréciation");
  EXPECT_EQ(Line(cpu, "rst"), "Résultat: performant");
  EXPECT_EQ(*Of(cpu, "iImage5").lit, true);
  EXPECT_EQ(*Of(cpu, "iImage6").lit, false);
  EXPECT_EQ(m.p.priorityClass, 128u);  // the count ran at the page's priority
  EXPECT_TRUE(m.p.boxes.empty());
  EXPECT_EQ(m.p.beeps, 0);
  std::string text = companion::SystemReportText(r);
  EXPECT_NE(text.find("  Indice 42\r\n  Appréciation Résultat: performant\r\n  Images allumées : 1 sur 4\r\n"), std::string::npos)
      << text;
  EXPECT_EQ(text.find("Sans le test du processeur"), std::string::npos);
}

TEST(SystemReportForms, TheTextHasOneIndentedLineAControlUnderEachSectionTitle) {
  Machine m;
  std::string text = companion::SystemReportText(companion::TakeSystemReport(m.p, false));
  EXPECT_EQ(text.rfind("Tamrix Utility 3.0 Pro : rapport système, pris le 21/11/2026 à 20:50:35.\r\n"
                       "Sans le test du processeur (--test-cpu le fait, en 15 secondes).\r\n\r\n"
                       "Mémoire (page d'accueil)\r\n"
                       "  Mémoire Vive Totale:     513 Mo\r\n",
                       0),
            0u)
      << text;
  EXPECT_NE(text.find("  La Ram libre : 25,0 %\r\n"), std::string::npos);
  EXPECT_NE(text.find("Information sur vos disques :\r\n  Lecteur : a:\r\n    Nom du Volume :     \r\n"), std::string::npos);
  EXPECT_NE(text.find("    Part libre : 25,0 %\r\n"), std::string::npos);
  EXPECT_NE(text.find("  Carte Son : Card B\r\n    Message : "), std::string::npos)
      << text;
}

TEST(SystemReportForms, TheJsonIsPlainAsciiWithOneKeyAControl) {
  Machine m;
  std::string json = companion::SystemReportJson(companion::TakeSystemReport(m.p, false));
  for (unsigned char c : json) ASSERT_LT(c, 0x80u);
  EXPECT_NE(json.find("\"lcd3\": \"M\\u00e9moire Vive Totale:     513 Mo\""), std::string::npos) << json;
  EXPECT_NE(json.find("\"TamrixPBar2\": 24.95"), std::string::npos);
  EXPECT_NE(json.find("\"List1\": [\"PCI est support\\u00e9e\", "), std::string::npos);
  EXPECT_NE(json.find("\"test_cpu\": false"), std::string::npos);
  long depth = 0;
  for (char c : json) depth += c == '{' ? 1 : c == '}' ? -1 : 0;
  EXPECT_EQ(depth, 0);
}

TEST(SystemReportForms, TheHtmlStandsAloneEscapesItsTextAndDrawsEachBar) {
  Machine m;
  std::string html = companion::SystemReportHtml(companion::TakeSystemReport(m.p, false));
  EXPECT_EQ(html.rfind("<!DOCTYPE html>", 0), 0u);
  for (const char* outside : {"<script", "src=", "href=", "url(", "@import"}) EXPECT_EQ(html.find(outside), std::string::npos) << outside;
  std::size_t dials = 0;
  for (std::size_t at = html.find("<svg"); at != std::string::npos; at = html.find("<svg", at + 1)) ++dials;
  EXPECT_EQ(dials, 5u);  // free memory and each of the four drives
  EXPECT_NE(html.find("&lt;none&gt;"), std::string::npos);
  EXPECT_EQ(html.find("<none>"), std::string::npos);
  EXPECT_NE(html.find("fill=\"#00c000\""), std::string::npos);  // the page's green
}

// --- the command -------------------------------------------------------------------------------

struct Console {
  std::string out, err;
  companion::Io io;
  Console() {
    companion::UseStandardFiles(io);
    io.out = [this](const std::string& s) { out += s; };
    io.err = [this](const std::string& s) { err += s; };
    io.toAnsi = [](const std::string& s) { return s; };
    io.fromAnsi = [](const std::string& s) { return s; };
  }
};

struct Folder {
  fs::path path = fs::temp_directory_path() / ("tamrix-rapport-" + std::string(::testing::UnitTest::GetInstance()->current_test_info()->name()));
  Folder() {
    fs::remove_all(path);
    fs::create_directories(path);
  }
  ~Folder() { fs::remove_all(path); }
  std::string Read(const std::string& name) const { return test::FileBytes(path / name); }
};

TEST(SystemReportCommand, WithoutAFileTheReportGoesToTheConsole) {
  Machine m;
  Console c;
  EXPECT_EQ(companion::Run({"RAPPORT"}, m.p, c.io), companion::kOk) << c.err;
  EXPECT_EQ(c.out.rfind("Tamrix Utility 3.0 Pro : rapport système", 0), 0u);
  EXPECT_TRUE(c.err.empty());
}

TEST(SystemReportCommand, AFileIsWrittenWholeAndNeverReplacedWithoutBeingTold) {
  Machine m;
  Console c;
  Folder dir;
  std::string file = (dir.path / "rapport.txt").string();
  ASSERT_EQ(companion::Run({"rapport", file}, m.p, c.io), companion::kOk) << c.err;
  EXPECT_EQ(c.out, "Rapport écrit dans \"" + file + "\".\r\n");
  std::string first = dir.Read("rapport.txt");
  EXPECT_EQ(first.rfind("\xEF\xBB\xBFTamrix Utility 3.0 Pro : rapport système", 0), 0u);
  EXPECT_EQ(companion::Run({"rapport", file, "--json"}, m.p, c.io), companion::kBadInput);
  EXPECT_NE(c.err.find("existe déjà : ajoutez --remplacer pour le remplacer. Rien n'a été écrit."), std::string::npos);
  EXPECT_EQ(dir.Read("rapport.txt"), first);
  ASSERT_EQ(companion::Run({"rapport", "--json", file, "--remplacer"}, m.p, c.io), companion::kOk) << c.err;
  EXPECT_EQ(dir.Read("rapport.txt").rfind("{\"programme\": ", 0), 0u);
  ASSERT_EQ(companion::Run({"rapport", (dir.path / "r.html").string(), "--html"}, m.p, c.io), companion::kOk);
  EXPECT_EQ(dir.Read("r.html").rfind("<!DOCTYPE html>", 0), 0u);
  // Nothing else is left beside them.
  std::size_t files = 0;
  for (const auto& e : fs::directory_iterator(dir.path)) files += e.is_regular_file() ? 1 : 0;
  EXPECT_EQ(files, 2u);
}

TEST(SystemReportCommand, AFileOfTheProgramsOwnIsNeverTheReport) {
  Machine m;
  Console c;
  EXPECT_EQ(companion::Run({"rapport", "C:\\WINDOWS\\system.ini", "--remplacer"}, m.p, c.io), companion::kBadInput);
  EXPECT_NE(c.err.find("est un fichier qu'écrit le programme lui-même"), std::string::npos) << c.err;
}

TEST(SystemReportCommand, BadInputGetsASentenceAndExitCodeTwo) {
  Machine m;
  struct Case {
    Lines args;
    const char* sentence;
  };
  const Case cases[] = {
      {{"rapport", "--json", "--html"}, "tamrix-etat : choisissez --json ou --html, pas les deux.\r\n"},
      {{"--test-cpu"}, "tamrix-etat : l'option --test-cpu ne va qu'avec la commande rapport.\r\n"},
      {{"sauvegarde", "a.reg", "--html"}, "tamrix-etat : l'option --html ne va qu'avec la commande rapport.\r\n"},
      {{"sauvegarde", "a.reg", "--json"}, "tamrix-etat : l'option --json ne va qu'avec les commandes etat, rapport et differences.\r\n"},
      {{"rapport", "--vue", "32"}, "tamrix-etat : l'option --vue ne va qu'avec les commandes etat, sauvegarde et differences.\r\n"},
      {{"rapport", "a.txt", "b.txt"}, "tamrix-etat : un seul fichier de rapport, pas \"b.txt\".\r\n"},
      {{"rapport", ""}, "tamrix-etat : le nom du fichier du rapport est vide.\r\n"},
  };
  for (const Case& k : cases) {
    Console c;
    EXPECT_EQ(companion::Run(k.args, m.p, c.io), companion::kBadInput) << k.sentence;
    EXPECT_EQ(c.err.rfind(k.sentence, 0), 0u) << c.err;
    EXPECT_TRUE(c.out.empty());
  }
}

}  // namespace
}  // namespace tamrix
