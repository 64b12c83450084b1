#!/usr/bin/env python3
"""Timings of the kvcomctl Python module, run by hand beside kvcore_bench.

    PYTHONPATH=build/python python3 bench/python/kvcomctl_bench.py
    build/bench/kvcore_bench --benchmark_filter='BM_(GenerateSequence|BlockFill)/23'

prbs(23) is compared with the C++ fill of the same 2^23 - 1 bits (BM_GenerateSequence/23,
which reuses its buffer, and BM_BlockFill/23); check_8b10b is timed on 10^7 symbols.
"""


import kvcomctl
from bench_timing import median_seconds


def main():
    wall, cpu = median_seconds(lambda: kvcomctl.prbs(23), 50)
    bits = 2**23 - 1
    print(f"prbs(23): {wall * 1e6:.0f} us wall, {cpu * 1e6:.0f} us CPU, "
          f"{bits / cpu / 1e9:.2f} Gbit/s")

    symbols = kvcomctl.code_8b10b(10**6, seed=8)
    assert kvcomctl.check_8b10b(symbols) is None
    wall, cpu = median_seconds(lambda: kvcomctl.check_8b10b(symbols), 20)
    print(f"check_8b10b(10^7 symbols): {wall * 1e3:.2f} ms wall, {cpu * 1e3:.2f} ms CPU, "
          f"{symbols.size / cpu / 1e9:.2f} Gsymbols/s")


if __name__ == "__main__":
    main()
