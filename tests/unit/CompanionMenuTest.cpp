// The menu a double-click opens, against the fake machine: each choice, the files it leaves on the
// Desktop, bad keys, and the end of input.
#include <gtest/gtest.h>

#include <deque>
#include <functional>

#include "companion/Menu.h"
#include "unit/CompanionConsole.h"
#include "unit/FileBytes.h"

using tamrix::test::FileBytes;

namespace tamrix::companion {
namespace {

constexpr int kDesktopDirectory = 0x10;
const std::string kMenu =
    "\r\n"
    "Tamrix Utility 3.0 Pro : le compagnon\r\n"
    "\r\n"
    "  1  Ce que chaque optimisation changerait sur cette machine\r\n"
    "  2  Une sauvegarde sur le Bureau, pour tout remettre comme avant\r\n"
    "  3  Le rapport système sur le Bureau, ouvert dans le navigateur\r\n"
    "  4  Ce qui a changé depuis une sauvegarde\r\n"
    "  0  Quitter (ou Q, ou Échap)\r\n"
    "\r\n"
    "Votre choix : ";
const std::string kUnknown = "Choix inconnu : tapez 1, 2, 3 ou 4, ou 0 pour quitter.\r\n";

// The keys a user types, and the lines where a line is asked for, then the end of input.
Keyboard Typed(std::u32string keys, std::vector<std::string> lines = {}) {
  auto left = std::make_shared<std::deque<char32_t>>(keys.begin(), keys.end());
  auto lefts = std::make_shared<std::deque<std::string>>(lines.begin(), lines.end());
  return {[left]() -> std::optional<char32_t> {
            if (left->empty()) return std::nullopt;
            char32_t k = left->front();
            left->pop_front();
            return k;
          },
          [lefts]() -> std::optional<std::string> {
            if (lefts->empty()) return std::nullopt;
            std::string l = lefts->front();
            lefts->pop_front();
            return l;
          }};
}

std::size_t Count(const std::string& text, const std::string& part) {
  std::size_t n = 0;
  for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) ++n;
  return n;
}

// A folder's path with its separator at the end, as the system's own ('\\' under Wine), so that
// the menu's names and the test's agree letter for letter.
std::string Folder(const fs::path& path) { return (path / "").string(); }

// A machine whose Desktop is a folder of the test's own; the fake's clock says 21/11/2026 20:50:35.
struct MenuMachine {
  FakePlatform m;
  Console c{m};
  TempDir desktop;
  MenuMachine() { m.specialFolders[kDesktopDirectory] = Folder(desktop.path); }
  int Type(std::u32string keys, std::vector<std::string> lines = {}) {
    return Menu(m, c.io, Typed(std::move(keys), std::move(lines)));
  }
  std::string At(const std::string& name) const { return (desktop.path / name).string(); }
};

TEST(CompanionMenu, ShowsItsChoicesAndQuitsOnZeroWritingNothing) {
  MenuMachine d;
  EXPECT_EQ(d.Type(U"0"), kOk);
  EXPECT_EQ(d.c.out, kMenu + "0\r\n");
  EXPECT_EQ(d.c.err, "");
  EXPECT_TRUE(d.desktop.Names().empty());
}

TEST(CompanionMenu, QLowerOrUpperAndEscapeQuitToo) {
  for (char32_t key : {U'q', U'Q', char32_t{0x1B}}) {
    MenuMachine d;
    EXPECT_EQ(d.Type(std::u32string(1, key) + U"1"), kOk) << static_cast<int>(key);
    EXPECT_EQ(Count(d.c.out, "Votre choix : "), 1u) << "nothing after the key that quits";
    EXPECT_EQ(d.c.out.find("Optimiseur Windows"), std::string::npos);
  }
}

TEST(CompanionMenu, TheEndOfInputQuitsAfterTheMenu) {
  MenuMachine d;
  EXPECT_EQ(d.Type(U""), kOk);
  EXPECT_EQ(d.c.out, kMenu + "\r\n");
}

TEST(CompanionMenu, OneShowsWhatTheEtatCommandShowsThenTheMenuAgain) {
  MenuMachine d;
  FakePlatform same;
  Console alone(same);
  ASSERT_EQ(companion::Run({"etat"}, same, alone.io), kOk);
  ASSERT_FALSE(alone.out.empty());
  EXPECT_EQ(d.Type(U"10"), kOk);
  EXPECT_EQ(d.c.out, kMenu + "1\r\n\r\n" + alone.out + kMenu + "0\r\n");
}

TEST(CompanionMenu, TwoWritesADatedBackupAndItsSystemIniCopyOnTheDesktop) {
  MenuMachine d;
  d.m.File("C:\\WINDOWS\\system.ini") = "[386Enh]\r\nConservativeSwapfileUsage=1\r\n";
  EXPECT_EQ(d.Type(U"2"), kOk) << d.c.err;
  EXPECT_EQ(d.desktop.Names(),
            (std::vector<std::string>{"Tamrix sauvegarde 2026-11-21 20h50.reg", "Tamrix sauvegarde 2026-11-21 20h50.system.ini"}));
  std::string reg = d.At("Tamrix sauvegarde 2026-11-21 20h50.reg");
  std::string ini = d.At("Tamrix sauvegarde 2026-11-21 20h50.system.ini");
  EXPECT_EQ(FileBytes(ini), "[386Enh]\r\nConservativeSwapfileUsage=1\r\n");
  EXPECT_EQ(FileBytes(reg).substr(0, 2), "\xFF\xFE") << "a REGEDIT5 file";
  // Where each file went, and how to put everything back.
  EXPECT_NE(d.c.out.find("Sauvegarde écrite dans \"" + reg + "\".\r\n"), std::string::npos) << d.c.out;
  EXPECT_NE(d.c.out.find("Copie de system.ini écrite dans \"" + ini + "\".\r\n"), std::string::npos);
  EXPECT_NE(d.c.out.find("Pour tout remettre : reg import \"" + reg + "\""), std::string::npos);
  EXPECT_EQ(d.c.out.substr(d.c.out.size() - kMenu.size() - 2), kMenu + "\r\n") << "back to the menu";
}

TEST(CompanionMenu, ASecondBackupInTheSameMinuteTakesANewNameAndKeepsTheFirst) {
  MenuMachine d;
  d.m.File("C:\\WINDOWS\\system.ini") = "[boot]\r\n";
  ASSERT_EQ(d.Type(U"2"), kOk);
  std::string first = FileBytes(d.At("Tamrix sauvegarde 2026-11-21 20h50.reg"));
  d.m.File("C:\\WINDOWS\\system.ini") = "[boot]\r\nshell=x\r\n";
  ASSERT_EQ(d.Type(U"2"), kOk) << d.c.err;
  EXPECT_EQ(d.desktop.Names(), (std::vector<std::string>{
                                   "Tamrix sauvegarde 2026-11-21 20h50 (2).reg",
                                   "Tamrix sauvegarde 2026-11-21 20h50 (2).system.ini",
                                   "Tamrix sauvegarde 2026-11-21 20h50.reg",
                                   "Tamrix sauvegarde 2026-11-21 20h50.system.ini",
                               }));
  EXPECT_EQ(FileBytes(d.At("Tamrix sauvegarde 2026-11-21 20h50.reg")), first);
  EXPECT_EQ(FileBytes(d.At("Tamrix sauvegarde 2026-11-21 20h50.system.ini")), "[boot]\r\n");
  EXPECT_EQ(FileBytes(d.At("Tamrix sauvegarde 2026-11-21 20h50 (2).system.ini")), "[boot]\r\nshell=x\r\n");
  EXPECT_EQ(d.c.err, "");
}

TEST(CompanionMenu, ThreeWritesTheHtmlReportOnTheDesktopAndOpensIt) {
  MenuMachine d;
  EXPECT_EQ(d.Type(U"3"), kOk) << d.c.err;
  std::string page = d.At("Tamrix rapport 2026-11-21 20h50.html");
  EXPECT_EQ(d.desktop.Names(), std::vector<std::string>{"Tamrix rapport 2026-11-21 20h50.html"});
  std::string html = FileBytes(page);
  EXPECT_EQ(html.rfind("<!DOCTYPE html>", 0), 0u) << html.substr(0, 80);
  EXPECT_NE(html.find("Information sur votre PC"), std::string::npos);
  EXPECT_NE(d.c.out.find("Rapport écrit dans \"" + page + "\".\r\nOuvert dans votre navigateur.\r\n"), std::string::npos)
      << d.c.out;
  EXPECT_EQ(std::count(d.m.calls.begin(), d.m.calls.end(), "ShellExecuteA(0x0,open," + page + ",,,1)"), 1);
}

struct NoBrowser : FakePlatform {
  std::int64_t ShellExecuteA(WindowHandle, const std::string&, const std::string&, const std::string&, const std::string&,
                             int) override {
    return 31;  // SE_ERR_NOASSOC: nothing opens this kind of file
  }
};

TEST(CompanionMenu, ThreeSaysSoWhenNoBrowserOpensThePage) {
  NoBrowser m;
  Console c(m);
  TempDir desktop;
  m.specialFolders[kDesktopDirectory] = Folder(desktop.path);
  EXPECT_EQ(Menu(m, c.io, Typed(U"3")), kOk);
  EXPECT_EQ(desktop.Names(), std::vector<std::string>{"Tamrix rapport 2026-11-21 20h50.html"});
  EXPECT_NE(c.out.find("Le navigateur ne s'est pas ouvert : ouvrez ce fichier d'un double-clic.\r\n"), std::string::npos);
  EXPECT_EQ(c.out.find("Ouvert dans votre navigateur"), std::string::npos);
}

TEST(CompanionMenu, WithoutADesktopTheFileGoesToTheCurrentFolderAndSaysSo) {
  FakePlatform m;
  Console c(m);
  TempDir here;
  c.io.fullPath = [&here](const std::string& path) { return path == "." ? Folder(here.path) : path; };
  EXPECT_EQ(Menu(m, c.io, Typed(U"3")), kOk) << c.err;
  EXPECT_NE(c.out.find("Le Bureau est introuvable : le fichier va dans le dossier courant.\r\n"), std::string::npos);
  EXPECT_EQ(here.Names(), std::vector<std::string>{"Tamrix rapport 2026-11-21 20h50.html"});
}

TEST(CompanionMenu, AnUnknownKeyGetsASentenceAndTheMenuAgainAndRunsNothing) {
  MenuMachine d;
  EXPECT_EQ(d.Type(U"x9\u00e9-0"), kOk);
  EXPECT_EQ(Count(d.c.out, kUnknown), 4u);
  EXPECT_EQ(Count(d.c.out, "Votre choix : "), 5u);
  EXPECT_NE(d.c.out.find(kMenu + "x\r\n\r\n" + kUnknown + kMenu + "9\r\n"), std::string::npos) << d.c.out;
  EXPECT_EQ(d.c.out.find("Optimiseur Windows"), std::string::npos);
  EXPECT_TRUE(d.desktop.Names().empty());
  EXPECT_EQ(std::count_if(d.m.calls.begin(), d.m.calls.end(), [](const std::string& c) { return c.rfind("ShellExecute", 0) == 0; }),
            0);
}

TEST(CompanionMenu, EnterAndBlanksAfterAChoiceAreNotChoices) {
  MenuMachine d;
  EXPECT_EQ(d.Type(U"\r\n \t0"), kOk);
  EXPECT_EQ(d.c.out, kMenu + "0\r\n");
}

TEST(CompanionMenu, AFailedWriteSaysWhyWithoutTheCommandLinesUsageAndTheMenuComesBack) {
  MenuMachine d;
  d.m.specialFolders[kDesktopDirectory] = Folder(d.desktop.path / "gone");  // a folder that isn't there
  EXPECT_EQ(d.Type(U"3"), kOk);
  EXPECT_NE(d.c.err.find("impossible d'écrire"), std::string::npos) << d.c.err;
  EXPECT_EQ(d.c.err.find("Utilisation :"), std::string::npos);
  EXPECT_EQ(d.c.out.find("Ouvert dans votre navigateur"), std::string::npos);
  EXPECT_EQ(d.c.out.substr(d.c.out.size() - kMenu.size() - 2), kMenu + "\r\n");
}

// What "differences" says of that file on a machine like this one, run as a command.
std::string DifferencesOf(const std::string& reg, const std::function<void(FakePlatform&)>& machine) {
  FakePlatform same;
  machine(same);
  Console alone(same);
  companion::Run({"differences", reg}, same, alone.io);
  return alone.out;
}

// A machine with a backup on its Desktop, then one value changed since.
void Changed(FakePlatform& m) { m.SetValue(hive::CurrentUser, "Control Panel\\Desktop", "MenuShowDelay", regtype::Sz, std::string("0\0", 2)); }

TEST(CompanionMenu, FourComparesTheDesktopsNewestBackupWithTheMachineOnEnter) {
  MenuMachine d;
  d.m.SetValue(hive::CurrentUser, "Control Panel\\Desktop", "MenuShowDelay", regtype::Sz, std::string("400\0", 4));
  ASSERT_EQ(d.Type(U"2"), kOk);
  std::string reg = d.At("Tamrix sauvegarde 2026-11-21 20h50.reg");
  d.m.now.minute = 59;
  ASSERT_EQ(d.Type(U"2"), kOk);
  std::string newest = d.At("Tamrix sauvegarde 2026-11-21 20h59.reg");
  Changed(d.m);
  d.c.out.clear();
  EXPECT_EQ(d.Type(U"4", {""}), kOk) << d.c.err;
  EXPECT_NE(d.c.out.find("La sauvegarde la plus récente du Bureau est \"" + newest + "\".\r\n"
                         "Entrée pour la comparer, ou tapez le chemin d'une autre : "),
            std::string::npos)
      << d.c.out;
  std::string expected = DifferencesOf(newest, [](FakePlatform& m) { Changed(m); });
  ASSERT_NE(expected.find("MenuShowDelay"), std::string::npos) << expected;
  EXPECT_NE(d.c.out.find(expected), std::string::npos) << d.c.out;
  EXPECT_EQ(d.c.out.substr(d.c.out.size() - kMenu.size() - 2), kMenu + "\r\n");
}

TEST(CompanionMenu, FourTakesAPathTypedOrDroppedBetweenQuotes) {
  MenuMachine d;
  ASSERT_EQ(d.Type(U"2"), kOk);
  std::string reg = d.At("Tamrix sauvegarde 2026-11-21 20h50.reg");
  std::string elsewhere = d.At("avant.reg");
  std::filesystem::rename(reg, elsewhere);
  Changed(d.m);
  d.c.out.clear();
  EXPECT_EQ(d.Type(U"4", {"  \"" + elsewhere + "\" "}), kOk) << d.c.err;
  EXPECT_NE(d.c.out.find("Aucune sauvegarde sur le Bureau. Tapez le chemin d'un fichier .reg (Entrée : retour au menu) : "),
            std::string::npos);
  std::string expected = DifferencesOf(elsewhere, [](FakePlatform& m) { Changed(m); });
  EXPECT_NE(d.c.out.find(expected), std::string::npos) << d.c.out;
}

TEST(CompanionMenu, FourWithoutABackupAndEnterGoesBackToTheMenuComparingNothing) {
  MenuMachine d;
  EXPECT_EQ(d.Type(U"40", {""}), kOk);
  EXPECT_EQ(d.c.out, kMenu + "4\r\n\r\n"
                     "Aucune sauvegarde sur le Bureau. Tapez le chemin d'un fichier .reg (Entrée : retour au menu) : " +
                     kMenu + "0\r\n");
}

TEST(CompanionMenu, FourOnAFileThatIsNoBackupSaysSoAndTheMenuComesBack) {
  MenuMachine d;
  std::string missing = d.At("absent.reg");
  EXPECT_EQ(d.Type(U"4", {missing}), kOk);
  EXPECT_FALSE(d.c.err.empty());
  EXPECT_EQ(d.c.err.find("Utilisation :"), std::string::npos) << d.c.err;
  EXPECT_EQ(d.c.out.substr(d.c.out.size() - kMenu.size() - 2), kMenu + "\r\n");
}

TEST(CompanionMenu, TheEndOfInputAtFoursQuestionQuits) {
  MenuMachine d;
  EXPECT_EQ(d.Type(U"4"), kOk);
  EXPECT_EQ(d.c.out.find("Votre choix : ", kMenu.size()), std::string::npos) << "no menu after the end of input";
}

TEST(CompanionMenu, TheNewestBackupIsTheLatestDateAndASecondOfTheSameMinuteComesAfterTheFirst) {
  EXPECT_EQ(NewestBackup({}), std::nullopt);
  EXPECT_EQ(NewestBackup({"rapport.reg", "Tamrix rapport 2026-11-24 20h15.html"}), std::nullopt);
  EXPECT_EQ(NewestBackup({"Tamrix sauvegarde 2026-11-24 20h15.reg", "Tamrix sauvegarde 2026-11-25 08h00.reg",
                          "Tamrix sauvegarde 2026-11-24 23h59.reg"}),
            "Tamrix sauvegarde 2026-11-25 08h00.reg");
  EXPECT_EQ(NewestBackup({"Tamrix sauvegarde 2026-11-24 20h15 (2).reg", "Tamrix sauvegarde 2026-11-24 20h15.reg"}),
            "Tamrix sauvegarde 2026-11-24 20h15 (2).reg");
  EXPECT_EQ(NewestBackup({"Tamrix sauvegarde 2026-11-24 20h15 (10).reg", "Tamrix sauvegarde 2026-11-24 20h15 (9).reg"}),
            "Tamrix sauvegarde 2026-11-24 20h15 (10).reg");
}

TEST(CompanionMenu, DatedNamesSortByTheirDate) {
  EXPECT_EQ(DatedName("Tamrix sauvegarde", {2026, 11, 24, 20, 15, 59}), "Tamrix sauvegarde 2026-11-24 20h15");
  EXPECT_EQ(DatedName("Tamrix rapport", {2027, 1, 2, 3, 4, 5}), "Tamrix rapport 2027-01-02 03h04");
}

}  // namespace
}  // namespace tamrix::companion
