// Typed iterators over contiguous storage, which move by pointer, and over a back-end's own iterators, which
// are forwarded to: both behave the same. Ranges and the order in which they ask the back-end.
#include "support/AllocationCountdown.hpp"
#include "support/Ledger.hpp"
#include "support/NoTypeInformation.hpp"
#include "support/Throws.hpp"

#include <foundation/vexadata/ArrayFactory.hpp>
#include <foundation/vexadata/BufferAccess.hpp>
#include <foundation/vexadata/Exception.hpp>
#include <vexa/testing/CallLog.hpp>
#include <vexa/testing/PointerIterator.hpp>

#include <gtest/gtest.h>

#include <algorithm>
#include <complex>
#include <cstdint>
#include <functional>
#include <iterator>
#include <memory>
#include <numeric>
#include <stdexcept>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

namespace {

using namespace foundation::vexadata;
using support::throwsExactly;
using Calls = std::vector<std::string>;

static_assert(std::random_access_iterator<TypedIterator<double>>);
static_assert(std::random_access_iterator<TypedIterator<const bool>>);
static_assert(std::random_access_iterator<TypedIterator<std::complex<float>>>);
static_assert(std::is_same_v<std::iter_reference_t<TypedIterator<double>>, double&>);
static_assert(std::is_same_v<std::iter_reference_t<TypedIterator<const double>>, const double&>);
static_assert(std::is_convertible_v<TypedIterator<double>, TypedIterator<const double>>);
static_assert(!std::is_convertible_v<TypedIterator<const double>, TypedIterator<double>>);
static_assert(!std::is_convertible_v<TypedIterator<float>, TypedIterator<const double>>);

/// A back-end's own iterator: every second element of a buffer.
template <class T>
class StridedIterator final : public vexa::testing::PointerIterator<StridedIterator<T>, T>,
                              private vexa::testing::LiveObjects::Counted {
    using Base = vexa::testing::PointerIterator<StridedIterator<T>, T>;

public:
    static constexpr std::int64_t stride = 2;

    using Base::Base;
    void advance(std::int64_t count) override { Base::advance(count * stride); }
    std::int64_t distanceTo(const vexa::data::detail::IteratorImpl& other) const override {
        return Base::distanceTo(other) / stride;
    }
    void decrement() override { Base::advance(-stride); }
    void increment() override { Base::advance(stride); }
};

/// Shows the first half of the inner array's buffer, every second element, as its elements.
template <class T>
class StridedArray : public vexa::testing::ForwardingNumbers<T> {
public:
    using vexa::testing::ForwardingNumbers<T>::ForwardingNumbers;

