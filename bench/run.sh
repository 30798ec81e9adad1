#!/usr/bin/env bash
# Measures how fast the CIF engine reads a large file and how much memory it takes, next to gemmi,
# then runs the Google Benchmark cases, and writes all of it into bench/README.md between the
# result markers. Nothing here passes or fails on a figure: the figures are for people to judge.
#
# Usage: bash bench/run.sh
# Environment (all optional):
#   BUILD_DIR      build directory (default build-bench in the repository)
#   BENCH_INPUT    the large input (default bench/data/big.cif, made when missing; git-ignored)
#   BENCH_SIZE_MB  size of the input to make (default 200)
#   RUNS           timed runs per reader, the best one counts (default 3)
#   JOBS           parallel compile jobs (default 1: the machine's cores are shared)
set -euo pipefail

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
cd "$root"
build=${BUILD_DIR:-$root/build-bench}
input=${BENCH_INPUT:-$root/bench/data/big.cif}
runs=${RUNS:-3}
readme=$root/bench/README.md

bash scripts/install-deps.sh bench

# Debian's python3-gemmi is seen by the system interpreter only; another python3 may come first.
py=
for candidate in /usr/bin/python3 python3; do
  if "$candidate" -c 'import gemmi' 2>/dev/null; then py=$candidate; break; fi
done
[ -n "$py" ] || { echo "run.sh: no python3 with the gemmi module" >&2; exit 1; }

echo "== building (Release) in $build"
cmake -S "$root" -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=Release -DCIFWARD_BENCH=ON \
  -DCIFWARD_TESTS=OFF >/dev/null
cmake --build "$build" -j "${JOBS:-1}" --target cif_read_once cif_bench

if [ ! -f "$input" ]; then
  echo "== making $input"
  "$py" "$root/bench/make_input.py" "$input" --size-mb "${BENCH_SIZE_MB:-200}"
fi
size=$(stat -c %s "$input")
mb=$(awk -v s="$size" 'BEGIN { printf "%.1f", s / 1e6 }')

tmp=$(mktemp -d)
trap 'rm -rf "$tmp"' EXIT

# Every reader finds the file in the page cache, the first one measured as much as the last.
cat "$input" >/dev/null
cp /proc/loadavg "$tmp/load"

# measure NAME COMMAND...: runs COMMAND $runs times under GNU time and leaves in $tmp/NAME.secs
# the best wall time, in $tmp/NAME.cpu the processor time (user + system) of that run, in
# $tmp/NAME.kb the largest peak resident size (KiB) and in $tmp/NAME.err the standard error of
# the best run. The clock is read here rather than taken from time's %e, which has only
# hundredths. Processor time is shown beside wall time because on a machine busy with other work
# wall time grows while processor time stays nearly put.
measure() {
  local name=$1; shift
  local best= kb=0 i t0 t1 secs peak cpu
  for ((i = 1; i <= runs; i++)); do
    t0=$(date +%s%N)
    if ! /usr/bin/time -f '%M %U %S' -o "$tmp/rss" "$@" >/dev/null 2>"$tmp/err"; then
      echo "run.sh: failed: $*" >&2
      cat "$tmp/err" >&2
      exit 1
    fi
    t1=$(date +%s%N)
    secs=$(awk -v a="$t0" -v b="$t1" 'BEGIN { printf "%.3f", (b - a) / 1e9 }')
    read -r peak cpu < <(tail -n 1 "$tmp/rss" | awk '{ printf "%s %.2f\n", $1, $2 + $3 }')
    echo "   $name run $i: $secs s wall, $cpu s processor, peak $peak KiB"
    if [ -z "$best" ] || awk -v s="$secs" -v b="$best" 'BEGIN { exit !(s < b) }'; then
      best=$secs
      echo "$cpu" >"$tmp/$name.cpu"
      cp "$tmp/err" "$tmp/$name.err"
    fi
    if [ "$peak" -gt "$kb" ]; then kb=$peak; fi
  done
  echo "$best" >"$tmp/$name.secs"
  echo "$kb" >"$tmp/$name.kb"
}

