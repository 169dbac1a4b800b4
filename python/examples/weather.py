#!/usr/bin/python3
"""Columns of a CSV file as NumPy arrays over the memory of the table, ready to be plotted; and a result stored with them."""

import pathlib
import sys

import numpy

import vexadata

data = pathlib.Path(sys.argv[1])
table = vexadata.read_csv(data / "seattle-weather.csv")
print("fields:", ", ".join(table.fields))

# No copy: both NumPy arrays look at the memory of the table, read-only.
highest, lowest = table["temp_max"].vector(), table["temp_min"].vector()
print("in place:", highest.ctypes.data == table["temp_max"].numpy().ctypes.data)

# An enumeration is codes and names, as plots and counts want them.
codes, names = table["weather"].factorize()
for name, count in sorted(zip(names, numpy.bincount(codes.ravel())), key=lambda pair: -pair[1]):
    print(f"  {name:8}{count:5}  {highest[codes.ravel() == names.index(name)].mean():5.1f} degrees")

# A result of NumPy becomes a variable beside the table; nobody writes it any more, so that it need not be copied.
workspace = vexadata.Workspace(table=table)
workspace["range"] = vexadata.freeze(highest - lowest)
print(workspace)

# A window is the array itself: NumPy changes it in place, and the copy from before keeps its values.
spread = workspace["range"]
window = spread.numpy(writable=True)
numpy.multiply(window, 1.8, out=window)
print(f"{workspace['range'][0]:.2f} degrees Celsius are {spread[0]:.2f} degrees Fahrenheit")
print(vexadata.array({"station": "Seattle", "days": table["date"].size, "checked": None}))
try:
    table["wind"][5000]
except IndexError as error:
    print(f"{type(error).__name__}: {error}")
