// Cell arrays: what they hold, references into it, and who owns it.

#include "Check.hpp"
#include "Foreign.hpp"
#include "Samples.hpp"

#include <foundation/vexadata/ArrayFactory.hpp>
#include <foundation/vexadata/Reference.hpp>
#include <foundation/vexadata/TypedArray.hpp>

namespace vexa::check {

namespace {

using Cells = fv::TypedArray<fv::Array>;

Owned<ArrayImpl> emptyCells(const Backend& backend, const Dimensions& dimensions) {
    return backend.array(ArrayType::CELL, dimensions);
}

Owned<ReferenceImpl> chainInto(ArrayImpl& array, std::size_t index, bool forWrite) {
    return adopt(array.createElementReference(index, {}, forWrite),
                 "createElementReference of a " + describe(array));
}

void startEmpty(Backend& backend) {
    for (const Dimensions& dimensions : {Dimensions{1, 1}, {2, 3}, {2, 2, 2}, {1, 300}}) {
        const auto cells = emptyCells(backend, dimensions);
        expectContents("a new " + describe(*cells), *cells, Contents(cells->getNumberOfElements(), "empty"));
    }
}

void holdsWhatIsStored(Backend& backend) {
    for (std::size_t stored = 0; stored < 300; stored += stored < 6 ? 1 : 50) {
        const auto cells = emptyCells(backend, {2, 150});
        assign(*cells, stored, {}, *scalar(backend, 7));
        Contents wanted(300, "empty");
        wanted[stored] = "1x1 double [7]";
        expectContents("a cell array after assignElementArray(" + show(stored) + ")", *cells, wanted);
    }
}

/// Arrays of other back-ends among them, and the empty array.
void replaces(Backend& backend) {
    const auto cells = emptyCells(backend, {1, 3});
    const auto other = foreign(Owned<ArrayImpl>(filled<double>(backend, {2, 2}).detach()));
    assign(*cells, 0, {}, *scalar(backend, 1));
    assign(*cells, 0, {}, *other);
    assign(*cells, 1, {}, *other);
    assign(*cells, 1, {}, *emptyArray());
    assign(*cells, 2, {}, *scalar(backend, 1));
    assign(*cells, 2, {}, *scalar(backend, 2));
    const Contents wanted{"2x2 double [1, 2, 3, 4]", "empty", "1x1 double [2]"};
    expectContents("a cell array of which elements were replaced", *cells, wanted);
    expectEqual("the reference count of an array of another back-end in one cell", other->referenceCount(),
                chainInto(*cells, 0, false)->getArrayImpl() == other.get() ? 2 : 1);
    const auto copy = adopt(cells->sharedCopy(), "sharedCopy");
    const auto chain = chainInto(*cells, 0, true);
    chain->prepareForWrite();
    write(asNumbers<double>(*chain->getArrayImpl()), 0, 9.0);
    expectContents("a copy after a write inside a cell with an array of another back-end", *copy, wanted);
    expectEqual("an array of another back-end after a write inside the cell that held it",
                read(asNumbers<double>(*other), 0), 1.0);
}

void typedOperations(Backend& backend) {
    const auto cells = emptyCells(backend, {1, 2});
    CellArrayImpl& typed = asCells(*cells);
    typed.unshare();
    typed.setElementValue(1, {}, fv::Array(scalar(backend, 5).detach()));
    expectContents("a cell array after setElementValue(1)", *cells, {"empty", "1x1 double [5]"});
    const fv::Array* element = typed.getElementAddress(1, {}, false);
    expect(element != nullptr, "getElementAddress of a cell array returns null");
    expectEqual("the number of elements of the Array at getElementAddress(1)", element->getNumberOfElements(),
                1);
    const fv::Array* first = typed.getTypedDataPtr();
    expect(first == nullptr || first + 1 == element,
           "getTypedDataPtr of a cell array is not one element before getElementAddress(1)");
}

/// Several at once, into cells of different shapes.
void chainsKnowTheirArrays(Backend& backend) {
    const auto cells = emptyCells(backend, {1, 3});
    const std::vector<Dimensions> shapes{{3, 2}, {1, 4}, {2, 2, 2}};
    for (std::size_t k = 0; k < 3; ++k)
        assign(*cells, k, {}, *backend.zeros<double>(shapes[k]));
    for (const bool forWrite : {false, true}) {
        std::vector<Owned<ReferenceImpl>> chains;
        for (std::size_t k = 0; k < 3; ++k)
            chains.push_back(chainInto(*cells, k, forWrite));
        for (std::size_t k = 0; k < 3; ++k) {
            const std::string of = " of a chain into cell " + show(k) + ", forWrite " + show(forWrite);
            expectOneReference("a chain into a cell, forWrite " + show(forWrite), *chains[k]);
            expectEqual("dimensions" + of, chains[k]->dimensions(), shapes[k]);
            expectEqual("indexCount" + of, chains[k]->indexCount(), 0);
            expectEqual("getDimensions of the array" + of, chains[k]->getArrayImpl()->getDimensions(),
                        shapes[k]);
        }
    }
    const Owned<ReferenceImpl> forwarded(cells->forwardingOp(1, {}));
    expect(forwarded != nullptr && forwarded->dimensions() == shapes[1],
           "slot 14 of a cell array gives another chain");
}

/// Writes to the element's array as the library does through a chain.
void writeThrough(ReferenceImpl& chain, double value) {
    chain.prepareForWrite();
    write(asNumbers<double>(*chain.getArrayImpl()), 0, value);
}

/// The array in the cell has another owner, who must not see the write; the cell must.
void writesSpareOtherOwners(Backend& backend, bool forWrite) {
    for (const Dimensions& dimensions : {Dimensions{1, 1}, {1, 3}, {3, 1}, {2, 2}, {2, 2, 2}}) {
        const auto cells = emptyCells(backend, dimensions);
        const std::size_t last = cells->getNumberOfElements() - 1;
        const auto expectLast = [&](const std::string& what, ArrayImpl& array, const char* value) {
            Contents wanted(last + 1, "empty");
            wanted[last] = value;
            expectContents(what, array, wanted);
        };
        const auto held = scalar(backend, 1);
        assign(*cells, last, {}, *held);
        const auto chain = chainInto(*cells, last, forWrite);
        writeThrough(*chain, 2);
        const std::string after = " after a write through a chain made with forWrite " + show(forWrite);
        expectEqual("the array that the cell was filled with," + after, scalarValue(*held), 1.0);
        expectLast("the cell" + after, *cells, "1x1 double [2]");
        // The chain was made before others came to own the array.
        const auto copy = adopt(cells->sharedCopy(), "sharedCopy");
        const auto later = share(*chainInto(*cells, last, false)->getArrayImpl());
        writeThrough(*chain, 3);
        expectLast("a copy made before another write through the same chain", *copy, "1x1 double [2]");
        expectEqual("an array taken before another write through the same chain", scalarValue(*later), 2.0);
        expectLast("the cell after another write through the same chain", *cells, "1x1 double [3]");
    }
}
void writeChains(Backend& backend) { writesSpareOtherOwners(backend, true); }
void readChains(Backend& backend) { writesSpareOtherOwners(backend, false); }

/// Two levels deep, through handles as users write it.
void cellsInCells(Backend& backend) {
    fv::ArrayFactory factory(fv::detail::Access::createSharedPtr(share(backend.factory()).detach()));
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

/// What a cell holds is retained once while held, and released once after, whoever else made it.
void balance(Backend& backend) {
    for (const bool byOther : {false, true}) {
        const auto held = byOther ? foreign(scalar(backend, 1)) : scalar(backend, 1);
        auto cells = emptyCells(backend, {1, 2});
        assign(*cells, 0, {}, *held);
        const bool sameObject = chainInto(*cells, 0, false)->getArrayImpl() == held.get();
        expectEqual("the reference count of an array in a cell", held->referenceCount(), sameObject ? 2 : 1);
        assign(*cells, 0, {}, *held);
        expectEqual("the reference count of an array that was stored into its cell again",
                    held->referenceCount(), sameObject ? 2 : 1);
        assign(*cells, 1, {}, *held);
        assign(*cells, 0, {}, *scalar(backend, 2));
        assign(*cells, 1, {}, *scalar(backend, 2));
        expectOneReference("an array that was replaced in its cell", *held);
        asCells(*cells).setElementValue(0, {}, fv::Array(share(*held).detach()));
        expect(held->referenceCount() >= (sameObject ? 2U : 1U),
               "the reference count of an array that setElementValue stored is too small");
        auto copy = adopt(cells->sharedCopy(), "sharedCopy");
        cells.reset();
        expect(held->referenceCount() >= (sameObject ? 2U : 1U),
               "the reference count of an array in the copy of a cell array is too small after the original "
               "has gone");
        expectContents("the copy of a cell array that is gone", *copy, {"1x1 double [1]", "1x1 double [2]"});
        copy.reset();
        expectOneReference("an array after its cell arrays have gone", *held);
    }
}

void chainsLeaveCounts(Backend& backend) {
    const auto held = scalar(backend, 1);
    const auto cells = emptyCells(backend, {1, 1});
    assign(*cells, 0, {}, *held);
    const std::uint64_t before = held->referenceCount();
    for (int k = 0; k < 3; ++k) {
        const auto chain = chainInto(*cells, 0, false);
        chain->getArrayImpl();
        expectOneReference("a cell array with a chain into it", *cells);
        expectEqual("the reference count of an array in a cell with a chain to it", held->referenceCount(),
                    before);
    }
    expectEqual("the reference count of an array in a cell after chains into it are gone",
                held->referenceCount(), before);
    expectOneReference("a cell array after chains into it are gone", *cells);
}

} // namespace

void addCellChecks(Checks& checks) {
    Family cells(checks, "cells");
    const std::vector<std::string> needs{"cell", "double"};
    const std::string assigned = "assignElementArray stores the array into the element (slot 18)";
    const std::string retained = "what is passed is borrowed: a reference is added to keep it (slot 18)";
    const std::string exclusive =
        "a chain makes the array held exclusively owned before its write, also one made for reading (slot 13)";
    cells.add("new cells are empty", "createArrayImpl makes an array of empty cells (slot 2 of the factory)",
              {"cell"}, startEmpty);
    cells.add("an array is stored in its element", assigned, needs, holdsWhatIsStored);
    cells.add("an element is replaced", assigned, needs, replaces);
    cells.add("typed reads and writes", "setElementValue stores, getElementAddress finds (slots 39, 40)",
              needs, typedOperations);
    cells.add("chains know the array held",
              "createElementReference is a new chain into what an element holds (slot 13)", needs,
              chainsKnowTheirArrays);
    cells.add("chains for writing spare other owners", exclusive, needs, writeChains);
    cells.add("chains for reading do so when written through", exclusive, needs, readChains);
    cells.add("cells in cells", exclusive, needs, cellsInCells);
    cells.add("what is held is retained and released", retained, needs, balance);
    cells.add("chains leave the counts", "a chain does not count its array (chains)", needs,
              chainsLeaveCounts);
}

} // namespace vexa::check
