#!/usr/bin/env bash
# A whole `voka color` run against the bare libxml2 parse, walk and write of
# the same file, side by side: wall time and peak memory of each, at 10^4,
# 10^5 and 10^6 elements (SIZES to choose). Builds voka in Release first.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/install-deps
cmake -S . -B build-bench -DCMAKE_BUILD_TYPE=Release -DVOKA_TESTS=OFF >/dev/null
cmake --build build-bench -j"$(nproc)" --target voka >/dev/null
work=${WORK:-$(mktemp -d)}
gcc -O2 -o "$work/libxml2-floor" bench/libxml2-floor.c $(xml2-config --cflags --libs)
python3 bench/make-bench-settings.py "$work/settings.fm"

measure() {  # prints "seconds peak-MB" of a command
  /usr/bin/time -f "%e %M" -o "$work/time" "$@" >/dev/null 2>"$work/stderr" || { cat "$work/stderr" >&2; return 1; }
  awk '{printf "%.2f s %6.0f MB", $1, $2/1024}' "$work/time"
}

printf "%-9s %-16s %-28s %-28s %s\n" elements scheme "voka color" "libxml2 dom floor" ratio
for n in ${SIZES:-10000 100000 1000000}; do
  python3 bench/gen.py dita "$n" "$work/doc-$n.xml" >/dev/null
  floor=$(measure "$work/libxml2-floor" dom "$work/doc-$n.xml" "$work/floor-$n.xml")
  for scheme in "Ten rules" "Ten rules split"; do
    home="$work/home-$n"
    rm -rf "$home" && mkdir -p "$home"
    build-bench/voka --home "$home" --quiet menus >/dev/null 2>&1
    cp "$work/settings.fm" "$home/Brindel/VOKA_MainSettings_LocalCopy.fm"
    run=$(measure build-bench/voka --home "$home" --quiet color "$work/doc-$n.xml" \
          --category Bench --scheme "$scheme" --out "$work/out-$n")
    ratio=$(awk -v a="${run%% s*}" -v b="${floor%% s*}" 'BEGIN{ if (b > 0) printf "%.1fx", a/b; else print "-" }')
    printf "%-9s %-16s %-28s %-28s %s\n" "$n" "$scheme" "$run" "$floor" "$ratio"
  done
done
