// The conversions and faults of the classic Windows BASIC runtime that the program's behaviour
// rests on: rounding halves to even, overflow and type-mismatch faults, text read as a number
// under the regional decimal sign.
#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>

namespace tamrix {

// A run-time fault: the number and the sentence the runtime's error box shows.
class RuntimeError : public std::runtime_error {
 public:
  RuntimeError(int number, const std::string& description)
      : std::runtime_error(description), number_(number) {}
  int Number() const { return number_; }
  std::string Description() const { return what(); }

 private:
  int number_;
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

}  // namespace tamrix

namespace tamrix::rt {
// The application's title: the default title of message boxes and of the runtime's error box.
inline constexpr const char* kAppTitle = "Tamrix Utility";
}  // namespace tamrix::rt
