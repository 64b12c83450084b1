#!/usr/bin/env python3
"""The eye of 10^7 samples: kvcomctl.eye beside the plain NumPy folds, in one run.

    PYTHONPATH=build/python python3 bench/python/eye_bench.py --kvcore-bench build/bench/kvcore_bench

The waveform is the one BM_FoldEye folds: 10^4 random bits of 1 ns, 30 % ramps, 2 % edge
jitter and 20 mV of noise, sampled every picosecond, onto a 1000 x 600 grid. The NumPy folds
are given the clock (phase to column, level to row, then np.bincount or np.histogram2d);
kvcomctl.eye also finds the clock, measures the levels and tests the mask. With
--kvcore-bench the C++ fold alone (BM_FoldEye) and the whole analysis (BM_AnalyseEye) are
timed right after, so all figures share the machine's state.
"""

import argparse
import json
import subprocess

import numpy as np

import kvcomctl
from bench_timing import median_seconds

INTERVAL = 1e-9
PER_INTERVAL = 1000
INTERVALS = 10_000
WIDTH, HEIGHT = 1000, 600
V_RANGE = (-0.2, 1.2)


def waveform():
    rng = np.random.default_rng(7)
    bits = rng.integers(0, 2, INTERVALS).astype(float)
    edges = np.flatnonzero(np.diff(bits)) + 1
    centre = (edges + rng.normal(0, 0.02, edges.size)) * INTERVAL
    corner_t = np.concatenate([[0.0], np.stack([centre - 0.15 * INTERVAL,
                                                 centre + 0.15 * INTERVAL], 1).ravel(),
                               [INTERVALS * INTERVAL]])
    corner_v = np.concatenate([[bits[0]], np.stack([bits[edges - 1], bits[edges]], 1).ravel(),
                               [bits[-1]]])
    t = np.arange(INTERVALS * PER_INTERVAL) * (INTERVAL / PER_INTERVAL)
    return t, np.interp(t, corner_t, corner_v) + rng.normal(0, 0.02, t.size)


def numpy_bincount(t, v, origin):
    column = (((t - origin) / INTERVAL % 1.0) * WIDTH).astype(np.int64)
    row = ((v - V_RANGE[0]) * (HEIGHT / (V_RANGE[1] - V_RANGE[0]))).astype(np.int64)
    drawn = (row >= 0) & (row < HEIGHT)
    return np.bincount(row[drawn] * WIDTH + column[drawn],
                       minlength=WIDTH * HEIGHT).reshape(HEIGHT, WIDTH)


def numpy_histogram2d(t, v, origin):
    phase = (t - origin) / INTERVAL % 1.0
    return np.histogram2d(v, phase, bins=(HEIGHT, WIDTH), range=(V_RANGE, (0.0, 1.0)))[0]


def report(name, wall, cpu, baseline=None):
    ratio = f", {baseline / cpu:5.1f}x the NumPy bincount fold" if baseline else ""
    print(f"{name:34s} {wall * 1e3:8.1f} ms wall {cpu * 1e3:8.1f} ms CPU "
          f"{cpu / (INTERVALS * PER_INTERVAL) * 1e9:6.2f} ns/sample{ratio}")


def kvcore(path):
    """BM_FoldEye and BM_AnalyseEye of the C++ benchmark: name -> (wall, CPU) seconds."""
    out = subprocess.run([path, "--benchmark_filter=BM_(FoldEye|AnalyseEye)",
                          "--benchmark_format=json"], check=True, capture_output=True,
                         text=True).stdout
    unit = {"ns": 1e-9, "us": 1e-6, "ms": 1e-3, "s": 1.0}
    return {b["name"]: (b["real_time"] * unit[b["time_unit"]],
                        b["cpu_time"] * unit[b["time_unit"]])
            for b in json.loads(out)["benchmarks"]}


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--kvcore-bench", help="path of kvcore_bench, to time the C++ fold too")
    args = parser.parse_args()

    t, v = waveform()
    _, measures = kvcomctl.eye(t, v, INTERVAL, width=WIDTH, height=HEIGHT,
                               volts_range=V_RANGE, mask=kvcomctl.EyeMask())
    origin = measures["origin"]
    wall, baseline = median_seconds(lambda: numpy_bincount(t, v, origin), 7)
    report("NumPy fold, np.bincount", wall, baseline)
    report("NumPy fold, np.histogram2d", *median_seconds(
        lambda: numpy_histogram2d(t, v, origin), 1))
    mask = kvcomctl.EyeMask()
    mask.scale_volt = 0.2
    report("kvcomctl.eye (clock, levels, mask)", *median_seconds(
        lambda: kvcomctl.eye(t, v, INTERVAL, width=WIDTH, height=HEIGHT, volts_range=V_RANGE,
                             mask=mask), 7), baseline)
    if args.kvcore_bench:
        for name, (wall, cpu) in kvcore(args.kvcore_bench).items():
            report(name, wall, cpu, baseline)


if __name__ == "__main__":
    main()
