#!/usr/bin/env bash
# Times one whole Windows optimiser apply under Wine next to `wine reg import` of the same 21
# registry rows, in a throw-away prefix, and prints both and their ratio. A figure, never a
# pass or a fail.
#
#   scripts/bench-optimiser.sh [BUILD_DIR]     (default build/win64; TAMRIX_BENCH_RUNS=50)
#
# Three figures:
#   apply in process   one apply inside a running program (median of N): the click's own cost
#   apply as a process `wine bench_optimiser_apply.exe --once`: start-up included, like reg
#   reg import         `wine reg import` of the 21 rows (median of 5)
# The .reg file comes from the program's own table, so both roads write the same rows, and
# every key exists before the timing starts, so neither road creates one.
set -euo pipefail

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
cd "$root"
# shellcheck source=scripts/wine-env.sh
source scripts/wine-env.sh
trap stop_all EXIT
trap 'stop_all; exit 130' INT
trap 'stop_all; exit 143' TERM

build=${1:-build/win64}
runs=${TAMRIX_BENCH_RUNS:-50}
exe=$build/bench_optimiser_apply.exe
if [[ -f $build/build.ninja ]] && ! ninja -C "$build" bench_optimiser_apply >/dev/null; then
  tamrix_say "bench_optimiser_apply does not build in $build"
  exit 1
fi
[[ -f $exe ]] || { tamrix_say "missing $exe (configure $build with the mingw toolchain first)"; exit 1; }

tamrix_env
tamrix_mktemp
work=$TAMRIX_TMP
prefix=$work/prefix
echo "making a throw-away Wine prefix in $prefix"
make_prefix "$prefix"
export WINEPREFIX=$prefix TAMRIX_BENCH_THROWAWAY=1
# One server for every start below, so that no figure pays for starting it.
wineserver -p

reg_file=$(winepath -w "$work/rows.reg")
wine "$exe" --reg-file "$reg_file"
wine reg import "$reg_file" >/dev/null 2>&1  # makes the keys; the timed imports find them

median() { sort -n | awk '{ a[NR] = $1 } END { print a[int((NR + 1) / 2)] }'; }
# wall_ms COMMAND...: milliseconds of one run of the command, with Wine's chatter dropped.
wall_ms() {
  local start end
  start=$(tamrix_now_ms)
  "$@" >/dev/null 2>&1
  end=$(tamrix_now_ms)
  echo $((end - start))
}

echo "timing $runs applies inside one process"
inproc=$(wine "$exe" --runs "$runs" | tr -d '\r')
apply_ms=$(sed -n 's/^apply_ms_median=//p' <<<"$inproc")
registry_ms=$(sed -n 's/^registry_rows_ms_median=//p' <<<"$inproc")
profile_ms=$(sed -n 's/^profile_rows_ms_median=//p' <<<"$inproc")

echo "timing 5 whole processes of each"
process_ms=$(for _ in 1 2 3 4 5; do wall_ms wine "$exe" --once; done | median)
import_ms=$(for _ in 1 2 3 4 5; do wall_ms wine reg import "$reg_file"; done | median)

ratio() { LC_ALL=C awk -v a="$1" -v b="$2" 'BEGIN { if (b > 0) printf "%.3f", a / b; else print "n/a" }'; }
echo
echo "Windows optimiser apply under Wine ($(wine --version)), 21 registry rows + 45 system.ini keys"
printf '  apply in process (median of %d)  %10s ms   (registry rows %s ms, system.ini keys %s ms)\n' \
  "$runs" "$apply_ms" "$registry_ms" "$profile_ms"
printf '  apply as a process (median of 5) %10s ms\n' "$process_ms"
printf '  wine reg import, 21 rows (median of 5) %4s ms\n' "$import_ms"
printf '  ratio apply in process / reg import      %s\n' "$(ratio "$apply_ms" "$import_ms")"
printf '  ratio apply as a process / reg import    %s\n' "$(ratio "$process_ms" "$import_ms")"
printf '  ratio registry rows in process / reg import %s\n' "$(ratio "$registry_ms" "$import_ms")"
