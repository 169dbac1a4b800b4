// Handles to object arrays, their array properties and elements.
#include "../access/ChainTarget.hpp"

#include <foundation/vexadata/ValueObjectArray.hpp>
#include <vexa/data/impl/ObjectArrayImpl.hpp>

namespace foundation::vexadata {

using detail::Access;
using vexa::data::impl::ArrayImpl;
using vexa::data::impl::ObjectArrayImpl;

namespace {

ObjectArrayImpl& objects(ArrayImpl& array) { return static_cast<ObjectArrayImpl&>(array); }

} // namespace

ValueObjectArray::~ValueObjectArray() = default;

ClassInfo ValueObjectArray::getClassInfo() const { return objects(*impl_).getClassInfo(); }
bool ValueObjectArray::isHeterogeneous() const { return objects(*impl_).isHeterogeneous(); }

const Array ValueObjectArray::operator[](const VexaPropertyIdentifier& id) const {
    return objects(*impl_).getArrayProperty(id);
}
Reference<Array> ValueObjectArray::operator[](const VexaPropertyIdentifier& id) {
    Access::unshare(*this);
    return Reference<Array>(Access::createSharedPtr(objects(*impl_).getArrayPropertyReference(id)));
}

ForwardIterator<Property> ValueObjectArray::beginArrayProp() {
    Access::unshare(*this);
    return ForwardIterator<Property>(objects(*impl_).beginArrayProp());
}
ForwardIterator<Property> ValueObjectArray::endArrayProp() {
    Access::unshare(*this);
    return ForwardIterator<Property>(objects(*impl_).endArrayProp());
}
ForwardIterator<const Property> ValueObjectArray::cbeginArrayProp() const {
    return ForwardIterator<const Property>(objects(*impl_).cbeginArrayProp());
}
ForwardIterator<const Property> ValueObjectArray::cendArrayProp() const {
    return ForwardIterator<const Property>(objects(*impl_).cendArrayProp());
}

bool ValueObjectArray::hasArrayProperty(const VexaPropertyIdentifier& id) const {
    return objects(*impl_).hasArrayProperty(id);
}
std::size_t ValueObjectArray::numOfArrayProperties() const { return objects(*impl_).numOfArrayProperties(); }
std::vector<std::size_t> ValueObjectArray::getExternalDimensions() const {
    return objects(*impl_).getExternalDimensions();
}
bool ValueObjectArray::isExternalDimensionsSet() const { return objects(*impl_).isExternalDimensionsSet(); }
std::vector<std::string> ValueObjectArray::getExternalRepresentationArrayPropertyNames() const {
    return objects(*impl_).getExternalRepresentationArrayPropertyNames();
}

bool ValueObjectArray::operator==(const ValueObjectArray& other) const noexcept {
    // Both operations are always called, in this order: back-ends observe it.
    const bool sameProperties = objects(*impl_).isEqualArrayProperties(other.impl_.get());
    const bool sameElements = impl_->isEqual(other.impl_.get());
    return sameProperties && sameElements;
}

namespace detail {

template <>
ValueObject readElement<ValueObject>(ArrayImpl& array, std::size_t index, const std::string&) {
    return ValueObject(objects(array).getElementObject(index));
}
template <>
HandleObjectRef readElement<HandleObjectRef>(ArrayImpl& array, std::size_t index, const std::string&) {
    const HandleObjectRef* element = objects(array).getElementAddress(index, noFieldName, false);
    return element == nullptr ? HandleObjectRef() : *element;
}
template <>
void writeElement<ValueObject>(ArrayImpl& array, std::size_t index, const std::string&, ValueObject value) {
    objects(array).setElementObject(index, Access::impl(value).get());
}
template <>
void writeElement<HandleObjectRef>(ArrayImpl& array, std::size_t index, const std::string& fieldName,
                                   HandleObjectRef value) {
    objects(array).setElementValue(index, fieldName, std::move(value));
}

const Array ValueObjectElement::operator[](const VexaPropertyIdentifier& id) const {
    ArrayImpl* array = position_.array();
    return objects(*array).getElementProperty(position_.linearIndex(), id);
}

} // namespace detail

const Array ValueObjectRef::getProp(const VexaPropertyIdentifier& id, bool unshare) const {
    const auto [array, index] = unshare ? targetForWrite(*chain_) : targetOf(*chain_);
    return objects(*array).getElementProperty(index, id);
}

std::vector<std::string> ValueObjectRef::getExternalRepresentationPropertyNames() const {
    const auto object = detail::getValue<ValueObject>(chain_);
    return Access::impl(object) == nullptr ? std::vector<std::string>()
                                           : object.getExternalRepresentationPropertyNames();
}

void HandleRef::addReference() const {
    const auto [array, index] = targetOf(*chain_);
    objects(*array).getElementAddress(index, detail::noFieldName, false)->addReference();
}

} // namespace foundation::vexadata
