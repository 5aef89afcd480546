#include "platform/Runtime.h"

#include <cctype>
#include <cmath>
#include <limits>

namespace tamrix::rt {

RuntimeError Overflow() { return RuntimeError(ErrOverflow, "Overflow"); }
RuntimeError TypeMismatch() { return RuntimeError(ErrTypeMismatch, "Type mismatch"); }
RuntimeError FileNotFound() { return RuntimeError(ErrFileNotFound, "File not found"); }

double RoundHalfEven(double x) {
  if (!std::isfinite(x)) return x;
  double floor = std::floor(x);
  double diff = x - floor;
  if (diff < 0.5) return floor;
  if (diff > 0.5) return floor + 1.0;
  return std::fmod(floor, 2.0) == 0.0 ? floor : floor + 1.0;
}

std::int16_t ToInt16(double x) {
  double r = RoundHalfEven(x);
  if (std::isnan(r) || r < -32768.0 || r > 32767.0) throw Overflow();
  return static_cast<std::int16_t>(r);
}

std::int32_t ToInt32(double x) {
  double r = RoundHalfEven(x);
  if (std::isnan(r) || r < -2147483648.0 || r > 2147483647.0) throw Overflow();
  return static_cast<std::int32_t>(r);
}

namespace {

bool IsBlank(char c) { return c == ' ' || c == '\t'; }

// "&H1F", "&O17": whole numbers in base 16 or 8, 16-bit when they fit in four (hex) digits,
// as the runtime reads them.
bool ReadRadix(const std::string& s, std::size_t i, std::size_t end, double* out) {
  if (i + 1 >= end || s[i] != '&') return false;
  char kind = static_cast<char>(std::toupper(static_cast<unsigned char>(s[i + 1])));
  int base = kind == 'H' ? 16 : kind == 'O' ? 8 : 0;
  if (base == 0) return false;
  std::size_t j = i + 2;
  if (j >= end) return false;
  std::uint64_t v = 0;
  std::size_t digits = 0;
  for (; j < end; ++j, ++digits) {
    int d;
    char c = static_cast<char>(std::toupper(static_cast<unsigned char>(s[j])));
    if (c >= '0' && c <= '9') d = c - '0';
    else if (c >= 'A' && c <= 'F') d = c - 'A' + 10;
    else return false;
    if (d >= base) return false;
    v = v * base + d;
    if (v > 0xFFFFFFFFull) throw Overflow();
  }
  // Four hex digits (or six octal) are a 16-bit number, eight a 32-bit one, both signed.
  if ((base == 16 && digits <= 4) || (base == 8 && v <= 0xFFFF)) {
    *out = static_cast<double>(static_cast<std::int16_t>(static_cast<std::uint16_t>(v)));
  } else {
    *out = static_cast<double>(static_cast<std::int32_t>(static_cast<std::uint32_t>(v)));
  }
  return true;
}

}  // namespace

double TextToDouble(const std::string& text, char decimalSign) {
  std::size_t i = 0, end = text.size();
  while (i < end && IsBlank(text[i])) ++i;
  while (end > i && IsBlank(text[end - 1])) --end;
  if (i == end) throw TypeMismatch();
  double radix;
  if (ReadRadix(text, i, end, &radix)) return radix;

  bool negative = false;
  if (text[i] == '+' || text[i] == '-') {
    negative = text[i] == '-';
    ++i;
    while (i < end && IsBlank(text[i])) ++i;
  }
  const char thousands = decimalSign == ',' ? ' ' : ',';
  std::string digits;  // normalised for strtod: '.' as the decimal point
  bool anyDigit = false, seenPoint = false;
  for (; i < end; ++i) {
    char c = text[i];
    if (c >= '0' && c <= '9') {
      digits += c;
      anyDigit = true;
    } else if (c == decimalSign && !seenPoint) {
      digits += '.';
      seenPoint = true;
    } else if (c == thousands && !seenPoint && anyDigit) {
      continue;
    } else {
      break;
    }
  }
  if (!anyDigit) throw TypeMismatch();
  if (i < end && (text[i] == 'e' || text[i] == 'E' || text[i] == 'd' || text[i] == 'D')) {
    std::string exponent = "e";
    std::size_t j = i + 1;
    if (j < end && (text[j] == '+' || text[j] == '-')) exponent += text[j++];
    std::size_t firstExpDigit = j;
    while (j < end && text[j] >= '0' && text[j] <= '9') exponent += text[j++];
    if (j == firstExpDigit) throw TypeMismatch();
    digits += exponent;
    i = j;
  }
  if (i != end) throw TypeMismatch();
  double v = std::strtod(digits.c_str(), nullptr);
  if (std::isinf(v)) throw Overflow();
  return negative ? -v : v;
}

std::string IntToText(std::int64_t n) { return std::to_string(n); }

}  // namespace tamrix::rt
