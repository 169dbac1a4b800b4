"""Records of struct arrays and workspaces, as mappings."""

from collections.abc import Mapping, MutableMapping

from . import _vexadata


class Record(MutableMapping):
    """One record of a struct array: record['name'] reads and writes the array in a field of it.

    Writes go to the struct array that the record came from. Fields can neither be added nor removed.
    """

    __slots__ = ("_array", "_position")

    def __init__(self, array, position):
        self._array = array
        self._position = position

    def __getitem__(self, name):
        return self._array._get_field(self._position, name)

    def __setitem__(self, name, value):
        self._array._set_field(self._position, name, value)

    def __delitem__(self, name):
        raise TypeError("the fields of a record belong to its whole array")

    def __iter__(self):
        return iter(self._array.fields)

    def __len__(self):
        return len(self._array.fields)

    def __repr__(self):
        return f"Record({dict(self)!r})"

    def assign(self, values):
        """Writes all fields from a mapping that has exactly them; nothing when it does not."""
        if not isinstance(values, Mapping) or set(values) != set(self):
            raise TypeError(f"a record wants a mapping with the fields {', '.join(self)}")
        converted = {name: _vexadata.array(values[name]) for name in self}
        for name, value in converted.items():
            self[name] = value


class Workspace(MutableMapping):
    """Named variables, each of which is an array. Values are shared with the workspace until one side is written.

    Names are made of letters, digits and underscores and do not begin with a digit. update() stores all of its
    variables or, when one cannot be, none.

    >>> ws = vexadata.Workspace(x=[1.0, 2.0])
    >>> ws["y"] = ws["x"]
    >>> list(ws)
    ['x', 'y']
    """

    __slots__ = ("_variables",)

    def __init__(self, *values, **variables):
        self._variables = _vexadata._Variables()
        self.update(*values, **variables)

    def __getitem__(self, name):
        if not isinstance(name, str) or name not in self._variables.names():
            raise KeyError(name)
        return self._variables.get(name)

    def __setitem__(self, name, value):
        self._variables.update({name: value})

    def __delitem__(self, name):
        self[name]
        self._variables.remove(name)

    def __iter__(self):
        return iter(self._variables.names())

    def __len__(self):
        return len(self._variables.names())

    def update(self, *values, **variables):
        """Stores variables from mappings, pairs and keywords, as `dict.update`: all of them or none."""
        self._variables.update(dict(*values, **variables))

    def __repr__(self):
        shown = ", ".join(f"{name}: {'x'.join(map(str, a.shape))} {a.kind}" for name, a in self.items())
        return f"<vexadata.Workspace {shown}>"
