// Reading and writing elements through typed, untyped and named references, for every primitive type.
#include "support/AllocationCountdown.hpp"
#include "support/Ledger.hpp"
#include "support/Throws.hpp"

#include <foundation/vexadata/ArrayFactory.hpp>
#include <foundation/vexadata/Exception.hpp>
#include <vexa/testing/CallLog.hpp>

#include <gtest/gtest.h>

#include <complex>
#include <cstdint>
#include <limits>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

namespace {

using namespace foundation::vexadata;
using support::throwsExactly;

/// Values that a conversion through another type would not survive.
template <class T>
struct Samples {
    static T first() { return std::numeric_limits<T>::max(); }
    static T second() { return std::numeric_limits<T>::lowest(); }
};
template <>
struct Samples<bool> {
    static bool first() { return true; }
    static bool second() { return false; }
};
template <class T>
struct Samples<std::complex<T>> {
    static std::complex<T> first() { return {Samples<T>::first(), T{1}}; }
    static std::complex<T> second() { return {T{2}, Samples<T>::first()}; }
};

template <class T>
class ElementAccess : public support::LedgerTest {
protected:
    using OtherElement = std::conditional_t<std::is_same_v<T, double>, float, double>;

    TypedArray<T> array_ = ArrayFactory().createArray<T>({2, 3});
    T first_ = Samples<T>::first();
    T second_ = Samples<T>::second();
};

using Primitives =
    testing::Types<bool, char16_t, double, float, std::int8_t, std::uint8_t, std::int16_t, std::uint16_t,
                   std::int32_t, std::uint32_t, std::int64_t, std::uint64_t, std::complex<double>,
                   std::complex<float>, std::complex<std::int8_t>, std::complex<std::uint8_t>,
                   std::complex<std::int16_t>, std::complex<std::uint16_t>, std::complex<std::int32_t>,
                   std::complex<std::uint32_t>, std::complex<std::int64_t>, std::complex<std::uint64_t>>;
TYPED_TEST_SUITE(ElementAccess, Primitives);

TYPED_TEST(ElementAccess, RoundTripsThroughEveryKindOfReference) {
    using T = TypeParam;
    auto& array = this->array_;
    array[1][2] = this->first_;
    EXPECT_EQ(static_cast<T>(std::as_const(array)[1][2]), this->first_);
    EXPECT_EQ(array.begin()[5], this->first_);

    Array untyped = std::move(array);
    T value = std::as_const(untyped)[1][2];
    EXPECT_EQ(value, this->first_);
    untyped[0][1] = this->second_;
    value = static_cast<T>(untyped[0][1]);
    EXPECT_EQ(value, this->second_);

    Reference<T> named = untyped[0][1];
    EXPECT_EQ(static_cast<T>(named), this->second_);
    named = this->first_;
    EXPECT_EQ(static_cast<T>(std::as_const(untyped)[0][1]), this->first_);
    EXPECT_EQ(static_cast<T>(std::as_const(untyped)[0][0]), T());
}

TYPED_TEST(ElementAccess, AssigningReferencesCopiesTheElement) {
    using T = TypeParam;
    auto& array = this->array_;
    array[0][0] = this->first_;
    array[0][1] = array[0][0];
    array[0][2] = std::as_const(array)[0][1];
    auto last = array[1][2];
    const auto source = array[0][0];
    last = source;
    array[0][0] = this->second_; // a rebound `last` would follow
    for (const auto& [row, col] : {std::pair{0, 1}, {0, 2}, {1, 2}}) {
        EXPECT_EQ(static_cast<T>(array[std::size_t(row)][std::size_t(col)]), this->first_)
            << row << ',' << col;
    }

    Array untyped = array;
    untyped[1][0] = untyped[0][0];
    untyped[1][1] = std::as_const(untyped)[0][1];
    EXPECT_EQ(static_cast<T>(untyped[1][0]), this->second_);
    EXPECT_EQ(static_cast<T>(untyped[1][1]), this->first_);
    EXPECT_EQ(static_cast<T>(array[1][0]), T()); // another handle

    Reference<T> a = array[0][0];
    Reference<T> b = array[0][1];
    a = b;
    b = this->second_;
    EXPECT_EQ(static_cast<T>(array[0][0]), this->first_);
    EXPECT_EQ(static_cast<T>(array[0][1]), this->second_);
}

TYPED_TEST(ElementAccess, UntypedAccessWantsExactlyTheElementType) {
    using T = TypeParam;
    using Other = typename TestFixture::OtherElement;
    this->array_[0][0] = this->first_;
    Array untyped = std::move(this->array_);
    EXPECT_TRUE(throwsExactly<TypeMismatchException>([&] {
        Other value = untyped[0][0];
        (void)value;
    }));
    EXPECT_TRUE(throwsExactly<TypeMismatchException>([&] { untyped[0][0] = Other(); }));
    EXPECT_TRUE(throwsExactly<TypeMismatchException>([&] { Reference<Other> r = untyped[0][0]; }));
    // The type comes before the index.
    EXPECT_TRUE(throwsExactly<TypeMismatchException>([&] { untyped[9][9] = Other(); }));
    Array others = ArrayFactory().createArray<Other>({1, 1});
    EXPECT_TRUE(throwsExactly<TypeMismatchException>([&] { untyped[0][0] = others[0][0]; }));
    EXPECT_EQ(static_cast<T>(untyped[0][0]), this->first_);
}

TYPED_TEST(ElementAccess, WritesUnshareBeforeTheIndexIsLookedAt) {
    using T = TypeParam;
    auto made = vexa::testing::recorded(std::move(this->array_));
    made.array[1][1] = this->first_;
    EXPECT_EQ(made.log->operations().size(), 2U);
    EXPECT_EQ(made.log->operations().front(), "unshare()");
    EXPECT_EQ(made.log->operations().back().rfind("setElementValue(3, \"\", ", 0), 0U)
        << made.log->operations().back();
    made.log->clear();
    EXPECT_TRUE(throwsExactly<EArrayIndexOutOfRange>([&] { made.array[2][0] = this->second_; }));
    EXPECT_TRUE(throwsExactly<EArrayIndexOutOfRange>([&] { made.array[0][3] = made.array[0][0]; }));
    EXPECT_EQ(made.log->take(),
              (std::vector<std::string>{"unshare()", "getElementAddress(0, \"\", false)", "unshare()"}));
    EXPECT_TRUE(throwsExactly<EArrayIndexOutOfRange>([&] { made.array[0][0] = made.array[0][3]; }));
    EXPECT_TRUE(throwsExactly<EArrayIndexOutOfRange>([&] { Reference<T> r = made.array[2][2]; }));
    EXPECT_EQ(made.log->take(), std::vector<std::string>{});
    EXPECT_EQ(static_cast<T>(made.array[0][0]), T());
    EXPECT_EQ(static_cast<T>(made.array[1][1]), this->first_);
}

using Complex = std::complex<double>;

TEST(ComplexElements, CompareWithValuesAndWithEachOther) {
    auto array = ArrayFactory().createArray<Complex>({1, 3}, {{1, 2}, {1, 2}, {1, -2}});
    const Reference<Complex> named = array[1];
    EXPECT_TRUE(array[0] == Complex(1, 2));
    EXPECT_TRUE(Complex(1, 2) == array[0]);
    EXPECT_TRUE(array[0] == array[1]);
    EXPECT_TRUE(array[0] != array[2]);
    EXPECT_TRUE(array[2] != Complex(1, 2));
    EXPECT_TRUE(Complex(1, 2) != array[2]);
    EXPECT_TRUE(named == Complex(1, 2));
    EXPECT_TRUE(named != Complex(2, 1));
    EXPECT_FALSE(named != named);
}

template <class A, class B, class = void>
constexpr bool comparable = false;
template <class A, class B>
constexpr bool comparable<A, B, std::void_t<decltype(std::declval<A>() == std::declval<B>())>> = true;

// Whatever names an element may stand on either side. Asked of the types, so that a form that does not
// compile is one failure among others.
TEST(ReferenceForms, AssignAndCompareAcrossTheirKinds) {
    using Element = ArrayElementTypedRef<double, false>;
    using ConstElement = ArrayElementTypedRef<double, true>;
    using Untyped = ArrayElementRef<false>;
    EXPECT_TRUE((std::is_assignable_v<Element&, Reference<double>>));
    EXPECT_TRUE((std::is_assignable_v<Element&, Untyped>));
    EXPECT_TRUE((std::is_assignable_v<Reference<double>&, ConstElement>));
    EXPECT_TRUE((std::is_assignable_v<Reference<double>&, Element>));
    EXPECT_TRUE((std::is_assignable_v<Reference<double>&, Untyped>));
    EXPECT_TRUE((std::is_assignable_v<Untyped, Element>));
    EXPECT_TRUE((std::is_assignable_v<Untyped, Reference<double>>));
    EXPECT_TRUE((std::is_assignable_v<Reference<Array>&, Untyped>));
    EXPECT_TRUE((std::is_assignable_v<Untyped, Reference<Array>>));
    EXPECT_TRUE((std::is_assignable_v<Array&, Untyped>));
    EXPECT_TRUE((std::is_assignable_v<TypedArray<double>&, Untyped>));
    EXPECT_TRUE((std::is_assignable_v<TypedArray<double>&, Reference<Array>>));
    EXPECT_FALSE((std::is_convertible_v<ConstElement, Element>));
    EXPECT_FALSE((std::is_convertible_v<ConstElement, Reference<double>>));
    EXPECT_FALSE((std::is_convertible_v<ArrayElementRef<true>, Reference<double>>));
    EXPECT_FALSE((std::is_convertible_v<ArrayElementRef<true>, Reference<Array>>));

    using ComplexElement = ArrayElementTypedRef<Complex, false>;
    using ConstComplexElement = ArrayElementTypedRef<Complex, true>;
    EXPECT_TRUE((comparable<ComplexElement, ConstComplexElement>));
    EXPECT_TRUE((comparable<ComplexElement, Reference<Complex>>));
    EXPECT_TRUE((comparable<Reference<Complex>, ConstComplexElement>));
}

TEST(ElementHandles, TakeCompoundAssignments) {
    ArrayFactory factory;
    auto bytes = factory.createArray<std::int8_t>({2, 2}, {1, 2, 3, 4});
    (bytes[1][1] += 3) *= 2;
    EXPECT_EQ(bytes[1][1], 14);
    Reference<std::int8_t> named = bytes[0][1];
    named -= 1;
    EXPECT_EQ(bytes[0][1], 2);
    auto complex = factory.createScalar(std::complex<double>(4, 2));
    const auto shared = complex;
    complex[0] /= 2;
    EXPECT_EQ(complex[0], std::complex<double>(2, 1));
    EXPECT_EQ(shared[0], std::complex<double>(4, 2));
}

TEST(ElementHandles, AreSmallAndAllocateNothing) {
    EXPECT_LE(sizeof(ArrayElementTypedRef<double, false>), 128U);
    EXPECT_LE(sizeof(ArrayElementRef<true>), 128U);

    ArrayFactory factory;
    auto matrix = factory.createArray<double>({4, 4});
    auto cube = factory.createArray<std::complex<float>>({3, 3, 3});
    Array untyped = factory.createArray<std::int16_t>({4, 4});
    EXPECT_EQ(support::countAllocations([&] {
                  for (std::size_t i = 0; i < 4; ++i) {
                      for (std::size_t j = 0; j < 4; ++j) {
                          matrix[i][j] = matrix[j][i];
                          untyped[i][j] = static_cast<std::int16_t>(untyped[j][i]);
                      }
                  }
              }),
              0U);
    EXPECT_EQ(support::countAllocations([&] {
                  cube[2][1][0] = std::as_const(cube)[0][1][2];
                  auto page = cube[1];
                  auto row = page[1];
                  row[0] = row[2];
              }),
              0U);
    // Naming an element is what makes a chain of its own.
    EXPECT_GT(support::countAllocations([&] { Reference<double> named = matrix[1][1]; }), 0U);
}

TEST(ElementShorthand, IsWhatTheIndicesInBracketsAre) {
    ArrayFactory factory;
    auto a = factory.createArray<std::int16_t>({2, 3}, {1, 2, 3, 4, 5, 6});
    const auto before = a;
    a(1, 2) += 10;
    EXPECT_EQ(++a(0, 0), 2);
    EXPECT_EQ(a[0][1]++, 3);
    EXPECT_EQ(a.at(0, 1)--, 4);
    EXPECT_EQ(--a(0, 1), 2);
    EXPECT_EQ(a, factory.createArray<std::int16_t>({2, 3}, {2, 2, 2, 4, 5, 16}));
    EXPECT_EQ(before(1, 2), 6);
    EXPECT_EQ(before.size(), 6U);
    EXPECT_THROW(a.at(2, 0), EArrayIndexOutOfRange);
    EXPECT_THROW(before.at(1), NotEnoughIndicesProvidedException);
    EXPECT_THROW(before.at(0, 0, 1), TooManyIndicesProvidedException);
    const auto shared = a;
    EXPECT_EQ(shared.data(), std::as_const(a).data());
    a.data()[5] = 0;
    EXPECT_EQ(shared(1, 2), 16) << "the writable form makes the array private";
    EXPECT_EQ(factory.createArray<std::int16_t>({0, 2}).data(), nullptr);
    auto row = factory.createArray<String>({1, 2}, {"a", "b"});
    row(1) = "c";
    EXPECT_TRUE(row.at(1) == "c");
    EXPECT_EQ(factory.createScalar(std::string_view("ab"))[0], "ab");
    EXPECT_EQ(factory.createScalar(std::u16string_view(u"\u20ac"))[0], u"\u20ac");
}

} // namespace
