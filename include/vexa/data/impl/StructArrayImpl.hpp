// The interface of struct array back-ends, which continues TypedArrayImpl: slots 42 to 49.
#pragma once

#include <foundation/vexadata/Forward.hpp>
#include <vexa/data/impl/TypedArrayImpl.hpp>

#include <memory>
#include <string>
#include <vector>

namespace vexa::data::impl {

/// An array of records with the same ordered list of named fields, each holding an array.
class VEXADATA_API StructArrayImpl : public TypedArrayImpl<foundation::vexadata::StructElement> {
public:
    ~StructArrayImpl() override;

    /// Begin and end (slots 5 and 6): positions 0 and the number of elements.
    detail::IteratorImpl* beginIterator(void* unused, bool writable) override;
    detail::IteratorImpl* endIterator(void* unused, bool writable) override;

    /// Slot 42. A new iterator at the first field name (VexaIdentifierImpl objects), one reference for the
    /// caller.
    virtual detail::ForwardIteratorImpl* fieldNamesBegin() = 0;
    /// Slot 43. The same past the last field name.
    virtual detail::ForwardIteratorImpl* fieldNamesEnd() = 0;
    virtual std::size_t getNumFields() const = 0; ///< slot 44
    virtual void reservedOp44();                  ///< slot 45, not called by this library
    /// Slot 46. A new iterator over the field values of element `index` in field order, one reference for
    /// the caller; at the first field, or past the last.
    virtual detail::IteratorImpl* createFieldValuesIterator(std::size_t index, bool atEnd) = 0;
    virtual void reservedOp46(); ///< slot 47, not called by this library
    /// Slot 48. The array held by a field, one reference for the caller. An unknown name is the back-end's
    /// to report.
    virtual ArrayImpl* getField(std::size_t index, const std::string& fieldName) const = 0;
    /// Slot 49. Replaces all field values of an element, in field order.
    virtual void setFieldValues(std::size_t index, std::vector<foundation::vexadata::Array> values) = 0;

    /// The end iterator of an element's field values; released when the last owner goes.
    std::shared_ptr<detail::IteratorImpl> endFieldValues(std::size_t index);

protected:
    StructArrayImpl() noexcept = default;
    StructArrayImpl(const StructArrayImpl&) noexcept = default;
};

} // namespace vexa::data::impl
