// Tensors of arrays, and arrays of tensors: addresses, strides, flags, who releases what, and what is refused.
#include "Failures.hpp"

#include <foundation/vexadata/Layout.hpp>
#include <foundation/vexadata/VexaData.hpp>
#include <vexa/interop/DLPack.hpp>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <complex>
#include <cstring>
#include <limits>
#include <memory>
#include <numeric>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

/// As the standard's own header has them: other types of the same members.
namespace theirs {

enum DLDeviceType : std::int32_t { kDLCPU = 1 };
struct DLDevice {
    DLDeviceType device_type;
    std::int32_t device_id;
};
struct DLTensor {
    void* data;
    DLDevice device;
    std::int32_t ndim;
    vexa::interop::dlpack::DLDataType dtype;
    std::int64_t *shape, *strides;
    std::uint64_t byte_offset;
};
struct DLManagedTensor {
    DLTensor dl_tensor;
    void* manager_ctx;
    void (*deleter)(DLManagedTensor* self);
};

} // namespace theirs

using namespace foundation::vexadata;
using testing::ElementsAre;
using vexa::data::MemoryLayout;
using vexa::interop::fromDLPack;
using vexa::interop::toDLPack;
using vexa::interop::toWritableDLPack;
using vexa::interop::dlpack::DLManagedTensor;
using vexa::interop::dlpack::DLManagedTensorVersioned;

namespace {

const ArrayFactory factory;

template <class Managed>
struct Deleting {
    void operator()(Managed* tensor) const { tensor->deleter(tensor); }
};
template <class Managed>
std::unique_ptr<Managed, Deleting<Managed>> owned(Managed* tensor) {
    return std::unique_ptr<Managed, Deleting<Managed>>(tensor);
}

/// A tensor of a producer that counts how often it is released.
struct Producer {
    std::vector<double> values;
    std::vector<std::int64_t> shape;
    std::vector<std::int64_t> strides;
    DLManagedTensorVersioned tensor{};
    int released = 0;

    explicit Producer(std::vector<std::int64_t> extents, std::vector<std::int64_t> steps = {})
        : values(24), shape(std::move(extents)), strides(std::move(steps)) {
        std::iota(values.begin(), values.end(), 0.0);
        tensor.version = {1, 1};
        tensor.manager_ctx = this;
        tensor.deleter = [](DLManagedTensorVersioned* self) {
            ++static_cast<Producer*>(self->manager_ctx)->released;
        };
        tensor.dl_tensor = {values.data(),
                            {1, 0},
                            static_cast<std::int32_t>(shape.size()),
                            {2, 64, 1},
                            shape.empty() ? nullptr : shape.data(),
                            strides.empty() ? nullptr : strides.data(),
                            0};
    }
};

template <class T>
void goesAndComes(int code) {
    const TypedArray<T> array = factory.createArray<T>({2, 3}, {T(1), T(0), T(1), T(1), T(0), T(1)});
    auto* const tensor = toDLPack(array);
    EXPECT_EQ(tensor->dl_tensor.dtype.code, code);
    EXPECT_EQ(tensor->dl_tensor.dtype.bits, 8 * sizeof(T));
    EXPECT_EQ(tensor->dl_tensor.dtype.lanes, 1);
    const TypedArray<T> back = fromDLPack(tensor);
    EXPECT_EQ(back, array);
    EXPECT_EQ(&*back.begin(), &*array.begin()) << "the elements themselves";
}

} // namespace

