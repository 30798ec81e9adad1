#!/usr/bin/env bash
# Builds the libFuzzer targets with clang and runs them for a bounded time in all, seeded with a
# copy of the shared corpus: two thirds of the time for the CIF reader, one third for the road
# from CIF to a crystal. Exits non-zero when the fuzzer finds a crash, a failed invariant or a hang;
# the input that did it is kept in the work directory's artifacts/ and its path is printed.
#
# Environment: FUZZ_SECONDS (default 60), FUZZ_BUILD_DIR (default build-fuzz in the repository),
# CIFWARD_SHARED_DIR (default ../shared beside the repository).
set -euo pipefail

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
build=${FUZZ_BUILD_DIR:-$root/build-fuzz}
shared=${CIFWARD_SHARED_DIR:-$root/../shared}
seconds=${FUZZ_SECONDS:-60}
max_len=65536

generator=()
command -v ninja >/dev/null && generator=(-G Ninja)
# Tests stay off: this build's engine carries the fuzzer's instrumentation.
CC=clang CXX=clang++ cmake -S "$root" -B "$build" "${generator[@]}" \
  -DCMAKE_BUILD_TYPE=RelWithDebInfo -DCIFWARD_FUZZ=ON -DCIFWARD_TESTS=OFF >/dev/null
cmake --build "$build" --target cif_read_fuzzer structure_fuzzer -j 1

work=$build/fuzz-work
mkdir -p "$work/corpus" "$work/artifacts"
# Seeds are copies: the shared corpus is never written to. The first byte of an input picks the
# line limit; '(' gives 80, the default. Files over the input size limit would only be cut.
if [ -d "$shared/corpus" ]; then
  while IFS= read -r -d '' file; do
    [ "$(stat -c %s "$file")" -lt "$max_len" ] || continue
    seed="$work/corpus/seed-$(basename "$(dirname "$file")")-$(basename "$file")"
    [ -e "$seed" ] || { printf '(' && cat "$file"; } >"$seed"
  done < <(find "$shared/corpus" -name '*.cif' -type f -print0)
else
  echo "run.sh: no corpus at $shared/corpus; fuzzing from an empty corpus" >&2
fi

# The structure fuzzer builds a crystal for each input, which takes far longer than a read: it
# starts from the corpus files with atom sites that are small enough for its first pass over them
# to fit its share of the time, in a corpus of its own.
structure_len=8192
mkdir -p "$work/structure-corpus"
for seed in "$work"/corpus/seed-*; do
  [ -e "$seed" ] || continue
  [ "$(stat -c %s "$seed")" -lt "$structure_len" ] && grep -q '_atom_site_fract_x' "$seed" || continue
  cp -n "$seed" "$work/structure-corpus/"
done

status=0
read_seconds=$((seconds * 2 / 3))
structure_seconds=$((seconds - read_seconds))
for target in "cif_read_fuzzer:$read_seconds:$max_len:corpus" \
              "structure_fuzzer:$structure_seconds:$structure_len:structure-corpus"; do
  IFS=: read -r name limit length corpus <<<"$target"
  "$build/fuzz/$name" -max_total_time="$limit" -max_len="$length" -timeout=10 \
    -artifact_prefix="$work/artifacts/$name-" -print_final_stats=1 "$work/$corpus" || status=$?
  if [ "$status" -ne 0 ]; then
    echo "run.sh: $name failed (exit $status); inputs kept in $work/artifacts:" >&2
    ls -1 "$work/artifacts" >&2
    break
  fi
done
exit "$status"
