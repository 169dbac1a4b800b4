// Handles to value objects and handle objects.
#include "../arrays/Equality.hpp"

#include <foundation/vexadata/Exception.hpp>
#include <foundation/vexadata/Object.hpp>
#include <foundation/vexadata/detail/Text.hpp>
#include <foundation/vexadata/detail/TypeInformation.hpp>

namespace foundation::vexadata {

using detail::Access;
using vexa::data::impl::HandleObjectRefImpl;

Object::~Object() = default;

ValueObject::~ValueObject() = default;

ClassInfo ValueObject::getClassInfo() const { return impl_->getClassInfo(); }
std::string ValueObject::getEnumerationName() const { return detail::copied(impl_->getEnumerationName()); }

const Array ValueObject::operator[](const VexaPropertyIdentifier& id) const {
    return Array(impl_->getProperty(id));
}
Reference<Array> ValueObject::operator[](const VexaPropertyIdentifier& id) {
    Access::unshare(*this);
    return Reference<Array>(Access::createSharedPtr(impl_->getPropertyReference(id)));
}

ValueObject::iterator ValueObject::begin() {
    Access::unshare(*this);
    return iterator(impl_->begin());
}
ValueObject::iterator ValueObject::end() {
    Access::unshare(*this);
    return iterator(impl_->end());
}
ValueObject::const_iterator ValueObject::cbegin() const { return const_iterator(impl_->cbegin()); }
ValueObject::const_iterator ValueObject::cend() const { return const_iterator(impl_->cend()); }

bool ValueObject::hasProperty(const VexaPropertyIdentifier& id) const { return impl_->hasProperty(id); }
std::size_t ValueObject::numOfProperties() const { return impl_->numOfProperties(); }
std::vector<std::string> ValueObject::getExternalRepresentationPropertyNames() const {
    return impl_->getExternalRepresentationPropertyNames();
}

namespace {

using Properties = std::pair<ValueObject::iterator, ValueObject::iterator>;

/// Asks `begin` and `end`, not the read-only `cbegin` and `cend`, and the end first. Nothing is written; the
/// call order is kept because back-ends observe it.
Properties propertiesOf(vexa::data::impl::ObjectImpl& object) {
    ValueObject::iterator end(object.end());
    return {ValueObject::iterator(object.begin()), std::move(end)};
}

} // namespace

bool ValueObject::operator==(const ValueObject& other) const {
    if (impl_ == nullptr || other.impl_ == nullptr) {
        return impl_ == other.impl_;
    }
    Properties mine = propertiesOf(*impl_);
    Properties others = propertiesOf(*other.impl_);
    std::size_t count = 0;
    for (; mine.first != mine.second; ++mine.first, ++count) {
        const Property property = *mine.first;
        const Array theirs(other.impl_->getProperty(property.getIdentifier()));
        const Array own = property.castToArray();
        if (!detail::equal(*Access::impl(own),
                           *Access::impl(theirs))) { // `==` of arrays would end the process
            return false;
        }
    }
    std::size_t otherCount = 0;
    for (; others.first != others.second; ++others.first) {
        ++otherCount;
    }
    return count == otherCount;
}

HandleObjectRef::~HandleObjectRef() = default;

void HandleObjectRef::addReference() const {
    // Unchecked: that there is a handle object is a precondition.
    dynamic_cast<const HandleObjectRefImpl*>(impl_.get())->addReference();
}

namespace {

const HandleObjectRefImpl& existing(const Object& handle) {
    const HandleObjectRefImpl* object = detail::handleObject(handle);
    if (object == nullptr) {
        throw EArrayInvalidHandleRef();
    }
    return *object;
}

} // namespace

ZVMID HandleObjectRef::getZVMID() const { return existing(*this).getZVMID(); }
long HandleObjectRef::getId() const { return existing(*this).getId(); }

const HandleObjectRefImpl* detail::handleObject(const Object& handle) noexcept {
    return dynamicCast<const HandleObjectRefImpl>(Access::impl(handle).get());
}

bool detail::sameHandleObject(const HandleObjectRefImpl* a, const HandleObjectRefImpl* b) {
    if (a == nullptr || b == nullptr) {
        return a == b;
    }
    return a->getZVMID() == b->getZVMID() && a->getId() == b->getId();
}

} // namespace foundation::vexadata
