#!/usr/bin/env bash
# Measures the editor on the corpus's 4hir.cif (44,000 lines, 2 MB) and on a 20 MB CIF made from
# the corpus: load until the first screen is painted, the main window opening and checking the
# file, a keystroke in the middle, a jump to the end; next to Qt's plain text editor loading the
# same text. Writes the table into bench/README.md between the editor markers. Runs under Xvfb, as the editor needs a display.
#
# Usage: bash bench/editor.sh      Environment: BUILD_DIR (default build-bench), JOBS (default 1)
set -euo pipefail

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
cd "$root"
build=${BUILD_DIR:-$root/build-bench}
readme=$root/bench/README.md
small=$root/../shared/corpus/iucr-ciftest/real/4hir.cif
large=$root/bench/data/editor20.cif

bash scripts/install-deps.sh bench
[ -f "$small" ] || { echo "editor.sh: $small is missing (../shared beside the repository)" >&2; exit 1; }
cmake -S "$root" -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=Release -DCIFWARD_BENCH=ON -DCIFWARD_TESTS=OFF >/dev/null
cmake --build "$build" -j "${JOBS:-1}" --target editor_bench
[ -f "$large" ] || /usr/bin/python3 "$root/bench/make_input.py" "$large" --size-mb 20

tmp=$(mktemp -d)
trap 'rm -rf "$tmp"' EXIT
BENCH_EDITOR_FILES="$small:$large" xvfb-run -a "$build/bench/editor_bench" --benchmark_min_time=0.5 \
  2>&1 | grep -v -e propagateSizeHints -e XDG_RUNTIME_DIR | tee "$tmp/out.txt"

# Milliseconds of one row of the benchmark's table.
ms() { awk -v row="$1" '$1 == row { v = $2; if ($3 == "s") v *= 1000; if ($3 == "us") v /= 1000; print v }' "$tmp/out.txt"; }
ratio() { awk -v a="$(ms "$1")" -v b="$(ms "$2")" 'BEGIN { printf "%.2f", a / b }'; }

{
  echo "<!-- editor-results:begin -->"
  echo "Measured $(date -u '+%Y-%m-%d %H:%M UTC') with \`bash bench/editor.sh\`, commit $(git rev-parse --short HEAD), under Xvfb."
  echo
  echo "| file | lines | CIF editor load ms | Qt plain editor load ms | ratio | main window open and check ms | keystroke ms | jump to end ms |"
  echo "|---|---|---|---|---|---|---|---|"
  for f in "$small" "$large"; do
    n=$(basename "$f")
    echo "| $n | $(wc -l <"$f") | $(ms "CifEditorLoad/$n") | $(ms "PlainQtEditorLoad/$n") | $(ratio "CifEditorLoad/$n" "PlainQtEditorLoad/$n") | $(ms "MainWindowOpenAndCheck/$n") | $(ms "CifEditorKeystroke/$n") | $(ms "CifEditorJumpToEnd/$n") |"
  done
  echo
  echo '```'
  cat "$tmp/out.txt"
  echo '```'
  echo "<!-- editor-results:end -->"
} >"$tmp/results.md"

if grep -q '^<!-- editor-results:begin -->' "$readme"; then
  awk -v results="$tmp/results.md" '
    /^<!-- editor-results:begin -->/ { while ((getline line < results) > 0) print line; skip = 1; next }
    /^<!-- editor-results:end -->/ { skip = 0; next }
    !skip { print }
  ' "$readme" >"$tmp/README.md"
else
  { cat "$readme"; echo; echo "## Editor"; echo
    echo "Load is \`setText\` until the first screen is painted, with the highlighter, the core"
    echo "dictionary and the line numbers; the peer is Qt's QPlainTextEdit with neither, in the same run."
    echo; cat "$tmp/results.md"; } >"$tmp/README.md"
fi
cp "$tmp/README.md" "$readme"
echo "== results written to $readme"
