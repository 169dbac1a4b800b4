// The factory of the back-end in ForwardingBackEnd.hpp.
#pragma once

#include "support/ForwardingBackEnd.hpp"

#include <complex>
#include <string>
#include <utility>
#include <vector>

namespace support {

/// The classes in which a ForwardingBackEndFactory wraps what the inner factory makes. Another set derives
/// from this one and names its own.
struct ForwardingKinds {
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

template <class Kinds = ForwardingKinds>
class ForwardingBackEndFactory : public ArrayFactoryImpl {
public:
    /// Takes over the one reference to `inner`.
    explicit ForwardingBackEndFactory(Inner<ArrayFactoryImpl> inner) : inner_(std::move(inner)) {}

    ArrayFactoryImpl& wrapped() const noexcept { return *inner_; }

    /// Puts the wrapper of its kind around an array whose one reference it takes over.
    static ArrayImpl* wrap(ArrayImpl* made) {
        if (made == nullptr) {
            return nullptr;
        }
        Inner<ArrayImpl> array(made);
        switch (made->getType()) {
#define VEXADATA_ELEMENT(T)                                                                                  \
    case fv::detail::arrayTypeOf<T>:                                                                         \
        return new typename Kinds::template Numbers<T>(std::move(array));
#include <foundation/vexadata/detail/PrimitiveTypes.inc>
        case fv::ArrayType::CELL:
            return new typename Kinds::Cells(std::move(array));
        case fv::ArrayType::STRING:
            return new typename Kinds::Strings(std::move(array));
        case fv::ArrayType::STRUCT:
            return new typename Kinds::Structs(std::move(array));
        case fv::ArrayType::ENUM:
            return new typename Kinds::Enums(std::move(array));
        case fv::ArrayType::SPARSE_LOGICAL:
        case fv::ArrayType::SPARSE_DOUBLE:
        case fv::ArrayType::SPARSE_COMPLEX_DOUBLE:
            return new typename Kinds::Sparse(std::move(array));
        case fv::ArrayType::OBJECT:
        case fv::ArrayType::VALUE_OBJECT:
        case fv::ArrayType::HANDLE_OBJECT_REF:
            return new typename Kinds::Objects(std::move(array));
        default:
            return array.release();
        }
    }

