// Sparse matrices: triplets become compressed columns by a radix sort, in time proportional to their number.
#include "CompressedColumns.hpp"

#include <foundation/vexadata/Exception.hpp>
#include <foundation/vexadata/Traits.hpp>
#include <foundation/vexadata/detail/TypeInformation.hpp>
#include <vexa/client/Exception.hpp>
#include <vexa/data/detail/ContiguousIteratorImpl.hpp>
#include <vexa/data/detail/ElementMemory.hpp>
#include <vexa/data/detail/Equality.hpp>

#include <algorithm>
#include <bit>
#include <cstring>
#include <limits>
#include <memory>
#include <new>
#include <numeric>
#include <type_traits>

namespace vexa::client {

namespace fv = foundation::vexadata;
using Iterator = data::detail::IteratorImpl;

namespace {

template <class E>
using Run = data::impl::Buffer<E[]>;

template <class E>
Run<E> allocate(std::size_t count) {
    return {static_cast<E*>(data::detail::allocateElements(count, sizeof(E))), &data::detail::freeElements};
}

template <class E>
Run<E> allocateZeroed(std::size_t count) {
    return {static_cast<E*>(data::detail::allocateZeros(count, sizeof(E))), &data::detail::freeElements};
}

template <class E>
Run<E> copyOf(const Run<E>& source, std::size_t count) {
    Run<E> copy = allocate<E>(count);
    if (count != 0) {
        std::memcpy(static_cast<void*>(copy.get()), source.get(), count * sizeof(E));
    }
    return copy;
}

/// Column starts of a matrix without values: one more than columns, all zero.
Run<std::size_t> zeroStarts(std::size_t columns) {
    if (columns == std::numeric_limits<std::size_t>::max()) {
        throw std::bad_alloc();
    }
    return allocateZeroed<std::size_t>(columns + 1);
}

void requireTwo(const std::vector<std::size_t>& dimensions) {
    if (dimensions.size() != 2) {
        fv::detail::raise<fv::EInvalidDimensionsInSparseArray>();
    }
}

template <class T>
void add(T& sum, T value) {
    if constexpr (std::is_same_v<T, bool>) {
        sum = sum || value;
    } else {
        sum += value;
    }
}

/// A triplet while it is sorted, with the narrowest type of indices that the matrix allows.
template <class T, class Index>
struct Entry {
    Index row;
    Index column;
    T value;
};

/// How the rows of a matrix are cut into digits for a radix sort: into as few as possible, of 8 to 16 bits,
/// with not many more values than there are triplets to count.
struct RowDigits {
    RowDigits(std::size_t rows, std::size_t count) {
        const auto width = static_cast<unsigned>(std::bit_width(rows - 1));
        const auto most = std::clamp(static_cast<unsigned>(std::bit_width(count)), 8U, 16U);
        number = std::max((width + most - 1) / most, 1U);
        bits = (width + number - 1) / number;
    }
    std::size_t values() const { return std::size_t{1} << bits; }

