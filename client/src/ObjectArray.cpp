#include "ObjectArray.hpp"

#include "ArrayHolder.hpp"

#include <foundation/vexadata/detail/TypeInformation.hpp>
#include <vexa/client/Exception.hpp>
#include <vexa/client/Objects.hpp>
#include <vexa/data/detail/NonPrimitiveIteratorImpl.hpp>

#include <algorithm>
#include <cstring>
#include <utility>

namespace vexa::client {

namespace fv = foundation::vexadata;
using data::detail::ForwardIteratorImpl;
using fv::detail::Access;
using Iterator = data::detail::NonPrimitiveIteratorImpl<data::impl::MatchingDataOrder>;

ObjectArray::ObjectArray(ArrayType type, Dimensions dimensions)
    : ColumnMajorArray(std::move(dimensions)),
      type_(type),
      elements_(allocatable<Element>(getNumberOfElements())),
      classOfProperties_(plainDescription({})),
      properties_(classOfProperties_->arrayProperties(), classOfProperties_->name()) {}
ObjectArray::ObjectArray(Dimensions dimensions, std::shared_ptr<const ClassDescription> description,
                         const Element& object)
    : ColumnMajorArray(std::move(dimensions)),
      type_(ArrayType::VALUE_OBJECT),
      description_(std::move(description)),
      elements_(allocatable<Element>(getNumberOfElements()), object),
      classOfProperties_(description_),
      properties_(classOfProperties_->arrayProperties(), classOfProperties_->name()) {
    setHeld(object);
}
ObjectArray::ObjectArray(const ObjectArray&) = default;
ObjectArray::~ObjectArray() = default;

ArrayImpl* ObjectArray::sharedCopy() const { return new ObjectArray(*this); }
data::detail::IteratorImpl* ObjectArray::beginIterator(void*, bool) { return new Iterator(this, 0); }
data::detail::IteratorImpl* ObjectArray::endIterator(void*, bool) {
    return new Iterator(this, elements_.size());
}
ArrayType ObjectArray::getType() const { return type_; }

namespace {

/// Of an object of any back-end.
std::string classNameOf(const ObjectImpl& object) {
    const auto* instance = fv::detail::dynamicCast<const Instance>(&object);
    return instance != nullptr ? instance->description().name()
                               : object.getClassInfo().getClassIdentifier().getString();
}

/// Members of enumerations have no properties: their class and their name are what they are.
bool sameMember(const ObjectImpl* a, const ObjectImpl* b) {
    const char* left = a == nullptr ? nullptr : a->getEnumerationName();
    const char* right = b == nullptr ? nullptr : b->getEnumerationName();
    if (left == nullptr || right == nullptr) {
        return left == right;
    }
    return std::strcmp(left, right) == 0 && classNameOf(*a) == classNameOf(*b);
}

/// With a comparison, which arrays of this back-end alone outlive, it may go on later.
bool equalObjects(Comparison* comparison, const fv::ValueObject& a, const fv::ValueObject& b) {
    const auto* left = fv::detail::handleObject(a);
    const auto* right = fv::detail::handleObject(b);
    if (left != nullptr || right != nullptr) {
        return fv::detail::sameHandleObject(left, right);
    }
    if (!sameMember(Access::impl(a).get(), Access::impl(b).get())) {
        return false;
    }
    auto* mine = fv::detail::dynamicCast<Instance>(Access::impl(a).get());
    auto* others = fv::detail::dynamicCast<Instance>(Access::impl(b).get());
    if (comparison == nullptr || mine == nullptr || others == nullptr ||
        !mine->description().equals(others->description())) {
        return a == b;
    }
    return comparison->equalProperties(mine->properties(), others->properties());
}

} // namespace

bool ObjectArray::isEqual(const ArrayImpl* other) const { return Comparison::equal(*this, *other); }
bool ObjectArray::equalsIn(Comparison& comparison, const ArrayImpl& other) const {
    const auto& objects = static_cast<const ObjectArrayImpl&>(other);
    if (getDimensions() != objects.getDimensions()) { // object arrays are compared without a test before
        return false;
    }
    Comparison* const goingOn =
        fv::detail::dynamicCast<const ObjectArray>(&other) != nullptr ? &comparison : nullptr;
    try {
        for (std::size_t k = 0; k < elements_.size(); ++k) {
            if (!equalObjects(goingOn, fv::ValueObject(getElementObject(k)),
                              fv::ValueObject(objects.getElementObject(k)))) {
                return false;
            }
        }
        return true;
    } catch (...) {
        return false;
    }
}

ObjectArray::Element* ObjectArray::getElementAddress(std::size_t index, const std::string&, bool) {
    return &elements_[index];
}
void ObjectArray::setElementValue(std::size_t index, const std::string&, Element value) {
    requireClassOf(Access::impl(value).get());
    put(index, storable(std::move(value), properties_));
}
const ObjectArray::Element* ObjectArray::getTypedDataPtr() const { return elements_.data(); }

ClassInfo ObjectArray::getClassInfo() const {
    if (description_ != nullptr) {
        return classInfoOf(*description_);
    }
    const auto first = std::find_if(elements_.begin(), elements_.end(),
                                    [](const Element& element) { return Access::impl(element) != nullptr; });
    return first == elements_.end() ? classInfoOf(*classOfProperties_) : Access::impl(*first)->getClassInfo();
}

bool ObjectArray::isHeterogeneous() const {
    if (description_ != nullptr) {
        return false;
    }
    const Instance* first = nullptr;
    for (std::size_t k = 0; k < elements_.size(); ++k) {
        const Instance* object = objectIn(k);
        if (object != nullptr && first != nullptr && !object->description().equals(first->description())) {
            return true;
        }
        first = first == nullptr ? object : first;
    }
    return false;
}

fv::Array ObjectArray::getArrayProperty(VexaPropertyIdentifier id) const {
    return properties_.value(properties_.placeOf(id));
}
data::detail::ReferenceImpl* ObjectArray::getArrayPropertyReference(VexaPropertyIdentifier id) {
    return properties_.reference(properties_.placeOf(id));
}
ForwardIteratorImpl* ObjectArray::beginArrayProp() { return properties_.iteratorAt(0); }
ForwardIteratorImpl* ObjectArray::endArrayProp() { return properties_.iteratorAt(numOfArrayProperties()); }
ForwardIteratorImpl* ObjectArray::cbeginArrayProp() const { return properties_.iteratorAt(0); }
ForwardIteratorImpl* ObjectArray::cendArrayProp() const {
    return properties_.iteratorAt(numOfArrayProperties());
}
bool ObjectArray::hasArrayProperty(const VexaPropertyIdentifier& id) const { return properties_.has(id); }
std::size_t ObjectArray::numOfArrayProperties() const { return properties_.numberOfPlaces(); }
std::vector<std::size_t> ObjectArray::getExternalDimensions() const {
    return externalDimensions_.value_or(getDimensions());
}
bool ObjectArray::isExternalDimensionsSet() const { return externalDimensions_.has_value(); }
std::vector<std::string> ObjectArray::getExternalRepresentationArrayPropertyNames() const {
    return properties_.list().externalNames();
}

fv::Array ObjectArray::getElementProperty(std::size_t index, VexaPropertyIdentifier id) const {
    const ObjectImpl* object = Access::impl(elements_[index]).get();
    if (object == nullptr) {
        throw UnknownPropertyException(id.getExternalPropertyName(), {});
    }
    return fv::Array(object->getProperty(std::move(id)));
}

void ObjectArray::requireClassOf(const ObjectImpl* object) const {
    if (description_ == nullptr || object == nullptr) {
        return;
    }
    const auto* instance = fv::detail::dynamicCast<const Instance>(object);
    if (instance == nullptr || !instance->description().equals(*description_)) {
        throw WrongClassException(instance == nullptr ? std::string() : instance->description().name(),
                                  description_->name());
    }
}

void ObjectArray::setElementObject(std::size_t index, ObjectImpl* object) {
    requireClassOf(object);
    if (object != nullptr) {
        object->retain();
    }
    put(index, storable(Element(object), properties_));
}
ObjectImpl* ObjectArray::getElementObject(std::size_t index) const {
    ObjectImpl* object = Access::impl(elements_[index]).get();
    if (object != nullptr) {
        object->retain();
    }
    return object;
}
ForwardIteratorImpl* ObjectArray::beginElementProperties(std::size_t index) {
    ObjectImpl* object = separate(index);
    return object == nullptr ? noProperties() : object->begin();
}
ForwardIteratorImpl* ObjectArray::endElementProperties(std::size_t index) {
    ObjectImpl* object = separate(index);
    return object == nullptr ? noProperties() : object->end();
}
ForwardIteratorImpl* ObjectArray::noProperties() { return properties_.iteratorAt(numOfArrayProperties()); }

bool ObjectArray::isEqualArrayProperties(const ArrayImpl* other) const {
    const auto* objects = fv::detail::dynamicCast<const ObjectArray>(other);
    return objects != nullptr && properties_.equals(objects->properties_);
}

Instance* ObjectArray::objectIn(std::size_t index) const noexcept {
    return fv::detail::dynamicCast<Instance>(Access::impl(elements_[index]).get());
}
ObjectImpl* ObjectArray::separate(std::size_t index) {
    if (Access::impl(elements_[index]) != nullptr) {
        Access::unshare(elements_[index]);
        setHeld(elements_[index]);
    }
    return Access::impl(elements_[index]).get();
}
void ObjectArray::put(std::size_t index, Element object) {
    setHeld(object);
    elements_[index] = std::move(object);
}
void ObjectArray::setHeld(const Element& object) noexcept {
    if (auto* instance = fv::detail::dynamicCast<Instance>(Access::impl(object).get())) {
        instance->properties().setHeld();
    }
}

void setExternalDimensions(fv::ValueObjectArray& array, std::vector<std::size_t> dimensions) {
    Access::unshare(array);
    auto* objects = fv::detail::dynamicCast<ObjectArray>(Access::impl(array).get());
    if (objects == nullptr) {
        fv::detail::raise<fv::InvalidArrayTypeException>();
    }
    objects->setExternalDimensions(std::move(dimensions));
}

} // namespace vexa::client
