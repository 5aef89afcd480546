// Number and time texts of the runtime: Format with digit patterns, a number joined to a text,
// Format of a time, and the division faults.
#include <gtest/gtest.h>

#include <limits>

#include "platform/Runtime.h"

namespace tamrix {
namespace {

int FaultOf(auto&& f) {
  try {
    f();
  } catch (const RuntimeError& e) {
    return e.Number();
  }
  return 0;
}

TEST(FormatNumber, WholePatternRoundsHalvesAwayFromZero) {
  EXPECT_EQ(rt::FormatNumber(2.5, "#0", '.'), "3");
  EXPECT_EQ(rt::FormatNumber(3.5, "#0", '.'), "4");
  EXPECT_EQ(rt::FormatNumber(-2.5, "#0", '.'), "-3");
  EXPECT_EQ(rt::FormatNumber(0.5, "#0", '.'), "1");
  EXPECT_EQ(rt::FormatNumber(2.4999, "#0", '.'), "2");
  EXPECT_EQ(rt::FormatNumber(512.6, "#0", '.'), "513");
}

TEST(FormatNumber, ZeroDigitOfThePatternAlwaysShows) {
  EXPECT_EQ(rt::FormatNumber(0, "#0", '.'), "0");
  EXPECT_EQ(rt::FormatNumber(0.2, "#0", '.'), "0");
  EXPECT_EQ(rt::FormatNumber(0.04, "#0.0", ','), "0,0");
  EXPECT_EQ(rt::FormatNumber(0, "#0.0", ','), "0,0");
}

TEST(FormatNumber, OneDecimalKeepsItsZero) {
  EXPECT_EQ(rt::FormatNumber(128.04, "#0.0", '.'), "128.0");
  EXPECT_EQ(rt::FormatNumber(128, "#0.0", '.'), "128.0");
  EXPECT_EQ(rt::FormatNumber(99.96, "#0.0", '.'), "100.0");
  EXPECT_EQ(rt::FormatNumber(1234567.25, "#0.0", '.'), "1234567.3");
}

TEST(FormatNumber, DecimalSignIsTheRegionalOne) {
  EXPECT_EQ(rt::FormatNumber(128.04, "#0.0", ','), "128,0");
  EXPECT_EQ(rt::FormatNumber(241.55, "#0.0", ','), "241,6");
}

TEST(FormatNumber, HalvesAreCountedOnTheDecimalDigitsNotTheBinaryValue) {
  // 0.15, 2.675 and 1.005 lie just below their halves in binary; their decimal digits don't.
  EXPECT_EQ(rt::FormatNumber(0.15, "#0.0", '.'), "0.2");
  EXPECT_EQ(rt::FormatNumber(2.675, "#0.00", '.'), "2.68");
  EXPECT_EQ(rt::FormatNumber(1.005, "#0.00", '.'), "1.01");
  EXPECT_EQ(rt::FormatNumber(-0.25, "#0.0", '.'), "-0.3");
}

TEST(FormatNumber, NegativeNumberThatRoundsToZeroKeepsItsSign) {
  EXPECT_EQ(rt::FormatNumber(-0.04, "#0.0", ','), "-0,0");
  EXPECT_EQ(rt::FormatNumber(-1.0 / 1048576, "#0.0", ','), "-0,0");
  EXPECT_EQ(rt::FormatNumber(-0.0, "#0.0", ','), "0,0");
}

TEST(FormatNumber, NegativeCounts) {
  EXPECT_EQ(rt::FormatNumber(-1023.0, "#0", '.'), "-1023");
  EXPECT_EQ(rt::FormatNumber(-1536.04, "#0.0", ','), "-1536,0");
}

TEST(FormatNumber, OptionalDigitsAfterThePoint) {
  EXPECT_EQ(rt::FormatNumber(1.5, "0.##", '.'), "1.5");
  EXPECT_EQ(rt::FormatNumber(1.0, "0.##", '.'), "1.");
  EXPECT_EQ(rt::FormatNumber(0.5, "#.0", '.'), ".5");
  EXPECT_EQ(rt::FormatNumber(7, "000", '.'), "007");
}

TEST(FormatNumber, LargeAndTinyMagnitudes) {
  EXPECT_EQ(rt::FormatNumber(1e20, "#0", '.'), "100000000000000000000");
  EXPECT_EQ(rt::FormatNumber(1e-20, "#0.0", '.'), "0.0");
  EXPECT_EQ(rt::FormatNumber(0.96, "#0", '.'), "1");
  EXPECT_EQ(rt::FormatNumber(9.5, "#0", '.'), "10");
}

TEST(DoubleToText, WholeNumbersShowNoDecimals) {
  EXPECT_EQ(rt::DoubleToText(385, ','), "385");
  EXPECT_EQ(rt::DoubleToText(-1024, ','), "-1024");
  EXPECT_EQ(rt::DoubleToText(0, ','), "0");
  EXPECT_EQ(rt::DoubleToText(-0.0, ','), "0");
}

TEST(DoubleToText, FractionsUseTheRegionalDecimalSign) {
  EXPECT_EQ(rt::DoubleToText(24.15, ','), "24,15");
  EXPECT_EQ(rt::DoubleToText(24.15, '.'), "24.15");
  EXPECT_EQ(rt::DoubleToText(513 - 128.4, ','), "384,6");
}

TEST(DoubleToText, FifteenSignificantDigitsHideTheBinaryNoise) {
  EXPECT_EQ(rt::DoubleToText(0.1 + 0.2, '.'), "0.3");
  EXPECT_EQ(rt::DoubleToText(1.0 / 3, '.'), "0.333333333333333");
  EXPECT_EQ(rt::DoubleToText(2.0 / 3, '.'), "0.666666666666667");
  EXPECT_EQ(rt::DoubleToText(123456789012345.0, '.'), "123456789012345");
}

TEST(DoubleToText, VeryLargeAndVerySmallTakeTheExponentForm) {
  EXPECT_EQ(rt::DoubleToText(1e15, '.'), "1E+15");
  EXPECT_EQ(rt::DoubleToText(1e16, '.'), "1E+16");
  EXPECT_EQ(rt::DoubleToText(1.5e-5, ','), "1,5E-05");
  EXPECT_EQ(rt::DoubleToText(1e-18, '.'), "1E-18");
  EXPECT_EQ(rt::DoubleToText(0.0001, '.'), "0.0001");
  EXPECT_EQ(rt::DoubleToText(-2.5e100, '.'), "-2.5E+100");
}

TEST(FormatTime, HoursMinutesSecondsOnATwentyFourHourClock) {
  EXPECT_EQ(rt::FormatTime({2026, 11, 21, 20, 50, 35}, "HH:MM:SS", ':'), "20:50:35");
  EXPECT_EQ(rt::FormatTime({2026, 11, 21, 0, 0, 0}, "HH:MM:SS", ':'), "00:00:00");
  EXPECT_EQ(rt::FormatTime({2026, 11, 21, 7, 5, 9}, "HH:MM:SS", ':'), "07:05:09");
  EXPECT_EQ(rt::FormatTime({2026, 11, 21, 23, 59, 59}, "HH:MM:SS", ':'), "23:59:59");
}

TEST(FormatTime, LettersAreTakenInEitherCase) {
  EXPECT_EQ(rt::FormatTime({2026, 3, 4, 13, 7, 8}, "hh:mm:ss", ':'), "13:07:08");
  EXPECT_EQ(rt::FormatTime({2026, 3, 4, 13, 7, 8}, "hh:nn:ss", ':'), "13:07:08");
  EXPECT_EQ(rt::FormatTime({2026, 3, 4, 13, 7, 8}, "h:n:s", ':'), "13:7:8");
}

TEST(FormatTime, MonthWhenNotAfterAnHour) {
  EXPECT_EQ(rt::FormatTime({2026, 3, 4, 13, 7, 8}, "MM", ':'), "03");
  EXPECT_EQ(rt::FormatTime({2026, 3, 4, 13, 7, 8}, "ss mm", ':'), "08 03");
}

TEST(FormatTime, ColonIsTheRegionalTimeSeparator) {
  EXPECT_EQ(rt::FormatTime({2026, 11, 21, 20, 50, 35}, "HH:MM:SS", '.'), "20.50.35");
}

TEST(Divide, GivesTheQuotient) {
  EXPECT_DOUBLE_EQ(rt::Divide(241.5, 1000), 0.2415);
  EXPECT_DOUBLE_EQ(rt::Divide(-1, 4), -0.25);
}

TEST(Divide, ByZeroIsFaultElevenAndZeroByZeroIsOverflow) {
  EXPECT_EQ(FaultOf([] { rt::Divide(5, 0); }), 11);
  EXPECT_EQ(FaultOf([] { rt::Divide(0, 0); }), 6);
  EXPECT_EQ(rt::DivisionByZero().Description(), "Division by zero");
  EXPECT_EQ(FaultOf([] { rt::Divide(std::numeric_limits<double>::max(), 0.5); }), 6);
}

}  // namespace
}  // namespace tamrix
