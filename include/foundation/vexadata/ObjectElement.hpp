// Handles to elements of object arrays.
#pragma once

#include <foundation/vexadata/Object.hpp>
#include <foundation/vexadata/Reference.hpp>
#include <foundation/vexadata/detail/ElementHandle.hpp>

#include <cstddef>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace foundation::vexadata {

namespace detail {

// Elements of object arrays are handed out and stored as handles; an element without object gives an empty
// one.
template <>
VEXADATA_API ValueObject readElement<ValueObject>(ArrayImpl& array, std::size_t index,
                                                  const std::string& fieldName);
template <>
VEXADATA_API HandleObjectRef readElement<HandleObjectRef>(ArrayImpl& array, std::size_t index,
                                                          const std::string& fieldName);
template <>
VEXADATA_API void writeElement<ValueObject>(ArrayImpl& array, std::size_t index, const std::string& fieldName,
                                            ValueObject value);
template <>
VEXADATA_API void writeElement<HandleObjectRef>(ArrayImpl& array, std::size_t index,
                                                const std::string& fieldName, HandleObjectRef value);

extern template VEXADATA_API ValueObject getValue<ValueObject>(std::shared_ptr<ReferenceImpl>);

/// What every handle to a value object in an array can do. Converts to the object, shared with the array
/// until one of them is written; to change an element, change that object and assign it.
class VEXADATA_API ValueObjectElement : public ElementView<ValueObject> {
public:
    using ElementView<ValueObject>::ElementView;

    /// The value of a property, shared with the object. Constant, so that writing to it on the spot, which
    /// the element would never see, does not compile.
    /// @throws index errors; errors of the back-end
    const Array operator[](const VexaPropertyIdentifier& id) const;
    const Array operator[](const std::string& id) const { return (*this)[VexaPropertyIdentifier(id)]; }
    template <class Text, IfCharPointer<Text> = 0>
    const Array operator[](Text id) const {
        return (*this)[VexaPropertyIdentifier(id)];
    }

    /// Equality of the objects.
    /// @throws index errors; errors of the back-end
    friend bool operator==(const ValueObjectElement& a, const ValueObjectElement& b) {
        return static_cast<ValueObject>(a) == static_cast<ValueObject>(b);
    }
    friend bool operator==(const ValueObjectElement& a, const ValueObject& b) {
        return static_cast<ValueObject>(a) == b;
    }
    friend bool operator==(const ValueObject& a, const ValueObjectElement& b) {
        return a == static_cast<ValueObject>(b);
    }
    friend bool operator!=(const ValueObjectElement& a, const ValueObjectElement& b) { return !(a == b); }
    friend bool operator!=(const ValueObjectElement& a, const ValueObject& b) { return !(a == b); }
    friend bool operator!=(const ValueObject& a, const ValueObjectElement& b) { return !(a == b); }
};

} // namespace detail

/// A read-only value object of an array; validity and indices as for other elements.
template <>
class ArrayElementTypedRef<ValueObject, true>
    : public detail::ValueObjectElement, public detail::Indexing<ArrayElementTypedRef<ValueObject, true>> {
public:
    using detail::ValueObjectElement::ValueObjectElement;
    using detail::Indexing<ArrayElementTypedRef<ValueObject, true>>::operator[];
    using detail::ValueObjectElement::operator[];
};

/// A value object of an array; validity and indices as for other elements.
template <>
class ArrayElementTypedRef<ValueObject, false>
    : public detail::WritableElement<ArrayElementTypedRef<ValueObject, false>, detail::ValueObjectElement,
                                     ValueObject>,
      public detail::Indexing<ArrayElementTypedRef<ValueObject, false>> {
public:
    using WritableElement::WritableElement;
    using WritableElement::operator=;
    using detail::Indexing<ArrayElementTypedRef<ValueObject, false>>::operator[];
    using detail::ValueObjectElement::operator[];
};

