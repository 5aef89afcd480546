#!/usr/bin/env bash
# Builds tamrix.exe and starts it under Wine, in French, in the private prefix
# build/wineprefix (made on first use; ~/.wine is never used). Where 32-bit Wine
# is present it is the i686 program, the one whose figures are the program's
# own; otherwise the x86_64 one, which shows the same figures.
# On a working X display the program simply opens there. Without one, it runs
# on a private Xvfb: a screenshot of its main window is saved and its path
# printed, and the program keeps running until it ends or Ctrl-C.
set -euo pipefail

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
cd "$root"

bash scripts/setup.sh
tree=win64
# Under emulation the i686 program is some ten times slower: the x86_64 one shows the same figures.
case $(cat build/wine32-route 2>/dev/null) in native | "private "*) tree=win32 ;; esac
bash scripts/build.sh -t tamrix "$tree"
# The i686 program starts by the 32-bit route (plain wine where Debian's wine32 is installed);
# wine32.sh execs Wine, so the pid we keep is the program's.
runner=(wine)
[[ $tree == win32 ]] && runner=(bash "$root/scripts/wine32.sh")

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
# shellcheck disable=SC2317  # called from the traps
drop_lock() { [[ -n ${lock:-} && -f $lock && $(cut -d' ' -f1 "$lock") == "$$" ]] && rm -f "$lock"; return 0; }
trap 'stop_app; stop_all; drop_lock' EXIT
trap 'echo; stop_app; stop_all; drop_lock; exit 130' INT
trap 'stop_app; stop_all; drop_lock; exit 143' TERM

tamrix_env
prefix=$root/build/wineprefix
# Who is running: "pid display" of the `make run` that owns the prefix's servers.
lock=$root/build/wineprefix.run

# A second `make run` while the first one runs starts the program once more, as a user would: it
# leaves at once as a second instance, showing nothing. The first run's servers are not ours to
# start or stop.
if [[ -f $lock ]] && read -r first_pid first_display <"$lock" && tamrix_alive "$first_pid"; then
  export WINEPREFIX=$prefix DISPLAY=$first_display
  echo "Tamrix Utility is already running (make run, pid $first_pid, display $first_display)"
  rc=0
  "${runner[@]}" "$root/build/$tree/tamrix.exe" || rc=$?
  echo "the second start ended (status $rc) without a window of its own"
  exit "$rc"
fi
exe=$root/build/$tree/tamrix.exe
shot=build/screenshots/run-main-window.png
# The main window's caption starts with a blank: " Tamrix Utility 3.0 Pro (Win 9.x ...".
caption_re='"[[:space:]]*Tamrix Utility 3\.0 Pro'

# A prefix is kept only once wineboot has finished in it; a half-made one
# (an interrupted first run) is made again, and so is one made before 32-bit
# Wine came, which lacks the 32-bit half of Windows.
wines=wine64
[[ $tree == win32 ]] && wines=wine32
made_with=
[[ -f $prefix/.tamrix-ready ]] && made_with=$(cat "$prefix/.tamrix-ready") && made_with=${made_with:-wine64}
if [[ $made_with == "$wines" ]]; then
  use_prefix "$prefix"
else
  echo "making the Wine prefix build/wineprefix (once, about 20 s)"
  rm -rf "$prefix"
  make_prefix "$prefix"
  echo "$wines" >"$prefix/.tamrix-ready"
fi
export WINEPREFIX=$prefix
# Without Debian's wine32 the prefix's 32-bit half comes from the private root (once per prefix).
if [[ $tree == win32 ]] && ! prepare_prefix32 "$prefix"; then
  echo "the 32-bit half of build/wineprefix could not be installed" >&2
  exit 1
fi

start_pulse

if display_usable; then
  echo "$$ $DISPLAY" >"$lock"
  echo "starting build/$tree/tamrix.exe on $DISPLAY"
  # In the background and waited for, so that Ctrl-C reaches our trap at
  # once: a Windows GUI program does not end on SIGINT by itself.
  "${runner[@]}" "$exe" &
  app_pid=$!
  rc=0
  wait "$app_pid" || rc=$?
  app_pid=
  exit "$rc"
fi

start_xvfb --force
echo "$$ $DISPLAY" >"$lock"
echo "no X display: build/$tree/tamrix.exe runs on a private Xvfb ($DISPLAY)"
"${runner[@]}" "$exe" &
app_pid=$!

# Wait for the main window to be mapped: the X window may exist before the
# program shows it.
window=
for ((i = 0; i < 300; i++)); do
  if ! tamrix_alive "$app_pid"; then
    rc=0
    wait "$app_pid" || rc=$?
    app_pid=
    echo "tamrix.exe ended (status $rc) before its main window appeared" >&2
    exit 1
  fi
  id=$(xwininfo -root -tree 2>/dev/null | grep -E "$caption_re" | awk '{print $1; exit}' || true)
  if [[ -n $id ]] && xwininfo -id "$id" 2>/dev/null | grep -q 'Map State: IsViewable'; then
    window=$id
    break
  fi
  sleep 0.2
done
if [[ -z $window ]]; then
  echo "the main window of tamrix.exe did not appear within 60 s" >&2
  exit 1
fi
# Give it a moment to finish painting before the picture is taken.
sleep 2
mkdir -p "$(dirname "$shot")"
import -window root "$shot"
echo "screenshot of the main window: $root/$shot"
echo "tamrix.exe is running (pid $app_pid); Ctrl-C ends it."
rc=0
wait "$app_pid" || rc=$?
app_pid=
exit "$rc"
