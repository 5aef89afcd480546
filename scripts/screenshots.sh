#!/usr/bin/env bash
# make screenshots: a picture of every page of both windows, taken from the real x86_64 program
# under Wine and Xvfb by the end-to-end driver (its Gallery scenarios), kept in docs/pages/ as
# PNG files of 80 KB or less for the documentation's gallery. Run it again when a page changes.
set -euo pipefail

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
cd "$root"

bash scripts/setup.sh
bash scripts/build.sh -t tamrix -t e2e_tests win64

# shellcheck source=scripts/wine-env.sh
source scripts/wine-env.sh
trap stop_all EXIT
trap 'stop_all; exit 130' INT
trap 'stop_all; exit 143' TERM

tamrix_env
start_xvfb --force
start_pulse
prefix=$root/build/gallery-prefix
[[ -d $prefix ]] && stop_prefix "$prefix"
rm -rf "$prefix"
make_prefix "$prefix"
export WINEPREFIX=$prefix

shots=$root/build/gallery
rm -rf "$shots"
mkdir -p "$shots" docs/pages
TAMRIX_EXE=$(winepath -w "$root/build/win64/tamrix.exe") TAMRIX_SHOTS=$(winepath -w "$shots") \
  wine build/win64/e2e_tests.exe --gtest_filter='Gallery.*:CompanionByDoubleClick.*'
stop_prefix "$prefix"

limit=$((80 * 1024))
for bmp in "$shots"/*.bmp; do
  png=docs/pages/$(basename "${bmp%.bmp}").png
  # A palette of the skin's few colours keeps a page under the limit without a visible change;
  # a page of many shades (a photograph, a gradient) gets fewer colours until it fits.
  for colours in 256 128 64 32; do
    convert "$bmp" -strip -dither None -colors "$colours" -define png:compression-level=9 "PNG8:$png"
    (($(stat -c %s "$png") <= limit)) && break
  done
  printf '%-48s %6d bytes, %d colours\n' "$png" "$(stat -c %s "$png")" "$colours"
  (($(stat -c %s "$png") <= limit)) || { echo "screenshots.sh: $png is over 80 KB" >&2; exit 1; }
done
