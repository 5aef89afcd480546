// The companion's surroundings in the native tests: a console that keeps what is written to it,
// with the fake machine's files (system.ini) read from the fake, and a temporary folder of its own.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <map>
#include <string>
#include <vector>

#include "companion/Command.h"
#include "fake/FakePlatform.h"

namespace tamrix::companion {

namespace fs = std::filesystem;
using fake::FakePlatform;

struct Console {
  std::string out, err;
  std::map<std::string, std::string> ansiNames;  // what toAnsi gives for a few texts
  Io io;
  explicit Console(FakePlatform& m) {
    UseStandardFiles(io);
    io.out = [this](const std::string& s) { out += s; };
    io.err = [this](const std::string& s) { err += s; };
    io.toAnsi = [](const std::string& s) { return s; };
    io.fromAnsi = [](const std::string& s) { return s; };
    // The fake's Windows directory is not on disk: system.ini is its profile file. Everything
    // else is read from the disk, where the tests write their files (on drive C: under Wine).
    auto disk = io.readFile;
    io.readFile = [&m, disk](const std::string& path) -> std::optional<std::string> {
      if (path.rfind(m.windowsDirectory + "\\", 0) == 0) {
        if (!m.HasFile(path)) return std::nullopt;
        return m.File(path);
      }
      return disk(path);
    };
  }
};

struct TempDir {
  fs::path path;
  TempDir() {
    path = fs::temp_directory_path() / ("tamrix-etat-" + std::to_string(::testing::UnitTest::GetInstance()->random_seed()) +
                                        "-" + ::testing::UnitTest::GetInstance()->current_test_info()->name());
    fs::remove_all(path);
    fs::create_directories(path);
  }
  ~TempDir() { fs::remove_all(path); }
  // Writes a file of the test's own into the folder; its path.
  std::string Write(const std::string& name, const std::string& bytes) const {
    std::string file = (path / name).string();
    std::FILE* f = std::fopen(file.c_str(), "wb");
    std::fwrite(bytes.data(), 1, bytes.size(), f);
    std::fclose(f);
    return file;
  }
  std::vector<std::string> Names() const {
    std::vector<std::string> names;
    for (const auto& e : fs::directory_iterator(path)) names.push_back(e.path().filename().string());
    std::sort(names.begin(), names.end());
    return names;
  }
};

}  // namespace tamrix::companion
