#!/usr/bin/env bash
# Builds both programs and writes the release into dist/: one zip per architecture, each with
# tamrix.exe, its companion tamrix-etat.exe and a short French LISEZMOI.txt for users, and
# SHA256SUMS of the two zips.
# The README travels in the Windows code page with CRLF line ends, so that Notepad on any of the
# Windows the program names shows its accents; the zips carry fixed dates, so that the same
# programs give the same zips.
set -euo pipefail

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
cd "$root"

bash scripts/setup.sh
bash scripts/build.sh -t tamrix -t tamrix-etat win32 win64

version=3.0
# Every program shipped is 2 MB (2,000,000 bytes) or less: a release over it is not written.
for exe in build/win32/tamrix.exe build/win32/tamrix-etat.exe build/win64/tamrix.exe build/win64/tamrix-etat.exe; do
  bytes=$(stat -c %s "$exe")
  printf '%-28s %9d bytes\n' "$exe" "$bytes"
  if ((bytes > 2000000)); then
    echo "dist.sh: $exe is over 2 MB; no release written" >&2
    exit 1
  fi
done
rm -rf dist
mkdir -p dist
python3 - "$version" <<'PY'
import sys, zipfile
version = sys.argv[1]
readme = open("resources/dist/LISEZMOI.txt", encoding="utf-8").read()
readme = readme.replace("\r\n", "\n").replace("\n", "\r\n").encode("cp1252")
stamp = (2026, 1, 1, 0, 0, 0)
for arch in ("win32", "win64"):
    name = f"dist/tamrix-{version}-{arch}.zip"
    with zipfile.ZipFile(name, "w", zipfile.ZIP_DEFLATED, compresslevel=9) as z:
        for inside, data in ((f"tamrix-{version}/tamrix.exe", open(f"build/{arch}/tamrix.exe", "rb").read()),
                             (f"tamrix-{version}/tamrix-etat.exe", open(f"build/{arch}/tamrix-etat.exe", "rb").read()),
                             (f"tamrix-{version}/LISEZMOI.txt", readme)):
            info = zipfile.ZipInfo(inside, stamp)
            info.compress_type = zipfile.ZIP_DEFLATED
            info.external_attr = 0o644 << 16
            z.writestr(info, data)
PY
(cd dist && sha256sum tamrix-"$version"-win32.zip tamrix-"$version"-win64.zip >SHA256SUMS)
echo "release written to dist/:"
ls -l dist
cat dist/SHA256SUMS
