// Comparing dense storage.
#pragma once

#include <vexa/data/impl/TypedArrayImpl.hpp>

#include <algorithm>
#include <complex>
#include <cstddef>
#include <cstring>
#include <type_traits>
#include <vector>

namespace vexa::client {

using data::MemoryLayout;

template <class T>
bool equalRuns(const T* a, const T* b, std::size_t count) {
    if constexpr (std::is_floating_point_v<T>) {
        // Blocks of fixed length without an early exit are what compilers turn into vector code.
        constexpr std::size_t block = 256;
        std::size_t k = 0;
        for (; k + block <= count; k += block) {
            bool differ = false;
            for (std::size_t i = 0; i < block; ++i) {
                differ |= a[k + i] != b[k + i];
            }
            if (differ) {
                return false;
            }
        }
        for (; k < count && a[k] == b[k]; ++k) {}
        return k == count;
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
    explicit RowMajorPositions(const std::vector<std::size_t>& dimensions)
        : dimensions_(dimensions), indices_(dimensions.size(), 0), strides_(dimensions.size(), 1) {
        for (std::size_t k = dimensions.size(); k-- > 1;) {
            strides_[k - 1] = strides_[k] * dimensions[k];
        }
    }

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
bool equalElements(const data::impl::TypedArrayImpl<T>& a, const data::impl::TypedArrayImpl<T>& b) {
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

} // namespace vexa::client
