#!/usr/bin/env bash
# Measures `cifward-check -j 2` against `-j 1` over the shared corpus and over 10,000 copies of its
# files, checked against the core dictionary with JSON Lines output as a run over a collection
# would be; checks that both give the same bytes, and writes the table into bench/README.md
# between the jobs markers. Nothing passes or fails on a figure.
#
# Usage: bash bench/jobs.sh
# Environment (all optional): BUILD_DIR (default build-bench), RUNS (timed runs, the best counts;
# default 3), COPIES (default 10000), JOBS (parallel compile jobs, default 1)
set -euo pipefail

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
cd "$root"
build=${BUILD_DIR:-$root/build-bench}
runs=${RUNS:-3}
copies=${COPIES:-10000}
readme=$root/bench/README.md
corpus=$root/../shared/corpus
[ -d "$corpus" ] || { echo "jobs.sh: $corpus is missing (../shared beside the repository)" >&2; exit 1; }

cmake -S "$root" -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=Release -DCIFWARD_BENCH=ON -DCIFWARD_TESTS=OFF >/dev/null
cmake --build "$build" -j "${JOBS:-1}" --target cifward-check
checker=$build/checker/cifward-check

tmp=$(mktemp -d)
trap 'rm -rf "$tmp"' EXIT
find "$corpus" -name '*.cif' | sort >"$tmp/corpus.txt"
# Copies rather than the same paths again, so that each is a file of its own to open and read.
mkdir "$tmp/copies"
/usr/bin/python3 - "$tmp/corpus.txt" "$tmp/copies" "$copies" >"$tmp/copies.txt" <<'EOF'
import shutil, sys
files = open(sys.argv[1]).read().split()
for i in range(int(sys.argv[3])):
    target = f"{sys.argv[2]}/{i:05d}-{files[i % len(files)].rsplit('/', 1)[-1]}"
    shutil.copyfile(files[i % len(files)], target)
    print(target)
EOF
cat $(cat "$tmp/corpus.txt") "$tmp"/copies/* >/dev/null
cp /proc/loadavg "$tmp/load"

# measure NAME LIST JOBS: the best wall time of $runs runs in $tmp/NAME.secs, the processor time
# of that run in $tmp/NAME.cpu, the report in $tmp/NAME.out. Exit status 1 means findings.
measure() {
  local name=$1 list=$2 jobs=$3 best= i t0 t1 secs status
  for ((i = 1; i <= runs; i++)); do
    t0=$(date +%s%N)
    status=0
    /usr/bin/time -f '%U %S' -o "$tmp/time" "$checker" -j "$jobs" --format jsonl --files-from "$list" \
      >"$tmp/$name.out" 2>"$tmp/$name.err" || status=$?
    t1=$(date +%s%N)
    [ "$status" -le 1 ] || { echo "jobs.sh: cifward-check failed ($status)" >&2; cat "$tmp/$name.err" >&2; exit 1; }
    secs=$(awk -v a="$t0" -v b="$t1" 'BEGIN { printf "%.3f", (b - a) / 1e9 }')
    echo "   $name run $i: $secs s"
    if [ -z "$best" ] || awk -v s="$secs" -v b="$best" 'BEGIN { exit !(s < b) }'; then
      best=$secs
      tail -n 1 "$tmp/time" | awk '{ printf "%.2f\n", $1 + $2 }' >"$tmp/$name.cpu"
    fi
  done
  echo "$best" >"$tmp/$name.secs"
}

rows=
for set in corpus copies; do
  measure "$set-1" "$tmp/$set.txt" 1
  measure "$set-2" "$tmp/$set.txt" 2
  same=yes
  cmp -s "$tmp/$set-1.out" "$tmp/$set-2.out" && cmp -s "$tmp/$set-1.err" "$tmp/$set-2.err" || same=no
  speedup=$(awk -v a="$(cat "$tmp/$set-1.secs")" -v b="$(cat "$tmp/$set-2.secs")" 'BEGIN { printf "%.2f", a / b }')
  label="the shared corpus"
  [ "$set" = corpus ] || label="$copies copies of corpus files"
  rows+="| $label | $(wc -l <"$tmp/$set.txt") | $(cat "$tmp/$set-1.secs") | $(cat "$tmp/$set-1.cpu") | $(cat "$tmp/$set-2.secs") | $(cat "$tmp/$set-2.cpu") | $speedup | $same |"$'\n'
done

{
  echo "<!-- jobs-results:begin -->"
  echo "Measured $(date -u '+%Y-%m-%d %H:%M UTC') with \`bash bench/jobs.sh\`, commit $(git rev-parse --short HEAD);"
  echo "$(nproc) cores, load average $(cut -d' ' -f1-3 "$tmp/load") when the timing began."
  echo
  echo "| files | count | -j 1 wall s | -j 1 processor s | -j 2 wall s | -j 2 processor s | speedup (wall) | same output |"
  echo "| --- | ---: | ---: | ---: | ---: | ---: | ---: | --- |"
  printf '%s' "$rows"
  echo "<!-- jobs-results:end -->"
} >"$tmp/results.md"

if grep -q '^<!-- jobs-results:begin -->' "$readme"; then
  awk -v results="$tmp/results.md" '
    /^<!-- jobs-results:begin -->/ { while ((getline line < results) > 0) print line; skip = 1; next }
    /^<!-- jobs-results:end -->/ { skip = 0; next }
    !skip { print }
  ' "$readme" >"$tmp/README.md"
else
  { cat "$readme"; echo; echo "## Checking many files at once"; echo
    echo "\`cifward-check --format jsonl --files-from LIST\` with \`-j 1\` and \`-j 2\`, the core dictionary"
    echo "beside the program; the time is the whole run, the best of \`RUNS\` runs (3), and the speedup is the -j 1"
    echo "time over the -j 2 time. \"same output\" compares the two reports byte for byte."
    echo; cat "$tmp/results.md"; } >"$tmp/README.md"
fi
cp "$tmp/README.md" "$readme"
cat "$tmp/results.md"
