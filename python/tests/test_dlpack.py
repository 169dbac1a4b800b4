"""DLPack, with capsules of which every byte is known."""

import ctypes
import gc
import threading
import weakref

import numpy as np
import pytest

import vexadata as vx

PyCapsule_New = ctypes.pythonapi.PyCapsule_New
PyCapsule_New.restype = ctypes.py_object
PyCapsule_New.argtypes = [ctypes.c_void_p, ctypes.c_char_p, ctypes.c_void_p]
PyCapsule_GetPointer = ctypes.pythonapi.PyCapsule_GetPointer
PyCapsule_GetPointer.restype = ctypes.c_void_p
PyCapsule_GetPointer.argtypes = [ctypes.py_object, ctypes.c_char_p]


class Tensor(ctypes.Structure):
    _fields_ = [
        ("data", ctypes.c_void_p),
        ("device", ctypes.c_int32 * 2),
        ("ndim", ctypes.c_int32),
        ("code", ctypes.c_uint8),
        ("bits", ctypes.c_uint8),
        ("lanes", ctypes.c_uint16),
        ("shape", ctypes.POINTER(ctypes.c_int64)),
        ("strides", ctypes.POINTER(ctypes.c_int64)),
        ("offset", ctypes.c_uint64),
    ]


Deleter = ctypes.CFUNCTYPE(None, ctypes.c_void_p)


class Managed(ctypes.Structure):
    _fields_ = [("tensor", Tensor), ("context", ctypes.c_void_p), ("deleter", Deleter)]


class Versioned(ctypes.Structure):
    _fields_ = [
        ("version", ctypes.c_uint32 * 2),
        ("context", ctypes.c_void_p),
        ("deleter", Deleter),
        ("flags", ctypes.c_uint64),
        ("tensor", Tensor),
    ]


class Producer:
    """Hands out one tensor over doubles, as it is told to, and counts how often it is let go."""

    def __init__(self, shape=(2, 3), strides=None, versioned=True, flags=0, major=1, **changes):
        self.values = np.arange(24.0)
        self.gone = 0
        self.deleter = Deleter(self.go)
        self.shape = (ctypes.c_int64 * max(len(shape), 1))(*shape)
        self.strides = None if strides is None else (ctypes.c_int64 * len(strides))(*strides)
        form = Versioned if versioned else Managed
        self.managed = form(deleter=self.deleter)
        self.name = b"dltensor_versioned" if versioned else b"dltensor"
        if versioned:
            self.managed.version[0] = major
            self.managed.flags = flags
        tensor = self.managed.tensor
        fields = {"data": self.values.ctypes.data, "ndim": len(shape), "code": 2, "bits": 64, "lanes": 1, **changes}
        tensor.device[0] = fields.pop("device", 1)
        for name, value in fields.items():
            setattr(tensor, name, value)
        tensor.shape = self.shape
        if self.strides is not None:
            tensor.strides = self.strides

    def go(self, _):
        self.gone += 1

    def __dlpack__(self, **options):
        if options and self.name == b"dltensor":
            raise TypeError("no options before version 1")
        return PyCapsule_New(ctypes.addressof(self.managed), self.name, None)


def taken(producer):
    array = vx.from_dlpack(producer)
    values = np.array(array)
    assert producer.gone == 0
    del array
    gc.collect()
    assert producer.gone == 1
    return values


@pytest.mark.parametrize("versioned", [True, False])
def test_strides_offsets_and_dimensions(versioned):
    expected = np.arange(6.0).reshape(2, 3)
    assert (taken(Producer(versioned=versioned)) == expected).all()
    assert (taken(Producer(strides=(3, 1), versioned=versioned)) == expected).all()
    assert (taken(Producer(strides=(1, 2), versioned=versioned)) == np.arange(6.0).reshape(3, 2).T).all()
    assert (taken(Producer(strides=(3, 1), offset=16)) == expected + 2).all()
    assert taken(Producer(shape=(4,))).shape == (4, 1)
    assert taken(Producer(shape=())).shape == (1, 1)
    assert taken(Producer(shape=(0, 3), data=None)).shape == (0, 3)
    assert taken(Producer(shape=(1, 4), strides=(999, 1))).shape == (1, 4)


def test_read_only_tensors_are_not_written():
    producer = Producer(flags=1)
    array = vx.from_dlpack(producer)
    assert array.is_window and np.asarray(array.numpy(writable=False)).shape == (2, 3)
    array[0, 0] = 5.0
    assert producer.values[0] == 0.0 and array[0, 0] == 5.0
    writable = Producer()
    vx.from_dlpack(writable)[0, 0] = 5.0
    assert writable.values[0] == 5.0 and writable.gone == 1