    unsigned number;
    unsigned bits;
};

/// Turns counts into the positions at which the buckets begin.
template <class Index>
void countsToPositions(std::vector<Index>& counts) {
    std::exclusive_scan(counts.begin(), counts.end(), counts.begin(), Index{0});
}

/// Sorts `count` triplets by column and row, equal positions in their old order: a radix sort that goes
/// through the digits of the row, then through the columns, whose sizes `starts` gives. Rows and values are
/// written back to their buffers.
template <class Index, class T>
void sortTriplets(const std::vector<std::size_t>& dimensions, std::size_t count, std::size_t* starts,
                  const std::size_t* columns, std::size_t* rows, T* values) {
    const RowDigits digits(dimensions[0], count);
    const std::size_t mask = digits.values() - 1;
    auto entries = allocate<Entry<T, Index>>(count);

    std::vector<Index> position(digits.values());
    for (std::size_t k = 0; k < count; ++k) {
        ++position[rows[k] & mask];
    }
    countsToPositions(position);
    for (std::size_t k = 0; k < count; ++k) {
        entries[position[rows[k] & mask]++] = {static_cast<Index>(rows[k]), static_cast<Index>(columns[k]),
                                               values[k]};
    }

    if (digits.number > 1) {
        auto other = allocate<Entry<T, Index>>(count);
        for (unsigned digit = 1; digit < digits.number; ++digit) {
            const auto bucket = [&](std::size_t k) { return (entries[k].row >> digit * digits.bits) & mask; };
            std::fill(position.begin(), position.end(), Index{0});
            for (std::size_t k = 0; k < count; ++k) {
                ++position[bucket(k)];
            }
            countsToPositions(position);
            for (std::size_t k = 0; k < count; ++k) {
                other[position[bucket(k)]++] = entries[k];
            }
            entries.swap(other);
        }
    }

    // While a column fills, the start of the next one says how far it is; in the end that is the start again.
    std::size_t* next = starts + 1;
    std::copy_backward(starts, starts + dimensions[1], starts + dimensions[1] + 1);
    for (std::size_t k = 0; k < count; ++k) {
        const Entry<T, Index>& entry = entries[k];
        const std::size_t place = next[entry.column]++;
        rows[place] = entry.row;
        values[place] = entry.value;
    }
}

template <class T>
void sortColumns(const std::vector<std::size_t>& dimensions, std::size_t count, std::size_t* starts,
                 const std::size_t* columns, std::size_t* rows, T* values) {
    const std::size_t largest = std::max({dimensions[0], dimensions[1], count});
    if (largest <= std::numeric_limits<std::uint32_t>::max()) {
        sortTriplets<std::uint32_t>(dimensions, count, starts, columns, rows, values);
    } else {
        sortTriplets<std::size_t>(dimensions, count, starts, columns, rows, values);
    }
}

bool inOrder(const std::size_t* columns, const std::size_t* rows, std::size_t count) {
    for (std::size_t k = 1; k < count; ++k) {
        if (columns[k] < columns[k - 1] || (columns[k] == columns[k - 1] && rows[k] < rows[k - 1])) {
            return false;
        }
    }
    return true;
}

/// False means that there may be a zero or a position that occurs twice; neighbours in two columns can have
/// equal rows.
template <class T>
bool surelyTidy(const std::size_t* rows, const T* values, std::size_t count) {
    bool doubtful = count != 0 && values[0] == T();
    for (std::size_t k = 1; k < count; ++k) {
        doubtful |= rows[k] == rows[k - 1];
        doubtful |= values[k] == T();
    }
    return !doubtful;
}

/// Merges equal positions and drops zeros, in place, in columns with rows that never fall.
template <class T>
void tidy(std::size_t columns, std::size_t* starts, std::size_t* rows, T* values) {
    std::size_t kept = 0;
    std::size_t k = 0;
    for (std::size_t column = 0; column < columns; ++column) {
        const std::size_t end = starts[column + 1];
        starts[column] = kept;
        while (k < end) {
            const std::size_t row = rows[k];
            T sum = values[k];
            for (++k; k < end && rows[k] == row; ++k) {
                add(sum, values[k]);
            }
            rows[kept] = row;
            values[kept] = sum;
            kept += sum == T() ? 0U : 1U;
        }
    }
    starts[columns] = kept;
}

} // namespace

template <class T>
CompressedColumns<T>::CompressedColumns(Dimensions dimensions, Indices starts, Indices rows,
                                        Buffer<T> values) noexcept
    : ColumnMajorArray<data::impl::ArrayImpl>(std::move(dimensions)),
      starts_(std::move(starts)),
      rows_(std::move(rows)),
      values_(std::move(values)) {}

template <class T>
CompressedColumns<T>::~CompressedColumns() = default;

template <class T>
CompressedColumns<T>* CompressedColumns<T>::zeros(Dimensions dimensions) {
    return fromTriplets(std::move(dimensions), 0, {nullptr, nullptr}, {nullptr, nullptr}, {nullptr, nullptr});
}

template <class T>
CompressedColumns<T>* CompressedColumns<T>::keep(Dimensions dimensions, Indices starts, Indices rows,
                                                 Buffer<T> values) {
    const std::size_t columns = dimensions[1];
    const std::size_t count = starts[columns];
    if (!surelyTidy(rows.get(), values.get(), count)) {
        tidy(columns, starts.get(), rows.get(), values.get());
        const std::size_t kept = starts[columns];
        if (kept < count - kept) { // most of the buffers would stay unused
            rows = copyOf(rows, kept);
            values = copyOf(values, kept);
        }
    }
    return new CompressedColumns(std::move(dimensions), std::move(starts), std::move(rows),
                                 std::move(values));
}

template <class T>
CompressedColumns<T>* CompressedColumns<T>::fromTriplets(Dimensions dimensions, std::size_t count,
                                                         Buffer<T> values, Indices rows, Indices columns) {
    requireTwo(dimensions);
    if (count != 0 && (values == nullptr || rows == nullptr || columns == nullptr)) {
        throw InvalidBufferException();
    }
    Indices starts = zeroStarts(dimensions[1]);
    for (std::size_t k = 0; k < count; ++k) {
        if (rows[k] >= dimensions[0] || columns[k] >= dimensions[1]) {
            fv::detail::raise<fv::EArrayIndexOutOfRange>();
        }
        ++starts[columns[k] + 1];
    }
    if (count != 0) { // nothing to write: pages from `calloc` stay untouched and take no memory
        std::partial_sum(starts.get(), starts.get() + dimensions[1] + 1, starts.get());
        if (!inOrder(columns.get(), rows.get(), count)) {
            sortColumns(dimensions, count, starts.get(), columns.get(), rows.get(), values.get());
        }
    }
    return keep(std::move(dimensions), std::move(starts), std::move(rows), std::move(values));
}

template <class T>
CompressedColumns<T>* CompressedColumns<T>::fromCompressed(Dimensions dimensions, std::size_t count,
                                                           Buffer<T> values, Indices rows, Indices starts) {
    requireTwo(dimensions);
    if (count == 0 && starts == nullptr) {
        return zeros(std::move(dimensions));
    }
    if (starts == nullptr || (count != 0 && (values == nullptr || rows == nullptr))) {
        throw InvalidBufferException();
    }
    const std::size_t columns = dimensions[1];
    if (starts[0] != 0 || starts[columns] != count ||
        !std::is_sorted(starts.get(), starts.get() + columns + 1)) {
        throw InvalidColumnStartsException();
    }
    bool ascending = true;
    for (std::size_t column = 0; column < columns; ++column) {
        std::size_t last = 0;
        for (std::size_t k = starts[column]; k < starts[column + 1]; ++k) {
            if (rows[k] >= dimensions[0]) {
                fv::detail::raise<fv::EArrayIndexOutOfRange>();
            }
            ascending &= rows[k] >= last;
            last = rows[k];
        }
    }
    if (!ascending) {
        const Indices columnOf = allocate<std::size_t>(count);
        for (std::size_t column = 0; column < columns; ++column) {
            std::fill(columnOf.get() + starts[column], columnOf.get() + starts[column + 1], column);
        }
        sortColumns(dimensions, count, starts.get(), columnOf.get(), rows.get(), values.get());
    }
    return keep(std::move(dimensions), std::move(starts), std::move(rows), std::move(values));
}

template <class T>
data::impl::ArrayImpl* CompressedColumns<T>::sharedCopy() const {
    const std::size_t count = getNumberOfNonZeroElements();
    return new CompressedColumns(this->getDimensions(), copyOf(starts_, getCols() + 1), copyOf(rows_, count),
                                 copyOf(values_, count));
}

template <class T>
Iterator* CompressedColumns<T>::beginIterator(void*, bool) {
    return new data::detail::ContiguousIteratorImpl<T>(values_.get());
}
template <class T>
Iterator* CompressedColumns<T>::endIterator(void*, bool) {
    return new data::detail::ContiguousIteratorImpl<T>(values_.get() + getNumberOfNonZeroElements());
}
template <class T>
fv::ArrayType CompressedColumns<T>::getType() const {
    return fv::detail::sparseTypeOf<T>;
}
template <class T>
const std::size_t* CompressedColumns<T>::getJc() const {
    return starts_.get();
}
template <class T>
const std::size_t* CompressedColumns<T>::getIr() const {
    return rows_.get();
}
template <class T>
std::size_t CompressedColumns<T>::getRows() const {
    return this->getDimensions()[0];
}
template <class T>
std::size_t CompressedColumns<T>::getCols() const {
    return this->getDimensions()[1];
}
template <class T>
std::size_t CompressedColumns<T>::getNumberOfNonZeroElements() const {
    return starts_[getCols()];
}

template <class T>
std::pair<std::size_t, std::size_t> CompressedColumns<T>::getIndex(std::size_t k) const {
    if (k >= getNumberOfNonZeroElements()) {
        fv::detail::raise<fv::EArrayIndexOutOfRange>();
    }
    const std::size_t last = lastColumn_.load(std::memory_order_relaxed);
    const bool sameColumn = starts_[last] <= k && k < starts_[last + 1];
    return {rows_[k], sameColumn ? last : columnOf(k)};
}

/// The last column that starts at or before `k`. Searches upwards from the last answer in steps that double,
/// so that a walk costs next to nothing, over empty columns too.
template <class T>
std::size_t CompressedColumns<T>::columnOf(std::size_t k) const noexcept {
    const std::size_t* starts = starts_.get();
    const std::size_t last = lastColumn_.load(std::memory_order_relaxed);
    std::size_t low = last;
    std::size_t high = last + 1;
    if (k < starts[last]) {
        low = 0;
        high = last;
    }
    for (std::size_t step = 1; starts[high] <= k; step *= 2) {
        low = high;
        high = std::min(low + step, getCols());
    }
    const std::size_t* after = std::upper_bound(starts + low + 1, starts + high, k);
    const auto column = static_cast<std::size_t>(after - starts) - 1;
    if (column != last) {
        lastColumn_.store(column, std::memory_order_relaxed);
    }
    return column;
}

template <class T>
const T* CompressedColumns<T>::valuesOf(const ArrayImpl& array) {
    if (const auto* own = fv::detail::dynamicCast<const CompressedColumns>(&array)) {
        return own->values_.get();
    }
    // A matrix of another back-end: its iterator gives the values. A read-only one changes nothing.
    const std::unique_ptr<Iterator> begin(const_cast<ArrayImpl&>(array).beginIterator(nullptr, false));
    return static_cast<const T*>(begin->getElementAddress());
}

template <class T>
bool CompressedColumns<T>::isEqual(const ArrayImpl* other) const {
    const std::size_t* starts = getJc();
    const std::size_t* otherStarts = other->getJc();
    const std::size_t* rows = getIr();
    const std::size_t* otherRows = other->getIr();
    const T* values = values_.get();
    const T* otherValues = valuesOf(*other);
    const std::size_t count = getNumberOfNonZeroElements();
    if (data::detail::equalRuns(starts, otherStarts, getCols() + 1) &&
        data::detail::equalRuns(rows, otherRows, count)) {
        return data::detail::equalRuns(values, otherValues, count);
    }
    for (std::size_t column = 0; column < getCols(); ++column) {
        // A stored zero counts as a value that is not stored.
        const auto skipZeros = [](const T* from, std::size_t& k, std::size_t end) {
            while (k < end && from[k] == T()) {
                ++k;
            }
            return k < end;
        };
        std::size_t a = starts[column];
        std::size_t b = otherStarts[column];
        for (;; ++a, ++b) {
            const bool more = skipZeros(values, a, starts[column + 1]);
            if (more != skipZeros(otherValues, b, otherStarts[column + 1])) {
                return false;
            }
            if (!more) {
                break;
            }
            if (rows[a] != otherRows[b] || !(values[a] == otherValues[b])) {
                return false;
            }
        }
    }
    return true;
}

template class CompressedColumns<bool>;
template class CompressedColumns<double>;
template class CompressedColumns<std::complex<double>>;

} // namespace vexa::client
