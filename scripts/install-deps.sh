#!/usr/bin/env bash
# Installs the Debian packages the build, the tests, the fuzzer and the benchmarks need.
# Packages already present are skipped, so a second run costs one dpkg query.
# Usage: scripts/install-deps.sh [build|test|bench|tools|all]   (default: test)
# 'tools' is what the generators in tools/ read their data from, and the icon renderer.
set -euo pipefail

want=${1:-test}
pkgs=(cmake g++ ninja-build ccache libgtest-dev libgmock-dev libpcre2-dev qt6-base-dev zlib1g-dev libgl-dev
      libglu1-mesa-dev)
case "$want" in
  build) ;;
  # The 3D view's tests draw with Mesa's software renderer on an Xvfb display.
  test) pkgs+=(clang libclang-rt-14-dev gemmi python3-gemmi xvfb xauth libgl1-mesa-dri) ;;
  bench) pkgs+=(clang libclang-rt-14-dev gemmi python3-gemmi libbenchmark-dev time xvfb xauth libgl1-mesa-dri) ;;
  tools) pkgs+=(python3 libccp4-data libcod-tools-perl librsvg2-bin) ;;
  all) pkgs+=(clang libclang-rt-14-dev gemmi python3-gemmi libbenchmark-dev time python3 libccp4-data
              libcod-tools-perl librsvg2-bin xvfb xauth libgl1-mesa-dri) ;;
  *) echo "install-deps.sh: unknown set '$want' (build, test, bench, tools or all)" >&2; exit 2 ;;
esac

missing=()
for p in "${pkgs[@]}"; do
  dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed" || missing+=("$p")
done
[ ${#missing[@]} -eq 0 ] && exit 0

echo "Installing: ${missing[*]}"
SUDO=
[ "$(id -u)" -eq 0 ] || SUDO=sudo
export DEBIAN_FRONTEND=noninteractive
$SUDO apt-get update -qq
$SUDO apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null
