// Comparing dense storage. Offered to back-ends for `ArrayImpl::isEqual`.
#pragma once

#include <vexa/data/impl/TypedArrayImpl.hpp>

#include <algorithm>
#include <complex>
#include <cstddef>
#include <cstring>
#include <type_traits>
#include <vector>

namespace vexa::data::detail {

/// Element-wise equality of floating-point runs: NaN differs from itself, zeros of either sign are equal.
/// Sixteen bytes at a time in blocks without an early exit; left to themselves, compilers do this one element
/// at a time.
template <class T>
bool equalFloats(const T* a, const T* b, std::size_t count) {
    using Lanes [[gnu::vector_size(16), gnu::aligned(alignof(T)), gnu::may_alias]] = T;
    constexpr std::size_t lanes = sizeof(Lanes) / sizeof(T);
    constexpr std::size_t vectors = 8;
    std::size_t k = 0;
    for (; k + vectors * lanes <= count; k += vectors * lanes) {
        const auto* left = reinterpret_cast<const Lanes*>(a + k);
        const auto* right = reinterpret_cast<const Lanes*>(b + k);
        auto differ = left[0] != right[0];
        for (std::size_t v = 1; v < vectors; ++v) {
            differ |= left[v] != right[v];
        }
        bool any = false;
        for (std::size_t lane = 0; lane < lanes; ++lane) {
            any |= differ[lane] != 0;
        }
        if (any) {
            return false;
        }
    }
    return std::equal(a + k, a + count, b + k);
}

/// Whether two runs of elements are equal, each to its counterpart, as `==` of the elements says.
template <class T>
bool equalRuns(const T* a, const T* b, std::size_t count) {
    if constexpr (std::is_floating_point_v<T>) {
        return equalFloats(a, b, count);
    } else if constexpr (std::is_integral_v<T>) {
        return count == 0 || std::memcmp(a, b, count * sizeof(T)) == 0;
    } else {
        return std::equal(a, a + count, b);
    }
}
template <class T>
bool equalRuns(const std::complex<T>* a, const std::complex<T>* b, std::size_t count) {
    return equalRuns(reinterpret_cast<const T*>(a), reinterpret_cast<const T*>(b), 2 * count);
}

/// For each position in column-major order, the position of the same element in row-major order.
class RowMajorPositions {
public:
    /// At the first element.
    explicit RowMajorPositions(const std::vector<std::size_t>& dimensions)
        : dimensions_(dimensions), indices_(dimensions.size(), 0), strides_(dimensions.size(), 1) {
        for (std::size_t k = dimensions.size(); k-- > 1;) {
            strides_[k - 1] = strides_[k] * dimensions[k];
        }
    }

    /// The position, and going on to the next one.
    std::size_t current() const noexcept { return position_; }
    void next() noexcept {
        for (std::size_t k = 0; k < indices_.size(); ++k) {
            position_ += strides_[k];
            if (++indices_[k] < dimensions_[k]) {
                return;
            }
            position_ -= strides_[k] * dimensions_[k];
            indices_[k] = 0;
        }
    }

private:
    const std::vector<std::size_t>& dimensions_;
    std::vector<std::size_t> indices_;
    std::vector<std::size_t> strides_;
    std::size_t position_ = 0;
};

/// Element-wise equality of arrays with equal dimensions, whatever the layout of each.
template <class T>
bool equalElements(const impl::TypedArrayImpl<T>& a, const impl::TypedArrayImpl<T>& b) {
    const T* left = a.getTypedDataPtr();
    const T* right = b.getTypedDataPtr();
    const std::size_t count = a.getNumberOfElements();
    if (a.getMemoryLayout() == b.getMemoryLayout()) {
        return equalRuns(left, right, count);
    }
    const bool leftIsColumnMajor = a.getMemoryLayout() == MemoryLayout::COLUMN_MAJOR;
    const T* columnMajor = leftIsColumnMajor ? left : right;
    const T* rowMajor = leftIsColumnMajor ? right : left;
    RowMajorPositions position(a.getDimensions());
    for (std::size_t k = 0; k < count; ++k, position.next()) {
        if (!(columnMajor[k] == rowMajor[position.current()])) {
            return false;
        }
    }
    return true;
}

} // namespace vexa::data::detail
