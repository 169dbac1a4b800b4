"""Arrays in files: every kind there and back, and what cannot be read or written."""

import numpy as np
import pytest

import vexadata as vx


def test_every_kind_comes_back(tmp_path):
    path = tmp_path / "all.cbor"
    values = {
        "numbers": np.arange(6000.0).reshape(60, 100),
        "rows": vx.array(np.arange(6, dtype=np.int16).reshape(2, 3)),
        "names": ["a", None],
        "text": "x\u20ac",
        "table": {"n": [1.0, 2.0], "of": {"deep": "er"}},
        "cells": vx.cell([1.0, "b", None]),
    }
    vx.save(path, values)
    for mapped in (True, False):
        loaded = vx.load(path, mapped=mapped)
        assert list(loaded) == list(values)
        for name, value in values.items():
            assert name == "names" or loaded[name] == vx.array(value), name
        assert loaded["names"].to_python() == vx.array(values["names"]).to_python(), "missing ones equal nothing"
        numbers = loaded["numbers"]
        path.with_suffix(".other").write_bytes(path.read_bytes())
        numbers[0, 0] = -1.0
        assert path.with_suffix(".other").read_bytes() == path.read_bytes(), "writes do not reach the file"
    assert list(vx.load(path, ["text"])) == ["text"]
    vx.save(path, vx.array([[1.0]]))  # in place of a file whose arrays live
    assert vx.load(path)["array"][0, 0] == 1.0 and numbers[59, 99] == 5999.0
    assert sorted(p.name for p in tmp_path.iterdir()) == ["all.cbor", "all.other"]


def test_what_cannot_be(tmp_path):
    path = tmp_path / "x.cbor"
    vx.save(path, {"a": 1.0})
    with pytest.raises(KeyError, match="no variable 'b'"):
        vx.load(path, ["a", "b"])
    with pytest.raises(KeyError):
        vx.load(path, [""])
    with pytest.raises(FileNotFoundError):
        vx.load(tmp_path / "none")
    path.write_bytes(path.read_bytes()[:-5])
    with pytest.raises(vx.InputError, match="x.cbor: byte"):
        vx.load(path)
    with pytest.raises(OSError, match="none/x"):
        vx.save(tmp_path / "none" / "x", 1.0)
    with pytest.raises(TypeError, match="named by a str"):
        vx.save(path, {1: 1.0})
    with pytest.raises(TypeError):
        vx.save(path, {"a": object()})
