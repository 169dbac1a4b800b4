#include "Table.hpp"

#include "Column.hpp"
#include "DelimitedReader.hpp"
#include "Delimiter.hpp"
#include "InputError.hpp"
#include "Summary.hpp"
#include "Text.hpp"
#include "TextTable.hpp"
#include "Variable.hpp"
#include "Words.hpp"

#include <foundation/vexadata/Print.hpp>
#include <vexa/interop/FieldNames.hpp>

#include <algorithm>
#include <set>
#include <utility>

namespace vexa::inspect {

using foundation::vexadata::Array;
using foundation::vexadata::ArrayFactory;
using foundation::vexadata::StructArray;

namespace {

constexpr std::size_t pictureWidth = 12;
constexpr std::size_t barWidth = 30;

/// Columns whose texts are kept from the start.
using TextColumns = std::set<std::size_t>;

/// What a column costs without its values: names, the array, a line of the description or of the list.
constexpr std::uint64_t bytesPerColumn = 1200;
/// The name as in the file, escaped, and in lines of text; it is cut, and its copies are counted here.
constexpr std::uint64_t copiesOfName = 12;

class ColumnCollector : public RowHandler {
public:
    ColumnCollector(bool decimalComma, bool keepAllTexts, const TextColumns& textColumns,
                    MemoryBudget& budget)
        : decimalComma_(decimalComma),
          keepAllTexts_(keepAllTexts),
          textColumns_(textColumns),
          budget_(budget),
          memory_(budget) {}

    void name(std::string_view text) override {
        const std::string_view shown =
            firstCharacters(text, longestName + 1); // one more tells that it is cut
        memory_.take(bytesPerColumn + copiesOfName * shown.size());
        const bool keep = keepAllTexts_ || textColumns_.count(columns_.size()) == 1;
        columns_.emplace_back(std::string(shown), decimalComma_,
                              keep ? Column::Texts::fromTheStart : Column::Texts::whenNeeded, budget_);
    }
    void cell(std::size_t column, std::string_view text) override { columns_[column].add(text); }
    void endRow() override { ++rows_; }

    /// Columns of text that began with something else.
    TextColumns lostTexts() const {
        TextColumns lost;
        for (std::size_t k = 0; k < columns_.size(); ++k)
            if (columns_[k].hasLostTexts()) lost.insert(k);
        return lost;
    }

    Table finish() {
        std::vector<std::string> names;
        for (const Column& column : columns_)
            names.push_back(column.name());
        const std::vector<std::string> fields = interop::fieldNames(names);

        ArrayFactory factory;
        Table table{rows_, factory.createStructArray({1, 1}, fields), {}, std::move(memory_)};
        for (std::size_t k = 0; k < columns_.size(); ++k) {
            Column& column = columns_[k];
            table.columns[0][fields[k]] = makeArray(column, fields[k], factory, table.memory);
            table.variables.push_back({names[k], fields[k], column.missing(), column.losses()});
        }
        return table;
    }

private:
    bool decimalComma_;
    bool keepAllTexts_;
    const TextColumns& textColumns_;
    MemoryBudget& budget_;
    MemoryShare memory_;
    std::vector<Column> columns_;
    std::size_t rows_ = 0;
};

void readAll(Chunks& chunks, std::string_view head, char delimiter, ColumnCollector& columns,
             MemoryBudget& budget) {
    DelimitedReader reader(columns, delimiter, budget);
    for (std::string_view chunk = head; !chunk.empty(); chunk = chunks.next())
        reader.feed(chunk);
    reader.finish();
}

/// A file with an unnamed column still tells which one it is.
std::string shownName(const Variable& variable, std::size_t column) {
    return variable.name.empty() ? "(column " + std::to_string(column) + ")"
                                 : printable(variable.name, longestName);
}

std::vector<std::string> describeVariable(const Variable& variable, const Array& array, std::size_t column) {
    std::vector<double> values = presentValues(array);
    const std::string picture = barPicture(countBins(values, pictureWidth));
    const Summary summary = summarise(values);
    const Extremes exact = integerExtremes(array);
    return {shownName(variable, column),
            kindName(array.getType()),
            dimensionText(array),
            std::to_string(variable.missing),
            exact.minimum.empty() ? formatNumber(summary.minimum) : exact.minimum,
            formatNumber(summary.median),
            formatNumber(summary.mean),
            exact.maximum.empty() ? formatNumber(summary.maximum) : exact.maximum,
            picture};
}

/// The words of an enumeration, a line each with their count and a bar; nothing for other arrays.
std::string describeWords(const Variable& variable, const Array& array) {
    const std::vector<WordCount> words = countWords(array);
    if (words.empty()) return {};
    TextTable table({TextTable::Align::left, TextTable::Align::right, TextTable::Align::left});
    const std::size_t shown = std::min(words.size(), mostCategories); // saved enumerations may have more
    for (std::size_t k = 0; k < shown; ++k)
        table.addRow({"  " + printable(words[k].word, longestName), std::to_string(words[k].count),
                      horizontalBar(words[k].count, words.front().count, barWidth)});
    const std::string title = printable(variable.name.empty() ? variable.field : variable.name, longestName);
    const std::string rest =
        shown == words.size() ? "" : "  and " + std::to_string(words.size() - shown) + " more\n";
    return '\n' + title + '\n' + table.str() + rest;
}

std::string describeLosses(const Variable& variable, std::size_t column) {
    const std::string losses = textOf(variable.losses);
    return losses.empty() ? losses : "note: " + shownName(variable, column) + ": " + losses + '\n';
}

} // namespace

Table readTable(Chunks& chunks, std::string_view head, std::optional<char> delimiter, MemoryBudget& budget) {
    const char separator = delimiter.value_or(detectDelimiter(head));
    TextColumns textColumns;
    while (true) {
        ColumnCollector columns(separator == ';', !chunks.canRewind(), textColumns, budget);
        readAll(chunks, head, separator, columns, budget);
        const TextColumns lost = columns.lostTexts();
        if (lost.empty()) return columns.finish();
        if (!textColumns.empty()) throw InputError("the file changed while it was read");
        textColumns = lost;
        chunks.rewind();
        head = chunks.first();
    }
}

std::string describe(const Table& table, MemoryBudget& budget) {
    MemoryShare work(budget);
    std::size_t most = 0; // the values of one column at a time, for the median
    for (const Variable& variable : table.variables)
        most = std::max(most, numberOfFigures(table.columns[0][variable.field]));
    work.take(most * sizeof(double));
    using enum TextTable::Align;
    TextTable lines({left, left, right, right, right, right, right, right, left});
    lines.addRow(
        {"name", "type", "dimensions", "missing", "minimum", "median", "mean", "maximum", "distribution"});
    std::string notes;
    std::string words;
    for (std::size_t k = 0; k < table.variables.size(); ++k) {
        const Variable& variable = table.variables[k];
        const Array array = table.columns[0][variable.field];
        lines.addRow(describeVariable(variable, array, k + 1));
        notes += describeLosses(variable, k + 1);
        const std::string counts = describeWords(variable, array);
        work.take(4 * counts.size());
        words += counts;
    }
    return lines.str() + (notes.empty() ? "" : '\n' + notes) + words;
}

} // namespace vexa::inspect
