// The menu that a double-click opens. Started from Explorer, the companion has a console of its
// own that closes the moment the program ends: a report printed then would vanish unread. So it
// offers its three reasons to exist by number, does the chosen one with the files on the Desktop,
// and comes back to the menu until the user leaves it.
#pragma once

#include <functional>
#include <optional>
#include <string>

#include "companion/Command.h"
#include "platform/Platform.h"

namespace tamrix::companion {

struct Keyboard {
  // The next key typed, as a character (Escape is 0x1B), or nothing at the end of input.
  std::function<std::optional<char32_t>()> key;
};

// Shows the menu and does each choice until 0, Q or Escape, or the end of input. ownView as for Run.
int Menu(Platform& p, const Io& io, const Keyboard& keyboard, std::uint32_t ownView = keyaccess::View64);

// "Tamrix sauvegarde 2026-11-24 20h15": a name that says when, and sorts by it.
std::string DatedName(const std::string& what, const LocalTime& t);

}  // namespace tamrix::companion
