// What goes wrong with files of arrays.
#pragma once

#include <foundation/vexadata/Exception.hpp>

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

namespace vexa::storage {

/// A file, stream or block of memory could not be written, or does not hold what it should. The one error of
/// this library's own; errors of the back-end that makes the arrays of a file come out as this one too, with
/// the place in the file. `std::bad_alloc` stays what it is. Copies share the text, which lives as long as any
/// of them.
class VEXADATA_API Error final : public foundation::vexadata::Exception {
public:
    /// The offset of an error that has no place in the bytes.
    static constexpr std::uint64_t nowhere = ~std::uint64_t{0};

    /// @throws std::bad_alloc
    Error(std::string file, std::uint64_t offset, std::string_view message);
    Error(const Error&) = default;
    Error& operator=(const Error&) = default;
    ~Error() override;

    /// One line: "prices.cbor: byte 1024: expected the elements of an array, found the tag 99"; without an
    /// offset "prices.cbor: cannot write: No space left on device".
    const char* what() const noexcept override;
    /// The path as it was given; "stream" or "memory" where there is none.
    const std::string& file() const noexcept;
    /// Place in the file, in bytes from 0, or `nowhere`.
    std::uint64_t offset() const noexcept;

private:
    struct [[gnu::visibility("hidden")]] Content;
    std::shared_ptr<const Content> content_;
};

} // namespace vexa::storage
