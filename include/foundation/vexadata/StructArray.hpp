// Struct arrays.
#pragma once

#include <foundation/vexadata/ArrayReference.hpp>
#include <foundation/vexadata/TypedArray.hpp>

#include <cstddef>
#include <memory>
#include <utility>

namespace foundation::vexadata {

/// An array of records with the same ordered list of named fields.
class VEXADATA_API StructArray : public TypedArray<StructElement> {
public:
    using TypedArray<StructElement>::TypedArray;
    using TypedArray<StructElement>::operator=;
    /// @throws InvalidArrayTypeException when the array is no struct array; a moved argument is emptied even
    /// then
    StructArray(const Array& array) : TypedArray<StructElement>(array) {}
    StructArray(Array&& array) : TypedArray<StructElement>(std::move(array)) {}
    StructArray(const StructArray&) noexcept = default;
    StructArray(StructArray&&) noexcept = default;
    StructArray& operator=(const StructArray&) noexcept = default;
    StructArray& operator=(StructArray&&) noexcept = default;
    ~StructArray() override;

    using TypedArray<StructElement>::operator[];
    /// Does not compile: a field belongs to a record.
    template <class Text, std::enable_if_t<std::is_convertible_v<Text, std::string>, int> = 0>
    void operator[](const Text&) const {
        static_assert(!std::is_same_v<Text, Text>,
                      "a field belongs to a record: s[i][\"name\"], s[0][\"name\"]");
    }

    /// The names of the fields in their order.
    Range<ForwardIterator, const VexaFieldIdentifier> getFieldNames() const;
    /// As many as there are names.
    std::size_t getNumberOfFields() const;
};

/// What a reference to a struct array in a cell or field can do besides.
/// @throws TypeMismatchException when something else lies there by now; index errors
class VEXADATA_API StructArrayExt : public ArrayReferenceExt {
public:
    using ArrayReferenceExt::ArrayReferenceExt;

    /// Always an empty range, deliberately. For the names ask `StructArray::getFieldNames`.
    Range<ForwardIterator, const VexaFieldIdentifier> getFieldNames() const;
    /// That of the array held.
    std::size_t getNumberOfFields() const;
};

namespace detail {

extern template VEXADATA_API StructArray castTo<StructArray, false>(std::shared_ptr<ReferenceImpl>);
extern template VEXADATA_API StructArray castTo<StructArray, true>(std::shared_ptr<ReferenceImpl>);

} // namespace detail

/// A cell or field that holds a struct array.
template <>
class Reference<StructArray> : public detail::HeldArray<Reference<StructArray>, StructArray, StructArrayExt> {
public:
    using HeldArray::HeldArray;
    using HeldArray::operator=;
};

} // namespace foundation::vexadata
