#include "TextTable.hpp"

#include "Text.hpp"

#include <algorithm>

namespace vexa::inspect {

std::string TextTable::str() const {
    const std::vector<std::size_t> columnWidths = widths();
    std::string text;
    for (const std::vector<std::string>& row : rows_) {
        std::string line;
        for (std::size_t k = 0; k < row.size(); ++k) {
            const std::string padding(columnWidths[k] - displayWidth(row[k]), ' ');
            if (k > 0) line += "  ";
            line += alignment_[k] == Align::left ? row[k] + padding : padding + row[k];
        }
        line.erase(line.find_last_not_of(' ') + 1);
        text += line + '\n';
    }
    return text;
}

std::vector<std::size_t> TextTable::widths() const {
    std::vector<std::size_t> result(alignment_.size());
    for (const std::vector<std::string>& row : rows_)
        for (std::size_t k = 0; k < row.size(); ++k)
            result[k] = std::max(result[k], displayWidth(row[k]));
    return result;
}

} // namespace vexa::inspect
