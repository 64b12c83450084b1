#!/usr/bin/env python3
"""Eye diagram of a jittered PRBS-7 stimulus through a small lossy line, with the eye mask over it.

The stimulus comes from kvcomctl.StimulusData with Gaussian jitter on its edges:
kvcomctl.jittered_waveform gives its piecewise-linear waveform, ngspice carries it through a
lossy transmission line, and kvcomctl.eye folds the received waveform into an eye of two bit
periods, measures it and tests it against the stimulus's eye mask. The mask is drawn where that
test lays it: its time points read as percent of a bit period and its levels in volts, both
placed by the mask's scale and offset, with the middle of its first crossing window on the eye's
mean crossing.

    PYTHONPATH=build/python python3 examples/python/eye.py -o eye.png
"""

import argparse
import os
import shutil
import subprocess
import sys
import tempfile

import matplotlib

matplotlib.use("Agg")  # a file, never a window
import matplotlib.pyplot as plt  # noqa: E402
import numpy as np  # noqa: E402

import kvcomctl  # noqa: E402

HIGH = 5.0  # volts of a one, the level the default mask is drawn for
RISE = 0.2  # edge time as a fraction of a bit period
JITTER = 0.02  # ns, the standard deviation of the Gaussian jitter
SEGMENTS = 100  # RLGC sections of the line, short against an edge
# Per section: 50 ohm and 10 ps, with series and shunt losses that close the eye a little.
SECTION_R, SECTION_L, SECTION_C, SECTION_G = 0.1, 0.5e-9, 0.2e-12, 2.0e-6


def make_stimulus():
    data = kvcomctl.StimulusData()
    data.seq_type = 0  # PRBS
    data.poly_degree = 7
    data.init_state = 0
    data.period = 1.0  # ns: 1 Gbit/s
    data.cycle_count = 3
    data.skip_bits = 127  # the first pass lets the line settle
    data.eye_count = 2
    data.jitter_type = 0  # Gaussian, max_jitter its standard deviation
    data.max_jitter = JITTER
    data.generate()
    assert data.invalid_reason() is None, data.invalid_reason()
    return data


def netlist(times, levels, stop, output):
    corners = [f"{t:.9g} {v:.6g}" for t, v in zip(times, levels)]
    lines = ["* jittered PRBS stimulus through a lossy line", "Vsrc src 0 PWL("]
    lines += ["+ " + " ".join(corners[i:i + 8]) for i in range(0, len(corners), 8)]
    lines += ["+ )", "Rsrc src n0 50"]
    for k in range(SEGMENTS):
        lines += [
            f"R{k} n{k} m{k} {SECTION_R}",
            f"L{k} m{k} n{k + 1} {SECTION_L}",
            f"C{k} n{k + 1} 0 {SECTION_C}",
            f"G{k} n{k + 1} 0 n{k + 1} 0 {SECTION_G}",
        ]
    lines += [
        f"Rload n{SEGMENTS} 0 1meg",
        ".control",
        "set wr_singlescale",
        f"tran 5p {stop:.9g}",
        f"wrdata {output} v(n{SEGMENTS})",
        "quit",
        ".endc",
        ".end",
    ]
    return "\n".join(lines) + "\n"


def simulate(data):
    """The far end of the line as (seconds, volts)."""
    ngspice = shutil.which("ngspice")
    if ngspice is None:
        sys.exit("eye.py: ngspice is not installed (apt-get install ngspice)")
    edge = RISE * data.period * 1e-9
    times, levels = kvcomctl.jittered_waveform(data, low=0.0, high=HIGH, rise=edge, fall=edge)
    with tempfile.TemporaryDirectory() as work:
        output = os.path.join(work, "out.txt")
        circuit = os.path.join(work, "line.cir")
        with open(circuit, "w", encoding="ascii") as file:
            file.write(netlist(times, levels, times[-1], output))
        subprocess.run([ngspice, "-b", circuit], check=True, capture_output=True, cwd=work)
        table = np.loadtxt(output)
    return table[:, 0], table[:, 1]


