// Placing texts in columns and breaking rows that are too wide.
#include "TextGrid.hpp"

#include "Text.hpp"

#include <algorithm>

namespace foundation::vexadata::print {

namespace {

constexpr std::size_t gap = 2;

struct Extent {
    std::size_t before = 0;
    std::size_t after = 0;
};

Extent extentOf(const TextGrid::Column& column) {
    Extent extent;
    for (const GridCell& cell : column.cells) {
        extent.before = std::max(extent.before, cell.before);
        extent.after = std::max(extent.after, cell.after);
    }
    return extent;
}

void append(std::string& line, const GridCell& cell, const Extent& extent) {
    line.append(extent.before - cell.before, ' ');
    line += cell.text;
    line.append(extent.after - cell.after, ' ');
}

} // namespace

GridCell leftCell(std::string text) {
    const std::size_t width = displayWidth(text);
    return {std::move(text), 0, width};
}

GridCell rightCell(std::string text) {
    const std::size_t width = displayWidth(text);
    return {std::move(text), width, 0};
}

GridCell numberCell(std::string text) {
    const std::size_t whole = std::min(text.find_first_of(".e"), text.size());
    const std::size_t rest = text.size() - whole;
    return {std::move(text), whole, rest};
}

std::vector<std::string> TextGrid::lines(const std::string& indent, std::size_t width) const {
    std::vector<Extent> extents;
    std::transform(columns_.begin(), columns_.end(), std::back_inserter(extents), extentOf);
    std::vector<std::string> result;
    std::size_t first = 0;
    while (first < columns_.size()) {
        std::size_t last = first;
        std::size_t used = indent.size();
        do {
            used += extents[last].before + extents[last].after + gap;
            ++last;
        } while (last < columns_.size() && used + extents[last].before + extents[last].after <= width);
        if (first > 0 || last < columns_.size()) {
            const bool single = last - first == 1;
            result.push_back(indent + (single ? "column " : "columns ") + columns_[first].title +
                             (single ? "" : " to " + columns_[last - 1].title) + ":");
        }
        for (std::size_t row = 0; row < columns_[first].cells.size(); ++row) {
            std::string line = indent;
            for (std::size_t column = first; column < last; ++column) {
                line.append(column > first ? gap : 0, ' ');
                append(line, columns_[column].cells[row], extents[column]);
            }
            line.erase(line.find_last_not_of(' ') + 1);
            result.push_back(std::move(line));
        }
        first = last;
    }
    return result;
}

} // namespace foundation::vexadata::print
