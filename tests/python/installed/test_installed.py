"""The installed package imports on its own and carries its stub and marker."""

import os

import kvcomctl


def test_the_installed_package_is_complete():
    folder = os.path.dirname(kvcomctl.__file__)
    assert os.path.realpath(folder).startswith(os.path.realpath(os.environ["KV_INSTALL_PREFIX"]))
    for name in ("__init__.pyi", "py.typed"):
        assert os.path.isfile(os.path.join(folder, name)), name
    assert kvcomctl.prbs(3).tolist() == [0, 0, 1, 0, 1, 1, 1]
    for name in kvcomctl.__all__:
        assert getattr(kvcomctl, name).__doc__, name
