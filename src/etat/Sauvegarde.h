// The backup: a REGEDIT4 file that, imported with "reg import" or by a double-click, puts back
// every value of every catalogue as the machine has it now, and deletes the ones it doesn't have
// now. Keys that don't exist are only noted: a backup never makes anything that wasn't there.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "etat/Etat.h"

namespace tamrix::etat {

// The lines of the file (CR LF), in UTF-8 but for the bytes of hex() values, which are already in
// the ANSI code page (toAnsi) as the registry stores them. header: comment lines put at the top.
std::string RegFileText(const std::vector<CatalogueState>& states, const std::vector<std::string>& header,
                        const std::function<std::string(const std::string&)>& toAnsi);

// One value line of the file: "name"="text", "name"=dword:0000000c, "name"=hex(2):..., "name"=-.
std::string RegLine(const std::string& valueName, const Finding& f,
                    const std::function<std::string(const std::string&)>& toAnsi);

}  // namespace tamrix::etat
