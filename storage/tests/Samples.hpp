// Arrays of every kind and their edges, for all tests of saving and loading.
#pragma once

#include <foundation/vexadata/Layout.hpp>
#include <foundation/vexadata/VexaData.hpp>
#include <vexa/client/Objects.hpp>
#include <vexa/storage/Storage.hpp>
#include <vexa/testing/Catalogue.hpp>

#include <cmath>
#include <complex>
#include <cstdint>
#include <limits>
#include <numeric>
#include <string>
#include <vector>

namespace storage_tests {

using namespace foundation::vexadata;
using vexa::data::MemoryLayout;
using vexa::storage::Variable;

template <class T>
TypedArray<T> counting(std::vector<std::size_t> dims, MemoryLayout layout = MemoryLayout::COLUMN_MAJOR) {
    const std::size_t count = foundation::vexadata::detail::elementsOf(dims);
    std::vector<T> values(count);
    for (std::size_t k = 0; k < count; ++k) {
        values[k] = static_cast<T>(static_cast<std::int16_t>(k + 1));
    }
    return ArrayFactory().createArray<T>(std::move(dims), values.begin(), values.end(), layout);
}

/// Two classes over a common one, one of which redefines a property; arrays with a property; objects that share a value.
inline ValueObjectArray shapes() {
    ArrayFactory factory;
    const ClassInfo base = factory.createClassInfo("geo.Shape", {"name", "tags"}, {"unit"});
    const ClassInfo drawn = factory.createClassInfo("Drawn", {"name", "colour"}, {}, {base});
    ValueObjectArray array = factory.createValueObjectArray({2, 2}, drawn);
    ValueObject shape = factory.createValueObject(drawn);
    shape["name"] = factory.createCharArray("own");
    shape[VexaPropertyIdentifier("geo.Shape", "name")] = factory.createCharArray("inherited");
    shape["tags"] =
        factory.createArray<Array>({1, 2}, {counting<float>({2, 2}), factory.createCharArray("a")});
    array[0][0] = shape;
    array[1][1] = shape;
    array["unit"] = factory.createCharArray("mm");
    vexa::client::setExternalDimensions(array, {4, 1});
    return array;
}

/// Of one class, in an array that takes any.
inline Array anyObjects() {
    ArrayFactory factory;
    Array array = factory.createArray(ArrayType::OBJECT, {1, 1});
    TypedArray<ValueObject> objects(std::move(array));
    objects[0] = factory.createValueObject(factory.createClassInfo("Point", {"x"}));
    return objects;
}

inline Array mixedObjects() {
    ArrayFactory factory;
    TypedArray<ValueObject> array = factory.createArray<ValueObject>({1, 3});
    ValueObject point = factory.createValueObject(factory.createClassInfo("Point", {"x"}));
    point["x"] = counting<double>({3, 1});
    array[0] = point;
    array[2] = factory.createEnumerationObject("Sky", "blue");
    return array;
}

inline Array sparseWith(std::size_t count) {
    ArrayFactory factory;
    auto values = factory.createBuffer<double>(count);
    auto rows = factory.createBuffer<std::size_t>(count);
    auto columns = factory.createBuffer<std::size_t>(count);
    for (std::size_t k = 0; k < count; ++k) {
        values[k] = static_cast<double>(k) + 0.5;
        rows[k] = k * 7 % 1000;
        columns[k] = k;
    }
    return factory.createSparseArray<double>({1000, count}, count, std::move(values), std::move(rows),
                                             std::move(columns));
}

inline Array texts() {
    TypedArray<String> strings = ArrayFactory().createArray<String>({2, 3});
    strings[0][0] = u"plain";
    strings[1][0] = u"";
    strings[0][1] = std::u16string(u"Gr\u00fc\u00dfe \U0001F600\0x", 11);
    strings[1][1] = std::u16string(1, char16_t(0xD800)); // half of a pair
    strings[0][2] = std::u16string(300, u'l');
    return strings; // the last one is missing
}

inline std::vector<Variable> scalars() {
    ArrayFactory factory;
    const double nan = std::nan("0x123");
    return {{"real", factory.createScalar(-0.0)},
            {"not a number", factory.createScalar(nan)},
            {"infinite", factory.createScalar(-std::numeric_limits<float>::infinity())},
            {"true", factory.createScalar(true)},
            {"least", factory.createScalar(std::numeric_limits<std::int64_t>::min())},
            {"most", factory.createScalar(std::numeric_limits<std::uint64_t>::max())},
            {"small", factory.createScalar(std::int8_t(-7))},
            {"complex", factory.createScalar(std::complex<double>(1, -2))},
            {"row-major scalar", counting<double>({1, 1}, MemoryLayout::ROW_MAJOR)}};
}

/// Shapes, layouts and what holds others.
inline std::vector<Variable> shaped() {
    ArrayFactory factory;
    const Array shared = counting<std::int32_t>({2, 2});
    StructArray records = factory.createStructArray({2, 1}, {"a", "b"});
    records[0] = {shared, texts()};
    records[1] = {Array(), shared};
    return {{"large", counting<double>({200, 30})},
            {"large rows", counting<std::int16_t>({100, 30, 2}, MemoryLayout::ROW_MAJOR)},
            {"large complex", counting<std::complex<float>>({40, 30})},
            {"logical rows", counting<bool>({2, 3}, MemoryLayout::ROW_MAJOR)},
            {"nothing", counting<std::uint8_t>({0, 5, 2})},
            {"empty", Array()},
            {"text", factory.createCharArray(u"\u00fcber")},
            {"no text", factory.createCharArray("")},
            {"half a pair", factory.createCharArray(std::u16string(2, char16_t(0xDC00)))},
            {"letters", factory.createCharArray({2, 3})},
            {"letters in rows", counting<char16_t>({1, 4}, MemoryLayout::ROW_MAJOR)},
            {"texts", texts()},
            {"no cells", factory.createArray<Array>({0, 3})},
            {"cells", factory.createArray<Array>({1, 3}, {shared, shared, records})},
            {"records", records},
            {"records without fields", factory.createStructArray({3, 1}, {})},
            {"unset members", factory.createEnumArray({2, 2}, "Colour")},
            {"members", factory.createEnumArray({1, 3}, "Colour", {"red", "", "red"})},
            {"sparse", sparseWith(800)},
            {"no sparse", factory.createArray(ArrayType::SPARSE_LOGICAL, {4, 0})},
            {"shapes", shapes()},
            {"mixed objects", mixedObjects()},
            {"any objects", anyObjects()},
            {"no objects", factory.createArray(ArrayType::OBJECT, {0, 0})}};
}

/// All of them, and one of each kind of the catalogue but handle objects.
inline std::vector<Variable> samples() {
    ArrayFactory factory;
    std::vector<Variable> all = scalars();
    for (Variable& variable : shaped()) {
        all.push_back(std::move(variable));
    }
    for (const vexa::testing::Kind& kind : vexa::testing::catalogue()) {
        if (kind.name != "Handles") {
            all.push_back({"kind " + kind.name, kind.make(factory, 42)});
        }
    }
    return all;
}

inline std::vector<std::byte> bytesOf(const Array& array) { return vexa::storage::encode(array); }
inline Array copyOf(const Array& array) {
    const std::vector<std::byte> bytes = bytesOf(array);
    return vexa::storage::decode(bytes.data(), bytes.size());
}
/// Equal as arrays; where missing strings and NaN make that impossible, copies that nobody shares are written in
/// the same bytes.
inline bool isSame(const Array& a, const Array& b) {
    const Array first = copyOf(a);
    return a.getType() == b.getType() && a.getDimensions() == b.getDimensions() &&
           a.getMemoryLayout() == b.getMemoryLayout() && (a == b || !(first == copyOf(a))) &&
           bytesOf(first) == bytesOf(copyOf(b));
}

} // namespace storage_tests
