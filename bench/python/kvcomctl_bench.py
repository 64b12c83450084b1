#!/usr/bin/env python3
"""Timings of the kvcomctl Python module, run by hand beside kvcore_bench.

    PYTHONPATH=build/python python3 bench/python/kvcomctl_bench.py
    build/bench/kvcore_bench --benchmark_filter='BM_(GenerateSequence|BlockFill)/23'

prbs(23) is compared with the C++ fill of the same 2^23 - 1 bits (BM_GenerateSequence/23,
which reuses its buffer, and BM_BlockFill/23); check_8b10b is timed on 10^7 symbols.
"""

import statistics
import time

import kvcomctl


def median_seconds(call, repeats):
    """The median of `repeats` timed calls, each result dropped before the next call."""
    times = []
    for _ in range(repeats):
        start = time.perf_counter()
        call()
        times.append(time.perf_counter() - start)
    return statistics.median(times)


def main():
    prbs = median_seconds(lambda: kvcomctl.prbs(23), 50)
    bits = 2**23 - 1
    print(f"prbs(23): {prbs * 1e6:.0f} us, {bits / prbs / 1e9:.2f} Gbit/s")

    symbols = kvcomctl.code_8b10b(10**6, seed=8)
    assert kvcomctl.check_8b10b(symbols) is None
    check = median_seconds(lambda: kvcomctl.check_8b10b(symbols), 20)
    print(f"check_8b10b(10^7 symbols): {check * 1e3:.2f} ms, {symbols.size / check / 1e9:.2f} "
          "Gsymbols/s")


if __name__ == "__main__":
    main()
