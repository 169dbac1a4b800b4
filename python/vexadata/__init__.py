"""Arrays of vexadata: numbers, text, enumerations, cells, structs, sparse matrices and objects, as values.

    >>> import numpy, vexadata
    >>> table = vexadata.read_csv("examples/data/global-temp.csv")
    >>> year, temp = table["year"].vector(), table["temp"].vector()   # NumPy arrays over the same memory
    >>> a = vexadata.array([[1.0, 2.0], [3.0, 4.0]])
    >>> b = a.copy()                      # shares memory until one of the two is written
    >>> b[0, 1] = 20.0
    >>> numpy.asarray(a).sum(), numpy.asarray(b).sum()
    (10.0, 28.0)

Memory and NumPy
----------------
numpy.asarray(a), memoryview(a) and a.numpy() show the elements of `a` without a copy, read-only. What they show never
changes: a write through `a` gives `a` memory of its own first. a.numpy(writable=True), and consumers of the buffer
protocol and of DLPack that ask for writable memory, get a window: the array is made private, and writes on either side
are seen on the other. As long as the window lives, all that is taken from `a` (copies, elements of cells, variables,
read-only memory) is a copy, so that nobody else sees such a write.

The other way, vexadata.array(x) copies memory that NumPy can still write, and shares memory that cannot change any
more: that of `bytes`, and of arrays of this package. vexadata.array(x, copy=False) and vexadata.from_dlpack(x) never
copy: the array is a window onto the memory of `x`, which works as above. vexadata.freeze(x) makes `x` read-only and
shares its memory as a value; it is for data that nobody will write again. Either side may go first.

Indices count from 0, and from the end when negative. Vectors become columns, since arrays have two dimensions at
least; a.vector() gives a row or a column to NumPy with one.

Errors of the library are exceptions of the same names below vexadata.Error, and also IndexError, TypeError,
ValueError, KeyError or AttributeError.
"""

from . import _methods  # noqa: F401  what the classes have besides
from . import _vexadata
from ._convert import cell, enumeration, sparse, strings, struct
from ._files import load, read_csv, read_matrix, save
from ._mappings import Record, Workspace

# The classes, the errors, and array, chars, freeze, from_dlpack and zeros.
_native = [name for name in dir(_vexadata) if not name.startswith("_")]
globals().update({name: getattr(_vexadata, name) for name in _native})

__all__ = sorted(
    _native
    + ["Record", "Workspace", "cell", "enumeration", "load", "read_csv", "read_matrix", "save", "sparse", "strings"]
    + ["struct"]
)
