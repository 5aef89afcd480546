#!/usr/bin/env bash
# The end of a shutdown countdown on Wine, watched from outside. In a prefix made for it alone,
# tamrix.exe arms 00:00:03 with the first action ("&Eteindre l'ordinateur "), whose end calls
# ExitWindowsEx with flags 1; every process of the prefix must then end, tamrix.exe included.
# In a second fresh prefix the third action (which calls nothing) is armed the same way, and the
# prefix must still be running well after the count went past zero.
# Prints one line per check and ends with status 0 only when both hold.
set -uo pipefail

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)
cd "$root" || exit 1
# shellcheck source=scripts/wine-env.sh
source scripts/wine-env.sh
tamrix_env
trap stop_all EXIT
start_xvfb || exit 1
# Without a sound server the program stops at start on its no-mixer box, before its window.
[[ -n ${PULSE_SERVER:-} ]] || start_pulse

exe=build/win64/e2e_tests.exe
[[ -f $exe && -f build/win64/tamrix.exe ]] || { echo "FAIL build/win64 has no e2e_tests.exe or tamrix.exe"; exit 1; }
failed=0

# arm ACTION PREFIX: a fresh prefix, the countdown armed in it. The arming test writes into
# PREFIX.log the moment of its click on "&Lancez", in milliseconds since the epoch.
arm() {
  local action=$1 prefix=$2
  [[ -d $prefix ]] && stop_prefix "$prefix"
  rm -rf "$prefix"
  make_prefix "$prefix" || { echo "FAIL wineboot for $prefix"; return 1; }
  WINEPREFIX=$prefix TAMRIX_SHUTDOWN_ACTION=$action \
    TAMRIX_EXE=$(WINEPREFIX=$prefix winepath -w "$root/build/win64/tamrix.exe" 2>/dev/null) \
    wine "$exe" --gtest_filter='ShutdownCountdownArmed.*' >"$prefix.log" 2>&1
  if ! grep -q '\[  PASSED  \] 1 test' "$prefix.log"; then
    echo "FAIL arming $action (see $prefix.log)"
    return 1
  fi
}

# The first action: Wine is asked to shut down, and every process of the prefix ends.
prefix=$root/build/shutdown-prefix
if arm TamrixOpButton1 "$prefix"; then
  # Measured from the click, not from the end of the arming process: how long that process takes
  # to go away is no part of the count.
  clicked=$(tr -d '\r' <"$prefix.log" | sed -n 's/^clicked-at-ms \([0-9]*\)$/\1/p' | head -n 1)
  if [[ -z $clicked ]]; then
    echo "FAIL first action: the arming test gave no moment of its click (see $prefix.log)"
    failed=1
  elif WINEPREFIX=$prefix timeout 60 wineserver -w; then
    took=$(($(tamrix_now_ms) - clicked))
    # Three ticks of one second each lie between the click and the end of the count.
    if ((took < 2900)); then
      echo "FAIL first action: the prefix ended $(tamrix_fmt_ms $took) after the click, before the count reached zero"
      failed=1
    else
      echo "PASS first action: every process of the prefix ended $(tamrix_fmt_ms $took) after the click that armed 00:00:03"
    fi
  else
    echo "FAIL first action: the prefix still ran 60 s after arming 00:00:03"
    failed=1
  fi
else
  failed=1
fi
stop_prefix "$prefix"

# The third action: nothing is called, and the prefix runs on.
prefix=$root/build/shutdown-prefix-none
if arm TamrixOpButton3 "$prefix"; then
  if WINEPREFIX=$prefix timeout 12 wineserver -w; then
    echo "FAIL third action: the prefix ended, though nothing asks it to"
    failed=1
  else
    echo "PASS third action: the prefix still runs 12 s after arming 00:00:03"
  fi
else
  failed=1
fi
stop_prefix "$prefix"
rm -rf "$root/build/shutdown-prefix" "$root/build/shutdown-prefix-none"
((failed)) || rm -f "$root"/build/shutdown-prefix*.log
exit $failed
