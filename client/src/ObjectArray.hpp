// Object arrays.
#pragma once

#include "ColumnMajorArray.hpp"
#include "Comparison.hpp"
#include "Instance.hpp"
#include "PropertySet.hpp"

#include <foundation/vexadata/Object.hpp>
#include <vexa/data/impl/ObjectArrayImpl.hpp>

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace vexa::client {

using data::impl::ObjectImpl;

/// Objects in column-major order. With a class, all objects are of this class and the array has its array
/// properties; without, objects of any class may stand side by side. Copies share objects; an object that
/// others share is copied before it changes.
class ObjectArray final : public ColumnMajorArray<data::impl::ObjectArrayImpl>,
                          public Container,
                          public Comparable {
    using Element = foundation::vexadata::HandleObjectRef;

public:
    /// Of any classes, without objects.
    ObjectArray(ArrayType type, Dimensions dimensions);
    /// Of one class, `object` in every element.
    ObjectArray(Dimensions dimensions, std::shared_ptr<const ClassDescription> description,
                const Element& object);
    ~ObjectArray() override;

    ArrayImpl* sharedCopy() const override;
    data::detail::IteratorImpl* beginIterator(void* unused, bool writable) override;
    data::detail::IteratorImpl* endIterator(void* unused, bool writable) override;
    ArrayType getType() const override;
    /// Value objects are compared by their properties, members of enumerations by class and name, handle
    /// objects by identity. The other array may have other dimensions.
    bool isEqual(const ArrayImpl* other) const override;
    bool equalsIn(Comparison& comparison, const ArrayImpl& other) const override;
    Element* getElementAddress(std::size_t index, const std::string& fieldName, bool forWrite) override;
    /// @throws WrongClassException
    void setElementValue(std::size_t index, const std::string& fieldName, Element value) override;
    const Element* getTypedDataPtr() const override;

    /// The class of the array; without one, that of the first object; without objects, a class without name.
    ClassInfo getClassInfo() const override;
    bool isHeterogeneous() const override;
    foundation::vexadata::Array getArrayProperty(VexaPropertyIdentifier id) const override;
    data::detail::ReferenceImpl* getArrayPropertyReference(VexaPropertyIdentifier id) override;
    data::detail::ForwardIteratorImpl* beginArrayProp() override;
    data::detail::ForwardIteratorImpl* endArrayProp() override;
    data::detail::ForwardIteratorImpl* cbeginArrayProp() const override;
    data::detail::ForwardIteratorImpl* cendArrayProp() const override;
    bool hasArrayProperty(const VexaPropertyIdentifier& id) const override;
    std::size_t numOfArrayProperties() const override;
    std::vector<std::size_t> getExternalDimensions() const override;
    bool isExternalDimensionsSet() const override;
    std::vector<std::string> getExternalRepresentationArrayPropertyNames() const override;
    /// @throws UnknownPropertyException, for an element without object too
    foundation::vexadata::Array getElementProperty(std::size_t index,
                                                   VexaPropertyIdentifier id) const override;
    /// @throws WrongClassException
    void setElementObject(std::size_t index, ObjectImpl* object) override;
    ObjectImpl* getElementObject(std::size_t index) const override;
    /// An empty range for an element without object.
    data::detail::ForwardIteratorImpl* beginElementProperties(std::size_t index) override;
    data::detail::ForwardIteratorImpl* endElementProperties(std::size_t index) override;
    bool isEqualArrayProperties(const ArrayImpl* other) const override;

    void setExternalDimensions(std::vector<std::size_t> dimensions) {
        externalDimensions_ = std::move(dimensions);
    }
    Contents contents() noexcept override { return {properties_, elements_}; }
    /// The object in an element; null when there is none, or one of another back-end.
    Instance* objectIn(std::size_t index) const noexcept;
    /// Copies the object in an element when others share it, since iterators write into it; null for an
    /// element without object.
    ObjectImpl* separate(std::size_t index);
    void put(std::size_t index, Element object);

private:
    ObjectArray(const ObjectArray& other);

    static void setHeld(const Element& object) noexcept;
    void requireClassOf(const ObjectImpl* object) const;
    /// An iterator that is at its end.
    data::detail::ForwardIteratorImpl* noProperties();

    ArrayType type_;
    std::shared_ptr<const ClassDescription> description_; // null for objects of any class
    std::vector<Element> elements_;
    std::shared_ptr<const ClassDescription> classOfProperties_; // without properties for objects of any class
    PropertySet properties_;
    std::optional<std::vector<std::size_t>> externalDimensions_;
};

} // namespace vexa::client
