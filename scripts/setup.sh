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
  chromium  # a real browser, headless, opens the system report's HTML page
  xdotool  # keystrokes typed as a person types them, through the X test extension
  # audio mixers for Wine
  pulseaudio
  # the 32-bit program's route: arch-test tells whether this machine runs 32-bit x86 code; where it
  # cannot, qemu-i386 runs 32-bit Wine by emulation (bookworm-backports' qemu 10, kept in the
  # user's cache; bookworm's qemu-user, 7.2, where that cannot be had), and gcc-multilib builds the
  # small i386 library that mends what qemu gets wrong for Wine; where it can but wine32:i386 won't
  # install, patchelf lets the private root's Wine run natively with the root's own loader
  arch-test qemu-user gcc-multilib patchelf
  # fr_FR.UTF-8 for glibc
  locales
  # the fuzz targets: clang and its libFuzzer runtime (a short run of each is part of the tests)
  clang libclang-rt-14-dev
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

# The 32-bit program's route, chosen in this order and said in one line (also left in
# build/wine32-route, which the tests and the benchmark read):
#   native    this machine runs 32-bit x86 code and Debian's wine32:i386 is (or gets) installed;
#   private   it runs 32-bit code but wine32:i386 cannot be installed (the archive's i386 index
#             unreadable, say): bookworm's i386 wine32 is unpacked into a private root in the
#             user's cache, as for the emulated route, and runs natively from there;
#   emulated  it runs no 32-bit code (most x86_64 kernels of developers' and CI's machines are
#             built without 32-bit support), or the private root won't run natively: bookworm's
#             i386 wine32 is unpacked into a private root in the user's cache, outside the
#             package database, and run by the qemu-i386 of bookworm-backports' qemu-user, kept
#             beside it (or, where that cannot be had, by the host's qemu-i386 7.2, which the
#             end-to-end tests cannot ask everything of);
#   skipped   neither can be had; the reason goes to build/wine32-missing and the 32-bit suites
#             are reported skipped with it.
# A machine that cannot run 32-bit code never gets the i386 architecture nor wine32:i386: they
# would install, and every 32-bit program would then crash at its first instruction.
# shellcheck source=scripts/wine32-root.sh
source "$(dirname "${BASH_SOURCE[0]}")/wine32-root.sh"
wine32_choose_route
