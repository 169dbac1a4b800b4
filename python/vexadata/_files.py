"""Files as arrays."""

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
