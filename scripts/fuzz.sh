#!/usr/bin/env bash
# Builds the libFuzzer targets of tests/fuzz with clang (AddressSanitizer, UBSan and the standard
# library's bounds checks on) and runs each one in turn, from its corpus in build/fuzz/ (seeded
# from tests/fuzz/seeds/ when there is one):
#   FUZZ_SECONDS=N  run each for N seconds (default 60)
#   FUZZ_RUNS=N     or for N executions instead
#   FUZZ_TARGETS="a b"  only these targets
# One line per target: "PASS target: N runs in T s" or "FAIL target: ...". A crash leaves its input
# in build/fuzz/ and fails the run.
set -uo pipefail
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
cd "$root" || exit 1
seconds=${FUZZ_SECONDS:-60}
runs=${FUZZ_RUNS:-}
if ! command -v clang++ >/dev/null || ! ls /usr/lib/llvm-*/lib/clang/*/lib/linux/libclang_rt.fuzzer-x86_64.a >/dev/null 2>&1; then
  if [[ $(id -u) == 0 ]]; then
    DEBIAN_FRONTEND=noninteractive apt-get install -y --no-install-recommends clang libclang-rt-14-dev >&2 || exit 1
  else
    echo "FAIL fuzz.sh: needs clang and its fuzzer runtime: apt-get install clang libclang-rt-14-dev"
    exit 1
  fi
fi
targets=${FUZZ_TARGETS:-$(for f in tests/fuzz/*.cpp; do basename "$f" .cpp; done)}
args=(-S . -B build/fuzz -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo -DCMAKE_CXX_COMPILER=clang++ -DCMAKE_C_COMPILER=clang
  -DTAMRIX_FUZZ=ON)
command -v ccache >/dev/null && args+=(-DCMAKE_CXX_COMPILER_LAUNCHER=ccache)
export CCACHE_BASEDIR=$root
mkdir -p build
# shellcheck disable=SC2086
if ! cmake "${args[@]}" >build/fuzz-cmake.log 2>&1 ||
  ! ninja -C build/fuzz $targets >build/fuzz-build.log 2>&1; then
  cat build/fuzz-cmake.log build/fuzz-build.log 2>/dev/null | tail -40
  echo "FAIL fuzz.sh: the fuzz targets do not build (log above)"
  exit 1
fi
failed=0
for target in $targets; do
  corpus=build/fuzz/corpus-$target
  mkdir -p "$corpus"
  [[ -d tests/fuzz/seeds/$target ]] && cp -n tests/fuzz/seeds/"$target"/* "$corpus"/ 2>/dev/null
  limit=(-max_total_time="$seconds")
  [[ -n $runs ]] && limit=(-runs="$runs")
  log=build/fuzz/$target.log
  start=${EPOCHREALTIME/[.,]/}
  (cd build/fuzz && "./$target" "${limit[@]}" -print_final_stats=1 -artifact_prefix="./crash-$target-" "corpus-$target") >"$log" 2>&1
  rc=$?
  end=${EPOCHREALTIME/[.,]/}
  done_runs=$(sed -n 's/^stat::number_of_executed_units: *//p' "$log" | tail -1)
  took=$(awk -v us=$((end - start)) 'BEGIN { printf "%.1f", us / 1e6 }')
  if ((rc == 0)); then
    echo "PASS $target: ${done_runs:-?} runs in $took s"
  else
    tail -30 "$log"
    echo "FAIL $target: status $rc after ${done_runs:-?} runs in $took s (build/fuzz/$target.log)"
    failed=1
  fi
done
exit $failed
