// The factory of the embedded back-end.
#pragma once

#include <vexa/data/impl/ArrayFactoryImpl.hpp>

#include <complex>
#include <cstddef>

namespace vexa::client {

/// Makes every kind of array, classes and objects. An unknown kind throws InvalidArrayTypeException.
class Factory final : public data::impl::ArrayFactoryImpl {
public:
    ~Factory() override;

    data::impl::ArrayImpl* createArrayImpl(foundation::vexadata::ArrayType type,
                                           Dimensions dimensions) override;
    data::impl::ArrayImpl* createSparseLogicalImpl(Dimensions dimensions, std::size_t count,
                                                   data::impl::Buffer<bool[]> values,
                                                   data::impl::Buffer<std::size_t[]> rows,
                                                   data::impl::Buffer<std::size_t[]> columns) override;
    data::impl::ArrayImpl* createSparseDoubleImpl(Dimensions dimensions, std::size_t count,
                                                  data::impl::Buffer<double[]> values,
                                                  data::impl::Buffer<std::size_t[]> rows,
                                                  data::impl::Buffer<std::size_t[]> columns) override;
    data::impl::ArrayImpl* createSparseComplexDoubleImpl(Dimensions dimensions, std::size_t count,
                                                         data::impl::Buffer<std::complex<double>[]> values,
                                                         data::impl::Buffer<std::size_t[]> rows,
                                                         data::impl::Buffer<std::size_t[]> columns) override;
    data::impl::ArrayImpl* createVexaSparseLogicalImpl(Dimensions dimensions, std::size_t count,
                                                       data::impl::Buffer<bool[]> values,
                                                       data::impl::Buffer<std::size_t[]> rows,
                                                       data::impl::Buffer<std::size_t[]> starts) override;
    data::impl::ArrayImpl* createVexaSparseDoubleImpl(Dimensions dimensions, std::size_t count,
                                                      data::impl::Buffer<double[]> values,
                                                      data::impl::Buffer<std::size_t[]> rows,
                                                      data::impl::Buffer<std::size_t[]> starts) override;
    data::impl::ArrayImpl* createVexaSparseComplexDoubleImpl(
        Dimensions dimensions, std::size_t count, data::impl::Buffer<std::complex<double>[]> values,
        data::impl::Buffer<std::size_t[]> rows, data::impl::Buffer<std::size_t[]> starts) override;
    data::impl::ArrayImpl* createArrayWithDataImpl(foundation::vexadata::ArrayType type,
                                                   Dimensions dimensions, const void* data,
                                                   std::size_t count) override;
    data::impl::ArrayImpl* createStructArrayImpl(Dimensions dimensions, Names fieldNames) override;
    data::impl::ClassInfoImpl* createClassInfoImpl(
        const foundation::vexadata::VexaClassIdentifier& name,
        const std::vector<foundation::vexadata::VexaPropertyIdentifier>& properties,
        const std::vector<foundation::vexadata::VexaPropertyIdentifier>& arrayProperties,
        const std::vector<foundation::vexadata::ClassInfo>& superclasses) override;
    data::impl::ObjectImpl* createValueObjectImpl(data::impl::ClassInfoImpl* classInfo) override;
    data::impl::ArrayImpl* createValueObjectScalarImpl(data::impl::ObjectImpl* object) override;
    data::impl::ArrayImpl* createValueObjectArrayImpl(Dimensions dimensions,
                                                      data::impl::ClassInfoImpl* classInfo) override;
    data::impl::ObjectImpl* createHandleObjectRefImpl(data::impl::ZVMID engine, long id) override;
    data::impl::ObjectImpl* createEnumerationObjectImpl(const std::string& className,
                                                        const std::string& member) override;
    data::impl::ArrayImpl* createEnumArrayImpl(Dimensions dimensions, std::string className,
                                               Names members) override;
    void createBufferImpl(void*& data, void (*&deleter)(void*), foundation::vexadata::ArrayType type,
                          std::size_t count) override;
    void createUntypedBufferImpl(void*& data, void (*&deleter)(void*), std::size_t count) override;
    data::impl::ArrayImpl* createArrayFromBufferImpl(Dimensions dimensions,
                                                     foundation::vexadata::ArrayType type,
                                                     data::impl::Buffer<void> buffer,
                                                     data::MemoryLayout layout) override;
};

} // namespace vexa::client
