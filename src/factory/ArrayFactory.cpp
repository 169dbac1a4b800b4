// Creating arrays: dimensions are normalised and tested here, everything else is up to the back-end.
#include <foundation/vexadata/ArrayFactory.hpp>
#include <foundation/vexadata/detail/TypeInformation.hpp>
#include <vexa/data/detail/InPlace.hpp>
#include <vexa/data/impl/ClassInfoImpl.hpp>

#include <cstdio>
#include <cstdlib>

namespace foundation::vexadata {

using vexa::data::impl::ArrayFactoryImpl;
using vexa::data::impl::ArrayImpl;
using UntypedBuffer = std::unique_ptr<void, void (*)(void*)>;

namespace {

/// One entry n becomes n by 1, unchecked; otherwise the product must fit in 64 bits. The walk is in order:
/// after a zero nothing overflows any more, deliberately.
inline std::vector<std::size_t>&& normalised(std::vector<std::size_t>&& dims) {
    if (dims.size() == 1) {
        dims.push_back(1);
        return std::move(dims);
    }
    detail::elementsOf(dims);
    return std::move(dims);
}

/// A sparse array has two dimensions; one entry n still becomes n by 1.
std::vector<std::size_t>&& ofMatrix(std::vector<std::size_t>&& dims) {
    if (dims.size() > 2) {
        detail::raise<EInvalidDimensionsInSparseArray>();
    }
    return normalised(std::move(dims));
}

} // namespace

ArrayFactory::ArrayFactory()
    : impl_(detail::Access::createSharedPtr(ArrayFactoryImpl::getDefaultFactory())) {}
ArrayFactory::ArrayFactory(std::shared_ptr<ArrayFactoryImpl> impl) noexcept : impl_(std::move(impl)) {}
ArrayFactory::ArrayFactory(const ArrayFactory&) noexcept = default;
ArrayFactory::ArrayFactory(ArrayFactory&&) noexcept = default;
ArrayFactory& ArrayFactory::operator=(const ArrayFactory&) noexcept = default;
ArrayFactory& ArrayFactory::operator=(ArrayFactory&&) noexcept = default;
ArrayFactory::~ArrayFactory() = default;

ArrayFactoryImpl& ArrayFactory::backEnd() const {
    if (impl_ == nullptr) {
        std::fputs(
            "vexadata: this ArrayFactory has no back-end, so that it can create nothing. Link the embedded one (CMake: "
            "vexadata::client; pkg-config: vexadata-client; by hand: -Wl,--no-as-needed -lvexadata_client), or load "
            "another before the factory is made. A factory that was moved from has none either.\n",
            stderr);
        std::abort();
    }
    return *impl_;
}

bool ArrayFactory::makesDenseArrays() const {
    return detail::typeInformationOf(backEnd()) ==
           vexa::data::detail::recognisedFactory.load(std::memory_order_relaxed);
}

Array ArrayFactory::createArray(ArrayType type, std::vector<std::size_t> dims) const {
    return Array(zeros(type, std::move(dims)));
}

UntypedBuffer ArrayFactory::createBuffer(ArrayType type, std::size_t count) const {
    detail::typeIsPrimitive(type);
    return typedBuffer(type, count);
}

UntypedBuffer ArrayFactory::createBuffer(std::size_t count) const {
    void* data = nullptr;
    void (*deleter)(void*) = nullptr;
    backEnd().createUntypedBufferImpl(data, deleter, count);
    return UntypedBuffer(data, deleter);
}

CharArray ArrayFactory::createCharArray(std::u16string text) const {
    return CharArray(withData(ArrayType::CHAR, {1, text.size()}, text.data(), text.size()));
}

CharArray ArrayFactory::createCharArray(std::string text) const {
    return createCharArray(detail::widened(text));
}

CharArray ArrayFactory::createCharArray(std::vector<std::size_t> dims) const {
    return CharArray(zeros(ArrayType::CHAR, std::move(dims)));
}

StructArray ArrayFactory::createStructArray(std::vector<std::size_t> dims,
                                            std::vector<std::string> fieldNames) const {
    return StructArray(backEnd().createStructArrayImpl(normalised(std::move(dims)), std::move(fieldNames)));
}

EnumArray ArrayFactory::createEnumArray(std::vector<std::size_t> dims, std::string className,
                                        std::vector<std::string> members) const {
    return EnumArray(
        backEnd().createEnumArrayImpl(normalised(std::move(dims)), std::move(className), std::move(members)));
}

ArrayImpl* ArrayFactory::sparse(Dims dims, std::size_t count, Values<bool> values, Places rows,
                                Places columns) const {
    return backEnd().createSparseLogicalImpl(ofMatrix(std::move(dims)), count, std::move(values),
                                             std::move(rows), std::move(columns));
}
ArrayImpl* ArrayFactory::sparse(Dims dims, std::size_t count, Values<double> values, Places rows,
                                Places columns) const {
    return backEnd().createSparseDoubleImpl(ofMatrix(std::move(dims)), count, std::move(values),
                                            std::move(rows), std::move(columns));
}
ArrayImpl* ArrayFactory::sparse(Dims dims, std::size_t count, Values<std::complex<double>> values,
                                Places rows, Places columns) const {
    return backEnd().createSparseComplexDoubleImpl(ofMatrix(std::move(dims)), count, std::move(values),
                                                   std::move(rows), std::move(columns));
}
ArrayImpl* ArrayFactory::compressed(Dims dims, std::size_t count, Values<bool> values, Places rows,
                                    Places starts) const {
    return backEnd().createVexaSparseLogicalImpl(ofMatrix(std::move(dims)), count, std::move(values),
                                                 std::move(rows), std::move(starts));
}
ArrayImpl* ArrayFactory::compressed(Dims dims, std::size_t count, Values<double> values, Places rows,
                                    Places starts) const {
    return backEnd().createVexaSparseDoubleImpl(ofMatrix(std::move(dims)), count, std::move(values),
                                                std::move(rows), std::move(starts));
}
ArrayImpl* ArrayFactory::compressed(Dims dims, std::size_t count, Values<std::complex<double>> values,
                                    Places rows, Places starts) const {
    return backEnd().createVexaSparseComplexDoubleImpl(ofMatrix(std::move(dims)), count, std::move(values),
                                                       std::move(rows), std::move(starts));
}

ClassInfo ArrayFactory::createClassInfo(const VexaClassIdentifier& name,
                                        const std::vector<VexaPropertyIdentifier>& properties,
                                        const std::vector<VexaPropertyIdentifier>& arrayProperties,
                                        const std::vector<ClassInfo>& superclasses) const {
    return ClassInfo(backEnd().createClassInfoImpl(name, properties, arrayProperties, superclasses));
}

ValueObject ArrayFactory::createValueObject(const ClassInfo& classInfo) const {
    return ValueObject(backEnd().createValueObjectImpl(detail::Access::impl(classInfo).get()));
}

ValueObjectArray ArrayFactory::createValueObjectScalar(const ValueObject& object) const {
    return ValueObjectArray(backEnd().createValueObjectScalarImpl(detail::Access::impl(object).get()));
}

ValueObjectArray ArrayFactory::createValueObjectArray(std::vector<std::size_t> dims,
                                                      const ClassInfo& classInfo) const {
    return ValueObjectArray(backEnd().createValueObjectArrayImpl(normalised(std::move(dims)),
                                                                 detail::Access::impl(classInfo).get()));
}

HandleObjectRef ArrayFactory::createHandleObjectRef(const ZVMID& engine, long id) const {
    return HandleObjectRef(backEnd().createHandleObjectRefImpl(engine, id));
}

ValueObject ArrayFactory::createEnumerationObject(const std::string& className,
                                                  const std::string& member) const {
    return ValueObject(backEnd().createEnumerationObjectImpl(className, member));
}

Array ArrayFactory::createArrayFromBuffer(std::vector<std::size_t> dims, ArrayType type, UntypedBuffer buffer,
                                          vexa::data::MemoryLayout layout) const {
    return Array(fromBuffer(std::move(dims), type, std::move(buffer), layout));
}

ArrayImpl* ArrayFactory::zeros(ArrayType type, std::vector<std::size_t>&& dims) const {
    return backEnd().createArrayImpl(type, normalised(std::move(dims)));
}

ArrayImpl* ArrayFactory::withData(ArrayType type, std::vector<std::size_t>&& dims, const void* data,
                                  std::size_t count) const {
    return backEnd().createArrayWithDataImpl(type, normalised(std::move(dims)), data, count);
}

ArrayImpl* ArrayFactory::fromBuffer(std::vector<std::size_t>&& dims, ArrayType type, UntypedBuffer buffer,
                                    vexa::data::MemoryLayout layout) const {
    return backEnd().createArrayFromBufferImpl(normalised(std::move(dims)), type, std::move(buffer), layout);
}

UntypedBuffer ArrayFactory::typedBuffer(ArrayType type, std::size_t count) const {
    void* data = nullptr;
    void (*deleter)(void*) = nullptr;
    backEnd().createBufferImpl(data, deleter, type, count);
    return UntypedBuffer(data, deleter);
}

namespace detail {

ArrayImpl* newEmptyArray(ArrayType type) {
    const Array array = ArrayFactory().createArray(type, {0, 0});
    Access::impl(array)->retain();
    return Access::impl(array).get();
}

std::shared_ptr<ArrayImpl> copiedRecord(const StructElement& record) {
    std::vector<std::string> names;
    for (const VexaFieldIdentifier& name : record.getFieldNames()) {
        names.push_back(name.getString());
    }
    StructArray copy = ArrayFactory().createStructArray({1, 1}, std::move(names));
    copy[0] = record;
    return Access::impl(copy);
}

} // namespace detail

} // namespace foundation::vexadata
