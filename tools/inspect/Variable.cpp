#include "Variable.hpp"

#include <foundation/vexadata/Utf8.hpp>
#include <foundation/vexadata/Visit.hpp>
#include <foundation/vexadata/detail/Access.hpp>

#include <algorithm>
#include <complex>
#include <cstdint>
#include <map>
#include <memory>
#include <unordered_set>
#include <utility>

namespace vexa::inspect {

using foundation::vexadata::Array;
using foundation::vexadata::ArrayFactory;
using foundation::vexadata::ArrayType;
using foundation::vexadata::EnumArray;
using foundation::vexadata::Enumeration;
using foundation::vexadata::SparseArray;
using foundation::vexadata::String;
using foundation::vexadata::StructArray;
using foundation::vexadata::StructElement;
using foundation::vexadata::TypedArray;
using foundation::vexadata::detail::Access;

namespace {

Array makeLogical(GrowingBuffer<double>& values, ArrayFactory& factory, MemoryShare& memory) {
    const std::size_t rows = values.size();
    memory.take(rows);
    auto storage = factory.createBuffer<bool>(rows);
    for (std::size_t k = 0; k < rows; ++k)
        storage[k] = values[k] != 0;
    values.clear();
    return factory.createArrayFromBuffer<bool>({rows, 1}, std::move(storage));
}

Array makeNumbers(GrowingBuffer<double>& values, ArrayFactory& factory, MemoryShare& memory) {
    const std::size_t rows = values.size();
    return factory.createArrayFromBuffer<double>({rows, 1}, values.release(memory));
}

/// `T` has 64 bits.
template <class T>
Array makeIntegers(GrowingBuffer<std::int64_t>& values, ArrayFactory& factory, MemoryShare& memory) {
    const std::size_t rows = values.size();
    auto storage = values.release(memory);
    const auto free = storage.get_deleter();
    // The language lets a signed integer be accessed as the unsigned one of its width, and the other way
    // round.
    std::unique_ptr<T[], void (*)(void*)> elements(reinterpret_cast<T*>(storage.release()), free);
    return factory.createArrayFromBuffer<T>({rows, 1}, std::move(elements));
}

/// Calls `set(element, text)` for each element whose text is not missing.
template <class Elements, class Set>
void fill(Elements& elements, TextBuffer& texts, Set set) {
    std::size_t k = 0;
    for (auto element : elements) {
        if (const auto text = texts[k++]) set(element, *text);
    }
    texts.clear();
}

Array makeEnumeration(TextBuffer& texts, const std::string& className, ArrayFactory& factory,
                      MemoryShare& memory) {
    memory.take(texts.size() * sizeof(std::uint32_t));
    EnumArray members = factory.createEnumArray({texts.size(), 1}, className);
    fill(members, texts, [](auto& element, std::string_view text) { element = std::string(text); });
    return members;
}

/// An array of strings takes 16 bytes an element, and two for each unit of longer texts; while it grows,
/// three times that. To this comes one text as UTF-16, whose length is bounded by that of all texts together.
Array makeStrings(TextBuffer& texts, ArrayFactory& factory, MemoryShare& memory) {
    constexpr std::size_t longestText = std::size_t{16} << 20;
    memory.take(16 * texts.size() + 6 * texts.bytes() + 2 * std::min(texts.bytes(), longestText));
    auto strings = factory.createArray<String>({texts.size(), 1});
    fill(strings, texts,
         [](auto& element, std::string_view text) { element = foundation::vexadata::fromUtf8(text); });
    return strings;
}

std::size_t bytesOfTexts(const TypedArray<String>& strings) {
    std::size_t units = 0;
    for (const auto& element : strings)
        if (element.has_value()) units += std::u16string(element).size();
    return units * sizeof(char16_t);
}

/// Bytes of the elements of an array itself, without those of arrays in it.
struct OwnBytes {
    template <class T>
    std::size_t operator()(const TypedArray<T>& array) const {
        const std::size_t count = array.getNumberOfElements();
        if constexpr (std::is_same_v<T, String>)
            return bytesOfTexts(array);
        else if constexpr (std::is_same_v<T, Enumeration>)
            return count * sizeof(std::uint32_t);
        else if constexpr (foundation::vexadata::detail::isPrimitiveElement<T>)
            return count * sizeof(T);
        else
            return 0; // objects belong to their classes
    }
    template <class T>
    std::size_t operator()(const SparseArray<T>& matrix) const {
        return matrix.getNumberOfNonZeroElements() * (sizeof(T) + sizeof(std::size_t)) +
               (matrix.getCols() + 1) * sizeof(std::size_t);
    }
};

/// Calls `task` for an array and all that is in its cells and fields, once each. Without recursion: arrays may
/// be nested as deep as files are long.
template <class Task>
void forEachPart(const Array& array, Task task) {
    std::vector<Array> waiting{array};
    std::unordered_set<const void*> seen; // what is shared is there once
    while (!waiting.empty()) {
        const Array part = std::move(waiting.back());
        waiting.pop_back();
        const ArrayType type = part.getType();
        if (type == ArrayType::UNKNOWN || !seen.insert(Access::impl(part).get()).second) continue;
        task(part);
        if (type == ArrayType::CELL) {
            const TypedArray<Array> cells = part;
            waiting.insert(waiting.end(), cells.begin(), cells.end());
        } else if (type == ArrayType::STRUCT) {
            const StructArray records = part;
            for (const auto& record : records)
                waiting.insert(waiting.end(), record.begin(), record.end());
        }
    }
}

/// Arrays of real numbers and logical values.
template <class T>
inline constexpr bool hasFigures = std::is_arithmetic_v<T> && !std::is_same_v<T, char16_t>;

template <class T>
bool isMissing(const T& value) {
    return value != value; // NaN, also as a part of a complex number
}

struct PresentValues {
    template <class T>
    std::vector<double> operator()(const TypedArray<T>& array) const {
        std::vector<double> present;
        if constexpr (hasFigures<T>) {
            present.reserve(array.getNumberOfElements());
            for (const T value : array)
                if (!isMissing(value)) present.push_back(static_cast<double>(value));
        }
        return present;
    }
    template <class T>
    std::vector<double> operator()(const SparseArray<T>&) const {
        return {};
    }
};

struct NumberOfFigures {
    template <class T>
    std::size_t operator()(const TypedArray<T>& array) const {
        return hasFigures<T> ? array.getNumberOfElements() : 0;
    }
    template <class T>
    std::size_t operator()(const SparseArray<T>&) const {
        return 0;
    }
};

struct MissingElements {
    template <class T>
    std::size_t operator()(const TypedArray<T>& array) const {
        std::size_t missing = 0;
        if constexpr (std::is_same_v<T, String>) {
            for (const auto& element : array)
                if (!element.has_value()) ++missing;
        } else if constexpr (std::is_same_v<T, Enumeration>) {
            for (const auto& element : array)
                if (element.getName().empty()) ++missing;
        } else if constexpr (foundation::vexadata::detail::isPrimitiveElement<T> && !std::is_integral_v<T>) {
            for (const T value : array)
                if (isMissing(value)) ++missing;
        }
        return missing;
    }
    template <class T>
    std::size_t operator()(const SparseArray<T>&) const {
        return 0; // a line of its own tells
    }
};

/// `visit`, where an empty array without a kind gives the value 0 of the result.
template <class Visitor>
auto ask(const Array& array, Visitor visitor) {
    using Answer = decltype(visit(array, visitor));
    return array.getType() == ArrayType::UNKNOWN ? Answer() : visit(array, visitor);
}

template <class T>
Extremes extremesOf(const TypedArray<T>& array) {
    const auto [least, greatest] = std::minmax_element(array.begin(), array.end());
    return {std::to_string(*least), std::to_string(*greatest)};
}

} // namespace

Array makeArray(Column& column, const std::string& className, ArrayFactory& factory, MemoryShare& memory) {
    switch (column.kind()) {
    case Column::Kind::text:
        return areCategories(column.texts()) ? makeEnumeration(column.texts(), className, factory, memory)
                                             : makeStrings(column.texts(), factory, memory);
    case Column::Kind::int64:
        return makeIntegers<std::int64_t>(column.integers(), factory, memory);
    case Column::Kind::uint64:
        return makeIntegers<std::uint64_t>(column.integers(), factory, memory);
    case Column::Kind::logical:
        if (column.missing() == 0) return makeLogical(column.values(), factory, memory);
        [[fallthrough]];
    default:
        return makeNumbers(column.values(), factory, memory);
    }
}

bool isTable(const Array& array) {
    return array.getType() == ArrayType::STRUCT && array.getNumberOfElements() == 1;
}

std::vector<std::string> fieldsOf(const Array& array) {
    std::vector<std::string> names;
    for (const auto& field : StructArray(array).getFieldNames())
        names.push_back(field.getString());
    return names;
}

bool isNumeric(ArrayType type) noexcept {
    return type >= ArrayType::DOUBLE && type <= ArrayType::COMPLEX_UINT64;
}

std::size_t missingElements(const Array& array) { return ask(array, MissingElements()); }
std::vector<double> presentValues(const Array& array) { return ask(array, PresentValues()); }
std::size_t numberOfFigures(const Array& array) { return ask(array, NumberOfFigures()); }

Extremes integerExtremes(const Array& array) {
    if (array.isEmpty()) return {};
    switch (array.getType()) {
    case ArrayType::INT64:
        return extremesOf<std::int64_t>(array);
    case ArrayType::UINT64:
        return extremesOf<std::uint64_t>(array);
    default:
        return {};
    }
}

std::vector<WordCount> countWords(const Array& array) {
    if (array.getType() != ArrayType::ENUM) return {};
    std::map<std::string, std::size_t> counts;
    const EnumArray members = array;
    for (const auto& element : members)
        ++counts[element.getName()];
    counts.erase(""); // elements without member
    std::vector<WordCount> sorted;
    for (const auto& [word, count] : counts)
        sorted.push_back({word, count});
    std::stable_sort(sorted.begin(), sorted.end(),
                     [](const WordCount& a, const WordCount& b) { return a.count > b.count; });
    return sorted;
}

std::size_t storedElements(const Array& array) {
    if (!isSparse(array)) return array.getNumberOfElements();
    return visit(array,
                 []<class T>(const SparseArray<T>& matrix) { return matrix.getNumberOfNonZeroElements(); });
}

std::size_t bytesOf(const Array& array) {
    std::size_t bytes = 0;
    forEachPart(array, [&](const Array& part) { bytes += visit(part, OwnBytes()); });
    return bytes;
}

std::uint64_t bytesHeldInMemory(const Array& array, bool mapped) {
    constexpr std::uint64_t perArray = 200;
    constexpr std::uint64_t smallestMapped = 4096;
    std::uint64_t bytes = 0;
    forEachPart(array, [&](const Array& part) {
        const std::uint64_t own = visit(part, OwnBytes());
        const bool inFile = mapped && own >= smallestMapped && isNumeric(part.getType());
        const bool texts = part.getType() == ArrayType::STRING;
        bytes += perArray + (inFile ? 0 : own) + (texts ? 16 * part.getNumberOfElements() : 0);
    });
    return bytes;
}

} // namespace vexa::inspect
