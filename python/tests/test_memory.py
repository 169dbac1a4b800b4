"""Memory that is shared with NumPy: who sees what, and who keeps it alive."""

import gc
import io
import subprocess
import sys
import threading
import weakref

import numpy as np
import pytest

import vexadata as vx


def address(array):
    return np.asarray(array).__array_interface__["data"][0]


class Counting(np.ndarray):
    """A NumPy array that owns its memory, and whose end can be seen."""

    alive = 0

    def __new__(cls, shape):
        Counting.alive += 1
        made = super().__new__(cls, shape)
        made[...] = 0.0
        weakref.finalize(made, cls.gone)
        return made

    @classmethod
    def gone(cls):
        cls.alive -= 1


@pytest.fixture
def counting():
    gc.collect()
    Counting.alive = 0
    yield Counting
    gc.collect()
    assert Counting.alive == 0


# --- out ------------------------------------------------------------------------------------------------------


def test_read_only_memory_is_shared_and_never_changes():
    a = vx.array([[1.0, 2.0], [3.0, 4.0]])
    seen = a.numpy()
    assert address(a) == address(a.numpy()) == seen.ctypes.data == np.asarray(memoryview(a)).ctypes.data
    assert not seen.flags.writeable and not np.asarray(a).flags.writeable and memoryview(a).readonly
    a[0, 0] = 100.0
    assert seen[0, 0] == 1.0 and a[0, 0] == 100.0 and seen.ctypes.data != address(a)
    for refused in (seen, np.asarray(a), np.asarray(memoryview(a))):
        with pytest.raises(ValueError):
            refused.flags.writeable = True


def test_a_window_is_the_array_itself():
    a = vx.array([1.0, 2.0, 3.0])
    before = a.copy()
    window = a.numpy(writable=True)
    window[0] = 10.0
    a[1] = 20.0
    assert list(a) == [10.0, 20.0, 3.0] and window.ravel().tolist() == [10.0, 20.0, 3.0]
    assert list(before) == [1.0, 2.0, 3.0]
    assert a.numpy(writable=True).ctypes.data == window.ctypes.data


def everything_taken_from(a):
    cell = vx.cell([a])
    record = vx.struct(x=a)
    space = vx.Workspace(x=a)
    return [
        a.copy(),
        vx.array(a),
        cell[0],
        record["x"],
        space["x"],
        vx.array(np.asarray(a)),
        vx.array(memoryview(a)),
    ], [a.numpy(), np.asarray(a), np.asarray(memoryview(a)), a.vector()]


@pytest.mark.parametrize("kind", ["window of numpy", "window onto numpy", "dlpack", "bytes protocol"])
def test_nobody_else_sees_a_write_through_a_window(kind):
    foreign = np.array([1.0, 2.0])
    a = vx.array(foreign, copy=False) if kind == "window onto numpy" else vx.array(foreign)
    window = {
        "window of numpy": lambda: a.numpy(writable=True),
        "window onto numpy": lambda: foreign,
        "dlpack": lambda: np.from_dlpack(a),
        "bytes protocol": lambda: None,
    }[kind]()
    arrays, memories = everything_taken_from(a)
    if kind == "bytes protocol":
        io.BytesIO(np.array([9.0, 9.0]).tobytes()).readinto(a)
    elif window.flags.writeable:
        window[...] = 9.0
    else:
        a[0] = a[1] = 9.0  # a consumer that may write need not
    assert list(a) == [9.0, 9.0]
    assert all(list(b) == [1.0, 2.0] for b in arrays)
    assert all(m.ravel().tolist() == [1.0, 2.0] for m in memories)


def test_when_the_window_is_gone_values_share_again():
    a = vx.array([1.0, 2.0])
    window = a.numpy(writable=True)
    assert address(a) != window.ctypes.data
    with pytest.raises(ValueError, match="2x1 double"):
        a.numpy(copy=False)
    where = window.ctypes.data
    del window
    assert address(a) == where == address(a.copy())
    a.numpy(copy=False)


def test_a_window_of_a_shared_array_is_made_private_first():
    a = vx.array([1.0, 2.0])
    b, seen, cell = a.copy(), a.numpy(), vx.cell([a])
    a.numpy(writable=True)[...] = 5.0
    assert list(a) == [5.0, 5.0] and list(b) == list(cell[0]) == seen.ravel().tolist() == [1.0, 2.0]


