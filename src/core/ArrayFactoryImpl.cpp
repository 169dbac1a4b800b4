#include <foundation/vexadata/Exception.hpp>
#include <vexa/data/impl/ArrayFactoryImpl.hpp>

#include <atomic>
#include <stdexcept>

namespace vexa::data::impl {

namespace {

using Function = ArrayFactoryImpl* (*)();
using Slot = std::atomic<Function>;

// Constant-initialised: back-ends register from the initialisers of other libraries.
constinit Slot vexaFactoryFuncPtr{nullptr};
constinit Slot clientFactoryFuncPtr{nullptr};

bool registerOnce(Slot& slot, Function function, const char* message) {
    Function current = nullptr;
    if (slot.compare_exchange_strong(current, function) || current == function) {
        return true;
    }
    throw std::logic_error(message);
}

/// For the kinds that a back-end does not offer.
[[noreturn]] void notOffered() {
    foundation::vexadata::detail::raise<foundation::vexadata::InvalidArrayTypeException>();
}

} // namespace

ArrayFactoryImpl::~ArrayFactoryImpl() = default;

bool ArrayFactoryImpl::registerVexaFactoryFunction(Function function) {
    return registerOnce(vexaFactoryFuncPtr, function,
                        "attempted to assign vexaFactoryFuncPtr twice to different values.");
}

bool ArrayFactoryImpl::registerClientFactoryFunction(Function function) {
    return registerOnce(clientFactoryFuncPtr, function,
                        "attempted to assign clientFactoryFuncPtr twice to different values.");
}

ArrayFactoryImpl* ArrayFactoryImpl::getDefaultFactory() {
    if (Function engine = vexaFactoryFuncPtr.load()) {
        return engine();
    }
    Function client = clientFactoryFuncPtr.load();
    return client == nullptr ? nullptr : client();
}

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
