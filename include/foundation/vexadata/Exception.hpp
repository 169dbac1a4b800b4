// Errors. One class per condition, each with one fixed message; callers tell errors apart by class.
#pragma once

#include <foundation/vexadata/Export.hpp>

#include <exception>

namespace foundation::vexadata {

/// Root of the library's errors. Deliberately not a std::exception: a handler for that one does not catch
/// these. Copying is trivial for all of them; thrown by value; the text of `what()` lives as long as the
/// process.
class VEXADATA_API Exception {
public:
    /// The fixed message of the class; the same pointer every time. Slot 0.
    virtual const char* what() const = 0;
    virtual ~Exception(); ///< slot 1

protected:
    Exception() = default;
    Exception(const Exception&) = default;
    Exception& operator=(const Exception&) = default;
};

/// A raw buffer was asked for with a type that is not primitive.
class VEXADATA_API MustBePrimitiveTypeException : public Exception {
public:
    const char* what() const override;
    ~MustBePrimitiveTypeException() override;
    MustBePrimitiveTypeException() = default;
    MustBePrimitiveTypeException(const MustBePrimitiveTypeException&) = default;
    MustBePrimitiveTypeException& operator=(const MustBePrimitiveTypeException&) = default;
};

/// An index is not less than its dimension.
class VEXADATA_API EArrayIndexOutOfRange : public Exception {
public:
    const char* what() const override;
    ~EArrayIndexOutOfRange() override;
    EArrayIndexOutOfRange() = default;
    EArrayIndexOutOfRange(const EArrayIndexOutOfRange&) = default;
    EArrayIndexOutOfRange& operator=(const EArrayIndexOutOfRange&) = default;
};

/// An element was used before its array got an index for each dimension.
class VEXADATA_API NotEnoughIndicesProvidedException : public Exception {
public:
    const char* what() const override;
    ~NotEnoughIndicesProvidedException() override;
    NotEnoughIndicesProvidedException() = default;
    NotEnoughIndicesProvidedException(const NotEnoughIndicesProvidedException&) = default;
    NotEnoughIndicesProvidedException& operator=(const NotEnoughIndicesProvidedException&) = default;
};

/// A sparse array was asked for with more than two dimensions.
class VEXADATA_API EInvalidDimensionsInSparseArray : public Exception {
public:
    const char* what() const override;
    ~EInvalidDimensionsInSparseArray() override;
    EInvalidDimensionsInSparseArray() = default;
    EInvalidDimensionsInSparseArray(const EInvalidDimensionsInSparseArray&) = default;
    EInvalidDimensionsInSparseArray& operator=(const EInvalidDimensionsInSparseArray&) = default;
};

/// Narrow text passed in holds a byte above 127.
class VEXADATA_API NonAsciiCharInInputDataException : public Exception {
public:
    const char* what() const override;
    ~NonAsciiCharInInputDataException() override;
    NonAsciiCharInInputDataException() = default;
    NonAsciiCharInInputDataException(const NonAsciiCharInInputDataException&) = default;
    NonAsciiCharInInputDataException& operator=(const NonAsciiCharInInputDataException&) = default;
};

/// The product of the dimensions asked for does not fit in 64 bits.
class VEXADATA_API NumberOfElementsExceedsMaximumException : public Exception {
public:
    const char* what() const override;
    ~NumberOfElementsExceedsMaximumException() override;
    NumberOfElementsExceedsMaximumException() = default;
    NumberOfElementsExceedsMaximumException(const NumberOfElementsExceedsMaximumException&) = default;
    NumberOfElementsExceedsMaximumException& operator=(const NumberOfElementsExceedsMaximumException&) =
        default;
};

/// A number follows a field name in an index chain.
class VEXADATA_API StringIndexMustBeLastException : public Exception {
public:
    const char* what() const override;
    ~StringIndexMustBeLastException() override;
    StringIndexMustBeLastException() = default;
    StringIndexMustBeLastException(const StringIndexMustBeLastException&) = default;
    StringIndexMustBeLastException& operator=(const StringIndexMustBeLastException&) = default;
};

/// More indices than dimensions, the surplus one not being zero.
class VEXADATA_API TooManyIndicesProvidedException : public Exception {
public:
    const char* what() const override;
    ~TooManyIndicesProvidedException() override;
    TooManyIndicesProvidedException() = default;
    TooManyIndicesProvidedException(const TooManyIndicesProvidedException&) = default;
    TooManyIndicesProvidedException& operator=(const TooManyIndicesProvidedException&) = default;
};

/// The array indexed into has no elements.
class VEXADATA_API CantIndexIntoEmptyArrayException : public Exception {
public:
    const char* what() const override;
    ~CantIndexIntoEmptyArrayException() override;
    CantIndexIntoEmptyArrayException() = default;
    CantIndexIntoEmptyArrayException(const CantIndexIntoEmptyArrayException&) = default;
    CantIndexIntoEmptyArrayException& operator=(const CantIndexIntoEmptyArrayException&) = default;
};

/// UTF-16 text holding a code unit above 127 was to become narrow text.
class VEXADATA_API NonAsciiCharInRequestedAsciiOutputException : public Exception {
public:
    const char* what() const override;
    ~NonAsciiCharInRequestedAsciiOutputException() override;
    NonAsciiCharInRequestedAsciiOutputException() = default;
    NonAsciiCharInRequestedAsciiOutputException(const NonAsciiCharInRequestedAsciiOutputException&) = default;
    NonAsciiCharInRequestedAsciiOutputException& operator=(
        const NonAsciiCharInRequestedAsciiOutputException&) = default;
};

/// The untyped buffer access met a type that it does not handle.
class VEXADATA_API EArrayUnknownDataType : public Exception {
public:
    const char* what() const override;
    ~EArrayUnknownDataType() override;
    EArrayUnknownDataType() = default;
    EArrayUnknownDataType(const EArrayUnknownDataType&) = default;
    EArrayUnknownDataType& operator=(const EArrayUnknownDataType&) = default;
};

/// A second field name was added to an index chain.
class VEXADATA_API CanOnlyUseOneStringIndexException : public Exception {
public:
    const char* what() const override;
    ~CanOnlyUseOneStringIndexException() override;
    CanOnlyUseOneStringIndexException() = default;
    CanOnlyUseOneStringIndexException(const CanOnlyUseOneStringIndexException&) = default;
    CanOnlyUseOneStringIndexException& operator=(const CanOnlyUseOneStringIndexException&) = default;
};

/// An element or the array it holds is of another type than the one asked for.
class VEXADATA_API TypeMismatchException : public Exception {
public:
    const char* what() const override;
    ~TypeMismatchException() override;
    TypeMismatchException() = default;
    TypeMismatchException(const TypeMismatchException&) = default;
    TypeMismatchException& operator=(const TypeMismatchException&) = default;
};

/// A record was to be replaced by a vector of another length than its number of fields.
class VEXADATA_API WrongVectorSizeForStructException : public Exception {
public:
    const char* what() const override;
    ~WrongVectorSizeForStructException() override;
    WrongVectorSizeForStructException() = default;
    WrongVectorSizeForStructException(const WrongVectorSizeForStructException&) = default;
    WrongVectorSizeForStructException& operator=(const WrongVectorSizeForStructException&) = default;
};

/// An array was to be stored into an element that cannot hold arrays.
class VEXADATA_API CantAssignArrayToThisArrayException : public Exception {
public:
    const char* what() const override;
    ~CantAssignArrayToThisArrayException() override;
    CantAssignArrayToThisArrayException() = default;
    CantAssignArrayToThisArrayException(const CantAssignArrayToThisArrayException&) = default;
    CantAssignArrayToThisArrayException& operator=(const CantAssignArrayToThisArrayException&) = default;
};

/// An array of another type than the typed handle, range or operation requires.
class VEXADATA_API InvalidArrayTypeException : public Exception {
public:
    const char* what() const override;
    ~InvalidArrayTypeException() override;
    InvalidArrayTypeException() = default;
    InvalidArrayTypeException(const InvalidArrayTypeException&) = default;
    InvalidArrayTypeException& operator=(const InvalidArrayTypeException&) = default;
};

/// A handle object was asked for through an element that holds none. The one error that is a std::exception.
class VEXADATA_API EArrayInvalidHandleRef : public std::exception {
public:
    ~EArrayInvalidHandleRef() override;
    const char* what() const noexcept override;
    EArrayInvalidHandleRef() = default;
    EArrayInvalidHandleRef(const EArrayInvalidHandleRef&) = default;
    EArrayInvalidHandleRef& operator=(const EArrayInvalidHandleRef&) = default;
};

namespace detail {

/// Throws a fresh `E`. Out of line, so that inline paths which check something stay small.
template <class E>
[[noreturn, gnu::cold, gnu::noinline]] VEXADATA_API void raise();

#define VEXADATA_ERROR(E, message) extern template VEXADATA_API void raise<E>();
#include <foundation/vexadata/ErrorTypes.inc>

} // namespace detail

} // namespace foundation::vexadata
