#include "Nesting.hpp"

#include "Foreign.hpp"

namespace vexa::check {

namespace {

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

const std::vector<Level> allLevels{
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

} // namespace

const std::vector<Level>& levels() { return allLevels; }

double valueIn(ArrayImpl& top, const Path& path, std::size_t from) {
    ArrayImpl* array = &top;
    for (; from < path.size(); ++from) {
        array = path[from]->inside(*array, false);
        expect(array != nullptr, path[from]->name + " holds no array");
    }
    return scalarValue(*array);
}

void writeIn(ArrayImpl& top, const Path& path, double value) {
    ArrayImpl* array = &top;
    for (const Level* level : path)
        array = level->inside(*array, true);
    asNumbers<double>(*array).setElementValue(0, {}, value);
}

void eachPath(Backend& backend, const std::function<void(const Path&, const std::string&)>& f) {
    std::vector<Path> paths{{}};
    std::size_t count = 0;
    for (std::size_t first = 0; first < paths.size(); ++first) {
        if (paths[first].size() == 3) break;
        for (const Level& level : allLevels) {
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

void eachLevel(Backend& backend, const std::function<void(const Level&)>& f) {
    std::size_t count = 0;
    for (const Level& level : allLevels) {
        if (!offersAll(backend, level.needs)) continue;
        backend.step("an array in " + level.name);
        f(level);
        ++count;
    }
    if (count == 0) throw NotOffered{"no kind of array that holds arrays is offered"};
    backend.note(show(count) + (count == 1 ? " kind of holder" : " kinds of holders"));
}

} // namespace vexa::check
