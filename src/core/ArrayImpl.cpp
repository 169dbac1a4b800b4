// Default operations of arrays: what an array without strings, nested arrays, columns or buffers answers.
#include <foundation/vexadata/Exception.hpp>
#include <vexa/data/impl/ArrayImpl.hpp>

namespace vexa::data::impl {

namespace fv = foundation::vexadata;
using fv::detail::raise;

void* ArrayImpl::reservedOp1() { return nullptr; }
void* ArrayImpl::reservedOp2() { return nullptr; }
void ArrayImpl::reservedOp5() {}
void* ArrayImpl::reservedOp6() { return nullptr; }
void ArrayImpl::reservedOp7() {}
void ArrayImpl::reservedOp8() {}
std::size_t ArrayImpl::reservedOp10() const { return 0; }

detail::ReferenceImpl* ArrayImpl::forwardingOp(std::size_t index, const std::string& fieldName) {
    return createElementReference(index, fieldName, false);
}

void ArrayImpl::assignElementArray(std::size_t, const std::string&, ArrayImpl*) {
    raise<fv::CantAssignArrayToThisArrayException>();
}

std::string ArrayImpl::castToString(std::size_t, const std::string&) const {
    raise<fv::TypeMismatchException>();
}

void ArrayImpl::setString(std::size_t, const std::string&, std::string) {
    raise<fv::TypeMismatchException>();
}

void ArrayImpl::setElementWords(std::size_t, std::uint64_t, std::uint64_t) {}
void ArrayImpl::setElementOpB() {}
void ArrayImpl::getStringElement(std::size_t, const char16_t*&, std::size_t&) const {}

const std::size_t* ArrayImpl::getJc() const { raise<fv::InvalidArrayTypeException>(); }
const std::size_t* ArrayImpl::getIr() const { raise<fv::InvalidArrayTypeException>(); }
std::size_t ArrayImpl::getRows() const { raise<fv::InvalidArrayTypeException>(); }
std::size_t ArrayImpl::getCols() const { raise<fv::InvalidArrayTypeException>(); }
std::size_t ArrayImpl::getNumberOfNonZeroElements() const { raise<fv::InvalidArrayTypeException>(); }
std::pair<std::size_t, std::size_t> ArrayImpl::getIndex(std::size_t) const {
    raise<fv::InvalidArrayTypeException>();
}

void ArrayImpl::copyOutBuffer(void*&, void (*&)(void*)) const { raise<fv::InvalidArrayTypeException>(); }
void ArrayImpl::releaseBuffer(void*&, void (*&)(void*)) { raise<fv::InvalidArrayTypeException>(); }
const void* ArrayImpl::getUntypedDataPtr() const { return nullptr; }

} // namespace vexa::data::impl
