// Every error class, its message and how it is caught; the types that some of them are about.
#include "support/Throws.hpp"

#include <foundation/vexadata/ArrayType.hpp>
#include <foundation/vexadata/Exception.hpp>
#include <foundation/vexadata/Traits.hpp>

#include <gtest/gtest.h>

#include <set>
#include <string_view>

namespace {

using namespace foundation::vexadata;
using support::throwsExactly;

enum class CaughtBy { library, standard, nobody };

template <class E>
CaughtBy catchOne() {
    try {
        throw E();
    } catch (const Exception&) {
        return CaughtBy::library;
    } catch (const std::exception&) {
        return CaughtBy::standard;
    }
}

template <class E>
void expectError(std::string_view message) {
    EXPECT_EQ(E().what(), message);
    EXPECT_EQ(static_cast<const void*>(E().what()), static_cast<const void*>(E().what())) << message;
    EXPECT_EQ(catchOne<E>(), CaughtBy::library) << message;
    EXPECT_TRUE(throwsExactly<E>([] { detail::raise<E>(); }, message));
}

TEST(Exceptions, HaveTheirMessageAndAreNoStandardOnes) {
    expectError<MustBePrimitiveTypeException>("Defined data buffers must be of primitive type");
    expectError<EArrayIndexOutOfRange>("Array index is out of range");
    expectError<NotEnoughIndicesProvidedException>("Not enough indices provided");
    expectError<EInvalidDimensionsInSparseArray>("Sparse Array can only have two dimensions.");
    expectError<NonAsciiCharInInputDataException>("Input data can only contain ASCII characters");
    expectError<NumberOfElementsExceedsMaximumException>(
        "Could not create the Array because the number of elements exceeds the maximum.");
    expectError<StringIndexMustBeLastException>("String index must be last");
    expectError<TooManyIndicesProvidedException>("Too many indices provided");
    expectError<CantIndexIntoEmptyArrayException>("Can't index into an empty array");
    expectError<NonAsciiCharInRequestedAsciiOutputException>("Can't convert to ASCII");
    expectError<EArrayUnknownDataType>("Unknown DataType field in vexa::data::Array");
    expectError<CanOnlyUseOneStringIndexException>("Can't provide more than one string index");
    expectError<TypeMismatchException>("Data type mismatch");
    expectError<WrongVectorSizeForStructException>(
        "The number of elements in the input vector does not match the number of fields in the StructArray");
    expectError<CantAssignArrayToThisArrayException>("Can't assign an Array to this Array");
    expectError<InvalidArrayTypeException>("Invalid Array type");

    EXPECT_STREQ(EArrayInvalidHandleRef().what(), "The HandleObjectRef does not refer to a handle.");
    EXPECT_EQ(catchOne<EArrayInvalidHandleRef>(), CaughtBy::standard);
}

TEST(Types, PrimitiveOnesAreKnown) {
    const std::set<int> others{0, 3};
    for (int value = -1; value <= 40; ++value) {
        const auto type = static_cast<ArrayType>(value);
        if (value >= 0 && value < 24 && others.count(value) == 0) {
            EXPECT_NO_THROW(detail::typeIsPrimitive(type)) << value;
        } else {
            EXPECT_TRUE(throwsExactly<MustBePrimitiveTypeException>(
                [&] { detail::typeIsPrimitive(type); }, "Defined data buffers must be of primitive type"))
                << value;
        }
    }
}

TEST(Types, FollowFromElements) {
    EXPECT_EQ(detail::arrayTypeOf<std::complex<std::uint64_t>>, ArrayType::COMPLEX_UINT64);
    EXPECT_EQ(detail::arrayTypeOf<std::complex<float>>, ArrayType::COMPLEX_SINGLE);
    EXPECT_EQ(detail::arrayTypeOf<String>, ArrayType::STRING);
    EXPECT_FALSE(detail::isElementType<long long>); // another type than std::int64_t here
    static_assert(std::is_same_v<vexa::data::GetReturnType<long long>::type, std::int64_t>);
    static_assert(std::is_same_v<vexa::data::GetReturnType<float>::type, float>);
    for (int value = 24; value < 33; ++value) {
        const auto type = static_cast<ArrayType>(value);
        const bool isObject = value >= 26 && value <= 28;
        EXPECT_EQ(detail::acceptsType<ValueObject>(type), isObject) << value;
        EXPECT_EQ(detail::acceptsType<HandleObjectRef>(type), isObject) << value;
        EXPECT_EQ(detail::acceptsType<StructElement>(type), value == 25) << value;
    }
}

} // namespace
