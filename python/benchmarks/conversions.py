#!/usr/bin/python3
"""Time of a conversion without copy between arrays and NumPy, beside what pybind11 alone needs for the like.

    cmake --build build/dev --target python_benchmark
"""

import timeit

import baseline
import numpy
import scipy.sparse

import vexadata

rounds, repeats = 100_000, 7


def nanoseconds(call):
    return min(timeit.repeat(call, number=rounds, repeat=repeats)) / rounds * 1e9


matrix = numpy.arange(10_000.0).reshape(100, 100)
fixed = numpy.frombuffer(matrix.tobytes()).reshape(100, 100)
array = vexadata.array(matrix)
memory = baseline.take(matrix)
columns = vexadata.sparse(scipy.sparse.random(1000, 1000, 0.01, format="csc"))

empty = nanoseconds(lambda: None)
out = nanoseconds(memory.give)
back = nanoseconds(lambda: baseline.take(matrix))

print(f"100x100 double, least of {repeats} x {rounds} calls; calling a lambda takes {empty:.0f} ns of each\n")
print(f"{'':44}{'ns':>6}  beside pybind11 alone")
for name, call, alone in [
    ("pybind11: NumPy array over memory", memory.give, out),
    ("a.numpy()", array.numpy, out),
    ("a.numpy(writable=True)", lambda: array.numpy(writable=True), out),
    ("numpy.asarray(a)", lambda: numpy.asarray(array), out),
    ("memoryview(a)", lambda: memoryview(array), out),
    ("numpy.from_dlpack(a)", lambda: numpy.from_dlpack(array), out),
    ("pybind11: object that keeps a NumPy array", lambda: baseline.take(matrix), back),
    ("array(x, copy=False)", lambda: vexadata.array(matrix, copy=False), back),
    ("array(x), x fixed", lambda: vexadata.array(fixed), back),
    ("freeze(x)", lambda: vexadata.freeze(fixed), back),
    ("from_dlpack(x)", lambda: vexadata.from_dlpack(matrix), back),
    ("a.copy()", array.copy, back),
]:
    time = nanoseconds(call)
    print(f"{name:44}{time:6.0f}  {time / alone:6.2f}")

big = numpy.arange(1e6)
copying = min(timeit.repeat(lambda: vexadata.array(big), number=20, repeat=5)) / 20
numpys = min(timeit.repeat(lambda: big.copy(), number=20, repeat=5)) / 20
print(f"\narray(x), a million numbers, copied: {copying * 1e3:.2f} ms, {copying / numpys:.2f} of NumPy's copy")
print(f"sparse to SciPy, 10,000 of a million: {nanoseconds(columns.to_scipy) / 1000:.1f} us")
