// Struct arrays.
#pragma once

#include "ArrayHolder.hpp"
#include "ColumnMajorArray.hpp"
#include "Comparison.hpp"
#include "FieldNames.hpp"

#include <foundation/vexadata/StructElement.hpp>
#include <vexa/data/impl/InPlaceStructImpl.hpp>
#include <vexa/data/impl/StructArrayImpl.hpp>

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

namespace vexa::client {

/// Records one after another in column-major order, the values of each in the order of the fields. Copies
/// share the values; a value that others share is copied before something inside it is written.
class StructArray final : public ColumnMajorArray<data::impl::InPlaceStructImpl>,
                          public ArrayHolder,
                          public Comparable {
    using Element = foundation::vexadata::StructElement;

public:
    /// Every field holds an empty array.
    /// @throws InvalidFieldNameException
    StructArray(Dimensions dimensions, std::vector<std::string> fieldNames);
    ~StructArray() override;

    ArrayImpl* sharedCopy() const override;
    ArrayType getType() const override;
    /// Null without a field name: a record is no array.
    data::detail::ReferenceImpl* createElementReference(std::size_t index, const std::string& fieldName,
                                                        bool forWrite) override;
    void assignElementArray(std::size_t index, const std::string& fieldName, ArrayImpl* array) override;
    /// Fields in another order make another struct, unless it is one of another back-end.
    bool isEqual(const ArrayImpl* other) const override;
    Element* getElementAddress(std::size_t index, const std::string& fieldName, bool forWrite) override;
    void setElementValue(std::size_t index, const std::string& fieldName, Element value) override;
    const Element* getTypedDataPtr() const override;

    data::detail::ForwardIteratorImpl* fieldNamesBegin() override;
    data::detail::ForwardIteratorImpl* fieldNamesEnd() override;
    std::size_t getNumFields() const override;
    data::detail::IteratorImpl* createFieldValuesIterator(std::size_t index, bool atEnd) override;
    /// @throws UnknownFieldException
    ArrayImpl* getField(std::size_t index, const std::string& fieldName) const override;
    ArrayImpl* const* getFieldPlace(std::size_t index, const std::string& fieldName) const override {
        return values_[placeOf(index, fieldName)].address();
    }
    void setFieldValues(std::size_t index, std::vector<foundation::vexadata::Array> values) override;

    std::size_t numberOfPlaces() const noexcept override;
    ArrayImpl& heldIn(std::size_t place) const noexcept override;
    /// Every handle and holder of the array counts once.
    bool isShared(std::size_t place) const noexcept override;
    bool equalsIn(Comparison& comparison, const ArrayImpl& other) const override;
    const FieldNames& names() const noexcept { return *names_; }

private:
    StructArray(const StructArray&);

    void replace(std::size_t place, Held array) override;
    bool equalByName(const StructArrayImpl& other) const;
    /// Where the value of a field lies. @throws UnknownFieldException
    std::size_t placeOf(std::size_t index, const std::string& fieldName) const {
        return index * names_->size() + names_->positionOf(fieldName);
    }

    std::shared_ptr<const FieldNames> names_; // shared by copies
    std::vector<Held> values_;
};

} // namespace vexa::client
