// Base of all arrays of this back-end but the dense ones, whose class is the library's.
#pragma once

#include "Dimensions.hpp"

#include <vexa/data/detail/Identity.hpp>
#include <vexa/data/impl/ArrayImpl.hpp>

#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>

namespace vexa::client {

using data::MemoryLayout;
using data::impl::ArrayImpl;
using foundation::vexadata::ArrayType;

/// Dimensions, an identity, and storage in column-major order that the object never shares. `Interface` is
/// the interface of the kind of array.
template <class Interface>
class ColumnMajorArray : public Interface {
public:
    MemoryLayout getMemoryLayout() const override { return MemoryLayout::COLUMN_MAJOR; }
    const Dimensions& getDimensions() const override { return dimensions_; }
    std::size_t getNumberOfElements() const override { return elementCount(dimensions_); }
    bool isEmpty() const override { return getNumberOfElements() == 0; }
    std::uint64_t getArrayID() const override { return identity_.get(); }
    void unshare() override {}
    /// Elements that hold no arrays.
    data::detail::ReferenceImpl* createElementReference(std::size_t, const std::string&, bool) override {
        return nullptr;
    }

protected:
    explicit ColumnMajorArray(Dimensions dimensions) : dimensions_(std::move(dimensions)) {}
    ColumnMajorArray(const ColumnMajorArray&) = default;

private:
    Dimensions dimensions_;
    data::detail::Identity identity_;
};

} // namespace vexa::client
