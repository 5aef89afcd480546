// Audio mixers of winmm, read ahead on a thread of their own at start.
#include "platform/win32/Win32Platform.h"

#include <windows.h>
#include <mmsystem.h>

#include "platform/win32/Ansi.h"
#include "platform/win32/Win32Internal.h"

namespace tamrix::win32 {

// The program hands over the sizes of a 32-bit
// program's records; this build's own records may be larger (a 64-bit dwUser), so a size that
// names the record stands for this build's record, and any other size goes through as it is.

namespace {

HMIXER ToHmixer(MixerHandle h) { return reinterpret_cast<HMIXER>(static_cast<ULONG_PTR>(h)); }

UINT RecordSize(std::uint32_t asked, std::uint32_t named, UINT own) { return asked == named ? own : asked; }

DWORD WINAPI ReadMixers(LPVOID) { return ::mixerGetNumDevs(); }

}  // namespace

Win32Platform::~Win32Platform() { AwaitMixersReadAhead(); }

void Win32Platform::ReadMixersAhead() {
  if (!mixersReadAhead_) mixersReadAhead_ = CreateThread(nullptr, 0, ReadMixers, nullptr, 0, nullptr);
}

void Win32Platform::AwaitMixersReadAhead() {
  if (!mixersReadAhead_) return;
  WaitForSingleObject(mixersReadAhead_, INFINITE);
  CloseHandle(mixersReadAhead_);
  mixersReadAhead_ = nullptr;
}

std::uint32_t Win32Platform::mixerGetNumDevs() {
  AwaitMixersReadAhead();
  return ::mixerGetNumDevs();
}

std::uint32_t Win32Platform::mixerGetDevCapsA(std::uint32_t deviceId, MixerCaps* caps, std::uint32_t size) {
  AwaitMixersReadAhead();
  MIXERCAPSA c{};
  MMRESULT r = ::mixerGetDevCapsA(deviceId, &c, RecordSize(size, mixerline::kCapsSize, sizeof c));
  if (r != MMSYSERR_NOERROR) return r;
  caps->wMid = c.wMid;
  caps->wPid = c.wPid;
  caps->vDriverVersion = c.vDriverVersion;
  caps->szPname = FromAnsi(c.szPname, sizeof c.szPname);
  caps->fdwSupport = c.fdwSupport;
  caps->cDestinations = c.cDestinations;
  return r;
}

std::uint32_t Win32Platform::mixerOpen(MixerHandle* handle, std::uint32_t deviceId, std::uint64_t callback,
                                       std::uint64_t instance, std::uint32_t flags) {
  AwaitMixersReadAhead();
  HMIXER h = nullptr;
  MMRESULT r = ::mixerOpen(&h, deviceId, static_cast<DWORD_PTR>(callback), static_cast<DWORD_PTR>(instance), flags);
  *handle = r == MMSYSERR_NOERROR ? static_cast<MixerHandle>(reinterpret_cast<ULONG_PTR>(h)) : 0;
  return r;
}

std::uint32_t Win32Platform::mixerClose(MixerHandle handle) {
  AwaitMixersReadAhead();
  return ::mixerClose(ToHmixer(handle));
}

std::uint32_t Win32Platform::mixerGetLineInfoA(MixerHandle handle, MixerLine* line, std::uint32_t flags) {
  AwaitMixersReadAhead();
  MIXERLINEA l{};
  l.cbStruct = RecordSize(line->cbStruct, mixerline::kSize, sizeof l);
  l.dwDestination = line->dwDestination;
  l.dwSource = line->dwSource;
  l.dwLineID = line->dwLineID;
  l.dwComponentType = line->dwComponentType;
  l.Target.dwType = line->Target.dwType;
  MMRESULT r = ::mixerGetLineInfoA(reinterpret_cast<HMIXEROBJ>(ToHmixer(handle)), &l, flags);
  if (r != MMSYSERR_NOERROR) return r;
  line->dwDestination = l.dwDestination;
  line->dwSource = l.dwSource;
  line->dwLineID = l.dwLineID;
  line->fdwLine = l.fdwLine;
  line->dwUser = l.dwUser;
  line->dwComponentType = l.dwComponentType;
  line->cChannels = l.cChannels;
  line->cConnections = l.cConnections;
  line->cControls = l.cControls;
  line->szShortName = FromAnsi(l.szShortName, sizeof l.szShortName);
  line->szName = FromAnsi(l.szName, sizeof l.szName);
  line->Target.dwType = l.Target.dwType;
  line->Target.dwDeviceID = l.Target.dwDeviceID;
  line->Target.wMid = l.Target.wMid;
  line->Target.wPid = l.Target.wPid;
  line->Target.vDriverVersion = l.Target.vDriverVersion;
  line->Target.szPname = FromAnsi(l.Target.szPname, sizeof l.Target.szPname);
  return r;
}

}  // namespace tamrix::win32
