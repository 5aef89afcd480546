#include "companion/Catalogues.h"

#include <algorithm>

#include "optimisers/InternetOptimiser.h"
#include "optimisers/Protection.h"
#include "optimisers/ShellToggles.h"
#include "optimisers/WindowsOptimiser.h"
#include "shell/Controls.h"
#include "tools/VirtualDrives.h"

namespace tamrix::companion {

namespace {

// A writer that keeps what it is given instead of writing it. An empty value lands as 0 in a
// number row, and that is what the report must show.
catalogue::RegWriter NoteTaker(std::vector<RegistryPlace>& out) {
  return [&out](HKey hive, const std::string& keyPath, const std::string& valueName, const RegValue& data,
                std::uint32_t type) {
    RegValue lands = type == regtype::Dword && data.IsEmpty() ? RegValue(std::int32_t{0}) : data;
    out.push_back({hive, keyPath, valueName, type, {lands}, {}});
  };
}

Catalogue WindowsRegistry(std::vector<ProfilePlace>& systemIni) {
  Catalogue c{"Optimiseur Windows : registre", {}, {}, {}, false};
  WindowsOptimiser::Run(
      NoteTaker(c.registry),
      [&systemIni](const std::string& section, const std::string& key, const std::string& value) {
        systemIni.push_back({section, key, value});
      },
      [] {});
  return c;
}

// One connection type, run once for each speed button chosen. The speed buttons are read as the
// page's own option button reads when chosen, so a speed that the page can't pass on changes
// nothing here either. Rows that come out with different data for different speeds keep them all.
Catalogue Internet(const std::string& title, bool lan, bool modem, bool adsl, const std::string& trueText) {
  TamrixOpButton chosen(nullptr, {.name = "vitesse"}, 1);
  std::vector<std::vector<RegistryPlace>> runs;
  for (const InternetOptimiser::Speed& speed : InternetOptimiser::kSpeeds) {
    InternetOptimiser::Choice choice;
    choice.speedValue = [&](std::string_view button) -> double { return button == speed.button ? chosen.Value() : 0; };
    choice.lan = lan;
    choice.modem = modem;
    choice.adsl = adsl;
    runs.emplace_back();
    InternetOptimiser::Apply(choice, trueText, NoteTaker(runs.back()));
  }
  Catalogue c{title, {}, runs.front(), {}, false};
  bool speedMatters = false;
  for (std::size_t i = 0; i < c.registry.size(); ++i)
    for (const auto& run : runs) {
      const RegValue& data = run[i].writes.front();
      auto& writes = c.registry[i].writes;
      if (std::find(writes.begin(), writes.end(), data) == writes.end()) {
        writes.push_back(data);
        c.registry[i].note = "selon la vitesse choisie";
        speedMatters = true;
      }
    }
  c.note = speedMatters ? "La vitesse choisie change certaines valeurs."
                        : "Les six vitesses donnent les mêmes écritures.";
  return c;
}

Catalogue Protection() {
  Catalogue c{"Protection : restrictions de l'utilisateur", "Chaque valeur : 1 si sa case est cochée, sinon 0.", {}, {},
              false};
  for (const ProtectionPage::Row& row : ProtectionPage::kRows)
    c.registry.push_back({ProtectionPage::kHive, row.keyPath, row.valueName, ProtectionPage::kType,
                          {RegValue(ProtectionPage::kTicked), RegValue(ProtectionPage::kUnticked)}, {}});
  return c;
}

Catalogue Toggles() {
  Catalogue c{"Options du shell (page Windows)", {}, {}, {}, false};
  for (const ShellToggles::Toggle& t : ShellToggles::kToggles) {
    RegistryPlace place{t.hive, std::string(t.keyPath), std::string(t.valueName), ShellToggles::kType,
                        {RegValue(std::string(t.tickedData))}, {}};
    if (t.untick == ShellToggles::Toggle::Untick::WriteValue) {
      place.writes.push_back(RegValue(std::string(t.untickTarget)));
      place.note = "la première si la case est cochée, sinon la seconde";
    } else {
      place.note = "si la case est cochée ; la décocher supprime une autre clé";
      c.deletedKeys.push_back({t.hive, std::string(t.untickTarget)});
    }
    c.registry.push_back(std::move(place));
  }
  return c;
}

Catalogue VirtualDrives() {
  Catalogue c{"Lecteurs virtuels permanents (clé Run)",
              "La donnée varie : la commande subst.exe du lecteur et du dossier choisis.", {}, {}, true};
  // The page names the value after the letter list's entry; with an empty list, the entry is
  // empty and so is the name: the key's default value.
  std::vector<std::string> entries = {""};
  for (char letter = 'A'; letter <= 'Z'; ++letter) entries.push_back(std::string(1, letter) + ":");
  for (const std::string& entry : entries)
    c.registry.push_back({VirtualDrives::kRunHive, VirtualDrives::kRunKey, VirtualDrives::RunValueName(entry),
                          VirtualDrives::kRunType, {}, {}});
  return c;
}

}  // namespace

std::vector<Catalogue> Catalogues(const std::string& trueText) {
  std::vector<ProfilePlace> systemIni;
  std::vector<Catalogue> all;
  all.push_back(WindowsRegistry(systemIni));
  all.push_back({"Optimiseur Windows : system.ini", {}, {}, std::move(systemIni), false});
  all.push_back(Internet("Optimiseur Internet : réseau local (Lan)", true, false, false, trueText));
  all.push_back(Internet("Optimiseur Internet : modem", false, true, false, trueText));
  all.push_back(Internet("Optimiseur Internet : ADSL ou câble", false, false, true, trueText));
  all.push_back(Protection());
  all.push_back(Toggles());
  all.push_back(VirtualDrives());
  return all;
}

}  // namespace tamrix::companion
