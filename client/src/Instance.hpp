// Objects with value semantics, and handle objects.
#pragma once

#include "ClassDescription.hpp"
#include "PropertySet.hpp"

#include <vexa/data/impl/ObjectImpl.hpp>

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace vexa::client {

/// An object of a class, with a value for each property; perhaps a member of an enumeration.
class Instance : public data::impl::ObjectImpl, public Container {
public:
    explicit Instance(std::shared_ptr<const ClassDescription> description,
                      std::optional<std::string> member = std::nullopt);
    ~Instance() override;

    data::impl::ObjectImpl* sharedCopy() const override;
    /// Null for an object that is no member of an enumeration.
    const char* getEnumerationName() const override;
    ClassInfo getClassInfo() const override;
    std::shared_ptr<data::impl::ArrayImpl> getProperty(VexaPropertyIdentifier id) const override;
    data::detail::ReferenceImpl* getPropertyReference(VexaPropertyIdentifier id) override;
    data::detail::ForwardIteratorImpl* begin() override;
    data::detail::ForwardIteratorImpl* end() override;
    data::detail::ForwardIteratorImpl* cbegin() const override;
    data::detail::ForwardIteratorImpl* cend() const override;
    bool hasProperty(const VexaPropertyIdentifier& id) const override;
    std::size_t numOfProperties() const override;
    std::vector<std::string> getExternalRepresentationPropertyNames() const override;

    const ClassDescription& description() const noexcept { return *description_; }
    PropertySet& properties() noexcept { return properties_; }
    Contents contents() noexcept override { return {properties_, {}}; }

protected:
    Instance(const Instance& other);

private:
    std::shared_ptr<const ClassDescription> description_;
    std::optional<std::string> member_;
    PropertySet properties_;
};

/// An object that lives in an engine instance: copies of it denote the same one. It has no properties here.
class HandleObject final : public Instance, public data::impl::HandleObjectRefImpl {
public:
    HandleObject(const data::impl::ZVMID& engine, long id);
    ~HandleObject() override;

    /// Another object that denotes the same one.
    data::impl::ObjectImpl* sharedCopy() const override;
    data::impl::ZVMID getZVMID() const override;
    long getId() const override;
    /// Counted by the registry of the engine instance.
    void addReference() const override;

private:
    HandleObject(const HandleObject&);

    data::impl::ZVMID engine_;
    long id_;
};

/// A new description without properties.
std::shared_ptr<const ClassDescription> plainDescription(const std::string& name);

/// A handle that adds its reference.
ClassInfo classInfoOf(const ClassDescription& description);

} // namespace vexa::client
