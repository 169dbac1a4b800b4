#include "ArrayWriter.hpp"

#include <vexa/storage/Reader.hpp>
#include <vexa/storage/Storage.hpp>
#include <vexa/storage/Writer.hpp>

#include <istream>
#include <utility>

namespace vexa::storage {

namespace {

/// `target` is a path or a stream.
template <class Target>
void saveTo(Target& target, const fv::Array& array) {
    Writer writer(target);
    writer.add(singleName, array);
    writer.finish();
}
template <class Target>
void saveTo(Target& target, const std::vector<Variable>& variables) {
    Writer writer(target);
    for (const Variable& variable : variables) {
        writer.add(variable.name, variable.array);
    }
    writer.finish();
}

fv::Array onlyOne(const Reader& reader, const std::string& file, const LoadOptions& options) {
    const auto& variables = reader.variables();
    if (variables.size() != 1) {
        throw Error(file, Error::nowhere, "expected one variable, found " + std::to_string(variables.size()));
    }
    return reader.load(variables.front().name, options);
}

} // namespace

void save(const std::filesystem::path& path, const fv::Array& array) { saveTo(path, array); }
void save(const std::filesystem::path& path, const std::vector<Variable>& variables) {
    saveTo(path, variables);
}
void save(std::ostream& stream, const fv::Array& array) { saveTo(stream, array); }
void save(std::ostream& stream, const std::vector<Variable>& variables) { saveTo(stream, variables); }

fv::Array load(const std::filesystem::path& path, const LoadOptions& options) {
    return onlyOne(Reader(path), path.string(), options);
}
fv::Array load(std::istream& stream, const LoadOptions& options) {
    return onlyOne(Reader(stream), "stream", options);
}
std::vector<Variable> loadAll(const std::filesystem::path& path, const LoadOptions& options) {
    return Reader(path).loadAll(options);
}
std::vector<Variable> loadAll(std::istream& stream, const LoadOptions& options) {
    return Reader(stream).loadAll(options);
}

std::vector<std::byte> encode(const fv::Array& array) {
    std::vector<std::byte> bytes;
    const std::unique_ptr<Sink> sink = memorySink(bytes);
    Output out(*sink);
    ArrayWriter(out, "the array").write(array);
    out.flush();
    return bytes;
}

} // namespace vexa::storage
