#include "Saved.hpp"

#include "Matrix.hpp"
#include "Table.hpp"
#include "Text.hpp"
#include "Variable.hpp"

#include <foundation/vexadata/ArrayFactory.hpp>
#include <foundation/vexadata/Print.hpp>
#include <vexa/interop/FieldNames.hpp>

#include <utility>

namespace vexa::inspect {

using foundation::vexadata::Array;
using foundation::vexadata::ArrayFactory;
using foundation::vexadata::StructArray;

namespace {

/// A description of arrays takes so much a line, besides their values.
constexpr std::uint64_t bytesPerLine = 1200;

Table asTable(const StructArray& columns, std::vector<std::string> names,
              const std::vector<std::string>& fields, MemoryBudget& budget) {
    Table table{0, columns, {}, MemoryShare(budget)};
    table.memory.take(bytesPerLine * names.size());
    for (std::size_t k = 0; k < names.size(); ++k) {
        const Array column = columns[0][fields[k]];
        table.variables.push_back({std::move(names[k]), fields[k], missingElements(column), {}});
    }
    return table;
}

/// The variables as columns of one table; null when there are none.
std::string describeTogether(const std::vector<NamedArray>& variables, MemoryBudget& budget) {
    if (variables.empty()) return {};
    std::vector<std::string> names;
    for (const NamedArray& variable : variables)
        names.push_back(variable.name);
    const std::vector<std::string> fields = interop::fieldNames(names);
    ArrayFactory factory;
    StructArray columns = factory.createStructArray({1, 1}, fields);
    for (std::size_t k = 0; k < fields.size(); ++k)
        columns[0][fields[k]] = variables[k].array;
    return describe(asTable(columns, std::move(names), fields, budget), budget);
}

/// "1461 rows, 6 variables"; "1x1 struct, 2 fields" when they are no columns of one length.
std::string headingOf(const StructArray& columns, const std::vector<std::string>& fields) {
    std::size_t rows = 0;
    bool first = true;
    for (const std::string& field : fields) {
        const Array column = columns[0][field];
        const auto dimensions = column.getDimensions();
        const bool fits = dimensions.size() == 2 && dimensions[1] == 1 && (first || dimensions[0] == rows);
        if (!fits) return "1x1 struct, " + counted(fields.size(), "field");
        rows = dimensions[0];
        first = false;
    }
    return counted(rows, "row") + ", " + counted(fields.size(), "variable");
}

std::string describeAlone(const NamedArray& variable, MemoryBudget& budget) {
    const std::string name = printable(variable.name, longestName) + ": ";
    if (isSparse(variable.array)) {
        const Matrix matrix{variable.array, "-", {}, MemoryShare(budget)};
        return name + heading(matrix) + '\n' + describe(matrix, budget);
    }
    const StructArray columns = variable.array;
    const std::vector<std::string> fields = fieldsOf(columns);
    return name + headingOf(columns, fields) + '\n' +
           describe(asTable(columns, fields, fields, budget), budget);
}

} // namespace

std::string describe(const Saved& saved, MemoryBudget& budget) {
    std::vector<NamedArray> simple;
    std::vector<const NamedArray*> others;
    for (const NamedArray& variable : saved.variables) {
        if (isSparse(variable.array) || isTable(variable.array))
            others.push_back(&variable);
        else
            simple.push_back(variable);
    }
    std::string text = describeTogether(simple, budget);
    for (const NamedArray* variable : others) {
        if (!text.empty()) text += '\n';
        text += describeAlone(*variable, budget);
    }
    return text;
}

std::string heading(const Saved& saved) { return counted(saved.variables.size(), "variable"); }

} // namespace vexa::inspect
