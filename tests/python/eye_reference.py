"""The eye of a waveform in NumPy, step by step as core/eye/EyeAnalysis.h and its siblings define
it: the reference kvcomctl.eye and `kvcomctl eye` are checked against."""

import math

import numpy as np


def first_at_or_after(t, start, period):
    return t + math.ceil((start - t) / period) * period


def clock(t, v, level, start, end, interval):
    above = v >= level
    i = np.flatnonzero(above[1:] != above[:-1])
    c = t[i] + (level - v[i]) / (v[i + 1] - v[i]) * (t[i + 1] - t[i])
    c = c[(c >= start) & (c <= end)]
    phase = (c - start) / interval
    phase -= np.floor(phase)
    mean = np.angle(np.exp(2j * np.pi * phase).sum()) / (2 * np.pi) % 1.0
    deviation = phase - mean
    deviation -= np.floor(deviation + 0.5)
    return start + mean * interval, deviation * interval


def levels(t, v, centre, start, end, mid, interval):
    centres = np.arange(centre, end + interval / 2, interval)
    centres = centres[centres <= end]
    times = (centres[:, None] + np.arange(-5, 6) * 0.01 * interval).ravel()
    read = np.interp(times[(times >= start) & (times <= end)], t, v)
    return read[read < mid], read[read >= mid], centres.size


def reference_eye(t, v, interval, eyes, skip, width, height):
    """The measures and the density, step by step as the definitions read. The mask test is
    left to the core's own tests: its measures are not here."""
    start, end = t[0] + skip * interval, t[-1]
    at_start = np.interp(start, t, v)
    lo = min(at_start, v[t > start].min())
    hi = max(at_start, v[t > start].max())
    mid = (lo + hi) / 2
    for _ in range(2):
        mean_crossing, deviation = clock(t, v, mid, start, end, interval)
        centre = first_at_or_after(mean_crossing + interval / 2, start, interval)
        zero, one, intervals = levels(t, v, centre, start, end, mid, interval)
        mid = (zero.mean() + one.mean()) / 2

    origin = first_at_or_after(mean_crossing, start, interval)
    window = eyes * interval
    pitch = window / width
    base = origin - math.ceil((origin - start) / window) * window
    g = np.arange(math.ceil((start - base) / pitch - 0.5), math.ceil((end - base) / pitch - 0.5))
    column = g % width
    volts = np.interp(base + (g + 0.5) * pitch, t, v)
    v_min, v_max = lo - (hi - lo) / 20, hi + (hi - lo) / 20
    row = np.floor((volts - v_min) * height / (v_max - v_min)).astype(np.int64)
    drawn = (row >= 0) & (row < height)
    density = np.bincount(row[drawn] * width + column[drawn], minlength=width * height)
    sigma = math.sqrt((deviation**2).mean())
    measures = {
        "samples": g.size,
        "unit_intervals": intervals,
        "level0": zero.mean(),
        "level1": one.mean(),
        "noise0": zero.std(),
        "noise1": one.std(),
        "eye_height": (one.mean() - 3 * one.std()) - (zero.mean() + 3 * zero.std()),
        "eye_width": interval - 6 * sigma,
        "eye_centre_time": centre,
        "crossing_jitter_rms": sigma,
        "crossing_jitter_peak_to_peak": np.ptp(deviation),
        "origin": origin,
        "volts_range": (v_min, v_max),
    }
    return density.reshape(height, width), measures
