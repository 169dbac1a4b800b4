// The catalogue of array kinds, with values that nobody's catalogue has.
#include "support/RecordingArray.hpp"
#include "support/Throws.hpp"

#include <foundation/vexadata/ArrayFactory.hpp>
#include <foundation/vexadata/Exception.hpp>

#include <gtest/gtest.h>

#include <complex>
#include <cstdint>
#include <limits>
#include <type_traits>
#include <vector>

namespace {

using namespace foundation::vexadata;
constexpr auto maximum = std::numeric_limits<std::int32_t>::max();
constexpr auto minimum = std::numeric_limits<std::int32_t>::min();

std::vector<std::int32_t> kinds() {
    std::vector<std::int32_t> values{minimum, maximum};
    for (std::int32_t value = -1; value <= 40; ++value) {
        values.push_back(value);
    }
    return values;
}

TEST(Types, PrimitiveAreLogicalCharAndTheNumericOnes) {
    for (const std::int32_t kind : kinds()) {
        SCOPED_TRACE(kind);
        const auto ask = [kind] { detail::typeIsPrimitive(static_cast<ArrayType>(kind)); };
        if (kind == 1 || kind == 2 || (kind >= 4 && kind <= 23)) {
            EXPECT_NO_THROW(ask());
        } else {
            EXPECT_TRUE(support::throwsExactly<MustBePrimitiveTypeException>(
                ask, "Defined data buffers must be of primitive type"));
        }
    }
}

ArrayType pretended = ArrayType::UNKNOWN;
template <class T>
struct PretendingArray : support::RecordingArray<T> {
    using support::RecordingArray<T>::RecordingArray;
    ArrayType getType() const override { return pretended; }
};

TEST(Types, SparseAreExactlyThree) {
    const auto made = support::recorded<PretendingArray>(ArrayFactory().createArray<double>({1, 1}));
    for (const std::int32_t kind : kinds()) {
        pretended = static_cast<ArrayType>(kind);
        EXPECT_EQ(isSparse(made.array), kind >= 30 && kind <= 32) << kind;
    }
    EXPECT_FALSE(isSparse(Array()));
}

template <class... Elements>
std::vector<std::int32_t> kindsOf() {
    return {static_cast<std::int32_t>(detail::arrayTypeOf<Elements>)...};
}
template <class... Reals>
std::vector<std::int32_t> complexKindsOf() {
    return kindsOf<std::complex<Reals>...>();
}

TEST(Types, EveryElementTypeHasItsKind) {
    using Kinds = std::vector<std::int32_t>;
    EXPECT_EQ((kindsOf<bool, char16_t, String>()), (Kinds{1, 2, 3}));
    EXPECT_EQ((kindsOf<double, float, std::int8_t, std::uint8_t, std::int16_t, std::uint16_t, std::int32_t,
                       std::uint32_t, std::int64_t, std::uint64_t>()),
              (Kinds{4, 5, 6, 7, 8, 9, 10, 11, 12, 13}));
    EXPECT_EQ((complexKindsOf<double, float, std::int8_t, std::uint8_t, std::int16_t, std::uint16_t,
                              std::int32_t, std::uint32_t, std::int64_t, std::uint64_t>()),
              (Kinds{14, 15, 16, 17, 18, 19, 20, 21, 22, 23}));
    EXPECT_EQ((kindsOf<Array, StructElement, Enumeration>()), (Kinds{24, 25, 29}));
    for (const std::int32_t kind : kindsOf<ValueObject, HandleObjectRef>()) {
        EXPECT_TRUE(kind >= 26 && kind <= 28) << kind;
    }
}

template <class T>
using ReturnType = typename vexa::data::GetReturnType<T>::type;

TEST(Types, ScalarsOfNeighbouringTypesBecomeElementTypes) {
    EXPECT_TRUE((std::is_same_v<ReturnType<long long>, std::int64_t>));
    EXPECT_TRUE((std::is_same_v<ReturnType<unsigned long long>, std::uint64_t>));
    EXPECT_TRUE((std::is_same_v<ReturnType<char>, char16_t>));
    EXPECT_TRUE((std::is_same_v<ReturnType<std::int8_t>, std::int8_t>));
    EXPECT_TRUE((std::is_same_v<ReturnType<std::complex<float>>, std::complex<float>>));
    EXPECT_TRUE((std::is_same_v<ReturnType<String>, String>));
}

} // namespace
