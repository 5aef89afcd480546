#!/usr/bin/env bash
# The benchmarks, all of them: figures, never a pass or a fail.
#   - the native Google Benchmark program (build/bench, Release): one Timer1 tick and its parts
#   - each exe's size and its imports against Windows XP SP3's exports
#   - start-up to the first paint under Wine beside notepad.exe, and where tamrix's time goes
#   - one Windows optimiser apply under Wine next to `wine reg import` of the same rows
#   - the idle CPU share of each build under Wine next to notepad.exe
# The 32-bit program is measured where 32-bit Wine is present; otherwise the line says why not.
#   - the CPU test's loop next to a plain C loop of the same expression, natively (in the
#     Google Benchmark program) and under Wine
set -euo pipefail
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
cd "$root"
bash scripts/setup.sh
cmake -S . -B build/bench -G Ninja -DCMAKE_BUILD_TYPE=Release >/dev/null
ninja -C build/bench benchmarks
build/bench/benchmarks --benchmark_repetitions=3 --benchmark_report_aggregates_only=true
bash scripts/build.sh -t tamrix -t tamrix-etat -t bench_startup -t bench_optimiser_apply -t bench_cpu_loop win64 win32
echo
bash scripts/bench-exe.sh
exes=(build/win64/tamrix.exe)
if [[ -s build/wine32-route ]]; then
  exes+=(build/win32/tamrix.exe)
  echo
  echo "build/win32/tamrix.exe runs by the 32-bit route: $(cat build/wine32-route)"
else
  echo
  echo "build/win32/tamrix.exe is not run: $(cat build/wine32-missing 2>/dev/null || echo "32-bit Wine is not available")"
fi
echo
bash scripts/bench-startup.sh "${exes[@]}"
echo
bash scripts/bench-optimiser.sh build/win64
echo
idle_args=()
for exe in "${exes[@]}"; do idle_args+=(--exe "$exe"); done
bash scripts/bench-idle.sh "${idle_args[@]}"
bash scripts/bench-cpu.sh build/win64
if [[ -s build/wine32-route ]]; then
  echo
  echo "the same at 32 bits (x87 floating point), by the route: $(cat build/wine32-route)"
  bash scripts/bench-cpu.sh build/win32
fi
