#!/usr/bin/env bash
# Times the 3D view off-screen under Xvfb with Mesa's software renderer (llvmpipe): frames of a
# real structure packed to 1,000, 10,000 and 50,000 atoms in three styles, next to GLU spheres
# drawn in immediate mode, the first frame after a model change, and a pick at 10,000 atoms. Then
# draws pictures of the structure in the three styles into build-bench/pictures/. Nothing passes
# or fails on a figure: copy the table into bench/README.md by hand when the figures change.
#
# Usage: bash bench/visualiser.sh    Environment: BUILD_DIR (default build-bench), JOBS (default 1)
set -euo pipefail

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
build=${BUILD_DIR:-$root/build-bench}
bash "$root/scripts/install-deps.sh" bench
cmake -S "$root" -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=Release -DCIFWARD_BENCH=ON -DCIFWARD_TESTS=OFF >/dev/null
cmake --build "$build" -j "${JOBS:-1}" --target visualiser_bench visualiser_pictures

export QT_QPA_PLATFORM=xcb
uptime
xvfb-run -a -s "-screen 0 1024x768x24" "$build/bench/visualiser_bench" 2>&1 | grep -v XDG_RUNTIME_DIR
mkdir -p "$build/pictures"
xvfb-run -a -s "-screen 0 1024x768x24" "$build/bench/visualiser_pictures" \
  "$root/../shared/corpus/cod/2006998-with-extra-tag.cif" "$build/pictures/2006998" 2>&1 | grep -v XDG_RUNTIME_DIR
