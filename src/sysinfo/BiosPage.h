// The BIOS sub-page of Test Lab (FrmBios): filled by its own buttons from WMI.
#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <string>

#include "platform/Platform.h"
#include "shell/Controls.h"

namespace tamrix {

// The BIOS characteristics as WMI numbers them, in French; the main window fills its table with
// them as it loads.
inline constexpr std::array<const char*, 40> kBiosCharacteristicTexts = {
    "Réserver",
    "Réserver",
    "Inconnu",
    "Caractéristiques du BIOS non supportées",
    "ISA est supportée",
    "MCA est supportée",
    "EISA est supportée",
    "PCI est supportée",
    "PC Card (PCMCIA) est supportée",
    "Plug and Play est supportée",
    "APM est supportée",
    "BIOS est mis à jour (Flash)",
    "BIOS shadowing est activé",
    "VL-VESA est supportée",
    "ESCD support est activé",
    "Boot from CD est supportée",
    "Selectable Boot est supportée",
    "BIOS ROM est présente",
    "Boot From PC Card (PCMCIA) est supportée",
    "EDD (Enhanced Disk Drive) Specification est supportée",
    "Int 13h - Japanese Floppy for NEC 9800 1.2mb (3.5, 1k Bytes/Sector, 360 RPM) est supportée",
    "Int 13h - Japanese Floppy for Toshiba 1.2mb (3.5, 360 RPM) est supportée",
    "Int 13h - 5.25 / 360 KB Floppy Services sont supportés",
    "Int 13h - 5.25 /1.2MB Floppy Services sont supportés",
    "Int 13h - 3.5 / 720 KB Floppy Services sont supportés",
    "Int 13h - 3.5 / 2.88 MB Floppy Services sont supportés",
    "Int 5h, Print Screen Service est supportée",
    "Int 9h, 8042 Keyboard services sont supportés",
    "Int 14h, Serial Services sont supportés",
    "Int 17h, printer services sont supportés",
    "Int 10h, CGA/Mono Video Services sont supportés",
    "NEC PC-98",
    "ACPI supported",
    "USB Legacy est supportée",
    "AGP est supportée",
    "I2O boot est supportée",
    "LS-120 boot est supportée",
    "ATAPI ZIP Drive boot est supportée",
    "1394 boot est supportée",
    "Smart Battery supported",
};

using BiosCharacteristicsTable = std::array<std::string, 40>;

// WMI's Win32_BIOS as a report in Text1 ("&Info Bios") or a list of technologies in List1
// ("&Tech Support"), which take turns on one spot. Neither handler tolerates an error: without
// WMI, or with a property the BIOS object lacks, the run-time error ends the program, the two
// boxes already switched.
class BiosPage {
 public:
  BiosPage(Control& testLab, Platform& platform, const BiosCharacteristicsTable& table);

  void InfoBios();     // TamrixCmd9
  void TechSupport();  // TamrixCmd10

 private:
  void BindAndQuery();
  std::string Text(const char* property);

  Platform& p_;
  const BiosCharacteristicsTable& BiosCharacteristics;
  // What the two handlers share; each click sets them again.
  std::shared_ptr<WmiService> service_;
  WmiObjects result_;
  std::shared_ptr<WmiObject> object_;
  std::string report_;
  std::int16_t i_ = 0;

 public:
  TamrixFrm FrmBios;
  TextBox Text1;
  ListBox List1;  // takes Text1's place for the list of technologies
  Image Image5;
  TamrixCmd TamrixCmd9;
  TamrixCmd TamrixCmd10;
  Image Image6;
};

}  // namespace tamrix
