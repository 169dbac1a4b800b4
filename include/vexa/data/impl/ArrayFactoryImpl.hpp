// The interface of back-end factories, and their registration. Binary contract: positions 1 to 25 follow the
// virtual destructor in this order.
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

    /// Position 1. An array of zeros, empty cells, missing strings ... The type comes unchecked.
    virtual ArrayImpl* createArrayImpl(ArrayType type, Dimensions dimensions) = 0;
    /// Positions 2 to 4. Sparse matrices from `count` triplets in any order; the buffers hold values, rows
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
    /// Positions 5 to 7. Sparse matrices in compressed columns; `starts` holds one entry more than columns.
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
    virtual void reservedOp8(); ///< position 8, not called by this library
    /// Position 9. An array with copies of `count` elements at `data`, in column-major order. What happens
    /// when `count` is not the product of the dimensions is the back-end's choice.
    virtual ArrayImpl* createArrayWithDataImpl(ArrayType type, Dimensions dimensions, const void* data,
                                               std::size_t count) = 0;
    virtual ArrayImpl* createStructArrayImpl(Dimensions dimensions, Names fieldNames); ///< position 10
    /// Position 11.
    virtual ClassInfoImpl* createClassInfoImpl(
        const foundation::vexadata::VexaClassIdentifier& name,
        const std::vector<foundation::vexadata::VexaPropertyIdentifier>& properties,
        const std::vector<foundation::vexadata::VexaPropertyIdentifier>& arrayProperties,
        const std::vector<foundation::vexadata::ClassInfo>& superclasses);
    virtual ObjectImpl* createValueObjectImpl(ClassInfoImpl* classInfo); ///< position 12
    virtual ArrayImpl* createValueObjectScalarImpl(ObjectImpl* object);  ///< position 13
    virtual ArrayImpl* createValueObjectArrayImpl(Dimensions dimensions,
                                                  ClassInfoImpl* classInfo); ///< position 14
    virtual ObjectImpl* createHandleObjectRefImpl(ZVMID engine, long id);    ///< position 15
    /// Position 16. The member `member` of the enumeration class `className` as an object.
    virtual ObjectImpl* createEnumerationObjectImpl(const std::string& className, const std::string& member);
    virtual void reservedOp17(); ///< position 17, not called by this library
    virtual void reservedOp18(); ///< position 18, not called by this library
    virtual void reservedOp19(); ///< position 19, not called by this library
    /// Position 20. An enumeration array; `members` holds the member name of each element, or nothing.
    virtual ArrayImpl* createEnumArrayImpl(Dimensions dimensions, std::string className, Names members);
    virtual void reservedOp21(); ///< position 21, not called by this library
    virtual void reservedOp22(); ///< position 22, not called by this library
    /// Position 23. Fills in a new buffer for `count` elements of a type and the function that frees it.
    /// Nobody expects zeros in it.
    virtual void createBufferImpl(void*& data, void (*&deleter)(void*), ArrayType type,
                                  std::size_t count) = 0;
    /// Position 24. The same for `count` bytes.
    virtual void createUntypedBufferImpl(void*& data, void (*&deleter)(void*), std::size_t count) = 0;
    /// Position 25. An array over `buffer`, which it owns from the call on: when this throws, the buffer is
    /// freed.
    virtual ArrayImpl* createArrayFromBufferImpl(Dimensions dimensions, ArrayType type, Buffer<void> buffer,
                                                 MemoryLayout layout) = 0;

protected:
    ArrayFactoryImpl() noexcept = default;
    ArrayFactoryImpl(const ArrayFactoryImpl&) noexcept = default;
};

} // namespace vexa::data::impl
