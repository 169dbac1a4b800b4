// Identifiers of classes, fields and properties: parsing, equality, order, and the link of a property
// identifier to its class.
#include <foundation/vexadata/ClassInfo.hpp>
#include <foundation/vexadata/Identifiers.hpp>
#include <vexa/data/impl/ClassInfoImpl.hpp>
#include <vexa/data/impl/IdentifierImpl.hpp>

#include <tuple>
#include <utility>

namespace foundation::vexadata {

using detail::Access;
using vexa::data::detail::RefCounted;
using vexa::data::impl::ClassInfoImpl;
using vexa::data::impl::VexaClassIdentifierImpl;
using vexa::data::impl::VexaIdentifierImpl;
using vexa::data::impl::VexaPropertyIdentifierImpl;

namespace {

/// The same object, or equal by `equal`; null equals null only.
template <class Impl, class Equal>
bool equalOrSame(const std::shared_ptr<Impl>& a, const std::shared_ptr<Impl>& b, Equal equal) noexcept {
    return a == b || (a != nullptr && b != nullptr && equal(*a, *b));
}

template <class Impl>
bool sameName(const std::shared_ptr<Impl>& a, const std::shared_ptr<Impl>& b) noexcept {
    return equalOrSame(a, b, [](const Impl& x, const Impl& y) { return x.name() == y.name(); });
}

/// Name of the class that the identifier is linked to; empty without a link, or when that class was
/// destroyed.
std::string linkedClassName(const VexaPropertyIdentifierImpl& id) {
    const std::shared_ptr<ClassInfoImpl> linked = id.classLink().lock();
    return linked == nullptr ? std::string() : linked->getClassIdentifier()->name();
}

/// Splits "Class.property" at the last dot; without a dot the class name is empty.
VexaPropertyIdentifierImpl* parsed(std::string text) {
    const std::size_t dot = text.rfind('.');
    if (dot == std::string::npos) {
        return new VexaPropertyIdentifierImpl(std::move(text), {});
    }
    return new VexaPropertyIdentifierImpl(text.substr(dot + 1), text.substr(0, dot));
}

} // namespace

VexaClassIdentifier::VexaClassIdentifier(std::string name)
    : impl_(Access::createSharedPtr(new VexaClassIdentifierImpl(std::move(name)))) {}
VexaClassIdentifier::VexaClassIdentifier(VexaClassIdentifierImpl* impl)
    : impl_(Access::createSharedPtr(impl)) {}
bool VexaClassIdentifier::operator==(const VexaClassIdentifier& other) const noexcept {
    return sameName(impl_, other.impl_);
}
std::string VexaClassIdentifier::getString() const { return impl_->name(); }

VexaFieldIdentifier::VexaFieldIdentifier(std::string name)
    : impl_(Access::createSharedPtr(new VexaIdentifierImpl(std::move(name)))) {}
VexaFieldIdentifier::VexaFieldIdentifier(RefCounted* impl)
    : impl_(Access::createSharedPtr(static_cast<VexaIdentifierImpl*>(impl))) {}
bool VexaFieldIdentifier::operator==(const VexaFieldIdentifier& other) const noexcept {
    return sameName(impl_, other.impl_);
}
std::string VexaFieldIdentifier::getString() const {
    return impl_ == nullptr ? std::string() : impl_->name();
}

VexaPropertyIdentifier::VexaPropertyIdentifier(std::string name)
    : impl_(Access::createSharedPtr(parsed(std::move(name)))) {}
VexaPropertyIdentifier::VexaPropertyIdentifier(std::string className, std::string propertyName)
    : impl_(Access::createSharedPtr(
          new VexaPropertyIdentifierImpl(std::move(propertyName), std::move(className)))) {}
VexaPropertyIdentifier::VexaPropertyIdentifier(const VexaClassIdentifier& className, std::string propertyName)
    : VexaPropertyIdentifier(className.getString(), std::move(propertyName)) {}
VexaPropertyIdentifier::VexaPropertyIdentifier(RefCounted* impl)
    : impl_(Access::createSharedPtr(static_cast<VexaPropertyIdentifierImpl*>(impl))) {}

std::string VexaPropertyIdentifier::getPropertyName() const {
    return impl_ == nullptr ? std::string() : impl_->propertyName();
}

std::string VexaPropertyIdentifier::getClassName() const {
    if (impl_ == nullptr || !impl_->className().empty()) {
        return impl_ == nullptr ? std::string() : impl_->className();
    }
    return linkedClassName(*impl_);
}

std::string VexaPropertyIdentifier::getExternalPropertyName() const {
    if (impl_ == nullptr) {
        return {};
    }
    const std::string& className = impl_->className();
    if (className.empty() || className == linkedClassName(*impl_)) {
        return impl_->propertyName();
    }
    return className + "." + impl_->propertyName();
}

void VexaPropertyIdentifier::updateClassInfo(ClassInfo& classInfo) {
    if (impl_ != nullptr) {
        impl_->setClassLink(Access::impl(classInfo));
    }
}

bool VexaPropertyIdentifier::operator==(const VexaPropertyIdentifier& other) const noexcept {
    return equalOrSame(impl_, other.impl_, [](const auto& a, const auto& b) {
        return a.propertyName() == b.propertyName() && a.className() == b.className();
    });
}

bool VexaPropertyIdentifier::operator<(const VexaPropertyIdentifier& other) const noexcept {
    if (impl_ == nullptr || other.impl_ == nullptr || impl_ == other.impl_) {
        return impl_ == nullptr && other.impl_ != nullptr;
    }
    return std::tie(impl_->propertyName(), impl_->className()) <
           std::tie(other.impl_->propertyName(), other.impl_->className());
}

VexaPropertyIdentifier detail::validateVexaPropertyIdentifier(const VexaPropertyIdentifier& id,
                                                              ClassInfo& classInfo) {
    const std::string className = id.getClassName();
    if (className.empty()) {
        VexaPropertyIdentifier linked = id; // shares the object: the caller's identifier is linked with it
        linked.updateClassInfo(classInfo);
        return linked;
    }
    if (className == classInfo.getClassIdentifier().getString()) {
        VexaPropertyIdentifier own(id.getPropertyName());
        own.updateClassInfo(classInfo);
        return own;
    }
    return id;
}

} // namespace foundation::vexadata
