// From the structures of the Arrow C data interface to arrays; the functions for programs are in Arrow.hpp.
#pragma once

#include <foundation/vexadata/ArrayFactory.hpp>
#include <foundation/vexadata/StructArray.hpp>
#include <foundation/vexadata/Utf8.hpp>
#include <foundation/vexadata/detail/ByKind.hpp>
#include <vexa/client/Adoption.hpp>
#include <vexa/interop/FieldNames.hpp>
#include <vexa/interop/detail/ArrowExport.hpp>

#include <array>
#include <charconv>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <limits>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

namespace vexa::interop::detail {

/// @throws std::runtime_error with the text that the stream has for its error, or the number
inline void requireSuccess(ArrowArrayStream& stream, int code) {
    if (code != 0) {
        const char* text = stream.get_last_error == nullptr ? nullptr : stream.get_last_error(&stream);
        throw std::runtime_error("Arrow: " +
                                 (text == nullptr ? "error " + std::to_string(code) + " of a stream" : text));
    }
}

/// The entries `first` to `first + length` of an array.
struct ArrowPiece {
    const ArrowArray* array = nullptr;
    const unsigned char* validity = nullptr; // null: no entry is missing
    std::size_t first = 0;
    std::size_t length = 0;
};

/// A column in pieces, with its name.
struct ArrowColumn {
    const ArrowSchema* schema = nullptr;
    std::string name;
    std::vector<ArrowPiece> pieces;
    std::size_t length = 0;
    std::size_t missing = 0;
    int depth = 0; // of structs around it

