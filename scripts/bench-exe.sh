#!/usr/bin/env bash
# What a packager compares between the shipped executables: their size (the goal is 2 MB,
# 2,000,000 bytes, or less each; exe-imports holds them to it), what each section holds of it, and the DLL functions each imports, with every import that Windows XP SP3 does not
# export named (from the list in tests/exe/xp-sp3-exports.txt). Figures only, never a fail:
# the test exe-imports is what holds the 32-bit program to XP.
#
# usage: scripts/bench-exe.sh [EXE]...   (default: tamrix.exe and tamrix-etat.exe of both builds)
set -euo pipefail

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
cd "$root"

exes=("$@")
((${#exes[@]})) || exes=(build/win32/tamrix.exe build/win32/tamrix-etat.exe build/win64/tamrix.exe build/win64/tamrix-etat.exe)
list=tests/exe/xp-sp3-exports.txt

echo "executables: size (goal 2 MB each) and imports against Windows XP SP3's exports"
for exe in "${exes[@]}"; do
  if [[ ! -f $exe ]]; then
    echo "  $exe: not built"
    continue
  fi
  bytes=$(stat -c %s "$exe")
  # "DLL function" for every import the table names (by name; an ordinal shows as its number).
  imports=$(x86_64-w64-mingw32-objdump -p "$exe" |
    awk '/DLL Name:/ {dll = tolower($3)} /^\t[0-9a-f]+\t +[0-9]+ / {print dll, $3}' | sort -u)
  newer=$(comm -23 <(printf '%s\n' "$imports") <(grep -v '^#' "$list" | awk 'NF >= 2 {print tolower($1), $2}' | sort -u))
  LC_ALL=C awk -v e="$exe" -v b="$bytes" 'BEGIN { printf "  %-28s %9d bytes = %5.2f MB  %s\n", e, b, b / 1000000, (b <= 2000000 ? "(within 2 MB)" : "(OVER 2 MB)") }'
  # The sections, largest first: code (.text), constants (.rdata), unwind tables (.pdata,
  # .xdata), resources (.rsrc), and a symbol table where one was left in.
  printf '    sections:'
  x86_64-w64-mingw32-objdump -h "$exe" | awk '$1 ~ /^[0-9]+$/ {print $2, $3}' |
    while read -r name hex; do echo "$name $((16#$hex))"; done |
    sort -k2,2nr | awk '{printf " %s %d KB", $1, ($2 + 512) / 1024} END {print ""}'
  printf '    %d functions from %d DLLs:' "$(printf '%s\n' "$imports" | grep -c .)" "$(printf '%s\n' "$imports" | awk '{print $1}' | sort -u | grep -c .)"
  printf '%s\n' "$imports" | awk '{n[$1]++} END {for (d in n) printf " %s %d", d, n[d]; print ""}'
  if [[ -z $newer ]]; then
    echo "    none newer than Windows XP SP3"
  else
    echo "    not exported by Windows XP SP3 (or not yet checked in the list): $(printf '%s\n' "$newer" | awk '{printf "%s!%s ", $1, $2}')"
  fi
done
