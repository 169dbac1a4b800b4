#include "Listing.hpp"

#include "Encode.hpp"
#include "Lexer.hpp"

#include <algorithm>
#include <cstring>

namespace vexa::storage {

namespace {

constexpr std::size_t entryLength = 8;

void putEntry(Output& out, const Entry& entry) {
    putArray(out, entryLength);
    putText(out, entry.name);
    putText(out, nameOf(entry.type));
    putDimensions(out, entry.dimensions);
    putUnsigned(out, entry.offset);
    putUnsigned(out, entry.size);
    putUnsigned(out, entry.checksum);
    putUnsigned(out, entry.firstShared);
    if (entry.same) {
        putUnsigned(out, *entry.same);
    } else {
        putNull(out);
    }
}

} // namespace

void putEnd(Output& out, const std::vector<Entry>& entries) {
    out.take(cbor_encode_break(out.room(1), 1)); // ends the map of the variables
    Trailer trailer{out.position(), 0, 0, 0, endMark};
    out.beginChecksum();
    putArray(out, entries.size());
    for (const Entry& entry : entries) {
        putEntry(out, entry);
    }
    trailer.listSize = out.position() - trailer.listOffset;
    trailer.listChecksum = out.checksum();
    // Files that are put one behind the other keep their alignment: the length is a multiple of it.
    constexpr std::size_t head = 2; // of a byte string of 24 to 255 bytes
    const std::uint64_t end = out.position() + head + sizeof trailer;
    const std::size_t zeros = (alignment - end % alignment) % alignment;
    trailer.fileSize = end + zeros;
    putBytesHead(out, zeros + sizeof trailer);
    std::fill_n(out.room(zeros), zeros, static_cast<unsigned char>(0));
    out.take(zeros);
    out.write(&trailer, sizeof trailer);
    out.flush();
}

namespace {

[[noreturn]] void fail(const Source& source, std::uint64_t offset, std::string_view message) {
    throw Error(source.name(), offset, message);
}

bool beginsLikeOurs(const Source& source) {
    return source.size() >= versionPlace && std::memcmp(source.data(), opening.data(), versionPlace) == 0;
}

/// The trailer of the file that ends at `end`.
Trailer readTrailer(const Source& source, std::size_t end) {
    Trailer trailer{};
    const bool isLong = end >= opening.size() + sizeof trailer;
    if (isLong) {
        std::memcpy(&trailer, source.data() + end - sizeof trailer, sizeof trailer);
    }
    if (!isLong || trailer.mark != endMark) {
        const char* const what = beginsLikeOurs(source)
                                     ? "expected the mark at the end of the file, which is not whole"
                                     : "expected a file of vexadata, found another";
        fail(source, isLong ? end - endMark.size() : end, what);
    }
    if (trailer.fileSize > end || trailer.fileSize < opening.size() + sizeof trailer ||
        trailer.listOffset < opening.size() || trailer.listOffset > trailer.fileSize ||
        trailer.listSize > trailer.fileSize - trailer.listOffset) {
        fail(source, end - sizeof trailer, "expected the place of the list, found one outside of the file");
    }
    return trailer;
}

void requireOpening(const Source& source, std::size_t begin) {
    const unsigned char* const bytes = source.data() + begin;
    if (std::memcmp(bytes, opening.data(), versionPlace) != 0) {
        fail(source, begin, "expected the beginning of a file of vexadata");
    }
    if (bytes[versionPlace] != opening[versionPlace]) {
        fail(source, begin + versionPlace, "expected version 1 of the format, found another");
    }
}

std::vector<std::size_t> readExtents(Lexer& lexer) {
    std::vector<std::size_t> extents;
    for (std::size_t n = lexer.expectList("dimensions"); n > 0; --n) {
        extents.push_back(lexer.expectUnsigned("a dimension"));
    }
    return extents;
}

Entry readEntry(Lexer& lexer) {
    const std::size_t place = lexer.position();
    if (lexer.expectList("an entry of the list") != entryLength) {
        lexer.failAt(place, "expected an entry of eight items");
    }
    Entry entry{};
    entry.name = lexer.expect(Token::Kind::text, "the name of a variable").text();
    const Token kind = lexer.expect(Token::Kind::text, "the name of a kind of array");
    const auto [type, isKnown] = typeNamed(kind.text());
    if (!isKnown) {
        lexer.fail(kind, "the name of a kind of array");
    }
    entry.type = type;
    entry.dimensions = readExtents(lexer);
    entry.offset = lexer.expectUnsigned("an offset");
    entry.size = lexer.expectUnsigned("a size");
    entry.checksum = lexer.expectUnsigned("a checksum");
    entry.firstShared = lexer.expectUnsigned("the number of a shared value");
    const Token same = lexer.next();
    if (same.kind == Token::Kind::unsignedNumber) {
        entry.same = same.value;
    } else if (same.kind != Token::Kind::null) {
        lexer.fail(same, "the place of a variable");
    }
    return entry;
}

/// Variables lie one behind the other, so that no byte is loaded twice.
void requireOrder(const Lexer& lexer, const std::vector<Entry>& before, const Entry& entry,
                  std::uint64_t end) {
    const std::uint64_t least = before.empty() ? opening.size() : before.back().offset + before.back().size;
    if (entry.offset < least || entry.offset > end || entry.size > end - entry.offset) {
        lexer.failAt(lexer.position(), "expected before the place of a variable behind the last one");
    }
    if (entry.same && (*entry.same >= before.size() || before[*entry.same].same)) {
        lexer.failAt(lexer.position(), "expected before the place of an earlier variable");
    }
}

Segment readSegment(const Source& source, std::size_t end) {
    const Trailer trailer = readTrailer(source, end);
    Segment segment{end - trailer.fileSize, {}};
    requireOpening(source, segment.begin);
    const std::size_t place = segment.begin + trailer.listOffset;
    const unsigned char* const list = source.data() + place;
    if (Checksum::of(list, trailer.listSize) != trailer.listChecksum) {
        fail(source, place, "expected the list that was written, found another: the checksum differs");
    }
    Lexer lexer(source.name(), list, trailer.listSize, place);
    for (std::size_t n = lexer.expectList("the list of the variables"); n > 0; --n) {
        Entry entry = readEntry(lexer);
        requireOrder(lexer, segment.entries, entry, trailer.listOffset);
        segment.entries.push_back(std::move(entry));
    }
    return segment;
}

} // namespace

std::vector<Segment> readSegments(const Source& source) {
    std::vector<Segment> segments;
    std::size_t end = source.size();
    do {
        segments.push_back(readSegment(source, end));
        end = segments.back().begin;
    } while (end != 0);
    std::reverse(segments.begin(), segments.end());
    return segments;
}

} // namespace vexa::storage
