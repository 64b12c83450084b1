"""The stimulus data object: properties under their stored names, load and save."""

import re

import numpy as np
import pytest

import kvcomctl

INVALID = "Invalid eye diagram data.\nReverting to default values."


def stored_names(cls):
    """Each property's stored key, read from its docstring."""
    names = {}
    for attr in dir(cls):
        doc = getattr(cls, attr).__doc__ or ""
        found = re.search(r"\(stored as ([A-Z0-9]+)\)", doc)
        if found and isinstance(getattr(cls, attr), property):
            names[found.group(1)] = attr
    return names


def as_text(value):
    if isinstance(value, bool):
        return "1" if value else "0"
    if isinstance(value, float):
        return format(value, ".15g")
    return str(value)


# A value other than the default for every property the tests change, set in this order.
CHANGED = {
    "cycle_count": 12, "skip_bits": 3, "eye_count": 2, "period": 2.5, "duty_cycle": 40.0,
    "max_jitter": 0.125, "random_freq": 250.0, "sine_mag": 0.5, "sine_freq": 33.0,
    "sine_init": 0.25, "uniform_mag": 0.75, "uniform_mean": 0.0625, "add_gaussian": True,
    "add_uniform": False, "add_sine": True, "advanced_jitter": True,
    "gaussian_freq_measured": True, "sine_freq_measured": True, "jitter_type": 2,
    "jitter_repeatable": False, "uniform_jitter_as_time": True,
    "seq_type": 4,  # custom: the bits are stored
    "init_state": 1, "poly_degree": 9,
}
MASK_CHANGED = {"top_max": 6.0, "rise_delay": 25.0, "scale_time": 1.5}


def changed_data():
    data = kvcomctl.StimulusData()
    for attr, value in CHANGED.items():
        setattr(data, attr, value)
    data.bits = np.array([1, 0, 0, 1, 1, 1, 0, 1], np.uint8)
    for attr, value in MASK_CHANGED.items():
        setattr(data.mask, attr, value)
    data.mask.name = "Gen2 mask"
    return data


def test_every_stored_key_is_a_documented_property(cli, tmp_path):
    data = changed_data()
    path = tmp_path / "data.ini"
    data.save(path)
    shown = dict(line.split("=", 1) for line in cli.out("stimulus", "show", path).splitlines())
    names = stored_names(kvcomctl.StimulusData)
    mask_names = stored_names(kvcomctl.EyeMask)
    loaded = kvcomctl.StimulusData()
    loaded.load(path)
    # Each property stores under its documented key what it was given, and loads it back.
    for key, value in shown.items():
        if key in names:
            assert as_text(getattr(loaded, names[key])) == value, key
            assert as_text(CHANGED.get(names[key], value)) == value, key
        elif key in mask_names:
            assert as_text(getattr(loaded.mask, mask_names[key])) == value, key
            assert as_text(MASK_CHANGED.get(mask_names[key], value)) == value, key
        else:
            assert key in ("SEQUENCELENGTH", "BITSEQUENCE"), key
    assert shown["SEQUENCELENGTH"] == "8" and shown["BITSEQUENCE"] == "10011101"
    assert len(names) + len(mask_names) + 2 == len(shown)
    assert loaded.mask == data.mask and loaded.mask.name == "Gen2 mask"


def test_the_settings_store_keeps_the_data():
    data = changed_data()
    data.save(store_key="Python tests")
    data.cycle_count = 99
    data.save()
    from_key, own = kvcomctl.StimulusData(), kvcomctl.StimulusData()
    from_key.load(store_key="Python tests")
    own.load()
    assert from_key.cycle_count == 12 and own.cycle_count == 99
    np.testing.assert_array_equal(own.bits, data.bits)


def test_invalid_files_raise_after_the_reset(tmp_path):
    path = tmp_path / "invalid.ini"
    path.write_text("[EYEDIAGRAM]\nCYCLECOUNT=0\nPTOPMAX=7.5\nMASKNAME=kept\n")
    data = changed_data()
    with pytest.raises(ValueError) as raised:
        data.load(path)
    assert str(raised.value) == INVALID
    assert "cycle count" in " ".join(getattr(raised.value, "__notes__", []))
    defaults = kvcomctl.StimulusData()
    assert data.cycle_count == defaults.cycle_count and data.seq_type == defaults.seq_type
    np.testing.assert_array_equal(data.bits, defaults.bits)
    assert data.mask.top_max == 7.5 and data.mask.name == "kept"

    with pytest.raises(FileNotFoundError):
        data.load(tmp_path / "missing.ini")
    with pytest.raises(IsADirectoryError):
        data.load(tmp_path)
    with pytest.raises(ValueError, match="not both"):
        data.load(path, store_key="x")
    with pytest.raises(OSError):
        data.save(tmp_path / "no" / "such" / "file.ini")


@pytest.mark.parametrize(
    "content, reason", [(b"\x00\xff\x01binary noise\x02", "is no INI file"), (b"  \n", "is empty")])
def test_a_file_the_command_line_refuses_is_refused_with_its_reason(cli, tmp_path, content, reason):
    path = tmp_path / "stimulus.ini"
    path.write_bytes(content)
    data = changed_data()
    with pytest.raises(ValueError, match=reason) as raised:
        data.load(path)
    refused = cli.run("stimulus", "show", path)
    assert refused.returncode == 1
    assert refused.stderr == f"kvcomctl stimulus: {raised.value}\n"
    assert data.cycle_count == changed_data().cycle_count  # left as it was


def test_generate_and_bits():
    data = kvcomctl.StimulusData()
    data.seq_type, data.poly_degree, data.init_state = 0, 10, 1
    data.generate()
    np.testing.assert_array_equal(data.bits, kvcomctl.prbs(10, init=1))
    data.seq_type = 3
    data.generate()
    np.testing.assert_array_equal(data.bits, kvcomctl.usb_compliance())
    assert data.invalid_reason() is None
    data.seq_type, data.cycle_count = 1, 7
    data.generate()
    assert data.bits.shape == (70,)
    data.seq_type, data.poly_degree = 0, 31
    with pytest.raises(ValueError, match="poly_degree from 1 to 30"):
        data.generate()
    assert data.bits.shape == (70,)  # left as they were
    data.seq_type, data.poly_degree = 1, 9
    data.bits = np.array([True, False])
    assert data.bits.tolist() == [1, 0]
    with pytest.raises(ValueError, match="must be 0 or 1"):
        data.bits = np.array([0, 2], np.uint8)
    with pytest.raises(TypeError):
        data.cycle_count = 2**40
    assert data.invalid_reason() == "an 8B/10B sequence must hold ten bits per cycle"


def test_mask_checks_use_the_mask_page_messages():
    mask = kvcomctl.EyeMask()
    assert mask.order_error() is None and mask.placement_error() is None
    mask.rise_delay = 5.0  # before the first crossing's end
    assert "Rise delay" in mask.order_error()
    mask = kvcomctl.EyeMask()
    mask.offset_time = 2000.0
    assert mask.placement_error() == "Invalid time offset value\nValid offset range is 0 - 1000"
    mask.offset_time, mask.scale_time = 0.0, 3.0
    with pytest.raises(ValueError, match="at most 20 bytes"):
        mask.name = "x" * 21
    data = kvcomctl.StimulusData()
    data.mask = mask
    assert data.mask == mask
    data.mask.scale_time = 1.0  # changes the object's own mask
    assert data.mask.scale_time == 1.0 and mask.scale_time == 3.0
