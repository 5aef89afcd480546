#!/usr/bin/env bash
# Builds the three trees and runs every suite: the native unit tests, then,
# under Wine in a throw-away prefix with a private Xvfb and PulseAudio, the
# unit tests again, the platform tests and the end-to-end tests.
# A failing suite never stops the others. The last line is the total:
#   N passed, N failed[, N skipped]
# and the exit status is 0 only when nothing failed.
#
# TAMRIX_SUITE_TIMEOUT (seconds, default 1800) bounds each suite, so that a
# hung window cannot hold CI forever.
set -uo pipefail

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
cd "$root" || exit 1
# shellcheck source=scripts/wine-env.sh
source scripts/wine-env.sh
trap stop_all EXIT
trap 'stop_all; exit 130' INT
trap 'stop_all; exit 143' TERM

suite_timeout=${TAMRIX_SUITE_TIMEOUT:-1800}
results=build/results
shots=build/screenshots
prefix=$root/build/test-prefix
run_start=$(tamrix_now_ms)

bash scripts/setup.sh || exit 1
mkdir -p "$results"
rm -f "$results"/*.xml "$results"/*.log
# The 32-bit route setup chose, quoted in the summary.
wine32_route=$(wine32_route_line)
# shellcheck source=scripts/wine32-root.sh
source scripts/wine32-root.sh

total_passed=0 total_failed=0 total_skipped=0
summary=()

# note NAME PASSED FAILED SKIPPED MS [REMARK]
note() {
  local name=$1 p=$2 f=$3 s=$4 ms=$5 remark=${6:-} line
  total_passed=$((total_passed + p))
  total_failed=$((total_failed + f))
  total_skipped=$((total_skipped + s))
  line=$(printf '%-16s %5d passed, %3d failed, %3d skipped  %9s' "$name" "$p" "$f" "$s" "$(tamrix_fmt_ms "$ms")")
  [[ -n $remark ]] && line+="  $remark"
  summary+=("$line")
  printf '\n== %s\n\n' "$line"
}

# counts XML: prints "passed failed skipped disabled" from a gtest XML report.
# gtest's "tests" includes the disabled tests and the skipped ones; filtered
# out tests are not in the file at all.
counts() {
  python3 - "$1" <<'EOF'
import sys
import xml.etree.ElementTree as ET
root = ET.parse(sys.argv[1]).getroot()
if root.tag != "testsuites":
    sys.exit("not a gtest report")
n = lambda k: int(root.get(k, "0"))
skipped = sum(1 for tc in root.iter("testcase") if tc.get("result") == "skipped")
failed = n("failures") + n("errors")
print(n("tests") - failed - n("disabled") - skipped, failed, skipped, n("disabled"))
EOF
}

# suite NAME TREE TARGET EXE XML COMMAND...: runs one gtest executable and
# notes its counts. The target is brought up to date quietly first: when that
# fails, the executable on disk is an old one and running it would prove nothing.
suite() {
  local name=$1 tree=$2 target=$3 exe=$4 xml=$5
  shift 5
  local start rc=0 log=$results/$name.log p f s d
  start=$(tamrix_now_ms)
  echo
  echo "==== $name: $*"
  if ! ninja -C "build/$tree" "$target" >"$results/$name.ninja.log" 2>&1; then
    if grep -q "unknown target" "$results/$name.ninja.log"; then
      note "$name" 0 1 "${suite_left_out:-0}" $(($(tamrix_now_ms) - start)) "executable missing: build/$tree has no target $target"
    elif [[ ! -f $exe ]]; then
      note "$name" 0 1 "${suite_left_out:-0}" $(($(tamrix_now_ms) - start)) "executable missing: $exe did not build (errors above)"
    else
      note "$name" 0 1 "${suite_left_out:-0}" $(($(tamrix_now_ms) - start)) "not run: $exe is out of date and does not build (errors above)"
    fi
    return
  fi
  rm -f "$results/$name.ninja.log"
  if [[ ! -f $exe ]]; then
    note "$name" 0 1 "${suite_left_out:-0}" $(($(tamrix_now_ms) - start)) "executable missing: $exe"
    return
  fi
  rm -f "$xml"
  timeout --foreground -k 10 "$suite_timeout" "$@" 2>&1 | tee "$log"
  rc=${PIPESTATUS[0]}
  local ms=$(($(tamrix_now_ms) - start))
  [[ $tree == win32 ]] && wine32_ms=$((wine32_ms + ms))
  if [[ ! -s $xml ]]; then
    local why="ended with status $rc without writing $xml"
    ((rc == 124)) && why="timed out after ${suite_timeout}s without writing $xml"
    note "$name" 0 1 "${suite_left_out:-0}" "$ms" "$why"
    return
  fi
  if ! read -r p f s d < <(counts "$xml" 2>/dev/null); then
    note "$name" 0 1 "${suite_left_out:-0}" "$ms" "unreadable report $xml (status $rc)"
    return
  fi
  local remark=
  ((d)) && remark="$d disabled"
  # Tests a filter left out because they cannot run here count as skipped, never as passed.
  if ((${suite_left_out:-0})); then
    s=$((s + suite_left_out))
    remark+="${remark:+; }$suite_left_out left out: ${suite_left_out_why:-}"
  fi
  # What the suite says of itself: its route, what it leaves to another suite.
  [[ -n ${suite_remark:-} ]] && remark+="${remark:+; }$suite_remark"
  if ((rc != 0 && f == 0)); then
    # Every test passed but the process still failed (a crash on exit, a
    # leak check): that is one failure of its own.
    f=1
    remark+="${remark:+; }all tests passed but the process ended with status $rc"
  fi
  note "$name" "$p" "$f" "$s" "$ms" "$remark"
}
wine32_ms=0

# The same as suite, for an executable that should exist but does not.
missing() {
  note "$1" 0 1 0 0 "executable missing: $2"
}

# lines_suite NAME LOG COMMAND...: a shell test that prints one PASS or FAIL line per check.
lines_suite() {
  local name=$1 log=$2 start rc p f
  shift 2
  start=$(tamrix_now_ms)
  "$@" >"$log" 2>&1
  rc=$?
  cat "$log"
  p=$(grep -c '^PASS' "$log")
  f=$(grep -c '^FAIL' "$log")
  ((rc != 0 && f == 0)) && f=1  # ended before it could tell
  note "$name" "$p" "$f" 0 $(($(tamrix_now_ms) - start))
}

# The 32-bit route's choice, on made-up machines.
lines_suite setup-route "$results/setup-route.log" bash tests/setup/wine32-route-test.sh
# The README and the documents it links, and the gallery's pictures.
lines_suite docs "$results/docs.log" python3 tests/docs/check-docs.py

# ---- build -------------------------------------------------------------------
for tree in native win64 win32; do
  start=$(tamrix_now_ms)
  if ! bash scripts/build.sh -k "$tree"; then
    note "build/$tree" 0 1 0 $(($(tamrix_now_ms) - start)) "BUILD FAILED (errors above)"
  else
    summary+=("$(printf '%-16s built in %s' "build/$tree" "$(tamrix_fmt_ms $(($(tamrix_now_ms) - start)))")")
  fi
done

# ---- native ------------------------------------------------------------------
if [[ -f build/native/build.ninja ]]; then
  suite native-unit native unit_tests build/native/unit_tests "$results/native-unit.xml" \
    build/native/unit_tests --gtest_output="xml:$results/native-unit.xml"
else
  missing native-unit "build/native/unit_tests (the tree is not configured)"
fi

# The 32-bit program's import table against the functions Windows XP SP3 exports.
if [[ -f build/native/build.ninja ]]; then
  TAMRIX_I686_EXE=$root/build/win32/tamrix.exe \
    suite exe-imports native exe_tests build/native/exe_tests "$results/exe-imports.xml" \
    build/native/exe_tests --gtest_output="xml:$results/exe-imports.xml"
else
  missing exe-imports "build/native/exe_tests (the tree is not configured)"
fi

# The same tests once more with AddressSanitizer and UBSan: a leak, an overflow or undefined
# behaviour fails the run.
start=$(tamrix_now_ms)
if bash scripts/build.sh -k -t unit_tests asan; then
  summary+=("$(printf '%-16s built in %s' "build/asan" "$(tamrix_fmt_ms $(($(tamrix_now_ms) - start)))")")
  suite native-asan asan unit_tests build/asan/unit_tests "$results/native-asan.xml" \
    build/asan/unit_tests --gtest_output="xml:$results/native-asan.xml"
else
  note "build/asan" 0 1 0 $(($(tamrix_now_ms) - start)) "BUILD FAILED (errors above)"
fi

# Each fuzz target for a few seconds, built with clang under ASan and UBSan: a crash or a broken
# property of any of them fails the suite (make fuzz runs them for longer).
lines_suite fuzz-short "$results/fuzz-short.log" env FUZZ_SECONDS="${TAMRIX_FUZZ_SECONDS:-6}" bash scripts/fuzz.sh

# ---- under Wine ----------------------------------------------------------------
tamrix_env
wine_ready=1
start=$(tamrix_now_ms)
if ! start_xvfb --force; then
  note xvfb 0 1 0 $(($(tamrix_now_ms) - start)) "could not start Xvfb"
  wine_ready=0
fi
start_pulse
if ((wine_ready)); then
  # A prefix left by an interrupted run may still have its server up.
  [[ -d $prefix ]] && stop_prefix "$prefix"
  rm -rf "$prefix"
  echo
  echo "==== making the Wine prefix build/test-prefix"
  start=$(tamrix_now_ms)
  if make_prefix "$prefix"; then
    summary+=("$(printf '%-16s made in %s' "wine prefix" "$(tamrix_fmt_ms $(($(tamrix_now_ms) - start)))")")
  else
    note "wine prefix" 0 1 0 $(($(tamrix_now_ms) - start)) "wineboot failed"
    wine_ready=0
  fi
fi
export WINEPREFIX=$prefix

# Windows path of a Unix path (its directory must exist). A 32-bit prefix takes the 32-bit winepath.
winpath() {
  if [[ $WINEARCH == win32 ]]; then
    bash scripts/wine32.sh winepath -w "$1" 2>/dev/null
  else
    winepath -w "$1" 2>/dev/null
  fi
}

# wine_suite NAME TREE TARGET XML: one gtest executable of build/TREE under Wine (the i686 tree
# by the 32-bit route setup chose).
wine_suite() {
  local name=$1 tree=$2 target=$3 xml=$results/$4
  local exe=build/$tree/$target.exe runner=(wine)
  [[ $tree == win32 ]] && runner=(bash scripts/wine32.sh)
  if ((!wine_ready)); then
    note "$name" 0 1 0 0 "not run: no Wine environment (see above)"
    return
  fi
  if [[ ! -f build/$tree/build.ninja ]]; then
    missing "$name" "$exe (build/$tree is not configured)"
    return
  fi
  suite "$name" "$tree" "$target" "$exe" "$xml" "${runner[@]}" "$exe" --gtest_output="xml:$(winpath "$root/$xml")"
  # Whatever the suite left running in the prefix ends here, so that the
  # next suite starts from a quiet prefix.
  stop_prefix "$prefix"
}

# e2e_suite NAME TREE XML [FILTER]: the end-to-end tests of build/TREE against that tree's tamrix.exe.
e2e_suite() {
  local name=$1 tree=$2 xml=$3 filter=${4:-}
  if ((wine_ready)) && [[ -f build/$tree/build.ninja ]] && ! ninja -C "build/$tree" tamrix tamrix-etat >"$results/$name.tamrix.ninja.log" 2>&1; then
    note "$name" 0 1 0 0 "not run: build/$tree/tamrix.exe or tamrix-etat.exe does not build (errors above)"
    return
  fi
  rm -f "$results/$name.tamrix.ninja.log"
  TAMRIX_EXE=$(winpath "$root/build/$tree/tamrix.exe")
  # The 64-bit pictures stand in build/screenshots, the 32-bit ones in build/screenshots/win32,
  # those of the Windows XP prefix in build/screenshots/win32-xp.
  local shot_dir=$shots
  [[ $tree == win32 ]] && shot_dir=$shots/win32
  [[ $tree == win32 && ${TAMRIX_E2E_SYSTEM:-} == xp ]] && shot_dir=$shots/win32-xp
  TAMRIX_SHOTS=$(winpath "$root/$shot_dir")
  export TAMRIX_EXE TAMRIX_SHOTS
  [[ -n $filter ]] && export GTEST_FILTER=$filter
  wine_suite "$name" "$tree" e2e_tests "$xml"
  unset TAMRIX_EXE TAMRIX_SHOTS GTEST_FILTER
}

# The 32-bit suites need a 32-bit route; without one they are skipped, with the reason setup gave.
wine32_ready=0
wine32_reason=
if [[ -s build/wine32-route ]]; then
  wine32_ready=1
else
  wine32_reason=$(cat build/wine32-missing 2>/dev/null || echo "32-bit Wine not available (run scripts/setup.sh)")
fi
skipped32() { note "$1" 0 0 1 0 "SKIPPED: $wine32_reason"; }

# The prefix's 32-bit half. On the emulated route the 32-bit rundll32 that installs it is now and
# then killed by the emulator partway (2 preparations in 9 here); that is the test machine's
# preparation, not a test, so it is tried again, up to three times. When it still fails, the
# 32-bit suites fail with it, and the 64-bit ones go on.
wine32_prefix_failed=0
if ((wine_ready && wine32_ready)); then
  start=$(tamrix_now_ms)
  for try in 1 2 3; do
    prepare_prefix32 "$prefix" && break
    stop_prefix "$prefix"
    ((try == 3)) && wine32_prefix_failed=1
  done
  if ((wine32_prefix_failed)); then
    note "wine32 prefix" 0 1 0 $(($(tamrix_now_ms) - start)) "the 32-bit half of the prefix could not be installed in 3 tries"
    wine32_ready=0
    wine32_reason="not run: the prefix's 32-bit half could not be installed"
    skipped32() { note "$1" 0 1 0 0 "$wine32_reason"; }
  else
    summary+=("$(printf '%-16s made in %s (try %d)' "wine32 prefix" "$(tamrix_fmt_ms $(($(tamrix_now_ms) - start)))" "$try")")
  fi
fi

wine_suite wine-unit win64 unit_tests wine-unit.xml
wine_suite wine-platform win64 wine_tests wine-platform.xml
if ((wine32_ready)); then
  wine_suite wine32-unit win32 unit_tests wine32-unit.xml
  # A fault of qemu 7.2 (the emulated route's fallback) shapes this suite: once an emulated process
  # has opened the audio mixers (winmm through PulseAudio), what it asks of Wine next may fail:
  # qemu "uncaught target signal 11" or a hang in Win32Hardware.VolumeOfDriveCIsWhatTheSystemSays,
  # "wine client error: partial write" or an X connection lost ("XIO: fatal IO error 25") further
  # on. The mixer tests pass in a process of their own, so they get one (wine32-mixers), on every
  # route and with every qemu, so that the suites stay the same wherever they run.
  # The display-mode test runs on every route: its failure once blamed on the emulator (one mode
  # offered, DISP_CHANGE_BADMODE for it) came from the private root's missing XRandR library.
  GTEST_FILTER='-Win32Mixer*' wine_suite wine32-platform win32 wine_tests wine32-platform.xml
  GTEST_FILTER='Win32Mixer*' wine_suite wine32-mixers win32 wine_tests wine32-mixers.xml
else
  skipped32 wine32-unit
  skipped32 wine32-platform
  skipped32 wine32-mixers
fi

rm -rf "$shots"
mkdir -p "$shots/win32" "$shots/win32-xp"
# The scenarios of the Windows XP prefix skip themselves elsewhere: left out here, as they are
# from the 32-bit suite's list.
e2e_suite e2e win64 e2e.xml '-WindowsXp.*'
if ((wine32_ready)); then
  # The 32-bit program runs what differs between the builds, or between 32-bit and 64-bit
  # Windows: its memory figures on the home page, start-up and the main window, Test Lab's pages
  # and one whole CPU test (x87 arithmetic), the navigation between pages, the Windows optimiser's
  # registry rows, the virtual drives, whose subst.exe the 32-bit program starts and whose Run
  # value lands under WOW6432Node, the companion's system report beside the 32-bit pages, and
  # what changed since a backup of the 32-bit view. The rest is the same code on both.
  # And the keyboard and what a screen reader hears, whose objects cross from the 32-bit program
  # to the 32-bit test by the COM servers of the prefix's 32-bit half.
  e2e32_filter='HomePage.*:TestLabInfo.*:SystemReportOnWine.*:MainWindow.*:Navigation.*:TestLabHardware.CpuPage*:TestLabHardware.TheFifteenSecondTest*:WindowsOptimiserOnWine.EveryRowLands*:VirtualDrivesOnWine.*:VirtualDrivesWithWitness.*:DifferencesOnWine.*:Keyboard.*'
  if wine32_route_leaves_out "$wine32_route"; then
    # Left out for a fault of qemu 7.2, the emulated route's fallback when bookworm-backports'
    # qemu-user cannot be had (qemu 10 runs all of them), and counted as skipped: TestLabInfo.*
    # (2), the CPU page and the whole CPU test (2), Navigation.* (7, which passes through Test Lab)
    # and SystemReportOnWine.* (4, which reads Test Lab's pages). The program reads the mixers at
    # start-up; once an emulated
    # process has opened them, a volume query (Test Lab's pages read drive C's) may crash it (qemu
    # "uncaught target signal 11") or hang it, as a ten-line i686 program doing just those two
    # calls shows. The window then stops answering, and the test driver dies after it ("partial
    # wakeup read 0", "read: Bad file descriptor").
    # Left out too, counted as skipped: four virtual drive scenarios, since a subst.exe that the
    # emulated program starts was seen to die of a page fault ("Unhandled page fault on read
    # access to 0040D298") and the driver with it, once in two runs; the scenario of the Run
    # value's registry view stays. And the two start-up scenarios that start the program under the
    # debugging interface to watch its modules, not yet tried on the emulated route.
    # Left out as well, counted as skipped: the eight keyboard scenarios, not yet tried on this
    # route; two of them pass through Test Lab and the sound page, which read drive C and the mixers.
    # And the three scenarios of differences, not yet tried on this route either.
    suite_left_out=32 suite_left_out_why="Test Lab, Navigation, the system report beside Test Lab, four virtual drive, two start-up, the eight keyboard and the three differences scenarios, which the program emulated by qemu 7.2 cannot run or has not run" \
      e2e_suite e2e32 win32 e2e32.xml 'HomePage.*:MainWindow.*:WindowsOptimiserOnWine.EveryRowLands*:VirtualDrivesOnWine.ListsOfferTheFreeLettersFromZDownAndAllTwentySix:VirtualDrivesOnWine.PermanentDriveRunValueLandsInTheRegistryViewOfTheProgramsWidth:-MainWindow.AFirstStartLoadsTheSoundDevicesAsItStarts:MainWindow.ASecondStartEndsWithoutLoadingTheSoundDevices'
  elif [[ $wine32_route == "emulated "* ]]; then
    # Emulated, the program is several times slower, and on a busy machine a page took longer than
    # the driver's usual 10 s to show: every wait of the driver is three times as patient.
    TAMRIX_E2E_PATIENCE=3 e2e_suite e2e32 win32 e2e32.xml "$e2e32_filter"
  else
    e2e_suite e2e32 win32 e2e32.xml "$e2e32_filter"
  fi
else
  skipped32 e2e32
fi

# The i686 program on the system its title names: a 32-bit prefix set to Windows XP, made here and
# removed at the end. It runs what depends on the system's version and its registry's layout:
# the Windows and PC pages, the optimisers' and Protection's rows (HKLM\Software itself, no
# WOW6432Node), the virtual drives' Run value, the companion's state, its backup round trip and
# its "--vue" with nothing to choose, the system report, and the keyboard and screen-reader
# scenarios. Not on the emulated route: every system process of a 32-bit prefix would be emulated.
xp_prefix=$root/build/test-prefix-xp
if ((!wine32_ready)); then
  skipped32 e2e32-xp
elif [[ $wine32_route == "emulated "* ]]; then
  note e2e32-xp 0 0 1 0 "SKIPPED: the emulated route would emulate every system process of a 32-bit prefix (services, devices, explorer), as well as the program; the XP prefix runs on the native and private routes"
elif ((wine_ready)); then
  [[ -d $xp_prefix ]] && stop_prefix "$xp_prefix"
  rm -rf "$xp_prefix"
  echo
  echo "==== making the Windows XP prefix build/test-prefix-xp (32-bit route: $wine32_route)"
  start=$(tamrix_now_ms)
  if make_prefix_xp "$xp_prefix"; then
    summary+=("$(printf '%-16s made in %s' "wine32 xp prefix" "$(tamrix_fmt_ms $(($(tamrix_now_ms) - start)))")")
    wine32_ms=$((wine32_ms + $(tamrix_now_ms) - start))
    # Scenarios left out, each for its reason, so that the suite line says so:
    # - the shell toggles, Test Lab's BIOS, drive, CPU and sound pages, the tools window, the
    #   navigation and the start-up scenarios read nothing that differs between XP and a 64-bit
    #   Windows, and run at 32 bits in e2e32;
    # - the Internet optimiser's show and its missing keys, and Protection's regsvr32 buttons,
    #   are the same code whatever the system.
    # None is counted: they are not this suite's scenarios; the suite line says where they run.
    xp_filter='WindowsXp.*:TestLabInfo.TestLabOpensOnTheWindowsPageFilledOnNt:TestLabInfo.PcPageFilledOnNt:WindowsOptimiserOnWine.EveryRowLands*:InternetOptimiserOnWine.LocalNetwork*:InternetOptimiserOnWine.HighSpeed*:ProtectionPage.ApplyWritesTheEighteenValuesAndNothingElse:ProtectionPage.NorunAddedWithRegTicksBox2OnOpening:VirtualDrivesOnWine.PermanentDriveRunValueLandsInTheRegistryViewOfTheProgramsWidth:CompanionOnWine.ABackupTaken*:SystemReportOnWine.*:Keyboard.*'
    saved_prefix=$prefix
    prefix=$xp_prefix
    suite_remark="${wine32_route%% *} route, 32-bit prefix set to Windows XP; what does not depend on the system's version or registry layout runs in e2e32 only" \
      WINEPREFIX=$xp_prefix WINEARCH=win32 TAMRIX_E2E_SYSTEM=xp e2e_suite e2e32-xp win32 e2e32-xp.xml "$xp_filter"
    stop_prefix "$xp_prefix"
    prefix=$saved_prefix
  else
    note e2e32-xp 0 1 0 $(($(tamrix_now_ms) - start)) "the Windows XP prefix could not be made (see above)"
  fi
  forget_server_dir "$xp_prefix"
  rm -rf "$xp_prefix"
fi

# The shutdown countdown's end reaches Wine's real ExitWindowsEx: in prefixes of its own, watched
# from outside.
if ((wine_ready)); then
  lines_suite e2e-shutdown "$results/e2e-shutdown.log" bash tests/e2e/shutdown-countdown.sh
  # The system report's forms for scripts and browsers, and the CPU test's score, of each build.
  lines_suite report-forms "$results/report-forms.log" bash tests/e2e/report-forms.sh win64 "$results" "$shots"
  stop_prefix "$prefix"
fi
if ((wine32_ready)); then
  start=$(tamrix_now_ms)
  lines_suite report-forms32 "$results/report-forms32.log" bash tests/e2e/report-forms.sh win32 "$results" "$shots/win32"
  wine32_ms=$((wine32_ms + $(tamrix_now_ms) - start))
  stop_prefix "$prefix"
fi
shopt -s nullglob
for bmp in "$shots"/*.bmp "$shots"/*/*.bmp; do
  if convert "$bmp" "${bmp%.bmp}.png"; then
    rm -f "$bmp"
  else
    echo "warning: could not convert $bmp to PNG" >&2
  fi
done
shopt -u nullglob

stop_all

# ---- totals ------------------------------------------------------------------
echo
echo "==== summary"
printf '%s\n' "${summary[@]}"
echo "32-bit route: $wine32_route"
printf '32-bit suites:   %s\n' "$(tamrix_fmt_ms "$wine32_ms")"
echo "total time: $(tamrix_fmt_ms $(($(tamrix_now_ms) - run_start)))"
if ((total_skipped)); then
  echo "$total_passed passed, $total_failed failed, $total_skipped skipped"
else
  echo "$total_passed passed, $total_failed failed"
fi
((total_failed == 0))
