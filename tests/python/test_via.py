"""The via exports against the command line, from the same description."""

import copy
import json
import os
import re

import pytest

import kvcomctl


def without_date(text):
    return re.sub(r"generated \d{4}-\d\d-\d\d \d\d:\d\d:\d\d", "generated <time>", text)


def load(name):
    path = os.path.join(os.environ["KV_EXAMPLES_DIR"], name)
    with open(path, encoding="utf-8") as file:
        return path, json.load(file)


@pytest.mark.parametrize("name", ["via_signal_6layer.json", "via_pair_6layer.json"])
def test_exports_match_the_command_line(cli, name):
    path, description = load(name)
    for metric in ([], ["--metric"]):
        ours = kvcomctl.via_spice(description, metric=bool(metric))
        assert without_date(ours) == without_date(cli.out("spice", path, *metric))
    assert kvcomctl.padstack_dump(description) == cli.out("padstack-dump", path)


def test_broken_descriptions_fail_with_the_command_line_messages(cli, tmp_path):
    _, description = load("via_signal_6layer.json")
    broken = copy.deepcopy(description)
    broken["vias"][0]["padstack"]["pads"][2]["shape"] = "hexagon"
    written = tmp_path / "broken.json"
    written.write_text(json.dumps(broken))
    refused = cli.run("spice", written)
    assert refused.returncode == 1
    with pytest.raises(ValueError) as raised:
        kvcomctl.via_spice(broken)
    assert str(raised.value).startswith("vias[0].padstack.pads[2].shape:")
    assert f"{written}: {raised.value}" in refused.stderr
    with pytest.raises(ValueError, match="vias: missing"):
        kvcomctl.padstack_dump({"subcircuit": "X", "stackup": description["stackup"]})
    broken["vias"][0]["padstack"]["pads"][2]["shape"] = float("nan")
    with pytest.raises(ValueError):
        kvcomctl.via_spice(broken)
    with pytest.raises(TypeError, match="must be a dict"):
        kvcomctl.via_spice([description])
    with pytest.raises(TypeError):
        kvcomctl.via_spice({"subcircuit": object()})
