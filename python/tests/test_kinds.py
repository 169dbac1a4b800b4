"""Every kind of arrays, there and back, and what no kind can hold."""

import copy
import enum
import pickle

import numpy as np
import pytest

import vexadata as vx


class Colour(enum.Enum):
    red = 1
    blue = 2


class Level(enum.IntEnum):
    low = 1


NUMBERS = ["?", "f8", "f4", "i1", "u1", "i2", "u2", "i4", "u4", "i8", "u8", "c16", "c8"]
PAIRS = [np.dtype([("real", t), ("imag", t)]) for t in ("i1", "u1", "i2", "u2", "i4", "u4", "i8", "u8")]


@pytest.mark.parametrize("dtype", NUMBERS + PAIRS, ids=str)
def test_numbers(dtype):
    source = np.array([[0, 1, 1], [1, 0, 1]]).astype(dtype)
    a = vx.array(source)
    assert a.dtype == source.dtype and a.shape == (2, 3)
    for memory in (np.asarray(a), np.asarray(memoryview(a)), vx.array(np.asarray(a)).numpy()):
        assert memory.dtype == source.dtype and (memory == source).all()
    element = source[0, 1].item() if source.dtype.names is None else tuple(source[0, 1].tolist())
    assert a[0, 1] == element and type(a[0, 1]) is type(element)
    a[1, 1] = a[0, 1]
    assert a[1, 1] == element and source[1, 1] != source[0, 1]


VALUES = {
    "nothing": None,
    "number": 2.5,
    "row of text": "Österreich \U0001f600 \ud800",
    "texts": ["a", None, ""],
    "matrix of texts": [["a", "b", "c"], ["d", None, "f"]],
    "record": {"name": "Oslo", "inner": {"flag": True, "sizes": [1.0, "m"]}},
    "records": [{"a": 1.0, "b": "x"}, {"a": 2.0, "b": None}],
    "cells": [1.0, "x", [None, {"a": 3}]],
}


@pytest.mark.parametrize("value", VALUES.values(), ids=VALUES)
def test_values_come_back(value):
    a = vx.array(value)
    assert a.to_python() == value
    assert vx.array(a) == a == copy.deepcopy(a) and not a != copy.copy(a)
    loaded = pickle.loads(pickle.dumps(a))
    assert (loaded.kind, loaded.shape, loaded.to_python()) == (a.kind, a.shape, value)
    assert str(a) and repr(a).startswith("x".join(map(str, a.shape)))


def test_kinds_of_lists():
    kinds = {
        "double": [1.0, 2],
        "int64": [[1, 2], [3, 4]],
        "logical": [True, False],
        "complex double": [1j],
        "string": ["a", None],
        "enumeration": [Colour.red, Colour.blue],
        "struct": [{"a": 1}, {"a": 2}],
        "cell": [{"a": 1}, {"b": 2}],
    }
    assert {kind: vx.array(value).kind for kind, value in kinds.items()} == {kind: kind for kind in kinds}
    assert vx.array([1, "a"]).kind == vx.array([[1], [2, 3]]).kind == vx.array([[], [1]]).kind == "cell"
    assert vx.array([]).shape == (0, 0) and vx.array([[], []]).shape == (2, 0)
    assert vx.array([Level.low]).class_name == "Level" and vx.array(Level.low).to_python() == "low"
    assert vx.array([1, 2], dtype="f4").kind == "single"
    assert vx.array(np.array([1, 2.5], dtype=object)).kind == "double"


def test_enumerations():
    a = vx.enumeration(["a", None, "b", "a"], "Letters")
    codes, names = a.factorize()
    assert names == ("a", "b") and codes.ravel().tolist() == [0, -1, 1, 0] and codes.dtype == "i4"
    assert a.class_name == "Letters" and list(a) == a.to_python() == ["a", None, "b", "a"]
    a[1] = "b"
    a[0] = None
    assert list(a) == [None, "b", "b", "a"]
    assert pickle.loads(pickle.dumps(a)) == a
    category = type("Categorical", (), {"codes": np.array([1, -1, 0]), "categories": ["x", "y"]})()
    assert list(vx.array(category)) == ["y", None, "x"]
    b = vx.array([[Colour.red, Colour.blue]])
    assert b.class_name == "Colour" and b.shape == (1, 2)
    b[0] = Colour.blue
    assert b[0] == "blue" and np.asarray(b).tolist() == [["blue", "blue"]]
    with pytest.raises(vx.UnknownMemberException, match="green"):
        b[0] = "green"
    for wrong in ("", 3, b"a"):
        with pytest.raises((TypeError, ValueError)):
            vx.enumeration([wrong], "C")
    with pytest.raises(TypeError, match="class_name"):
        vx.enumeration(["a"])
    with pytest.raises(vx.InvalidClassNameException):
        vx.enumeration(["a"], "a\0b")


