// The three shell toggles of the Windows page: each box switches one shell feature on or off at
// once and records its state in config.dll, from where the boxes get their ticks back each time
// the page opens. Unticking undoes something other than what ticking did, for two of the three:
// box5 writes a value DefaultIcon but deletes a subkey of that name, and box8 writes a value
// "command" but deletes a key named after that value and its data run together. Both values
// stay behind. That is how the feature behaves, and it stays so.
#pragma once

#include <array>
#include <cstdint>
#include <string_view>

#include "platform/Platform.h"

namespace tamrix::ShellToggles {

struct Toggle {
  std::string_view box;        // the box's design name
  std::string_view configKey;  // its key in the section "opti" of config.dll
  HKey hive;
  // Ticked: one REG_SZ value.
  std::string_view keyPath;
  std::string_view valueName;
  std::string_view tickedData;
  // Unticked: a key deleted, or the same value written with other data.
  enum class Untick { DeleteKey, WriteValue } untick;
  std::string_view untickTarget;  // the key to delete, or the data to write
  bool dvdNotice;                 // the player's notice after ticking
};

inline constexpr std::array<Toggle, 3> kToggles = {{
    {"box5", "bmp", hive::LocalMachine, "Software\\CLASSES\\Paint.Picture", "DefaultIcon", "%1",
     Toggle::Untick::DeleteKey, "Software\\CLASSES\\Paint.Picture\\DefaultIcon", false},
    {"box7", "dvd", hive::CurrentUser, "Software\\Microsoft\\MediaPlayer\\Player\\Settings", "EnableDVDUI", "yes",
     Toggle::Untick::WriteValue, "no", true},
    {"box8", "open", hive::CurrentUser, "*\\shell\\openas", "command", "rundll32.exe shell32.dll,OpenAs_RunDLL %1",
     Toggle::Untick::DeleteKey, "*\\shell\\openas\\command\\rundll32.exe shell32.dll,OpenAs_RunDLL %1", false},
}};

inline constexpr const char* kSection = "opti";
// Both the ticked and the unticked data are texts.
inline constexpr std::uint32_t kType = regtype::Sz;

inline constexpr const char* kDvdTitle = " Tamrix Corporation 2004";
// Nine lines, each pair joined by a carriage return alone; the fourth is empty.
inline constexpr const char* kDvdText =
    "Le lecteur Windows Media Player dans sa version 6\r"
    "ne peut pas lire les DVD, mais avec Tamrix votre \r"
    "lecteur Media est dopté avec cette option .\r"
    "\r"
    "Pour voir le changement : \r"
    "Ouvrez Windows Media Player puis Cliquer sur \r"
    "fichier et un menu est ajouté : Ouvrir DVD\r"
    "   _____________________________________\r"
    "                     Orvane Interactive 2004";

// A click on the box of this row, with the value the box has after the click.
void Clicked(Platform& p, const Toggle& toggle, std::int32_t value);

}  // namespace tamrix::ShellToggles
