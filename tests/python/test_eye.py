"""kvcomctl.eye against a NumPy eye written from the same definitions."""

import math

import numpy as np
import pytest

import kvcomctl

INTERVAL = 1e-9


def first_at_or_after(t, start, period):
    return t + math.ceil((start - t) / period) * period


def waveform(bits=240, per_interval=40, seed=5):
    """Random bits with jittered 25 % ramps and noise, sampled at uneven times."""
    rng = np.random.default_rng(seed)
    levels = rng.integers(0, 2, bits) * 1.8 + 0.1
    corner_t, corner_v = [0.0], [levels[0]]
    for i in range(1, bits):
        if levels[i] != levels[i - 1]:
            edge = (i + rng.normal(0, 0.02)) * INTERVAL
            corner_t += [edge - 0.125 * INTERVAL, edge + 0.125 * INTERVAL]
            corner_v += [levels[i - 1], levels[i]]
    corner_t.append(bits * INTERVAL)
    corner_v.append(levels[-1])
    t = np.sort(rng.uniform(0, bits * INTERVAL, bits * per_interval))
    t[0], t[-1] = 0.0, bits * INTERVAL
    return t, np.interp(t, corner_t, corner_v) + rng.normal(0, 0.03, t.size)


def clock(t, v, level, start, end):
    above = v >= level
    i = np.flatnonzero(above[1:] != above[:-1])
    c = t[i] + (level - v[i]) / (v[i + 1] - v[i]) * (t[i + 1] - t[i])
    c = c[(c >= start) & (c <= end)]
    phase = (c - start) / INTERVAL
    phase -= np.floor(phase)
    mean = np.angle(np.exp(2j * np.pi * phase).sum()) / (2 * np.pi) % 1.0
    deviation = phase - mean
    deviation -= np.floor(deviation + 0.5)
    return start + mean * INTERVAL, deviation * INTERVAL


def levels(t, v, centre, start, end, mid):
    centres = np.arange(centre, end + INTERVAL / 2, INTERVAL)
    centres = centres[centres <= end]
    times = (centres[:, None] + np.arange(-5, 6) * 0.01 * INTERVAL).ravel()
    read = np.interp(times[(times >= start) & (times <= end)], t, v)
    return read[read < mid], read[read >= mid], centres.size


def placed_mask(mask):
    """The opening's corners, the level limits and their time span, in the eye's frame."""
    shift = -INTERVAL * (mask.cross1_min + mask.cross1_max) / 200

    def x(p):
        return INTERVAL * (mask.offset_time + mask.scale_time * p) / 100 + shift

    def y(p):
        return mask.offset_volt + mask.scale_volt * p

    opening = np.array([
        (x(mask.cross1_max), y(mask.cross)), (x(mask.rise_delay), y(mask.top_min)),
        (x(mask.fall_delay), y(mask.top_min)), (x(mask.cross2_min), y(mask.cross)),
        (x(mask.fall_delay), y(mask.base_max)), (x(mask.rise_delay), y(mask.base_max))])
    limits = (y(mask.top_max), y(mask.base_min), x(mask.cross1_min), x(mask.cross2_max))
    return opening, limits


def mask_test(x, v, mask):
    """Hits and margin by brute force: every shift by whole intervals, the opening as a convex
    polygon, and its gauge about the middle of its two crossing corners."""
    opening, (top, base, t0, t1) = placed_mask(mask)
    centre = (opening[0] + opening[3]) / 2
    edges = np.roll(opening, -1, axis=0) - opening
    normals = np.stack([edges[:, 1], -edges[:, 0]], axis=1)  # outward: clockwise corners
    reach = ((opening - centre) * normals).sum(axis=1)
    gauge = np.full(x.shape, np.inf)
    limited = np.zeros(x.shape, bool)
    for k in range(-4, 5):
        p = np.stack([x + k * INTERVAL, v], axis=1) - centre
        gauge = np.minimum(gauge, ((p @ normals.T) / reach).max(axis=1))
        limited |= (x + k * INTERVAL >= t0) & (x + k * INTERVAL <= t1)
    hits = (gauge < 1) | (limited & ((v > top) | (v < base)))
    return int(hits.sum()), (gauge.min() - 1) * 100