    vexa::data::detail::IteratorImpl* beginIterator(void* unused, bool writable) override {
        return new StridedIterator<T>(first("beginIterator", unused, writable));
    }
    vexa::data::detail::IteratorImpl* endIterator(void* unused, bool writable) override {
        const std::size_t count = this->wrapped().getNumberOfElements();
        return new StridedIterator<T>(first("endIterator", unused, writable) + count);
    }

protected:
    vexa::testing::ArrayImpl* wrapCopy(vexa::testing::Inner<vexa::testing::ArrayImpl> copy) const override {
        return new StridedArray(std::move(copy), this->hook());
    }

private:
    T* first(const char* operation, void* unused, bool writable) {
        return this->typed(operation, unused != nullptr, writable).getElementAddress(0, "", false);
    }
};

/// Elements 0 to 5 behind an iterator that moves by pointer.
template <class T>
struct Contiguous {
    static TypedArray<T> array() {
        std::vector<int> values(6);
        std::iota(values.begin(), values.end(), 0);
        return ArrayFactory().createArray<T>({2, 3}, values.begin(), values.end());
    }
};
/// The same behind one that is forwarded to.
template <class T>
struct Forwarded {
    static TypedArray<T> array() {
        const std::vector<int> values{0, -1, 1, -1, 2, -1, 3, -1, 4, -1, 5, -1};
        return vexa::testing::recorded<StridedArray>(
                   ArrayFactory().createArray<T>({2, 6}, values.begin(), values.end()))
            .array;
    }
};

template <class Source>
class Iterators : public support::LedgerTest {};
using Sources = testing::Types<Contiguous<double>, Forwarded<double>, Contiguous<char16_t>,
                               Forwarded<char16_t>, Contiguous<std::int64_t>, Forwarded<std::int64_t>>;
TYPED_TEST_SUITE(Iterators, Sources);

TYPED_TEST(Iterators, MoveAndCompareLikePointers) {
    auto array = TypeParam::array();
    using T = typename decltype(array)::value_type;
    const auto first = array.begin();
    const auto last = array.end();
    EXPECT_EQ(last - first, 6);
    EXPECT_EQ(first - last, -6);
    EXPECT_EQ(first.distanceTo(last), 6);
    EXPECT_EQ(*first, T(0));
    EXPECT_EQ(first[5], T(5));
    EXPECT_EQ(last[-1], T(5));
    EXPECT_EQ(*(first + 2), T(2));
    EXPECT_EQ(*(2 + first), T(2));
    EXPECT_EQ(*(last - 2), T(4));
    EXPECT_EQ(first + 6, last);
    EXPECT_NE(first, last);
    EXPECT_TRUE(first < last && last > first && first <= first && first >= first && first <= last);
    EXPECT_FALSE(last < first || first < first || first > first || first >= last);

    auto it = first;
    EXPECT_EQ(*it++, T(0));
    EXPECT_EQ(*++it, T(2));
    EXPECT_EQ(*it--, T(2));
    EXPECT_EQ(*--it, T(0));
    it += 4;
    EXPECT_EQ(*it, T(4));
    it -= 3;
    EXPECT_EQ(*it, T(1));
    EXPECT_EQ(*it.operator->(), T(1));
    EXPECT_EQ(&*it, &first[1]);
}

TYPED_TEST(Iterators, CopiesMoveIndependently) {
    auto array = TypeParam::array();
    using T = typename decltype(array)::value_type;
    auto it = array.begin();
    auto copy = it;
    ++copy;
    auto assigned = array.end();
    assigned = it;
    assigned += 2;
    TypedIterator<const T> readOnly = it;
    readOnly += 3;
    EXPECT_EQ(*it, T(0));
    EXPECT_EQ(*copy, T(1));
    EXPECT_EQ(*assigned, T(2));
    EXPECT_EQ(*readOnly, T(3));
    const auto moved = std::move(copy);
    copy = it; // a moved-from iterator may be assigned
    EXPECT_EQ(*moved, T(1));
    EXPECT_EQ(copy, it);
    auto& same = it;
    it = same;
    EXPECT_EQ(*++it, T(1));
    EXPECT_EQ(TypedIterator<T>(), TypedIterator<T>());
}

TYPED_TEST(Iterators, ServeTheStandardAlgorithms) {
    auto array = TypeParam::array();
    using T = typename decltype(array)::value_type;
    std::sort(array.begin(), array.end(), std::greater<>());
    EXPECT_TRUE(std::is_sorted(array.cbegin(), array.cend(), std::greater<>()));
    EXPECT_EQ(*array.begin(), T(5));
    std::sort(array.begin(), array.end());
    EXPECT_EQ(*std::lower_bound(array.begin(), array.end(), T(3)), T(3));
    std::reverse(array.begin(), array.end());
    std::transform(array.cbegin(), array.cend(), array.begin(), [](T value) { return T(value + 1); });
    std::swap(array.begin()[0], array.begin()[5]);
    const std::vector<T> expected{T(1), T(5), T(4), T(3), T(2), T(6)};
    EXPECT_EQ(std::vector<T>(array.cbegin(), array.cend()), expected);
}

TYPED_TEST(Iterators, OfTheLibrarysOwnKindAreCopiedWithoutAsking) {
    auto array = TypeParam::array();
    const auto first = array.begin();
    const bool own = std::is_same_v<TypeParam, Contiguous<typename decltype(array)::value_type>>;
    EXPECT_EQ(support::countAllocations([&] { const auto copy = first; }) == 0, own);
}

/// What is the same for pointers and for iterators that hand out handles.
template <class Iterator>
void expectRandomAccess(Iterator first, Iterator last) {
    static_assert(std::is_base_of_v<std::random_access_iterator_tag,
                                    typename std::iterator_traits<Iterator>::iterator_category>);
    EXPECT_EQ(std::distance(first, last), 4);
    EXPECT_EQ(std::prev(last), std::next(first, 3));
    EXPECT_EQ(std::prev(last, 4), first);
    Iterator it = last;
    std::advance(it, -3);
    EXPECT_EQ(it - first, 1);
    EXPECT_TRUE(first < it && it < last && first + 1 == it);
}

TEST(HandleIterators, WalkBothWaysAndJump) {
    ArrayFactory factory;
    auto strings = factory.createArray<String>({1, 4}, {u"a", u"b", u"c", u"d"});
    expectRandomAccess(strings.begin(), strings.end());
    expectRandomAccess(strings.cbegin(), strings.cend());
    EXPECT_EQ(*std::prev(strings.end()), "d");
    EXPECT_EQ(strings.end()[-2], "c");
    EXPECT_EQ(std::find(strings.cbegin(), strings.cend(), "c") - strings.cbegin(), 2);
    const std::string more[] = {"w", "x"};
    std::copy(std::begin(more), std::end(more), std::prev(strings.end(), 2));
    EXPECT_EQ(std::count(strings.cbegin(), strings.cend(), "x"), 1);
    auto cells = factory.createArray<Array>({2, 2});
    expectRandomAccess(cells.begin(), cells.end());
    auto records = factory.createStructArray({4, 1}, {"a"});
    expectRandomAccess(records.begin(), records.end());
    auto members = factory.createEnumArray({1, 4}, "Colors");
    expectRandomAccess(members.begin(), members.end());
}

/// A back-end's own, built on the library's.
class Backwards final
    : public vexa::data::detail::NonPrimitiveIteratorImpl<vexa::data::impl::MatchingDataOrder> {
public:
    using NonPrimitiveIteratorImpl::NonPrimitiveIteratorImpl;
    IteratorImpl* clone() const override { return new Backwards(*this); }
    void increment() override { NonPrimitiveIteratorImpl::decrement(); }
};

TEST(HandleIterators, AreAskedWhenTheyAreDerivedFromTheLibrarysOwn) {
    const auto strings = ArrayFactory().createArray<String>({1, 2}, {u"a", u"b"});
    TypedIterator<const String> it(new Backwards(detail::Access::impl(strings).get(), 1));
    auto copy = it;
    EXPECT_EQ(*it, "b");
    EXPECT_EQ(*++it, "a");
    EXPECT_EQ(*copy, "b");
}

TEST(BackEndsWithoutTypeInformation, AreWalkedAndAsked) {
    TypedArray<double> row(support::rowWithoutTypeInformation());
    for (double& value : row) {
        value *= 2;
    }
    std::sort(row.begin(), row.end(), std::greater<>());
    const auto& read = row;
    EXPECT_EQ(std::vector<double>(read.begin(), read.end()), (std::vector<double>{6, 4, 2}));
#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__) // they read type information themselves
    EXPECT_EQ(detail::typeInformationOf(*detail::Access::impl(row)), nullptr);
#endif
    const HandleObjectRef object(support::objectWithoutTypeInformation());
    EXPECT_THROW(object.getId(), EArrayInvalidHandleRef);
}

class IteratorCalls : public support::LedgerTest {
protected:
    vexa::testing::Recorded<double> made = vexa::testing::recorded(Contiguous<double>::array());
};

TEST_F(IteratorCalls, TellTheBackEndWhetherTheyWrite) {
    std::as_const(made.array).begin();
    std::as_const(made.array).end();
    made.array.cbegin();
    made.array.begin();
    made.array.end();
    EXPECT_EQ(made.log->take(), (Calls{"beginIterator(false, false)", "endIterator(false, false)",
                                       "beginIterator(false, false)", "beginIterator(false, true)",
                                       "endIterator(false, true)"}));
}

TEST_F(IteratorCalls, OfRangesComeInTheirOrder) {
    getReadOnlyElements<double>(made.array);
    EXPECT_EQ(made.log->take(), (Calls{"beginIterator(false, false)", "endIterator(false, false)"}));
    getWritableElements<double>(made.array);
    EXPECT_EQ(made.log->take(), (Calls{"endIterator(false, true)", "beginIterator(false, true)"}));
}

TEST_F(IteratorCalls, ArePrecededByTheTypeCheckOfRanges) {
    EXPECT_TRUE(throwsExactly<InvalidArrayTypeException>([&] { getReadOnlyElements<float>(made.array); }));
    EXPECT_TRUE(throwsExactly<InvalidArrayTypeException>([&] { getWritableElements<bool>(made.array); }));
    Array empty;
    EXPECT_TRUE(throwsExactly<InvalidArrayTypeException>([&] { getReadOnlyElements<double>(empty); }));
    const TypedArray<double> other = made.array;
    EXPECT_TRUE(throwsExactly<InvalidArrayTypeException>([&] { getWritableElements<Array>(made.array); }));
    EXPECT_EQ(made.log->take(), Calls{}); // not even a copy
}

template <class T>
struct EndlessArray : StridedArray<T> {
    using StridedArray<T>::StridedArray;
    vexa::data::detail::IteratorImpl* endIterator(void*, bool) override {
        throw std::runtime_error("no end");
    }
};

TEST_F(IteratorCalls, ThatFailReleaseTheOtherIterator) {
    auto own =
        vexa::testing::recorded<EndlessArray>(Contiguous<double>::array()); // the ledger counts its iterators
    EXPECT_TRUE(throwsExactly<std::runtime_error>([&] { getReadOnlyElements<double>(own.array); }, "no end"));
    EXPECT_TRUE(throwsExactly<std::runtime_error>([&] { getWritableElements<double>(own.array); }, "no end"));
    Array cell = ArrayFactory().createArray<Array>({1, 1});
    cell[0] = own.array;
    Reference<Array> held = cell[0];
    EXPECT_TRUE(throwsExactly<std::runtime_error>([&] { getReadOnlyElements<double>(held); }, "no end"));
}

TEST_F(IteratorCalls, OverACellGiveForwardedIteratorsTheChainToo) {
    auto own = vexa::testing::recorded<StridedArray>(Contiguous<double>::array());
    Array cell = ArrayFactory().createArray<Array>({1, 1});
    cell[0] = std::move(own.array);
    auto reference = std::make_unique<Reference<Array>>(cell[0]);
    const auto* chain = reference->chain().get();
    chain->retain(); // to see who else holds it
    auto first = getReadOnlyElements<double>(*reference).begin();
    reference.reset();
    EXPECT_EQ(chain->referenceCount(), 2U); // the one iterator left
    auto copy = ++first;
    first = TypedIterator<const double>();
    EXPECT_EQ(chain->referenceCount(), 2U); // and then its copy
    EXPECT_EQ(*copy, 2.0);
    copy = TypedIterator<const double>();
    EXPECT_EQ(chain->referenceCount(), 1U);
    chain->release();
}

TEST_F(IteratorCalls, FollowStorageOrderInEitherLayout) {
    ArrayFactory factory;
    auto buffer = factory.createBuffer<double>(6);
    std::iota(buffer.get(), buffer.get() + 6, 0.0);
    auto rows = factory.createArrayFromBuffer({2, 3}, std::move(buffer), vexa::data::MemoryLayout::ROW_MAJOR);
    EXPECT_TRUE(std::is_sorted(rows.cbegin(), rows.cend()));
    EXPECT_EQ(rows[0][1], 1.0);
    const auto empty = factory.createArray<double>({0, 4});
    EXPECT_EQ(empty.begin(), empty.end());
}

} // namespace
