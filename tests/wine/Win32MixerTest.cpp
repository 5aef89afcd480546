// The mixer operations against Wine's own winmm, with the test's PulseAudio null sink: the
// records come across whole, as winmm fills them, and refusals come back as winmm's codes.
#include <windows.h>
#include <mmsystem.h>

#include <gtest/gtest.h>

#include <tlhelp32.h>

#include <cstring>
#include <set>
#include <thread>

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

// The threads of this process, as the system lists them.
std::set<DWORD> OwnThreads() {
  std::set<DWORD> ids;
  HANDLE snap = CreateToolhelp32Snapshot(TH32CS_SNAPTHREAD, 0);
  THREADENTRY32 entry{};
  entry.dwSize = sizeof entry;
  for (BOOL ok = Thread32First(snap, &entry); ok; ok = Thread32Next(snap, &entry))
    if (entry.th32OwnerProcessID == GetCurrentProcessId()) ids.insert(entry.th32ThreadID);
  CloseHandle(snap);
  return ids;
}

// Starts a read ahead and holds its reading thread, suspended, before it can end. A new thread
// runs its modules' thread attach under the loader lock before its own work, so while this
// thread holds that lock the reader is sure to be found still standing. Gives that thread, or
// nullptr when none appeared.
HANDLE ReadAheadHeld(Win32Platform& p) {
  using Lock = LONG(NTAPI*)(ULONG, ULONG*, ULONG_PTR*);
  using Unlock = LONG(NTAPI*)(ULONG, ULONG_PTR);
  HMODULE ntdll = GetModuleHandleA("ntdll.dll");
  auto lock = reinterpret_cast<Lock>(reinterpret_cast<void*>(GetProcAddress(ntdll, "LdrLockLoaderLock")));
  auto unlock = reinterpret_cast<Unlock>(reinterpret_cast<void*>(GetProcAddress(ntdll, "LdrUnlockLoaderLock")));
  if (!lock || !unlock) return nullptr;
  const std::set<DWORD> before = OwnThreads();
  ULONG_PTR cookie = 0;
  lock(0, nullptr, &cookie);
  p.ReadMixersAhead();
  HANDLE held = nullptr;
  for (DWORD id : OwnThreads()) {
    if (before.count(id) || held) continue;
    held = OpenThread(THREAD_SUSPEND_RESUME | THREAD_QUERY_INFORMATION | SYNCHRONIZE, FALSE, id);
    if (held) SuspendThread(held);
  }
  unlock(0, cookie);
  DWORD code = 0;
  if (held && !(GetExitCodeThread(held, &code) && code == STILL_ACTIVE)) {
    CloseHandle(held);
    return nullptr;
  }
  return held;
}

// Seen from outside: while the reading thread is held, a mixer call doesn't go ahead; it returns
// only once that thread has ended, so the two never run at the same time.
TEST(Win32MixersReadAhead, AMixerCallGoesAheadOnlyOnceTheReadingThreadHasEnded) {
  if (mixerGetNumDevs() == 0) GTEST_SKIP() << "no mixer: the test script's PulseAudio isn't running";
  for (int attempt = 0; attempt < 50; ++attempt) {
    // The thread that lets the reader go is there before the reader, so that nothing the held
    // reader may hold at its start can stop it.
    HANDLE go = CreateEventA(nullptr, TRUE, FALSE, nullptr);
    HANDLE held = nullptr;
    std::thread release([&] {
      WaitForSingleObject(go, INFINITE);
      if (!held) return;
      Sleep(400);
      ResumeThread(held);
    });
    std::uint32_t count = 0;
    bool endedFirst = false;
    DWORD took = 0;
    {
      Win32Platform p;
      held = ReadAheadHeld(p);
      SetEvent(go);
      if (held) {
        const DWORD start = GetTickCount();
        count = p.mixerGetNumDevs();
        took = GetTickCount() - start;
        endedFirst = WaitForSingleObject(held, 0) == WAIT_OBJECT_0;
      }
    }
    release.join();
    CloseHandle(go);
    if (!held) continue;  // the reader ended before it could be held: once more
    CloseHandle(held);
    EXPECT_TRUE(endedFirst) << "the mixer call returned while the reading thread still stood";
    EXPECT_GE(took, 300u) << "the mixer call didn't wait for the held reader";
    EXPECT_EQ(count, mixerGetNumDevs());
    return;
  }
  FAIL() << "the reading thread always ended before it could be held";
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
