// Cell arrays: what they hold, references into it, and who owns it.

#include "Check.hpp"
#include "Samples.hpp"

#include <foundation/vexadata/ArrayFactory.hpp>
#include <foundation/vexadata/Reference.hpp>
#include <foundation/vexadata/TypedArray.hpp>

namespace vexa::check {

namespace {

using Cells = fv::TypedArray<fv::Array>;
using Contents = std::vector<std::string>;

Owned<ArrayImpl> emptyCells(const Backend& backend, const Dimensions& dimensions) {
    return backend.array(ArrayType::CELL, dimensions);
}

Owned<ReferenceImpl> chainInto(ArrayImpl& array, std::size_t index, bool forWrite) {
    return adopt(array.createElementReference(index, {}, forWrite),
                 "createElementReference of a " + describe(array));
}

void startEmpty(Backend& backend) {
    const auto cells = emptyCells(backend, {2, 3});
    expectContents("a new " + describe(*cells), *cells, Contents(6, "empty"));
}

void holdsWhatIsStored(Backend& backend) {
    for (std::size_t stored = 0; stored < 6; ++stored) {
        const auto cells = emptyCells(backend, {2, 3});
        assign(*cells, stored, {}, *scalar(backend, 7));
        Contents wanted(6, "empty");
        wanted[stored] = "1x1 [7]";
        expectContents("a cell array after assignElementArray(" + show(stored) + ")", *cells, wanted);
    }
}

void replaces(Backend& backend) {
    const auto cells = emptyCells(backend, {1, 2});
    assign(*cells, 0, {}, *scalar(backend, 1));
    assign(*cells, 0, {}, *scalar(backend, 2));
    expectContents("a cell array of which an element was replaced", *cells, {"1x1 [2]", "empty"});
}

void typedOperations(Backend& backend) {
    const auto cells = emptyCells(backend, {1, 2});
    CellArrayImpl& typed = asCells(*cells);
    typed.unshare();
    typed.setElementValue(1, {}, fv::Array(scalar(backend, 5).release()));
    expectContents("a cell array after setElementValue(1)", *cells, {"empty", "1x1 [5]"});
    const fv::Array* element = typed.getElementAddress(1, {}, false);
    expect(element != nullptr, "getElementAddress of a cell array returns null");
    expectEqual("the number of elements of the Array at getElementAddress(1)", element->getNumberOfElements(),
                1);
}

void chainKnowsItsArray(Backend& backend) {
    const auto cells = emptyCells(backend, {1, 1});
    const auto held = backend.zeros<double>({3, 2});
    assign(*cells, 0, {}, *held);
    for (const bool forWrite : {false, true}) {
        const auto chain = chainInto(*cells, 0, forWrite);
        const std::string of = " of a chain into a cell, forWrite " + show(forWrite);
        expectOneReference("a chain into a cell, forWrite " + show(forWrite), *chain);
        expectEqual("dimensions" + of, chain->dimensions(), {3, 2});
        expectEqual("indexCount" + of, chain->indexCount(), 0);
        expectEqual("getNumberOfElements of the array" + of, chain->getArrayImpl()->getNumberOfElements(), 6);
    }
}

/// Writes to the element's array as the library does through a chain.
void writeThrough(ReferenceImpl& chain, double value) {
    chain.prepareForWrite();
    write(as<TypedArrayImpl<double>>(*chain.getArrayImpl(), "TypedArrayImpl<double>"), 0, value);
}

/// The array in the cell has another owner, who must not see the write; the cell must.
void writesSpareOtherOwners(Backend& backend, bool forWrite) {
    const auto cells = emptyCells(backend, {1, 1});
    const auto held = scalar(backend, 1);
    assign(*cells, 0, {}, *held);
    const auto chain = chainInto(*cells, 0, forWrite);
    writeThrough(*chain, 2);
    const std::string after = " after a write through a chain made with forWrite " + show(forWrite);
    expectEqual("the array that the cell was filled with," + after, scalarValue(*held), 1.0);
    expectContents("the cell" + after, *cells, {"1x1 [2]"});
}
void writeChains(Backend& backend) { writesSpareOtherOwners(backend, true); }
void readChains(Backend& backend) { writesSpareOtherOwners(backend, false); }

void nestedWritesSpareCopies(Backend& backend) {
    for (const bool inCopy : {true, false}) {
        const auto cells = emptyCells(backend, {1, 1});
        assign(*cells, 0, {}, *scalar(backend, 1));
        const auto copy = adopt(cells->sharedCopy(), "sharedCopy");
        writeThrough(*chainInto(inCopy ? *copy : *cells, 0, true), 2);
        const std::string after =
            std::string(" after a write inside ") + (inCopy ? "its copy" : "the original");
        expectContents("a cell array" + after, inCopy ? *cells : *copy, {"1x1 [1]"});
        expectContents("the array written to", inCopy ? *copy : *cells, {"1x1 [2]"});
    }
}

/// Two levels deep, through handles as users write it.
void cellsInCells(Backend& backend) {
    fv::ArrayFactory factory(fv::detail::Access::createSharedPtr(share(backend.factory()).release()));
    Cells inner = factory.createArray<fv::Array>({1, 2});
    inner[1] = factory.createArray<double>({2, 2});
    Cells outer = factory.createArray<fv::Array>({1, 1});
    outer[0] = inner;
    const Cells before = outer;
    const auto valueIn = [](const Cells& cells) {
        const Cells held = fv::Array(cells[0]);
        const fv::TypedArray<double> numbers = fv::Array(held[1]);
        return static_cast<double>(numbers[1][0]);
    };
    fv::Reference<fv::Array> cell = outer[0];
    fv::Reference<fv::Array> numbers = cell[1];
    numbers[1][0] = 5.0;
    expectEqual("an element written two cells deep", valueIn(outer), 5.0);
    expectEqual("the same element of a copy made before", valueIn(before), 0.0);
    const fv::TypedArray<double> stored = fv::Array(inner[1]);
    expectEqual("the same element of the inner cell array that was stored", static_cast<double>(stored[1][0]),
                0.0);
}

/// What a cell holds is retained once while held, and released once after.
void balance(Backend& backend) {
    const auto held = scalar(backend, 1);
    auto cells = emptyCells(backend, {1, 2});
    assign(*cells, 0, {}, *held);
    const bool sameObject = chainInto(*cells, 0, false)->getArrayImpl() == held.get();
    expectEqual("the reference count of an array in a cell", held->referenceCount(), sameObject ? 2 : 1);
    assign(*cells, 1, {}, *held);
    assign(*cells, 0, {}, *scalar(backend, 2));
    assign(*cells, 1, {}, *scalar(backend, 2));
    expectOneReference("an array that was replaced in its cell", *held);
    assign(*cells, 0, {}, *held);
    auto copy = adopt(cells->sharedCopy(), "sharedCopy");
    cells.reset();
    expect(
        held->referenceCount() >= (sameObject ? 2U : 1U),
        "the reference count of an array in the copy of a cell array is too small after the original has gone");
    copy.reset();
    expectOneReference("an array after its cell arrays have gone", *held);
}

void chainsLeaveCounts(Backend& backend) {
    const auto held = scalar(backend, 1);
    const auto cells = emptyCells(backend, {1, 1});
    assign(*cells, 0, {}, *held);
    const std::uint64_t before = held->referenceCount();
    for (int k = 0; k < 3; ++k)
        chainInto(*cells, 0, false)->getArrayImpl();
    expectEqual("the reference count of an array in a cell after chains into it are gone",
                held->referenceCount(), before);
    expectOneReference("a cell array after chains into it are gone", *cells);
}

} // namespace

void addCellChecks(Checks& checks) {
    Family cells(checks, "cells");
    const std::vector<std::string> needs{"cell", "double"};
    cells.add("new cells are empty", {"cell"}, startEmpty);
    cells.add("an array is stored in its element", needs, holdsWhatIsStored);
    cells.add("an element is replaced", needs, replaces);
    cells.add("typed reads and writes", needs, typedOperations);
    cells.add("chains know the array held", needs, chainKnowsItsArray);
    cells.add("chains for writing spare other owners", needs, writeChains);
    cells.add("chains for reading do so when written through", needs, readChains);
    cells.add("writes inside spare copies", needs, nestedWritesSpareCopies);
    cells.add("cells in cells", needs, cellsInCells);
    cells.add("what is held is retained and released", needs, balance);
    cells.add("chains leave the counts", needs, chainsLeaveCounts);
}

} // namespace vexa::check
