// Ownership of back-end objects, and the handles of arrays as values.
#include "support/AllocationCountdown.hpp"
#include "support/Ledger.hpp"
#include "support/Throws.hpp"

#include <foundation/vexadata/ArrayFactory.hpp>
#include <vexa/data/impl/EmptyArrayImpl.hpp>
#include <vexa/testing/CallLog.hpp>

#include <gtest/gtest.h>

#include <cmath>
#include <csignal>
#include <functional>
#include <limits>
#include <memory>
#include <utility>
#include <vector>

namespace {

using namespace foundation::vexadata;
using detail::Access;
using support::AllocationCountdown;
using support::throwsExactly;
using vexa::data::MemoryLayout;
using vexa::data::impl::ArrayImpl;
using vexa::testing::ForwardingNumbers;

vexa::testing::Inner<ArrayImpl> objectIn(const Array& handle) {
    Access::impl(handle)->retain();
    return vexa::testing::Inner<ArrayImpl>(Access::impl(handle).get());
}

class Handles : public support::LedgerTest {
protected:
    ArrayFactory factory;

    TypedArray<double> numbers() { return factory.createArray<double>({2, 2}, {1, 2, 3, 4}); }
    /// A back-end array with the one reference that a receiver adopts.
    static ForwardingNumbers<double>* backEnd(const TypedArray<double>& inner) {
        return new ForwardingNumbers<double>(objectIn(inner));
    }
};

/// Reports whatever a test says.
class Disguised final : public ForwardingNumbers<double> {
public:
    Disguised(const TypedArray<double>& inner, ArrayType type, std::uint64_t id = 77)
        : ForwardingNumbers(objectIn(inner)), type_(type), id_(id) {}
    ArrayType getType() const override { return type_; }
    std::uint64_t getArrayID() const override { return id_; }
    bool isEqual(const vexa::data::impl::ArrayImpl* other) const override {
        return fails ? throw std::runtime_error("broken") : ForwardingNumbers::isEqual(other);
    }
    bool fails = false;

private:
    ArrayType type_;
    std::uint64_t id_;
};

TEST_F(Handles, AdoptTheReferenceThatTheyAreGiven) {
    const auto inner = numbers();
    auto* object = backEnd(inner);
    {
        Array first(object);
        EXPECT_EQ(object->referenceCount(), 1U); // adopted, not added
        const Array copy = first;
        EXPECT_EQ(object->referenceCount(), 1U); // handles share one adoption
        object->retain();
        Array second(object);
        first = Array();
        EXPECT_EQ(object->referenceCount(), 2U);
    } // the ledger sees it die here, once

    EXPECT_EQ(
        support::countAllocations([] { EXPECT_EQ(Access::createSharedPtr<ArrayImpl>(nullptr), nullptr); }),
        0U);
}

TEST_F(Handles, ReleaseWhatTheyCannotAdopt) {
    const auto inner = numbers();
    for (int kind = 0; kind < 2; ++kind) {
        auto* object = backEnd(inner);
        AllocationCountdown::start();
        AllocationCountdown::failAt(1);
        EXPECT_THROW(kind == 0 ? static_cast<void>(Array(object))
                               : static_cast<void>(TypedArray<double>(object)),
                     std::bad_alloc);
        AllocationCountdown::stop();
    } // the ledger tells whether they are gone
}

TEST_F(Handles, CopiedBackEndObjectsCountAfresh) {
    struct Cloneable final : vexa::data::detail::RefCounted {};
    Cloneable original;
    original.retain();
    Cloneable copy(original);
    EXPECT_EQ(copy.referenceCount(), 1U);
    copy = original;
    EXPECT_EQ(copy.referenceCount(), 1U);
}

TEST_F(Handles, DefaultOnesShareOneEmptyArray) {
    Array empty;
    EXPECT_EQ(empty.getType(), ArrayType::UNKNOWN);
    EXPECT_EQ(empty.getDimensions(), (std::vector<std::size_t>{0, 0}));
    EXPECT_EQ(empty.getNumberOfElements(), 0U);
    EXPECT_EQ(empty.getMemoryLayout(), MemoryLayout::NONE);
    EXPECT_TRUE(empty.isEmpty());
    EXPECT_EQ(empty.getArrayID(), 0U);
    EXPECT_TRUE(empty.isShared()); // with the process
    EXPECT_FALSE(isSparse(empty));
    EXPECT_EQ(empty, Array());
    EXPECT_EQ(support::countAllocations([] { Array another; }), 0U);
    EXPECT_TRUE(throwsExactly<CantIndexIntoEmptyArrayException>([&] { empty[0]; }));
    EXPECT_THROW(TypedArray<double>{empty}, InvalidArrayTypeException);
    EXPECT_THROW(TypedArray<Array>{empty}, InvalidArrayTypeException);
    EXPECT_THROW(TypedArray<StructElement>{empty}, InvalidArrayTypeException);
}

TEST_F(Handles, OperationsThatNobodyAsksOfAnEmptyArrayRethrow) {
    const auto empty = Access::createSharedPtr(new vexa::data::impl::EmptyArrayImpl);
    const std::function<void()> rethrowing[] = {
        [&] { empty->beginIterator(nullptr, false); },
        [&] { empty->endIterator(nullptr, true); },
        [&] { empty->createElementReference(0, "", true); },
        [&] { empty->forwardingOp(0, ""); }, // through slot 13
        [&] { empty->getJc(); },
        [&] { empty->getIr(); },
        [&] { empty->getRows(); },
        [&] { empty->getCols(); },
    };
    for (const auto& operation : rethrowing) {
        try {
            throw EArrayIndexOutOfRange();
        } catch (const Exception&) {
            EXPECT_THROW(operation(), EArrayIndexOutOfRange);
        }
    }
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(empty->endIterator(nullptr, true), testing::KilledBySignal(SIGABRT), "");

    EXPECT_THROW(empty->assignElementArray(0, "", empty.get()), CantAssignArrayToThisArrayException);
    EXPECT_THROW(empty->castToString(0, ""), TypeMismatchException);
    EXPECT_THROW(empty->setString(0, "", "x"), TypeMismatchException);
    EXPECT_THROW(empty->getNumberOfNonZeroElements(), InvalidArrayTypeException);
    EXPECT_THROW(empty->getIndex(0), InvalidArrayTypeException);
    const auto copy = Access::createSharedPtr(empty->sharedCopy());
    EXPECT_NE(copy, empty);
    EXPECT_TRUE(copy->isEqual(empty.get()));
}

TEST_F(Handles, ShareUntilDroppedAndGiveIndependentDimensions) {
    auto a = numbers();
    {
        const Array b = a;
        EXPECT_TRUE(a.isShared() && b.isShared());
    }
    EXPECT_FALSE(a.isShared());
    auto dimensions = a.getDimensions();
    dimensions[0] = 9;
    EXPECT_EQ(a.getDimensions()[0], 2U);
    Array moved = std::move(a);
    EXPECT_FALSE(moved.isShared());
    a = moved; // a moved-from handle may be assigned
    EXPECT_TRUE(a.isShared());
}

TEST_F(Handles, CompareInAFixedOrder) {
    const auto inner = numbers();
    const auto other = factory.createArray<double>({1, 4}, {1, 2, 3, 4});
    const auto handle = [](Disguised* object) { return Array(object); };
    const auto isDouble = ArrayType::DOUBLE;

    EXPECT_EQ(handle(new Disguised(inner, isDouble, 5)), handle(new Disguised(other, ArrayType::CHAR, 5)));
    EXPECT_NE(handle(new Disguised(inner, isDouble, 5)), handle(new Disguised(other, isDouble, 6)));
    EXPECT_NE(handle(new Disguised(inner, isDouble, 5)), handle(new Disguised(inner, ArrayType::SINGLE, 6)));
    EXPECT_EQ(handle(new Disguised(inner, isDouble, 5)), handle(new Disguised(inner, isDouble, 6)));

    const auto asked = [&](const Array& right) { // of the array on the left
        auto log = std::make_shared<vexa::testing::CallLog>();
        static_cast<void>(Array(new ForwardingNumbers<double>(objectIn(inner), log)) == right);
        return log->all();
    };
    using Calls = std::vector<std::string>;
    EXPECT_EQ(asked(inner), (Calls{"getArrayID()"}));
    EXPECT_EQ(asked(other), (Calls{"getArrayID()", "getDimensions()"}));
    EXPECT_EQ(asked(factory.createArray<float>({2, 2})),
              (Calls{"getArrayID()", "getDimensions()", "getType()"}));
    EXPECT_EQ(asked(numbers()), (Calls{"getArrayID()", "getDimensions()", "getType()", "isEqual()"}));

    auto* broken = new Disguised(inner, isDouble, 5);
    broken->fails = true;
    const Array left(broken);
    EXPECT_EQ(left, left);                                      // the elements are not asked
    EXPECT_NE(left, handle(new Disguised(other, isDouble, 6))); // nor here
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(static_cast<void>(left == handle(new Disguised(inner, isDouble, 6))),
                testing::KilledBySignal(SIGABRT), "");
}

TEST_F(Handles, TakeSharedBackEndsAsTheyAre) {
    const auto inner = numbers();
    const auto elements = [](const Array& array) { return array.getNumberOfElements(); };
    EXPECT_EQ(elements(Access::impl(inner)), 4U);
    const TypedArray<double> typed = Access::impl(inner);
    EXPECT_TRUE(typed.isShared());
    const ArrayFactory same = factory.getArrayFactoryImpl();
    EXPECT_EQ(same.createScalar(2.0)[0], 2.0);
}

TEST_F(Handles, SwapWithTheirOwnKind) {
    auto a = numbers();
    auto b = factory.createArray<double>({1, 1}, {9});
    const auto shared = b;
    std::swap(a, b);
    EXPECT_EQ(a, shared);
    EXPECT_EQ(b, numbers());
    a[0] = 8.0;
    EXPECT_EQ(shared[0], 9.0);
    CharArray x = factory.createCharArray("x");
    CharArray y = factory.createCharArray("y");
    std::swap(x, y);
    EXPECT_EQ(x.toAscii() + y.toAscii(), "yx");
}

template <class T>
TypedArray<T> rowMajor(ArrayFactory& factory, std::vector<std::size_t> dims, const std::vector<T>& values) {
    auto buffer = factory.createBuffer<T>(values.size());
    std::copy(values.begin(), values.end(), buffer.get());
    return factory.createArrayFromBuffer<T>(std::move(dims), std::move(buffer), MemoryLayout::ROW_MAJOR);
}

TEST_F(Handles, CompareElementsWhateverTheirLayout) {
    const auto columns = factory.createArray<double>({2, 3, 2}, {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12});
    const auto rows = rowMajor<double>(factory, {2, 3, 2}, {1, 7, 3, 9, 5, 11, 2, 8, 4, 10, 6, 12});
    EXPECT_EQ(columns, rows);
    EXPECT_EQ(rows, columns);
    EXPECT_NE(columns, rowMajor<double>(factory, {2, 3, 2}, {1, 7, 3, 9, 5, 11, 2, 8, 4, 10, 12, 6}));
}

TEST_F(Handles, CompareFloatsAsNumbers) {
    constexpr std::size_t count = 1003;
    for (const std::size_t place :
         {std::size_t{0}, std::size_t{15}, std::size_t{16}, std::size_t{999}, count - 1}) {
        SCOPED_TRACE(place);
        auto a = factory.createArray<float>({count});
        auto b = factory.createArray<float>({count});
        b[place] = -0.0F;
        EXPECT_EQ(a, b);
        b[place] = 1.0F;
        EXPECT_NE(a, b);
        a[place] = b[place] = std::numeric_limits<float>::quiet_NaN();
        EXPECT_NE(a, b);
        auto c = factory.createArray<std::complex<double>>({count});
        auto d = factory.createArray<std::complex<double>>({count});
        EXPECT_EQ(c, d);
        d[place] = {0.0, 1.0};
        EXPECT_NE(c, d);
    }
}

TEST_F(Handles, TypedOnesCheckWhatTheyAreMadeOf) {
    auto singles = factory.createArray<float>({2, 2});
    Array untyped = singles;
    EXPECT_TRUE(throwsExactly<InvalidArrayTypeException>([&] { TypedArray<double> d(untyped); }));
    EXPECT_EQ(untyped, singles);
    EXPECT_TRUE(throwsExactly<InvalidArrayTypeException>([&] { TypedArray<double> d(std::move(untyped)); }));
    EXPECT_EQ(Access::impl(untyped), nullptr); // consumed, deliberately

    untyped = singles;
    auto doubles = numbers();
    EXPECT_TRUE(throwsExactly<InvalidArrayTypeException>([&] { doubles = untyped; }));
    EXPECT_TRUE(throwsExactly<InvalidArrayTypeException>([&] { doubles = std::move(untyped); }));
    EXPECT_EQ(untyped, singles); // assignment looks first
    EXPECT_EQ(doubles, numbers());
    Array fine = factory.createArray<double>({1, 1});
    doubles = std::move(fine);
    EXPECT_EQ(doubles.getNumberOfElements(), 1U);
    EXPECT_EQ(fine, doubles); // shared, although it was offered
    Array text = factory.createCharArray("abc");
    CharArray characters = factory.createCharArray("x");
    characters = std::move(text);
    EXPECT_EQ(CharArray(text).toAscii(), "abc");

    for (const int value : {26, 27, 28}) {
        const Array object(new Disguised(numbers(), static_cast<ArrayType>(value)));
        EXPECT_NO_THROW(TypedArray<ValueObject>{object});
        EXPECT_NO_THROW(TypedArray<HandleObjectRef>{object});
        EXPECT_THROW(TypedArray<Enumeration>{object}, InvalidArrayTypeException);
    }
    for (const int value : {29, 30, 31, 32, 33}) {
        const Array other(new Disguised(numbers(), static_cast<ArrayType>(value)));
        EXPECT_EQ(isSparse(other), value >= 30 && value <= 32) << value;
    }
}

} // namespace
