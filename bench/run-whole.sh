#!/usr/bin/env bash
# Whole voka runs beside their floors and peers, on generated DITA and DocBook
# documents of 10^4, 10^5 and 10^6 elements (SIZES to choose):
#   color DITA      voka color ("Ten rules split")  vs libxml2-floor dom
#   color DocBook   voka color ("DocBook rules")    vs libxml2-floor dom, and vs
#                   xsltproc with DocBook XSL's profiling stylesheet
#   uncolor DITA    voka uncolor of job 1's output  vs libxml2-floor dom of it
#   filter DITA     voka filter --type duplicate ("Reference profile")
#                                                   vs libxml2-floor dom with its
#                                                   dita filter (the same profile)
#   validate DITA   voka validate ("Audience values", rule 1 alone: about
#                   15,000 findings at 10^6)         vs libxml2-floor dom
#   info DITA       voka info                       vs xmllint --noout
# Each job runs voka and its floor in turn, PAIRS times (default 5; PAIRS_XSLT,
# default 3, for xsltproc, which takes 15-20 s at 10^6), so drift of a shared
# machine hits both sides alike. Wall time and peak memory of every run come
# from /usr/bin/time; the table gives medians and the per-pair ratios.
# Builds voka in Release into build-bench/ unless VOKA names a built binary.
# Work files go to a temporary folder, kept when WORK names one.
set -euo pipefail

fail() { echo "run-whole.sh: $*" >&2; exit 1; }

# Paths given relative to where the script was started, before the cd below.
root=$(cd "$(dirname "$0")/.." && pwd -P)
voka=""
if [ -n "${VOKA:-}" ]; then
  voka=$(realpath -e "$VOKA") || fail "VOKA names no file: $VOKA"
