// The runtime's date pattern on a text ("DD - mmmm - YYYY") and the joining of WMI values to text.
#include <gtest/gtest.h>

#include "fake/FakePlatform.h"
#include "platform/Runtime.h"

namespace tamrix {
namespace {

using T = WmiValue::Type;
const char* const kPattern = "DD - mmmm - YYYY";

TEST(DatePattern, ADateTextGetsTheDayTheRegionalMonthNameAndTheYear) {
  fake::FakePlatform p;
  EXPECT_EQ(rt::FormatDateText("15/03/05", kPattern, p), "15 - mars - 2005");
  EXPECT_EQ(rt::FormatDateText("01.08.1999", kPattern, p), "01 - août - 1999");
  EXPECT_EQ(rt::FormatDateText("2004-12-25", kPattern, p), "25 - décembre - 2004");
}

TEST(DatePattern, ADayThatCannotBeAMonthIsReadInTheOtherOrder) {
  fake::FakePlatform p;  // day-month-year first
  EXPECT_EQ(rt::FormatDateText("03/15/05", kPattern, p), "15 - mars - 2005");
}

TEST(DatePattern, TheRegionalOrderDecidesAnAmbiguousDate) {
  fake::FakePlatform p;
  EXPECT_EQ(rt::FormatDateText("02/03/05", kPattern, p), "02 - mars - 2005");
  p.shortDateOrder = 0;  // month-day-year
  EXPECT_EQ(rt::FormatDateText("02/03/05", kPattern, p), "03 - février - 2005");
}

TEST(DatePattern, TwoDigitYearsBelowThirtyAreInTheTwoThousands) {
  fake::FakePlatform p;
  EXPECT_EQ(rt::FormatDateText("1/1/29", kPattern, p), "01 - janvier - 2029");
  EXPECT_EQ(rt::FormatDateText("1/1/30", kPattern, p), "01 - janvier - 1930");
}

TEST(DatePattern, ANumberIsADayCountFromTheLastDaysOf1899) {
  fake::FakePlatform p;
  EXPECT_EQ(rt::FormatDateText("1", kPattern, p), "31 - décembre - 1899");
  EXPECT_EQ(rt::FormatDateText("38426", kPattern, p), "15 - mars - 2005");
}

TEST(DatePattern, TextThatIsNoDatePassesUnchanged) {
  fake::FakePlatform p;
  for (const char* text : {"WINE   -", "DELL   -", "", "A05", "31/02/05", "1/2", "99999999", "27d70402"})
    EXPECT_EQ(rt::FormatDateText(text, kPattern, p), text) << text;
}

TEST(DatePattern, ShortLettersGiveNumbersWithoutPadding) {
  fake::FakePlatform p;
  EXPECT_EQ(rt::FormatDateText("05/03/2005", "d/m/yy mmm", p), "5/3/05 mar");
}

TEST(JoinText, NullAndEmptyGiveNothingABooleanTheSystemsWordNumbersTheirDigits) {
  fake::FakePlatform p;
  EXPECT_EQ(rt::JoinText({.type = T::Null}, p), "");
  EXPECT_EQ(rt::JoinText({}, p), "");
  EXPECT_EQ(rt::JoinText({.type = T::Boolean, .boolean = true}, p), "Vrai");
  EXPECT_EQ(rt::JoinText({.type = T::Boolean, .boolean = false}, p), "Faux");
  EXPECT_EQ(rt::JoinText({.type = T::Integer, .integer = -42}, p), "-42");
  EXPECT_EQ(rt::JoinText({.type = T::Double, .number = 1.5}, p), "1,5");
  EXPECT_EQ(rt::JoinText({.type = T::Text, .text = "OK"}, p), "OK");
}

TEST(JoinText, AnArrayCannotBeJoinedAndUBoundNeedsOne) {
  fake::FakePlatform p;
  WmiValue array{.type = T::Array, .items = {WmiValue{}, WmiValue{}, WmiValue{}}};
  EXPECT_THROW(rt::JoinText(array, p), RuntimeError);
  EXPECT_EQ(rt::UBound(array), 2);
  EXPECT_EQ(rt::UBound({.type = T::Array}), -1);
  try {
    rt::UBound({.type = T::Null});
    FAIL() << "no error";
  } catch (const RuntimeError& e) {
    EXPECT_EQ(e.Number(), 13);
  }
}

}  // namespace
}  // namespace tamrix
