#!/usr/bin/env bash
# How big voka's HTML picture of a document is and how long headless Chromium
# takes to open it: a generated DITA topic of SIZES elements (default 10^6),
# coloured with the bench scheme "Ten rules split" as run-whole.sh does it;
# the page's bytes, bytes per element, and the time from starting the browser
# on the page to its screenshot (load, style, layout and paint of the first
# screen), less the same for a page of one line, as the median of RUNS
# (default 3). PAGE names an existing page to time instead (no generating).
# Builds voka in Release into build-bench/ unless VOKA names a built binary;
# CHROMIUM names the browser (default /usr/bin/chromium). Work files go to a
# temporary folder, kept when WORK names one.
set -euo pipefail

fail() { echo "page-open.sh: $*" >&2; exit 1; }

root=$(cd "$(dirname "$0")/.." && pwd -P)
chromium=${CHROMIUM:-/usr/bin/chromium}
[ -x "$chromium" ] || fail "no browser at $chromium (CHROMIUM names one)"
runs=${RUNS:-3}
[[ $runs =~ ^[1-9][0-9]*$ ]] || fail "RUNS must be a positive whole number"
page=""
if [ -n "${PAGE:-}" ]; then page=$(realpath -e "$PAGE") || fail "PAGE names no file: $PAGE"; fi
voka=""
if [ -n "${VOKA:-}" ]; then voka=$(realpath -e "$VOKA") || fail "VOKA names no file: $VOKA"; fi
if [ -n "${WORK:-}" ]; then
  work=$(realpath -m "$WORK")
  mkdir -p "$work"
else
  work=$(mktemp -d)
  trap 'rm -rf "$work"' EXIT
fi
cd "$root"

# seconds PAGE: one browser run on PAGE with a fresh profile, wall time to the screenshot.
seconds() {
  rm -rf "$work/profile"
  local start=$EPOCHREALTIME
  "$chromium" --headless --no-sandbox --disable-gpu --no-first-run --disable-background-networking \
    --disable-component-update --disable-sync --user-data-dir="$work/profile" --window-size=1280,1024 \
    --screenshot="$work/shot.png" "file://$1" >/dev/null 2>"$work/browser.err" ||
    { cat "$work/browser.err" >&2; fail "the browser failed on $1"; }
  awk -v a="$start" -v b="$EPOCHREALTIME" 'BEGIN { printf "%.3f\n", b - a }'
}
median() { sort -n | awk '{ v[NR] = $1 } END { print (NR % 2) ? v[(NR + 1) / 2] : (v[NR / 2] + v[NR / 2 + 1]) / 2 }'; }

# open-time PAGE: the median over RUNS of the page's time less a one-line page's.
open_time() {
  echo '<!DOCTYPE html><p>x' >"$work/blank.html"
  local base times
  base=$(for ((i = 1; i <= runs; i++)); do seconds "$work/blank.html"; done | median)
  times=$(for ((i = 1; i <= runs; i++)); do seconds "$1"; done | median)
  awk -v t="$times" -v b="$base" 'BEGIN { printf "%.2f s (browser start %.2f s not counted)\n", t - b, b }'
}

if [ -n "$page" ]; then
  echo "$page: $(stat -c %s "$page") bytes, opens in $(open_time "$page")"
  exit 0
fi

if [ -z "$voka" ]; then
  cmake -S . -B build-bench -DCMAKE_BUILD_TYPE=Release -DVOKA_TESTS=OFF >/dev/null
  cmake --build build-bench -j2 --target voka >/dev/null
  voka=$PWD/build-bench/voka
fi
[ -x "$voka" ] || fail "no voka binary at $voka"

home=$work/home
rm -rf "$home" && mkdir -p "$home"
"$voka" --home "$home" --quiet menus >/dev/null 2>"$work/stderr" || { cat "$work/stderr" >&2; fail "voka could not set up $home"; }
python3 bench/make-bench-settings.py "$home/Brindel/VOKA_MainSettings_LocalCopy.fm"

for n in ${SIZES:-1000000}; do
  [[ $n =~ ^[1-9][0-9]*$ ]] || fail "SIZES must be whole numbers of elements: $n"
  dita=$work/dita-$n.xml
  python3 bench/gen.py dita "$n" "$dita" >/dev/null
  "$voka" --home "$home" --quiet --yes color "$dita" --category Bench --scheme "Ten rules split" \
    --out "$work/out-$n" >/dev/null 2>"$work/stderr" || { cat "$work/stderr" >&2; fail "voka color failed on $dita"; }
  html=$work/out-$n/dita-$n.html
  elements=$(python3 -c 'import json, sys; print(json.load(open(sys.argv[1]))["elements"])' "$dita.stats.json")
  bytes=$(stat -c %s "$html")
  echo "$n: $elements elements, page $bytes bytes ($(awk -v b="$bytes" -v e="$elements" 'BEGIN { printf "%.1f", b / e }') per element), opens in $(open_time "$html")"
done
