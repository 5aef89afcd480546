// The files of the standard library, for the native tests. A translation unit of its own: the
// console program takes the system's files, and so never links the standard library's file
// system, which would weigh some 400 KB of locale tables in the shipped program.
#include <cstdio>
#include <filesystem>

#include "companion/Command.h"

namespace tamrix::companion {

void UseStandardFiles(Io& io) {
  namespace fs = std::filesystem;
  io.readFile = [](const std::string& path) -> std::optional<std::string> {
    std::FILE* f = std::fopen(path.c_str(), "rb");
    if (!f) return std::nullopt;
    std::string bytes;
    char buffer[65536];
    std::size_t n;
    while ((n = std::fread(buffer, 1, sizeof buffer, f)) > 0) bytes.append(buffer, n);
    bool ok = !std::ferror(f);
    std::fclose(f);
    if (!ok) return std::nullopt;
    return bytes;
  };
  io.writeFile = [](const std::string& path, const std::string& bytes) {
    std::FILE* f = std::fopen(path.c_str(), "wbx");  // never one that stands there
    if (!f) return false;
    bool ok = std::fwrite(bytes.data(), 1, bytes.size(), f) == bytes.size();
    ok = std::fflush(f) == 0 && ok;
    ok = std::fclose(f) == 0 && ok;
    return ok;
  };
  io.moveFile = [](const std::string& from, const std::string& to) {
    std::error_code e;
    if (fs::exists(fs::symlink_status(to, e))) return false;
    fs::rename(from, to, e);
    return !e;
  };
  io.removeFile = [](const std::string& path) { std::remove(path.c_str()); };
  io.exists = [](const std::string& path) {
    std::error_code e;
    return fs::exists(fs::symlink_status(path, e));
  };
  io.readOnly = [](const std::string& path) {
    std::error_code e;
    auto st = fs::status(path, e);
    return !e && fs::is_regular_file(st) && (st.permissions() & fs::perms::owner_write) == fs::perms::none;
  };
  io.findFiles = [](const std::string& folder, const std::string& prefix, const std::string& suffix) {
    std::vector<std::string> names;
    std::error_code e;
    for (const auto& entry : fs::directory_iterator(folder, e)) {
      std::string name = entry.path().filename().string();
      if (entry.is_regular_file(e) && name.size() >= prefix.size() + suffix.size() && name.rfind(prefix, 0) == 0 &&
          name.compare(name.size() - suffix.size(), suffix.size(), suffix) == 0)
        names.push_back(name);
    }
    return names;
  };
  io.fullPath = [](const std::string& path) {
    std::error_code e;
    auto full = fs::absolute(path, e);
    return e ? path : full.lexically_normal().string();
  };
}

}  // namespace tamrix::companion
