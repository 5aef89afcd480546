// ini: keys of one profile file at a time. Which file is "the" profile file is the one variable of
// the module, ProfilePath; every user points it where it needs it just before the call, and nobody
// points it back, so the next user may find it naming someone else's file.
#pragma once

#include <string>

#include "platform/Platform.h"

namespace tamrix::ini {

// The current profile file: empty at start, never saved, never restored.
extern std::string ProfilePath;

// The value of the key in the section of ProfilePath, or the empty text when the file, the
// section or the key is missing. A value comes back cut to 254 characters.
std::string ReadProfileValue(Platform& p, const std::string& section, const std::string& key);

// Writes the key into ProfilePath; the platform makes the file and the section when they are
// missing. Gives back the empty text, always: whether the write worked is nobody's business.
std::string WriteProfileValue(Platform& p, const std::string& section, const std::string& key,
                              const std::string& value);

// The settings file of the program: config.dll beside the executable. The directory is taken
// as the platform gives it, so in the root of a drive the separator is doubled.
std::string ConfigFilePath(Platform& p);

// The other two files that pass through ProfilePath: system.ini in the Windows directory, and
// oeminfo.ini below the folder the OEM page names. Neither directory is checked for a
// trailing separator.
std::string SystemIniPath(const std::string& windowsDirectory);
std::string OemInfoPath(const std::string& folder);

}  // namespace tamrix::ini
