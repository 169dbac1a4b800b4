// Whole buffers: read access that keeps the array alive, and handing the elements over.
#include "support/Ledger.hpp"
#include "support/Throws.hpp"

#include <foundation/vexadata/ArrayFactory.hpp>
#include <foundation/vexadata/BufferAccess.hpp>
#include <foundation/vexadata/Exception.hpp>
#include <vexa/testing/CallLog.hpp>

#include <gtest/gtest.h>

#include <complex>
#include <cstdint>
#include <memory>
#include <numeric>
#include <string>
#include <utility>
#include <vector>

namespace {

using namespace foundation::vexadata;
using support::throwsExactly;
using Calls = std::vector<std::string>;

ArrayType pretended = ArrayType::UNKNOWN;

/// Says that it is of the kind `pretended`.
template <class T>
struct PretendingArray : vexa::testing::ForwardingNumbers<T> {
    using vexa::testing::ForwardingNumbers<T>::ForwardingNumbers;
    ArrayType getType() const override { return pretended; }
};

class Buffers : public support::LedgerTest {
protected:
    static TypedArray<double> numbers() {
        return ArrayFactory().createArray<double>({1, 3}, {1.0, 2.0, 3.0});
    }
};

TEST_F(Buffers, UntypedAccessDependsOnTheKindAlone) {
    auto made = vexa::testing::recorded<PretendingArray>(numbers());
    for (std::int32_t kind = -1; kind <= 40; ++kind) {
        SCOPED_TRACE(kind);
        pretended = static_cast<ArrayType>(kind);
        made.log->clear();
        const auto read = [&] { return getBufferPtr(static_cast<const Array&>(made.array)); };
        const bool real = kind == 1 || kind == 2 || (kind >= 4 && kind <= 13);
        const bool known = kind >= 0 && kind <= 29 && kind != 0 && kind != 26;
        if (real) {
            EXPECT_EQ(*static_cast<const double*>(read().get()), 1.0);
            EXPECT_EQ(made.log->take(), (Calls{"getUntypedDataPtr()"}));
        } else if (known) {
            EXPECT_TRUE(throwsExactly<MustBePrimitiveTypeException>(read));
        } else {
            EXPECT_TRUE(throwsExactly<EArrayUnknownDataType>(read));
        }
        EXPECT_FALSE(made.array.isShared());
    }
    pretended = ArrayType::DOUBLE;
    EXPECT_TRUE(throwsExactly<EArrayUnknownDataType>([] { getBufferPtr(Array()); }));
}

TEST_F(Buffers, ComplexElementsAreReachedThroughTheTypedForm) {
    using Complex = std::complex<double>;
    auto array = ArrayFactory().createArray<Complex>({1, 2}, {{1, 2}, {3, 4}});
    EXPECT_EQ(getBufferPtr(array)[1], Complex(3, 4));
    EXPECT_TRUE(throwsExactly<MustBePrimitiveTypeException>([&] { getBufferPtr(Array(array)); }));
}

TEST_F(Buffers, KeepTheArrayAliveAndNeverUnshare) {
    auto made = vexa::testing::recorded(numbers());
    auto typed = getBufferPtr(made.array);
    auto untyped = getBufferPtr(static_cast<const Array&>(made.array));
    EXPECT_EQ(made.log->take(), (Calls{"getTypedDataPtr()", "getUntypedDataPtr()"}));
    EXPECT_TRUE(made.array.isShared());
    made.array = numbers(); // the last other handle
    EXPECT_EQ(vexa::testing::LiveObjects::count(), 1);
    EXPECT_EQ(typed[2], 3.0);
    typed = {nullptr, nullptr}; // drops the deleter, which is what holds the array
    EXPECT_EQ(static_cast<const double*>(untyped.get())[2], 3.0);

    auto deleter = untyped.get_deleter(); // a copy holds the array by itself
    const auto* data = static_cast<const double*>(untyped.get());
    untyped = {nullptr, nullptr};
    EXPECT_EQ(vexa::testing::LiveObjects::count(), 1);
    EXPECT_EQ(data[0], 1.0);
    deleter(data); // frees nothing
    EXPECT_EQ(data[0], 1.0);
    deleter = nullptr;
    EXPECT_EQ(vexa::testing::LiveObjects::count(), 0);
}

TEST_F(Buffers, AreNotReachedByLaterWrites) {
    auto array = numbers();
    const auto before = getBufferPtr(array);
    array[0] = 10.0;
    EXPECT_EQ(before[0], 1.0);
    EXPECT_EQ(getBufferPtr(array)[0], 10.0);
    const auto nothing = ArrayFactory().createArray<double>({0, 2});
    EXPECT_NO_THROW(getBufferPtr(nothing));
}

TEST_F(Buffers, AreHandedOverByPrivateArraysAndCopiedByShared) {
    auto made = vexa::testing::recorded(numbers());
    const TypedArray<double> other = made.array;
    const auto copied = made.array.release();
    EXPECT_EQ(made.log->take(), (Calls{"copyOutBuffer()"}));
    EXPECT_EQ(copied[2], 3.0);
    EXPECT_EQ(other[2], 3.0);
    copied[2] = 30.0;
    EXPECT_EQ(other[2], 3.0);

    auto alone = vexa::testing::recorded(numbers());
    const auto own = alone.array.release();
    EXPECT_EQ(alone.log->take(), (Calls{"releaseBuffer()"}));
    EXPECT_EQ(own[2], 3.0);
    detail::Access::impl(alone.array)->retain(); // another owner in the back-end
    alone.array.release();
    EXPECT_EQ(alone.log->take(), (Calls{"copyOutBuffer()"}));
    detail::Access::impl(alone.array)->release();
}

TEST_F(Buffers, TravelThroughArraysWithoutACopy) {
    ArrayFactory factory;
    auto buffer = factory.createBuffer<std::int32_t>(6);
    std::iota(buffer.get(), buffer.get() + 6, 0);
    const auto* address = buffer.get();
    auto array = factory.createArrayFromBuffer({2, 3}, std::move(buffer));
    EXPECT_EQ(getBufferPtr(array).get(), address);
    array[1][2] = 50;
    const auto back = array.release();
    EXPECT_EQ(back.get(), address);
    EXPECT_EQ(back[5], 50);
    EXPECT_TRUE(array.isEmpty());
    EXPECT_EQ(array.getType(), ArrayType::INT32);
    array = factory.createArray<std::int32_t>({1, 1});
    EXPECT_EQ(array.getNumberOfElements(), 1U);

    auto cells = factory.createArray<Array>({1, 1});
    EXPECT_TRUE(throwsExactly<InvalidArrayTypeException>([&] { cells.release(); }));
}

} // namespace
