// Doubles of objects, arrays of objects and class descriptions: every operation is passed on to those of
// another back-end, and can be overridden. Reserved operations, which nobody calls, are not.
#pragma once

#include <foundation/vexadata/ClassInfo.hpp>
#include <foundation/vexadata/Identifiers.hpp>
#include <foundation/vexadata/Object.hpp>
#include <vexa/data/impl/ClassInfoImpl.hpp>
#include <vexa/data/impl/ObjectArrayImpl.hpp>
#include <vexa/data/impl/ObjectImpl.hpp>
#include <vexa/testing/ForwardingArrays.hpp>

#include <cstddef>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace vexa::testing {

using fv::VexaPropertyIdentifier;
using vexa::data::impl::ClassInfoImpl;
using vexa::data::impl::HandleObjectRefImpl;
using vexa::data::impl::ObjectArrayImpl;
using vexa::data::impl::ObjectImpl;

/// An object, and the base of those with reference semantics.
class ForwardingObject : public ObjectImpl, public Double<ObjectImpl> {
public:
    /// Takes over the one reference to `inner`.
    explicit ForwardingObject(Inner<ObjectImpl> inner, std::shared_ptr<Hook> hook = nullptr)
        : Double(std::move(inner), std::move(hook)) {}

    ObjectImpl* sharedCopy() const override {
        return given(wrapCopy(Inner<ObjectImpl>(passOn("sharedCopy").sharedCopy())));
    }
    const char* getEnumerationName() const override {
        return given(passOn("getEnumerationName").getEnumerationName());
    }
    fv::ClassInfo getClassInfo() const override { return passOn("getClassInfo").getClassInfo(); }
    std::shared_ptr<ArrayImpl> getProperty(VexaPropertyIdentifier id) const override {
        return given(passOn("getProperty").getProperty(std::move(id)));
    }
    ReferenceImpl* getPropertyReference(VexaPropertyIdentifier id) override {
        prepareWrite();
        return given(passOn("getPropertyReference").getPropertyReference(std::move(id)));
    }
    ForwardIteratorImpl* begin() override {
        prepareWrite();
        return given(passOn("begin").begin());
    }
    ForwardIteratorImpl* end() override {
        prepareWrite();
        return given(passOn("end").end());
    }
    ForwardIteratorImpl* cbegin() const override { return given(std::as_const(passOn("cbegin")).cbegin()); }
    ForwardIteratorImpl* cend() const override { return given(std::as_const(passOn("cend")).cend()); }
    bool hasProperty(const VexaPropertyIdentifier& id) const override {
        return passOn("hasProperty").hasProperty(id);
    }
    std::size_t numOfProperties() const override { return passOn("numOfProperties").numOfProperties(); }
    std::vector<std::string> getExternalRepresentationPropertyNames() const override {
        return passOn("getExternalRepresentationPropertyNames").getExternalRepresentationPropertyNames();
    }

protected:
    /// Before every way to write, as for arrays.
    virtual void prepareWrite() { separate(); }
    /// What `sharedCopy` gives around a copy of the inner object.
    virtual ObjectImpl* wrapCopy(Inner<ObjectImpl> copy) const {
        return new ForwardingObject(std::move(copy), hook());
    }
};

/// An object with reference semantics, over one that has the second interface too.
class ForwardingHandleObject : public ForwardingObject, public HandleObjectRefImpl {
public:
    using ForwardingObject::ForwardingObject;

    vexa::data::impl::ZVMID getZVMID() const override { return handle("getZVMID").getZVMID(); }
    long getId() const override { return handle("getId").getId(); }
    void addReference() const override { handle("addReference").addReference(); }

protected:
    ObjectImpl* wrapCopy(Inner<ObjectImpl> copy) const override {
        return new ForwardingHandleObject(std::move(copy), hook());
    }

private:
    HandleObjectRefImpl& handle(const char* name) const {
        return dynamic_cast<HandleObjectRefImpl&>(passOn(name));
    }
};

