// One creator for each kind of array; arguments that no handle tests are tested here.
#include "Factory.hpp"

#include "CellArray.hpp"
#include "CompressedColumns.hpp"
#include "EnumArray.hpp"
#include "ObjectArray.hpp"
#include "Primitive.hpp"
#include "StringArray.hpp"
#include "StructArray.hpp"

#include <foundation/vexadata/detail/TypeInformation.hpp>
#include <vexa/client/Exception.hpp>
#include <vexa/data/detail/ElementMemory.hpp>
#include <vexa/data/impl/DenseArrayImpl.hpp>
#include <vexa/data/impl/IdentifierImpl.hpp>

#include <complex>
#include <utility>

namespace vexa::client {

namespace fv = foundation::vexadata;
using data::impl::ArrayImpl;
using data::impl::Buffer;
using data::impl::DenseArrayImpl;

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
    case fv::ArrayType::OBJECT:
    case fv::ArrayType::VALUE_OBJECT:
    case fv::ArrayType::HANDLE_OBJECT_REF:
        return new ObjectArray(type, std::move(dimensions));
    default:
        return fv::detail::withKind(type, [&](auto tag) -> ArrayImpl* {
            if constexpr (tag.isSparse) {
                return CompressedColumns<typename decltype(tag)::type>::zeros(std::move(dimensions));
            } else if constexpr (tag.isPrimitive) {
                return DenseArrayImpl<typename decltype(tag)::type>::zeros(std::move(dimensions));
            } else {
                fv::detail::raise<fv::InvalidArrayTypeException>();
            }
        });
    }
}

ArrayImpl* Factory::createStructArrayImpl(Dimensions dimensions, Names fieldNames) {
    return new StructArray(std::move(dimensions), std::move(fieldNames));
}

ArrayImpl* Factory::createEnumArrayImpl(Dimensions dimensions, std::string className, Names members) {
    return new EnumArray(std::move(dimensions), className, members);
}

namespace {

/// The description of a class of this back-end, shared.
/// @throws ForeignClassException
std::shared_ptr<const ClassDescription> descriptionOf(data::impl::ClassInfoImpl* classInfo) {
    const auto* description = fv::detail::dynamicCast<const ClassDescription>(classInfo);
    if (description == nullptr) {
        throw ForeignClassException(classInfo == nullptr ? std::string()
                                                         : classInfo->getClassIdentifier()->name());
    }
    description->retain();
    return fv::detail::Access::createSharedPtr(description);
}

} // namespace

data::impl::ClassInfoImpl* Factory::createClassInfoImpl(
    const fv::VexaClassIdentifier& name, const std::vector<fv::VexaPropertyIdentifier>& properties,
    const std::vector<fv::VexaPropertyIdentifier>& arrayProperties,
    const std::vector<fv::ClassInfo>& superclasses) {
    return new ClassDescription(name.getString(), properties, arrayProperties, superclasses);
}

data::impl::ObjectImpl* Factory::createValueObjectImpl(data::impl::ClassInfoImpl* classInfo) {
    return new Instance(descriptionOf(classInfo));
}

ArrayImpl* Factory::createValueObjectScalarImpl(data::impl::ObjectImpl* object) {
    const auto* instance = fv::detail::dynamicCast<const Instance>(object);
    if (instance == nullptr) { // of another back-end, or no object: no class of ours describes it
        auto scalar = std::make_unique<ObjectArray>(fv::ArrayType::VALUE_OBJECT, Dimensions{1, 1});
        scalar->setElementObject(0, object);
        return scalar.release();
    }
    instance->description().retain();
    auto description = fv::detail::Access::createSharedPtr(&instance->description());
    object->retain();
    const fv::HandleObjectRef handle(object);
    return new ObjectArray({1, 1}, std::move(description), handle);
}

ArrayImpl* Factory::createValueObjectArrayImpl(Dimensions dimensions, data::impl::ClassInfoImpl* classInfo) {
    const auto description = descriptionOf(classInfo);
    const fv::HandleObjectRef object(
        new Instance(description)); // one for all elements, until one of them changes
    return new ObjectArray(std::move(dimensions), description, object);
}

data::impl::ObjectImpl* Factory::createHandleObjectRefImpl(data::impl::ZVMID engine, long id) {
    return new HandleObject(engine, id);
}

data::impl::ObjectImpl* Factory::createEnumerationObjectImpl(const std::string& className,
                                                             const std::string& member) {
    if (member.find('\0') != std::string::npos) {
        throw UnknownMemberException(member, className);
    }
    return new Instance(plainDescription(className), member);
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
        return DenseArrayImpl<typename decltype(tag)::type>::withData(std::move(dimensions), data, count);
    });
}

void Factory::createBufferImpl(void*& data, void (*&deleter)(void*), fv::ArrayType type, std::size_t count) {
    data = forPrimitive<fv::MustBePrimitiveTypeException>(type, [&](auto tag) {
        return data::detail::allocateElements(count, sizeof(typename decltype(tag)::type));
    });
    deleter = &data::detail::freeElements;
}

void Factory::createUntypedBufferImpl(void*& data, void (*&deleter)(void*), std::size_t count) {
    data = data::detail::allocateElements(count, 1);
    deleter = &data::detail::freeElements;
}

ArrayImpl* Factory::createArrayFromBufferImpl(Dimensions dimensions, fv::ArrayType type, Buffer<void> buffer,
                                              MemoryLayout layout) {
    const bool known = layout == MemoryLayout::COLUMN_MAJOR || layout == MemoryLayout::ROW_MAJOR;
    if (!known || (buffer == nullptr && elementCount(dimensions) != 0)) {
        throw InvalidBufferException();
    }
    return forPrimitive<fv::MustBePrimitiveTypeException>(type, [&](auto tag) -> ArrayImpl* {
        return DenseArrayImpl<typename decltype(tag)::type>::adopt(std::move(dimensions), std::move(buffer),
                                                                   layout);
    });
}

} // namespace vexa::client
