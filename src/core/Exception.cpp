#include <foundation/vexadata/Exception.hpp>

namespace foundation::vexadata {

Exception::~Exception() = default;

const char* MustBePrimitiveTypeException::what() const {
    return "Defined data buffers must be of primitive type";
}
MustBePrimitiveTypeException::~MustBePrimitiveTypeException() = default;

const char* EArrayIndexOutOfRange::what() const { return "Array index is out of range"; }
EArrayIndexOutOfRange::~EArrayIndexOutOfRange() = default;

const char* NotEnoughIndicesProvidedException::what() const { return "Not enough indices provided"; }
NotEnoughIndicesProvidedException::~NotEnoughIndicesProvidedException() = default;

const char* EInvalidDimensionsInSparseArray::what() const {
    return "Sparse Array can only have two dimensions.";
}
EInvalidDimensionsInSparseArray::~EInvalidDimensionsInSparseArray() = default;

const char* NonAsciiCharInInputDataException::what() const {
    return "Input data can only contain ASCII characters";
}
NonAsciiCharInInputDataException::~NonAsciiCharInInputDataException() = default;

const char* NumberOfElementsExceedsMaximumException::what() const {
    return "Could not create the Array because the number of elements exceeds the maximum.";
}
NumberOfElementsExceedsMaximumException::~NumberOfElementsExceedsMaximumException() = default;

const char* StringIndexMustBeLastException::what() const { return "String index must be last"; }
StringIndexMustBeLastException::~StringIndexMustBeLastException() = default;

const char* TooManyIndicesProvidedException::what() const { return "Too many indices provided"; }
TooManyIndicesProvidedException::~TooManyIndicesProvidedException() = default;

const char* CantIndexIntoEmptyArrayException::what() const { return "Can't index into an empty array"; }
CantIndexIntoEmptyArrayException::~CantIndexIntoEmptyArrayException() = default;

const char* NonAsciiCharInRequestedAsciiOutputException::what() const { return "Can't convert to ASCII"; }
NonAsciiCharInRequestedAsciiOutputException::~NonAsciiCharInRequestedAsciiOutputException() = default;

const char* EArrayUnknownDataType::what() const { return "Unknown DataType field in vexa::data::Array"; }
EArrayUnknownDataType::~EArrayUnknownDataType() = default;

const char* CanOnlyUseOneStringIndexException::what() const {
    return "Can't provide more than one string index";
}
CanOnlyUseOneStringIndexException::~CanOnlyUseOneStringIndexException() = default;

const char* TypeMismatchException::what() const { return "Data type mismatch"; }
TypeMismatchException::~TypeMismatchException() = default;

const char* WrongVectorSizeForStructException::what() const {
    return "The number of elements in the input vector does not match the number of fields in the StructArray";
}
WrongVectorSizeForStructException::~WrongVectorSizeForStructException() = default;

const char* CantAssignArrayToThisArrayException::what() const {
    return "Can't assign an Array to this Array";
}
CantAssignArrayToThisArrayException::~CantAssignArrayToThisArrayException() = default;

const char* InvalidArrayTypeException::what() const { return "Invalid Array type"; }
InvalidArrayTypeException::~InvalidArrayTypeException() = default;

EArrayInvalidHandleRef::~EArrayInvalidHandleRef() = default;

const char* EArrayInvalidHandleRef::what() const noexcept {
    return "The HandleObjectRef does not refer to a handle.";
}

namespace detail {

template <class E>
void raise() {
    throw E();
}

template void raise<MustBePrimitiveTypeException>();
template void raise<EArrayIndexOutOfRange>();
template void raise<NotEnoughIndicesProvidedException>();
template void raise<EInvalidDimensionsInSparseArray>();
template void raise<NonAsciiCharInInputDataException>();
template void raise<NumberOfElementsExceedsMaximumException>();
template void raise<StringIndexMustBeLastException>();
template void raise<TooManyIndicesProvidedException>();
template void raise<CantIndexIntoEmptyArrayException>();
template void raise<NonAsciiCharInRequestedAsciiOutputException>();
template void raise<EArrayUnknownDataType>();
template void raise<CanOnlyUseOneStringIndexException>();
template void raise<TypeMismatchException>();
template void raise<WrongVectorSizeForStructException>();
template void raise<CantAssignArrayToThisArrayException>();
template void raise<InvalidArrayTypeException>();

} // namespace detail

} // namespace foundation::vexadata
