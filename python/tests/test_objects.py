"""Objects, handles, workspaces, sparse matrices and files."""

import gc
import os
import pickle

import numpy as np
import pytest
import scipy.sparse

import vexadata as vx

DATA = os.environ["VEXADATA_SAMPLE_DATA"]


# --- objects --------------------------------------------------------------------------------------------------


def test_objects_have_properties():
    point = vx.Class("Point", ["x", "y", "copy"])
    p = point(x=1.0, y=[1.0, 2.0])
    q = p.copy()
    p.x = 5.0
    assert p.x.to_python() == 5.0 and q.x.to_python() == 1.0 and p["y"].shape == (2, 1)
    p["copy"] = "a property that bears the name of a method"
    for name in ("copy", "class_info", "__class__"):
        with pytest.raises(AttributeError, match=r"o\['"):
            setattr(p, name, 1)
    assert callable(p.copy) and p["copy"].to_python().startswith("a property") and "y" in dir(p)
    assert p != q and q == q.copy() and p.properties() == ["x", "y", "copy"] and p.class_info.name == "Point"
    assert p.member is None and "Point" in repr(p.class_info)
    for use in (lambda: p.z, lambda: setattr(p, "z", 1), lambda: p["z"], lambda: point(z=1)):
        with pytest.raises(vx.UnknownPropertyException) as caught:
            use()
        assert isinstance(caught.value, AttributeError) and isinstance(caught.value, vx.Error)
    assert not hasattr(p, "z") and not hasattr(p, "__array__")


def test_classes_inherit():
    shape = vx.Class("Shape", ["area"])
    disc = vx.Class("Disc", ["radius"], superclasses=[shape])
    assert [c.name for c in disc.superclasses] == ["Shape"] and set(disc().properties()) == {"area", "radius"}
    for names, error in ((["1x"], vx.InvalidPropertyException), (["a", "a"], vx.InvalidPropertyException)):
        with pytest.raises(error):
            vx.Class("C", names)
    with pytest.raises(vx.InvalidClassNameException):
        vx.Class("a\0", [])


def test_arrays_of_objects_hold_values():
    point = vx.Class("Point", ["x"], array_properties=["unit"])
    a = point.array((1, 2))
    a[0] = point(x=1.0)
    first = a[0]
    first.x = 2.0
    assert a[0].x.to_python() == 1.0
    a[0] = first
    a["unit"] = "m"
    assert a[0].x.to_python() == 2.0 and a["unit"].to_python() == "m" and a.class_info.name == "Point"
    assert vx.array([point(x=1.0), point(x=2.0)]).shape == (2, 1) and vx.array(first).kind == a.kind
    assert vx.array([point(), vx.Class("Other", [])()]).kind == "cell"
    with pytest.raises(vx.WrongClassException):
        a[1] = vx.Class("Other", [])()
    with pytest.raises(TypeError, match="vexadata.Object, not int"):
        a[1] = 5


def test_handles_are_opaque():
    engine = bytes(range(16))
    h = vx.Handle(engine, 7)
    assert h == vx.Handle(engine, 7) != vx.Handle(engine, 8) and len({h, vx.Handle(engine, 7)}) == 1
    assert h.engine == engine and h.id == 7
    a = vx.array([h, vx.Handle(engine, 8)])
    assert a[1].id == 8 and a.shape == (2, 1) and vx.zeros(1, a.kind)[0] is None
    with pytest.raises(ValueError, match="16 bytes"):
        vx.Handle(b"x", 1)
    with pytest.raises(vx.InvalidArrayTypeException):
        a["x"]


# --- workspaces -----------------------------------------------------------------------------------------------


def test_a_workspace_is_a_mapping():
    ws = vx.Workspace({"b": 1}, a=[1.0, 2.0])
    assert list(ws) == ["a", "b"] and len(ws) == 2 and "a" in ws and "c" not in ws and 5 not in ws
    taken = ws["a"]
    taken[0] = 9.0
    assert ws["a"][0] == 1.0
    ws.update(c="x")
    assert ws.pop("c").to_python() == "x" and ws.get("c") is None
    ws["d"] = 4
    del ws["d"]
    for use in (lambda: ws["d"], lambda: ws.pop("d"), lambda: ws["1"]):
        with pytest.raises(KeyError):
            use()
    for name in ("1a", "a b", "", "a\0b", "ä"):
        with pytest.raises(vx.InvalidVariableNameException):
            ws.update({"z": 1, name: 2})
    assert "z" not in ws and "a: 2x1 double" in repr(ws)
    empty = vx.Workspace(e=None)
    assert "e" in empty and empty["e"].kind == "unknown"
    with pytest.raises(TypeError):
        ws[1] = 2


# --- sparse ---------------------------------------------------------------------------------------------------


@pytest.mark.parametrize("dtype", ["f8", "c16", "?"])
def test_sparse_matrices_there_and_back(dtype):
    source = scipy.sparse.random(20, 30, 0.2, format="csc", random_state=1).astype(dtype)
    for form in (source, source.tocoo(), source.tocsr(), scipy.sparse.csc_array(source)):
        s = vx.array(form)
        back = s.to_scipy()
        assert (back != source).nnz == 0 and s.nnz == source.nnz and s.shape == (20, 30)
        assert pickle.loads(pickle.dumps(s)) == s
    assert all(s[i, j] == source[i, j] for i in range(20) for j in range(30))
    values, rows, starts = s.parts()
    assert np.shares_memory(back.data, values) and np.shares_memory(back.indices, rows)
    assert not values.flags.writeable and rows.dtype == starts.dtype == "i8"
    assert (back @ np.ones(30) == source @ np.ones(30)).all()
    del s, values, rows, starts
    gc.collect()
    assert (back != source).nnz == 0


