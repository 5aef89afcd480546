#!/usr/bin/env bash
# Makes sure this Debian machine has everything the build and the tests use.
# Quiet when nothing is missing; installs what is missing when run as root;
# otherwise prints the exact command to run and fails.
set -euo pipefail

packages=(
  # native build and tests
  make cmake ninja-build g++ googletest libgtest-dev libbenchmark-dev python3
  # the Windows builds
  g++-mingw-w64-x86-64-posix g++-mingw-w64-i686-posix
  # running them. No fonts-wine: Debian's Wine 8 never copies those fonts
  # into a prefix, and fonts-liberation would turn Wine's stand-in for the
  # missing Verdana from DejaVu Sans (close to Verdana's widths) into the
  # narrower Liberation Sans.
  wine wine64
  # the X libraries Wine's display driver opens at run time (display modes,
  # alpha blending, cursors, clipboard); Debian only recommends them
  libxrandr2 libxrender1 libxcursor1 libxi6 libxfixes3 libxinerama1 libxcomposite1
  # a display, its tools and screenshots
  xvfb xauth x11-utils imagemagick
  xdotool  # keystrokes typed as a person types them, through the X test extension
  # audio mixers for Wine
  pulseaudio
  # fr_FR.UTF-8 for glibc
  locales
)

say() { printf 'setup: %s\n' "$*" >&2; }

is_installed() {
  # A multi-arch package can be listed once per architecture; one installed copy is enough.
  dpkg-query -W -f='${db:Status-Status}\n' "$1" 2>/dev/null | grep -qx installed
}

missing=()
for p in "${packages[@]}"; do
  is_installed "$p" || missing+=("$p")
done

if ((${#missing[@]})); then
  install_cmd="DEBIAN_FRONTEND=noninteractive apt-get install -y --no-install-recommends ${missing[*]}"
  if ((EUID != 0)); then
    say "missing Debian packages: ${missing[*]}"
    say "run as root:"
    printf '  apt-get update && %s\n' "$install_cmd" >&2
    exit 1
  fi
  say "installing: ${missing[*]}"
  apt-get update
  DEBIAN_FRONTEND=noninteractive apt-get install -y --no-install-recommends "${missing[@]}"
fi

# Wine takes its regional settings (decimal comma, "Vrai", month names) from
# LANG alone, but without the glibc locale the Unix side of Wine falls back to
# ASCII: accented file names and console output come out as '?', and every
# shell we start complains that it cannot set the locale.
has_fr_locale() { locale -a 2>/dev/null | grep -qiE '^fr_FR\.utf-?8$'; }

if ! has_fr_locale; then
  if ((EUID != 0)); then
    say "the glibc locale fr_FR.UTF-8 is missing"
    say "run as root:"
    # shellcheck disable=SC2016  # printed for the user, not run here
    printf '  %s\n' "sed -i 's/^# *\\(fr_FR\\.UTF-8 UTF-8\\)/\\1/' /etc/locale.gen && locale-gen --keep-existing" >&2
    exit 1
  fi
  say "generating the locale fr_FR.UTF-8"
  if grep -qE '^# *fr_FR\.UTF-8 UTF-8' /etc/locale.gen 2>/dev/null; then
    sed -i 's/^# *\(fr_FR\.UTF-8 UTF-8\)/\1/' /etc/locale.gen
  elif ! grep -qE '^fr_FR\.UTF-8 UTF-8' /etc/locale.gen 2>/dev/null; then
    echo 'fr_FR.UTF-8 UTF-8' >>/etc/locale.gen
  fi
  locale-gen --keep-existing >/dev/null
  has_fr_locale || { say "locale-gen did not produce fr_FR.UTF-8"; exit 1; }
fi

# 32-bit Wine, for the 32-bit tamrix.exe: Debian's wine32 comes from the i386 architecture. When
# it cannot be had (the i386 index of the archive is being synced, its packages lag behind their
# amd64 twins), setup says why in one line, puts the machine back as it found it (no i386
# architecture left half-added) and leaves the reason in build/wine32-missing, for the tests to
# report the 32-bit suites as skipped. A failed try is not repeated for an hour.
wine32_note=build/wine32-missing
has_wine32() { [[ -x /usr/lib/wine/wine ]] && dpkg-query -W -f='${db:Status-Status}\n' wine32:i386 2>/dev/null | grep -qx installed; }
wine32_missing() {
  mkdir -p build
  printf '32-bit Wine not installed: %s\n' "$1" >"$wine32_note"
  say "32-bit Wine not installed: $1; ${2:-the 32-bit suites are skipped}"
}
i386_packages() { dpkg-query -W -f='${binary:Package} ${db:Status-Status}\n' 2>/dev/null | awk '$1 ~ /:i386$/ && $2 == "installed" {print $1}' | sort; }

try_wine32() {
  local apt_opts=(-o DPkg::Lock::Timeout=300) added=0 log before reason
  if has_wine32; then
    rm -f "$wine32_note"
    return 0
  fi
  if ((EUID != 0)); then
    wine32_missing "setup is not run as root" "as root run: dpkg --add-architecture i386 && apt-get update && apt-get install wine32:i386"
    return 0
  fi
  if [[ -f $wine32_note ]] && (($(date +%s) - $(stat -c %Y "$wine32_note") < 3600)); then
    say "$(cat "$wine32_note") (tried less than an hour ago); the 32-bit suites are skipped"
    return 0
  fi
  if ! dpkg --print-foreign-architectures | grep -qx i386; then
    dpkg --add-architecture i386
    added=1
  fi
  log=$(mktemp)
  before=$(i386_packages)
  if ! apt-get "${apt_opts[@]}" update >"$log" 2>&1; then
    reason="the Debian archive's i386 index could not be read ($(grep -m1 -oE '(File has unexpected size|Hash Sum mismatch|Failed to fetch|Could not)[^[]*' "$log" | sed 's/ *$//' || true))"
  elif ! DEBIAN_FRONTEND=noninteractive apt-get "${apt_opts[@]}" install -y --no-install-recommends wine32:i386 >"$log" 2>&1; then
    reason="wine32:i386 cannot be installed ($(grep -m1 -E '^E: |Depends:' "$log" | sed 's/^ *//; s/ *$//' || true))"
  fi
  if [[ -z ${reason:-} ]] && has_wine32; then
    rm -f "$wine32_note" "$log"
    say "32-bit Wine installed"
    return 0
  fi
  : "${reason:=wine32:i386 installed but /usr/lib/wine/wine is missing}"
  # Back to how the machine was: the i386 packages this try brought in go, then the architecture
  # if this try added it, then its index.
  local added_packages
  added_packages=$(comm -13 <(printf '%s\n' "$before") <(i386_packages) | tr '\n' ' ')
  if [[ -n ${added_packages// /} ]]; then
    # shellcheck disable=SC2086  # one word per package
    DEBIAN_FRONTEND=noninteractive apt-get "${apt_opts[@]}" purge -y $added_packages >>"$log" 2>&1 || true
  fi
  if ((added)) && [[ -z $(i386_packages) ]]; then
    dpkg --remove-architecture i386
    apt-get "${apt_opts[@]}" update >>"$log" 2>&1 || true
  fi
  rm -f "$log"
  wine32_missing "$reason" "the machine is left as it was and the 32-bit suites are skipped"
}
try_wine32
