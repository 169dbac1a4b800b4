// When handles that share an array part, and what stays attached to what.
#include "support/Ledger.hpp"
#include "support/Throws.hpp"

#include <foundation/vexadata/VexaData.hpp>
#include <vexa/testing/CallLog.hpp>

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <numeric>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace {

using namespace foundation::vexadata;
using Calls = std::vector<std::string>;

class CopyOnWrite : public support::LedgerTest {
protected:
    static TypedArray<double> numbers() {
        return ArrayFactory().createArray<double>({2, 2}, {1.0, 2.0, 3.0, 4.0});
    }

    vexa::testing::Recorded<double> made = vexa::testing::recorded(numbers());
    TypedArray<double>& array = made.array;
    Calls calls() { return made.log->take(); }
    static const void* objectOf(const Array& handle) { return detail::Access::impl(handle).get(); }
};

TEST_F(CopyOnWrite, HappensOnceWhenAWritableWayInIsFormed) {
    using Way = std::function<void(TypedArray<double>&)>;
    const std::pair<const char*, Way> ways[] = {
        {"typed []", [](TypedArray<double>& a) { a[0]; }},
        {"untyped []", [](TypedArray<double>& a) { static_cast<Array&>(a)[0]; }},
        {"begin", [](TypedArray<double>& a) { a.begin(); }},
        {"end", [](TypedArray<double>& a) { a.end(); }},
        {"writable range", [](TypedArray<double>& a) { getWritableElements<double>(a); }},
    };
    for (const auto& [name, form] : ways) {
        SCOPED_TRACE(name);
        vexa::testing::Recorded<double> own = vexa::testing::recorded(numbers());
        form(own.array);
        EXPECT_EQ(std::count(own.log->operations().begin(), own.log->operations().end(), "sharedCopy()"), 0);

        const TypedArray<double> other = own.array;
        EXPECT_TRUE(own.array.isShared());
        own.log->clear();
        form(own.array);
        ASSERT_FALSE(own.log->operations().empty());
        EXPECT_EQ(own.log->operations().front(), "sharedCopy()"); // before anything is made
        form(own.array);
        EXPECT_EQ(std::count(own.log->operations().begin(), own.log->operations().end(), "sharedCopy()"), 1);
        EXPECT_FALSE(own.array.isShared());
        EXPECT_FALSE(other.isShared());
        EXPECT_NE(objectOf(own.array), objectOf(other));
    }
}

/// Each of the ways into an array or object that another handle shares gives this one its own, once.
template <class Handle, class... Ways>
void expectCopies(const Handle& made, Ways... ways) {
    const auto expectCopy = [&made](auto way) {
        Handle own = made;
        way(own);
        const auto* object = detail::Access::impl(own).get();
        EXPECT_NE(object, detail::Access::impl(made).get());
        way(own);
        EXPECT_EQ(detail::Access::impl(own).get(), object);
    };
    (expectCopy(ways), ...);
}

TEST_F(CopyOnWrite, HappensForEveryFamily) {
    ArrayFactory factory;
    const auto index = [](auto& a) { a[0]; };
    const auto begin = [](auto& a) { a.begin(); };
    const auto end = [](auto& a) { a.end(); };
    const ClassInfo point = factory.createClassInfo("Point", {"x"}, {"unit"});
    expectCopies(factory.createCharArray("text"), index, begin, end);
    expectCopies(factory.createArray<String>({1, 1}), index, begin, end);
    expectCopies(factory.createEnumArray({1, 1}, "Sky"), index, begin, end);
    expectCopies(factory.createArray<Array>({1, 1}), index, begin, end);
    expectCopies(factory.createStructArray({1, 1}, {"a"}), index, begin, end);
    expectCopies(factory.createArray<HandleObjectRef>({1, 1}), index, begin, end);
    expectCopies(SparseArray<double>(factory.createArray(ArrayType::SPARSE_DOUBLE, {1, 1})), begin, end);
    expectCopies(
        factory.createValueObjectArray({1, 1}, point), index, begin, end, [](auto& a) { a["unit"]; },
        [](auto& a) { a.beginArrayProp(); }, [](auto& a) { a.endArrayProp(); });
    expectCopies(factory.createValueObject(point), begin, end, [](auto& a) { a["x"]; });
}

TEST_F(CopyOnWrite, LeavesTheOtherHandleAsItWas) {
    TypedArray<double> other = array;
    Array untyped = array;
    array[0][0] = 10.0;
    untyped[0][0] = 20.0;
    *other.begin() = 30.0;
    EXPECT_EQ(array[0][0], 10.0);
    EXPECT_EQ(static_cast<double>(untyped[0][0]), 20.0);
    EXPECT_EQ(other[0][0], 30.0);
    EXPECT_EQ(array[1][1], 4.0);
}

TEST_F(CopyOnWrite, ReadingNeverUnshares) {
    const TypedArray<double> other = array;
    const Array& untyped = other;
    made.log->clear();
    double sum = other[1][1] + static_cast<double>(untyped[0][1]);
    sum += std::accumulate(other.begin(), other.end(), 0.0) + *array.cbegin();
    for (const double each : getReadOnlyElements<double>(array)) {
        sum += each;
    }
    EXPECT_EQ(sum, 4.0 + 3.0 + 10.0 + 1.0 + 10.0);
    EXPECT_EQ(*getBufferPtr(other).get(), 1.0);
    EXPECT_TRUE(array == other);
    for (const std::string& call : calls()) {
        EXPECT_NE(call, "sharedCopy()");
        EXPECT_NE(call, "unshare()");
    }
    EXPECT_EQ(objectOf(array), objectOf(other));
}

TEST_F(CopyOnWrite, ReferencesDoNotCountTheirArray) {
    auto element = array[0][0];
    Reference<double> named = array[1][0];
    auto it = array.begin();
    EXPECT_FALSE(array.isShared());
    EXPECT_EQ(detail::Access::impl(array)->referenceCount(), 1U);
    made.log->clear();
    array[1][1] = 9.0;
    EXPECT_EQ(calls(), (Calls{"unshare()", "setElementValue(3, \"\", 9)"}));
}

TEST_F(CopyOnWrite, AReferenceMadeBeforeACopyWritesTheSharedArray) {
    auto element = array[0][0];
    Reference<double> named = array[1][0];
    auto it = array.begin() + 3;
    const TypedArray<double> later = array;
    element = 10.0;
    named = 20.0;
    *it = 40.0;
    EXPECT_EQ(later[0][0], 10.0);
    EXPECT_EQ(later[1][0], 20.0);
    EXPECT_EQ(later[1][1], 40.0);
    EXPECT_EQ(objectOf(array), objectOf(later));
    // A reference made now belongs to the handle's own copy.
    array[0][0] = 11.0;
    element = 12.0;
    EXPECT_EQ(std::as_const(array)[0][0], 11.0);
    EXPECT_EQ(later[0][0], 12.0);
}

TEST_F(CopyOnWrite, AnotherOwnerInTheBackEndIsEnough) {
    auto* impl = detail::Access::impl(array).get();
    impl->retain();
    EXPECT_FALSE(array.isShared()); // handles know only handles
    array[0][0] = 10.0;
    EXPECT_EQ(calls().front(), "sharedCopy()");
    EXPECT_NE(objectOf(array), impl);
    EXPECT_EQ(impl->referenceCount(), 1U);
    impl->release();
}

TEST_F(CopyOnWrite, TheCopyIsTheHandlesAlone) {
    TypedArray<double> other = array;
    array[0][0] = 10.0;
    EXPECT_EQ(detail::Access::impl(array)->referenceCount(), 1U);
    EXPECT_EQ(detail::Access::impl(other)->referenceCount(), 1U);
    EXPECT_EQ(vexa::testing::LiveObjects::count(), 2);
    other = array;
    EXPECT_EQ(vexa::testing::LiveObjects::count(), 1);
    EXPECT_EQ(other[0][0], 10.0);
}

TEST_F(CopyOnWrite, ADefaultArrayAlwaysSharesAndCopiesBeforeItRefuses) {
    Array empty;
    EXPECT_TRUE(empty.isShared());
    EXPECT_EQ(objectOf(empty), objectOf(Array()));
    const Array& readOnly = empty;
    EXPECT_TRUE(support::throwsExactly<CantIndexIntoEmptyArrayException>([&] { readOnly[0]; }));
    EXPECT_TRUE(empty.isShared());
    EXPECT_TRUE(support::throwsExactly<CantIndexIntoEmptyArrayException>([&] { empty[0]; }));
    EXPECT_FALSE(empty.isShared());
    EXPECT_EQ(empty, Array());
}

template <class T>
struct UncopyableArray : vexa::testing::ForwardingNumbers<T> {
    using vexa::testing::ForwardingNumbers<T>::ForwardingNumbers;
    vexa::data::impl::ArrayImpl* sharedCopy() const override { throw std::runtime_error("no copy"); }
};

TEST_F(CopyOnWrite, AFailingCopyLeavesBothHandles) {
    auto own = vexa::testing::recorded<UncopyableArray>(numbers());
    const TypedArray<double> other = own.array;
    EXPECT_TRUE(support::throwsExactly<std::runtime_error>([&] { own.array[0][0] = 5.0; }, "no copy"));
    EXPECT_TRUE(support::throwsExactly<std::runtime_error>([&] { own.array.begin(); }, "no copy"));
    EXPECT_TRUE(support::throwsExactly<std::runtime_error>([&] { getWritableElements<double>(own.array); },
                                                           "no copy"));
    EXPECT_EQ(objectOf(own.array), objectOf(other));
    EXPECT_EQ(other[0][0], 1.0);
}

} // namespace
