"""Values of Python as arrays."""

import enum
import sys
from collections.abc import Mapping

import numpy

from . import _vexadata
from ._mappings import Record

_numbers = (bool, int, float, complex, numpy.bool_, numpy.number)
_sequences = (list, tuple)


def _flat(values):
    """The elements of an object array in column-major order, and its shape with two dimensions at least."""
    shape = values.shape + (1,) * (2 - values.ndim)
    return values.ravel(order="F").tolist(), shape


def _object_array(values, shape):
    """An object array of a list in row-major order; NumPy must not look into its elements."""
    objects = numpy.empty(len(values), dtype=object)
    for k, value in enumerate(values):
        objects[k] = value
    return objects.reshape(shape)


def _shape_of(value):
    """Shape of nested lists whose leaves are numbers, texts, None or members of an enum; None for others."""
    if isinstance(value, _sequences):
        shapes = {_shape_of(item) for item in value}
        if len(shapes) > 1 or None in shapes:
            return None
        return (len(value), *shapes.pop()) if shapes else (0,)
    return () if value is None or isinstance(value, (str, enum.Enum, *_numbers)) else None


def _leaves(value):
    if not isinstance(value, _sequences):
        return [value]
    return [leaf for item in value for leaf in _leaves(item)]


def _from_leaves(leaves, shape):
    """An array of leaves that are all of one kind; None for a mixture."""
    if all(isinstance(leaf, enum.Enum) for leaf in leaves) and len({type(leaf) for leaf in leaves}) == 1:
        return enumeration(_object_array(leaves, shape))
    if all(leaf is None or isinstance(leaf, str) for leaf in leaves):
        return strings(_object_array(leaves, shape))
    return None


def _from_records(records):
    """A struct of mappings with the same keys; None for others."""
    keys = [list(record) for record in records if isinstance(record, Mapping)]
    if len(keys) < len(records) or any(names != keys[0] for names in keys):
        return None
    return _struct_of(records, (len(records), 1), keys[0])


def _from_objects(values):
    """An array of objects of one class, or of handles; None for others."""
    if all(isinstance(value, _vexadata.Handle) for value in values):
        array = _vexadata.zeros(len(values), "handle object")
    elif all(isinstance(value, _vexadata.Object) for value in values):
        if len({value.class_info.name for value in values}) > 1:
            return None
        array = values[0].class_info.array(len(values))
    else:
        return None
    for k, value in enumerate(values):
        array[k] = value
    return array


def _from_sequence(values):
    if len(values) == 0:
        return _vexadata.zeros((0, 0))
    shape = _shape_of(values)
    if shape is not None:
        leaves = _leaves(values)
        if leaves and all(isinstance(leaf, _numbers) and not isinstance(leaf, enum.Enum) for leaf in leaves):
            return _from_numbers(leaves, shape)
        array = _from_leaves(leaves, shape) if leaves else _vexadata.zeros(shape)
        if array is not None:
            return array
    array = _from_records(values)
    if array is None:
        array = _from_objects(values)
    return cell(values) if array is None else array


def _from_structured(values):
    """An array of records from a NumPy array of records."""
    names = list(values.dtype.names)
    records, shape = _flat(_object_array([dict(zip(names, record)) for record in _records(values)], values.shape))
    return _struct_of(records, shape, names)


def _records(values):
    return [tuple(record[name] for name in values.dtype.names) for record in values.reshape(-1)]


def _from_ndarray(values, copy):
    if isinstance(values, numpy.ma.MaskedArray):
        raise TypeError("a masked array has elements that are missing, and numbers cannot be; fill it first")
    if values.dtype.kind == "U":
        return strings(values)
    if values.dtype.kind == "V" and values.dtype.names is not None:
        return _from_structured(values)
    if values.dtype.kind != "O":
        return _vexadata._from_numpy(numpy.asarray(values), copy)
    leaves, shape = values.reshape(-1).tolist(), values.shape
    if leaves and all(isinstance(leaf, _numbers) and not isinstance(leaf, enum.Enum) for leaf in leaves):
        return _from_numbers(leaves, shape)
    array = _from_leaves(leaves, shape) if leaves else None
    return cell(values) if array is None else array


def _from_numbers(numbers, shape):
    values = numpy.array(numbers).reshape(shape)
    if values.dtype.kind == "O":
        raise OverflowError("a whole number does not fit into 64 bits")
    return _vexadata._from_numpy(values, True)


def _is_sparse(value):
    scipy = sys.modules.get("scipy.sparse")
    return scipy is not None and scipy.issparse(value)


def _refuse(value):
    hint = "; decode it first" if isinstance(value, (bytes, bytearray)) else ""
    raise TypeError(f"no array can be made of {type(value).__name__}{hint}")


def _from_anything(value, copy):
    if isinstance(value, numpy.ndarray):
        return _from_ndarray(value, copy)
    if isinstance(value, Mapping):
        return struct(value)
    if isinstance(value, _vexadata.Object):
        return _vexadata._scalar_object(value)
    if isinstance(value, _vexadata.Handle):
        return _from_objects([value])
    if _is_sparse(value):
        return sparse(value, copy=copy)
    if hasattr(value, "codes") and hasattr(value, "categories"):
        return enumeration(value)
    if isinstance(value, numpy.generic):
        return _from_ndarray(numpy.asarray(value), copy)
    if isinstance(value, bytes):
        _refuse(value)
    if hasattr(value, "__array__") or _has_buffer(value):
        array = numpy.asarray(value)
        if array.dtype.kind == "O" and array.ndim == 0:
            _refuse(value)
        return _from_ndarray(array, copy)
    _refuse(value)


