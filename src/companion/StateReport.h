// The report of the command "etat": one line a place, a summary line a catalogue, as text for
// people or as JSON for scripts. Both are UTF-8 here; the console program turns them into what
// the console shows.
#pragma once

#include <string>
#include <vector>

#include "companion/CatalogueState.h"

namespace tamrix::companion {

// The French word of a state, as the report prints it.
std::string StateWord(State s);
// Its name in the JSON report: plain ASCII, for scripts.
std::string StateCode(State s);

// admin: whether the companion ran with an administrator's rights, which its last line says:
// without them, an HKLM row that a standard user's click would lose shows as refused.
std::string TextReport(const std::vector<CatalogueState>& states, bool admin);
// ASCII only: every other character is written as \uXXXX, so the report reads the same in
// every code page.
std::string JsonReport(const std::vector<CatalogueState>& states, bool admin);

// A JSON string of a UTF-8 text, in plain ASCII (\uXXXX for the rest).
std::string JsonString(const std::string& s);

}  // namespace tamrix::companion
