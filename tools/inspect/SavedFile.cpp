#include "SavedFile.hpp"

#include "GrowingBuffer.hpp"
#include "InputError.hpp"
#include "Variable.hpp"

#if VEXA_INSPECT_HAS_STORAGE
#    include <vexa/storage/Reader.hpp>
#    include <vexa/storage/Writer.hpp>
#endif

#include <filesystem>
#include <memory>
#include <optional>
#include <system_error>
#include <utility>

namespace vexa::inspect {

namespace {

constexpr std::string_view selfDescribedCbor = "\xD9\xD9\xF7";

} // namespace

bool isSavedFile(std::string_view head) noexcept { return head.starts_with(selfDescribedCbor); }

#if VEXA_INSPECT_HAS_STORAGE

using foundation::vexadata::ArrayType;

namespace {

/// Does `task`; errors of the library become InputErrors, which do not name the file.
template <class Task>
auto withInputErrors(Task task) {
    try {
        return task();
    } catch (const storage::Error& error) {
        // What the error says begins with the file and ": ".
        throw InputError(std::string(error.what()).substr(error.file().size() + 2));
    }
}

/// The bytes of a pipe, as long as somebody reads them.
struct Bytes {
    GrowingBuffer<char>::Storage data;
    MemoryShare memory;
};

storage::Reader readToEnd(Chunks& chunks, MemoryBudget& budget) {
    GrowingBuffer<char> buffer(budget);
    for (std::string_view bytes = chunks.bytes(); !bytes.empty(); bytes = chunks.nextBytes())
        buffer.append(bytes.data(), bytes.size());
    const std::size_t size = buffer.size();
    MemoryShare memory(budget);
    auto data = buffer.release(memory);
    const auto owner = std::make_shared<const Bytes>(Bytes{std::move(data), std::move(memory)});
    return {owner->data.get(), size, owner};
}

bool isHolder(ArrayType type) {
    return type == ArrayType::CELL || type == ArrayType::STRUCT || type == ArrayType::OBJECT ||
           type == ArrayType::VALUE_OBJECT;
}

/// Memory for a variable that holds no others, before it is loaded: its bytes, those of texts twice.
std::uint64_t bytesToLoad(const storage::VariableDescription& variable, bool mapped) {
    constexpr std::uint64_t perVariable = 1200; // names, the array, a line of text
    std::uint64_t bytes = perVariable + variable.name.size();
    if (isHolder(variable.type)) return bytes; // not known yet
    if (isNumeric(variable.type)) return bytes + (mapped ? 0 : variable.size);
    return bytes + 2 * variable.size;
}

} // namespace

Saved readSavedFile(Chunks& chunks, bool checkAll, MemoryBudget& budget) {
    return withInputErrors([&] {
        // By its descriptor: the name may lead elsewhere by now.
        const std::optional<std::string> path = chunks.pathOfWholeFile();
        const storage::Reader reader = path ? storage::Reader(*path) : readToEnd(chunks, budget);
        Saved saved{{}, MemoryShare(budget)};
        for (const auto& variable : reader.variables())
            saved.memory.take(bytesToLoad(variable, path.has_value()));
        const storage::LoadOptions options{storage::Placement::mapped,
                                           checkAll ? storage::Check::always : storage::Check::whenRead};
        for (storage::Variable& variable : reader.loadAll(options)) {
            if (isHolder(variable.array.getType()))
                saved.memory.take(bytesHeldInMemory(variable.array, path.has_value()));
            saved.variables.push_back({std::move(variable.name), std::move(variable.array)});
        }
        return saved;
    });
}

std::string whyNotSavable(const std::string& path) {
    if (std::filesystem::path(path).extension() == ".cbor") return {};
    return "expected a name that ends in .cbor, found '" + path + "'";
}

std::uint64_t writeSavedFile(const std::string& path, const std::vector<NamedArray>& variables) {
    return withInputErrors([&] {
        storage::Writer writer{std::filesystem::path(path)};
        for (const NamedArray& variable : variables)
            writer.add(variable.name, variable.array);
        writer.finish();
        std::error_code ignored;
        return static_cast<std::uint64_t>(std::filesystem::file_size(path, ignored));
    });
}

#else

namespace {

constexpr const char* without =
    "this vexa-inspect was built without vexadata::storage, which reads and writes saved arrays";

} // namespace

Saved readSavedFile(Chunks&, bool, MemoryBudget&) { throw InputError(without); }
std::string whyNotSavable(const std::string&) { return without; }
std::uint64_t writeSavedFile(const std::string&, const std::vector<NamedArray>&) {
    throw InputError(without);
}

#endif

} // namespace vexa::inspect
