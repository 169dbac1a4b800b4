#include "ArrayReader.hpp"

#include <utility>

namespace vexa::storage {

using Kind = Token::Kind;
using data::MemoryLayout;

ReadFrame::~ReadFrame() = default;

ArrayReader::ArrayReader(Lexer& lexer, Payloads& payloads, std::uint64_t firstShared)
    : lexer_(lexer),
      payloads_(payloads),
      firstShared_(firstShared),
      mostProperties_(lexer.remaining() + (std::size_t{1} << 16U)) {}

fv::Array ArrayReader::read() {
    Result result = begin();
    while (!frames_.empty()) {
        ReadFrame& top = *frames_.back();
        if (result.index() != 0) {
            top.take(std::exchange(result, {}));
        }
        if (!top.isComplete()) {
            result = top.next(*this);
            continue;
        }
        result = top.finish(*this);
        if (const auto* object = std::get_if<fv::ValueObject>(&result)) {
            setShared(top.shared(), *object);
        } else {
            setShared(top.shared(), std::get<fv::Array>(result));
        }
        frames_.pop_back();
    }
    return std::get<fv::Array>(result);
}

Result ArrayReader::begin() {
    SharedPlace shared;
    Token token = lexer_.next();
    while (token.kind == Kind::tag && (token.value == tag::selfDescribed || token.value == tag::shareable)) {
        if (token.value == tag::shareable) {
            if (shared) {
                lexer_.fail(token, "a value that is marked as shared once");
            }
            shared = addShared();
        }
        token = lexer_.next();
    }
    Result result = token.kind == Kind::tag ? beginTagged(token, shared) : beginPlain(token, shared);
    if (const auto* array = std::get_if<fv::Array>(&result)) {
        setShared(shared, *array);
    }
    return result;
}

Result ArrayReader::beginTagged(const Token& token, const SharedPlace& shared) {
    switch (token.value) {
    case tag::reference:
        return referred<fv::Array>(token, "an array");
    case tag::rowMajor:
        return beginShaped(MemoryLayout::ROW_MAJOR, shared);
    case tag::columnMajor:
        return beginShaped(MemoryLayout::COLUMN_MAJOR, shared);
    case tag::complexNumber:
        return readComplexNumber(*this);
    default:
        return readTyped(*this, token, std::nullopt, MemoryLayout::COLUMN_MAJOR);
    }
}

Result ArrayReader::beginPlain(const Token& token, const SharedPlace& shared) {
    switch (token.kind) {
    case Kind::null:
        return fv::Array();
    case Kind::text:
        return readText(*this, token);
    case Kind::map:
        return beginMap(token, shared);
    case Kind::list:
        announce(token);
        push(beginCells(*this, {{token.value, 1}, token.value}, MemoryLayout::COLUMN_MAJOR, shared));
        return {};
    default:
        return readNumber(*this, token);
    }
}

Result ArrayReader::beginShaped(MemoryLayout layout, const SharedPlace& shared) {
    const Token pair = lexer_.expect(Kind::list, "dimensions and elements");
    if (pair.value != 2) {
        lexer_.fail(pair, "dimensions and elements");
    }
    Size size = readDimensions();
    const Token elements = lexer_.next();
    if (elements.kind == Kind::tag && elements.value == tag::homogeneous) {
        return readBooleans(*this, std::move(size), layout);
    }
    if (elements.kind == Kind::tag) {
        return readTyped(*this, elements, std::move(size), layout);
    }
    if (elements.kind != Kind::list || elements.value != size.count) {
        lexer_.fail(elements, "the " + std::to_string(size.count) + " elements of an array");
    }
    announce(elements);
    push(beginCells(*this, std::move(size), layout, shared));
    return {};
}

Result ArrayReader::beginMap(const Token& map, const SharedPlace& shared) {
    lexer_.expectText("kind");
    const Token name = lexer_.expect(Kind::text, "the name of a kind of array");
    const auto [type, isKnown] = typeNamed(name.text());
    const auto require = [&](std::size_t least, std::size_t most) {
        if (map.value < least || map.value > most) {
            lexer_.failAt(map.offset, "expected a map of " + std::to_string(least) +
                                          " entries, found one of " + std::to_string(map.value));
        }
    };
    switch (type) {
    case ArrayType::CHAR:
        return require(2, 2), readChars(*this);
    case ArrayType::STRING:
        return require(3, 3), readStrings(*this);
    case ArrayType::ENUM:
        return require(4, 4), readEnum(*this);
    case ArrayType::SPARSE_LOGICAL:
    case ArrayType::SPARSE_DOUBLE:
    case ArrayType::SPARSE_COMPLEX_DOUBLE:
        return require(5, 5), readSparse(*this, type);
    case ArrayType::STRUCT:
        require(4, 4);
        push(beginStructs(*this, shared));
        return {};
    case ArrayType::OBJECT:
    case ArrayType::VALUE_OBJECT:
        require(5, 6);
        push(beginObjects(*this, type, map.value, shared));
        return {};
    default:
        lexer_.failAt(name.offset, "expected the name of a kind that has a map, found \"" +
                                       std::string(name.text().substr(0, 40)) + '"');
    }
}

SharedPlace ArrayReader::addShared() {
    shared_.emplace_back();
    return shared_.size() - 1;
}
void ArrayReader::setShared(const SharedPlace& place, Shared value) {
    if (place) {
        shared_[*place] = std::move(value);
    }
}

void ArrayReader::expectItems(std::size_t count, const char* expected) {
    const Token list = lexer_.expect(Kind::list, expected);
    if (list.value != count) {
        lexer_.fail(list, "a list of " + std::to_string(count));
    }
    announce(list);
}

void ArrayReader::announce(const Token& list) {
    // Every item that is still to come takes a byte.
    if (pending_ > lexer_.remaining() || list.value > lexer_.remaining() - pending_) {
        lexer_.failAt(list.offset, "expected a list, found one of " + std::to_string(list.value) +
                                       " items, for which there are too few bytes");
    }
    pending_ += list.value;
}

Size ArrayReader::readDimensions() {
    const std::size_t offset = lexer_.position();
    Size size{{}, 1};
    for (std::size_t rank = lexer_.expectList("dimensions"); rank > 0; --rank) {
        size.dimensions.push_back(lexer_.expectUnsigned("a dimension"));
        if (__builtin_mul_overflow(size.count, size.dimensions.back(), &size.count)) {
            lexer_.failAt(offset, "expected dimensions whose product fits in 64 bits");
        }
    }
    if (size.dimensions.empty()) {
        lexer_.failAt(offset, "expected dimensions, found none");
    }
    if (size.dimensions.size() == 1) {
        size.dimensions.push_back(1);
    }
    return size;
}
Size ArrayReader::expectSize() {
    lexer_.expectText("size");
    return readDimensions();
}

void ArrayReader::charge(std::size_t properties) {
    properties_ += properties;
    if (properties_ > mostProperties_) {
        lexer_.failAt(lexer_.position(), "expected fewer properties than bytes, found classes with more");
    }
}

void ArrayReader::unknownTag(const Token& tag) const {
    lexer_.failAt(tag.offset, "expected an array, found the tag " + std::to_string(tag.value) +
                                  ", which this version does not know");
}

} // namespace vexa::storage