def _has_buffer(value):
    try:
        memoryview(value).release()
    except TypeError:
        return False
    return True


def _of_dtype(value, dtype, copy):
    plain = numpy.asarray(value)
    converted = plain.astype(dtype, copy=False)
    if copy is False and (converted is not plain or isinstance(value, _sequences)):
        raise ValueError(f"an array of {type(value).__name__} with the dtype {numpy.dtype(dtype)} is always a copy")
    return converted


def as_array(value, dtype=None, copy=None):
    """The slow part of `vexadata.array`: everything but plain NumPy arrays."""
    if dtype is not None:
        return _vexadata.array(_of_dtype(value, dtype, copy), copy=copy)
    if isinstance(value, _vexadata.Array):
        return value.copy()
    if value is None:
        return _vexadata._empty()
    if copy is False and not (isinstance(value, numpy.ndarray) or hasattr(value, "__array__") or _is_sparse(value)):
        raise ValueError(f"an array of {type(value).__name__} is always a copy")
    if isinstance(value, enum.Enum):
        return enumeration(value)
    if isinstance(value, str):
        return strings(value)
    if isinstance(value, _numbers):
        return _from_numbers([value], ())
    if isinstance(value, _sequences):
        return _from_sequence(value)
    return _from_anything(value, copy)


def strings(values):
    """A string array of texts and None, which stands for a missing one: a text, nested lists or a NumPy array.

    >>> vexadata.strings(["a", None]).shape
    (2, 1)
    """
    texts, shape = _flat(numpy.array(values, dtype=object))
    return _vexadata._strings(texts, shape)


def _member(value):
    if isinstance(value, enum.Enum):
        return value.name
    if value is None:
        return ""
    if not isinstance(value, str):
        raise TypeError(f"a member is str, a member of an enum or None, not {type(value).__name__}")
    if value == "":
        raise ValueError("the empty text is no member; None stands for an element without")
    return value


def _class_name_of(members):
    names = {type(member).__name__ for member in members if isinstance(member, enum.Enum)}
    if len(names) != 1:
        raise TypeError("class_name is missing: only members of one enum have it with them")
    return names.pop()


def enumeration(members, class_name=None):
    """An enumeration array of names, of members of an `enum.Enum`, or of a categorical with codes and categories.

    None stands for an element without member. The name of the class is that of the `enum`, or has to be given.

    >>> vexadata.enumeration(["red", "blue", "red"], "Colour").factorize()[1]
    ('red', 'blue')
    """
    if hasattr(members, "codes") and hasattr(members, "categories"):
        categories = [str(name) for name in members.categories] + [None]  # -1 is the last
        members = [categories[code] for code in numpy.asarray(members.codes).tolist()]
        class_name = "categories" if class_name is None else class_name
    values, shape = _flat(numpy.array(members, dtype=object))
    name = _class_name_of(values) if class_name is None else class_name
    return _vexadata._enumeration([_member(value) for value in values], shape, name)


def cell(values):
    """A cell array: a list makes a column, a list of lists of one length a matrix. Elements become arrays.

    >>> vexadata.cell([1.0, "text", [1, 2, 3]]).shape
    (3, 1)
    """
    if isinstance(values, numpy.ndarray):
        flat, shape = _flat(values)
    elif all(isinstance(row, list) for row in values) and len({len(row) for row in values}) == 1:
        objects = _object_array([item for row in values for item in row], (len(values), len(values[0])))
        flat, shape = _flat(objects)
    else:
        flat, shape = list(values), (len(values), 1)
    return _vexadata._cell([as_array(value) for value in flat], shape)


def _struct_of(records, shape, names):
    array = _vexadata._struct(shape, names)
    for k, record in enumerate(records):
        for name in names:
            array._set_field(k, name, as_array(record[name]))
    return array


def struct(value=None, **fields):
    """A struct array: a 1x1 one of a mapping or of keywords, a column of a list of mappings with the same keys,
    and one of the same shape of a structured NumPy array.

    >>> vexadata.struct(name="Oslo", size=3.5)["name"].to_python()
    'Oslo'
    """
    if value is None or isinstance(value, Mapping):
        record = {**(value or {}), **fields}
        return _struct_of([record], (1, 1), list(record))
    if fields:
        raise TypeError("either a value or keywords")
    if isinstance(value, (numpy.ndarray, numpy.void)) and value.dtype.names is not None:
        return _from_structured(numpy.asarray(value))
    array = _from_records(list(value))
    if array is None:
        raise TypeError("the records are not mappings with the same keys in the same order")
    return array


def sparse(matrix, copy=None):
    """A sparse array of a matrix of SciPy, in any of its forms.

    Copies unless copy=False, which wants a csc_matrix of float64, complex128 or bool with indices of int64, sorted,
    without stored zeros and without neighbours in one row. The array is then a window onto its memory.
    """
    columns = matrix.tocsc() if hasattr(matrix, "tocsc") else _to_scipy_columns(matrix)
    if copy is False and columns is not matrix:
        raise ValueError(f"the memory cannot be shared: {type(matrix).__name__} is not in compressed columns")
    return _vexadata._sparse(columns.shape, columns.data, columns.indices, columns.indptr, copy)


def _to_scipy_columns(matrix):
    from scipy.sparse import csc_matrix

    return csc_matrix(matrix)


__all__ = ["Record", "as_array", "cell", "enumeration", "sparse", "strings", "struct"]
