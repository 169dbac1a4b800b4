#include "World.hpp"

namespace failure {

namespace {

const std::u16string longText(20, u'x');

SparseArray<double> diagonal(ArrayFactory& factory) {
    auto values = factory.createBuffer<double>(2);
    auto rows = factory.createBuffer<std::size_t>(2);
    auto columns = factory.createBuffer<std::size_t>(2);
    for (std::size_t k = 0; k < 2; ++k) {
        values[k] = 1.5;
        rows[k] = columns[k] = k;
    }
    return factory.createSparseArray<double>({2, 2}, 2, std::move(values), std::move(rows),
                                             std::move(columns));
}

} // namespace

World::World(const ArrayFactory& maker)
    : factory(maker),
      numbers(factory.createArray<double>({2, 3}, {1, 2, 3, 4, 5, 6})),
      alone(factory.createArray<double>({1, 2}, {1, 2})),
      characters(factory.createCharArray("text")),
      strings(factory.createArray<String>({1, 2})),
      members(factory.createEnumArray({1, 2}, "SkyOverAVeryLargeCityByTheSea", {"sun", "rain"})),
      cells(factory.createArray<Array>({1, 2})),
      records(factory.createStructArray({1, 2}, {"size", "inner"})),
      sparse(diagonal(factory)),
      point(factory.createClassInfo("Point", {"x", "y"}, {"unit"})),
      object(factory.createValueObject(point)),
      objects(factory.createValueObjectArray({1, 2}, point)),
      handles(factory.createArray<HandleObjectRef>({1, 2})) {
    strings[0] = longText;
    cells[0] = numbers;
    auto inside = factory.createArray<Array>({1, 1});
    inside[0] = numbers;
    cells[1] = inside;
    auto inner = factory.createStructArray({1, 1}, {"deep"});
    inner[0]["deep"] = numbers;
    records[0]["inner"] = inner;
    records[1]["size"] = numbers;
    object["x"] = numbers;
    objects[0] = object;
    handles[0] = factory.createHandleObjectRef(ZVMID(), 7);
    engine.workspace().setVariables({"a"}, {numbers});
    objectPartner = object;
    partners = {numbers, characters, strings, members, cells, records, sparse, objects, handles};
}

std::string World::text() const {
    std::vector<Array> all = partners;
    all.insert(all.end(),
               {numbers, alone, characters, strings, members, cells, records, sparse, objects, handles});
    auto workspace = const_cast<vexa::client::WorkspaceEngine&>(engine).workspace();
    std::string text;
    for (const std::string& name : workspace.getVariableNames()) {
        text += name + '\n';
        all.push_back(workspace.getVariable(name.c_str()));
    }
    for (const ValueObject* each : {&object, &objectPartner}) {
        for (auto property = each->cbegin(); property != each->cend(); ++property) {
            all.push_back((*property).castToArray());
        }
    }
    for (const Array& array : all) {
        text += toText(array) + '\n';
    }
    return text;
}

} // namespace failure
