"""What the classes of arrays can do besides, as far as Python does it best; imported for its effect."""

import numpy

from . import _vexadata
from ._convert import _object_array


def _elements(self):
    """Walks all elements, in the order in which they lie in memory: column by column unless they came otherwise."""
    return (self._at(k) for k in range(self.size))


def _objects(self, values):
    """A NumPy array of objects with the shape of an array of ours."""
    return _object_array(values, -1).reshape(self.shape, order="F")


def _nested(self, values):
    """The one value of a 1x1 array, a list for a row or a column, and nested lists, row by row, for others."""
    if self.size == 1 and self.ndim == 2:
        return values[0]
    if self.ndim == 2 and 1 in self.shape:
        return values
    return _objects(self, values).tolist()


def _plain(self, dtype, values):
    array = _objects(self, values)
    return array if dtype is None else array.astype(dtype)


def _empty_to_python(self):
    """None, which makes the empty array."""
    if type(self) is not _vexadata.Array:
        raise TypeError(f"objects of a {self.kind} array stay what they are: elements() walks them")
    return None


def _dense_to_python(self):
    """The number of a 1x1 array, a read-only NumPy array over the memory of any other."""
    return self._at(0) if self.size == 1 else self.numpy()


def _char_rows(self):
    rows = self.__array__()
    return ["".join(row) for row in rows.reshape(-1, self.shape[-1]).tolist()]


def _char_to_python(self):
    """The text of a row, a list of texts of other arrays."""
    return self.text if self.ndim == 2 and self.shape[0] == 1 or self.size == 0 else _char_rows(self)


def _char_array(self, dtype=None, copy=None):
    array = _plain(self, None, list(self.elements())).astype("U1")
    return array if dtype is None else array.astype(dtype)


def _text_to_python(self):
    """str or None of a 1x1 array, a list of a row or a column, nested lists of others."""
    return _nested(self, list(_texts(self)))


def _texts(self):
    return self._list() if isinstance(self, _vexadata.StringArray) else list(self.elements())


def _text_array(self, dtype=None, copy=None):
    return _plain(self, dtype, _texts(self))


def _cell_to_python(self):
    """A list, or nested lists row by row for a matrix, of what to_python() makes of the arrays in the cells."""
    values = [held.to_python() for held in self.elements()]
    return values if self.size == 1 else _nested(self, values)


def _cell_array(self, dtype=None, copy=None):
    return _plain(self, dtype, list(self.elements()))


def _struct_to_python(self):
    """A dict of a 1x1 array, lists of dicts of others."""
    records = [{name: value.to_python() for name, value in record.items()} for record in self.elements()]
    return _nested(self, records)


def _objects_to_python(self):
    """The object of a 1x1 array, a list of a row or a column, nested lists of others."""
    return _nested(self, list(self.elements()))


def _to_scipy(self):
    """A scipy.sparse.csc_matrix over the memory of this array, read-only, with indices of int64."""
    from scipy.sparse import csc_matrix

    values, rows, starts = self.parts()
    matrix = csc_matrix(self.shape, dtype=values.dtype)
    # Set afterwards: the constructor copies indices to int32 when they fit.
    matrix.data, matrix.indices, matrix.indptr = values, rows, starts
    matrix.has_sorted_indices = True
    matrix.has_canonical_format = True
    return matrix


def _sparse_array(self, dtype=None, copy=None):
    raise TypeError("a sparse array has no memory for all of its elements: to_scipy(), and toarray() of that")


# --- a 1x1 struct is a mapping, too ---------------------------------------------------------------------------


def _keys(self):
    """Names of the fields."""
    return self.fields


def _contains(self, name):
    return name in self.fields


def _field_values(self):
    """The arrays in the fields of a 1x1 struct."""
    return [self[name] for name in self.fields]


def _field_items(self):
    """(name, array) for each field of a 1x1 struct."""
    return [(name, self[name]) for name in self.fields]


# --- pickling ---------------------------------------------------------------------------------------------------


# The functions of the extension module cannot be pickled: these can.


def _rebuild_empty():
    return _vexadata._empty()


def _rebuild_sparse(shape, values, rows, starts):
    return _vexadata._sparse(shape, values, rows, starts, True)


def _rebuild_dense(values):
    return _vexadata.freeze(values)


def _rebuild(kind, shape, values):
    array = _vexadata.zeros(shape, kind)
    for k, value in enumerate(values):
        array._set_at(k, value)
    return array


def _rebuild_enumeration(members, shape, class_name):
    return _vexadata._enumeration(["" if member is None else member for member in members], shape, class_name)


def _rebuild_struct(shape, fields, records):
    array = _vexadata._struct(shape, fields)
    for k, record in enumerate(records):
        for name, value in zip(fields, record):
            array._set_field(k, name, value)
    return array


def _reduce(self):
    if type(self) is _vexadata.Array:
        return _rebuild_empty, ()
    if isinstance(self, _vexadata.DenseArray):
        return _rebuild_dense, (self.numpy(),)
    if isinstance(self, _vexadata.EnumArray):
        return _rebuild_enumeration, (list(self.elements()), self.shape, self.class_name)
    if isinstance(self, _vexadata.StructArray):
        records = [list(record.values()) for record in self.elements()]
        return _rebuild_struct, (self.shape, self.fields, records)
    if isinstance(self, _vexadata.SparseArray):
        return _rebuild_sparse, (self.shape, *self.parts())
    if isinstance(self, _vexadata.ObjectArray):
        raise TypeError(f"cannot pickle {self.kind} arrays")
    return _rebuild, (self.kind, self.shape, list(self.elements()))


def _add(python_class, **methods):
    for name, method in methods.items():
        method.__qualname__ = f"{python_class.__name__}.{name}"
        method.__name__ = name
        setattr(python_class, name, method)


_add(_vexadata.Array, elements=_elements, to_python=_empty_to_python, __reduce__=_reduce)
_add(_vexadata.DenseArray, to_python=_dense_to_python)
_add(_vexadata.CharArray, to_python=_char_to_python, __array__=_char_array)
_add(_vexadata.StringArray, to_python=_text_to_python, __array__=_text_array)
_add(_vexadata.CellArray, to_python=_cell_to_python, __array__=_cell_array)
_add(_vexadata.StructArray, to_python=_struct_to_python, keys=_keys, __contains__=_contains)
_add(_vexadata.StructArray, values=_field_values, items=_field_items)
_add(_vexadata.ObjectArray, to_python=_objects_to_python)
_add(_vexadata.SparseArray, to_scipy=_to_scipy, __array__=_sparse_array)
_vexadata.EnumArray.to_python = _vexadata.StringArray.to_python
_vexadata.EnumArray.__array__ = _vexadata.StringArray.__array__
_vexadata.SparseArray.to_python = _vexadata.SparseArray.to_scipy
