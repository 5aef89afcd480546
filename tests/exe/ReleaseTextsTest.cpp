// What the release tells its users and the system: the manifest asks for no rights beyond the
// user's, and says so truly; the users' LISEZMOI.txt says what that means on Vista and later and
// points to the companion that shows which rows a click would lose.
#include <gtest/gtest.h>

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

}  // namespace
