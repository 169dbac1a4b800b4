// Records: elements of struct arrays, and handles to them.
#pragma once

#include <foundation/vexadata/Array.hpp>
#include <foundation/vexadata/ForwardIterator.hpp>
#include <foundation/vexadata/Identifiers.hpp>
#include <foundation/vexadata/TypedIterator.hpp>

#include <cstddef>
#include <memory>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

namespace foundation::vexadata {

namespace detail {

/// See `setElement` for records.
VEXADATA_API void storeRecord(const ElementPosition& position, std::vector<Array> values);
/// The value of a field of the record at `index` of an array of a recognised class.
VEXADATA_API const Array fieldOf(const ArrayImpl& records, std::size_t index, const std::string& fieldName);
/// A chain of its own to a field of a record.
/// @throws CanOnlyUseOneStringIndexException when the position is a field already; index errors
VEXADATA_API std::shared_ptr<ReferenceImpl> chainToField(ArrayImpl* records, std::size_t index,
                                                         const std::string& fieldName);
VEXADATA_API std::shared_ptr<ReferenceImpl> chainToField(ElementPosition record,
                                                         const std::string& fieldName);
/// The field values of a record, in their order, each shared with it.
VEXADATA_API std::vector<Array> valuesOf(const ElementPosition& position);

} // namespace detail

/// A record: an ordered list of named fields, each holding an array. A view that copies no value; valid as
/// long as the struct array that it came from lives, is not reassigned and is not made private by a later
/// write. Assigning makes the view one of another record and writes nothing; the handles to elements that
/// derive from it write.
///
/// Every operation throws index errors, and passes errors of the back-end on.
class VEXADATA_API StructElement {
public:
    /// Walks the values of the fields.
    using const_iterator = TypedIterator<const Array>;

    /// For the handles that derive from it.
    VEXADATA_INLINE explicit StructElement(detail::ElementPosition position) noexcept
        : position_(std::move(position)) {}
    explicit StructElement(const std::shared_ptr<detail::ReferenceImpl>& chain) noexcept : position_(chain) {}
    StructElement(const StructElement&) = default;
    VEXADATA_INLINE StructElement(StructElement&& other) noexcept : position_(std::move(other.position_)) {}
    StructElement& operator=(const StructElement&) = default;
    VEXADATA_INLINE ~StructElement() {}

    /// The names of the fields in their order.
    Range<ForwardIterator, const VexaFieldIdentifier> getFieldNames() const;
    /// As many as there are names.
    std::size_t getNumberOfFields() const;

    /// The value of a field, shared with the record until one of them is written. Constant, so that indexing
    /// into it on the spot reads without making a copy first; assign it to an `Array` to keep or to change
    /// it.
    VEXADATA_INLINE const Array operator[](const std::string& fieldName) const {
        return position_.isInPlace()
                   ? detail::fieldOf(*position_.array(), position_.indexInPlace<StructElement>(), fieldName)
                   : askedField(position_, fieldName);
    }
    void operator[](std::size_t) const = delete; // a zero would be taken for a null text

    /// The field values, in the order of the names.
    const_iterator begin() const { return cbegin(); }
    const_iterator end() const { return cend(); }
    const_iterator cbegin() const;
    const_iterator cend() const;

protected:
    friend struct detail::Access;
    /// Where the record lies.
    detail::ElementPosition position_;

private:
    static const Array askedField(detail::ElementPosition position, const std::string& fieldName);
};

namespace detail {

/// An array of one record with the fields of another, their values shared.
/// @throws index errors; errors of the back-end
VEXADATA_API std::shared_ptr<ArrayImpl> copiedRecord(const StructElement& record);

/// What a `StructValue` keeps, made before the view of it.
struct RecordOwner {
    std::shared_ptr<ArrayImpl> owner;
};

} // namespace detail

/// A record that is a value: the fields of the record that it was made from, values shared, whatever becomes
/// of that. Iterators over records give it to algorithms that set elements aside, so that `std::sort` sorts
/// records; in a `std::vector<StructValue>` they outlive their array. Assigned to an element of a struct array, it
/// stores the values there.
class StructValue : private detail::RecordOwner, public StructElement {
public:
    /// @throws index errors; errors of the registered back-end
    StructValue(const StructElement& record)
        : RecordOwner{detail::copiedRecord(record)},
          StructElement(detail::ElementPosition::firstOf<StructElement>(owner.get(), 0)) {}
};

/// A record that can be written. Reading as for StructElement.
class VEXADATA_API StructRefExt : public StructElement {
public:
    /// Walks the values of the fields for writing.
    using iterator = TypedIterator<Array>;
    using StructElement::StructElement;

