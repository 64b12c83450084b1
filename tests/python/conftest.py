"""The kvcomctl command line the module is compared with."""

import os
import subprocess

import pytest


class Cli:
    def __init__(self, path):
        self.path = path

    def run(self, *args):
        return subprocess.run([self.path, *map(str, args)], capture_output=True, text=True,
                              check=False)

    def out(self, *args):
        """The standard output of a run that must succeed."""
        result = self.run(*args)
        assert result.returncode == 0, result.stderr
        return result.stdout


@pytest.fixture(scope="session")
def cli():
    if not os.environ.get("KV_CLI"):
        pytest.fail("KV_CLI must name the kvcomctl executable")
    return Cli(os.environ["KV_CLI"])
