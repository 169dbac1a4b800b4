"""Reads a saved file with cbor2, which knows nothing of it, and compares values, dimensions, text and what is missing."""
import struct
import sys

import cbor2

TYPED = {64: "B", 69: "H", 70: "I", 71: "Q", 72: "b", 77: "h", 78: "i", 79: "q", 85: "f", 86: "d"}


def elements(item):
    """The values of a typed array, of complex numbers in one, or of a homogeneous list."""
    if item.tag == 43001:
        parts = elements(item.value)
        return [complex(re, im) for re, im in zip(parts[::2], parts[1::2])]
    if item.tag == 41:
        return item.value
    return list(struct.unpack(f"<{len(item.value) // struct.calcsize(TYPED[item.tag])}{TYPED[item.tag]}", item.value))


def shaped(item):
    """Whether the first index varies fastest, the dimensions, the elements."""
    dimensions, values = item.value
    return {1040: True, 40: False}[item.tag], dimensions, values if isinstance(values, list) else elements(values)


with open(sys.argv[1], "rb") as file:
    name, version, variables, listing, trailer = cbor2.load(file)
    assert not file.read()
assert (name, version) == ("vexadata", 1) and trailer.endswith(b"VEXACBOR")
assert [entry[0] for entry in listing] == list(variables)
assert listing[0][1:3] == ["double", [2, 3]]

assert shaped(variables["matrix"]) == (True, [2, 3], [1, 2, 3, 4, 5, 6])
assert shaped(variables["rows"]) == (False, [2, 3], [1, 2, 3, 4, 5, 6])
assert shaped(variables["large"]) == (True, [50, 40], list(range(1, 2001)))
assert variables["number"] == 2.5
assert shaped(variables["truth"]) == (True, [1, 2], [True, False])
assert variables["text"] == "Gr\u00fc\u00dfe \U0001F600"
assert variables["texts"] == {"kind": "string", "size": [1, 3], "values": ["a", None, "\u00e9"]}
assert shaped(variables["complex"]) == (True, [1, 2], [1 + 2j, 3 - 4j])
order, dimensions, (text, numbers) = shaped(variables["cells"])
assert (dimensions, text, shaped(numbers)) == ([1, 2], "x", (True, [1, 3], [1, 2, 3]))
records = variables["records"]
assert (records["kind"], records["size"], records["fields"]) == ("struct", [2, 1], ["name", "size"])
assert records["values"][0::2] == ["first", "Gr\u00f6\u00dfe"]
assert records["values"][1] is records["values"][3] and shaped(records["values"][1])[2] == [1, 2, 3]
assert variables["members"]["class"] == "Colour" and variables["members"]["values"] == ["red", "green"]
sparse = variables["sparse"]
assert sparse["size"] == [1000, 2] and elements(sparse["starts"]) == [0, 1, 2]
assert elements(sparse["rows"]) == [0, 7] and elements(sparse["values"]) == [0.5, 1.5]
assert variables["empty"] is None
with open(sys.argv[1], "rb") as file:
    content = file.read()
assert (content.index(struct.pack("<3f", 1, 2, 3)) % 64, len(content) % 64) == (0, 0)
