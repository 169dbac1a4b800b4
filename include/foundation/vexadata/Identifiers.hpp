// Names of classes, fields and properties.
#pragma once

#include <foundation/vexadata/detail/Access.hpp>

#include <cstddef>
#include <functional>
#include <memory>
#include <string>

namespace foundation::vexadata {

/// The name of a class, kept verbatim. Copies share the name, which never changes.
class VEXADATA_API VexaClassIdentifier {
public:
    /// @throws std::bad_alloc
    VexaClassIdentifier(std::string name);
    /// Adopts the one reference that `impl` carries.
    /// @throws std::bad_alloc after dropping the reference
    explicit VexaClassIdentifier(vexa::data::impl::VexaClassIdentifierImpl* impl);

    /// Equal names; an identifier that was moved from equals only others like it.
    bool operator==(const VexaClassIdentifier& other) const noexcept;
    bool operator!=(const VexaClassIdentifier& other) const noexcept { return !(*this == other); }

    /// The identifier must not have been moved from, which is not tested.
    std::string getString() const;

private:
    friend struct detail::Access;
    std::shared_ptr<vexa::data::impl::VexaClassIdentifierImpl> impl_;
};

/// The name of a field, kept verbatim. Copies share the name, which never changes.
class VEXADATA_API VexaFieldIdentifier {
public:
    /// @throws std::bad_alloc
    VexaFieldIdentifier(std::string name);
    VexaFieldIdentifier(const char* name) : VexaFieldIdentifier(std::string(name)) {}
    /// Adopts the one reference that `impl` carries.
    /// @throws std::bad_alloc after dropping the reference
    explicit VexaFieldIdentifier(vexa::data::detail::RefCounted* impl);

    /// Equal names; an identifier that was moved from equals only others like it.
    bool operator==(const VexaFieldIdentifier& other) const noexcept;
    bool operator!=(const VexaFieldIdentifier& other) const noexcept { return !(*this == other); }

    /// Empty after a move.
    std::string getString() const;

private:
    std::shared_ptr<vexa::data::impl::VexaIdentifierImpl> impl_;
};

/// The name of a property, perhaps qualified by the class that defines it, and a weak link to the class
/// information that it was last resolved against. Copies share all of it: a link set through one is seen
/// through every other. Setting the link is not synchronised against readers.
class VEXADATA_API VexaPropertyIdentifier {
public:
    /// "Class.property", split at the last dot, or "property" alone. Nothing is tested.
    /// @throws std::bad_alloc
    VexaPropertyIdentifier(std::string name);
    VexaPropertyIdentifier(const char* name) : VexaPropertyIdentifier(std::string(name)) {}
    /// Both verbatim, dots and all.
    VexaPropertyIdentifier(std::string className, std::string propertyName);
    VexaPropertyIdentifier(const VexaClassIdentifier& className, std::string propertyName);
    /// Adopts the one reference that `impl` carries.
    /// @throws std::bad_alloc after dropping the reference
    explicit VexaPropertyIdentifier(vexa::data::detail::RefCounted* impl);

    std::string getPropertyName() const; ///< empty after a move
    /// The qualifying class; without one that of the link, as long as its class information lives; else
    /// empty.
    std::string getClassName() const;
    /// The name to show: the property alone when it is unqualified, or qualified by the class of the link;
    /// else "Class.property".
    std::string getExternalPropertyName() const;

    /// Links to class information, which the link does not keep alive. Does nothing after a move.
    void updateClassInfo(ClassInfo& classInfo);

    /// Equal names of property and class; links do not matter. An identifier that was moved from equals only
    /// others like it.
    bool operator==(const VexaPropertyIdentifier& other) const noexcept;
    bool operator!=(const VexaPropertyIdentifier& other) const noexcept { return !(*this == other); }
    /// By the name of the property, then of the class; identifiers that were moved from come first.
    bool operator<(const VexaPropertyIdentifier& other) const noexcept;

private:
    friend struct detail::Access;
    std::shared_ptr<vexa::data::impl::VexaPropertyIdentifierImpl> impl_;
};

namespace detail {

/// Resolves a property identifier against a class. An unqualified one is linked to it, the caller's
/// identifier with it; one qualified by this very class becomes an unqualified one of its own, linked; one of
/// another class stays as it is.
VEXADATA_API VexaPropertyIdentifier validateVexaPropertyIdentifier(const VexaPropertyIdentifier& id,
                                                                   ClassInfo& classInfo);

} // namespace detail

} // namespace foundation::vexadata

/// Equal identifiers have equal hashes. One that was moved from has that of an empty name.
template <>
struct std::hash<foundation::vexadata::VexaClassIdentifier> {
    /// Throws nothing but std::bad_alloc.
    std::size_t operator()(const foundation::vexadata::VexaClassIdentifier& id) const {
        const bool moved = foundation::vexadata::detail::Access::impl(id) == nullptr;
        return std::hash<std::string>()(moved ? std::string() : id.getString());
    }
};
template <>
struct std::hash<foundation::vexadata::VexaFieldIdentifier> {
    /// Throws nothing but std::bad_alloc.
    std::size_t operator()(const foundation::vexadata::VexaFieldIdentifier& id) const {
        return std::hash<std::string>()(id.getString());
    }
};
template <>
struct std::hash<foundation::vexadata::VexaPropertyIdentifier> {
    /// Of the name alone, without the class.
    std::size_t operator()(const foundation::vexadata::VexaPropertyIdentifier& id) const {
        return std::hash<std::string>()(id.getPropertyName());
    }
};
