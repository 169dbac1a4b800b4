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
using foundation::vexadata::TypedArray;

namespace {

std::string stemOf(const std::string& file) {
    return file == "-" ? "input" : std::filesystem::path(file).stem().string();
}

void addRow(TextTable& table, const std::string& name, const Array& array) {
    table.addRow({printable(name, longestName + 1 + longestName), kindName(array.getType()),
                  dimensionText(array), std::to_string(bytesOf(array))});
}

/// How many of `count` elements are printed when more than `most` are cut.
std::size_t shownOf(std::size_t count, std::size_t most, const PrintOptions& options) {
    return count > most ? std::min(count, 2 * options.edge + 1) : count;
}

/// Takes no less than printing does: lines, their pieces, and texts with every unit escaped and padded to one
/// width. Of arrays in others a tenth of the threshold would do.
void takeToPrint(MemoryShare& memory, const Array& array, const PrintOptions& options,
                 std::size_t level = 0) {
    constexpr std::uint64_t perLine = 250;
    constexpr std::uint64_t perUnit = 20;
    constexpr std::uint64_t longestEscape = 6; // "\u202e"
    memory.take(perLine);
    if (level > options.depth) return;
    if (array.getType() == ArrayType::STRUCT) {
        const StructArray records = array;
        std::size_t left = shownOf(array.getNumberOfElements(), options.mostItems, options);
        for (auto record = records.begin(); left != 0; ++record, --left)
            for (const auto& field : *record)
                takeToPrint(memory, field, options, level + 1);
        return;
    }
    if (array.getType() == ArrayType::CELL) {
        const TypedArray<Array> cells = array;
        std::size_t left = shownOf(array.getNumberOfElements(), options.mostItems, options);
        for (auto cell = cells.begin(); left != 0; ++cell, --left)
            takeToPrint(memory, *cell, options, level + 1);
        return;
    }
    if (array.getType() == ArrayType::UNKNOWN) return;
    if (array.getType() == ArrayType::CHAR) {
        memory.take((perUnit + longestEscape) * array.getNumberOfElements());
        return;
    }
    const std::size_t shown = shownOf(storedElements(array), options.threshold, options);
    const bool text = array.getType() == ArrayType::STRING;
    const std::uint64_t units = text ? std::min<std::uint64_t>(shown * options.width, bytesOf(array) / 2) : 0;
    memory.take((perLine + (text ? longestEscape * options.width : 0)) * (shown + 1) + perUnit * units);
}

} // namespace

Catalogue::Catalogue(std::vector<Entry> entries) {
    std::vector<std::string> stems;
    std::vector<Array> values;
    for (const Entry& entry : entries) {
        if (const auto* table = std::get_if<Table>(&entry.data)) {
            stems.push_back(stemOf(entry.file));
            values.emplace_back(table->columns);
        } else if (const auto* matrix = std::get_if<Matrix>(&entry.data)) {
            stems.push_back(stemOf(entry.file));
            values.push_back(matrix->array);
        } else {
            for (const NamedArray& variable : std::get<Saved>(entry.data).variables) {
                stems.push_back(variable.name);
                values.push_back(variable.array);
            }
        }
    }
    names_ = interop::fieldNames(stems);
    std::size_t next = 0;
    for (Entry& entry : entries) {
        const Saved* saved = std::get_if<Saved>(&entry.data);
        if (saved == nullptr) noteLosses(names_[next], entry.data);
        next += saved == nullptr ? 1 : saved->variables.size();
        std::visit([this](auto& contents) { memory_.push_back(std::move(contents.memory)); }, entry.data);
    }
    std::vector<const char*> texts;
    for (const std::string& name : names_)
        texts.push_back(name.c_str());
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
    takeToPrint(text, value, options);
    return printable(name) + ": " + toText(value, options) + "\n" + notesOn(name);
}

std::vector<NamedArray> Catalogue::variables() const {
    std::vector<NamedArray> all;
    for (const std::string& name : names_)
        all.push_back({name, engine_.workspace().getVariable(name.c_str())});
    return all;
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
