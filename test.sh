#!/usr/bin/env bash
# Installs what is missing, builds, runs every test through CTest, runs the
# core, command-line, widget, host and soak tests again under AddressSanitizer
# and UndefinedBehaviorSanitizer, and fails when the tests left a file behind
# in the working tree.
set -euo pipefail
cd "$(dirname "$0")"
source scripts/common.sh

# What the tree holds before the run, ignored files included; the build
# folders this script makes are its own.
tree_state() {
    git status --porcelain --ignored --untracked-files=all -- . ':!build' ':!build-sanitize' ':!build-fuzz'
}
in_checkout=false
if git rev-parse --is-inside-work-tree >/dev/null 2>&1; then
    in_checkout=true
    before="$(tree_state)"
fi

kv_install_missing
kv_build build -DCMAKE_BUILD_TYPE=Release
ctest --test-dir build --output-on-failure -j"$(nproc)"

# The sanitizers watch the library's own code: the core and command-line
# tests, the widget tests (a few seconds), the hosts that load the library
# (tests/host) and the soak driver (tests/soak, label "soak"). The CTest labels
# are set in tests/; the package, Python, acceptance and source checks run
# once, above.
echo "== core, command-line, widget, host and soak tests under AddressSanitizer and UndefinedBehaviorSanitizer"
kv_build build-sanitize -DCMAKE_BUILD_TYPE=RelWithDebInfo -DKV_SANITIZE=ON -DKV_BENCHMARKS=OFF \
    -DKV_PRECOMPILED_HEADERS=ON
ASAN_OPTIONS=detect_leaks=1:abort_on_error=1 \
    LSAN_OPTIONS="suppressions=$PWD/tests/sanitizers/lsan.supp:print_suppressions=0" \
    UBSAN_OPTIONS=print_stacktrace=1 \
    ctest --test-dir build-sanitize --output-on-failure -j"$(nproc)" -L '^(core|cli|ui|host|soak)$'

# --- fuzzing (fuzz/run.sh): every libFuzzer target for a few seconds over a
# copy of its seed corpus; skipped with a message when clang is not installed.
echo "== fuzz targets, a short run each"
KV_FUZZ_SEED=1 fuzz/run.sh all 5
# --- end of fuzzing

if $in_checkout; then
    stray="$(comm -13 <(echo "$before" | sort) <(tree_state | sort))"
    if [ -n "$stray" ]; then
        echo "The tests left files in the working tree:" >&2
        echo "$stray" >&2
        exit 1
    fi
    echo "== the working tree is as the tests found it"
fi
