// Descriptions of classes, and properties of objects.
#pragma once

#include <foundation/vexadata/Array.hpp>
#include <foundation/vexadata/ForwardIterator.hpp>
#include <foundation/vexadata/Identifiers.hpp>

#include <cstddef>
#include <memory>
#include <string>
#include <utility>

namespace foundation::vexadata {

/// Describes a class of objects. Copies share the description. Errors of the back-end pass through.
///
/// Making one from a back-end object links all property identifiers of the class to the new handle; the links
/// last as long as this handle and its copies do, and the next handle that is made takes them over. All
/// objects of the class share these links, so that two threads must not make handles of one class at the same
/// time.
class VEXADATA_API ClassInfo {
public:
    /// Adopts the one reference that `impl` carries and links the property identifiers.
    /// @throws std::bad_alloc after dropping the reference
    explicit ClassInfo(vexa::data::detail::RefCounted* impl);

    /// Name of the class; outlives this handle.
    VexaClassIdentifier getClassIdentifier() const;
    /// Properties of each object, with those that the back-end says are inherited.
    Range<ForwardIterator, const VexaPropertyIdentifier> getPropertyIDs() const;
    /// Properties of whole object arrays.
    Range<ForwardIterator, const VexaPropertyIdentifier> getArrayPropertyIDs() const;
    /// Those that the class names itself.
    Range<ForwardIterator, const ClassInfo> getSuperclasses() const;
    /// As many as the two ranges of properties have.
    std::size_t getNumberOfProperties() const;
    std::size_t getNumberOfArrayProperties() const;

    /// Links all property identifiers of the class to this handle.
    void updateVexaPropertyIdentifiersClassInfo();

private:
    friend struct detail::Access;
    std::shared_ptr<vexa::data::impl::ClassInfoImpl> impl_;
};

/// A property of an object, as seen while walking it. Valid as long as the object's handle is neither dropped
/// nor made private by a later write. A property that came from a read-only walk cannot be written: storing a
/// value, and any writable way into its value, throw CantAssignArrayToThisArrayException; back-ends see to
/// it.
class VEXADATA_API Property {
public:
    /// Adopts the one reference that `impl` carries.
    /// @throws std::bad_alloc after dropping the reference
    explicit Property(vexa::data::detail::RefCounted* impl);
    Property(const Property&) noexcept = default;
    Property(Property&&) noexcept = default;
    /// Makes the handle stand for the other property. Not for what a walk just gave: `*to = *from` would
    /// change nothing.
    Property& operator=(const Property&) & noexcept = default;
    Property& operator=(Property&&) & noexcept = default;
    Property& operator=(const Property&) && = delete;
    ~Property() = default;

    /// Its name, and the class that defines it.
    VexaPropertyIdentifier getIdentifier() const;
    std::string getPropertyName() const { return getIdentifier().getPropertyName(); }
    std::string getClassName() const { return getIdentifier().getClassName(); }
    /// The value, shared with the object until one of them is written. Constant, so that writing to it on the
    /// spot, which the object would never see, does not compile.
    const Array castToArray() const;
    /// Writing through it changes the property in place.
    operator Reference<Array>() const;
    /// Stores a value.
    Property& operator=(const Array& value) {
        Reference<Array> reference = *this;
        reference = value;
        return *this;
    }

private:
    std::shared_ptr<vexa::data::impl::PropertyImpl> impl_;
};

} // namespace foundation::vexadata
