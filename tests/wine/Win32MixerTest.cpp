// The mixer operations against Wine's own winmm, with the test's PulseAudio null sink: the
// records come across whole, as winmm fills them, and refusals come back as winmm's codes.
#include <windows.h>
#include <mmsystem.h>

#include <gtest/gtest.h>

#include <cstring>

#include "platform/win32/Win32Platform.h"
#include "sysinfo/CMixer.h"

namespace tamrix::win32 {
namespace {

class Win32Mixers : public ::testing::Test {
 protected:
  void SetUp() override {
    if (mixerGetNumDevs() == 0) GTEST_SKIP() << "no mixer: the test script's PulseAudio isn't running";
  }
  Win32Platform p;
};

// The read ahead is made before any mixer call of the process, as at the program's start; with
// or without a sound server, the calls after it get winmm's own answers.
TEST(Win32MixersReadAhead, CallsAfterTheReadAheadGetWinmmsOwnAnswers) {
  Win32Platform p;
  p.ReadMixersAhead();
  p.ReadMixersAhead();  // a second one starts no second reading
  const std::uint32_t count = p.mixerGetNumDevs();
  EXPECT_EQ(count, mixerGetNumDevs());
  MixerCaps caps;
  MIXERCAPSA own{};
  EXPECT_EQ(p.mixerGetDevCapsA(count, &caps, mixerline::kCapsSize), mixerGetDevCapsA(count, &own, sizeof own));
}

TEST(Win32MixersReadAhead, APlatformGoneBeforeAnyMixerCallEndsCleanly) {
  for (int i = 0; i < 3; ++i) {
    Win32Platform p;
    p.ReadMixersAhead();
  }
  Win32Platform p;
  EXPECT_EQ(p.mixerGetNumDevs(), mixerGetNumDevs());
}

TEST_F(Win32Mixers, CountAndCapsAreWinmmsOwnWithTheNameFieldUncut) {
  EXPECT_EQ(p.mixerGetNumDevs(), mixerGetNumDevs());
  MixerCaps caps;
  ASSERT_EQ(p.mixerGetDevCapsA(0, &caps, mixerline::kCapsSize), 0u);
  MIXERCAPSA own{};
  ASSERT_EQ(mixerGetDevCapsA(0, &own, sizeof own), 0u);
  // The field comes whole, its NUL and whatever winmm left behind it included; the class cuts it.
  EXPECT_NE(caps.szPname.find('\0'), std::string::npos);
  EXPECT_GE(caps.szPname.size(), 32u);
  EXPECT_EQ(caps.szPname.substr(0, caps.szPname.find('\0')), own.szPname);
  EXPECT_EQ(caps.cDestinations, own.cDestinations);
  EXPECT_EQ(caps.vDriverVersion, own.vDriverVersion);
}

TEST_F(Win32Mixers, DestinationAndSourceLinesAreReadOnAnOpenHandle) {
  MixerHandle h = 0;
  ASSERT_EQ(p.mixerOpen(&h, 0, 0, 0, 0), 0u);
  ASSERT_NE(h, 0u);
  MixerLine dst;
  dst.cbStruct = mixerline::kSize;
  dst.dwDestination = 0;
  ASSERT_EQ(p.mixerGetLineInfoA(h, &dst, mixerline::GetDestination), 0u);
  EXPECT_GE(dst.szName.size(), 64u);
  EXPECT_GE(dst.szShortName.size(), 16u);

  MIXERLINEA own{};
  own.cbStruct = sizeof own;
  own.dwDestination = 0;
  ASSERT_EQ(mixerGetLineInfoA(reinterpret_cast<HMIXEROBJ>(static_cast<ULONG_PTR>(h)), &own,
                              MIXER_GETLINEINFOF_DESTINATION), 0u);
  EXPECT_EQ(dst.szName.substr(0, dst.szName.find('\0')), own.szName);
  EXPECT_EQ(dst.cConnections, own.cConnections);
  EXPECT_EQ(dst.dwComponentType, own.dwComponentType);
  EXPECT_EQ(dst.Target.dwType, own.Target.dwType);

  if (dst.cConnections > 0) {
    MixerLine src;
    src.cbStruct = mixerline::kSize;
    src.dwDestination = 0;
    src.dwSource = 0;
    EXPECT_EQ(p.mixerGetLineInfoA(h, &src, mixerline::GetSource), 0u);
    EXPECT_EQ(src.dwComponentType & 0x1000u, 0x1000u);  // a source type
  }
  // A source beyond the last is refused with winmm's code for an invalid line.
  MixerLine beyond;
  beyond.cbStruct = mixerline::kSize;
  beyond.dwSource = dst.cConnections + 5;
  EXPECT_NE(p.mixerGetLineInfoA(h, &beyond, mixerline::GetSource), 0u);
  EXPECT_EQ(p.mixerClose(h), 0u);
}

TEST_F(Win32Mixers, DeviceBeyondTheLastIsRefused) {
  MixerCaps caps;
  EXPECT_EQ(p.mixerGetDevCapsA(p.mixerGetNumDevs() + 3, &caps, mixerline::kCapsSize),
            static_cast<std::uint32_t>(MMSYSERR_BADDEVICEID));
}

TEST_F(Win32Mixers, TheMixerClassReadsEveryMixerOfWine) {
  CMixer m(p);
  EXPECT_EQ(m.Create(0), static_cast<std::int32_t>(mixerGetNumDevs()));
  MIXERCAPSA own{};
  mixerGetDevCapsA(0, &own, sizeof own);
  EXPECT_EQ(m.MixerName(), own.szPname);
}

}  // namespace
}  // namespace tamrix::win32
