// Classes as the embedded back-end keeps them: names, properties, superclasses, and the rule by which an
// identifier finds its property.
#pragma once

#include "NameTable.hpp"

#include <foundation/vexadata/ClassInfo.hpp>
#include <vexa/data/impl/ClassInfoImpl.hpp>
#include <vexa/data/impl/IdentifierImpl.hpp>

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

namespace vexa::client {

using foundation::vexadata::ClassInfo;
using foundation::vexadata::VexaPropertyIdentifier;

/// Properties in their order, and a way from an identifier to its place. A class lists its own properties by
/// their plain names and then what it inherits, qualified by the class that defines it.
class PropertyList {
public:
    PropertyList() : names_({}) {}
    explicit PropertyList(std::vector<VexaPropertyIdentifier> ids);

    std::size_t size() const noexcept { return ids_.size(); }
    const VexaPropertyIdentifier& operator[](std::size_t place) const noexcept { return ids_[place]; }
    VexaPropertyIdentifier& operator[](std::size_t place) noexcept { return ids_[place]; }

    /// The place of the property that `id` means in the class `className`. An identifier with a class name,
    /// or linked to a superclass, means the property that this class defines; any other the class's own
    /// property of the name, or else the only inherited one. A link to a class that defines no such property
    /// is ignored. `NameTable::none` when there is none, or more than one.
    std::size_t find(const VexaPropertyIdentifier& id, const std::string& className) const {
        const auto& name = foundation::vexadata::detail::Access::impl(id);
        return name != nullptr && name->className().empty() && !hasNamesakes_
                   ? names_.find(name->propertyName())
                   : findAmongNamesakes(id, className);
    }
    /// Whether several properties have the name of `id`.
    bool isAmbiguous(const VexaPropertyIdentifier& id) const;
    /// The same identifiers in the same order.
    bool equals(const PropertyList& other) const { return ids_ == other.ids_; }
    std::vector<std::string> externalNames() const;

private:
    [[gnu::cold]] std::size_t findAmongNamesakes(const VexaPropertyIdentifier& id,
                                                 const std::string& className) const;

    std::vector<VexaPropertyIdentifier> ids_;
    NameTable names_;
    bool hasNamesakes_ = false; // several properties of one name, as after redefining one
};

/// A class: its name, its properties and those of its arrays, inherited ones among them, and its
/// superclasses. Only the links of the identifiers ever change.
class ClassDescription final : public data::impl::ClassInfoImpl {
public:
    /// @throws InvalidClassNameException, InvalidPropertyException, InvalidSuperclassException
    ClassDescription(std::string name, const std::vector<VexaPropertyIdentifier>& properties,
                     const std::vector<VexaPropertyIdentifier>& arrayProperties,
                     const std::vector<ClassInfo>& superclasses);
    ~ClassDescription() override;

    std::shared_ptr<data::impl::VexaClassIdentifierImpl> getClassIdentifier() const override;
    data::detail::ForwardIteratorImpl* beginProperties() const override;
    data::detail::ForwardIteratorImpl* endProperties() const override;
    data::detail::ForwardIteratorImpl* beginArrayProperties() const override;
    data::detail::ForwardIteratorImpl* endArrayProperties() const override;
    data::detail::ForwardIteratorImpl* beginSuperclasses() const override;
    data::detail::ForwardIteratorImpl* endSuperclasses() const override;
    std::size_t getNumberOfProperties() const override;
    std::size_t getNumberOfArrayProperties() const override;
    void updateVexaPropertyIdentifiersClassInfo(ClassInfo& classInfo) override;

    const std::string& name() const noexcept;
    const PropertyList& properties() const noexcept { return properties_; }
    const PropertyList& arrayProperties() const noexcept { return arrayProperties_; }
    /// Whether the class has this name, or a class above it does.
    bool isOrHas(const std::string& className) const;
    /// The same name and the same properties.
    bool equals(const ClassDescription& other) const;

private:
    std::shared_ptr<data::impl::VexaClassIdentifierImpl> name_;
    std::vector<std::shared_ptr<const ClassDescription>> superclasses_;
    PropertyList properties_;
    PropertyList arrayProperties_;
};

/// @throws UnknownPropertyException, AmbiguousPropertyException
[[noreturn, gnu::cold]] void reportUnknown(const PropertyList& list, const VexaPropertyIdentifier& id,
                                           const std::string& className);

/// The place of a property in a list of the class.
/// @throws UnknownPropertyException, AmbiguousPropertyException
inline std::size_t placeOf(const PropertyList& list, const VexaPropertyIdentifier& id,
                           const std::string& className) {
    const std::size_t place = list.find(id, className);
    if (place == NameTable::none) {
        reportUnknown(list, id, className);
    }
    return place;
}

} // namespace vexa::client
