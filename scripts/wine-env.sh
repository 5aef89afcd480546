# shellcheck shell=bash
# Shared by run.sh and test.sh: source it, then
#   trap stop_all EXIT; trap 'stop_all; exit 130' INT; trap 'stop_all; exit 143' TERM
# Everything started here is remembered and stop_all ends exactly that, by pid
# (or, for a wineserver, by its own prefix), never by name.

TAMRIX_XVFB_PID=
TAMRIX_PULSE_PID=
TAMRIX_PREFIXES=()
TAMRIX_TMPDIRS=()

tamrix_say() { printf '%s\n' "$*" >&2; }

# Milliseconds since the epoch. Bash writes EPOCHREALTIME with the locale's
# decimal sign, a comma once tamrix_env has set French.
tamrix_now_ms() { local t=${EPOCHREALTIME/[.,]/}; echo $((t / 1000)); }
tamrix_fmt_ms() {
  local ms=$1
  if ((ms >= 60000)); then
    printf '%dm %02d.%01ds' $((ms / 60000)) $((ms % 60000 / 1000)) $((ms % 1000 / 100))
  else
    printf '%d.%01ds' $((ms / 1000)) $((ms % 1000 / 100))
  fi
}

tamrix_env() {
  export WINEDEBUG=-all
  # No network here: an empty override keeps wineboot from offering to
  # download Mono and Gecko, so it never stops on a dialog.
  export WINEDLLOVERRIDES="mscoree=;mshtml="
  # The program speaks French and formats numbers and dates the French way.
  export LANG=fr_FR.UTF-8 LC_ALL=fr_FR.UTF-8
  export WINEARCH=win64
}

# Succeeds while pid runs; a zombie has finished and counts as gone.
tamrix_alive() {
  local state
  kill -0 "$1" 2>/dev/null || return 1
  state=$(awk '{print $3}' "/proc/$1/stat" 2>/dev/null) || return 1
  [[ $state != Z ]]
}

# Asks pid to end, waits up to $2 seconds (default 10), then forces it.
tamrix_stop_pid() {
  local pid=$1 limit=${2:-10} i
  tamrix_alive "$pid" || { wait "$pid" 2>/dev/null || true; return 0; }
  kill -TERM "$pid" 2>/dev/null || true
  for ((i = 0; i < limit * 10; i++)); do
    tamrix_alive "$pid" || break
    sleep 0.1
  done
  if tamrix_alive "$pid"; then
    tamrix_say "pid $pid did not end on TERM, killing it"
    kill -KILL "$pid" 2>/dev/null || true
  fi
  # Reaps it when it is our own child; harmless otherwise.
  wait "$pid" 2>/dev/null || true
}

# Makes a temp dir, remembered for stop_all, and leaves its path in TAMRIX_TMP.
# (Not printed: a $(...) caller would run in a subshell and the list would forget it.)
tamrix_mktemp() {
  TAMRIX_TMP=$(mktemp -d "${TMPDIR:-/tmp}/tamrix.XXXXXX")
  TAMRIX_TMPDIRS+=("$TAMRIX_TMP")
}

display_usable() {
  [[ -n ${DISPLAY:-} ]] && timeout 5 xdpyinfo >/dev/null 2>&1
}

# start_xvfb [--force]: without --force, a working DISPLAY is kept as it is.
start_xvfb() {
  if [[ ${1:-} != --force ]] && display_usable; then
    return 0
  fi
  local n pid i tries=0
  for ((n = 99; n < 200 && tries < 5; n++)); do
    [[ -e /tmp/.X$n-lock || -e /tmp/.X11-unix/X$n ]] && continue
    tries=$((tries + 1))
    Xvfb ":$n" -screen 0 1024x768x24 -nolisten tcp >/dev/null 2>&1 &
    pid=$!
    for ((i = 0; i < 200; i++)); do
      if ! tamrix_alive "$pid"; then
        # Another server took this number between our look and its start.
        wait "$pid" 2>/dev/null || true
        pid=
        break
      fi
      if xdpyinfo -display ":$n" >/dev/null 2>&1; then
        TAMRIX_XVFB_PID=$pid
        export DISPLAY=":$n"
        return 0
      fi
      sleep 0.1
    done
    if [[ -n $pid ]]; then
      tamrix_say "Xvfb :$n did not answer within 20 s"
      tamrix_stop_pid "$pid" 5
      return 1
    fi
  done
  tamrix_say "could not start Xvfb on any free display"
  return 1
}

