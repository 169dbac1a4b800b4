"""Arrays and elements in GDB: kind, dimensions and first elements, of running programs and of core files.

Installed where GDB loads it together with the library; otherwise `source vexadata-gdb.py`. Nothing is called in the program: an
array is known by the symbol of its virtual table. Of back-ends that bring their own classes only the class is shown.

Compilers leave the types of handles out of a program's debug information unless the library has its own: compile the program
with -femit-class-debug-always (g++) or -fstandalone-debug (clang++) then.
"""

import re
import struct

import gdb
import gdb.printing

SHOWN = 8  # elements, and UNITS of text
UNITS = 200

# For each element type, as symbols spell it: the kind and how an element is stored.
PLAIN = {"bool": ("logical", "?"), "char16_t": ("char", "H"), "double": ("double", "d"), "float": ("single", "f"),
         "signed char": ("int8", "b"), "unsigned char": ("uint8", "B"), "short": ("int16", "h"),
         "unsigned short": ("uint16", "H"), "int": ("int32", "i"), "unsigned int": ("uint32", "I"),
         "long": ("int64", "q"), "unsigned long": ("uint64", "Q")}
# The embedded back-end's other classes.
OTHERS = {"CellArray": "cell", "StringArray": "string", "StructArray": "struct", "EnumArray": "enumeration",
          "ObjectArray": "object", "CompressedColumns<bool>": "sparse logical",
          "CompressedColumns<double>": "sparse double", "CompressedColumns<std::complex<double> >": "sparse complex double"}
WITH_EXTENTS = ("cell", "string", "struct")

# Where the members of an array lie, in bytes.
ROWS, DATA, DIMENSIONS = 16, 32, 40


def memory(address, size):
    return bytes(gdb.selected_inferior().read_memory(address, size))


def words(address, count):
    return struct.unpack(f"={count}Q", memory(address, 8 * count))


def class_at(address):
    """Name of the class of an object with virtual functions; empty when its library has no symbols."""
    found = re.match(r"vtable for (.*) \+ 16( in section|$)", gdb.execute(f"info symbol {words(address, 1)[0]}", to_string=True))
    return found[1] if found else ""


class Array:
    """The array at an address of the program."""

    def __init__(self, address):
        self.address = int(address)
        self.name = class_at(self.address)
        self.code = None  # how an element is stored; None for kinds that are no plain values
        self.extents = None
        self.by_row = False
        dense = re.fullmatch(r"vexa::data::impl::DenseArrayImpl<(std::complex<)?(.*?)( ?>)+", self.name)
        if dense:
            self._read_dense(*PLAIN[dense[2]], dense[1] is not None)
        else:
            self._read_other()

    def _read_dense(self, kind, code, is_complex):
        self.kind = "complex " + kind if is_complex else kind
        self.code = 2 * code if is_complex else code
        place = words(self.address + DIMENSIONS, 1)[0]
        first, last, _ = words(place & ~3, 3)  # a vector; the low bits are the layout and whether there is an owner
        self.extents = words(first, (last - first) // 8)
        self.by_row = place & 1 != 0

    def _read_other(self):
        name = self.name.rpartition("::")[2] if "<" not in self.name else self.name.replace("vexa::client::", "")
        self.kind = "empty" if name == "EmptyArrayImpl" else OTHERS.get(name, f"array of {self.name or 'a back-end without symbols'}")
        if self.kind in WITH_EXTENTS and words(self.address + ROWS, 1)[0] != 0:
            self.extents = words(self.address + ROWS, 2)

    def heading(self):
        return ("x".join(map(str, self.extents)) + " " if self.extents is not None else "") + self.kind

    def text(self):
        if self.code is None:
            return self.heading()
        count = 1
        for extent in self.extents:
            count *= extent
        if self.kind == "char":
            text = memory(self._data(), 2 * min(count, UNITS)).decode("utf-16-le", "replace")
            return f'{self.heading()} "{text}{"..." if count > UNITS else ""}"'
        if count == 0:
            return self.heading()
        shown = self._listed(0, min(count, SHOWN))
        return f"{self.heading()} {{{', '.join(shown)}{', ...' if count > SHOWN else ''}}}"

    def element(self, index):
        """An element by its place in storage, as text; None for kinds that are not stored as plain values."""
        return None if self.code is None else self._listed(index, 1)[0]

    def _data(self):
        return words(self.address + DATA, 1)[0]

    def _listed(self, index, count):
        size = struct.calcsize("=" + self.code)
        block = memory(self._data() + index * size, count * size)
        return [self._number(*parts) for parts in struct.iter_unpack("=" + self.code, block)]

    @staticmethod
    def _number(real, imaginary=None):
        if imaginary is not None:
            return f"{real:g}{imaginary:+g}i"
        return str(real).lower() if isinstance(real, bool) else f"{real:.6g}" if isinstance(real, float) else str(real)


def described(address, describe):
    """What `describe` says of the array there, or that it cannot be read."""
    if int(address) == 0:
        return "no array: moved from"
    try:
        return describe(Array(address))
    except (gdb.error, gdb.MemoryError, struct.error, KeyError):
        return f"no readable array at {int(address):#x}"


class HandlePrinter:
    """Array, TypedArray<T> and the other handles."""

    def __init__(self, value):
        self.value = value

    def to_string(self):
        return described(self.value["impl_"]["_M_ptr"], Array.text)


class ElementPrinter:
    """What a[i][j] gives, before it is read or written."""

    KNOWN = 4  # in place of a number of indices: the position in storage

    def __init__(self, value):
        self.position = value["position_"]

    def to_string(self):
        if int(self.position["chain_"]) != 0:
            return "element reached through a chain"
        return described(self.position["array_"], self._of)

    def _of(self, array):
        count = int(self.position["count_"])
        known = count == self.KNOWN
        indices = [int(self.position["indices_"][k]) for k in range(1 if known else count)]
        place = indices[0] if known else self._place(array, indices)
        name = f"[{place} in storage]" if known else "".join(f"[{index}]" for index in indices)
        value = None if place is None else array.element(place)
        return f"{name} of {array.heading()}" + ("" if value is None else f": {value}")

    @staticmethod
    def _place(array, indices):
        """None while indices are missing, or when there is no such element."""
        extents = array.extents or ()
        if len(indices) == 1 and len(extents) == 2 and 1 in extents:
            extents = (extents[0] * extents[1],)
        if len(indices) != len(extents) or any(index >= extent for index, extent in zip(indices, extents)):
            return None
        pairs = list(zip(indices, extents))
        if not array.by_row:
            pairs.reverse()
        place = 0
        for index, extent in pairs:
            place = place * extent + index
        return place


def printers():
    collection = gdb.printing.RegexpCollectionPrettyPrinter("vexadata")
    handles = "(Array|CharArray|StructArray|EnumArray|ValueObjectArray|TypedArray<.*>|SparseArray<.*>)"
    collection.add_printer("handles", f"^foundation::vexadata::{handles}$", HandlePrinter)
    collection.add_printer("elements", "^foundation::vexadata::(ArrayElementRef|ArrayElementTypedRef)<.*>$", ElementPrinter)
    return collection


gdb.printing.register_pretty_printer(gdb.current_objfile(), printers(), replace=True)
