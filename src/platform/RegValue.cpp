#include "platform/RegValue.h"

#include "platform/Runtime.h"

namespace tamrix {

std::string RegValue::ToText() const {
  if (auto* s = std::get_if<std::string>(&v_)) return *s;
  if (auto* n = std::get_if<std::int32_t>(&v_)) return rt::IntToText(*n);
  return {};
}

std::string RegValue::Shown() const {
  std::string s = ToText();
  return s.substr(0, s.find('\0'));
}

bool RegValue::EqualsNumber(std::int32_t n) const {
  if (auto* v = std::get_if<std::int32_t>(&v_)) return *v == n;
  return IsEmpty() && n == 0;
}

std::int16_t RegValue::ToInt16(char decimalSign) const {
  if (auto* s = std::get_if<std::string>(&v_)) return rt::ToInt16(rt::TextToDouble(*s, decimalSign));
  if (auto* n = std::get_if<std::int32_t>(&v_)) return rt::ToInt16(*n);
  return 0;
}

std::int32_t RegValue::ToInt32(char decimalSign) const {
  if (auto* s = std::get_if<std::string>(&v_)) return rt::ToInt32(rt::TextToDouble(*s, decimalSign));
  if (auto* n = std::get_if<std::int32_t>(&v_)) return *n;
  return 0;
}

}  // namespace tamrix
