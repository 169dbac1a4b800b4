"""Tensors to NumPy and from it, through ctypes: dlpack_numpy.py MODULE"""

import ctypes
import gc
import sys
import weakref

import numpy as np

ours = ctypes.CDLL(sys.argv[1])
for name, result, arguments in [
    ("counting", ctypes.c_void_p, [ctypes.POINTER(ctypes.c_size_t), ctypes.c_size_t]),
    ("taken", ctypes.c_void_p, [ctypes.c_void_p, ctypes.c_char_p, ctypes.c_size_t]),
    ("given", ctypes.c_void_p, [ctypes.c_void_p]),
    ("address", ctypes.c_void_p, [ctypes.c_void_p]),
    ("writeFirst", None, [ctypes.c_void_p, ctypes.c_double]),
    ("drop", None, [ctypes.c_void_p]),
]:
    function = getattr(ours, name)
    function.restype, function.argtypes = result, arguments

python = ctypes.pythonapi
python.PyCapsule_New.restype = ctypes.py_object
python.PyCapsule_New.argtypes = [ctypes.c_void_p, ctypes.c_char_p, ctypes.c_void_p]
python.PyCapsule_GetPointer.restype = ctypes.c_void_p
python.PyCapsule_GetPointer.argtypes = [ctypes.py_object, ctypes.c_char_p]
python.PyCapsule_SetName.argtypes = [ctypes.py_object, ctypes.c_char_p]

UNUSED, USED = ctypes.c_char_p(b"dltensor"), ctypes.c_char_p(b"used_dltensor")


class Tensor:
    """What np.from_dlpack asks."""

    def __init__(self, pointer):
        self.pointer = pointer

    def __dlpack__(self, stream=None):
        return python.PyCapsule_New(self.pointer, UNUSED, None)

    def __dlpack_device__(self):
        return (1, 0)


def to_numpy(*dims):
    return np.from_dlpack(Tensor(ours.counting((ctypes.c_size_t * len(dims))(*dims), len(dims))))


def take(array):
    """Our array of NumPy's, or the text of the refusal."""
    capsule = array.__dlpack__()
    reason = ctypes.create_string_buffer(200)
    taken = ours.taken(python.PyCapsule_GetPointer(capsule, UNUSED), reason, len(reason))
    if taken is None:
        return reason.value.decode()  # the capsule still owns the tensor
    python.PyCapsule_SetName(capsule, USED)
    return taken


def back(array):
    """NumPy's array as ours and as NumPy's again: (equal, of the same memory)."""
    taken = take(array)
    assert not isinstance(taken, str), taken
    returned = np.from_dlpack(Tensor(ours.given(taken)))
    same = ours.address(taken) == array.ctypes.data
    ours.drop(taken)
    gc.collect()
    shape = {0: (1, 1), 1: array.shape + (1,)}.get(array.ndim, array.shape)
    return returned.dtype == array.dtype and np.array_equal(returned, array.reshape(shape)), same


# Ours to NumPy's: values, layout, and read-only, as every tensor that cannot say otherwise.
a = to_numpy(2, 3)
assert a.shape == (2, 3) and a.dtype == np.float64 and a.flags.f_contiguous and not a.flags.writeable
assert a.tolist() == [[0, 2, 4], [1, 3, 5]]
assert to_numpy(2, 3, 4)[1, 2, 3] == 23
assert to_numpy(0, 3).shape == (0, 3)

# NumPy's to ours and back: every type, no dimension, one, several, of both orders without a copy.
types = [np.int8, np.int16, np.int32, np.int64, np.uint8, np.uint16, np.uint32, np.uint64]
types += [np.float32, np.float64, np.complex64, np.complex128]
for dtype in types:
    values = np.arange(24).astype(dtype)
    for array in (values, values.reshape(4, 6), values.reshape(2, 3, 4), values.reshape(6, 4).T, values[3:9]):
        assert back(array) == (True, True), (dtype, array.shape, array.strides)
    for array in (values[::2], values[::-1], values.reshape(4, 6)[:, 1:3], values.reshape(2, 3, 4).swapaxes(0, 1)):
        assert back(array) == (True, False), (dtype, array.shape, array.strides)
assert back(np.array(2.5)) == (True, True)
assert back(np.zeros((3, 0)))[0]

# Writes through our only handle are NumPy's, too.
array = np.zeros(3)
taken = take(array)
ours.writeFirst(taken, 7.0)
assert array[0] == 7
ours.drop(taken)

# What the tensor holds goes when our array does, and not before.
array = np.arange(5.0)
gone = weakref.ref(array)
taken = take(array)
del array
gc.collect()
assert gone() is not None and gone()[4] == 4
ours.drop(taken)
gc.collect()
assert gone() is None

# Refused, and still NumPy's.
assert take(np.zeros(2, np.float16)) == "DLPack: no array has elements of type float16"
