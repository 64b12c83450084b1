"""Chart axes against `kvcomctl axis`."""

import pytest

import kvcomctl

CASES = [
    (0, 7, 100, {"unit": "V"}),
    (0, 12345, 300, {"unit": "V", "prefixes": False, "spacing": 0}),
    (-3e-9, 4e-9, 800, {"unit": "s", "y": True}),
    (1e3, 1e9, 600, {"log": True, "unit": "Hz"}),
]
FLAGS = {"log": "--log", "y": "--y"}


def cli_axis(cli, lo, hi, pixels, options):
    """The command line's grid, read back into the module's form."""
    args = ["axis", repr(float(lo)), repr(float(hi)), pixels]
    args += [flag for name, flag in FLAGS.items() if options.get(name)]
    if options.get("prefixes") is False:
        args.append("--no-prefix")
    for name in ("unit", "spacing"):
        if name in options:
            args += [f"--{name}", options[name]]
    rows = [line.split(" ", 1) for line in cli.out(*args).splitlines()]
    (_, span), (_, step), (_, labels), *lines = rows
    grid = [row[1].split(" ", 1) for row in lines]
    return (tuple(map(float, span.split())), float(step), int(labels),
            [(float(value), label[1:-1]) for value, label in grid])


@pytest.mark.parametrize("lo,hi,pixels,options", CASES)
def test_axes_match_the_command_line(cli, lo, hi, pixels, options):
    assert kvcomctl.axis(lo, hi, pixels, **options) == cli_axis(cli, lo, hi, pixels, options)


@pytest.mark.parametrize(
    "args,kwargs",
    [((0, 1, 0), {}), ((float("nan"), 1, 100), {}), ((2, 1, 100), {}),
     ((-1, 10, 100), {"log": True}), ((0, 1, 100), {"spacing": -1})],
)
def test_bad_axes_raise_value_error(args, kwargs):
    with pytest.raises(ValueError):
        kvcomctl.axis(*args, **kwargs)
