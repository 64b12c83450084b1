"""The timing both Python benchmarks share."""

import statistics
import time


def median_seconds(call, repeats):
    """Medians of wall and CPU time (of this thread, as Google Benchmark's CPU column) over
    `repeats` calls, each result dropped before the next call."""
    wall, cpu = [], []
    for _ in range(repeats):
        start_wall, start_cpu = time.perf_counter(), time.thread_time()
        call()
        cpu.append(time.thread_time() - start_cpu)
        wall.append(time.perf_counter() - start_wall)
    return statistics.median(wall), statistics.median(cpu)
