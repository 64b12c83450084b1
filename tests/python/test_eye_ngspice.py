"""The command line end to end with a real simulator: a stimulus file's jittered waveform
(`kvcomctl stimulus pwl --jitter`) drives a lossy line into its termination in ngspice, and
`kvcomctl eye` measures the eye in the simulator's binary raw file as the NumPy reference does."""

import json
import os
import re
import shutil
import subprocess

import numpy as np
import pytest

import kvcomctl
from eye_reference import reference_eye

NGSPICE = os.environ.get("KV_NGSPICE") or shutil.which("ngspice")
pytestmark = pytest.mark.skipif(
    not NGSPICE or not os.path.exists(NGSPICE),
    reason="ngspice is not installed (Debian package ngspice); the simulated eye is not checked")

# PRBS-7 at 500 Mbit/s, three passes of which the first lets the line settle; 20 ps of Gaussian
# jitter on every edge.
STIMULUS = ["PERIOD=2", "SEQTYPE=0", "POLYDEGREE=7", "CYCLECOUNT=3", "SKIPBITS=127", "EYECOUNT=2",
            "JITTERTYPE=0", "MAXJITTER=0.02"]
SOURCE_HIGH = 11.0  # volts; the 50-ohm source, the line's loss and the termination leave 5 V
SECTIONS = 20  # lumped sections of 50 ohm and 50 ps, with 0.5 ohm of series loss each


def bench(stop):
    nodes = [f"n{k}" for k in range(SECTIONS)] + ["out"]
    lines = ["* the stimulus through a lossy line into its termination", ".include stim.cir",
             "RS in n0 50"]
    for k in range(SECTIONS):
        lines += [f"R{k} {nodes[k]} m{k} 0.5", f"L{k} m{k} {nodes[k + 1]} 2.5n",
                  f"C{k} {nodes[k + 1]} 0 1p"]
    lines += ["RT out 0 50", ".control", "set filetype=binary",
              f"tran 10p {stop!r}", "write line.raw v(out)", "quit", ".endc", ".end", ""]
    return "\n".join(lines)


def read_binary_raw(path, vector):
    """One vector and the time scale of a binary raw file, read without the command line."""
    data = path.read_bytes()
    start = data.index(b"Binary:\n") + len(b"Binary:\n")
    header = data[:start].decode("ascii")
    count = int(re.search(r"No\. Variables:\s*(\d+)", header).group(1))
    points = int(re.search(r"No\. Points:\s*(\d+)", header).group(1))
    names = re.findall(r"^\s+\d+\s+(\S+)\s+\S+", header.split("Variables:\n", 1)[1], re.M)
    table = np.frombuffer(data, "<f8", count * points, start).reshape(points, count)
    return table[:, 0], table[:, names.index(vector)]


def test_the_jittered_eye_through_a_lossy_line_matches_the_reference(cli, tmp_path):
    path = tmp_path / "stimulus.ini"
    cli.out("stimulus", "new", path)
    cli.out("stimulus", "set", path, *STIMULUS)
    data = kvcomctl.StimulusData()
    data.load(str(path))
    cli.out("stimulus", "pwl", path, "-o", tmp_path / "stim.cir", "--high", SOURCE_HIGH, "--jitter")
    (tmp_path / "bench.cir").write_text(bench(data.period * 1e-9 * data.cycle_count * len(data.bits)))
    run = subprocess.run([NGSPICE, "-b", "bench.cir"], cwd=tmp_path, capture_output=True,
                         text=True, timeout=300, check=False)
    assert run.returncode == 0, run.stdout + run.stderr
    raw = tmp_path / "line.raw"

    result = cli.run("eye", raw, "--stimulus", path, "--vector", "out", "--mask", "--json")
    assert result.returncode in (0, 1), result.stderr
    measures = json.loads(result.stdout)
    assert result.returncode == (1 if measures["mask_hits"] else 0)
    t, v = read_binary_raw(raw, "v(out)")
    _, expected = reference_eye(t, v, data.period * 1e-9, data.eye_count, data.skip_bits, 1000,
                                600)
    for key, value in measures.items():
        if not key.startswith("mask_"):
            assert value == pytest.approx(expected[key], rel=0.01), key

    # An open eye at the divider's levels, with the stimulus's jitter in its crossings.
    assert measures["unit_intervals"] == 2 * 127
    assert measures["level1"] == pytest.approx(5.0, abs=0.1)
    assert measures["eye_height"] > 4.5
    assert 10e-12 < measures["crossing_jitter_rms"] < 30e-12
    assert measures["mask_hits"] == 0 and measures["mask_margin_percent"] > 0
