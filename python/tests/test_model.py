"""Long random histories of copies, windows and writes, beside a model in which nothing is shared but what is said to be."""

import random

import numpy as np
import pytest

import vexadata as vx

LENGTH = 3


class History:
    """Each entry is a way to read three numbers and the list that they must equal; windows share one list."""

    def __init__(self, seed):
        self.random = random.Random(seed)
        self.arrays = []  # (array, model)
        self.memories = []  # (NumPy array, model)
        self.cells = []  # (cell, model)
        self.steps = [self.create, self.borrow, self.freeze, self.copy, self.look, self.open, self.store, self.take]
        self.steps += [self.tensor, self.export] + 4 * [self.write] + 3 * [self.write_memory] + 3 * [self.drop]

    def number(self):
        return self.random.randrange(1000)

    def create(self):
        model = [float(self.number()) for _ in range(LENGTH)]
        source = np.array(model)
        self.arrays.append((vx.array(source), list(model)))
        self.memories.append((source, model))

    def borrow(self):
        model = [float(self.number()) for _ in range(LENGTH)]
        source = np.array(model)
        self.memories.append((source, model))
        self.arrays.append((vx.array(source, copy=False), model))

    def freeze(self):
        model = [float(self.number()) for _ in range(LENGTH)]
        source = np.array(model)
        self.arrays.append((vx.freeze(source), list(model)))
        self.memories.append((source, model))

    def some(self, entries):
        return self.random.choice(entries) if entries else (None, None)

    def copy(self):
        array, model = self.some(self.arrays)
        if array is not None:
            self.arrays.append((array.copy(), list(model)))

    def look(self):
        array, model = self.some(self.arrays)
        if array is not None:
            look = self.random.choice([np.asarray, vx.DenseArray.numpy, lambda a: np.asarray(memoryview(a))])
            self.memories.append((look(array).reshape(-1), list(model)))

    def open(self):
        array, model = self.some(self.arrays)
        if array is not None:
            self.memories.append((array.vector(writable=True), model))

    def store(self):
        array, model = self.some(self.arrays)
        if array is not None:
            self.cells.append((vx.cell([array]), list(model)))

    def take(self):
        cell, model = self.some(self.cells)
        if cell is not None:
            self.arrays.append((cell[0], list(model)))

    def tensor(self):
        memory, model = self.some([entry for entry in self.memories if entry[0].flags.writeable])
        if memory is not None:
            self.arrays.append((vx.from_dlpack(memory), model))

    def export(self):
        array, model = self.some(self.arrays)
        if array is not None:
            self.memories.append((np.from_dlpack(array).reshape(-1), model))

    def write(self):
        array, model = self.some(self.arrays)
        if array is not None:
            k, value = self.random.randrange(LENGTH), float(self.number())
            array[k] = value
            model[k] = value

    def write_memory(self):
        memory, model = self.some([entry for entry in self.memories if entry[0].flags.writeable])
        if memory is not None:
            k, value = self.random.randrange(LENGTH), float(self.number())
            memory[k] = value
            model[k] = value

    def drop(self):
        entries = self.random.choice([self.arrays, self.memories, self.cells])
        if entries:
            entries.pop(self.random.randrange(len(entries)))

    def check(self):
        for array, model in self.arrays:
            assert list(array) == model
        for memory, model in self.memories:
            assert memory.tolist() == model
        for cell, model in self.cells:
            assert list(cell[0]) == model


@pytest.mark.parametrize("seed", range(12))
def test_histories(seed):
    history = History(seed)
    for _ in range(200):
        history.random.choice(history.steps)()
        history.check()
