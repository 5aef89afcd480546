// Any bytes read as a registry-editor file: the reader never crashes and never reads past them
// (the input is copied into a buffer of exactly its size, and the standard library's own bounds
// checks are on), and what it gives is well formed: a file or a refusal, every line number within
// the file, every key of a known hive with its path, a REGEDIT4 file's texts whole UTF-16 units.
#include <cstdint>
#include <cstring>
#include <memory>
#include <string>

#include "companion/RegFile.h"
#include "fake/Latin1.h"

namespace {

using tamrix::fake::Latin1;

bool Known(const tamrix::companion::RegFileKey& k) {
  for (const char* hive : {"HKEY_CURRENT_USER", "HKEY_LOCAL_MACHINE", "HKEY_CLASSES_ROOT", "HKEY_USERS", "HKEY_CURRENT_CONFIG"}) {
    std::size_t n = std::strlen(hive);
    if (k.name.size() < n) continue;
    bool same = true;
    for (std::size_t i = 0; i < n; ++i) same = same && (k.name[i] & ~0x20) == (hive[i] & ~0x20);
    if (same && (k.name.size() == n || k.name[n] == '\\')) return true;
  }
  return false;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  std::unique_ptr<char[]> exact(new char[size]);
  if (size) std::memcpy(exact.get(), data, size);
  std::string bytes(exact.get(), size);
  auto file = tamrix::companion::ReadRegFile(bytes, Latin1);
  if (!file) return 0;
  // Every line feed holds a byte 0A, in UTF-16 as in 8-bit text: a bound on the lines.
  std::size_t lines = 1;
  for (char c : bytes) lines += c == '\n';
  if (file->version != 4 && file->version != 5) __builtin_trap();
  for (const auto& p : file->problems)
    if (p.line < 2 || p.line > lines || p.why.empty()) __builtin_trap();
  for (const auto& k : file->keys) {
    if (k.line < 2 || k.line > lines || k.name.empty() || !Known(k)) __builtin_trap();
    if (k.name.size() < k.path.size() || k.name.compare(k.name.size() - k.path.size(), k.path.size(), k.path) != 0)
      __builtin_trap();
    if (k.deleted && !k.values.empty()) __builtin_trap();
    for (const auto& v : k.values) {
      if (v.line < k.line || v.line > lines) __builtin_trap();
      if (v.deleted && (!v.raw.empty() || v.type != 0)) __builtin_trap();
      // Texts of a REGEDIT4 file are made UTF-16 by the reader: whole units.
      bool text = v.type == tamrix::regtype::Sz || v.type == tamrix::regtype::ExpandSz || v.type == tamrix::regtype::MultiSz;
      if (file->version == 4 && text && v.raw.size() % 2) __builtin_trap();
    }
  }
  return 0;
}
