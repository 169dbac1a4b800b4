// What the program and the back-end know of each other beside the contract: all errors, and two ways to throw
// them across.
#pragma once

#include <foundation/vexadata/Exception.hpp>

#include <cstddef>
#include <vector>

using Thrower = void (*)();

template <class E>
void throwOne() {
    throw E();
}

template <class E>
bool catches(Thrower thrower) {
    try {
        thrower();
    } catch (const E&) {
        return true;
    } catch (...) {}
    return false;
}

template <class... Errors>
struct ListOf {
    static std::vector<Thrower> throwers() { return {&throwOne<Errors>...}; }
    /// For each error in turn, whether a handler for it catches what is thrown.
    static std::vector<bool> caughtBy(Thrower thrower) { return {catches<Errors>(thrower)...}; }
};

namespace fv = foundation::vexadata;
using AllErrors =
    ListOf<fv::MustBePrimitiveTypeException, fv::EArrayIndexOutOfRange, fv::NotEnoughIndicesProvidedException,
           fv::EInvalidDimensionsInSparseArray, fv::NonAsciiCharInInputDataException,
           fv::NumberOfElementsExceedsMaximumException, fv::StringIndexMustBeLastException,
           fv::TooManyIndicesProvidedException, fv::CantIndexIntoEmptyArrayException,
           fv::NonAsciiCharInRequestedAsciiOutputException, fv::EArrayUnknownDataType,
           fv::CanOnlyUseOneStringIndexException, fv::TypeMismatchException,
           fv::WrongVectorSizeForStructException, fv::CantAssignArrayToThisArrayException,
           fv::InvalidArrayTypeException, fv::EArrayInvalidHandleRef>;

[[gnu::visibility("default")]] std::vector<Thrower> throwersOfBackEnd();
[[gnu::visibility("default")]] std::vector<bool> caughtByBackEnd(Thrower thrower);
