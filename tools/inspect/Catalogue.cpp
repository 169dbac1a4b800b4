#include "Catalogue.hpp"

#include "InputError.hpp"
#include "Table.hpp"
#include "Text.hpp"
#include "TextTable.hpp"
#include "Variable.hpp"

#include <foundation/vexadata/StructArray.hpp>
#include <vexa/interop/FieldNames.hpp>

#include <algorithm>
#include <filesystem>

namespace vexa::inspect {

using foundation::vexadata::Array;
using foundation::vexadata::ArrayType;
using foundation::vexadata::PrintOptions;
using foundation::vexadata::StructArray;

namespace {

Array contentsOf(const Dataset& data) {
    const Matrix* matrix = std::get_if<Matrix>(&data);
    return matrix != nullptr ? matrix->array : Array(std::get<Table>(data).columns);
}

std::string stemOf(const std::string& file) {
    return file == "-" ? "input" : std::filesystem::path(file).stem().string();
}

bool isTable(const Array& array) {
    return array.getType() == ArrayType::STRUCT && array.getNumberOfElements() == 1;
}

std::vector<std::string> fieldsOf(const Array& array) {
    std::vector<std::string> names;
    for (const auto& field : StructArray(array).getFieldNames())
        names.push_back(field.getString());
    return names;
}

void addRow(TextTable& table, const std::string& name, const Array& array) {
    table.addRow({name, kindName(array.getType()), dimensionText(array), std::to_string(bytesOf(array))});
}

/// No less than printing takes: lines, their pieces, and texts with every unit escaped and padded to one
/// width. Of columns a tenth of the threshold would do.
std::uint64_t bytesToPrint(const Array& array, const PrintOptions& options) {
    constexpr std::uint64_t perLine = 250;
    constexpr std::uint64_t perUnit = 20;
    constexpr std::uint64_t longestEscape = 6; // "\u202e"
    if (isTable(array)) {
        std::uint64_t bytes = 0;
        const StructArray columns = array;
        for (const auto& column : columns[0])
            bytes += perLine + bytesToPrint(column, options);
        return bytes;
    }
    const std::size_t count = storedElements(array);
    const std::size_t shown = count > options.threshold ? 2 * options.edge + 1 : count;
    const bool text = array.getType() == ArrayType::STRING;
    const std::uint64_t units = text ? std::min<std::uint64_t>(shown * options.width, bytesOf(array) / 2) : 0;
    return (perLine + (text ? longestEscape * options.width : 0)) * (shown + 1) + perUnit * units;
}

} // namespace

Catalogue::Catalogue(std::vector<Entry> entries) {
    std::vector<std::string> stems;
    std::vector<Array> values;
    for (const Entry& entry : entries) {
        stems.push_back(stemOf(entry.file));
        values.push_back(contentsOf(entry.data));
    }
    const std::vector<std::string> names = interop::fieldNames(stems);
    std::vector<const char*> texts;
    for (std::size_t k = 0; k < names.size(); ++k) {
        texts.push_back(names[k].c_str());
        noteLosses(names[k], entries[k].data);
        std::visit([this](auto& contents) { memory_.push_back(std::move(contents.memory)); },
                   entries[k].data);
    }
    engine_.workspace().setVariables(std::move(texts), std::move(values));
}

void Catalogue::noteLosses(const std::string& variable, const Dataset& data) {
    const auto note = [this](const std::string& name, const Losses& losses) {
        const std::string text = textOf(losses);
        if (!text.empty()) notes_.push_back({name, "note: " + name + ": " + text + "\n"});
    };
    if (const Matrix* matrix = std::get_if<Matrix>(&data)) {
        note(variable, matrix->losses);
        return;
    }
    for (const Variable& column : std::get<Table>(data).variables)
        note(variable + "." + column.field, column.losses);
}

/// Those of a variable with those of its columns.
std::string Catalogue::notesOn(const std::string& name) const {
    std::string text;
    for (const Note& note : notes_)
        if (note.name == name || note.name.starts_with(name + ".")) text += note.text;
    return text;
}

std::string Catalogue::list() const {
    using enum TextTable::Align;
    TextTable table({left, left, right, right});
    table.addRow({"name", "class", "dimensions", "bytes"});
    for (const std::string& name : engine_.workspace().getVariableNames()) {
        const Array variable = engine_.workspace().getVariable(name.c_str());
        addRow(table, name, variable);
        if (!isTable(variable)) continue;
        const StructArray columns = variable;
        for (const std::string& field : fieldsOf(variable))
            addRow(table, name + "." + field, columns[0][field]);
    }
    std::string notes;
    for (const Note& note : notes_)
        notes += note.text;
    return table.str() + (notes.empty() ? "" : "\n" + notes);
}

std::string Catalogue::show(const std::string& name, const PrintOptions& options,
                            MemoryBudget& budget) const {
    const Array value = find(name);
    MemoryShare text(budget);
    text.take(bytesToPrint(value, options));
    return name + ": " + toText(value, options) + "\n" + notesOn(name);
}

Array Catalogue::find(const std::string& name) const {
    const std::size_t dot = std::min(name.find('.'), name.size());
    const std::string variable = name.substr(0, dot);
    const std::vector<std::string> names = engine_.workspace().getVariableNames();
    if (std::find(names.begin(), names.end(), variable) == names.end())
        throw InputError("there is no variable \"" + printable(variable, longestName) +
                         "\"; --list shows all");
    const Array value = engine_.workspace().getVariable(variable.c_str());
    if (dot == name.size()) return value;

    const std::string field = name.substr(dot + 1);
    if (!isTable(value)) throw InputError("the variable \"" + variable + "\" has no columns");
    const std::vector<std::string> fields = fieldsOf(value);
    if (std::find(fields.begin(), fields.end(), field) == fields.end())
        throw InputError("the variable \"" + variable + "\" has no column \"" +
                         printable(field, longestName) + "\"; --list shows all");
    return StructArray(value)[0][field];
}

} // namespace vexa::inspect
