// Any value names, types and bytes in a key the backup keeps whole: the file it writes reads
// back, with the companion's own reader of registry-editor files, to the same names, types and
// bytes, with no line it can't read; a name that can't stand on one line is left out, and only it.
#include <cstdint>
#include <string>
#include <vector>

#include "companion/Backup.h"
#include "companion/RegFile.h"
#include "platform/Utf16.h"

namespace {

using namespace tamrix;

struct Input {
  const std::uint8_t* data;
  std::size_t size;
  std::size_t at = 0;
  bool More() const { return at < size; }
  std::uint8_t Byte() { return at < size ? data[at++] : 0; }
};

// A name as the registry can hold it: UTF-16 units, none of them NUL or half a pair, in UTF-8.
std::string Name(Input& in) {
  std::string wide;
  for (std::size_t n = in.Byte() % 12; n > 0; --n) {
    std::uint32_t unit = in.Byte() | (in.Byte() << 8);
    if (unit == 0) unit = '\\';
    if (unit >= 0xD800 && unit <= 0xDFFF) unit = 0x20AC;
    wide += static_cast<char>(unit & 0xFF);
    wide += static_cast<char>(unit >> 8);
  }
  return Utf16LeToUtf8(wide).value();
}

bool FitsALine(const std::string& s) { return s.find_first_of(std::string("\0\r\n", 3)) == std::string::npos; }

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Input in{data, size};
  companion::KeyTree tree;
  tree.name = "Fuzz";
  tree.status = status::Success;
  while (in.More() && tree.values.size() < 16) {
    companion::KeyTree::Value v;
    v.name = Name(in);
    std::uint8_t kind = in.Byte();
    // Mostly the types that have a form of their own, sometimes any type at all.
    static constexpr std::uint32_t kTypes[] = {regtype::Sz, regtype::Dword, regtype::ExpandSz, regtype::MultiSz,
                                               regtype::Binary, regtype::Qword, 0};
    v.type = kind < 224 ? kTypes[kind % 7] : static_cast<std::uint32_t>(in.Byte() | in.Byte() << 8 | in.Byte() << 16 | in.Byte() << 24);
    for (std::size_t n = in.Byte() % 40; n > 0 && in.More(); --n) v.raw += static_cast<char>(in.Byte());
    tree.values.push_back(v);
  }
  companion::KeyTree sub;
  sub.name = "Sous-clé";
  sub.status = status::Success;
  sub.values = tree.values;
  tree.subkeys.push_back(sub);

  companion::Catalogue c{"Fuzz", "", {}, {}, false, {{hive::LocalMachine, "Software\\Fuzz"}}};
  companion::CatalogueState state{&c, {}, {}, {tree}};
  std::string file = companion::Utf16File(companion::RegFileText({state}, {"une ligne d'en-tête"}));
  auto read = companion::ReadRegFile(file, [](const std::string& s) { return s; });
  if (!read || !read->problems.empty()) __builtin_trap();
  const auto* keys = &read->keys;

  std::vector<companion::KeyTree::Value> expected;
  for (const auto& v : tree.values)
    if (FitsALine(v.name)) expected.push_back(v);
  const std::string names[] = {"HKEY_LOCAL_MACHINE\\Software\\Fuzz", "HKEY_LOCAL_MACHINE\\Software\\Fuzz\\Sous-clé"};
  if (keys->size() != 3 || !(*keys)[0].deleted || (*keys)[0].name != names[0]) __builtin_trap();
  for (std::size_t k = 0; k < 2; ++k) {
    const companion::RegFileKey& key = (*keys)[k + 1];
    if (key.deleted || key.name != names[k] || key.values.size() != expected.size()) __builtin_trap();
    for (std::size_t i = 0; i < expected.size(); ++i) {
      const companion::RegFileValue& got = key.values[i];
      if (got.deleted || got.name != expected[i].name || got.type != expected[i].type || got.raw != expected[i].raw)
        __builtin_trap();
    }
  }
  return 0;
}
