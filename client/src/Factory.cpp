#include "Factory.hpp"

#include "CellArray.hpp"
#include "CompressedColumns.hpp"
#include "DenseArray.hpp"
#include "EnumArray.hpp"
#include "StringArray.hpp"
#include "StructArray.hpp"

#include <vexa/client/Exception.hpp>

#include <complex>
#include <utility>

namespace vexa::client {

namespace fv = foundation::vexadata;
using data::impl::ArrayImpl;

namespace {

template <class T>
struct ElementTag {
    using type = T;
};

/// Calls `make` with the element type of a primitive kind.
/// @throws E for other kinds
template <class E, class F>
auto forPrimitive(fv::ArrayType type, F make) {
    switch (type) {
#define VEXADATA_ELEMENT(T)                                                                                  \
    case fv::detail::arrayTypeOf<T>:                                                                         \
        return make(ElementTag<T>());
#include <foundation/vexadata/PrimitiveTypes.inc>
    default:
        fv::detail::raise<E>();
    }
}

} // namespace

Factory::~Factory() = default;

ArrayImpl* Factory::createArrayImpl(fv::ArrayType type, Dimensions dimensions) {
    switch (type) {
    case fv::ArrayType::CELL:
        return new CellArray(std::move(dimensions));
    case fv::ArrayType::STRING:
        return new StringArray(std::move(dimensions));
    case fv::ArrayType::STRUCT:
        return new StructArray(std::move(dimensions), {});
    case fv::ArrayType::ENUM:
        return new EnumArray(std::move(dimensions), {}, {});
    case fv::ArrayType::SPARSE_LOGICAL:
        return CompressedColumns<bool>::zeros(std::move(dimensions));
    case fv::ArrayType::SPARSE_DOUBLE:
        return CompressedColumns<double>::zeros(std::move(dimensions));
    case fv::ArrayType::SPARSE_COMPLEX_DOUBLE:
        return CompressedColumns<std::complex<double>>::zeros(std::move(dimensions));
    default:
        return forPrimitive<fv::InvalidArrayTypeException>(type, [&](auto tag) -> ArrayImpl* {
            return DenseArray<typename decltype(tag)::type>::zeros(std::move(dimensions));
        });
    }
}

ArrayImpl* Factory::createStructArrayImpl(Dimensions dimensions, Names fieldNames) {
    return new StructArray(std::move(dimensions), std::move(fieldNames));
}

ArrayImpl* Factory::createEnumArrayImpl(Dimensions dimensions, std::string className, Names members) {
    return new EnumArray(std::move(dimensions), className, members);
}

ArrayImpl* Factory::createSparseLogicalImpl(Dimensions dimensions, std::size_t count, Buffer<bool[]> values,
                                            Buffer<std::size_t[]> rows, Buffer<std::size_t[]> columns) {
    return CompressedColumns<bool>::fromTriplets(std::move(dimensions), count, std::move(values),
                                                 std::move(rows), std::move(columns));
}
ArrayImpl* Factory::createSparseDoubleImpl(Dimensions dimensions, std::size_t count, Buffer<double[]> values,
                                           Buffer<std::size_t[]> rows, Buffer<std::size_t[]> columns) {
    return CompressedColumns<double>::fromTriplets(std::move(dimensions), count, std::move(values),
                                                   std::move(rows), std::move(columns));
}
ArrayImpl* Factory::createSparseComplexDoubleImpl(Dimensions dimensions, std::size_t count,
                                                  Buffer<std::complex<double>[]> values,
                                                  Buffer<std::size_t[]> rows, Buffer<std::size_t[]> columns) {
    return CompressedColumns<std::complex<double>>::fromTriplets(
        std::move(dimensions), count, std::move(values), std::move(rows), std::move(columns));
}
ArrayImpl* Factory::createVexaSparseLogicalImpl(Dimensions dimensions, std::size_t count,
                                                Buffer<bool[]> values, Buffer<std::size_t[]> rows,
                                                Buffer<std::size_t[]> starts) {
    return CompressedColumns<bool>::fromCompressed(std::move(dimensions), count, std::move(values),
                                                   std::move(rows), std::move(starts));
}
ArrayImpl* Factory::createVexaSparseDoubleImpl(Dimensions dimensions, std::size_t count,
                                               Buffer<double[]> values, Buffer<std::size_t[]> rows,
                                               Buffer<std::size_t[]> starts) {
    return CompressedColumns<double>::fromCompressed(std::move(dimensions), count, std::move(values),
                                                     std::move(rows), std::move(starts));
}
ArrayImpl* Factory::createVexaSparseComplexDoubleImpl(Dimensions dimensions, std::size_t count,
                                                      Buffer<std::complex<double>[]> values,
                                                      Buffer<std::size_t[]> rows,
                                                      Buffer<std::size_t[]> starts) {
    return CompressedColumns<std::complex<double>>::fromCompressed(
        std::move(dimensions), count, std::move(values), std::move(rows), std::move(starts));
}

ArrayImpl* Factory::createArrayWithDataImpl(fv::ArrayType type, Dimensions dimensions, const void* data,
                                            std::size_t count) {
    return forPrimitive<fv::InvalidArrayTypeException>(type, [&](auto tag) -> ArrayImpl* {
        return DenseArray<typename decltype(tag)::type>::withData(std::move(dimensions), data, count);
    });
}

void Factory::createBufferImpl(void*& data, void (*&deleter)(void*), fv::ArrayType type, std::size_t count) {
    data = forPrimitive<fv::MustBePrimitiveTypeException>(
        type, [&](auto tag) { return allocateZeros(count, sizeof(typename decltype(tag)::type)); });
    deleter = &freeElements;
}

void Factory::createUntypedBufferImpl(void*& data, void (*&deleter)(void*), std::size_t count) {
    data = allocateZeros(count, 1);
    deleter = &freeElements;
}

ArrayImpl* Factory::createArrayFromBufferImpl(Dimensions dimensions, fv::ArrayType type, Buffer<void> buffer,
                                              MemoryLayout layout) {
    const bool known = layout == MemoryLayout::COLUMN_MAJOR || layout == MemoryLayout::ROW_MAJOR;
    if (!known || (buffer == nullptr && elementCount(dimensions) != 0)) {
        throw InvalidBufferException();
    }
    return forPrimitive<fv::MustBePrimitiveTypeException>(type, [&](auto tag) -> ArrayImpl* {
        return DenseArray<typename decltype(tag)::type>::adopt(std::move(dimensions), std::move(buffer),
                                                               layout);
    });
}

} // namespace vexa::client
