// The items of CBOR one after the other, by libcbor's streaming decoder.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace vexa::storage {

/// The head of an item. Texts and byte strings come whole.
struct Token {
    enum class Kind {
        unsignedNumber, ///< value
        negativeNumber, ///< -1 - value
        bytes,          ///< data, value many
        text,           ///< data, value many bytes
        list,           ///< value many items follow
        map,            ///< value many pairs of items follow
        tag,            ///< value; one item follows
        boolean,        ///< value is 0 or 1
        null,
        single, ///< number
        real,   ///< number
        other   ///< undefined, a break, or an item without a length
    };
    Kind kind = Kind::other;
    std::uint64_t value = 0;
    double number = 0;
    const unsigned char* data = nullptr;
    std::size_t offset = 0; ///< where the item begins, from the first byte that the lexer got

    std::string_view text() const noexcept { return {reinterpret_cast<const char*>(data), value}; }
};

/// Reads items from bytes, which are borrowed. All operations but the first two throw Error.
class Lexer {
public:
    /// `place` is the offset of the first byte in the file, for errors.
    Lexer(std::string file, const unsigned char* data, std::size_t size, std::uint64_t place = 0) noexcept
        : file_(std::move(file)), data_(data), size_(size), place_(place) {}

    std::size_t position() const noexcept { return position_; }
    std::size_t remaining() const noexcept { return size_ - position_; }

    Token next();
    bool nextIsNull() const noexcept { return remaining() != 0 && data_[position_] == 0xF6; }
    /// The next item, which must be of this kind; `expected` names what it is for.
    Token expect(Token::Kind kind, const char* expected);
    /// The length of a list that has one, of at most as many items as there are bytes left.
    std::size_t expectList(const char* expected);
    std::size_t expectMap(const char* expected);
    std::uint64_t expectUnsigned(const char* expected);
    /// The next item is this text.
    void expectText(const char* text);
    /// Text or a byte string.
    std::string expectName(const char* expected);

    /// "expected EXPECTED, found a text" at the item.
    [[noreturn]] void fail(const Token& found, std::string_view expected) const;
    [[noreturn]] void failAt(std::size_t position, std::string_view message) const;

private:
    std::string file_;
    const unsigned char* data_;
    std::size_t size_;
    std::uint64_t place_;
    std::size_t position_ = 0;
};

} // namespace vexa::storage
