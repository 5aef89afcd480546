// The conversions and faults of the classic Windows BASIC runtime that the program's behaviour
// rests on: rounding halves to even, overflow and type-mismatch faults, text read as a number
// under the regional decimal sign.
#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>
#include <utility>

namespace tamrix {

// A run-time fault: the number and the sentence the runtime's error box shows, and the source
// that raised it ("CMixer:OpenMixers"); the runtime's own faults leave the source empty.
class RuntimeError : public std::runtime_error {
 public:
  RuntimeError(int number, const std::string& description, std::string source = {})
      : std::runtime_error(description), number_(number), source_(std::move(source)) {}
  int Number() const { return number_; }
  std::string Description() const { return what(); }
  const std::string& Source() const { return source_; }

 private:
  int number_;
  std::string source_;
};

namespace rt {

constexpr int ErrOverflow = 6;
constexpr int ErrTypeMismatch = 13;
constexpr int ErrFileNotFound = 53;

RuntimeError Overflow();
RuntimeError TypeMismatch();
RuntimeError FileNotFound();

// Rounds half to even, as every whole-number conversion of the runtime does.
double RoundHalfEven(double x);

// CInt and CLng of a double: halves to even, fault 6 outside the range.
std::int16_t ToInt16(double x);
std::int32_t ToInt32(double x);

// CDbl of a text: blanks, a sign, digits with the regional decimal sign, thousands separators
// ignored, an exponent, "&H"/"&O" numbers. Anything else (the empty text included) is fault 13.
double TextToDouble(const std::string& text, char decimalSign);

// The decimal form of a whole number, as a number turned into text gives it.
std::string IntToText(std::int64_t n);

// Left(text, n): the first n characters of a text, whole letters and not bytes of its UTF-8.
std::string Left(const std::string& text, std::size_t n);

// LCase: every capital of the whole text to its small letter, as the language does on its
// Unicode text: Latin with its accented and extended letters (Œ, Š, Ž, Ÿ, the Central European
// ones), Greek and Cyrillic. Anything else stays as it is.
std::string LCase(const std::string& text);

}  // namespace rt

// "On Error Resume Next" for one statement: a run-time fault is dropped and the caller goes on
// with the next statement.
template <class F>
void ResumeNext(F&& statement) {
  try {
    statement();
  } catch (const RuntimeError&) {
  }
}

// The error object of a handler that runs with errors ignored: a statement that faults is
// dropped, its error stays pending until cleared or replaced by a later one, and the handler
// looks at it when it chooses to.
class ErrObject {
 public:
  template <class F>
  void Run(F&& statement) {
    try {
      statement();
    } catch (const RuntimeError& e) {
      error_ = e;
      pending_ = true;
    }
  }
  bool Pending() const { return pending_; }
  int Number() const { return pending_ ? error_.Number() : 0; }
  std::string Description() const { return pending_ ? error_.Description() : std::string(); }
  std::string Source() const { return pending_ ? error_.Source() : std::string(); }
  void Clear() { pending_ = false; }

 private:
  RuntimeError error_{0, ""};
  bool pending_ = false;
};

}  // namespace tamrix

namespace tamrix::rt {
// The application's title: the default title of message boxes and of the runtime's error box.
inline constexpr const char* kAppTitle = "Tamrix Utility";
}  // namespace tamrix::rt

// Number and time texts as the runtime's Format and CStr give them.
#include "platform/Platform.h"

namespace tamrix::rt {

constexpr int ErrDivisionByZero = 11;
RuntimeError DivisionByZero();

// The "/" of two numbers: a division by zero is fault 11, and 0 / 0 fault 6, as the runtime
// raises them.
double Divide(double numerator, double denominator);

// Format(x, pattern) for the digit patterns "#0", "#0.0" and their kin ('0' a digit always
// shown, '#' one shown only when needed, one '.'): halves go away from zero, counted on the
// number's decimal digits (15 significant ones), not on its binary value, so 2.675 with two
// decimals gives 2.68. The decimal sign is the regional one. A negative number that rounds to
// zero keeps its sign ("-0.0"), as the runtime's formatter does.
std::string FormatNumber(double x, const std::string& pattern, char decimalSign);

// A number joined to a text, or CStr: up to 15 significant digits, trailing zeros dropped, the
// exponent form ("1E+15", "1.5E-05") outside 1E-04 .. 1E+15, the regional decimal sign.
std::string DoubleToText(double x, char decimalSign);

// Format(time, pattern) for the time letters: "h"/"hh" hours on a 24-hour clock, "n"/"nn" and an
// "m"/"mm" that follows an hour the minutes, "s"/"ss" the seconds, in either case; ":" stands for
// the regional time separator. Any other character is copied as it stands.
std::string FormatTime(const LocalTime& t, const std::string& pattern, char timeSeparator);

// Format(text, date pattern): a text that reads as a date, or as a number (a day count from
// 30 December 1899), is formatted by the pattern's letters, in either case: "d"/"dd" the day,
// "m"/"mm" the month's number, "mmm" the start of its name and "mmmm" its whole regional name,
// "yy"/"yyyy" the year; any other character is copied. A date text is three numbers split by
// "/", "-", "." or blanks, read in the regional order first, then in the other order of day and
// month; a two-digit year below 30 is in the 2000s. Any other text comes back unchanged.
std::string FormatDateText(const std::string& text, const std::string& pattern, Platform& p);

// A WMI value joined to a text: Null and Empty give nothing, a Boolean the system's word, a
// number its digits (a double with the regional decimal sign), a text itself. An array can't
// be joined: fault 13.
std::string JoinText(const WmiValue& v, Platform& p);

// UBound of a WMI value: the array's upper bound; anything else is fault 13.
std::int32_t UBound(const WmiValue& v);

}  // namespace tamrix::rt