    /// The field, to be written or looked into. Nothing happens to the struct array before that.
    /// @throws CanOnlyUseOneStringIndexException when this handle is a field already
    VEXADATA_INLINE Reference<Array> operator[](const std::string& fieldName) {
        return Reference<Array>(
            position_.isInPlace()
                ? detail::chainToField(position_.array(), position_.indexInPlace<StructElement>(), fieldName)
                : detail::chainToField(position_, fieldName));
    }
    using StructElement::operator[];

    /// The field values for writing; the struct array is made private first.
    iterator begin();
    iterator end();
    using StructElement::begin;
    using StructElement::end;
};

namespace detail {

/// Replacing the record behind the handle `Ref`.
template <class Ref>
class WritableRecord : public StructRefExt {
public:
    using StructRefExt::StructRefExt;
    WritableRecord(const WritableRecord&) = default;
    WritableRecord(WritableRecord&&) noexcept = default;
    ~WritableRecord() = default;

    /// Replaces all values, which take the fields in their order.
    /// @throws WrongVectorSizeForStructException when their number differs, all fields as they were; index
    /// errors
    Ref& operator=(std::vector<Array> values) {
        storeRecord(position_, std::move(values));
        return static_cast<Ref&>(*this);
    }
    /// Stores the other record's values, shared with it; never makes this handle refer elsewhere.
    WritableRecord& operator=(const WritableRecord& other) {
        storeRecord(position_, valuesOf(other.position_));
        return *this;
    }
    Ref& operator=(const StructElement& other) {
        storeRecord(position_, valuesOf(Access::position(other)));
        return static_cast<Ref&>(*this);
    }

    /// Exchanges the values. Found by argument alone: `std::swap` by its full name would lose one of them.
    friend void swap(Ref a, Ref b) {
        std::vector<Array> values = valuesOf(a.position_);
        a = static_cast<const StructElement&>(b);
        b = std::move(values);
    }
};

} // namespace detail

/// A read-only record; validity and indices as for other elements.
template <>
class ArrayElementTypedRef<StructElement, true>
    : public StructElement,
      public detail::Indexing<ArrayElementTypedRef<StructElement, true>>,
      private detail::NotAssignable {
public:
    using StructElement::StructElement;
    using detail::Indexing<ArrayElementTypedRef>::operator[];
    /// A field by its name, as `StructElement::operator[]`.
    const Array operator[](const std::string& fieldName) const {
        return StructElement::operator[](fieldName);
    }
};

/// A record of a struct array; validity and indices as for other elements.
template <>
class ArrayElementTypedRef<StructElement, false>
    : public detail::WritableRecord<ArrayElementTypedRef<StructElement, false>>,
      public detail::Indexing<ArrayElementTypedRef<StructElement, false>> {
public:
    using detail::WritableRecord<ArrayElementTypedRef<StructElement, false>>::WritableRecord;
    using detail::WritableRecord<ArrayElementTypedRef<StructElement, false>>::operator=;
    using detail::Indexing<ArrayElementTypedRef>::operator[];
    /// A field by its name, as of StructElement and StructRefExt.
    const Array operator[](const std::string& fieldName) const {
        return StructElement::operator[](fieldName);
    }
    Reference<Array> operator[](const std::string& fieldName) { return StructRefExt::operator[](fieldName); }
};

/// A record whose indices were checked when the reference was formed.
template <>
class Reference<StructElement> : public detail::WritableRecord<Reference<StructElement>> {
public:
    using detail::WritableRecord<Reference<StructElement>>::WritableRecord;
    using detail::WritableRecord<Reference<StructElement>>::operator=;
    /// @throws NotEnoughIndicesProvidedException, EArrayIndexOutOfRange
    Reference(const ArrayElementTypedRef<StructElement, false>& element)
        : WritableRecord(detail::completePosition(element)) {}
    /// @throws TypeMismatchException when the array is no struct array; index errors
    Reference(const ArrayElementRef<false>& element)
        : WritableRecord(detail::completePosition<StructElement>(element)) {}

    /// The chain of the element.
    std::shared_ptr<detail::ReferenceImpl> chain() const { return position_.chain(); }
};

} // namespace foundation::vexadata
