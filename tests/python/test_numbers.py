"""Engineering formatters and the parser against the command line."""

import pytest

import kvcomctl

FORMATTERS = {
    "capacitance": kvcomctl.format_capacitance,
    "inductance": kvcomctl.format_inductance,
    "resistance": kvcomctl.format_resistance,
    "frequency": kvcomctl.format_frequency,
    "time": kvcomctl.format_time,
    "voltage": kvcomctl.format_voltage,
    "length": kvcomctl.format_length,
    "length --metric": lambda value: kvcomctl.format_length(value, metric=True),
}
VALUES = [0.0, 2.54e-5, -0.25, 47e-12, 2.2e6, 1e300]


@pytest.mark.parametrize("quantity", sorted(FORMATTERS))
def test_formatters_match_the_command_line(cli, quantity):
    name, *options = quantity.split()
    for value in VALUES:
        result = cli.run("format", name, repr(value), *options)
        assert result.returncode in (0, 1), result.stderr
        printed = (result.stdout.rstrip("\n"), result.returncode == 0)
        assert FORMATTERS[quantity](value) == printed, value


PARSED = [("1.5 n", {}), ("3M", {"spice": True}), ("2X", {"spice": True}),
          ("5a", {"ampere": True}), ("1F", {"farad": True})]


@pytest.mark.parametrize("text, flags", PARSED)
def test_parse_matches_the_command_line(cli, text, flags):
    printed = float(cli.out("parse", text, *[f"--{name}" for name in flags]))
    assert kvcomctl.parse_engineering(text, **flags) == pytest.approx(printed, rel=1e-16)


@pytest.mark.parametrize("text", ["abc", "1e999"])
def test_unreadable_values_raise_where_the_command_line_fails(cli, text):
    assert cli.run("parse", text).returncode == 1
    with pytest.raises(ValueError, match="no engineering value"):
        kvcomctl.parse_engineering(text)
    with pytest.raises(ValueError, match="NUL"):
        kvcomctl.parse_engineering("1\0k")