@pytest.mark.parametrize(
    "changes, why",
    [
        ({"device": 2}, r"device \(2, 0\)"),
        ({"code": 4, "bits": 16}, "code 4, 16 bits"),
        ({"bits": 16}, "code 2, 16 bits"),
        ({"lanes": 2, "bits": 32}, "2 lanes"),
        ({"strides": (6, 2)}, r"strides \(6, 2\)"),
        ({"strides": (-3, 1)}, r"strides \(-3, 1\)"),
        ({"shape": (-1, 2)}, "extent of -1"),
        ({"offset": 4}, "not aligned"),
        ({"major": 2}, "version 2"),
        ({"code": 6, "bits": 8, "offset": 14}, "no truth value"),
    ],
)
def test_refusals_leave_the_tensor_where_it_is(changes, why):
    producer = Producer(**changes)
    with pytest.raises(BufferError, match=why):
        vx.from_dlpack(producer)
    assert producer.gone == 0


def test_a_capsule_is_taken_once():
    producer = Producer()
    capsule = producer.__dlpack__()
    producer.__dlpack__ = None
    once = type("Once", (), {"__dlpack__": lambda self, **options: capsule})()
    array = vx.from_dlpack(once)
    with pytest.raises(BufferError, match="unused"):
        vx.from_dlpack(once)
    assert array[1, 2] == 5.0
    for wrong in (1, "x"):
        with pytest.raises((BufferError, TypeError)):
            vx.from_dlpack(type("Wrong", (), {"__dlpack__": lambda self, **options: wrong})())
    with pytest.raises(ZeroDivisionError):
        vx.from_dlpack(type("Bad", (), {"__dlpack__": lambda self, **options: 1 / 0})())
    with pytest.raises(TypeError, match="__dlpack__"):
        vx.from_dlpack([1.0])


def exported(array, **options):
    capsule = array.__dlpack__(max_version=(1, 0), **options)
    return capsule, Versioned.from_address(PyCapsule_GetPointer(capsule, b"dltensor_versioned"))


def test_what_is_exported():
    a = vx.array(np.asfortranarray(np.arange(6, dtype="i2").reshape(2, 3)))
    capsule, form = exported(a)
    tensor = form.tensor
    assert (tuple(form.version), form.flags, tensor.code, tensor.bits, tensor.lanes) == ((1, 0), 1, 0, 16, 1)
    assert tensor.shape[:2] == [2, 3] and tensor.strides[:2] == [1, 2] and tuple(tensor.device) == (1, 0)
    assert tensor.data == np.asarray(a).ctypes.data
    a[0, 0] = 9
    assert ctypes.cast(tensor.data, ctypes.POINTER(ctypes.c_int16))[0] == 0
    del capsule
    copy, form = exported(a, copy=True)
    assert form.flags == 2 and form.tensor.data != np.asarray(a).ctypes.data
    for kind, code, bits in (("logical", 6, 8), ("complex double", 5, 128), ("single", 2, 32), ("uint64", 1, 64)):
        held, form = exported(vx.zeros((2, 2), kind))
        assert (form.tensor.code, form.tensor.bits) == (code, bits)
    with pytest.raises(BufferError, match="2x2 complex int8"):
        vx.zeros((2, 2), "complex int8").__dlpack__()
    with pytest.raises(ValueError, match="stream"):
        a.__dlpack__(stream=1)
    with pytest.raises(BufferError, match=r"\(2, 0\)"):
        a.__dlpack__(dl_device=(2, 0))
    assert a.__dlpack_device__() == (1, 0)


def test_with_numpy_in_both_directions():
    a = vx.array([[1.0, 2.0], [3.0, 4.0]])
    there = np.from_dlpack(a)
    assert there.tolist() == [[1.0, 2.0], [3.0, 4.0]]
    a[0, 0] = 7.0  # an array for a consumer that may write is a window
    assert there[0, 0] == 7.0
    x = np.arange(3.0)
    back = vx.from_dlpack(x)
    x[0] = 5.0
    assert back.is_window and back[0] == 5.0
    with pytest.raises(BufferError, match=r"strides \(2\)"):
        vx.from_dlpack(np.arange(6.0)[::2])
    empty = vx.from_dlpack(np.zeros((0, 2)))
    assert empty.shape == (0, 2) and np.from_dlpack(empty).shape == (0, 2)


@pytest.mark.parametrize("window", [False, True])
@pytest.mark.parametrize("on_a_thread", [False, True])
def test_a_consumer_lets_go_without_the_gil(window, on_a_thread):
    source = np.ndarray.__new__(type("Watched", (np.ndarray,), {}), 3)
    alive = weakref.ref(source)
    a = vx.array(source, copy=False) if window else vx.freeze(source)
    name, form = (b"dltensor", Managed) if window else (b"dltensor_versioned", Versioned)
    capsule = a.__dlpack__() if window else a.__dlpack__(max_version=(1, 0))
    pointer = PyCapsule_GetPointer(capsule, name)
    ctypes.pythonapi.PyCapsule_SetName(ctypes.py_object(capsule), b"used_" + name)
    let_go = form.from_address(pointer).deleter  # ctypes calls it without the GIL
    del capsule, source, a
    gc.collect()
    assert alive() is not None
    if on_a_thread:
        thread = threading.Thread(target=let_go, args=(pointer,))
        thread.start()
        thread.join()
    else:
        let_go(pointer)
    gc.collect()
    assert alive() is None
