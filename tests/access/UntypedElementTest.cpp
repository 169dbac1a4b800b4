// Elements of arrays whose kind is known at run time only do what those of typed arrays do, and refuse other
// kinds.
#include "support/Ledger.hpp"
#include "support/Throws.hpp"

#include <foundation/vexadata/ArrayFactory.hpp>
#include <foundation/vexadata/Exception.hpp>

#include <gtest/gtest.h>

#include <complex>
#include <cstdint>
#include <limits>
#include <stdexcept>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

namespace {

using namespace foundation::vexadata;

class UntypedElements : public support::LedgerTest {
protected:
    ArrayFactory factory;
};

TEST_F(UntypedElements, AreComparedByValue) {
    const Array doubles =
        factory.createArray<double>({1, 3}, {1.5, 2, std::numeric_limits<double>::quiet_NaN()});
    const Array words =
        factory.createArray<std::uint64_t>({1, 2}, {2, std::numeric_limits<std::uint64_t>::max()});
    EXPECT_TRUE(doubles[0] == 1.5 && doubles[0] == 1.5F && doubles[1] == 2 && 2 == doubles[1]);
    EXPECT_TRUE(doubles[0] < 2 && 2 > doubles[0] && doubles[1] <= 2U && doubles[1] >= true &&
                doubles[0] != 1);
    EXPECT_FALSE(doubles[2] == 1.0 || doubles[2] < 1.0 || doubles[2] >= 1.0 || doubles[2] == doubles[2]);
    EXPECT_TRUE(words[1] > -1 && words[1] != -1 && -1 < words[1]) << "the sign is not lost";
    EXPECT_TRUE(words[0] == 2.0 && words[0] == 2LL && words[0] < 2.5);
    EXPECT_TRUE(doubles[0] != doubles[1] && doubles[1] == TypedArray<double>(doubles)[1]);
    EXPECT_THROW(static_cast<void>(doubles[1] == words[0]), TypeMismatchException);
    EXPECT_THROW(static_cast<void>(doubles[1] == "2"), TypeMismatchException);

    const Array complex = factory.createArray<std::complex<double>>({1, 1}, {{2, 0}});
    EXPECT_TRUE(complex[0] == std::complex<double>(2, 0) && complex[0] == 2 && complex[0] != 3);
    EXPECT_THROW(static_cast<void>(complex[0] < 3), TypeMismatchException);
    EXPECT_THROW(static_cast<void>(complex[0] == std::complex<float>(2, 0)), TypeMismatchException);

    TypedArray<Array> cells = factory.createArray<Array>({1, 2}, {doubles, doubles});
    EXPECT_TRUE(cells[0] == cells[1] && cells[0] == doubles);
    EXPECT_THROW(static_cast<void>(cells[0] == 1.5), TypeMismatchException);
}

TEST_F(UntypedElements, AreComputedWith) {
    Array doubles = factory.createArray<double>({1, 2}, {1.5, 2});
    const Array before = doubles;
    EXPECT_EQ(doubles[0] + 1.0, 2.5);
    EXPECT_EQ(3.0 - doubles[0] * 2.0, 0);
    double sum = 1;
    sum += doubles[1];
    EXPECT_EQ(sum, 3);
    EXPECT_THROW(static_cast<void>(doubles[0] + 1), TypeMismatchException) << "which would be a whole number";
    doubles[0] += 1;
    doubles[1] /= 4.0F;
    EXPECT_TRUE(doubles[0] == 2.5 && doubles[1] == 0.5 && before[0] == 1.5);
    TypedArray<std::int8_t> typed = factory.createArray<std::int8_t>({1, 1}, {7});
    typed[0] /= 0.5;
    EXPECT_EQ(typed[0], 14);
    Array words = factory.createArray<std::int64_t>({1, 2}, {(1LL << 53) + 1, 3});
    words[0] /= words[1];
    EXPECT_EQ(words[0], 3002399751580331);
    words[1] += doubles[0];
    EXPECT_TRUE(words[1] == 5 && words[1] < words[0] && doubles[1] <= typed[0]);
    Array complex = factory.createArray<std::complex<float>>({1, 1}, {{1, 1}});
    complex[0] *= 2;
    complex[0] += std::complex<float>(0, 1);
    EXPECT_EQ(complex[0], std::complex<float>(2, 3));
    complex[0] -= complex[0];
    EXPECT_EQ(complex[0], 0);
    EXPECT_THROW(doubles[0] += complex[0], TypeMismatchException);
    Array strings = factory.createArray<String>({1, 1});
    EXPECT_THROW(strings[0] += 1, TypeMismatchException);
}

__extension__ using Wide = __int128;

enum class Operation { add, subtract, multiply, divide };

template <class N>
N applied(Operation operation, N a, N b) {
    return operation == Operation::add        ? a + b
           : operation == Operation::subtract ? a - b
           : operation == Operation::multiply ? a * b
                                              : a / b;
}

/// What an element `a` becomes: whole numbers wrap around and are divided exactly by those with the same kind of sign, everything
/// else is computed in doubles and becomes the nearest number that there is.
template <class T, class N>
T wantedFrom(Operation operation, T a, N b) {
    const auto nearest = [](auto value) {
        using Limits = std::numeric_limits<T>;
        return std::is_same_v<T, bool>                                   ? static_cast<T>(value != 0)
               : value != value                                          ? T()
               : value <= static_cast<decltype(value)>(Limits::lowest()) ? Limits::lowest()
               : value >= static_cast<decltype(value)>(Limits::max())    ? Limits::max()
                                                                         : static_cast<T>(value);
    };
    if constexpr (std::is_integral_v<T> && std::is_integral_v<N>) {
        if (operation != Operation::divide) {
            return static_cast<T>(
                applied(operation, static_cast<std::uint64_t>(a), static_cast<std::uint64_t>(b)));
        }
        if (b != 0 && std::is_signed_v<T> == std::is_signed_v<N>) {
            return nearest(static_cast<Wide>(a) / static_cast<Wide>(b));
        }
    }
    const double result = applied(operation, static_cast<double>(a), static_cast<double>(b));
    if constexpr (std::is_floating_point_v<T>) {
        return static_cast<T>(result);
    } else {
        return nearest(result);
    }
}

template <class T, class N>
void expectArithmetic(ArrayFactory& factory, T a, N b) {
    const auto after = [&](auto change) {
        Array array = factory.createArray<T>({1, 1}, {a});
        change(array);
        return static_cast<T>(TypedArray<T>(array)[0]);
    };
    const std::pair<Operation, T> results[] = {
        {Operation::add, after([&](Array& array) { array[0] += b; })},
        {Operation::subtract, after([&](Array& array) { array[0] -= b; })},
        {Operation::multiply, after([&](Array& array) { array[0] *= b; })},
        {Operation::divide, after([&](Array& array) { array[0] /= b; })}};
    for (const auto& [operation, result] : results) {
        const T wanted = wantedFrom(operation, a, b);
        EXPECT_TRUE(result == wanted || (result != result && wanted != wanted))
            << +a << " and " << b << ", operation " << static_cast<int>(operation) << ": " << +result
            << ", not " << +wanted;
    }
    const Array array = factory.createArray<T>({1, 1}, {a});
    using Common = std::conditional_t<std::is_integral_v<T> && std::is_integral_v<N>, Wide, double>;
    const auto x = static_cast<Common>(a);
    const auto y = static_cast<Common>(b);
    EXPECT_TRUE((array[0] == b) == (x == y) && (array[0] < b) == (x < y) && (array[0] > b) == (x > y) &&
                (array[0] <= b) == (x <= y) && (array[0] >= b) == (x >= y))
        << +a << " and " << b;
}

TEST_F(UntypedElements, AreComputedWithAndComparedAsTheirKindSays) {
    const auto expectAll = [this]<class T>(T) {
        using Limits = std::numeric_limits<T>;
        for (const T a : {Limits::lowest(), static_cast<T>(Limits::lowest() + T(1)), T(0), T(1), T(3),
                          static_cast<T>(Limits::max() / T(2)), Limits::max()}) {
            for (const std::int64_t b : {std::numeric_limits<std::int64_t>::min(), std::int64_t(-2),
                                         std::int64_t(-1), std::int64_t(0), std::int64_t(1), std::int64_t(7),
                                         std::numeric_limits<std::int64_t>::max()}) {
                expectArithmetic(factory, a, b);
                expectArithmetic(factory, a, static_cast<std::uint64_t>(b));
            }
            for (const double b :
                 {-1e300, -2.5, -1.0, 0.0, 0.5, 1.0, 1e-300, 9.3e18, std::numeric_limits<double>::infinity(),
                  std::numeric_limits<double>::quiet_NaN()}) {
                expectArithmetic(factory, a, b);
            }
        }
    };
    expectAll(true), expectAll(std::int8_t()), expectAll(std::uint16_t()), expectAll(std::int32_t());
    expectAll(std::int64_t()), expectAll(std::uint64_t()), expectAll(1.0F), expectAll(1.0);
}

TEST_F(UntypedElements, AreTextsMembersAndRecords) {
    Array strings = factory.createArray<String>({1, 3});
    strings[0] = u"x";
    strings[1] = "narrow";
    EXPECT_TRUE(strings[0] == "x" && u"narrow" == strings[1] && strings[0] != strings[1]);
    EXPECT_FALSE(strings[2] == strings[2]) << "missing";
    const String text = strings[0];
    const String missing = strings[2];
    EXPECT_EQ(text, u"x");
    EXPECT_FALSE(missing.has_value());
    EXPECT_EQ(std::u16string(strings[1]), u"narrow");
    EXPECT_THROW(static_cast<void>(std::u16string(strings[2])), std::runtime_error);
    EXPECT_THROW(strings[0] = "\xE9", NonAsciiCharInInputDataException);
    strings[0] = std::nullopt;
    EXPECT_EQ(strings[0], "");
    EXPECT_THROW(strings[0] = 1.0, TypeMismatchException);

    Array colors = factory.createEnumArray({1, 2}, "Color", {"red", "blue"});
    EXPECT_TRUE(colors[0] == "red" && colors[0] != colors[1]);
    colors[0] = "blue";
    EXPECT_EQ(Enumeration(colors[0]).getName(), "blue");
    colors[1] = Enumeration("red");
    EXPECT_EQ(colors[1], "red");
    EXPECT_THROW(colors[0] = u"red", TypeMismatchException);
    EXPECT_THROW(static_cast<void>(String(std::as_const(colors)[0])), TypeMismatchException);

    Array records = factory.createStructArray({1, 2}, {"a", "b"});
    records[0] = std::vector<Array>{factory.createScalar(1.0), factory.createArray<String>({1, 1})};
    const char* name = "a";
    EXPECT_EQ(records[0][name][0], 1.0);
    records[0]["b"][0] = "x";
    EXPECT_EQ(std::as_const(records)[0]["b"][0], u"x");
    StructElement first = records[0];
    StructElement second = records[1];
    std::swap(first, second);
    EXPECT_EQ(second["a"][0], 1.0);
    first = second;
    EXPECT_EQ(first["a"][0], 1.0);
    EXPECT_TRUE(StructElement(records[1])["a"].isEmpty()) << "assigning a view writes nothing";
    EXPECT_THROW(records[1] = (std::vector<Array>{Array()}), WrongVectorSizeForStructException);
    EXPECT_THROW(strings[1] = (std::vector<Array>{Array()}), TypeMismatchException);
}

TEST_F(UntypedElements, AreAssignedToThoseOfTypedArrays) {
    Array strings = factory.createArray<String>({1, 2});
    strings[0] = "x";
    TypedArray<String> texts = factory.createArray<String>({1, 2});
    texts[0] = strings[0];
    Reference<String> text = texts[1];
    text = strings[0];
    EXPECT_TRUE(texts[0] == "x" && texts[1] == "x");
    Array colors = factory.createEnumArray({1, 2}, "Color", {"red", "blue"});
    EnumArray members = colors;
    Reference<Enumeration> member = members[0];
    member = colors[1];
    EXPECT_EQ(member, "blue");
    const TypedArray<Array> cells = factory.createArray<Array>({1, 1}, {factory.createScalar(5.0)});
    TypedArray<double> numbers = factory.createScalar(1.0);
    Reference<double> number = numbers[0];
    number = cells[0].held()[0];
    EXPECT_EQ(number, 5.0);
    EXPECT_THROW(strings[0] = static_cast<const char*>(nullptr), std::logic_error);
}

TEST_F(UntypedElements, AreReadAndWrittenAsWideIntegersAndObjects) {
    Array words = factory.createArray<std::int64_t>({1, 1}, {7});
    const long long word = words[0];
    words[0] = word + 1LL;
    EXPECT_EQ(words[0], 8);
    EXPECT_THROW(words[0] = 8ULL, TypeMismatchException);

    const ClassInfo point = factory.createClassInfo("Point", {"x"});
    ValueObject object = factory.createValueObject(point);
    object["x"] = factory.createScalar(1.0);
    Array objects = factory.createValueObjectArray({1, 2}, point);
    objects[1] = object;
    const ValueObject taken = objects[1];
    EXPECT_EQ(taken["x"][0], 1.0);
    EXPECT_NE(objects[0], objects[1]);
    objects[0] = objects[1];
    EXPECT_EQ(objects[0], objects[1]);
}

TEST_F(UntypedElements, AnswerQueriesAboutTheArraysThatTheyHold) {
    Array cells = factory.createArray<Array>({1, 2}, {factory.createArray<double>({2, 3}), Array()});
    const Array& readOnly = cells;
    EXPECT_EQ(cells[0].getType(), ArrayType::DOUBLE);
    EXPECT_EQ(readOnly[0][0].getDimensions(), (std::vector<std::size_t>{2, 3}));
    EXPECT_EQ(readOnly[0].getNumberOfElements(), 6U);
    EXPECT_EQ(readOnly[0].getArrayID(), Array(cells[0]).getArrayID());
    std::size_t empty = 0;
    for (const auto element : TypedArray<Array>(readOnly)) {
        empty += element.isEmpty() ? 1U : 0U;
    }
    EXPECT_EQ(empty, 1U);
    EXPECT_TRUE(cells.isShared() == false) << "asking copies nothing";
    StructArray records = factory.createStructArray({1, 1}, {"a"});
    for (const auto value : std::as_const(records)[0]) {
        EXPECT_TRUE(value.isEmpty());
    }
    const Array numbers = factory.createArray<double>({2, 2});
    EXPECT_THROW(numbers[0][0].getType(), NotEnoughIndicesProvidedException);
    EXPECT_THROW(numbers[0][2].isEmpty(), EArrayIndexOutOfRange);
}

TEST_F(UntypedElements, ThatAWalkGivesTakeNoFurtherIndices) {
    const StructArray records = factory.createStructArray({1, 1}, {"a"});
    for (const auto record : records) {
        EXPECT_NO_THROW(record[0]["a"]);
        EXPECT_THROW(record[99], TooManyIndicesProvidedException);
    }
    TypedArray<String> strings = factory.createArray<String>({1, 1});
    for (const auto text : std::as_const(strings)) {
        EXPECT_FALSE(text[0].has_value());
        EXPECT_THROW(text[1], TooManyIndicesProvidedException);
    }
    const EnumArray colors = factory.createEnumArray({1, 1}, "Color", {"red"});
    for (const auto color : colors) {
        EXPECT_THROW(color[1], TooManyIndicesProvidedException);
    }
    // Missing strings are read by name where a text would be asked for.
    std::vector<String> texts(1, u"old");
    texts[0] = strings[0].value();
    EXPECT_FALSE(texts[0].has_value());
}

} // namespace
