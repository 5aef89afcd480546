#!/usr/bin/env bash
# The system report's two forms for machines and browsers, from the real tamrix-etat.exe in the
# test prefix: the JSON read by a JSON parser, the CPU test's score and words in it, and the HTML
# page opened by a real browser (Debian's chromium, headless), whose picture must show the round
# bars in the pages' green. One PASS or FAIL line per check.
# usage (from scripts/test.sh, with its Wine environment): tests/e2e/report-forms.sh TREE OUTDIR SHOTDIR
set -u
tree=$1 out=$2 shots=$3
etat=build/$tree/tamrix-etat.exe
runner=(wine)
[[ $tree == win32 ]] && runner=(bash scripts/wine32.sh)
mkdir -p "$out" "$shots"
out=$(cd "$out" && pwd) shots=$(cd "$shots" && pwd)

check() {  # check NAME COMMAND...
  local name=$1
  shift
  if "$@"; then echo "PASS $name"; else echo "FAIL $name"; fi
}

json=$out/rapport-$tree.json html=$out/rapport-$tree.html cpu=$out/rapport-cpu-$tree.json
rm -f "$json" "$html" "$cpu"
"${runner[@]}" "$etat" rapport "$(winepath -w "$json")" --json >/dev/null 2>&1
"${runner[@]}" "$etat" rapport "$(winepath -w "$html")" --html >/dev/null 2>&1

check "the JSON report parses, with the seven sections in the order of the pages and one key a control" python3 - "$json" <<'EOF'
import json, sys
d = json.load(open(sys.argv[1], encoding="ascii"))
s = d["sections"]
assert list(s) == ["accueil", "windows", "pc", "disques", "bios", "processeur", "son"], list(s)
assert d["test_cpu"] is False
assert s["accueil"]["controles"]["lcd3"].startswith("Mémoire Vive Totale:     "), s["accueil"]
assert 0 <= s["accueil"]["controles"]["TamrixPBar2"] <= 100
assert s["disques"]["parties"], "no drive"
for drive in s["disques"]["parties"]:
    c = drive["controles"]
    assert list(c) == ["d1", "d6", "d2", "d3", "d4", "d5", "TamrixPBar3"], list(c)
    assert c["d3"].startswith("N°= de Série :         "), c
assert s["son"]["parties"], "no sound card"
for card in s["son"]["parties"]:
    for dst in card["parties"]:
        rows = dst["controles"]["lstDstLineInfo"]
        assert len(rows) == 11 and rows[1] == dst["titre"], rows
EOF

# The CPU test's own measure: 2 seconds of settling, 13 of counting.
"${runner[@]}" "$etat" rapport "$(winepath -w "$cpu")" --json --test-cpu >/dev/null 2>&1
check "the CPU test gives a score whose words and lit pictures follow it" python3 - "$cpu" <<'EOF'
import json, sys
c = json.load(open(sys.argv[1], encoding="ascii"))["sections"]["processeur"]["controles"]
score = int(c["iLabel1"])
levels = [(165, "Résultat: qualité maximale", 4), (110, "Résultat: Excelent", 3), (55, "Résultat: Ultra performant", 2),
          (40, "Résultat: performant", 1), (-1, "Résultat: Faible", 1)]
words, lit = next((w, n) for bound, w, n in levels if score > bound)
assert c["rst"] == words, (score, c["rst"])
assert [c["iImage%d" % i] for i in (5, 6, 7, 8)] == [i < lit for i in range(4)], c
print("CPU test score (%s): %d, %s" % (sys.argv[1].rsplit("-", 1)[-1][:-5], score, words), file=sys.stderr)
EOF

# The browser draws the page: the round bars (free memory, each drive's free space) in the
# pages' green, and every section's title in its text.
profile=$(mktemp -d)
shot=$shots/rapport-html-$tree.png
rm -f "$shot"
timeout 120 chromium --headless --no-sandbox --disable-gpu --user-data-dir="$profile" --hide-scrollbars \
  --window-size=1000,2600 --screenshot="$shot" "file://$html" >/dev/null 2>&1
dom=$(timeout 120 chromium --headless --no-sandbox --disable-gpu --user-data-dir="$profile" --dump-dom "file://$html" 2>/dev/null)
rm -rf "$profile"
check "chromium opens the HTML report and shows its seven sections" \
  test "$(grep -o '<section id="[a-z]*">' <<<"$dom" | tr -d '\n')" = \
  '<section id="accueil"><section id="windows"><section id="pc"><section id="disques"><section id="bios"><section id="processeur"><section id="son">'
green=$( [[ -f $shot ]] && convert "$shot" -fill black +opaque "#00c000" -fill white -opaque "#00c000" -format "%[fx:round(mean*w*h)]" info: 2>/dev/null)
echo "green pixels in $shot: ${green:-none}"
check "the browser's picture shows the round bars in the pages' green" test "${green:-0}" -gt 200
