#!/usr/bin/env bash
# Builds and runs every test: the whole suite, then the engine, checker and toolkit tests again
# under AddressSanitizer and UndefinedBehaviorSanitizer, then the fuzzer for a bounded time.
set -euo pipefail
top=$(cd "$(dirname "$0")/.." && pwd)
cd "$top"
bash scripts/install-deps.sh test
jobs=$(nproc)

echo "== build and test =="
cmake -S . -B build/ci -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo >/dev/null
cmake --build build/ci -j"$jobs"
ctest --test-dir build/ci --output-on-failure -j"$jobs"

echo "== sanitizers =="
cmake -S . -B build/asan -G Ninja -DCMAKE_BUILD_TYPE=Debug -DCIFWARD_SANITIZE=ON >/dev/null
cmake --build build/asan -j"$jobs"
ASAN_OPTIONS=detect_leaks=1 UBSAN_OPTIONS=print_stacktrace=1 \
  ctest --test-dir build/asan --output-on-failure -j"$jobs"

echo "== fuzz =="
FUZZ_SECONDS=${FUZZ_SECONDS:-60} bash fuzz/run.sh
