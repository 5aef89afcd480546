#include "sysinfo/InfoWindowsPage.h"

#include <string>

#include "platform/Module1.h"
#include "platform/Registre.h"
#include "platform/Runtime.h"

namespace tamrix {

namespace {

constexpr const char* kCurrentVersion9x = "software\\microsoft\\windows\\currentversion";
constexpr const char* kCurrentVersionNt = "software\\microsoft\\windows nt\\currentversion";
constexpr const char* kTimeZone = "system\\currentcontrolset\\control\\TimeZoneInformation";
constexpr const char* kDirectX = "software\\microsoft\\directx";
constexpr const char* kInternetExplorer = "software\\microsoft\\internet explorer";

Design Box(const char* name, Twips rect, const char* text) {
  return {.name = name, .caption = text, .rect = rect, .locked = true};
}

}  // namespace

// In the order of writing. Only the fifth line changes its label with the family: on NT the box
// born for the Windows key shows the registered owner. "La zone géographique:" shows the time
// zone's name, whatever its label says.
const std::array<InfoWindowsPage::Row, 8> InfoWindowsPage::kRows = {{
    {&InfoWindowsPage::t3,
     "Système d'exploitation:            ", kCurrentVersion9x, "productname",
     "Système d'exploitation:            ", kCurrentVersionNt, "productname"},
    {&InfoWindowsPage::t4,
     "Version du Windows:                 ", kCurrentVersion9x, "versionnumber",
     "Version du Windows:                 ", kCurrentVersionNt, "currentversion"},
    {&InfoWindowsPage::t6,
     "Nom de l'organisation:              ", kCurrentVersion9x, "RegisteredOrganization",
     "Nom de l'organisation:              ", kCurrentVersionNt, "RegisteredOrganization"},
    {&InfoWindowsPage::t7,
     "ID de Windows:                      ", kCurrentVersion9x, "productid",
     "ID de Windows:                      ", kCurrentVersionNt, "productid"},
    {&InfoWindowsPage::t8,
     "Clé de Windows:                     ", kCurrentVersion9x, "productkey",
     "Nom d'utilisateur:                     ", kCurrentVersionNt, "RegisteredOwner"},
    {&InfoWindowsPage::t9,
     "La zone géographique:               ", kTimeZone, "StandardName",
     "La zone géographique:               ", kTimeZone, "StandardName"},
    {&InfoWindowsPage::t10,
     "La version de DirectX:               ", kDirectX, "version",
     "La version de DirectX:               ", kDirectX, "version"},
    {&InfoWindowsPage::t11,
     "La version d'internet Explorer:  ", kInternetExplorer, "version",
     "La version d'internet Explorer:  ", kInternetExplorer, "version"},
}};

InfoWindowsPage::InfoWindowsPage(Control& testLab, Platform& platform)
    : p_(platform),
      fwindows(&testLab, {.name = "fwindows", .caption = "Information sur votre Windows :", .rect = {240, 360, 6975, 3135}}),
      t3(&fwindows, Box("t3", Line(0), "Système d'exploitation :   Inconnu")),
      t4(&fwindows, Box("t4", Line(1), "Version du Windows :      Inconnu")),
      t6(&fwindows, Box("t6", Line(2), "Nom de l'organisation :    Inconnu")),
      t7(&fwindows, Box("t7", Line(3), "ID de Windows :             Inconnu")),
      t8(&fwindows, Box("t8", Line(4), "Clé de Windows :            Inconnu")),
      t9(&fwindows, Box("t9", Line(5), "La zone géographique :    Inconnu")),
      t10(&fwindows, Box("t10", Line(6), "La version de Direct X :    Inconnu")),
      t11(&fwindows, Box("t11", Line(7), "Version d'Internet Explorer : Inconnu")) {}

InfoWindowsPage::Column InfoWindowsPage::ColumnFor(const std::string& family) {
  if (family == Module1::kWindows98) return Column::NineX;
  if (family == Module1::kWindowsNT) return Column::Nt;
  return Column::None;
}

// Runs with errors ignored throughout. A missing value leaves the bare label: the "Inconnu" of
// the design is gone and no code writes it back.
void InfoWindowsPage::InfoWindows() {
  std::string family;
  ResumeNext([&] { family = Module1::GetOsFamily(p_); });
  const Column column = ColumnFor(family);
  if (column == Column::None) return;  // a third family leaves the design texts standing
  const bool nt = column == Column::Nt;

  for (const Row& row : kRows) {
    ResumeNext([&] {
      RegValue value = Registre::ReadRegValue(p_, hive::LocalMachine, nt ? row.keyNt : row.key9x,
                                              nt ? row.valueNt : row.value9x);
      (this->*row.box).SetText((nt ? row.labelNt : row.label9x) + value.ToText());
    });
  }
}

}  // namespace tamrix
