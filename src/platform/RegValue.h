// RegValue: what a registry read gives back and a registry write takes. Exactly one of empty,
// text, or a signed 32-bit number. Empty behaves as 0 among numbers and as "" among texts.
#pragma once

#include <cstdint>
#include <string>
#include <variant>

namespace tamrix {

class RegValue {
 public:
  RegValue() = default;
  RegValue(std::string text) : v_(std::move(text)) {}
  RegValue(const char* text) : v_(std::string(text)) {}
  RegValue(std::int32_t number) : v_(number) {}

  bool IsEmpty() const { return std::holds_alternative<std::monostate>(v_); }
  bool IsText() const { return std::holds_alternative<std::string>(v_); }
  bool IsNumber() const { return std::holds_alternative<std::int32_t>(v_); }

  // The text form: a text as it stands (a stored NUL included), a number in decimal, empty as "".
  std::string ToText() const;
  // The value as a text is shown on a control: up to its first NUL.
  std::string Shown() const;
  // A number test in which only a number can match: a text never equals a number here, and
  // empty counts as 0.
  bool EqualsNumber(std::int32_t n) const;

  // The conversions to whole numbers: empty is 0, a number stands, a text is read under the
  // regional decimal sign. Faults 6 and 13 as the runtime raises them.
  std::int16_t ToInt16(char decimalSign) const;
  std::int32_t ToInt32(char decimalSign) const;

  bool operator==(const RegValue& o) const { return v_ == o.v_; }

 private:
  std::variant<std::monostate, std::string, std::int32_t> v_;
};

}  // namespace tamrix
