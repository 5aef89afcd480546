// The companion's system report beside the real tamrix.exe in the same prefix: each section of
// the text report against what the program's pages show, read from their windows, page by page
// as a user opens them.
#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <vector>

#include "e2e/Companion.h"
#include "e2e/Driver.h"
#include "e2e/RegistrySnapshot.h"

namespace tamrix::e2e {
namespace {

using Lines = std::vector<std::string>;

// The text report's sections: the lines under each title, the section's indent of two blanks
// taken off.
std::map<std::string, Lines> Sections(std::string text) {
  if (text.rfind("\xEF\xBB\xBF", 0) == 0) text.erase(0, 3);
  std::map<std::string, Lines> sections;
  Lines* current = nullptr;
  std::size_t start = 0, end;
  while ((end = text.find("\r\n", start)) != std::string::npos) {
    std::string line = text.substr(start, end - start);
    start = end + 2;
    if (line.empty()) continue;
    if (line[0] != ' ')
      current = &sections[line];
    else if (current)
      current->push_back(line.substr(2));
  }
  return sections;
}

class SystemReportOnWine : public ::testing::Test {
 protected:
  void SetUp() override {
    file = TempPath("tamrix-rapport-systeme.txt");
    DeleteFileA(file.c_str());
  }
  void TearDown() override {
    DeleteFileA(file.c_str());
    if (app.Running()) {
      app.Click("TamrixCmd1");
      app.WaitExit();
    }
  }
  std::map<std::string, Lines> TakeReport() {
    Output o = RunEtat("rapport \"" + file + "\"");
    EXPECT_EQ(o.code, 0u) << FromOem(o.err);
    EXPECT_EQ(FromOem(o.out), "Rapport écrit dans \"" + file + "\".\r\n");
    return Sections(ReadWholeFile(file).value_or(""));
  }
  // Waits for the page to show what the report says, then compares: a page that shows something
  // else fails with both in view.
  void ExpectShows(const Lines& expected, const std::function<Lines()>& shown) {
    WaitUntil([&] { return shown() == expected; }, 5000);
    EXPECT_EQ(shown(), expected);
  }
  std::string file;
  App app;
};

TEST_F(SystemReportOnWine, TheHomeWindowsAndPcSectionsAreTheLinesOfTheirPages) {
  auto sections = TakeReport();
  ASSERT_TRUE(app.Start());
  ASSERT_TRUE(WaitUntil([&] { return !app.Text("lcd3").empty(); }));
  // The figures that stand still between the report and the page: the totals.
  const Lines& home = sections["Mémoire (page d'accueil)"];
  ASSERT_EQ(home.size(), 10u);
  EXPECT_EQ(home[0], app.Text("lcd3"));
  EXPECT_EQ(home[4], app.Text("l1"));
  EXPECT_EQ(home[7], app.Text("l4"));
  EXPECT_EQ(home[3].rfind("La Ram libre : ", 0), 0u) << home[3];

  app.Click("sys");
  ASSERT_TRUE(WaitUntil([&] { return app.Shown("fwindows") && app.Text("t3").find("Inconnu") == std::string::npos; }));
  Lines windows;
  for (const char* t : {"t3", "t4", "t6", "t7", "t8", "t9", "t10", "t11"}) windows.push_back(app.Text(t));
  EXPECT_EQ(sections["Information sur votre Windows :"], windows);

  app.Click("command2");
  ASSERT_TRUE(WaitUntil([&] { return app.Shown("pc") && app.Text("t1").find("Inconnu") == std::string::npos; }));
  Lines pc;
  for (const char* t : {"t1", "t2", "freq", "t5", "t12", "t13", "t14", "t15"}) pc.push_back(app.Text(t));
  EXPECT_EQ(sections["Information sur votre PC :"], pc);
  Screenshot("rapport-pc-page");
}

TEST_F(SystemReportOnWine, EveryDriveOfTheReportIsWhatTheDrivePageShowsForIt) {
  auto sections = TakeReport();
  const Lines& report = sections["Information sur vos disques :"];
  ASSERT_TRUE(app.Start());
  app.Click("sys");
  ASSERT_TRUE(WaitUntil([&] { return app.Shown("Frame3"); }));
  app.Click("TamrixCmd3");
  ASSERT_TRUE(WaitUntil([&] { return app.Shown("disque") && !app.Text("d6").empty(); }));
  Lines drives = app.Items("Drive1");
  ASSERT_FALSE(drives.empty());
  ASSERT_EQ(report.size(), drives.size() * 8) << "a heading, six lines and the bar a drive";
  for (std::size_t i = 0; i < drives.size(); ++i) {
    const Lines block(report.begin() + static_cast<long>(i * 8), report.begin() + static_cast<long>(i * 8 + 8));
    EXPECT_EQ(block[0], "Lecteur : " + drives[i]);
    if (app.Selection("Drive1") != static_cast<int>(i)) app.Choose("Drive1", static_cast<int>(i));
    // Five lines stand still; the free space may move a little between the two readings.
    Lines fixed(block.begin() + 1, block.begin() + 6);
    for (std::string& line : fixed) line = line.substr(2);
    ExpectShows(fixed, [&] {
      Lines shown;
      for (const char* d : {"d1", "d6", "d2", "d3", "d4"}) shown.push_back(app.Text(d));
      return shown;
    });
    // Other programs write to the same disk between the report and the page: a fiftieth of the
    // total, at least 64 MB, is what the free space may move by in between.
    const std::string free = "Espace Libre :         ", total = "Espace Total :         ";
    double slack = std::max(64.0, FigureAfter(block[5].substr(2), total) / 50);
    EXPECT_NEAR(FigureAfter(block[6].substr(2), free), FigureAfter(app.Text("d5"), free), slack) << block[6];
    EXPECT_EQ(block[7].rfind("  Part libre : ", 0), 0u) << block[7];
  }
}

TEST_F(SystemReportOnWine, TheProcessorSectionIsTheLabelsOfTheCpuPageAndTheBiosSectionSaysWhyItIsMissing) {
  auto sections = TakeReport();
  ASSERT_TRUE(app.Start());
  app.Click("sys");
  ASSERT_TRUE(WaitUntil([&] { return app.Shown("Frame3"); }));
  app.Click("TamrixCmd4");
  ASSERT_TRUE(WaitUntil([&] { return app.Shown("FrmCpu") && !app.Text("Cpu1").empty(); }, 15000));
  const char* captions[] = {"CpuID:", "Avail:", "AddrWd:", "Status:", "VitesseMnt:", "VitesseMax:", "CacheL2:", "L2Spd:", "VoltCap:", "Nom:"};
  const Lines& cpu = sections["Laboratoire de test du processeur :"];
  ASSERT_EQ(cpu.size(), 10u);
  for (int i = 0; i < 10; ++i) {
    std::string expected = std::string(captions[i]) + " " + app.Text("Cpu" + std::to_string(i + 1));
    // The clock of the moment may move between the two readings.
    if (i == 4)
      EXPECT_EQ(cpu[4].rfind("VitesseMnt: ", 0), 0u) << cpu[4];
    else
      EXPECT_EQ(cpu[static_cast<std::size_t>(i)], expected);
  }
  Screenshot("rapport-cpu-page");
  // Wine's Win32_BIOS lacks properties the page reads: the program's report button ends it there,
  // and the report keeps one sentence for each button instead.
  const Lines& bios = sections["Information sur votre BIOS :"];
  ASSERT_EQ(bios.size(), 4u);
  EXPECT_EQ(bios[0], "Info Bios");
  EXPECT_EQ(bios[1].rfind("  Absent : le programme s'arrêterait ici sur cette machine, avec son erreur d'exécution ", 0), 0u)
      << bios[1];
  EXPECT_EQ(bios[2], "Tech Support");
}

TEST_F(SystemReportOnWine, TheSoundSectionWalksTheCardsAsTheSoundPageShowsThem) {
  auto sections = TakeReport();
  const Lines& report = sections["Information sur le materiel de son :"];
  ASSERT_TRUE(app.Start());
  app.Click("sys");
  ASSERT_TRUE(WaitUntil([&] { return app.Shown("Frame3"); }));
  app.Click("TamrixCmd11");
  ASSERT_TRUE(WaitUntil([&] { return app.Shown("Frmson"); }));
  Lines cards = app.Items("cbMixerList");
  ASSERT_GE(cards.size(), 1u) << "the test's PulseAudio gives Wine mixers";
  // The program walked as a user walks it; each choice waits for the report of what it chose.
  Lines shown;
  auto rowsOf = [&](const std::string& list, const std::string& name) {
    WaitUntil([&] { Lines rows = app.Items(list); return rows.size() > 1 && rows[1] == name; }, 5000);
    return app.Items(list);
  };
  for (std::size_t m = 0; m < cards.size(); ++m) {
    if (app.Selection("cbMixerList") != static_cast<int>(m)) {
      app.Choose("cbMixerList", static_cast<int>(m));
      WaitUntil([&] { return app.Selection("cbMixerList") == static_cast<int>(m) && app.Selection("cbDstLineList") == 0; }, 5000);
    }
    shown.push_back("Carte Son : " + cards[m]);
    Lines destinations = app.Items("cbDstLineList");
    for (std::size_t d = 0; d < destinations.size(); ++d) {
      if (app.Selection("cbDstLineList") != static_cast<int>(d)) app.Choose("cbDstLineList", static_cast<int>(d));
      shown.push_back("  Ligne de destination : " + destinations[d]);
      for (const std::string& row : rowsOf("lstDstLineInfo", destinations[d])) shown.push_back("    " + row);
      Lines sources = app.Items("cbSrcLineList");
      for (std::size_t s = 0; s < sources.size(); ++s) {
        if (app.Selection("cbSrcLineList") != static_cast<int>(s)) app.Choose("cbSrcLineList", static_cast<int>(s));
        shown.push_back("    Ligne source : " + sources[s]);
        for (const std::string& row : rowsOf("lstSrcLineInfo", sources[s])) shown.push_back("      " + row);
      }
    }
  }
  EXPECT_EQ(report, shown);
}

}  // namespace
}  // namespace tamrix::e2e
