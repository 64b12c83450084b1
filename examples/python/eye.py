#!/usr/bin/env python3
"""Eye diagram of a PRBS-7 stimulus through a small lossy line, with the eye mask over it.

The stimulus comes from kvcomctl.StimulusData: its bits drive a piecewise-linear source,
ngspice carries them through a lossy transmission line, and the received waveform is folded
into an eye of two bit periods. The stimulus's eye mask is drawn over the eye, its time points
read as percent of a bit period and its levels in volts, both placed by the mask's scale and
offset.

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
    data.generate()
    assert data.invalid_reason() is None, data.invalid_reason()
    return data


def pwl_points(bits, period):
    """Corners of the source: each change of level is an edge centred on the bit boundary."""
    edge = RISE * period
    times, levels = [0.0], [HIGH * bits[0]]
    for index in range(1, len(bits)):
        if bits[index] != bits[index - 1]:
            boundary = index * period
            times += [boundary - edge / 2, boundary + edge / 2]
            levels += [HIGH * bits[index - 1], HIGH * bits[index]]
    times.append(len(bits) * period)
    levels.append(HIGH * bits[-1])
    return times, levels


def netlist(times, levels, stop, output):
    pwl = " ".join(f"{t:.6g}n {v:.6g}" for t, v in zip(times, levels))
    lines = [
        "* PRBS stimulus through a lossy line",
        f"Vsrc src 0 PWL({pwl})",
        "Rsrc src n0 50",
    ]
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
        f"tran 5p {stop:.6g}n",
        f"wrdata {output} v(n{SEGMENTS})",
        "quit",
        ".endc",
        ".end",
    ]
    return "\n".join(lines) + "\n"


def simulate(bits, period):
    ngspice = shutil.which("ngspice")
    if ngspice is None:
        sys.exit("eye.py: ngspice is not installed (apt-get install ngspice)")
    times, levels = pwl_points(bits, period)
    with tempfile.TemporaryDirectory() as work:
        output = os.path.join(work, "out.txt")
        circuit = os.path.join(work, "line.cir")
        with open(circuit, "w", encoding="ascii") as file:
            file.write(netlist(times, levels, len(bits) * period, output))
        subprocess.run([ngspice, "-b", circuit], check=True, capture_output=True, cwd=work)
        table = np.loadtxt(output)
    return table[:, 0] * 1e9, table[:, 1]  # ns, volts


def first_crossing(time, volts, level):
    above = volts >= level
    index = int(np.argmax(above != above[0]))
    return time[index]


def mask_outline(mask):
    """The keep-out hexagon and the bands above and below, in percent of a bit and volts."""
    def t(value):
        return value * mask.scale_time + mask.offset_time

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


def plot(data, time, volts, delay, path):
    period = data.period
    phase = ((time - delay) / period * 100.0 + 50.0) % 200.0 - 50.0  # percent, -50 to 150
    keep = time - delay >= data.skip_bits * period
    fig, axes = plt.subplots(figsize=(7.5, 4.2), dpi=100)
    # Break the trace where it wraps so that no line crosses the whole eye.
    wraps = np.flatnonzero(np.diff(phase) < 0) + 1
    for piece_phase, piece_volts, piece_keep in zip(
        np.split(phase, wraps), np.split(volts, wraps), np.split(keep, wraps)
    ):
        if piece_keep.all():
            axes.plot(piece_phase, piece_volts, color="#1f5fa8", alpha=0.25, linewidth=0.8)
    hexagon, top, base = mask_outline(data.mask)
    mask_style = {"color": "#d62728", "alpha": 0.35}
    axes.fill([p[0] for p in hexagon], [p[1] for p in hexagon], **mask_style)
    span = (-50, 150)
    axes.fill_between(span, top, top + 1.0, **mask_style)
    axes.fill_between(span, base - 1.0, base, **mask_style)
    axes.set_xlim(*span)
    axes.set_ylim(base - 0.6, top + 0.6)
    axes.set_xlabel("time (% of the bit period)")
    axes.set_ylabel("volts")
    name = data.mask.name or "default mask"
    axes.set_title(f"PRBS-7 at {1 / period:g} Gbit/s through a lossy line, {name}")
    axes.grid(True, alpha=0.3)
    fig.tight_layout()
    fig.savefig(path)
    plt.close(fig)


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("-o", "--output", default="eye.png", help="the PNG to write")
    args = parser.parse_args()

    data = make_stimulus()
    bits = np.tile(data.bits, data.cycle_count)
    time, volts = simulate(bits, data.period)
    # The line's delay: from the first edge sent to the first crossing received.
    sent = int(np.argmax(bits != bits[0])) * data.period
    delay = first_crossing(time, volts, data.mask.cross) - sent
    plot(data, time, volts, delay, args.output)
    print(f"{args.output}: {len(data.bits)} bits x {data.cycle_count}, line delay {delay:.3f} ns")


if __name__ == "__main__":
    main()
