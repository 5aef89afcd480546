// The 32-bit programs (tamrix.exe and its companion) start on Windows XP, whose KERNEL32 has no GetTickCount64. The C++ runtime
// links the POSIX thread library for its locks, and that library times its waits with
// GetTickCount64: left alone, the loader would refuse the program on XP before WinMain. So the
// program answers that import itself: Windows' own function where the system has it, and on XP
// the 32-bit tick count carried on past its wrap every 49.7 days.
#include <windows.h>

namespace {

using TickCount64 = ULONGLONG(WINAPI*)();

ULONGLONG WINAPI CountedOnFromTickCount() {
  static DWORD last = 0;
  static ULONGLONG wraps = 0;
  DWORD now = GetTickCount();
  if (now < last) wraps += 1ull << 32;
  last = now;
  return wraps + now;
}

ULONGLONG WINAPI FirstCall();

}  // namespace

// The import slot the thread library calls through. Given the import's own name, the linker
// takes it in place of KERNEL32's, so the import table does not name GetTickCount64 at all. It
// names the system's function at the first call, once and for all.
extern "C" TickCount64 slot __asm__("__imp__GetTickCount64@0") = FirstCall;

namespace {

ULONGLONG WINAPI FirstCall() {
  auto system = reinterpret_cast<TickCount64>(
      reinterpret_cast<void*>(GetProcAddress(GetModuleHandleA("kernel32.dll"), "GetTickCount64")));
  slot = system ? system : CountedOnFromTickCount;
  return slot();
}

}  // namespace
