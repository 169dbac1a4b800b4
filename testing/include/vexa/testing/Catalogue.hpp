// Arrays of every kind, each filled according to a number, for tests that want them all: under threads, under
// failures, printed.
#pragma once

#include <foundation/vexadata/VexaData.hpp>

#include <algorithm>
#include <cctype>
#include <complex>
#include <cstddef>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

namespace vexa::testing {

/// One kind of array. A stamp is a number from 0 to 99999; arrays that are made with equal stamps hold the
/// same. The functions throw what the operations of the library throw.
struct Kind {
    /// The handles that the functions take.
    using Array = foundation::vexadata::Array;
    using ArrayFactory = foundation::vexadata::ArrayFactory;

    std::string name; ///< of letters and figures
    /// An array with what the stamp says.
    Array (*make)(ArrayFactory& factory, double stamp);
    /// Changes the array in place to what another stamp gives, through element handles, references or
    /// iterators.
    void (*change)(ArrayFactory& factory, Array& array, double stamp);
    /// Whether the array is what `make` or `change` gives for the stamp.
    bool (*holds)(const Array& array, double stamp);
};

namespace kinds {

using namespace foundation::vexadata;

inline constexpr std::size_t elements = 16;

template <class T>
T valueOf(double stamp) {
    const int number = static_cast<int>(stamp) % 100;
    if constexpr (std::is_same_v<T, bool>) {
        return number % 2 == 1;
    } else if constexpr (foundation::vexadata::detail::isComplexElement<T>) {
        using Part = typename T::value_type;
        return T(valueOf<Part>(stamp), valueOf<Part>(stamp + 1));
    } else {
        return static_cast<T>(number);
    }
}

template <class T>
Array makeNumbers(ArrayFactory& factory, double stamp) {
    TypedArray<T> numbers = factory.createArray<T>({elements, 1});
    std::fill(numbers.begin(), numbers.end(), valueOf<T>(stamp));
    return numbers;
}
template <class T>
bool areNumbers(const Array& array, double stamp) {
    const TypedArray<T> numbers = array;
    return numbers.getNumberOfElements() == elements &&
           std::all_of(numbers.begin(), numbers.end(),
                       [&](const T& value) { return value == valueOf<T>(stamp); });
}
/// Through iterators, the array having moved into a typed handle.
template <class T>
void fillNumbers(ArrayFactory&, Array& array, double stamp) {
    TypedArray<T> numbers(std::move(array));
    std::fill(numbers.begin(), numbers.end(), valueOf<T>(stamp));
    array = std::move(numbers);
}
/// Through indices.
inline void writeNumbers(ArrayFactory&, Array& array, double stamp) {
    for (std::size_t k = 0; k < elements; ++k) {
        array[k] = valueOf<double>(stamp);
    }
}

/// Every second text is too long to be stored in its element.
inline std::u16string textOf(double stamp, std::size_t k) {
    std::u16string text(k % 2 == 0 ? 2 : 20, u'a');
    text[0] = static_cast<char16_t>(stamp);
    return text;
}
inline void writeStrings(ArrayFactory&, Array& array, double stamp) {
    TypedArray<String> strings(std::move(array));
    std::size_t k = 0;
    for (auto element : strings) {
        element = textOf(stamp, k++);
    }
    array = std::move(strings);
}
inline Array makeStrings(ArrayFactory& factory, double stamp) {
    Array array = factory.createArray<String>({4, 1});
    writeStrings(factory, array, stamp);
    return array;
}
inline bool areStrings(const Array& array, double stamp) {
    const TypedArray<String> strings = array;
    std::size_t k = 0;
    return std::all_of(strings.begin(), strings.end(),
                       [&](const auto& element) { return element == textOf(stamp, k++); });
}

inline std::string memberOf(double stamp) {
    return std::string(1 + static_cast<std::size_t>(stamp) % 50, 'm');
}
inline void writeEnums(ArrayFactory&, Array& array, double stamp) {
    EnumArray members(std::move(array));
    members[0] = memberOf(stamp);
    members[1] = memberOf(stamp + 1);
    array = std::move(members);
}
inline Array makeEnums(ArrayFactory& factory, double stamp) {
    Array array = factory.createEnumArray({2, 1}, "Member");
    writeEnums(factory, array, stamp);
    return array;
}
inline bool areEnums(const Array& array, double stamp) {
    const EnumArray members = array;
    return members[0] == memberOf(stamp) && members[1] == memberOf(stamp + 1);
}

/// Numbers, and a cell with numbers and with text that nobody changes.
inline Array makeCells(ArrayFactory& factory, double stamp) {
    auto inner = factory.createArray<Array>(
        {1, 2}, {makeNumbers<double>(factory, stamp), factory.createCharArray("kept")});
    return factory.createArray<Array>({2, 1}, {makeNumbers<double>(factory, stamp), inner});
}
inline void writeCells(ArrayFactory&, Array& array, double stamp) {
    TypedArray<Array> cells(std::move(array));
    Reference<TypedArray<Array>> inner = cells[1];
    Reference<TypedArray<double>> deep = inner[0];
    for (double& value : deep) {
        value = valueOf<double>(stamp);
    }
    for (std::size_t k = 0; k < elements; ++k) {
        cells[0].held()[k] = valueOf<double>(stamp);
    }
    array = std::move(cells);
}
inline bool areCells(const Array& array, double stamp) {
    const TypedArray<Array> cells = array;
    const TypedArray<Array> inner = cells[1];
    const CharArray text = inner[1];
    return areNumbers<double>(cells[0], stamp) && areNumbers<double>(inner[0], stamp) &&
           text.toAscii() == "kept";
}

/// Fields with numbers and with text.
inline Array makeStructs(ArrayFactory& factory, double stamp) {
    StructArray records = factory.createStructArray({1, 2}, {"numbers", "text"});
    const Array numbers = makeNumbers<double>(factory, stamp);
    const Array text = makeStrings(factory, stamp);
    for (auto record : records) {
        record = {numbers, text}; // both records share them
    }
    return records;
}
inline void writeStructs(ArrayFactory&, Array& array, double stamp) {
    StructArray records(std::move(array));
    for (std::size_t k = 0; k < 2; ++k) {
        Reference<TypedArray<double>> numbers = records[k]["numbers"];
        std::fill(numbers.begin(), numbers.end(), valueOf<double>(stamp));
        Reference<TypedArray<String>> strings = records[k]["text"];
        std::size_t n = 0;
        for (auto element : strings) {
            element = textOf(stamp, n++);
        }
    }
    array = std::move(records);
}
inline bool areStructs(const Array& array, double stamp) {
    const StructArray records = array;
    return std::all_of(records.begin(), records.end(), [&](const auto& record) {
        return areNumbers<double>(record["numbers"], stamp) && areStrings(record["text"], stamp);
    });
}

/// The values of sparse arrays are never zero; those of logical ones are therefore true whatever the stamp.
template <class T>
T nonZero(double stamp) {
    return valueOf<T>(stamp) + valueOf<T>(1);
}
template <class T>
Array makeSparse(ArrayFactory& factory, double stamp) {
    auto values = factory.createBuffer<T>(2);
    auto rows = factory.createBuffer<std::size_t>(2);
    auto columns = factory.createBuffer<std::size_t>(2);
    std::fill_n(values.get(), 2, nonZero<T>(stamp));
    rows[0] = columns[0] = 0;
    rows[1] = columns[1] = 2;
    return factory.createSparseArray<T>({3, 3}, 2, std::move(values), std::move(rows), std::move(columns));
}
template <class T>
void writeSparse(ArrayFactory&, Array& array, double stamp) {
    SparseArray<T> matrix(std::move(array));
    std::fill(matrix.begin(), matrix.end(), nonZero<T>(stamp));
    array = std::move(matrix);
}
template <class T>
bool isSparseWith(const Array& array, double stamp) {
    const SparseArray<T> matrix = array;
    bool right = matrix.getNumberOfNonZeroElements() == 2;
    for (auto it = matrix.begin(); it != matrix.end(); ++it) {
        const auto [row, column] = matrix.getIndex(it); // remembers the last column, for all readers
        right = right && row == column && *it == nonZero<T>(stamp);
    }
    return right;
}

/// Two elements with one object, which has numbers.
inline Array makeObjects(ArrayFactory& factory, double stamp) {
    const ClassInfo pointClass = factory.createClassInfo("Point", {"x", "y"});
    ValueObject point = factory.createValueObject(pointClass);
    point["x"] = makeNumbers<double>(factory, stamp);
    point["y"] = makeNumbers<double>(factory, stamp);
    ValueObjectArray points = factory.createValueObjectArray({1, 2}, pointClass);
    points[0] = point;
    points[1] = point;
    return points;
}
inline void writeObjects(ArrayFactory& factory, Array& array, double stamp) {
    ValueObjectArray points(std::move(array));
    for (std::size_t k = 0; k < 2; ++k) {
        ValueObject point = points[k];
        point["x"] = makeNumbers<double>(factory, stamp);
        Reference<TypedArray<double>> numbers = point["y"];
        std::fill(numbers.begin(), numbers.end(), valueOf<double>(stamp));
        points[k] = point;
    }
    array = std::move(points);
}
inline bool areObjects(const Array& array, double stamp) {
    const ValueObjectArray points = array;
    const ValueObject first = points[0];
    const ValueObject second = points[1];
    return areNumbers<double>(first["x"], stamp) && areNumbers<double>(first["y"], stamp) &&
           areNumbers<double>(second["x"], stamp) && areNumbers<double>(second["y"], stamp);
}

inline Array makeHandles(ArrayFactory& factory, double stamp) {
    const HandleObjectRef handle = factory.createHandleObjectRef(ZVMID(), static_cast<long>(stamp));
    return factory.createArray<HandleObjectRef>({1, 2}, {handle, handle});
}
inline void writeHandles(ArrayFactory& factory, Array& array, double stamp) {
    TypedArray<HandleObjectRef> handles(std::move(array));
    handles[0] = factory.createHandleObjectRef(ZVMID(), static_cast<long>(stamp));
    handles[1] = handles[0];
    array = std::move(handles);
}
inline bool areHandles(const Array& array, double stamp) {
    const TypedArray<HandleObjectRef> handles = array;
    return std::all_of(handles.begin(), handles.end(), [&](const auto& element) {
        return HandleObjectRef(element).getId() == static_cast<long>(stamp);
    });
}

inline Array makeMember(ArrayFactory& factory, double stamp) {
    return factory.createValueObjectScalar(factory.createEnumerationObject("Sky", memberOf(stamp)));
}
inline void writeMember(ArrayFactory& factory, Array& array, double stamp) {
    ValueObjectArray objects(std::move(array));
    objects[0] = factory.createEnumerationObject("Sky", memberOf(stamp));
    array = std::move(objects);
}
inline bool isMember(const Array& array, double stamp) {
    const ValueObjectArray objects = array;
    return ValueObject(objects[0]).getEnumerationName() == memberOf(stamp);
}

/// A name without what no test may have in its own.
inline std::string plain(std::string name) {
    name.erase(std::remove_if(name.begin(), name.end(), [](char unit) { return std::isalnum(unit) == 0; }),
               name.end());
    return name;
}
template <class T>
Kind numbersOf(const char* type) {
    return {plain(type), makeNumbers<T>, fillNumbers<T>, areNumbers<T>};
}
template <class T>
Kind sparseOf(const char* type) {
    return {"Sparse" + plain(type), makeSparse<T>, writeSparse<T>, isSparseWith<T>};
}

} // namespace kinds

/// All kinds: every type of numbers, strings, enumerations, nested cells, structs, objects, handle objects,
/// sparse matrices. Made at the first call; any thread may ask.
inline const std::vector<Kind>& catalogue() {
    using namespace kinds;
    static const std::vector<Kind> all{
        {"NumbersByIndex", makeNumbers<double>, writeNumbers, areNumbers<double>},
        {"Strings", makeStrings, writeStrings, areStrings},
        {"Enumerations", makeEnums, writeEnums, areEnums},
        {"NestedCells", makeCells, writeCells, areCells},
        {"Structs", makeStructs, writeStructs, areStructs},
        {"Objects", makeObjects, writeObjects, areObjects},
        {"Handles", makeHandles, writeHandles, areHandles},
        {"EnumerationObject", makeMember, writeMember, isMember},
        sparseOf<bool>("bool"),
        sparseOf<double>("double"),
        sparseOf<std::complex<double>>("complex"),
#define VEXADATA_ELEMENT(T) numbersOf<T>(#T),
#include <foundation/vexadata/detail/PrimitiveTypes.inc>
    };
    return all;
}

} // namespace vexa::testing
