// The companion program against the fake machine: the catalogues it walks, the state of each
// place, the report, the backup file's exact text, and the command's answers to bad input.
#include <gtest/gtest.h>

#include <cstdio>
#include <filesystem>
#include <map>

#include "contract/ExpectedCatalogues.h"
#include "companion/Catalogues.h"
#include "companion/Command.h"
#include "companion/CatalogueState.h"
#include "companion/StateReport.h"
#include "companion/Backup.h"
#include "fake/FakePlatform.h"
#include "unit/CompanionConsole.h"
#include "unit/FileBytes.h"
#include "fake/RegFileReader.h"
#include "optimisers/ShellToggles.h"
#include "platform/Registre.h"
#include "platform/Utf16.h"

namespace tamrix::companion {
namespace {

const HKey CU = hive::CurrentUser, LM = hive::LocalMachine;

const char* const kDesktop = "Control Panel\\Desktop";
const char* const kExplorerPolicies = "Software\\Microsoft\\Windows\\CurrentVersion\\Policies\\Explorer";
const char* const kRun = "SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Run";

std::string Text(const RegValue& v) { return v.ToText(); }

// A machine on which some places may not be read: the fake with two refusals of its own.
class GuardedFake : public FakePlatform {
 public:
  std::string deniedKey;    // opening it is refused
  std::string deniedValue;  // reading it is refused
  long RegOpenKeyExA(HKey parent, const std::string& subKey, std::uint32_t options, std::uint32_t samDesired,
                     HKey* result) override {
    if (!deniedKey.empty() && subKey == deniedKey) {
      *result = 0;
      return openStatus;
    }
    return FakePlatform::RegOpenKeyExA(parent, subKey, options, samDesired, result);
  }
  long openStatus = status::AccessDenied;  // what opening deniedKey gives
  long RegQueryValueExW(HKey key, const std::string& valueName, std::uint32_t* type, std::string* data,
                        std::uint32_t* size) override {
    if (!deniedValue.empty() && valueName == deniedValue) return status::AccessDenied;
    return FakePlatform::RegQueryValueExW(key, valueName, type, data, size);
  }
};

RegistryPlace SzPlace(HKey h, const std::string& key, const std::string& name, const char* data) {
  return {h, key, name, regtype::Sz, {RegValue(data)}, {}};
}
RegistryPlace DwordPlace(HKey h, const std::string& key, const std::string& name, std::int32_t data) {
  return {h, key, name, regtype::Dword, {RegValue(data)}, {}};
}

// --- the catalogues -----------------------------------------------------------------------

TEST(EtatCatalogues, ComeInTheOrderOfThePagesWithTheirRowCounts) {
  auto all = Catalogues("Vrai");
  std::vector<std::pair<std::string, std::size_t>> seen;
  for (const Catalogue& c : all) seen.push_back({c.title, c.registry.size() + c.systemIni.size()});
  std::vector<std::pair<std::string, std::size_t>> expected = {
      {"Optimiseur Windows : registre", 21},
      {"Optimiseur Windows : system.ini", 45},
      {"Optimiseur Internet : réseau local (Lan)", 37},
      {"Optimiseur Internet : modem", 37},
      {"Optimiseur Internet : ADSL ou câble", 35},
      {"Protection : restrictions de l'utilisateur", 18},
      {"Options du shell (page Windows)", 3},
      {"Lecteurs virtuels permanents (clé Run)", 27},
  };
  EXPECT_EQ(seen, expected);
}

TEST(EtatCatalogues, WindowsPlacesAreTheOptimiserRowsAndSystemIniKeysInWritingOrder) {
  auto all = Catalogues("Vrai");
  const Catalogue& reg = all[0];
  ASSERT_EQ(reg.registry.size(), 21u);
  for (std::size_t i = 0; i < 21; ++i) {
    const auto& e = expected::windows::kRegistry[i];
    const RegistryPlace& p = reg.registry[i];
    EXPECT_EQ(p.hive, e.hive) << i;
    EXPECT_EQ(p.keyPath, e.path) << i;
    EXPECT_EQ(p.valueName, e.name) << i;
    EXPECT_EQ(p.type, e.type) << i;
    ASSERT_EQ(p.writes.size(), 1u) << i;
    EXPECT_EQ(Text(p.writes[0]), e.data) << i;
  }
  const Catalogue& ini = all[1];
  ASSERT_EQ(ini.systemIni.size(), 45u);
  for (std::size_t i = 0; i < 45; ++i) {
    const auto& e = i < 26 ? expected::windows::kBeforeTimer[i] : expected::windows::kAfterTimer[i - 26];
    EXPECT_EQ(ini.systemIni[i].section, e.section) << i;
    EXPECT_EQ(ini.systemIni[i].key, e.key) << i;
    EXPECT_EQ(ini.systemIni[i].value, e.value) << i;
  }
}

// The connection decides the TTL and the two rows before the common catalogue; the speed the
// page passes on changes nothing, so TcpWindowSize has the one value 0 in every variant.
void ExpectInternetVariant(const Catalogue& c, const expected::RegExpect* first, std::size_t firstCount,
                           const char* ttl) {
  ASSERT_EQ(c.registry.size(), firstCount + 35);
  EXPECT_EQ(c.note, "Les six vitesses donnent les mêmes écritures.");
  for (std::size_t i = 0; i < c.registry.size(); ++i) {
    const auto& e = i < firstCount ? first[i] : expected::internet::kCommon[i - firstCount];
    const RegistryPlace& p = c.registry[i];
    EXPECT_EQ(p.hive, e.hive) << i;
    EXPECT_EQ(p.keyPath, e.path) << i;
    EXPECT_EQ(p.valueName, e.name) << i;
    EXPECT_EQ(p.type, e.type) << i;
    ASSERT_EQ(p.writes.size(), 1u) << c.title << " " << p.valueName;
    std::string data = e.data;
    if (data == "TTL") data = ttl;
    if (data == "SPEED") data = "0";
    if (data == "boolean true") data = "Vrai";
    EXPECT_EQ(Text(p.writes[0]), data) << c.title << " " << p.valueName;
  }
}

TEST(EtatCatalogues, EachConnectionTypeCarriesItsOwnRowsAndTtl) {
  auto all = Catalogues("Vrai");
  ExpectInternetVariant(all[2], expected::internet::kLan, 2, "0");
  ExpectInternetVariant(all[3], expected::internet::kModem, 2, "64");
  ExpectInternetVariant(all[4], nullptr, 0, "128");
}

TEST(EtatCatalogues, TheOneBooleanRowCarriesTheSystemsWordForTrue) {
  auto all = Catalogues("True");
  const RegistryPlace& p = all[3].registry[2 + 15];
  EXPECT_EQ(p.valueName, "ReadAheadAutoScrolling");
  EXPECT_EQ(Text(p.writes[0]), "True");
}

TEST(EtatCatalogues, ProtectionIsEighteenUserNumbersThatAreOneOrZero) {
  const char* names[18] = {"Nofind", "Norun", "NoFavoritesMenu", "NoNetHood", "NoDesktop", "ClearRecentDocsOnExit",
                           "NoClose", "NoActiveDesktop", "NoWindowsUpdate", "NoLogOff", "NoDeletePrinter",
                           "NoAddPrinter", "NoSetTaskbar", "NoStartBanner", "NoInternetIcon", "NoViewContextMenu",
                           "NoFileSharingControl", "EnforceShellExtensionSecurity"};
  auto all = Catalogues("Vrai");
  const Catalogue& c = all[5];
  ASSERT_EQ(c.registry.size(), 18u);
  for (std::size_t i = 0; i < 18; ++i) {
    const RegistryPlace& p = c.registry[i];
    EXPECT_EQ(p.valueName, names[i]);
    EXPECT_EQ(p.hive, CU);
    EXPECT_EQ(p.keyPath, i < 17 ? std::string(kExplorerPolicies) : std::string(kExplorerPolicies) + "\\RestrictRun");
    EXPECT_EQ(p.type, regtype::Dword);
    ASSERT_EQ(p.writes.size(), 2u);
    EXPECT_TRUE(p.writes[0].EqualsNumber(1));
    EXPECT_TRUE(p.writes[1].EqualsNumber(0));
  }
}

TEST(EtatCatalogues, TogglesWriteTheirTickedTextAndTheDvdBoxBothOfItsWords) {
  auto all = Catalogues("Vrai");
  const Catalogue& c = all[6];
  ASSERT_EQ(c.registry.size(), 3u);
  for (std::size_t i = 0; i < 3; ++i) {
    const auto& e = expected::toggles::kToggles[i];
    const RegistryPlace& p = c.registry[i];
    EXPECT_EQ(p.hive, e.hive);
    EXPECT_EQ(p.keyPath, e.path);
    EXPECT_EQ(p.valueName, e.name);
    EXPECT_EQ(p.type, regtype::Sz);
    ASSERT_GE(p.writes.size(), 1u);
    EXPECT_EQ(Text(p.writes[0]), e.tickedData);
    EXPECT_EQ(p.writes.size(), e.untickDeletesKey ? 1u : 2u);
  }
  EXPECT_EQ(Text(c.registry[1].writes[1]), "no");
}

TEST(EtatCatalogues, VirtualDrivesAreTheMachinesRunKeyNamedByLowerCaseLetterAndColon) {
  auto all = Catalogues("Vrai");
  const Catalogue& c = all[7];
  ASSERT_EQ(c.registry.size(), 27u);
  EXPECT_TRUE(c.onlyPresent);
  EXPECT_EQ(c.registry[1].valueName, "a:");
  EXPECT_EQ(c.registry[26].valueName, "z:");
  for (const RegistryPlace& p : c.registry) {
    EXPECT_EQ(p.hive, LM);
    EXPECT_EQ(p.keyPath, kRun);
    EXPECT_EQ(p.type, regtype::Sz);
    EXPECT_TRUE(p.writes.empty()) << "the data is the user's folder";
  }
}

// With no letter in the list, the page names the value after an empty entry: the key's default.
TEST(EtatCatalogues, TheRunKeysDefaultValueIsAPlaceForAnEmptyLetterList) {
  auto all = Catalogues("Vrai");
  const Catalogue& c = all[7];
  ASSERT_FALSE(c.registry.empty());
  EXPECT_EQ(c.registry[0].valueName, "");
  EXPECT_EQ(c.registry[0].keyPath, kRun);
  EXPECT_EQ(c.registry[0].hive, LM);
}

TEST(EtatCatalogues, TheKeysTheTogglesDeleteAreKeptWhole) {
  auto all = Catalogues("Vrai");
  const Catalogue& c = all[6];
  ASSERT_EQ(c.deletedKeys.size(), 2u);
  EXPECT_EQ(c.deletedKeys[0].hive, LM);
  EXPECT_EQ(c.deletedKeys[0].keyPath, "Software\\CLASSES\\Paint.Picture\\DefaultIcon");
  EXPECT_EQ(c.deletedKeys[1].hive, CU);
  EXPECT_EQ(c.deletedKeys[1].keyPath, "*\\shell\\openas\\command\\rundll32.exe shell32.dll,OpenAs_RunDLL %1");
}

// --- the state of a place -------------------------------------------------------------------

TEST(EtatPlace, TheWrittenTextWithOrWithoutTerminatorIsAlreadySo) {
  FakePlatform m;
  m.SetValue(CU, kDesktop, "WaitToKillAppTimeout", regtype::Sz, std::string("1000\0", 5));
  m.SetValue(CU, kDesktop, "HungAppTimeOut", regtype::Sz, "1000");
  EXPECT_EQ(Inspect(m, SzPlace(CU, kDesktop, "WaitToKillAppTimeout", "1000")).state, State::AlreadySo);
  EXPECT_EQ(Inspect(m, SzPlace(CU, kDesktop, "HungAppTimeOut", "1000")).state, State::AlreadySo);
}

TEST(EtatPlace, OtherDataIsDifferentAndKeepsWhatStands) {
  FakePlatform m;
  m.SetValue(CU, kDesktop, "MenuShowDelay", regtype::Sz, std::string("400\0", 4));
  Finding f = Inspect(m, SzPlace(CU, kDesktop, "MenuShowDelay", "0"));
  EXPECT_EQ(f.state, State::Different);
  EXPECT_EQ(f.type, regtype::Sz);
  EXPECT_EQ(f.data, std::string("400\0", 4));
}

TEST(EtatPlace, TheSameNumberStoredAsTextIsDifferent) {
  FakePlatform m;
  m.SetValue(CU, kDesktop, "SmoothScroll", regtype::Sz, std::string("0\0", 2));
  EXPECT_EQ(Inspect(m, DwordPlace(CU, kDesktop, "SmoothScroll", 0)).state, State::Different);
  m.SetDword(CU, kDesktop, "SmoothScroll", 0);
  EXPECT_EQ(Inspect(m, DwordPlace(CU, kDesktop, "SmoothScroll", 0)).state, State::AlreadySo);
  m.SetDword(CU, kDesktop, "SmoothScroll", 1);
  EXPECT_EQ(Inspect(m, DwordPlace(CU, kDesktop, "SmoothScroll", 0)).state, State::Different);
}

TEST(EtatPlace, AnExpandableTextWhereTheProgramWritesATextIsDifferentAndShownWithItsType) {
  FakePlatform m;
  m.SetValue(CU, kDesktop, "MenuShowDelay", regtype::ExpandSz, std::string("0\0", 2));
  Finding f = Inspect(m, SzPlace(CU, kDesktop, "MenuShowDelay", "0"));
  EXPECT_EQ(f.state, State::Different);
  EXPECT_EQ(Describe(f.type, f.data), "\"0\" (REG_EXPAND_SZ)");
}

// A value that another program makes longer between the size query and the data query.
class GrowingFake : public FakePlatform {
 public:
  int grown = 0;
  long RegQueryValueExW(HKey key, const std::string& valueName, std::uint32_t* type, std::string* data,
                        std::uint32_t* size) override {
    if (data && grown == 0) {
      ++grown;
      SetValue(CU, kDesktop, valueName, regtype::Sz, std::string("1000\0", 5));
      return status::MoreData;
    }
    return FakePlatform::RegQueryValueExW(key, valueName, type, data, size);
  }
};

TEST(EtatPlace, AValueThatGrowsBetweenTheTwoQueriesIsReadAgain) {
  GrowingFake m;
  m.SetValue(CU, kDesktop, "HungAppTimeOut", regtype::Sz, std::string("5\0", 2));
  Finding f = Inspect(m, SzPlace(CU, kDesktop, "HungAppTimeOut", "1000"));
  EXPECT_EQ(m.grown, 1);
  EXPECT_EQ(f.state, State::AlreadySo);
  EXPECT_EQ(m.OpenHandles(), 0u);
}

TEST(EtatPlace, AValueMissingFromAnExistingKeyIsAbsent) {
  FakePlatform m;
  m.CreateKey(CU, kDesktop);
  EXPECT_EQ(Inspect(m, SzPlace(CU, kDesktop, "AutoEndTasks", "1")).state, State::Absent);
}

TEST(EtatPlace, AMissingKeyIsSaidSoNotAbsent) {
  FakePlatform m;
  Finding f = Inspect(m, DwordPlace(LM, "System\\CurrentControlSet\\Control\\SessionManager\\Memory Managment",
                                    "SecondLevelDataCache", 512));
  EXPECT_EQ(f.state, State::KeyMissing);
}

TEST(EtatPlace, AValueTheAccountMayNotReadIsDeniedNotAbsent) {
  GuardedFake m;
  m.SetDword(CU, kExplorerPolicies, "Norun", 1);
  m.deniedValue = "Norun";
  Finding f = Inspect(m, DwordPlace(CU, kExplorerPolicies, "Norun", 1));
  EXPECT_EQ(f.state, State::Denied);
  EXPECT_EQ(f.status, status::AccessDenied);
  EXPECT_FALSE(f.atKey);
}

TEST(EtatPlace, AKeyTheAccountMayNotOpenAtAllIsRefusedNotMissing) {
  GuardedFake m;
  m.SetDword(CU, kExplorerPolicies, "Norun", 1);
  m.deniedKey = kExplorerPolicies;
  Finding f = Inspect(m, DwordPlace(CU, kExplorerPolicies, "Norun", 1));
  EXPECT_EQ(f.state, State::Refused);
  EXPECT_TRUE(f.atKey);
  EXPECT_FALSE(f.known);
}

TEST(EtatPlace, AKeyThatRefusesTheProgramsOwnMaskIsRefusedAndStillShowsItsValue) {
  FakePlatform m;
  m.SetValue(LM, "SYSTEM\\CurrentControlSet\\Control", "WaitToKillAppTimeout", regtype::Sz, "1000");
  m.DenyWrite(LM, "SYSTEM\\CurrentControlSet\\Control");
  Finding f = Inspect(m, SzPlace(LM, "SYSTEM\\CurrentControlSet\\Control", "WaitToKillAppTimeout", "1000"));
  EXPECT_EQ(f.state, State::Refused);
  EXPECT_TRUE(f.present);
  EXPECT_EQ(f.data, "1000");
  ASSERT_GE(m.calls.size(), 2u);
  EXPECT_EQ(m.calls[0], "RegOpenKeyExA(HKLM,SYSTEM\\CurrentControlSet\\Control,0,0x3F)") << "first as the program opens it";
  EXPECT_EQ(m.calls[1], "RegOpenKeyExA(HKLM,SYSTEM\\CurrentControlSet\\Control,0,0x20019)");
  EXPECT_EQ(m.OpenHandles(), 0u);
}

TEST(EtatPlace, AnyOfTheValuesAChoiceMayWriteIsAlreadySo) {
  FakePlatform m;
  RegistryPlace norun{CU, kExplorerPolicies, "Norun", regtype::Dword, {RegValue(1), RegValue(0)}, {}};
  m.SetDword(CU, kExplorerPolicies, "Norun", 0);
  EXPECT_EQ(Inspect(m, norun).state, State::AlreadySo);
  m.SetDword(CU, kExplorerPolicies, "Norun", 1);
  EXPECT_EQ(Inspect(m, norun).state, State::AlreadySo);
  m.SetDword(CU, kExplorerPolicies, "Norun", 2);
  EXPECT_EQ(Inspect(m, norun).state, State::Different);
}

TEST(EtatPlace, ARunValueHasNoModelAndIsPresentAsItStands) {
  FakePlatform m;
  m.SetValue(LM, kRun, "z:", regtype::Sz, std::string("subst.exe Z: \"c:\\outils\"\0", 25));
  RegistryPlace z{LM, kRun, "z:", regtype::Sz, {}, {}};
  Finding f = Inspect(m, z);
  EXPECT_EQ(f.state, State::Present);
  EXPECT_EQ(Describe(f.type, f.data), "\"subst.exe Z: \"c:\\outils\"\" (REG_SZ)");
}

TEST(EtatPlace, SystemIniKeysAreAlreadySoDifferentOrAbsent) {
  FakePlatform m;
  m.File("C:\\WINDOWS\\system.ini") = "[386Enh]\r\nMaxBps=1200\r\nMinSPs=128\r\n[mci]\r\nPageBuffers=32\r\n";
  std::string ini = SystemIni(m);
  EXPECT_EQ(ini, "C:\\WINDOWS\\system.ini");
  EXPECT_EQ(Inspect(m, ini, {"386Enh", "MinSPs", "128"}).state, State::AlreadySo);
  ProfileFinding maxBps = Inspect(m, ini, {"386Enh", "MaxBps", "65530"});
  EXPECT_EQ(maxBps.state, State::Different);
  EXPECT_EQ(maxBps.value, "1200");
  EXPECT_EQ(Inspect(m, ini, {"386Enh", "PageBuffers", "32"}).state, State::Absent) << "another section's key";
  EXPECT_EQ(Inspect(m, ini, {"Ports", "COM1:", "921600,n,8,1,x"}).state, State::Absent);
}

TEST(EtatPlace, ReadingEveryCatalogueWritesNothingAnywhere) {
  FakePlatform m;
  m.File("C:\\WINDOWS\\system.ini") = "[386Enh]\r\nMaxBps=1200\r\n";
  m.CreateKey(CU, kDesktop);
  m.CreateKey(LM, kRun);
  InspectAll(m, Catalogues("Vrai"));
  for (const std::string& call : m.calls) {
    EXPECT_EQ(call.find("RegSetValueExA"), std::string::npos) << call;
    EXPECT_EQ(call.find("RegDelete"), std::string::npos) << call;
    EXPECT_EQ(call.find("WritePrivateProfileStringA"), std::string::npos) << call;
    if (call.rfind("RegOpenKeyExA", 0) == 0)
      EXPECT_TRUE(call.find(",0x3F)") != std::string::npos || call.find(",0x20019)") != std::string::npos) << call;
  }
  EXPECT_EQ(m.File("C:\\WINDOWS\\system.ini"), "[386Enh]\r\nMaxBps=1200\r\n");
  EXPECT_EQ(m.OpenHandles(), 0u);
}

// --- the report -------------------------------------------------------------------------------

std::vector<CatalogueState> StatesOf(Platform& p, const std::vector<Catalogue>& catalogues) {
  return InspectAll(p, catalogues);
}

TEST(EtatReport, OneLineAPlaceWithStateWhereWhatItWouldWriteAndWhatStandsThenASummary) {
  FakePlatform m;
  m.SetValue(CU, kDesktop, "MenuShowDelay", regtype::Sz, std::string("400\0", 4));
  m.SetValue(CU, kDesktop, "AutoEndTasks", regtype::Sz, "1");
  std::vector<Catalogue> cs = {{"Essai", "Une note.",
                                {SzPlace(CU, kDesktop, "AutoEndTasks", "1"), SzPlace(CU, kDesktop, "MenuShowDelay", "0"),
                                 DwordPlace(CU, kDesktop, "SmoothScroll", 0),
                                 DwordPlace(LM, "SOFTWARE\\Microsoft\\Dfrg\\BootOptimizeFunction", "Enable", 12)},
                                {{"386Enh", "MaxBps", "65530"}},
                                false}};
  m.File("C:\\WINDOWS\\system.ini") = "[386Enh]\r\nMaxBps=1200\r\n";
  EXPECT_EQ(TextReport(StatesOf(m, cs), true),
            "Essai\r\n"
            "  Une note.\r\n"
            "  déjà ainsi    HKCU\\Control Panel\\Desktop \"AutoEndTasks\" | écrirait \"1\" (REG_SZ) | a \"1\" (REG_SZ)\r\n"
            "  différent     HKCU\\Control Panel\\Desktop \"MenuShowDelay\" | écrirait \"0\" (REG_SZ) | a \"400\" (REG_SZ)\r\n"
            "  absent        HKCU\\Control Panel\\Desktop \"SmoothScroll\" | écrirait 0 (REG_DWORD) | a (aucune valeur)\r\n"
            "  clé manquante HKLM\\SOFTWARE\\Microsoft\\Dfrg\\BootOptimizeFunction \"Enable\" | écrirait 12 (REG_DWORD) | a (pas de clé)\r\n"
            "  différent     system.ini [386Enh] MaxBps | écrirait \"65530\" | a \"1200\"\r\n"
            "  => 5 lignes : déjà ainsi 1, différent 2, absent 1, clé manquante 1"
            " (lignes que le programme perdrait en silence), refusé 0, accès refusé 0, erreur 0\r\n"
            "\r\n"
            "Lu avec les droits d'administrateur : les refus sont ceux que rencontrerait le programme lancé ainsi.\r\n");
}

TEST(EtatReport, ADeniedValueIsShownAsSuchWithItsCode) {
  GuardedFake m;
  m.SetDword(CU, kExplorerPolicies, "Norun", 1);
  m.deniedValue = "Norun";
  std::vector<Catalogue> cs = {{"Essai", "", {DwordPlace(CU, kExplorerPolicies, "Norun", 1)}, {}, false}};
  std::string report = TextReport(StatesOf(m, cs), true);
  EXPECT_NE(report.find("  accès refusé  HKCU\\" + std::string(kExplorerPolicies) +
                        " \"Norun\" | écrirait 1 (REG_DWORD) | a (illisible : accès refusé, code 5)\r\n"),
            std::string::npos)
      << report;
  EXPECT_NE(report.find("accès refusé 1"), std::string::npos) << report;
}

TEST(EtatReport, OnlyTheDrivesTheRunKeyHoldsAreShown) {
  FakePlatform m;
  m.SetValue(LM, kRun, "z:", regtype::Sz, std::string("subst.exe Z: \"c:\\outils\"\0", 25));
  m.SetValue(LM, kRun, "Autre", regtype::Sz, std::string("autre.exe\0", 10));
  auto all = Catalogues("Vrai");
  std::vector<Catalogue> drives = {all[7]};
  EXPECT_EQ(TextReport(StatesOf(m, drives), true),
            "Lecteurs virtuels permanents (clé Run)\r\n"
            "  La donnée varie : la commande subst.exe du lecteur et du dossier choisis.\r\n"
            "  présent       HKLM\\SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Run \"z:\" | écrirait (varie) | a "
            "\"subst.exe Z: \"c:\\outils\"\" (REG_SZ)\r\n"
            "  => 1 lecteur(s) permanent(s)\r\n"
            "\r\n"
            "Lu avec les droits d'administrateur : les refus sont ceux que rencontrerait le programme lancé ainsi.\r\n");
}

TEST(EtatReport, AMissingRunKeyIsSaidOnce) {
  FakePlatform m;
  auto all = Catalogues("Vrai");
  std::vector<Catalogue> drives = {all[7]};
  std::string report = TextReport(StatesOf(m, drives), true);
  EXPECT_NE(report.find("  clé manquante HKLM\\SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Run\r\n"), std::string::npos)
      << report;
  EXPECT_EQ(report.find("clé manquante HKLM", report.find("clé manquante HKLM") + 1), std::string::npos);
}

TEST(EtatReport, JsonIsAsciiWithTheStatesCurrentValuesAndCounts) {
  FakePlatform m;
  m.SetValue(CU, kDesktop, "MenuShowDelay", regtype::Sz, std::string("400\0", 4));
  m.SetDword(CU, kDesktop, "SmoothScroll", 0xFFFFFFFFu);
  std::vector<Catalogue> cs = {{"Clé", "", {SzPlace(CU, kDesktop, "MenuShowDelay", "0"), DwordPlace(CU, kDesktop, "SmoothScroll", 0)}, {}, false}};
  EXPECT_EQ(JsonReport(StatesOf(m, cs), true),
            "{\"administrateur\": true, \"catalogues\": [\r\n"
            "  {\"titre\": \"Cl\\u00e9\", \"note\": \"\", \"lignes\": [\r\n"
            "    {\"ruche\": \"HKEY_CURRENT_USER\", \"cle\": \"Control Panel\\\\Desktop\", \"valeur\": \"MenuShowDelay\", "
            "\"type\": \"REG_SZ\", \"ecrirait\": [\"0\"], \"etat\": \"different\", \"type_actuel\": \"REG_SZ\", "
            "\"actuel\": \"400\\u0000\"},\r\n"
            "    {\"ruche\": \"HKEY_CURRENT_USER\", \"cle\": \"Control Panel\\\\Desktop\", \"valeur\": \"SmoothScroll\", "
            "\"type\": \"REG_DWORD\", \"ecrirait\": [0], \"etat\": \"different\", \"type_actuel\": \"REG_DWORD\", "
            "\"actuel\": -1}],\r\n"
            "   \"resume\": {\"deja_ainsi\": 0, \"different\": 2, \"absent\": 0, \"cle_manquante\": 0, "
            "\"refuse\": 0, \"acces_refuse\": 0, \"erreur\": 0, \"present\": 0}}\r\n"
            "]}\r\n");
}

// --- the backup file --------------------------------------------------------------------------

// UTF-16 LE of a UTF-8 text, as the registry keeps texts.
std::string Wide(const std::string& utf8) { return Utf8ToUtf16Le(utf8).value(); }
std::string WideZ(const std::string& utf8) { return Wide(utf8) + std::string(2, '\0'); }

TEST(EtatBackup, TheFileIsRegedit5WithFullHiveNamesValuesDeletionsAndCrLf) {
  FakePlatform m;
  m.SetValue(CU, kDesktop, "MenuShowDelay", regtype::Sz, std::string("400\0", 4));
  m.SetDword(LM, "SYSTEM\\CurrentControlSet\\Control\\Update", "UpDateMode", 12);
  m.CreateKey(CU, "Software\\Microsoft\\Windows\\CurrentVersion\\Internet Settings");
  std::vector<Catalogue> cs = {
      {"A", "",
       {SzPlace(CU, kDesktop, "MenuShowDelay", "0"), DwordPlace(LM, "SYSTEM\\CurrentControlSet\\Control\\Update", "UpDateMode", 7),
        DwordPlace(CU, "Software\\Microsoft\\Windows\\CurrentVersion\\Internet Settings", "MaxConnectionsPerServer", 4),
        SzPlace(LM, "SOFTWARE\\Microsoft\\Dfrg\\BootOptimizeFunction", "Enable", "Y")},
       {},
       false}};
  EXPECT_EQ(RegFileText(StatesOf(m, cs), {"Une ligne d'en-tête."}),
            "Windows Registry Editor Version 5.00\r\n"
            "\r\n"
            "; Une ligne d'en-tête.\r\n"
            "\r\n"
            "[HKEY_CURRENT_USER\\Control Panel\\Desktop]\r\n"
            "\"MenuShowDelay\"=\"400\"\r\n"
            "\r\n"
            "[HKEY_LOCAL_MACHINE\\SYSTEM\\CurrentControlSet\\Control\\Update]\r\n"
            "\"UpDateMode\"=dword:0000000c\r\n"
            "\r\n"
            "[HKEY_CURRENT_USER\\Software\\Microsoft\\Windows\\CurrentVersion\\Internet Settings]\r\n"
            "\"MaxConnectionsPerServer\"=-\r\n"
            "\r\n"
            "; [HKEY_LOCAL_MACHINE\\SOFTWARE\\Microsoft\\Dfrg\\BootOptimizeFunction] : clé absente, laissée absente\r\n"
            "\r\n");
}

TEST(EtatBackup, TheFileIsUtf16WithItsByteOrderMark) {
  EXPECT_EQ(Utf16File("Wé\r\n"), std::string("\xff\xfe" "W\0\xe9\0\r\0\n\0", 10));
}

TEST(EtatBackup, QuotedTextsEscapeBackslashAndDoubleQuote) {
  EXPECT_EQ(ValueLine("z:", regtype::Sz, WideZ("subst.exe Z: \"c:\\outils\"")), "\"z:\"=\"subst.exe Z: \\\"c:\\\\outils\\\"\"");
  EXPECT_EQ(DeletionLine("a\\b\"c"), "\"a\\\\b\\\"c\"=-");
}

TEST(EtatBackup, DwordsAreEightLowerCaseHexDigits) {
  auto dword = [](std::uint32_t n) {
    std::string raw(4, '\0');
    for (int i = 0; i < 4; ++i) raw[i] = static_cast<char>((n >> (8 * i)) & 0xFF);
    return raw;
  };
  EXPECT_EQ(ValueLine("n", regtype::Dword, dword(12)), "\"n\"=dword:0000000c");
  EXPECT_EQ(ValueLine("n", regtype::Dword, dword(0)), "\"n\"=dword:00000000");
  EXPECT_EQ(ValueLine("n", regtype::Dword, dword(0xFFFFFFFFu)), "\"n\"=dword:ffffffff");
  EXPECT_EQ(ValueLine("n", regtype::Dword, dword(64000)), "\"n\"=dword:0000fa00");
}

TEST(EtatBackup, TextsTheQuotedFormWouldChangeAndOtherTypesGoAsHexOfTheirStoredBytes) {
  // The program's own texts have no terminator; the quoted form would add one.
  EXPECT_EQ(ValueLine("n", regtype::Sz, Wide("0")), "\"n\"=hex(1):30,00");
  EXPECT_EQ(ValueLine("n", regtype::Sz, std::string("a\0\0\0b\0\0\0", 8)), "\"n\"=hex(1):61,00,00,00,62,00,00,00");
  EXPECT_EQ(ValueLine("n", regtype::Sz, WideZ("a\r\nb")), "\"n\"=hex(1):61,00,0d,00,0a,00,62,00,00,00");
  EXPECT_EQ(ValueLine("p", regtype::ExpandSz, WideZ("%SystemRoot%\\é")),
            "\"p\"=hex(2):25,00,53,00,79,00,73,00,74,00,65,00,6d,00,52,00,6f,00,6f,00,74,00,25,00,5c,00,e9,00,00,00");
  EXPECT_EQ(ValueLine("b", regtype::Binary, std::string("\x01\xff", 2)), "\"b\"=hex:01,ff");
  EXPECT_EQ(ValueLine("m", regtype::MultiSz, std::string("a\0\0\0\0\0", 6)), "\"m\"=hex(7):61,00,00,00,00,00");
  EXPECT_EQ(ValueLine("", regtype::Sz, WideZ("x")), "@=\"x\"");
  EXPECT_EQ(ValueLine("vide", regtype::Binary, ""), "\"vide\"=hex:");
}

TEST(EtatBackup, TypesOfTenAndAboveAreWrittenInHexadecimal) {
  EXPECT_EQ(ValueLine("q", regtype::Qword, std::string("\x01\0\0\0\0\0\0\x80", 8)), "\"q\"=hex(b):01,00,00,00,00,00,00,80");
  EXPECT_EQ(ValueLine("r", 10, "\x02"), "\"r\"=hex(a):02");
  EXPECT_EQ(ValueLine("s", 0x12345678, ""), "\"s\"=hex(12345678):");
  EXPECT_EQ(ValueLine("none", 0, "\x05"), "\"none\"=hex(0):05");
}

TEST(EtatBackup, ANameThatCantStandOnOneLineIsNotWritten) {
  EXPECT_EQ(ValueLine("a\nb", regtype::Dword, std::string(4, '\0')), std::nullopt);
  EXPECT_EQ(ValueLine("a\rb", regtype::Dword, std::string(4, '\0')), std::nullopt);
}

TEST(EtatBackup, APlaceWrittenByManyCataloguesStandsOnceUnderItsFirstSpellingOfTheKey) {
  FakePlatform m;
  m.SetValue(LM, "System\\CurrentControlSet\\Services\\VxD\\MSTCP", "DefaultTTL", regtype::Sz, std::string("32\0", 3));
  std::vector<Catalogue> cs = {
      {"A", "", {SzPlace(LM, "System\\CurrentControlSet\\Services\\VxD\\MSTCP", "SackOpts", "1")}, {}, false},
      {"B", "",
       {SzPlace(LM, "System\\CurrentControlSet\\Services\\VXD\\MSTCP", "DefaultTTL", "128"),
        SzPlace(LM, "System\\CurrentControlSet\\Services\\VxD\\MSTCP", "sackopts", "1")},
       {},
       false}};
  EXPECT_EQ(RegFileText(StatesOf(m, cs), {}),
            "Windows Registry Editor Version 5.00\r\n"
            "\r\n"
            "[HKEY_LOCAL_MACHINE\\System\\CurrentControlSet\\Services\\VxD\\MSTCP]\r\n"
            "\"SackOpts\"=-\r\n"
            "\"DefaultTTL\"=\"32\"\r\n"
            "\r\n");
}

TEST(EtatBackup, UnreadableValuesAndKeysAreLeftAloneWithAComment) {
  GuardedFake m;
  m.SetDword(CU, kExplorerPolicies, "Norun", 1);
  m.SetDword(CU, kExplorerPolicies, "Nofind", 1);
  m.SetDword(CU, kDesktop, "SmoothScroll", 1);
  m.deniedValue = "Norun";
  m.deniedKey = kDesktop;
  std::vector<Catalogue> cs = {{"A", "",
                                {DwordPlace(CU, kExplorerPolicies, "Norun", 1), DwordPlace(CU, kExplorerPolicies, "Nofind", 1),
                                 DwordPlace(CU, kDesktop, "SmoothScroll", 0)},
                                {},
                                false}};
  EXPECT_EQ(RegFileText(StatesOf(m, cs), {}),
            "Windows Registry Editor Version 5.00\r\n"
            "\r\n"
            "[HKEY_CURRENT_USER\\Software\\Microsoft\\Windows\\CurrentVersion\\Policies\\Explorer]\r\n"
            "; \"Norun\" : illisible (accès refusé, code 5), laissée telle quelle\r\n"
            "\"Nofind\"=dword:00000001\r\n"
            "\r\n"
            "; [HKEY_CURRENT_USER\\Control Panel\\Desktop] : illisible (accès refusé, code 5), laissée telle quelle\r\n"
            "\r\n");
}

TEST(EtatBackup, AValueReadWhereTheProgramsMaskIsRefusedIsStillBackedUp) {
  FakePlatform m;
  m.SetValue(LM, kRun, "z:", regtype::Sz, std::string("subst.exe Z: \"c:\\outils\"", 24));
  m.DenyWrite(LM, kRun);
  std::vector<Catalogue> cs = {{"A", "", {RegistryPlace{LM, kRun, "z:", regtype::Sz, {}, {}}, RegistryPlace{LM, kRun, "y:", regtype::Sz, {}, {}}}, {}, false}};
  EXPECT_EQ(RegFileText(StatesOf(m, cs), {}),
            "Windows Registry Editor Version 5.00\r\n"
            "\r\n"
            "[HKEY_LOCAL_MACHINE\\SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Run]\r\n"
            "\"z:\"=hex(1):73,00,75,00,62,00,73,00,74,00,2e,00,65,00,78,00,65,00,20,00,5a,00,3a,00,20,00,22,00,63,00,3a,00,"
            "5c,00,6f,00,75,00,74,00,69,00,6c,00,73,00,22,00\r\n"
            "\"y:\"=-\r\n"
            "\r\n");
}

// --- the command ----------------------------------------------------------------------------



TEST(EtatCommand, NoArgumentAndEtatPrintTheReportOfEveryCatalogue) {
  FakePlatform m;
  Console c(m);
  EXPECT_EQ(companion::Run({}, m, c.io), kOk);
  EXPECT_TRUE(c.err.empty());
  EXPECT_EQ(c.out.rfind("Optimiseur Windows : registre\r\n", 0), 0u);
  EXPECT_NE(c.out.find("Lecteurs virtuels permanents (clé Run)\r\n"), std::string::npos);
  std::string first = c.out;
  c.out.clear();
  EXPECT_EQ(companion::Run({"etat"}, m, c.io), kOk);
  EXPECT_EQ(c.out, first);
}

TEST(EtatCommand, JsonOptionPrintsTheJsonReportInEitherOrder) {
  FakePlatform m;
  Console c(m);
  EXPECT_EQ(companion::Run({"--json"}, m, c.io), kOk);
  EXPECT_EQ(c.out.rfind("{\"administrateur\": true, \"catalogues\": [", 0), 0u);
  std::string first = c.out;
  c.out.clear();
  EXPECT_EQ(companion::Run({"etat", "--json"}, m, c.io), kOk);
  EXPECT_EQ(c.out, first);
  c.out.clear();
  EXPECT_EQ(companion::Run({"--json", "etat"}, m, c.io), kOk) << c.err;
  EXPECT_EQ(c.out, first);
}

TEST(EtatCommand, AnUnknownCommandGetsAFrenchSentenceAndCode2) {
  FakePlatform m;
  Console c(m);
  EXPECT_EQ(companion::Run({"restaurer"}, m, c.io), kBadInput);
  EXPECT_TRUE(c.out.empty());
  EXPECT_EQ(c.err.rfind("tamrix-etat : commande inconnue : \"restaurer\".\r\nUtilisation :\r\n", 0), 0u) << c.err;
  c.err.clear();
  EXPECT_EQ(companion::Run({"--json", "--json"}, m, c.io), kBadInput);
  EXPECT_EQ(companion::Run({"--vite"}, m, c.io), kBadInput);
  EXPECT_EQ(companion::Run({"--vue", "16"}, m, c.io), kBadInput);
  EXPECT_EQ(companion::Run({"sauvegarde", "a.reg", "--json"}, m, c.io), kBadInput);
  EXPECT_EQ(companion::Run({"--remplacer"}, m, c.io), kBadInput);
  EXPECT_TRUE(c.out.empty());
}

TEST(EtatCommand, CommandWordsAndOptionsAreTakenInAnyCase) {
  FakePlatform m;
  Console c(m);
  EXPECT_EQ(companion::Run({"etat"}, m, c.io), kOk);
  std::string first = c.out;
  c.out.clear();
  EXPECT_EQ(companion::Run({"ETAT"}, m, c.io), kOk) << c.err;
  EXPECT_EQ(c.out, first);
  c.out.clear();
  EXPECT_EQ(companion::Run({"Etat", "--JSON"}, m, c.io), kOk) << c.err;
  EXPECT_EQ(c.out.rfind("{", 0), 0u);
  TempDir dir;
  c.out.clear();
  EXPECT_EQ(companion::Run({"SAUVEGARDE", (dir.path / "s.reg").string()}, m, c.io), kOk) << c.err;
  EXPECT_EQ(dir.Names(), (std::vector<std::string>{"s.reg"}));
}

TEST(EtatCommand, AskingForHelpPrintsTheUsageAndSucceeds) {
  FakePlatform m;
  Console c(m);
  for (const char* word : {"/?", "-h", "--aide", "-H", "aide"}) {
    c.out.clear();
    EXPECT_EQ(companion::Run({word}, m, c.io), kOk) << word;
    EXPECT_EQ(c.out, kUsage) << word;
  }
  EXPECT_EQ(companion::Run({"sauvegarde", "-h"}, m, c.io), kOk);
  EXPECT_TRUE(m.calls.empty()) << "nothing is read for the usage";
}

TEST(EtatCommand, ABackupWithoutAFileNameGetsAFrenchSentenceAndCode2) {
  FakePlatform m;
  Console c(m);
  EXPECT_EQ(companion::Run({"sauvegarde"}, m, c.io), kBadInput);
  EXPECT_EQ(c.err.rfind("tamrix-etat : il manque le nom du fichier de sauvegarde.\r\n", 0), 0u) << c.err;
  EXPECT_EQ(companion::Run({"sauvegarde", ""}, m, c.io), kBadInput);
}

TEST(EtatCommand, ABackupWritesTheRegFileTheSystemIniCopyAndSaysHowToRestoreBoth) {
  FakePlatform m;
  m.SetValue(CU, kDesktop, "MenuShowDelay", regtype::Sz, std::string("400\0", 4));
  m.File("C:\\WINDOWS\\system.ini") = "[386Enh]\r\nMaxBps=1200\r\n";
  Console c(m);
  TempDir dir;
  std::string reg = (dir.path / "avant.reg").string();
  ASSERT_EQ(companion::Run({"sauvegarde", reg}, m, c.io), kOk) << c.err;
  EXPECT_EQ(dir.Names(), (std::vector<std::string>{"avant.reg", "avant.system.ini"}));
  EXPECT_EQ(test::FileBytes(dir.path / "avant.system.ini"), "[386Enh]\r\nMaxBps=1200\r\n");
  std::string text = fake::RegFileLines(test::FileBytes(dir.path / "avant.reg")).value_or("<no UTF-16 file>");
  std::string restore = "Pour tout remettre : reg import \"" + reg + "\", puis copiez \"" +
                        (dir.path / "avant.system.ini").string() + "\" sur \"C:\\WINDOWS\\system.ini\".";
  std::string admin = "Les clés HKLM et system.ini ne se remettent que depuis une invite de commandes ouverte en administrateur.";
  EXPECT_EQ(text.rfind("Windows Registry Editor Version 5.00\r\n\r\n; Tamrix Utility : sauvegarde des valeurs des catalogues, prise le 21/11/2026 à 20:50:35.\r\n", 0), 0u) << text;
  EXPECT_NE(text.find("; " + admin + "\r\n"), std::string::npos) << text;
  EXPECT_NE(text.find("; " + restore + "\r\n"), std::string::npos) << text;
  EXPECT_NE(text.find("[HKEY_CURRENT_USER\\Control Panel\\Desktop]\r\n\"WaitToKillAppTimeout\"=-\r\n"), std::string::npos);
  EXPECT_NE(text.find("\"MenuShowDelay\"=\"400\"\r\n"), std::string::npos);
  EXPECT_NE(text.find("; [HKEY_LOCAL_MACHINE\\SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Run] : clé absente, laissée absente\r\n"),
            std::string::npos);
  EXPECT_EQ(c.out, "Sauvegarde écrite dans \"" + reg + "\".\r\nCopie de system.ini écrite dans \"" +
                       (dir.path / "avant.system.ini").string() + "\".\r\n" + restore + "\r\n" + admin + "\r\n");
}

TEST(EtatCommand, ABackupNeverWritesToTheRegistryNorToSystemIni) {
  FakePlatform m;
  m.File("C:\\WINDOWS\\system.ini") = "[386Enh]\r\nMaxBps=1200\r\n";
  m.CreateKey(CU, kDesktop);
  Console c(m);
  TempDir dir;
  ASSERT_EQ(companion::Run({"sauvegarde", (dir.path / "s.reg").string()}, m, c.io), kOk);
  for (const std::string& call : m.calls) {
    EXPECT_EQ(call.find("RegSetValueExA"), std::string::npos) << call;
    EXPECT_EQ(call.find("RegDelete"), std::string::npos) << call;
    EXPECT_EQ(call.find("WritePrivateProfileStringA"), std::string::npos) << call;
  }
  EXPECT_EQ(m.File("C:\\WINDOWS\\system.ini"), "[386Enh]\r\nMaxBps=1200\r\n");
  EXPECT_FALSE(m.KeyExists(LM, kRun)) << "a missing key is not created";
}

TEST(EtatCommand, WithoutSystemIniTheBackupSaysToDeleteItAfterwards) {
  FakePlatform m;
  Console c(m);
  TempDir dir;
  ASSERT_EQ(companion::Run({"sauvegarde", (dir.path / "s.reg").string()}, m, c.io), kOk);
  EXPECT_EQ(dir.Names(), (std::vector<std::string>{"s.reg"}));
  EXPECT_NE(c.out.find("puis supprimez \"C:\\WINDOWS\\system.ini\" (il n'existait pas lors de la sauvegarde)."),
            std::string::npos)
      << c.out;
}

TEST(EtatCommand, APathThatCantBeWrittenGetsCode2AndLeavesNothingBehind) {
  FakePlatform m;
  m.File("C:\\WINDOWS\\system.ini") = "[386Enh]\r\n";
  Console c(m);
  TempDir dir;
  std::string reg = (dir.path / "pas-de-dossier" / "s.reg").string();
  EXPECT_EQ(companion::Run({"sauvegarde", reg}, m, c.io), kBadInput);
  EXPECT_EQ(c.err.rfind("tamrix-etat : impossible d'écrire \"" + reg + "\"", 0), 0u) << c.err;
  EXPECT_TRUE(dir.Names().empty());
  EXPECT_TRUE(c.out.empty());
}

TEST(EtatCommand, WhenTheSecondFileCantBePutInPlaceTheFirstIsNotLeftEither) {
  FakePlatform m;
  m.File("C:\\WINDOWS\\system.ini") = "[386Enh]\r\n";
  Console c(m);
  TempDir dir;
  fs::create_directories(dir.path / "s.system.ini" / "occupé");  // a folder stands where the copy goes
  EXPECT_EQ(companion::Run({"sauvegarde", (dir.path / "s.reg").string()}, m, c.io), kBadInput);
  EXPECT_EQ(dir.Names(), (std::vector<std::string>{"s.system.ini"}));
  EXPECT_TRUE(fs::is_directory(dir.path / "s.system.ini"));
}

// --- never a byte lost ------------------------------------------------------------------------

TEST(EtatCommand, AnExistingFileIsNeverReplacedWithoutTheReplaceOption) {
  FakePlatform m;
  m.File("C:\\WINDOWS\\system.ini") = "[386Enh]\r\n";
  Console c(m);
  TempDir dir;
  std::string reg = (dir.path / "avant.reg").string();
  { std::FILE* f = std::fopen(reg.c_str(), "wb"); std::fputs("hier", f); std::fclose(f); }
  EXPECT_EQ(companion::Run({"sauvegarde", reg}, m, c.io), kBadInput);
  EXPECT_EQ(c.err.rfind("tamrix-etat : \"" + reg + "\" existe déjà : ajoutez --remplacer pour le remplacer.", 0), 0u) << c.err;
  EXPECT_EQ(test::FileBytes(reg), "hier");
  EXPECT_EQ(dir.Names(), (std::vector<std::string>{"avant.reg"}));
}

TEST(EtatCommand, AnExistingCopyOfSystemIniIsNeverReplacedWithoutTheReplaceOption) {
  FakePlatform m;
  m.File("C:\\WINDOWS\\system.ini") = "[386Enh]\r\n";
  Console c(m);
  TempDir dir;
  std::string copy = (dir.path / "avant.system.ini").string();
  { std::FILE* f = std::fopen(copy.c_str(), "wb"); std::fputs("hier", f); std::fclose(f); }
  EXPECT_EQ(companion::Run({"sauvegarde", (dir.path / "avant.reg").string()}, m, c.io), kBadInput);
  EXPECT_EQ(test::FileBytes(copy), "hier");
  EXPECT_EQ(dir.Names(), (std::vector<std::string>{"avant.system.ini"}));
}

TEST(EtatCommand, TheFilesTheCataloguesWriteAreRefusedEvenWithTheReplaceOption) {
  FakePlatform m;
  m.File("C:\\WINDOWS\\system.ini") = "[386Enh]\r\n";
  Console c(m);
  TempDir dir;
  for (const char* name : {"system.ini", "SYSTEM.INI", "config.dll", "oeminfo.ini", "Desktop.ini"}) {
    std::string path = (dir.path / name).string();
    { std::FILE* f = std::fopen(path.c_str(), "wb"); std::fputs("[x]\r\n", f); std::fclose(f); }
    c.err.clear();
    EXPECT_EQ(companion::Run({"sauvegarde", path, "--remplacer"}, m, c.io), kBadInput) << name;
    EXPECT_NE(c.err.find("est un fichier qu'écrit le programme lui-même"), std::string::npos) << c.err;
    EXPECT_EQ(test::FileBytes(path), "[x]\r\n") << name;
    std::remove(path.c_str());
  }
  EXPECT_TRUE(dir.Names().empty());
}

TEST(EtatCommand, NothingIsEverWrittenInTheWindowsDirectory) {
  FakePlatform m;
  TempDir dir;
  m.windowsDirectory = dir.path.string();
  Console c(m);
  EXPECT_EQ(companion::Run({"sauvegarde", (dir.path / "avant.reg").string()}, m, c.io), kBadInput);
  EXPECT_NE(c.err.find("est dans le dossier de Windows"), std::string::npos) << c.err;
  fs::create_directories(dir.path / "sous");
  EXPECT_EQ(companion::Run({"sauvegarde", (dir.path / "sous" / ".." / "sous" / "avant.reg").string(), "--remplacer"}, m, c.io),
            kBadInput);
  EXPECT_EQ(dir.Names(), (std::vector<std::string>{"sous"}));
  EXPECT_TRUE(fs::is_empty(dir.path / "sous"));
}

TEST(EtatCommand, WithTheReplaceOptionBothEarlierFilesAreReplaced) {
  FakePlatform m;
  m.File("C:\\WINDOWS\\system.ini") = "[386Enh]\r\nMaxBps=1200\r\n";
  Console c(m);
  TempDir dir;
  std::string reg = (dir.path / "s.reg").string(), copy = (dir.path / "s.system.ini").string();
  for (const std::string& path : {reg, copy}) { std::FILE* f = std::fopen(path.c_str(), "wb"); std::fputs("hier", f); std::fclose(f); }
  ASSERT_EQ(companion::Run({"sauvegarde", "--remplacer", reg}, m, c.io), kOk) << c.err;
  EXPECT_EQ(dir.Names(), (std::vector<std::string>{"s.reg", "s.system.ini"}));
  EXPECT_EQ(test::FileBytes(copy), "[386Enh]\r\nMaxBps=1200\r\n");
  EXPECT_TRUE(fake::ReadRegFile(test::FileBytes(reg)).has_value());
}

TEST(EtatCommand, AReadOnlyEarlierCopyRefusesTheBackupAndBothEarlierFilesStay) {
  FakePlatform m;
  m.File("C:\\WINDOWS\\system.ini") = "[386Enh]\r\n";
  Console c(m);
  TempDir dir;
  std::string reg = (dir.path / "s.reg").string(), copy = (dir.path / "s.system.ini").string();
  for (const std::string& path : {reg, copy}) { std::FILE* f = std::fopen(path.c_str(), "wb"); std::fputs("hier", f); std::fclose(f); }
  fs::permissions(copy, fs::perms::owner_write | fs::perms::group_write | fs::perms::others_write, fs::perm_options::remove);
  EXPECT_EQ(companion::Run({"sauvegarde", reg, "--remplacer"}, m, c.io), kBadInput);
  EXPECT_NE(c.err.find("\"" + copy + "\" est en lecture seule"), std::string::npos) << c.err;
  EXPECT_EQ(test::FileBytes(reg), "hier");
  EXPECT_EQ(test::FileBytes(copy), "hier");
  EXPECT_EQ(dir.Names(), (std::vector<std::string>{"s.reg", "s.system.ini"}));
  fs::permissions(copy, fs::perms::owner_write, fs::perm_options::add);
}

// Files whose every operation may be made to fail, with the order of what was done.
struct FailingFiles {
  int failAt = -1;  // the operation that fails, counted from 0
  int count = 0;
  std::vector<std::string> done;
  void Wrap(Io& io) {
    auto write = io.writeFile;
    auto move = io.moveFile;
    io.writeFile = [this, write](const std::string& path, const std::string& bytes) {
      done.push_back("write " + fs::path(path).filename().string());
      return count++ != failAt && write(path, bytes);
    };
    io.moveFile = [this, move](const std::string& from, const std::string& to) {
      done.push_back("move " + fs::path(from).filename().string() + " " + fs::path(to).filename().string());
      return count++ != failAt && move(from, to);
    };
  }
};

TEST(EtatCommand, AFailureAtAnyStepLeavesEveryEarlierFileAsItWas) {
  for (int failAt = 0; failAt < 6; ++failAt) {
    FakePlatform m;
    m.File("C:\\WINDOWS\\system.ini") = "[386Enh]\r\n";
    Console c(m);
    FailingFiles files{failAt};
    files.Wrap(c.io);
    TempDir dir;
    std::string reg = (dir.path / "s.reg").string(), copy = (dir.path / "s.system.ini").string();
    { std::FILE* f = std::fopen(reg.c_str(), "wb"); std::fputs("reg d'hier", f); std::fclose(f); }
    { std::FILE* f = std::fopen(copy.c_str(), "wb"); std::fputs("copie d'hier", f); std::fclose(f); }
    EXPECT_EQ(companion::Run({"sauvegarde", reg, "--remplacer"}, m, c.io), kBadInput) << failAt;
    EXPECT_EQ(test::FileBytes(reg), "reg d'hier") << failAt;
    EXPECT_EQ(test::FileBytes(copy), "copie d'hier") << failAt;
    EXPECT_EQ(dir.Names(), (std::vector<std::string>{"s.reg", "s.system.ini"})) << failAt;
  }
}

TEST(EtatCommand, EveryNewFileIsWrittenWholeBeforeAnyEarlierFileMoves) {
  FakePlatform m;
  m.File("C:\\WINDOWS\\system.ini") = "[386Enh]\r\n";
  Console c(m);
  FailingFiles files;
  files.Wrap(c.io);
  TempDir dir;
  std::string reg = (dir.path / "s.reg").string(), copy = (dir.path / "s.system.ini").string();
  { std::FILE* f = std::fopen(reg.c_str(), "wb"); std::fputs("hier", f); std::fclose(f); }
  { std::FILE* f = std::fopen(copy.c_str(), "wb"); std::fputs("hier", f); std::fclose(f); }
  ASSERT_EQ(companion::Run({"sauvegarde", reg, "--remplacer"}, m, c.io), kOk) << c.err;
  EXPECT_EQ(files.done, (std::vector<std::string>{"write s.reg.partiel", "write s.system.ini.partiel",
                                                  "move s.reg s.reg.ancien", "move s.system.ini s.system.ini.ancien",
                                                  "move s.reg.partiel s.reg", "move s.system.ini.partiel s.system.ini"}));
  EXPECT_EQ(dir.Names(), (std::vector<std::string>{"s.reg", "s.system.ini"}));
}

// --- what the backup puts back ----------------------------------------------------------------

// The backup taken on m, as its file reads.
std::vector<fake::RegFileKey> BackupOf(FakePlatform& m, std::vector<std::string> extra = {},
                                       std::uint32_t ownView = keyaccess::View64, std::string* out = nullptr) {
  Console c(m);
  TempDir dir;
  std::vector<std::string> args = {"sauvegarde", (dir.path / "b.reg").string()};
  args.insert(args.end(), extra.begin(), extra.end());
  EXPECT_EQ(companion::Run(args, m, c.io, ownView), kOk) << c.err;
  if (out) *out = c.out;
  std::string bytes = test::FileBytes(dir.path / "b.reg");
  auto keys = fake::ReadRegFile(bytes);
  EXPECT_TRUE(keys.has_value()) << fake::RegFileLines(bytes).value_or(bytes);
  return keys.value_or(std::vector<fake::RegFileKey>{});
}

const fake::RegFileValue* Find(const std::vector<fake::RegFileKey>& keys, const std::string& key, const std::string& name) {
  for (const auto& k : keys)
    if (k.name == key)
      for (const auto& v : k.values)
        if (v.name == name) return &v;
  return nullptr;
}

TEST(EtatRestore, ATypeOfTenOrAboveComesBackWithItsTypeAndBytes) {
  FakePlatform m;
  std::string qword("\x01\x02\x03\x04\x05\x06\x07\x08", 8);
  m.SetValue(CU, kDesktop, "MenuShowDelay", regtype::Qword, qword);
  auto keys = BackupOf(m);
  const auto* v = Find(keys, "HKEY_CURRENT_USER\\Control Panel\\Desktop", "MenuShowDelay");
  ASSERT_NE(v, nullptr);
  EXPECT_EQ(v->type, regtype::Qword);
  EXPECT_EQ(v->raw, qword);
}

TEST(EtatRestore, TextOutsideTheAnsiCodePageComesBackInFull) {
  FakePlatform m;
  std::string command = "subst.exe Z: \"C:\\Документы\"";
  m.SetValue(LM, kRun, "z:", regtype::Sz, command);
  m.SetValue(CU, kDesktop, "Wallpaper", regtype::ExpandSz, std::string("%USERPROFILE%\\Рисунки\\漢字.bmp\0", 36));
  auto keys = BackupOf(m);
  const auto* v = Find(keys, "HKEY_LOCAL_MACHINE\\SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Run", "z:");
  ASSERT_NE(v, nullptr);
  EXPECT_EQ(v->type, regtype::Sz);
  EXPECT_EQ(Utf16LeToUtf8(v->raw), command);
  FakePlatform after;
  fake::ImportInto(after, keys);
  ASSERT_NE(after.GetValue(LM, kRun, "z:"), nullptr);
  EXPECT_EQ(after.GetValue(LM, kRun, "z:")->data, command);
}

TEST(EtatRestore, TheRunKeysDefaultValueIsBackedUpAndShown) {
  FakePlatform m;
  m.SetValue(LM, kRun, "", regtype::Sz, "subst.exe  \"C:\\outils\"");
  auto keys = BackupOf(m);
  const auto* v = Find(keys, "HKEY_LOCAL_MACHINE\\SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Run", "");
  ASSERT_NE(v, nullptr);
  EXPECT_FALSE(v->deleted);
  EXPECT_EQ(Utf16LeToUtf8(v->raw), "subst.exe  \"C:\\outils\"");
  Console c(m);
  ASSERT_EQ(companion::Run({}, m, c.io), kOk);
  EXPECT_NE(c.out.find("  présent       HKLM\\SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Run \"\" | écrirait (varie) | a "
                       "\"subst.exe  \"C:\\outils\"\" (REG_SZ)\r\n"),
            std::string::npos)
      << c.out;
}

const char* const kPaintIcon = "Software\\CLASSES\\Paint.Picture\\DefaultIcon";
const char* const kOpenAs = "*\\shell\\openas\\command\\rundll32.exe shell32.dll,OpenAs_RunDLL %1";

TEST(EtatRestore, KeysTheTogglesDeleteComeBackWholeAfterAnUntick) {
  FakePlatform m;
  m.SetValue(LM, kPaintIcon, "", regtype::ExpandSz, std::string("%SystemRoot%\\system32\\mspaint.exe,1\0", 37));
  m.SetValue(LM, kPaintIcon, "Taille", regtype::Dword, std::string("\x20\0\0\0", 4));
  m.SetValue(CU, kOpenAs, "", regtype::Sz, std::string("ouvrir\0", 7));
  auto keys = BackupOf(m);
  ShellToggles::Clicked(m, ShellToggles::kToggles[0], 0);
  ShellToggles::Clicked(m, ShellToggles::kToggles[2], 0);
  ASSERT_FALSE(m.KeyExists(LM, kPaintIcon)) << "the untick deleted it";
  ASSERT_FALSE(m.KeyExists(CU, kOpenAs));
  fake::ImportInto(m, keys);
  auto icon = m.Values(LM, kPaintIcon);
  ASSERT_EQ(icon.size(), 2u);
  EXPECT_EQ(icon[0].first, "");
  EXPECT_EQ(icon[0].second.type, regtype::ExpandSz);
  EXPECT_EQ(icon[0].second.data, std::string("%SystemRoot%\\system32\\mspaint.exe,1\0", 37));
  EXPECT_EQ(icon[1].first, "Taille");
  EXPECT_EQ(icon[1].second.data, std::string("\x20\0\0\0", 4));
  auto openAs = m.Values(CU, kOpenAs);
  ASSERT_EQ(openAs.size(), 1u);
  EXPECT_EQ(openAs[0].second.data, std::string("ouvrir\0", 7));
}

TEST(EtatRestore, AKeyTheProgramDeletesComesBackWithItsSubkeysAndNothingAdded) {
  FakePlatform m;
  m.SetValue(LM, kPaintIcon, "", regtype::Sz, std::string("a\0", 2));
  m.SetValue(LM, std::string(kPaintIcon) + "\\Petite", "q", regtype::Qword, std::string(8, '\x7f'));
  m.SetValue(LM, std::string(kPaintIcon) + "\\Petite\\Plus", "m", regtype::MultiSz, std::string("x\0y\0\0", 5));
  auto keys = BackupOf(m);
  m.SetValue(LM, kPaintIcon, "ajoutée", regtype::Sz, "après");
  m.SetValue(LM, std::string(kPaintIcon) + "\\Nouvelle", "n", regtype::Sz, "après");
  m.DeleteKeyTree(LM, std::string(kPaintIcon) + "\\Petite\\Plus");
  fake::ImportInto(m, keys);
  EXPECT_EQ(m.Values(LM, kPaintIcon).size(), 1u) << "the value added afterwards is gone";
  EXPECT_EQ(m.Subkeys(LM, kPaintIcon), (std::vector<std::string>{"Petite"}));
  ASSERT_NE(m.GetValue(LM, std::string(kPaintIcon) + "\\Petite", "q"), nullptr);
  EXPECT_EQ(m.GetValue(LM, std::string(kPaintIcon) + "\\Petite", "q")->type, regtype::Qword);
  ASSERT_NE(m.GetValue(LM, std::string(kPaintIcon) + "\\Petite\\Plus", "m"), nullptr);
  EXPECT_EQ(m.GetValue(LM, std::string(kPaintIcon) + "\\Petite\\Plus", "m")->data, std::string("x\0y\0\0", 5));
}

TEST(EtatRestore, AKeyTheProgramDeletesThatWasNotThereIsDeletedOnImport) {
  FakePlatform m;
  m.CreateKey(LM, "Software\\CLASSES\\Paint.Picture");
  auto keys = BackupOf(m);
  m.SetValue(LM, kPaintIcon, "", regtype::Sz, "venue après");
  fake::ImportInto(m, keys);
  EXPECT_FALSE(m.KeyExists(LM, kPaintIcon));
  EXPECT_TRUE(m.KeyExists(LM, "Software\\CLASSES\\Paint.Picture"));
}

// --- what the report predicts ------------------------------------------------------------------

TEST(EtatReport, ARowTheProgramsOwnMaskWouldLoseIsRefusedWithTheValueReadStill) {
  FakePlatform m;
  m.SetValue(LM, "SYSTEM\\CurrentControlSet\\Control", "WaitToKillAppTimeout", regtype::Sz, "1000");
  m.DenyWrite(LM, "SYSTEM\\CurrentControlSet\\Control");
  Console c(m);
  ASSERT_EQ(companion::Run({}, m, c.io), kOk);
  EXPECT_NE(c.out.find("  refusé        HKLM\\SYSTEM\\CurrentControlSet\\Control \"WaitToKillAppTimeout\" | écrirait \"1000\" "
                       "(REG_SZ) | a \"1000\" (REG_SZ)\r\n"),
            std::string::npos)
      << c.out;
}

TEST(EtatReport, AnyOtherFailureShowsItsOwnStatusNotAccessDenied) {
  GuardedFake m;
  m.deniedKey = kDesktop;
  m.openStatus = 1018;  // a key marked for deletion
  Console c(m);
  ASSERT_EQ(companion::Run({}, m, c.io), kOk);
  EXPECT_NE(c.out.find("  erreur        HKCU\\Control Panel\\Desktop \"MenuShowDelay\" | écrirait \"0\" (REG_SZ) | a "
                       "(illisible : erreur 1018)\r\n"),
            std::string::npos)
      << c.out;
  EXPECT_EQ(c.out.find("accès refusé     HKCU\\Control Panel\\Desktop"), std::string::npos);
}

TEST(EtatReport, TheLastLineAndTheJsonSayWhetherItRanAsAdministrator) {
  FakePlatform m;
  m.admin = false;
  Console c(m);
  ASSERT_EQ(companion::Run({}, m, c.io), kOk);
  std::string last = "Lu sans les droits d'administrateur : les lignes HKLM refusées ici le seraient aussi au programme lancé de même.\r\n";
  ASSERT_GE(c.out.size(), last.size());
  EXPECT_EQ(c.out.substr(c.out.size() - last.size()), last);
  c.out.clear();
  ASSERT_EQ(companion::Run({"--json"}, m, c.io), kOk);
  EXPECT_EQ(c.out.rfind("{\"administrateur\": false, ", 0), 0u) << c.out.substr(0, 60);
}

// --- the registry's views ----------------------------------------------------------------------

const char* const kRunIn32 = "SOFTWARE\\WOW6432Node\\Microsoft\\Windows\\CurrentVersion\\Run";

// A 64-bit Windows on which the i686 program made a permanent drive.
void DriveOfThe32BitProgram(FakePlatform& m) {
  m.windows64 = true;
  m.CreateKey(LM, "SOFTWARE\\WOW6432Node\\Microsoft\\Windows\\CurrentVersion\\Run");
  m.CreateKey(LM, kRun);
  m.process32 = true;
  Registre::WriteRegValue(m, LM, kRun, "z:", RegValue("subst.exe Z: \"C:\\outils\""), regtype::Sz);
  m.process32 = false;
  ASSERT_NE(m.GetValue(LM, kRunIn32, "z:"), nullptr) << "the program's value lands in the 32-bit view";
}

TEST(EtatViews, TheI686CompanionReadsAndNamesThe32BitViewUnderWow6432Node) {
  FakePlatform m;
  DriveOfThe32BitProgram(m);
  m.process32 = true;
  std::string out;
  auto keys = BackupOf(m, {}, keyaccess::View32, &out);
  const auto* v = Find(keys, "HKEY_LOCAL_MACHINE\\SOFTWARE\\WOW6432Node\\Microsoft\\Windows\\CurrentVersion\\Run", "z:");
  ASSERT_NE(v, nullptr);
  EXPECT_EQ(Utf16LeToUtf8(v->raw), "subst.exe Z: \"C:\\outils\"");
  EXPECT_EQ(Find(keys, "HKEY_LOCAL_MACHINE\\SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Run", "z:"), nullptr);
  // The shared Classes key keeps its one name.
  bool classes = false;
  for (const auto& k : keys) classes |= k.name == "HKEY_LOCAL_MACHINE\\Software\\CLASSES\\Paint.Picture\\DefaultIcon";
  EXPECT_TRUE(classes);
  EXPECT_NE(out.find("reg import \""), std::string::npos);
  EXPECT_EQ(out.find("/reg:64"), std::string::npos) << "its names take any import there";
}

TEST(EtatViews, TheX8664CompanionSeesThe32BitProgramsRowsOnlyWhenAskedFor) {
  FakePlatform m;
  DriveOfThe32BitProgram(m);
  Console c(m);
  ASSERT_EQ(companion::Run({}, m, c.io, keyaccess::View64), kOk);
  EXPECT_EQ(c.out.find("\"z:\""), std::string::npos) << "its own build's view holds nothing";
  c.out.clear();
  ASSERT_EQ(companion::Run({"--vue", "32"}, m, c.io, keyaccess::View64), kOk);
  EXPECT_NE(c.out.find("présent       HKLM\\SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Run \"z:\""), std::string::npos)
      << c.out;
  std::string out;
  auto keys = BackupOf(m, {"--vue", "32"}, keyaccess::View64, &out);
  EXPECT_NE(Find(keys, "HKEY_LOCAL_MACHINE\\SOFTWARE\\WOW6432Node\\Microsoft\\Windows\\CurrentVersion\\Run", "z:"), nullptr);
}

TEST(EtatViews, TheRestoreOfThe64BitViewSaysSoToTheImport) {
  FakePlatform m;
  m.windows64 = true;
  m.CreateKey(LM, "SOFTWARE\\WOW6432Node");
  std::string out;
  BackupOf(m, {}, keyaccess::View64, &out);
  EXPECT_NE(out.find("\" /reg:64, puis"), std::string::npos) << out;
}

TEST(EtatViews, A32BitWindowsHasOneViewAndPlainNames) {
  FakePlatform m;
  m.SetValue(LM, kRun, "z:", regtype::Sz, "subst.exe Z: \"C:\\outils\"");
  std::string out;
  auto keys = BackupOf(m, {}, keyaccess::View32, &out);
  EXPECT_NE(Find(keys, "HKEY_LOCAL_MACHINE\\SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Run", "z:"), nullptr);
  EXPECT_EQ(out.find("/reg:64"), std::string::npos);
}

const char* const kOneViewSentence =
    "tamrix-etat : ce Windows n'a qu'une vue du registre (Windows 32 bits) : --vue n'y change rien.\r\n";

TEST(EtatViews, OnA32BitWindowsTheViewAskedForIsSaidToChangeNothingAndTheStateIsStillGiven) {
  FakePlatform m;  // no WOW6432Node: a 32-bit Windows
  m.SetValue(LM, kRun, "z:", regtype::Sz, "subst.exe Z: \"C:\\outils\"");
  for (const char* asked : {"32", "64"}) {
    Console c(m);
    ASSERT_EQ(companion::Run({"--vue", asked}, m, c.io, keyaccess::View32), kOk) << asked;
    EXPECT_EQ(c.err, kOneViewSentence) << asked;
    EXPECT_NE(c.out.find("présent       HKLM\\SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Run \"z:\""), std::string::npos)
        << asked << ": " << c.out;
  }
  Console json(m);
  ASSERT_EQ(companion::Run({"--json", "--vue", "64"}, m, json.io, keyaccess::View32), kOk);
  EXPECT_EQ(json.out.rfind("{", 0), 0u) << "the sentence stays out of the JSON: " << json.out.substr(0, 60);
}

TEST(EtatViews, OnA32BitWindowsABackupWithTheViewAskedForSaysItChangesNothingAndKeepsPlainNames) {
  FakePlatform m;
  m.SetValue(LM, kRun, "z:", regtype::Sz, "subst.exe Z: \"C:\\outils\"");
  Console c(m);
  TempDir dir;
  ASSERT_EQ(companion::Run({"sauvegarde", (dir.path / "b.reg").string(), "--vue", "64"}, m, c.io, keyaccess::View32), kOk);
  EXPECT_EQ(c.err, kOneViewSentence);
  auto keys = fake::ReadRegFile(test::FileBytes(dir.path / "b.reg"));
  ASSERT_TRUE(keys.has_value());
  EXPECT_NE(Find(*keys, "HKEY_LOCAL_MACHINE\\SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Run", "z:"), nullptr);
  EXPECT_EQ(c.out.find("/reg:64"), std::string::npos) << c.out;
}

TEST(EtatViews, OnA64BitWindowsTheViewAskedForIsTakenInSilence) {
  FakePlatform m;
  DriveOfThe32BitProgram(m);
  Console c(m);
  ASSERT_EQ(companion::Run({"--vue", "32"}, m, c.io, keyaccess::View64), kOk);
  EXPECT_EQ(c.err, "");
}

}  // namespace
}  // namespace tamrix::companion
