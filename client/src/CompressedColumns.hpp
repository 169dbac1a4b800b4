// Sparse matrices.
#pragma once

#include "ColumnMajorArray.hpp"

#include <foundation/vexadata/ArrayType.hpp>
#include <vexa/data/impl/ArrayFactoryImpl.hpp>
#include <vexa/data/impl/ArrayImpl.hpp>

#include <atomic>
#include <complex>
#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace vexa::client {

/// A matrix in compressed columns: the non-zeros of a column follow each other with ascending rows, and
/// `starts` says where each column begins. Values can become zero later, through a writable iterator; such a
/// zero stays stored.
///
/// Buffers that are handed over belong to the call: it sorts them in place and the matrix keeps them, or else
/// they are freed, also when it throws.
template <class T>
class CompressedColumns final : public ColumnMajorArray<data::impl::ArrayImpl> {
public:
    template <class E>
    using Buffer = data::impl::Buffer<E[]>;
    using Indices = Buffer<std::size_t>;

    /// No non-zeros.
    /// @throws EInvalidDimensionsInSparseArray unless there are two dimensions
    static CompressedColumns* zeros(Dimensions dimensions);

    /// From `count` triplets in any order. Values of one position are added in the order given (logical ones
    /// are or-ed); zeros are dropped, also when they are sums. Time and memory grow with non-zeros and
    /// columns, never with rows.
    /// @throws EInvalidDimensionsInSparseArray unless there are two dimensions
    /// @throws InvalidBufferException when there are triplets and a buffer is null
    /// @throws EArrayIndexOutOfRange for a row or column that the matrix does not have
    static CompressedColumns* fromTriplets(Dimensions dimensions, std::size_t count, Buffer<T> values,
                                           Indices rows, Indices columns);

    /// From `count` values in columns that begin at `starts`, one entry more than columns (null for a matrix
    /// without values). Rows need not ascend, and positions that occur twice and zeros are treated as above.
    /// @throws InvalidColumnStartsException when the starts do not rise from 0 to `count`
    /// @throws what `fromTriplets` throws
    static CompressedColumns* fromCompressed(Dimensions dimensions, std::size_t count, Buffer<T> values,
                                             Indices rows, Indices starts);

    ~CompressedColumns() override;

    ArrayImpl* sharedCopy() const override;
    data::detail::IteratorImpl* beginIterator(void* unused, bool writable) override;
    data::detail::IteratorImpl* endIterator(void* unused, bool writable) override;
    foundation::vexadata::ArrayType getType() const override;
    const std::size_t* getJc() const override;
    const std::size_t* getIr() const override;
    std::size_t getRows() const override;
    std::size_t getCols() const override;
    std::size_t getNumberOfNonZeroElements() const override;
    /// @throws EArrayIndexOutOfRange when there is no k-th non-zero
    std::pair<std::size_t, std::size_t> getIndex(std::size_t k) const override;
    bool isEqual(const ArrayImpl* other) const override;

private:
    CompressedColumns(Dimensions dimensions, Indices starts, Indices rows, Buffer<T> values) noexcept;

    /// Merges and drops what has to be in columns with rows that never fall, then keeps them.
    static CompressedColumns* keep(Dimensions dimensions, Indices starts, Indices rows, Buffer<T> values);
    static const T* valuesOf(const ArrayImpl& array);
    std::size_t columnOf(std::size_t k) const noexcept;

    Indices starts_; // columns + 1, the last one is the number of non-zeros
    Indices rows_;
    Buffer<T> values_;
    mutable std::atomic<std::size_t> lastColumn_{0}; // where the last search ended: walks search next to it
};

extern template class CompressedColumns<bool>;
extern template class CompressedColumns<double>;
extern template class CompressedColumns<std::complex<double>>;

} // namespace vexa::client
