#include "Inspect.hpp"

#include "Text.hpp"

namespace vexa::inspect {

namespace {

std::string heading(const Table& table) {
    return counted(table.rows, "row") + ", " + counted(table.variables.size(), "variable");
}

} // namespace

Dataset load(Source& source, const Options& options, Progress& progress) {
    Chunks chunks(source, progress);
    const std::string_view head = chunks.first();
    if (isMatrixMarket(head)) return readMatrix(chunks, head, options.maxMemory);
    return readTable(chunks, head, options.delimiter, options.maxMemory);
}

std::string heading(const Dataset& data) {
    return std::visit([](const auto& contents) { return heading(contents); }, data);
}

std::string describe(const Dataset& data) {
    return std::visit([](const auto& contents) { return describe(contents); }, data);
}

} // namespace vexa::inspect
