// A back-end over another one: a factory that puts doubles around all that the other one makes.
#pragma once

#include <foundation/vexadata/ArrayFactory.hpp>
#include <foundation/vexadata/Traits.hpp>
#include <vexa/data/impl/ArrayFactoryImpl.hpp>
#include <vexa/testing/ForwardingArrays.hpp>
#include <vexa/testing/ForwardingObjects.hpp>

#include <complex>
#include <cstddef>
#include <memory>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace vexa::testing {

using vexa::data::impl::ArrayFactoryImpl;
using vexa::data::impl::Buffer;

/// The classes in which a ForwardingFactory wraps what the inner factory makes. Another set derives from this
/// one and names its own.
struct ForwardingKinds {
    /// One class for each kind of what a factory makes.
    template <class T>
    using Numbers = ForwardingNumbers<T>;
    using Cells = ForwardingCells;
    using Strings = ForwardingStrings;
    using Structs = ForwardingStructs;
    using Enums = ForwardingEnums;
    using Sparse = ForwardingSparse;
    using Objects = ForwardingObjects;
    using Object = ForwardingObject;
    using HandleObject = ForwardingHandleObject;
    using Class = ForwardingClass;
};

/// Puts the double of its kind around an array whose one reference it takes over. An empty array of no type
/// stays as it is, and null stays null.
template <class Kinds = ForwardingKinds>
ArrayImpl* wrapArray(ArrayImpl* made, std::shared_ptr<Hook> hook = nullptr) {
    if (made == nullptr) {
        return nullptr;
    }
    Inner<ArrayImpl> array(made);
    switch (made->getType()) {
#define VEXADATA_ELEMENT(T)                                                                                  \
    case fv::detail::arrayTypeOf<T>:                                                                         \
        return new typename Kinds::template Numbers<T>(std::move(array), std::move(hook));
#include <foundation/vexadata/detail/PrimitiveTypes.inc>
    case fv::ArrayType::CELL:
        return new typename Kinds::Cells(std::move(array), std::move(hook));
    case fv::ArrayType::STRING:
        return new typename Kinds::Strings(std::move(array), std::move(hook));
    case fv::ArrayType::STRUCT:
        return new typename Kinds::Structs(std::move(array), std::move(hook));
    case fv::ArrayType::ENUM:
        return new typename Kinds::Enums(std::move(array), std::move(hook));
    case fv::ArrayType::SPARSE_LOGICAL:
    case fv::ArrayType::SPARSE_DOUBLE:
    case fv::ArrayType::SPARSE_COMPLEX_DOUBLE:
        return new typename Kinds::Sparse(std::move(array), std::move(hook));
    case fv::ArrayType::OBJECT:
    case fv::ArrayType::VALUE_OBJECT:
    case fv::ArrayType::HANDLE_OBJECT_REF:
        return new typename Kinds::Objects(std::move(array), std::move(hook));
    default:
        return array.detach();
    }
}

/// The factory. The hook sees its operations too. It is for a factory function, or for a handle of its own:
///
///     ArrayFactory factory = forwardingFactory(hook);
template <class Kinds = ForwardingKinds>
class ForwardingFactory : public ArrayFactoryImpl, public Double<ArrayFactoryImpl> {
public:
    /// Takes over the one reference to `inner`.
    explicit ForwardingFactory(Inner<ArrayFactoryImpl> inner, std::shared_ptr<Hook> hook = nullptr)
        : Double(std::move(inner), std::move(hook)) {}

