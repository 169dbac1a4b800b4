// Dispatch from kinds of elements to their texts.
#include "Elements.hpp"

#include "Numbers.hpp"
#include "Text.hpp"

#include <foundation/vexadata/StringElement.hpp>
#include <foundation/vexadata/TypedIterator.hpp>
#include <foundation/vexadata/Utf8.hpp>
#include <foundation/vexadata/detail/ByKind.hpp>

#include <cstdint>
#include <ostream>

namespace foundation::vexadata::print {

namespace {

std::string valueText(char16_t unit, const PrintOptions&) { return quoted({&unit, 1}, '\'', 1); }
template <class T>
std::string valueText(const T& value, const PrintOptions& options) {
    return numberText(value, options.precision);
}

template <class T>
std::string storedTextOf(const Array& sparse, std::size_t index, const PrintOptions& options) {
    // Not through `SparseArray`, whose iterators end the process where memory runs out.
    TypedIterator<const T> stored(detail::Access::impl(sparse)->beginIterator(nullptr, false));
    return valueText(*(stored + static_cast<std::ptrdiff_t>(index)), options);
}

std::string nameOrNone(std::string name) { return name.empty() ? "<none>" : name; }

} // namespace

Alignment alignmentOf(ArrayType type) noexcept {
    switch (type) {
    case ArrayType::CHAR:
    case ArrayType::STRING:
    case ArrayType::ENUM:
        return Alignment::left;
    default:
        return type >= ArrayType::COMPLEX_DOUBLE ? Alignment::right : Alignment::number;
    }
}

bool isScalarKind(ArrayType type) noexcept {
    return detail::isPrimitive(type) || type == ArrayType::STRING || type == ArrayType::ENUM;
}

std::string elementText(ArrayImpl& array, std::size_t index, const PrintOptions& options) {
    const ArrayType type = array.getType();
    if (type == ArrayType::STRING) {
        const String text = detail::stringOf(array, index);
        return text ? quoted(*text, '"', options.width) : "<missing>";
    }
    if (type == ArrayType::ENUM) {
        return nameOrNone(array.castToString(index, detail::noFieldName));
    }
    std::string text;
    detail::withPrimitive(type, [&](auto tag) {
        text = valueText(detail::readElement<typename decltype(tag)::type>(array, index, detail::noFieldName),
                         options);
    });
    return text;
}

std::string storedText(const Array& sparse, std::size_t index, const PrintOptions& options) {
    std::string text;
    detail::withSparse(sparse.getType(), [&](auto tag) {
        text = storedTextOf<typename decltype(tag)::type>(sparse, index, options);
    });
    return text;
}

namespace {

/// A number as the stream would write it.
template <class T>
void write(std::ostream& stream, const T& value) {
    if constexpr (std::is_same_v<T, char16_t>) {
        stream << toUtf8Lossy({&value, 1});
    } else if constexpr (detail::isComplexElement<T>) {
        stream << numberText(value, static_cast<int>(stream.precision()));
    } else if constexpr (sizeof(T) == 1 && !std::is_same_v<T, bool>) {
        stream << static_cast<int>(value);
    } else {
        stream << value;
    }
}

} // namespace

void writeScalar(std::ostream& stream, const detail::ElementPosition& element) {
    ArrayImpl& array = *element.array();
    const std::size_t index = element.linearIndex();
    if (array.getType() == ArrayType::STRING) {
        const String text = detail::stringOf(array, index);
        stream << (text ? toUtf8Lossy(*text) : "<missing>");
    } else if (array.getType() == ArrayType::ENUM) {
        stream << nameOrNone(array.castToString(index, detail::noFieldName));
    } else {
        detail::withPrimitive(array.getType(), [&](auto tag) {
            write(stream,
                  detail::readElement<typename decltype(tag)::type>(array, index, detail::noFieldName));
        });
    }
}

} // namespace foundation::vexadata::print
