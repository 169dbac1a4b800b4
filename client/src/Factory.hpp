// The factory of the embedded back-end.
#pragma once

#include <vexa/data/impl/ArrayFactoryImpl.hpp>

namespace vexa::client {

/// Makes dense arrays of every primitive kind, strings, cells, structs and enumerations. Other kinds throw
/// InvalidArrayTypeException.
class Factory final : public data::impl::ArrayFactoryImpl {
public:
    ~Factory() override;

    data::impl::ArrayImpl* createArrayImpl(foundation::vexadata::ArrayType type,
                                           Dimensions dimensions) override;
    data::impl::ArrayImpl* createArrayWithDataImpl(foundation::vexadata::ArrayType type,
                                                   Dimensions dimensions, const void* data,
                                                   std::size_t count) override;
    data::impl::ArrayImpl* createStructArrayImpl(Dimensions dimensions, Names fieldNames) override;
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
