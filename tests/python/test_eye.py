"""kvcomctl.eye against a NumPy eye written from the same definitions."""

import math

import numpy as np
import pytest

import kvcomctl
from eye_reference import reference_eye

INTERVAL = 1e-9


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


@pytest.mark.parametrize("eyes", [1, 2, 3])
def test_eye_matches_the_numpy_reference(eyes):
    t, v = waveform()
    mask = kvcomctl.EyeMask()  # the default, for 0 to 5 V: scaled, the noise reaches it
    mask.scale_volt, mask.offset_time = 0.4, 3.0
    density, measures = kvcomctl.eye(t, v, INTERVAL, eyes=eyes, skip=3, width=300, height=120,
                                     mask=mask)
    expected_density, expected = reference_eye(t, v, INTERVAL, eyes, 3, 300, 120)
    assert density.dtype == np.uint32 and density.shape == (120, 300)
    np.testing.assert_array_equal(density, expected_density)
    assert measures.pop("mask_hits") > 0 and measures.pop("mask_margin_percent") < 0
    assert measures.keys() == expected.keys()
    for key, value in expected.items():
        assert measures[key] == pytest.approx(value, rel=1e-9, abs=1e-20), key


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
