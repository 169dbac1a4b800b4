// Single items of CBOR, by libcbor's encoder, in an output.
#pragma once

#include "Format.hpp"
#include "Output.hpp"

#include <cbor.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace vexa::storage {

/// No head of an item is longer.
inline constexpr std::size_t longestHead = 9;

inline void putUnsigned(Output& out, std::uint64_t value) {
    out.take(cbor_encode_uint(value, out.room(longestHead), longestHead));
}
inline void putArray(Output& out, std::size_t count) {
    out.take(cbor_encode_array_start(count, out.room(longestHead), longestHead));
}
inline void putMap(Output& out, std::size_t count) {
    out.take(cbor_encode_map_start(count, out.room(longestHead), longestHead));
}
inline void putTag(Output& out, std::uint64_t number) {
    out.take(cbor_encode_tag(number, out.room(longestHead), longestHead));
}
inline void putBytesHead(Output& out, std::size_t count) {
    out.take(cbor_encode_bytestring_start(count, out.room(longestHead), longestHead));
}
inline void putNull(Output& out) { out.take(cbor_encode_null(out.room(1), 1)); }
inline void putBool(Output& out, bool value) { out.take(cbor_encode_bool(value, out.room(1), 1)); }

/// Text that is UTF-8.
void putText(Output& out, std::string_view text);
/// Text if the bytes are UTF-8, else a byte string.
void putName(Output& out, std::string_view name);
/// Writes text if the units are well-formed UTF-16; else false, and nothing.
bool putUtf16IfText(Output& out, std::u16string_view text);
/// Text if the units are well-formed UTF-16, else the units as a typed array.
void putUtf16(Output& out, std::u16string_view text);

/// A list of dimensions.
void putDimensions(Output& out, const std::vector<std::size_t>& dimensions);
/// The head of a typed array: tag and length.
void putTypedHead(Output& out, ArrayType type, std::size_t bytes);
/// What comes before the bytes of a numeric array. Those of a large one will begin at a multiple of `alignment`.
void putNumbersHead(Output& out, bool isRowMajor, const std::vector<std::size_t>& dimensions, ArrayType type,
                    std::size_t bytes);
/// A list of true and false.
void putBooleans(Output& out, const bool* values, std::size_t count);

} // namespace vexa::storage
