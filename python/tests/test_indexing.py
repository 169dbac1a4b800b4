"""Elements by their indices, and what an array is to operators and functions of Python."""

import numpy as np
import pytest

import vexadata as vx


@pytest.fixture(params=["C", "F"])
def a(request):
    return vx.array(np.arange(6.0).reshape(2, 3).copy(order=request.param))


def test_indices_count_from_both_ends(a):
    assert a[1, 2] == a[-1, -1] == a[np.int8(1), 2] == 5.0 and a[0, -3] == 0.0
    a[-2, 1] = 9
    assert np.asarray(a).tolist() == [[0.0, 9.0, 2.0], [3.0, 4.0, 5.0]]
    row, column = vx.array([[1, 2, 3]]), vx.array([1, 2, 3])
    assert list(row) == list(column) == [1, 2, 3] and row[-1] == column[2] == column[2, 0] == 3
    assert len(row) == len(column) == 3 and len(vx.zeros((0, 5))) == 0
    assert list(a.elements()) == np.asarray(a).ravel(order="K").tolist()


@pytest.mark.parametrize(
    "key, error, why",
    [
        ((2, 0), vx.EArrayIndexOutOfRange, "index 2 in .2, 0. is outside of dimension 0 of 2x3 double"),
        ((0, -4), vx.EArrayIndexOutOfRange, "index -4 in .0, -4. is outside of dimension 1"),
        ((0, 2**70), IndexError, ""),
        (0, vx.NotEnoughIndicesProvidedException, "one index for 2x3 double"),
        ((0,), vx.NotEnoughIndicesProvidedException, "1 indices"),
        ((0, 0, 0), vx.TooManyIndicesProvidedException, "3 indices for 2x3 double, which takes 2"),
        ((0, 1.0), TypeError, "float"),
        ((True, 0), TypeError, "bool"),
        (slice(None), TypeError, "numpy.asarray"),
        ((slice(None), 0), TypeError, "slice"),
        ("x", TypeError, "str"),
        (None, TypeError, "NoneType"),
        ((), vx.NotEnoughIndicesProvidedException, "0 indices"),
    ],
    ids=str,
)
def test_wrong_indices_say_which(a, key, error, why):
    with pytest.raises(error, match=why):
        a[key]
    with pytest.raises(error, match=why):
        a[key] = 1.0
    assert np.asarray(a).tolist() == [[0.0, 1.0, 2.0], [3.0, 4.0, 5.0]]


@pytest.mark.parametrize(
    "kind, value, error",
    [
        ("double", "x", TypeError),
        ("double", None, TypeError),
        ("double", 1j, TypeError),
        ("uint8", 256, OverflowError),
        ("uint8", -1, OverflowError),
        ("int64", 2**63, OverflowError),
        ("int32", 1.0, TypeError),
        ("logical", 1, TypeError),
        ("complex int8", 128, OverflowError),
        ("complex int8", 1j, TypeError),
        ("sparse double", 1.0, TypeError),
    ],
)
def test_numbers_that_do_not_fit_are_refused(kind, value, error):
    a = vx.zeros((1, 2), kind)
    before = a.copy()
    with pytest.raises(error):
        a[0, 1] = value
    assert a == before


def test_numbers_that_fit_are_stored():
    for kind, value in (("double", 3), ("single", 0.5), ("uint64", 2**64 - 1), ("int64", -(2**63)), ("logical", np.True_)):
        a = vx.zeros(2, kind)
        a[1] = value
        assert a[1] == value and a[0] == 0
    pair = vx.zeros(1, "complex int8")
    pair[0] = (1, -2)
    assert pair[0] == (1, -2)


def test_matrices_have_no_length_and_no_truth(a):
    for use in (len, list, iter, bool, float, int):
        with pytest.raises(TypeError, match="2x3 double"):
            use(a)
    assert float(vx.array(2.5)) == 2.5 and int(vx.array(3)) == 3 and complex(vx.array(1j)) == 1j
    assert bool(vx.array(True)) and not vx.array(0.0)


def test_equality(a):
    assert a == a.copy() and a != vx.zeros((2, 3)) and a != vx.array(np.arange(6.0)) and a != 1 and a != "x"
    assert not (vx.array([1.0]) == vx.array([1]))
    b = a.copy()
    assert a.is_shared
    b[0, 0] = 1.0
    assert a != b and not b.is_shared


def test_numpy_computes_with_arrays(a):
    assert np.add(a, 1.0)[1, 2] == 6.0 and (np.ones((2, 3)) + a).sum() == 21.0 and np.sum(a) == 15.0
    assert np.array(a, dtype="i4").dtype == "i4" and np.stack([a, a]).shape == (2, 2, 3)
    assert a.vector is not None
    with pytest.raises(ValueError, match="neither row nor column"):
        a.vector()