def test_copies_share_nothing():
    a = vx.array([1.0, 2.0])
    own = a.numpy(writable=True, copy=True)
    own[0] = 7.0
    assert a[0] == 1.0 and np.array(a).ctypes.data != address(a)


def test_orders_and_shapes():
    for source in (np.arange(24.0).reshape(2, 3, 4), np.asfortranarray(np.arange(24.0).reshape(2, 3, 4))):
        a = vx.array(source)
        assert a.order == ("C" if source.flags.c_contiguous else "F")
        assert np.asarray(a).strides == source.strides and (np.asarray(a) == source).all()
        assert [a[i, j, k] for i in range(2) for j in range(3) for k in range(4)] == source.ravel().tolist()
    assert vx.array(np.zeros((0, 3))).shape == (0, 3) and np.asarray(vx.array(np.zeros((0, 3)))).shape == (0, 3)
    assert vx.array(np.float64(3)).shape == (1, 1) and vx.array(np.zeros(())).shape == (1, 1)
    assert vx.array(np.arange(3)).shape == (3, 1) and vx.array(np.arange(3)).vector().shape == (3,)
    many = vx.zeros((1,) * 33)
    with pytest.raises(ValueError, match="33 dimensions"):
        many.numpy()
    with pytest.raises((ValueError, BufferError)):
        memoryview(many)


def test_buffer_protocol_says_what_the_order_is():
    by_column = vx.array(np.asfortranarray(np.arange(6.0).reshape(2, 3)))
    assert memoryview(by_column).f_contiguous and bytes(vx.array(np.arange(3, dtype="i2"))) == b"\0\0\1\0\2\0"
    with pytest.raises(TypeError, match="read-write"):
        io.BytesIO(bytes(48)).readinto(by_column)  # which asks for the order of C
    assert by_column.numpy(copy=False) is not None  # the refused window is gone


# --- in -------------------------------------------------------------------------------------------------------


def test_memory_that_can_be_written_is_copied():
    x = np.arange(3.0)
    a = vx.array(x)
    x[0] = 50.0
    assert a[0] == 0.0 and not a.is_window


def test_a_view_from_before_keeps_its_way_in():
    x = np.arange(3.0)
    view = x[:]
    x.flags.writeable = False
    a = vx.array(x)
    assert address(a) != x.ctypes.data
    view[0] = 50.0
    assert a[0] == 0.0


def test_memory_that_cannot_change_is_shared():
    fixed = np.frombuffer(np.arange(4.0).tobytes())
    a = vx.array(fixed)
    assert address(a) == fixed.ctypes.data and not a.is_window
    again = vx.array(np.asarray(a)[1:3])
    assert address(again) == fixed.ctypes.data + 8
    a[0] = 9.0
    assert fixed[0] == 0.0 and a[0] == 9.0 and address(a) != fixed.ctypes.data


def test_not_copying_makes_a_window():
    x = np.arange(6.0).reshape(2, 3)
    a = vx.array(x, copy=False)
    assert a.is_window and a.numpy(writable=True).ctypes.data == x.ctypes.data
    x[0, 0] = 7.0
    a[1, 2] = 8.0
    assert a[0, 0] == 7.0 and x[1, 2] == 8.0 and not a.copy().is_window
    x.flags.writeable = False
    b = vx.array(x, copy=False)
    b[0, 0] = -1.0  # may not write there
    assert x[0, 0] == 7.0 and b[0, 0] == -1.0 and not b.is_window


def test_frozen_memory_is_a_value():
    x = np.arange(1000.0)
    a = vx.freeze(x[10:20])
    assert address(a) == x.ctypes.data + 80 and not a.is_window and address(a.copy()) == address(a)
    with pytest.raises(ValueError):
        x[10] = 1.0
    a[0] = 1.0
    assert x[10] == 10.0


@pytest.mark.parametrize(
    "source, why",
    [
        (np.arange(10.0)[::2], r"strides \(16\)"),
        (np.arange(4.0)[::-1], r"strides \(-8\)"),
        (np.broadcast_to(1.0, (3, 3)), r"strides \(0, 0\)"),
        (np.arange(3, dtype=">i4"), ">i4"),
        (np.frombuffer(bytes(17), dtype="i1")[1:].view("f8"), "aligned"),
        (np.array([0, 1, 2], dtype="u1").view(bool), "byte 2"),
    ],
)
def test_memory_that_cannot_be_shared_is_copied_or_refused(source, why):
    with pytest.raises(ValueError, match=why):
        vx.array(source, copy=False)
    with pytest.raises(ValueError, match=why):
        vx.freeze(source)
    copied = vx.array(source)
    assert (np.asarray(copied).reshape(source.shape) == source.astype(bool if source.dtype == bool else source.dtype)).all()
    assert copied.dtype.isnative and set(bytes(copied)) <= {0, 1} or source.dtype != bool


