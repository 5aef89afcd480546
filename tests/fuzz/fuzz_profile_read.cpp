// Any profile file, section and key: the read gives a text of at most 254 characters, without
// the NUL characters of its buffer, and never fails.
#include <cstdint>
#include <string>

#include "fake/FakePlatform.h"
#include "platform/Ini.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  std::string input(reinterpret_cast<const char*>(data), size);
  // The input is "section\x01key\x01file text".
  std::size_t a = input.find('\x01');
  std::size_t b = a == std::string::npos ? std::string::npos : input.find('\x01', a + 1);
  if (b == std::string::npos) return 0;
  tamrix::fake::FakePlatform p;
  p.File("C:\\fuzz.ini") = input.substr(b + 1);
  tamrix::ini::ProfilePath = "C:\\fuzz.ini";
  std::string value = tamrix::ini::ReadProfileValue(p, input.substr(0, a), input.substr(a + 1, b - a - 1));
  std::size_t characters = 0;
  for (unsigned char c : value)
    if ((c & 0xC0) != 0x80) ++characters;
  if (characters > 254 || value.find('\0') != std::string::npos) __builtin_trap();
  return 0;
}
