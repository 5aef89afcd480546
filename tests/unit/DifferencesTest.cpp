// "differences": a backup or any registry-editor file against the fake machine now, and the
// backup's copy of system.ini against system.ini, through the command as a user types it.
#include <gtest/gtest.h>

#include <cstdio>
#include <filesystem>

#include "companion/Command.h"
#include "companion/Differences.h"
#include "fake/FakePlatform.h"
#include "unit/CompanionConsole.h"
#include "platform/Utf16.h"

namespace tamrix::companion {
namespace {

const HKey CU = hive::CurrentUser, LM = hive::LocalMachine;
const char* const kDesktop = "Control Panel\\Desktop";
const char* const kPaintIcon = "Software\\CLASSES\\Paint.Picture\\DefaultIcon";
const char* const kSystemIni = "C:\\WINDOWS\\system.ini";

std::string Utf16(const std::string& utf8) { return std::string("\xff\xfe", 2) + Utf8ToUtf16Le(utf8).value(); }
std::string Regedit5(const std::string& body) { return Utf16("Windows Registry Editor Version 5.00\r\n\r\n" + body); }

struct Result {
  int code;
  std::string out, err;
};
Result Differ(FakePlatform& m, std::vector<std::string> args, std::uint32_t ownView = keyaccess::View64) {
  Console c(m);
  int code = companion::Run(args, m, c.io, ownView);
  return {code, c.out, c.err};
}

// The part of the report that lists one key, up to the blank line after it.
std::string Block(const std::string& out, const std::string& key) {
  std::size_t at = out.find("[" + key + "]\r\n");
  if (at == std::string::npos) return "<no block for " + key + ">";
  return out.substr(at, out.find("\r\n\r\n", at) + 4 - at);
}

std::string Last(const std::string& out) {
  std::size_t end = out.size() >= 2 ? out.size() - 2 : 0;
  std::size_t at = out.rfind("\r\n", end ? end - 1 : 0);
  return at == std::string::npos ? out : out.substr(at + 2);
}

// A machine with some of the places the catalogues write, as a user's might be.
void UsersMachine(FakePlatform& m) {
  m.SetValue(CU, kDesktop, "MenuShowDelay", regtype::Sz, std::string("400\0", 4));
  m.SetValue(CU, kDesktop, "AutoEndTasks", regtype::Sz, std::string("0\0", 2));
  m.SetValue(LM, kPaintIcon, "", regtype::ExpandSz, std::string("%SystemRoot%\\mspaint.exe,1\0", 27));
  m.File(kSystemIni) = "[boot]\r\nshell=Explorer.exe\r\n[386Enh]\r\nMaxBps=1200\r\nMinSPs=4\r\n";
}

TEST(Differences, NothingChangedSinceABackupExitsZeroAndSaysSo) {
  FakePlatform m;
  UsersMachine(m);
  TempDir dir;
  std::string reg = (dir.path / "avant.reg").string();
  ASSERT_EQ(companion::Run({"sauvegarde", reg}, m, Console(m).io), kOk);
  Result r = Differ(m, {"differences", reg});
  EXPECT_EQ(r.code, 0) << r.out;
  EXPECT_TRUE(r.err.empty());
  EXPECT_EQ(r.out.rfind("Ce qui a changé depuis la sauvegarde \"" + reg + "\" sur cette machine.\r\n\r\n", 0), 0u) << r.out;
  EXPECT_NE(r.out.find("system.ini comparé à sa copie \"" + (dir.path / "avant.system.ini").string() + "\".\r\n"),
            std::string::npos);
  EXPECT_EQ(Last(r.out).rfind("=> aucune différence : ", 0), 0u) << Last(r.out);
  EXPECT_NE(Last(r.out).find(" valeurs identiques.\r\n"), std::string::npos) << "French plurals: " << Last(r.out);
}

TEST(Differences, ListsWhatChangedAppearedAndWentSinceABackupGroupedByKeyAndExitsOne) {
  FakePlatform m;
  UsersMachine(m);
  TempDir dir;
  std::string reg = (dir.path / "avant.reg").string();
  ASSERT_EQ(companion::Run({"sauvegarde", reg}, m, Console(m).io), kOk);
  m.SetValue(CU, kDesktop, "MenuShowDelay", regtype::Sz, "0");
  m.SetValue(CU, kDesktop, "WaitToKillAppTimeout", regtype::Sz, "1000");
  m.DeleteKeyTree(LM, kPaintIcon);
  m.File(kSystemIni) = "[boot]\r\nshell=Explorer.exe\r\n[386Enh]\r\nmaxbps=65530\r\n[Ports]\r\nCOM1:=921600,n,8,1,x\r\n";
  Result r = Differ(m, {"differences", reg});
  EXPECT_EQ(r.code, 1);
  EXPECT_EQ(Block(r.out, "HKEY_CURRENT_USER\\Control Panel\\Desktop"),
            "[HKEY_CURRENT_USER\\Control Panel\\Desktop]\r\n"
            "  apparue   \"WaitToKillAppTimeout\" : absente du fichier, maintenant \"1000\" (REG_SZ)\r\n"
            "  changée   \"MenuShowDelay\" : avant \"400\" (REG_SZ), maintenant \"0\" (REG_SZ)\r\n\r\n");
  EXPECT_EQ(Block(r.out, "HKEY_LOCAL_MACHINE\\Software\\CLASSES\\Paint.Picture\\DefaultIcon"),
            "[HKEY_LOCAL_MACHINE\\Software\\CLASSES\\Paint.Picture\\DefaultIcon]\r\n"
            "  clé disparue : le fichier la remet, elle n'existe plus\r\n"
            "  disparue  @ : avant \"%SystemRoot%\\mspaint.exe,1\" (REG_EXPAND_SZ), maintenant absente\r\n\r\n");
  std::size_t ini = r.out.find("system.ini [386Enh]\r\n");
  ASSERT_NE(ini, std::string::npos) << r.out;
  EXPECT_EQ(r.out.substr(ini, r.out.find("\r\n\r\n", ini) + 4 - ini),
            "system.ini [386Enh]\r\n"
            "  changée   MaxBps : avant \"1200\", maintenant \"65530\"\r\n"
            "  disparue  MinSPs : avant \"4\", maintenant absente\r\n"
            "system.ini [Ports]\r\n"
            "  apparue   COM1: : absente de la copie, maintenant \"921600,n,8,1,x\"\r\n\r\n");
  EXPECT_EQ(r.out.find("AutoEndTasks"), std::string::npos) << "what stayed the same is not listed";
  EXPECT_EQ(r.out.find("[boot]"), std::string::npos);
  EXPECT_EQ(Last(r.out).rfind("=> 6 différences : 2 changées, 2 apparues, 2 disparues ; ", 0), 0u) << Last(r.out);
}

TEST(Differences, AValueWhoseTypeChangedShowsBothTypes) {
  FakePlatform m;
  m.SetDword(CU, kDesktop, "SmoothScroll", 0);
  TempDir dir;
  std::string reg = dir.Write("a.reg", Regedit5("[HKEY_CURRENT_USER\\Control Panel\\Desktop]\r\n\"SmoothScroll\"=\"0\"\r\n"));
  Result r = Differ(m, {"differences", reg});
  EXPECT_EQ(r.code, 1);
  EXPECT_NE(r.out.find("  changée   \"SmoothScroll\" : avant \"0\" (REG_SZ), maintenant 0 (REG_DWORD)\r\n"), std::string::npos)
      << r.out;
}

TEST(Differences, ATextWithOrWithoutItsTerminatorIsTheSame) {
  FakePlatform m;
  m.SetValue(CU, kDesktop, "MenuShowDelay", regtype::Sz, "0");
  TempDir dir;
  std::string reg = dir.Write("a.reg", Regedit5("[HKEY_CURRENT_USER\\Control Panel\\Desktop]\r\n\"MenuShowDelay\"=\"0\"\r\n"));
  Result r = Differ(m, {"differences", reg});
  EXPECT_EQ(r.code, 0) << r.out;
  EXPECT_NE(r.out.find("=> aucune différence : 1 valeur identique.\r\n"), std::string::npos) << r.out;
}

TEST(Differences, AValueOrAKeyTheFileDeletesThatStandsNowHasAppeared) {
  FakePlatform m;
  m.SetDword(CU, "Software\\Microsoft\\Windows\\CurrentVersion\\Policies\\Explorer", "Nofind", 1);
  m.SetValue(LM, kPaintIcon, "", regtype::Sz, "icône");
  m.SetValue(LM, std::string(kPaintIcon) + "\\Petite", "q", regtype::Dword, std::string("\x02\0\0\0", 4));
  TempDir dir;
  std::string reg = dir.Write(
      "a.reg", Regedit5("[HKEY_CURRENT_USER\\Software\\Microsoft\\Windows\\CurrentVersion\\Policies\\Explorer]\r\n"
                        "\"Nofind\"=-\r\n\"Norun\"=-\r\n\r\n"
                        "[-HKEY_LOCAL_MACHINE\\Software\\CLASSES\\Paint.Picture\\DefaultIcon]\r\n"));
  Result r = Differ(m, {"differences", reg});
  EXPECT_EQ(r.code, 1);
  EXPECT_EQ(Block(r.out, "HKEY_CURRENT_USER\\Software\\Microsoft\\Windows\\CurrentVersion\\Policies\\Explorer"),
            "[HKEY_CURRENT_USER\\Software\\Microsoft\\Windows\\CurrentVersion\\Policies\\Explorer]\r\n"
            "  apparue   \"Nofind\" : absente du fichier, maintenant 1 (REG_DWORD)\r\n\r\n");
  EXPECT_EQ(Block(r.out, "HKEY_LOCAL_MACHINE\\Software\\CLASSES\\Paint.Picture\\DefaultIcon"),
            "[HKEY_LOCAL_MACHINE\\Software\\CLASSES\\Paint.Picture\\DefaultIcon]\r\n"
            "  clé apparue : le fichier ne l'a pas, elle existe maintenant\r\n"
            "  apparue   @ : absente du fichier, maintenant \"icône\" (REG_SZ)\r\n\r\n");
  EXPECT_EQ(Block(r.out, "HKEY_LOCAL_MACHINE\\Software\\CLASSES\\Paint.Picture\\DefaultIcon\\Petite"),
            "[HKEY_LOCAL_MACHINE\\Software\\CLASSES\\Paint.Picture\\DefaultIcon\\Petite]\r\n"
            "  clé apparue : le fichier ne l'a pas, elle existe maintenant\r\n"
            "  apparue   \"q\" : absente du fichier, maintenant 2 (REG_DWORD)\r\n\r\n");
  EXPECT_EQ(Last(r.out), "=> 3 différences : 0 changée, 3 apparues, 0 disparue ; 1 identique ; clés : 2 apparues, 0 disparue.\r\n");
}

TEST(Differences, AKeyDeletedThenPutBackHoldsExactlyWhatTheFileListsAndAnythingElseHasAppeared) {
  FakePlatform m;
  m.SetValue(LM, kPaintIcon, "", regtype::Sz, "a");
  TempDir dir;
  std::string reg = dir.Write("a.reg", Regedit5("[-HKEY_LOCAL_MACHINE\\Software\\CLASSES\\Paint.Picture\\DefaultIcon]\r\n\r\n"
                                                "[HKEY_LOCAL_MACHINE\\Software\\CLASSES\\Paint.Picture\\DefaultIcon]\r\n"
                                                "@=\"a\"\r\n\r\n"));
  Result same = Differ(m, {"differences", reg});
  EXPECT_EQ(same.code, 0) << "a key the file empties and puts back as it stands is the same: " << same.out;
  m.SetValue(LM, kPaintIcon, "Taille", regtype::Sz, "32");
  m.SetValue(LM, std::string(kPaintIcon) + "\\Nouvelle", "n", regtype::Sz, "après");
  Result r = Differ(m, {"differences", reg});
  EXPECT_EQ(r.code, 1);
  EXPECT_EQ(Block(r.out, "HKEY_LOCAL_MACHINE\\Software\\CLASSES\\Paint.Picture\\DefaultIcon"),
            "[HKEY_LOCAL_MACHINE\\Software\\CLASSES\\Paint.Picture\\DefaultIcon]\r\n"
            "  apparue   \"Taille\" : absente du fichier, maintenant \"32\" (REG_SZ)\r\n\r\n");
  EXPECT_EQ(Block(r.out, "HKEY_LOCAL_MACHINE\\Software\\CLASSES\\Paint.Picture\\DefaultIcon\\Nouvelle"),
            "[HKEY_LOCAL_MACHINE\\Software\\CLASSES\\Paint.Picture\\DefaultIcon\\Nouvelle]\r\n"
            "  clé apparue : le fichier ne l'a pas, elle existe maintenant\r\n"
            "  apparue   \"n\" : absente du fichier, maintenant \"après\" (REG_SZ)\r\n\r\n");
}

TEST(Differences, AKeyThatIsBackAfterTheFileDeletedItLaterIsListedWithItsValues) {
  FakePlatform m;
  m.SetValue(CU, "Software\\Tamrix", "x", regtype::Sz, "1");
  TempDir dir;
  // The later deletion wins, as it does on import.
  std::string reg = dir.Write("a.reg", Regedit5("[HKEY_CURRENT_USER\\Software\\Tamrix]\r\n\"x\"=\"1\"\r\n\r\n"
                                                "[-HKEY_CURRENT_USER\\Software\\Tamrix]\r\n"));
  Result r = Differ(m, {"differences", reg});
  EXPECT_EQ(r.code, 1);
  EXPECT_EQ(Block(r.out, "HKEY_CURRENT_USER\\Software\\Tamrix"),
            "[HKEY_CURRENT_USER\\Software\\Tamrix]\r\n"
            "  clé apparue : le fichier ne l'a pas, elle existe maintenant\r\n"
            "  apparue   \"x\" : absente du fichier, maintenant \"1\" (REG_SZ)\r\n\r\n");
}

TEST(Differences, AFileWithNothingInItHasNothingToCompareAndExitsZero) {
  FakePlatform m;
  TempDir dir;
  std::string reg = dir.Write("vide.reg", Regedit5(""));
  Result r = Differ(m, {"differences", reg});
  EXPECT_EQ(r.code, 0);
  EXPECT_EQ(r.out, "Ce qui diffère du fichier \"" + reg + "\" sur cette machine.\r\n\r\n"
                   "Le fichier ne nomme aucune valeur.\r\n=> aucune différence : 0 valeur identique.\r\n");
}

TEST(Differences, MalformedLinesAreReportedWithTheirNumbersAndTheRestIsStillCompared) {
  FakePlatform m;
  m.SetValue(CU, kDesktop, "MenuShowDelay", regtype::Sz, "0");
  TempDir dir;
  std::string reg = dir.Write("a.reg", Regedit5("[HKEY_CURRENT_USER\\Control Panel\\Desktop]\r\n\"Bad\"=dword:xyz\r\n"
                                                "\"MenuShowDelay\"=\"400\"\r\n"));
  Result r = Differ(m, {"differences", reg});
  EXPECT_EQ(r.code, 1);
  EXPECT_NE(r.out.find("Lignes illisibles, passées :\r\n  ligne 4 : un dword prend de 1 à 8 chiffres hexadécimaux.\r\n"),
            std::string::npos)
      << r.out;
  EXPECT_NE(r.out.find("  changée   \"MenuShowDelay\" : avant \"400\" (REG_SZ), maintenant \"0\" (REG_SZ)\r\n"), std::string::npos);
}

TEST(Differences, AKeyOfAnotherHiveIsNamedAndNotCompared) {
  FakePlatform m;
  TempDir dir;
  std::string reg = dir.Write("a.reg", Regedit5("[HKEY_CLASSES_ROOT\\.txt]\r\n@=\"txtfile\"\r\n"));
  Result r = Differ(m, {"differences", reg});
  EXPECT_EQ(r.code, 0);
  EXPECT_NE(r.out.find("Clé d'une ruche que le compagnon ne compare pas : [HKEY_CLASSES_ROOT\\.txt]\r\n"), std::string::npos);
}

TEST(Differences, ARegedit4FileInTheAnsiCodePageIsCompared) {
  FakePlatform m;
  m.SetValue(CU, "Software\\Tamrix", "Dossier", regtype::Sz, "été");
  TempDir dir;
  std::string reg = dir.Write("a.reg", "REGEDIT4\r\n\r\n[HKEY_CURRENT_USER\\Software\\Tamrix]\r\n\"Dossier\"=\"\xe9t\xe9\"\r\n");
  Console c(m);
  // A French system's code page: the byte E9 is "é".
  c.io.fromAnsi = [](const std::string& s) {
    std::string out;
    for (unsigned char ch : s) out += ch == 0xE9 ? std::string("é") : std::string(1, static_cast<char>(ch));
    return out;
  };
  EXPECT_EQ(companion::Run({"differences", reg}, m, c.io), 0) << c.out;
}

TEST(Differences, TheCommandWordIsTakenInAnyCaseWithOrWithoutItsAccent) {
  FakePlatform m;
  TempDir dir;
  std::string reg = dir.Write("vide.reg", Regedit5(""));
  for (const char* word : {"differences", "différences", "DIFFÉRENCES", "Differences", "DIFFERENCES"}) {
    Result r = Differ(m, {word, reg});
    EXPECT_EQ(r.code, 0) << word << " " << r.err;
  }
}

TEST(Differences, BadInputGetsOneSentenceAndCode2) {
  FakePlatform m;
  TempDir dir;
  std::string missing = (dir.path / "absent.reg").string();
  Result none = Differ(m, {"differences", missing});
  EXPECT_EQ(none.code, kBadInput);
  EXPECT_TRUE(none.out.empty());
  EXPECT_EQ(none.err, "tamrix-etat : le fichier \"" + missing + "\" est introuvable ou illisible.\r\n");

  std::string ini = dir.Write("system.ini", "[boot]\r\nshell=Explorer.exe\r\n");
  Result notReg = Differ(m, {"differences", ini});
  EXPECT_EQ(notReg.code, kBadInput);
  EXPECT_EQ(notReg.err, "tamrix-etat : \"" + ini + "\" n'est pas un fichier de l'Éditeur du Registre : sa première ligne "
                        "n'est ni \"Windows Registry Editor Version 5.00\" ni \"REGEDIT4\".\r\n");
  Result folder = Differ(m, {"differences", dir.path.string()});
  EXPECT_EQ(folder.code, kBadInput);

  Result unknown = Differ(m, {"differences", ini, "--remplacer"});
  EXPECT_EQ(unknown.code, kBadInput);
  EXPECT_EQ(unknown.err.rfind("tamrix-etat : l'option --remplacer ne va qu'avec les commandes sauvegarde et rapport.\r\n", 0), 0u)
      << unknown.err;
  Result noName = Differ(m, {"differences"});
  EXPECT_EQ(noName.code, kBadInput);
  EXPECT_EQ(noName.err.rfind("tamrix-etat : il manque le nom du fichier .reg à comparer.\r\n", 0), 0u);
  Result two = Differ(m, {"differences", ini, ini});
  EXPECT_EQ(two.code, kBadInput);
  Result vite = Differ(m, {"differences", ini, "--vite"});
  EXPECT_EQ(vite.err.rfind("tamrix-etat : option inconnue : \"--vite\".\r\n", 0), 0u);
  EXPECT_TRUE(m.calls.empty()) << "nothing is read from the machine for bad input";
}

TEST(Differences, NothingIsEverWrittenAndKeysAreOpenedForReadingOnly) {
  FakePlatform m;
  UsersMachine(m);
  TempDir dir;
  std::string reg = (dir.path / "avant.reg").string();
  ASSERT_EQ(companion::Run({"sauvegarde", reg}, m, Console(m).io), kOk);
  m.DeleteKeyTree(LM, kPaintIcon);
  m.ClearCalls();
  std::string ini = m.File(kSystemIni);
  Differ(m, {"differences", reg});
  ASSERT_FALSE(m.calls.empty());
  for (const std::string& call : m.calls) {
    EXPECT_EQ(call.find("RegSetValueExA"), std::string::npos) << call;
    EXPECT_EQ(call.find("RegDelete"), std::string::npos) << call;
    EXPECT_EQ(call.find("WritePrivateProfileStringA"), std::string::npos) << call;
    // Read rights, with or without a view's bit.
    if (call.rfind("RegOpenKeyExA", 0) == 0) {
      bool read = call.find(",0x20019)") != std::string::npos || call.find(",0x20119)") != std::string::npos ||
                  call.find(",0x20219)") != std::string::npos;
      EXPECT_TRUE(read) << call;
    }
  }
  EXPECT_FALSE(m.KeyExists(LM, kPaintIcon));
  EXPECT_EQ(m.File(kSystemIni), ini);
  EXPECT_EQ(m.OpenHandles(), 0u);
}

// A path as a JSON string spells it: the backslashes of a Windows path doubled.
std::string JsonText(const std::string& s) {
  std::string out;
  for (char c : s) out += c == '\\' ? std::string("\\\\") : std::string(1, c);
  return out;
}

TEST(Differences, JsonGivesTheSameFactsAsOneAsciiObject) {
  FakePlatform m;
  m.SetValue(CU, kDesktop, "MenuShowDelay", regtype::Sz, "0");
  TempDir dir;
  std::string reg = dir.Write("a.reg", Regedit5("[HKEY_CURRENT_USER\\Control Panel\\Desktop]\r\n\"MenuShowDelay\"=\"400\"\r\n"
                                                "\"Parti\"=dword:00000001\r\n\"Bad\"=zz\r\n"));
  Result r = Differ(m, {"differences", "--JSON", reg});
  EXPECT_EQ(r.code, 1);
  EXPECT_EQ(r.out,
            "{\"fichier\": \"" + JsonText(reg) + "\", \"sauvegarde\": false, \"vue\": null, \"vue_selon\": null,\r\n"
            " \"differences\": 2, \"identiques\": 0,\r\n"
            " \"cles\": [\r\n"
            "  {\"cle\": \"HKEY_CURRENT_USER\\\\Control Panel\\\\Desktop\", \"etat\": \"identique\", \"valeurs\": [\r\n"
            "    {\"nom\": \"MenuShowDelay\", \"etat\": \"changee\", \"ligne\": 4, \"avant\": {\"type\": \"REG_SZ\", "
            "\"donnee\": \"400\"}, \"maintenant\": {\"type\": \"REG_SZ\", \"donnee\": \"0\"}},\r\n"
            "    {\"nom\": \"Parti\", \"etat\": \"disparue\", \"ligne\": 5, \"avant\": {\"type\": \"REG_DWORD\", "
            "\"donnee\": 1}, \"maintenant\": null}]}],\r\n"
            " \"system_ini\": {\"compare\": false, \"note\": \"\", \"cles\": []},\r\n"
            " \"autres_ruches\": [],\r\n"
            " \"lignes_illisibles\": [{\"ligne\": 6, \"raison\": \"donn\\u00e9e inconnue : ni \\\"texte\\\", ni dword:, ni "
            "hex:, ni - pour supprimer.\"}]}\r\n");
}

// --- the registry's views ------------------------------------------------------------------------

const char* const kRun = "SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Run";
const char* const kRunIn32 = "SOFTWARE\\WOW6432Node\\Microsoft\\Windows\\CurrentVersion\\Run";

void TwoViewsWithA32BitDrive(FakePlatform& m) {
  m.windows64 = true;
  m.SetValue(LM, kRunIn32, "z:", regtype::Sz, "subst.exe Z: \"C:\\outils\"");
  m.SetValue(LM, kRun, "y:", regtype::Sz, "subst.exe Y: \"C:\\64\"");
}

TEST(Differences, ABackupOfThe32BitViewIsComparedInThatViewWhicheverCompanionReadsIt) {
  FakePlatform m;
  TwoViewsWithA32BitDrive(m);
  TempDir dir;
  std::string reg = (dir.path / "avant32.reg").string();
  ASSERT_EQ(companion::Run({"sauvegarde", reg}, m, Console(m).io, keyaccess::View32), kOk);
  Result same = Differ(m, {"differences", reg}, keyaccess::View64);
  EXPECT_EQ(same.code, 0) << same.out;
  EXPECT_NE(same.out.find("Vue du registre : 32 bits (celle de la sauvegarde).\r\n"), std::string::npos) << same.out;
  m.SetValue(LM, kRunIn32, "z:", regtype::Sz, "subst.exe Z: \"C:\\ailleurs\"");
  Result r = Differ(m, {"differences", reg}, keyaccess::View64);
  EXPECT_EQ(r.code, 1);
  EXPECT_NE(r.out.find("[HKEY_LOCAL_MACHINE\\SOFTWARE\\WOW6432Node\\Microsoft\\Windows\\CurrentVersion\\Run]\r\n"
                       "  changée   \"z:\" : avant \"subst.exe Z: \"C:\\outils\"\" (REG_SZ), maintenant "
                       "\"subst.exe Z: \"C:\\ailleurs\"\" (REG_SZ)\r\n"),
            std::string::npos)
      << r.out;
}

TEST(Differences, APlainExportIsReadInTheCompanionsOwnViewUnlessAnotherIsAskedFor) {
  FakePlatform m;
  TwoViewsWithA32BitDrive(m);
  TempDir dir;
  std::string reg = dir.Write("export.reg", Regedit5("[HKEY_LOCAL_MACHINE\\SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Run]\r\n"
                                                     "\"z:\"=\"subst.exe Z: \\\"C:\\\\outils\\\"\"\r\n"));
  Result own64 = Differ(m, {"differences", reg}, keyaccess::View64);
  EXPECT_EQ(own64.code, 1) << "the 64-bit view has no z:";
  EXPECT_NE(own64.out.find("Vue du registre : 64 bits (celle du compagnon).\r\n"), std::string::npos) << own64.out;
  EXPECT_EQ(Differ(m, {"differences", reg}, keyaccess::View32).code, 0);
  Result asked = Differ(m, {"differences", reg, "--vue", "32"}, keyaccess::View64);
  EXPECT_EQ(asked.code, 0) << asked.out;
  EXPECT_NE(asked.out.find("Vue du registre : 32 bits (choisie par --vue).\r\n"), std::string::npos);
}

TEST(Differences, SystemIniThatDidNotExistAtTheBackupHasEveryKeyAppearedNow) {
  FakePlatform m;
  m.CreateKey(CU, kDesktop);
  TempDir dir;
  std::string reg = (dir.path / "avant.reg").string();
  ASSERT_EQ(companion::Run({"sauvegarde", reg}, m, Console(m).io), kOk);
  m.File(kSystemIni) = "[Ports]\r\nCOM1:=921600,n,8,1,x\r\n";
  Result r = Differ(m, {"differences", reg});
  EXPECT_EQ(r.code, 1);
  EXPECT_NE(r.out.find("system.ini n'existait pas lors de la sauvegarde.\r\nsystem.ini [Ports]\r\n"
                       "  apparue   COM1: : absente de la copie, maintenant \"921600,n,8,1,x\"\r\n"),
            std::string::npos)
      << r.out;
}

TEST(Differences, ABackupWhoseSystemIniCopyIsMissingSaysSystemIniIsNotCompared) {
  FakePlatform m;
  UsersMachine(m);
  TempDir dir;
  std::string reg = (dir.path / "avant.reg").string();
  ASSERT_EQ(companion::Run({"sauvegarde", reg}, m, Console(m).io), kOk);
  fs::remove(dir.path / "avant.system.ini");
  m.File(kSystemIni) = "[386Enh]\r\nMaxBps=65530\r\n";
  Result r = Differ(m, {"differences", reg});
  EXPECT_EQ(r.code, 0);
  EXPECT_NE(r.out.find("Pas de copie de system.ini à côté de la sauvegarde (\"" + (dir.path / "avant.system.ini").string() +
                       "\") : system.ini n'est pas comparé.\r\n"),
            std::string::npos)
      << r.out;
}

TEST(Differences, IniSectionsAndKeysMatchWhateverTheirCaseAndTheFirstOfTwoCounts) {
  auto changes = CompareIni("[386ENH]\r\nMaxBps=1\r\nMaxBps=2\r\n[386enh]\r\nOther=3\r\n", "[386Enh]\r\n maxbps = 1 \r\n");
  ASSERT_EQ(changes.size(), 1u);
  EXPECT_EQ(changes[0].key, "MaxBps");
  EXPECT_EQ(changes[0].change, Change::Same);
  EXPECT_EQ(changes[0].before, "1");
}

}  // namespace
}  // namespace tamrix::companion
