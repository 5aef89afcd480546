#!/usr/bin/env bash
# Measures the CPU that tamrix.exe takes while it sits idle on its home page
# under Wine, with its two all-run-long timers ticking (the memory monitor five
# times a second, the clock once a second), and the same for Wine's own
# notepad.exe as the yardstick of an idle Windows program.
#
# usage: scripts/bench-idle.sh [--seconds N] [--settle N] [--exe PATH]
#   --seconds N  length of each measurement (default 30)
#   --settle N   wait after the main window appears, before measuring (default 5)
#   --exe PATH   a tamrix.exe to measure; give it twice to measure both builds
#                (default build/win64/tamrix.exe, built first when it is missing)
#
# Both programs run in one throw-away prefix on a private Xvfb, one after the
# other. The share is the process's user + system time (/proc/PID/stat) over
# the wall time, one core being 100 %. The wineserver of the prefix serves the
# timers and the painting of both programs; its share over the same window is
# printed beside each, and so is the total of every process of the prefix.
# Figures only: the script fails only when a program cannot be measured.
set -euo pipefail

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
cd "$root"

usage() { sed -n '2,19s/^# \{0,1\}//p' "${BASH_SOURCE[0]}" >&2; }

seconds=30
settle=5
exes=()
while (($#)); do
  case $1 in
    --seconds) seconds=${2:?}; shift ;;
    --settle) settle=${2:?}; shift ;;
    --exe) exes+=("$(cd "$(dirname "${2:?}")" && pwd)/$(basename "$2")"); shift ;;
    -h | --help) usage; exit 0 ;;
    *) printf 'bench-idle.sh: unknown argument "%s"\n' "$1" >&2; usage; exit 2 ;;
  esac
  shift
done

if ((${#exes[@]} == 0)); then
  exes=("$root/build/win64/tamrix.exe")
  [[ -f ${exes[0]} ]] || bash scripts/build.sh -t tamrix win64
fi

# shellcheck source=scripts/wine-env.sh
source scripts/wine-env.sh
app_pid=
# shellcheck disable=SC2317  # called from the traps
stop_app() {
  if [[ -n $app_pid ]]; then
    tamrix_stop_pid "$app_pid" 5
    app_pid=
  fi
}
trap 'stop_app; stop_all' EXIT
trap 'echo; stop_app; stop_all; exit 130' INT
trap 'stop_app; stop_all; exit 143' TERM

tamrix_env
start_xvfb --force
# Without a sound server the program stops at start on its no-mixer box, before its window.
start_pulse
tamrix_mktemp
prefix=$TAMRIX_TMP/prefix
echo "making a Wine prefix for the measurement (about 20 s)"
make_prefix "$prefix"
prepare_prefix32 "$prefix"
export WINEPREFIX=$prefix
clock_ticks=$(getconf CLK_TCK)

# Ticks of user + system time of a process, or nothing when it is gone.
ticks() { awk '{print $14 + $15}' "/proc/$1/stat" 2>/dev/null || true; }

# The wineserver of our prefix: its working directory is named after the
# prefix's device and inode.
wineserver_pid() {
  local tag p dev inode
  read -r dev inode < <(stat -c '%d %i' "$prefix")
  tag=$(printf 'server-%x-%x' "$dev" "$inode")
  for p in $(pgrep wineserver || true); do
    [[ $(readlink "/proc/$p/cwd" 2>/dev/null) == */"$tag" ]] && { echo "$p"; return; }
  done
}

# Every Windows process of the prefix (they carry its WINEPREFIX), and its server.
prefix_pids() {
  local p
  for p in /proc/[0-9]*; do
    p=${p#/proc/}
    if { tr '\0' '\n' <"/proc/$p/environ"; } 2>/dev/null | grep -qx "WINEPREFIX=$prefix"; then
      echo "$p"
    fi
  done
  wineserver_pid
}

sum_ticks() {
  local total=0 p t
  for p in "$@"; do
    t=$(ticks "$p")
    total=$((total + ${t:-0}))
  done
  echo "$total"
}

# A share in percent with two decimals, from ticks over the measured seconds.
share() { LC_ALL=C awk -v t="$1" -v hz="$clock_ticks" -v s="$2" 'BEGIN { printf "%.2f %%", 100 * t / hz / s }'; }

# measure NAME CAPTION_RE COMMAND...: starts the program, waits for its window,
# lets it settle, measures, ends it. Prints one line of figures.
measure() {
  local name=$1 caption_re=$2 i id server pids p0 p1 s0 s1 a0 a1 start_ms elapsed_ms secs
  shift 2
  tamrix_wine "$@" >/dev/null 2>&1 &
  app_pid=$!
  id=
  for ((i = 0; i < 300; i++)); do
    tamrix_alive "$app_pid" || { echo "$name ended before its window appeared" >&2; return 1; }
    id=$(xwininfo -root -tree 2>/dev/null | grep -E "$caption_re" | awk '{print $1; exit}' || true)
    if [[ -n $id ]] && xwininfo -id "$id" 2>/dev/null | grep -q 'Map State: IsViewable'; then
      break
    fi
    id=
    sleep 0.2
  done
  [[ -n $id ]] || { echo "the window of $name did not appear within 60 s" >&2; return 1; }
  sleep "$settle"
  server=$(wineserver_pid)
  mapfile -t pids < <(prefix_pids)
  start_ms=$(tamrix_now_ms)
  p0=$(ticks "$app_pid")
  s0=$(ticks "$server")
  a0=$(sum_ticks "${pids[@]}")
  sleep "$seconds"
  p1=$(ticks "$app_pid")
  s1=$(ticks "$server")
  a1=$(sum_ticks "${pids[@]}")
  elapsed_ms=$(($(tamrix_now_ms) - start_ms))
  [[ -n $p1 ]] || { echo "$name ended during the measurement" >&2; return 1; }
  secs=$(LC_ALL=C awk -v ms="$elapsed_ms" 'BEGIN { printf "%.3f", ms / 1000 }')
  printf '  %-12s %9s   wineserver %9s   whole prefix %9s   (%s ticks of 1/%s s in %s s)\n' \
    "$name" "$(share $((p1 - p0)) "$secs")" "$(share $((s1 - s0)) "$secs")" "$(share $((a1 - a0)) "$secs")" \
    $((p1 - p0)) "$clock_ticks" "$secs"
  stop_app
  WINEPREFIX=$prefix timeout 30 wineserver -w 2>/dev/null || true
}

echo "idle CPU share under Wine over ${seconds} s, one core = 100 % ($(wine --version 2>/dev/null))"
# The main window's caption starts with a blank: " Tamrix Utility 3.0 Pro (Win 9.x ...".
for exe in "${exes[@]}"; do
  measure "$(basename "$(dirname "$exe")")/tamrix" '"[[:space:]]*Tamrix Utility 3\.0 Pro' "$exe"
done
measure notepad.exe '"[^"]*(Bloc-notes|Notepad)' notepad.exe
