// Strings and enumerations.
#include "ArrayReader.hpp"

#include <foundation/vexadata/Utf8.hpp>
#include <vexa/data/impl/StringArrayImpl.hpp>

#include <algorithm>
#include <cstring>
#include <stdexcept>
#include <utility>

namespace vexa::storage {

using Kind = Token::Kind;

namespace {

std::u16string textOf(ArrayReader& reader, const Token& text) {
    const std::string_view bytes = text.text();
    if (std::all_of(bytes.begin(), bytes.end(), [](char unit) { return (unit & 0x80) == 0; })) {
        return {bytes.begin(), bytes.end()};
    }
    try {
        return fv::fromUtf8(bytes);
    } catch (const std::range_error& error) {
        reader.lexer().failAt(text.offset, error.what());
    }
}

/// Units that are no text.
std::u16string unitsOf(ArrayReader& reader, const Token& tag) {
    const Token bytes = reader.lexer().expect(Kind::bytes, "the units of a string");
    if (tag.value != tag::uint16Typed || bytes.value % sizeof(char16_t) != 0) {
        reader.lexer().fail(tag, "the units of a string");
    }
    std::u16string units(bytes.value / sizeof(char16_t), u'\0');
    std::memcpy(units.data(), bytes.data, bytes.value);
    return units;
}

} // namespace

fv::Array readStrings(ArrayReader& reader) {
    Size size = reader.expectSize();
    reader.lexer().expectText("values");
    reader.expectItems(size.count, "a list of strings");
    fv::TypedArray<fv::String> strings = reader.factory().createArray<fv::String>(std::move(size.dimensions));
    auto& impl = static_cast<data::impl::StringArrayImpl&>(*fv::detail::Access::impl(strings));
    for (std::size_t k = 0; k < size.count; ++k, reader.itemCame()) {
        const Token item = reader.lexer().next();
        if (item.kind == Kind::text) {
            impl.setStringElement(k, {}, textOf(reader, item));
        } else if (item.kind == Kind::tag) {
            impl.setStringElement(k, {}, unitsOf(reader, item));
        } else if (item.kind != Kind::null) { // missing, as new elements are
            reader.lexer().fail(item, "a string");
        }
    }
    return strings;
}

fv::Array readEnum(ArrayReader& reader) {
    Size size = reader.expectSize();
    reader.lexer().expectText("class");
    std::string className = reader.lexer().expectName("the name of a class");
    reader.lexer().expectText("values");
    reader.expectItems(size.count, "a list of members");
    std::vector<std::string> members;
    for (std::size_t k = 0; k < size.count; ++k, reader.itemCame()) {
        members.push_back(reader.lexer().expectName("the name of a member"));
    }
    if (std::all_of(members.begin(), members.end(), [](const std::string& name) { return name.empty(); })) {
        members.clear(); // elements that nobody has set
    }
    return reader.factory().createEnumArray(std::move(size.dimensions), std::move(className),
                                            std::move(members));
}

} // namespace vexa::storage
