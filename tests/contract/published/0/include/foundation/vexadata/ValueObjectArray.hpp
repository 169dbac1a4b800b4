// Arrays of objects.
#pragma once

#include <foundation/vexadata/ArrayReference.hpp>
#include <foundation/vexadata/TypedArray.hpp>

#include <cstddef>
#include <memory>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

namespace foundation::vexadata {

namespace detail {

/// Array handles that are no object arrays.
template <class A>
using IfOtherArray =
    std::enable_if_t<std::is_base_of_v<Array, A> && !std::is_base_of_v<ValueObjectArray, A>, int>;

} // namespace detail

/// An array of value objects, which besides its elements has properties of its own. Writable ways in make the
/// array private first, also when they are used for reading. Errors of the back-end pass through.
class VEXADATA_API ValueObjectArray : public TypedArray<ValueObject>,
                                      public detail::PropertiesByText<ValueObjectArray> {
public:
    using TypedArray<ValueObject>::TypedArray;
    using TypedArray<ValueObject>::operator=;
    using TypedArray<ValueObject>::operator[];
    /// @throws InvalidArrayTypeException when the array is none of objects; a moved argument is emptied even
    /// then
    ValueObjectArray(const Array& array) : TypedArray<ValueObject>(array) {}
    ValueObjectArray(Array&& array) : TypedArray<ValueObject>(std::move(array)) {}
    ValueObjectArray(const ValueObjectArray&) noexcept = default;
    ValueObjectArray(ValueObjectArray&&) noexcept = default;
    ValueObjectArray& operator=(const ValueObjectArray&) noexcept = default;
    ValueObjectArray& operator=(ValueObjectArray&&) noexcept = default;
    ~ValueObjectArray() override;

    /// Description of the class of the elements, or of what they have in common.
    ClassInfo getClassInfo() const;
    /// Whether elements may be of different classes.
    bool isHeterogeneous() const;

    /// A property of the array, shared with it until one of them is written. Constant, so that writing to it
    /// on the spot, which the array would never see, does not compile.
    const Array operator[](const VexaPropertyIdentifier& id) const;
    /// A property of the array, to be written or looked into.
    Reference<Array> operator[](const VexaPropertyIdentifier& id);
    using detail::PropertiesByText<ValueObjectArray>::operator[];

    /// The properties of the array. Those that the read-only forms give cannot be written through; see
    /// Property.
    ForwardIterator<Property> beginArrayProp();
    ForwardIterator<Property> endArrayProp();
    ForwardIterator<const Property> beginArrayProp() const { return cbeginArrayProp(); }
    ForwardIterator<const Property> endArrayProp() const { return cendArrayProp(); }
    ForwardIterator<const Property> cbeginArrayProp() const;
    ForwardIterator<const Property> cendArrayProp() const;

    /// What the array has, beyond the properties of its elements.
    bool hasArrayProperty(const VexaPropertyIdentifier& id) const;
    std::size_t numOfArrayProperties() const;
    bool hasArrayProperties() const { return numOfArrayProperties() != 0; }
    /// The dimensions that the array shows to users, when they are not its own.
    std::vector<std::size_t> getExternalDimensions() const;
    bool isExternalDimensionsSet() const;
    /// Names of the properties of the array as they are shown.
    std::vector<std::string> getExternalRepresentationArrayPropertyNames() const;

    /// Equal properties of the arrays, and equal elements. Ends the process when the back-end fails.
    bool operator==(const ValueObjectArray& other) const noexcept;
    bool operator!=(const ValueObjectArray& other) const noexcept { return !(*this == other); }
    /// Equality of arrays, with a handle of another type: properties of the arrays do not matter.
    template <class A, detail::IfOtherArray<A> = 0>
    bool operator==(const A& other) const noexcept {
        return static_cast<const Array&>(*this) == static_cast<const Array&>(other);
    }
    template <class A, detail::IfOtherArray<A> = 0>
    bool operator!=(const A& other) const noexcept {
        return !(*this == other);
    }
};

namespace detail {

extern template VEXADATA_API ValueObjectArray castTo<ValueObjectArray, false>(std::shared_ptr<ReferenceImpl>);
extern template VEXADATA_API ValueObjectArray castTo<ValueObjectArray, true>(std::shared_ptr<ReferenceImpl>);

} // namespace detail

/// A cell or field that holds an object array.
template <>
class Reference<ValueObjectArray>
    : public detail::HeldArray<Reference<ValueObjectArray>, ValueObjectArray, ArrayReferenceExt> {
public:
    using HeldArray::HeldArray;
    using HeldArray::operator=;
};

} // namespace foundation::vexadata
