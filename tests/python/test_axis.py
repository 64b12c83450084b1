"""Chart axes against `kvcomctl axis`."""

import pytest

import kvcomctl

CASES = [
    (0, 1, 200, {}),
    (0, 0.93, 100, {}),
    (0, 7, 100, {}),
    (5, 5, 300, {}),
    (0, 0.001, 400, {"unit": "V"}),
    (0, 12345, 300, {"unit": "V", "prefixes": False}),
    (-3e-9, 4e-9, 800, {"unit": "s", "y": True}),
    (1e3, 1e9, 600, {"log": True, "unit": "Hz"}),
    (0.5, 2, 120, {"spacing": 10}),
]


def cli_axis(cli, lo, hi, pixels, options):
    args = ["axis", repr(float(lo)), repr(float(hi)), pixels]
    if options.get("log"):
        args.append("--log")
    if "unit" in options:
        args += ["--unit", options["unit"]]
    if options.get("prefixes") is False:
        args.append("--no-prefix")
    if "spacing" in options:
        args += ["--spacing", options["spacing"]]
    if options.get("y"):
        args.append("--y")
    return cli.out(*args)


def as_cli_text(scaled):
    (lo, hi), step, labels, lines = scaled
    text = [f"range {lo!r} {hi!r}", f"step {step!r}", f"labels {labels}"]
    text += [f'line {value!r} "{label}"' for value, label in lines]
    return "\n".join(text) + "\n"


@pytest.mark.parametrize("lo,hi,pixels,options", CASES)
def test_axes_match_the_command_line(cli, lo, hi, pixels, options):
    # Python's repr is the shortest text that reads back exactly; the command line prints
    # %.17g, so compare the numbers the two texts stand for.
    ours = as_cli_text(kvcomctl.axis(lo, hi, pixels, **options)).split("\n")
    theirs = cli_axis(cli, lo, hi, pixels, options).split("\n")
    assert len(ours) == len(theirs)
    for mine, other in zip(ours, theirs):
        head, _, rest = mine.partition(" ")
        other_head, _, other_rest = other.partition(" ")
        assert head == other_head
        if head == "line":
            value, _, label = rest.partition(" ")
            other_value, _, other_label = other_rest.partition(" ")
            assert float(value) == float(other_value) and label == other_label
        elif head:
            assert [float(v) for v in rest.split()] == [float(v) for v in other_rest.split()]


def test_labels_carry_prefix_and_unit():
    _, _, _, lines = kvcomctl.axis(0, 0.001, 400, unit="V")
    labels = [label for _, label in lines if label]
    assert " 200uV " in labels
    assert all(label.endswith("uV ") for label in labels)


@pytest.mark.parametrize(
    "args,kwargs",
    [((0, 0, 0), {}), ((0, 1, -5), {}), ((float("nan"), 1, 100), {}),
     ((2, 1, 100), {}), ((-1, 10, 100), {"log": True}), ((0, 1, 100), {"spacing": -1})],
)
def test_bad_axes_raise_value_error(args, kwargs):
    with pytest.raises(ValueError):
        kvcomctl.axis(*args, **kwargs)
