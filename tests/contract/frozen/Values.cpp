// Errors, and values that cross the boundary as numbers.
#include "Table.hpp"

#include <foundation/vexadata/ArrayType.hpp>
#include <foundation/vexadata/Exception.hpp>

#include <cstdint>
#include <exception>
#include <iterator>
#include <optional>
#include <string>

namespace contract {

using namespace foundation::vexadata;
using vexa::data::MemoryLayout;

template struct Interface<Exception, 8, 3>;
template struct Operation<0, const char*() const, &Exception::what>;
template struct Operation<2, const char*() const noexcept,
                          &EArrayInvalidHandleRef::what>; // where std::exception has it

template struct Derived<MustBePrimitiveTypeException, Exception, 8>;
template struct Derived<EArrayIndexOutOfRange, Exception, 8>;
template struct Derived<NotEnoughIndicesProvidedException, Exception, 8>;
template struct Derived<EInvalidDimensionsInSparseArray, Exception, 8>;
template struct Derived<NonAsciiCharInInputDataException, Exception, 8>;
template struct Derived<NumberOfElementsExceedsMaximumException, Exception, 8>;
template struct Derived<StringIndexMustBeLastException, Exception, 8>;
template struct Derived<TooManyIndicesProvidedException, Exception, 8>;
template struct Derived<CantIndexIntoEmptyArrayException, Exception, 8>;
template struct Derived<NonAsciiCharInRequestedAsciiOutputException, Exception, 8>;
template struct Derived<EArrayUnknownDataType, Exception, 8>;
template struct Derived<CanOnlyUseOneStringIndexException, Exception, 8>;
template struct Derived<TypeMismatchException, Exception, 8>;
template struct Derived<WrongVectorSizeForStructException, Exception, 8>;
template struct Derived<CantAssignArrayToThisArrayException, Exception, 8>;
template struct Derived<InvalidArrayTypeException, Exception, 8>;
template struct Derived<EArrayInvalidHandleRef, std::exception, 8>;

/// Whether the enumerators count up from 0.
template <class Enumerator, std::size_t length>
constexpr bool countUp(const Enumerator (&enumerators)[length]) {
    std::size_t value = 0;
    for (const Enumerator enumerator : enumerators)
        if (enumerator != static_cast<Enumerator>(value++)) return false;
    return true;
}

constexpr ArrayType types[] = {ArrayType::UNKNOWN,
                               ArrayType::LOGICAL,
                               ArrayType::CHAR,
                               ArrayType::STRING,
                               ArrayType::DOUBLE,
                               ArrayType::SINGLE,
                               ArrayType::INT8,
                               ArrayType::UINT8,
                               ArrayType::INT16,
                               ArrayType::UINT16,
                               ArrayType::INT32,
                               ArrayType::UINT32,
                               ArrayType::INT64,
                               ArrayType::UINT64,
                               ArrayType::COMPLEX_DOUBLE,
                               ArrayType::COMPLEX_SINGLE,
                               ArrayType::COMPLEX_INT8,
                               ArrayType::COMPLEX_UINT8,
                               ArrayType::COMPLEX_INT16,
                               ArrayType::COMPLEX_UINT16,
                               ArrayType::COMPLEX_INT32,
                               ArrayType::COMPLEX_UINT32,
                               ArrayType::COMPLEX_INT64,
                               ArrayType::COMPLEX_UINT64,
                               ArrayType::CELL,
                               ArrayType::STRUCT,
                               ArrayType::OBJECT,
                               ArrayType::VALUE_OBJECT,
                               ArrayType::HANDLE_OBJECT_REF,
                               ArrayType::ENUM,
                               ArrayType::SPARSE_LOGICAL,
                               ArrayType::SPARSE_DOUBLE,
                               ArrayType::SPARSE_COMPLEX_DOUBLE};
static_assert(std::is_same_v<std::underlying_type_t<ArrayType>, std::int32_t>);
static_assert(std::size(types) == 33 && countUp(types));

constexpr MemoryLayout layouts[] = {MemoryLayout::COLUMN_MAJOR, MemoryLayout::ROW_MAJOR, MemoryLayout::NONE};
static_assert(std::is_same_v<std::underlying_type_t<MemoryLayout>, std::int32_t> && countUp(layouts));

static_assert(std::is_same_v<vexa::data::optional<std::u16string>, std::optional<std::u16string>>);

} // namespace contract
