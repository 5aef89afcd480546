// What a bar's window answers to kMsgGetBarValue, in the width of the message's answer: 32 bits in
// the i686 program, 64 in the x86_64 one.
#include <windows.h>

#include <gtest/gtest.h>

#include <limits>

#include "shell/win32/ControlMessages.h"

namespace tamrix::win32 {
namespace {

TEST(BarValueMessage, OrdinaryValuesAreTimes100Rounded) {
  EXPECT_EQ(BarValueTimes100(24.15), 2415);
  EXPECT_EQ(BarValueTimes100(-3.456), -346);
  EXPECT_EQ(BarValueTimes100(0), 0);
}

TEST(BarValueMessage, NotANumberReadsZero) {
  EXPECT_EQ(BarValueTimes100(std::numeric_limits<double>::quiet_NaN()), 0);
}

TEST(BarValueMessage, ValuesBeyondTheAnswerReadItsLargestCounts) {
  // 30 million times 100 is past 32 bits: the i686 answer stops at its largest, never wraps.
  if (sizeof(LRESULT) == 4) {
    EXPECT_EQ(BarValueTimes100(3.0e7), 2147483647);
    EXPECT_EQ(BarValueTimes100(-3.0e7), -2147483647);
    EXPECT_EQ(BarValueTimes100(std::numeric_limits<double>::infinity()), 2147483647);
    EXPECT_EQ(BarValueTimes100(-std::numeric_limits<double>::infinity()), -2147483647);
  } else {
    EXPECT_EQ(static_cast<long long>(BarValueTimes100(3.0e7)), 3000000000LL);
    EXPECT_EQ(static_cast<long long>(BarValueTimes100(-3.0e7)), -3000000000LL);
    EXPECT_EQ(static_cast<long long>(BarValueTimes100(std::numeric_limits<double>::infinity())), 9000000000000000LL);
    EXPECT_EQ(static_cast<long long>(BarValueTimes100(-std::numeric_limits<double>::infinity())), -9000000000000000LL);
  }
}

}  // namespace
}  // namespace tamrix::win32
