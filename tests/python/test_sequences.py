"""Sequences, the 8B/10B check and .bit files against the command line."""

import numpy as np
import pytest

import kvcomctl


@pytest.mark.parametrize(
    "make, args",
    [
        (lambda: kvcomctl.prbs(7, init=1), ["prbs", "--degree", 7, "--init", 1]),
        (lambda: kvcomctl.code_8b10b(500), ["8b10b", "--cycles", 500]),
        (lambda: kvcomctl.code_8b10b(300, seed=8), ["8b10b", "--cycles", 300, "--seed", 8]),
        (lambda: kvcomctl.usb_compliance(), ["usb"]),
        (lambda: kvcomctl.toggling(1), ["toggle", "--init", 1]),
        (lambda: kvcomctl.random_bits(1000, 3), ["random", "--count", 1000, "--seed", 3]),
    ],
)
def test_sequences_match_the_command_line(cli, make, args):
    bits = make()
    assert bits.dtype == np.uint8 and bits.ndim == 1 and bits.flags.c_contiguous
    printed = cli.out("sequence", *args).strip().encode()
    np.testing.assert_array_equal(bits, np.frombuffer(printed, dtype=np.uint8) - ord("0"))


@pytest.mark.parametrize(
    "call, message",
    [
        (lambda: kvcomctl.prbs(0), "degree must be from 1 to 30"),
        (lambda: kvcomctl.prbs(31), "degree must be from 1 to 30"),
        (lambda: kvcomctl.prbs(5, init=2), "init must be 0 or 1"),
        (lambda: kvcomctl.toggling(-1), "init must be 0 or 1"),
        (lambda: kvcomctl.code_8b10b(0), "cycles must be from 1"),
        (lambda: kvcomctl.code_8b10b(10, seed=2**31), "seed must fit 32 bits"),
        (lambda: kvcomctl.random_bits(10**10, 1), "count must be from 1"),
        (lambda: kvcomctl.check_8b10b(np.zeros(0, np.uint8)), "holds no bits"),
        (lambda: kvcomctl.check_8b10b(kvcomctl.prbs(5), start=5), "start must be 4 or 6"),
        (lambda: kvcomctl.check_8b10b(np.zeros((2, 10), np.uint8)), "one-dimensional"),
        (lambda: kvcomctl.check_8b10b(np.array([0, 1, 2, 3] * 5, np.uint8)), "element 2 is 2"),
    ],
)
def test_bad_arguments_raise_value_error(call, message):
    with pytest.raises(ValueError, match=message):
        call()


@pytest.mark.parametrize("bad", [np.zeros(20, np.int32), [0, 1, 1]])
def test_bits_of_another_type_raise_type_error(bad):
    with pytest.raises(TypeError, match="uint8 or bool"):
        kvcomctl.check_8b10b(bad)
    with pytest.raises(TypeError):
        kvcomctl.write_bit_file("unused.bit", bad)


def test_check_8b10b_agrees_with_the_command_line(cli, tmp_path):
    code = kvcomctl.code_8b10b(20000, seed=8)
    broken_run = code.copy()
    broken_run[5003:5010] = 1  # seven equal bits
    flipped = code.copy()
    flipped[12345] ^= 1
    ragged = np.append(code, np.ones(7, np.uint8))  # broken after the last whole period
    for index, bits in enumerate([code, broken_run, flipped, ragged]):
        path = tmp_path / f"case{index}.bit"
        kvcomctl.write_bit_file(path, bits)
        for start in (6, 4):
            result = cli.run("check-8b10b", path, "--start", start)
            printed = None if result.returncode == 0 else result.stdout.strip()
            assert kvcomctl.check_8b10b(bits, start) == printed
    assert kvcomctl.check_8b10b(code) is None and kvcomctl.check_8b10b(flipped) is not None
    # A bool array and a strided view are read as they are.
    assert kvcomctl.check_8b10b(code.astype(bool)) is None
    assert kvcomctl.check_8b10b(np.repeat(code, 2)[::2]) is None


def test_bit_files_round_trip_with_the_command_line(cli, tmp_path):
    by_cli = tmp_path / "cli.bit"
    cli.out("sequence", "8b10b", "--cycles", 100, "--seed", 4, "-o", by_cli)
    bits = kvcomctl.read_bit_file(by_cli)
    np.testing.assert_array_equal(bits, kvcomctl.code_8b10b(100, seed=4))
    by_module = tmp_path / "module.bit"
    kvcomctl.write_bit_file(str(by_module), bits)
    assert by_module.read_bytes() == by_cli.read_bytes()


def test_bit_file_problems_carry_the_library_messages(tmp_path):
    with pytest.raises(OSError, match="Unable to load file .*missing.bit due to following reason"):
        kvcomctl.read_bit_file(tmp_path / "missing.bit")
    bad = tmp_path / "bad.bit"
    bad.write_bytes(b"0101x")
    with pytest.raises(ValueError, match="Unable to load sequence\nFile .*bad.bit is not valid"):
        kvcomctl.read_bit_file(bad)
    long = tmp_path / "long.bit"
    kvcomctl.write_bit_file(long, kvcomctl.prbs(16))
    with pytest.warns(UserWarning, match="Sequence too long"):
        assert kvcomctl.read_bit_file(long).shape == (32768,)
    with pytest.raises(OSError, match="Unable to save file"):
        kvcomctl.write_bit_file(tmp_path / "no" / "such.bit", kvcomctl.prbs(3))
    with pytest.raises(ValueError, match="element 2 is 7"):
        kvcomctl.write_bit_file(tmp_path / "seven.bit", np.array([0, 1, 7], np.uint8))
    assert not (tmp_path / "seven.bit").exists()
