// The menu that a double-click opens. Started from Explorer, the companion has a console of its
// own that closes the moment the program ends: a report printed then would vanish unread. So it
// offers its reasons to exist by number, does the chosen one with the files on the Desktop, and
// comes back to the menu until the user leaves it.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "companion/Command.h"
#include "platform/Platform.h"

namespace tamrix::companion {

struct Keyboard {
  // The next key typed, as a character (Escape is 0x1B), or nothing at the end of input.
  std::function<std::optional<char32_t>()> key;
  // A line typed and ended by Enter, in UTF-8 without its line break, or nothing at the end of input.
  std::function<std::optional<std::string>()> line;
};

// Shows the menu and does each choice until 0, Q or Escape, or the end of input. ownView as for Run.
int Menu(Platform& p, const Io& io, const Keyboard& keyboard, std::uint32_t ownView = keyaccess::View64);

// "Tamrix sauvegarde 2026-11-24 20h15": a name that says when, and sorts by it.
std::string DatedName(const std::string& what, const LocalTime& t);

// Of the names of backups the menu made ("Tamrix sauvegarde DATE.reg", "... DATE (2).reg"), the
// newest, or nothing.
std::optional<std::string> NewestBackup(const std::vector<std::string>& names);

}  // namespace tamrix::companion
