// Sparse matrices.

#include "Check.hpp"
#include "Foreign.hpp"
#include "Samples.hpp"

#include <foundation/vexadata/Exception.hpp>

#include <array>
#include <complex>
#include <set>

namespace vexa::check {

namespace {

constexpr std::array sparseTypes{ArrayType::SPARSE_LOGICAL, ArrayType::SPARSE_DOUBLE,
                                 ArrayType::SPARSE_COMPLEX_DOUBLE};

/// Runs `f` with each type of sparse array that is offered.
void eachType(Backend& backend, const std::function<void(ArrayType)>& f) {
    std::size_t count = 0;
    for (const auto type : sparseTypes) {
        if (!backend.offers(nameOf(type))) continue;
        backend.step(std::string(nameOf(type)) + " arrays");
        f(type);
        ++count;
    }
    if (count == 0) throw NotOffered{"no sparse arrays are offered"};
    backend.note(show(count) + (count == 1 ? " element type" : " element types"));
}

using Places = std::vector<std::pair<std::size_t, std::size_t>>;

/// A matrix with values 1, 2, ... at places that are sorted by column and row.
struct Matrix {
    Dimensions dimensions;
    Places places;
};

const std::vector<Matrix>& matrices() {
    static const std::vector<Matrix> all = [] {
        std::vector<Matrix> made{{{3, 4}, {{2, 0}, {0, 1}, {2, 1}, {1, 3}}},
                                 {{1, 1}, {{0, 0}}},
                                 {{1, 1}, {}},
                                 {{0, 0}, {}},
                                 {{0, 3}, {}},
                                 {{3, 0}, {}},
                                 {{5, 1}, {{0, 0}, {1, 0}, {4, 0}}},
                                 {{1, 5}, {{0, 4}}},
                                 {{2, 6}, {{1, 0}, {0, 5}, {1, 5}}},
                                 {{3, 3}, {}},
                                 {{300, 300}, {}},
                                 {{200, 400}, {}},
                                 {{(std::size_t(1) << 40) + 1, 3},
                                  {{7, 0}, {std::size_t(1) << 40, 0}, {(std::size_t(1) << 33) + 1, 2}}},
                                 {{4, 3000}, {}}};
        for (std::size_t column = 0; column < 300; ++column)
            for (std::size_t row = column % 3; row < 300; row += column % 7 == 3 ? 300 : 97)
                made[10].places.emplace_back(row, column);
        for (std::size_t column = 0; column < 400; ++column)
            for (std::size_t row = 0; row < 200; ++row)
                if ((row + column) % 9 != 0) made[11].places.emplace_back(row, column);
        for (std::size_t column = 1; column < 3000; column += column * column % 61) // with many columns empty
            for (std::size_t row = column % 4; row < 4; row += 2)
                made[13].places.emplace_back(row, column);
        return made;
    }();
    return all;
}

double valueFor(ArrayType type, std::size_t k) {
    return type == ArrayType::SPARSE_LOGICAL ? 1 : static_cast<double>(k + 1);
}

/// Reversed, or scattered, or in order.
Owned<ArrayImpl> fromTriplets(const Backend& backend, ArrayType type, const Matrix& matrix,
                              std::size_t order) {
    const std::size_t count = matrix.places.size();
    std::vector<double> values;
    std::vector<std::size_t> rows;
    std::vector<std::size_t> columns;
    for (std::size_t number = 0; number < count; ++number) {
        std::size_t k = order == 0 ? number : count - 1 - number;
        if (order == 2 && count % 7 != 0) k = number * 7 % count;
        values.push_back(valueFor(type, k));
        rows.push_back(matrix.places[k].first);
        columns.push_back(matrix.places[k].second);
    }
    return adopt(createSparse(backend.factory(), type, matrix.dimensions, values, rows, columns, false),
                 "the creator of sparse arrays");
}

std::vector<std::size_t> startsOf(const Matrix& matrix) {
    std::vector<std::size_t> starts(matrix.dimensions[1] + 1, 0);
    for (const auto& place : matrix.places)
        ++starts[place.second + 1];
    for (std::size_t column = 0; column < matrix.dimensions[1]; ++column)
        starts[column + 1] += starts[column];
    return starts;
}
std::vector<std::size_t> rowsOf(const Matrix& matrix) {
    std::vector<std::size_t> rows;
    for (const auto& place : matrix.places)
        rows.push_back(place.first);
    return rows;
}

Owned<ArrayImpl> fromColumns(const Backend& backend, ArrayType type, const Matrix& matrix) {
    std::vector<double> values;
    for (std::size_t k = 0; k < matrix.places.size(); ++k)
        values.push_back(valueFor(type, k));
    return adopt(createSparse(backend.factory(), type, matrix.dimensions, values, rowsOf(matrix),
                              startsOf(matrix), true),
                 "the creator of sparse arrays in compressed columns");
}

void expectIndices(const std::string& what, const std::size_t* found,
                   const std::vector<std::size_t>& wanted) {
    expect(found != nullptr || wanted.empty(), what + " returns null");
    for (std::size_t k = 0; k < wanted.size(); ++k)
        if (found[k] != wanted[k]) expectEqual(what + ": entry " + show(k), found[k], wanted[k]);
}

void expectMatrix(ArrayImpl& array, const Matrix& matrix, const std::string& origin) {
    const std::string of = " of a " + describe(array) + origin;
    const std::size_t count = matrix.places.size();
    expectEqual("getNumberOfNonZeroElements" + of, array.getNumberOfNonZeroElements(), count);
    // Upwards, then downwards, then hither and thither: an array may remember where it was.
    const auto expectPlace = [&](std::size_t k) {
        if (array.getIndex(k) != matrix.places[k])
            expectEqual("getIndex(" + show(k) + ")" + of + " (row, column)", array.getIndex(k),
                        matrix.places[k]);
    };
    for (std::size_t k = 0; k < count; ++k)
        expectPlace(k);
    for (std::size_t k = count; k-- > 0;)
        expectPlace(k);
    for (std::size_t k = 0; k < count && k < 2000; ++k)
        expectPlace(k * 4099 % count);
    const Iterator here = beginOf(array);
    for (std::size_t k = 0; k < count; ++k, here->increment()) {
        const double wanted = valueFor(array.getType(), k);
        const void* address = here->getElementAddress();
        expect(address != nullptr, "the iterator" + of + " gives no address");
        const bool right = array.getType() == ArrayType::SPARSE_LOGICAL ? *static_cast<const bool*>(address)
                           : array.getType() == ArrayType::SPARSE_DOUBLE
                               ? *static_cast<const double*>(address) == wanted
                               : *static_cast<const std::complex<double>*>(address) == wanted;
        if (!right) fail("non-zero " + show(k) + of + " is not " + show(wanted));
    }
    expect(here->isEqual(*endOf(array)), "the iterator" + of + " does not end after the non-zeros");
    if (count == 0) expect(beginOf(array)->isEqual(*endOf(array)), "begin and end" + of + " differ");
}

/// Runs `f` with every matrix, made in every way, and copies of it.
void eachMatrix(Backend& backend, bool compressed,
                const std::function<void(ArrayImpl&, const Matrix&, const std::string&)>& f) {
    eachType(backend, [&](ArrayType type) {
        for (const Matrix& matrix : matrices())
            for (std::size_t order = 0; order < (compressed ? 1U : 3U); ++order) {
                if (order != 0 && matrix.places.size() > 1000 && type != ArrayType::SPARSE_DOUBLE) continue;
                auto array = compressed ? fromColumns(backend, type, matrix)
                                        : fromTriplets(backend, type, matrix, order);
                f(*array, matrix, "");
                const auto copy = adopt(array->sharedCopy(), "sharedCopy");
                expect(array->isEqual(copy.get()),
                       "isEqual of a " + describe(*array) + " and its copy is false");
                array.reset();
                f(*copy, matrix, " that is a copy");
            }
    });
}

void triplets(Backend& backend) { eachMatrix(backend, false, &expectMatrix); }
void compressed(Backend& backend) { eachMatrix(backend, true, &expectMatrix); }

void extents(Backend& backend) {
    eachMatrix(backend, false, [&](ArrayImpl& array, const Matrix& matrix, const std::string& origin) {
        const std::string of = " of a " + describe(array) + origin;
        expectEqual("getDimensions" + of, array.getDimensions(), matrix.dimensions);
        expectEqual("getRows" + of, array.getRows(), matrix.dimensions[0]);
        expectEqual("getCols" + of, array.getCols(), matrix.dimensions[1]);
        expectEqual("getNumberOfElements" + of, array.getNumberOfElements(),
                    matrix.dimensions[0] * matrix.dimensions[1]);
        expectEqual("isEmpty" + of, array.isEmpty(), matrix.dimensions[0] * matrix.dimensions[1] == 0);
    });
}

void columnStarts(Backend& backend) {
    for (const bool columns : {false, backend.offers("compressed-columns")})
        eachMatrix(backend, columns, [&](ArrayImpl& array, const Matrix& matrix, const std::string& origin) {
            expectIndices("getJc of a " + describe(array) + origin, array.getJc(), startsOf(matrix));
        });
}
void rowIndices(Backend& backend) {
    for (const bool columns : {false, backend.offers("compressed-columns")})
        eachMatrix(backend, columns, [&](ArrayImpl& array, const Matrix& matrix, const std::string& origin) {
            expectIndices("getIr of a " + describe(array) + origin, array.getIr(), rowsOf(matrix));
        });
}

/// Starts, rows and values, lent at once by two arrays.
void lendsIndices(Backend& backend) {
    eachType(backend, [&](ArrayType type) {
        const Matrix& first = matrices()[0];
        const Matrix& second = matrices()[8];
        const auto a = fromTriplets(backend, type, first, 1);
        const std::size_t* starts = a->getJc();
        const std::size_t* rows = a->getIr();
        const auto b = fromTriplets(backend, type, second, 1);
        const std::size_t* otherStarts = b->getJc();
        const std::size_t* otherRows = b->getIr();
        a->getIndex(1);
        expectIndices("getJc of one of two arrays", starts, startsOf(first));
        expectIndices("getIr of one of two arrays", rows, rowsOf(first));
        expectIndices("getJc of the other of two arrays", otherStarts, startsOf(second));
        expectIndices("getIr of the other of two arrays", otherRows, rowsOf(second));
        ReferenceImpl* chain = a->createElementReference(0, {}, false);
        if (chain != nullptr) chain->release();
        expect(chain == nullptr, "createElementReference of a sparse array is not null");
    });
}

/// One non-zero elsewhere, one more, one less, in another column only.
void placesTellApart(Backend& backend) {
    eachType(backend, [&](ArrayType type) {
        const Matrix matrix{{3, 4}, {{2, 0}, {0, 1}, {2, 1}, {1, 3}}};
        const auto array = fromTriplets(backend, type, matrix, 0);
        for (std::size_t k = 0; k < matrix.places.size(); ++k)
            for (int change = 0; change < 3; ++change) {
                Matrix other = matrix;
                if (change == 0) {
                    other.places.erase(other.places.begin() + static_cast<std::ptrdiff_t>(k));
                } else {
                    auto& place = other.places[k];
                    place = change == 1 ? std::pair{(place.first + 1) % 3, place.second}
                                        : std::pair{place.first, (place.second + 2) % 4};
                    std::sort(other.places.begin(), other.places.end(), [](const auto& a, const auto& b) {
                        return std::pair{a.second, a.first} < std::pair{b.second, b.first};
                    });
                    if (std::adjacent_find(other.places.begin(), other.places.end()) != other.places.end())
                        continue;
                }
                const auto second = fromTriplets(backend, type, other, 0);
                expect(!array->isEqual(second.get()) && !second->isEqual(array.get()),
                       "isEqual of " + describe(*array) + "s whose non-zeros lie elsewhere is true");
            }
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
template <class T>
Buffer<T[]> countedValues() {
    T* memory = static_cast<T*>(std::malloc(2 * sizeof(T)));
    memory[0] = memory[1] = T(1);
    return Buffer<T[]>(memory, [](void* block) {
        ++freed;
        std::free(block);
    });
}

/// The three buffers of each creator belong to the back-end, also when it refuses.
template <class T>
void expectBuffersFreed(const Backend& backend, ArrayType type,
                        ArrayImpl* (ArrayFactoryImpl::*triplets)(Dimensions, std::size_t, Buffer<T[]>,
                                                                 Buffer<std::size_t[]>,
                                                                 Buffer<std::size_t[]>),
                        ArrayImpl* (ArrayFactoryImpl::*columns)(Dimensions, std::size_t, Buffer<T[]>,
                                                                Buffer<std::size_t[]>,
                                                                Buffer<std::size_t[]>)) {
    if (!backend.offers(nameOf(type))) return;
    for (const bool compressed : {false, true}) {
        if (compressed && !backend.offers("compressed-columns")) continue;
        for (const std::size_t row : {1U, 7U}) { // the second is out of range
            freed = 0;
            try {
                auto array =
                    adopt((backend.factory().*(compressed ? columns : triplets))(
                              {2, 2}, 2, countedValues<T>(), countedBuffer<std::size_t>({0, row}),
                              countedBuffer<std::size_t>(compressed ? std::vector<std::size_t>{0, 1, 2}
                                                                    : std::vector<std::size_t>{0, 1})),
                          "the creator of sparse arrays");
                auto copy = adopt(array->sharedCopy(), "sharedCopy");
                array.reset();
            } catch (const Failure&) {
                throw;
            } catch (...) {
                expect(row == 7, "the creator of sparse arrays throws " + describeException());
            }
            expectEqual("the number of buffers freed, of the three that a " + std::string(nameOf(type)) +
                            " array " + (row == 7 ? "with a row out of range" : "") + " was made from" +
                            (compressed ? " in compressed columns" : ""),
                        freed, 3);
        }
    }
}

/// Null in place of each buffer that would hold nothing.
template <class T, class Triplets, class Columns>
void expectFromNull(const Backend& backend, ArrayType type, Triplets triplets, Columns columns) {
    if (!backend.offers(nameOf(type))) return;
    const auto none = [] { return Buffer<std::size_t[]>(nullptr, &std::free); };
    const auto noValues = [] { return Buffer<T[]>(nullptr, &std::free); };
    for (const Dimensions& dimensions : {Dimensions{2, 3}, {0, 0}, {0, 3}, {3, 0}}) {
        const Matrix matrix{dimensions, {}};
        expectMatrix(*adopt((backend.factory().*triplets)(dimensions, 0, noValues(), none(), none()),
                            "the creator of sparse arrays"),
                     matrix, " made from null");
        if (backend.offers("compressed-columns"))
            expectMatrix(*adopt((backend.factory().*columns)(dimensions, 0, noValues(), none(),
                                                             bufferOf(startsOf(matrix))),
                                "the creator of sparse arrays"),
                         matrix, " made from null and column starts");
    }
}

void needsNoBuffers(Backend& backend) {
    eachType(backend, [](ArrayType) {});
    using F = ArrayFactoryImpl;
    expectFromNull<bool>(backend, sparseTypes[0], &F::createSparseLogicalImpl,
                         &F::createVexaSparseLogicalImpl);
    expectFromNull<double>(backend, sparseTypes[1], &F::createSparseDoubleImpl,
                           &F::createVexaSparseDoubleImpl);
    expectFromNull<std::complex<double>>(backend, sparseTypes[2], &F::createSparseComplexDoubleImpl,
                                         &F::createVexaSparseComplexDoubleImpl);
}

void buffersFreed(Backend& backend) {
    eachType(backend, [](ArrayType) {});
    using F = ArrayFactoryImpl;
    expectBuffersFreed<bool>(backend, sparseTypes[0], &F::createSparseLogicalImpl,
                             &F::createVexaSparseLogicalImpl);
    expectBuffersFreed<double>(backend, sparseTypes[1], &F::createSparseDoubleImpl,
                               &F::createVexaSparseDoubleImpl);
    expectBuffersFreed<std::complex<double>>(backend, sparseTypes[2], &F::createSparseComplexDoubleImpl,
                                             &F::createVexaSparseComplexDoubleImpl);
}

/// Rows anywhere among as many as any number of bits can count, and as many non-zeros as any way to sort may care for.
void rowsOfEverySize(Backend& backend) {
    eachType(backend, [&](ArrayType type) {
        for (std::size_t bits = 1; bits < 62; ++bits)
            for (const std::size_t count : {std::size_t(40), std::size_t(bits % 10 == 3 ? 3000 : 300)}) {
                if (type != ArrayType::SPARSE_DOUBLE && bits % 7 != 0) continue;
                Matrix matrix{{(std::size_t(1) << bits) + bits % 2, 3}, {}};
                std::size_t random = bits;
                for (std::size_t k = 0; k < count; ++k) {
                    random = random * 6364136223846793005U + 1442695040888963407U;
                    matrix.places.emplace_back((random ^ random >> 32) % matrix.dimensions[0],
                                               random >> 60 & 1);
                }
                matrix.places.emplace_back(matrix.dimensions[0] - 1, 2);
                std::sort(matrix.places.begin(), matrix.places.end(), [](const auto& a, const auto& b) {
                    return std::pair{a.second, a.first} < std::pair{b.second, b.first};
                });
                matrix.places.erase(std::unique(matrix.places.begin(), matrix.places.end()),
                                    matrix.places.end());
                for (const std::size_t order : {1U, 2U})
                    expectMatrix(*fromTriplets(backend, type, matrix, order), matrix, "");
            }
    });
}

/// Triplets as somebody may give them.
struct Given {
    Dimensions dimensions;
    std::vector<double> values;
    Places places;
};

/// What the creator says of itself in its three ways is one matrix, in which each place holds what was given for it: the
/// last or first of several, their sum, nothing for a zero.
void expectSomeMatrix(ArrayImpl& array, const Given& given, const std::string& what) {
    const std::size_t count = array.getNumberOfNonZeroElements();
    const std::size_t columns = given.dimensions[1];
    expect(array.getJc()[0] == 0 && array.getJc()[columns] == count,
           "getJc of " + what + " does not go from 0 to the number of non-zeros");
    std::set<std::pair<std::size_t, std::size_t>> seen;
    const Contents contents = contentsOf(array);
    const Iterator here = beginOf(array);
    for (std::size_t k = 0; k < count; ++k, here->increment()) {
        const auto place = array.getIndex(k);
        expect(place.first < given.dimensions[0] && place.second < columns,
               "non-zero " + show(k) + " of " + what + " lies outside of it, at " + show(place));
        expect(array.getIr()[k] == place.first && array.getJc()[place.second] <= k &&
                   k < array.getJc()[place.second + 1],
               "getIr and getJc of " + what + " tell another place than getIndex(" + show(k) + ")");
        expect(seen.insert(place).second, "two non-zeros of " + what + " lie at " + show(place));
    }
    for (std::size_t k = 0; k < given.places.size(); ++k) {
        std::vector<double> allowed;
        double sum = 0;
        for (std::size_t other = 0; other < given.places.size(); ++other)
            if (given.places[other] == given.places[k]) {
                allowed.push_back(given.values[other]);
                sum += given.values[other];
            }
        allowed.push_back(sum);
        const auto text = [&](double value) {
            const bool logical = array.getType() == ArrayType::SPARSE_LOGICAL;
            return show(given.places[k]) + "=" +
                   (logical ? show(value != 0)
                    : array.getType() == ArrayType::SPARSE_COMPLEX_DOUBLE
                        ? show(std::complex<double>(value, 0))
                        : show(value));
        };
        const bool none = seen.count(given.places[k]) == 0;
        expect(std::any_of(allowed.begin(), allowed.end(),
                           [&](double value) {
                               return none ? value == 0
                                           : std::find(contents.begin(), contents.end(), text(value)) !=
                                                 contents.end();
                           }),
               "the element at " + show(given.places[k]) + " of " + what +
                   " is nothing that was given for it");
    }
    for (const auto& place : seen)
        expect(std::find(given.places.begin(), given.places.end(), place) != given.places.end(),
               "nothing was given for the non-zero of " + what + " at " + show(place));
}

/// Several for one place, zeros, places outside, rows in any order: it is refused, or becomes some matrix.
void anyTriplets(Backend& backend) {
    eachType(backend, [&](ArrayType type) {
        std::size_t random = 7;
        const auto next = [&](std::size_t below) {
            random = random * 6364136223846793005U + 1442695040888963407U;
            return (random >> 33) % below;
        };
        for (std::size_t trial = 0; trial < 400; ++trial) {
            Given given{{1 + next(6), 1 + next(5)}, {}, {}};
            const bool outside = trial % 8 == 7;
            const std::size_t count = 1 + next(14);
            const std::size_t kinds = trial % 3 == 0 ? 1 : 3; // of values, the first of which is no zero
            for (std::size_t k = 0; k < count; ++k) {
                given.places.emplace_back(next(given.dimensions[0]), next(given.dimensions[1]));
                given.values.push_back(std::array{2.0, 0.0, -2.0}[next(kinds)]);
            }
            const bool compressed = trial % 2 == 1 && backend.offers("compressed-columns");
            if (outside) {
                auto& place = given.places[next(count)];
                if (compressed || next(2) == 0)
                    place.first = given.dimensions[0] + (next(2) == 0 ? 0 : next(50));
                else
                    place.second = given.dimensions[1] + (next(2) == 0 ? 0 : next(50));
            }
            if (compressed)
                std::stable_sort(given.places.begin(), given.places.end(), [&](const auto& a, const auto& b) {
                    return trial % 4 == 1 ? std::pair{a.second, a.first} < std::pair{b.second, b.first}
                                          : a.second < b.second;
                });
            std::vector<std::size_t> columns;
            for (const auto& place : given.places)
                columns.push_back(place.second);
            const Matrix matrix{given.dimensions, given.places};
            if (compressed) columns = startsOf(matrix);
            Owned<ArrayImpl> array;
            try {
                array.reset(createSparse(backend.factory(), type, given.dimensions, given.values,
                                         rowsOf(matrix), columns, compressed));
            } catch (...) {
                continue; // refused
            }
            expect(array != nullptr, "the creator of sparse arrays returns null");
            expectSomeMatrix(*array, given,
                             "a " + describe(*array) + " from " + show(count) +
                                 (compressed ? " values in compressed columns" : " triplets"));
            expectSomeMatrix(*adopt(array->sharedCopy(), "sharedCopy"), given,
                             "a copy of a " + describe(*array));
        }
    });
}

/// A value becomes zero through a writable iterator: stored or not, it is a zero.
void storedZeros(Backend& backend) {
    const Matrix matrix{{3, 4}, {{0, 0}, {2, 0}, {1, 1}, {0, 3}, {1, 3}, {2, 3}}};
    const std::size_t masks = std::size_t(1) << matrix.places.size();
    eachType(backend, [&](ArrayType type) {
        const auto writeTo = [&](ArrayImpl& array, std::size_t k, double value) {
            array.unshare();
            const Iterator here = beginOf(array, true);
            here->advance(static_cast<std::int64_t>(k));
            if (type == ArrayType::SPARSE_LOGICAL)
                *static_cast<bool*>(here->getElementAddress()) = value != 0;
            else
                *static_cast<double*>(here->getElementAddress()) = value; // the real part comes first
        };
        std::vector<Owned<ArrayImpl>> zeroed;  // the values of a mask are zero
        std::vector<Owned<ArrayImpl>> without; // there never were any
        std::vector<Owned<ArrayImpl>> others;
        for (std::size_t mask = 0; mask < masks; ++mask) {
            zeroed.push_back(fromTriplets(backend, type, matrix, 0));
            std::vector<double> values;
            std::vector<std::size_t> rows, columns;
            for (std::size_t k = 0; k < matrix.places.size(); ++k) {
                if ((mask >> k & 1) != 0) {
                    writeTo(*zeroed.back(), k, 0);
                    continue;
                }
                values.push_back(valueFor(type, k));
                rows.push_back(matrix.places[k].first);
                columns.push_back(matrix.places[k].second);
            }
            without.push_back(
                adopt(createSparse(backend.factory(), type, matrix.dimensions, values, rows, columns, false),
                      "the creator of sparse arrays"));
            others.push_back(foreign(adopt(zeroed.back()->sharedCopy(), "sharedCopy")));
        }
        for (std::size_t a = 0; a < masks; ++a)
            for (std::size_t b = 0; b < masks; ++b)
                for (const auto* list : {&zeroed, &without, &others}) {
                    const ArrayImpl& second = *(*list)[b];
                    if (zeroed[a]->isEqual(&second) != (a == b) ||
                        (list == &without && without[a]->isEqual(zeroed[b].get()) != (a == b)))
                        fail("isEqual of " + describe(*zeroed[a]) + "s of which values were made zero is " +
                             show(a != b) + ", where their elements are " + (a == b ? "equal" : "different"));
                }
        if (type == ArrayType::SPARSE_LOGICAL) return;
        for (std::size_t mask = 0; mask < masks; ++mask)
            for (std::size_t k = 0; k < matrix.places.size(); ++k) {
                if ((mask >> k & 1) != 0) continue;
                const auto copy = adopt(zeroed[mask]->sharedCopy(), "sharedCopy");
                writeTo(*copy, k, 100);
                expect(!copy->isEqual(without[mask].get()) && !without[mask]->isEqual(copy.get()),
                       "isEqual of " + describe(*copy) +
                           "s of which values were made zero and one differs is true");
            }
    });
}

/// Complex values keep both parts; values of either sign and size.
void complexValues(Backend& backend) {
    const std::vector<std::complex<double>> values{{1, 2}, {0, 3}, {-1e300, 5e-300}, {4, -0.5}};
    const auto made = adopt(backend.factory().createSparseComplexDoubleImpl(
                                {3, 4}, 4, bufferOf(values), bufferOf<std::size_t>({0, 1, 2, 0}),
                                bufferOf<std::size_t>({0, 1, 2, 3})),
                            "createSparseComplexDoubleImpl");
    const auto other =
        adopt(backend.factory().createSparseComplexDoubleImpl(
                  {3, 4}, 4, bufferOf<std::complex<double>>({{1, 2}, {0, 3}, {-1e300, 6e-300}, {4, -0.5}}),
                  bufferOf<std::size_t>({0, 1, 2, 0}), bufferOf<std::size_t>({0, 1, 2, 3})),
              "createSparseComplexDoubleImpl");
    Contents wanted;
    const Places places{{0, 0}, {1, 1}, {2, 2}, {0, 3}};
    for (std::size_t k = 0; k < 4; ++k)
        wanted.push_back(show(places[k]) + "=" + show(values[k]));
    expectContents("the non-zeros of a sparse-complex-double array", *made, wanted);
    expect(!made->isEqual(other.get()),
           "isEqual of sparse-complex-double arrays that differ in an imaginary part is true");
}

} // namespace

void addSparseChecks(Checks& checks) {
    Family sparse(checks, "sparse");
    const std::string rowsAndColumns = "getRows and getCols are the extents (slots 26, 27)";
    const std::string from =
        "sparse matrices from triplets in any order (slots 3 to 5 of the factory; slots 28, 29)";
    sparse.add("triplets in any order", from, {}, triplets);
    sparse.add("compressed columns", "sparse matrices in compressed columns (slots 6 to 8 of the factory)",
               {"compressed-columns"}, compressed);
    sparse.add("rows and columns", rowsAndColumns, {}, extents);
    sparse.add("column starts", "getJc is the column starts, one more than columns (slot 24)", {},
               columnStarts);
    sparse.add("row indices", "getIr is the row indices of the non-zeros (slot 25)", {}, rowIndices);
    sparse.add("indices are lent together", "valid until the array is changed (slots 24, 25)", {},
               lendsIndices);
    sparse.add("rows of every size", from, {}, rowsOfEverySize);
    sparse.add(
        "whatever triplets are given",
        "sparse matrices from `count` triplets in any order: of each place one element, within the extents (factory, 2 "
        "to 7; slots 24 to 29)",
        {}, anyTriplets);
    sparse.add("zeros that are stored are zeros", "isEqual is element-wise equality (slot 36)", {},
               storedZeros);
    sparse.add("places tell arrays apart", "isEqual is element-wise equality (slot 36)", {}, placesTellApart);
    sparse.add("complex values", from, {"sparse-complex-double"}, complexValues);
    sparse.add("nothing is read for no non-zeros",
               "sparse matrices from `count` triplets, which may be none (slots 3 to 8 of the factory)", {},
               needsNoBuffers);
    sparse.add(
        "buffers are freed once",
        "buffers passed by value are the back-end's, also when it throws (slots 3 to 8 of the factory)", {},
        buffersFreed);
}

} // namespace vexa::check
