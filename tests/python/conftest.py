"""Shared fixtures: the kvcomctl command line the module is compared with."""

import os
import subprocess

import pytest


class Cli:
    """Runs the kvcomctl command line; every test compares the module with it."""

    def __init__(self, path):
        self.path = path

    def run(self, *args):
        return subprocess.run(
            [self.path, *[str(a) for a in args]], capture_output=True, text=True, check=False
        )

    def out(self, *args):
        """The standard output of a run that must succeed."""
        result = self.run(*args)
        assert result.returncode == 0, result.stderr
        return result.stdout


@pytest.fixture(scope="session")
def cli():
    path = os.environ.get("KV_CLI")
    if not path:
        pytest.fail("KV_CLI must name the kvcomctl executable")
    return Cli(path)


@pytest.fixture(scope="session")
def examples():
    return os.environ["KV_EXAMPLES_DIR"]
