// The companion's commands: "etat" (the default), "sauvegarde FICHIER.reg", "differences
// FICHIER.reg" and "rapport", with their options, before or after the command word; command
// words and options in any case. Bad input gets a French sentence and the exit code 2.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "platform/Platform.h"

namespace tamrix::companion {

inline constexpr int kOk = 0;
inline constexpr int kBadInput = 2;

// What the command needs of its surroundings besides the platform: the two output streams and
// the files. Texts handed to out and err are UTF-8; file names are as the command line gave
// them (the ANSI code page on Windows), and file contents are bytes.
struct Io {
  std::function<void(const std::string&)> out;
  std::function<void(const std::string&)> err;
  std::function<std::string(const std::string&)> toAnsi;    // UTF-8 to the ANSI code page
  std::function<std::string(const std::string&)> fromAnsi;  // and back
  std::function<std::optional<std::string>(const std::string&)> readFile;
  // Makes a new file (never one that stands already), writes every byte and flushes them to the
  // disk before it says yes.
  std::function<bool(const std::string& path, const std::string& bytes)> writeFile;
  // Renames, never onto something that stands there.
  std::function<bool(const std::string& from, const std::string& to)> moveFile;
  std::function<void(const std::string&)> removeFile;
  std::function<bool(const std::string&)> exists;    // anything at that name, file or folder
  std::function<bool(const std::string&)> readOnly;  // a file marked read-only
  std::function<std::string(const std::string&)> fullPath;
  // The names of the files in a folder that begin and end as given, in no particular order.
  std::function<std::vector<std::string>(const std::string& folder, const std::string& prefix, const std::string& suffix)>
      findFiles;
};

// The files of the standard library: what the native tests use. The console program takes the
// system's own.
void UseStandardFiles(Io& io);

// args: the words after the program's name. ownView: the view of the registry that the program
// of this same build writes (keyaccess::View32 for the i686 build, View64 for the x86_64 one).
int Run(const std::vector<std::string>& args, Platform& p, const Io& io, std::uint32_t ownView = keyaccess::View64);

// The lines of usage.
extern const char* const kUsage;

}  // namespace tamrix::companion
