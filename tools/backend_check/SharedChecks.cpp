// What arrays of all kinds have in common: shape, copies, identity, equality.

#include "Check.hpp"
#include "Foreign.hpp"
#include "Samples.hpp"

#include <foundation/vexadata/StructArray.hpp>
#include <vexa/data/impl/InPlaceStructImpl.hpp>

#include <memory>
#include <set>

namespace vexa::check {

namespace {

using Texts = std::vector<std::string>;

std::size_t productOf(const Dimensions& dimensions) {
    std::size_t product = 1;
    for (const std::size_t extent : dimensions)
        product *= extent;
    return product;
}

// --- shape

void expectShape(const std::string& what, const ArrayImpl& array, const Dimensions& dimensions) {
    expectEqual("getDimensions of a " + what, array.getDimensions(), dimensions);
    expectEqual("getNumberOfElements of a " + what, array.getNumberOfElements(), productOf(dimensions));
    expectEqual("isEmpty of a " + what, array.isEmpty(), productOf(dimensions) == 0);
}

void shapes(Backend& backend) {
    eachSubject(backend, [&](Subject& subject) {
        expectShape(subject.what, *subject.array, subject.dimensions);
        const ArrayType type = make(backend, subject.model.sample(), {1, 1})->getType();
        expectEqual("getType of a " + subject.what, subject.array->getType(), type);
        for (const auto& [other, model] : subject.others) {
            expectShape("array that shares with a " + subject.what, *other, subject.dimensions);
            expect(other->getMemoryLayout() == subject.array->getMemoryLayout(),
                   "getMemoryLayout of a " + subject.what + " is not that of the array it shares with");
        }
    });
}

/// The place of the elements that handles reach without asking, if the class of the array shows any.
template <class Interface, class T>
const data::detail::InPlace<T>* shownBy(const ArrayImpl& array) {
    const auto* showing = dynamic_cast<const data::impl::InPlaceArrayImpl<Interface, T>*>(&array);
    return showing == nullptr || showing->inPlace().rows == 0 ? nullptr : &showing->inPlace();
}

void inPlace(Backend& backend) {
    eachSubject(backend, [](Subject& subject) {
        ArrayImpl& array = *subject.array;
        const auto expectShown = [&](const auto* shown) {
            if (shown != nullptr)
                expectEqual("the matrix that a " + subject.what + " shows",
                            Dimensions{shown->rows, shown->columns}, subject.dimensions);
        };
        const auto* cells = shownBy<CellArrayImpl, fv::Array>(array);
        expectShown(cells);
        expectShown(shownBy<StringArrayImpl, const void>(array));
        expectShown(shownBy<StructArrayImpl, const void>(array));
        if (cells != nullptr)
            expect(cells->data == asCells(array).getElementAddress(0, {}, false),
                   "the elements that a " + subject.what + " shows are not at getElementAddress");
        const auto* records = dynamic_cast<const data::impl::InPlaceStructImpl*>(&array);
        if (records == nullptr) return;
        for (const std::size_t k : somePositions(array.getNumberOfElements()))
            for (const fv::VexaFieldIdentifier& name :
                 fv::StructArray(share(array).detach()).getFieldNames()) {
                const std::string field = name.getString();
                ArrayImpl* const* place = records->getFieldPlace(k, field);
                const auto held = adopt(records->getField(k, field), "getField");
                expect(place != nullptr && *place == held.get(),
                       "getFieldPlace of a " + subject.what + " is not where getField finds its array");
            }
    });
}

/// Around every power of two that a count of elements or bytes may be kept in.
void sizes(Backend& backend) {
    backend.eachPrimitive([&](auto tag) {
        using T = typename decltype(tag)::type;
        for (std::size_t power = 1; power <= 65536; power *= 2)
            for (const std::size_t count : {power - 1, power, power + 1}) {
                const auto array = backend.zeros<T>({count, 1});
                const std::string what = describe(*array);
                expectShape(what, *array, {count, 1});
                if (count == 0) continue;
                write(*array, count - 1, valueAt<T>(counting, 1));
                expectEqual("the last element of a " + what + " after a write to it", read(*array, count - 1),
                            valueAt<T>(counting, 1));
                if (count > 1)
                    expectEqual("the first element of a " + what + " after a write to the last",
                                read(*array, 0), T());
                expectEqual("distanceTo from begin to end of a " + what,
                            beginOf(*array)->distanceTo(*endOf(*array)), static_cast<std::int64_t>(count));
                const auto copy = adopt(array->sharedCopy(), "sharedCopy");
                expect(array->isEqual(copy.get()), "isEqual of a " + what + " and its copy is false");
                expectEqual("the last element of a copy of a " + what, read(asNumbers<T>(*copy), count - 1),
                            valueAt<T>(counting, 1));
            }
    });
}

/// Extents and counts beyond 32 bits, in arrays without elements.
void hugeExtents(Backend& backend) {
    eachSample(backend, [&](const Sample& sample) {
        if (sample.name == "sparse-logical" || sample.name == "sparse-double" ||
            sample.name == "sparse-complex-double")
            return; // a check of their own
        for (const Dimensions& dimensions :
             {Dimensions{0, (std::size_t(1) << 32) + 3}, {(std::size_t(1) << 40) + 5, 0, 7}})
            expectShape(show(dimensions) + " " + sample.name + " array", *make(backend, sample, dimensions),
                        dimensions);
    });
}

/// Handles keep the address, and what lies there.
void dimensionsStay(Backend& backend) {
    eachSubject(backend, {true, false, false, true}, [&](Subject& subject) {
        const Dimensions& lent = subject.array->getDimensions();
        ArrayImpl& array = *subject.array;
        const auto expectLent = [&](const std::string& after) {
            expect(&array.getDimensions() == &lent,
                   "getDimensions of a " + subject.what + " is at another address after " + after);
            expectShape(subject.what + " after " + after, array, subject.dimensions);
        };
        array.unshare();
        expectLent("unshare");
        const auto copy = adopt(array.sharedCopy(), "sharedCopy");
        expectLent("sharedCopy");
        beginOf(array, true);
        endOf(array, true);
        expectLent("a writable iterator");
        for (const Writer& writer : subject.model.sample().writers)
            for (const std::size_t k : somePositions(subject.model.size())) {
                subject.model.change(backend, array, k, writer);
                expectLent("a write by " + writer.name);
            }
        expectShape("copy of a " + subject.what, *copy, subject.dimensions);
        expectEqual("getDimensions that a " + subject.what + " lent", lent, subject.dimensions);
    });
}

/// Two arrays, each lending its own.
void dimensionsOfTwo(Backend& backend) {
    eachSample(backend, [&](const Sample& sample) {
        const auto first = make(backend, sample, {2, 3});
        const Dimensions& lent = first->getDimensions();
        const auto second = make(backend, sample, {1, 5});
        const Dimensions& other = second->getDimensions();
        expectEqual("getDimensions of a 2x3 " + sample.name + " array while a 1x5 one lends its own", lent,
                    {2, 3});
        expectEqual("getDimensions of a 1x5 " + sample.name + " array while a 2x3 one lends its own", other,
                    {1, 5});
    });
}

// --- contents

void holdsWhatItShould(Backend& backend) {
    eachSubject(backend, [&](Subject& subject) { subject.expectUnchanged(""); });
}

/// Each writer, each part of an element alone; everything else stays.
void writesArrive(Backend& backend) {
    eachSubject(backend, {true, true, false, false}, [&](Subject& subject) {
        for (const Writer& writer : subject.model.sample().writers)
            for (const std::size_t k : somePositions(subject.model.size()))
                if (subject.model.change(backend, *subject.array, k, writer) && subject.model.size() < 1000)
                    subject.expectUnchanged(" after a write to position " + show(k) + " by " + writer.name);
        subject.expectUnchanged(" after writes by all writers");
    });
}

/// What an array lends, as functions that show what lies there by now.
using Lent = std::vector<std::function<std::string()>>;

Lent lentBy(ArrayImpl& array, const Model& model) {
    Lent lent;
    const auto add = [&](auto address, std::size_t count) {
        if (address == nullptr) return;
        lent.emplace_back([=] {
            std::string shown;
            for (std::size_t k = 0; k < count; ++k)
                shown.append(show(address[k])).append(" ");
            return shown;
        });
    };
    withElementType(array.getType(), [&](auto tag) {
        add(std::as_const(asNumbers<typename decltype(tag)::type>(array)).getTypedDataPtr(), model.size());
    });
    if (isSparse(array.getType())) {
        add(array.getIr(), model.size());
        add(array.getJc(), array.getCols() + 1);
    }
    const std::string& kind = model.sample().name;
    if (kind == "enumeration")
        lent.emplace_back([name = asEnums(array).getClassName()] { return std::string(name); });
    for (const std::size_t k : somePositions(model.size())) {
        if (kind == "enumeration")
            lent.emplace_back([name = asEnums(array).getEnumNameAt(k)] { return std::string(name); });
        if (kind == "string") {
            const char16_t* text = nullptr;
            std::size_t length = 0;
            array.getStringElement(k, text, length);
            add(text, length);
        }
        if (kind == "cell" || kind == "struct") {
            const std::string field = kind == "struct" ? "a" : "";
            const std::shared_ptr<ReferenceImpl> chain =
                fv::detail::Access::createSharedPtr(array.createElementReference(k, field, false));
            lent.emplace_back([chain] { return shownArray(*chain->getArrayImpl()); });
        }
    }
    return lent;
}

/// Addresses and chains, through all that changes nothing and through writes to others.
void lendsUntilChanged(Backend& backend) {
    eachSubject(backend, {true, false, false, false}, [&](Subject& subject) {
        ArrayImpl& array = *subject.array;
        const Lent lent = lentBy(array, subject.model);
        Contents before;
        for (const auto& one : lent)
            before.push_back(one());
        const auto expectThere = [&](const std::string& when) {
            for (std::size_t k = 0; k < lent.size(); ++k)
                expectEqual("what a " + subject.what + " lent, " + when, lent[k](), before[k]);
        };
        auto copy = adopt(array.sharedCopy(), "sharedCopy");
        const auto other = make(backend, subject.model.sample(), subject.dimensions, alike);
        array.isEqual(copy.get());
        copy->isEqual(&array);
        array.isEqual(other.get());
        other->isEqual(&array);
        array.getArrayID();
        const Iterator begin = beginOf(array);
        subject.expectUnchanged(" after it was looked at");
        make(backend, subject.model.sample(), subject.dimensions, extreme); // takes what was freed
        expectThere("after it was looked at");
        Model written = subject.model;
        for (const std::size_t k : somePositions(written.size()))
            written.change(backend, *copy, k);
        expectThere("after a write to its copy");
        copy.reset();
        make(backend, subject.model.sample(), subject.dimensions, extreme);
        expectThere("after its copy is gone");
    });
}

// --- copies

void copiesAlike(Backend& backend) {
    eachSubject(backend, [&](Subject& subject) {
        const ArrayImpl& array = *subject.array;
        const auto copy = adopt(array.sharedCopy(), "sharedCopy");
        expect(copy.get() != &array, "sharedCopy of a " + subject.what + " returns the array itself");
        expectOneReference("a copy of a " + subject.what, *copy);
        expectOneReference("a copied " + subject.what, array);
        expectEqual("getType of a copy of a " + subject.what, copy->getType(), array.getType());
        expect(copy->getMemoryLayout() == array.getMemoryLayout(),
               "getMemoryLayout of a copy of a " + subject.what + " differs");
        expectShape("copy of a " + subject.what, *copy, subject.dimensions);
        expectContents("a copy of a " + subject.what, *copy, subject.model.contents());
    });
}

/// Writes to elements of one of the two by each writer; the other must stay as it was.
void expectIndependent(Backend& backend, bool writeCopy) {
    eachSubject(backend, {true, false, false, false}, [&](Subject& subject) {
        for (const Writer& writer : subject.model.sample().writers)
            for (const std::size_t k : somePositions(subject.model.size())) {
                const auto copy = adopt(subject.array->sharedCopy(), "sharedCopy");
                const Model before = subject.model;
                ArrayImpl& written = writeCopy ? *copy : *subject.array;
                ArrayImpl& spared = writeCopy ? *subject.array : *copy;
                Model after = before;
                if (!after.change(backend, written, k, writer)) continue;
                const std::string by = " by " + writer.name;
                expectContents("a " + subject.what + " after a write to position " + show(k) + " of its " +
                                   (writeCopy ? "copy" : "original") + by,
                               spared, before.contents());
                expectContents("the array written to" + by, written, after.contents());
                if (!writeCopy) subject.model = after;
            }
        subject.expectUnchanged(" after writes to copies");
    });
}
void copyWritten(Backend& backend) { expectIndependent(backend, true); }
void originalWritten(Backend& backend) { expectIndependent(backend, false); }

void copyOutlives(Backend& backend) {
    eachSubject(backend, {true, false, false, true}, [&](Subject& subject) {
        const auto copy = adopt(subject.array->sharedCopy(), "sharedCopy");
        subject.array.reset();
        subject.others.clear();
        const auto again = make(backend, subject.model.sample(), subject.dimensions); // takes its memory
        expectContents("a copy after the " + subject.what + " has gone", *copy, subject.model.contents());
    });
}

/// Even through iterators made before the copy.
void iteratorsOfOriginal(Backend& backend) {
    eachSubject(backend, {true, false, true, false}, [&](Subject& subject) {
        withElementType(subject.array->getType(), [&](auto tag) {
            using T = typename decltype(tag)::type;
            const Iterator begin = beginOf(*subject.array, true);
            const Iterator end = endOf(*subject.array, true);
            const auto copy = adopt(subject.array->sharedCopy(), "sharedCopy");
            for (std::size_t k = 0; k < subject.model.size() && !begin->isEqual(*end);
                 ++k, begin->increment())
                *static_cast<T*>(begin->getElementAddress()) = T();
            expectContents("a copy of a " + subject.what +
                               ", after writes through iterators that it had made before",
                           *copy, subject.model.contents());
            for (std::size_t k = 0; k < subject.model.size(); ++k)
                expectEqual("an element of a " + subject.what +
                                " that was copied and then written to "
                                "through iterators made before",
                            read(asNumbers<T>(*subject.array), k), T());
        });
    });
}

void unshareKeeps(Backend& backend) {
    eachSubject(backend, [&](Subject& subject) {
        for (int times = 0; times < 2; ++times)
            subject.array->unshare();
        subject.expectUnchanged(" after unshare");
        expectShape(subject.what + " after unshare", *subject.array, subject.dimensions);
        expectOneReference("a " + subject.what + " after unshare", *subject.array);
    });
}

// --- identity, equality

/// Arrays with different contents must not have one identity: they would count as equal unseen.
void identities(Backend& backend) {
    eachSubject(backend, {true, false, false, false}, [&](Subject& subject) {
        const ArrayImpl& array = *subject.array;
        const std::string what = "getArrayID of a " + subject.what;
        expectEqual(what + ", asked twice", array.getArrayID(), array.getArrayID());
        expect(array.getArrayID() != 0, what + " is 0, the identity of empty arrays");
        for (const auto& [other, model] : subject.others)
            expect(model.contents() == subject.model.contents() || other->getArrayID() != array.getArrayID(),
                   what + " is that of an array that it shared with and that holds something else");
        for (const Writer& writer : subject.model.sample().writers)
            for (const bool writeCopy : {false, true}) {
                const auto copy = adopt(array.sharedCopy(), "sharedCopy");
                const auto second =
                    subject.origin->make(backend, subject.dimensions, subject.model.pattern());
                second->getArrayID();
                copy->getArrayID();
                Model changed = subject.model;
                Model fresh(backend, changed.sample(), changed.pattern(), subject.dimensions);
                ArrayImpl& written = writeCopy ? *copy : *subject.array;
                if (subject.model.size() == 0 || !changed.change(backend, written, 0, writer)) continue;
                if (!writeCopy) subject.model = changed;
                expect(copy->getArrayID() != array.getArrayID(),
                       what + " is that of a copy after a write by " + writer.name);
                if (changed.contents() != fresh.contents())
                    expect(second->getArrayID() != written.getArrayID(),
                           what + " is that of an array with another value");
                if (fresh.change(backend, *second, fresh.size() - 1))
                    expect(second->getArrayID() != array.getArrayID() &&
                               second->getArrayID() != copy->getArrayID(),
                           what + " is that of another array that was written to");
            }
    });
}

void manyIdentities(Backend& backend) {
    constexpr std::size_t number = 70000;
    std::vector<Owned<ArrayImpl>> arrays;
    std::set<std::uint64_t> found;
    backend.eachPrimitive([&](auto tag) {
        using T = typename decltype(tag)::type;
        if (!arrays.empty()) return;
        for (std::size_t k = 0; k < number; ++k) {
            auto array = backend.zeros<T>({1, 1});
            if (k % 2 == 1) write(*array, 0, valueAt<T>(counting, 1));
            found.insert(array->getArrayID());
            arrays.emplace_back(array.detach());
        }
    });
    expectEqual("the number of identities of 70000 arrays that live together", found.size(), number);
}

void expectEquality(const std::string& what, const ArrayImpl& first, const ArrayImpl& second, bool wanted) {
    expectEqual("isEqual of a " + what, first.isEqual(&second), wanted);
    expectEqual("isEqual, the other way round, of a " + what, second.isEqual(&first), wanted);
}

void equalContents(Backend& backend) {
    eachSubject(backend, [&](Subject& subject) {
        const std::optional<bool> equal = subject.model.equalsItself();
        if (!equal) return;
        const auto copy = adopt(subject.array->sharedCopy(), "sharedCopy");
        expectEquality(subject.what + " and its copy", *subject.array, *copy, *equal);
        if (*equal)
            expectEqual("isEqual of a " + subject.what + " and itself",
                        subject.array->isEqual(subject.array.get()), true);
        const Model twin(backend, subject.model.sample(), subject.model.pattern(), subject.dimensions);
        if (subject.model.contents() != twin.contents()) return;
        for (const Origin& origin : subject.model.sample().origins) {
            if (!offersAll(backend, origin.needs)) continue;
            const auto second = origin.make(backend, subject.dimensions, subject.model.pattern());
            expectEquality(subject.what + " and another" + origin.name + " with the same contents",
                           *subject.array, *second, *equal);
        }
        expectOneReference("a " + subject.what + " after isEqual", *subject.array);
    });
}

/// Each part of elements anywhere alone, in arrays of all origins.
void unequalContents(Backend& backend) {
    eachSubject(backend, {false, true, false, false}, [&](Subject& subject) {
        const Sample& sample = subject.model.sample();
        for (const Origin& origin : sample.origins) {
            if (!offersAll(backend, origin.needs)) continue;
            for (const Writer& writer : sample.writers) {
                const bool large = subject.model.size() > 1000;
                const bool first = &writer == &sample.writers.front();
                if (large && !first) break;
                const bool ownWay = &origin == subject.origin && first && !large;
                for (const std::size_t k : (ownWay ? &manyPositions : &somePositions)(subject.model.size())) {
                    const auto second = origin.make(backend, subject.dimensions, subject.model.pattern());
                    Model changed = subject.model;
                    if (!changed.change(backend, *second, k, writer)) continue;
                    expectEquality(subject.what + " and another" + origin.name +
                                       " that differs at position " + show(k) + " (by " + writer.name + ")",
                                   *subject.array, *second, false);
                }
            }
        }
        for (const std::size_t k : somePositions(subject.model.size())) {
            const auto second = subject.origin->make(backend, subject.dimensions, subject.model.pattern());
            Model changed = subject.model;
            if (k > 0 && k < 1000 && changed.exchange(backend, *second, 0, k))
                expectEquality(subject.what + " and another in which positions 0 and " + show(k) +
                                   " are exchanged",
                               *subject.array, *second, false);
        }
    });
}

/// A write to one of two equal arrays, and back.
void equalityFollowsWrites(Backend& backend) {
    eachSubject(backend, {true, false, false, false}, [&](Subject& subject) {
        if (subject.model.size() == 0 || subject.model.equalsItself() != true) return;
        const auto copy = adopt(subject.array->sharedCopy(), "sharedCopy");
        copy->isEqual(subject.array.get());
        Model changed = subject.model;
        if (!changed.change(backend, *copy, subject.model.size() - 1)) return;
        expectEquality(subject.what + " and its copy, which was compared and then written to", *subject.array,
                       *copy, false);
        const Writer& writer = changed.sample().writers.front();
        const std::size_t last = subject.model.size() - 1;
        writer.write(backend, *copy, last, subject.model.pattern(), subject.model[last]);
        expectEquality(subject.what + " and its copy, in which a value was written back", *subject.array,
                       *copy, true);
    });
}

void otherBackEnds(Backend& backend) {
    eachSubject(backend, {false, false, false, false}, [&](Subject& subject) {
        const std::optional<bool> equal = subject.model.equalsItself();
        for (const Origin& origin : subject.model.sample().origins) {
            if (!offersAll(backend, origin.needs)) continue;
            const auto another = [&] {
                return origin.make(backend, subject.dimensions, subject.model.pattern());
            };
            if (equal)
                expectEqual("isEqual of a " + subject.what + " and one of another back-end" + origin.name +
                                " with the same contents",
                            subject.array->isEqual(foreign(another()).get()), *equal);
            for (const std::size_t k : somePositions(subject.model.size())) {
                auto second = another();
                Model changed = subject.model;
                if (!changed.change(backend, *second, k, changed.sample().writers.back())) continue;
                expectEqual("isEqual of a " + subject.what +
                                " and one of another back-end that differs at "
                                "position " +
                                show(k),
                            subject.array->isEqual(foreign(std::move(second)).get()), false);
            }
        }
    });
}

/// Element by element as the language compares numbers.
void comparesNumbers(Backend& backend) {
    backend.eachPrimitive([&](auto tag) {
        using T = typename decltype(tag)::type;
        const auto array = [&](const T& value) {
            auto made = backend.zeros<T>({1, 3});
            write(*made, 1, value);
            return made;
        };
        for (std::size_t a = 0; a < 9; ++a)
            for (std::size_t b = 0; b < 9; ++b) {
                const T first = valueAt<T>(extreme, a);
                const T second = valueAt<T>(extreme, b);
                expectEqual("isEqual of " + std::string(nameOf(tag.arrayType)) + " arrays with " +
                                show(first) + " and " + show(second) + " in one place",
                            array(first)->isEqual(array(second).get()), first == second);
            }
    });
}

} // namespace

void addSharedChecks(Checks& checks) {
    Family shape(checks, "shape");
    shape.add(
        "dimensions, counts, emptiness",
        "getNumberOfElements is the product of the dimensions, isEmpty says that it is 0 (slots 15, 16, 30)",
        {}, shapes);
    shape.add("elements in place",
              "the place of the elements, which the array keeps up to date (InPlaceArrayImpl; slot 50)", {},
              inPlace);
    shape.add("sizes around powers of two", "dimensions arrive with a product that fits in 64 bits", {},
              sizes);
    shape.add("extents beyond 32 bits", "dimensions arrive with a product that fits in 64 bits", {},
              hugeExtents);
    shape.add("dimensions stay where they are",
              "getDimensions is valid, and at the same address, as long as the array lives (slot 15)", {},
              dimensionsStay);
    shape.add("arrays lend dimensions of their own",
              "getDimensions is valid as long as the array lives (slot 15)", {}, dimensionsOfTwo);
    Family contents(checks, "contents");
    contents.add("arrays hold what was put in", "what is stored is what is read", {}, holdsWhatItShould);
    contents.add("a write changes one part of one element",
                 "a write stores its value into the element or field that it names", {}, writesArrive);
    contents.add(
        "what is lent stays until a write",
        "addresses, texts and names are valid until the array is changed (slots 13, 23 to 25, 35, 41, 42, 44)",
        {}, lendsUntilChanged);
    Family copies(checks, "copies");
    const std::string independent = "writing to a copy or its original never shows in the other (slot 2)";
    copies.add("sharedCopy gives the same",
               "sharedCopy gives an independent copy with one reference (slot 2)", {}, copiesAlike);
    copies.add("writing to a copy spares the original", independent, {}, copyWritten);
    copies.add("writing to the original spares a copy", independent, {}, originalWritten);
    copies.add("earlier iterators spare a copy",
               "not even iterators made before show a write in the other (slot 2)", {}, iteratorsOfOriginal);
    copies.add("a copy outlives the original", "a copy is independent (slot 2)", {}, copyOutlives);
    copies.add("unshare changes nothing", "unshare makes the storage exclusive in this same object (slot 32)",
               {}, unshareKeeps);
    Family equality(checks, "equality");
    const std::string elementwise =
        "isEqual is element-wise equality with an array of equal dimensions and type (slot 36)";
    equality.add(
        "identities tell arrays apart",
        "one identity is never given to different contents, 0 never to an array with elements (slot 31)", {},
        identities);
    equality.add("identities of many arrays", "one identity is never given to different contents (slot 31)",
                 {}, manyIdentities);
    equality.add("equal contents are equal", elementwise, {}, equalContents);
    equality.add("any difference is seen", elementwise, {}, unequalContents);
    equality.add("equality follows writes", elementwise, {}, equalityFollowsWrites);
    equality.add("arrays of other back-ends",
                 "isEqual sees arrays that may belong to another back-end (slot 36)", {}, otherBackEnds);
    equality.add("numbers are compared as numbers", elementwise, {}, comparesNumbers);
}

} // namespace vexa::check
