# shellcheck shell=bash
# The 32-bit program's route, sourced by setup.sh (which calls wine32_choose_route) and by
# tests/setup/wine32-route-test.sh (which calls it with the machine's tools stubbed).
#
# Left behind for the tests and the benchmark:
#   build/wine32-route    "native", "private ROOT", "emulated ROOT QEMU" (QEMU: the qemu-i386 of
#                         bookworm-backports in the cache) or "emulated ROOT" (the host's qemu-i386)
#   build/wine32-missing  the reason the 32-bit suites are skipped, when they are

wine32_route_file=build/wine32-route
wine32_note=build/wine32-missing

# Where the private i386 root lives: a cache of the user's, outside git, shared by every checkout on
# this machine and kept between runs (it is some 730 MB of Debian packages, unpacked).
wine32_cache_dir() { echo "${TAMRIX_CACHE_DIR:-${XDG_CACHE_HOME:-$HOME/.cache}/tamrix}"; }

w32_say() { printf 'setup: %s\n' "$*" >&2; }

# The version of the 64-bit Wine on this machine: the i386 half must be the very same, since the
# 64-bit wineserver serves both halves and they speak its protocol.
wine32_host_version() { dpkg-query -W -f='${Version}' wine64 2>/dev/null; }

# Succeeds when this machine executes 32-bit x86 code (arch-test runs a tiny i386 program).
wine32_machine_runs_i386() { command -v arch-test >/dev/null && arch-test i386 >/dev/null 2>&1; }

wine32_native_present() {
  [[ -x /usr/lib/wine/wine ]] && dpkg-query -W -f='${db:Status-Status}\n' wine32:i386 2>/dev/null | grep -qx installed
}

# Installing wine32:i386 into the host takes root's rights.
wine32_as_root() { ((EUID == 0)); }

w32_i386_packages() { dpkg-query -W -f='${binary:Package} ${db:Status-Status}\n' 2>/dev/null | awk '$1 ~ /:i386$/ && $2 == "installed" {print $1}' | sort; }