def test_text():
    c = vx.chars("Zürich \U0001f600")
    assert c.kind == "char" and c.size == 9 and c.text == c.to_python() == "Zürich \U0001f600" and c[1] == "ü"
    c[0], c[-1] = "M", "\ud83d"
    assert c.text == "Mürich \ud83d\ud83d"
    assert np.asarray(c).shape == (1, 9) and pickle.loads(pickle.dumps(c)) == c
    for wrong, error in (("ab", ValueError), ("\U0001f600", ValueError), ("", ValueError), (65, TypeError)):
        with pytest.raises(error):
            c[0] = wrong
    s = vx.strings(np.array([["a", "bc"], ["", "d"]]))
    assert s.to_python() == [["a", "bc"], ["", "d"]] and np.asarray(s).dtype == object
    s[1, 0] = None
    assert s[1, 0] is None and np.asarray(s)[1, 0] is None
    with pytest.raises(TypeError, match="not int"):
        s[0, 0] = 1
    with pytest.raises(TypeError, match="not bytes"):
        vx.strings([b"a"])
    assert vx.zeros((2, 2), "string").to_python() == [[None, None], [None, None]]


def test_cells():
    c = vx.cell([[1.0, "a"], [None, [1, 2]]])
    assert c.shape == (2, 2) and c[0, 1].to_python() == "a" and c[-1, -1].kind == "int64"
    held = c[0, 0]
    held[0] = 5.0
    assert c[0, 0][0] == 1.0  # what was read is a value
    c[0, 0] = held
    c[1, 0] = c
    assert c[0, 0].to_python() == 5.0 and c[1, 0][0, 1].to_python() == "a" and c[1, 0][1, 0].to_python() is None
    assert np.asarray(c).shape == (2, 2) and np.asarray(c)[0, 1].kind == "string"
    assert vx.cell([]).shape == (0, 1) and vx.cell([[1, 2]]).shape == (1, 2)


def test_structs():
    s = vx.struct(name="Oslo", size=3.5)
    assert s.fields == list(s.keys()) == ["name", "size"] and dict(s)["size"].to_python() == 3.5
    s["size"] = [1.0, 2.0]
    assert s["size"].shape == (2, 1) and "name" in s and "x" not in s
    with pytest.raises(KeyError, match="^[^'\"]*'x'"):
        s["x"]  # without the quotes around the message that those of KeyError have
    with pytest.raises(vx.UnknownFieldException):
        s["x"] = 1
    r = vx.array([{"a": 1, "b": "x"}, {"a": 2, "b": "y"}])
    assert [record["a"].to_python() for record in r] == [1, 2] and len(r[0]) == 2
    r[0]["a"] = 10
    r[1] = {"b": "z", "a": 20}
    assert r.to_python() == [{"a": 10, "b": "x"}, {"a": 20, "b": "z"}]
    for wrong in ({"a": 1}, {"a": 1, "b": 2, "c": 3}, 5, None):
        with pytest.raises(TypeError, match="a, b"):
            r[0] = wrong
    with pytest.raises(TypeError):
        r[0] = {"a": 1, "b": object()}
    assert r[0]["b"].to_python() == "x"
    with pytest.raises(TypeError, match="2 records"):
        r["a"]
    with pytest.raises(TypeError):
        del r[0]["a"]
    for name in ("1a", "a b", "", "ä"):
        with pytest.raises(vx.InvalidFieldNameException):
            vx.array({name: 1})


def test_structured_numpy_arrays():
    source = np.array([(1, 2.5, "x", (1, 2)), (2, 3.5, "y", (3, 4))], dtype=[("i", "i2"), ("f", "f8"), ("s", "U1"), ("p", "f4", 2)])
    a = vx.array(source)
    assert a.kind == "struct" and a.shape == (2, 1) and a.fields == ["i", "f", "s", "p"]
    assert a[1]["i"].kind == "int16" and a[1]["s"].to_python() == "y" and np.asarray(a[0]["p"]).dtype == "f4"
    assert vx.struct(source[0])["f"].to_python() == 2.5
    nested = np.zeros((2, 2), dtype=[("a", [("b", "i4")])])
    assert vx.array(nested).shape == (2, 2) and vx.array(nested)[1, 1]["a"]["b"].to_python() == 0


