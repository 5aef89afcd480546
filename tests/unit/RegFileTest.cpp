// The reader of registry-editor files: every kind of line, both encodings, continuations,
// deletions, and each malformed line reported with its number while the reading goes on.
#include <gtest/gtest.h>

#include "companion/Backup.h"
#include "companion/RegFile.h"
#include "fake/Latin1.h"
#include "platform/Utf16.h"

namespace tamrix::companion {
namespace {

std::string Same(const std::string& s) { return s; }

using tamrix::fake::Latin1;

// A REGEDIT5 file as reg export writes it: the byte-order mark, then UTF-16 LE.
std::string Utf16(const std::string& utf8) { return std::string("\xff\xfe", 2) + Utf8ToUtf16Le(utf8).value(); }
// Texts as the registry keeps them.
std::string Wide(const std::string& utf8) { return Utf8ToUtf16Le(utf8).value(); }
std::string WideZ(const std::string& utf8) { return Wide(utf8) + std::string(2, '\0'); }

RegFile Read(const std::string& bytes, std::string (*fromAnsi)(const std::string&) = Same) {
  auto file = ReadRegFile(bytes, fromAnsi);
  EXPECT_TRUE(file.has_value());
  return file.value_or(RegFile{});
}

TEST(RegFileReader, ReadsEveryKindOfValueLineOfARegedit5File) {
  RegFile f = Read(Utf16(
      "Windows Registry Editor Version 5.00\r\n"
      "\r\n"
      "; un commentaire\r\n"
      "\r\n"
      "[HKEY_CURRENT_USER\\Control Panel\\Desktop]\r\n"
      "\"MenuShowDelay\"=\"400\"\r\n"
      "\"Chemin\"=\"C:\\\\Program Files\\\\\\\"Tamrix\\\"\"\r\n"
      "@=\"défaut\"\r\n"
      "\"SmoothScroll\"=dword:0000000c\r\n"
      "\"Octets\"=hex:01,00,ff\r\n"
      "\"Etendu\"=hex(2):25,00,41,00,25,00,00,00\r\n"
      "\"Multi\"=hex(7):61,00,00,00,62,00,00,00,00,00\r\n"
      "\"Quad\"=hex(b):01,02,03,04,05,06,07,08\r\n"
      "\"Rien\"=hex(0):\r\n"
      "\"Parti\"=-\r\n"
      "@=-\r\n"
      "\r\n"
      "[-HKEY_LOCAL_MACHINE\\Software\\CLASSES\\Paint.Picture\\DefaultIcon]\r\n"));
  EXPECT_EQ(f.version, 5);
  EXPECT_TRUE(f.problems.empty()) << f.problems[0].line << " " << f.problems[0].why;
  EXPECT_EQ(f.header, (std::vector<std::string>{"un commentaire"}));
  ASSERT_EQ(f.keys.size(), 2u);
  const RegFileKey& k = f.keys[0];
  EXPECT_EQ(k.name, "HKEY_CURRENT_USER\\Control Panel\\Desktop");
  EXPECT_EQ(k.hive, hive::CurrentUser);
  EXPECT_EQ(k.path, "Control Panel\\Desktop");
  EXPECT_FALSE(k.deleted);
  EXPECT_EQ(k.line, 5u);
  struct Row {
    const char* name;
    bool deleted;
    std::uint32_t type;
    std::string raw;
    std::size_t line;
  };
  const std::vector<Row> rows = {
      {"MenuShowDelay", false, regtype::Sz, WideZ("400"), 6},
      {"Chemin", false, regtype::Sz, WideZ("C:\\Program Files\\\"Tamrix\""), 7},
      {"", false, regtype::Sz, WideZ("défaut"), 8},
      {"SmoothScroll", false, regtype::Dword, std::string("\x0c\0\0\0", 4), 9},
      {"Octets", false, regtype::Binary, std::string("\x01\x00\xff", 3), 10},
      {"Etendu", false, regtype::ExpandSz, std::string("%\0A\0%\0\0\0", 8), 11},
      {"Multi", false, regtype::MultiSz, std::string("a\0\0\0b\0\0\0\0\0", 10), 12},
      {"Quad", false, regtype::Qword, "\x01\x02\x03\x04\x05\x06\x07\x08", 13},
      {"Rien", false, 0, "", 14},
      {"Parti", true, 0, "", 15},
      {"", true, 0, "", 16},
  };
  ASSERT_EQ(k.values.size(), rows.size());
  for (std::size_t i = 0; i < rows.size(); ++i) {
    EXPECT_EQ(k.values[i].name, rows[i].name) << i;
    EXPECT_EQ(k.values[i].deleted, rows[i].deleted) << i;
    EXPECT_EQ(k.values[i].type, rows[i].type) << i;
    EXPECT_EQ(k.values[i].raw, rows[i].raw) << i;
    EXPECT_EQ(k.values[i].line, rows[i].line) << i;
  }
  EXPECT_TRUE(f.keys[1].deleted);
  EXPECT_EQ(f.keys[1].hive, hive::LocalMachine);
  EXPECT_EQ(f.keys[1].path, "Software\\CLASSES\\Paint.Picture\\DefaultIcon");
  EXPECT_EQ(f.keys[1].line, 18u);
}

TEST(RegFileReader, ReadsARegedit4FileInTheAnsiCodePageTextsOfHexLinesIncluded) {
  RegFile f = Read(
      "REGEDIT4\r\n\r\n[HKEY_CURRENT_USER\\Software\\Tamrix]\r\n\"D\xe9j\xe0\"=\"\xe9t\xe9\"\r\n"
      "\"Etendu\"=hex(2):25,e9,25,00\r\n\"Multi\"=hex(7):61,00,e0,00,00\r\n\"Octets\"=hex:e9\r\n",
      Latin1);
  EXPECT_EQ(f.version, 4);
  ASSERT_EQ(f.keys.size(), 1u);
  ASSERT_EQ(f.keys[0].values.size(), 4u);
  EXPECT_EQ(f.keys[0].values[0].name, "Déjà");
  EXPECT_EQ(f.keys[0].values[0].raw, WideZ("été"));
  EXPECT_EQ(f.keys[0].values[1].type, regtype::ExpandSz);
  EXPECT_EQ(f.keys[0].values[1].raw, WideZ("%é%")) << "the registry keeps UTF-16";
  EXPECT_EQ(f.keys[0].values[2].raw, Wide("a") + std::string(2, '\0') + Wide("à") + std::string(4, '\0'));
  EXPECT_EQ(f.keys[0].values[3].raw, "\xe9") << "bytes stay bytes";
}

TEST(RegFileReader, ReadsARegedit5FileWrittenByHandInUtf8WithItsMarkAndBareLineFeeds) {
  RegFile f = Read("\xef\xbb\xbfWindows Registry Editor Version 5.00\n[HKEY_LOCAL_MACHINE\\SOFTWARE\\Tamrix]\n\"Clé\"=\"é\"\n");
  ASSERT_EQ(f.keys.size(), 1u);
  ASSERT_EQ(f.keys[0].values.size(), 1u);
  EXPECT_EQ(f.keys[0].values[0].name, "Clé");
  EXPECT_EQ(f.keys[0].values[0].raw, WideZ("é"));
}

TEST(RegFileReader, JoinsAHexListContinuedOnTheNextLinesAsRegExportWrapsIt) {
  RegFile f = Read(Utf16(
      "Windows Registry Editor Version 5.00\r\n\r\n[HKEY_CURRENT_USER\\X]\r\n"
      "\"Long\"=hex(2):25,00,53,00,\\\r\n"
      "  79,00,\\\r\n"
      "  25,00,00,00\r\n"
      "\"Après\"=dword:00000001\r\n"));
  EXPECT_TRUE(f.problems.empty());
  ASSERT_EQ(f.keys[0].values.size(), 2u);
  EXPECT_EQ(f.keys[0].values[0].raw, WideZ("%Sy%"));
  EXPECT_EQ(f.keys[0].values[1].name, "Après");
  EXPECT_EQ(f.keys[0].values[1].line, 7u) << "lines are counted in the file, continuations included";
}

TEST(RegFileReader, TakesBlanksAroundTheEqualSignCapitalHexDigitsAndShortDwords) {
  RegFile f = Read(Utf16(
      "Windows Registry Editor Version 5.00\r\n[hkey_current_user\\X]\r\n"
      "  \"a\" = DWORD:FFFFFFFF\r\n\"b\"=dword:1\r\n\"c\"=HEX:0A,B\r\n"));
  EXPECT_TRUE(f.problems.empty());
  ASSERT_EQ(f.keys.size(), 1u);
  EXPECT_EQ(f.keys[0].hive, hive::CurrentUser);
  ASSERT_EQ(f.keys[0].values.size(), 3u);
  EXPECT_EQ(f.keys[0].values[0].raw, "\xff\xff\xff\xff");
  EXPECT_EQ(f.keys[0].values[1].raw, std::string("\x01\0\0\0", 4));
  EXPECT_EQ(f.keys[0].values[2].raw, "\x0a\x0b");
}

TEST(RegFileReader, KeysOfTheOtherHivesAreReadWithoutAHive) {
  RegFile f = Read(Utf16("Windows Registry Editor Version 5.00\r\n[HKEY_CLASSES_ROOT\\.txt]\r\n@=\"txtfile\"\r\n"));
  ASSERT_EQ(f.keys.size(), 1u);
  EXPECT_EQ(f.keys[0].hive, 0u);
  EXPECT_EQ(f.keys[0].path, ".txt");
  EXPECT_TRUE(f.problems.empty());
}

TEST(RegFileReader, AFileWithOnlyItsHeadingHoldsNoKey) {
  RegFile f = Read(Utf16("Windows Registry Editor Version 5.00\r\n\r\n"));
  EXPECT_TRUE(f.keys.empty());
  EXPECT_TRUE(f.problems.empty());
}

TEST(RegFileReader, RefusesWhatIsNoRegistryEditorFile) {
  for (const std::string& bytes :
       {std::string(), std::string("\xff\xfe", 2), std::string("[boot]\r\nshell=Explorer.exe\r\n"),
        Utf16("Windows Registry Editor Version 4.00\r\n"), Utf16("REGEDIT\r\n"), std::string("\xff\xfe\x00", 3),
        std::string("Windows Registry Editor Version 5.00", 35) + std::string("x")})
    EXPECT_FALSE(ReadRegFile(bytes, Same).has_value()) << bytes;
}

TEST(RegFileReader, EachMalformedLineIsReportedWithItsNumberAndTheReadingGoesOn) {
  struct Bad {
    const char* line;
    const char* why;
  };
  const std::vector<Bad> bad = {
      {"[HKEY_CURRENT_USER\\Y", "il manque le crochet fermant de la clé."},
      {"[]", "la clé n'a pas de nom."},
      {"[-HKEY_CURRENT_USER]", "une ruche entière ne se supprime pas."},
      {"[HKEY_NULLE_PART\\Y]", "la clé ne commence pas par le nom d'une ruche (HKEY_CURRENT_USER, HKEY_LOCAL_MACHINE...)."},
      {"\"sans fin=1", "nom de valeur illisible : il manque le guillemet fermant."},
      {"\"a\"\"1\"", "il manque le signe = après le nom de la valeur."},
      {"\"a\"=\"C:\\Windows\"", "séquence d'échappement inconnue (seuls \\\\ et \\\" sont admis entre guillemets)."},
      {"\"a\"=\"ouvert", "il manque le guillemet fermant."},
      {"\"a\"=\"1\" 2", "du texte suit le guillemet fermant."},
      {"\"a\"=dword:123456789", "un dword prend de 1 à 8 chiffres hexadécimaux."},
      {"\"a\"=dword:", "un dword prend de 1 à 8 chiffres hexadécimaux."},
      {"\"a\"=dword:-1", "un dword prend de 1 à 8 chiffres hexadécimaux."},
      {"\"a\"=hex:01,zz", "octets illisibles : deux chiffres hexadécimaux chacun, séparés par des virgules."},
      {"\"a\"=hex:0102", "octets illisibles : deux chiffres hexadécimaux chacun, séparés par des virgules."},
      {"\"a\"=hex(x):01", "le type de hex(...) doit être un nombre hexadécimal de 1 à 8 chiffres."},
      {"\"a\"=hex(2)01", "le type de hex(...) doit être un nombre hexadécimal de 1 à 8 chiffres."},
      {"\"a\"=texte", "donnée inconnue : ni \"texte\", ni dword:, ni hex:, ni - pour supprimer."},
      {"bonjour", "ligne illisible : ni [clé], ni \"valeur\"=..., ni @=..., ni ; commentaire."},
  };
  for (const Bad& b : bad) {
    // The bad line is line 3; the good value after it, in a key of its own, is still read.
    RegFile f = Read(Utf16(std::string("Windows Registry Editor Version 5.00\r\n[HKEY_CURRENT_USER\\X]\r\n") + b.line +
                           "\r\n[HKEY_CURRENT_USER\\Z]\r\n\"bon\"=\"1\"\r\n"));
    ASSERT_EQ(f.problems.size(), 1u) << b.line;
    EXPECT_EQ(f.problems[0].line, 3u) << b.line;
    EXPECT_EQ(f.problems[0].why, b.why) << b.line;
    ASSERT_FALSE(f.keys.empty()) << b.line;
    ASSERT_EQ(f.keys.back().values.size(), 1u) << b.line;
    EXPECT_EQ(f.keys.back().values[0].name, "bon") << b.line;
  }
}

TEST(RegFileReader, AValueOutsideAnyKeyOrUnderADeletedKeyIsReported) {
  RegFile f = Read(Utf16(
      "Windows Registry Editor Version 5.00\r\n\"seul\"=\"1\"\r\n[-HKEY_CURRENT_USER\\X]\r\n\"sous\"=\"1\"\r\n"
      "[HKEY_CURRENT_USER\\Y\r\n\"orpheline\"=\"1\"\r\n"));
  ASSERT_EQ(f.problems.size(), 3u);
  EXPECT_EQ(f.problems[0].line, 2u);
  EXPECT_EQ(f.problems[0].why, "valeur hors de toute clé : il faut une ligne [clé] avant elle.");
  EXPECT_EQ(f.problems[1].line, 4u);
  EXPECT_EQ(f.problems[1].why, "valeur sous une clé supprimée ([-...]) : l'import n'en fait rien.");
  EXPECT_EQ(f.problems[2].line, 5u) << "the values under a bad key line go with it, unreported";
  ASSERT_EQ(f.keys.size(), 1u);
  EXPECT_TRUE(f.keys[0].values.empty());
}

TEST(RegFileReader, WhatTheBackupWriterWritesReadsBackEqual) {
  struct Case {
    std::string name;
    std::uint32_t type;
    std::string raw;
  };
  const std::vector<Case> cases = {
      {"Texte", regtype::Sz, WideZ("C:\\\"x\"")},
      {"", regtype::Sz, WideZ("")},
      {"SansFin", regtype::Sz, Wide("1000")},
      {"Nombre", regtype::Dword, "\xff\xff\xff\xff"},
      {"Étendu", regtype::ExpandSz, WideZ("%SystemRoot%\\Документы")},
      {"Quad", regtype::Qword, std::string(8, '\x7f')},
      {"Rien", 0, ""},
      {"Grand", 0x12345678, "\x01"},
  };
  std::string text = "Windows Registry Editor Version 5.00\r\n\r\n[HKEY_LOCAL_MACHINE\\Software\\Tamrix]\r\n";
  for (const Case& c : cases) text += ValueLine(c.name, c.type, c.raw).value() + "\r\n";
  text += DeletionLine("Partie") + "\r\n";
  RegFile f = Read(Utf16File(text));
  EXPECT_TRUE(f.problems.empty());
  ASSERT_EQ(f.keys.size(), 1u);
  ASSERT_EQ(f.keys[0].values.size(), cases.size() + 1);
  for (std::size_t i = 0; i < cases.size(); ++i) {
    const RegFileValue& v = f.keys[0].values[i];
    EXPECT_EQ(v.name, cases[i].name) << i;
    EXPECT_EQ(v.type, cases[i].type) << i;
    EXPECT_EQ(v.raw, cases[i].raw) << i;
  }
  EXPECT_TRUE(f.keys[0].values.back().deleted);
  EXPECT_EQ(f.keys[0].values.back().name, "Partie");
}

}  // namespace
}  // namespace tamrix::companion
