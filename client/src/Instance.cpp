#include "Instance.hpp"

#include "HandleRegistry.hpp"

#include <utility>

namespace vexa::client {

using data::detail::ForwardIteratorImpl;
using data::impl::ArrayImpl;
using data::impl::ObjectImpl;
using foundation::vexadata::detail::Access;

std::shared_ptr<const ClassDescription> plainDescription(const std::string& name) {
    using Identifiers = std::vector<VexaPropertyIdentifier>;
    return Access::createSharedPtr<const ClassDescription>(
        new ClassDescription(name, Identifiers(), Identifiers(), std::vector<ClassInfo>()));
}

ClassInfo classInfoOf(const ClassDescription& description) {
    description.retain();
    // Clients change nothing in it but the links of its identifiers.
    return ClassInfo(const_cast<ClassDescription*>(&description));
}

Instance::Instance(std::shared_ptr<const ClassDescription> description, std::optional<std::string> member)
    : description_(std::move(description)),
      member_(std::move(member)),
      properties_(description_->properties(), description_->name()) {}
Instance::Instance(const Instance&) = default;
Instance::~Instance() = default;

ObjectImpl* Instance::sharedCopy() const { return new Instance(*this); }
const char* Instance::getEnumerationName() const { return member_ ? member_->c_str() : nullptr; }
ClassInfo Instance::getClassInfo() const { return classInfoOf(*description_); }
std::shared_ptr<ArrayImpl> Instance::getProperty(VexaPropertyIdentifier id) const {
    return Access::impl(properties_.value(properties_.placeOf(id)));
}
data::detail::ReferenceImpl* Instance::getPropertyReference(VexaPropertyIdentifier id) {
    return properties_.reference(properties_.placeOf(id));
}
ForwardIteratorImpl* Instance::begin() { return properties_.iteratorAt(0); }
ForwardIteratorImpl* Instance::end() { return properties_.iteratorAt(numOfProperties()); }
ForwardIteratorImpl* Instance::cbegin() const { return properties_.iteratorAt(0); }
ForwardIteratorImpl* Instance::cend() const { return properties_.iteratorAt(numOfProperties()); }
bool Instance::hasProperty(const VexaPropertyIdentifier& id) const { return properties_.has(id); }
std::size_t Instance::numOfProperties() const { return properties_.numberOfPlaces(); }
std::vector<std::string> Instance::getExternalRepresentationPropertyNames() const {
    return properties_.list().externalNames();
}

HandleObject::HandleObject(const data::impl::ZVMID& engine, long id)
    : Instance(plainDescription("handle")), engine_(engine), id_(id) {}
HandleObject::HandleObject(const HandleObject&) = default;
HandleObject::~HandleObject() = default;
ObjectImpl* HandleObject::sharedCopy() const { return new HandleObject(*this); }
data::impl::ZVMID HandleObject::getZVMID() const { return engine_; }
long HandleObject::getId() const { return id_; }
void HandleObject::addReference() const { HandleRegistry::shared().addReference(engine_, id_); }

} // namespace vexa::client
