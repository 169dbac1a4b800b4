#include "Catalogue.hpp"

#include "InputError.hpp"
#include "Table.hpp"
#include "Text.hpp"
#include "TextTable.hpp"
#include "Variable.hpp"

#include <foundation/vexadata/StructArray.hpp>

#include <algorithm>
#include <filesystem>

namespace vexa::inspect {

using foundation::vexadata::Array;
using foundation::vexadata::ArrayType;
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

} // namespace

Catalogue::Catalogue(std::vector<Entry> entries) {
    std::vector<std::string> stems;
    std::vector<Array> values;
    for (const Entry& entry : entries) {
        stems.push_back(stemOf(entry.file));
        values.push_back(contentsOf(entry.data));
    }
    const std::vector<std::string> names = fieldNames(stems);
    std::vector<const char*> texts;
    for (const std::string& name : names)
        texts.push_back(name.c_str());
    engine_.workspace().setVariables(std::move(texts), std::move(values));
}

std::string Catalogue::list() const {
    using enum TextTable::Align;
    TextTable table({left, left, right, right});
    table.addRow({"name", "class", "dimensions", "bytes"});
    for (const std::string& name : engine_.workspace().getVariableNames()) {
        const Array variable = find(name);
        addRow(table, name, variable);
        if (!isTable(variable)) continue;
        const StructArray columns = variable;
        for (const std::string& field : fieldsOf(variable))
            addRow(table, name + "." + field, columns[0][field]);
    }
    return table.str();
}

std::string Catalogue::show(const std::string& name,
                            const foundation::vexadata::PrintOptions& options) const {
    return name + ": " + toText(find(name), options) + "\n";
}

Array Catalogue::find(const std::string& name) const {
    const std::size_t dot = std::min(name.find('.'), name.size());
    const std::string variable = name.substr(0, dot);
    const std::vector<std::string> names = engine_.workspace().getVariableNames();
    if (std::find(names.begin(), names.end(), variable) == names.end())
        throw InputError("there is no variable \"" + variable + "\"; --list shows all");
    const Array value = engine_.workspace().getVariable(variable.c_str());
    if (dot == name.size()) return value;

    const std::string field = name.substr(dot + 1);
    if (!isTable(value)) throw InputError("the variable \"" + variable + "\" has no columns");
    const std::vector<std::string> fields = fieldsOf(value);
    if (std::find(fields.begin(), fields.end(), field) == fields.end())
        throw InputError("the variable \"" + variable + "\" has no column \"" + field +
                         "\"; --list shows all");
    return StructArray(value)[0][field];
}

} // namespace vexa::inspect
