// String arrays and text in character arrays.

#include "Check.hpp"
#include "Samples.hpp"

#include <foundation/vexadata/CharArray.hpp>
#include <foundation/vexadata/Exception.hpp>
#include <vexa/testing/FailingAllocations.hpp>

namespace vexa::check {

namespace {

Owned<ArrayImpl> strings(const Backend& backend, const Dimensions& dimensions = {2, 2}) {
    return backend.array(ArrayType::STRING, dimensions);
}

void startMissing(Backend& backend) {
    for (const Dimensions& dimensions : {Dimensions{1, 1}, {2, 2}, {2, 3, 4}, {1, 300}}) {
        const auto array = strings(backend, dimensions);
        expectContents("a new string array", *array, Contents(array->getNumberOfElements(), "missing"));
    }
}

/// Lengths around every power of two that a length may be kept in, long ones cut short again.
void holdsTexts(Backend& backend) {
    for (const std::size_t middle : {1U, 4U, 8U, 16U, 32U, 128U, 256U, 1024U, 32768U, 65536U})
        for (const std::size_t length : {middle - 1, middle, middle + 1}) {
            const auto array = strings(backend);
            std::u16string text;
            for (std::size_t k = 0; k < length; ++k)
                text.push_back(static_cast<char16_t>(k % 5 == 4 ? 0 : 0x3b1 + k % 700));
            setString(asStrings(*array), 1, fv::String(u"short"));
            setString(asStrings(*array), 3, fv::String(text));
            setString(asStrings(*array), 2, fv::String(text + u"!"));
            const std::string what = "a string array with a text of " + show(length) + " units";
            expectContents(what, *array, {"missing", "\"short\"", show(text + u"!"), show(text)});
            setString(asStrings(*array), 3, fv::String(u"s"));
            setString(asStrings(*array), 1, fv::String(text));
            expectContents(what + " in place of a short one", *array,
                           {"missing", show(text), show(text + u"!"), "\"s\""});
            const auto copy = adopt(array->sharedCopy(), "sharedCopy");
            expectContents("a copy of " + what, *copy, {"missing", show(text), show(text + u"!"), "\"s\""});
        }
}

/// Long and short ones in place of each other, again and again.
void manyWrites(Backend& backend) {
    auto array = strings(backend, {1, 40});
    Contents wanted(40, "missing");
    std::size_t random = 1;
    Owned<ArrayImpl> copy;
    Contents ofCopy;
    for (std::size_t number = 0; number < 3000; ++number) {
        random = random * 6364136223846793005U + 1442695040888963407U;
        const std::size_t k = (random >> 33) % 40;
        const auto text = textAt(number % 5 == 0 ? extreme : counting, (random >> 40) % 1000);
        setString(asStrings(*array), k, text);
        wanted[k] = text ? show(*text) : "missing";
        if (number % 100 == 0) {
            expectContents("a string array after " + show(number + 1) + " writes", *array, wanted);
            if (copy != nullptr)
                expectContents("a copy of a string array that was written on", *copy, ofCopy);
            copy = adopt(array->sharedCopy(), "sharedCopy");
            ofCopy = wanted;
        }
    }
    expectContents("a string array after 3000 writes", *array, wanted);
}

/// Long ones in place of long ones: what was there takes no memory any more, or not for long.
void overwrittenTexts(Backend& backend) {
    testing::FailingAllocations::start();
    const auto array = strings(backend, {1, 4});
    const auto bytesAfter = [&](std::size_t times) {
        for (std::size_t number = 0; number < times; ++number)
            setString(asStrings(*array), number % 4, fv::String(std::u16string(900 + number % 100, u'x')));
        return testing::FailingAllocations::liveBytes();
    };
    const auto before = bytesAfter(100);
    const auto after = bytesAfter(3000);
    testing::FailingAllocations::stop();
    expect(after < before + 200000, "a string array of four texts takes " + show(after - before) +
                                        " bytes more after 3000 of 2 KB each were written over each other");
}

void emptyIsNotMissing(Backend& backend) {
    const auto array = strings(backend);
    setString(asStrings(*array), 0, fv::String(u""));
    setString(asStrings(*array), 1, fv::String(u"abc"));
    setString(asStrings(*array), 1, fv::String());
    setString(asStrings(*array), 2, fv::String(std::u16string(50, u'l')));
    setString(asStrings(*array), 2, fv::String());
    setString(asStrings(*array), 3, fv::String());
    setString(asStrings(*array), 3, fv::String(u""));
    const Contents wanted{"\"\"", "missing", "missing", "\"\""};
    expectContents("a string array with empty texts, and some that are missing again", *array, wanted);
    const auto other = strings(backend);
    expect(!array->isEqual(other.get()) && !other->isEqual(array.get()),
           "isEqual of a string array with empty texts and one with missing ones is true");
}

/// All texts of an array, lent at once.
void lendsTexts(Backend& backend) {
    eachSubject(backend, {true, true, false, false}, [&](Subject& subject) {
        if (subject.model.sample().name != "string") return;
        const std::size_t count = subject.model.size();
        std::vector<const char16_t*> texts(count);
        std::vector<std::size_t> lengths(count, 12345);
        for (std::size_t k = 0; k < count; ++k)
            subject.array->getStringElement(k, texts[k], lengths[k]);
        const auto another = make(backend, subject.model.sample(), {2, 2}, extreme);
        expectContents("another array", *another,
                       Model(backend, subject.model.sample(), extreme, {2, 2}).contents());
        for (std::size_t k = 0; k < count; ++k)
            expectEqual("text " + show(k) + " of a " + subject.what + ", lent together with all others",
                        texts[k] == nullptr ? "missing" : show(std::u16string(texts[k], lengths[k])),
                        subject.model.contents()[k]);
    });
}

/// With the sign of each byte, whatever stood there before.
void narrowText(Backend& backend) {
    const auto array = strings(backend);
    array->unshare();
    std::string every;
    std::u16string widened;
    for (int byte = 0; byte < 256; ++byte) {
        every.push_back(static_cast<char>(byte));
        widened.push_back(static_cast<char16_t>(static_cast<signed char>(byte)));
    }
    array->setString(2, {}, "plain");
    array->setString(1, {}, every);
    array->setString(3, {}, "");
    expectContents("a string array after setString", *array, {"missing", show(widened), "\"plain\"", "\"\""});
    const auto copy = adopt(array->sharedCopy(), "sharedCopy");
    array->unshare();
    array->setString(2, {}, "other");
    expectContents("a copy after setString", *copy, {"missing", show(widened), "\"plain\"", "\"\""});
}

void narrowed(Backend& backend) {
    const auto array = strings(backend, {1, 6});
    std::u16string every;
    std::string ascii;
    for (int unit = 0; unit < 128; ++unit) {
        every.push_back(static_cast<char16_t>(unit));
        ascii.push_back(static_cast<char>(unit));
    }
    setString(asStrings(*array), 0, fv::String(u"plain"));
    setString(asStrings(*array), 1, fv::String(u"\u00e9"));
    setString(asStrings(*array), 3, fv::String(every));
    setString(asStrings(*array), 4, fv::String(u"last \x80"));
    setString(asStrings(*array), 5, fv::String(std::u16string(u"\u0141x")));
    expectEqual("castToString of a text", array->castToString(0, {}), "plain");
    expectEqual("castToString of a missing string", array->castToString(2, {}), "");
    expectEqual("castToString of a text with all of ASCII", array->castToString(3, {}), ascii);
    for (const std::size_t k : {1U, 4U, 5U})
        expectThrows<fv::NonAsciiCharInRequestedAsciiOutputException>(
            "castToString of a text with a unit above 127", "NonAsciiCharInRequestedAsciiOutputException",
            [&] { array->castToString(k, {}); });
}

void characters(Backend& backend) {
    auto array = filled<char16_t>(backend, {2, 3});
    for (std::size_t k = 0; k < 6; ++k)
        write(*array, k, u"abcdef"[k]);
    const fv::CharArray text{fv::Array(array.detach())};
    expectEqual("toUTF16 of a char array", text.toUTF16(), u"abcdef");
    expectEqual("toAscii of a char array", text.toAscii(), "abcdef");
}

/// In place of optional objects, strings may give null.
void typedAccess(Backend& backend) {
    const auto array = strings(backend);
    setString(asStrings(*array), 1, fv::String(u"abc"));
    const fv::String* element = asStrings(*array).getElementAddress(1, {}, false);
    expect(element == nullptr || *element == fv::String(u"abc"),
           "getElementAddress(1) of a string array is another text");
    const fv::String* first = asStrings(*array).getTypedDataPtr();
    expect(first == nullptr || first[1] == fv::String(u"abc"),
           "getTypedDataPtr of a string array shows another text");
    ReferenceImpl* chain = array->createElementReference(1, {}, false);
    if (chain != nullptr) chain->release();
    expect(chain == nullptr, "createElementReference of a string array is not null");
}

} // namespace

void addTextChecks(Checks& checks) {
    Family text(checks, "text");
    const std::string element =
        "getStringElement fills in the first unit of a text and the number of units (slot 23)";
    text.add("new strings are missing",
             "createArrayImpl makes an array of missing strings (slot 2 of the factory)", {"string"},
             startMissing);
    text.add("strings hold texts of any length", element, {"string"}, holdsTexts);
    text.add("many writes", "setStringElement stores an element (slot 40)", {"string"}, manyWrites);
    text.add("texts that were written over",
             "setStringElement stores an element in place of another (slot 40)", {"string"},
             overwrittenTexts);
    text.add("an empty text is not missing", "getStringElement gives null for a missing element (slot 23)",
             {"string"}, emptyIsNotMissing);
    text.add("texts are lent together", "a text is valid until the array is changed (slot 23)", {"string"},
             lendsTexts);
    text.add("setString widens", "setString widens each byte with its sign (slot 20)", {"string"},
             narrowText);
    text.add("castToString narrows", "castToString narrows a text, or throws for a unit above 127 (slot 19)",
             {"string"}, narrowed);
    text.add("typed access", "null from arrays that do not store optional objects (slots 39, 41)", {"string"},
             typedAccess);
    text.add("a char array is one text", "elements lie side by side (slot 41)", {"char"}, characters);
}

} // namespace vexa::check
