#!/usr/bin/env bash
# Shows that two builds give the same bytes: cifward-check's report (JSON with every finding
# against the core dictionary, and the text report without one) and the document written back
# through the writer, over the shared corpus and over damaged copies of it (bench/corrupt.py).
# For changes to the engine that must not change what it reads or writes.
#
# Usage: bash bench/compare-output.sh OLD_BUILD_DIR NEW_BUILD_DIR
# Each build directory holds checker/cifward-check and bench/cif_rewrite (configured with
# -DCIFWARD_BENCH=ON). Prints what differs and exits 1 if anything does.
set -euo pipefail
old_dir=$(realpath "$1") new_dir=$(realpath "$2")
for program in checker/cifward-check bench/cif_rewrite; do
  for dir in "$old_dir" "$new_dir"; do
    [ -x "$dir/$program" ] || { echo "compare-output.sh: no program $dir/$program" >&2; exit 2; }
  done
done
old=$old_dir/checker/cifward-check new=$new_dir/checker/cifward-check
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
shared=${CIFWARD_SHARED_DIR:-$root/../shared}
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

find "$shared/corpus" -name '*.cif' | sort >"$work/corpus.txt"
python3 "$root/bench/corrupt.py" "$work/damaged" $(cat "$work/corpus.txt")
{ cat "$work/corpus.txt"; find "$work/damaged" -name '*.cif' | sort; } >"$work/all.txt"
echo "$(wc -l <"$work/all.txt") files"

status=0
for mode in "--format json --dict-dir $shared/dict" "--no-dict"; do
  "$old" $mode --files-from "$work/all.txt" >"$work/old.report" 2>"$work/old.err" || true
  "$new" $mode --files-from "$work/all.txt" >"$work/new.report" 2>"$work/new.err" || true
  if ! cmp -s "$work/old.report" "$work/new.report" || ! cmp -s "$work/old.err" "$work/new.err"; then
    echo "reports differ ($mode):"
    diff "$work/old.report" "$work/new.report" | head -20 || true
    diff "$work/old.err" "$work/new.err" | head -5 || true
    status=1
  fi
done

"$old_dir/bench/cif_rewrite" <"$work/all.txt" >"$work/old.written"
"$new_dir/bench/cif_rewrite" <"$work/all.txt" >"$work/new.written"
if ! cmp -s "$work/old.written" "$work/new.written"; then
  echo "written text differs:"
  diff "$work/old.written" "$work/new.written" | head -20 || true
  status=1
fi
[ $status -eq 0 ] && echo "same reports and written text for every file"
exit $status
