// The companion's commands: "etat" (the default) with or without "--json", and
// "sauvegarde FICHIER.reg". Bad input gets a French sentence and the exit code 2.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "platform/Platform.h"

namespace tamrix::etat {

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
  std::function<bool(const std::string& path, const std::string& bytes)> writeFile;
  // Puts `from` in the place of `to`, replacing what stood there, in one step.
  std::function<bool(const std::string& from, const std::string& to)> replaceFile;
  std::function<void(const std::string&)> removeFile;
};

// The files of the standard library: what both the console program and the tests use, but for
// replaceFile, which the console program takes from the system.
void UseStandardFiles(Io& io);

// args: the words after the program's name.
int Run(const std::vector<std::string>& args, Platform& p, const Io& io);

// The three lines of usage.
extern const char* const kUsage;

}  // namespace tamrix::etat
