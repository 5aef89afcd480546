#include "platform/Runtime.h"

#include <algorithm>
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

namespace {

// The length of the UTF-8 sequence that starts with this byte; a stray byte counts as one.
std::size_t SequenceLength(unsigned char lead) {
  if (lead >= 0xF0 && lead < 0xF8) return 4;
  if (lead >= 0xE0) return lead < 0xF0 ? 3 : 1;
  if (lead >= 0xC0) return 2;
  return 1;
}

char32_t SmallLetter(char32_t c) {
  if (c >= U'A' && c <= U'Z') return c + 32;
  if (c < 0xC0) return c;
  if (c <= 0xDE) return c == 0xD7 ? c : c + 32;  // the Latin-1 capitals, but for the sign ×
  if (c == 0x130) return U'i';
  if (c >= 0x100 && c <= 0x137) return c % 2 == 0 ? c + 1 : c;
  if (c >= 0x139 && c <= 0x148) return c % 2 == 1 ? c + 1 : c;
  if (c >= 0x14A && c <= 0x177) return c % 2 == 0 ? c + 1 : c;
  if (c == 0x178) return 0xFF;
  if (c >= 0x179 && c <= 0x17E) return c % 2 == 1 ? c + 1 : c;
  if (c == 0x386) return 0x3AC;
  if (c >= 0x388 && c <= 0x38A) return c + 37;
  if (c == 0x38C) return 0x3CC;
  if (c == 0x38E || c == 0x38F) return c + 63;
  if (c >= 0x391 && c <= 0x3AB && c != 0x3A2) return c + 32;
  if (c >= 0x400 && c <= 0x40F) return c + 80;
  if (c >= 0x410 && c <= 0x42F) return c + 32;
  if ((c >= 0x460 && c <= 0x481) || (c >= 0x48A && c <= 0x4BF)) return c % 2 == 0 ? c + 1 : c;
  return c;
}

void AppendUtf8(std::string& out, char32_t c) {
  if (c < 0x80) {
    out += static_cast<char>(c);
  } else if (c < 0x800) {
    out += static_cast<char>(0xC0 | (c >> 6));
    out += static_cast<char>(0x80 | (c & 0x3F));
  } else {
    out += static_cast<char>(0xE0 | (c >> 12));
    out += static_cast<char>(0x80 | ((c >> 6) & 0x3F));
    out += static_cast<char>(0x80 | (c & 0x3F));
  }
}

}  // namespace

std::string Left(const std::string& text, std::size_t n) {
  std::size_t at = 0;
  for (std::size_t taken = 0; taken < n && at < text.size(); ++taken)
    at += SequenceLength(static_cast<unsigned char>(text[at]));
  return text.substr(0, std::min(at, text.size()));
}

std::string LCase(const std::string& text) {
  std::string out;
  out.reserve(text.size());
  for (std::size_t i = 0; i < text.size();) {
    auto lead = static_cast<unsigned char>(text[i]);
    std::size_t n = SequenceLength(lead);
    if (n == 1) {  // ASCII, or a stray byte copied as it is
      out += lead < 0x80 ? static_cast<char>(SmallLetter(lead)) : text[i];
      ++i;
      continue;
    }
    // The letters with small forms are all of two or three bytes; the rest is copied.
    if (n == 4 || i + n > text.size()) {
      std::size_t k = std::min(n, text.size() - i);
      out.append(text, i, k);
      i += k;
      continue;
    }
    char32_t c = n == 2 ? (lead & 0x1F) : (lead & 0x0F);
    for (std::size_t k = 1; k < n; ++k) c = (c << 6) | (static_cast<unsigned char>(text[i + k]) & 0x3F);
    AppendUtf8(out, SmallLetter(c));
    i += n;
  }
  return out;
}

}  // namespace tamrix::rt

// --- number and time texts ---

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <vector>

