// Writing a file variable by variable.
#pragma once

#include <foundation/vexadata/Array.hpp>
#include <vexa/storage/Error.hpp>

#include <filesystem>
#include <iosfwd>
#include <memory>
#include <string>

namespace vexa::storage {

/// Writes one variable after the other, so that only the one in hand needs to be in memory. One thread at a
/// time. All operations throw Error, std::bad_alloc and errors of the back-end; after one has thrown, the writer
/// can only be destroyed.
class VEXADATA_API Writer {
public:
    /// Begins a file. It gets its name in `finish`; a writer that is destroyed before removes what it has
    /// written (see `save` in Storage.hpp).
    explicit Writer(const std::filesystem::path& path);
    /// Writes to a stream, which is borrowed, must be in binary mode and outlives the writer.
    explicit Writer(std::ostream& stream);
    Writer(Writer&&) noexcept;
    Writer& operator=(Writer&&) noexcept;
    ~Writer();

    /// Writes a variable. A handle to an array that others share is kept until the writer goes, to know it when it
    /// comes again as another variable.
    /// @throws Error for a name that was there before, for one that is not UTF-8, and for handle objects
    void add(const std::string& name, const foundation::vexadata::Array& array);
    /// Writes the list of the variables. A file is then on the disk under its name, and the folder knows it.
    /// Nothing can be added afterwards.
    void finish();

private:
    struct [[gnu::visibility("hidden")]] State;
    std::unique_ptr<State> state_;
};

} // namespace vexa::storage
