// Any command line given to the companion: it is either refused with one French sentence and
// the code 2, before anything of the machine is read or any file written; or it is the help,
// printed whole with the code 0; or the command goes on to the machine, having said nothing yet.
// The machine here stops the run at its first question, so that each input costs only its
// reading. The input's words are separated by NUL bytes.
#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "companion/Command.h"
#include "fake/FakePlatform.h"

namespace {

using namespace tamrix;

struct Reached {};

// The fake machine, which ends the run at the first thing a command asks of it.
class Stop : public fake::FakePlatform {
 public:
  long RegOpenKeyExA(HKey, const std::string&, std::uint32_t, std::uint32_t, HKey*) override { throw Reached{}; }
  std::uint32_t GetWindowsDirectoryA(std::string*, std::uint32_t) override { throw Reached{}; }
  std::string BooleanText(bool) override { throw Reached{}; }
  MemoryStatus GlobalMemoryStatus(std::uint32_t) override { throw Reached{}; }
  OsVersion GetVersionExA(std::uint32_t) override { throw Reached{}; }
  std::shared_ptr<WmiService> WmiGetObject(const std::string&) override { throw Reached{}; }
  std::string LogicalDriveLetters() override { throw Reached{}; }
  std::uint32_t mixerGetNumDevs() override { throw Reached{}; }
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  std::vector<std::string> args;
  std::string word;
  for (std::size_t i = 0; i < size && args.size() < 8; ++i) {
    if (data[i] == 0) {
      args.push_back(word);
      word.clear();
    } else {
      word += static_cast<char>(data[i]);
    }
  }
  if (size && args.size() < 8) args.push_back(word);

  std::string out, err;
  std::map<std::string, std::string> written;
  companion::Io io;
  io.out = [&](const std::string& s) { out += s; };
  io.err = [&](const std::string& s) { err += s; };
  io.toAnsi = [](const std::string& s) { return s; };
  io.fromAnsi = [](const std::string& s) { return s; };
  io.readFile = [](const std::string& path) -> std::optional<std::string> {
    if (path.find(".reg") == std::string::npos) return std::nullopt;
    std::string file = "\xff\xfe";
    for (char c : std::string("Windows Registry Editor Version 5.00\r\n")) file += std::string{c, '\0'};
    return file;
  };
  io.writeFile = [&](const std::string& path, const std::string& bytes) {
    written[path] = bytes;
    return true;
  };
  io.moveFile = [&](const std::string&, const std::string&) { return true; };
  io.removeFile = [](const std::string&) {};
  io.exists = [](const std::string&) { return false; };
  io.readOnly = [](const std::string&) { return false; };
  io.fullPath = [](const std::string& path) { return path; };

  Stop machine;
  try {
    int code = companion::Run(args, machine, io);
    if (code == companion::kBadInput) {
      // One sentence, then the usage or nothing; nothing read of the machine, nothing written.
      if (!out.empty() || err.rfind("tamrix-etat : ", 0) != 0 || err.find("\r\n") == std::string::npos) __builtin_trap();
      if (!machine.calls.empty() || !written.empty()) __builtin_trap();
    } else if (code == companion::kOk) {
      if (out != companion::kUsage || !err.empty() || !machine.calls.empty()) __builtin_trap();
    } else {
      __builtin_trap();
    }
  } catch (const Reached&) {
    if (!out.empty() || !err.empty() || !written.empty()) __builtin_trap();
  }
  return 0;
}
