#!/usr/bin/env bash
# The benchmarks, all of them: figures, never a pass or a fail.
#   - the native Google Benchmark program (build/bench, Release): one Timer1 tick and its parts
#   - one Windows optimiser apply under Wine next to `wine reg import` of the same rows
#   - the idle CPU share of tamrix.exe under Wine next to notepad.exe
#   - the CPU test's loop next to a plain C loop of the same expression, natively (in the
#     Google Benchmark program) and under Wine
set -euo pipefail
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
cd "$root"
bash scripts/setup.sh
cmake -S . -B build/bench -G Ninja -DCMAKE_BUILD_TYPE=Release >/dev/null
ninja -C build/bench benchmarks
build/bench/benchmarks --benchmark_repetitions=3 --benchmark_report_aggregates_only=true
bash scripts/build.sh win64
bash scripts/bench-optimiser.sh build/win64
bash scripts/bench-idle.sh --exe build/win64/tamrix.exe
bash scripts/bench-cpu.sh build/win64