# Installs Debian's wine32:i386; on failure puts the machine back as it found it (the i386 packages
# this try brought in, then the architecture if this try added it) and prints the reason.
wine32_install_native() {
  local apt_opts=(-o DPkg::Lock::Timeout=300) added=0 log before reason=
  if ! dpkg --print-foreign-architectures | grep -qx i386; then
    dpkg --add-architecture i386
    added=1
  fi
  log=$(mktemp)
  before=$(w32_i386_packages)
  if ! apt-get "${apt_opts[@]}" update >"$log" 2>&1; then
    reason="the Debian archive's i386 index could not be read ($(grep -m1 -oE '(File has unexpected size|Hash Sum mismatch|Failed to fetch|Could not)[^[]*' "$log" | sed 's/ *$//' || true))"
  elif ! DEBIAN_FRONTEND=noninteractive apt-get "${apt_opts[@]}" install -y --no-install-recommends wine32:i386 >"$log" 2>&1; then
    reason="wine32:i386 cannot be installed ($(grep -m1 -E '^E: |Depends:' "$log" | sed 's/^ *//; s/ *$//' || true))"
  fi
  if [[ -z $reason ]] && wine32_native_present; then
    rm -f "$log"
    return 0
  fi
  : "${reason:=wine32:i386 installed but /usr/lib/wine/wine is missing}"
  local added_packages
  added_packages=$(comm -13 <(printf '%s\n' "$before") <(w32_i386_packages) | tr '\n' ' ')
  if [[ -n ${added_packages// /} ]]; then
    # shellcheck disable=SC2086  # one word per package
    DEBIAN_FRONTEND=noninteractive apt-get "${apt_opts[@]}" purge -y $added_packages >>"$log" 2>&1 || true
  fi
  if ((added)) && [[ -z $(w32_i386_packages) ]]; then
    dpkg --remove-architecture i386
    apt-get "${apt_opts[@]}" update >>"$log" 2>&1 || true
  fi
  rm -f "$log"
  echo "$reason"
  return 1
}

# The private root for the emulated route: ROOT/usr/lib/wine/wine and its i386 libraries, as
# bookworm ships them, plus the small library that mends qemu's faults (wine32-qemu-fixes.c).
wine32_root_path() { echo "$(wine32_cache_dir)/i386-wine-$(wine32_host_version)"; }
wine32_root_ready() { [[ -f $1/.complete && -x $1/usr/lib/wine/wine && -f $1/usr/lib/tamrix-qemu-fixes.so ]]; }
# The mending library follows its source: a root made before a fix was added gets it rebuilt.
wine32_fixes_fresh() {
  [[ $1/usr/lib/tamrix-qemu-fixes.so -nt $(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)/wine32-qemu-fixes.c ]] ||
    wine32_build_fixes "$1"
}

# The i386 DLLs and programs a 64-bit prefix needs in syswow64 for the emulated route (the 64-bit
# wineboot leaves it empty when the host has no 32-bit Wine); links, not copies: some 560 MB.
# What the 32-bit install section deletes from syswow64 (its "11,,NAME,-" lines: the programs
# that are 64-bit only, such as services.exe, Mono's stand-ins, the themes) is left unlinked: Wine
# deletes an open file by the path its descriptor has, so a deletion through a link removes the
# root's own file, and the root is shared by every prefix and checkout (a root so robbed has no
# services.exe for a 32-bit prefix). A link of an earlier preparation to such a file goes too.
wine32_fill_syswow64() {
  local root=$1 prefix=$2 dir=$1/usr/lib/i386-linux-gnu/wine/i386-windows f name pattern removed links=()
  local sys=$prefix/drive_c/windows/syswow64
  [[ -d $dir && -d $sys ]] || return 1
  mapfile -t removed < <(wine32_wow64_removed)
  for f in "$dir"/*; do
    name=${f##*/}
    for pattern in "${removed[@]}"; do
      # shellcheck disable=SC2053  # the section's names are patterns (*.msstyles)
      if [[ ${name,,} == ${pattern,,} ]]; then
        [[ -L $sys/$name ]] && rm -f -- "${sys:?}/$name"
        continue 2
      fi
    done
    links+=("$f")
  done
  ln -sf "${links[@]}" "$sys/"
}

# The names the 32-bit install section of wine.inf deletes from the 32-bit system directory.
wine32_wow64_removed() {
  sed -n '/^\[FakeDllsWow64\]/,/^\[/p' "${TAMRIX_WINE_INF:-/usr/share/wine/wine.inf}" | tr -d '\r' |
    sed -n 's/^11,,\([^,]*\),-[[:space:]]*$/\1/p'
}

# A root robbed of its files by the links of an earlier preparation (see above) gets them back:
# libwine's package unpacked over it once more. Succeeds when nothing is missing.
wine32_root_whole() { [[ -f $1/usr/lib/i386-linux-gnu/wine/i386-windows/services.exe ]]; }
wine32_root_mend() {
  wine32_root_unpack "$1" mend "libwine for i386" "libwine=$(wine32_host_version)" || return 1
  wine32_root_whole "$1" || { echo "services.exe is still missing from the root"; return 1; }
}

# wine32_root_unpack ROOT WORK WHAT PACKAGE...: downloads the packages by the private apt into
# ROOT.WORK and unpacks them over the root, then forgets the download; says why, as WHAT, when it
# cannot.
wine32_root_unpack() {
  local root=$1 work=$1.$2 what=$3 d
  shift 3
  rm -rf "$work"
  mkdir -p "$work"
  wine32_private_apt "$work" || return 1
  if ! (cd "$work/apt/archives" && apt-get "${w32_apt_opts[@]}" download "$@") >>"$work/apt.log" 2>&1; then
    echo "$what could not be downloaded ($(grep -m1 -E '^E:' "$work/apt.log" || true))"
    return 1
  fi
  for d in "$work"/apt/archives/*.deb; do
    dpkg -x "$d" "$root" || { echo "dpkg -x failed for $(basename "$d")"; return 1; }
  done
  rm -rf "$work"
}

# The root's 32-bit COM servers, as a WoW64 install registers them: every DLL carrying Wine's
# registration resource (its classes, interfaces and their proxies) and exporting
# DllRegisterServer, in name order, less those the environment keeps Wine from loading
# (WINEDLLOVERRIDES' "name=", Mono's and Gecko's in the tests) and those syswow64 does not hold. Where the install copies a DLL
# into syswow64 it registers it on the way; over the links of wine32_fill_syswow64 it registers
# nothing, and without ole32's and oleaut32's proxy classes no object crosses from a 32-bit
# process to another (a screen reader then hears the system's default object for every control).
wine32_com_servers() {
  local dir=$1/usr/lib/i386-linux-gnu/wine/i386-windows f name off=,
  local objdump=${TAMRIX_I686_OBJDUMP:-i686-w64-mingw32-objdump}
  command -v "$objdump" >/dev/null || return 1
  local o pattern removed
  # Nor what the install section takes out of syswow64 (Mono's stand-ins): not there to load.
  mapfile -t removed < <(wine32_wow64_removed)
  for o in ${WINEDLLOVERRIDES//;/ }; do
    [[ $o == *= ]] && off+=${o%=},
  done
  (
    cd "$dir" || exit 1
    LC_ALL=C grep -laP 'W\x00I\x00N\x00E\x00_\x00R\x00E\x00G\x00I\x00S\x00T\x00R\x00Y\x00' -- *.dll *.ocx *.ax 2>/dev/null |
      LC_ALL=C sort |
      while read -r f; do
        name=${f%.*}
        [[ $off == *,"$name",* ]] && continue
        for pattern in "${removed[@]}"; do
          # shellcheck disable=SC2053  # the section's names are patterns
          [[ ${f,,} == ${pattern,,} ]] && continue 2
        done
        # objdump speaks the locale's language: its table's heading is read in English. The
        # whole table is read (no grep -q): under pipefail, a writer cut short by an early exit
        # would fail the test and lose the DLL.
        if LC_ALL=C "$objdump" -p "$f" 2>/dev/null | sed -n '/^\[Ordinal\/Name Pointer\] Table/,/^$/p' |
          grep -w DllRegisterServer >/dev/null; then
          echo "$f"
        fi
      done
  )
}

# The X libraries Wine's display driver opens at run time, which wine32 only recommends: without
# XRandR the driver offers the current mode alone and refuses to set even that, and without
# XRender there is no alpha blending. The host gets them from setup's package list; the root,
# from the same private apt as the rest.
wine32_root_x_packages=(libxrandr2 libxrender1 libxcursor1 libxi6 libxfixes3 libxinerama1 libxcomposite1)
wine32_root_x_libraries=(libXrandr.so.2 libXrender.so.1 libXcursor.so.1 libXi.so.6 libXfixes.so.3 libXinerama.so.1 libXcomposite.so.1)

# A private apt: its own sources (one suite of Debian's main archive, one architecture: bookworm
# and i386 unless told), lists, cache and an empty package database, so that it resolves the
# packages' whole closure and downloads it without ever touching the host's. Sets w32_apt_opts;
# prints the reason and fails when the index cannot be read.
wine32_private_apt() {
  local work=$1 arch=${2:-i386} suite=${3:-bookworm} apt=$1/apt
  mkdir -p "$apt"/etc/sources.list.d "$apt"/etc/preferences.d "$apt"/lists/partial \
    "$apt"/archives/partial "$apt"/dpkg
  : >"$apt/dpkg/status"
  echo "deb ${TAMRIX_DEBIAN_MIRROR:-http://deb.debian.org/debian} $suite main" >"$apt/etc/sources.list"
  w32_apt_opts=(
    -o "APT::Architecture=$arch" -o "APT::Architectures::=$arch"
    -o "Dir::Etc::SourceList=$apt/etc/sources.list" -o "Dir::Etc::SourceParts=$apt/etc/sources.list.d"
    -o "Dir::Etc::Preferences=$apt/etc/preferences" -o "Dir::Etc::PreferencesParts=$apt/etc/preferences.d"
    -o "Dir::State::Lists=$apt/lists" -o "Dir::State::status=$apt/dpkg/status"
    -o "Dir::Cache=$apt" -o "Dir::Cache::Archives=$apt/archives"
    -o "Acquire::Check-Valid-Until=false" -o "APT::Install-Recommends=false"
    -o "Debug::NoLocking=true" -o "APT::Sandbox::User=root"
  )
  if ! apt-get "${w32_apt_opts[@]}" update >"$work/apt.log" 2>&1; then
    local whose="$suite's"
    [[ $suite == *s ]] && whose="$suite'"
    echo "$whose $arch index could not be read ($(grep -m1 -E '^(E|Err):' "$work/apt.log" || true))"
    return 1
  fi
}

# The packages are unpacked with dpkg -x, no scripts run.
wine32_make_root() {
  local root=$1 version work apt debs n
  version=$(wine32_host_version)
  [[ -n $version ]] || { echo "wine64 is not installed"; return 1; }
  work=$root.work
  rm -rf "$work" "$root"
  mkdir -p "$work"/root
  wine32_private_apt "$work" || return 1
  apt=$work/apt
  if ! apt-get "${w32_apt_opts[@]}" install -y --download-only "wine32=$version" "libwine=$version" \
      "${wine32_root_x_packages[@]}" >>"$work/apt.log" 2>&1; then
    echo "wine32 $version for i386 could not be downloaded ($(grep -m1 -E '^E:' "$work/apt.log" || true))"
    return 1
  fi
  shopt -s nullglob
  debs=("$apt"/archives/*.deb)
  shopt -u nullglob
  n=${#debs[@]}
  local d
  for d in "${debs[@]}"; do
    dpkg -x "$d" "$work/root" || { echo "dpkg -x failed for $(basename "$d")"; return 1; }
  done
  # What libwine's maintainer script does on install, which dpkg -x does not run: zlib1.dll comes
  # from libz-mingw-w64 and is marked as one of Wine's own DLLs, without which user32 won't load.
  local zin=$work/root/usr/i686-w64-mingw32/lib/zlib1.dll zout=$work/root/usr/lib/i386-linux-gnu/wine/i386-windows/zlib1.dll
  [[ -f $zin ]] || { echo "libz-mingw-w64's zlib1.dll is missing from the root"; return 1; }
  { head -c 64 "$zin"; printf 'Wine builtin DLL'; head -c 16 /dev/zero; tail -c +97 "$zin"; } >"$zout"
  # No maintainer script ran, so no ld.so.cache: without one the i386 loader misses the libraries
  # Wine opens by name at run time (FreeType, the X libraries) and fonts and windows fail.
  echo 'include /etc/ld.so.conf.d/*.conf' >"$work/root/etc/ld.so.conf"
  ldconfig -r "$work/root" || { echo "ldconfig could not index the root's libraries"; return 1; }
  # The 32-bit loader starts its 64-bit helpers (wineboot, the 64-bit side of a 64-bit prefix)
  # through wine64 beside itself: the host's own, of the same version.
  ln -s /usr/lib/wine/wine64 "$work/root/usr/lib/wine/wine64"
  if ! wine32_build_fixes "$work/root"; then
    echo "the i386 library that mends qemu could not be built (gcc -m32; gcc-multilib)"
    return 1
  fi
  echo "$n packages, wine $version" >"$work/root/.complete"
  mv "$work/root" "$root"
  rm -rf "$work"
}

# A root made before the X libraries were part of it gets them: the packages alone, unpacked over
# it (everything they need came with wine32), then the root's library cache made again.
wine32_root_has_x() {
  local l
  for l in "${wine32_root_x_libraries[@]}"; do
    [[ -e $1/usr/lib/i386-linux-gnu/$l ]] || return 1
  done
}
wine32_root_add_x() {
  wine32_root_unpack "$1" work "the i386 X libraries" "${wine32_root_x_packages[@]}" || return 1
  ldconfig -r "$1" || { echo "ldconfig could not index the root's libraries"; return 1; }
  wine32_root_has_x "$1" || { echo "the i386 X libraries are still missing from the root"; return 1; }
}

# ---- the private route: the root's Wine run natively ----------------------------------------
# Where the machine runs 32-bit code but Debian's wine32:i386 cannot be installed, the private root
# runs without qemu. Its wine names /lib/ld-linux.so.2 as its interpreter, which on the host is
# libc6-i386's (or nothing) and searches the host's library cache; so the root's own loader is
# copied beside the root's libraries (a file of its own, not a link, so that the kernel and qemu -L
# open the same file by that path) and named in wine's header. Wine finds ntdll.so from /proc/self/exe, so the loader cannot be called by hand with wine
# as its argument: the header must name it. Under qemu -L the same absolute path is looked for in
# the root first, then on the host, where it exists: the emulated route still starts.
wine32_private_loader() { echo "$1/usr/lib/i386-linux-gnu/tamrix-ld.so.2"; }

# The directories the root's loader searches, in the root: the multiarch ones its own ld.so.cache
# was made from, and libpulse's RUNPATH, an absolute i386 path that only exists in the root.
wine32_private_library_path() {
  local r=$1
  echo "$r/lib/i386-linux-gnu:$r/usr/lib/i386-linux-gnu:$r/usr/lib/i386-linux-gnu/pulseaudio"
}

# Idempotent: copies the loader and patches wine's interpreter only when they are not already so,
# each written aside and moved in whole (another checkout may be running the old file). Then runs
# the root's wine once; prints the reason and fails when it does not run.
wine32_prepare_private() {
  local root=$1 ld wine out
  ld=$(wine32_private_loader "$root")
  wine=$root/usr/lib/wine/wine
  if ! cmp -s "$root/lib/ld-linux.so.2" "$ld"; then
    if ! { cp -L "$root/lib/ld-linux.so.2" "$ld.new" && chmod 755 "$ld.new" && mv -f "$ld.new" "$ld"; }; then
      echo "the root's loader could not be copied to $ld"
      return 1
    fi
  fi
  if ! command -v patchelf >/dev/null; then
    echo "patchelf is missing"
    return 1
  fi
  if [[ $(patchelf --print-interpreter "$wine" 2>/dev/null) != "$ld" ]]; then
    if ! { cp "$wine" "$wine.new" && patchelf --set-interpreter "$ld" "$wine.new" && mv -f "$wine.new" "$wine"; }; then
      rm -f "$wine.new"
      echo "patchelf could not give $wine the root's loader"
      return 1
    fi
  fi
  if ! out=$(LD_LIBRARY_PATH=$(wine32_private_library_path "$root") timeout 60 "$wine" --version 2>&1) ||
    [[ $out != wine-* ]]; then
    echo "the root's wine does not run natively (${out:-no output})"
    return 1
  fi
}

# ---- the emulator of the emulated route -----------------------------------------------------
# Bookworm's own qemu-user (7.2) has a fault 32-bit Wine cannot live with: once an emulated process
# has opened the audio mixers, its next requests to Wine (a volume query most often) hang or crash
# it, and the program reads the mixers at start-up. qemu 10 of bookworm-backports runs them (20
# volume queries after the mixers: 11 runs of 11, some 4 s each, where 7.2 hung 2 runs of 3). Its
# qemu-user is a set of static binaries needing no library: the package is downloaded by the
# private apt (amd64, bookworm-backports), never installed, and its qemu-i386 alone kept in the
# cache beside the root. Where it cannot be had the host's qemu-i386 stands in, and the tests leave
# out what it cannot run.
wine32_qemu_suite=bookworm-backports

# The version a qemu-i386 says it is (10.0.2), or nothing when it does not run; and its major.
wine32_qemu_version() { "$1" --version 2>/dev/null | sed -n '1s/^qemu-i386 version \([0-9][0-9.]*\).*/\1/p'; }
wine32_qemu_major() { local v; v=$(wine32_qemu_version "$1"); echo "${v%%.*}"; }

# The qemu-i386 of the newest backport unpacked in the cache, when it runs.
wine32_cached_qemu() {
  local dir
  dir=$(find "$(wine32_cache_dir)" -maxdepth 1 -name 'qemu-user-*' ! -name '*.work' 2>/dev/null | sort -V | tail -n 1)
  [[ -n $dir && -f $dir/.complete && -x $dir/qemu-i386 && -n $(wine32_qemu_major "$dir/qemu-i386") ]] || return 1
  echo "$dir/qemu-i386"
}

# Downloads qemu-user of bookworm-backports with the private apt and keeps its qemu-i386 in
# CACHE/qemu-user-VERSION. Prints the path of that qemu-i386; prints the reason and fails otherwise,
# leaving nothing behind.
wine32_make_qemu() {
  local work
  work=$(wine32_cache_dir)/qemu-user.work
  w32_fetch_qemu "$work" && return 0
  rm -rf "$work"
  return 1
}
w32_fetch_qemu() {
  local cache work=$1 deb version dir
  cache=$(wine32_cache_dir)
  rm -rf "$work"
  mkdir -p "$work/x"
  wine32_private_apt "$work" amd64 "$wine32_qemu_suite" || return 1
  if ! (cd "$work/apt/archives" && apt-get "${w32_apt_opts[@]}" download qemu-user) >>"$work/apt.log" 2>&1; then
    # apt-get update can end well with its index unread ("Err:" lines, warnings): say that first.
    echo "qemu-user of $wine32_qemu_suite could not be downloaded ($(grep -m1 -E '^(Err:|E:)' -A1 "$work/apt.log" | tr -s ' \n' ' ' | sed 's/ *$//' || true))"
    return 1
  fi
  deb=$(find "$work/apt/archives" -maxdepth 1 -name 'qemu-user_*_amd64.deb' | head -n 1)
  [[ -n $deb ]] || { echo "apt-get left no qemu-user package"; return 1; }
  # qemu-user_1%3a10.0.2+ds-2+deb13u1~bpo12+1_amd64.deb: the version, the epoch left out of the name.
  version=$(basename "$deb")
  version=${version#qemu-user_}
  version=${version%_amd64.deb}
  version=${version#*%3a}
  dir=$cache/qemu-user-$version
  dpkg -x "$deb" "$work/x" || { echo "dpkg -x failed for $(basename "$deb")"; return 1; }
  [[ -x $work/x/usr/bin/qemu-i386 ]] || { echo "$(basename "$deb") has no usr/bin/qemu-i386"; return 1; }
  rm -rf "$dir"
  mkdir -p "$dir"
  cp "$work/x/usr/bin/qemu-i386" "$dir/qemu-i386"
  [[ -n $(wine32_qemu_major "$dir/qemu-i386") ]] || { rm -rf "$dir"; echo "the qemu-i386 of qemu-user $version does not run"; return 1; }
  echo "qemu-user $version of $wine32_qemu_suite" >"$dir/.complete"
  rm -rf "$work"
  echo "$dir/qemu-i386"
}

# Sets w32_qemu (the path of the backport's qemu-i386, empty for the host's) and w32_qemu_why (why
# the backport could not be had). Fails, w32_qemu_why saying why, when there is no qemu-i386 at all.
wine32_pick_qemu() {
  local out
  w32_qemu='' w32_qemu_why=''
  if w32_qemu=$(wine32_cached_qemu); then
    return 0
  fi
  w32_say "fetching qemu-user of $wine32_qemu_suite for its qemu-i386 (once per machine, some 63 MB)"
  if out=$(wine32_make_qemu); then
    w32_qemu=$out
    return 0
  fi
  w32_qemu='' w32_qemu_why="$wine32_qemu_suite' qemu-user could not be had: $out"
  command -v qemu-i386 >/dev/null && return 0
  w32_qemu_why="qemu-i386 (qemu-user) is missing ($w32_qemu_why)"
  return 1
}

# The two halves of an "emulated ROOT [QEMU]" route: the root, and the qemu-i386 to run it with
# (the host's when the route names none, as routes written before the backport did).
wine32_route_root() {
  local rest=${1#emulated }
  rest=${rest#private }
  if [[ $1 == "emulated "* && $rest == *" "*/qemu-i386 ]]; then echo "${rest% *}"; else echo "$rest"; fi
}
wine32_route_qemu() {
  local rest=${1#emulated }
  if [[ $rest == *" "*/qemu-i386 ]]; then echo "${rest##* }"; else command -v qemu-i386 || true; fi
}

# Succeeds when ROUTE is the emulated one by a qemu-i386 older than 10 (bookworm's 7.2, where the
# backport could not be had): the end-to-end tests then leave out what its fault keeps from running.
# TAMRIX_QEMU_I386, which wine32.sh obeys, counts first.
wine32_route_leaves_out() {
  local major
  [[ $1 == "emulated "* ]] || return 1
  major=$(wine32_qemu_major "${TAMRIX_QEMU_I386:-$(wine32_route_qemu "$1")}")
  ((${major:-0} < 10))
}

wine32_build_fixes() {
  local src
  src=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)/wine32-qemu-fixes.c
  # Built aside and moved in whole: emulated processes of other checkouts may have it loaded.
  gcc -m32 -O2 -fPIC -shared -Wall -o "$1/usr/lib/tamrix-qemu-fixes.so.new" "$src" -ldl &&
    mv -f "$1/usr/lib/tamrix-qemu-fixes.so.new" "$1/usr/lib/tamrix-qemu-fixes.so"
}

wine32_route() {
  mkdir -p build
  rm -f "$wine32_note"
  echo "$1" >"$wine32_route_file"
}

wine32_skip() {
  mkdir -p build
  rm -f "$wine32_route_file"
  printf '32-bit Wine not available: %s\n' "$1" >"$wine32_note"
  w32_say "32-bit route: none, the 32-bit suites are skipped: $1"
}

wine32_choose_route() {
  local why root private_why='' runs_i386=0
  if wine32_machine_runs_i386; then
    runs_i386=1
    if wine32_native_present; then
      wine32_route native
      w32_say "32-bit route: native (this machine runs 32-bit code; wine32:i386 is installed)"
      return 0
    fi
    if ! wine32_as_root; then
      wine32_skip "this machine runs 32-bit code but wine32:i386 is missing; as root run: dpkg --add-architecture i386 && apt-get update && apt-get install wine32:i386"
      return 0
    fi
    if why=$(wine32_install_native); then
      wine32_route native
      w32_say "32-bit route: native (this machine runs 32-bit code; wine32:i386 installed now)"
      return 0
    fi
    w32_say "wine32:i386 could not be installed ($why); the machine is left as it was"
    private_why=$why
  fi
  root=$(wine32_root_path)
  if ! ((runs_i386)) && ! wine32_pick_qemu; then
    wine32_skip "this machine runs no 32-bit x86 code and $w32_qemu_why"
    return 0
  fi
  if ! wine32_root_ready "$root"; then
    w32_say "making the private i386 root for 32-bit Wine in $root (once per machine, some 730 MB)"
    if ! why=$(wine32_make_root "$root"); then
      wine32_skip "the private i386 root could not be made: $why"
      return 0
    fi
  fi
  if ! wine32_root_whole "$root"; then
    w32_say "putting back the i386 programs an earlier preparation took from the private root in $root (once)"
    why=$(wine32_root_mend "$root") ||
      w32_say "warning: $why; a 32-bit prefix will have no services"
  fi
  if ! wine32_root_has_x "$root"; then
    w32_say "adding the i386 X libraries to the private root in $root (once)"
    why=$(wine32_root_add_x "$root") ||
      w32_say "warning: $why; 32-bit programs will see one display mode and no alpha blending"
  fi
  # The machine runs 32-bit code: the root's Wine runs natively, without emulation and its faults.
  if ((runs_i386)); then
    if why=$(wine32_prepare_private "$root"); then
      wine32_route "private $root"
      w32_say "32-bit route: private (this machine runs 32-bit x86 code; Debian's wine32:i386 could not be installed: $private_why; bookworm's i386 wine32 runs from $root without emulation)"
      return 0
    fi
    if ! wine32_pick_qemu; then
      wine32_skip "this machine runs 32-bit code, but wine32:i386 could not be installed ($private_why) and the private i386 root does not run natively ($why); $w32_qemu_why"
      return 0
    fi
    private_why="this machine runs 32-bit x86 code, but wine32:i386 could not be installed ($private_why) and the private root does not run natively ($why)"
  fi
  if ! wine32_fixes_fresh "$root"; then
    wine32_skip "the i386 library that mends qemu could not be rebuilt (gcc -m32; gcc-multilib)"
    return 0
  fi
  if [[ -n $w32_qemu ]]; then
    wine32_route "emulated $root $w32_qemu"
    w32_say "32-bit route: emulated (${private_why:-this machine runs no 32-bit x86 code}: qemu-i386 $(wine32_qemu_version "$w32_qemu") of $wine32_qemu_suite, $w32_qemu, runs bookworm's i386 wine32 from $root)"
  else
    wine32_route "emulated $root"
    w32_say "32-bit route: emulated (${private_why:-this machine runs no 32-bit x86 code}: qemu-i386 runs bookworm's i386 wine32 from $root), by the host's qemu-i386 $(wine32_qemu_version "$(command -v qemu-i386)"), since $w32_qemu_why; e2e32 leaves out what it cannot run"
  fi
}