def reference_eye(t, v, eyes, skip, width, height, mask):
    """The measures and the density, step by step as the definitions read."""
    start, end = t[0] + skip * INTERVAL, t[-1]
    at_start = np.interp(start, t, v)
    lo = min(at_start, v[t > start].min())
    hi = max(at_start, v[t > start].max())
    mid = (lo + hi) / 2
    for _ in range(2):
        mean_crossing, deviation = clock(t, v, mid, start, end)
        centre = first_at_or_after(mean_crossing + INTERVAL / 2, start, INTERVAL)
        zero, one, intervals = levels(t, v, centre, start, end, mid)
        mid = (zero.mean() + one.mean()) / 2

    origin = first_at_or_after(mean_crossing, start, INTERVAL)
    window = eyes * INTERVAL
    pitch = window / width
    base = origin - math.ceil((origin - start) / window) * window
    g = np.arange(math.ceil((start - base) / pitch - 0.5), math.ceil((end - base) / pitch - 0.5))
    column = g % width
    volts = np.interp(base + (g + 0.5) * pitch, t, v)
    v_min, v_max = lo - (hi - lo) / 20, hi + (hi - lo) / 20
    row = np.floor((volts - v_min) * height / (v_max - v_min)).astype(np.int64)
    drawn = (row >= 0) & (row < height)
    density = np.bincount(row[drawn] * width + column[drawn], minlength=width * height)
    hits, margin = mask_test((column + 0.5) * pitch, volts, mask)
    sigma = math.sqrt((deviation**2).mean())
    measures = {
        "samples": g.size,
        "unit_intervals": intervals,
        "level0": zero.mean(),
        "level1": one.mean(),
        "noise0": zero.std(),
        "noise1": one.std(),
        "eye_height": (one.mean() - 3 * one.std()) - (zero.mean() + 3 * zero.std()),
        "eye_width": INTERVAL - 6 * sigma,
        "eye_centre_time": centre,
        "crossing_jitter_rms": sigma,
        "crossing_jitter_peak_to_peak": np.ptp(deviation),
        "mask_hits": hits,
        "mask_margin_percent": margin,
        "origin": origin,
        "volts_range": (v_min, v_max),
    }
    return density.reshape(height, width), measures


def scaled_mask():
    mask = kvcomctl.EyeMask()  # the default, for 0 to 5 V
    mask.scale_volt = 0.4
    mask.offset_time = 3.0
    return mask


@pytest.mark.parametrize("eyes", [1, 2, 3])
def test_eye_matches_the_numpy_reference(eyes):
    t, v = waveform()
    mask = scaled_mask()
    density, measures = kvcomctl.eye(t, v, INTERVAL, eyes=eyes, skip=3, width=300, height=120,
                                     mask=mask)
    expected_density, expected = reference_eye(t, v, eyes, 3, 300, 120, mask)
    assert density.dtype == np.uint32 and density.shape == (120, 300)
    np.testing.assert_array_equal(density, expected_density)
    assert measures.keys() == expected.keys()
    for key, value in expected.items():
        assert measures[key] == pytest.approx(value, rel=1e-9, abs=1e-20), key
    assert measures["mask_hits"] > 0  # the noise reaches the scaled mask


def test_eye_refuses_with_the_reason():
    t, v = waveform(bits=10)
    with pytest.raises(ValueError, match="positive time"):
        kvcomctl.eye(t, v, 0.0)
    with pytest.raises(ValueError, match="must not decrease"):
        kvcomctl.eye(t[::-1], v, INTERVAL)
    with pytest.raises(ValueError, match="one-dimensional"):
        kvcomctl.eye(t.reshape(2, -1), v.reshape(2, -1), INTERVAL)
    density, measures = kvcomctl.eye(t, v, INTERVAL, volts_range=(0.0, 1.0))
    assert measures["volts_range"] == (0.0, 1.0)
    assert measures["mask_hits"] == -1 and math.isnan(measures["mask_margin_percent"])
    assert density.sum() < measures["samples"]  # levels above 1 V land in no cell
