#include "exe/PeImports.h"

#include <algorithm>
#include <cctype>
#include <cstdint>
#include <fstream>
#include <iterator>
#include <sstream>
#include <stdexcept>

namespace tamrix::pe {

namespace {

std::string Lower(std::string s) {
  std::transform(s.begin(), s.end(), s.begin(), [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  return s;
}

class Image {
 public:
  explicit Image(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    if (!in) throw std::runtime_error("cannot open " + path);
    bytes_.assign(std::istreambuf_iterator<char>(in), {});
  }

  std::uint64_t Read(std::size_t at, int size) const {
    if (at + size > bytes_.size()) throw std::runtime_error("read past the end of the file");
    std::uint64_t v = 0;
    for (int i = size - 1; i >= 0; --i) v = v << 8 | static_cast<unsigned char>(bytes_[at + i]);
    return v;
  }
  std::uint32_t U16(std::size_t at) const { return static_cast<std::uint32_t>(Read(at, 2)); }
  std::uint32_t U32(std::size_t at) const { return static_cast<std::uint32_t>(Read(at, 4)); }

  std::string Text(std::size_t at) const {
    std::string s;
    while (true) {
      if (at >= bytes_.size()) throw std::runtime_error("unterminated name");
      if (bytes_[at] == '\0') return s;
      s += bytes_[at++];
    }
  }

 private:
  std::string bytes_;
};

struct Section {
  std::uint32_t address, size, fileOffset;
};

}  // namespace

std::vector<Import> ReadImports(const std::string& path) {
  Image img(path);
  if (img.U16(0) != 0x5A4D) throw std::runtime_error(path + " has no MZ header");
  const std::size_t pe = img.U32(0x3C);
  if (img.U32(pe) != 0x00004550) throw std::runtime_error(path + " has no PE signature");
  const std::size_t coff = pe + 4;
  const unsigned sectionCount = img.U16(coff + 2);
  const std::size_t optional = coff + 20;
  const std::uint32_t magic = img.U16(optional);
  const bool wide = magic == 0x20B;  // PE32+: 64-bit thunks
  if (!wide && magic != 0x10B) throw std::runtime_error(path + " has an unknown optional header");
  // The data directories follow the optional header's fixed part; the import table is the second.
  const std::size_t directories = optional + (wide ? 112 : 96);
  const std::uint32_t importRva = img.U32(directories + 8);

  std::vector<Section> sections;
  const std::size_t table = optional + img.U16(coff + 16);
  for (unsigned i = 0; i < sectionCount; ++i) {
    const std::size_t s = table + i * 40;
    sections.push_back({img.U32(s + 12), std::max(img.U32(s + 8), img.U32(s + 16)), img.U32(s + 20)});
  }
  auto offset = [&](std::uint32_t rva) -> std::size_t {
    for (const Section& s : sections)
      if (rva >= s.address && rva < s.address + s.size) return rva - s.address + s.fileOffset;
    throw std::runtime_error("address outside every section");
  };

  std::vector<Import> imports;
  if (importRva == 0) return imports;
  for (std::size_t d = offset(importRva);; d += 20) {
    const std::uint32_t lookup = img.U32(d), name = img.U32(d + 12), thunks = img.U32(d + 16);
    if (name == 0 && thunks == 0) break;
    const std::string dll = img.Text(offset(name));
    const int size = wide ? 8 : 4;
    for (std::size_t t = offset(lookup ? lookup : thunks);; t += size) {
      const std::uint64_t entry = img.Read(t, size);
      if (entry == 0) break;
      const std::uint64_t byOrdinal = wide ? 1ull << 63 : 1ull << 31;
      if (entry & byOrdinal)
        imports.push_back({dll, "", static_cast<unsigned>(entry & 0xFFFF)});
      else
        imports.push_back({dll, img.Text(offset(static_cast<std::uint32_t>(entry)) + 2), 0});
    }
  }
  return imports;
}

bool ExportList::Has(const std::string& dll, const std::string& function) const {
  const std::string key = Lower(dll);
  return std::any_of(entries.begin(), entries.end(),
                     [&](const auto& e) { return e.first == key && e.second == function; });
}

ExportList ReadExportList(const std::string& path) {
  std::ifstream in(path);
  if (!in) throw std::runtime_error("cannot open " + path);
  ExportList list;
  std::string line;
  while (std::getline(in, line)) {
    line = line.substr(0, line.find('#'));
    std::istringstream words(line);
    std::string dll, function;
    if (words >> dll >> function) list.entries.emplace_back(Lower(dll), function);
  }
  return list;
}

std::vector<std::string> NotIn(const std::vector<Import>& imports, const ExportList& list) {
  std::vector<std::string> missing;
  for (const Import& i : imports) {
    if (i.function.empty())
      missing.push_back(i.dll + "#" + std::to_string(i.ordinal));
    else if (!list.Has(i.dll, i.function))
      missing.push_back(i.dll + "!" + i.function);
  }
  return missing;
}

}  // namespace tamrix::pe
