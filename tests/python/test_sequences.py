"""Sequences, the 8B/10B check and .bit files against the command line."""

import numpy as np
import pytest

import kvcomctl


def cli_bits(cli, *args):
    text = cli.out("sequence", *args).strip()
    return np.frombuffer(text.encode(), dtype=np.uint8) - ord("0")


@pytest.mark.parametrize(
    "make, args",
    [
        (lambda: kvcomctl.prbs(3), ["prbs", "--degree", 3]),
        (lambda: kvcomctl.prbs(7, init=1), ["prbs", "--degree", 7, "--init", 1]),
        (lambda: kvcomctl.prbs(16), ["prbs", "--degree", 16]),
        (lambda: kvcomctl.code_8b10b(500), ["8b10b", "--cycles", 500]),
        (lambda: kvcomctl.code_8b10b(300, seed=8), ["8b10b", "--cycles", 300, "--seed", 8]),
        (lambda: kvcomctl.code_8b10b(3, seed=-5), ["8b10b", "--cycles", 3, "--seed", -5]),
        (lambda: kvcomctl.usb_compliance(), ["usb"]),
        (lambda: kvcomctl.toggling(), ["toggle"]),
        (lambda: kvcomctl.toggling(1), ["toggle", "--init", 1]),
        (lambda: kvcomctl.random_bits(1000, 3), ["random", "--count", 1000, "--seed", 3]),
        (lambda: kvcomctl.random_bits(33, 2147483647), ["random", "--count", 33, "--seed", 2147483647]),
    ],
)
def test_sequences_match_the_command_line(cli, make, args):
    bits = make()
    assert isinstance(bits, np.ndarray)
    assert bits.dtype == np.uint8 and bits.ndim == 1 and bits.flags.c_contiguous
    assert bits.flags.owndata or bits.base is not None
    np.testing.assert_array_equal(bits, cli_bits(cli, *args))


def test_long_prbs_has_its_full_length_and_balance():
    bits = kvcomctl.prbs(23)
    assert bits.shape == (2**23 - 1,)
    # A maximal-length sequence holds one more one than zeros, or its inverse one fewer.
    assert int(bits.sum()) in (2**22 - 1, 2**22)
    assert bits[0] == 0 and kvcomctl.prbs(23, init=1)[0] == 1


@pytest.mark.parametrize(
    "call, message",
    [
        (lambda: kvcomctl.prbs(0), "degree must be from 1 to 30"),
        (lambda: kvcomctl.prbs(31), "degree must be from 1 to 30"),
        (lambda: kvcomctl.prbs(5, init=2), "init must be 0 or 1"),
        (lambda: kvcomctl.toggling(-1), "init must be 0 or 1"),
        (lambda: kvcomctl.code_8b10b(0), "cycles must be from 1"),
        (lambda: kvcomctl.code_8b10b(10, seed=2**31), "seed must fit 32 bits"),
        (lambda: kvcomctl.random_bits(-4, 1), "count must be from 1"),
        (lambda: kvcomctl.random_bits(10**10, 1), "count must be from 1"),
        (lambda: kvcomctl.check_8b10b(np.zeros(0, np.uint8)), "holds no bits"),
        (lambda: kvcomctl.check_8b10b(kvcomctl.prbs(5), start=5), "start must be 4 or 6"),
        (lambda: kvcomctl.check_8b10b(np.zeros((2, 10), np.uint8)), "one-dimensional"),
        (lambda: kvcomctl.check_8b10b(np.array([0, 1, 2, 3] * 5, np.uint8)), "element 2 is 2"),
        (lambda: kvcomctl.write_bit_file("unused.bit", np.full(4, 255, np.uint8)), "0 or 1"),
    ],
)
def test_bad_arguments_raise_value_error(call, message):
    with pytest.raises(ValueError, match=message):
        call()


@pytest.mark.parametrize("bad", [np.zeros(20, np.int32), np.zeros(20, np.float64), [0, 1, 1], "0101"])
def test_bits_of_another_type_raise_type_error(bad):
    with pytest.raises(TypeError, match="uint8 or bool"):
        kvcomctl.check_8b10b(bad)
    with pytest.raises(TypeError):
        kvcomctl.write_bit_file("unused.bit", bad)


def write_text(path, text):
    path.write_bytes(text.encode())
    return path


def check_with_cli(cli, path, *options):
    result = cli.run("check-8b10b", path, *options)
    return None if result.returncode == 0 else result.stdout.strip()


def test_check_8b10b_agrees_with_the_command_line(cli, tmp_path):
    code = kvcomctl.code_8b10b(20000, seed=8)
    broken_run = code.copy()
    broken_run[5003:5010] = 1  # seven equal bits
    flipped = code.copy()
    flipped[12345] ^= 1
    ragged = code[:-3]  # ends inside a period
    cases = [code, broken_run, flipped, ragged, kvcomctl.prbs(9), kvcomctl.usb_compliance()]
    for index, bits in enumerate(cases):
        path = tmp_path / f"case{index}.bit"
        kvcomctl.write_bit_file(path, bits)
        for start in (6, 4, 0):
            assert kvcomctl.check_8b10b(bits, start) == check_with_cli(cli, path, "--start", start)
    assert kvcomctl.check_8b10b(code) is None
    assert kvcomctl.check_8b10b(broken_run) is not None
    assert kvcomctl.check_8b10b(np.ones(30, np.uint8)) == "Running length exceeded"
    # A bool array and a strided view are read as they are.
    assert kvcomctl.check_8b10b(code.astype(bool)) is None
    doubled = np.repeat(code, 2)[::2]
    assert kvcomctl.check_8b10b(doubled) is None


def test_bit_files_round_trip_with_the_command_line(cli, tmp_path):
    by_cli = tmp_path / "cli.bit"
    cli.out("sequence", "8b10b", "--cycles", 100, "--seed", 4, "-o", by_cli)
    bits = kvcomctl.read_bit_file(by_cli)
    assert bits.dtype == np.uint8
    np.testing.assert_array_equal(bits, kvcomctl.code_8b10b(100, seed=4))

    by_module = tmp_path / "module.bit"
    kvcomctl.write_bit_file(str(by_module), bits)
    assert by_module.read_bytes() == by_cli.read_bytes()

    spaced = write_text(tmp_path / "spaced.bit", "01 1,0;\r\n\t1")
    np.testing.assert_array_equal(kvcomctl.read_bit_file(spaced), [0, 1, 1, 0, 1])


def test_bit_file_problems_carry_the_library_messages(tmp_path):
    with pytest.raises(OSError, match="Unable to load file .*missing.bit due to following reason"):
        kvcomctl.read_bit_file(tmp_path / "missing.bit")
    bad = write_text(tmp_path / "bad.bit", "0101x")
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
