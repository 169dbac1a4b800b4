// What the storms rage over.
#include "threads/Storm.hpp"

#include <algorithm>
#include <string>

namespace storm {

namespace {

constexpr std::size_t elements = 16;

ArrayFactory& factory() {
    static ArrayFactory shared;
    return shared;
}

TypedArray<double> numbersOf(double stamp) {
    const std::vector<double> values(elements, stamp);
    return factory().createArray<double>({elements, 1}, values.begin(), values.end());
}
bool areNumbers(const Array& array, double stamp) {
    const TypedArray<double> numbers = array;
    return numbers.getNumberOfElements() == elements &&
           std::all_of(numbers.begin(), numbers.end(), [&](double value) { return value == stamp; });
}

Array makeNumbers(double stamp) { return numbersOf(stamp); }
/// Through indices.
void writeNumbers(Array& array, double stamp) {
    for (std::size_t k = 0; k < elements; ++k) {
        array[k] = stamp;
    }
}
/// Through iterators, the array having moved into a typed handle.
void fillNumbers(Array& array, double stamp) {
    TypedArray<double> numbers(std::move(array));
    std::fill(numbers.begin(), numbers.end(), stamp);
    array = std::move(numbers);
}

/// Every second text is too long to be stored in its element.
std::u16string textOf(double stamp, std::size_t k) {
    std::u16string text(k % 2 == 0 ? 2 : 20, u'a');
    text[0] = static_cast<char16_t>(stamp);
    return text;
}
void writeStrings(Array& array, double stamp) {
    TypedArray<String> strings(std::move(array));
    std::size_t k = 0;
    for (auto element : strings) {
        element = textOf(stamp, k++);
    }
    array = std::move(strings);
}
Array makeStrings(double stamp) {
    Array array = factory().createArray<String>({4, 1});
    writeStrings(array, stamp);
    return array;
}
bool areStrings(const Array& array, double stamp) {
    const TypedArray<String> strings = array;
    std::size_t k = 0;
    return std::all_of(strings.begin(), strings.end(),
                       [&](const auto& element) { return element == textOf(stamp, k++); });
}

std::string memberOf(double stamp) { return std::string(1 + static_cast<std::size_t>(stamp) % 50, 'm'); }
void writeEnums(Array& array, double stamp) {
    EnumArray members(std::move(array));
    members[0] = memberOf(stamp);
    members[1] = memberOf(stamp + 1);
    array = std::move(members);
}
Array makeEnums(double stamp) {
    Array array = factory().createEnumArray({2, 1}, "Member");
    writeEnums(array, stamp);
    return array;
}
bool areEnums(const Array& array, double stamp) {
    const EnumArray members = array;
    return members[0] == memberOf(stamp) && members[1] == memberOf(stamp + 1);
}

/// Numbers, and a cell with numbers and with text that nobody changes.
Array makeCells(double stamp) {
    auto inner = factory().createArray<Array>({1, 2}, {numbersOf(stamp), factory().createCharArray("kept")});
    return factory().createArray<Array>({2, 1}, {numbersOf(stamp), inner});
}
void writeCells(Array& array, double stamp) {
    TypedArray<Array> cells(std::move(array));
    Reference<TypedArray<Array>> inner = cells[1];
    Reference<TypedArray<double>> deep = inner[0];
    for (double& value : deep) {
        value = stamp;
    }
    for (std::size_t k = 0; k < elements; ++k) {
        cells[0].held()[k] = stamp;
    }
    array = std::move(cells);
}
bool areCells(const Array& array, double stamp) {
    const TypedArray<Array> cells = array;
    const TypedArray<Array> inner = cells[1];
    const CharArray text = inner[1];
    return areNumbers(cells[0], stamp) && areNumbers(inner[0], stamp) && text.toAscii() == "kept";
}

/// Fields with numbers and with text.
Array makeStructs(double stamp) {
    StructArray records = factory().createStructArray({1, 2}, {"numbers", "text"});
    const Array numbers = numbersOf(stamp);
    const Array text = makeStrings(stamp);
    for (auto record : records) {
        record = {numbers, text}; // both records share them
    }
    return records;
}
void writeStructs(Array& array, double stamp) {
    StructArray records(std::move(array));
    for (std::size_t k = 0; k < 2; ++k) {
        Reference<TypedArray<double>> numbers = records[k]["numbers"];
        std::fill(numbers.begin(), numbers.end(), stamp);
        Reference<TypedArray<String>> strings = records[k]["text"];
        std::size_t n = 0;
        for (auto element : strings) {
            element = textOf(stamp, n++);
        }
    }
    array = std::move(records);
}
bool areStructs(const Array& array, double stamp) {
    const StructArray records = array;
    return std::all_of(records.begin(), records.end(), [&](const auto& record) {
        return areNumbers(record["numbers"], stamp) && areStrings(record["text"], stamp);
    });
}

Array makeSparse(double stamp) {
    auto values = factory().createBuffer<double>(2);
    auto rows = factory().createBuffer<std::size_t>(2);
    auto columns = factory().createBuffer<std::size_t>(2);
    std::fill_n(values.get(), 2, stamp + 1); // never zero
    rows[0] = columns[0] = 0;
    rows[1] = columns[1] = 2;
    return factory().createSparseArray<double>({3, 3}, 2, std::move(values), std::move(rows),
                                               std::move(columns));
}
void writeSparse(Array& array, double stamp) {
    SparseArray<double> matrix(std::move(array));
    std::fill(matrix.begin(), matrix.end(), stamp + 1);
    array = std::move(matrix);
}
bool isSparseWith(const Array& array, double stamp) {
    const SparseArray<double> matrix = array;
    bool right = matrix.getNumberOfNonZeroElements() == 2;
    for (auto it = matrix.begin(); it != matrix.end(); ++it) {
        const auto [row, column] = matrix.getIndex(it); // remembers the last column, for all readers
        right = right && row == column && *it == stamp + 1;
    }
    return right;
}

/// Two elements with one object, which has numbers.
Array makeObjects(double stamp) {
    static const ClassInfo pointClass = factory().createClassInfo("Point", {"x", "y"});
    ValueObject point = factory().createValueObject(pointClass);
    point["x"] = numbersOf(stamp);
    point["y"] = numbersOf(stamp);
    ValueObjectArray points = factory().createValueObjectArray({1, 2}, pointClass);
    points[0] = point;
    points[1] = point;
    return points;
}
void writeObjects(Array& array, double stamp) {
    ValueObjectArray points(std::move(array));
    for (std::size_t k = 0; k < 2; ++k) {
        ValueObject point = points[k];
        point["x"] = numbersOf(stamp);
        Reference<TypedArray<double>> numbers = point["y"];
        std::fill(numbers.begin(), numbers.end(), stamp);
        points[k] = point;
    }
    array = std::move(points);
}
bool areObjects(const Array& array, double stamp) {
    const ValueObjectArray points = array;
    const ValueObject first = points[0];
    const ValueObject second = points[1];
    return areNumbers(first["x"], stamp) && areNumbers(first["y"], stamp) && areNumbers(second["x"], stamp) &&
           areNumbers(second["y"], stamp);
}

} // namespace

const std::vector<Kind> kinds{
    {"NumbersByIndex", makeNumbers, writeNumbers, areNumbers},
    {"NumbersByIterator", makeNumbers, fillNumbers, areNumbers},
    {"Strings", makeStrings, writeStrings, areStrings},
    {"Enumerations", makeEnums, writeEnums, areEnums},
    {"NestedCells", makeCells, writeCells, areCells},
    {"Structs", makeStructs, writeStructs, areStructs},
    {"Sparse", makeSparse, writeSparse, isSparseWith},
    {"Objects", makeObjects, writeObjects, areObjects},
};

} // namespace storm