TEST(DLPack, EveryKindGoesAndComesBackWithoutACopy) {
    goesAndComes<bool>(6);
    goesAndComes<std::int8_t>(0);
    goesAndComes<std::int16_t>(0);
    goesAndComes<std::int32_t>(0);
    goesAndComes<std::int64_t>(0);
    goesAndComes<std::uint8_t>(1);
    goesAndComes<std::uint16_t>(1);
    goesAndComes<std::uint32_t>(1);
    goesAndComes<std::uint64_t>(1);
    goesAndComes<float>(2);
    goesAndComes<double>(2);
    goesAndComes<std::complex<float>>(5);
    goesAndComes<std::complex<double>>(5);
    for (const Array& array : {Array(factory.createArray<char16_t>({1, 1})), Array(),
                               Array(factory.createArray<std::complex<std::int32_t>>({1, 1})),
                               Array(factory.createArray<String>({1, 1}))}) {
        const std::string expected =
            std::string("DLPack: no tensor has elements of kind ") + kindName(array.getType());
        EXPECT_EQ(refusal([&] { toDLPack(array); }), expected);
        EXPECT_EQ(refusal([&] { toWritableDLPack<DLManagedTensor>(array); }), expected);
    }
}

TEST(DLPack, ATensorDescribesTheLayoutAndOwnsItsElements) {
    std::optional<TypedArray<double>> array = factory.createArray<double>({2, 3, 2});
    const auto columns = owned(toDLPack(*array));
    EXPECT_EQ(columns->version.major, 1U);
    EXPECT_EQ(columns->flags, 1U) << "read-only";
    const auto& tensor = columns->dl_tensor;
    EXPECT_THAT(std::vector(tensor.shape, tensor.shape + 3), ElementsAre(2, 3, 2));
    EXPECT_THAT(std::vector(tensor.strides, tensor.strides + 3), ElementsAre(1, 2, 6));
    const auto rows = owned(toDLPack<DLManagedTensor>(withLayout(*array, MemoryLayout::ROW_MAJOR)));
    EXPECT_THAT(std::vector(rows->dl_tensor.strides, rows->dl_tensor.strides + 3), ElementsAre(6, 2, 1));

    (*array)[1][0][0] = 7.0;
    EXPECT_EQ(static_cast<double*>(tensor.data)[1], 0) << "the handle wrote to a copy of its own";
    array.reset();
    EXPECT_EQ(static_cast<double*>(tensor.data)[11], 0);

    const auto empty = owned(toDLPack(factory.createArray<double>({0, 3})));
    EXPECT_EQ(empty->dl_tensor.ndim, 2);
    EXPECT_EQ(empty->dl_tensor.shape[1], 3);
    const auto huge = factory.createArray<double>({0, std::numeric_limits<std::size_t>::max()});
    EXPECT_NE(refusal([&] { toDLPack(huge); }), "");
}

TEST(DLPack, AWritableTensorIsAlone) {
    TypedArray<double> array = factory.createArray<double>({1, 2}, {1, 2});
    const TypedArray<double> other = array;
    const double* const shared = &*other.begin();
    {
        const auto copied = owned(toWritableDLPack(array));
        EXPECT_EQ(copied->flags, 0U);
        static_cast<double*>(copied->dl_tensor.data)[0] = 9;
        EXPECT_EQ(double(other[0]), 1) << "others are spared";
    }
    array = factory.createArray<double>({1, 2}, {3, 4});
    const double* const alone = &*array.cbegin();
    const auto moved = owned(toWritableDLPack<DLManagedTensor>(std::move(array)));
    EXPECT_EQ(moved->dl_tensor.data, alone) << "without a copy";
    EXPECT_EQ(&*other.begin(), shared);

    Producer producer({2, 2});
    producer.tensor.flags = 1;
    const auto borrowed = owned(toWritableDLPack(fromDLPack(&producer.tensor)));
    EXPECT_NE(borrowed->dl_tensor.data, producer.values.data()) << "those must not be written";
}

TEST(DLPack, StructuresOfTheStandardsOwnHeaderWillDo) {
    const auto array = factory.createArray<double>({2, 1}, {1, 2});
    auto* const tensor = toDLPack<theirs::DLManagedTensor>(array);
    EXPECT_EQ(tensor->dl_tensor.device.device_type, theirs::kDLCPU);
    EXPECT_EQ(fromDLPack(tensor), array);
}

