// Arrays in arrays in arrays: writes inside, at any depth, and what they must spare.

#include "Check.hpp"
#include "Foreign.hpp"
#include "Nesting.hpp"

#include <foundation/vexadata/Exception.hpp>
#include <vexa/data/detail/ForwardIteratorImpl.hpp>
#include <vexa/testing/FailingAllocations.hpp>

namespace vexa::check {

namespace {

using testing::FailingAllocations;

/// Every array on the way has other owners, or none of them has.
void spareOtherOwners(Backend& backend) {
    eachPath(backend, [&](const Path& path, const std::string& what) {
        for (const bool owned : {false, true})
            for (const bool inCopy : {false, true}) {
                std::vector<Owned<ArrayImpl>> arrays; // from the leaf to the top
                std::vector<Owned<ObjectImpl>> objects;
                arrays.push_back(scalar(backend, 1));
                for (std::size_t k = path.size(); k-- > 0;)
                    arrays.push_back(path[k]->hold(backend, *arrays.back(), objects));
                if (!owned) {
                    objects.clear();
                    arrays.erase(arrays.begin(), arrays.end() - 1);
                }
                ArrayImpl& top = *arrays.back();
                const auto copy = adopt(top.sharedCopy(), "sharedCopy");
                writeIn(inCopy ? *copy : top, path, 2);
                const std::string after =
                    " after a write inside " + std::string(inCopy ? "the copy" : "the original");
                expectEqual("the value in " + what + after, valueIn(inCopy ? *copy : top, path), 2.0);
                expectEqual("the value in " + what + " of the other" + after,
                            valueIn(inCopy ? top : *copy, path), 1.0);
                for (std::size_t k = 0; k + 1 < arrays.size(); ++k)
                    expectEqual("the value in an array at depth " + show(path.size() - k) + " that " + what +
                                    " holds and somebody else too" + after,
                                valueIn(*arrays[k], path, path.size() - k), 1.0);
                for (const auto& object : objects)
                    expect(shownObject(*object).find("[2]") == std::string::npos,
                           "an object that somebody else holds too shows a write inside " + what + after);
                writeIn(inCopy ? top : *copy, path, 3);
                expectEqual("the value in " + what + " after a write inside the other one too",
                            valueIn(inCopy ? *copy : top, path), 2.0);
            }
    });
}

/// One array in two places of one holder, and one holder in another twice.
void sameArrayTwice(Backend& backend) {
    eachPath(backend, [&](const Path& path, const std::string& what) {
        if (!backend.offers("cell")) throw NotOffered{"needs cell"};
        std::vector<Owned<ObjectImpl>> objects;
        auto held = scalar(backend, 1);
        for (std::size_t k = path.size(); k-- > 0;)
            held = path[k]->hold(backend, *held, objects);
        const auto cells = backend.array(ArrayType::CELL, {1, 2});
        assign(*cells, 0, {}, *held);
        assign(*cells, 1, {}, *held);
        held.reset();
        objects.clear();
        Path inSecond{&levels().front()};
        inSecond.insert(inSecond.end(), path.begin(), path.end());
        writeIn(*cells, inSecond, 2);
        const auto first = adopt(cells->createElementReference(0, {}, false), "createElementReference");
        expectEqual("the value in " + what +
                        " of an array that is in two cells, after a write inside the other",
                    valueIn(*first->getArrayImpl(), path), 1.0);
        expectEqual("the value in " + what + " of the cell that was written to", valueIn(*cells, inSecond),
                    2.0);
    });
}

/// What an element holds, and nobody else, is stored into the same element.
void intoItsOwnPlace(Backend& backend) {
    eachPath(backend, [&](const Path& path, const std::string& what) {
        if (path.size() != 1) return;
        std::vector<Owned<ObjectImpl>> objects;
        const auto holder = path[0]->hold(backend, *scalar(backend, 1), objects);
        objects.clear();
        const auto expectThere = [&](const std::string& by) {
            expectEqual("the value in " + what + " after it was stored into its own place" + by,
                        valueIn(*holder, path), 1.0);
        };
        for (int times = 0; times < 3; ++times) {
            path[0]->put(*holder, *path[0]->inside(*holder, true));
            expectThere("");
        }
        if (holder->getType() == ArrayType::STRUCT)
            for (const bool kept : {false, true}) {
                std::vector<fv::Array> values;
                for (const char* name : {"z", "b"})
                    values.emplace_back(adopt(asStructs(*holder).getField(1, name), "getField").detach());
                std::vector<fv::Array> others = kept ? values : std::vector<fv::Array>();
                asStructs(*holder).setFieldValues(1, std::move(values));
                expectThere(" by setFieldValues");
            }
        if (path[0]->needs.front() == "object-array" && holder->getNumberOfElements() > 1) {
            ObjectArrayImpl& array = asObjects(*holder);
            if (const Owned<ObjectImpl> own(array.getElementObject(1)); own != nullptr) {
                array.setElementObject(1, own.get());
                expectThere(" by setElementObject");
            }
        }
        writeIn(*holder, path, 2);
        expectEqual("the value in " + what + " after a write", valueIn(*holder, path), 2.0);
    });
}

/// A chain with indices means an element of the array that lay in the place when it was made.
void chainsGoStale(Backend& backend) {
    std::size_t count = 0;
    for (std::size_t k = 0; k < 2; ++k) { // cells and structs
        const Level& level = levels()[k];
        if (!offersAll(backend, level.needs)) continue;
        ++count;
        const std::string field = level.needs[0] == "cell" ? "" : "b";
        const auto expectOf = [&](ArrayImpl& stored, bool forWrite, auto expectation) {
            std::vector<Owned<ObjectImpl>> none;
            const auto holder = level.hold(backend, *filled<double>(backend, {2, 3}), none);
            const auto chain =
                adopt(holder->createElementReference(1, field, forWrite), "createElementReference");
            chain->addIndex(1);
            chain->addIndex(2);
            level.put(*holder, stored);
            expectation(*chain, "getLinearIndex of a chain into " + level.name + " that " + describe(stored) +
                                    " was put into since");
        };
        for (const bool forWrite : {false, true}) {
            for (const Dimensions& other : {Dimensions{1, 1}, {3, 2}, {2, 3, 2}, {6, 1}})
                expectOf(*backend.zeros<double>(other), forWrite, [](auto& chain, const std::string& what) {
                    expectThrows<fv::EArrayIndexOutOfRange>(what, "EArrayIndexOutOfRange",
                                                            [&] { chain.getLinearIndex(); });
                });
            for (const ArrayType type : {ArrayType::CELL, ArrayType::STRING, ArrayType::LOGICAL})
                if (backend.offers(nameOf(type)))
                    expectOf(*backend.array(type, {2, 3}), forWrite,
                             [](auto& chain, const std::string& what) {
                                 expectThrows<fv::TypeMismatchException>(what, "TypeMismatchException",
                                                                         [&] { chain.getLinearIndex(); });
                             });
            expectOf(*backend.zeros<double>({2, 3}), forWrite, [](auto& chain, const std::string& what) {
                expectEqual(what, chain.getLinearIndex(), 5);
            });
        }
    }
    if (count == 0) throw NotOffered{"neither cells nor structs are offered"};
}

/// Whether every holder of a path keeps the very array that it was given. Those inside of a back-end that wraps
/// another one are not its own.
bool keepsWhatItIsGiven(const Backend& backend, const Path& path) {
    std::vector<Owned<ObjectImpl>> objects;
    auto content = scalar(backend, 1);
    for (std::size_t k = path.size(); k-- > 0;) {
        auto holder = path[k]->hold(backend, *content, objects);
        if (path[k]->inside(*holder, false) != content.get()) return false;
        content = std::move(holder);
    }
    return true;
}

/// It is refused, or a copy of what the array was is stored; it never holds itself.
void intoItself(Backend& backend) {
    eachPath(backend, [&](const Path& path, const std::string& what) {
        if (path.size() > 1 && !keepsWhatItIsGiven(backend, path)) return;
        std::ptrdiff_t lost = 0;
        for (int times = 0; times < 3; ++times) { // what the back-end makes once is made the first time
            FailingAllocations::start();
            {
                std::vector<Owned<ObjectImpl>> objects;
                auto array = scalar(backend, 1);
                for (std::size_t k = path.size(); k-- > 0;)
                    array = path[k]->hold(backend, *array, objects);
                objects.clear();
                bool stored = true;
                ArrayImpl* innermost = array.get();
                for (std::size_t k = 0; k + 1 < path.size(); ++k)
                    innermost = path[k]->inside(*innermost, true);
                try {
                    path.back()->put(*innermost, *array);
                } catch (...) {
                    stored = false;
                }
                if (stored) {
                    ArrayImpl* inside = array.get();
                    for (const Level* level : path)
                        inside = level->inside(*inside, false);
                    expect(inside != array.get(), "an array that was stored into " + what + " holds itself");
                    Path twice = path;
                    twice.insert(twice.end(), path.begin(), path.end());
                    expectEqual("the value in " + what + " of an array that was stored into itself",
                                valueIn(*array, twice), 1.0);
                    writeIn(*array, twice, 2);
                    expectEqual("the value in it after a write", valueIn(*array, twice), 2.0);
                } else
                    expectEqual("the value in " + what + " after storing the array into itself was refused",
                                valueIn(*array, path), 1.0);
            }
            lost = FailingAllocations::liveBlocks();
            FailingAllocations::stop();
        }
        expect(lost <= 0, "an array that was stored into " + what + " of itself loses " + show(lost) +
                              " block(s) of memory");
    });
}

/// The same of an object, whose property holds the array that it becomes an element of.
void objectIntoItself(Backend& backend) {
    std::ptrdiff_t lost = 0;
    for (int times = 0; times < 6; ++times) {
        const bool byValue = times % 2 == 1;
        FailingAllocations::start();
        {
            const Level& elements = levels()[2];
            const auto array = backend.array(ArrayType::VALUE_OBJECT, {1, 2});
            asObjects(*array).setElementObject(1, newPoint(backend, 5, 1).get());
            auto object = newPoint(backend, *scalar(backend, 3), *array);
            bool stored = true;
            try {
                if (byValue)
                    asObjects(*array).setElementValue(1, {}, fv::HandleObjectRef(share(*object).detach()));
                else
                    asObjects(*array).setElementObject(1, object.get());
            } catch (...) {
                stored = false;
            }
            if (stored) {
                const fv::Array held = asObjects(*array).getElementProperty(1, property("y"));
                expect(fv::detail::Access::impl(held).get() != array.get(),
                       "an object array in which an object was stored that holds it holds itself");
            }
            const Path once{&elements};
            const Path twice{&elements, &elements};
            expectEqual(
                "the value in an object array after an object that holds the array was stored into it",
                valueIn(*array, stored ? twice : once), 1.0);
            object.reset();
            if (stored) {
                writeIn(*array, twice, 2);
                expectEqual("the value in it after a write", valueIn(*array, twice), 2.0);
            }
        }
        lost = FailingAllocations::liveBlocks();
        FailingAllocations::stop();
        if (times > 3)
            expect(lost <= 0, "an object array in which an object was stored that holds it loses " +
                                  show(lost) + " block(s) of memory");
    }
}

/// Cells and fields that hold cells of another back-end.
void comparesForeign(Backend& backend) {
    eachPath(backend, [&](const Path& path, const std::string& what) {
        if (path.size() != 1 || (path[0] != &levels()[0] && path[0] != &levels()[1]) ||
            !backend.offers("cell"))
            return;
        const auto holding = [&](double value) {
            auto cells = backend.array(ArrayType::CELL, {1, 1});
            assign(*cells, 0, {}, *scalar(backend, value));
            std::vector<Owned<ObjectImpl>> none;
            return path[0]->hold(backend, *foreign(std::move(cells)), none);
        };
        for (const double value : {1.0, 2.0})
            expectEqual("isEqual of arrays with cells of another back-end in " + what + ", of 1 and " +
                            show(value),
                        holding(1)->isEqual(holding(value).get()), value == 1);
    });
}

/// Hundreds of arrays, one in another: compared, copied, written inside, and gone.
void deepNests(Backend& backend) {
    eachLevel(backend, [&](const Level& level) {
        const Path path(400, &level);
        const auto nest = [&](double value) {
            auto held = scalar(backend, value);
            for (std::size_t k = 0; k < path.size(); ++k) {
                std::vector<Owned<ObjectImpl>> objects;
                held = level.hold(backend, *held, objects);
            }
            return held;
        };
        const auto array = nest(1);
        const std::string what = "an array " + show(path.size()) + " deep in " + level.name;
        expectEqual("the value in " + what, valueIn(*array, path), 1.0);
        if (level.name != "a property of an array") {
            expectEqual("isEqual of " + what + " and another", array->isEqual(nest(1).get()), true);
            expectEqual("isEqual of " + what + " and one with another value", array->isEqual(nest(2).get()),
                        false);
        }
        auto copy = adopt(array->sharedCopy(), "sharedCopy");
        writeIn(*copy, path, 3);
        expectEqual("the value in " + what + " after a write inside a copy", valueIn(*array, path), 1.0);
        expectEqual("the value in " + what + " of the copy", valueIn(*copy, path), 3.0);
        backend.step("releasing " + what);
        copy.reset();
        expectEqual("the value in " + what + " after its copy has gone", valueIn(*array, path), 1.0);
    });
}

/// Beside what is copied then lie numbers and other cells, before and after.
void mixedIntoItself(Backend& backend) {
    const auto inside = [](ArrayImpl& holder, std::size_t k) {
        const auto chain = adopt(holder.createElementReference(k, {}, false), "createElementReference");
        return chain->getArrayImpl();
    };
    for (std::size_t place = 0; place < 3; ++place) {
        const auto cells = backend.array(ArrayType::CELL, {1, 4});
        for (const std::size_t k : {0U, 3U})
            assign(*cells, k, {}, *backend.array(ArrayType::CELL, {1, 2}));
        assign(*cells, 1, {}, *scalar(backend, 1));
        const auto outer = backend.array(ArrayType::CELL, {1, 3});
        for (std::size_t k = 0; k < 3; ++k)
            assign(*outer, k, {}, k == place ? *cells : *backend.array(ArrayType::CELL, {2, 1}));
        try {
            assign(*cells, 2, {}, *outer);
        } catch (...) {
            return; // refused
        }
        ArrayImpl* const before = inside(*inside(*cells, 2), place);
        expect(before != cells.get(), "a cell array that was stored into itself in place " + show(place) +
                                          " of another one holds itself");
        assign(*cells, 1, {}, *scalar(backend, 2));
        expectEqual("the number beside cells in a copy of what came to hold itself",
                    scalarValue(*inside(*before, 1)), 1.0);
    }
}

/// Every allocation of a comparison fails once: arrays that differ inside stay different, and nobody throws.
void comparesWithoutMemory(Backend& backend) {
    eachPath(backend, [&](const Path& path, const std::string& what) {
        std::vector<Owned<ObjectImpl>> objects;
        const auto nest = [&](double value) {
            auto array = scalar(backend, value);
            for (std::size_t k = path.size(); k-- > 0;)
                array = path[k]->hold(backend, *array, objects);
            return array;
        };
        const auto first = nest(1);
        const auto alike = nest(1);
        const auto different = nest(2);
        // Properties of arrays are for isEqualArrayProperties.
        if (!first->isEqual(alike.get()) || first->isEqual(different.get())) return;
        bool fired = true;
        for (std::size_t number = 1; fired && number < 100; ++number)
            for (const bool onwards : {false, true}) {
                bool equal = false;
                FailingAllocations::start();
                FailingAllocations::failAt(number, onwards);
                try {
                    first->isEqual(alike.get());
                    equal = first->isEqual(different.get());
                } catch (...) {
                    FailingAllocations::stop();
                    fail("isEqual of " + what + " throws without memory, which it must not");
                }
                fired = FailingAllocations::fired();
                FailingAllocations::stop();
                expect(!equal, "isEqual of two times " + what +
                                   " with different numbers inside, allocation " + show(number) +
                                   " failing, is true");
            }
    });
}

} // namespace

void addNestingChecks(Checks& checks) {
    Family nesting(checks, "nesting");
    const std::string own = "by a write inside an element, its array is the element's alone (slot 13)";
    nesting.add("writes at any depth spare other owners", own, {}, spareOtherOwners);
    nesting.add("one array in two places", own, {}, sameArrayTwice);
    nesting.add(
        "an array into its own place",
        "assignElementArray stores an array, borrowed, also one that nobody else holds (slots 18, 49, 60)",
        {}, intoItsOwnPlace);
    nesting.add(
        "chains whose array is gone",
        "with indices a chain means an element of the array for which it was made: it throws when another lies "
        "there (slot 13)",
        {"double"}, chainsGoStale);
    nesting.add("an array into itself",
                "assignElementArray stores an array, borrowed, and nothing is lost (slot 18)", {},
                intoItself);
    nesting.add("an object into the array that it holds",
                "setElementObject stores an object, borrowed, and nothing is lost (slot 60)",
                {"new-value-object", "object-array", "value-object", "class", "double"}, objectIntoItself);
    nesting.add("deep nests", own, {"double"}, deepNests);
    nesting.add("compared without memory", "isEqual is element-wise equality; it must not throw (slot 36)",
                {"double"}, comparesWithoutMemory);
    nesting.add("cells of another back-end are compared",
                "isEqual sees arrays that may belong to another back-end (slot 36)", {}, comparesForeign);
    nesting.add("an array of cells and numbers into itself",
                "assignElementArray stores an array, borrowed (slot 18)", {"cell", "double"},
                mixedIntoItself);
}

} // namespace vexa::check