    ArrayImpl* createArrayImpl(fv::ArrayType type, Dimensions dimensions) override {
        return wrap(passOn("createArrayImpl", type, dimensions).createArrayImpl(type, std::move(dimensions)));
    }
    ArrayImpl* createSparseLogicalImpl(Dimensions dimensions, std::size_t count, Buffer<bool[]> values,
                                       Buffer<std::size_t[]> rows, Buffer<std::size_t[]> columns) override {
        return wrap(passOn("createSparseLogicalImpl")
                        .createSparseLogicalImpl(std::move(dimensions), count, std::move(values),
                                                 std::move(rows), std::move(columns)));
    }
    ArrayImpl* createSparseDoubleImpl(Dimensions dimensions, std::size_t count, Buffer<double[]> values,
                                      Buffer<std::size_t[]> rows, Buffer<std::size_t[]> columns) override {
        return wrap(passOn("createSparseDoubleImpl")
                        .createSparseDoubleImpl(std::move(dimensions), count, std::move(values),
                                                std::move(rows), std::move(columns)));
    }
    ArrayImpl* createSparseComplexDoubleImpl(Dimensions dimensions, std::size_t count,
                                             Buffer<std::complex<double>[]> values,
                                             Buffer<std::size_t[]> rows,
                                             Buffer<std::size_t[]> columns) override {
        return wrap(passOn("createSparseComplexDoubleImpl")
                        .createSparseComplexDoubleImpl(std::move(dimensions), count, std::move(values),
                                                       std::move(rows), std::move(columns)));
    }
    ArrayImpl* createVexaSparseLogicalImpl(Dimensions dimensions, std::size_t count, Buffer<bool[]> values,
                                           Buffer<std::size_t[]> rows,
                                           Buffer<std::size_t[]> starts) override {
        return wrap(passOn("createVexaSparseLogicalImpl")
                        .createVexaSparseLogicalImpl(std::move(dimensions), count, std::move(values),
                                                     std::move(rows), std::move(starts)));
    }
    ArrayImpl* createVexaSparseDoubleImpl(Dimensions dimensions, std::size_t count, Buffer<double[]> values,
                                          Buffer<std::size_t[]> rows, Buffer<std::size_t[]> starts) override {
        return wrap(passOn("createVexaSparseDoubleImpl")
                        .createVexaSparseDoubleImpl(std::move(dimensions), count, std::move(values),
                                                    std::move(rows), std::move(starts)));
    }
    ArrayImpl* createVexaSparseComplexDoubleImpl(Dimensions dimensions, std::size_t count,
                                                 Buffer<std::complex<double>[]> values,
                                                 Buffer<std::size_t[]> rows,
                                                 Buffer<std::size_t[]> starts) override {
        return wrap(passOn("createVexaSparseComplexDoubleImpl")
                        .createVexaSparseComplexDoubleImpl(std::move(dimensions), count, std::move(values),
                                                           std::move(rows), std::move(starts)));
    }
    ArrayImpl* createArrayWithDataImpl(fv::ArrayType type, Dimensions dimensions, const void* data,
                                       std::size_t count) override {
        return wrap(passOn("createArrayWithDataImpl", type, dimensions, count)
                        .createArrayWithDataImpl(type, std::move(dimensions), data, count));
    }
    ArrayImpl* createStructArrayImpl(Dimensions dimensions, Names fieldNames) override {
        return wrap(passOn("createStructArrayImpl")
                        .createStructArrayImpl(std::move(dimensions), std::move(fieldNames)));
    }
    ClassInfoImpl* createClassInfoImpl(const fv::VexaClassIdentifier& name,
                                       const std::vector<VexaPropertyIdentifier>& properties,
                                       const std::vector<VexaPropertyIdentifier>& arrayProperties,
                                       const std::vector<fv::ClassInfo>& superclasses) override {
        std::vector<fv::ClassInfo> inner;
        inner.reserve(superclasses.size());
        for (const fv::ClassInfo& superclass : superclasses) {
            ClassInfoImpl* description = ForwardingClass::below(fv::detail::Access::impl(superclass).get());
            description->retain();
            inner.emplace_back(description);
        }
        return given(new typename Kinds::Class(
            Inner<ClassInfoImpl>(
                passOn("createClassInfoImpl").createClassInfoImpl(name, properties, arrayProperties, inner)),
            hook()));
    }
    ObjectImpl* createValueObjectImpl(ClassInfoImpl* classInfo) override {
        return given(new typename Kinds::Object(
            Inner<ObjectImpl>(
                passOn("createValueObjectImpl").createValueObjectImpl(ForwardingClass::below(classInfo))),
            hook()));
    }
    ArrayImpl* createValueObjectScalarImpl(ObjectImpl* object) override {
        return wrap(passOn("createValueObjectScalarImpl")
                        .createValueObjectScalarImpl(ForwardingObject::below(object)));
    }
    ArrayImpl* createValueObjectArrayImpl(Dimensions dimensions, ClassInfoImpl* classInfo) override {
        return wrap(
            passOn("createValueObjectArrayImpl")
                .createValueObjectArrayImpl(std::move(dimensions), ForwardingClass::below(classInfo)));
    }
    ObjectImpl* createHandleObjectRefImpl(vexa::data::impl::ZVMID engine, long id) override {
        return given(new typename Kinds::HandleObject(
            Inner<ObjectImpl>(passOn("createHandleObjectRefImpl").createHandleObjectRefImpl(engine, id)),
            hook()));
    }
    ObjectImpl* createEnumerationObjectImpl(const std::string& className,
                                            const std::string& member) override {
        return given(new typename Kinds::Object(
            Inner<ObjectImpl>(
                passOn("createEnumerationObjectImpl").createEnumerationObjectImpl(className, member)),
            hook()));
    }
    ArrayImpl* createEnumArrayImpl(Dimensions dimensions, std::string className, Names members) override {
        return wrap(
            passOn("createEnumArrayImpl")
                .createEnumArrayImpl(std::move(dimensions), std::move(className), std::move(members)));
    }
    void createBufferImpl(void*& data, void (*&deleter)(void*), fv::ArrayType type,
                          std::size_t count) override {
        passOn("createBufferImpl", type, count).createBufferImpl(data, deleter, type, count);
    }
    void createUntypedBufferImpl(void*& data, void (*&deleter)(void*), std::size_t count) override {
        passOn("createUntypedBufferImpl", count).createUntypedBufferImpl(data, deleter, count);
    }
    ArrayImpl* createArrayFromBufferImpl(Dimensions dimensions, fv::ArrayType type, Buffer<void> buffer,
                                         MemoryLayout layout) override {
        return wrap(passOn("createArrayFromBufferImpl", dimensions, type, layout)
                        .createArrayFromBufferImpl(std::move(dimensions), type, std::move(buffer), layout));
    }

private:
    ArrayImpl* wrap(ArrayImpl* made) const { return given(wrapArray<Kinds>(made, hook())); }
};

/// A handle to a forwarding factory in front of the default one of this process.
/// @throws std::logic_error when there is no default factory
template <class Kinds = ForwardingKinds>
fv::ArrayFactory forwardingFactory(std::shared_ptr<Hook> hook = nullptr) {
    Inner<ArrayFactoryImpl> inner(ArrayFactoryImpl::getDefaultFactory());
    if (inner == nullptr) {
        throw std::logic_error("vexa::testing::forwardingFactory: no factory is registered");
    }
    auto* factory = new ForwardingFactory<Kinds>(std::move(inner), std::move(hook));
    return fv::ArrayFactory(fv::detail::Access::createSharedPtr<ArrayFactoryImpl>(factory));
}

} // namespace vexa::testing