/// A value object of an array, whose indices were checked when the reference was formed.
template <>
class Reference<ValueObject>
    : public detail::WritableElement<Reference<ValueObject>, detail::ValueObjectElement, ValueObject> {
public:
    using WritableElement::WritableElement;
    using WritableElement::operator=;
    /// @throws NotEnoughIndicesProvidedException, EArrayIndexOutOfRange
    Reference(const ArrayElementTypedRef<ValueObject, false>& element)
        : WritableElement(detail::completePosition(element)) {}
    /// @throws TypeMismatchException when the array is none of objects; index errors
    Reference(const ArrayElementRef<false>& element)
        : WritableElement(detail::completePosition<ValueObject>(element)) {}

    /// The chain of the element.
    std::shared_ptr<detail::ReferenceImpl> chain() const { return position_.chain(); }
};

/// A read-only handle object of an array; validity and indices as for other elements.
template <>
class ArrayElementTypedRef<HandleObjectRef, true>
    : public detail::ElementView<HandleObjectRef>,
      public detail::Indexing<ArrayElementTypedRef<HandleObjectRef, true>> {
public:
    using detail::ElementView<HandleObjectRef>::ElementView;
};

/// A handle object of an array; validity and indices as for other elements.
template <>
class ArrayElementTypedRef<HandleObjectRef, false>
    : public detail::WritableElement<ArrayElementTypedRef<HandleObjectRef, false>,
                                     detail::ElementView<HandleObjectRef>, HandleObjectRef>,
      public detail::Indexing<ArrayElementTypedRef<HandleObjectRef, false>> {
public:
    using WritableElement::WritableElement;
    using WritableElement::operator=;
};

/// A handle object of an array, whose indices were checked when the reference was formed.
template <>
class Reference<HandleObjectRef>
    : public detail::WritableElement<Reference<HandleObjectRef>, detail::ElementView<HandleObjectRef>,
                                     HandleObjectRef> {
public:
    using WritableElement::WritableElement;
    using WritableElement::operator=;
    /// @throws NotEnoughIndicesProvidedException, EArrayIndexOutOfRange
    Reference(const ArrayElementTypedRef<HandleObjectRef, false>& element)
        : WritableElement(detail::completePosition(element)) {}
    /// @throws TypeMismatchException when the array is none of objects; index errors
    Reference(const ArrayElementRef<false>& element)
        : WritableElement(detail::completePosition<HandleObjectRef>(element)) {}

    /// The chain of the element.
    std::shared_ptr<detail::ReferenceImpl> chain() const { return position_.chain(); }
};

/// A reference to a value object in an array, as back-ends hand it out.
class VEXADATA_API ValueObjectRef {
public:
    /// Adopts the one reference that `chain` carries.
    /// @throws std::bad_alloc after dropping the reference
    explicit ValueObjectRef(detail::ReferenceImpl* chain) : chain_(detail::Access::createSharedPtr(chain)) {}
    /// Shares the chain of the element.
    ValueObjectRef(const Reference<ValueObject>& element) : chain_(element.chain()) {}

    /// The value of a property. With `unshare` the array is made private first, as for writing.
    /// @throws index errors; errors of the back-end
    const Array getProp(const VexaPropertyIdentifier& id, bool unshare) const;
    /// Names of the properties as they are shown; none for an element without object.
    /// @throws index errors; errors of the back-end
    std::vector<std::string> getExternalRepresentationPropertyNames() const;

private:
    std::shared_ptr<detail::ReferenceImpl> chain_;
};

/// A reference to a handle object in an array, as back-ends hand it out.
class VEXADATA_API HandleRef {
public:
    /// Adopts the one reference that `chain` carries.
    /// @throws std::bad_alloc after dropping the reference
    explicit HandleRef(detail::ReferenceImpl* chain) : chain_(detail::Access::createSharedPtr(chain)) {}
    /// Shares the chain of the element.
    HandleRef(const Reference<HandleObjectRef>& element) : chain_(element.chain()) {}

    /// Tells the engine of one more reference to the object. The element must hold a handle object, which is
    /// not tested.
    /// @throws index errors
    void addReference() const;

private:
    std::shared_ptr<detail::ReferenceImpl> chain_;
};

} // namespace foundation::vexadata