echo "== timing readers on $input ($mb MB), best of $runs"
measure ours "$build/bench/cif_read_once" "$input"
measure gemmi_py "$py" -c 'import gemmi, sys; gemmi.cif.read_file(sys.argv[1])' "$input"
measure gemmi_fast gemmi validate -f "$input"
dict=${CIFWARD_SHARED_DIR:-$root/../shared}/dict/cif_core.dic
measure ours_dict "$build/bench/cif_read_once" --dict "$dict" "$input"
# The read alone, without start-up and freeing, for both: our reader prints its own account;
# gemmi's is timed around read_file in the interpreter.
read_alone() {
  local best=
  for ((i = 1; i <= runs; i++)); do
    t=$("$py" -c 'import gemmi, sys, time
t0 = time.perf_counter(); d = gemmi.cif.read_file(sys.argv[1]); print("%.3f" % (time.perf_counter() - t0))' "$input")
    if [ -z "$best" ] || awk -v s="$t" -v b="$best" 'BEGIN { exit !(s < b) }'; then best=$t; fi
  done
  echo "$best"
}
gemmi_read_alone=$(read_alone)
ours_read_alone=$(sed -n 's/.* read in \([0-9.]*\) s .*/\1/p' "$tmp/ours.err" | tail -n 1)

# gemmi exits 1 when it reports findings, which a real file's values give; only worse is a failure.
measure gemmi_dict sh -c 'gemmi validate -d "$1" "$2" >/dev/null; [ $? -le 1 ]' gemmi_dict "$dict" "$input"

secs() { cat "$tmp/$1.secs"; }
cpu() { cat "$tmp/$1.cpu"; }
kb() { cat "$tmp/$1.kb"; }
rate() { awk -v s="$size" -v t="$(secs "$1")" 'BEGIN { printf "%.1f", s / 1e6 / t }'; }
rss_mb() { awk -v k="$(kb "$1")" 'BEGIN { printf "%.1f", k * 1024 / 1e6 }'; }
per_byte() { awk -v k="$(kb "$1")" -v s="$size" 'BEGIN { printf "%.2f", k * 1024 / s }'; }
ratio() { awk -v g="$(secs "$1")" -v o="$(secs "${2:-ours}")" 'BEGIN { printf "%.2f", g / o }'; }
cpu_ratio() { awk -v g="$(cpu "$1")" -v o="$(cpu "${2:-ours}")" 'BEGIN { printf "%.2f", (o > 0) ? g / o : 0 }'; }
verdict() { awk -v x="$1" -v lim="$2" -v dir="$3" \
  'BEGIN { ok = (dir == "ge") ? (x >= lim) : (x <= lim); print ok ? "met" : "not met" }'; }

ours_detail=$(tail -n 1 "$tmp/ours.err")
ratio_py=$(ratio gemmi_py)
ratio_fast=$(ratio gemmi_fast)
mem_ours=$(per_byte ours)
mem_py=$(per_byte gemmi_py)
mem_lower=$(awk -v a="$(kb ours)" -v b="$(kb gemmi_py)" 'BEGIN { print (a < b) ? "met" : "not met" }')

cpu_model=$(awk -F': ' '/^model name/ { print $2; exit }' /proc/cpuinfo)
mem_total=$(awk '/^MemTotal/ { printf "%.0f GiB", $2 / 1048576 }' /proc/meminfo)
gxx=$(g++ -dumpfullversion 2>/dev/null || echo unknown)
gemmi_version=$(gemmi --version 2>/dev/null | head -n 1)
commit=$(git -C "$root" rev-parse --short HEAD 2>/dev/null || echo "none yet")
# Other work on the machine slows every reader; the load when the timing began tells a reader
# of the table how quiet the run was.
load=$(cut -d' ' -f1-3 "$tmp/load")

{
  echo "Measured $(date -u '+%Y-%m-%d %H:%M UTC') with \`bash bench/run.sh\`, commit $commit."
  echo
  echo "Machine: $(nproc) cores ($cpu_model), $mem_total of memory; g++ $gxx, Release build;" \
       "$gemmi_version (Debian packages); load average $load when the timing began."
  echo
  echo "Input: \`$(basename "$input")\`, $size bytes ($mb MB), from bench/make_input.py."
  echo "Times are wall seconds of the whole process, best of $runs, with the processor seconds"
  echo "(user + system) of that run beside them; MB is 10^6 bytes."
  echo
  echo "| reader | wall s | processor s | MB/s | peak RSS MB | memory bytes per input byte | gemmi time / our time |"
  echo "| --- | ---: | ---: | ---: | ---: | ---: | ---: |"
  echo "| Cifward \`cif_read_once\` (Cif::read, empty dictionary) | $(secs ours) | $(cpu ours) | $(rate ours) | $(rss_mb ours) | $mem_ours | 1.00 |"
  echo "| gemmi python \`gemmi.cif.read_file\` (document) | $(secs gemmi_py) | $(cpu gemmi_py) | $(rate gemmi_py) | $(rss_mb gemmi_py) | $mem_py | $ratio_py |"
  echo "| \`gemmi validate -f\` (syntax only, no document) | $(secs gemmi_fast) | $(cpu gemmi_fast) | $(rate gemmi_fast) | $(rss_mb gemmi_fast) | $(per_byte gemmi_fast) | $ratio_fast |"
  echo
  echo "Targets (a ratio of 1.00 or more means our read is as fast or faster):"
  echo
  read_ratio=$(awk -v g="$gemmi_read_alone" -v o="$ours_read_alone" 'BEGIN { printf "%.2f", g / o }')
  echo "- faster than gemmi's python document read (ratio ≥ 1.0): $(verdict "$ratio_py" 1.0 ge) ($ratio_py; processor time ratio $(cpu_ratio gemmi_py))"
  echo "- the same for the read alone, without start-up and freeing: $(verdict "$read_ratio" 1.0 ge) (gemmi $gemmi_read_alone s, ours $ours_read_alone s: ratio $read_ratio)"
  echo "- lower peak memory than gemmi's python document read: $mem_lower ($mem_ours against $mem_py bytes per input byte)"
  echo "- as fast as \`gemmi validate -f\` (ratio ≥ 1.0): $(verdict "$ratio_fast" 1.0 ge) ($ratio_fast; processor time ratio $(cpu_ratio gemmi_fast))"
  echo "- at most 2 bytes of memory per input byte: $(verdict "$mem_ours" 2.0 le) ($mem_ours)"
  echo
  echo "Our reader's own account of its best run (the read alone, without start-up and freeing):"
  echo
  echo '```'
  echo "$ours_detail"
  echo '```'
  echo
  echo "With the IUCr core dictionary (\`cif_core.dic\` 2.4.5): every value checked as it is read."
  echo
  echo "| reader | wall s | processor s | MB/s | peak RSS MB | memory bytes per input byte | gemmi time / our time |"
  echo "| --- | ---: | ---: | ---: | ---: | ---: | ---: |"
  echo "| Cifward \`cif_read_once --dict\` (load dictionary, Cif::read with validation) | $(secs ours_dict) | $(cpu ours_dict) | $(rate ours_dict) | $(rss_mb ours_dict) | $(per_byte ours_dict) | 1.00 |"
  echo "| \`gemmi validate -d cif_core.dic\` | $(secs gemmi_dict) | $(cpu gemmi_dict) | $(rate gemmi_dict) | $(rss_mb gemmi_dict) | $(per_byte gemmi_dict) | $(ratio gemmi_dict ours_dict) |"
  echo
  echo "- read with validation at least as fast as \`gemmi validate -d\` (ratio ≥ 1.0): $(verdict "$(ratio gemmi_dict ours_dict)" 1.0 ge) ($(ratio gemmi_dict ours_dict); processor time ratio $(cpu_ratio gemmi_dict ours_dict))"
  echo "- the dictionary's load time, from our reader's account: $(tail -n 1 "$tmp/ours_dict.err" | sed -n 's/.*dictionary loaded in \([0-9.]* ms\).*/\1/p') (target: under 100 ms)"
} >"$tmp/table.md"

echo
cat "$tmp/table.md"

echo
echo "== Google Benchmark"
"$build/bench/cif_bench" --benchmark_counters_tabular=true "$input" 2>&1 | tee "$tmp/gbench.txt"

{
  echo "<!-- bench-results:begin -->"
  cat "$tmp/table.md"
  echo
  echo "Google Benchmark (\`cif_bench\`; its bytes_per_second is in MiB/s, 2^20 bytes; the warning"
  echo "about a DEBUG library concerns Debian's build of the benchmark library, not the code measured):"
  echo
  echo '```'
  cat "$tmp/gbench.txt"
  echo '```'
  echo "<!-- bench-results:end -->"
} >"$tmp/results.md"

# Only the part between the markers is replaced; the prose around it stays as written.
if grep -q '^<!-- bench-results:begin -->' "$readme" && grep -q '^<!-- bench-results:end -->' "$readme"; then
  awk -v results="$tmp/results.md" '
    /^<!-- bench-results:begin -->/ { while ((getline line < results) > 0) print line; skip = 1; next }
    /^<!-- bench-results:end -->/ { skip = 0; next }
    !skip { print }
  ' "$readme" >"$tmp/README.md"
else
  { cat "$readme"; echo; cat "$tmp/results.md"; } >"$tmp/README.md"
fi
cp "$tmp/README.md" "$readme"
echo
echo "== results written to $readme"
