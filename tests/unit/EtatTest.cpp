// The companion program against the fake machine: the catalogues it walks, the state of each
// place, the report, the backup file's exact text, and the command's answers to bad input.
#include <gtest/gtest.h>

#include <cstdio>
#include <filesystem>
#include <map>

#include "contract/ExpectedCatalogues.h"
#include "etat/Catalogues.h"
#include "etat/Commande.h"
#include "etat/Etat.h"
#include "etat/Rapport.h"
#include "etat/Sauvegarde.h"
#include "fake/FakePlatform.h"

namespace tamrix::etat {
namespace {

namespace fs = std::filesystem;
using fake::FakePlatform;
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
      return status::AccessDenied;
    }
    return FakePlatform::RegOpenKeyExA(parent, subKey, options, samDesired, result);
  }
  long RegQueryValueExA(HKey key, const std::string& valueName, std::uint32_t* type, std::string* data,
                        std::uint32_t* size) override {
    if (!deniedValue.empty() && valueName == deniedValue) return status::AccessDenied;
    return FakePlatform::RegQueryValueExA(key, valueName, type, data, size);
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
      {"Lecteurs virtuels permanents (clé Run)", 26},
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
  ASSERT_EQ(c.registry.size(), 26u);
  EXPECT_TRUE(c.onlyPresent);
  EXPECT_EQ(c.registry[0].valueName, "a:");
  EXPECT_EQ(c.registry[25].valueName, "z:");
  for (const RegistryPlace& p : c.registry) {
    EXPECT_EQ(p.hive, LM);
    EXPECT_EQ(p.keyPath, kRun);
    EXPECT_EQ(p.type, regtype::Sz);
    EXPECT_TRUE(p.writes.empty()) << "the data is the user's folder";
  }
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
  long RegQueryValueExA(HKey key, const std::string& valueName, std::uint32_t* type, std::string* data,
                        std::uint32_t* size) override {
    if (data && grown == 0) {
      ++grown;
      SetValue(CU, kDesktop, valueName, regtype::Sz, std::string("1000\0", 5));
      return status::MoreData;
    }
    return FakePlatform::RegQueryValueExA(key, valueName, type, data, size);
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

TEST(EtatPlace, AKeyTheAccountMayNotOpenIsDeniedNotMissing) {
  GuardedFake m;
  m.SetDword(CU, kExplorerPolicies, "Norun", 1);
  m.deniedKey = kExplorerPolicies;
  Finding f = Inspect(m, DwordPlace(CU, kExplorerPolicies, "Norun", 1));
  EXPECT_EQ(f.state, State::Denied);
  EXPECT_TRUE(f.atKey);
}

TEST(EtatPlace, AKeyTheAccountMayNotWriteIsStillReadWithReadRightsOnly) {
  FakePlatform m;
  m.SetValue(LM, "SYSTEM\\CurrentControlSet\\Control", "WaitToKillAppTimeout", regtype::Sz, "1000");
  m.DenyWrite(LM, "SYSTEM\\CurrentControlSet\\Control");
  EXPECT_EQ(Inspect(m, SzPlace(LM, "SYSTEM\\CurrentControlSet\\Control", "WaitToKillAppTimeout", "1000")).state,
            State::AlreadySo);
  ASSERT_FALSE(m.calls.empty());
  EXPECT_EQ(m.calls[0], "RegOpenKeyExA(HKLM,SYSTEM\\CurrentControlSet\\Control,0,0x20019)");
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
    if (call.rfind("RegOpenKeyExA", 0) == 0) {
      EXPECT_NE(call.find(",0x20019)"), std::string::npos) << call;
    }
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
  EXPECT_EQ(TextReport(StatesOf(m, cs)),
            "Essai\r\n"
            "  Une note.\r\n"
            "  déjà ainsi    HKCU\\Control Panel\\Desktop \"AutoEndTasks\" | écrirait \"1\" (REG_SZ) | a \"1\" (REG_SZ)\r\n"
            "  différent     HKCU\\Control Panel\\Desktop \"MenuShowDelay\" | écrirait \"0\" (REG_SZ) | a \"400\" (REG_SZ)\r\n"
            "  absent        HKCU\\Control Panel\\Desktop \"SmoothScroll\" | écrirait 0 (REG_DWORD) | a (aucune valeur)\r\n"
            "  clé manquante HKLM\\SOFTWARE\\Microsoft\\Dfrg\\BootOptimizeFunction \"Enable\" | écrirait 12 (REG_DWORD) | a (pas de clé)\r\n"
            "  différent     system.ini [386Enh] MaxBps | écrirait \"65530\" | a \"1200\"\r\n"
            "  => 5 lignes : déjà ainsi 1, différent 2, absent 1, clé manquante 1"
            " (lignes que le programme perdrait en silence), accès refusé 0\r\n"
            "\r\n");
}

TEST(EtatReport, ADeniedValueIsShownAsSuchWithItsCode) {
  GuardedFake m;
  m.SetDword(CU, kExplorerPolicies, "Norun", 1);
  m.deniedValue = "Norun";
  std::vector<Catalogue> cs = {{"Essai", "", {DwordPlace(CU, kExplorerPolicies, "Norun", 1)}, {}, false}};
  std::string report = TextReport(StatesOf(m, cs));
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
  EXPECT_EQ(TextReport(StatesOf(m, drives)),
            "Lecteurs virtuels permanents (clé Run)\r\n"
            "  La donnée varie : la commande subst.exe du lecteur et du dossier choisis.\r\n"
            "  présent       HKLM\\SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Run \"z:\" | écrirait (varie) | a "
            "\"subst.exe Z: \"c:\\outils\"\" (REG_SZ)\r\n"
            "  => 1 lecteur(s) permanent(s)\r\n"
            "\r\n");
}

TEST(EtatReport, AMissingRunKeyIsSaidOnce) {
  FakePlatform m;
  auto all = Catalogues("Vrai");
  std::vector<Catalogue> drives = {all[7]};
  std::string report = TextReport(StatesOf(m, drives));
  EXPECT_NE(report.find("  clé manquante HKLM\\SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Run\r\n"), std::string::npos)
      << report;
  EXPECT_EQ(report.find("clé manquante HKLM", report.find("clé manquante HKLM") + 1), std::string::npos);
}

TEST(EtatReport, JsonIsAsciiWithTheStatesCurrentValuesAndCounts) {
  FakePlatform m;
  m.SetValue(CU, kDesktop, "MenuShowDelay", regtype::Sz, std::string("400\0", 4));
  m.SetDword(CU, kDesktop, "SmoothScroll", 0xFFFFFFFFu);
  std::vector<Catalogue> cs = {{"Clé", "", {SzPlace(CU, kDesktop, "MenuShowDelay", "0"), DwordPlace(CU, kDesktop, "SmoothScroll", 0)}, {}, false}};
  EXPECT_EQ(JsonReport(StatesOf(m, cs)),
            "{\"catalogues\": [\r\n"
            "  {\"titre\": \"Cl\\u00e9\", \"note\": \"\", \"lignes\": [\r\n"
            "    {\"ruche\": \"HKEY_CURRENT_USER\", \"cle\": \"Control Panel\\\\Desktop\", \"valeur\": \"MenuShowDelay\", "
            "\"type\": \"REG_SZ\", \"ecrirait\": [\"0\"], \"etat\": \"different\", \"type_actuel\": \"REG_SZ\", "
            "\"actuel\": \"400\\u0000\"},\r\n"
            "    {\"ruche\": \"HKEY_CURRENT_USER\", \"cle\": \"Control Panel\\\\Desktop\", \"valeur\": \"SmoothScroll\", "
            "\"type\": \"REG_DWORD\", \"ecrirait\": [0], \"etat\": \"different\", \"type_actuel\": \"REG_DWORD\", "
            "\"actuel\": -1}],\r\n"
            "   \"resume\": {\"deja_ainsi\": 0, \"different\": 2, \"absent\": 0, \"cle_manquante\": 0, "
            "\"acces_refuse\": 0, \"present\": 0}}\r\n"
            "]}\r\n");
}

// --- the backup file --------------------------------------------------------------------------

std::string Same(const std::string& s) { return s; }

TEST(EtatBackup, TheFileIsRegedit4WithFullHiveNamesValuesDeletionsAndCrLf) {
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
  EXPECT_EQ(RegFileText(StatesOf(m, cs), {"Une ligne d'en-tête."}, Same),
            "REGEDIT4\r\n"
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

TEST(EtatBackup, QuotedTextsEscapeBackslashAndDoubleQuote) {
  Finding f{State::Different, 0, false, regtype::Sz, std::string("subst.exe Z: \"c:\\outils\"\0", 25)};
  EXPECT_EQ(RegLine("z:", f, Same), "\"z:\"=\"subst.exe Z: \\\"c:\\\\outils\\\"\"");
  EXPECT_EQ(RegLine("a\\b\"c", {State::Absent, 0, false, 0, {}}, Same), "\"a\\\\b\\\"c\"=-");
}

TEST(EtatBackup, DwordsAreEightLowerCaseHexDigits) {
  auto dword = [](std::uint32_t n) {
    std::string raw(4, '\0');
    for (int i = 0; i < 4; ++i) raw[i] = static_cast<char>((n >> (8 * i)) & 0xFF);
    return Finding{State::Different, 0, false, regtype::Dword, raw};
  };
  EXPECT_EQ(RegLine("n", dword(12), Same), "\"n\"=dword:0000000c");
  EXPECT_EQ(RegLine("n", dword(0), Same), "\"n\"=dword:00000000");
  EXPECT_EQ(RegLine("n", dword(0xFFFFFFFFu), Same), "\"n\"=dword:ffffffff");
  EXPECT_EQ(RegLine("n", dword(64000), Same), "\"n\"=dword:0000fa00");
}

TEST(EtatBackup, TextsTheQuotedFormWouldChangeAndOtherTypesGoAsHexInTheAnsiCodePage) {
  // The program's own texts have no terminator; the quoted form would add one.
  EXPECT_EQ(RegLine("n", {State::Different, 0, false, regtype::Sz, "0"}, Same), "\"n\"=hex(1):30");
  EXPECT_EQ(RegLine("n", {State::Different, 0, false, regtype::Sz, std::string("a\0b\0", 4)}, Same),
            "\"n\"=hex(1):61,00,62,00");
  auto latin1 = [](const std::string& s) { return s == std::string("%SystemRoot%\\é\0", 16) ? std::string("%SystemRoot%\\\xe9\0", 15) : s; };
  EXPECT_EQ(RegLine("p", {State::Different, 0, false, regtype::ExpandSz, std::string("%SystemRoot%\\é\0", 16)}, latin1),
            "\"p\"=hex(2):25,53,79,73,74,65,6d,52,6f,6f,74,25,5c,e9,00");
  EXPECT_EQ(RegLine("b", {State::Different, 0, false, regtype::Binary, std::string("\x01\xff", 2)}, Same),
            "\"b\"=hex:01,ff");
  EXPECT_EQ(RegLine("m", {State::Different, 0, false, regtype::MultiSz, std::string("a\0\0", 3)}, Same),
            "\"m\"=hex(7):61,00,00");
  EXPECT_EQ(RegLine("", {State::Different, 0, false, regtype::Sz, std::string("x\0", 2)}, Same), "@=\"x\"");
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
  EXPECT_EQ(RegFileText(StatesOf(m, cs), {}, Same),
            "REGEDIT4\r\n"
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
  EXPECT_EQ(RegFileText(StatesOf(m, cs), {}, Same),
            "REGEDIT4\r\n"
            "\r\n"
            "[HKEY_CURRENT_USER\\Software\\Microsoft\\Windows\\CurrentVersion\\Policies\\Explorer]\r\n"
            "; \"Norun\" : illisible (accès refusé, code 5), laissée telle quelle\r\n"
            "\"Nofind\"=dword:00000001\r\n"
            "\r\n"
            "; [HKEY_CURRENT_USER\\Control Panel\\Desktop] : illisible (accès refusé, code 5), laissée telle quelle\r\n"
            "\r\n");
}

// --- the command ----------------------------------------------------------------------------

struct Console {
  std::string out, err;
  std::map<std::string, std::string> ansiNames;  // what toAnsi gives for a few texts
  Io io;
  explicit Console(FakePlatform& m) {
    UseStandardFiles(io);
    io.out = [this](const std::string& s) { out += s; };
    io.err = [this](const std::string& s) { err += s; };
    io.toAnsi = [](const std::string& s) { return s; };
    io.fromAnsi = [](const std::string& s) { return s; };
    // The fake's Windows directory is not on disk: system.ini is its profile file.
    auto disk = io.readFile;
    io.readFile = [&m, disk](const std::string& path) -> std::optional<std::string> {
      if (path.rfind("C:\\", 0) == 0) {
        if (!m.HasFile(path)) return std::nullopt;
        return m.File(path);
      }
      return disk(path);
    };
  }
};

struct TempDir {
  fs::path path;
  TempDir() {
    path = fs::temp_directory_path() / ("tamrix-etat-" + std::to_string(::testing::UnitTest::GetInstance()->random_seed()) +
                                        "-" + ::testing::UnitTest::GetInstance()->current_test_info()->name());
    fs::remove_all(path);
    fs::create_directories(path);
  }
  ~TempDir() { fs::remove_all(path); }
  std::vector<std::string> Names() const {
    std::vector<std::string> names;
    for (const auto& e : fs::directory_iterator(path)) names.push_back(e.path().filename().string());
    std::sort(names.begin(), names.end());
    return names;
  }
};

std::string ReadAll(const fs::path& p) {
  std::FILE* f = std::fopen(p.string().c_str(), "rb");
  if (!f) return "<absent>";
  std::string s;
  char b[4096];
  std::size_t n;
  while ((n = std::fread(b, 1, sizeof b, f)) > 0) s.append(b, n);
  std::fclose(f);
  return s;
}

TEST(EtatCommand, NoArgumentAndEtatPrintTheReportOfEveryCatalogue) {
  FakePlatform m;
  Console c(m);
  EXPECT_EQ(etat::Run({}, m, c.io), kOk);
  EXPECT_TRUE(c.err.empty());
  EXPECT_EQ(c.out.rfind("Optimiseur Windows : registre\r\n", 0), 0u);
  EXPECT_NE(c.out.find("Lecteurs virtuels permanents (clé Run)\r\n"), std::string::npos);
  std::string first = c.out;
  c.out.clear();
  EXPECT_EQ(etat::Run({"etat"}, m, c.io), kOk);
  EXPECT_EQ(c.out, first);
}

TEST(EtatCommand, JsonOptionPrintsTheJsonReportInEitherOrder) {
  FakePlatform m;
  Console c(m);
  EXPECT_EQ(etat::Run({"--json"}, m, c.io), kOk);
  EXPECT_EQ(c.out.rfind("{\"catalogues\": [", 0), 0u);
  std::string first = c.out;
  c.out.clear();
  EXPECT_EQ(etat::Run({"etat", "--json"}, m, c.io), kOk);
  EXPECT_EQ(c.out, first);
}

TEST(EtatCommand, AnUnknownCommandGetsAFrenchSentenceAndCode2) {
  FakePlatform m;
  Console c(m);
  EXPECT_EQ(etat::Run({"restaurer"}, m, c.io), kBadInput);
  EXPECT_TRUE(c.out.empty());
  EXPECT_EQ(c.err.rfind("tamrix-etat : commande inconnue : \"restaurer\".\r\nUtilisation :\r\n", 0), 0u) << c.err;
  c.err.clear();
  EXPECT_EQ(etat::Run({"--json", "--json"}, m, c.io), kBadInput);
  EXPECT_EQ(etat::Run({"--json", "etat"}, m, c.io), kBadInput);
}

TEST(EtatCommand, AskingForHelpPrintsTheUsageAndSucceeds) {
  FakePlatform m;
  Console c(m);
  EXPECT_EQ(etat::Run({"/?"}, m, c.io), kOk);
  EXPECT_EQ(c.out, kUsage);
  EXPECT_TRUE(m.calls.empty()) << "nothing is read for the usage";
}

TEST(EtatCommand, ABackupWithoutAFileNameGetsAFrenchSentenceAndCode2) {
  FakePlatform m;
  Console c(m);
  EXPECT_EQ(etat::Run({"sauvegarde"}, m, c.io), kBadInput);
  EXPECT_EQ(c.err.rfind("tamrix-etat : il manque le nom du fichier de sauvegarde.\r\n", 0), 0u) << c.err;
  EXPECT_EQ(etat::Run({"sauvegarde", ""}, m, c.io), kBadInput);
}

TEST(EtatCommand, ABackupWritesTheRegFileTheSystemIniCopyAndSaysHowToRestoreBoth) {
  FakePlatform m;
  m.SetValue(CU, kDesktop, "MenuShowDelay", regtype::Sz, std::string("400\0", 4));
  m.File("C:\\WINDOWS\\system.ini") = "[386Enh]\r\nMaxBps=1200\r\n";
  Console c(m);
  TempDir dir;
  std::string reg = (dir.path / "avant.reg").string();
  ASSERT_EQ(etat::Run({"sauvegarde", reg}, m, c.io), kOk) << c.err;
  EXPECT_EQ(dir.Names(), (std::vector<std::string>{"avant.reg", "avant.system.ini"}));
  EXPECT_EQ(ReadAll(dir.path / "avant.system.ini"), "[386Enh]\r\nMaxBps=1200\r\n");
  std::string text = ReadAll(dir.path / "avant.reg");
  std::string restore = "Pour tout remettre : reg import \"" + reg + "\", puis copiez \"" +
                        (dir.path / "avant.system.ini").string() + "\" sur \"C:\\WINDOWS\\system.ini\".";
  EXPECT_EQ(text.rfind("REGEDIT4\r\n\r\n; Tamrix Utility : sauvegarde des valeurs des catalogues, prise le 21/11/2026 à 20:50:35.\r\n", 0), 0u) << text;
  EXPECT_NE(text.find("; " + restore + "\r\n"), std::string::npos) << text;
  EXPECT_NE(text.find("[HKEY_CURRENT_USER\\Control Panel\\Desktop]\r\n\"WaitToKillAppTimeout\"=-\r\n"), std::string::npos);
  EXPECT_NE(text.find("\"MenuShowDelay\"=\"400\"\r\n"), std::string::npos);
  EXPECT_NE(text.find("; [HKEY_LOCAL_MACHINE\\SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Run] : clé absente, laissée absente\r\n"),
            std::string::npos);
  EXPECT_EQ(c.out, "Sauvegarde écrite dans \"" + reg + "\".\r\nCopie de system.ini écrite dans \"" +
                       (dir.path / "avant.system.ini").string() + "\".\r\n" + restore + "\r\n");
}

TEST(EtatCommand, ABackupNeverWritesToTheRegistryNorToSystemIni) {
  FakePlatform m;
  m.File("C:\\WINDOWS\\system.ini") = "[386Enh]\r\nMaxBps=1200\r\n";
  m.CreateKey(CU, kDesktop);
  Console c(m);
  TempDir dir;
  ASSERT_EQ(etat::Run({"sauvegarde", (dir.path / "s.reg").string()}, m, c.io), kOk);
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
  ASSERT_EQ(etat::Run({"sauvegarde", (dir.path / "s.reg").string()}, m, c.io), kOk);
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
  EXPECT_EQ(etat::Run({"sauvegarde", reg}, m, c.io), kBadInput);
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
  EXPECT_EQ(etat::Run({"sauvegarde", (dir.path / "s.reg").string()}, m, c.io), kBadInput);
  EXPECT_EQ(dir.Names(), (std::vector<std::string>{"s.system.ini"}));
  EXPECT_TRUE(fs::is_directory(dir.path / "s.system.ini"));
}

}  // namespace
}  // namespace tamrix::etat