def mask_outline(mask):
    """The keep-out hexagon and the bands above and below, in percent of a bit from the eye's
    mean crossing and in volts, as the eye's mask test places them."""
    shift = -(mask.cross1_min + mask.cross1_max) / 2

    def t(value):
        return value * mask.scale_time + mask.offset_time + shift

    def v(value):
        return value * mask.scale_volt + mask.offset_volt

    hexagon = [
        (t(mask.cross1_max), v(mask.cross)),
        (t(mask.rise_delay), v(mask.top_min)),
        (t(mask.fall_delay), v(mask.top_min)),
        (t(mask.cross2_min), v(mask.cross)),
        (t(mask.fall_delay), v(mask.base_max)),
        (t(mask.rise_delay), v(mask.base_max)),
    ]
    return hexagon, v(mask.top_max), v(mask.base_min)


def plot(data, density, measures, path):
    eyes = data.eye_count
    low, high = measures["volts_range"]
    fig, axes = plt.subplots(figsize=(7.5, 4.2), dpi=100)
    hexagon, top, base = mask_outline(data.mask)
    mask_style = {"color": "#d62728", "alpha": 0.3, "linewidth": 0}
    for k in range(eyes):  # the mask repeats with every bit period
        axes.fill([p[0] + 100 * k for p in hexagon], [p[1] for p in hexagon], **mask_style)
    span = (0, 100 * eyes)
    axes.fill_between(span, top, top + 1.0, **mask_style)
    axes.fill_between(span, base - 1.0, base, **mask_style)
    # Counts on a logarithmic scale over the mask, so that rare paths of the trace and the
    # points that hit the mask still show; empty cells stay clear.
    counts = np.ma.masked_equal(np.log1p(density), 0)
    axes.imshow(counts, origin="lower", aspect="auto", cmap="viridis",
                extent=(0, 100 * eyes, low, high), interpolation="nearest")
    axes.set_xlim(*span)
    axes.set_ylim(min(low, base - 0.6), max(high, top + 0.6))
    axes.set_xlabel("time from the mean crossing (% of the bit period)")
    axes.set_ylabel("volts")
    name = data.mask.name or "default mask"
    axes.set_title(f"PRBS-7 at {1 / data.period:g} Gbit/s, {JITTER * 1000:g} ps jitter, "
                   f"through a lossy line; {name}")
    verdict = "passed" if measures["mask_hits"] == 0 else f"{measures['mask_hits']} hits"
    axes.text(0.01, 0.02,
              f"eye height {measures['eye_height']:.2f} V, width "
              f"{measures['eye_width'] * 1e12:.0f} ps, jitter "
              f"{measures['crossing_jitter_rms'] * 1e12:.1f} ps rms; mask {verdict}, margin "
              f"{measures['mask_margin_percent']:+.1f} %",
              transform=axes.transAxes, fontsize=8)
    fig.tight_layout()
    fig.savefig(path)
    plt.close(fig)


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("-o", "--output", default="eye.png", help="the PNG to write")
    args = parser.parse_args()

    data = make_stimulus()
    time, volts = simulate(data)
    density, measures = kvcomctl.eye(time, volts, data.period * 1e-9, eyes=data.eye_count,
                                     skip=data.skip_bits, mask=data.mask)
    plot(data, density, measures, args.output)
    print(f"{args.output}: {len(data.bits)} bits x {data.cycle_count}, "
          f"eye height {measures['eye_height']:.3f} V, "
          f"width {measures['eye_width'] * 1e12:.1f} ps, "
          f"jitter {measures['crossing_jitter_rms'] * 1e12:.1f} ps rms, "
          f"mask hits {measures['mask_hits']}")


if __name__ == "__main__":
    main()
