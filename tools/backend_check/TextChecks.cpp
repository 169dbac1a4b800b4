// String arrays and text in character arrays.

#include "Check.hpp"
#include "Samples.hpp"

#include <foundation/vexadata/CharArray.hpp>
#include <foundation/vexadata/Exception.hpp>

namespace vexa::check {

namespace {

using Contents = std::vector<std::string>;

Owned<ArrayImpl> strings(const Backend& backend) { return backend.array(ArrayType::STRING, {2, 2}); }

void startMissing(Backend& backend) {
    const auto array = strings(backend);
    expectContents("a new string array", *array, Contents(4, "missing"));
}

void holdsTexts(Backend& backend) {
    const std::u16string longText(300, u'\u00e9');
    const auto array = strings(backend);
    setString(asStrings(*array), 3, fv::String(u"abc"));
    setString(asStrings(*array), 1, fv::String(longText));
    setString(asStrings(*array), 0, fv::String(std::u16string(u"a\0b", 3)));
    expectContents("a string array", *array,
                   {show(std::u16string(u"a\0b", 3)), show(longText), "missing", "\"abc\""});
    setString(asStrings(*array), 1, fv::String(u"short"));
    expectContents("a string array of which one was replaced", *array,
                   {show(std::u16string(u"a\0b", 3)), "\"short\"", "missing", "\"abc\""});
}

void emptyIsNotMissing(Backend& backend) {
    const auto array = strings(backend);
    setString(asStrings(*array), 0, fv::String(u""));
    setString(asStrings(*array), 1, fv::String(u"abc"));
    setString(asStrings(*array), 1, fv::String());
    expectContents("a string array with an empty text, and one that is missing again", *array,
                   {"\"\"", "missing", "missing", "missing"});
}

void narrowText(Backend& backend) {
    const auto array = strings(backend);
    array->unshare();
    array->setString(2, {}, "plain");
    array->setString(1, {}, "\xe9");
    expectContents("a string array after setString", *array,
                   {"missing", "\"\\uffe9\"", "\"plain\"", "missing"});
}

void narrowed(Backend& backend) {
    const auto array = strings(backend);
    setString(asStrings(*array), 0, fv::String(u"plain"));
    setString(asStrings(*array), 1, fv::String(u"\u00e9"));
    expectEqual("castToString of a text", array->castToString(0, {}), "plain");
    expectEqual("castToString of a missing string", array->castToString(2, {}), "");
    expectThrows<fv::NonAsciiCharInRequestedAsciiOutputException>(
        "castToString of a text with U+00E9", "NonAsciiCharInRequestedAsciiOutputException",
        [&] { array->castToString(1, {}); });
}

void characters(Backend& backend) {
    auto array = filled<char16_t>(backend, {2, 3});
    for (std::size_t k = 0; k < 6; ++k)
        write(*array, k, u"abcdef"[k]);
    const fv::CharArray text{fv::Array(array.release())};
    expectEqual("toUTF16 of a char array", text.toUTF16(), u"abcdef");
    expectEqual("toAscii of a char array", text.toAscii(), "abcdef");
}

} // namespace

void addTextChecks(Checks& checks) {
    Family text(checks, "text");
    text.add("new strings are missing", {"string"}, startMissing);
    text.add("strings hold texts of any length", {"string"}, holdsTexts);
    text.add("an empty text is not missing", {"string"}, emptyIsNotMissing);
    text.add("setString widens", {"string"}, narrowText);
    text.add("castToString narrows", {"string"}, narrowed);
    text.add("a char array is one text", {"char"}, characters);
}

} // namespace vexa::check