TEST(DLPack, AnArrayOfATensorSharesWhatLiesInOrder) {
    struct Case {
        std::vector<std::int64_t> shape, strides;
        std::vector<std::size_t> dims;
        MemoryLayout layout;
    };
    const Case cases[] = {
        {{}, {}, {1, 1}, MemoryLayout::COLUMN_MAJOR},
        {{5}, {}, {5, 1}, MemoryLayout::COLUMN_MAJOR},
        {{5}, {1}, {5, 1}, MemoryLayout::COLUMN_MAJOR},
        {{2, 3}, {}, {2, 3}, MemoryLayout::ROW_MAJOR},
        {{2, 3}, {3, 1}, {2, 3}, MemoryLayout::ROW_MAJOR},
        {{2, 3}, {1, 2}, {2, 3}, MemoryLayout::COLUMN_MAJOR},
        {{2, 1, 3},
         {1, 77, 2},
         {2, 1, 3},
         MemoryLayout::COLUMN_MAJOR}, // the stride of one element is nothing
        {{2, 3, 4}, {12, 4, 1}, {2, 3, 4}, MemoryLayout::ROW_MAJOR},
        {{0, 3}, {5, -9}, {0, 3}, MemoryLayout::COLUMN_MAJOR},
    };
    for (const Case& c : cases) {
        Producer producer(c.shape, c.strides);
        {
            const Array array = fromDLPack(&producer.tensor);
            EXPECT_EQ(array.getDimensions(), c.dims);
            EXPECT_EQ(array.getMemoryLayout(), c.layout);
            if (!array.isEmpty()) {
                EXPECT_EQ(&*TypedArray<double>(array).cbegin(), producer.values.data());
            }
            EXPECT_EQ(producer.released, 0);
        }
        EXPECT_EQ(producer.released, 1);
    }
}

TEST(DLPack, OtherStridesAreCopiedInOrder) {
    Producer transposedPage({2, 3, 2}, {1, 4, 2}); // neither order
    const TypedArray<double> a = fromDLPack(&transposedPage.tensor);
    EXPECT_EQ(transposedPage.released, 1);
    EXPECT_EQ(a, factory.createArray<double>({2, 3, 2}, {0, 1, 4, 5, 8, 9, 2, 3, 6, 7, 10, 11}));

    Producer backwards({3}, {-2});
    backwards.tensor.dl_tensor.byte_offset = 4 * sizeof(double);
    EXPECT_EQ(fromDLPack(&backwards.tensor), factory.createArray<double>({3, 1}, {4, 2, 0}));

    Producer repeated({2, 2}, {0, 1});
    EXPECT_EQ(fromDLPack(&repeated.tensor), factory.createArray<double>({2, 2}, {0, 0, 1, 1}));

    Producer crooked({2});
    const double values[] = {1.5, 2.5};
    std::memcpy(reinterpret_cast<char*>(crooked.values.data()) + 3, values, sizeof values);
    crooked.tensor.dl_tensor.byte_offset = 3;
    EXPECT_EQ(fromDLPack(&crooked.tensor), factory.createArray<double>({2, 1}, {1.5, 2.5}));
    Producer scalar({});
    std::memcpy(reinterpret_cast<char*>(scalar.values.data()) + 3, values, sizeof values);
    scalar.tensor.dl_tensor.byte_offset = 3;
    EXPECT_EQ(fromDLPack(&scalar.tensor), factory.createScalar(1.5));
    EXPECT_EQ(crooked.released + scalar.released, 2);
}

TEST(DLPack, WritesGoToTheProducerUnlessItSaysNo) {
    Producer writable({2, 2});
    TypedArray<double> array = fromDLPack(&writable.tensor);
    array[0][1] = -1.0;
    EXPECT_EQ(writable.values[1], -1);
    TypedArray<double> copy = array;
    copy[0][0] = -2.0;
    EXPECT_EQ(writable.values[0], 0) << "one of two handles";

    Producer fixed({2, 2});
    fixed.tensor.flags = 1;
    TypedArray<double> guarded = fromDLPack(&fixed.tensor);
    EXPECT_EQ(&*guarded.cbegin(), fixed.values.data());
    guarded[0][1] = -1.0;
    EXPECT_EQ(fixed.values[1], 1);
    EXPECT_EQ(double(std::as_const(guarded)[0][1]), -1);

    Producer unattended({2});
    unattended.tensor.deleter = nullptr;
    EXPECT_EQ(fromDLPack(&unattended.tensor).getNumberOfElements(), 2U);
}

