// Handles to elements of enumeration arrays.
#pragma once

#include <foundation/vexadata/Enumeration.hpp>
#include <foundation/vexadata/Reference.hpp>
#include <foundation/vexadata/detail/ElementHandle.hpp>

#include <memory>
#include <string>
#include <type_traits>
#include <utility>

namespace foundation::vexadata {

namespace detail {

/// What every handle to an enumeration element can do.
class EnumElement : public ElementView<Enumeration> {
public:
    using ElementView<Enumeration>::ElementView;

    /// Name of the member.
    /// @throws index errors; errors of the back-end
    std::string getName() const { return Enumeration(*this).getName(); }
};

template <class Ref>
using IfEnumRef = std::enable_if_t<std::is_base_of_v<EnumElement, Ref>, int>;

/// Writing an enumeration element through the handle `Ref`; members by their names too.
template <class Ref>
class WritableEnum : public WritableElement<Ref, EnumElement, Enumeration> {
    using Writable = WritableElement<Ref, EnumElement, Enumeration>;

public:
    using Writable::Writable;
    using Writable::operator=;
    Ref& operator=(std::string name) { return *this = Enumeration(std::move(name)); }
    Ref& operator=(const char* name) { return *this = Enumeration(name); }
};

/// Whether the element's member has this name; a back-end that fails to tell ends the process.
VEXADATA_API bool memberIsNamed(const ArrayImpl& array, std::size_t index, const std::string& name) noexcept;

} // namespace detail

/// A read-only enumeration element; validity and indices as for other elements.
template <>
class ArrayElementTypedRef<Enumeration, true>
    : public detail::EnumElement, public detail::Indexing<ArrayElementTypedRef<Enumeration, true>> {
public:
    using detail::EnumElement::EnumElement;
};

/// An enumeration element; validity and indices as for other elements.
template <>
class ArrayElementTypedRef<Enumeration, false>
    : public detail::WritableEnum<ArrayElementTypedRef<Enumeration, false>>,
      public detail::Indexing<ArrayElementTypedRef<Enumeration, false>> {
public:
    using detail::WritableEnum<ArrayElementTypedRef<Enumeration, false>>::WritableEnum;
    using detail::WritableEnum<ArrayElementTypedRef<Enumeration, false>>::operator=;
};

/// An enumeration element whose indices were checked when the reference was formed.
template <>
class Reference<Enumeration> : public detail::WritableEnum<Reference<Enumeration>> {
public:
    using detail::WritableEnum<Reference<Enumeration>>::WritableEnum;
    using detail::WritableEnum<Reference<Enumeration>>::operator=;
    /// @throws NotEnoughIndicesProvidedException, EArrayIndexOutOfRange
    Reference(const ArrayElementTypedRef<Enumeration, false>& element)
        : WritableEnum(detail::completePosition(element)) {}
    /// @throws TypeMismatchException when the array is not one of enumerations; index errors
    Reference(const ArrayElementRef<false>& element)
        : WritableEnum(detail::completePosition<Enumeration>(element)) {}

    /// The chain of the element.
    std::shared_ptr<detail::ReferenceImpl> chain() const { return position_.chain(); }
};

/// Whether the element is the member of this name, byte for byte.
/// @throws index errors, unlike comparisons of strings
template <class Ref, detail::IfEnumRef<Ref> = 0>
bool operator==(const Ref& element, const std::string& name) {
    const auto& position = detail::Access::position(element);
    return detail::memberIsNamed(*position.array(), position.linearIndex(), name);
}
template <class Ref, detail::IfEnumRef<Ref> = 0>
bool operator==(const std::string& name, const Ref& element) {
    return element == name;
}
template <class Ref, detail::IfEnumRef<Ref> = 0>
bool operator!=(const Ref& element, const std::string& name) {
    return !(element == name);
}
template <class Ref, detail::IfEnumRef<Ref> = 0>
bool operator!=(const std::string& name, const Ref& element) {
    return !(element == name);
}

} // namespace foundation::vexadata
