"""The stimulus waveform with its jitter, against the command line's PWL file."""

import numpy as np
import pytest

import kvcomctl


def custom(bits, cycles=1):
    data = kvcomctl.StimulusData()
    data.seq_type = 4
    data.bits = np.array(bits, dtype=np.uint8)
    data.cycle_count = cycles
    data.period = 1.0
    return data


def test_without_jitter_the_waveform_is_nominal():
    data = custom([0, 1, 1, 0], cycles=2)
    data.max_jitter = 0.0
    time, volts = kvcomctl.jittered_waveform(data, low=-0.5, high=3.3, rise=1e-10)
    assert time.dtype == np.float64 and volts.dtype == np.float64
    # The fall defaults to a tenth of the 1 ns bit interval as well.
    expected = [0, 1, 1.1, 3, 3.1, 5, 5.1, 7, 7.1, 8]
    np.testing.assert_allclose(time * 1e9, expected, rtol=0, atol=1e-9)
    np.testing.assert_array_equal(volts, [-0.5, -0.5, 3.3, 3.3, -0.5, -0.5, 3.3, 3.3, -0.5, -0.5])


def test_the_jittered_waveform_is_the_command_lines(cli, tmp_path):
    data = custom([0, 1], cycles=500)
    data.max_jitter = 0.05  # ns, one sigma
    time, _ = kvcomctl.jittered_waveform(data)
    assert np.ptp(time[1:-1:2] - np.arange(1, 1000) * 1e-9) > 0.05e-9  # the edges moved
    # The command line reads the same seed and writes the same points.
    ini = tmp_path / "stim.ini"
    data.save(ini)
    cir = tmp_path / "stim.cir"
    cli.out("stimulus", "pwl", ini, "-o", cir, "--jitter")
    numbers = " ".join(
        line[1:] for line in cir.read_text().splitlines() if line.startswith("+")
    ).split()[:-1]
    pairs = np.array([float(n) for n in numbers]).reshape(-1, 2)
    np.testing.assert_allclose(pairs[:, 0], time, rtol=1e-14, atol=0)


def test_values_that_make_no_waveform_raise():
    data = custom([0, 1])
    for bad in ({"rise": 2e-9}, {"fall": float("nan")}, {"low": float("inf")}):
        with pytest.raises(ValueError):
            kvcomctl.jittered_waveform(data, **bad)
    data.period = 0.0
    with pytest.raises(ValueError, match="no waveform"):
        kvcomctl.jittered_waveform(data)