    [[noreturn]] void refuse(const std::string& reason) const {
        throw std::invalid_argument(arrowPlace(name) + reason);
    }
};

inline bool bitAt(const unsigned char* bits, std::size_t k) noexcept {
    return (bits[k / 8] >> k % 8 & 1) != 0;
}

inline bool isMissing(const ArrowPiece& piece, std::size_t k) noexcept {
    return piece.validity != nullptr && !bitAt(piece.validity, piece.first + k);
}

inline std::size_t countMissing(const ArrowPiece& piece) noexcept {
    std::size_t missing = 0;
    for (std::size_t k = 0; piece.validity != nullptr && k < piece.length; ++k) {
        missing += isMissing(piece, k) ? 1U : 0U;
    }
    return missing;
}

/// How many buffers and children the format of a column wants.
struct ArrowShape {
    std::int64_t buffers = 2;
    std::int64_t children = 0;
    bool hasDictionary = false;
};

/// Adds the entries `skip` to `skip + length` of an array, tested against what its schema says; without a
/// length all from there.
/// @throws std::invalid_argument that says what contradicts itself
inline void addPiece(ArrowColumn& column, const ArrowArray* array, const ArrowShape& shape,
                     std::size_t skip = 0, std::optional<std::size_t> length = std::nullopt) {
    constexpr std::int64_t most = std::int64_t{1} << 56; // elements of 16 bytes, and nothing overflows
    if (array == nullptr || array->release == nullptr) {
        column.refuse(array == nullptr ? "there is no array" : "the array has been released");
    }
    if (array->length < 0 || array->offset < 0 || array->length > most || array->offset > most ||
        array->null_count < -1) {
        column.refuse("an array of length " + std::to_string(array->length) + " at offset " +
                      std::to_string(array->offset) + " with " + std::to_string(array->null_count) +
                      " missing entries");
    }
    if (array->n_buffers != shape.buffers || array->buffers == nullptr) {
        column.refuse(std::to_string(array->buffers == nullptr ? 0 : array->n_buffers) +
                      " buffers, but the format has " + std::to_string(shape.buffers));
    }
    if (array->n_children != shape.children || (shape.children != 0 && array->children == nullptr)) {
        column.refuse(std::to_string(array->children == nullptr ? 0 : array->n_children) +
                      " children, but the schema has " + std::to_string(shape.children));
    }
    if ((array->dictionary != nullptr) != shape.hasDictionary) {
        column.refuse(shape.hasDictionary ? "the array has no dictionary" : "a dictionary without a schema");
    }
    const auto available = static_cast<std::size_t>(array->length);
    if (skip > available || length.value_or(0) > available - skip) {
        column.refuse(std::to_string(available) + " entries, but the struct around has " +
                      std::to_string(skip + length.value_or(0)));
    }

    ArrowPiece piece;
    piece.array = array;
    piece.first = static_cast<std::size_t>(array->offset) + skip;
    piece.length = length.value_or(available - skip);
    if (array->null_count != 0) {
        piece.validity = static_cast<const unsigned char*>(array->buffers[0]);
        if (array->null_count > 0 && piece.validity == nullptr) {
            column.refuse(std::to_string(array->null_count) +
                          " missing entries, but nothing says which they are");
        }
    }
    if (piece.length > static_cast<std::size_t>(most) - column.length) {
        column.refuse("pieces of more than " + std::to_string(most) + " entries");
    }
    column.length += piece.length;
    column.missing += countMissing(piece);
    column.pieces.push_back(piece);
}

/// The first byte of a buffer with entries.
/// @throws std::invalid_argument when there is no buffer
inline const unsigned char* bufferOf(const ArrowColumn& column, const ArrowPiece& piece, std::size_t buffer) {
    const auto* bytes = static_cast<const unsigned char*>(piece.array->buffers[buffer]);
    if (bytes == nullptr && piece.length != 0) {
        column.refuse(std::to_string(piece.length) + " entries, but buffer " + std::to_string(buffer) +
                      " is null");
    }
    return bytes;
}

/// Entry `k` of a buffer of fixed widths, aligned or not.
template <class T>
T loadAt(const unsigned char* bytes, std::size_t k) noexcept {
    if constexpr (std::is_same_v<T, bool>) {
        return bitAt(bytes, k);
    } else {
        T value;
        std::memcpy(&value, bytes + k * sizeof(T), sizeof(T));
        return value;
    }
}

/// Calls `use(piece, k)` for each entry of a column, one after the other.
template <class Use>
void forEachEntry(const ArrowColumn& column, Use use) {
    for (const ArrowPiece& piece : column.pieces) {
        for (std::size_t k = 0; k < piece.length; ++k) {
            use(piece, k);
        }
    }
}

/// An array of `valueOf(bytes, k)` for the entries of a column, NaN for missing ones.
template <class T, class ValueOf>
fv::Array copiedNumbers(const ArrowColumn& column, ValueOf valueOf) {
    const fv::ArrayFactory factory;
    fv::buffer_ptr<T> values = factory.createBuffer<T>(column.length);
    T* next = values.get();
    for (const ArrowPiece& piece : column.pieces) {
        const unsigned char* bytes = bufferOf(column, piece, 1);
        for (std::size_t k = 0; k < piece.length; ++k, ++next) {
            if constexpr (std::is_floating_point_v<T>) {
                if (isMissing(piece, k)) {
                    *next = std::numeric_limits<T>::quiet_NaN();
                    continue;
                }
            }
            *next = valueOf(bytes, piece.first + k);
        }
    }
    return factory.createArrayFromBuffer<T>({column.length, 1}, std::move(values));
}

/// A number as double.
/// @throws std::invalid_argument when double has no such number
template <class T>
double exactDouble(const ArrowColumn& column, T value) {
    const auto result = static_cast<double>(value);
    if constexpr (sizeof(T) == 8) {
        const double limit =
            std::is_signed_v<T> ? 0x1p63 : 0x1p64; // where the conversion back would overflow
        if (result >= limit || static_cast<T>(result) != value) {
            column.refuse(std::to_string(value) +
                          " beside missing entries, with which integers become double, "
                          "but double has no such number");
        }
    }
    return result;
}

template <class T>
fv::Array readNumbers(const ArrowColumn& column, const std::shared_ptr<const void>& owner) {
    if constexpr (!std::is_floating_point_v<T>) {
        if (column.missing != 0) {
            return copiedNumbers<double>(column, [&](const unsigned char* bytes, std::size_t k) {
                return exactDouble(column, loadAt<T>(bytes, k));
            });
        }
    }
    if constexpr (!std::is_same_v<T, bool>) {
        if (column.pieces.size() == 1 && column.missing == 0 && column.length != 0) {
            const ArrowPiece& piece = column.pieces.front();
            const unsigned char* first = bufferOf(column, piece, 1) + piece.first * sizeof(T);
            if (reinterpret_cast<std::uintptr_t>(first) % alignof(T) == 0) {
                return client::adoptReadOnly({column.length, 1}, fv::detail::arrayTypeOf<T>, first, owner);
            }
        }
    }
    return copiedNumbers<T>(column, loadAt<T>);
}

/// A decimal number of 128 bits, with `scale` digits behind the point, rounded as from a text.
inline double decimalAt(const unsigned char* bytes, std::size_t k, int scale) {
    __extension__ using Signed = __int128;
    __extension__ using Unsigned = unsigned __int128;
    const auto value = loadAt<Signed>(bytes, k);
    Unsigned rest = value < 0 ? -static_cast<Unsigned>(value) : static_cast<Unsigned>(value);
    std::array<char, 48> text{}; // digits before the e, of which there are at most 39
    char* const e = text.data() + 40;
    char* first = e;
    do {
        *--first = static_cast<char>('0' + static_cast<int>(rest % 10));
        rest /= 10;
    } while (rest != 0);
    *e = 'e';
    const char* const end = std::to_chars(e + 1, text.data() + text.size(), -scale).ptr;
    double result = 0;
    std::from_chars(first, end, result);
    return value < 0 ? -result : result;
}

/// The scale of a format like `d:38,2` or `d:38,2,128`.
/// @throws std::invalid_argument for other widths
inline int decimalScale(const ArrowColumn& column) {
    const std::string_view format = column.schema->format;
    const char* const end = format.data() + format.size();
    int digits = 0;
    int scale = 0;
    auto read = std::from_chars(format.data() + 2, end, digits);
    bool good = read.ec == std::errc() && read.ptr != end && *read.ptr == ',';
    if (good) {
        read = std::from_chars(read.ptr + 1, end, scale);
        const std::string_view width(read.ptr, static_cast<std::size_t>(end - read.ptr));
        good = read.ec == std::errc() && (width.empty() || width == ",128") && std::abs(scale) <= 76;
    }
    if (!good) {
        column.refuse("decimals of format '" + std::string(format) + "'");
    }
    return scale;
}

inline fv::Array readDecimals(const ArrowColumn& column) {
    const int scale = decimalScale(column);
    return copiedNumbers<double>(
        column, [scale](const unsigned char* bytes, std::size_t k) { return decimalAt(bytes, k, scale); });
}

/// The text of entry `k`, which is not missing.
/// @throws std::invalid_argument for offsets that go back
template <class Offset>
std::string_view textAt(const ArrowColumn& column, const ArrowPiece& piece, std::size_t k) {
    const unsigned char* offsets = bufferOf(column, piece, 1);
    const auto* text = static_cast<const char*>(piece.array->buffers[2]);
    const auto begin = loadAt<Offset>(offsets, piece.first + k);
    const auto end = loadAt<Offset>(offsets, piece.first + k + 1);
    if (begin < 0 || end < begin || (text == nullptr && end != begin)) {
        column.refuse("entry " + std::to_string(k) + ": a text from " + std::to_string(begin) + " to " +
                      std::to_string(end) + (text == nullptr ? " of no buffer" : ""));
    }
    return end == begin ? std::string_view()
                        : std::string_view(text + begin, static_cast<std::size_t>(end - begin));
}

/// @throws std::range_error, with the column, for what is no UTF-8
inline std::u16string decoded(const ArrowColumn& column, std::size_t k, std::string_view text) {
    try {
        return fv::fromUtf8(text);
    } catch (const std::range_error& error) {
        throw std::range_error(arrowPlace(column.name) + "entry " + std::to_string(k) + ": " + error.what());
    }
}

template <class Offset>
fv::Array readTexts(const ArrowColumn& column) {
    auto strings = fv::ArrayFactory().createArray<fv::String>({column.length, 1});
    auto element = strings.begin();
    forEachEntry(column, [&](const ArrowPiece& piece, std::size_t k) {
        if (!isMissing(piece, k)) {
            *element = decoded(column, k, textAt<Offset>(column, piece, k));
        }
        ++element;
    });
    return fv::Array(std::move(strings));
}

/// The names in the dictionary of a piece; empty ones for what is missing there.
template <class Offset>
std::vector<std::string> dictionaryNames(const ArrowColumn& column, const ArrowArray* dictionary) {
    ArrowColumn names;
    names.schema = column.schema->dictionary;
    names.name = column.name;
    addPiece(names, dictionary, {3, 0, false});
    std::vector<std::string> found;
    found.reserve(names.length);
    forEachEntry(names, [&](const ArrowPiece& piece, std::size_t k) {
        std::string_view text;
        if (!isMissing(piece, k)) {
            text = textAt<Offset>(names, piece, k);
            decoded(names, k, text); // a test
            if (text.empty() || text.find('\0') != std::string_view::npos) {
                column.refuse("entry " + std::to_string(k) + " of the dictionary is " +
                              (text.empty() ? "empty" : "a text with NUL") +
                              ", which is no name of a member");
            }
        }
        found.emplace_back(text);
    });
    return found;
}

/// Elements of an enumeration from codes `Code` into dictionaries.
template <class Code, class Offset>
fv::Array readMembers(const ArrowColumn& column) {
    std::vector<std::string> members;
    members.reserve(column.length);
    for (const ArrowPiece& piece : column.pieces) {
        const std::vector<std::string> names = dictionaryNames<Offset>(column, piece.array->dictionary);
        const unsigned char* codes = bufferOf(column, piece, 1);
        for (std::size_t k = 0; k < piece.length; ++k) {
            if (isMissing(piece, k)) {
                members.emplace_back();
                continue;
            }
            const auto code = loadAt<Code>(codes, piece.first + k);
            if (code < 0 || static_cast<std::uint64_t>(code) >= names.size()) {
                column.refuse("entry " + std::to_string(k) + " has code " + std::to_string(code) +
                              ", but the dictionary has " + std::to_string(names.size()) + " entries");
            }
            members.push_back(names[static_cast<std::size_t>(code)]);
        }
    }
    return fv::Array(fv::ArrayFactory().createEnumArray(
        {column.length, 1}, fieldNames({column.name.empty() ? "category" : column.name}).front(),
        std::move(members)));
}

/// Calls `read(T())` for the integer or other number of a format of one letter; false for other formats.
template <class Read>
bool withArrowLetter(std::string_view format, Read read) {
    bool found = false;
    fv::detail::forEachPrimitive([&](auto tag) {
        using T = typename decltype(tag)::type;
        if constexpr (arrowLetter<T>() != 0) {
            if (format.size() == 1 && format.front() == arrowLetter<T>()) {
                read(tag);
                found = true;
            }
        }
    });
    return found;
}

inline fv::Array readDictionary(const ArrowColumn& column) {
    const char* const texts = column.schema->dictionary->format;
    const std::string_view format = texts == nullptr ? "" : texts;
    if (format != "u" && format != "U") {
        column.refuse("a dictionary of format '" + std::string(format) + "', expected texts, u or U");
    }
    fv::Array made;
    bool done = false;
    withArrowLetter(column.schema->format, [&](auto tag) {
        using T = typename decltype(tag)::type;
        if constexpr (std::is_integral_v<T> && !std::is_same_v<T, bool>) {
            made =
                format == "u" ? readMembers<T, std::int32_t>(column) : readMembers<T, std::int64_t>(column);
            done = true;
        }
    });
    if (!done) {
        column.refuse("codes of format '" + std::string(column.schema->format) + "', expected integers");
    }
    return made;
}

inline fv::Array readColumn(ArrowColumn column, const ArrowShape& shape,
                            const std::shared_ptr<const void>& owner);
inline ArrowShape shapeOf(const ArrowColumn& column);

/// A struct of columns; each child in as many pieces.
inline fv::Array readColumns(const ArrowColumn& table, const std::shared_ptr<const void>& owner) {
    if (table.missing != 0) {
        table.refuse(std::to_string(table.missing) + " missing entries of a struct");
    }
    const auto children = static_cast<std::size_t>(table.schema->n_children);
    std::vector<std::string> texts;
    for (std::size_t k = 0; k < children; ++k) {
        const ArrowSchema* schema = table.schema->children[k];
        if (schema == nullptr) {
            table.refuse("child " + std::to_string(k) + " has no schema");
        }
        texts.emplace_back(schema->name == nullptr ? "" : schema->name);
    }
    const std::vector<std::string> names = fieldNames(texts);
    fv::StructArray made = fv::ArrayFactory().createStructArray({1, 1}, names);
    for (std::size_t k = 0; k < children; ++k) {
        ArrowColumn column;
        column.schema = table.schema->children[k];
        column.name = texts[k];
        column.depth = table.depth + 1;
        const ArrowShape shape = shapeOf(column);
        for (const ArrowPiece& piece : table.pieces) {
            addPiece(column, piece.array->children[k], shape, piece.first, piece.length);
        }
        made[0][names[k]] = readColumn(std::move(column), shape, owner);
    }
    return fv::Array(std::move(made));
}

/// @throws std::invalid_argument for a schema that contradicts itself, and for formats that become no array
inline ArrowShape shapeOf(const ArrowColumn& column) {
    const ArrowSchema& schema = *column.schema;
    if (schema.format == nullptr) {
        column.refuse("the schema has no format");
    }
    const std::string_view format = schema.format;
    const bool isText = format == "u" || format == "U";
    if (!isText && format != "+s" && format.substr(0, 2) != "d:" && !withArrowLetter(format, [](auto) {})) {
        column.refuse("format '" + std::string(format) + "' becomes no array");
    }
    if (schema.n_children < 0 || (schema.n_children > 0 && (schema.children == nullptr || format != "+s"))) {
        column.refuse("a schema of format '" + std::string(format) + "' with " +
                      std::to_string(schema.n_children) + " children");
    }
    constexpr int deepest = 64;
    if (column.depth > deepest) {
        column.refuse("structs in structs, more than " + std::to_string(deepest) + " levels of them");
    }
    ArrowShape shape;
    shape.hasDictionary = schema.dictionary != nullptr;
    shape.children = schema.n_children;
    if (!shape.hasDictionary) {
        shape.buffers = format == "+s" ? 1 : isText ? 3 : 2;
    }
    return shape;
}

inline fv::Array readColumn(ArrowColumn column, const ArrowShape& shape,
                            const std::shared_ptr<const void>& owner) {
    const std::string_view format = column.schema->format;
    if (shape.hasDictionary) {
        return readDictionary(column);
    }
    if (format == "+s") {
        return readColumns(column, owner);
    }
    if (format == "u") {
        return readTexts<std::int32_t>(column);
    }
    if (format == "U") {
        return readTexts<std::int64_t>(column);
    }
    fv::Array made;
    if (!withArrowLetter(
            format, [&](auto tag) { made = readNumbers<typename decltype(tag)::type>(column, owner); })) {
        made = readDecimals(column);
    }
    return made;
}

/// Arrays as pieces of one column or table; `owner` keeps what is shared.
inline fv::Array readArrays(const ArrowSchema& schema, const std::vector<const ArrowArray*>& arrays,
                            const std::shared_ptr<const void>& owner) {
    if (schema.release == nullptr) {
        throw std::invalid_argument("Arrow: the schema has been released");
    }
    ArrowColumn column;
    column.schema = &schema;
    column.name = schema.name == nullptr ? "" : schema.name;
    const ArrowShape shape = shapeOf(column);
    for (const ArrowArray* array : arrays) {
        addPiece(column, array, shape);
    }
    return readColumn(std::move(column), shape, owner);
}

} // namespace vexa::interop::detail
