#!/usr/bin/env bash
# Times bond detection (the grid beside the plain loop over all pairs) and packing on a real
# structure of the shared corpus. Nothing passes or fails on a figure: copy the table into
# bench/README.md by hand when the figures change.
#
# Usage: bash bench/structures.sh
# Environment (all optional): BUILD_DIR (default build-bench), JOBS (default 1).
set -euo pipefail

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
build=${BUILD_DIR:-$root/build-bench}
bash "$root/scripts/install-deps.sh" bench
cmake -S "$root" -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=Release -DCIFWARD_BENCH=ON -DCIFWARD_TESTS=OFF >/dev/null
cmake --build "$build" -j "${JOBS:-1}" --target structure_bench
"$build/bench/structure_bench"
