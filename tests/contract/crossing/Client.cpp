// A client of the embedded back-end that uses every kind of handle. It is built with the headers of a
// published contract and run over the libraries of today: it uses only what these headers have.
#include "Elements.hpp"

#include <foundation/vexadata/InProcessCustomWorkspace.hpp>
#include <vexa/client/Exception.hpp>
#include <vexa/client/Objects.hpp>
#include <vexa/client/Workspace.hpp>
#include <vexa/data/detail/VariableInfoImplData.hpp>

#include <complex>
#include <memory>
#include <string>

namespace {

/// Five dimensions, so that chains grow beyond what they hold in place; each element is its own position.
template <MemoryLayout layout>
void positions() {
    const ArrayFactory factory;
    const std::vector<std::size_t> sizes{3, 2, 2, 2, 2};
    std::vector<std::int32_t> values(48);
    std::iota(values.begin(), values.end(), 0);
    TypedArray<std::int32_t> a =
        factory.createArrayFromBuffer<std::int32_t>(sizes, bufferOf(factory, values), layout);
    const bool columns = layout == MemoryLayout::COLUMN_MAJOR;
    EXPECT(a.getMemoryLayout() == layout && a[2][1][0][1][0] == (columns ? 2 + 3 + 0 + 12 : 2 * 16 + 8 + 2));
    a[1][1][1][1][1] = -1;
    EXPECT(*std::min_element(a.begin(), a.end()) == -1);
    const Reference<std::int32_t> kept = a[1][1][1][1][1];
    const auto chain = kept.chain();
    EXPECT(chain->indexCount() == 5 && chain->indices()[4] == 1 && chain->dimensions() == sizes);
    EXPECT(chain->memoryLayout() == layout && chain->stringIndex().empty() && kept == -1);
    EXPECT(chain->getLinearIndex() == (columns ? 1U + 3 + 6 + 12 + 24 : 16U + 8 + 4 + 2 + 1) &&
           chain->isLinearIndexKnown());
    const TypedArray<std::int32_t> matrix = factory.createArrayFromBuffer<std::int32_t>(
        {2, 3}, bufferOf<std::int32_t>(factory, {0, 1, 2, 3, 4, 5}), layout);
    EXPECT(matrix[1][0] == (columns ? 1 : 3) && matrix[0][2] == (columns ? 4 : 2));
}

void texts() {
    const ArrayFactory factory;
    const CharArray text = factory.createCharArray("text");
    EXPECT(text.toAscii() == "text" && text.toUTF16() == u"text" && text[1] == u'e');
    EXPECT(throws<NonAsciiCharInRequestedAsciiOutputException>(
        [&] { return factory.createCharArray(u"\u00e9").toAscii(); }));
    TypedArray<String> strings = factory.createArray<String>({1, 3}, {"a", "bc", "def"});
    const TypedArray<String> before = strings;
    strings[1] = std::nullopt;
    strings[2] = u"long enough not to be kept within the string";
    EXPECT(!strings[1].has_value() && before[1] == "bc" && String(strings[2])->size() == 44 &&
           strings[0] == u"a");
    std::size_t present = 0;
    for (const auto& string : std::as_const(strings))
        present += string.has_value();
    for (auto string : strings)
        string = "x";
    EXPECT(present == 2 && strings[1] == "x" && toUTF16(factory.createScalar("one")) == u"one");

    TypedArray<Enumeration> colors = factory.createEnumArray({1, 2}, "Color", {"red", "green"});
    colors[0] = Enumeration("green");
    EXPECT(colors[0] == "green" && Enumeration(colors[1]).getName() == "green" &&
           EnumArray(colors).getClassName() == "Color");
    EXPECT(std::count(colors.begin(), colors.end(), Enumeration("green")) == 2);
}

void cells() {
    const ArrayFactory factory;
    const TypedArray<double> inner = factory.createArray<double>({1, 3}, {1, 2, 3});
    TypedArray<Array> cells =
        factory.createArray<Array>({1, 3}, {inner, factory.createCharArray("c"), inner});
    const TypedArray<Array> before = cells;
    const auto held = references(inner);
    {
        const TypedArray<double> out = before[0];
        EXPECT(out == inner && references(inner) == held + 1);
    }
    EXPECT(references(inner) == held);
    cells[0].held()[2] = 30.0;
    Reference<TypedArray<double>> numbers = cells[0];
    numbers[0] = 10.0;
    EXPECT(cells[0].held()[2] == 30.0 && numbers[0] == 10.0 && inner[2] == 3.0 && before[0].held()[0] == 1.0);
    EXPECT(std::accumulate(numbers.begin(), numbers.end(), 0.0) == 42.0);
    const auto counted = numbers.chain()->referenceCount();
    const auto position = numbers.begin(); // keeps the chain
    EXPECT(*position == 10.0 && numbers.chain()->referenceCount() > counted);
    cells[1] = cells[2];
    Reference<Array> last = cells[2];
    last = Array();
    EXPECT(last.isEmpty() && TypedArray<double>(cells[1]) == inner &&
           cells[1].getType() == ArrayType::DOUBLE);
    std::size_t count = 0;
    for (const auto& cell : before)
        count += cell.getNumberOfElements();
    for (auto cell : cells)
        cell = inner;
    EXPECT(count == 7 && cells[2].getNumberOfElements() == 3);
    EXPECT(cells.end() - cells.begin() == 3 && cells.begin()[1].getNumberOfElements() == 3);
    EXPECT(throws<TypeMismatchException>([&] { return CharArray(cells[0]); }));
}

void records() {
    const ArrayFactory factory;
    StructArray records = factory.createStructArray({1, 2}, {"name", "value"});
    records[0]["name"] = factory.createCharArray("first");
    records[1] = {factory.createCharArray("second"), factory.createScalar(2.0)};
    const StructArray before = records;
    records[1]["value"][0] = 20.0;
    EXPECT(double(before[1]["value"][0]) == 2.0 && double(records[1]["value"][0]) == 20.0);
    std::string names;
    for (const VexaFieldIdentifier& field : records.getFieldNames())
        names += field.getString() + ' ';
    EXPECT(names == "name value " && records.getNumberOfFields() == 2);
    std::size_t fields = 0;
    for (const StructElement& record : before)
        for (const auto& value : record)
            fields += value.getNumberOfElements();
    EXPECT(fields == 5 + 0 + 6 + 1 && VexaFieldIdentifier("name") == *before.getFieldNames().begin());
    StructElement copy = records[1];
    records[0] = copy;
    EXPECT(CharArray(records[0]["name"]).toAscii() == "second");
    EXPECT(throws<WrongVectorSizeForStructException>([&] { records[0] = {Array()}; }));
}

void classesAndObjects() {
    const ArrayFactory factory;
    const ClassInfo named = factory.createClassInfo("Named", {"name"});
    const ClassInfo point = factory.createClassInfo("Point", {"x", "y"}, {"unit"}, {named});
    EXPECT(point.getClassIdentifier().getString() == "Point" && point.getNumberOfProperties() == 3);
    EXPECT(point.getNumberOfArrayProperties() == 1 &&
           (*point.getArrayPropertyIDs().begin()).getPropertyName() == "unit");
    std::string properties;
    for (const VexaPropertyIdentifier& id : point.getPropertyIDs())
        properties += id.getClassName() + '.' + id.getPropertyName() + ' ';
    auto second = point.getPropertyIDs().begin();
    auto first = second++;
    EXPECT((*first).getPropertyName() == "x" && (*second).getPropertyName() == "y" && first != second);
    first = second;
    EXPECT(first == second && ++second != first);
    for (const ClassInfo& superclass : point.getSuperclasses())
        properties += superclass.getClassIdentifier().getString();
    EXPECT(properties == "Point.x Point.y Named.name Named");

    ValueObject a = factory.createValueObject(point);
    a["x"] = factory.createScalar(1.0);
    const ValueObject b = a;
    a["x"][0] = 2.0;
    EXPECT(double(TypedArray<double>(b["x"])[0]) == 1.0 && a != b && a.hasProperty("y") &&
           a.numOfProperties() == 3);
    std::size_t filled = 0;
    for (const Property& property : b)
        filled += !property.castToArray().isEmpty() && property.getPropertyName() == "x";
    EXPECT(filled == 1 && b.getClassInfo().getClassIdentifier() == point.getClassIdentifier());

    ValueObjectArray points = factory.createValueObjectArray({1, 2}, point);
    points[0] = a;
    points[1] = b;
    points["unit"] = factory.createCharArray("m");
    EXPECT(ValueObject(points[0]) == a && points[1] == b && !points.isHeterogeneous());
    EXPECT(CharArray(std::as_const(points)["unit"]).toAscii() == "m" && points.numOfArrayProperties() == 1);
    EXPECT(factory.createEnumerationObject("Color", "red").getEnumerationName() == "red");
    for (const auto& each : std::as_const(points))
        filled += ValueObject(each).hasProperty("x");
    EXPECT(filled == 3);
}

void handleObjects() {
    const ArrayFactory factory;
    const ZVMID engine{{1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16}};
    const HandleObjectRef seven = factory.createHandleObjectRef(engine, 7);
    TypedArray<HandleObjectRef> handles = factory.createArray<HandleObjectRef>({1, 2});
    handles[0] = seven;
    handles[1] = factory.createHandleObjectRef(engine, -8);
    EXPECT(HandleObjectRef(handles[1]).getId() == -8 && HandleObjectRef(handles[0]) == seven);
    EXPECT(std::equal(std::begin(engine.bytes), std::end(engine.bytes), seven.getZVMID().bytes));
    Reference<HandleObjectRef> stored = handles[1];
    HandleRef(stored).addReference();
    const auto chain = stored.chain();
    const auto counted = chain->referenceCount();
    chain->retain();
    { const HandleRef adopted(chain.get()); }
    EXPECT(chain->referenceCount() == counted);
    EXPECT(vexa::client::countOfReferences(engine, -8) != 0 &&
           vexa::client::countOfReferences(engine, 7) == 0);
}

void sparse() {
    const ArrayFactory factory;
    SparseArray<double> matrix = factory.createSparseArray<double>(
        {3, 4}, 3, bufferOf<double>(factory, {7, 2, 1}), bufferOf<std::size_t>(factory, {0, 2, 1}),
        bufferOf<std::size_t>(factory, {1, 0, 3}));
    const SparseArray<double> before = matrix;
    for (double& value : matrix)
        value *= 2;
    EXPECT(std::accumulate(matrix.cbegin(), matrix.cend(), 0.0) == 20.0 && *before.begin() == 2.0);
    EXPECT(before.getIndex(before.begin() + 2) == std::pair<std::size_t, std::size_t>(1, 3));
    EXPECT(matrix.getNumberOfNonZeroElements() == 3 && matrix.getRows() == 3 && matrix.getCols() == 4);
    EXPECT(matrix.getJc()[4] == 3 && matrix.getIr()[0] == 2);
    const TypedArray<std::complex<double>> complex = factory.createArray<std::complex<double>>({1, 1});
    EXPECT(complex[0] == std::complex<double>());
}

/// A workspace in the client, called through its interface; its records are objects of the library with
/// members in both.
class OwnWorkspace : public ICustomWorkspace {
public:
    Array getVariable(const char*) const override { return kept_; }
    VariableInfo getVariables(std::vector<const char*>& names) const override {
        auto record = std::make_shared<vexa::data::detail::VariableInfoImplData>(names);
        record->setValue(1, detail::Access::impl(kept_).get());
        record->setStatus(1, IVariableInfo::SET_BY_ENGINE);
        return VariableInfo(record);
    }
    void setVariables(std::vector<const char*>, std::vector<Array> values) override { kept_ = values.back(); }
    void clearVariable(const char*) override { kept_ = Array(); }
    std::vector<std::string> getVariableNames() const override { return {"kept"}; }

private:
    Array kept_;
};

void exchange(ICustomWorkspace& workspace) {
    const ArrayFactory factory;
    workspace.setVariables({"x", "y"}, {Array(), factory.createScalar(5.0)});
    std::vector<const char*> names{"none", "y"};
    const VariableInfo info = workspace.getVariables(names);
    EXPECT(info.getStatus(0) == IVariableInfo::NOT_SET && info.getStatus(1) == IVariableInfo::SET_BY_ENGINE);
    EXPECT(double(TypedArray<double>(info.getValue(1))[0]) == 5.0 && info.getValue(0).isEmpty());
    EXPECT(TypedArray<double>(workspace.getVariable("y"))[0] == 5.0);
    workspace.clearVariable("y");
    EXPECT(workspace.getVariable("y").isEmpty() && workspace.getVariableNames().size() == 1);
}

void workspaces() {
    OwnWorkspace own;
    exchange(own);
    vexa::client::WorkspaceEngine engine;
    InProcessCustomWorkspace workspace = engine.workspace();
    exchange(workspace);
    EXPECT(throws<vexa::client::InvalidVariableNameException>([&] { workspace.getVariable("no name"); }));
    detail::DefaultVariableInfoImpl list({"a", "b"}, {IVariableInfo::NOT_SET, IVariableInfo::SET_BY_ENGINE},
                                         {Array(), Array()});
    list.setValue(0, ArrayFactory().createScalar(1.0));
    EXPECT(list.getNames()[1] == "b" && list.getStatus(1) == IVariableInfo::SET_BY_ENGINE &&
           !list.getValue(0).isEmpty());
    EXPECT(std::string(list.getName(1)) == "b");
}

} // namespace

int main() {
    return report({numbers,
                   positions<MemoryLayout::COLUMN_MAJOR>,
                   positions<MemoryLayout::ROW_MAJOR>,
                   texts,
                   cells,
                   records,
                   classesAndObjects,
                   handleObjects,
                   sparse,
                   workspaces,
                   numberElements<double, MemoryLayout::COLUMN_MAJOR>,
                   numberElements<std::int8_t, MemoryLayout::ROW_MAJOR>,
                   askedElements<MemoryLayout::COLUMN_MAJOR>,
                   askedElements<MemoryLayout::ROW_MAJOR>,
                   untypedElements<MemoryLayout::COLUMN_MAJOR>,
                   untypedElements<MemoryLayout::ROW_MAJOR>,
                   stringElements,
                   cellElements,
                   elementsOfFields,
                   elementsOfIterators});
}
