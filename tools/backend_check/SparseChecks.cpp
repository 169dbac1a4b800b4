// Sparse matrices.

#include "Check.hpp"
#include "Samples.hpp"

#include <foundation/vexadata/Exception.hpp>

namespace vexa::check {

namespace {

using Contents = std::vector<std::string>;

/// Runs `f` with each type of sparse array that is offered.
void eachType(Backend& backend, const std::function<void(ArrayType)>& f) {
    std::size_t count = 0;
    for (const auto type :
         {ArrayType::SPARSE_LOGICAL, ArrayType::SPARSE_DOUBLE, ArrayType::SPARSE_COMPLEX_DOUBLE}) {
        if (!backend.offers(nameOf(type))) continue;
        backend.step(std::string(nameOf(type)) + " arrays");
        f(type);
        ++count;
    }
    if (count == 0) throw NotOffered{"no sparse arrays are offered"};
    backend.note(show(count) + (count == 1 ? " element type" : " element types"));
}

/// 3 by 4, with values 1, 2, 3, 4 at (2,0), (0,1), (2,1), (1,3).
Owned<ArrayImpl> fromTriplets(const Backend& backend, ArrayType type) {
    return adopt(
        createSparse(backend.factory(), type, {3, 4}, {4, 3, 1, 2}, {1, 2, 2, 0}, {3, 1, 0, 1}, false),
        "the creator of sparse arrays");
}
Owned<ArrayImpl> fromColumns(const Backend& backend, ArrayType type) {
    return adopt(
        createSparse(backend.factory(), type, {3, 4}, {1, 2, 3, 4}, {2, 0, 2, 1}, {0, 1, 3, 3, 4}, true),
        "the creator of sparse arrays in compressed columns");
}

Contents wantedOf(ArrayType type) {
    switch (type) {
    case ArrayType::SPARSE_LOGICAL:
        return {"(2,0)=true", "(0,1)=true", "(2,1)=true", "(1,3)=true"};
    case ArrayType::SPARSE_DOUBLE:
        return {"(2,0)=1", "(0,1)=2", "(2,1)=3", "(1,3)=4"};
    default:
        return {"(2,0)=(1,0)", "(0,1)=(2,0)", "(2,1)=(3,0)", "(1,3)=(4,0)"};
    }
}

void expectMatrix(ArrayImpl& array) {
    const std::string of = " of a " + describe(array);
    expectEqual("getNumberOfNonZeroElements" + of, array.getNumberOfNonZeroElements(), 4);
    const std::vector<std::pair<std::size_t, std::size_t>> places{{2, 0}, {0, 1}, {2, 1}, {1, 3}};
    for (std::size_t k = 0; k < 4; ++k)
        expectEqual("getIndex(" + show(k) + ")" + of + " (row, column)", array.getIndex(k), places[k]);
    expectContents("the non-zeros" + of, array, wantedOf(array.getType()));
}

void triplets(Backend& backend) {
    eachType(backend, [&](ArrayType type) { expectMatrix(*fromTriplets(backend, type)); });
}
void compressed(Backend& backend) {
    eachType(backend, [&](ArrayType type) { expectMatrix(*fromColumns(backend, type)); });
}

void extents(Backend& backend) {
    eachType(backend, [&](ArrayType type) {
        const auto array = fromTriplets(backend, type);
        const std::string of = " of a " + describe(*array);
        expectEqual("getRows" + of, array->getRows(), 3);
        expectEqual("getCols" + of, array->getCols(), 4);
        expectEqual("getNumberOfElements" + of, array->getNumberOfElements(), 12);
    });
}

void expectIndices(const std::string& what, const std::size_t* found,
                   const std::vector<std::size_t>& wanted) {
    expect(found != nullptr, what + " returns null");
    for (std::size_t k = 0; k < wanted.size(); ++k)
        expectEqual(what + ": entry " + show(k), found[k], wanted[k]);
}
void columnStarts(Backend& backend) {
    eachType(backend, [&](ArrayType type) {
        const auto array = fromTriplets(backend, type);
        expectIndices("getJc of a " + describe(*array), array->getJc(), {0, 1, 3, 3, 4});
    });
}
void rowIndices(Backend& backend) {
    eachType(backend, [&](ArrayType type) {
        const auto array = fromTriplets(backend, type);
        expectIndices("getIr of a " + describe(*array), array->getIr(), {2, 0, 2, 1});
    });
}

void withoutNonZeros(Backend& backend) {
    eachType(backend, [&](ArrayType type) {
        const auto array = adopt(createSparse(backend.factory(), type, {2, 3}, {}, {}, {}, false),
                                 "the creator of sparse arrays");
        expectEqual("getNumberOfNonZeroElements of an all-zero matrix", array->getNumberOfNonZeroElements(),
                    0);
        expectIndices("getJc of an all-zero matrix", array->getJc(), {0, 0, 0, 0});
        expect(beginOf(*array)->isEqual(*endOf(*array)), "begin and end of an all-zero matrix differ");
    });
}

int freed = 0;
template <class T>
Buffer<T[]> countedBuffer(const std::vector<T>& values) {
    return Buffer<T[]>(bufferOf(values).release(), [](void* memory) {
        ++freed;
        std::free(memory);
    });
}

/// The three buffers of each creator belong to the back-end.
void buffersFreed(Backend& backend) {
    for (const bool columns : {false, true}) {
        if (columns && !backend.offers("compressed-columns")) continue;
        freed = 0;
        const auto create = columns ? &ArrayFactoryImpl::createVexaSparseDoubleImpl
                                    : &ArrayFactoryImpl::createSparseDoubleImpl;
        adopt((backend.factory().*
               create)({2, 2}, 2, countedBuffer<double>({1, 2}), countedBuffer<std::size_t>({0, 1}),
                       countedBuffer<std::size_t>(columns ? std::vector<std::size_t>{0, 1, 2}
                                                          : std::vector<std::size_t>{0, 1})),
              "the creator of sparse arrays");
        expectEqual(
            std::string("the number of buffers freed, of the three that a sparse array was made from") +
                (columns ? " in compressed columns" : ""),
            freed, 3);
    }
}

} // namespace

void addSparseChecks(Checks& checks) {
    Family sparse(checks, "sparse");
    sparse.add("triplets in any order", {}, triplets);
    sparse.add("compressed columns", {"compressed-columns"}, compressed);
    sparse.add("rows and columns", {}, extents);
    sparse.add("column starts", {}, columnStarts);
    sparse.add("row indices", {}, rowIndices);
    sparse.add("no non-zeros", {}, withoutNonZeros);
    sparse.add("buffers are freed once", {"sparse-double"}, buffersFreed);
}

} // namespace vexa::check
