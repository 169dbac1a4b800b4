#include "Ranges.hpp"

namespace vexa::check {

namespace {

std::int64_t difference(std::size_t from, std::size_t to) {
    return static_cast<std::int64_t>(to) - static_cast<std::int64_t>(from);
}

Iterator cloneOf(const IteratorImpl& iterator, const std::string& what) {
    Iterator clone(iterator.clone());
    expect(clone != nullptr && clone.get() != &iterator,
           "clone of an iterator of a " + what + " makes no new one");
    return clone;
}

} // namespace

Iterator Range::at(std::size_t position) const {
    Iterator here = begin();
    if (position > 16)
        here->advance(static_cast<std::int64_t>(position));
    else
        for (; position > 0; --position)
            here->increment();
    return here;
}

std::vector<std::size_t> Range::positions() const {
    std::vector<std::size_t> found;
    for (std::size_t position = 0; position <= length; ++position)
        if (length < 8 || position < 2 || position + 2 > length || position * 2 == length || position == 256)
            found.push_back(position);
    return found;
}

void expectToPassAll(const Range& range) {
    const Iterator here = range.begin();
    const Iterator end = range.end();
    std::size_t passed = 0;
    while (!here->isEqual(*end) && passed <= range.length) {
        here->increment();
        ++passed;
    }
    if (passed > range.length)
        fail("an iterator of a " + range.what + " does not reach the end in " + show(range.length) +
             " steps");
    expectEqual("the number of elements that an iterator of a " + range.what + " passes", passed,
                range.length);
    for (; passed > 0 && !here->isEqual(*range.begin()); --passed)
        here->decrement();
    expect(passed == 0 && here->isEqual(*range.begin()),
           "an iterator of a " + range.what + " that goes back from the end does not come to the beginning");
}

/// Between all pairs, in both directions.
void expectDistances(const Range& range) {
    for (const std::size_t from : range.positions()) {
        const Iterator first = range.at(from);
        expectEqual("distanceTo from position " + show(from) + " to the end of a " + range.what,
                    first->distanceTo(*range.end()), difference(from, range.length));
        expectEqual("distanceTo from the end to position " + show(from) + " of a " + range.what,
                    range.end()->distanceTo(*first), difference(range.length, from));
        for (const std::size_t to : range.positions())
            expectEqual("distanceTo from position " + show(from) + " to " + show(to) + " of a " + range.what,
                        first->distanceTo(*range.at(to)), difference(from, to));
        expectEqual("distanceTo from an iterator of a " + range.what + " to itself",
                    first->distanceTo(*first), 0);
    }
}

/// Any way to a position is the same position.
void expectMoves(const Range& range) {
    for (const std::size_t from : range.positions())
        for (const std::size_t to : range.positions()) {
            const Iterator wanted = range.at(to);
            const std::string what = "advance(" + show(difference(from, to)) + ") from position " +
                                     show(from) + " of a " + range.what;
            const Iterator jumped = range.at(from);
            jumped->advance(difference(from, to));
            expect(jumped->isEqual(*wanted) && wanted->isEqual(*jumped), what + " leads elsewhere");
            const Iterator fromEnd = range.end();
            fromEnd->advance(difference(range.length, to));
            expect(fromEnd->isEqual(*wanted), "advance(" + show(difference(range.length, to)) +
                                                  ") from end of a " + range.what + " leads elsewhere");
            fromEnd->advance(0);
            expect(fromEnd->isEqual(*wanted), "advance(0) in a " + range.what + " leads elsewhere");
            if (to < range.length) {
                jumped->increment();
                jumped->decrement();
                expect(jumped->isEqual(*wanted), "increment and decrement at position " + show(to) +
                                                     " of a " + range.what + " lead elsewhere");
            }
            if (to > 0) {
                jumped->decrement();
                expect(jumped->isEqual(*range.at(to - 1)),
                       "decrement from position " + show(to) + " of a " + range.what + " leads elsewhere");
            }
        }
}

void expectEqualOnlyThere(const Range& range) {
    for (const std::size_t a : range.positions())
        for (const std::size_t b : range.positions()) {
            const Iterator first = range.at(a);
            const Iterator second = range.at(b);
            const std::string of =
                " of iterators of a " + range.what + " at positions " + show(a) + " and " + show(b);
            expectEqual("isEqual" + of, first->isEqual(*second), a == b);
            expectEqual("isEqual, the other way round," + of, second->isEqual(*first), a == b);
        }
}

void expectIndependentClones(const Range& range) {
    for (const std::size_t position : range.positions()) {
        Iterator here = range.at(position);
        const Iterator clone = cloneOf(*here, range.what);
        const std::string what =
            "a clone of an iterator of a " + range.what + " at position " + show(position);
        expectOneReference(what, *clone);
        expect(clone->isEqual(*here) && here->isEqual(*clone), what + " stands elsewhere");
        if (position < range.length) {
            clone->increment();
            expectEqual("the distance to an iterator of a " + range.what + " from its clone that moved",
                        clone->distanceTo(*here), -1);
            expect(here->isEqual(*range.at(position)),
                   "an iterator of a " + range.what + " moves with its clone");
            clone->decrement();
            here->increment();
            expect(clone->isEqual(*range.at(position)), what + " moves with the iterator");
        }
        here.reset();
        expect(clone->isEqual(*range.at(position)), what + " which is gone stands elsewhere");
        expect(cloneOf(*clone, range.what)->isEqual(*clone), "a clone of " + what + " stands elsewhere");
    }
}

void expectToKeepChains(const Range& range, ReferenceImpl& chain) {
    const std::string by = " by an iterator of a " + range.what;
    const auto save = [&](IteratorImpl& iterator, ReferenceImpl& kept) {
        kept.retain();
        iterator.saveReference(&kept);
    };
    const std::uint64_t before = chain.referenceCount();
    const auto expectCount = [&](const std::string& what, std::uint64_t kept) {
        expectEqual("the reference count of a chain " + what, chain.referenceCount() - before, kept);
    };
    Iterator here = range.begin();
    save(*here, chain);
    expectCount("kept" + by, 1);
    save(*here, chain);
    expectCount("kept twice" + by, 1);
    if (range.length > 0) here->increment();
    expect(chain.referenceCount() > before, "a chain kept" + by + " is gone after a step");
    here.reset();
    expectCount("that was kept" + by + " which is gone", 0);
    here = range.begin();
    save(*here, chain);
    Iterator clone = cloneOf(*here, range.what);
    expect(clone->isEqual(*here),
           "a clone of an iterator of a " + range.what + " with a chain stands elsewhere");
    Iterator second = cloneOf(*clone, range.what);
    expect(chain.referenceCount() > before, "a chain kept" + by + " is gone after a clone");
    second.reset();
    here.reset();
    expect(clone->isEqual(*range.begin()),
           "a clone of an iterator with a chain, which is gone, stands elsewhere");
    clone.reset();
    expectCount("that was kept" + by + " and its clones which are gone", 0);
}

void expectSequence(const Sequence& sequence, const std::vector<std::string>& wanted) {
    using data::detail::ForwardIteratorImpl;
    using data::detail::RefCounted;
    const auto start = [&](const auto& make, const char* operation) {
        auto made = adopt(make(), std::string(operation) + " of " + sequence.what);
        expectOneReference("a new iterator over " + sequence.what, *made);
        return made;
    };
    const auto end = start(sequence.end, "the end");
    const auto here = start(sequence.begin, "the beginning");
    std::vector<Owned<ForwardIteratorImpl>> places;
    std::vector<Owned<RefCounted>> held;
    std::vector<std::string> found;
    for (; !here->equal(end.get()) && found.size() <= wanted.size(); here->increment()) {
        held.push_back(adopt(here->get(), "get of an iterator over " + sequence.what));
        found.push_back(sequence.nameOf(*held.back()));
        expect(!end->equal(here.get()),
               "equal of the end of " + sequence.what + " and a place before it is true");
        places.push_back(adopt(here->clone(), "clone of an iterator over " + sequence.what));
        expectOneReference("a cloned iterator over " + sequence.what, *places.back());
    }
    expectEqual(sequence.what, found, wanted);
    expect(end->equal(here.get()),
           "equal of the end of " + sequence.what + " and one that came there is false");
    for (std::size_t k = 0; k < held.size(); ++k)
        expectEqual("object " + show(k) + " of " + sequence.what + " while the others are held",
                    sequence.nameOf(*held[k]), wanted[k]);
    for (std::size_t k = 0; k < held.size(); ++k) { // the object may be one that the owner keeps
        const std::uint64_t before = held[k]->referenceCount();
        {
            const auto again = adopt(places[k]->get(), "get of a clone");
            expectEqual("object " + show(k) + " of " + sequence.what + " that a clone gives",
                        sequence.nameOf(*again), wanted[k]);
        }
        expectEqual("the reference count of object " + show(k) + " of " + sequence.what +
                        " after another get",
                    held[k]->referenceCount(), before);
    }
    for (std::size_t a = 0; a < places.size(); ++a)
        for (std::size_t b = 0; b < places.size(); ++b)
            expectEqual("equal of the iterators over " + sequence.what + " at " + show(a) + " and " + show(b),
                        places[a]->equal(places[b].get()), a == b);
    places.clear();
    const auto again = start(sequence.begin, "the beginning");
    expectOneReference("an iterator over " + sequence.what, *again);
    for (std::size_t k = 0; k < wanted.size(); ++k) {
        const auto clone = adopt(again->clone(), "clone");
        clone->increment();
        expectEqual("object " + show(k) + " of " + sequence.what + " after a clone of its iterator moved",
                    sequence.nameOf(*adopt(again->get(), "get")), wanted[k]);
        again->increment();
        expect(clone->equal(again.get()),
               "a clone over " + sequence.what + " that moved as its original stands elsewhere");
    }
}

} // namespace vexa::check
