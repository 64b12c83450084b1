#!/usr/bin/env python3
"""ngspice must accept an exported via subcircuit, and the via must behave as one.

The subcircuit is wrapped in a bench: the ports of each via are taken in pairs (entry, exit),
a pulse source drives every entry through 50 ohms and every exit is loaded with 50 ohms; the
second via of a pair is driven with the opposite polarity, as a differential driver would. Once
the lines have settled, each load must sit at half the source step.
"""

import argparse
import pathlib
import re
import subprocess
import sys

STEP = 1.0  # volts
SETTLED_AT = 1.9e-9  # seconds; every example via is far shorter than this
TOLERANCE = 0.01  # volts


def subcircuit_ports(text):
    """The subcircuit name and its port list, from the .SUBCKT line and its continuations."""
    lines = text.splitlines()
    start = next(i for i, line in enumerate(lines) if line.startswith(".SUBCKT "))
    ports = []
    for line in lines[start + 1:]:
        if line.startswith("+"):
            ports.extend(line[1:].split())
        elif not line.startswith("*"):
            break
    return lines[start].split()[1], ports


def bench(include, name, ports):
    """The netlist, and for every exit port its label, node and settled voltage."""
    if not ports or len(ports) % 2:
        raise SystemExit(f"expected ports in entry/exit pairs, got {ports}")
    lines = [f"* bench for {name}", f".include {include}"]
    probes = []
    for pair, (entry, exit_) in enumerate(zip(ports[0::2], ports[1::2])):
        sign = 1 if pair % 2 == 0 else -1
        lines += [
            f"VS{pair} src{pair} 0 PULSE(0 {sign * STEP} 10p 20p 20p 10n 20n)",
            f"RS{pair} src{pair} {entry} 50",
            f"RL{pair} {exit_} 0 50",
        ]
        probes.append((f"vout{pair}", exit_, sign * STEP / 2))
    lines += [f"X1 {' '.join(ports)} {name}", ".tran 0.1p 2n", ".control", "run"]
    for label, node, _ in probes:
        # A name with '-' must be quoted in a .control expression.
        vector = f'v("{node}")' if "-" in node else f"v({node})"
        lines.append(f"meas tran {label} FIND {vector} AT={SETTLED_AT}")
    lines += ["quit", ".endc", ".end", ""]
    return "\n".join(lines), probes


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--kvcomctl", required=True)
    parser.add_argument("--ngspice", default="ngspice")
    parser.add_argument("--work", required=True)
    parser.add_argument("description")
    args = parser.parse_args()

    work = pathlib.Path(args.work)
    work.mkdir(parents=True, exist_ok=True)
    model = work / "via.cir"
    model.unlink(missing_ok=True)
    subprocess.run([args.kvcomctl, "spice", args.description, "-o", str(model)], check=True)
    netlist, probes = bench(model.name, *subcircuit_ports(model.read_text()))
    (work / "bench.cir").write_text(netlist)
    try:
        run = subprocess.run([args.ngspice, "-b", "bench.cir"], cwd=work, capture_output=True,
                             text=True, timeout=120)
    except FileNotFoundError:
        print(f"ngspice not found ({args.ngspice}): install the Debian package ngspice")
        return 1
    output = run.stdout + run.stderr
    (work / "ngspice.log").write_text(output)
    failures = [f"ngspice exit status {run.returncode}"] if run.returncode else []
    failures += [f"ngspice reported: {line.strip()}" for line in output.splitlines()
                 if re.search(r"\berror\b", line, re.IGNORECASE)]
    for label, node, expected in probes:
        match = re.search(rf"^{label}\s*=\s*(\S+)", output, re.MULTILINE | re.IGNORECASE)
        if not match:
            failures.append(f"no value for {label} (node {node})")
        elif abs(float(match.group(1)) - expected) > TOLERANCE:
            failures.append(f"{node} settled at {match.group(1)} V, expected {expected} V")
        else:
            print(f"{node}: {float(match.group(1)):.4f} V (expected {expected} V)")
    if failures:
        print("\n".join(failures + [output]))
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main())
