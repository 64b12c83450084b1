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


def placed_mask(mask, interval):
    """The opening's corners, the level limits and their time span, in the eye's frame."""
    shift = -interval * (mask.cross1_min + mask.cross1_max) / 200

    def x(p):
        return interval * (mask.offset_time + mask.scale_time * p) / 100 + shift

    def y(p):
        return mask.offset_volt + mask.scale_volt * p

    opening = np.array([
        (x(mask.cross1_max), y(mask.cross)), (x(mask.rise_delay), y(mask.top_min)),
        (x(mask.fall_delay), y(mask.top_min)), (x(mask.cross2_min), y(mask.cross)),
        (x(mask.fall_delay), y(mask.base_max)), (x(mask.rise_delay), y(mask.base_max))])
    limits = (y(mask.top_max), y(mask.base_min), x(mask.cross1_min), x(mask.cross2_max))
    return opening, limits


def mask_test(x, v, mask, interval):
    """Hits and margin by brute force: every shift by whole intervals, the opening as a convex
    polygon, and its gauge about the middle of its two crossing corners."""
    opening, (top, base, t0, t1) = placed_mask(mask, interval)
    centre = (opening[0] + opening[3]) / 2
    edges = np.roll(opening, -1, axis=0) - opening
    normals = np.stack([edges[:, 1], -edges[:, 0]], axis=1)  # outward: clockwise corners
    reach = ((opening - centre) * normals).sum(axis=1)
    gauge = np.full(x.shape, np.inf)
    limited = np.zeros(x.shape, bool)
    for k in range(-4, 5):
        p = np.stack([x + k * interval, v], axis=1) - centre
        gauge = np.minimum(gauge, ((p @ normals.T) / reach).max(axis=1))
        limited |= (x + k * interval >= t0) & (x + k * interval <= t1)
    hits = (gauge < 1) | (limited & ((v > top) | (v < base)))
    return int(hits.sum()), (gauge.min() - 1) * 100


def reference_eye(t, v, interval, eyes, skip, width, height, mask):
    """The measures and the density, step by step as the definitions read; without a mask,
    'mask_hits' is -1 and 'mask_margin_percent' not a number."""
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
    hits, margin = (-1, math.nan)
    if mask is not None:
        hits, margin = mask_test((column + 0.5) * pitch, volts, mask, interval)
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
        "mask_hits": hits,
        "mask_margin_percent": margin,
        "origin": origin,
        "volts_range": (v_min, v_max),
    }
    return density.reshape(height, width), measures
