#!/usr/bin/env bash
# Builds the project and starts the desktop program on the bundled sample CIF when no file is
# named. It needs a display (an X or Wayland session).
set -euo pipefail
top=$(cd "$(dirname "$0")/.." && pwd)
bash "$top/scripts/install-deps.sh" build
cmake -S "$top" -B "$top/build/release" -G Ninja -DCMAKE_BUILD_TYPE=Release -DCIFWARD_TESTS=OFF >/dev/null
cmake --build "$top/build/release" --target cifward cifward-check -j"$(nproc)"
[ $# -gt 0 ] || set -- "$top/examples/sample.cif"
exec "$top/build/release/application/cifward" "$@"
