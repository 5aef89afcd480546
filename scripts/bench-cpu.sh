#!/usr/bin/env bash
# The CPU test's measuring loop under Wine next to the same expression in a plain C loop
# compiled on its own: passes per second of each and their ratio, from one run in which the
# two take turns. A figure, never a pass or a fail.
#
#   scripts/bench-cpu.sh [BUILD_DIR]     (default build/win64; TAMRIX_BENCH_CPU_MS=3000 per loop)
# build/win32 runs by the 32-bit route setup chose (scripts/wine32.sh).
set -euo pipefail

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
cd "$root"
# shellcheck source=scripts/wine-env.sh
source scripts/wine-env.sh
trap stop_all EXIT
trap 'stop_all; exit 130' INT
trap 'stop_all; exit 143' TERM

build=${1:-build/win64}
exe=$build/bench_cpu_loop.exe
if [[ -f $build/build.ninja ]] && ! ninja -C "$build" bench_cpu_loop >/dev/null; then
  tamrix_say "bench_cpu_loop does not build in $build"
  exit 1
fi
[[ -f $exe ]] || { tamrix_say "missing $exe (configure $build with the mingw toolchain first)"; exit 1; }

tamrix_env
tamrix_mktemp
prefix=$TAMRIX_TMP/prefix
echo "making a throw-away Wine prefix in $prefix"
make_prefix "$prefix"
prepare_prefix32 "$prefix"
export WINEPREFIX=$prefix
tamrix_wine "$exe" --ms "${TAMRIX_BENCH_CPU_MS:-3000}" | tr -d '\r'