def wide(matrix):
    """The same with indices of int64, set past the constructor."""
    matrix.indices, matrix.indptr = matrix.indices.astype("i8"), matrix.indptr.astype("i8")
    return matrix


def test_sparse_memory_is_shared_when_asked_for():
    source = wide(scipy.sparse.csc_matrix((np.array([1.0, 2.0, 3.0]), ([0, 1, 2], [0, 1, 2]))))
    s = vx.sparse(source, copy=False)
    value = s.copy()
    source.data[0] = 50.0
    assert s.is_window and s[0, 0] == 50.0 and value[0, 0] == 1.0 and not value.is_window
    assert np.shares_memory(vx.sparse(source, copy=False).parts()[0], source.data) is False  # a value
    again = [vx.sparse(source, copy=False) for _ in range(3)]
    del source, s
    gc.collect()
    assert [a[0, 0] for a in again] == [50.0] * 3


@pytest.mark.parametrize(
    "spoil, why",
    [
        (lambda m: m.astype("f4"), "float32"),
        (lambda m: set_part(m, "indices", m.indices.astype("i4")), "int32"),
        (lambda m: m.tocsr(), "csr_matrix"),
        (lambda m: set_part(m, "data", np.array([0.0, 2.0, 3.0])), "stored zero"),
        (lambda m: set_part(m, "indices", np.array([0, 0, 2])), "neighbours in one row"),
    ],
)
def test_sparse_memory_that_cannot_be_shared(spoil, why):
    matrix = spoil(wide(scipy.sparse.csc_matrix((np.array([1.0, 2.0, 3.0]), ([0, 1, 2], [0, 1, 2])))))
    with pytest.raises((ValueError, TypeError), match=why):
        vx.sparse(matrix, copy=False)


def set_part(matrix, name, values):
    setattr(matrix, name, values)
    return matrix


def test_wrong_sparse_matrices():
    build = vx._vexadata._sparse
    good = [np.array([1.0, 2.0]), np.array([0, 1]), np.array([0, 1, 2])]
    assert build((2, 2), *good, None).nnz == 2
    for k, part, error in (
        (0, np.array([1.0]), ValueError),
        (1, np.array([0, 5]), vx.EArrayIndexOutOfRange),
        (1, np.array([0, -1]), vx.EArrayIndexOutOfRange),
        (2, np.array([0, 2, 1]), vx.InvalidColumnStartsException),
        (2, np.array([0, 2]), ValueError),
        (0, np.array([1, 2], "f4"), TypeError),
    ):
        for copy in (None, False):
            wrong = [p if p.dtype.kind == "f" else p.astype("i8") for p in good]
            wrong[k] = part
            with pytest.raises(error if copy is None else (error, ValueError)):
                build((2, 2), *wrong, copy)
    with pytest.raises(vx.EInvalidDimensionsInSparseArray):
        build((2, 2, 2), *good, None)
    with pytest.raises(TypeError, match="to_scipy"):
        np.asarray(build((2, 2), *good, None))


# --- files ----------------------------------------------------------------------------------------------------


def test_a_table_is_read_and_its_columns_share_memory():
    table = vx.read_csv(os.path.join(DATA, "seattle-weather.csv"))
    highest = table["temp_max"].vector()
    assert highest.shape == (1461,) and highest.max() == 35.6 and not highest.flags.owndata
    assert table["weather"].class_name == "weather" and table["date"][0] == "2012-01-01"
    codes, names = table["weather"].factorize()
    counts = dict(zip(names, np.bincount(codes.ravel())))
    assert counts == {"drizzle": 53, "rain": 641, "sun": 640, "snow": 26, "fog": 101}
    matrix = vx.read_matrix(os.path.join(DATA, "grid.mtx"))
    assert matrix.kind == "sparse double" and matrix.nnz == 672


def test_files_that_are_wrong(tmp_path):
    bad = tmp_path / "bad.csv"
    bad.write_text("a,b\n1,2\n3\n")
    with pytest.raises(vx.InputError, match=r"bad\.csv:3: "):
        vx.read_csv(bad)
    with pytest.raises(FileNotFoundError):
        vx.read_csv(tmp_path / "missing.csv")
    with pytest.raises(IsADirectoryError):
        vx.read_csv(tmp_path)
    with pytest.raises(vx.InputError, match="read_matrix"):
        vx.read_csv(os.path.join(DATA, "grid.mtx"))
    with pytest.raises(vx.InputError, match="read_csv"):
        vx.read_matrix(os.path.join(DATA, "global-temp.csv"))
    with pytest.raises(ValueError, match="utf-16"):
        vx.read_csv(bad, encoding="utf-16")
    for delimiter in ("", ",,", "é", 5):
        with pytest.raises(ValueError):
            vx.read_csv(bad, delimiter=delimiter)
    odd = tmp_path / os.fsdecode(b"\xff.csv")
    odd.write_bytes("größe;x\n1,5;é\n".encode("latin-1"))
    table = vx.read_csv(odd, encoding="latin-1", delimiter=";")
    assert table["x"].to_python() == "é" and table[table.fields[0]][0] == 1.5
    with pytest.raises(vx.InputError, match=":1: "):
        vx.read_csv(odd)
