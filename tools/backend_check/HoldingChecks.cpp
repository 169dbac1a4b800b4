// What is stored into a cell, a field, a property or an element: it stays as it was, and is written where it lies.

#include "Check.hpp"
#include "Foreign.hpp"
#include "Nesting.hpp"

#include <foundation/vexadata/Exception.hpp>

namespace vexa::check {

namespace {

/// A way to store an array, and how to find it again.
struct Way {
    std::string name;
    std::vector<std::string> needs;
    std::function<Owned<ArrayImpl>(const Backend&, ArrayImpl& content)> store;
    std::function<ArrayImpl*(ArrayImpl& holder)> find;
};

std::vector<Way> waysToStore() {
    std::vector<Way> ways;
    for (const Level& level : levels())
        ways.push_back({level.name, level.needs,
                        [&level](const Backend& backend, ArrayImpl& content) {
                            std::vector<Owned<ObjectImpl>> objects;
                            return level.hold(backend, content, objects);
                        },
                        [&level](ArrayImpl& holder) { return level.inside(holder, false); }});
    const auto handle = [](ArrayImpl& content) { return fv::Array(share(content).detach()); };
    ways.push_back({"a cell (by setElementValue)", levels()[0].needs,
                    [handle](const Backend& backend, ArrayImpl& content) {
                        auto cells = backend.array(ArrayType::CELL, {1, 2});
                        asCells(*cells).setElementValue(1, {}, handle(content));
                        return cells;
                    },
                    ways[0].find});
    ways.push_back({"a field (by setFieldValues)", levels()[1].needs,
                    [handle](const Backend& backend, ArrayImpl& content) {
                        auto records = adopt(backend.factory().createStructArrayImpl({1, 2}, {"z", "b"}),
                                             "createStructArrayImpl");
                        asStructs(*records).setFieldValues(1, {fv::Array(), handle(content)});
                        return records;
                    },
                    ways[1].find});
    return ways;
}

/// Writes to an array as a handle does: to the array itself when nobody else has it, else to a copy.
Owned<ArrayImpl> writtenByItsHandle(const Backend& backend, Owned<ArrayImpl> array, Model& model,
                                    std::size_t k, const Writer& writer) {
    if (array->referenceCount() > 1) array = adopt(array->sharedCopy(), "sharedCopy");
    array->unshare();
    model.change(backend, *array, k, writer);
    return array;
}

/// Whatever is written to the original, before its copy or after.
void staysAsItWas(Backend& backend) {
    const std::vector<Way> ways = waysToStore();
    eachSample(backend, [&](const Sample& sample) {
        for (const Way& way : ways) {
            if (!offersAll(backend, way.needs)) continue;
            for (const Origin& origin : sample.origins)
                for (const Writer& writer : sample.writers)
                    for (const Dimensions& dimensions : {Dimensions{1, 1}, {2, 3}}) {
                        if (!offersAll(backend, origin.needs)) continue;
                        auto content = origin.make(backend, dimensions, counting);
                        Model model(backend, sample, counting, dimensions);
                        const Contents before = model.contents();
                        const auto holder = way.store(backend, *content);
                        const std::string what = "a " + show(dimensions) + " " + sample.name + " array" +
                                                 origin.name + " in " + way.name +
                                                 " after a write to the original by " + writer.name;
                        for (const std::size_t k : somePositions(model.size())) {
                            content = writtenByItsHandle(backend, std::move(content), model, k, writer);
                            ArrayImpl* held = way.find(*holder);
                            expect(held != nullptr, way.name + " holds no array");
                            expectContents(what, *held, before);
                        }
                        expectContents("the original", *content, model.contents());
                        content.reset();
                        expectContents(what + ", which has gone", *way.find(*holder), before);
                    }
        }
    });
}

/// An object as an element, and then written to as its handle does.
void objectsStayAsTheyWere(Backend& backend) {
    for (const bool byValue : {false, true})
        for (const char* name : {"x", "y"}) {
            const auto description = pointClass(backend);
            const auto array = adopt(backend.factory().createValueObjectArrayImpl({1, 2}, description.get()),
                                     "createValueObjectArrayImpl");
            auto object = newPoint(backend, 1, 2);
            if (byValue)
                asObjects(*array).setElementValue(1, {}, fv::HandleObjectRef(share(*object).detach()));
            else
                asObjects(*array).setElementObject(1, object.get());
            if (object->referenceCount() > 1) object = adopt(object->sharedCopy(), "sharedCopy of an object");
            setProperty(*object, name, *scalar(backend, 9));
            expectEqual("an object in an element after a write to the original",
                        shownObject(*adopt(asObjects(*array).getElementObject(1), "getElementObject")),
                        "x=1x1 double [1], y=1x1 double [2]");
        }
}

/// No copy for every write: what else was handed out to write through would then write to an array that is gone.
void writtenInPlace(Backend& backend) {
    eachLevel(backend, [&](const Level& level) {
        std::vector<Owned<ObjectImpl>> objects;
        const auto holder = level.hold(backend, *filled<double>(backend, {2, 3}), objects);
        objects.clear();
        if (level.inside(*holder, false) != level.inside(*holder, false)) return; // made when it is asked for
        ArrayImpl* const first = level.inside(*holder, true);
        std::vector<Owned<TypedArrayImpl<double>>> taking; // what a copy leaves behind
        for (int times = 0; times < 4; ++times) {
            ArrayImpl* const held = level.inside(*holder, times % 2 == 0);
            taking.push_back(filled<double>(backend, {2, 3}));
            expect(held == first,
                   "an array that " + level.name + " alone holds is another one after a write inside");
            write(asNumbers<double>(*held), 1, 7.0 + times);
        }
        const auto copy = adopt(holder->sharedCopy(), "sharedCopy");
        const double before = read(asNumbers<double>(*level.inside(*copy, false)), 1);
        write(asNumbers<double>(*level.inside(*holder, true)), 1, 20.0);
        expectEqual("an element in " + level.name + " of a copy",
                    read(asNumbers<double>(*level.inside(*copy, false)), 1), before);
    });
}

/// An array of another back-end that shares its storage until `unshare`.
void unsharesWhatIsHeld(Backend& backend) {
    eachLevel(backend, [&](const Level& level) {
        std::vector<Owned<ObjectImpl>> objects;
        auto value = sharingNumbers(1);
        const auto twin = adopt(value->sharedCopy(), "sharedCopy");
        const auto holder = level.hold(backend, *value, objects);
        objects.clear();
        value.reset();
        writeIn(*holder, {&level}, 2);
        expectEqual("a number in " + level.name + " after a write inside", valueIn(*holder, {&level}), 2.0);
        expectEqual("a number in an array of another back-end that shared its storage with one in " +
                        level.name + ", after a write inside",
                    scalarValue(*twin), 1.0);
    });
}

} // namespace

void addHoldingChecks(Checks& checks) {
    Family holding(checks, "holding");
    holding.add(
        "what is stored stays as it was",
        "what is stored is as independent of later writes to the original as a copy (slots 18, 40, 49; objects, "
        "7)",
        {"double"}, staysAsItWas);
    holding.add("objects in elements stay as they were",
                "an object in an element is independent of later writes to the original (slots 40, 60)",
                levels()[2].needs, objectsStayAsTheyWere);
    holding.add(
        "what nobody else holds is written where it lies",
        "by a write inside an element, its array is the element's alone: copied when another owner has it, and "
        "only then (slot 13)",
        {"double"}, writtenInPlace);
    holding.add("storage is made exclusive before a write inside",
                "prepareForWrite makes the array's storage exclusive, as slot 32 does (slots 13, 32, 40)",
                {"double"}, unsharesWhatIsHeld);
}

} // namespace vexa::check
