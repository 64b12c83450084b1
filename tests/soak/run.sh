#!/usr/bin/env bash
# tests/soak/run.sh SECONDS: runs the soak driver with fresh random seeds for SECONDS in all,
# against the sanitizer build when it is there, and prints the replay command of every failure.
# Each run is a new process with every component for a share of the time (KV_SOAK_RUN_SECONDS,
# default 40), so that leaks are checked at every exit.
set -uo pipefail
cd "$(dirname "$0")/../.."

build=build
[ -x build-sanitize/tests/soak/soak_driver ] && build=build-sanitize
driver="$build/tests/soak/soak_driver"
if [ ! -x "$driver" ]; then
    echo "soak: no $driver; build it first: cmake --build $build --target soak_driver" >&2
    exit 2
fi
work="$(mktemp -d "${TMPDIR:-/tmp}/kv-soak.XXXXXX")"
export QT_QPA_PLATFORM=offscreen UBSAN_OPTIONS=print_stacktrace=1
export ASAN_OPTIONS=detect_leaks=1:abort_on_error=1
export LSAN_OPTIONS="suppressions=$PWD/tests/sanitizers/lsan.supp:print_suppressions=0"
echo "soak: $driver for ${1:-60} s, logs in $work"

runs=0 failures=0 events=0
end=$((SECONDS + ${1:-60}))
while [ "$SECONDS" -lt "$end" ]; do
    run=$((end - SECONDS < ${KV_SOAK_RUN_SECONDS:-40} ? end - SECONDS : ${KV_SOAK_RUN_SECONDS:-40}))
    seed="$(od -An -N4 -tu4 /dev/urandom | tr -d ' ')"
    log="$work/seed-$seed.log"
    runs=$((runs + 1))
    if "$driver" --seed "$seed" --seconds $((run < 8 ? 8 : run)) --work "$work/work-$seed" >"$log" 2>&1; then
        count="$(sed -n 's/^soak_driver: passed: \([0-9]*\) events.*/\1/p' "$log")"
        events=$((events + ${count:-0}))
        echo "soak: seed $seed passed, ${count:-0} events"
        rm -f "$log"
    else
        failures=$((failures + 1))
        echo "soak: seed $seed FAILED ($log):"
        grep -E '^soak_driver: ' "$log" | tail -3
    fi
done
echo "soak: $runs runs, $events events in passed runs, $failures failed"
[ "$failures" -eq 0 ] && rm -rf "$work"
[ "$failures" -eq 0 ]