# Starts a private PulseAudio with a null sink and a null source, so that Wine
# sees mixers. Nothing of it lands in the user's own PulseAudio directories.
# When it cannot start we go on without: the program has a road for no mixer.
start_pulse() {
  local dir log
  if ! command -v pulseaudio >/dev/null; then
    tamrix_say "warning: pulseaudio is not installed; running without audio mixers"
    return 0
  fi
  tamrix_mktemp
  dir=$TAMRIX_TMP
  log="$dir/pulseaudio.log"
  # As root, PulseAudio only warns ("not intended to be run as root") and
  # runs in user mode, as long as its home, config and runtime directories
  # are ours: give it the private directory for all three.
  if ! env HOME="$dir" XDG_RUNTIME_DIR="$dir" XDG_CONFIG_HOME="$dir/config" \
      pulseaudio -n --daemonize=yes --exit-idle-time=-1 --disallow-exit \
        --use-pid-file=yes --log-target="file:$log" \
        -L module-native-protocol-unix \
        -L "module-null-sink sink_name=nul" \
        -L "module-null-source source_name=mic" >>"$log" 2>&1; then
    tamrix_say "warning: PulseAudio did not start (see below); running without audio mixers"
    sed 's/^/  pulseaudio: /' "$log" >&2 || true
    return 0
  fi
  local i
  for ((i = 0; i < 50; i++)); do
    [[ -s $dir/pulse/pid && -S $dir/pulse/native ]] && break
    sleep 0.1
  done
  TAMRIX_PULSE_PID=$(tr -dc 0-9 <"$dir/pulse/pid" 2>/dev/null || true)
  if [[ -z $TAMRIX_PULSE_PID ]] || ! tamrix_alive "$TAMRIX_PULSE_PID"; then
    tamrix_say "warning: PulseAudio left no running daemon; running without audio mixers"
    TAMRIX_PULSE_PID=
    return 0
  fi
  export XDG_RUNTIME_DIR="$dir"
  export PULSE_SERVER="unix:$dir/pulse/native"
  # Point the client at the daemon's cookie; otherwise libpulse makes one in
  # the user's ~/.config/pulse.
  export PULSE_COOKIE="$dir/config/pulse/cookie"
}

# Remembers a prefix so that stop_all ends its wineserver.
use_prefix() {
  local p
  for p in "${TAMRIX_PREFIXES[@]}"; do [[ $p == "$1" ]] && return 0; done
  TAMRIX_PREFIXES+=("$1")
}

# make_prefix DIR: a fresh 64-bit Wine prefix. wineboot asks nothing with tamrix_env's
# overrides and needs no display. Without Debian's 32-bit Wine, wineboot says it cannot open
# syswow64\rundll32.exe; that is expected and its output is only shown when it fails
# (prepare_prefix32 then fills syswow64 from the private root).
make_prefix() {
  local dir=$1 log
  mkdir -p "$(dirname "$dir")"
  dir=$(cd "$(dirname "$dir")" && pwd)/$(basename "$dir")
  use_prefix "$dir"
  log=$(dirname "$dir")/.$(basename "$dir").wineboot.log
  if ! WINEPREFIX="$dir" wineboot -i >"$log" 2>&1; then
    tamrix_say "wineboot failed for $dir:"
    cat "$log" >&2
    return 1
  fi
  if ! WINEPREFIX="$dir" timeout 120 wineserver -w; then
    tamrix_say "the new prefix $dir did not settle within 120 s"
    stop_prefix "$dir"
    return 1
  fi
  rm -f "$log"
}

