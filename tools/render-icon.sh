#!/usr/bin/env bash
# Renders the program's icon, application/desktop/cifward.svg, to the PNG sizes that desktops
# without SVG support look for, next to it. The PNGs are committed; run this after changing the
# SVG. Needs rsvg-convert (scripts/install-deps.sh tools).
set -euo pipefail
dir=$(cd "$(dirname "$0")/../application/desktop" && pwd)
for size in 48 256; do
  rsvg-convert -w "$size" -h "$size" "$dir/cifward.svg" -o "$dir/cifward-$size.png"
done
