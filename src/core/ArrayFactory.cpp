#include <foundation/vexadata/ArrayFactory.hpp>
#include <vexa/data/impl/ClassInfoImpl.hpp>

namespace foundation::vexadata {

using vexa::data::impl::ArrayFactoryImpl;
using vexa::data::impl::ArrayImpl;
using UntypedBuffer = std::unique_ptr<void, void (*)(void*)>;

namespace {

/// One entry n becomes n by 1, unchecked; otherwise the product must fit in 64 bits. The walk is in order: after a zero
/// nothing overflows any more, deliberately.
std::vector<std::size_t> normalised(std::vector<std::size_t> dims) {
    if (dims.size() == 1) {
        dims.push_back(1);
        return dims;
    }
    std::size_t product = 1;
    for (const std::size_t extent : dims) {
        if (__builtin_mul_overflow(product, extent, &product)) {
            detail::raise<NumberOfElementsExceedsMaximumException>();
        }
    }
    return dims;
}

/// A sparse array has two dimensions; one entry n still becomes n by 1.
std::vector<std::size_t> ofMatrix(std::vector<std::size_t> dims) {
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

Array ArrayFactory::createArray(ArrayType type, std::vector<std::size_t> dims) {
    return Array(zeros(type, std::move(dims)));
}

UntypedBuffer ArrayFactory::createBuffer(ArrayType type, std::size_t count) {
    detail::typeIsPrimitive(type);
    return typedBuffer(type, count);
}

UntypedBuffer ArrayFactory::createBuffer(std::size_t count) {
    void* data = nullptr;
    void (*deleter)(void*) = nullptr;
    impl_->createUntypedBufferImpl(data, deleter, count);
    return UntypedBuffer(data, deleter);
}

CharArray ArrayFactory::createCharArray(std::u16string text) {
    return CharArray(withData(ArrayType::CHAR, {1, text.size()}, text.data(), text.size()));
}

CharArray ArrayFactory::createCharArray(std::string text) { return createCharArray(detail::widened(text)); }

CharArray ArrayFactory::createCharArray(std::vector<std::size_t> dims) {
    return CharArray(zeros(ArrayType::CHAR, std::move(dims)));
}

StructArray ArrayFactory::createStructArray(std::vector<std::size_t> dims,
                                            std::vector<std::string> fieldNames) {
    return StructArray(impl_->createStructArrayImpl(normalised(std::move(dims)), std::move(fieldNames)));
}

EnumArray ArrayFactory::createEnumArray(std::vector<std::size_t> dims, std::string className,
                                        std::vector<std::string> members) {
    return EnumArray(
        impl_->createEnumArrayImpl(normalised(std::move(dims)), std::move(className), std::move(members)));
}

ArrayImpl* ArrayFactory::sparse(Dims dims, std::size_t count, Values<bool> values, Places rows,
                                Places columns) {
    return impl_->createSparseLogicalImpl(ofMatrix(std::move(dims)), count, std::move(values),
                                          std::move(rows), std::move(columns));
}
ArrayImpl* ArrayFactory::sparse(Dims dims, std::size_t count, Values<double> values, Places rows,
                                Places columns) {
    return impl_->createSparseDoubleImpl(ofMatrix(std::move(dims)), count, std::move(values), std::move(rows),
                                         std::move(columns));
}
ArrayImpl* ArrayFactory::sparse(Dims dims, std::size_t count, Values<std::complex<double>> values,
                                Places rows, Places columns) {
    return impl_->createSparseComplexDoubleImpl(ofMatrix(std::move(dims)), count, std::move(values),
                                                std::move(rows), std::move(columns));
}
ArrayImpl* ArrayFactory::compressed(Dims dims, std::size_t count, Values<bool> values, Places rows,
                                    Places starts) {
    return impl_->createVexaSparseLogicalImpl(ofMatrix(std::move(dims)), count, std::move(values),
                                              std::move(rows), std::move(starts));
}
ArrayImpl* ArrayFactory::compressed(Dims dims, std::size_t count, Values<double> values, Places rows,
                                    Places starts) {
    return impl_->createVexaSparseDoubleImpl(ofMatrix(std::move(dims)), count, std::move(values),
                                             std::move(rows), std::move(starts));
}
ArrayImpl* ArrayFactory::compressed(Dims dims, std::size_t count, Values<std::complex<double>> values,
                                    Places rows, Places starts) {
    return impl_->createVexaSparseComplexDoubleImpl(ofMatrix(std::move(dims)), count, std::move(values),
                                                    std::move(rows), std::move(starts));
}

ClassInfo ArrayFactory::createClassInfo(const VexaClassIdentifier& name,
                                        const std::vector<VexaPropertyIdentifier>& properties,
                                        const std::vector<VexaPropertyIdentifier>& arrayProperties,
                                        const std::vector<ClassInfo>& superclasses) {
    return ClassInfo(impl_->createClassInfoImpl(name, properties, arrayProperties, superclasses));
}

ValueObject ArrayFactory::createValueObject(const ClassInfo& classInfo) {
    return ValueObject(impl_->createValueObjectImpl(detail::Access::impl(classInfo).get()));
}

ValueObjectArray ArrayFactory::createValueObjectScalar(const ValueObject& object) {
    return ValueObjectArray(impl_->createValueObjectScalarImpl(detail::Access::impl(object).get()));
}

ValueObjectArray ArrayFactory::createValueObjectArray(std::vector<std::size_t> dims,
                                                      const ClassInfo& classInfo) {
    return ValueObjectArray(impl_->createValueObjectArrayImpl(normalised(std::move(dims)),
                                                              detail::Access::impl(classInfo).get()));
}

HandleObjectRef ArrayFactory::createHandleObjectRef(const ZVMID& engine, long id) {
    return HandleObjectRef(impl_->createHandleObjectRefImpl(engine, id));
}

ValueObject ArrayFactory::createEnumerationObject(const std::string& className, const std::string& member) {
    return ValueObject(impl_->createEnumerationObjectImpl(className, member));
}

Array ArrayFactory::createArrayFromBuffer(std::vector<std::size_t> dims, ArrayType type, UntypedBuffer buffer,
                                          vexa::data::MemoryLayout layout) {
    return Array(fromBuffer(std::move(dims), type, std::move(buffer), layout));
}

ArrayImpl* ArrayFactory::zeros(ArrayType type, std::vector<std::size_t> dims) {
    return impl_->createArrayImpl(type, normalised(std::move(dims)));
}

ArrayImpl* ArrayFactory::withData(ArrayType type, std::vector<std::size_t> dims, const void* data,
                                  std::size_t count) {
    return impl_->createArrayWithDataImpl(type, normalised(std::move(dims)), data, count);
}

ArrayImpl* ArrayFactory::fromBuffer(std::vector<std::size_t> dims, ArrayType type, UntypedBuffer buffer,
                                    vexa::data::MemoryLayout layout) {
    auto checked = normalised(std::move(dims));
    return impl_->createArrayFromBufferImpl(std::move(checked), type, std::move(buffer), layout);
}

UntypedBuffer ArrayFactory::typedBuffer(ArrayType type, std::size_t count) {
    void* data = nullptr;
    void (*deleter)(void*) = nullptr;
    impl_->createBufferImpl(data, deleter, type, count);
    return UntypedBuffer(data, deleter);
}

} // namespace foundation::vexadata
