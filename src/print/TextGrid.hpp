// Texts in rows and columns.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace foundation::vexadata::print {

/// A text of a grid. The texts of a column are placed so that their alignment points stand below each other.
struct GridCell {
    std::string text;
    std::size_t before = 0; ///< columns before the alignment point
    std::size_t after = 0;  ///< columns behind it
};

/// Aligned to the left: the point is at the beginning.
GridCell leftCell(std::string text);
/// Aligned to the right: the point is at the end.
GridCell rightCell(std::string text);
/// A number: the point is where its whole part ends.
GridCell numberCell(std::string text);

/// Columns of cells, all of one length.
class TextGrid {
public:
    struct Column {
        std::string title; ///< names the column where lines are broken
        std::vector<GridCell> cells;
    };

    void add(Column column) { columns_.push_back(std::move(column)); }

    /// A line for each row, each beginning with `indent`, two blanks between columns, no blanks at the end.
    /// Columns that do not fit into `width` follow below, and each part begins with a line that names its
    /// columns.
    std::vector<std::string> lines(const std::string& indent, std::size_t width) const;

private:
    std::vector<Column> columns_;
};

} // namespace foundation::vexadata::print
