// From arrays to the structures of the Arrow C data interface; the functions for programs are in Arrow.hpp.
#pragma once

#include <foundation/vexadata/EnumArray.hpp>
#include <foundation/vexadata/Print.hpp>
#include <foundation/vexadata/StructArray.hpp>
#include <foundation/vexadata/Utf8.hpp>
#include <foundation/vexadata/detail/ByKind.hpp>
#include <vexa/data/impl/EnumArrayImpl.hpp>
#include <vexa/interop/ArrowStructs.hpp>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <memory>
#include <new>
#include <stdexcept>
#include <string>
#include <string_view>
#include <type_traits>
#include <unordered_map>
#include <utility>
#include <vector>

namespace vexa::interop {

namespace fv = foundation::vexadata;

/// What is left open when arrays become Arrow's.
struct ArrowOptions {
    /// NaN becomes a missing entry, as which it would come back, instead of a number. Costs a look at every
    /// element, and no copy.
    bool nanIsMissing = false;
    /// Texts have offsets of 64 bits always (format U), not only where they have more than 2 GiB.
    bool wideOffsets = false;
};

namespace detail {

/// How errors call a column: the top has no name.
inline std::string arrowPlace(const std::string& name) {
    return name.empty() ? "Arrow: " : "Arrow: column '" + name + "': ";
}

/// The letter of the format for elements `T`; 0 for those that have none.
template <class T>
constexpr char arrowLetter() {
    if constexpr (std::is_same_v<T, bool>) {
        return 'b';
    } else if constexpr (std::is_floating_point_v<T>) {
        return sizeof(T) == 4 ? 'f' : 'g';
    } else if constexpr (std::is_integral_v<T> && !std::is_same_v<T, char16_t>) {
        constexpr char letters[] = {'c', 's', 0, 'i', 0, 0, 0, 'l'};
        constexpr char letter = letters[sizeof(T) - 1];
        return std::is_signed_v<T> ? letter : static_cast<char>(letter - 'a' + 'A');
    } else {
        return 0;
    }
}

/// What a structure that we made owns besides its children.
template <class Struct>
struct ArrowParts {
    std::vector<OwnedArrow<Struct>> children;
    std::vector<Struct*> pointers; // to the children
    OwnedArrow<Struct> dictionary;
};

struct SchemaParts : ArrowParts<ArrowSchema> {
    std::string format;
    std::string name;
};

struct ArrayParts : ArrowParts<ArrowArray> {
    fv::Array shared; // holds the elements that are not copied
    std::vector<std::uint8_t> validity;
    std::vector<std::uint8_t> bits;
    std::vector<std::int32_t> numbers; // codes of a dictionary, offsets of texts
    std::vector<std::int64_t> wideOffsets;
    std::string text;
    std::array<const void*, 3> buffers{};
};

/// Moves the parts into their structure, which releases them. Beyond the list of children nothing is
/// allocated.
template <class Parts, class Struct>
void giveParts(std::unique_ptr<Parts> parts, Struct& target) {
    for (OwnedArrow<Struct>& child : parts->children) {
        parts->pointers.push_back(child.get());
    }
    target.n_children = static_cast<std::int64_t>(parts->children.size());
    target.children = parts->pointers.empty() ? nullptr : parts->pointers.data();
    target.dictionary = parts->dictionary ? parts->dictionary.get() : nullptr;
    target.release = [](Struct* self) {
        delete static_cast<Parts*>(self->private_data);
        self->release = nullptr;
    };
    target.private_data = parts.release();
}

inline OwnedArrow<ArrowSchema> makeSchema(std::unique_ptr<SchemaParts> parts, bool nullable) {
    OwnedArrow<ArrowSchema> schema;
    schema->format = parts->format.c_str();
    schema->name = parts->name.c_str();
    schema->flags = nullable ? ARROW_FLAG_NULLABLE : 0;
    giveParts(std::move(parts), *schema.get());
    return schema;
}

inline OwnedArrow<ArrowSchema> makeSchema(std::string format, std::string name) {
    auto parts = std::make_unique<SchemaParts>();
    parts->format = std::move(format);
    parts->name = std::move(name);
    return makeSchema(std::move(parts), true);
}

inline OwnedArrow<ArrowSchema> copyOf(const ArrowSchema& schema) {
    auto parts = std::make_unique<SchemaParts>();
    parts->format = schema.format;
    parts->name = schema.name;
    for (std::int64_t k = 0; k < schema.n_children; ++k) {
        parts->children.push_back(copyOf(*schema.children[k]));
    }
    if (schema.dictionary != nullptr) {
        parts->dictionary = copyOf(*schema.dictionary);
    }
    return makeSchema(std::move(parts), (schema.flags & ARROW_FLAG_NULLABLE) != 0);
}

/// `missing` says which entries are, `buffers` how many buffers the format has.
inline OwnedArrow<ArrowArray> makeArray(std::unique_ptr<ArrayParts> parts, std::size_t length,
                                        std::size_t missing, std::int64_t buffers) {
    OwnedArrow<ArrowArray> array;
    array->length = static_cast<std::int64_t>(length);
    array->null_count = static_cast<std::int64_t>(missing);
    array->n_buffers = buffers;
    parts->buffers[0] = missing == 0 ? nullptr : parts->validity.data();
    array->buffers = parts->buffers.data();
    giveParts(std::move(parts), *array.get());
    return array;
}

/// One column, or a struct of columns: its type and its entries.
struct ExportedArrow {
    OwnedArrow<ArrowSchema> schema;
    OwnedArrow<ArrowArray> array;
};

/// One bit an entry, the least significant first.
template <class Is>
std::vector<std::uint8_t> packedBits(std::size_t count, Is is) {
    std::vector<std::uint8_t> bits((count + 7) / 8);
    for (std::size_t k = 0; k < count; ++k) {
        bits[k / 8] = static_cast<std::uint8_t>(bits[k / 8] | (is(k) ? 1U << k % 8 : 0U));
    }
    return bits;
}

/// Notes which entries are missing and returns how many; packs nothing when none is.
template <class IsMissing>
std::size_t noteMissing(ArrayParts& parts, std::size_t count, IsMissing isMissing) {
    std::size_t missing = 0;
    for (std::size_t k = 0; k < count; ++k) {
        missing += isMissing(k) ? 1U : 0U;
    }
    if (missing != 0) {
        parts.validity = packedBits(count, [&](std::size_t k) { return !isMissing(k); });
    }
    return missing;
}

/// The number of entries of a column: a row will do, and so will an array without elements.
/// @throws std::invalid_argument for a matrix and for more dimensions
inline std::size_t columnLength(const fv::Array& array, const std::string& name) {
    const std::vector<std::size_t>& dims = fv::detail::Access::impl(array)->getDimensions();
    if (dims.size() != 2 || (dims[0] > 1 && dims[1] > 1)) {
        throw std::invalid_argument(arrowPlace(name) + "an array of " + fv::dimensionText(array) +
                                    " elements is no column");
    }
    return array.getNumberOfElements();
}

template <class T>
ExportedArrow exportNumbers(const fv::Array& array, const std::string& name, const ArrowOptions& options) {
    const std::size_t count = columnLength(array, name);
    auto parts = std::make_unique<ArrayParts>();
    const auto* elements = static_cast<const T*>(fv::detail::Access::impl(array)->getUntypedDataPtr());
    if (elements == nullptr && count != 0) {
        throw std::invalid_argument(arrowPlace(name) + "the back-end of the array lends no storage");
    }
    std::size_t missing = 0;
    if constexpr (std::is_same_v<T, bool>) {
        parts->bits = packedBits(count, [&](std::size_t k) { return elements[k]; });
        parts->buffers[1] = parts->bits.data();
    } else {
        if constexpr (std::is_floating_point_v<T>) {
            if (options.nanIsMissing) {
                missing = noteMissing(*parts, count, [&](std::size_t k) { return std::isnan(elements[k]); });
            }
        }
        parts->shared = array;
        parts->buffers[1] = elements;
    }
    return {makeSchema(std::string(1, arrowLetter<T>()), name),
            makeArray(std::move(parts), count, missing, 2)};
}

/// Texts one behind the other, `count` of them; `append(text, k)` appends number k. Returns the format.
/// @throws what `append` throws
template <class Append>
std::string fillTexts(ArrayParts& parts, std::size_t count, bool wide, Append append) {
    std::vector<std::int64_t> offsets(count + 1);
    for (std::size_t k = 0; k < count; ++k) {
        append(parts.text, k);
        offsets[k + 1] = static_cast<std::int64_t>(parts.text.size());
    }
    parts.buffers[2] = parts.text.data();
    if (wide || offsets.back() > std::numeric_limits<std::int32_t>::max()) {
        parts.wideOffsets = std::move(offsets);
        parts.buffers[1] = parts.wideOffsets.data();
        return "U";
    }
    parts.numbers.reserve(offsets.size());
    for (const std::int64_t offset : offsets) {
        parts.numbers.push_back(static_cast<std::int32_t>(offset));
    }
    parts.buffers[1] = parts.numbers.data();
    return "u";
}

inline ExportedArrow exportStrings(const fv::Array& array, const std::string& name,
                                   const ArrowOptions& options) {
    const std::size_t count = columnLength(array, name);
    const fv::detail::ArrayImpl& strings = *fv::detail::Access::impl(array);
    const auto element = [&](std::size_t k) {
        const char16_t* text = nullptr;
        std::size_t length = 0;
        strings.getStringElement(k, text, length);
        return std::u16string_view(text, length); // no pointer: missing
    };
    auto parts = std::make_unique<ArrayParts>();
    const std::size_t missing =
        noteMissing(*parts, count, [&](std::size_t k) { return element(k).data() == nullptr; });
    const std::string format =
        fillTexts(*parts, count, options.wideOffsets, [&](std::string& text, std::size_t k) {
            try {
                text += fv::toUtf8(element(k));
            } catch (const std::range_error& error) {
                throw std::range_error(arrowPlace(name) + "entry " + std::to_string(k) + ": " + error.what());
            }
        });
    return {makeSchema(format, name), makeArray(std::move(parts), count, missing, 3)};
}

/// Codes of 32 bits into the names that the elements have, in the order in which they come.
inline ExportedArrow exportMembers(const fv::Array& array, const std::string& name,
                                   const ArrowOptions& options) {
    const std::size_t count = columnLength(array, name);
    const auto& members = static_cast<const data::impl::EnumArrayImpl&>(*fv::detail::Access::impl(array));
    const auto member = [&](std::size_t k) { return std::string_view(members.getEnumNameAt(k)); };

    auto parts = std::make_unique<ArrayParts>();
    const std::size_t missing = noteMissing(*parts, count, [&](std::size_t k) { return member(k).empty(); });
    std::vector<std::string_view> names;
    std::unordered_map<std::string_view, std::int32_t> codes;
    parts->numbers.resize(count);
    for (std::size_t k = 0; k < count; ++k) {
        if (!member(k).empty()) {
            const auto [found, isNew] = codes.try_emplace(member(k), static_cast<std::int32_t>(names.size()));
            if (isNew) {
                names.push_back(found->first);
            }
            parts->numbers[k] = found->second;
        }
    }
    parts->buffers[1] = parts->numbers.data();

    auto dictionary = std::make_unique<ArrayParts>();
    const std::string format =
        fillTexts(*dictionary, names.size(), options.wideOffsets, [&](std::string& text, std::size_t k) {
            try {
                fv::fromUtf8(names[k]); // names of members are any bytes, Arrow's texts are UTF-8
            } catch (const std::range_error& error) {
                throw std::range_error(arrowPlace(name) + "a member: " + error.what());
            }
            text += names[k];
        });
    auto schema = std::make_unique<SchemaParts>();
    schema->format = "i";
    schema->name = name;
    schema->dictionary = makeSchema(format, "");
    parts->dictionary = makeArray(std::move(dictionary), names.size(), 0, 3);
    return {makeSchema(std::move(schema), true), makeArray(std::move(parts), count, missing, 2)};
}

inline ExportedArrow exportAny(const fv::Array& array, const std::string& name, const ArrowOptions& options);

/// A struct of columns: one record, whose fields are all of one length.
inline ExportedArrow exportColumns(const fv::StructArray& table, const std::string& name,
                                   const ArrowOptions& options) {
    if (table.getNumberOfElements() != 1) {
        throw std::invalid_argument(arrowPlace(name) + "a struct array of " + fv::dimensionText(table) +
                                    " records is no table, which is one record of columns");
    }
    auto schema = std::make_unique<SchemaParts>();
    auto parts = std::make_unique<ArrayParts>();
    std::int64_t length = 0;
    std::string first;
    for (const auto& identifier : table.getFieldNames()) {
        const std::string field = identifier.getString();
        ExportedArrow column = exportAny(table[0][field], field, options);
        if (parts->children.empty()) {
            length = column.array->length;
            first = field;
        } else if (column.array->length != length) {
            throw std::invalid_argument(arrowPlace(field) + std::to_string(column.array->length) +
                                        " entries, but '" + first + "' has " + std::to_string(length));
        }
        schema->children.push_back(std::move(column.schema));
        parts->children.push_back(std::move(column.array));
    }
    schema->format = "+s";
    schema->name = name;
    return {makeSchema(std::move(schema), false),
            makeArray(std::move(parts), static_cast<std::size_t>(length), 0, 1)};
}

inline ExportedArrow exportAny(const fv::Array& array, const std::string& name, const ArrowOptions& options) {
    const fv::ArrayType type = array.getType();
    if (type == fv::ArrayType::STRING) {
        return exportStrings(array, name, options);
    }
    if (type == fv::ArrayType::ENUM) {
        return exportMembers(array, name, options);
    }
    if (type == fv::ArrayType::STRUCT) {
        return exportColumns(array, name, options);
    }
    ExportedArrow made;
    fv::detail::withPrimitive(type, [&](auto tag) {
        using T = typename decltype(tag)::type;
        if constexpr (arrowLetter<T>() != 0) {
            made = exportNumbers<T>(array, name, options);
        }
    });
    if (!made.schema) {
        throw std::invalid_argument(arrowPlace(name) + "an array of kind " + fv::kindName(type) +
                                    " is no column");
    }
    return made;
}

/// A stream that gives a table at once. The columns are made when the stream is.
struct TableStream {
    ExportedArrow table;
    const char* lastError = nullptr;

    static TableStream& of(ArrowArrayStream* stream) {
        return *static_cast<TableStream*>(stream->private_data);
    }
    static int getSchema(ArrowArrayStream* stream, ArrowSchema* out) {
        TableStream& self = of(stream);
        try {
            copyOf(*self.table.schema.get()).moveTo(out);
            self.lastError = nullptr;
            return 0;
        } catch (const std::bad_alloc&) {
            self.lastError = "out of memory";
            return ENOMEM;
        }
    }
    static int getNext(ArrowArrayStream* stream, ArrowArray* out) {
        of(stream).table.array.moveTo(out); // released from the second time on
        return 0;
    }
    static const char* getLastError(ArrowArrayStream* stream) { return of(stream).lastError; }
    static void release(ArrowArrayStream* stream) {
        delete &of(stream);
        stream->release = nullptr;
    }
};

} // namespace detail

} // namespace vexa::interop
