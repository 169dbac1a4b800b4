// What the embedded back-end makes of sizes, sources and buffers at their limits.

#include <foundation/vexadata/ArrayFactory.hpp>
#include <foundation/vexadata/BufferAccess.hpp>

#include <gtest/gtest.h>

#include <algorithm>
#include <complex>
#include <cstdint>
#include <iterator>
#include <limits>
#include <sstream>
#include <utility>
#include <vector>

namespace {

using namespace foundation::vexadata;

/// Lengths around the one up to which elements are kept in the array itself.
template <class T>
std::vector<std::size_t> lengths() {
    constexpr std::size_t lastSmall = 1024 / sizeof(T);
    return {0, 1, lastSmall - 1, lastSmall, lastSmall + 1, 5 * lastSmall};
}

template <class T>
void expectMadeWhole() {
    ArrayFactory factory;
    for (const std::size_t count : lengths<T>()) {
        SCOPED_TRACE(testing::PrintToString(detail::arrayTypeOf<T>) + " x " + std::to_string(count));
        const auto zeros = factory.createArray<T>({count});
        EXPECT_EQ(std::count(zeros.begin(), zeros.end(), T()), static_cast<std::ptrdiff_t>(count));
        const Array untyped = factory.createArray(detail::arrayTypeOf<T>, {count});
        EXPECT_EQ(untyped.getType(), detail::arrayTypeOf<T>);
        EXPECT_EQ(untyped, zeros);

        auto buffer = factory.createBuffer<T>(count);
        std::fill(buffer.get(), buffer.get() + count, T(1));
        const auto ones = factory.createArrayWithData<T>({count}, buffer.get(), count);
        const std::size_t half = count / 2;
        const auto few = factory.createArrayWithData<T>({count}, buffer.get(), half);
        EXPECT_EQ(std::count(few.begin(), few.end(), T(1)), static_cast<std::ptrdiff_t>(half));
        const auto adopted = factory.createArrayFromBuffer<T>({count}, std::move(buffer));
        EXPECT_EQ(ones, adopted);
        EXPECT_EQ(ones == few, count == half);

        for (const TypedArray<T>& each :
             {TypedArray<T>(zeros), TypedArray<T>(ones), TypedArray<T>(adopted)}) {
            EXPECT_EQ(getBufferPtr(each) == nullptr, count == 0);
            TypedArray<T> given = each;
            EXPECT_NE(given.release(), nullptr); // a buffer is one even when nothing is in it
        }
        TypedArray<T> emptied = factory.createArray<T>({count});
        emptied.release();
        EXPECT_EQ(getBufferPtr(emptied), nullptr);
        EXPECT_EQ(emptied.begin(), emptied.end());
    }
}

TEST(BackEndArrays, AreWholeForEveryPrimitiveKindAndSize) {
#define VEXADATA_ELEMENT(T) expectMadeWhole<T>();
#include <foundation/vexadata/detail/PrimitiveTypes.inc>
}

TEST(BackEndArrays, TakeValuesFromAnyIterators) {
    ArrayFactory factory;
    const std::vector<bool> bits{true, false, true};
    EXPECT_EQ(factory.createArray<bool>({3}, bits.begin(), bits.end()),
              factory.createArray<bool>({3}, {true, false, true}));
    const std::vector<double> none;
    EXPECT_TRUE(factory.createArray<double>({0, 4}, none.begin(), none.end()).isEmpty());
}

TEST(BackEndArrays, TakeValuesFromARangeThatCanBeWalkedOnlyOnce) {
    ArrayFactory factory;
    using Values = std::istream_iterator<double>;
    std::istringstream text("1.5 2.5 3.5");
    EXPECT_EQ(factory.createArray<double>({3}, Values(text), Values()),
              factory.createArray<double>({3}, {1.5, 2.5, 3.5}));
}

TEST(BackEndArrays, HoldExtremeScalars) {
    ArrayFactory factory;
    EXPECT_EQ(factory.createScalar(std::numeric_limits<long long>::min())[0],
              std::numeric_limits<std::int64_t>::min());
    EXPECT_EQ(factory.createScalar(std::numeric_limits<unsigned long long>::max())[0],
              std::numeric_limits<std::uint64_t>::max());
    EXPECT_EQ(factory.createScalar(char16_t{0xFFFF})[0], char16_t{0xFFFF});
    EXPECT_FALSE(factory.createScalar(false)[0]);
    const auto complex = factory.createScalar(std::complex<std::int8_t>(-128, 127));
    EXPECT_EQ(complex[0], std::complex<std::int8_t>(-128, 127));
    EXPECT_EQ(complex.getDimensions(), (std::vector<std::size_t>{1, 1}));
    const auto cell = factory.createScalar(Array(complex));
    EXPECT_EQ(cell.getType(), ArrayType::CELL);
    EXPECT_EQ(Array(cell[0]), complex);
}

int calls = 0;
void countCalls(void*) { ++calls; }

TEST(BackEndArrays, NeverFreeABufferThatIsNotThere) {
    ArrayFactory factory;
    calls = 0;
    {
        auto array = factory.createArrayFromBuffer<double>({0, 3}, {nullptr, &countCalls});
        EXPECT_TRUE(array.isEmpty());
        TypedArray<double> copy = array;
        copy.begin(); // which makes the copy
        const auto released = array.release();
        EXPECT_TRUE(copy.isEmpty());
    }
    { const auto kept = factory.createArrayFromBuffer<double>({0, 3}, {nullptr, &countCalls}); }
    EXPECT_EQ(calls, 0); // a deleter may rely on that, as behind any unique pointer
    { const auto array = factory.createArrayFromBuffer<double>({0, 3}, {nullptr, nullptr}); }
}

TEST(BackEndArrays, FreeAnOutsideBufferOnceAndCopiesNeverWithIt) {
    ArrayFactory factory;
    calls = 0;
    std::vector<double> outside(300, 2.0);
    auto array = factory.createArrayFromBuffer<double>({300}, {outside.data(), &countCalls});
    {
        TypedArray<double> copy = array;
        copy[0] = 1.0;
    }
    EXPECT_EQ(calls, 0);
    array[5] = 3.0;
    EXPECT_EQ(outside[5], 3.0);
    array = factory.createArray<double>({1, 1});
    EXPECT_EQ(calls, 1);
}

} // namespace
