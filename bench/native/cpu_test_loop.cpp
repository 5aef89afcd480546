// The CPU test's measuring loop, as the page runs it, beside the same expression in a plain C
// loop compiled on its own (bench/plain/cpu_loop.c), each for two seconds in the same run, on a
// platform whose tick is the real millisecond clock. The two take turns in ten short slices, so
// that what else the machine does falls on both alike. The ratio of the two rates is the figure:
// near 1 the loop costs what the expression costs, nothing folded away and nothing added.
#include <benchmark/benchmark.h>

#include <time.h>

#include "fake/FakePlatform.h"
#include "plain/cpu_loop.h"
#include "sysinfo/CpuPage.h"

namespace {

constexpr int kLengthMs = 2000;

// The fake machine with a real clock: the milliseconds of the monotonic clock, as a tick.
class ClockedPlatform : public tamrix::fake::FakePlatform {
 public:
  std::uint32_t GetTickCount() override {
    timespec t;
    clock_gettime(CLOCK_MONOTONIC, &t);
    return static_cast<std::uint32_t>(t.tv_sec * 1000 + t.tv_nsec / 1000000);
  }
};

void CpuTestLoopAgainstPlainC(benchmark::State& state) {
  ClockedPlatform platform;
  for (auto _ : state) {
    double real = 0, plain = 0;
    for (int slice = 0; slice < 10; ++slice) {
      real += tamrix::MeasurePasses(platform, kLengthMs / 10).Value();
      plain += plain_cpu_loop(kLengthMs / 10);
    }
    state.counters["real_passes_per_s"] = real * 1000.0 / kLengthMs;
    state.counters["plain_passes_per_s"] = plain * 1000.0 / kLengthMs;
    state.counters["real_to_plain"] = real / plain;
    state.counters["score_13s"] = real * 13000.0 / kLengthMs / 100000.0;
  }
}
BENCHMARK(CpuTestLoopAgainstPlainC)->Iterations(1)->Unit(benchmark::kSecond)->UseRealTime();

}  // namespace
