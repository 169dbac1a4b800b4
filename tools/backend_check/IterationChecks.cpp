// Iterators.

#include "Check.hpp"
#include "Samples.hpp"

#include <cstdint>

namespace vexa::check {

namespace {

/// How many elements an iterator of the array passes.
std::size_t lengthOf(ArrayImpl& array) {
    const ArrayType type = array.getType();
    const bool sparse = type >= ArrayType::SPARSE_LOGICAL && type <= ArrayType::SPARSE_COMPLEX_DOUBLE;
    return sparse ? array.getNumberOfNonZeroElements() : array.getNumberOfElements();
}

void passesAll(Backend& backend) {
    eachSample(backend, [&](const Sample& sample) {
        const auto array = sample.make(backend, {2, 3});
        const std::size_t length = lengthOf(*array);
        const Iterator here = beginOf(*array);
        const Iterator end = endOf(*array);
        std::size_t passed = 0;
        while (!here->isEqual(*end) && passed <= length) {
            here->increment();
            ++passed;
        }
        if (passed > length)
            fail("an iterator of a " + describe(*array) + " does not reach the end in " + show(length) +
                 " steps");
        expectEqual("the number of elements that an iterator of a " + describe(*array) + " passes", passed,
                    length);
    });
}

void emptyRange(Backend& backend) {
    eachSample(backend, [&](const Sample& sample) {
        const auto array = sample.make(backend, {0, 3});
        expect(beginOf(*array)->isEqual(*endOf(*array)),
               "begin and end of a " + describe(*array) + " differ");
    });
}

void distances(Backend& backend) {
    eachSample(backend, [&](const Sample& sample) {
        const auto array = sample.make(backend, {2, 3});
        const auto length = static_cast<std::int64_t>(lengthOf(*array));
        const Iterator begin = beginOf(*array);
        const Iterator end = endOf(*array);
        const std::string of = " of a " + describe(*array);
        expectEqual("distanceTo from begin to end" + of, begin->distanceTo(*end), length);
        expectEqual("distanceTo from end to begin" + of, end->distanceTo(*begin), -length);
        expectEqual("distanceTo from begin to begin" + of, begin->distanceTo(*beginOf(*array)), 0);
    });
}

/// Any way to a position is the same position.
void moves(Backend& backend) {
    eachSample(backend, [&](const Sample& sample) {
        const auto array = sample.make(backend, {2, 3});
        const auto length = static_cast<std::int64_t>(lengthOf(*array));
        const Iterator begin = beginOf(*array);
        const std::string of = " of a " + describe(*array);
        for (std::int64_t k = 0; k <= length; ++k) {
            const Iterator ahead = beginOf(*array);
            ahead->advance(k);
            const Iterator back = endOf(*array);
            back->advance(k - length);
            const Iterator stepped = endOf(*array);
            for (std::int64_t step = length; step > k; --step)
                stepped->decrement();
            expectEqual("after advance(" + show(k) + ") from begin, the distance" + of,
                        begin->distanceTo(*ahead), k);
            expect(ahead->isEqual(*back),
                   "advance(" + show(k - length) + ") from end" + of + " leads elsewhere");
            expect(ahead->isEqual(*stepped), "decrement from end" + of + " leads elsewhere");
        }
    });
}

void equalOnlyThere(Backend& backend) {
    eachSample(backend, [&](const Sample& sample) {
        const auto array = sample.make(backend, {2, 3});
        const Iterator first = beginOf(*array);
        const Iterator second = beginOf(*array);
        expect(first->isEqual(*second),
               "isEqual of two begin iterators of a " + describe(*array) + " is false");
        second->increment();
        expect(!first->isEqual(*second) && !second->isEqual(*first),
               "isEqual of iterators of a " + describe(*array) + " at positions 0 and 1 is true");
    });
}

void clones(Backend& backend) {
    eachSample(backend, [&](const Sample& sample) {
        const auto array = sample.make(backend, {2, 3});
        const std::string of = " of an iterator of a " + describe(*array);
        const Iterator here = beginOf(*array);
        here->increment();
        const Iterator clone(here->clone());
        expect(clone != nullptr && clone != here, "clone" + of + " makes no new iterator");
        expect(clone->isEqual(*here), "a clone" + of + " stands elsewhere");
        clone->increment();
        expectEqual("the distance of an iterator of a " + describe(*array) +
                        " from begin after its clone moved",
                    beginOf(*array)->distanceTo(*here), 1);
    });
}

/// In the order of positions.
void addresses(Backend& backend) {
    backend.eachPrimitive([&](auto tag) {
        using T = typename decltype(tag)::type;
        const auto array = filled<T>(backend, {2, 3});
        const Iterator here = beginOf(*array);
        for (std::size_t k = 0; k < 6; ++k, here->increment()) {
            const auto* address = static_cast<const T*>(here->getElementAddress());
            const std::string what = "the iterator of a " + describe(*array) + " at position " + show(k);
            expect(address != nullptr, what + " gives no address");
            expectEqual("the element of " + what, *address, valueAt<T>(k));
        }
        here->getElementAddress(); // asked past the end too
        ReferenceImpl* chain = here->createReference();
        if (chain != nullptr) chain->release();
        expect(chain == nullptr, "createReference of an iterator of a " + describe(*array) +
                                     " is not null, although its elements have addresses");
    });
}

void writes(Backend& backend) {
    backend.eachPrimitive([&](auto tag) {
        using T = typename decltype(tag)::type;
        const auto array = backend.zeros<T>({2, 3});
        const Iterator here = beginOf(*array, true);
        for (std::size_t k = 0; k < 6; ++k, here->increment())
            *static_cast<T*>(here->getElementAddress()) = valueAt<T>(k);
        expectFilled("a " + describe(*array) + " written through an iterator", *array);
    });
}

/// Chains to elements that are not primitive.
void references(Backend& backend) {
    eachSample(backend, [&](const Sample& sample) {
        const auto array = sample.make(backend, {2, 3});
        const Iterator here = beginOf(*array);
        const std::string of = " of the iterator of a " + describe(*array);
        if (here->getElementAddress() != nullptr) return;
        for (std::size_t k = 0; k < 6; ++k, here->increment()) {
            const auto chain = adopt(here->createReference(), "createReference" + of);
            expectOneReference("the chain" + of, *chain);
            expect(chain->getArrayImpl() == array.get(),
                   "getArrayImpl of the chain" + of + " is another array");
            expectEqual("getLinearIndex of the chain" + of, chain->getLinearIndex(), k);
        }
    });
}

void keepsChain(Backend& backend) {
    eachSample(backend, [&](const Sample& sample) {
        const auto array = sample.make(backend, {2, 3});
        const Owned<ReferenceImpl> chain(new data::detail::ArrayReferenceImpl(array.get()));
        Iterator here = beginOf(*array);
        const std::string by = " by an iterator of a " + describe(*array);
        chain->retain();
        here->saveReference(chain.get());
        expectEqual("the reference count of a chain kept" + by, chain->referenceCount(), 2);
        here.reset();
        expectEqual("the reference count of a chain that was kept" + by + " which is gone",
                    chain->referenceCount(), 1);
    });
}

void leavesCounts(Backend& backend) {
    eachSample(backend, [&](const Sample& sample) {
        const auto array = sample.make(backend, {2, 3});
        {
            const Iterator begin = beginOf(*array, true);
            const Iterator clone(begin->clone());
            expectOneReference("an iterator of a " + describe(*array), *begin);
        }
        expectOneReference("a " + describe(*array) + " after its iterators are gone", *array);
    });
}

} // namespace

void addIterationChecks(Checks& checks) {
    Family iteration(checks, "iteration");
    iteration.add("begin to end passes every element", {}, passesAll);
    iteration.add("without elements begin is end", {}, emptyRange);
    iteration.add("distances", {}, distances);
    iteration.add("advance and decrement", {}, moves);
    iteration.add("iterators are equal only at one position", {}, equalOnlyThere);
    iteration.add("clones move on their own", {}, clones);
    iteration.add("addresses in the order of positions", {}, addresses);
    iteration.add("writes through an iterator arrive", {}, writes);
    iteration.add("chains to elements", {}, references);
    iteration.add("a saved chain is kept and released", {}, keepsChain);
    iteration.add("iterators leave the counts", {}, leavesCounts);
}

} // namespace vexa::check
