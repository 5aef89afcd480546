// Any text a BIOS gives as its version, through the road of the BIOS page's "Release Date" line:
// its first eight letters put through the date pattern "DD - mmmm - YYYY". The result is the
// text unchanged, or a day of two digits, a month name of the system's and a year of four
// digits, never anything between; the whole text goes through the pattern as well.
#include <cstdint>
#include <string>

#include "fake/FakePlatform.h"
#include "platform/Runtime.h"

namespace {

bool Digits(const std::string& s, std::size_t at, std::size_t n) {
  if (at + n > s.size()) return false;
  for (std::size_t i = at; i < at + n; ++i)
    if (s[i] < '0' || s[i] > '9') return false;
  return true;
}

// "DD - mmmm - YYYY" with a real day, one of the twelve names and a year of the runtime's range.
bool ADate(const std::string& s, tamrix::Platform& p) {
  if (!Digits(s, 0, 2)) return false;
  int day = (s[0] - '0') * 10 + (s[1] - '0');
  if (day < 1 || day > 31) return false;
  for (int m = 1; m <= 12; ++m) {
    std::string middle = " - " + p.MonthName(m) + " - ";
    if (s.compare(2, middle.size(), middle) != 0) continue;
    std::size_t year = 2 + middle.size();
    return s.size() == year + 4 && Digits(s, year, 4) && s.compare(year, 4, "0099") > 0;
  }
  return false;
}

void Check(const std::string& text, tamrix::fake::FakePlatform& p) {
  std::string shown = tamrix::rt::FormatDateText(text, "DD - mmmm - YYYY", p);
  if (shown != text && !ADate(shown, p)) __builtin_trap();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size == 0) return 0;
  std::string version(reinterpret_cast<const char*>(data + 1), size - 1);
  tamrix::fake::FakePlatform p;
  // Both decimal signs and both orders of a short date that the regional settings may have.
  p.decimalSign = data[0] & 1 ? ',' : '.';
  p.shortDateOrder = (data[0] >> 1) % 3;
  Check(tamrix::rt::Left(version, 8), p);
  Check(version, p);
  return 0;
}
