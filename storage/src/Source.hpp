// The bytes of a file: mapped for reading, or in memory.
#pragma once

#include "Descriptor.hpp"

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <iosfwd>
#include <memory>
#include <string>
#include <vector>

namespace vexa::storage {

/// All bytes of a file, valid as long as this lives. Constant; any number of threads.
class Source {
public:
    /// Maps a regular file; reads any other to its end.
    explicit Source(const std::filesystem::path& path);
    explicit Source(std::istream& stream);
    Source(const void* data, std::size_t size, std::shared_ptr<const void> owner);

    const std::string& name() const noexcept { return name_; }
    const unsigned char* data() const noexcept { return data_; }
    std::size_t size() const noexcept { return size_; }
    /// Copies bytes to elsewhere, out of the file itself when it is mapped: no page of the mapping is touched.
    /// @throws Error
    void copy(std::size_t offset, void* to, std::size_t size) const;
    /// Maps a part of the file for writing, privately. Null when it is no mapped file, or cannot be mapped once
    /// more. The result leads to the byte at `offset`.
    std::shared_ptr<unsigned char> mapPrivately(std::size_t offset, std::size_t size) const;

private:
    void map();
    void readToEnd();

    std::string name_;
    Descriptor file_; // of a mapped file
    const unsigned char* data_ = nullptr;
    std::size_t size_ = 0;
    std::shared_ptr<const void> owner_;
};

} // namespace vexa::storage