# ---- 32-bit programs ---------------------------------------------------------------------
# Every script runs a 32-bit Windows program the same way, whichever route setup chose:
#   bash scripts/wine32.sh PROGRAM.exe [ARGS...]
# in a 64-bit prefix (WINEARCH=win64, as tamrix_env sets) made by make_prefix then
# prepare_prefix32. Not a 32-bit prefix: there every system process (services.exe,
# winedevice.exe, explorer.exe) would be emulated too, and under qemu 7.2 some of them die of
# SIGSEGV and a console program takes half a minute; here only the 32-bit program is emulated and
# the host's 64-bit Wine serves it, as WoW64 does on 64-bit Windows.

# The route in one line: "emulated ROOT [QEMU]", "private ROOT", "native", or why there is none.
wine32_route_line() {
  local here
  here=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
  if [[ -s $here/build/wine32-route ]]; then
    cat "$here/build/wine32-route"
  else
    echo "none: $(cat "$here/build/wine32-missing" 2>/dev/null || echo "scripts/setup.sh has not run")"
  fi
}

# tamrix_wine EXE [ARGS...]: runs a program of build/win32 by the 32-bit route, any other with wine.
tamrix_wine() {
  if [[ $(basename "$(dirname "$1")") == win32 ]]; then
    bash "$(dirname "${BASH_SOURCE[0]}")/wine32.sh" "$@"
  else
    wine "$@"
  fi
}

# prepare_prefix32 PREFIX: what the prefix needs for the route: with Debian's wine32 wineboot has
# done it all; on the private and emulated routes syswow64 gets the private root's i386 DLLs, the
# 32-bit install section runs, and the 32-bit COM servers are registered.
prepare_prefix32() {
  local route
  route=$(wine32_route_line)
  [[ $route == "emulated "* || $route == "private "* ]] || return 0
  # Done before, in a kept prefix; one prepared before the COM servers were registered is done again.
  [[ -f $1/.tamrix-wow64 && $(cat "$1/.tamrix-wow64") == "$route; com servers" ]] && return 0
  # shellcheck source=scripts/wine32-root.sh
  source "$(dirname "${BASH_SOURCE[0]}")/wine32-root.sh"
  local root servers
  root=$(wine32_route_root "$route")
  if ! wine32_fill_syswow64 "$root" "$1"; then
    tamrix_say "the 32-bit DLLs could not be put in $1's syswow64"
    return 1
  fi
  # The 64-bit wineboot found syswow64 empty and registered nothing in the 32-bit view: without
  # the 32-bit COM classes (the audio devices' enumerator among them) a 32-bit program sees no
  # mixer. The same install section wineboot runs for it, by a 32-bit rundll32.
  if ! WINEPREFIX=$1 bash "$(dirname "${BASH_SOURCE[0]}")/wine32.sh" rundll32.exe setupapi,InstallHinfSection \
      Wow64Install 128 '\\?\unix/usr/share/wine/wine.inf' >/dev/null 2>&1 ||
    ! WINEPREFIX=$1 timeout 120 wineserver -w; then
    tamrix_say "the 32-bit half of $1 could not be installed"
    return 1
  fi
  # The 32-bit COM servers, registered in the 32-bit view as a WoW64 install has them; one
  # regsvr32 for them all (some 160 DLLs, 6 s here).
  if ! servers=$(wine32_com_servers "$root") || [[ $'\n'$servers$'\n' != *$'\n'ole32.dll$'\n'* ]]; then
    tamrix_say "the 32-bit COM servers of $root could not be listed (i686-w64-mingw32-objdump reads their exports)"
    return 1
  fi
  # shellcheck disable=SC2086  # one word per DLL
  if ! WINEPREFIX=$1 bash "$(dirname "${BASH_SOURCE[0]}")/wine32.sh" regsvr32 /s $servers >/dev/null 2>&1 ||
    ! WINEPREFIX=$1 timeout 120 wineserver -w; then
    tamrix_say "the 32-bit COM servers could not be registered in $1"
    return 1
  fi
  echo "$route; com servers" >"$1/.tamrix-wow64"
}

