#!/usr/bin/env bash
# Start-up of tamrix.exe under Wine beside Wine's own notepad.exe, measured the same way in the
# same run: from the process's start to its first visible top-level window, and to the moment it
# first waits for input with that window painted. Fifteen alternating runs, since Wine's start-up
# wavers by some 10 ms from one run to the next; medians and ratios (the goal is a ratio of 1.2 or
# less). Then the companion's system report, from its start to its end, beside it. Then where tamrix's time goes: the load's steps timed in a process that makes the same
# main window, five times, each step's median.
#
# usage: scripts/bench-startup.sh [--runs N] EXE...   (default: build/win64/tamrix.exe)
# Figures only, in a throw-away prefix on a private Xvfb.
set -euo pipefail

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
cd "$root"

runs=15
exes=()
while (($#)); do
  case $1 in
    --runs) runs=${2:?}; shift ;;
    *) exes+=("$1") ;;
  esac
  shift
done
((${#exes[@]})) || exes=(build/win64/tamrix.exe)
tree_of() { basename "$(dirname "$1")"; }
for exe in "${exes[@]}"; do
  ninja -C "$(dirname "$exe")" tamrix tamrix-etat bench_startup >/dev/null
done

# shellcheck source=scripts/wine-env.sh
source scripts/wine-env.sh
trap stop_all EXIT
trap 'stop_all; exit 130' INT
trap 'stop_all; exit 143' TERM
tamrix_env
start_xvfb --force
start_pulse
tamrix_mktemp
prefix=$TAMRIX_TMP/prefix
echo "making a Wine prefix for the measurement (about 20 s)"
make_prefix "$prefix"
prepare_prefix32 "$prefix"
export WINEPREFIX=$prefix
wineserver -p  # one server for every run, as on a desktop where Wine is already up

# Each build beside Wine's notepad.exe of its own width, started by a measuring process of that
# width too: a 64-bit Wine process can't start a 32-bit program where 32-bit Wine is a private root.
# Then the companion's system report, made by the same pages without their windows: from its start
# to its end, the report thrown away.
for exe in "${exes[@]}"; do
  tree=$(tree_of "$exe")
  bench=$(dirname "$exe")/bench_startup.exe
  programs=("$tree/tamrix=$(winepath -w "$root/$exe")" "notepad.exe=notepad.exe")
  report=("$tree/rapport=\"$(winepath -w "$root/$(dirname "$exe")/tamrix-etat.exe")\" rapport")
  # Each program once before measuring: the first start of a prefix loads and caches its DLLs.
  tamrix_wine "$bench" --runs 1 "${programs[@]}" >/dev/null
  tamrix_wine "$bench" --to-exit 1 "${report[@]}" >/dev/null
  echo "start-up of $tree/tamrix under Wine ($(wine --version)), $runs alternating runs"
  tamrix_wine "$bench" --runs "$runs" "${programs[@]}" | tr -d '\r'
  echo "the system report of $tree without the CPU test (tamrix-etat.exe rapport), $runs runs"
  tamrix_wine "$bench" --to-exit "$runs" "${report[@]}" | tr -d '\r'
done

for exe in "${exes[@]}"; do
  echo "where the start-up of $(tree_of "$exe")/tamrix goes (one line a step, median of 5 runs)"
  for _ in 1 2 3 4 5; do
    tamrix_wine "$(dirname "$exe")/bench_startup.exe" --steps | tr -d '\r'
  done | LC_ALL=C awk '
    { key = substr($0, 1, 57); val = $(NF - 1); if ($NF != "ms") { key = substr($0, 1, 57); val = $NF }
      if (!(key in n)) order[++k] = key; v[key, ++n[key]] = val; unit[key] = ($NF == "ms") ? " ms" : "" }
    END { for (i = 1; i <= k; i++) { key = order[i]; m = n[key];
            for (a = 1; a <= m; a++) s[a] = v[key, a];
            for (a = 1; a <= m; a++) for (b = a + 1; b <= m; b++) if (s[b] < s[a]) { t = s[a]; s[a] = s[b]; s[b] = t }
            printf "%s %8.1f%s\n", key, s[int((m + 1) / 2)], unit[key] } }'
done