    ArrayImpl* createArrayImpl(fv::ArrayType type, Dimensions dimensions) override {
        return given(wrap(inner_->createArrayImpl(type, std::move(dimensions))));
    }
    ArrayImpl* createSparseLogicalImpl(Dimensions dimensions, std::size_t count, Buffer<bool[]> values,
                                       Buffer<std::size_t[]> rows, Buffer<std::size_t[]> columns) override {
        return given(wrap(inner_->createSparseLogicalImpl(std::move(dimensions), count, std::move(values),
                                                          std::move(rows), std::move(columns))));
    }
    ArrayImpl* createSparseDoubleImpl(Dimensions dimensions, std::size_t count, Buffer<double[]> values,
                                      Buffer<std::size_t[]> rows, Buffer<std::size_t[]> columns) override {
        return given(wrap(inner_->createSparseDoubleImpl(std::move(dimensions), count, std::move(values),
                                                         std::move(rows), std::move(columns))));
    }
    ArrayImpl* createSparseComplexDoubleImpl(Dimensions dimensions, std::size_t count,
                                             Buffer<std::complex<double>[]> values,
                                             Buffer<std::size_t[]> rows,
                                             Buffer<std::size_t[]> columns) override {
        return given(wrap(inner_->createSparseComplexDoubleImpl(
            std::move(dimensions), count, std::move(values), std::move(rows), std::move(columns))));
    }
    ArrayImpl* createVexaSparseLogicalImpl(Dimensions dimensions, std::size_t count, Buffer<bool[]> values,
                                           Buffer<std::size_t[]> rows,
                                           Buffer<std::size_t[]> starts) override {
        return given(wrap(inner_->createVexaSparseLogicalImpl(std::move(dimensions), count, std::move(values),
                                                              std::move(rows), std::move(starts))));
    }
    ArrayImpl* createVexaSparseDoubleImpl(Dimensions dimensions, std::size_t count, Buffer<double[]> values,
                                          Buffer<std::size_t[]> rows, Buffer<std::size_t[]> starts) override {
        return given(wrap(inner_->createVexaSparseDoubleImpl(std::move(dimensions), count, std::move(values),
                                                             std::move(rows), std::move(starts))));
    }
    ArrayImpl* createVexaSparseComplexDoubleImpl(Dimensions dimensions, std::size_t count,
                                                 Buffer<std::complex<double>[]> values,
                                                 Buffer<std::size_t[]> rows,
                                                 Buffer<std::size_t[]> starts) override {
        return given(wrap(inner_->createVexaSparseComplexDoubleImpl(
            std::move(dimensions), count, std::move(values), std::move(rows), std::move(starts))));
    }
    void reservedOp8() override { inner_->reservedOp8(); }
    ArrayImpl* createArrayWithDataImpl(fv::ArrayType type, Dimensions dimensions, const void* data,
                                       std::size_t count) override {
        return given(wrap(inner_->createArrayWithDataImpl(type, std::move(dimensions), data, count)));
    }
    ArrayImpl* createStructArrayImpl(Dimensions dimensions, Names fieldNames) override {
        return given(wrap(inner_->createStructArrayImpl(std::move(dimensions), std::move(fieldNames))));
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
            Inner<ClassInfoImpl>(inner_->createClassInfoImpl(name, properties, arrayProperties, inner))));
    }
    ObjectImpl* createValueObjectImpl(ClassInfoImpl* classInfo) override {
        return given(new typename Kinds::Object(
            Inner<ObjectImpl>(inner_->createValueObjectImpl(ForwardingClass::below(classInfo)))));
    }
    ArrayImpl* createValueObjectScalarImpl(ObjectImpl* object) override {
        return given(wrap(inner_->createValueObjectScalarImpl(ForwardingObject::below(object))));
    }
    ArrayImpl* createValueObjectArrayImpl(Dimensions dimensions, ClassInfoImpl* classInfo) override {
        return given(wrap(
            inner_->createValueObjectArrayImpl(std::move(dimensions), ForwardingClass::below(classInfo))));
    }
    ObjectImpl* createHandleObjectRefImpl(vexa::data::impl::ZVMID engine, long id) override {
        return given(new typename Kinds::HandleObject(
            Inner<ObjectImpl>(inner_->createHandleObjectRefImpl(engine, id))));
    }
    ObjectImpl* createEnumerationObjectImpl(const std::string& className,
                                            const std::string& member) override {
        return given(new typename Kinds::Object(
            Inner<ObjectImpl>(inner_->createEnumerationObjectImpl(className, member))));
    }
    void reservedOp17() override { inner_->reservedOp17(); }
    void reservedOp18() override { inner_->reservedOp18(); }
    void reservedOp19() override { inner_->reservedOp19(); }
    ArrayImpl* createEnumArrayImpl(Dimensions dimensions, std::string className, Names members) override {
        return given(wrap(
            inner_->createEnumArrayImpl(std::move(dimensions), std::move(className), std::move(members))));
    }
    void reservedOp21() override { inner_->reservedOp21(); }
    void reservedOp22() override { inner_->reservedOp22(); }
    void createBufferImpl(void*& data, void (*&deleter)(void*), fv::ArrayType type,
                          std::size_t count) override {
        inner_->createBufferImpl(data, deleter, type, count);
    }
    void createUntypedBufferImpl(void*& data, void (*&deleter)(void*), std::size_t count) override {
        inner_->createUntypedBufferImpl(data, deleter, count);
    }
    ArrayImpl* createArrayFromBufferImpl(Dimensions dimensions, fv::ArrayType type, Buffer<void> buffer,
                                         MemoryLayout layout) override {
        return given(
            wrap(inner_->createArrayFromBufferImpl(std::move(dimensions), type, std::move(buffer), layout)));
    }

private:
    Inner<ArrayFactoryImpl> inner_;
};

} // namespace support
