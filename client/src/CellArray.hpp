// Cell arrays: arrays of arrays.
#pragma once

#include "ArrayHolder.hpp"
#include "ColumnMajorArray.hpp"
#include "Comparison.hpp"

#include <foundation/vexadata/Array.hpp>
#include <vexa/data/impl/InPlaceArrayImpl.hpp>
#include <vexa/data/impl/TypedArrayImpl.hpp>

#include <cstddef>
#include <string>
#include <vector>

namespace vexa::client {

using foundation::vexadata::Array;

/// An array of arrays, in column-major order. Copies share their elements; an element that others share is
/// copied before something inside it is written.
class CellArray final
    : public ColumnMajorArray<data::impl::InPlaceArrayImpl<data::impl::TypedArrayImpl<Array>, Array>>,
      public ArrayHolder,
      public Comparable {
public:
    /// Every element is an empty array.
    explicit CellArray(std::vector<std::size_t> dimensions);
    ~CellArray() override;

    data::impl::ArrayImpl* sharedCopy() const override;
    data::detail::IteratorImpl* beginIterator(void* unused, bool writable) override;
    data::detail::IteratorImpl* endIterator(void* unused, bool writable) override;
    foundation::vexadata::ArrayType getType() const override;
    data::detail::ReferenceImpl* createElementReference(std::size_t index, const std::string& fieldName,
                                                        bool forWrite) override;
    void assignElementArray(std::size_t index, const std::string& fieldName,
                            data::impl::ArrayImpl* array) override;
    bool isEqual(const data::impl::ArrayImpl* other) const override;
    Array* getElementAddress(std::size_t index, const std::string& fieldName, bool forWrite) override;
    void setElementValue(std::size_t index, const std::string& fieldName, Array value) override;
    const Array* getTypedDataPtr() const override;

    std::size_t numberOfPlaces() const noexcept override;
    data::impl::ArrayImpl& heldIn(std::size_t place) const noexcept override;
    bool isShared(std::size_t place) const noexcept override;
    bool equalsIn(Comparison& comparison, const data::impl::ArrayImpl& other) const override;

private:
    CellArray(const CellArray&);

    void replace(std::size_t place, Held array) override;

    std::vector<Array> elements_;
};

} // namespace vexa::client
