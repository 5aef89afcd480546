// The CPU test's measuring loop under Wine, through the real platform's GetTickCount, beside
// the same expression in a plain C loop compiled on its own (bench/plain/cpu_loop.c), each for
// a few seconds in the same process, at the priority the page runs the test at. The two take
// turns in short slices, so that what else the machine does falls on both alike.
//
//   bench_cpu_loop.exe [--ms N]   N milliseconds for each loop, in ten slices (default 3000)
#include <windows.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "platform/win32/Win32Platform.h"
#include "plain/cpu_loop.h"
#include "sysinfo/CpuPage.h"

int main(int argc, char** argv) {
  int lengthMs = 3000;
  for (int i = 1; i + 1 < argc; ++i)
    if (std::strcmp(argv[i], "--ms") == 0) lengthMs = std::atoi(argv[i + 1]);
  tamrix::win32::Win32Platform platform;
  platform.SetPriorityClass(platform.GetCurrentProcess(), HIGH_PRIORITY_CLASS);
  double real = 0, plain = 0;
  for (int slice = 0; slice < 10; ++slice) {
    real += tamrix::MeasurePasses(platform, lengthMs / 10).Value();
    plain += plain_cpu_loop(lengthMs / 10);
  }
  std::printf("CPU test loop under Wine, %d ms each:\n", lengthMs);
  std::printf("  program's loop   %12.0f passes/s\n", real * 1000.0 / lengthMs);
  std::printf("  plain C loop     %12.0f passes/s\n", plain * 1000.0 / lengthMs);
  std::printf("  ratio            %12.3f (program / plain)\n", real / plain);
  std::printf("  score for 13 s   %12.1f\n", real * 13000.0 / lengthMs / 100000.0);
  std::printf("  stored value     %12.6f\n", plain_cpu_last());
  return 0;
}
