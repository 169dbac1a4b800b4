// Buffers that go in and out.

#include "Check.hpp"
#include "Samples.hpp"

#include <foundation/vexadata/Exception.hpp>

#include <algorithm>

namespace vexa::check {

namespace {

using data::MemoryLayout;
using Deleter = void (*)(void*);

/// Calls an operation that fills in a buffer. Arrays that leave it as it is refuse.
template <class F>
void offeredBy(const char* operation, F call) {
    try {
        call();
    } catch (const fv::InvalidArrayTypeException&) {
        throw NotOffered{std::string(operation) + " throws " + describeException()};
    }
}

/// A buffer that the back-end filled in.
Buffer<void> filledIn(void* memory, Deleter deleter, const std::string& operation) {
    expect(memory != nullptr && deleter != nullptr, operation + " leaves the buffer or its deleter null");
    return Buffer<void>(memory, deleter);
}

int freed = 0;
void countedFree(void* memory) {
    ++freed;
    std::free(memory);
}

/// Elements `valueAt(0)` ... in memory that is counted when freed.
template <class T>
Buffer<void> countedValues(std::size_t count) {
    auto* memory = static_cast<T*>(std::malloc(count * sizeof(T)));
    for (std::size_t k = 0; k < count; ++k)
        memory[k] = valueAt<T>(k);
    freed = 0;
    return Buffer<void>(memory, &countedFree);
}

template <class T>
Owned<ArrayImpl> overBuffer(const Backend& backend, MemoryLayout layout) {
    return adopt(backend.factory().createArrayFromBufferImpl({2, 3}, ElementTag<T>::arrayType,
                                                             countedValues<T>(6), layout),
                 "createArrayFromBufferImpl");
}

void canBeWritten(Backend& backend) {
    backend.eachPrimitive([&](auto tag) {
        using T = typename decltype(tag)::type;
        for (const std::size_t count : {0U, 1U, 1000U}) {
            void* memory = nullptr;
            Deleter deleter = nullptr;
            backend.factory().createBufferImpl(memory, deleter, tag.arrayType, count);
            if (count == 0 && memory == nullptr) continue;
            const auto buffer = filledIn(memory, deleter, "createBufferImpl");
            std::fill_n(static_cast<T*>(memory), count, valueAt<T>(1));
            expect(reinterpret_cast<std::uintptr_t>(memory) % alignof(T) == 0,
                   "a buffer for " + std::string(nameOf(tag.arrayType)) +
                       " elements is not aligned for them");
        }
    });
}

void layout(Backend& backend, MemoryLayout order, const char* name) {
    backend.eachPrimitive([&](auto tag) {
        using T = typename decltype(tag)::type;
        const auto made = overBuffer<T>(backend, order);
        auto& array = as<TypedArrayImpl<T>>(*made, "TypedArrayImpl of its element type");
        for (std::size_t k = 0; k < 6; ++k) {
            const bool columns = order == MemoryLayout::COLUMN_MAJOR;
            const std::size_t row = columns ? k % 2 : k / 3;
            const std::size_t column = columns ? k / 2 : k % 3;
            expectEqual("element (" + show(row) + "," + show(column) + ") of a " + describe(array) +
                            " over a " + name + " buffer",
                        read(array, positionOf(array, row, column)), valueAt<T>(k));
        }
    });
}
void columnMajor(Backend& backend) { layout(backend, MemoryLayout::COLUMN_MAJOR, "column-major"); }
void rowMajor(Backend& backend) { layout(backend, MemoryLayout::ROW_MAJOR, "row-major"); }

void expectFreedOnce(const std::string& when) {
    expectEqual("the number of calls of the deleter of a buffer " + when, freed, 1);
}

void deleterOnce(Backend& backend) {
    backend.eachPrimitive([&](auto tag) {
        using T = typename decltype(tag)::type;
        auto array = overBuffer<T>(backend, MemoryLayout::COLUMN_MAJOR);
        auto copy = adopt(array->sharedCopy(), "sharedCopy");
        array.reset();
        copy.reset();
        expectFreedOnce("after its array and a copy of that are gone");
    });
}

void refusedBuffer(Backend& backend) {
    backend.eachPrimitive([&](auto tag) {
        using T = typename decltype(tag)::type;
        try {
            adopt(backend.factory().createArrayFromBufferImpl({2, 3}, ArrayType::CELL, countedValues<T>(6),
                                                              MemoryLayout::COLUMN_MAJOR),
                  "createArrayFromBufferImpl");
        } catch (...) {
            expectFreedOnce("after createArrayFromBufferImpl refused to make a cell array over it");
            return;
        }
        fail("createArrayFromBufferImpl makes a cell array over numbers");
    });
}

template <class T>
void expectValues(const std::string& what, const void* memory) {
    const auto* elements = static_cast<const T*>(memory);
    for (std::size_t k = 0; k < 6; ++k)
        expectEqual(what + ": element " + show(k), elements[k], valueAt<T>(k));
}

void copiesOut(Backend& backend) {
    backend.eachPrimitive([&](auto tag) {
        using T = typename decltype(tag)::type;
        const auto array = filled<T>(backend, {2, 3});
        void* memory = nullptr;
        Deleter deleter = nullptr;
        offeredBy("copyOutBuffer", [&] { array->copyOutBuffer(memory, deleter); });
        const auto buffer = filledIn(memory, deleter, "copyOutBuffer");
        const std::string what = "copyOutBuffer of a " + describe(*array);
        expect(memory != array->getTypedDataPtr(), what + " hands out the array's own storage");
        expectValues<T>(what, memory);
        std::fill_n(static_cast<T*>(memory), 6, T());
        expectFilled("a " + describe(*array) + " after its copied buffer was written", *array);
    });
}

void handsOver(Backend& backend) {
    backend.eachPrimitive([&](auto tag) {
        using T = typename decltype(tag)::type;
        auto array = filled<T>(backend, {2, 3});
        void* memory = nullptr;
        Deleter deleter = nullptr;
        offeredBy("releaseBuffer", [&] { array->releaseBuffer(memory, deleter); });
        const auto buffer = filledIn(memory, deleter, "releaseBuffer");
        array.reset();
        expectValues<T>(
            "releaseBuffer of a 2x3 " + std::string(nameOf(tag.arrayType)) + " array that is gone", memory);
    });
}

/// In by createArrayFromBuffer, out by releaseBuffer.
void thereAndBack(Backend& backend) {
    backend.eachPrimitive([&](auto tag) {
        using T = typename decltype(tag)::type;
        auto array = overBuffer<T>(backend, MemoryLayout::COLUMN_MAJOR);
        void* memory = nullptr;
        Deleter deleter = nullptr;
        array->releaseBuffer(memory, deleter);
        {
            const auto buffer = filledIn(memory, deleter, "releaseBuffer");
            array.reset();
            expectValues<T>("releaseBuffer of an array over a buffer", memory);
        }
        expectFreedOnce("that releaseBuffer handed over again");
    });
}

} // namespace

void addBufferChecks(Checks& checks) {
    Family buffers(checks, "buffers");
    buffers.add("buffers can be written and freed", {"buffer"}, canBeWritten);
    buffers.add("a column-major buffer becomes an array", {"from-buffer"}, columnMajor);
    buffers.add("a row-major buffer becomes an array", {"from-buffer"}, rowMajor);
    buffers.add("the deleter is called once", {"from-buffer"}, deleterOnce);
    buffers.add("a buffer that is refused is freed", {"from-buffer"}, refusedBuffer);
    buffers.addCapability("copyOutBuffer copies", "copy-out-buffer", {}, copiesOut);
    buffers.addCapability("releaseBuffer hands over", "release-buffer", {}, handsOver);
    buffers.add("a buffer goes in and out", {"from-buffer", "release-buffer"}, thereAndBack);
}

} // namespace vexa::check
