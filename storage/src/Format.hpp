// Numbers and names of the format, which docs/format.md describes.
#pragma once

#include <foundation/vexadata/ArrayType.hpp>
#include <foundation/vexadata/Traits.hpp>

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <utility>

namespace vexa::storage {

namespace fv = foundation::vexadata;
using fv::ArrayType;

static_assert(__BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__, "elements go into files as they lie in memory");

namespace tag {

// RFC 8746
constexpr std::uint64_t rowMajor = 40;
constexpr std::uint64_t columnMajor = 1040;
constexpr std::uint64_t homogeneous = 41;
constexpr std::uint64_t firstTyped = 64;
constexpr std::uint64_t lastTyped = 87;
constexpr std::uint64_t uint16Typed = 69;
constexpr std::uint64_t uint64Typed = 71;
// The registry of CBOR tags
constexpr std::uint64_t shareable = 28;
constexpr std::uint64_t reference = 29;
constexpr std::uint64_t complexNumber = 43000;
constexpr std::uint64_t complexNumbers = 43001;
// RFC 8949
constexpr std::uint64_t selfDescribed = 55799;

} // namespace tag

/// What the bytes under a tag from 64 to 87 are.
struct TypedTag {
    ArrayType type = ArrayType::UNKNOWN; ///< UNKNOWN for a tag that has no kind of array
    std::size_t size = 0;                ///< of an element in the file
    bool isBigEndian = false;
    bool isHalf = false;
};
TypedTag typedTag(std::uint64_t number) noexcept;
/// The tag of little-endian elements of a real type, or of the parts of a complex one.
std::uint64_t tagOf(ArrayType type) noexcept;
/// The type of the parts of a complex type; any other as it is.
constexpr ArrayType partOf(ArrayType type) noexcept {
    const bool isComplex = type >= ArrayType::COMPLEX_DOUBLE && type <= ArrayType::COMPLEX_UINT64;
    return isComplex ? static_cast<ArrayType>(static_cast<std::int32_t>(type) - 10) : type;
}
constexpr bool isComplex(ArrayType type) noexcept { return partOf(type) != type; }

/// What the list of a file calls a kind of array; empty for a value that is no kind.
std::string_view nameOf(ArrayType type) noexcept;
/// UNKNOWN for a name that is none; "empty" is the name of UNKNOWN.
std::pair<ArrayType, bool> typeNamed(std::string_view name) noexcept;

/// Elements of as many bytes or more begin at multiples of `alignment` in the file.
constexpr std::size_t leastAligned = 4096;
constexpr std::size_t alignment = 64;

/// Superclasses one above the other, and ways from a class up to superclasses, as files may have.
constexpr int mostSuperclasses = 100;
constexpr std::size_t mostWaysUp = 10'000;

/// How a file begins: the tag 55799, an array of five, the name of the format, its version, a map without length.
constexpr std::array<unsigned char, 15> opening{0xD9, 0xD9, 0xF7, 0x85, 0x68, 'v', 'e', 'x',
                                                'a',  'd',  'a',  't',  'a',  1,   0xBF};
constexpr std::size_t versionPlace = 13;

/// How it ends: the last bytes of its last item, which is a byte string.
struct Trailer {
    std::uint64_t listOffset; ///< from the first byte of `opening`, like all offsets in a file
    std::uint64_t listSize;
    std::uint64_t listChecksum;
    std::uint64_t fileSize;
    std::array<char, 8> mark;
};
constexpr std::array<char, 8> endMark{'V', 'E', 'X', 'A', 'C', 'B', 'O', 'R'};
static_assert(sizeof(Trailer) == 40);

} // namespace vexa::storage
