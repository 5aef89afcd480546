#include <gtest/gtest.h>

#include <cmath>
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

TEST(Runtime, WholeNumberConversionsRoundHalvesToEven) {
  EXPECT_EQ(rt::ToInt16(40.5), 40);
  EXPECT_EQ(rt::ToInt16(41.5), 42);
  EXPECT_EQ(rt::ToInt16(0.5), 0);
  EXPECT_EQ(rt::ToInt16(-2.5), -2);
  EXPECT_EQ(rt::ToInt32(2.5000001), 3);
  EXPECT_EQ(rt::ToInt32(-1.5), -2);
}

TEST(Runtime, SixteenBitRangeEndsInOverflow) {
  EXPECT_EQ(rt::ToInt16(32767.4), 32767);
  EXPECT_EQ(rt::ToInt16(-32768), -32768);
  EXPECT_EQ(FaultOf([] { rt::ToInt16(32767.5); }), 6);
  EXPECT_EQ(FaultOf([] { rt::ToInt16(-32769); }), 6);
  EXPECT_EQ(FaultOf([] { rt::ToInt16(std::nan("")); }), 6);
}

TEST(Runtime, ThirtyTwoBitRangeEndsInOverflow) {
  EXPECT_EQ(rt::ToInt32(2147483647.0), 2147483647);
  EXPECT_EQ(rt::ToInt32(-2147483648.0), std::numeric_limits<std::int32_t>::min());
  EXPECT_EQ(FaultOf([] { rt::ToInt32(2147483648.0); }), 6);
  EXPECT_EQ(FaultOf([] { rt::ToInt32(std::numeric_limits<double>::infinity()); }), 6);
}

TEST(Runtime, TextToNumberFollowsTheRegionalDecimalSign) {
  EXPECT_DOUBLE_EQ(rt::TextToDouble("1,5", ','), 1.5);
  EXPECT_DOUBLE_EQ(rt::TextToDouble("1.5", '.'), 1.5);
  EXPECT_DOUBLE_EQ(rt::TextToDouble(" 12 ", ','), 12);
  EXPECT_DOUBLE_EQ(rt::TextToDouble("1e3", '.'), 1000);
  EXPECT_DOUBLE_EQ(rt::TextToDouble("- 4", '.'), -4);
  EXPECT_DOUBLE_EQ(rt::TextToDouble("1,000.5", '.'), 1000.5);
  EXPECT_DOUBLE_EQ(rt::TextToDouble("&H10", '.'), 16);
  EXPECT_DOUBLE_EQ(rt::TextToDouble("&HFFFF", '.'), -1);
  EXPECT_DOUBLE_EQ(rt::TextToDouble("&O17", '.'), 15);
}

TEST(Runtime, TextThatIsNoNumberIsATypeMismatch) {
  EXPECT_EQ(FaultOf([] { rt::TextToDouble("", ','); }), 13);
  EXPECT_EQ(FaultOf([] { rt::TextToDouble("   ", ','); }), 13);
  EXPECT_EQ(FaultOf([] { rt::TextToDouble("abc", ','); }), 13);
  EXPECT_EQ(FaultOf([] { rt::TextToDouble("12abc", ','); }), 13);
  EXPECT_EQ(FaultOf([] { rt::TextToDouble(std::string("1\0", 2), ','); }), 13);
  EXPECT_EQ(FaultOf([] { rt::TextToDouble("1.5", ','); }), 13);
  EXPECT_EQ(FaultOf([] { rt::TextToDouble("1e", '.'); }), 13);
}

TEST(Runtime, ResumeNextDropsTheFaultAndGoesOn) {
  int reached = 0;
  ResumeNext([] { throw rt::Overflow(); });
  ResumeNext([&] { reached = 1; });
  EXPECT_EQ(reached, 1);
}

TEST(Runtime, RoundHalfEvenOnExactHalves) {
  EXPECT_EQ(rt::RoundHalfEven(2.5), 2);
  EXPECT_EQ(rt::RoundHalfEven(3.5), 4);
  EXPECT_EQ(rt::RoundHalfEven(-0.5), 0);
  EXPECT_EQ(rt::RoundHalfEven(511.5), 512);
  EXPECT_EQ(rt::RoundHalfEven(512.5), 512);
  EXPECT_EQ(rt::RoundHalfEven(513.5), 514);
}

TEST(Runtime, LeftCountsCharactersNotBytes) {
  EXPECT_EQ(rt::Left("Sécurité 2004", 8), "Sécurité");
  EXPECT_EQ(rt::Left("Déc", 8), "Déc");
  EXPECT_EQ(rt::Left("ABCDEFGHIJ", 8), "ABCDEFGH");
  EXPECT_EQ(rt::Left("", 8), "");
  EXPECT_EQ(rt::Left("€uro", 1), "€");
}

TEST(Runtime, LowerCaseTakesEveryCapitalOfTheWholeText) {
  EXPECT_EQ(rt::LCase("C:\\Program Files\\ÉTÉ"), "c:\\program files\\été");
  EXPECT_EQ(rt::LCase("ŒŠŽŸ"), "œšžÿ");
  EXPECT_EQ(rt::LCase("ĄĆĘŁŃÓŚŹŻ ČĎĚŇŘŤŮ"), "ąćęłńóśźż čďěňřťů");
  EXPECT_EQ(rt::LCase("ΑΘΗΝΑ Ά"), "αθηνα ά");
  EXPECT_EQ(rt::LCase("МОСКВА ЁЖ ЇІ"), "москва ёж їі");
  EXPECT_EQ(rt::LCase("× ß 1€ 😀 x"), "× ß 1€ 😀 x");
  EXPECT_EQ(rt::LCase(std::string("A\xC3")), std::string("a\xC3"));  // a cut sequence stays
}

}  // namespace
}  // namespace tamrix
