#!/usr/bin/env bash
# shellcheck disable=SC2317,SC2031  # the checks run through check(); choose() works in a subshell on purpose
# The 32-bit route setup chooses, on machines made up with stub commands on PATH: which route it
# says, what it leaves for the tests, and above all that a machine which runs no 32-bit code is
# never given the i386 architecture nor wine32:i386. One line PASS or FAIL per check; exit status
# 0 only when every check passed.
set -uo pipefail
here=$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)
work=$(mktemp -d "${TMPDIR:-/tmp}/tamrix-route.XXXXXX")
trap 'rm -rf -- "$work"' EXIT
failed=0

check() {  # check NAME CONDITION...
  local name=$1
  shift
  if "$@"; then echo "PASS $name"; else echo "FAIL $name"; failed=1; fi
}

# machine DIR RUNS_I386(0|1) HAS_QEMU(0|1) HAS_WINE32(0|1): stub commands that log every call.
machine() {
  local dir=$1 runs=$2 qemu=$3 wine32=$4 bin=$1/bin
  mkdir -p "$bin" "$dir/cwd" "$dir/cache"
  cat >"$bin/arch-test" <<STUB
#!/bin/sh
echo "arch-test \$*" >>"$dir/calls"
if [ $runs = 1 ]; then echo "\$1: ok"; exit 0; fi
echo "\$1: not supported on this machine/kernel"; exit 1
STUB
  cat >"$bin/dpkg-query" <<STUB
#!/bin/sh
echo "dpkg-query \$*" >>"$dir/calls"
case "\$*" in
  *wine64*) printf '8.0~repack-4' ;;
  *wine32:i386*) [ $wine32 = 1 ] && echo installed ;;
esac
exit 0
STUB
  for tool in apt-get dpkg ldconfig gcc; do
    printf '#!/bin/sh\necho "%s $*" >>"%s/calls"\nexit 1\n' "$tool" "$dir" >"$bin/$tool"
  done
  if [[ $qemu == 1 ]]; then
    printf '#!/bin/sh\necho "qemu-i386 $*" >>"%s/calls"\n' "$dir" >"$bin/qemu-i386"
  fi
  chmod +x "$bin"/*
  # Only the plain tools besides the stubs, so that the machine's own qemu-i386 or arch-test
  # never answer for the made-up machine.
  local t
  for t in sh grep sed awk mkdir rm cat mktemp comm tr date stat dirname basename head tail ln env touch; do
    ln -s "$(command -v "$t")" "$bin/$t"
  done
  : >"$dir/calls"
}

# choose DIR: runs the route choice of setup on that machine, in its own working directory.
choose() {
  local dir=$1
  (
    cd "$dir/cwd" || exit 1
    export PATH=$dir/bin TAMRIX_CACHE_DIR=$dir/cache
    # The real /usr/lib/wine/wine must not count: the stubs say what is installed.
    # shellcheck source=scripts/wine32-root.sh
    source "$here/scripts/wine32-root.sh"
    wine32_native_present() { [[ $(dpkg-query -W -f='${db:Status-Status}\n' wine32:i386) == installed ]]; }
    wine32_choose_route
  ) >"$dir/out" 2>&1
  echo $? >"$dir/status"
}

no_i386_install() { ! grep -E '^(apt-get|dpkg) ' "$1/calls" | grep -qE 'wine32:i386|add-architecture'; }
status_zero() { [[ $(cat "$1/status") == 0 ]]; }
has_line() { grep -qF -- "$2" "$1"; }
no_file() { [[ ! -e $1 ]]; }

# 1. No 32-bit code here, qemu present, the private root already made: emulated, nothing installed.
m=$work/emulated
machine "$m" 0 1 0
root=$m/cache/i386-wine-8.0~repack-4
mkdir -p "$root/usr/lib/wine"
touch "$root/.complete" "$root/usr/lib/tamrix-qemu-fixes.so"
printf '#!/bin/sh\n' >"$root/usr/lib/wine/wine"
chmod +x "$root/usr/lib/wine/wine"
choose "$m"
check "no-32-bit machine with qemu: setup succeeds" status_zero "$m"
check "no-32-bit machine with qemu: says the emulated route in one line" \
  has_line "$m/out" "setup: 32-bit route: emulated (this machine runs no 32-bit x86 code: qemu-i386 runs bookworm's i386 wine32 from $root)"
check "no-32-bit machine with qemu: leaves the route for the tests" has_line "$m/cwd/build/wine32-route" "emulated $root"
check "no-32-bit machine with qemu: no skip reason left" no_file "$m/cwd/build/wine32-missing"
check "no-32-bit machine with qemu: never adds i386 nor installs wine32:i386" no_i386_install "$m"
check "no-32-bit machine with qemu: asks arch-test about i386" has_line "$m/calls" "arch-test i386"

# 2. No 32-bit code and no qemu: skipped with the reason, setup still succeeds.
m=$work/neither
machine "$m" 0 0 0
choose "$m"
check "no-32-bit machine without qemu: setup succeeds" status_zero "$m"
check "no-32-bit machine without qemu: says the suites are skipped and why" \
  has_line "$m/out" "setup: 32-bit route: none, the 32-bit suites are skipped: this machine runs no 32-bit x86 code and qemu-i386 (qemu-user) is missing"
check "no-32-bit machine without qemu: leaves the reason for the tests" \
  has_line "$m/cwd/build/wine32-missing" "32-bit Wine not available: this machine runs no 32-bit x86 code and qemu-i386 (qemu-user) is missing"
check "no-32-bit machine without qemu: no route left" no_file "$m/cwd/build/wine32-route"
check "no-32-bit machine without qemu: never adds i386 nor installs wine32:i386" no_i386_install "$m"

# 3. No 32-bit code, qemu present, the root cannot be made (here apt-get fails): skipped, not failed.
m=$work/unreachable
machine "$m" 0 1 0
choose "$m"
check "no-32-bit machine, archive unreachable: setup succeeds" status_zero "$m"
check "no-32-bit machine, archive unreachable: says why the suites are skipped" \
  has_line "$m/out" "setup: 32-bit route: none, the 32-bit suites are skipped: the private i386 root could not be made: bookworm's i386 index could not be read"
check "no-32-bit machine, archive unreachable: the private apt is i386 only and outside the host's database" \
  has_line "$m/calls" "apt-get -o APT::Architecture=i386 -o APT::Architectures::=i386 -o Dir::Etc::SourceList=$m/cache/i386-wine-8.0~repack-4.work/apt/etc/sources.list"
check "no-32-bit machine, archive unreachable: never adds i386 nor installs wine32:i386" no_i386_install "$m"

# 4. A machine that runs 32-bit code and has wine32: native, nothing installed, no qemu.
m=$work/native
machine "$m" 1 1 1
choose "$m"
check "32-bit machine with wine32: setup succeeds" status_zero "$m"
check "32-bit machine with wine32: says the native route" \
  has_line "$m/out" "setup: 32-bit route: native (this machine runs 32-bit code; wine32:i386 is installed)"
check "32-bit machine with wine32: leaves the route for the tests" has_line "$m/cwd/build/wine32-route" "native"
check "32-bit machine with wine32: installs nothing" no_i386_install "$m"

exit $failed
