// The interface of struct array back-ends, continuing the order of TypedArrayImpl: 41 to 48.
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

    /// Begin and end (orders 4 and 5): positions 0 and the number of elements.
    detail::IteratorImpl* beginIterator(void* unused, bool writable) override;
    detail::IteratorImpl* endIterator(void* unused, bool writable) override;

    /// Order 41. A new iterator at the first field name (VexaIdentifierImpl objects), one reference for the
    /// caller.
    virtual detail::ForwardIteratorImpl* fieldNamesBegin() = 0;
    /// Order 42. The same past the last field name.
    virtual detail::ForwardIteratorImpl* fieldNamesEnd() = 0;
    virtual std::size_t getNumFields() const = 0; ///< order 43
    virtual void reservedOp44();                  ///< order 44, not called by this library
    /// Order 45. A new iterator over the field values of element `index` in field order, one reference for
    /// the caller; at the first field, or past the last.
    virtual detail::IteratorImpl* createFieldValuesIterator(std::size_t index, bool atEnd) = 0;
    virtual void reservedOp46(); ///< order 46, not called by this library
    /// Order 47. The array held by a field, one reference for the caller. An unknown name is the back-end's
    /// to report.
    virtual ArrayImpl* getField(std::size_t index, const std::string& fieldName) const = 0;
    /// Order 48. Replaces all field values of an element, in field order.
    virtual void setFieldValues(std::size_t index, std::vector<foundation::vexadata::Array> values) = 0;

    /// The end iterator of an element's field values; released when the last owner goes.
    std::shared_ptr<detail::IteratorImpl> endFieldValues(std::size_t index);

protected:
    StructArrayImpl() noexcept = default;
    StructArrayImpl(const StructArrayImpl&) noexcept = default;
};

} // namespace vexa::data::impl
