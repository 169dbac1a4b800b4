// What clients can do, one line an operation. Sweeps run each of them again and again with one step failing.
#include "World.hpp"

#include <vexa/testing/Catalogue.hpp>

#include <algorithm>
#include <functional>
#include <numeric>

namespace failure {

namespace {

template <class T>
auto zeros(ArrayFactory& factory, std::size_t count) {
    auto buffer = factory.createBuffer<T>(count);
    std::fill_n(buffer.get(), count, T());
    return buffer;
}

using Dims = std::vector<std::size_t>;
const Dims square(2, 2);
const Dims row{1, 2};
const std::vector<std::string> twoNames{"a", "b"};
const std::u16string longText(30, u'y');

/// With an equal array that shares nothing with it. Does without the memory that it cannot have.
template <auto part>
void compare(World& w) {
    World other(w.factory);
    use(Array((w.*part)()) == Array((other.*part)()));
}

const Family factory{
    "Factory",
    {
        {"ArrayFactory()", [](World&) { use(ArrayFactory()); }},
        {"createArray(type)", [](World& w) { use(w.factory.createArray(ArrayType::INT8, square)); }},
        {"createArray<double>", [](World& w) { use(w.factory.createArray<double>(square)); }},
        {"createArray<double> large", [](World& w) { use(w.factory.createArray<double>(Dims(2, 200))); }},
        {"createArray<double> list",
         [](World& w) {
             use(w.factory.createArray<double>({1, 2}, {1, 2}));
         }},
        {"createArray<double> iterators",
         [](World& w) {
             const int values[] = {1, 2};
             use(w.factory.createArray<double>({1, 2}, std::begin(values), std::end(values)));
         }},
        {"createArray<String> list",
         [](World& w) {
             use(w.factory.createArray<String>({1, 2}, {longText, std::nullopt}));
         }},
        {"createArray<Array> list",
         [](World& w) {
             use(w.factory.createArray<Array>({1, 1}, {w.numbers()}));
         }},
        {"createScalar<double>", [](World& w) { use(w.factory.createScalar(1.0)); }},
        {"createScalar text", [](World& w) { use(w.factory.createScalar(longText)); }},
        {"createCharArray", [](World& w) { use(w.factory.createCharArray("text")); }},
        {"createCharArray dims", [](World& w) { use(w.factory.createCharArray(square)); }},
        {"createStructArray", [](World& w) { use(w.factory.createStructArray(row, twoNames)); }},
        {"createEnumArray", [](World& w) { use(w.factory.createEnumArray(row, "Sky", twoNames)); }},
        {"createSparseArray",
         [](World& w) {
             auto values = zeros<bool>(w.factory, 1);
             auto rows = zeros<std::size_t>(w.factory, 1);
             auto columns = zeros<std::size_t>(w.factory, 1);
             use(w.factory.createSparseArray<bool>({1, 1}, 1, std::move(values), std::move(rows),
                                                   std::move(columns)));
         }},
        {"createSparseArray of triplets in no order",
         [](World& w) {
             constexpr std::size_t count = 100;
             auto values = zeros<double>(w.factory, count);
             auto rows = zeros<std::size_t>(w.factory, count);
             auto columns = zeros<std::size_t>(w.factory, count);
             for (std::size_t k = 0; k < count; ++k) {
                 rows[k] = k * 37 % count;
                 columns[k] = k * 61 % count;
                 values[k] = static_cast<double>(k % 3);
             }
             use(w.factory.createSparseArray<double>({count, count}, count, std::move(values),
                                                     std::move(rows), std::move(columns)));
         }},
        {"createVEXASparseArray",
         [](World& w) {
             auto values = zeros<double>(w.factory, 1);
             auto rows = zeros<std::size_t>(w.factory, 1);
             auto starts = zeros<std::size_t>(w.factory, 2);
             starts[1] = 1;
             use(w.factory.createVEXASparseArray<double>({1, 1}, 1, std::move(values), std::move(rows),
                                                         std::move(starts)));
         }},
        {"createClassInfo",
         [](World& w) {
             use(w.factory.createClassInfo("Line", {"a", "b"}, {"c"}, {w.point()}));
         }},
        {"createValueObject", [](World& w) { use(w.factory.createValueObject(w.point())); }},
        {"createValueObjectScalar", [](World& w) { use(w.factory.createValueObjectScalar(w.object())); }},
        {"createValueObjectArray",
         [](World& w) { use(w.factory.createValueObjectArray(square, w.point())); }},
        {"createHandleObjectRef", [](World& w) { use(w.factory.createHandleObjectRef(ZVMID(), 1)); }},
        {"createEnumerationObject", [](World& w) { use(w.factory.createEnumerationObject("Sky", "sun")); }},
        {"createBuffer", [](World& w) { use(w.factory.createBuffer<double>(3)); }},
        {"createBuffer(type)", [](World& w) { use(w.factory.createBuffer(ArrayType::INT16, 3)); }},
        {"createArrayFromBuffer",
         [](World& w) { use(w.factory.createArrayFromBuffer<double>(row, zeros<double>(w.factory, 2))); }},
    }};

const Family arrays{
    "Arrays",
    {
        {"Array()", [](World&) { use(Array()); }},
        {"equality", compare<&World::numbers>, true},
        {"copy", [](World& w) { use(Array(w.numbers())); }},
        {"to a typed array", [](World& w) { use(TypedArray<double>(Array(w.numbers()))); }},
        {"read a[i][j]", [](World& w) { use(double(std::as_const(w.numbers())[1][2])); }},
        {"read through a writable handle", [](World& w) { use(double(w.numbers()[1][2])); }},
        {"write a[i][j]", [](World& w) { w.numbers()[1][2] = 7.0; }},
        {"write a large array over a buffer of rows",
         [](World& w) {
             auto rows = w.factory.createArrayFromBuffer<double>({2, 500}, zeros<double>(w.factory, 1000),
                                                                 vexa::data::MemoryLayout::ROW_MAJOR);
             const auto other = rows;
             rows[1][1] = 7.0;
         }},
        {"write a row's element", [](World& w) { w.alone()[1] = 7.0; }},
        {"update", [](World& w) { w.numbers()[0][0] += 1.0; }},
        {"read untyped", [](World& w) { use(double(Array(w.numbers())[1][2])); }},
        {"write untyped",
         [](World& w) {
             Array untyped = w.numbers();
             untyped[1][2] = 7.0;
         }},
        {"copy an element untyped",
         [](World& w) {
             Array untyped = w.numbers();
             untyped[1][2] = untyped[0][0];
         }},
        {"four indices",
         [](World& w) {
             auto deep = w.factory.createArray<double>({1, 1, 1, 1});
             deep[0][0][0][0] = 1.0;
         }},
        {"Reference<double>",
         [](World& w) {
             Reference<double> element = w.numbers()[1][2];
             element = 7.0;
         }},
        {"walk", [](World& w) { use(std::accumulate(w.numbers().cbegin(), w.numbers().cend(), 0.0)); }},
        {"walk for writing", [](World& w) { *w.numbers().begin() = 7.0; }},
        {"getReadOnlyElements", [](World& w) { use(*getReadOnlyElements<double>(w.numbers()).begin()); }},
        {"getWritableElements",
         [](World& w) {
             Array untyped = w.numbers();
             *getWritableElements<double>(untyped).begin() = 7.0;
         }},
        {"getBufferPtr", [](World& w) { use(getBufferPtr(w.numbers())[0]); }},
        {"getBufferPtr untyped", [](World& w) { use(getBufferPtr(Array(w.numbers()))); }},
        {"readOnlyView", [](World& w) { use(readOnlyView(w.numbers())(1, 2)); }},
        {"writableView", [](World& w) { writableView(w.numbers())(1, 2) = 7.0; }},
        {"release what is shared", [](World& w) { use(TypedArray<double>(w.numbers()).release()); }},
        {"release what is not", [](World& w) { use(w.factory.createArray<double>(square).release()); }},
        {"queries",
         [](World& w) {
             use(w.numbers().getType());
             use(w.numbers().getMemoryLayout());
             use(w.numbers().getNumberOfElements());
             use(w.numbers().isEmpty());
             use(isSparse(w.numbers()));
         }},
        {"toText", [](World& w) { use(toText(w.numbers())); }},
    }};

const Family texts{
    "Texts",
    {
        {"toUTF16", [](World& w) { use(w.characters().toUTF16()); }},
        {"toAscii", [](World& w) { use(w.characters().toAscii()); }},
        {"toUTF16 of any array", [](World& w) { use(toUTF16(Array(w.characters()))); }},
        // Exceptions are made without memory too.
        {"toUTF16 of a string", [](World& w) { use(toUTF16(Array(w.factory.createScalar(longText)))); },
         true},
        {"toUTF16 of no text",
         [](World& w) {
             try {
                 use(toUTF16(Array(w.strings())));
             } catch (const InvalidArrayTypeException&) {}
         },
         true},
        {"write a unit", [](World& w) { w.characters()[0] = u'x'; }},
        {"read a string", [](World& w) { use(String(std::as_const(w.strings())[0].operator String())); }},
        {"write a string", [](World& w) { w.strings()[1] = longText; }},
        {"write a narrow string", [](World& w) { w.strings()[1] = "a text that is long enough"; }},
        {"write an element", [](World& w) { w.strings()[1] = w.strings()[0]; }},
        {"make it missing", [](World& w) { w.strings()[0] = std::nullopt; }},
        {"equality of strings", compare<&World::strings>, true},
        {"equality of members", compare<&World::members>, true},
        {"compare with text", [](World& w) { use(w.strings()[0] == "x"); }, true},
        {"compare elements", [](World& w) { use(w.strings()[0] == w.strings()[1]); }, true},
        {"has_value", [](World& w) { use(w.strings()[1].has_value()); }},
        {"string toAscii", [](World& w) { use(w.strings()[0].toAscii()); }},
        {"Reference<String>",
         [](World& w) {
             Reference<String> element = w.strings()[1];
             element = longText;
         }},
        {"walk strings",
         [](World& w) {
             for (const auto& element : std::as_const(w.strings())) {
                 use(element.has_value());
             }
         }},
        {"walk strings for writing",
         [](World& w) {
             auto element = w.strings().begin();
             *element = longText;
         }},
        {"read a member", [](World& w) { use(w.members()[1].getName()); }},
        {"write a member", [](World& w) { w.members()[1] = "sun"; }},
        {"learn a member",
         [](World& w) {
             auto learning = w.factory.createEnumArray({1, 1}, "Sky");
             learning[0] = "a name that needs a block of its own";
         }},
        {"write a member's element", [](World& w) { w.members()[1] = w.members()[0]; }},
        {"walk members",
         [](World& w) {
             for (const auto& element : std::as_const(w.members())) {
                 use(element.getName());
             }
         }},
        {"toText", [](World& w) { use(toText(w.strings()) + toText(w.members()) + toText(w.characters())); }},
    }};

const Family cells{
    "Cells",
    {
        {"equality", compare<&World::cells>, true},
        {"read", [](World& w) { use(Array(std::as_const(w.cells())[0])); }},
        {"read typed", [](World& w) { use(TypedArray<double>(w.cells()[0])); }},
        {"read a scalar inside", [](World& w) { use(Reference<Array>(w.cells()[1]).getType()); }},
        {"write", [](World& w) { w.cells()[0] = w.characters(); }},
        {"write itself", [](World& w) { w.cells()[0] = w.cells(); }},
        {"copy a cell", [](World& w) { w.cells()[0] = w.cells()[1]; }},
        {"write inside",
         [](World& w) {
             Reference<TypedArray<double>> held = w.cells()[0];
             held[1][2] = 7.0;
         }},
        {"write deeper inside",
         [](World& w) {
             Reference<Array> outer = w.cells()[1];
             Reference<Array> inner = outer[0];
             inner[1][2] = 7.0;
         }},
        {"write through two indices", [](World& w) { w.cells()[0][1] = w.alone(); }},
        {"queries",
         [](World& w) {
             const Reference<Array> held = w.cells()[0];
             use(held.getType());
             use(held.getDimensions());
             use(held.getNumberOfElements());
             use(held.isEmpty());
             use(held.getArrayID());
         }},
        {"walk",
         [](World& w) {
             for (const auto& cell : std::as_const(w.cells())) {
                 use(Array(cell));
             }
         }},
        {"walk for writing",
         [](World& w) {
             auto cell = w.cells().begin();
             *cell = w.characters();
         }},
        {"walk inside",
         [](World& w) {
             Reference<TypedArray<double>> held = w.cells()[0];
             *held.begin() = 7.0;
         }},
        {"toText", [](World& w) { use(toText(w.cells())); }},
    }};

const Family records{
    "Records",
    {
        {"equality", compare<&World::records>, true},
        {"read a field", [](World& w) { use(Array(std::as_const(w.records())[0]["inner"])); }},
        {"read inside a field", [](World& w) { use(double(std::as_const(w.records())[1]["size"][1][2])); }},
        {"write a field", [](World& w) { w.records()[0]["size"] = w.characters(); }},
        {"write itself", [](World& w) { w.records()[0]["size"] = w.records(); }},
        {"write inside a field", [](World& w) { w.records()[1]["size"][1][2] = 7.0; }},
        {"write a field of a field", [](World& w) { w.records()[0]["inner"][0]["deep"] = w.characters(); }},
        {"write inside a field of a field", [](World& w) { w.records()[0]["inner"][0]["deep"][1][2] = 7.0; }},
        {"replace a record", [](World& w) { w.records()[0] = std::vector<Array>(2, w.numbers()); }},
        {"copy a record", [](World& w) { w.records()[0] = w.records()[1]; }},
        {"getFieldNames",
         [](World& w) {
             for (const auto& name : w.records().getFieldNames()) {
                 use(name.getString());
             }
         }},
        {"getNumberOfFields", [](World& w) { use(w.records().getNumberOfFields()); }},
        {"walk",
         [](World& w) {
             for (const auto& record : std::as_const(w.records())) {
                 for (const auto& value : record) {
                     use(Array(value));
                 }
             }
         }},
        {"walk for writing",
         [](World& w) {
             auto record = w.records().begin();
             (*record)["size"] = w.characters();
         }},
        {"walk the values for writing",
         [](World& w) {
             auto record = w.records()[0];
             auto value = record.begin();
             *value = w.characters();
         }},
        {"Reference<StructElement>",
         [](World& w) {
             Reference<StructElement> record = w.records()[1];
             record["size"] = w.characters();
         }},
        {"toText", [](World& w) { use(toText(w.records())); }},
    }};

const Family sparse{
    "Sparse",
    {
        {"equality", compare<&World::sparse>, true},
        {"getNumberOfNonZeroElements", [](World& w) { use(w.sparse().getNumberOfNonZeroElements()); }},
        {"compressed columns",
         [](World& w) {
             use(w.sparse().getIr()[0] + w.sparse().getJc()[0]);
             use(w.sparse().getRows() + w.sparse().getCols());
         }},
        {"to a sparse array", [](World& w) { use(SparseArray<double>(Array(w.sparse()))); }},
        {"toText", [](World& w) { use(toText(w.sparse())); }},
    }};

const Family objects{
    "Objects",
    {
        {"read a property", [](World& w) { use(std::as_const(w.object())["x"]); }},
        {"write a property", [](World& w) { w.object()["x"] = w.characters(); }},
        {"write inside a property", [](World& w) { w.object()["x"][1][2] = 7.0; }},
        {"write an array that holds itself",
         [](World& w) {
             auto holder = w.factory.createArray<Array>({1, 1});
             holder[0] = w.objects();
             w.object()["x"] = holder;
         }},
        {"hasProperty", [](World& w) { use(w.object().hasProperty("x")); }},
        {"numOfProperties", [](World& w) { use(w.object().numOfProperties()); }},
        {"getExternalRepresentationPropertyNames",
         [](World& w) { use(w.object().getExternalRepresentationPropertyNames()); }},
        {"walk the properties",
         [](World& w) {
             for (auto property = w.object().cbegin(); property != w.object().cend(); ++property) {
                 use((*property).getPropertyName());
                 use((*property).castToArray());
             }
         }},
        {"walk the properties for writing",
         [](World& w) {
             auto property = w.object().begin();
             *property = w.characters();
         }},
        {"getClassInfo", [](World& w) { use(w.object().getClassInfo()); }},
        {"class",
         [](World& w) {
             use(w.point().getClassIdentifier());
             for (const auto& id : w.point().getPropertyIDs()) {
                 use(id.getPropertyName());
             }
             for (const auto& id : w.point().getArrayPropertyIDs()) {
                 use(id.getClassName());
             }
             use(w.point().getNumberOfProperties() + w.point().getNumberOfArrayProperties());
         }},
        {"superclasses",
         [](World& w) {
             const ClassInfo derived = w.factory.createClassInfo("Derived", {"z"}, {}, {w.point()});
             for (const auto& super : derived.getSuperclasses()) {
                 use(super.getClassIdentifier());
             }
         }},
        {"equality", [](World& w) { use(w.object() == ValueObject(w.objects()[0])); }},
        {"equality of two",
         [](World& w) {
             ValueObject other = w.factory.createValueObject(w.point());
             other["x"] = w.factory.createArray<double>({2, 3}, {1, 2, 3, 4, 5, 6});
             use(w.object() == other);
         }},
        {"equality of arrays of objects", compare<&World::objects>, true},
        {"equality of handles", compare<&World::handles>, true},
        {"read an object", [](World& w) { use(ValueObject(std::as_const(w.objects())[0])); }},
        {"write an object", [](World& w) { w.objects()[1] = w.object(); }},
        {"copy an object", [](World& w) { w.objects()[1] = w.objects()[0]; }},
        {"property of an element", [](World& w) { use(std::as_const(w.objects())[0]["x"]); }},
        {"array property", [](World& w) { w.objects()["unit"] = w.characters(); }},
        {"read an array property", [](World& w) { use(std::as_const(w.objects())["unit"]); }},
        {"walk the array properties",
         [](World& w) {
             for (auto property = w.objects().cbeginArrayProp(); property != w.objects().cendArrayProp();
                  ++property) {
                 use((*property).castToArray());
             }
         }},
        {"queries of an object array",
         [](World& w) {
             use(w.objects().isHeterogeneous());
             use(w.objects().hasArrayProperty("unit"));
             use(w.objects().numOfArrayProperties());
             use(w.objects().isExternalDimensionsSet());
             use(w.objects().getExternalDimensions());
             use(w.objects().getExternalRepresentationArrayPropertyNames());
             use(w.objects().getClassInfo());
         }},
        {"walk objects",
         [](World& w) {
             for (const auto& element : std::as_const(w.objects())) {
                 use(ValueObject(element));
             }
         }},
        {"read a handle", [](World& w) { use(HandleObjectRef(std::as_const(w.handles())[0]).getId()); }},
        {"write a handle", [](World& w) { w.handles()[1] = w.factory.createHandleObjectRef(ZVMID(), 8); }},
        {"identifiers",
         [](World& w) {
             use(VexaClassIdentifier("Point"));
             use(VexaFieldIdentifier("x"));
             use(VexaPropertyIdentifier(w.point().getClassIdentifier(), "a property name of some length"));
         }},
        {"toText", [](World& w) { use(toText(w.objects()) + toText(w.handles())); }},
    }};

const Family workspaces{
    "Workspaces",
    {
        {"getVariable", [](World& w) { use(w.engine().workspace().getVariable("a")); }},
        {"getVariables",
         [](World& w) {
             std::vector<const char*> names{"a", "b"};
             const auto workspace = w.engine().workspace();
             const VariableInfo found = workspace.getVariables(names);
             use(found.getValue(0));
         }},
        {"setVariables",
         [](World& w) {
             w.engine().workspace().setVariables({"b", "a", "name_that_needs_a_block_of_its_own"},
                                                 {w.characters(), w.characters(), Array()});
         }},
        {"clearVariable",
         [](World& w) { w.engine().workspace().clearVariable("a_variable_that_would_need_a_block"); }},
        {"getVariableNames", [](World& w) { use(w.engine().workspace().getVariableNames()); }},
        {"DefaultVariableInfoImpl",
         [](World& w) {
             const detail::DefaultVariableInfoImpl info({"a"}, {IVariableInfo::NOT_SET}, {w.numbers()});
             use(info.getValue(0));
         }},
    }};

/// What the catalogue does with each kind.
Family kinds() {
    Family family{"Kinds", {}};
    for (const vexa::testing::Kind& kind : vexa::testing::catalogue()) {
        const bool walksEnd = kind.name.starts_with("Sparse"); // the process
        family.operations.push_back({kind.name, [&kind, walksEnd](World& w) {
                                         Array array = kind.make(w.factory, 1);
                                         const Array partner = array;
                                         if (!walksEnd) {
                                             kind.change(w.factory, array, 2);
                                         }
                                     }});
    }
    return family;
}

} // namespace

const std::vector<Family>& families() {
    static const std::vector<Family> all{factory, arrays,  texts,        cells,   records,
                                         sparse,  objects, cFunctions(), kinds(), workspaces};
    return all;
}

} // namespace failure
