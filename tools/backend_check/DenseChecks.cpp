// Arrays of primitive elements: how elements lie, and how they are read and written one by one.

#include "Check.hpp"
#include "Samples.hpp"

#include <foundation/vexadata/Exception.hpp>

#include <memory>

namespace vexa::check {

namespace {

void startAtZero(Backend& backend) {
    backend.eachPrimitive([&](auto tag) {
        using T = typename decltype(tag)::type;
        for (const Dimensions& dimensions :
             {Dimensions{1, 1}, {2, 3}, {1, 5}, {2, 3, 4}, {300, 1}, {350, 200}}) {
            filled<T>(backend, dimensions); // leaves its values in the memory that comes next
            const auto array = backend.zeros<T>(dimensions);
            const std::string what = " of a new " + describe(*array);
            for (std::size_t k = 0; k < array->getNumberOfElements(); ++k)
                if (!(read(*array, k) == T()))
                    expectEqual("the element at position " + show(k) + what, read(*array, k), T());
        }
    });
}

void copiesTheData(Backend& backend) {
    backend.eachPrimitive([&](auto tag) {
        using T = typename decltype(tag)::type;
        for (const Dimensions& dimensions :
             {Dimensions{1, 1}, {1, 2}, {300, 1}, {2, 3}, {3, 3}, {2, 3, 4}, {2, 3, 2, 2}, {350, 200}}) {
            const std::size_t count = backend.zeros<T>(dimensions)->getNumberOfElements();
            const auto data = std::make_unique<T[]>(count);
            std::fill_n(data.get(), count, valueAt<T>(counting, 1));
            const Owned<ArrayImpl> made =
                adopt(backend.factory().createArrayWithDataImpl(tag.arrayType, dimensions, data.get(), count),
                      "createArrayWithDataImpl");
            std::fill_n(data.get(), count, T());
            for (const std::size_t k : somePositions(count))
                expectEqual("an element after the data that the array was made from has changed",
                            read(asNumbers<T>(*made), k), valueAt<T>(counting, 1));
            write(asNumbers<T>(*made), count - 1, valueAt<T>(counting, 4));
            expectEqual("the data after the array that was made from it has changed", data[count - 1], T());
        }
    });
}

/// Null as data, and as a buffer, of arrays that have no elements.
void needsNoData(Backend& backend) {
    backend.eachPrimitive([&](auto tag) {
        for (const Dimensions& dimensions : {Dimensions{0, 0}, {0, 3}, {3, 0}, {4, 1, 0}}) {
            const auto expectEmpty = [&](ArrayImpl* made, const char* creator) {
                const auto array = adopt(made, creator);
                expectEqual("getDimensions of an array that " + std::string(creator) + " made from null",
                            array->getDimensions(), dimensions);
                const auto copy = adopt(array->sharedCopy(), "sharedCopy");
                expectEqual("isEqual of a " + describe(*array) + " made from null and its copy",
                            array->isEqual(copy.get()), true);
                expect(beginOf(*array, true)->isEqual(*endOf(*array, true)), "it has elements");
            };
            ArrayFactoryImpl& factory = backend.factory();
            if (backend.offers("data"))
                expectEmpty(factory.createArrayWithDataImpl(tag.arrayType, dimensions, nullptr, 0),
                            "createArrayWithDataImpl");
            for (const auto layout : {data::MemoryLayout::COLUMN_MAJOR, data::MemoryLayout::ROW_MAJOR})
                if (backend.offers("from-buffer"))
                    expectEmpty(factory.createArrayFromBufferImpl(dimensions, tag.arrayType,
                                                                  Buffer<void>(nullptr, &std::free), layout),
                                "createArrayFromBufferImpl");
        }
    });
}

/// Columns one after another in the data that an array is made from, whatever its own layout: as indices find
/// them.
void indicesFindElements(Backend& backend) {
    eachSubject(backend, {true, false, true, false}, [&](Subject& subject) {
        withElementType(subject.array->getType(), [&](auto tag) {
            using T = typename decltype(tag)::type;
            auto& array = asNumbers<T>(*subject.array);
            for (std::size_t k = 0; k < subject.model.size(); ++k) {
                data::detail::ArrayReferenceImpl* made = new data::detail::ArrayReferenceImpl(&array);
                const Owned<ReferenceImpl> chain(made);
                Dimensions indices;
                std::size_t rest = k;
                for (const std::size_t extent : subject.dimensions) {
                    chain->addIndex(rest % extent);
                    indices.push_back(rest % extent);
                    rest /= extent;
                }
                expectEqual("the element at index " + show(indices) + " of a " + subject.what,
                            show(read(array, chain->getLinearIndex())), subject.model.contents()[k]);
            }
        });
    });
}

/// Before and after a write, and of arrays whose storage a copy may share.
void sideBySide(Backend& backend) {
    eachSubject(backend, {true, true, true, false}, [&](Subject& subject) {
        withElementType(subject.array->getType(), [&](auto tag) {
            using T = typename decltype(tag)::type;
            auto& array = asNumbers<T>(*subject.array);
            const auto expectSideBySide = [&](const std::string& what) {
                const T* first = array.getTypedDataPtr();
                expect(first != nullptr, "getTypedDataPtr of a " + what + " returns null");
                const void* untyped = array.getUntypedDataPtr();
                expect(untyped == first, "getUntypedDataPtr and getTypedDataPtr of a " + what + " differ");
                for (std::size_t k = 0; k < subject.model.size(); ++k)
                    if (array.getElementAddress(k, {}, false) != first + k)
                        fail("getElementAddress(" + show(k) + ") of a " + what + " is not " + show(k) +
                             " elements after getTypedDataPtr");
                expect(reinterpret_cast<std::uintptr_t>(first) % alignof(T) == 0,
                       "the elements of a " + what + " are not aligned for their type");
            };
            expectSideBySide(subject.what);
            subject.model.change(backend, array, subject.model.size() - 1);
            expectSideBySide(subject.what + " after a write");
            const auto copy = adopt(array.sharedCopy(), "sharedCopy");
            expect(array.getTypedDataPtr() != nullptr, "getTypedDataPtr of a copied array is null");
            expectSideBySide(subject.what + " after a copy");
        });
    });
}

void writesOneElement(Backend& backend) {
    backend.eachPrimitive([&](auto tag) {
        using T = typename decltype(tag)::type;
        for (const Dimensions& dimensions : {Dimensions{2, 3}, {2, 3, 2, 2}, {1, 300}}) {
            const auto array = filled<T>(backend, dimensions);
            const std::size_t count = array->getNumberOfElements();
            std::vector<std::size_t> numbers;
            for (std::size_t k = 0; k < count; ++k)
                numbers.push_back(k);
            for (std::size_t written = 0; written<count; written += count> 100 ? 37 : 1) {
                numbers[written] = anotherThan(numbers[written], [](std::size_t a, std::size_t b) {
                    return valueAt<T>(counting, a) == valueAt<T>(counting, b);
                });
                write(*array, written, valueAt<T>(counting, numbers[written]));
                for (std::size_t k = 0; k < count; ++k)
                    if (read(*array, k) != valueAt<T>(counting, numbers[k]))
                        expectEqual("the element at position " + show(k) + " of a " + describe(*array) +
                                        " after setElementValue(" + show(written) + ")",
                                    read(*array, k), valueAt<T>(counting, numbers[k]));
            }
        }
    });
}

/// Slots 24 to 29.
void refusesWhatSparseArraysHave(const ArrayImpl& array, const std::string& of) {
    const auto refuses = [&](const char* operation, auto call) {
        expectThrows<fv::InvalidArrayTypeException>(operation + of, "InvalidArrayTypeException", call);
    };
    refuses("getNumberOfNonZeroElements", [&] { array.getNumberOfNonZeroElements(); });
    refuses("getJc", [&] { array.getJc(); });
    refuses("getIr", [&] { array.getIr(); });
    refuses("getRows", [&] { array.getRows(); });
    refuses("getCols", [&] { array.getCols(); });
    refuses("getIndex", [&] { array.getIndex(0); });
}

/// What is for other kinds is refused, and there is nothing to refer into.
void refusesOtherKinds(Backend& backend) {
    eachSubject(backend, {false, false, false, false}, [&](Subject& subject) {
        ArrayImpl& array = *subject.array;
        const Sample& sample = subject.model.sample();
        const std::string of = " of a " + subject.what;
        const bool holder = sample.name == "cell" || sample.name == "struct";
        const bool text = sample.name == "string" || sample.name == "enumeration";
        for (const bool forWrite : {false, true}) {
            if (holder) break;
            ReferenceImpl* chain = array.createElementReference(0, {}, forWrite);
            if (chain != nullptr) chain->release();
            expect(chain == nullptr,
                   "createElementReference" + of + " is not null, although its elements hold no arrays");
        }
        expect(holder || array.forwardingOp(0, {}) == nullptr, "slot 14" + of + " is not null");
        const auto other = make(backend, subject.model.sample(), {1, 1});
        const auto refuses = [&](const char* operation, auto call) {
            expectThrows<fv::InvalidArrayTypeException>(operation + of, "InvalidArrayTypeException", call);
        };
        if (!holder)
            expectThrows<fv::CantAssignArrayToThisArrayException>(
                "assignElementArray" + of, "CantAssignArrayToThisArrayException",
                [&] { array.assignElementArray(0, {}, other.get()); });
        if (array.getType() != ArrayType::CHAR && !text) {
            expectThrows<fv::TypeMismatchException>("castToString" + of, "TypeMismatchException",
                                                    [&] { array.castToString(0, {}); });
            expectThrows<fv::TypeMismatchException>("setString" + of, "TypeMismatchException",
                                                    [&] { array.setString(0, {}, "1"); });
        }
        void* memory = nullptr;
        void (*deleter)(void*) = nullptr;
        if (!sample.primitive) {
            refuses("copyOutBuffer", [&] { array.copyOutBuffer(memory, deleter); });
            refuses("releaseBuffer", [&] { array.releaseBuffer(memory, deleter); });
        }
        if (!sample.sparse) refusesWhatSparseArraysHave(array, of);
        expectOneReference("an array that another one refused to hold", *other);
        subject.expectUnchanged(" after operations of other kinds were refused");
    });
}

} // namespace

void addDenseChecks(Checks& checks) {
    Family dense(checks, "dense");
    dense.add("new elements are zero", "createArrayImpl makes an array of zeros (slot 2 of the factory)", {},
              startAtZero);
    dense.add("data is copied",
              "createArrayWithDataImpl makes an array with copies of the elements (slot 10 of the factory)",
              {"data"}, copiesTheData);
    dense.add(
        "nothing is read for no elements",
        "an array with copies of `count` elements, or over a buffer, may have none (slots 10, 26 of the factory)",
        {}, needsNoData);
    dense.add(
        "indices find their elements",
        "element positions are linear, in the order of the memory layout; data comes in column-major order "
        "(slots 10, 26 of the factory)",
        {}, indicesFindElements);
    dense.add("elements lie side by side",
              "getTypedDataPtr is the first element of contiguous storage (slots 35, 39, 41)", {},
              sideBySide);
    dense.add("a write changes one element", "setElementValue stores its value at the index (slot 40)", {},
              writesOneElement);
    dense.add(
        "operations of other kinds are refused",
        "what a kind does not have throws as its default does, or is null (slots 13, 14, 18 to 20, 24 to 29)",
        {}, refusesOtherKinds);
}

} // namespace vexa::check
