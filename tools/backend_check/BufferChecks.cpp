// Buffers that go in and out.

#include "Check.hpp"
#include "Samples.hpp"

#include <foundation/vexadata/Exception.hpp>

#include <algorithm>
#include <cstring>

namespace vexa::check {

namespace {

using data::MemoryLayout;
using Deleter = void (*)(void*);

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

/// Values of a pattern in memory that is counted when freed.
template <class T>
Buffer<void> countedValues(std::size_t count) {
    auto* memory = static_cast<T*>(std::malloc(count * sizeof(T) + 1));
    for (std::size_t k = 0; k < count; ++k)
        memory[k] = valueAt<T>(counting, k);
    freed = 0;
    return Buffer<void>(memory, &countedFree);
}

template <class T>
Owned<ArrayImpl> overBuffer(const Backend& backend, const Dimensions& dimensions,
                            MemoryLayout layout = MemoryLayout::COLUMN_MAJOR) {
    std::size_t count = 1;
    for (const std::size_t extent : dimensions)
        count *= extent;
    return adopt(backend.factory().createArrayFromBufferImpl(dimensions, ElementTag<T>::arrayType,
                                                             countedValues<T>(count), layout),
                 "createArrayFromBufferImpl");
}

const std::vector<Dimensions> shapes{{2, 3},    {1, 1},       {0, 3},   {3, 3},    {5, 1},
                                     {2, 3, 4}, {2, 3, 2, 2}, {1, 300}, {350, 200}};

/// Several buffers that live side by side and are written from end to end: each has all its room for itself.
void canBeWritten(Backend& backend) {
    backend.eachPrimitive([&](auto tag) {
        using T = typename decltype(tag)::type;
        for (const std::size_t count : {0U, 1U, 3U, 100U, 1000U, 70000U}) {
            std::vector<Buffer<void>> buffers;
            const std::string what =
                "a buffer for " + show(count) + " " + std::string(nameOf(tag.arrayType)) + " elements";
            for (std::size_t number = 0; number < 4; ++number) {
                void* memory = nullptr;
                Deleter deleter = nullptr;
                backend.factory().createBufferImpl(memory, deleter, tag.arrayType, count);
                if (count == 0 && memory == nullptr) continue;
                buffers.push_back(filledIn(memory, deleter, "createBufferImpl"));
                std::memset(memory, static_cast<int>(number + 1), count * sizeof(T));
                expect(reinterpret_cast<std::uintptr_t>(memory) % alignof(T) == 0,
                       what + " is not aligned for them");
            }
            for (std::size_t number = 0; number < buffers.size(); ++number) {
                const auto* bytes = static_cast<const unsigned char*>(buffers[number].get());
                for (std::size_t k = 0; k < count * sizeof(T); ++k)
                    if (bytes[k] != number + 1) fail(what + " overlaps another one at byte " + show(k));
            }
        }
    });
}

void untypedCanBeWritten(Backend& backend) {
    for (const std::size_t count : {1U, 7U, 300U, 70000U}) {
        std::vector<Buffer<void>> buffers;
        for (std::size_t number = 0; number < 4; ++number) {
            void* memory = nullptr;
            Deleter deleter = nullptr;
            backend.factory().createUntypedBufferImpl(memory, deleter, count);
            buffers.push_back(filledIn(memory, deleter, "createUntypedBufferImpl"));
            std::memset(memory, static_cast<int>(number + 1), count);
        }
        for (std::size_t number = 0; number < buffers.size(); ++number)
            for (std::size_t k = 0; k < count; ++k)
                if (static_cast<const unsigned char*>(buffers[number].get())[k] != number + 1)
                    fail("an untyped buffer of " + show(count) + " bytes overlaps another one at byte " +
                         show(k));
    }
}

/// Arrays that live side by side, each written from end to end.
void arraysDoNotOverlap(Backend& backend) {
    backend.eachPrimitive([&](auto tag) {
        using T = typename decltype(tag)::type;
        for (const Dimensions& dimensions : {Dimensions{1, 1}, {2, 3}, {7, 19}, {1, 300}, {65, 130}}) {
            std::vector<Owned<ArrayImpl>> arrays;
            for (std::size_t number = 0; number < 6; ++number) {
                arrays.emplace_back(backend.zeros<T>(dimensions).detach());
                if (number % 2 == 1) arrays.push_back(adopt(arrays.back()->sharedCopy(), "sharedCopy"));
            }
            for (std::size_t number = 0; number < arrays.size(); ++number)
                for (std::size_t k = 0; k < arrays[number]->getNumberOfElements(); ++k)
                    write(asNumbers<T>(*arrays[number]), k, valueAt<T>(counting, k + number));
            for (std::size_t number = 0; number < arrays.size(); ++number)
                for (std::size_t k = 0; k < arrays[number]->getNumberOfElements(); ++k)
                    if (read(asNumbers<T>(*arrays[number]), k) != valueAt<T>(counting, k + number))
                        fail("position " + show(k) + " of a " + describe(*arrays[number]) +
                             " changes with other arrays that live beside it");
        }
    });
}

void expectFreed(const std::string& when, int times) {
    expectEqual("the number of calls of the deleter of a buffer " + when, freed, times);
}

void deleterOnce(Backend& backend) {
    backend.eachPrimitive([&](auto tag) {
        using T = typename decltype(tag)::type;
        for (const Dimensions& dimensions : shapes)
            for (const MemoryLayout layout : {MemoryLayout::COLUMN_MAJOR, MemoryLayout::ROW_MAJOR})
                for (const bool copyFirst : {false, true}) {
                    auto array = overBuffer<T>(backend, dimensions, layout);
                    const std::string of = " of a " + describe(*array);
                    auto copy = adopt(array->sharedCopy(), "sharedCopy");
                    copy->unshare();
                    expect(freed <= 1, "the deleter of the buffer" + of + " is called more than once");
                    (copyFirst ? copy : array).reset();
                    (copyFirst ? array : copy).reset();
                    expectFreed(of.substr(1) + " after that and a copy are gone", 1);
                }
    });
}

/// Kinds that cannot lie over a buffer; the buffer goes all the same, once.
void refusedBuffer(Backend& backend) {
    backend.eachPrimitive([&](auto tag) {
        using T = typename decltype(tag)::type;
        for (const ArrayType type :
             {ArrayType::CELL, ArrayType::STRUCT, ArrayType::UNKNOWN, ArrayType::SPARSE_DOUBLE}) {
            const std::string what = "createArrayFromBufferImpl for type " + show(type);
            try {
                Owned<ArrayImpl>(backend.factory().createArrayFromBufferImpl(
                    {2, 3}, type, countedValues<T>(6), MemoryLayout::COLUMN_MAJOR));
            } catch (...) {
                expectFreed("after " + what + " refused to make an array over it", 1);
                continue;
            }
            fail(what + " throws nothing");
        }
    });
}

/// Position by position what getElementAddress finds.
template <class T>
Contents shownByPosition(ArrayImpl& array) {
    Contents shown;
    for (std::size_t k = 0; k < array.getNumberOfElements(); ++k)
        shown.push_back(show(read(asNumbers<T>(array), k)));
    return shown;
}
template <class T>
void expectValues(const std::string& what, const void* memory, const Contents& wanted) {
    for (std::size_t k = 0; k < wanted.size(); ++k)
        if (show(static_cast<const T*>(memory)[k]) != wanted[k])
            expectEqual(what + ": element " + show(k), show(static_cast<const T*>(memory)[k]), wanted[k]);
}

void copiesOut(Backend& backend) {
    eachSubject(backend, {true, true, true, false}, [&](Subject& subject) {
        withElementType(subject.array->getType(), [&](auto tag) {
            using T = typename decltype(tag)::type;
            const Contents wanted = shownByPosition<T>(*subject.array);
            void* memory = nullptr;
            Deleter deleter = nullptr;
            subject.array->copyOutBuffer(memory, deleter);
            const auto buffer = filledIn(memory, deleter, "copyOutBuffer");
            const std::string what = "copyOutBuffer of a " + subject.what;
            expect(memory != asNumbers<T>(*subject.array).getTypedDataPtr(),
                   what + " hands out the array's own storage");
            expectValues<T>(what, memory, wanted);
            void* second = nullptr;
            Deleter secondDeleter = nullptr;
            subject.array->copyOutBuffer(second, secondDeleter);
            const auto secondBuffer = filledIn(second, secondDeleter, "copyOutBuffer");
            expect(second != memory, what + " hands out one buffer twice");
            std::fill_n(static_cast<T*>(memory), wanted.size(), T());
            subject.expectUnchanged(" after its copied buffer was written");
            subject.array.reset();
            expectValues<T>(what + " that is gone", second, wanted);
        });
    });
}

/// What the array reports afterwards is its choice, as long as it agrees with itself. It can be asked for a
/// buffer again.
void expectConsistent(const std::string& what, ArrayImpl& array, const Dimensions& lent,
                      const Dimensions& before) {
    expect(&array.getDimensions() == &lent || lent == before,
           "the dimensions that a " + what + " lent before are gone");
    std::size_t product = 1;
    for (const std::size_t extent : array.getDimensions())
        product *= extent;
    expectEqual("getNumberOfElements of a " + what, array.getNumberOfElements(), product);
    expectEqual("isEmpty of a " + what, array.isEmpty(), product == 0);
    expectEqual("distanceTo from begin to end of a " + what, beginOf(array)->distanceTo(*endOf(array)),
                static_cast<std::int64_t>(product));
    const auto copy = adopt(array.sharedCopy(), "sharedCopy");
    expectEqual("getDimensions of a copy of a " + what, copy->getDimensions(), array.getDimensions());
    beginOf(array, true);
    endOf(array, true);
    expectOneReference("a " + what, array);
}

/// Once more, of what is left; it may be refused.
void releaseAgain(ArrayImpl& array, const void* first) {
    void* memory = nullptr;
    Deleter deleter = nullptr;
    try {
        array.releaseBuffer(memory, deleter);
    } catch (...) {
        return;
    }
    if (memory == nullptr) return;
    expect(memory != first && deleter != nullptr, "releaseBuffer hands the same buffer over again");
    deleter(memory);
}

void handsOver(Backend& backend) {
    eachSubject(backend, {true, true, true, false}, [&](Subject& subject) {
        withElementType(subject.array->getType(), [&](auto tag) {
            using T = typename decltype(tag)::type;
            const Contents wanted = shownByPosition<T>(*subject.array);
            const Dimensions& lent = subject.array->getDimensions();
            subject.array->getArrayID();
            const auto copy = adopt(subject.array->sharedCopy(), "sharedCopy");
            const std::uint64_t identity = copy->getArrayID();
            void* memory = nullptr;
            Deleter deleter = nullptr;
            subject.array->releaseBuffer(memory, deleter);
            const auto buffer = filledIn(memory, deleter, "releaseBuffer");
            const std::string what = "releaseBuffer of a " + subject.what;
            expectValues<T>(what, memory, wanted);
            expectContents("a copy after " + what, *copy, subject.model.contents());
            const std::string after = subject.what + " after releaseBuffer";
            expect(subject.array->getArrayID() != identity ||
                       subject.array->getDimensions() == subject.dimensions,
                   "getArrayID of a " + after + " is still that of its copy");
            expectConsistent(after, *subject.array, lent, subject.dimensions);
            for (std::size_t k = 0; k < subject.array->getNumberOfElements(); ++k)
                write(asNumbers<T>(*subject.array), k, T());
            const auto next = make(backend, subject.model.sample(), {5, 7}, alike); // takes what was freed
            expectValues<T>(what + " which was written to", memory, wanted);
            releaseAgain(*subject.array, memory);
            subject.array.reset();
            expectValues<T>(what + " that is gone", memory, wanted);
            std::fill_n(static_cast<T*>(memory), wanted.size(), T());
            expectContents("a copy after the buffer of " + what + " was written", *copy,
                           subject.model.contents());
            for (const auto& [other, model] : subject.others)
                expectContents("an array that shared with a " + after, *other, model.contents());
        });
    });
}

/// In by createArrayFromBuffer, out by releaseBuffer.
void thereAndBack(Backend& backend) {
    backend.eachPrimitive([&](auto tag) {
        using T = typename decltype(tag)::type;
        for (const Dimensions& dimensions : shapes)
            for (const int way : {0, 1, 2, 3}) {
                const bool copied = way % 2 == 1;
                const bool rows = way > 1;
                auto array = overBuffer<T>(backend, dimensions,
                                           rows ? MemoryLayout::ROW_MAJOR : MemoryLayout::COLUMN_MAJOR);
                const std::string what =
                    describe(*array) + " over a " + (rows ? "row-major " : "") + "buffer";
                const Contents wanted = shownByPosition<T>(*array);
                if (wanted.empty()) continue;
                auto copy = copied ? adopt(array->sharedCopy(), "sharedCopy") : nullptr;
                if (copied) { // used in every way before
                    array->isEqual(copy.get());
                    write(asNumbers<T>(*array), 0, valueAt<T>(counting, 0));
                    beginOf(*array, true)->isEqual(*endOf(*array, true));
                    adopt(array->sharedCopy(), "sharedCopy");
                }
                void* memory = nullptr;
                Deleter deleter = nullptr;
                array->releaseBuffer(memory, deleter);
                {
                    const auto buffer = filledIn(memory, deleter, "releaseBuffer");
                    array.reset();
                    expectValues<T>("releaseBuffer of a " + what, memory, wanted);
                    copy.reset();
                    expectValues<T>("releaseBuffer of a " + what + ", whose copy is gone", memory, wanted);
                }
                expectFreed("of a " + what + " that releaseBuffer handed over again", 1);
            }
    });
}

/// Buffers that the back-end gave itself come back to it.
void ownBuffers(Backend& backend) {
    backend.eachPrimitive([&](auto tag) {
        using T = typename decltype(tag)::type;
        for (const Dimensions& dimensions : shapes)
            for (const MemoryLayout layout : {MemoryLayout::COLUMN_MAJOR, MemoryLayout::ROW_MAJOR}) {
                const std::size_t count = backend.zeros<T>(dimensions)->getNumberOfElements();
                void* memory = nullptr;
                Deleter deleter = nullptr;
                backend.factory().createBufferImpl(memory, deleter, tag.arrayType, count);
                if (memory == nullptr) continue;
                for (std::size_t k = 0; k < count; ++k)
                    static_cast<T*>(memory)[k] = valueAt<T>(counting, k);
                const auto array =
                    adopt(backend.factory().createArrayFromBufferImpl(dimensions, tag.arrayType,
                                                                      Buffer<void>(memory, deleter), layout),
                          "createArrayFromBufferImpl");
                const std::string what = describe(*array) + " over a buffer of the back-end";
                expectEqual("the number of elements of a " + what, array->getNumberOfElements(), count);
                if (layout == array->getMemoryLayout())
                    expectValues<T>(what, asNumbers<T>(*array).getTypedDataPtr(), [&] {
                        Contents wanted;
                        for (std::size_t k = 0; k < count && k < 1000; ++k)
                            wanted.push_back(show(valueAt<T>(counting, k)));
                        return wanted;
                    }());
                if (count > 0) write(asNumbers<T>(*array), count - 1, T());
            }
    });
}

/// Elements that lie over a buffer are written where they lie.
void writesToBuffer(Backend& backend) {
    backend.eachPrimitive([&](auto tag) {
        using T = typename decltype(tag)::type;
        const auto array = overBuffer<T>(backend, {2, 3});
        const auto copy = adopt(array->sharedCopy(), "sharedCopy");
        for (std::size_t k = 0; k < 6; ++k)
            write(asNumbers<T>(*array), k, T());
        expectEqual("an array over a buffer after writes", contentsOf(*array), Contents(6, show(T())));
        expectEqual("a copy of it", contentsOf(*copy).front(), show(valueAt<T>(counting, 0)));
    });
}

} // namespace

void addBufferChecks(Checks& checks) {
    Family buffers(checks, "buffers");
    const std::string owned =
        "a buffer is the back-end's from the call on; its deleter is called once (slot 26 of the factory)";
    buffers.add(
        "buffers can be written and freed",
        "createBufferImpl fills in a new buffer for a count of elements and the function that frees it "
        "(slot 24 of the factory)",
        {"buffer"}, canBeWritten);
    buffers.add("untyped buffers can be written and freed",
                "createUntypedBufferImpl does the same for a count of bytes (slot 25 of the factory)",
                {"untyped-buffer"}, untypedCanBeWritten);
    buffers.add("arrays do not overlap",
                "every result is a new array with storage of its own (slot 2 of the factory)", {},
                arraysDoNotOverlap);
    buffers.add("the deleter is called once", owned, {"from-buffer"}, deleterOnce);
    buffers.add("a buffer of the back-end comes back", owned, {"from-buffer", "buffer"}, ownBuffers);
    buffers.add("a buffer that is refused is freed",
                "when this throws, the buffer is freed (slot 26 of the factory)", {"from-buffer"},
                refusedBuffer);
    buffers.add("an array over a buffer is written", owned, {"from-buffer"}, writesToBuffer);
    buffers.add("copyOutBuffer copies",
                "copyOutBuffer fills in a copy of the elements in a new buffer (slot 33)",
                {"copy-out-buffer"}, copiesOut);
    buffers.add("releaseBuffer hands over",
                "releaseBuffer hands the array's own buffer over; copies are independent (slots 2, 34)",
                {"release-buffer"}, handsOver);
    buffers.add("a buffer goes in and out", owned, {"from-buffer", "release-buffer"}, thereAndBack);
}

} // namespace vexa::check
