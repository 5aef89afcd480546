#!/usr/bin/env bash
# shellcheck disable=SC2317,SC2030,SC2031  # the checks run through check(); choose() works in a subshell on purpose
# The 32-bit route setup chooses, on machines made up with stub commands on PATH: which route it
# says, what it leaves for the tests, and above all that a machine which runs no 32-bit code is
# never given the i386 architecture nor wine32:i386. One line PASS or FAIL per check; exit status
# 0 only when every check passed.
set -uo pipefail
here=$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)
work=$(mktemp -d "${TMPDIR:-/tmp}/tamrix-route.XXXXXX")
trap '[[ -n ${KEEP:-} ]] || rm -rf -- "$work"' EXIT
failed=0

check() {  # check NAME CONDITION...
  local name=$1
  shift
  if "$@"; then echo "PASS $name"; else echo "FAIL $name"; failed=1; fi
}

# machine DIR RUNS_I386(0|1) HAS_QEMU(0|1) HAS_WINE32(0|1) [HAS_PATCHELF(0|1)] [BACKPORT(0|1)]:
# stub commands that log every call. apt-get fails as a mirror in the middle of a sync does, but
# for an amd64 apt when BACKPORT is 1: then bookworm-backports' qemu-user can be downloaded (its
# package unpacks to a qemu-i386 that says it is 10.0.2, and a qemu-arm beside it). dpkg keeps the
# machine's foreign architectures in DIR/foreign, so that what setup leaves there can be checked.
machine() {
  local dir=$1 runs=$2 qemu=$3 wine32=$4 patchelf=${5:-1} backport=${6:-0} bin=$1/bin
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
  for tool in ldconfig gcc; do
    printf '#!/bin/sh\necho "%s $*" >>"%s/calls"\nexit 1\n' "$tool" "$dir" >"$bin/$tool"
  done
  cat >"$bin/apt-get" <<STUB
#!/bin/sh
echo "apt-get \$*" >>"$dir/calls"
if [ $backport = 1 ]; then
  case "\$*" in
    *APT::Architecture=amd64*" update") exit 0 ;;
    *APT::Architecture=amd64*" download qemu-user")
      echo "the qemu-user package" >"qemu-user_1%3a10.0.2+ds-2+deb13u1~bpo12+1_amd64.deb"; exit 0 ;;
  esac
fi
echo "E: Failed to fetch http://deb.debian.org/debian/dists/bookworm/main/binary-i386/Packages.xz  File has unexpected size (2154204 != 2154168). Mirror sync in progress? [IP: 151.101.2.132 80]"
exit 100
STUB
  cat >"$bin/dpkg" <<STUB
#!/bin/sh
echo "dpkg \$*" >>"$dir/calls"
case "\$1" in
  --print-foreign-architectures) cat "$dir/foreign"; exit 0 ;;
  --add-architecture) echo "\$2" >>"$dir/foreign"; exit 0 ;;
  --remove-architecture) grep -vx "\$2" "$dir/foreign" >"$dir/foreign.new"; mv "$dir/foreign.new" "$dir/foreign"; exit 0 ;;
  -x)
    case "\$2" in
      */qemu-user_*_amd64.deb)
        mkdir -p "\$3/usr/bin"
        for q in i386 arm; do
          printf '#!/bin/sh\\necho "qemu-%s version 10.0.2 (Debian 1:10.0.2+ds-2+deb13u1~bpo12+1)"\\n' \$q >"\$3/usr/bin/qemu-\$q"
          chmod +x "\$3/usr/bin/qemu-\$q"
        done
        exit 0 ;;
    esac ;;
esac
exit 1
STUB
  : >"$dir/foreign"
  if [[ $qemu == 1 ]]; then
    printf '#!/bin/sh\necho "qemu-i386 $*" >>"%s/calls"\necho "qemu-i386 version 7.2.22 (Debian 1:7.2+dfsg-7+deb12u18+b3)"\n' "$dir" >"$bin/qemu-i386"
  fi
  # The made-up root's wine is a script whose line "# interpreter PATH" stands for its ELF header.
  if [[ $patchelf == 1 ]]; then
    cat >"$bin/patchelf" <<STUB
