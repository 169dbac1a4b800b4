#include "Report.hpp"

#include <algorithm>
#include <string_view>

namespace vexa::check {

namespace {

constexpr std::size_t pageWidth = 140;
constexpr std::size_t verdictWidth = 11;

std::string_view wordFor(Verdict verdict) {
    switch (verdict) {
    case Verdict::holds:
        return "holds";
    case Verdict::fails:
        return "FAILS";
    case Verdict::notChecked:
        return "not checked";
    default:
        return "not offered";
    }
}

std::string padded(std::string_view text, std::size_t width) {
    std::string cell(text);
    cell.resize(std::max(width, cell.size()), ' ');
    return cell + "  ";
}

/// Breaks at blanks; lines after the first begin with `indent` blanks.
std::string wrapped(std::string_view text, std::size_t indent) {
    const std::size_t width = pageWidth > indent + 40 ? pageWidth - indent : 40;
    std::string lines;
    while (text.size() > width) {
        std::size_t end = text.rfind(' ', width);
        if (end == std::string_view::npos || end == 0) end = width;
        lines.append(text.substr(0, end)).append("\n").append(indent, ' ');
        text.remove_prefix(end);
        text.remove_prefix(std::min(text.find_first_not_of(' '), text.size()));
    }
    return lines.append(text);
}

std::string withoutBlanksAtEnd(std::string line) {
    line.erase(line.find_last_not_of(' ') + 1);
    return line;
}

} // namespace

Totals totalsOf(const std::vector<Row>& rows) {
    const auto count = [&](Verdict verdict) {
        return static_cast<std::size_t>(std::count_if(
            rows.begin(), rows.end(), [&](const Row& row) { return row.result.verdict == verdict; }));
    };
    return {count(Verdict::holds), count(Verdict::fails), count(Verdict::notOffered),
            count(Verdict::notChecked)};
}

std::string tableOf(const std::vector<Row>& rows) {
    std::size_t familyWidth = 6;
    std::size_t nameWidth = 5;
    for (const Row& row : rows) {
        familyWidth = std::max(familyWidth, row.check->family.size());
        nameWidth = std::max(nameWidth, row.check->name.size());
    }
    std::string table;
    for (const Row& row : rows) {
        const std::string head = padded(row.check->family, familyWidth) + padded(row.check->name, nameWidth) +
                                 padded(wordFor(row.result.verdict), verdictWidth);
        table += withoutBlanksAtEnd(head + wrapped(row.result.reason, head.size())) + "\n";
    }
    return table;
}

std::string summaryOf(const Totals& totals) {
    const std::size_t all = totals.hold + totals.fail + totals.notOffered + totals.notChecked;
    return std::to_string(all) + " checks: " + std::to_string(totals.hold) + " hold, " +
           std::to_string(totals.fail) + " fail, " + std::to_string(totals.notOffered) +
           " are not offered, " + std::to_string(totals.notChecked) + " are not checked";
}

} // namespace vexa::check
