// Deciding by the kind of an array: which handle comes for which kind, and what is refused.
#include "support/Throws.hpp"

#include <foundation/vexadata/ArrayFactory.hpp>
#include <foundation/vexadata/Visit.hpp>

#include <gtest/gtest.h>

#include <complex>
#include <numeric>
#include <string>

namespace {

using namespace foundation::vexadata;
using support::throwsExactly;

/// The name of the handle that comes for an array.
struct HandleName {
    template <class T>
    std::string operator()(const TypedArray<T>& array) const {
        EXPECT_TRUE(detail::acceptsType<T>(array.getType()));
        return "typed array";
    }
    template <class T>
    std::string operator()(const SparseArray<T>& array) const {
        EXPECT_EQ(array.getType(), detail::sparseTypeOf<T>);
        return "sparse array";
    }
    std::string operator()(const CharArray&) const { return "characters"; }
    std::string operator()(const StructArray&) const { return "struct"; }
    std::string operator()(const EnumArray&) const { return "enumeration"; }
    std::string operator()(const ValueObjectArray&) const { return "objects"; }
};

TEST(Visit, GivesTheHandleOfEveryKind) {
    ArrayFactory factory;
    for (int value = 1; value <= 32; ++value) {
        const auto type = static_cast<ArrayType>(value);
        const std::string expected = type == ArrayType::CHAR     ? "characters"
                                     : type == ArrayType::STRUCT ? "struct"
                                     : type == ArrayType::ENUM   ? "enumeration"
                                     : type == ArrayType::OBJECT || type == ArrayType::VALUE_OBJECT
                                         ? "objects"
                                     : value >= 30 ? "sparse array"
                                                   : "typed array";
        EXPECT_EQ(visit(factory.createArray(type, {2, 3}), HandleName()), expected) << value;
    }
}

/// Real numbers of any type, also those of a sparse array.
struct Sum {
    template <class T, std::enable_if_t<std::is_arithmetic_v<T>, int> = 0>
    double operator()(const TypedArray<T>& numbers) const {
        return std::accumulate(numbers.begin(), numbers.end(), 0.0);
    }
    double operator()(const SparseArray<double>& numbers) const {
        return std::accumulate(numbers.begin(), numbers.end(), 0.0);
    }
};

TEST(Visit, RefusesKindsThatTheVisitorDoesNotTake) {
    ArrayFactory factory;
    EXPECT_EQ(visit(factory.createArray<std::int16_t>({1, 3}, {1, 2, 3}), Sum()), 6);
    EXPECT_EQ(visit(factory.createArray<bool>({1, 3}, {true, false, true}), Sum()), 2);
    const Array others[] = {Array(), factory.createArray<std::complex<double>>({1, 1}),
                            factory.createArray<String>({1, 1}),
                            factory.createArray(ArrayType::SPARSE_LOGICAL, {1, 1})};
    for (const Array& other : others) {
        EXPECT_TRUE(
            throwsExactly<InvalidArrayTypeException>([&] { visit(other, Sum()); }, "Invalid Array type"));
    }
    // A function of one typed handle takes that kind and no other, although handles convert.
    const auto first = [](const TypedArray<double>& numbers) -> double { return numbers[0]; };
    EXPECT_EQ(visit(factory.createScalar(7.0), first), 7);
    EXPECT_TRUE(throwsExactly<InvalidArrayTypeException>(
        [&] { visit(factory.createScalar(std::int8_t{7}), first); }, "Invalid Array type"));
}

TEST(Visit, WritesInPlaceIntoAnArrayThatIsMovedIn) {
    ArrayFactory factory;
    Array array = factory.createArray<double>({1, 2}, {1, 2});
    const std::uint64_t identity = array.getArrayID();
    const auto doubled = [](TypedArray<double> numbers) -> Array {
        for (double& x : numbers) {
            x *= 2;
        }
        return numbers;
    };
    const Array copy = visit(array, doubled);
    EXPECT_EQ(visit(array, Sum()), 3);
    EXPECT_EQ(visit(copy, Sum()), 6);
    array = visit(std::move(array), doubled);
    EXPECT_EQ(visit(array, Sum()), 6);
    EXPECT_EQ(array.getArrayID(), identity);

    auto cells = factory.createArray<Array>({1, 1});
    cells[0] = array;
    EXPECT_EQ(visit(cells[0], Sum()), 6);
}

} // namespace