# --- lifetimes ------------------------------------------------------------------------------------------------


def test_the_array_may_go_first(counting):
    a = vx.array(counting(3), copy=False)
    seen, window = a.copy().numpy(), a.numpy(writable=True)
    del a
    gc.collect()
    assert counting.alive == 1
    window[0] = 1.0
    assert window[0] == 1.0 and seen[0] == 0.0
    del window
    gc.collect()
    assert counting.alive == 0 and seen[0] == 0.0


def test_numpy_may_go_first(counting):
    x = counting(3)
    kept = [vx.freeze(x), vx.cell([vx.freeze(x)]), vx.struct(a=vx.freeze(x)), vx.Workspace(a=vx.freeze(x))]
    kept.append(kept[0].copy())
    del x
    gc.collect()
    assert counting.alive == 1 and kept[0][0] == 0.0
    while kept:
        assert counting.alive == 1
        kept.pop(0)
        gc.collect()


def test_a_thousand_rounds_leave_nothing_behind(counting):
    def round_():
        a = vx.array(counting((20, 20)), copy=False)
        window = a.numpy(writable=True)
        vx.cell([a, vx.freeze(counting(3)), {"x": a}]).to_python()
        np.from_dlpack(vx.from_dlpack(np.ones(4)))
        memoryview(a.copy())[0, 0]
        window[0, 0] = 1.0
        with pytest.raises(ValueError):
            vx.array(counting((4, 4))[::2, ::2], copy=False)
        with pytest.raises(TypeError):
            vx.cell([vx.freeze(counting(2)), object()])

    for _ in range(20):
        round_()
    gc.collect()
    blocks = sys.getallocatedblocks()
    for _ in range(1000):
        round_()
    gc.collect()
    assert counting.alive == 0 and sys.getallocatedblocks() - blocks < 100


def test_memory_does_not_grow():
    program = """
import resource, numpy, vexadata
def grow():
    for _ in range(300):
        a = vexadata.array(numpy.zeros(20000))
        vexadata.cell([a, a.numpy(writable=True)])
    return resource.getrusage(resource.RUSAGE_SELF).ru_maxrss
first = grow()
assert grow() - first < 4000, "more than 4 MB of 100 MB stayed"
"""
    subprocess.run([sys.executable, "-c", program], check=True)


def test_owners_go_on_any_thread(counting):
    arrays = [vx.freeze(counting(10)) for _ in range(200)]
    threads = [threading.Thread(target=lambda: [arrays.pop() for _ in range(50)]) for _ in range(4)]
    for thread in threads:
        thread.start()
    for thread in threads:
        thread.join()
    gc.collect()
    assert counting.alive == 0


@pytest.mark.parametrize("key, make", [(0, lambda x: vx.cell([x])), ("a", lambda x: vx.struct(a=x))])
def test_an_element_that_looks_at_its_array_when_it_goes(key, make):
    class Looking(np.ndarray):
        def __del__(self):
            seen.append(holder[key].kind)

    seen = []
    holder = make(vx.freeze(np.ndarray.__new__(Looking, 3)))
    holder[key] = 1
    assert seen == ["int64"]


@pytest.mark.parametrize(
    "last",
    [
        "sys.modules['kept'] = (a, b, w, c, m)",
        "import atexit; atexit.register(lambda: print(a[0], w[0]))",
        "import threading; threading.Thread(target=lambda: (time.sleep(0.3), a[0]), daemon=True).start()",
        "class Last:\n  def __del__(self): self.kept[0]\nlast = Last(); last.kept = a; last.self = last",
    ],
)
def test_the_interpreter_may_end_with_arrays_alive(last):
    program = f"""
import sys, time, numpy, vexadata
x = numpy.zeros(3)
a, b, c, m = vexadata.array(x, copy=False), vexadata.freeze(numpy.ones(3)), vexadata.cell([1]), memoryview(vexadata.zeros(3))
w = a.numpy(writable=True)
{last}
"""
    ended = subprocess.run([sys.executable, "-X", "dev", "-c", program], capture_output=True, text=True)
    assert ended.returncode == 0 and ended.stderr == "", ended.stderr
