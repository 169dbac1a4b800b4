#include "Variable.hpp"

#include "Text.hpp"
#include "Words.hpp"

#include <foundation/vexadata/BufferAccess.hpp>

#include <cmath>
#include <complex>
#include <cstdint>
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
using foundation::vexadata::TypedArray;

namespace {

Array makeLogical(GrowingBuffer<double>& values, ArrayFactory& factory) {
    const std::size_t rows = values.size();
    auto storage = factory.createBuffer<bool>(rows);
    for (std::size_t k = 0; k < rows; ++k)
        storage[k] = values[k] != 0;
    values.clear();
    return factory.createArrayFromBuffer<bool>({rows, 1}, std::move(storage));
}

Array makeNumbers(GrowingBuffer<double>& values, ArrayFactory& factory) {
    const std::size_t rows = values.size();
    return factory.createArrayFromBuffer<double>({rows, 1}, values.release());
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

Array makeEnumeration(TextBuffer& texts, const std::string& className, ArrayFactory& factory) {
    EnumArray members = factory.createEnumArray({texts.size(), 1}, className);
    fill(members, texts, [](auto& element, std::string_view text) { element = std::string(text); });
    return members;
}

Array makeStrings(TextBuffer& texts, ArrayFactory& factory) {
    auto strings = factory.createArray<String>({texts.size(), 1});
    fill(strings, texts, [](auto& element, std::string_view text) { element = toUtf16(text); });
    return strings;
}

std::size_t bytesOfTexts(const TypedArray<String>& strings) {
    std::size_t units = 0;
    for (const auto& element : strings)
        if (element.has_value()) units += std::u16string(element).size();
    return units * sizeof(char16_t);
}

template <class Iterator>
std::size_t bytesOfAll(Iterator first, Iterator last) {
    std::size_t bytes = 0;
    for (; first != last; ++first)
        bytes += bytesOf(*first);
    return bytes;
}

template <class T>
std::size_t bytesOfSparse(const SparseArray<T>& matrix) {
    return matrix.getNumberOfNonZeroElements() * (sizeof(T) + sizeof(std::size_t)) +
           (matrix.getCols() + 1) * sizeof(std::size_t);
}

/// Of the kinds that files are read into.
std::size_t sizeOfNumber(ArrayType type) {
    return type == ArrayType::DOUBLE ? sizeof(double) : type == ArrayType::LOGICAL ? sizeof(bool) : 0;
}

std::vector<double> presentNumbers(const TypedArray<double>& array) {
    const auto numbers = foundation::vexadata::getBufferPtr<double>(array);
    const std::size_t count = array.getNumberOfElements();
    std::vector<double> present;
    present.reserve(count);
    for (std::size_t k = 0; k < count; ++k)
        if (!std::isnan(numbers[k])) present.push_back(numbers[k]);
    return present;
}

} // namespace

Array makeArray(Column& column, const std::string& className, ArrayFactory& factory) {
    if (column.kind() == Column::Kind::text)
        return areCategories(column.texts()) ? makeEnumeration(column.texts(), className, factory)
                                             : makeStrings(column.texts(), factory);
    if (column.kind() == Column::Kind::logical && column.missing() == 0)
        return makeLogical(column.values(), factory);
    return makeNumbers(column.values(), factory);
}

std::vector<double> presentValues(const Array& array) {
    switch (array.getType()) {
    case ArrayType::DOUBLE:
        return presentNumbers(array);
    case ArrayType::LOGICAL: {
        const TypedArray<bool> truths = array;
        return {truths.begin(), truths.end()};
    }
    default:
        return {};
    }
}

std::vector<std::string> presentWords(const Array& array) {
    std::vector<std::string> words;
    if (array.getType() != ArrayType::ENUM) return words;
    const EnumArray members = array;
    for (const auto& element : members) {
        std::string name = element.getName();
        if (!name.empty()) words.push_back(std::move(name));
    }
    return words;
}

std::size_t bytesOf(const Array& array) {
    const std::size_t count = array.getNumberOfElements();
    switch (array.getType()) {
    case ArrayType::STRING:
        return bytesOfTexts(array);
    case ArrayType::ENUM:
        return count * sizeof(std::uint32_t);
    case ArrayType::CELL: {
        const TypedArray<Array> cells = array;
        return bytesOfAll(cells.begin(), cells.end());
    }
    case ArrayType::STRUCT: {
        std::size_t bytes = 0;
        for (const auto& record : StructArray(array))
            bytes += bytesOfAll(record.begin(), record.end());
        return bytes;
    }
    case ArrayType::SPARSE_LOGICAL:
        return bytesOfSparse<bool>(array);
    case ArrayType::SPARSE_DOUBLE:
        return bytesOfSparse<double>(array);
    case ArrayType::SPARSE_COMPLEX_DOUBLE:
        return bytesOfSparse<std::complex<double>>(array);
    default:
        return count * sizeOfNumber(array.getType());
    }
}

} // namespace vexa::inspect
