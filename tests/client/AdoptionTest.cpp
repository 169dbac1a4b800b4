// Arrays over memory of somebody else: nothing is copied before a write asks for it, and the owner is let go
// once, on every path.
#include <foundation/vexadata/ArrayFactory.hpp>
#include <foundation/vexadata/ArrayView.hpp>
#include <foundation/vexadata/BufferAccess.hpp>
#include <vexa/client/Adoption.hpp>
#include <vexa/client/Exception.hpp>

#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <numeric>
#include <utility>
#include <vector>

namespace {

using namespace foundation::vexadata;
using vexa::client::adopt;
using vexa::client::adoptReadOnly;
using vexa::client::fromVector;
using vexa::client::toVector;
using vexa::data::MemoryLayout;

/// Memory that counts how often it is let go.
struct Memory {
    std::array<double, 12> values = {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11};
    int letGo = 0;

    std::shared_ptr<void> owner() {
        return {values.data(), [this](void*) { ++letGo; }};
    }
};

/// Shapes with dimensions that arrays share, and with their own.
class AdoptionOfShape : public testing::TestWithParam<std::vector<std::size_t>> {};

TEST_P(AdoptionOfShape, WritesGoToTheMemoryUntilTheArrayIsShared) {
    for (const auto layout : {MemoryLayout::COLUMN_MAJOR, MemoryLayout::ROW_MAJOR}) {
        Memory memory;
        {
            TypedArray<double> array =
                adopt<double>(GetParam(), memory.values.data(), memory.owner(), layout);
            EXPECT_EQ(array.getDimensions(), GetParam());
            EXPECT_EQ(array.getMemoryLayout(), layout);
            EXPECT_EQ(&*array.begin(), memory.values.data());
            *array.begin() = -1;
            EXPECT_EQ(memory.values[0], -1);
            const TypedArray<double> copy = array;
            *array.begin() = -2;
            EXPECT_EQ(memory.values[0], -1);
            EXPECT_EQ(*copy.begin(), -1);
            EXPECT_EQ(array.getMemoryLayout(), layout);
            EXPECT_EQ(memory.letGo, 0);
        }
        EXPECT_EQ(memory.letGo, 1);
    }
}

TEST_P(AdoptionOfShape, ReadOnlyMemoryIsNeverWritten) {
    for (const auto layout : {MemoryLayout::COLUMN_MAJOR, MemoryLayout::ROW_MAJOR}) {
        const auto dims = GetParam();
        const auto write = [&](auto change) {
            Memory memory;
            const auto before = memory.values;
            {
                TypedArray<double> array =
                    adoptReadOnly<double>(dims, memory.values.data(), memory.owner(), layout);
                EXPECT_EQ(getBufferPtr(array).get(), memory.values.data());
                EXPECT_EQ(array, adopt<double>(dims, memory.values.data(), memory.owner(), layout));
                change(array);
                EXPECT_EQ(array.getMemoryLayout(), layout);
                EXPECT_EQ(array.getDimensions(), dims);
                EXPECT_EQ(std::accumulate(array.cbegin(), array.cend(), 0.0), 66 - 50);
            }
            EXPECT_EQ(memory.values, before);
            EXPECT_EQ(memory.letGo, 2);
        };
        write([&](TypedArray<double>& array) { *(array.begin() + 11) = 11 - 50; });
        write([&](TypedArray<double>& array) { *(array.end() - 1) = 11 - 50; });
        if (dims.size() == 2) {
            write([&](TypedArray<double>& array) { array[dims[0] - 1][dims[1] - 1] = 11 - 50; });
            write([&](TypedArray<double>& array) {
                auto view = writableView(array);
                view(dims[0] - 1, dims[1] - 1) -= 50;
            });
            write([&](TypedArray<double>& array) {
                TypedArray<Array> cells = ArrayFactory().createArray<Array>({1, 1});
                cells[0] = std::move(array);
                cells[0].held()[dims[0] - 1][dims[1] - 1] = 11.0 - 50;
                array = cells[0];
            });
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Adoption, AdoptionOfShape,
                         testing::Values(std::vector<std::size_t>{3, 4}, std::vector<std::size_t>{12, 1},
                                         std::vector<std::size_t>{2, 3, 2}));

TEST(Adoption, AWriteThroughTheOnlyHandleCopiesReadOnlyMemory) {
    Memory memory;
    TypedArray<double> array = adoptReadOnly<double>({3, 4}, memory.values.data(), memory.owner());
    const auto old = std::as_const(array).begin();
    array[0][0] = 7;
    EXPECT_EQ(memory.values[0], 0);
    EXPECT_EQ(*old, 0) << "an iterator made before shows what was";
    EXPECT_EQ(array[0][0], 7.0);
    const double* const own = getBufferPtr(array).get();
    array[1][0] = 8;
    EXPECT_EQ(getBufferPtr(array).get(), own) << "one copy is enough";
    auto released = array.release();
    EXPECT_EQ(released[1], 8);
    EXPECT_TRUE(array.isEmpty());
    EXPECT_EQ(memory.letGo, 1);
}

TEST(Adoption, AReleasedBufferIsACopyAndTheOwnerGoes) {
    for (const bool readOnly : {false, true}) {
        Memory memory;
        TypedArray<double> array =
            readOnly ? adoptReadOnly<double>({2, 3, 2}, memory.values.data(), memory.owner())
                     : adopt<double>({2, 3, 2}, memory.values.data(), memory.owner());
        const auto buffer = array.release();
        EXPECT_EQ(memory.letGo, 1);
        EXPECT_NE(buffer.get(), memory.values.data());
        EXPECT_EQ(buffer[11], 11);
        EXPECT_EQ(array.getDimensions(), (std::vector<std::size_t>{0, 0}));
    }
}

TEST(Adoption, ShapesWithoutElementsAndScalarsNeedNothing) {
    const TypedArray<float> none = adopt<float>({0, 3}, nullptr, nullptr);
    EXPECT_TRUE(none.isEmpty());
    Memory memory;
    EXPECT_EQ(adoptReadOnly<double>({}, memory.values.data() + 5, memory.owner()),
              ArrayFactory().createScalar(5.0));
    EXPECT_EQ(adopt<double>({12}, memory.values.data(), nullptr).getDimensions(),
              (std::vector<std::size_t>{12, 1}));
}

TEST(Adoption, WhatCannotBeStorageIsRefusedAndTheOwnerLetGo) {
    using vexa::client::InvalidBufferException;
    Memory memory;
    double* const data = memory.values.data();
    auto* const crooked = reinterpret_cast<double*>(reinterpret_cast<char*>(data) + 1);
    const std::size_t huge = std::size_t(1) << 62;
    EXPECT_THROW(adopt<double>({2, 2}, nullptr, memory.owner()), InvalidBufferException);
    EXPECT_THROW(adopt<double>({2, 2}, crooked, memory.owner()), InvalidBufferException);
    EXPECT_THROW(adopt<double>({2, 2}, data, memory.owner(), MemoryLayout(9)), InvalidBufferException);
    EXPECT_THROW(adopt<double>({huge, 1}, data, memory.owner()), InvalidBufferException);
    EXPECT_THROW(adoptReadOnly<double>({huge, 4}, data, memory.owner()),
                 NumberOfElementsExceedsMaximumException);
    EXPECT_THROW(adopt({1, 1}, ArrayType::CELL, data, memory.owner()), MustBePrimitiveTypeException);
    EXPECT_EQ(memory.letGo, 6);
    EXPECT_THROW(fromVector<int>({2, 2}, {1, 2, 3}), InvalidBufferException);
}

TEST(Adoption, AVectorGoesInAndComesOutWithoutACopy) {
    std::vector<std::int32_t> values(1000);
    std::iota(values.begin(), values.end(), 0);
    const std::int32_t* const data = values.data();
    TypedArray<std::int32_t> array = fromVector({10, 100}, std::move(values));
    array[9][99] = -1;
    {
        const TypedArray<std::int32_t> shared = array;
        const std::vector<std::int32_t> copied = toVector(array);
        EXPECT_NE(copied.data(), data);
        EXPECT_EQ(copied.back(), -1);
    }
    const std::vector<std::int32_t> back = toVector(std::move(array));
    EXPECT_EQ(back.data(), data);
    EXPECT_EQ(back.size(), 1000U);

    const TypedArray<double> ordinary = ArrayFactory().createArray<double>({1, 3}, {1, 2, 3});
    EXPECT_EQ(toVector(ordinary), (std::vector<double>{1, 2, 3}));
    std::vector<double> other = {1, 2};
    const std::shared_ptr<void> kept(&other, [](void*) {});
    EXPECT_EQ(toVector(adopt<double>({2}, other.data(), kept)), other) << "an owner that is no vector";
}

TEST(Adoption, ElementsOfOtherKindsBecomeValues) {
    ArrayFactory factory;
    auto texts = factory.createArray<String>({1, 2});
    texts[1] = "x";
    const std::vector<String> strings = toVector(texts);
    EXPECT_FALSE(strings[0].has_value());
    EXPECT_EQ(strings[1], String(u"x"));
    auto records = factory.createStructArray({1, 2}, {"n"});
    records[1]["n"] = factory.createScalar(4.0);
    const std::vector<StructValue> kept = toVector<StructElement>(records);
    records[1]["n"] = factory.createScalar(5.0);
    EXPECT_EQ(double(kept[1]["n"][0]), 4.0);
    EXPECT_EQ(toVector(factory.createArray<bool>({1, 3}, {true, false, true})),
              (std::vector<bool>{true, false, true}));
    const std::vector<Array> cells =
        toVector(factory.createArray<Array>({1, 1}, {factory.createScalar(1.0)}));
    EXPECT_EQ(cells.at(0), factory.createScalar(1.0));
}

} // namespace
