// Arrays in arrays in arrays: writes inside, at any depth, and what they must spare.

#include "Check.hpp"
#include "Foreign.hpp"
#include "Samples.hpp"

#include <foundation/vexadata/Exception.hpp>
#include <vexa/data/detail/ForwardIteratorImpl.hpp>
#include <vexa/testing/FailingAllocations.hpp>

namespace vexa::check {

namespace {

using testing::FailingAllocations;
/// One thing that holds an array.
struct Level {
    std::string name;
    std::vector<std::string> needs;
    /// A new array that holds `content`. What else owns the content then goes to `spared`.
    Owned<ArrayImpl> (*hold)(const Backend&, ArrayImpl& content, std::vector<Owned<ObjectImpl>>& spared);
    /// The array held, borrowed; for writing it is the holder's alone.
    ArrayImpl* (*inside)(ArrayImpl& holder, bool forWrite);
    /// Stores `content` into a holder of this level.
    void (*put)(ArrayImpl& holder, ArrayImpl& content);
};

ArrayImpl* throughChain(Owned<ReferenceImpl> chain, bool forWrite) {
    if (forWrite) chain->prepareForWrite();
    return chain->getArrayImpl();
}

Owned<data::impl::PropertyImpl> secondProperty(ArrayImpl& objects) {
    const auto here = adopt(asObjects(objects).beginElementProperties(1), "beginElementProperties");
    here->increment();
    auto object = adopt(here->get(), "get of a property iterator");
    return Owned<data::impl::PropertyImpl>(&dynamic_cast<data::impl::PropertyImpl&>(*object.detach()));
}

Owned<ArrayImpl> newObjects(const Backend& backend) {
    const auto description = pointClass(backend);
    return adopt(backend.factory().createValueObjectArrayImpl({1, 2}, description.get()),
                 "createValueObjectArrayImpl");
}

const std::vector<std::string> objectNeeds{"object-array", "value-object", "class", "double"};

const std::vector<Level> levels{
    {"a cell",
     {"cell", "double"},
     [](const Backend& backend, ArrayImpl& content, std::vector<Owned<ObjectImpl>>&) {
         auto cells = backend.array(ArrayType::CELL, {1, 2});
         assign(*cells, 1, {}, content);
         return cells;
     },
     [](ArrayImpl& cells, bool forWrite) {
         return throughChain(adopt(cells.createElementReference(1, {}, forWrite), "createElementReference"),
                             forWrite);
     },
     [](ArrayImpl& cells, ArrayImpl& content) { assign(cells, 1, {}, content); }},
    {"a field",
     {"struct", "double"},
     [](const Backend& backend, ArrayImpl& content, std::vector<Owned<ObjectImpl>>&) {
         auto records =
             adopt(backend.factory().createStructArrayImpl({1, 2}, {"z", "b"}), "createStructArrayImpl");
         assign(*records, 1, "b", content);
         return records;
     },
     [](ArrayImpl& records, bool forWrite) {
         return throughChain(
             adopt(records.createElementReference(1, "b", forWrite), "createElementReference"), forWrite);
     },
     [](ArrayImpl& records, ArrayImpl& content) { assign(records, 1, "b", content); }},
    {"a property", objectNeeds,
     [](const Backend& backend, ArrayImpl& content, std::vector<Owned<ObjectImpl>>& spared) {
         auto objects = newObjects(backend);
         auto point = newPoint(backend, *scalar(backend, 5), content);
         asObjects(*objects).setElementObject(1, point.get());
         spared.push_back(std::move(point));
         return objects;
     },
     [](ArrayImpl& objects, bool forWrite) {
         if (forWrite) {
             objects.unshare();
             const auto chain = adopt(secondProperty(objects)->getReference(), "getReference");
             ArrayImpl* held = chain->getElementArray(true);
             chain->prepareForWrite();
             return held;
         }
         fv::Array held = asObjects(objects).getElementProperty(1, property("y"));
         return fv::detail::Access::impl(held).get();
     },
     [](ArrayImpl& objects, ArrayImpl& content) {
         objects.unshare();
         adopt(secondProperty(objects)->getReference(), "getReference")->setArray(&content);
     }},
    {"a property of an array", objectNeeds,
     [](const Backend& backend, ArrayImpl& content, std::vector<Owned<ObjectImpl>>&) {
         auto objects = newObjects(backend);
         adopt(asObjects(*objects).getArrayPropertyReference(property("unit")), "getArrayPropertyReference")
             ->setArray(&content);
         return objects;
     },
     [](ArrayImpl& objects, bool forWrite) {
         objects.unshare();
         return adopt(asObjects(objects).getArrayPropertyReference(property("unit")),
                      "getArrayPropertyReference")
             ->getElementArray(forWrite);
     },
     [](ArrayImpl& objects, ArrayImpl& content) {
         objects.unshare();
         adopt(asObjects(objects).getArrayPropertyReference(property("unit")), "getArrayPropertyReference")
             ->setArray(&content);
     }}};

using Path = std::vector<const Level*>;

double valueIn(ArrayImpl& top, const Path& path, std::size_t from = 0) {
    ArrayImpl* array = &top;
    for (; from < path.size(); ++from) {
        array = path[from]->inside(*array, false);
        expect(array != nullptr, path[from]->name + " holds no array");
    }
    return scalarValue(*array);
}

/// What a way to write leads to is ready for it.
void writeIn(ArrayImpl& top, const Path& path, double value) {
    ArrayImpl* array = &top;
    for (const Level* level : path)
        array = level->inside(*array, true);
    asNumbers<double>(*array).setElementValue(0, {}, value);
}

/// Runs `f` with every path of one to three levels that are offered, the outermost first.
void eachPath(Backend& backend, const std::function<void(const Path&, const std::string&)>& f) {
    std::vector<Path> paths{{}};
    std::size_t count = 0;
    for (std::size_t first = 0; first < paths.size(); ++first) {
        if (paths[first].size() == 3) break;
        for (const Level& level : levels) {
            if (!offersAll(backend, level.needs)) continue;
            paths.push_back(paths[first]);
            paths.back().push_back(&level);
            std::string what;
            for (const Level* one : paths.back())
                what.append(what.empty() ? "" : " of ").append(one->name);
            backend.step("an array in " + what);
            f(paths.back(), what);
            ++count;
        }
    }
    if (count == 0) throw NotOffered{"no kind of array that holds arrays is offered"};
    backend.note(show(count) + " ways to nest");
}

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
        Path inSecond{&levels.front()};
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
        if (path[0]->needs == objectNeeds && holder->getNumberOfElements() > 1) {
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
        const Level& level = levels[k];
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

/// It is refused, or a copy of what the array was is stored; it never holds itself.
void intoItself(Backend& backend) {
    eachPath(backend, [&](const Path& path, const std::string& what) {
        if (path.size() != 1 || (path[0] != &levels[0] && path[0] != &levels[1])) return;
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

/// Cells and fields that hold cells of another back-end.
void comparesForeign(Backend& backend) {
    eachPath(backend, [&](const Path& path, const std::string& what) {
        if (path.size() != 1 || (path[0] != &levels[0] && path[0] != &levels[1]) || !backend.offers("cell"))
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

/// Beside what is copied then lies what holds nothing.
void mixedIntoItself(Backend& backend) {
    const auto cells = backend.array(ArrayType::CELL, {1, 4});
    for (const std::size_t k : {0U, 3U})
        assign(*cells, k, {}, *backend.array(ArrayType::CELL, {1, 2}));
    assign(*cells, 1, {}, *scalar(backend, 1));
    const auto outer = backend.array(ArrayType::CELL, {1, 1});
    assign(*outer, 0, {}, *cells);
    try {
        assign(*cells, 2, {}, *outer);
    } catch (...) {
        return; // refused
    }
    assign(*cells, 1, {}, *scalar(backend, 2));
    const auto inside = [](ArrayImpl& holder, std::size_t k) {
        const auto chain = adopt(holder.createElementReference(k, {}, false), "createElementReference");
        return share(*chain->getArrayImpl());
    };
    const auto before = inside(*inside(*inside(*cells, 2), 0), 1);
    expectEqual("the number beside cells in a copy of what came to hold itself", scalarValue(*before), 1.0);
}

} // namespace

void addNestingChecks(Checks& checks) {
    Family nesting(checks, "nesting");
    const std::string own = "by a write inside an element, its array is the element's alone (order 12)";
    nesting.add("writes at any depth spare other owners", own, {}, spareOtherOwners);
    nesting.add("one array in two places", own, {}, sameArrayTwice);
    nesting.add(
        "an array into its own place",
        "assignElementArray stores an array, borrowed, also one that nobody else holds (orders 17, 48, 59)",
        {}, intoItsOwnPlace);
    nesting.add(
        "chains whose array is gone",
        "with indices a chain means an element of the array for which it was made: it throws when another lies "
        "there (order 12)",
        {"double"}, chainsGoStale);
    nesting.add("an array into itself",
                "assignElementArray stores an array, borrowed, and nothing is lost (order 17)", {},
                intoItself);
    nesting.add("cells of another back-end are compared",
                "isEqual sees arrays that may belong to another back-end (order 35)", {}, comparesForeign);
    nesting.add("an array of cells and numbers into itself",
                "assignElementArray stores an array, borrowed (order 17)", {"cell", "double"},
                mixedIntoItself);
}

} // namespace vexa::check
