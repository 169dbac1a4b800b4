// Objects of user-defined classes.
#pragma once

#include <foundation/vexadata/ClassInfo.hpp>
#include <foundation/vexadata/ZVMID.hpp>
#include <vexa/data/impl/ObjectImpl.hpp>

#include <cstddef>
#include <memory>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

namespace foundation::vexadata {

/// A handle to an object. Copies share it. An empty handle holds none; only equality, assignment and
/// destruction are valid on it.
class VEXADATA_API Object {
public:
    Object() noexcept = default;
    /// Adopts the one reference that `impl` carries; null gives an empty handle.
    /// @throws std::bad_alloc after dropping the reference
    explicit Object(vexa::data::impl::ObjectImpl* impl) : impl_(detail::Access::createSharedPtr(impl)) {}
    Object(const Object&) noexcept = default;
    Object(Object&&) noexcept = default;
    Object& operator=(const Object&) noexcept = default;
    Object& operator=(Object&&) noexcept = default;
    virtual ~Object();

protected:
    friend struct detail::Access;
    /// The back-end's object; null in an empty handle.
    std::shared_ptr<vexa::data::impl::ObjectImpl> impl_;
};

namespace detail {

/// Text that a pointer leads to, literals too. Deduced, so that no 0 is taken for a null pointer.
template <class Text>
using IfCharPointer = std::enable_if_t<std::is_same_v<Text, const char*> || std::is_same_v<Text, char*>, int>;

/// `handle["id"]` for a handle whose `[]` takes property identifiers.
template <class Handle>
class PropertiesByText {
public:
    const Array operator[](const std::string& id) const {
        return static_cast<const Handle&>(*this)[VexaPropertyIdentifier(id)];
    }
    template <class Text, IfCharPointer<Text> = 0>
    const Array operator[](Text id) const {
        return static_cast<const Handle&>(*this)[VexaPropertyIdentifier(id)];
    }
    Reference<Array> operator[](const std::string& id) {
        return static_cast<Handle&>(*this)[VexaPropertyIdentifier(id)];
    }
    template <class Text, IfCharPointer<Text> = 0>
    Reference<Array> operator[](Text id) {
        return static_cast<Handle&>(*this)[VexaPropertyIdentifier(id)];
    }
};

} // namespace detail

/// An object with value semantics: the first write through a handle that shares its object gives it a copy of
/// its own, also when a writable way in is used for reading. Errors of the back-end, such as for an unknown
/// property, pass through.
class VEXADATA_API ValueObject : public Object, public detail::PropertiesByText<ValueObject> {
public:
    /// Iterators over the properties.
    using iterator = ForwardIterator<Property>;
    using const_iterator = ForwardIterator<const Property>;

    using Object::Object;
    ValueObject() noexcept = default;
    ValueObject(const ValueObject&) noexcept = default;
    ValueObject(ValueObject&&) noexcept = default;
    ValueObject& operator=(const ValueObject&) noexcept = default;
    ValueObject& operator=(ValueObject&&) noexcept = default;
    ~ValueObject() override;

    /// Links the property identifiers of the class; see ClassInfo for what that means to threads.
    ClassInfo getClassInfo() const;
    /// Name of the enumeration member that the object is.
    /// @throws std::logic_error when the back-end has none
    std::string getEnumerationName() const;

    /// The value of a property, shared with the object until one of them is written. Constant, so that
    /// writing to it on the spot, which the object would never see, does not compile; assign it to an `Array`
    /// to change that.
    const Array operator[](const VexaPropertyIdentifier& id) const;
    /// The property, to be written or looked into.
    /// @throws std::bad_alloc, the handle unchanged
    Reference<Array> operator[](const VexaPropertyIdentifier& id);
    using detail::PropertiesByText<ValueObject>::operator[];

    /// The properties; the writable form makes the object private first. Those that the read-only form gives
    /// cannot be written through; see Property.
    iterator begin();
    iterator end();
    const_iterator begin() const { return cbegin(); }
    const_iterator end() const { return cend(); }
    const_iterator cbegin() const;
    const_iterator cend() const;

    /// Whether `[]` finds a property, and how many there are.
    bool hasProperty(const VexaPropertyIdentifier& id) const;
    std::size_t numOfProperties() const;
    bool hasProperties() const { return numOfProperties() != 0; }
    /// Names of the properties as they are shown.
    std::vector<std::string> getExternalRepresentationPropertyNames() const;

    /// Equal properties: the same number, and for each of this object an equal value under the same
    /// identifier in the other. Neither the classes nor the order of the properties matter, nor which members
    /// of enumerations the objects are. Two empty handles are equal.
    /// @throws errors of the back-end, which may have one for an unknown property
    bool operator==(const ValueObject& other) const;
    bool operator!=(const ValueObject& other) const { return !(*this == other); }
};

/// An object with reference semantics: copies denote the same object, which lives in an engine instance.
class VEXADATA_API HandleObjectRef : public Object {
public:
    using Object::Object;
    HandleObjectRef() noexcept = default;
    HandleObjectRef(const HandleObjectRef&) noexcept = default;
    HandleObjectRef(HandleObjectRef&&) noexcept = default;
    HandleObjectRef& operator=(const HandleObjectRef&) noexcept = default;
    HandleObjectRef& operator=(HandleObjectRef&&) noexcept = default;
    ~HandleObjectRef() override;

    /// Tells the engine of one more reference. The handle must hold a handle object, which is not tested.
    void addReference() const;
    /// The engine instance and the number of the object in it. The handle must hold a handle object.
    /// @throws EArrayInvalidHandleRef when it does not
    ZVMID getZVMID() const;
    long getId() const;
};

namespace detail {

/// The handle object behind a handle; null when it holds none, or an object of another kind.
VEXADATA_API const vexa::data::impl::HandleObjectRefImpl* handleObject(const Object& handle) noexcept;
/// Both absent, or the same engine instance and number.
VEXADATA_API bool sameHandleObject(const vexa::data::impl::HandleObjectRefImpl* a,
                                   const vexa::data::impl::HandleObjectRefImpl* b);

} // namespace detail

/// The same object: the same number in the same engine instance. Two handles without one are equal.
inline bool operator==(const HandleObjectRef& a, const HandleObjectRef& b) {
    return detail::sameHandleObject(detail::handleObject(a), detail::handleObject(b));
}
inline bool operator!=(const HandleObjectRef& a, const HandleObjectRef& b) { return !(a == b); }

} // namespace foundation::vexadata