@pytest.mark.parametrize(
    "value, error, why",
    [
        (np.zeros(2, "f2"), TypeError, "float16"),
        (np.zeros(2, "g"), TypeError, "float128"),
        (np.zeros(2, "G"), TypeError, "complex256"),
        (np.zeros(2, "S3"), TypeError, "S3"),
        (np.zeros(2, "M8[s]"), TypeError, r"datetime64\[s\]"),
        (np.zeros(2, "V4"), TypeError, "V4"),
        (np.ma.masked_array([1.0, 2.0], [True, False]), TypeError, "masked"),
        (np.array([object()]), TypeError, "object"),
        (b"abc", TypeError, "bytes; decode"),
        (object(), TypeError, "object"),
        ({1, 2}, TypeError, "set"),
        (lambda: 0, TypeError, "function"),
        ({1: 2}, TypeError, ""),
        (2**64, OverflowError, "64 bits"),
        ([2**70, 1], OverflowError, "64 bits"),
        ([np.datetime64("2020-01-01")], TypeError, "datetime64"),
    ],
    ids=str,
)
def test_refusals_name_what(value, error, why):
    with pytest.raises(error, match=why):
        vx.array(value)


def test_wrong_options():
    for call in (
        lambda: vx.array(1, copy="yes"),
        lambda: vx.array(np.zeros(2), copy=[]),
        lambda: vx.array(np.zeros(2), None, False),
        lambda: vx.array(),
        lambda: vx.freeze([1.0]),
        lambda: vx.chars(1),
        lambda: vx.zeros("ab"),
        lambda: vx.struct({"a": 1}, 2),
        lambda: vx.struct([{"a": 1}, {"b": 2}]),
    ):
        with pytest.raises(TypeError):
            call()
    with pytest.raises(ValueError, match="always a copy"):
        vx.array([1.0], copy=False)
    with pytest.raises(ValueError, match="float32 is always a copy"):
        vx.array(np.zeros(2), dtype="f4", copy=False)


def test_errors_of_the_other_side_come_out():
    class Bad:
        def __array__(self, *arguments):
            raise ZeroDivisionError("in __array__")

    with pytest.raises(ZeroDivisionError):
        vx.array(Bad())
    with pytest.raises(ZeroDivisionError):
        vx.cell([Bad()])
    space = vx.Workspace(a=1)
    with pytest.raises(ZeroDivisionError):
        space.update({"a": 2, "b": Bad()})
    assert space["a"].to_python() == 1 and list(space) == ["a"]


def test_what_contains_itself_ends():
    loop = []
    loop.append(loop)
    ring = {}
    ring["a"] = ring
    objects = np.empty(1, dtype=object)
    objects[0] = objects
    for value in (loop, ring, objects, [1, loop]):
        with pytest.raises(RecursionError):
            vx.array(value)
    deep = vx.array(1)
    for _ in range(20_000):
        deep = vx.cell([deep])
    assert len(repr(deep)) < 10_000 and deep == deep.copy()
    with pytest.raises(RecursionError):
        deep.to_python()


def test_huge_shapes():
    for shape in ((2**40, 2**40), (2**63, 1), (2**64, 2)):
        with pytest.raises((ValueError, OverflowError, IndexError, MemoryError)):
            vx.zeros(shape)
    with pytest.raises(MemoryError):
        vx.zeros((2**45, 8))
    with pytest.raises(ValueError, match="-1"):
        vx.zeros((-1, 2))
    assert vx.zeros((0, 2**40)).shape == (0, 2**40)
    assert np.asarray(vx.zeros((0, 2**40))).size == 0
    with pytest.raises(ValueError, match="'sparkle'"):
        vx.zeros(3, "sparkle")
    assert vx.array(np.broadcast_to(np.int8(1), (3, 2**12))).shape == (3, 2**12)


def test_subclasses_and_instances_of_nothing():
    for cls in (vx.Array, vx.DenseArray, vx.CellArray, vx.Object, type("Own", (vx.DenseArray,), {})):
        for make in (cls, lambda: cls.__new__(cls), lambda: object.__new__(cls)):
            with pytest.raises(TypeError):
                make()
    with pytest.raises(TypeError):
        vx.DenseArray.numpy(vx.chars("a").text)
    empty = vx.array(None)
    assert empty.to_python() is None and empty == vx.array(None) and empty.shape == (0, 0)
    with pytest.raises(TypeError):
        hash(vx.array(1))
    with pytest.raises(TypeError):
        pickle.dumps(vx.Class("P", ["x"])())
    assert (np.matrix([[1.0, 2.0]]) == np.asarray(vx.array(np.matrix([[1.0, 2.0]])))).all()
