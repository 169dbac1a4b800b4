// Feeds bytes to vexadata::storage: once as they are, and once as the value of a variable in a file around
// them, so that checksums keep nothing out. An array comes out or an Error; an array is written again, and
// what is read of that is the same. Any other exception, and memory out of proportion, is a fault.
#include <foundation/vexadata/Array.hpp>
#include <vexa/storage/Reader.hpp>
#include <vexa/storage/Writer.hpp>

#include <xxhash.h>

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <optional>
#include <string>
#include <vector>

namespace {

namespace storage = vexa::storage;
using foundation::vexadata::Array;

[[noreturn]] void fail(const char* what) {
    std::fprintf(stderr, "fuzz_storage: %s\n", what);
    std::abort();
}

std::optional<Array> decoded(const void* data, std::size_t size) {
    try {
        return storage::decode(data, size);
    } catch (const storage::Error&) {
        return std::nullopt;
    }
}

/// What comes out must survive being written; marks of shared parts settle with the first time.
void writeAgain(const Array& array) {
    const std::vector<std::byte> first = storage::encode(array);
    const std::optional<Array> again = decoded(first.data(), first.size());
    if (!again) fail("what was written cannot be read");
    const std::vector<std::byte> second = storage::encode(*again);
    const std::optional<Array> once = decoded(second.data(), second.size());
    if (!once || storage::encode(*once) != second) fail("what was read is not what was written");
}

void openFile(const std::string& bytes) {
    try {
        const storage::Reader reader(bytes.data(), bytes.size(), nullptr);
        for (const storage::Variable& variable : reader.loadAll()) {
            reader.verify(variable.name);
        }
    } catch (const storage::Error&) {}
}

void putNumber(std::string& bytes, std::uint64_t number) {
    bytes.append(reinterpret_cast<const char*>(&number), sizeof number);
}
/// A file whose list is `bytes` behind one variable that is null: with the right checksum of the list.
std::string withList(const std::string& bytes) {
    std::string file("\xD9\xD9\xF7\x85\x68vexadata\x01\xBF\x61x\xF6\xFF", 19);
    const std::uint64_t place = file.size();
    file += bytes;
    file += "\x58\x28";
    putNumber(file, place);
    putNumber(file, bytes.size());
    putNumber(file, XXH3_64bits(bytes.data(), bytes.size()));
    putNumber(file, file.size() + 16);
    return file + "VEXACBOR";
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string bytes(reinterpret_cast<const char*>(data), size);
    openFile(bytes);
    openFile(withList(bytes));
    if (const std::optional<Array> array = decoded(data, size)) writeAgain(*array);
    return 0;
}
