// Iterators.

#include "Check.hpp"
#include "Ranges.hpp"
#include "Samples.hpp"

#include <cstdint>

namespace vexa::check {

namespace {

Range rangeOf(ArrayImpl& array, const std::string& what, bool writable) {
    return {what + (writable ? " (writable)" : ""), [&array, writable] { return beginOf(array, writable); },
            [&array, writable] { return endOf(array, writable); }, lengthOf(array)};
}

/// A check of the iterators of arrays, read-only and writable, and of those over field values.
std::function<void(Backend&)> overRanges(void (*expectation)(const Range&), bool large = true) {
    return [=](Backend& backend) {
        eachSubject(backend, {true, large, false, true}, [&](Subject& subject) {
            if (subject.model.size() > 1000 && expectation != &expectToPassAll && subject.origin->name != "")
                return;
            for (const bool writable : {false, true})
                expectation(rangeOf(*subject.array, subject.what, writable));
            subject.expectUnchanged(" after iteration");
        });
    };
}

/// The position of an iterator of an array of primitive elements is that of its element.
void addresses(Backend& backend) {
    eachSubject(backend, {true, true, true, true}, [&](Subject& subject) {
        ArrayImpl& array = *subject.array;
        withElementType(array.getType(), [&](auto tag) {
            using T = typename decltype(tag)::type;
            for (const bool writable : {false, true}) {
                const std::string what = "the iterator of a " + subject.what + " at position ";
                const Iterator here = beginOf(array, writable);
                const auto expectAt = [&](const void* address, std::size_t k, const char* when) {
                    if (address != asNumbers<T>(array).getElementAddress(k, {}, false))
                        fail("the element of " + what + show(k) + when +
                             " lies elsewhere than getElementAddress says");
                };
                for (std::size_t k = 0; k < array.getNumberOfElements(); ++k, here->increment())
                    expectAt(here->getElementAddress(), k, "");
                here->getElementAddress(); // asked past the end too
                for (const std::size_t k : manyPositions(array.getNumberOfElements())) {
                    const Iterator back = endOf(array, writable);
                    back->advance(static_cast<std::int64_t>(k) -
                                  static_cast<std::int64_t>(array.getNumberOfElements()));
                    expectAt(back->getElementAddress(), k, " after a jump back");
                    if (k == 0) continue;
                    back->decrement();
                    expectAt(back->getElementAddress(), k - 1, " after a step back");
                    const Iterator clone(back->clone());
                    clone->increment();
                    expectAt(clone->getElementAddress(), k, " after a step of its clone");
                }
                ReferenceImpl* chain = here->createReference();
                if (chain != nullptr) chain->release();
                expect(chain == nullptr, "createReference of an iterator of a " + subject.what +
                                             " is not null, although its elements have addresses");
            }
        });
    });
}

/// Iterators over non-zeros find the same value whichever way they come to it.
void sparseAddresses(Backend& backend) {
    eachSubject(backend, {true, false, false, false}, [&](Subject& subject) {
        if (!subject.model.sample().sparse) return;
        std::vector<const void*> forwards;
        const Iterator here = beginOf(*subject.array);
        for (std::size_t k = 0; k < subject.model.size(); ++k, here->increment())
            forwards.push_back(here->getElementAddress());
        for (std::size_t k = forwards.size(); k-- > 0;) {
            here->decrement();
            expect(here->getElementAddress() == forwards[k],
                   "non-zero " + show(k) + " of a " + subject.what + " lies elsewhere on the way back");
            const Iterator jumped = endOf(*subject.array);
            jumped->advance(static_cast<std::int64_t>(k) - static_cast<std::int64_t>(forwards.size()));
            expect(jumped->getElementAddress() == forwards[k],
                   "non-zero " + show(k) + " of a " + subject.what + " lies elsewhere after a jump back");
        }
    });
}

/// Writes all elements of `written` through iterators, the end asked for first or last; `spared` keeps what
/// it holds.
template <class T>
void expectWritable(const std::string& what, ArrayImpl& written, ArrayImpl& spared, bool endFirst) {
    const std::size_t count = written.getNumberOfElements();
    const Contents before = contentsOf(spared);
    Iterator end = endFirst ? endOf(written, true) : nullptr;
    const Iterator here = beginOf(written, true);
    if (!endFirst) end = endOf(written, true);
    expectEqual("distanceTo from a writable begin to a writable end of a " + what, here->distanceTo(*end),
                static_cast<std::int64_t>(count));
    for (std::size_t k = 0; k < count; ++k, here->increment())
        *static_cast<T*>(here->getElementAddress()) = valueAt<T>(counting, k + endFirst);
    expect(here->isEqual(*end), "a writable iterator does not come to the end of a " + what);
    for (std::size_t k = 0; k < count; ++k)
        if (read(asNumbers<T>(written), k) != valueAt<T>(counting, k + endFirst))
            expectEqual("position " + show(k) + " of a " + what + ", written through an iterator",
                        read(asNumbers<T>(written), k), valueAt<T>(counting, k + endFirst));
    expectContents("an array that shared with a " + what + ", written through an iterator", spared, before);
}

/// Begin and end asked in either order, of an array and of its copy.
void writes(Backend& backend) {
    eachSubject(backend, {true, true, true, false}, [&](Subject& subject) {
        withElementType(subject.array->getType(), [&](auto tag) {
            using T = typename decltype(tag)::type;
            for (const bool endFirst : {false, true}) {
                const std::string order =
                    endFirst ? ", the end asked for first" : ", the beginning asked for first";
                const auto copy = adopt(subject.array->sharedCopy(), "sharedCopy");
                expectWritable<T>("copy of a " + subject.what + order, *copy, *subject.array, endFirst);
            }
            const auto copy = adopt(subject.array->sharedCopy(), "sharedCopy");
            expectWritable<T>(subject.what, *subject.array, *copy, subject.model.pattern() == extreme);
            for (const auto& [other, model] : subject.others)
                expectContents("an array that shared with a " + subject.what +
                                   ", written through an iterator",
                               *other, model.contents());
        });
    });
}

/// Chains to elements that are not primitive.
void references(Backend& backend) {
    eachSubject(backend, {true, false, false, false}, [&](Subject& subject) {
        ArrayImpl& array = *subject.array;
        const std::string of = " of the iterator of a " + subject.what;
        const Iterator here = beginOf(array);
        if (here->getElementAddress() != nullptr) return;
        std::vector<Owned<ReferenceImpl>> chains;
        const std::size_t size = subject.model.size();
        for (std::size_t k = 0; k < size; ++k, here->increment())
            chains.push_back(adopt(here->createReference(), "createReference" + of));
        const Iterator back = endOf(array);
        for (std::size_t k = size; k-- > 0;) { // by steps and by jumps
            if (k % 2 == 0)
                back->decrement();
            else
                back->advance(-1);
            expectEqual("getLinearIndex of the chain" + of + " that goes back",
                        adopt(back->createReference(), "createReference" + of)->getLinearIndex(), k);
            const Iterator jumped = beginOf(array);
            jumped->advance(static_cast<std::int64_t>(k));
            expectEqual("getLinearIndex of the chain" + of + " that was advanced",
                        adopt(jumped->createReference(), "createReference" + of)->getLinearIndex(), k);
        }
        for (std::size_t k = 0; k < chains.size(); ++k) {
            expectOneReference("the chain" + of, *chains[k]);
            expect(chains[k]->getArrayImpl() == &array,
                   "getArrayImpl of the chain" + of + " is another array");
            expectEqual("getLinearIndex of the chain" + of, chains[k]->getLinearIndex(), k);
        }
        expectOneReference("a " + subject.what + " with chains into it", array);
    });
}

void keepsChain(Backend& backend) {
    eachSubject(backend, {true, false, false, true}, [&](Subject& subject) {
        const Owned<ReferenceImpl> chain(new data::detail::ArrayReferenceImpl(subject.array.get()));
        for (const bool writable : {false, true})
            expectToKeepChains(rangeOf(*subject.array, subject.what, writable), *chain);
    });
}

void leavesCounts(Backend& backend) {
    eachSubject(backend, {true, false, false, true}, [&](Subject& subject) {
        for (const bool writable : {false, true}) {
            const Iterator begin = beginOf(*subject.array, writable);
            const Iterator clone(begin->clone());
            const Iterator end = endOf(*subject.array, writable);
            expectOneReference("an iterator of a " + subject.what, *begin);
            expectOneReference("an end iterator of a " + subject.what, *end);
            expectOneReference("a " + subject.what + " with iterators", *subject.array);
        }
        expectOneReference("a " + subject.what + " after its iterators are gone", *subject.array);
        expectOneReference("a copy after iterators are gone",
                           *adopt(subject.array->sharedCopy(), "sharedCopy"));
    });
}

} // namespace

void addIterationChecks(Checks& checks) {
    Family iteration(checks, "iteration");
    const std::string position =
        "isEqual says that two iterators stand at one position (slot 4 of iterators)";
    iteration.add("begin to end passes every element",
                  "beginIterator stands at the first element, endIterator past the last (slots 5, 6)", {},
                  overRanges(&expectToPassAll));
    iteration.add("distances",
                  "distanceTo is the number of elements to the other position (slot 5 of iterators)", {},
                  overRanges(&expectDistances));
    iteration.add("advance and decrement",
                  "advance moves by a count, back when negative (slots 3, 6, 7 of iterators)", {},
                  overRanges(&expectMoves));
    iteration.add("iterators are equal only at one position", position, {},
                  overRanges(&expectEqualOnlyThere));
    iteration.add("clones move on their own",
                  "clone is an independent copy at the same position (slot 2 of iterators)", {},
                  overRanges(&expectIndependentClones));
    iteration.add("addresses in the order of positions",
                  "getElementAddress is the address of the current element (slot 12 of iterators)", {},
                  addresses);
    iteration.add("addresses of non-zeros both ways",
                  "getElementAddress is the address of the current element (slot 12 of iterators)", {},
                  sparseAddresses);
    iteration.add(
        "writes through an iterator arrive",
        "with `writable` the storage is exclusively owned before the iterator is handed out (slot 5)", {},
        writes);
    iteration.add("chains to elements",
                  "createReference is a new chain to the current element (slot 9 of iterators)", {},
                  references);
    iteration.add("a saved chain is kept and released",
                  "a saved chain is kept as long as its iterator (slot 10 of iterators)", {}, keepsChain);
    iteration.add("iterators leave the counts",
                  "an iterator is owned alone; its count stays at 1 (slots 5, 6)", {}, leavesCounts);
}

} // namespace vexa::check
