"""Files as arrays."""

import collections.abc
import os

from . import _vexadata


def _read(path, delimiter, encoding):
    if delimiter is not None and not (isinstance(delimiter, str) and len(delimiter) == 1 and delimiter.isascii()):
        raise ValueError(f"a delimiter is one ASCII character, not {delimiter!r}")
    with open(path, "rb"):  # the error of Python, if it cannot be opened
        pass
    name = os.fsencode(path)
    return _vexadata._read(b"./-" if name == b"-" else name, delimiter, encoding)


def read_csv(path, *, delimiter=None, encoding="utf-8"):
    """The columns of a file of delimited text, as a 1x1 struct with one column array for each.

    The first line names the columns. Numbers become double, with NaN where a cell is empty; whole numbers that double
    would round become int64 or uint64; true and false become logical; few distinct words become an enumeration; all
    else becomes strings, None where a cell is empty. The delimiter (comma, semicolon, tab) is found out unless it is
    given; encoding is 'utf-8' or 'latin-1'. Raises OSError, or InputError with the line of the fault.

    >>> table = vexadata.read_csv("examples/data/global-temp.csv")
    >>> table.fields
    ['year', 'temp']
    """
    table = _read(path, delimiter, encoding)
    if not isinstance(table, _vexadata.StructArray):
        raise _vexadata.InputError(f"{os.fsdecode(path)}: a Matrix Market file: read_matrix reads it")
    return table


def read_matrix(path):
    """The sparse matrix in a Matrix Market file of coordinates. Raises OSError, or InputError with the line."""
    matrix = _read(path, None, "utf-8")
    if not isinstance(matrix, _vexadata.SparseArray):
        raise _vexadata.InputError(f"{os.fsdecode(path)}: no Matrix Market file; read_csv reads delimited text")
    return matrix


def save(path, values):
    """Writes a file with one array, or with a mapping of names to arrays, in place of what has the name.

    Values are taken as array() takes them; all kinds but handle objects. The file is CBOR, which other programs read
    (docs/format.md). Atomic: until all is safely on the disk, what had the name stays as it was. Raises OSError.

    >>> import tempfile
    >>> folder = tempfile.TemporaryDirectory()
    >>> vexadata.save(folder.name + "/run.cbor", {"names": ["a", None], "steps": [[1.0, 2.0]]})
    >>> vexadata.load(folder.name + "/run.cbor")["steps"][0, 1]
    2.0
    """
    if not isinstance(values, collections.abc.Mapping):
        values = {"array": values}
    for name in values:
        if not isinstance(name, str):
            raise TypeError(f"a variable is named by a str, not by {name!r}")
    _vexadata._save(_name_of(path), dict(values))


def load(path, names=None, *, mapped=True):
    """The variables of a file that save() wrote, as a dict; with names, these alone, and nothing else is read.

    Large numeric arrays lie in the file, which is mapped for them: their memory is read as it is touched, writes do
    not reach the file, and the file may be replaced or removed, but must not be shortened in place. With mapped=False
    all lies in memory. Raises OSError, InputError with the byte of the fault, and KeyError for a name that is not
    there.
    """
    with open(path, "rb"):  # the error of Python, if it cannot be opened
        pass
    return _vexadata._load(_name_of(path), None if names is None else list(names), mapped)


def _name_of(path):
    return os.fsencode(path)
