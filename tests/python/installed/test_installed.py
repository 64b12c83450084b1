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


def test_the_stub_describes_what_the_module_holds():
    import ast

    folder = os.path.dirname(kvcomctl.__file__)
    with open(os.path.join(folder, "__init__.pyi"), encoding="utf-8") as file:
        stub = ast.parse(file.read())
    defined = {
        node.name: node
        for node in stub.body
        if isinstance(node, (ast.FunctionDef, ast.ClassDef))
    }
    assert set(defined) == set(kvcomctl.__all__)
    for name, node in defined.items():
        if isinstance(node, ast.ClassDef):
            members = {
                item.target.id if isinstance(item, ast.AnnAssign) else item.name
                for item in node.body
                if isinstance(item, (ast.AnnAssign, ast.FunctionDef))
            }
            assert members <= set(dir(getattr(kvcomctl, name))), name
