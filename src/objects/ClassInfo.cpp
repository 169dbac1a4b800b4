// Handles to class information and properties.
#include <foundation/vexadata/ClassInfo.hpp>
#include <vexa/data/impl/ClassInfoImpl.hpp>
#include <vexa/data/impl/IdentifierImpl.hpp>
#include <vexa/data/impl/ObjectImpl.hpp>

namespace foundation::vexadata {

using detail::Access;
using vexa::data::detail::ForwardIteratorImpl;
using vexa::data::impl::ClassInfoImpl;
using vexa::data::impl::PropertyImpl;

namespace {

/// The end is asked for first, and owned before the begin is asked for.
template <class T>
Range<ForwardIterator, T> rangeOf(const ClassInfoImpl& impl,
                                  ForwardIteratorImpl* (ClassInfoImpl::*begin)() const,
                                  ForwardIteratorImpl* (ClassInfoImpl::*end)() const) {
    ForwardIterator<T> last((impl.*end)());
    return {ForwardIterator<T>((impl.*begin)()), std::move(last)};
}

} // namespace

ClassInfo::ClassInfo(vexa::data::detail::RefCounted* impl)
    : impl_(Access::createSharedPtr(static_cast<ClassInfoImpl*>(impl))) {
    updateVexaPropertyIdentifiersClassInfo();
}

void ClassInfo::updateVexaPropertyIdentifiersClassInfo() {
    impl_->updateVexaPropertyIdentifiersClassInfo(*this);
}

VexaClassIdentifier ClassInfo::getClassIdentifier() const {
    const auto identifier = impl_->getClassIdentifier();
    identifier->retain();
    return VexaClassIdentifier(identifier.get());
}

Range<ForwardIterator, const VexaPropertyIdentifier> ClassInfo::getPropertyIDs() const {
    return rangeOf<const VexaPropertyIdentifier>(*impl_, &ClassInfoImpl::beginProperties,
                                                 &ClassInfoImpl::endProperties);
}
Range<ForwardIterator, const VexaPropertyIdentifier> ClassInfo::getArrayPropertyIDs() const {
    return rangeOf<const VexaPropertyIdentifier>(*impl_, &ClassInfoImpl::beginArrayProperties,
                                                 &ClassInfoImpl::endArrayProperties);
}
Range<ForwardIterator, const ClassInfo> ClassInfo::getSuperclasses() const {
    return rangeOf<const ClassInfo>(*impl_, &ClassInfoImpl::beginSuperclasses,
                                    &ClassInfoImpl::endSuperclasses);
}
std::size_t ClassInfo::getNumberOfProperties() const { return impl_->getNumberOfProperties(); }
std::size_t ClassInfo::getNumberOfArrayProperties() const { return impl_->getNumberOfArrayProperties(); }

Property::Property(vexa::data::detail::RefCounted* impl)
    : impl_(Access::createSharedPtr(static_cast<PropertyImpl*>(impl))) {}
VexaPropertyIdentifier Property::getIdentifier() const { return *impl_->getIdentifier(); }
const Array Property::castToArray() const { return Array(impl_->getValue()); }
Property::operator Reference<Array>() const {
    return Reference<Array>(Access::createSharedPtr(impl_->getReference()));
}

} // namespace foundation::vexadata