TEST(DLPack, WhatCannotBeIsRefusedAndStaysTheCallers) {
    constexpr std::int64_t most = std::numeric_limits<std::int64_t>::max();
    using T = DLManagedTensorVersioned&;
    const std::pair<void (*)(T), const char*> cases[] = {
        {[](T t) { t.version.major = 2; }, "a tensor of version 2, expected 1"},
        {[](T t) { t.dl_tensor.device.device_type = 2; },
         "lie on a device of type 2, not in the CPU's memory"},
        {[](T t) { t.dl_tensor.dtype.bits = 16; }, "no array has elements of type float16"},
        {[](T t) { t.dl_tensor.dtype.lanes = 4; }, "no array has elements of type float64 x 4"},
        {[](T t) { t.dl_tensor.dtype.lanes = 0; }, "no array has elements of type float64 x 0"},
        {[](T t) {
             t.dl_tensor.dtype = {4, 16, 1};
         },
         "no array has elements of type bfloat16"},
        {[](T t) {
             t.dl_tensor.dtype = {255, 16, 1};
         },
         "no array has elements of type code 255, 16"},
        {[](T t) {
             t.dl_tensor.dtype = {6, 1, 1};
         },
         "no array has elements of type bool1"},
        {[](T t) { t.dl_tensor.ndim = -1; }, "a tensor of -1 dimensions"},
        {[](T t) { t.dl_tensor.shape = nullptr; }, "a tensor of 2 dimensions without a shape"},
        {[](T t) { t.dl_tensor.shape[1] = -3; }, "dimension 1 has an extent of -3"},
        {[](T t) { t.dl_tensor.shape[1] = most / 4; }, "and before are beyond all memory"},
        {[](T t) { t.dl_tensor.data = nullptr; }, "a tensor of 6 elements without data"},
        {[](T t) { t.dl_tensor.byte_offset = ~std::uint64_t{0}; }, "an offset of 18446744073709551615 bytes"},
        {[](T t) { t.dl_tensor.strides[0] = most / 4; }, "in dimension 0 is beyond all memory"},
        {[](T t) { t.dl_tensor.strides[1] = -(most / 8); }, "in dimension 1 is beyond all memory"},
    };
    for (const auto& [spoil, expected] : cases) {
        Producer producer({2, 3}, {3, 1});
        spoil(producer.tensor);
        EXPECT_NE(refusal([&] { fromDLPack(&producer.tensor); }).find(expected), std::string::npos)
            << expected;
        EXPECT_EQ(producer.released, 0) << expected;
    }
    EXPECT_EQ(refusal([] { fromDLPack<DLManagedTensor>(nullptr); }), "DLPack: no tensor");
}

TEST(DLPack, NothingIsLostWhereMemoryRunsOut) {
    const TypedArray<double> array = factory.createArray<double>({2, 3});
    const TypedArray<double> other = array;
    const auto nothing = [](bool) {};
    withFailingMemory(
        2, [&] { owned(toDLPack(array)); }, nothing);
    withFailingMemory(
        2, [&] { owned(toWritableDLPack<DLManagedTensor>(array)); }, nothing);
    for (const std::int64_t stride : {3, 4}) { // shared, copied
        for (const std::uint64_t flags : {0U, 1U}) {
            Producer producer({2, 3}, {stride, 1});
            producer.tensor.flags = flags;
            withFailingMemory(
                2, [&] { producer.released = 0, fromDLPack(&producer.tensor); },
                [&](bool failed) { EXPECT_EQ(producer.released, failed ? 0 : 1); });
        }
    }
}