/// Arrays of objects.
class ForwardingObjects
    : public ForwardingOverReferences<ForwardingTypedBase<fv::HandleObjectRef, ObjectArrayImpl>> {
public:
    using ForwardingOverReferences::ForwardingOverReferences;

    void setElementValue(std::size_t index, const std::string& fieldName,
                         fv::HandleObjectRef value) override {
        typed("setElementValue", index, fieldName).setElementValue(index, fieldName, std::move(value));
    }
    fv::ClassInfo getClassInfo() const override { return typed("getClassInfo").getClassInfo(); }
    bool isHeterogeneous() const override { return typed("isHeterogeneous").isHeterogeneous(); }
    fv::Array getArrayProperty(VexaPropertyIdentifier id) const override {
        return typed("getArrayProperty").getArrayProperty(std::move(id));
    }
    ReferenceImpl* getArrayPropertyReference(VexaPropertyIdentifier id) override {
        prepareWrite();
        return given(typed("getArrayPropertyReference").getArrayPropertyReference(std::move(id)));
    }
    ForwardIteratorImpl* beginArrayProp() override {
        prepareWrite();
        return given(typed("beginArrayProp").beginArrayProp());
    }
    ForwardIteratorImpl* endArrayProp() override {
        prepareWrite();
        return given(typed("endArrayProp").endArrayProp());
    }
    ForwardIteratorImpl* cbeginArrayProp() const override {
        return given(std::as_const(typed("cbeginArrayProp")).cbeginArrayProp());
    }
    ForwardIteratorImpl* cendArrayProp() const override {
        return given(std::as_const(typed("cendArrayProp")).cendArrayProp());
    }
    bool hasArrayProperty(const VexaPropertyIdentifier& id) const override {
        return typed("hasArrayProperty").hasArrayProperty(id);
    }
    std::size_t numOfArrayProperties() const override {
        return typed("numOfArrayProperties").numOfArrayProperties();
    }
    std::vector<std::size_t> getExternalDimensions() const override {
        return typed("getExternalDimensions").getExternalDimensions();
    }
    bool isExternalDimensionsSet() const override {
        return typed("isExternalDimensionsSet").isExternalDimensionsSet();
    }
    std::vector<std::string> getExternalRepresentationArrayPropertyNames() const override {
        return typed("getExternalRepresentationArrayPropertyNames")
            .getExternalRepresentationArrayPropertyNames();
    }
    fv::Array getElementProperty(std::size_t index, VexaPropertyIdentifier id) const override {
        return typed("getElementProperty", index).getElementProperty(index, std::move(id));
    }
    void setElementObject(std::size_t index, ObjectImpl* object) override {
        typed("setElementObject", index).setElementObject(index, ForwardingObject::below(object));
    }
    ObjectImpl* getElementObject(std::size_t index) const override {
        return given(typed("getElementObject", index).getElementObject(index));
    }
    ForwardIteratorImpl* beginElementProperties(std::size_t index) override {
        return given(typed("beginElementProperties", index).beginElementProperties(index));
    }
    ForwardIteratorImpl* endElementProperties(std::size_t index) override {
        return given(typed("endElementProperties", index).endElementProperties(index));
    }
    bool isEqualArrayProperties(const ArrayImpl* other) const override {
        return typed("isEqualArrayProperties").isEqualArrayProperties(below(other));
    }

protected:
    ArrayImpl* wrapCopy(Inner<ArrayImpl> copy) const override {
        return new ForwardingObjects(std::move(copy), hook());
    }
};

/// A class description.
class ForwardingClass : public ClassInfoImpl, public Double<ClassInfoImpl> {
public:
    /// Takes over the one reference to `inner`.
    explicit ForwardingClass(Inner<ClassInfoImpl> inner, std::shared_ptr<Hook> hook = nullptr)
        : Double(std::move(inner), std::move(hook)) {}

    std::shared_ptr<vexa::data::impl::VexaClassIdentifierImpl> getClassIdentifier() const override {
        return given(passOn("getClassIdentifier").getClassIdentifier());
    }
    ForwardIteratorImpl* beginProperties() const override {
        return given(passOn("beginProperties").beginProperties());
    }
    ForwardIteratorImpl* endProperties() const override {
        return given(passOn("endProperties").endProperties());
    }
    ForwardIteratorImpl* beginArrayProperties() const override {
        return given(passOn("beginArrayProperties").beginArrayProperties());
    }
    ForwardIteratorImpl* endArrayProperties() const override {
        return given(passOn("endArrayProperties").endArrayProperties());
    }
    ForwardIteratorImpl* beginSuperclasses() const override {
        return given(passOn("beginSuperclasses").beginSuperclasses());
    }
    ForwardIteratorImpl* endSuperclasses() const override {
        return given(passOn("endSuperclasses").endSuperclasses());
    }
    std::size_t getNumberOfProperties() const override {
        return passOn("getNumberOfProperties").getNumberOfProperties();
    }
    std::size_t getNumberOfArrayProperties() const override {
        return passOn("getNumberOfArrayProperties").getNumberOfArrayProperties();
    }
    void updateVexaPropertyIdentifiersClassInfo(fv::ClassInfo& classInfo) override {
        passOn("updateVexaPropertyIdentifiersClassInfo").updateVexaPropertyIdentifiersClassInfo(classInfo);
    }
};

} // namespace vexa::testing
