"""The package as its users find it: names, help, stubs, examples in docstrings."""

import ast
import doctest
import importlib
import inspect
import os
import pathlib
import pydoc
import subprocess
import sys

import pytest

import vexadata as vx

STUB = ast.parse(pathlib.Path(vx.__file__).with_name("__init__.pyi").read_text())
DATA = pathlib.Path(os.environ["VEXADATA_SAMPLE_DATA"])


def own_names(cls):
    """What a class defines, without what every class has, and without what the interpreter calls by itself."""
    silent = {"__init__", "__eq__", "__str__", "__repr__", "__reduce__", "__dir__", "__hash__", "__buffer__"}
    ours = {n for n in vars(cls) if not n.startswith("_") or (n.startswith("__") and callable(vars(cls)[n]))}
    inherited = {n for n in vars(object)} | {"__module__", "__slots__", "__weakref__", "__dict__"}
    return ours - inherited - silent | (ours & {"__setattr__"}), silent | inherited


def stub_of(cls):
    return next(node for node in STUB.body if isinstance(node, ast.ClassDef) and node.name == cls.__name__)


def test_the_stub_names_everything_and_nothing_else():
    names = {node.name for node in STUB.body if isinstance(node, (ast.ClassDef, ast.FunctionDef))}
    assert names == set(vx.__all__)


@pytest.mark.parametrize("cls", [getattr(vx, n) for n in vx.__all__ if isinstance(getattr(vx, n), type)])
def test_classes_and_their_stubs(cls):
    described = {node.name for node in stub_of(cls).body if isinstance(node, ast.FunctionDef)}
    if issubclass(cls, vx.Error):
        bases = [base.id for base in stub_of(cls).bases]
        assert bases == [base.__name__ for base in cls.__bases__] and cls.__doc__
        return
    own, silent = own_names(cls)
    assert own <= described, "not in the stub"
    assert all(hasattr(cls, name) for name in described - silent), "in the stub alone"
    assert cls.__module__.startswith("vexadata")


def test_help_helps():
    for name in vx.__all__:
        public = getattr(vx, name)
        assert inspect.getdoc(public), name
        for member in vars(public) if isinstance(public, type) else ():
            if not member.startswith("_"):
                assert inspect.getdoc(getattr(public, member)), f"{name}.{member}"
    text = pydoc.render_doc(vx, renderer=pydoc.plaintext)
    assert "never\n    changes" in text and "copy=False" in text
    assert "std::" not in text and "fv::" not in text and "_vexadata.Array" not in text


@pytest.mark.parametrize("module", ["vexadata", "vexadata._convert", "vexadata._mappings", "vexadata._files"])
def test_examples_in_docstrings(module, monkeypatch):
    monkeypatch.chdir(DATA.parent.parent)
    failed, tried = doctest.testmod(importlib.import_module(module), extraglobs={"vexadata": vx})
    assert failed == 0 and tried > 0


def test_the_example_prints_what_it_should():
    script = pathlib.Path(__file__).parent.parent / "examples" / "weather.py"
    printed = subprocess.run([sys.executable, script, DATA], capture_output=True, text=True, check=True)
    assert printed.stdout == script.with_suffix(".expected").read_text() and printed.stderr == ""
