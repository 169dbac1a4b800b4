// The elements of numeric arrays, out of the bytes of one variable: mapped, copied or converted, and the
// checksum of the variable on the way.
#pragma once

#include "Format.hpp"
#include "Output.hpp"
#include "Source.hpp"

#include <foundation/vexadata/Array.hpp>
#include <foundation/vexadata/ArrayFactory.hpp>
#include <vexa/storage/Storage.hpp>

#include <cstddef>
#include <memory>
#include <optional>
#include <vector>

namespace vexa::storage {

class Payloads {
public:
    /// For the `size` bytes from `begin` on, which are read once and in their order.
    Payloads(const Source& source, std::size_t begin, std::size_t size, const LoadOptions& options);

    /// An array of elements `type` over or from the bytes at `data`, as many as its elements have in the file.
    fv::Array dense(std::vector<std::size_t> dimensions, ArrayType type, data::MemoryLayout layout,
                    const TypedTag& typed, const unsigned char* data);
    /// Copies elements of the file.
    void copy(const TypedTag& typed, const unsigned char* data, std::size_t bytes, void* to);
    /// Compares the checksum of all bytes with the expected one, if the options say so.
    /// @throws Error
    void finish(std::uint64_t expected);

private:
    fv::Array mapped(std::vector<std::size_t>& dimensions, ArrayType type, data::MemoryLayout layout,
                     const unsigned char* data);
    void copyBytes(const unsigned char* data, std::size_t bytes, void* to);
    bool checksAlong() const noexcept;

    const Source& source_;
    std::size_t begin_;
    std::size_t size_;
    LoadOptions options_;
    std::optional<std::shared_ptr<unsigned char>> mapping_; // of the variable; null when it cannot be mapped
    bool isMapped_ = false;                                 // an array lies in it
    std::optional<Checksum> checksum_;
    const unsigned char* checked_; // up to where the checksum goes
};

} // namespace vexa::storage