namespace tamrix::rt {

RuntimeError DivisionByZero() { return RuntimeError(ErrDivisionByZero, "Division by zero"); }

double Divide(double numerator, double denominator) {
  if (denominator == 0.0) throw numerator == 0.0 ? Overflow() : DivisionByZero();
  double q = numerator / denominator;
  if (std::isinf(q)) throw Overflow();
  return q;
}

namespace {

// The number's first 15 significant decimal digits and the power of ten of the first one:
// x = 0.d1d2...d15 * 10^(point).
void DecimalDigits(double magnitude, std::string* digits, int* point) {
  char buf[40];
  std::snprintf(buf, sizeof buf, "%.14e", magnitude);
  digits->clear();
  const char* c = buf;
  for (; *c && *c != 'e'; ++c)
    if (*c >= '0' && *c <= '9') *digits += *c;
  *point = std::atoi(c + 1) + 1;
}

}  // namespace

std::string FormatNumber(double x, const std::string& pattern, char decimalSign) {
  std::size_t dot = pattern.find('.');
  std::string intPattern = pattern.substr(0, dot);
  std::string fracPattern = dot == std::string::npos ? std::string() : pattern.substr(dot + 1);
  for (char c : intPattern + fracPattern)
    if (c != '#' && c != '0') throw std::invalid_argument("unsupported number pattern: " + pattern);
  const int minInt = static_cast<int>(std::count(intPattern.begin(), intPattern.end(), '0'));
  const int maxFrac = static_cast<int>(fracPattern.size());
  const int minFrac = static_cast<int>(fracPattern.find_last_of('0') + 1);  // npos + 1 == 0

  // Digits of the integer part and of the fraction, after rounding half away from zero at the
  // last decimal the pattern shows.
  std::string digits;
  int point = 0;
  if (x != 0.0 && std::isfinite(x)) DecimalDigits(std::fabs(x), &digits, &point);
  const int keep = point + maxFrac;  // digits of `digits` that stay
  if (keep < 0) {
    digits.clear();
  } else if (keep < static_cast<int>(digits.size())) {
    bool up = digits[static_cast<std::size_t>(keep)] >= '5';
    digits.resize(static_cast<std::size_t>(keep));
    if (up) {
      int i = keep - 1;
      for (; i >= 0 && digits[static_cast<std::size_t>(i)] == '9'; --i) digits[static_cast<std::size_t>(i)] = '0';
      if (i >= 0) {
        ++digits[static_cast<std::size_t>(i)];
      } else {
        digits.insert(digits.begin(), '1');
        ++point;
      }
    }
  }
  // Spread the digits around the decimal point.
  std::string whole, frac;
  for (int i = 0; i < point; ++i) whole += i < static_cast<int>(digits.size()) ? digits[static_cast<std::size_t>(i)] : '0';
  for (int i = 0; i < maxFrac; ++i) {
    int at = point + i;
    frac += at >= 0 && at < static_cast<int>(digits.size()) ? digits[static_cast<std::size_t>(at)] : '0';
  }
  whole.erase(0, std::min(whole.find_first_not_of('0'), whole.size()));
  if (static_cast<int>(whole.size()) < minInt) whole.insert(0, static_cast<std::size_t>(minInt) - whole.size(), '0');
  while (static_cast<int>(frac.size()) > minFrac && frac.back() == '0') frac.pop_back();

  std::string out = x < 0 ? "-" : "";
  out += whole;
  if (!fracPattern.empty()) out += decimalSign;
  out += frac;
  return out;
}

std::string DoubleToText(double x, char decimalSign) {
  if (x == 0.0) return "0";  // a negative zero shows as plain 0
  char buf[40];
  std::snprintf(buf, sizeof buf, "%.15G", x);
  std::string out = buf;
  for (char& c : out)
    if (c == '.') c = decimalSign;
  return out;
}

std::string FormatTime(const LocalTime& t, const std::string& pattern, char timeSeparator) {
  auto two = [](int v, std::size_t width) {
    std::string s = std::to_string(v);
    if (width == 2 && s.size() < 2) s.insert(0, 1, '0');
    return s;
  };
  std::string out;
  bool afterHour = false;
  for (std::size_t i = 0; i < pattern.size();) {
    char c = static_cast<char>(std::tolower(static_cast<unsigned char>(pattern[i])));
    std::size_t run = 1;
    while (i + run < pattern.size() && run < 2 &&
           std::tolower(static_cast<unsigned char>(pattern[i + run])) == static_cast<unsigned char>(c))
      ++run;
    switch (c) {
      case 'h':
        out += two(t.hour, run);
        afterHour = true;
        break;
      case 'n':
        out += two(t.minute, run);
        afterHour = false;
        break;
      case 'm':
        out += two(afterHour ? t.minute : t.month, run);
        afterHour = false;
        break;
      case 's':
        out += two(t.second, run);
        afterHour = false;
        break;
      case ':':
        out += timeSeparator;
        run = 1;
        break;
      default:
        out += pattern[i];
        run = 1;
        break;
    }
    i += run;
  }
  return out;
}

namespace {

bool IsLeap(int y) { return (y % 4 == 0 && y % 100 != 0) || y % 400 == 0; }

int DaysInMonth(int y, int m) {
  static const int kDays[12] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
  return m == 2 && IsLeap(y) ? 29 : kDays[m - 1];
}

bool ValidDate(int y, int m, int d) { return y >= 100 && y <= 9999 && m >= 1 && m <= 12 && d >= 1 && d <= DaysInMonth(y, m); }

struct Date {
  int year, month, day;
};

// Days from 30 December 1899, the runtime's day 0, to a calendar date (the civil-from-days count).
Date FromSerial(long long serial) {
  long long z = serial - 25569 + 719468;  // day 25569 is 1 January 1970, 719468 days after 1 March 0000
  long long era = (z >= 0 ? z : z - 146096) / 146097;
  long long doe = z - era * 146097;
  long long yoe = (doe - doe / 1460 + doe / 36524 - doe / 146096) / 365;
  long long y = yoe + era * 400;
  long long doy = doe - (365 * yoe + yoe / 4 - yoe / 100);
  long long mp = (5 * doy + 2) / 153;
  long long d = doy - (153 * mp + 2) / 5 + 1;
  long long m = mp < 10 ? mp + 3 : mp - 9;
  return {static_cast<int>(y + (m <= 2)), static_cast<int>(m), static_cast<int>(d)};
}

bool ReadDate(const std::string& text, Platform& p, Date* out) {
  // A number first: the runtime takes it as a day count.
  try {
    double serial = TextToDouble(text, p.DecimalSign());
    if (serial < -657434.0 || serial >= 2958466.0) return false;
    *out = FromSerial(static_cast<long long>(std::floor(serial)));
    return true;
  } catch (const RuntimeError&) {
  }
  std::vector<std::string> parts;
  std::string part;
  for (char c : text) {
    if (c >= '0' && c <= '9') {
      part += c;
    } else if (c == '/' || c == '-' || c == '.' || c == ' ') {
      if (!part.empty()) parts.push_back(part);
      part.clear();
    } else {
      return false;
    }
  }
  if (!part.empty()) parts.push_back(part);
  if (parts.size() != 3) return false;
  int a = std::atoi(parts[0].c_str()), b = std::atoi(parts[1].c_str()), c = std::atoi(parts[2].c_str());
  auto year = [](const std::string& digits, int v) { return digits.size() <= 2 ? (v < 30 ? 2000 + v : 1900 + v) : v; };
  if (parts[0].size() >= 3) {  // a year first
    if (!ValidDate(a, b, c)) return false;
    *out = {a, b, c};
    return true;
  }
  int y = year(parts[2], c);
  bool dayFirst = p.ShortDateOrder() == 1;
  for (int attempt = 0; attempt < 2; ++attempt, dayFirst = !dayFirst) {
    int d = dayFirst ? a : b, m = dayFirst ? b : a;
    if (ValidDate(y, m, d)) {
      *out = {y, m, d};
      return true;
    }
  }
  return false;
}

}  // namespace

std::string FormatDateText(const std::string& text, const std::string& pattern, Platform& p) {
  Date date;
  if (!ReadDate(text, p, &date)) return text;
  auto pad = [](int v, std::size_t width) {
    std::string s = std::to_string(v);
    while (s.size() < width) s.insert(0, 1, '0');
    return s;
  };
  std::string out;
  for (std::size_t i = 0; i < pattern.size();) {
    char c = static_cast<char>(std::tolower(static_cast<unsigned char>(pattern[i])));
    std::size_t run = 1;
    while (i + run < pattern.size() && std::tolower(static_cast<unsigned char>(pattern[i + run])) == c) ++run;
    if (c == 'd' && run <= 2) {
      out += pad(date.day, run);
    } else if (c == 'm') {
      if (run <= 2) {
        out += pad(date.month, run);
      } else {
        std::string name = p.MonthName(date.month);
        out += run == 3 ? name.substr(0, std::min<std::size_t>(3, name.size())) : name;
      }
    } else if (c == 'y' && (run == 2 || run == 4)) {
      out += run == 2 ? pad(date.year % 100, 2) : pad(date.year, 4);
    } else {
      out.append(pattern, i, run);
    }
    i += run;
  }
  return out;
}

std::string JoinText(const WmiValue& v, Platform& p) {
  switch (v.type) {
    case WmiValue::Type::Empty:
    case WmiValue::Type::Null: return "";
    case WmiValue::Type::Boolean: return p.BooleanText(v.boolean);
    case WmiValue::Type::Integer: return IntToText(v.integer);
    case WmiValue::Type::Double: return DoubleToText(v.number, p.DecimalSign());
    case WmiValue::Type::Text: return v.text;
    case WmiValue::Type::Array: break;
  }
  throw TypeMismatch();
}

std::int32_t UBound(const WmiValue& v) {
  if (v.type != WmiValue::Type::Array) throw TypeMismatch();
  return static_cast<std::int32_t>(v.items.size()) - 1;
}

}  // namespace tamrix::rt
