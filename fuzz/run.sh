#!/usr/bin/env bash
# Usage: fuzz/run.sh TARGET|all [SECONDS]
#
# Builds the libFuzzer targets with clang (in build-fuzz, or $KV_FUZZ_BUILD)
# and runs each named one for SECONDS (default 5) over a copy of its seed
# corpus in fuzz/corpus/TARGET (with the words of fuzz/dict/TARGET.dict when
# there is one), so nothing is written to the source tree.
# A target that fails leaves its log and the input that failed in a
# temporary folder that is named on the way out; the status is then 1.
# Without clang (or its libFuzzer runtime) it says so and succeeds.
set -euo pipefail
root="$(cd "$(dirname "$0")/.." && pwd)"
cd "$root"

mapfile -t all_targets < <(grep -v '^#' fuzz/Targets.txt)

usage() {
    echo "usage: fuzz/run.sh TARGET|all [SECONDS]" >&2
    echo "targets: ${all_targets[*]}" >&2
    exit 2
}

[ $# -ge 1 ] && [ $# -le 2 ] || usage
seconds="${2:-5}"
[[ "$seconds" =~ ^[1-9][0-9]*$ ]] || usage
if [ "$1" = all ]; then
    targets=("${all_targets[@]}")
else
    [[ " ${all_targets[*]} " == *" $1 "* ]] || usage
    targets=("$1")
fi

if ! command -v clang++ >/dev/null 2>&1; then
    echo "fuzzing skipped: clang not installed"
    exit 0
fi
probe="$(mktemp -d)"
trap 'rm -rf "$probe"' EXIT
echo 'extern "C" int LLVMFuzzerTestOneInput(const unsigned char*, unsigned long) { return 0; }' \
    >"$probe/probe.cpp"
if ! clang++ -fsanitize=fuzzer "$probe/probe.cpp" -o "$probe/probe" >/dev/null 2>&1; then
    echo "fuzzing skipped: clang has no libFuzzer runtime (Debian: libclang-rt-14-dev)"
    exit 0
fi

build="${KV_FUZZ_BUILD:-$root/build-fuzz}"
if [ ! -f "$build/build.ninja" ]; then
    cmake -S fuzz -B "$build" -G Ninja -DCMAKE_CXX_COMPILER=clang++ -DKV_PRECOMPILED_HEADERS=ON
fi
cmake --build "$build" -j"$(nproc)" --target "${targets[@]}"

export ASAN_OPTIONS="${ASAN_OPTIONS:-detect_leaks=1}"
export UBSAN_OPTIONS="${UBSAN_OPTIONS:-print_stacktrace=1:halt_on_error=1}"
# fuzz TARGET WORK: one run over a copy of the target's corpus in WORK; its
# output goes to WORK/log and its status to WORK/status.
fuzz() {
    local target="$1" work="$2"
    mkdir "$work/corpus"
    cp -R "fuzz/corpus/$target/." "$work/corpus/"
    local options=()
    # A fixed seed (KV_FUZZ_SEED) makes a short run try the same inputs on
    # every machine, a prefix of the same sequence on a slower one, so that a
    # test run cannot fail by luck; a run without it explores anew.
    if [ -n "${KV_FUZZ_SEED:-}" ]; then
        options+=(-seed="$KV_FUZZ_SEED")
    fi
    if [ -f "fuzz/dict/$target.dict" ]; then
        options+=(-dict="fuzz/dict/$target.dict")
    fi
    # The targets keep their scratch files under $TMPDIR: inside the work folder.
    local status=0
    TMPDIR="$work" "$build/$target" "${options[@]}" -max_total_time="$seconds" \
        -timeout=20 -rss_limit_mb=2048 -print_final_stats=1 -artifact_prefix="$work/" \
        "$work/corpus" >"$work/log" 2>&1 || status=$?
    echo "$status" >"$work/status"
}

# A target runs on one core: as many run at once as there are cores, and
# their reports follow in the order of the list.
declare -A works
for target in "${targets[@]}"; do
    while [ "$(jobs -pr | wc -l)" -ge "$(nproc)" ]; do
        wait -n || true
    done
    works[$target]="$(mktemp -d "${TMPDIR:-/tmp}/kvfuzz-$target-XXXXXX")"
    fuzz "$target" "${works[$target]}" &
done
wait || true

failed=()
for target in "${targets[@]}"; do
    work="${works[$target]}"
    if [ "$(cat "$work/status" 2>/dev/null)" = 0 ]; then
        runs="$(sed -n 's/^stat::number_of_executed_units: *//p' "$work/log")"
        echo "$target: ${runs:-?} inputs in ${seconds} s, nothing found"
        rm -rf "$work"
    else
        echo "$target: FAILED; log and failing input in $work"
        grep -E "==fuzz check failed==|ERROR: (AddressSanitizer|libFuzzer)|runtime error" \
            "$work/log" | head -5 | cut -c1-400 || true
        failed+=("$target")
    fi
done
if [ ${#failed[@]} -gt 0 ]; then
    echo "fuzz targets that failed: ${failed[*]}"
    exit 1
fi
