// The cost of the home page's memory monitor: one Timer1 tick runs five times a second for the
// whole run, on every page. Measured with the fake machine (whose recorder writes down every
// platform call) and with a quiet one that only answers, so the page's own share shows.
#include <benchmark/benchmark.h>

#include "fake/FakePlatform.h"
#include "platform/Module1.h"
#include "platform/Runtime.h"
#include "forms/Form1.h"

namespace {

using tamrix::Form1;
using tamrix::MemoryStatus;
using tamrix::fake::FakePlatform;

constexpr std::uint32_t MB = 1024 * 1024;

// The fake machine without its recorder: the two memory calls cost nothing but a copy.
class QuietPlatform : public FakePlatform {
 public:
  MemoryStatus GlobalMemoryStatus(std::uint32_t length) override {
    MemoryStatus m = memory;
    m.dwLength = length;
    return m;
  }
};

template <class P>
void Timer1Tick(benchmark::State& state) {
  P p;
  p.memory = {32, 41, 511 * MB + 629146, 128 * MB + 41943, 1536 * MB, 1100 * MB, 2047 * MB, 1990 * MB};
  Form1 form(p);
  form.Load();
  for (auto _ : state) {
    form.homePage.Timer1Tick();
    p.calls.clear();  // keeps the recorder from growing without end
  }
  benchmark::DoNotOptimize(form.homePage.lcd2.Caption().data());
}
BENCHMARK_TEMPLATE(Timer1Tick, FakePlatform)->Name("Timer1Tick/fake");
BENCHMARK_TEMPLATE(Timer1Tick, QuietPlatform)->Name("Timer1Tick/quiet");

void Timer2Tick(benchmark::State& state) {
  QuietPlatform p;
  Form1 form(p);
  form.Load();
  for (auto _ : state) form.homePage.Timer2Tick();
  benchmark::DoNotOptimize(form.homePage.Label19.Caption().data());
}
BENCHMARK(Timer2Tick)->Name("Timer2Tick/quiet");

void ReadMemoryStatus(benchmark::State& state) {
  QuietPlatform p;
  p.memory = {32, 41, 511 * MB, 128 * MB, 1536 * MB, 1100 * MB, 2047 * MB, 1990 * MB};
  std::int32_t a, b, c, d, e, f, g;
  for (auto _ : state) {
    tamrix::Module1::ReadMemoryStatus(p, a, b, c, d, e, f, g);
    benchmark::DoNotOptimize(g);
  }
}
BENCHMARK(ReadMemoryStatus)->Name("Module1::ReadMemoryStatus/quiet");

void FormatOneDecimal(benchmark::State& state) {
  double x = 128.04;
  for (auto _ : state) benchmark::DoNotOptimize(tamrix::rt::FormatNumber(x, "#0.0", ','));
}
BENCHMARK(FormatOneDecimal)->Name("rt::FormatNumber(#0.0)");

}  // namespace
