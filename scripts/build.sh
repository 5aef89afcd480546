#!/usr/bin/env bash
# Configures (when needed) and builds the three CMake trees with Ninja:
#   build/native  host g++, RelWithDebInfo: the native unit tests
#   build/win64   mingw-w64 x86_64, Release: tamrix.exe and the Wine suites
#   build/win32   mingw-w64 i686, Release: the 32-bit tamrix.exe
#   build/asan    host g++, Debug with AddressSanitizer and UBSan (named only)
#
# usage: scripts/build.sh [-k] [-t TARGET]... [native|win64|win32|asan|all]...
#   -k         keep going: build everything that can be built, in every tree,
#              and fail at the end if anything failed (what the tests want)
#   -t TARGET  build only this Ninja target (repeatable), e.g. -t tamrix
# With no tree named, all three are built.
set -euo pipefail

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
cd "$root"

usage() { sed -n '2,12s/^# \{0,1\}//p' "${BASH_SOURCE[0]}" >&2; }

keep_going=0
targets=()
trees=()
while (($#)); do
  case $1 in
    -k | --keep-going) keep_going=1 ;;
    -t | --target)
      (($# >= 2)) || { usage; exit 2; }
      targets+=("$2")
      shift
      ;;
    native | win64 | win32 | asan) trees+=("$1") ;;
    all) trees+=(native win64 win32) ;;
    -h | --help) usage; exit 0 ;;
    *) printf 'build.sh: unknown argument "%s"\n' "$1" >&2; usage; exit 2 ;;
  esac
  shift
done
((${#trees[@]})) || trees=(native win64 win32)

# Microseconds without the decimal point, whatever the locale makes of it.
now_ms() { local t=${EPOCHREALTIME/[.,]/}; echo $((t / 1000)); }
fmt_ms() { printf '%d.%01d s' $(($1 / 1000)) $(($1 % 1000 / 100)); }

configure() {
  local tree=$1 dir=build/$1 type toolchain='' cached sanitize=OFF
  case $tree in
    native) type=RelWithDebInfo ;;
    win64) type=Release toolchain=cmake/mingw-x86_64.cmake ;;
    win32) type=Release toolchain=cmake/mingw-i686.cmake ;;
    asan) type=Debug sanitize=ON ;;
  esac
  cached=$(sed -n 's/^CMAKE_BUILD_TYPE:[A-Z]*=//p' "$dir/CMakeCache.txt" 2>/dev/null || true)
  if [[ -f $dir/build.ninja && $cached == "$type" ]]; then
    return 0
  fi
  local args=(-S . -B "$dir" -G Ninja -DCMAKE_BUILD_TYPE="$type" -DTAMRIX_SANITIZE="$sanitize")
  [[ -n $toolchain ]] && args+=(-DCMAKE_TOOLCHAIN_FILE="$root/$toolchain")
  # A compiler cache, where the machine has one, spares rebuilding what another checkout of the
  # same sources already built; paths under the checkout are cached relative to it.
  command -v ccache >/dev/null && args+=(-DCMAKE_CXX_COMPILER_LAUNCHER=ccache)
  echo "== configuring $dir ($type)"
  if ! cmake "${args[@]}"; then
    echo "build.sh: cmake could not configure $dir" >&2
    echo "build.sh: (a tree made by another generator or compiler needs: rm -rf $dir)" >&2
    return 1
  fi
}

export CCACHE_BASEDIR=$root
failed=()
for tree in "${trees[@]}"; do
  dir=build/$tree
  start=$(now_ms)
  echo "== building $dir${targets[*]:+ (${targets[*]})}"
  ninja_args=(-C "$dir")
  ((keep_going)) && ninja_args+=(-k 0)
  if configure "$tree" && ninja "${ninja_args[@]}" "${targets[@]}"; then
    echo "== $dir built in $(fmt_ms $(($(now_ms) - start)))"
  else
    failed+=("$dir")
    {
      echo
      echo "######## BUILD FAILED: $dir (after $(fmt_ms $(($(now_ms) - start)))) ########"
      echo
    } >&2
    ((keep_going)) || break
  fi
done

if ((${#failed[@]})); then
  echo "build.sh: build failed in: ${failed[*]}" >&2
  exit 1
fi
