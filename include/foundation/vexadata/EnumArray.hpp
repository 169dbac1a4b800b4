// Enumeration arrays.
#pragma once

#include <foundation/vexadata/ArrayReference.hpp>
#include <foundation/vexadata/TypedArray.hpp>

#include <memory>
#include <string>
#include <utility>

namespace foundation::vexadata {

/// An array of members of one enumeration class.
class VEXADATA_API EnumArray : public TypedArray<Enumeration> {
public:
    using TypedArray<Enumeration>::TypedArray;
    using TypedArray<Enumeration>::operator=;
    /// @throws InvalidArrayTypeException when the array is no enumeration array; a moved argument is emptied
    /// even then
    EnumArray(const Array& array) : TypedArray<Enumeration>(array) {}
    EnumArray(Array&& array) : TypedArray<Enumeration>(std::move(array)) {}
    EnumArray(const EnumArray&) noexcept = default;
    EnumArray(EnumArray&&) noexcept = default;
    EnumArray& operator=(const EnumArray&) noexcept = default;
    EnumArray& operator=(EnumArray&&) noexcept = default;
    ~EnumArray() override;

    /// Name of the enumeration class. Ends the process when the back-end fails.
    std::string getClassName() const noexcept;
};

/// What a reference to an enumeration array in a cell or field can do besides.
class VEXADATA_API EnumArrayExt : public ArrayReferenceExt {
public:
    using ArrayReferenceExt::ArrayReferenceExt;

    /// As many bytes of the class name as the array has elements, deliberately: fewer than the name has cut
    /// it off, more go on behind its end. For the name itself ask `EnumArray::getClassName`.
    /// @throws TypeMismatchException when something else lies there by now; index errors
    std::string getClassName() const;
};

namespace detail {

extern template VEXADATA_API EnumArray castTo<EnumArray, false>(std::shared_ptr<ReferenceImpl>);
extern template VEXADATA_API EnumArray castTo<EnumArray, true>(std::shared_ptr<ReferenceImpl>);

} // namespace detail

/// A cell or field that holds an enumeration array.
template <>
class Reference<EnumArray> : public detail::HeldArray<Reference<EnumArray>, EnumArray, EnumArrayExt> {
public:
    using HeldArray::HeldArray;
    using HeldArray::operator=;
};

} // namespace foundation::vexadata