# make_prefix_xp DIR: a 32-bit prefix (WINEARCH=win32) set to Windows XP, made by the 32-bit
# route: the system the program's title names, with one view of the registry and no WoW64 (some
# 7 s natively). Only for the native and private routes: emulated, every system process of a
# 32-bit prefix would be emulated too. The host's wineserver of the same version waits for it and
# ends it like any other.
make_prefix_xp() {
  local dir=$1 log wine32
  wine32=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)/wine32.sh
  mkdir -p "$(dirname "$dir")"
  dir=$(cd "$(dirname "$dir")" && pwd)/$(basename "$dir")
  use_prefix "$dir"
  log=$(dirname "$dir")/.$(basename "$dir").wineboot.log
  # The install copies the root's programs into system32: a root robbed of services.exe by an
  # older preparation (see wine32_fill_syswow64) would give a prefix without services.
  local route root
  route=$(wine32_route_line)
  if [[ $route == "private "* || $route == "emulated "* ]]; then
    # shellcheck source=scripts/wine32-root.sh
    source "$(dirname "$wine32")/wine32-root.sh"
    root=$(wine32_route_root "$route")
    if ! wine32_root_whole "$root" && ! wine32_root_mend "$root" >&2; then
      tamrix_say "the private root $root lacks services.exe and could not be mended"
      return 1
    fi
  fi
  if ! WINEPREFIX="$dir" WINEARCH=win32 bash "$wine32" wineboot -i >"$log" 2>&1 ||
    ! WINEPREFIX="$dir" timeout 120 wineserver -w; then
    tamrix_say "the 32-bit wineboot failed for $dir:"
    cat "$log" >&2
    return 1
  fi
  if ! WINEPREFIX="$dir" WINEARCH=win32 bash "$wine32" winecfg -v winxp >>"$log" 2>&1 ||
    ! WINEPREFIX="$dir" timeout 120 wineserver -w; then
    tamrix_say "winecfg could not set $dir to Windows XP:"
    cat "$log" >&2
    return 1
  fi
  rm -f "$log"
}

# Ends the wineserver of one prefix and every Windows process in it, and
# waits until it has gone.
stop_prefix() {
  WINEPREFIX="$1" wineserver -k >/dev/null 2>&1 || true
  WINEPREFIX="$1" timeout 30 wineserver -w >/dev/null 2>&1 || true
}

# Debian's wineserver keeps its socket in $TMPDIR/wine-XXXXXX/server-<dev>-<inode>
# of the prefix and leaves the directory behind when it ends; a throw-away
# prefix per test run would pile them up in /tmp.
forget_server_dir() {
  local id d
  id=$(printf 'server-%x-%x' "$(stat -c %d "$1")" "$(stat -c %i "$1")" 2>/dev/null) || return 0
  for d in "${TMPDIR:-/tmp}"/wine-*/"$id"; do
    [[ -d $d && ! -S $d/socket ]] || continue
    rm -rf -- "$d"
    rmdir -- "$(dirname "$d")" 2>/dev/null || true
  done
}

stop_all() {
  local p d
  for p in "${TAMRIX_PREFIXES[@]}"; do
    [[ -d $p ]] || continue
    stop_prefix "$p"
    forget_server_dir "$p"
  done
  TAMRIX_PREFIXES=()
  if [[ -n $TAMRIX_XVFB_PID ]]; then
    tamrix_stop_pid "$TAMRIX_XVFB_PID" 10
    TAMRIX_XVFB_PID=
  fi
  if [[ -n $TAMRIX_PULSE_PID ]]; then
    tamrix_stop_pid "$TAMRIX_PULSE_PID" 10
    TAMRIX_PULSE_PID=
  fi
  for d in "${TAMRIX_TMPDIRS[@]}"; do
    rm -rf -- "$d"
  done
  TAMRIX_TMPDIRS=()
}
