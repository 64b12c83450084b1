#!/usr/bin/env bash
# Installs what is missing, builds, runs every test through CTest, then runs
# the core tests again under AddressSanitizer and UndefinedBehaviorSanitizer.
set -euo pipefail
cd "$(dirname "$0")"
source scripts/common.sh

kv_install_missing
kv_build build -DCMAKE_BUILD_TYPE=Release
ctest --test-dir build --output-on-failure -j"$(nproc)"

echo "== core tests under AddressSanitizer and UndefinedBehaviorSanitizer"
kv_build build-sanitize -DCMAKE_BUILD_TYPE=RelWithDebInfo -DKV_CORE_ONLY=ON -DKV_SANITIZE=ON
ASAN_OPTIONS=detect_leaks=1:abort_on_error=1 UBSAN_OPTIONS=print_stacktrace=1 \
    ctest --test-dir build-sanitize --output-on-failure -j"$(nproc)"

# --- fuzzing (fuzz/run.sh): every libFuzzer target for a few seconds over a
# copy of its seed corpus; skipped with a message when clang is not installed.
echo "== fuzz targets, a short run each"
fuzz/run.sh all 5
# --- end of fuzzing
