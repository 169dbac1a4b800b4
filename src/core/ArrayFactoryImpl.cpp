// Default operations of factories: a back-end overrides the creators of the kinds that it offers.
#include <foundation/vexadata/Exception.hpp>
#include <vexa/data/impl/ArrayFactoryImpl.hpp>

namespace vexa::data::impl {

namespace {

/// The default of every creator: the back-end does not offer this kind.
[[noreturn]] void notOffered() {
    foundation::vexadata::detail::raise<foundation::vexadata::InvalidArrayTypeException>();
}

} // namespace

ArrayFactoryImpl::~ArrayFactoryImpl() = default;

ArrayImpl* ArrayFactoryImpl::createSparseLogicalImpl(Dimensions, std::size_t, Buffer<bool[]>,
                                                     Buffer<std::size_t[]>, Buffer<std::size_t[]>) {
    notOffered();
}
ArrayImpl* ArrayFactoryImpl::createSparseDoubleImpl(Dimensions, std::size_t, Buffer<double[]>,
                                                    Buffer<std::size_t[]>, Buffer<std::size_t[]>) {
    notOffered();
}
ArrayImpl* ArrayFactoryImpl::createSparseComplexDoubleImpl(Dimensions, std::size_t,
                                                           Buffer<std::complex<double>[]>,
                                                           Buffer<std::size_t[]>, Buffer<std::size_t[]>) {
    notOffered();
}
ArrayImpl* ArrayFactoryImpl::createVexaSparseLogicalImpl(Dimensions, std::size_t, Buffer<bool[]>,
                                                         Buffer<std::size_t[]>, Buffer<std::size_t[]>) {
    notOffered();
}
ArrayImpl* ArrayFactoryImpl::createVexaSparseDoubleImpl(Dimensions, std::size_t, Buffer<double[]>,
                                                        Buffer<std::size_t[]>, Buffer<std::size_t[]>) {
    notOffered();
}
ArrayImpl* ArrayFactoryImpl::createVexaSparseComplexDoubleImpl(Dimensions, std::size_t,
                                                               Buffer<std::complex<double>[]>,
                                                               Buffer<std::size_t[]>, Buffer<std::size_t[]>) {
    notOffered();
}
ArrayImpl* ArrayFactoryImpl::createStructArrayImpl(Dimensions, Names) { notOffered(); }
ClassInfoImpl* ArrayFactoryImpl::createClassInfoImpl(
    const foundation::vexadata::VexaClassIdentifier&,
    const std::vector<foundation::vexadata::VexaPropertyIdentifier>&,
    const std::vector<foundation::vexadata::VexaPropertyIdentifier>&,
    const std::vector<foundation::vexadata::ClassInfo>&) {
    notOffered();
}
ObjectImpl* ArrayFactoryImpl::createValueObjectImpl(ClassInfoImpl*) { notOffered(); }
ArrayImpl* ArrayFactoryImpl::createValueObjectScalarImpl(ObjectImpl*) { notOffered(); }
ArrayImpl* ArrayFactoryImpl::createValueObjectArrayImpl(Dimensions, ClassInfoImpl*) { notOffered(); }
ObjectImpl* ArrayFactoryImpl::createHandleObjectRefImpl(ZVMID, long) { notOffered(); }
ObjectImpl* ArrayFactoryImpl::createEnumerationObjectImpl(const std::string&, const std::string&) {
    notOffered();
}
ArrayImpl* ArrayFactoryImpl::createEnumArrayImpl(Dimensions, std::string, Names) { notOffered(); }

void ArrayFactoryImpl::reservedOp8() {}
void ArrayFactoryImpl::reservedOp17() {}
void ArrayFactoryImpl::reservedOp18() {}
void ArrayFactoryImpl::reservedOp19() {}
void ArrayFactoryImpl::reservedOp21() {}
void ArrayFactoryImpl::reservedOp22() {}

} // namespace vexa::data::impl
