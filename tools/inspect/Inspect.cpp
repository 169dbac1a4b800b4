#include "Inspect.hpp"

#include "SavedFile.hpp"
#include "Text.hpp"

namespace vexa::inspect {

namespace {

std::string heading(const Table& table) {
    return counted(table.rows, "row") + ", " + counted(table.variables.size(), "variable");
}

} // namespace

Dataset load(Source& source, const Options& options, Progress& progress, MemoryBudget& budget) {
    Chunks chunks(source, progress, options.encoding);
    const std::string_view head = chunks.first();
    if (isSavedFile(chunks.bytes())) return readSavedFile(chunks, options.checkAll, budget);
    if (isMatrixMarket(head)) return readMatrix(chunks, head, budget);
    return readTable(chunks, head, options.delimiter, budget);
}

std::string heading(const Dataset& data) {
    return std::visit([](const auto& contents) { return heading(contents); }, data);
}

std::string describe(const Dataset& data, MemoryBudget& budget) {
    return std::visit([&](const auto& contents) { return describe(contents, budget); }, data);
}

} // namespace vexa::inspect
