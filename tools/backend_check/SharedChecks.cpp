// What arrays of all kinds have in common: shape, copies, identity, equality.

#include "Check.hpp"
#include "Samples.hpp"

namespace vexa::check {

namespace {

using Contents = std::vector<std::string>;

std::size_t productOf(const Dimensions& dimensions) {
    std::size_t product = 1;
    for (const std::size_t extent : dimensions)
        product *= extent;
    return product;
}

void shapes(Backend& backend) {
    eachSample(backend, [&](const Sample& sample) {
        for (const Dimensions& dimensions : {Dimensions{1, 1},
                                             {2, 3},
                                             {3, 2},
                                             {1, 7},
                                             {7, 1},
                                             {0, 0},
                                             {0, 5},
                                             {5, 0},
                                             {2, 3, 4},
                                             {1, 2, 0}}) {
            if (sample.matricesOnly && dimensions.size() != 2) continue;
            const auto array = sample.make(backend, dimensions);
            const std::string of = " of a " + show(dimensions) + " " + sample.name + " array";
            expectEqual("getDimensions" + of, array->getDimensions(), dimensions);
            expectEqual("getNumberOfElements" + of, array->getNumberOfElements(), productOf(dimensions));
            expectEqual("isEmpty" + of, array->isEmpty(), productOf(dimensions) == 0);
        }
    });
}

/// Handles keep the address.
void dimensionsStay(Backend& backend) {
    eachSample(backend, [&](const Sample& sample) {
        const auto array = sample.make(backend, {2, 3});
        const Dimensions* before = &array->getDimensions();
        sample.change(backend, *array, 1);
        expect(&array->getDimensions() == before,
               "getDimensions of a " + describe(*array) + " is at another address after a write");
    });
}

void copiesAlike(Backend& backend) {
    eachSample(backend, [&](const Sample& sample) {
        const auto array = sample.make(backend, {2, 3});
        const Contents contents = contentsOf(*array);
        const auto copy = adopt(array->sharedCopy(), "sharedCopy");
        const std::string of = " of a copy of a " + describe(*array);
        expect(copy.get() != array.get(),
               "sharedCopy of a " + describe(*array) + " returns the array itself");
        expectOneReference("a copy of a " + describe(*array), *copy);
        expectOneReference("a copied " + describe(*array), *array);
        expectEqual("getType" + of, copy->getType(), array->getType());
        expectEqual("getDimensions" + of, copy->getDimensions(), array->getDimensions());
        expect(copy->getMemoryLayout() == array->getMemoryLayout(), "getMemoryLayout" + of + " differs");
        expectContents("a copy of a " + describe(*array), *copy, contents);
    });
}

/// Writes to each element of one of the two; `other` must stay as it was.
void expectIndependent(Backend& backend, const Sample& sample, bool writeCopy) {
    const auto array = sample.make(backend, {2, 3});
    const Contents contents = contentsOf(*array);
    const auto copy = adopt(array->sharedCopy(), "sharedCopy");
    ArrayImpl& written = writeCopy ? *copy : *array;
    for (std::size_t k = 0; k < contents.size(); ++k) {
        sample.change(backend, written, k);
        expect(contentsOf(written)[k] != contents[k],
               "a write to position " + show(k) + " of a " + describe(*array) + " does not arrive");
        expectContents(std::string(writeCopy ? "a" : "a copy of a ") + (writeCopy ? " " : "") +
                           describe(*array) + " after a write to " +
                           (writeCopy ? "its copy" : "the original"),
                       writeCopy ? *array : *copy, contents);
    }
}
void copyWritten(Backend& backend) {
    eachSample(backend, [&](const Sample& sample) { expectIndependent(backend, sample, true); });
}
void originalWritten(Backend& backend) {
    eachSample(backend, [&](const Sample& sample) { expectIndependent(backend, sample, false); });
}

void copyOutlives(Backend& backend) {
    eachSample(backend, [&](const Sample& sample) {
        auto array = sample.make(backend, {2, 3});
        const Contents contents = contentsOf(*array);
        const auto copy = adopt(array->sharedCopy(), "sharedCopy");
        array.reset();
        expectContents("a copy after the original has gone", *copy, contents);
    });
}

/// Even through iterators made before the copy.
void iteratorsOfOriginal(Backend& backend) {
    backend.eachPrimitive([&](auto tag) {
        using T = typename decltype(tag)::type;
        const auto array = filled<T>(backend, {2, 3});
        const Iterator before = beginOf(*array, true);
        const auto copy = adopt(array->sharedCopy(), "sharedCopy");
        *static_cast<T*>(before->getElementAddress()) = otherValueAt<T>(0);
        expectFilled("a copy, after a write through an iterator that the original had made before",
                     dynamic_cast<TypedArrayImpl<T>&>(*copy));
    });
}

void unshareKeeps(Backend& backend) {
    eachSample(backend, [&](const Sample& sample) {
        const auto array = sample.make(backend, {2, 3});
        const Contents contents = contentsOf(*array);
        array->unshare();
        expectContents("a " + describe(*array) + " after unshare", *array, contents);
        expectEqual("getDimensions after unshare", array->getDimensions(), {2, 3});
    });
}

/// Arrays with different contents must not have one identity: they would count as equal unseen.
void identities(Backend& backend) {
    eachSample(backend, [&](const Sample& sample) {
        const auto first = sample.make(backend, {2, 3});
        const auto second = sample.make(backend, {2, 3});
        sample.change(backend, *second, 1);
        const auto copy = adopt(first->sharedCopy(), "sharedCopy");
        sample.change(backend, *copy, 1);
        const std::string what = "getArrayID of a " + describe(*first);
        expectEqual(what + ", asked twice", first->getArrayID(), first->getArrayID());
        expect(first->getArrayID() != 0, what + " is 0, the identity of empty arrays");
        expect(first->getArrayID() != second->getArrayID(), what + " is that of an array with another value");
        expect(first->getArrayID() != copy->getArrayID(), what + " is that of a copy that was written to");
    });
}

void equalContents(Backend& backend) {
    eachSample(backend, [&](const Sample& sample) {
        const auto first = sample.make(backend, {2, 3});
        const auto second = sample.make(backend, {2, 3});
        const auto copy = adopt(first->sharedCopy(), "sharedCopy");
        const std::string what = "isEqual of a " + describe(*first);
        expect(first->isEqual(second.get()), what + " and another with the same contents is false");
        expect(first->isEqual(copy.get()), what + " and its copy is false");
        expect(copy->isEqual(first.get()), what + " and the array that it was copied from is false");
    });
}

void unequalContents(Backend& backend) {
    eachSample(backend, [&](const Sample& sample) {
        const auto first = sample.make(backend, {2, 3});
        for (std::size_t k = 0; k < contentsOf(*first).size(); ++k) {
            const auto second = sample.make(backend, {2, 3});
            sample.change(backend, *second, k);
            const std::string what =
                "isEqual of " + describe(*first) + "s that differ at position " + show(k);
            expect(!first->isEqual(second.get()) && !second->isEqual(first.get()), what + " is true");
        }
    });
}

} // namespace

void addSharedChecks(Checks& checks) {
    Family shape(checks, "shape");
    shape.add("dimensions, counts, emptiness", {}, shapes);
    shape.add("dimensions stay where they are", {}, dimensionsStay);
    Family copies(checks, "copies");
    copies.add("sharedCopy gives the same", {}, copiesAlike);
    copies.add("writing to a copy spares the original", {}, copyWritten);
    copies.add("writing to the original spares a copy", {}, originalWritten);
    copies.add("earlier iterators spare a copy", {}, iteratorsOfOriginal);
    copies.add("a copy outlives the original", {}, copyOutlives);
    copies.add("unshare changes nothing", {}, unshareKeeps);
    Family equality(checks, "equality");
    equality.add("identities tell arrays apart", {}, identities);
    equality.add("equal contents are equal", {}, equalContents);
    equality.add("any difference is seen", {}, unequalContents);
}

} // namespace vexa::check
