// Lines of text whose cells stand in columns.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace vexa::inspect {

class TextTable {
public:
    enum class Align { left, right };

    /// One entry a column.
    explicit TextTable(std::vector<Align> alignment) : alignment_(std::move(alignment)) {}

    /// One UTF-8 text a column.
    void addRow(std::vector<std::string> cells) { rows_.push_back(std::move(cells)); }

    /// All rows, a line each; cells two blanks apart and as wide as the widest of their column, no blanks at
    /// the end of a line.
    std::string str() const;

private:
    std::vector<std::size_t> widths() const;

    std::vector<Align> alignment_;
    std::vector<std::vector<std::string>> rows_;
};

} // namespace vexa::inspect
