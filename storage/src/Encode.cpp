#include "Encode.hpp"

#include <foundation/vexadata/Utf8.hpp>

#include <algorithm>
#include <optional>
#include <stdexcept>

namespace vexa::storage {

namespace {

bool isAscii(std::string_view text) noexcept {
    return std::all_of(text.begin(), text.end(), [](char unit) { return (unit & 0x80) == 0; });
}
bool isUtf8(std::string_view text) {
    if (isAscii(text)) {
        return true;
    }
    try {
        return !fv::fromUtf8(text).empty();
    } catch (const std::range_error&) {
        return false;
    }
}
std::optional<std::string> utf8Of(std::u16string_view text) {
    try {
        return fv::toUtf8(text);
    } catch (const std::range_error&) {
        return std::nullopt;
    }
}

/// A short text of ASCII needs no text in between.
bool putShortAscii(Output& out, std::u16string_view text) {
    if (text.size() > Output::mostRoom - longestHead) {
        return false;
    }
    unsigned char* const room = out.room(Output::mostRoom);
    const std::size_t head = cbor_encode_string_start(text.size(), room, longestHead);
    char16_t all = 0;
    for (std::size_t k = 0; k < text.size(); ++k) {
        all |= text[k];
        room[head + k] = static_cast<unsigned char>(text[k]);
    }
    const bool isAscii = all < 0x80;
    out.take(isAscii ? head + text.size() : 0);
    return isAscii;
}

/// Bytes of an item before it is known where they go.
class Head {
public:
    void unsignedNumber(std::uint64_t value) {
        bytes_.resize(bytes_.size() + longestHead);
        unsigned char* const end = bytes_.data() + bytes_.size() - longestHead;
        cut(cbor_encode_uint(value, end, longestHead));
    }
    void list(std::size_t count) { add(cbor_encode_array_start, count); }
    void tag(std::uint64_t number) { add(cbor_encode_tag, number); }
    void byteString(std::size_t count) { add(cbor_encode_bytestring_start, count); }
    const std::vector<unsigned char>& bytes() const noexcept { return bytes_; }

private:
    template <class Encode>
    void add(Encode encode, std::uint64_t number) {
        bytes_.resize(bytes_.size() + longestHead);
        cut(encode(number, bytes_.data() + bytes_.size() - longestHead, longestHead));
    }
    void cut(std::size_t used) { bytes_.resize(bytes_.size() - longestHead + used); }

    std::vector<unsigned char> bytes_;
};

/// The tag 55799, which says that what follows is CBOR and nothing more, three bytes at a time.
void putPadding(Output& out, std::size_t bytes) {
    for (; bytes >= 3; bytes -= 3) {
        putTag(out, tag::selfDescribed);
    }
}
/// The head of an array of two, which may take one byte, two or three.
void putPairHead(Output& out, std::size_t surplus) {
    unsigned char* const room = out.room(3);
    room[0] = surplus == 0 ? 0x82 : surplus == 1 ? 0x98 : 0x99;
    room[1] = surplus == 1 ? 2 : 0;
    room[2] = 2;
    out.take(1 + surplus);
}

} // namespace

void putText(Output& out, std::string_view text) {
    out.take(cbor_encode_string_start(text.size(), out.room(longestHead), longestHead));
    out.write(text.data(), text.size());
}

void putName(Output& out, std::string_view name) {
    if (isUtf8(name)) {
        putText(out, name);
    } else {
        putBytesHead(out, name.size());
        out.write(name.data(), name.size());
    }
}

bool putUtf16IfText(Output& out, std::u16string_view text) {
    if (putShortAscii(out, text)) {
        return true;
    }
    const std::optional<std::string> utf8 = utf8Of(text);
    if (utf8) {
        putText(out, *utf8);
    }
    return utf8.has_value();
}

void putUtf16(Output& out, std::u16string_view text) {
    if (!putUtf16IfText(out, text)) {
        putTypedHead(out, ArrayType::CHAR, text.size() * sizeof(char16_t));
        out.write(text.data(), text.size() * sizeof(char16_t));
    }
}

void putDimensions(Output& out, const std::vector<std::size_t>& dimensions) {
    putArray(out, dimensions.size());
    for (const std::size_t extent : dimensions) {
        putUnsigned(out, extent);
    }
}

void putTypedHead(Output& out, ArrayType type, std::size_t bytes) {
    if (isComplex(type)) {
        putTag(out, tag::complexNumbers);
    }
    putTag(out, tagOf(type));
    putBytesHead(out, bytes);
}

void putNumbersHead(Output& out, bool isRowMajor, const std::vector<std::size_t>& dimensions, ArrayType type,
                    std::size_t bytes) {
    const std::uint64_t order = isRowMajor ? tag::rowMajor : tag::columnMajor;
    if (bytes < leastAligned) {
        putTag(out, order);
        putArray(out, 2);
        putDimensions(out, dimensions);
        putTypedHead(out, type, bytes);
        return;
    }
    Head head;
    head.list(dimensions.size());
    for (const std::size_t extent : dimensions) {
        head.unsignedNumber(extent);
    }
    if (isComplex(type)) {
        head.tag(tag::complexNumbers);
    }
    head.tag(tagOf(type));
    head.byteString(bytes);
    constexpr std::size_t pairHead = 1;
    const std::size_t orderTag = isRowMajor ? 2 : 3;
    const std::uint64_t end = out.position() + orderTag + pairHead + head.bytes().size();
    const std::size_t padding = (alignment - end % alignment) % alignment;
    putPadding(out, padding);
    putTag(out, order);
    putPairHead(out, padding % 3);
    out.write(head.bytes().data(), head.bytes().size());
}

void putBooleans(Output& out, const bool* values, std::size_t count) {
    putTag(out, tag::homogeneous);
    putArray(out, count);
    while (count != 0) {
        const std::size_t some = std::min(count, Output::mostRoom);
        unsigned char* const room = out.room(some);
        std::transform(values, values + some, room,
                       [](bool value) { return static_cast<unsigned char>(value ? 0xF5 : 0xF4); });
        out.take(some);
        values += some;
        count -= some;
    }
}

} // namespace vexa::storage
