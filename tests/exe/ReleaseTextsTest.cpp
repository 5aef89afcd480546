// What the release tells its users and the system: the manifest asks for no rights beyond the
// user's, and says so truly; the users' LISEZMOI.txt says what that means on Vista and later and
// points to the companion that shows which rows a click would lose.
#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <iterator>
#include <string>

namespace {

std::string Read(const std::string& relative) {
  std::ifstream in(std::string(TAMRIX_SOURCE_DIR) + "/" + relative, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), {}};
}

bool Has(const std::string& text, const std::string& part) { return text.find(part) != std::string::npos; }

TEST(ReleaseTexts, TheManifestRunsAsInvokerAndClaimsNoPageAsksForMore) {
  const std::string manifest = Read("resources/tamrix.manifest");
  ASSERT_FALSE(manifest.empty());
  EXPECT_TRUE(Has(manifest, "level=\"asInvoker\""));
  EXPECT_FALSE(Has(manifest, "ask for them"));
  EXPECT_TRUE(Has(manifest, "no page asks for more"));
}

TEST(ReleaseTexts, TheUsersReadmeTellsWhatVistaAndLaterDoWithoutAdministratorRights) {
  const std::string readme = Read("resources/dist/LISEZMOI.txt");
  ASSERT_FALSE(readme.empty());
  EXPECT_TRUE(Has(readme, "Windows Vista"));
  EXPECT_TRUE(Has(readme, "HKEY_LOCAL_MACHINE (HKLM)"));
  EXPECT_TRUE(Has(readme, "system.ini ne changent alors pas"));
  EXPECT_TRUE(Has(readme, "clic droit sur tamrix.exe"));
  EXPECT_TRUE(Has(readme, "« Exécuter en tant qu'administrateur »"));
}

TEST(ReleaseTexts, TheUsersReadmeNamesTheCompanionAndTheRowsAClickWouldLose) {
  const std::string readme = Read("resources/dist/LISEZMOI.txt");
  EXPECT_TRUE(Has(readme, "tamrix-etat.exe"));
  EXPECT_TRUE(Has(readme, "lignes qu'un clic perdrait"));
  EXPECT_TRUE(Has(readme, "« clé manquante »"));
  // The release carries what the readme names.
  const std::string dist = Read("scripts/dist.sh");
  EXPECT_TRUE(Has(dist, "tamrix-{version}/tamrix-etat.exe"));
}

TEST(ReleaseTexts, TheUsersReadmeIsShortAndShowsTheCompanionsMenuAndHowToPutEverythingBack) {
  const std::string readme = Read("resources/dist/LISEZMOI.txt");
  EXPECT_LE(std::count(readme.begin(), readme.end(), '\n'), 80);
  // The menu as the companion shows it after a double-click.
  EXPECT_TRUE(Has(readme, "  1  Ce que chaque optimisation changerait sur cette machine\n"));
  EXPECT_TRUE(Has(readme, "  2  Une sauvegarde sur le Bureau, pour tout remettre comme avant\n"));
  EXPECT_TRUE(Has(readme, "  3  Le rapport système sur le Bureau, ouvert dans le navigateur\n"));
  EXPECT_TRUE(Has(readme, "  4  Ce qui a changé depuis une sauvegarde\n"));
  EXPECT_TRUE(Has(readme, "  0  Quitter (ou Q, ou Échap)\n"));
  EXPECT_TRUE(Has(readme, "reg import \"Tamrix sauvegarde DATE.reg\""));
  EXPECT_TRUE(Has(readme, "DATE.system.ini » sur system.ini"));
  // No line runs past a hundred letters: Notepad shows it without wrapping.
  std::size_t start = 0;
  for (std::size_t end; (end = readme.find('\n', start)) != std::string::npos; start = end + 1) {
    std::string line = readme.substr(start, end - start);
    std::size_t letters = std::count_if(line.begin(), line.end(), [](char c) { return (c & 0xC0) != 0x80; });
    EXPECT_LE(letters, 100u) << line;
  }
}

}  // namespace
