#include "Lexer.hpp"

#include <vexa/storage/Error.hpp>

#include <cbor.h>

namespace vexa::storage {

namespace {

using Kind = Token::Kind;

Token& token(void* context) { return *static_cast<Token*>(context); }

template <Kind kind, class Number>
void number(void* context, Number value) {
    token(context).kind = kind;
    token(context).value = value;
}
template <Kind kind, class Number>
void floating(void* context, Number value) {
    token(context).kind = kind;
    token(context).number = value;
}
template <Kind kind>
void string(void* context, cbor_data data, std::size_t size) {
    token(context).kind = kind;
    token(context).data = data;
    token(context).value = size;
}
template <Kind kind>
void simple(void* context) {
    token(context).kind = kind;
}

constexpr cbor_callbacks makeCallbacks() {
    cbor_callbacks c{};
    c.uint8 = number<Kind::unsignedNumber, std::uint8_t>;
    c.uint16 = number<Kind::unsignedNumber, std::uint16_t>;
    c.uint32 = number<Kind::unsignedNumber, std::uint32_t>;
    c.uint64 = number<Kind::unsignedNumber, std::uint64_t>;
    c.negint8 = number<Kind::negativeNumber, std::uint8_t>;
    c.negint16 = number<Kind::negativeNumber, std::uint16_t>;
    c.negint32 = number<Kind::negativeNumber, std::uint32_t>;
    c.negint64 = number<Kind::negativeNumber, std::uint64_t>;
    c.byte_string = string<Kind::bytes>;
    c.string = string<Kind::text>;
    c.array_start = number<Kind::list, std::size_t>;
    c.map_start = number<Kind::map, std::size_t>;
    c.tag = number<Kind::tag, std::uint64_t>;
    c.boolean = number<Kind::boolean, bool>;
    c.null = simple<Kind::null>;
    c.float2 = floating<Kind::single, float>;
    c.float4 = floating<Kind::single, float>;
    c.float8 = floating<Kind::real, double>;
    c.byte_string_start = simple<Kind::other>;
    c.string_start = simple<Kind::other>;
    c.indef_array_start = simple<Kind::other>;
    c.indef_map_start = simple<Kind::other>;
    c.undefined = simple<Kind::other>;
    c.indef_break = simple<Kind::other>;
    return c;
}
constexpr cbor_callbacks callbacks = makeCallbacks();

std::string describe(const Token& found) {
    switch (found.kind) {
    case Kind::unsignedNumber:
        return "the number " + std::to_string(found.value);
    case Kind::negativeNumber:
        return "a negative number";
    case Kind::bytes:
        return "a byte string";
    case Kind::text:
        return "a text";
    case Kind::list:
        return "a list of " + std::to_string(found.value);
    case Kind::map:
        return "a map";
    case Kind::tag:
        return "the tag " + std::to_string(found.value);
    case Kind::boolean:
        return "a logical value";
    case Kind::null:
        return "null";
    case Kind::single:
    case Kind::real:
        return "a floating-point number";
    case Kind::other:
        break;
    }
    return "an item without length or value";
}

} // namespace

Token Lexer::next() {
    Token result;
    result.offset = position_;
    const cbor_decoder_result decoded =
        cbor_stream_decode(data_ + position_, remaining(), &callbacks, &result);
    if (decoded.status == CBOR_DECODER_NEDATA) {
        failAt(position_, "expected an item of CBOR, found the end of the bytes in it");
    }
    if (decoded.status != CBOR_DECODER_FINISHED) {
        failAt(position_, "expected an item of CBOR, found a byte that begins none");
    }
    position_ += decoded.read;
    return result;
}

Token Lexer::expect(Token::Kind kind, const char* expected) {
    const Token found = next();
    if (found.kind != kind) {
        fail(found, expected);
    }
    return found;
}

std::size_t Lexer::expectList(const char* expected) {
    const Token list = expect(Kind::list, expected);
    if (list.value > remaining()) {
        failAt(list.offset,
               std::string("expected ") + expected + ", found a length beyond the bytes that follow");
    }
    return list.value;
}
std::size_t Lexer::expectMap(const char* expected) { return expect(Kind::map, expected).value; }
std::uint64_t Lexer::expectUnsigned(const char* expected) {
    return expect(Kind::unsignedNumber, expected).value;
}

void Lexer::expectText(const char* text) {
    const Token found = next();
    if (found.kind != Kind::text || found.text() != text) {
        fail(found, std::string("the text \"") + text + '"');
    }
}

std::string Lexer::expectName(const char* expected) {
    const Token found = next();
    if (found.kind != Kind::text && found.kind != Kind::bytes) {
        fail(found, expected);
    }
    return std::string(found.text());
}

void Lexer::fail(const Token& found, std::string_view expected) const {
    failAt(found.offset, "expected " + std::string(expected) + ", found " + describe(found));
}
void Lexer::failAt(std::size_t position, std::string_view message) const {
    throw Error(file_, place_ + position, message);
}

} // namespace vexa::storage
