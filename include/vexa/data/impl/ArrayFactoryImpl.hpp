// The interface of back-end factories, and their registration. Binary contract: each virtual operation keeps
// its slot; the destructor has slots 0 and 1.
#pragma once

#include <foundation/vexadata/ArrayType.hpp>
#include <foundation/vexadata/Forward.hpp>
#include <foundation/vexadata/ZVMID.hpp>
#include <vexa/data/detail/RefCounted.hpp>

#include <complex>
#include <cstddef>
#include <memory>
#include <string>
#include <vector>

namespace vexa::data::impl {

using foundation::vexadata::ArrayType;

/// A buffer and the function that frees it.
template <class T>
using Buffer = std::unique_ptr<T, void (*)(void*)>;

/// Makes arrays, objects and class descriptions. Every result carries one reference for the caller.
/// Dimensions arrive checked: at least two unless none, with a product that fits in 64 bits. A list, text or
/// buffer passed by value is the back-end's; what is passed by pointer is borrowed and has to be copied.
class VEXADATA_API ArrayFactoryImpl : public detail::RefCounted {
public:
    /// How lists are handed over.
    using Dimensions = std::vector<std::size_t>;
    using Names = std::vector<std::string>;

    ~ArrayFactoryImpl() override;

    /// Registers the engine's function. One is accepted for the life of the process, and one of stand-alone
    /// clients. Safe from any thread.
    /// @return true, also when the same function was there already
    /// @throws std::logic_error when another function is there; that one stays
    static bool registerVexaFactoryFunction(ArrayFactoryImpl* (*function)());
    /// Registers the function of stand-alone clients, in the same way.
    static bool registerClientFactoryFunction(ArrayFactoryImpl* (*function)());
    /// Calls the engine's function, else the client's; null when neither is registered. The result carries
    /// one reference for the caller.
    static ArrayFactoryImpl* getDefaultFactory();

    /// Slot 2. An array of zeros, empty cells, missing strings ... The type comes unchecked.
    virtual ArrayImpl* createArrayImpl(ArrayType type, Dimensions dimensions) = 0;
    /// Slots 3 to 5. Sparse matrices from `count` triplets in any order; the buffers hold values, rows
    /// and columns.
    virtual ArrayImpl* createSparseLogicalImpl(Dimensions dimensions, std::size_t count,
                                               Buffer<bool[]> values, Buffer<std::size_t[]> rows,
                                               Buffer<std::size_t[]> columns);
    virtual ArrayImpl* createSparseDoubleImpl(Dimensions dimensions, std::size_t count,
                                              Buffer<double[]> values, Buffer<std::size_t[]> rows,
                                              Buffer<std::size_t[]> columns);
    virtual ArrayImpl* createSparseComplexDoubleImpl(Dimensions dimensions, std::size_t count,
                                                     Buffer<std::complex<double>[]> values,
                                                     Buffer<std::size_t[]> rows,
                                                     Buffer<std::size_t[]> columns);
    /// Slots 6 to 8. Sparse matrices in compressed columns; `starts` holds one entry more than columns.
    virtual ArrayImpl* createVexaSparseLogicalImpl(Dimensions dimensions, std::size_t count,
                                                   Buffer<bool[]> values, Buffer<std::size_t[]> rows,
                                                   Buffer<std::size_t[]> starts);
    virtual ArrayImpl* createVexaSparseDoubleImpl(Dimensions dimensions, std::size_t count,
                                                  Buffer<double[]> values, Buffer<std::size_t[]> rows,
                                                  Buffer<std::size_t[]> starts);
    virtual ArrayImpl* createVexaSparseComplexDoubleImpl(Dimensions dimensions, std::size_t count,
                                                         Buffer<std::complex<double>[]> values,
                                                         Buffer<std::size_t[]> rows,
                                                         Buffer<std::size_t[]> starts);
    virtual void reservedOp8(); ///< slot 9, not called by this library
    /// Slot 10. An array with copies of `count` elements at `data`, in column-major order. What happens
    /// when `count` is not the product of the dimensions is the back-end's choice.
    virtual ArrayImpl* createArrayWithDataImpl(ArrayType type, Dimensions dimensions, const void* data,
                                               std::size_t count) = 0;
    virtual ArrayImpl* createStructArrayImpl(Dimensions dimensions, Names fieldNames); ///< slot 11
    /// Slot 12.
    virtual ClassInfoImpl* createClassInfoImpl(
        const foundation::vexadata::VexaClassIdentifier& name,
        const std::vector<foundation::vexadata::VexaPropertyIdentifier>& properties,
        const std::vector<foundation::vexadata::VexaPropertyIdentifier>& arrayProperties,
        const std::vector<foundation::vexadata::ClassInfo>& superclasses);
    virtual ObjectImpl* createValueObjectImpl(ClassInfoImpl* classInfo); ///< slot 13
    virtual ArrayImpl* createValueObjectScalarImpl(ObjectImpl* object);  ///< slot 14
    virtual ArrayImpl* createValueObjectArrayImpl(Dimensions dimensions,
                                                  ClassInfoImpl* classInfo); ///< slot 15
    virtual ObjectImpl* createHandleObjectRefImpl(ZVMID engine, long id);    ///< slot 16
    /// Slot 17. The member `member` of the enumeration class `className` as an object.
    virtual ObjectImpl* createEnumerationObjectImpl(const std::string& className, const std::string& member);
    virtual void reservedOp17(); ///< slot 18, not called by this library
    virtual void reservedOp18(); ///< slot 19, not called by this library
    virtual void reservedOp19(); ///< slot 20, not called by this library
    /// Slot 21. An enumeration array; `members` holds the member name of each element, or nothing.
    virtual ArrayImpl* createEnumArrayImpl(Dimensions dimensions, std::string className, Names members);
    virtual void reservedOp21(); ///< slot 22, not called by this library
    virtual void reservedOp22(); ///< slot 23, not called by this library
    /// Slot 24. Fills in a new buffer for `count` elements of a type and the function that frees it.
    /// Nobody expects zeros in it.
    virtual void createBufferImpl(void*& data, void (*&deleter)(void*), ArrayType type,
                                  std::size_t count) = 0;
    /// Slot 25. The same for `count` bytes.
    virtual void createUntypedBufferImpl(void*& data, void (*&deleter)(void*), std::size_t count) = 0;
    /// Slot 26. An array over `buffer`, which it owns from the call on: when this throws, the buffer is
    /// freed.
    virtual ArrayImpl* createArrayFromBufferImpl(Dimensions dimensions, ArrayType type, Buffer<void> buffer,
                                                 MemoryLayout layout) = 0;

protected:
    ArrayFactoryImpl() noexcept = default;
    ArrayFactoryImpl(const ArrayFactoryImpl&) noexcept = default;
};

} // namespace vexa::data::impl