fi
if [ -n "${WORK:-}" ]; then
  work=$(realpath -m "$WORK")
  case "$work/" in "$root"/*) fail "WORK must be outside the source tree: $work" ;; esac
  mkdir -p "$work"
else
  work=$(mktemp -d)
  trap 'rm -rf "$work"' EXIT
fi
cd "$root"

sizes=${SIZES:-10000 100000 1000000}
pairs=${PAIRS:-5}
pairs_xslt=${PAIRS_XSLT:-3}
for count in "$pairs" "$pairs_xslt"; do
  [[ $count =~ ^[1-9][0-9]*$ ]] || fail "PAIRS and PAIRS_XSLT must be positive whole numbers"
done

scripts/install-deps --bench
if [ -z "$voka" ]; then
  cmake -S . -B build-bench -DCMAKE_BUILD_TYPE=Release -DVOKA_TESTS=OFF >/dev/null
  cmake --build build-bench -j"$(nproc)" --target voka >/dev/null
  voka=$PWD/build-bench/voka
fi
[ -x "$voka" ] || fail "no voka binary at $voka"

floor=$work/libxml2-floor
gcc -O2 -o "$floor" bench/libxml2-floor.c $(xml2-config --cflags --libs)
profile_xsl=/usr/share/xml/docbook/stylesheet/docbook-xsl-ns/profiling/profile.xsl
[ -f "$profile_xsl" ] || fail "DocBook XSL's profiling stylesheet is not at $profile_xsl (package docbook-xsl-ns)"

# One home for every run: first use installs the shipped files, then the bench
# schemes replace the local copy of the main settings.
home=$work/home
rm -rf "$home" && mkdir -p "$home"
"$voka" --home "$home" --quiet menus >/dev/null 2>"$work/stderr" || { cat "$work/stderr" >&2; fail "voka could not set up $home"; }
python3 bench/make-bench-settings.py "$home/Brindel/VOKA_MainSettings_LocalCopy.fm"
# Rules 2 and 3 would find every unmarked child of a marked element: off, so
# that the findings are rule 1's.
sed -i 's|<attribute name="ValRule\([23]\)Active"><value>1</value>|<attribute name="ValRule\1Active"><value>0</value>|' \
  "$home/Brindel/BR_Settings.fm"

results=$work/results
: >"$results"

# measure SIZE JOB SIDE COMMAND...: runs COMMAND once and appends
# "SIZE JOB SIDE seconds peak-KB" to the results; a failed run stops
# everything (an exit code up to $allowed, default 0, is no failure).
# Wall time from bash's microsecond clock (time's own counts hundredths, too
# coarse at 10^4 elements); peak memory from /usr/bin/time.
measure() {
  local n=$1 job=$2 side=$3 start end
  shift 3
  start=$EPOCHREALTIME
  local status=0
  /usr/bin/time -f "%M" -o "$work/time" "$@" >"$work/stdout" 2>"$work/stderr" || status=$?
  if ((status > ${allowed:-0})); then
    echo "run-whole.sh: this run failed ($(head -n1 "$work/time" 2>/dev/null)):" >&2
    printf ' %q' "$@" >&2
    printf '\n--- its standard error ---\n' >&2
    cat "$work/stderr" >&2
    exit 1
  fi
  end=$EPOCHREALTIME
  echo "$n $job $side $(awk -v a="$start" -v b="$end" 'BEGIN { printf "%.4f", b - a }') $(tail -n1 "$work/time")" >>"$results"
}

progress() { if [ -t 2 ]; then printf '\r%-70s\r' "$*" >&2; fi; }

for n in $sizes; do
  [[ $n =~ ^[1-9][0-9]*$ ]] || fail "SIZES must be whole numbers of elements: $n"
  dita=$work/dita-$n.xml
  docbook=$work/docbook-$n.xml
  progress "$n: generating"
  python3 bench/gen.py dita "$n" "$dita" >/dev/null
  python3 bench/gen.py docbook "$n" "$docbook" >/dev/null

  for ((i = 1; i <= pairs; i++)); do
    progress "$n: color DITA, pair $i of $pairs"
    measure "$n" color-dita voka "$voka" --home "$home" --quiet color "$dita" \
      --category Bench --scheme "Ten rules split" --out "$work/color-dita-$n"
    measure "$n" color-dita floor "$floor" dom "$dita" "$work/floor-out.xml"
  done

  # voka, floor, xsltproc in turn; each pairing keeps its own rounds.
  for ((i = 1; i <= pairs || i <= pairs_xslt; i++)); do
    progress "$n: color DocBook, round $i"
    measure "$n" color-docbook voka "$voka" --home "$home" --quiet color "$docbook" \
      --category Bench --scheme "DocBook rules" --out "$work/color-docbook-$n"
    if ((i <= pairs)); then
      measure "$n" color-docbook floor "$floor" dom "$docbook" "$work/floor-out.xml"
    fi
    if ((i <= pairs_xslt)); then
      # The generator's reference profile: the same elements the floor's docbook filter keeps.
      measure "$n" color-docbook xsltproc xsltproc --nonet \
        --stringparam profile.audience "expert;admin" --stringparam profile.os "linux;mac" \
        --stringparam profile.condition "pro;enterprise" -o "$work/xslt-out.xml" "$profile_xsl" "$docbook"
    fi
  done

  colored=$work/color-dita-$n/dita-$n.xml
  [ -f "$colored" ] || fail "voka color wrote no $colored"
  for ((i = 1; i <= pairs; i++)); do
    progress "$n: uncolor DITA, pair $i of $pairs"
    measure "$n" uncolor-dita voka "$voka" --home "$home" --quiet uncolor "$colored" \
      --category Bench --scheme "Ten rules split" --out "$work/uncolor-dita-$n"
    measure "$n" uncolor-dita floor "$floor" dom "$colored" "$work/floor-out.xml"
  done

  for ((i = 1; i <= pairs; i++)); do
    progress "$n: filter DITA, pair $i of $pairs"
    measure "$n" filter-dita voka "$voka" --home "$home" --quiet filter "$dita" --type duplicate \
      --category Bench --scheme "Reference profile" --out "$work/filter-dita-$n"
    measure "$n" filter-dita floor "$floor" dom "$dita" "$work/floor-out.xml" dita
  done

  for ((i = 1; i <= pairs; i++)); do
    progress "$n: validate DITA, pair $i of $pairs"
    # Findings make voka validate end with 1.
    allowed=1 measure "$n" validate-dita voka "$voka" --home "$home" --quiet validate "$dita" \
      --category Bench --scheme "Audience values" --out "$work/validate-dita-$n"
    measure "$n" validate-dita floor "$floor" dom "$dita" "$work/floor-out.xml"
  done

  for ((i = 1; i <= pairs; i++)); do
    progress "$n: info DITA, pair $i of $pairs"
    measure "$n" info-dita voka "$voka" --home "$home" --quiet info "$dita"
    measure "$n" info-dita xmllint xmllint --noout "$dita"
  done
done
progress ""

python3 - "$results" "$work" "$pairs" "$pairs_xslt" <<'PY'
import json, math, os, statistics, sys
from collections import defaultdict

results, work, pairs, pairs_xslt = sys.argv[1], sys.argv[2], int(sys.argv[3]), int(sys.argv[4])
runs = defaultdict(list)        # (size, job, side) -> [(seconds, kb)] in run order
sizes = []
for line in open(results):
    n, job, side, seconds, kb = line.split()
    n = int(n)
    if n not in sizes:
        sizes.append(n)
    runs[(n, job, side)].append((float(seconds), int(kb)))

def elements(flavour, n):
    return json.load(open(os.path.join(work, "%s-%d.xml.stats.json" % (flavour, n))))["elements"]

def ratios(a, b):
    return [x / y for x, y in zip(a, b) if x > 0 and y > 0]

def fmt_ratio(r):
    return "%.2fx" % r

ROWS = [("color-dita", "floor", "color DITA", "libxml2 dom"),
        ("color-docbook", "floor", "color DocBook", "libxml2 dom"),
        ("color-docbook", "xsltproc", "color DocBook", "xsltproc profile"),
        ("uncolor-dita", "floor", "uncolor DITA", "libxml2 dom"),
        ("filter-dita", "floor", "filter DITA", "libxml2 dom filter"),
        ("validate-dita", "floor", "validate DITA", "libxml2 dom"),
        ("info-dita", "xmllint", "info DITA", "xmllint --noout")]
ROW = "%-9s %-14s %-17s %8s %8s %8s %8s  %-24s %s"
head = ROW % ("elements", "job", "peer", "voka s", "voka MB", "peer s", "peer MB", "time ratio (min-max)", "memory ratio")
print(head)
print("-" * len(head))
for n in sizes:
    for job, side, label, peer in ROWS:
        theirs = runs.get((n, job, side))
        if not theirs:
            continue
        ours = runs[(n, job, "voka")][:len(theirs)]     # the rounds paired with this peer
        t = ratios([s for s, _ in ours], [s for s, _ in theirs])
        m = ratios([k for _, k in ours], [k for _, k in theirs])
        tr = "%s (%s-%s)" % (fmt_ratio(statistics.median(t)), fmt_ratio(min(t)), fmt_ratio(max(t))) if t else "-"
        mr = fmt_ratio(statistics.median(m)) if m else "-"
        print(ROW % (n, label, peer, "%.3f" % statistics.median(s for s, _ in ours),
                     "%.0f" % (statistics.median(k for _, k in ours) / 1024), "%.3f" % statistics.median(s for s, _ in theirs),
                     "%.0f" % (statistics.median(k for _, k in theirs) / 1024), tr, mr))
print("Ratios are voka over the peer, one per pair (%d pairs, %d with xsltproc); seconds are wall time, MB peak resident."
      % (pairs, pairs_xslt))

# How voka color's time grows: the log-log slope between the smallest and the
# largest size (1 is linear), and the time per element at each size.
if len(sizes) > 1:
    lo, hi = min(sizes), max(sizes)
    for job, flavour, label in [("color-dita", "dita", "DITA"), ("color-docbook", "docbook", "DocBook")]:
        t_lo = statistics.median(s for s, _ in runs[(lo, job, "voka")])
        t_hi = statistics.median(s for s, _ in runs[(hi, job, "voka")])
        e_lo, e_hi = elements(flavour, lo), elements(flavour, hi)
        per = ", ".join("%.2f us/element at %d" % (1e6 * statistics.median(s for s, _ in runs[(n, job, "voka")])
                                                   / elements(flavour, n), n) for n in sizes)
        if t_lo > 0:
            slope = math.log(t_hi / t_lo) / math.log(e_hi / e_lo)
            scaled = t_hi / (t_lo * e_hi / e_lo)
            print("Linearity of voka color %s, %d to %d elements: log-log slope %.2f (1 is linear); time per "
                  "element at %d is %.2fx that at %d (%s)" % (label, lo, hi, slope, hi, scaled, lo, per))
        else:
            print("Linearity of voka color %s: no time measured at %d (%s)" % (label, lo, per))
else:
    print("Linearity of voka color: needs two sizes or more (SIZES)")
PY

echo "Machine: $(nproc) cores, $(grep -m1 '^model name' /proc/cpuinfo | cut -d: -f2- | sed 's/^ *//'),"\
  "$(awk '/^MemTotal/ {printf "%.0f GB", $2 / 1048576}' /proc/meminfo); $(date '+%Y-%m-%d %H:%M %Z')"
echo "voka: $voka; $(xsltproc --version | head -n1)"
