#!/usr/bin/env bash
# Measures the CIF tools on the corpus's files under Xvfb: the box view opening a block with the
# core dictionary and its rebuild next to the check it follows, the loop editor on 4hir.cif's
# atom list (open, a cell edit, OK back into a main window's editor) next to a QTableWidget
# holding the same loop, and Replace All of "ATOM" in 4hir.cif next to Qt's plain text editor.
# Writes the table into bench/README.md between the ciftools markers.
#
# Usage: bash bench/ciftools.sh      Environment: BUILD_DIR (default build-bench), JOBS (default 1)
set -euo pipefail

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
cd "$root"
build=${BUILD_DIR:-$root/build-bench}
readme=$root/bench/README.md

bash scripts/install-deps.sh bench
cmake -S "$root" -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=Release -DCIFWARD_BENCH=ON -DCIFWARD_TESTS=OFF >/dev/null
cmake --build "$build" -j "${JOBS:-1}" --target ciftools_bench

tmp=$(mktemp -d)
trap 'rm -rf "$tmp"' EXIT
xvfb-run -a -s "-screen 0 1400x1000x24" "$build/bench/ciftools_bench" --benchmark_min_time=0.5 \
  2>&1 | grep -v -e propagateSizeHints -e XDG_RUNTIME_DIR | tee "$tmp/out.txt"

# Milliseconds of one row of the benchmark's table: wall clock, and processor time.
ms() { awk -v row="$1" '$1 == row { v = $2; if ($3 == "s") v *= 1000; if ($3 == "us") v /= 1000; print v }' "$tmp/out.txt"; }
cpu() { awk -v row="$1" '$1 == row { v = $4; if ($5 == "s") v *= 1000; if ($5 == "us") v /= 1000; print v }' "$tmp/out.txt"; }
both() { echo "$(ms "$1") ($(cpu "$1"))"; }
ratio() { awk -v a="$(ms "$1")" -v b="$(ms "$2")" 'BEGIN { printf "%.2f", a / b }'; }

{
  echo "<!-- ciftools-results:begin -->"
  echo "Measured $(date -u '+%Y-%m-%d %H:%M UTC') with \`bash bench/ciftools.sh\`, commit $(git rev-parse --short HEAD), under Xvfb;"
  echo "load average $(cut -d' ' -f1-3 /proc/loadavg) on $(nproc) cores. Milliseconds of wall clock, with the processor's"
  echo "in brackets: on a machine shared with other work the wall clock runs ahead of the processor time."
  echo
  echo "| what | ms | target | peer | peer ms | ratio (peer / ours) |"
  echo "|---|---:|---|---|---:|---:|"
  echo "| box view: open the block of 2001253 and all its categories | $(both BoxViewOpenBlock/2001253-not-numeric-limits.cif) | < 100 | | | |"
  echo "| box view: the same on 4hir.cif | $(both BoxViewOpenBlock/4hir.cif) | < 100 | | | |"
  echo "| box view: rebuild after a check of 4hir.cif | $(both BoxViewRebuild/4hir.cif) | small beside the check | the check itself | $(both CheckOnly/4hir.cif) | $(ratio CheckOnly/4hir.cif BoxViewRebuild/4hir.cif) |"
  echo "| loop editor: open 4hir.cif's atom list (21,237 x 19) | $(both LoopEditorOpen/4hir.cif) | < 1000 | QTableWidget with an item per cell | $(both QTableWidgetOpen/4hir.cif/iterations:2) | $(ratio QTableWidgetOpen/4hir.cif/iterations:2 LoopEditorOpen/4hir.cif) |"
  echo "| loop editor: one cell edit, shown | $(both LoopEditorCellEdit/4hir.cif) | < 50 | | | |"
  echo "| loop editor: OK, the loop written into the editor and checked again | $(both LoopEditorOkIntoEditor/4hir.cif/iterations:3) | < 1000 | | | |"
  echo "| Replace All of ATOM (21,237 matches) in 4hir.cif | $(both ReplaceAll/4hir.cif) | < 500 | Qt's plain editor, same edit | $(both PlainQtReplaceAll/4hir.cif) | $(ratio PlainQtReplaceAll/4hir.cif ReplaceAll/4hir.cif) |"
  echo
  echo '```'
  cat "$tmp/out.txt"
  echo '```'
  echo "<!-- ciftools-results:end -->"
} >"$tmp/results.md"

if grep -q '^<!-- ciftools-results:begin -->' "$readme"; then
  awk -v results="$tmp/results.md" '
    /^<!-- ciftools-results:begin -->/ { while ((getline line < results) > 0) print line; skip = 1; next }
    /^<!-- ciftools-results:end -->/ { skip = 0; next }
    !skip { print }
  ' "$readme" >"$tmp/README.md"
else
  { cat "$readme"; echo; echo "## CIF tools"; echo
    echo "The box view, the loop editor and Replace All on the corpus's files, each on screen until painted."
    echo "Replace All is followed, outside the clock, by one Undo that must give the text back byte for byte."
    echo; cat "$tmp/results.md"; } >"$tmp/README.md"
fi
cp "$tmp/README.md" "$readme"
echo "== results written to $readme"