#!/bin/sh
echo "patchelf \$*" >>"$dir/calls"
case "\$1" in
  --print-interpreter) sed -n 's/^# interpreter //p' "\$2" ;;
  --set-interpreter) sed -i "s|^# interpreter .*|# interpreter \$2|" "\$3" ;;
  *) exit 1 ;;
esac
STUB
  fi
  chmod +x "$bin"/*
  # Only the plain tools besides the stubs, so that the machine's own qemu-i386 or arch-test
  # never answer for the made-up machine.
  local t
  for t in sh grep sed awk mkdir rm cat mktemp comm tr date stat dirname basename head tail ln env touch \
    cp cmp chmod mv timeout find sort printf; do
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
    # Setup installs into the host only as root; the made-up machine is one whoever runs this.
    wine32_as_root() { true; }
    wine32_choose_route
  ) >"$dir/out" 2>&1
  echo $? >"$dir/status"
}

# made_root DIR: the private root already in the cache, as an earlier setup left it; its wine
# answers --version as bookworm's does.
made_root() {
  local root=$1/cache/i386-wine-8.0~repack-4
  mkdir -p "$root/usr/lib/wine" "$root/lib" "$root/usr/lib/i386-linux-gnu"
  touch "$root/.complete" "$root/usr/lib/tamrix-qemu-fixes.so"
  printf 'the i386 loader\n' >"$root/lib/ld-linux.so.2"
  printf '#!/bin/sh\necho "wine-8.0 (Debian 8.0~repack-4)"\n# interpreter /lib/ld-linux.so.2\n' >"$root/usr/lib/wine/wine"
  chmod +x "$root/usr/lib/wine/wine"
  local l
  for l in libXrandr.so.2 libXrender.so.1 libXcursor.so.1 libXi.so.6 libXfixes.so.3 libXinerama.so.1 libXcomposite.so.1; do
    touch "$root/usr/lib/i386-linux-gnu/$l"
  done
  mkdir -p "$root/usr/lib/i386-linux-gnu/wine/i386-windows"
  touch "$root/usr/lib/i386-linux-gnu/wine/i386-windows/services.exe"
}

# made_qemu DIR: bookworm-backports' qemu-i386 already in the cache, as an earlier setup left it.
made_qemu() {
  local q=$1/cache/qemu-user-10.0.2+ds-2+deb13u1~bpo12+1
  mkdir -p "$q"
  printf '#!/bin/sh\necho "qemu-i386 version 10.0.2 (Debian 1:10.0.2+ds-2+deb13u1~bpo12+1)"\n' >"$q/qemu-i386"
  chmod +x "$q/qemu-i386"
  echo "qemu-user 10.0.2+ds-2+deb13u1~bpo12+1 of bookworm-backports" >"$q/.complete"
}

# leaves_out DIR: whether the tests leave out, on the route setup left there, what qemu 7.2 cannot run.
leaves_out() {
  (
    export PATH=$1/bin
    # shellcheck source=scripts/wine32-root.sh
    source "$here/scripts/wine32-root.sh"
    unset TAMRIX_QEMU_I386
    wine32_route_leaves_out "$(cat "$1/cwd/build/wine32-route")"
  )
}
# The host's package database never hears of the backport: every apt-get call is the private one
# (its own package database in the cache), and dpkg only unpacks.
host_database_untouched() {
  ! grep '^apt-get ' "$1/calls" | grep -qv "Dir::State::status=$1/cache/" &&
    ! grep '^dpkg ' "$1/calls" | grep -qE 'dpkg (-i|--install|--unpack|--configure)'
}

runs_everything() { ! leaves_out "$1"; }
downloads_without_installing() {
  grep -q '^apt-get .* download qemu-user$' "$1/calls" && ! grep -q '^apt-get .* install' "$1/calls"
}
route_is() { [[ $(cat "$1/cwd/build/wine32-route") == "$2" ]]; }
no_cached_qemu() { ! compgen -G "$1/cache/qemu-user*" >/dev/null; }

no_i386_install() { ! grep -E '^(apt-get|dpkg) ' "$1/calls" | grep -qE 'wine32:i386|add-architecture'; }
status_zero() { [[ $(cat "$1/status") == 0 ]]; }
has_line() { grep -qF -- "$2" "$1"; }
no_line() { ! grep -qF -- "$2" "$1"; }
no_call() { ! grep -q "^$2 " "$1/calls"; }
one_line() { [[ $(grep -c "$2" "$1") == 1 ]]; }
no_foreign_i386() { ! grep -qx i386 "$1/foreign"; }
interpreter_is() { grep -qxF "# interpreter $2" "$1"; }
same_file() { [[ -f $1 && ! -L $1 ]] && cmp -s "$1" "$2"; }
no_file() { [[ ! -e $1 ]]; }

# 1. No 32-bit code here, the private root and the backport's qemu-i386 already in the cache:
#    emulated by that qemu, nothing installed, nothing downloaded.
m=$work/emulated
machine "$m" 0 1 0
root=$m/cache/i386-wine-8.0~repack-4
qemu=$m/cache/qemu-user-10.0.2+ds-2+deb13u1~bpo12+1/qemu-i386
made_root "$m"
made_qemu "$m"
choose "$m"
check "no-32-bit machine with qemu: setup succeeds" status_zero "$m"
check "no-32-bit machine with qemu: says the emulated route by the backport's qemu in one line" \
  has_line "$m/out" "setup: 32-bit route: emulated (this machine runs no 32-bit x86 code: qemu-i386 10.0.2 of bookworm-backports, $qemu, runs bookworm's i386 wine32 from $root)"
check "no-32-bit machine with qemu: one route line" one_line "$m/out" "32-bit route:"
check "no-32-bit machine with qemu: leaves the route and its qemu for the tests" \
  has_line "$m/cwd/build/wine32-route" "emulated $root $qemu"
check "no-32-bit machine with qemu: no skip reason left" no_file "$m/cwd/build/wine32-missing"
check "no-32-bit machine with qemu: never adds i386 nor installs wine32:i386" no_i386_install "$m"
check "no-32-bit machine with qemu: asks arch-test about i386" has_line "$m/calls" "arch-test i386"
check "no-32-bit machine with qemu, root and qemu made: never asks apt-get for anything" no_call "$m" apt-get

# 1b. The same, with a root that an earlier preparation robbed of services.exe: libwine is asked
#     for again, to unpack over it; when it cannot be had, setup warns and keeps the route.
m=$work/robbed
machine "$m" 0 1 0
made_root "$m"
made_qemu "$m"
rm -f "$m/cache/i386-wine-8.0~repack-4/usr/lib/i386-linux-gnu/wine/i386-windows/services.exe"
choose "$m"
check "robbed root: setup succeeds" status_zero "$m"
asks_i386_index() { grep -q '^apt-get .*APT::Architecture=i386 .* update$' "$1/calls"; }
check "robbed root: asks its private apt for the i386 index, to fetch libwine" asks_i386_index "$m"
check "robbed root: warns that a 32-bit prefix will have no services" has_line "$m/out" "a 32-bit prefix will have no services"
check "robbed root: keeps the emulated route" has_line "$m/cwd/build/wine32-route" "emulated $m/cache/i386-wine-8.0~repack-4"
check "no-32-bit machine with qemu: leaves the root's wine as bookworm made it" \
  interpreter_is "$root/usr/lib/wine/wine" /lib/ld-linux.so.2
check "no-32-bit machine with qemu 10: the tests leave nothing out" runs_everything "$m"

# 1b. The same machine before the backport's qemu was fetched, bookworm-backports reachable: the
#     private apt (amd64, bookworm-backports) downloads qemu-user, its qemu-i386 alone is kept in
#     the cache, the host's package database never hears of it.
m=$work/backport
machine "$m" 0 1 0 1 1
root=$m/cache/i386-wine-8.0~repack-4
qemu=$m/cache/qemu-user-10.0.2+ds-2+deb13u1~bpo12+1/qemu-i386
made_root "$m"
choose "$m"
check "no-32-bit machine, backport reachable: setup succeeds" status_zero "$m"
check "no-32-bit machine, backport reachable: the private apt is amd64 and outside the host's database" \
  has_line "$m/calls" "apt-get -o APT::Architecture=amd64 -o APT::Architectures::=amd64 -o Dir::Etc::SourceList=$m/cache/qemu-user.work/apt/etc/sources.list"
check "no-32-bit machine, backport reachable: asks for qemu-user alone" \
  has_line "$m/calls" "Dir::State::status=$m/cache/qemu-user.work/apt/dpkg/status"
check "no-32-bit machine, backport reachable: downloads qemu-user, installs nothing" \
  downloads_without_installing "$m"
check "no-32-bit machine, backport reachable: the host's package database untouched" host_database_untouched "$m"
check "no-32-bit machine, backport reachable: keeps qemu-i386 in the cache, named by its version" \
  has_line "$qemu" "qemu-i386 version 10.0.2"
check "no-32-bit machine, backport reachable: keeps none of the other emulators" \
  no_file "$(dirname "$qemu")/qemu-arm"
check "no-32-bit machine, backport reachable: leaves no work directory" no_file "$m/cache/qemu-user.work"
check "no-32-bit machine, backport reachable: leaves the route and its qemu for the tests" \
  has_line "$m/cwd/build/wine32-route" "emulated $root $qemu"
check "no-32-bit machine, backport reachable: says the backport's qemu runs the root" \
  has_line "$m/out" "qemu-i386 10.0.2 of bookworm-backports, $qemu, runs bookworm's i386 wine32 from $root)"
check "no-32-bit machine, backport reachable: the tests leave nothing out" runs_everything "$m"
check "no-32-bit machine, backport reachable: never adds i386 nor installs wine32:i386" no_i386_install "$m"
: >"$m/calls"
choose "$m"
check "no-32-bit machine, second setup: the backport is not downloaded again" no_call "$m" apt-get
check "no-32-bit machine, second setup: the same route" has_line "$m/cwd/build/wine32-route" "emulated $root $qemu"

# 1c. The backport unreachable, the host's qemu present: emulated by the host's qemu-i386 (7.2),
#     which the route line says with the reason, and the tests leave out what 7.2 cannot run.
m=$work/no-backport
machine "$m" 0 1 0
root=$m/cache/i386-wine-8.0~repack-4
made_root "$m"
choose "$m"
check "no-32-bit machine, backport unreachable: setup succeeds" status_zero "$m"
check "no-32-bit machine, backport unreachable: says the host's qemu runs the root, and why" \
  has_line "$m/out" "setup: 32-bit route: emulated (this machine runs no 32-bit x86 code: qemu-i386 runs bookworm's i386 wine32 from $root), by the host's qemu-i386 7.2.22, since bookworm-backports' qemu-user could not be had: bookworm-backports' amd64 index could not be read (E: Failed to fetch"
check "no-32-bit machine, backport unreachable: one route line" one_line "$m/out" "32-bit route:"
check "no-32-bit machine, backport unreachable: leaves the route without a qemu of its own" \
  route_is "$m" "emulated $root"
check "no-32-bit machine, backport unreachable: the tests leave out what qemu 7.2 cannot run" leaves_out "$m"
check "no-32-bit machine, backport unreachable: no qemu left in the cache" \
  no_cached_qemu "$m"
check "no-32-bit machine, backport unreachable: the host's package database untouched" host_database_untouched "$m"
check "no-32-bit machine, backport unreachable: never adds i386 nor installs wine32:i386" no_i386_install "$m"

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

# 5. Runs 32-bit code, no wine32, the host's apt cannot read the i386 index, the root already made:
#    the private route, the root run natively; the host is put back without i386; qemu unused.
m=$work/private
machine "$m" 1 1 0
root=$m/cache/i386-wine-8.0~repack-4
made_root "$m"
choose "$m"
reason="the Debian archive's i386 index could not be read (Failed to fetch http://deb.debian.org/debian/dists/bookworm/main/binary-i386/Packages.xz  File has unexpected size (2154204 != 2154168). Mirror sync in progress?)"
check "32-bit machine, wine32:i386 not installable: setup succeeds" status_zero "$m"
check "32-bit machine, wine32:i386 not installable: tried to install it as root would" \
  has_line "$m/calls" "dpkg --add-architecture i386"
check "32-bit machine, wine32:i386 not installable: says the private route and why in one line" \
  has_line "$m/out" "setup: 32-bit route: private (this machine runs 32-bit x86 code; Debian's wine32:i386 could not be installed: $reason; bookworm's i386 wine32 runs from $root without emulation)"
check "32-bit machine, wine32:i386 not installable: one route line" one_line "$m/out" "32-bit route:"
check "32-bit machine, wine32:i386 not installable: never says it runs no 32-bit code" \
  no_line "$m/out" "runs no 32-bit"
check "32-bit machine, wine32:i386 not installable: leaves the private route for the tests" \
  has_line "$m/cwd/build/wine32-route" "private $root"
check "32-bit machine, wine32:i386 not installable: no skip reason left" no_file "$m/cwd/build/wine32-missing"
check "32-bit machine, wine32:i386 not installable: the host keeps no i386 architecture" no_foreign_i386 "$m"
check "32-bit machine, wine32:i386 not installable: the root's loader is copied beside its libraries" \
  same_file "$root/usr/lib/i386-linux-gnu/tamrix-ld.so.2" "$root/lib/ld-linux.so.2"
check "32-bit machine, wine32:i386 not installable: the root's wine names that loader" \
  interpreter_is "$root/usr/lib/wine/wine" "$root/usr/lib/i386-linux-gnu/tamrix-ld.so.2"
check "32-bit machine, wine32:i386 not installable: no emulator" no_call "$m" qemu-i386
# Setup runs again on every make test: the prepared root is left as it is.
: >"$m/calls"
choose "$m"
check "32-bit machine, second setup: the private route again" has_line "$m/cwd/build/wine32-route" "private $root"
check "32-bit machine, second setup: the root's wine is not patched again" no_line "$m/calls" "patchelf --set-interpreter"
check "32-bit machine, second setup: the root's wine still names the copied loader" \
  interpreter_is "$root/usr/lib/wine/wine" "$root/usr/lib/i386-linux-gnu/tamrix-ld.so.2"

# 6. The same machine without patchelf: the root cannot run natively; qemu runs it, and the route
#    line says so truly (this machine does run 32-bit code).
m=$work/private-no-patchelf
machine "$m" 1 1 0 0
root=$m/cache/i386-wine-8.0~repack-4
made_root "$m"
choose "$m"
check "32-bit machine without patchelf: setup succeeds" status_zero "$m"
check "32-bit machine without patchelf: says the emulated route and the true reason" \
  has_line "$m/out" "setup: 32-bit route: emulated (this machine runs 32-bit x86 code, but wine32:i386 could not be installed ($reason) and the private root does not run natively (patchelf is missing): qemu-i386 runs bookworm's i386 wine32 from $root)"
check "32-bit machine without patchelf: never says it runs no 32-bit code" no_line "$m/out" "runs no 32-bit"
check "32-bit machine without patchelf: leaves the emulated route" has_line "$m/cwd/build/wine32-route" "emulated $root"
check "32-bit machine without patchelf: the host keeps no i386 architecture" no_foreign_i386 "$m"

# 7. Runs 32-bit code, wine32:i386 not installable and the root cannot be made: skipped with both
#    reasons, the host put back.
m=$work/private-unreachable
machine "$m" 1 1 0
choose "$m"
check "32-bit machine, archive unreachable: setup succeeds" status_zero "$m"
check "32-bit machine, archive unreachable: says why the suites are skipped" \
  has_line "$m/out" "setup: 32-bit route: none, the 32-bit suites are skipped: the private i386 root could not be made: bookworm's i386 index could not be read"
check "32-bit machine, archive unreachable: the host keeps no i386 architecture" no_foreign_i386 "$m"

# 8. A root made before it held the X libraries: the private apt (i386 only, its own lists) is asked
#    for them; when it cannot give them, setup says so and the route stands.
m=$work/old-root
machine "$m" 1 1 0
root=$m/cache/i386-wine-8.0~repack-4
made_root "$m"
rm -f "$root/usr/lib/i386-linux-gnu/libXrandr.so.2"
choose "$m"
check "root without the X libraries: setup succeeds" status_zero "$m"
check "root without the X libraries: the private apt is asked for them" \
  has_line "$m/calls" "apt-get -o APT::Architecture=i386 -o APT::Architectures::=i386 -o Dir::Etc::SourceList=$root.work/apt/etc/sources.list"
check "root without the X libraries: says what is missing when they cannot be had" \
  has_line "$m/out" "setup: warning: bookworm's i386 index could not be read"
check "root without the X libraries: the private route stands" has_line "$m/cwd/build/wine32-route" "private $root"
check "root without the X libraries: the host keeps no i386 architecture" no_foreign_i386 "$m"

exit $failed
