"""Engineering formatters and the parser against the command line."""

import math

import pytest

import kvcomctl

FORMATTERS = {
    "capacitance": kvcomctl.format_capacitance,
    "inductance": kvcomctl.format_inductance,
    "resistance": kvcomctl.format_resistance,
    "frequency": kvcomctl.format_frequency,
    "time": kvcomctl.format_time,
    "voltage": kvcomctl.format_voltage,
}
VALUES = [0.0, 2.54e-5, -0.25, 1.5e-9, 47e-12, 3.3, 1e3, 2.2e6, 1e15, 1e300, -1e-20]


def cli_format(cli, quantity, value, *options):
    result = cli.run("format", quantity, repr(value), *options)
    assert result.returncode in (0, 1), result.stderr
    return result.stdout.rstrip("\n"), result.returncode == 0


@pytest.mark.parametrize("quantity", sorted(FORMATTERS))
def test_formatters_match_the_command_line(cli, quantity):
    for value in VALUES:
        assert FORMATTERS[quantity](value) == cli_format(cli, quantity, value), value


def test_lengths_match_the_command_line_in_both_systems(cli):
    for value in VALUES:
        assert kvcomctl.format_length(value) == cli_format(cli, "length", value)
        assert kvcomctl.format_length(value, metric=True) == cli_format(
            cli, "length", value, "--metric"
        )


def test_no_number_formats_as_out_of_range():
    text, ok = kvcomctl.format_voltage(math.nan)
    assert not ok and text.startswith("999")


PARSED = [
    ("1.5 n", {}),
    ("3M", {}),
    ("3M", {"spice": True}),
    ("2X", {"spice": True}),
    ("10 kOhm", {}),
    ("5a", {}),
    ("5a", {"ampere": True}),
    ("1F", {}),
    ("1F", {"farad": True}),
    (" - 4 7 p", {}),
]


@pytest.mark.parametrize("text, flags", PARSED)
def test_parse_matches_the_command_line(cli, text, flags):
    options = [f"--{name}" for name, on in flags.items() if on]
    printed = float(cli.out("parse", text, *options))
    assert kvcomctl.parse_engineering(text, **flags) == pytest.approx(printed, rel=1e-16)


@pytest.mark.parametrize("text", ["", "abc", "1e999", "n"])
def test_unreadable_values_raise_where_the_command_line_fails(cli, text):
    assert cli.run("parse", text).returncode == 1
    with pytest.raises(ValueError, match="no engineering value"):
        kvcomctl.parse_engineering(text)
    with pytest.raises(ValueError, match="NUL"):
        kvcomctl.parse_engineering("1\0k")
