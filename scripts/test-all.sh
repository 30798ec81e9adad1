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
ctest --test-dir build/ci --output-on-failure -j"$jobs" | tee build/ci-ctest.log

echo "== sanitizers =="
cmake -S . -B build/asan -G Ninja -DCMAKE_BUILD_TYPE=Debug -DCIFWARD_SANITIZE=ON >/dev/null
cmake --build build/asan -j"$jobs"
ASAN_OPTIONS=detect_leaks=1 UBSAN_OPTIONS=print_stacktrace=1 \
  ctest --test-dir build/asan --output-on-failure -j"$jobs" | tee build/asan-ctest.log

echo "== fuzz =="
FUZZ_SECONDS=${FUZZ_SECONDS:-60} bash fuzz/run.sh

# One closing line for the whole run; the fuzzer's statistics would otherwise come last.
totals=$(sed -n 's/.*tests passed, \([0-9]*\) tests failed out of \([0-9]*\).*/\1 \2/p' \
  build/ci-ctest.log build/asan-ctest.log | awk '{ failed += $1; total += $2 } END { print total - failed, failed }')
read -r passed failed <<<"$totals"
echo "tests: $passed passed, $failed failed"