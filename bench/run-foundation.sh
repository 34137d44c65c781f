#!/usr/bin/env bash
# The foundation's figures beside the bare libxml2 floor, on generated DITA
# documents of 10^4, 10^5 and 10^6 elements (SIZES to choose, FLAVOUR=docbook
# for the other vocabulary): load, load+save, host walks with and without
# attribute reads, a text property set over every element's range, save, and
# libxml2's parse+walk+write of the same file. Elements per second come from
# Google Benchmark; peak memory from /usr/bin/time, one process per figure.
# Builds in Release first; never more than two jobs.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/install-deps
build=${BUILD:-build-bench-foundation}
cmake -S . -B "$build" -DCMAKE_BUILD_TYPE=Release -DVOKA_BENCH=ON -DVOKA_TESTS=OFF >/dev/null
cmake --build "$build" -j2 --target voka_bench_foundation libxml2-floor >/dev/null
bench="$build/bench/voka_bench_foundation"
floor="$build/bench/libxml2-floor"
work=${WORK:-$(mktemp -d)}
flavour=${FLAVOUR:-dita}

measure() {  # prints "seconds peak-KB" of one process
  /usr/bin/time -f "%e %M" -o "$work/time" "$@" >"$work/stdout" 2>"$work/stderr" || { cat "$work/stderr" >&2; return 1; }
  cat "$work/time"
}

for n in ${SIZES:-10000 100000 1000000}; do
  input="$work/$flavour-$n.xml"
  python3 bench/gen.py "$flavour" "$n" "$input" >/dev/null
  elements=$(python3 -c 'import json,sys; print(json.load(open(sys.argv[1]))["elements"])' "$input.stats.json")
  {
    echo "elements $elements"
    echo "floor $(measure "$floor" dom "$input" "$work/floor-out.xml")"
    for op in load load+save walk walk+attributes set-property; do
      echo "oneshot-$op $(measure "$bench" --oneshot="$op" --input="$input" --output="$work/voka-out.xml")"
    done
  } >"$work/figures-$n.txt"
  "$bench" --input="$input" --benchmark_format=json --benchmark_min_time=0.5 >"$work/bench-$n.json" 2>/dev/null
  python3 - "$work/figures-$n.txt" "$work/bench-$n.json" "$flavour" <<'PY'
import json, sys
figures = dict(line.split(" ", 1) for line in open(sys.argv[1]).read().splitlines())
elements = int(figures["elements"])
rates = {b["name"].split("/")[0]: b.get("items_per_second", 0) for b in json.load(open(sys.argv[2]))["benchmarks"]}
def process(key):
    seconds, kb = figures[key].split()
    return float(seconds), int(kb) * 1024
floor_s, floor_b = process("floor")
print(f"\n{elements} elements, {sys.argv[3]}")
print(f"{'':28}{'seconds':>9}{'elements/s':>14}{'peak MB':>9}{'B/element':>11}{'vs floor':>10}")
def row(label, seconds, rate, peak, compare=False):
    vs = f"{seconds / floor_s:.2f}x" if compare and floor_s > 0 else ""
    mb = f"{peak / 1e6:.0f}" if peak else ""
    per = f"{peak / elements:.0f}" if peak else ""
    print(f"{label:28}{seconds:9.3f}{rate / 1e6:13.2f}M{mb:>9}{per:>11}{vs:>10}")
row("libxml2 dom floor", floor_s, elements / floor_s if floor_s else 0, floor_b)
for op, bench in [("load", "BM_Load"), ("load+save", None), ("walk", "BM_Walk"),
                  ("walk+attributes", "BM_WalkWithAttributes"), ("set-property", "BM_SetTextProperty")]:
    seconds, peak = process("oneshot-" + op)
    rate = rates.get(bench, 0) if bench else (elements / seconds if seconds else 0)
    label = {"walk": "host walk (+load)", "walk+attributes": "walk+attributes (+load)",
             "set-property": "set property (+load)"}.get(op, "voka " + op)
    row(label, seconds, rate, peak, op in ("load", "load+save"))
print(f"{'voka save':28}{'':9}{rates.get('BM_Save', 0) / 1e6:13.2f}M")
PY
done
echo
echo "Rates of the walks, the property and save are in-process (Google Benchmark);"
echo "seconds and peak memory are whole processes, the walks and the property including the load."
