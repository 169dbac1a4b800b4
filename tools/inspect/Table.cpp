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

class ColumnCollector : public RowHandler {
public:
    ColumnCollector(bool decimalComma, bool keepAllTexts, const TextColumns& textColumns,
                    MemoryBudget& budget)
        : decimalComma_(decimalComma),
          keepAllTexts_(keepAllTexts),
          textColumns_(textColumns),
          budget_(budget) {}

    void header(std::vector<std::string> names) override {
        budget_.take(names.size() * sizeof(Column));
        columns_.reserve(names.size());
        for (std::string& name : names) {
            const bool keep = keepAllTexts_ || textColumns_.count(columns_.size()) == 1;
            columns_.emplace_back(std::move(name), decimalComma_,
                                  keep ? Column::Texts::fromTheStart : Column::Texts::whenNeeded, budget_);
        }
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
        takeForMedian();
        std::vector<std::string> names;
        for (const Column& column : columns_)
            names.push_back(column.name());
        const std::vector<std::string> fields = fieldNames(names);

        ArrayFactory factory;
        Table table{rows_, factory.createStructArray({1, 1}, fields), {}};
        for (std::size_t k = 0; k < columns_.size(); ++k) {
            takeForTexts(columns_[k]);
            table.columns[0][fields[k]] = makeArray(columns_[k], fields[k], factory);
            table.variables.push_back({names[k], fields[k], columns_[k].missing()});
        }
        return table;
    }

private:
    /// The median of a column works on a copy of its values, one column at a time.
    void takeForMedian() {
        const bool numeric = std::any_of(columns_.begin(), columns_.end(), [](const Column& column) {
            return column.kind() != Column::Kind::text;
        });
        if (numeric) budget_.take(rows_ * sizeof(double));
    }
    /// An array of strings takes 16 bytes an element, and two for each unit of longer texts, twice that while it grows.
    void takeForTexts(Column& column) {
        if (column.kind() == Column::Kind::text)
            budget_.take(16 * column.texts().size() + 4 * column.texts().bytes());
    }

    bool decimalComma_;
    bool keepAllTexts_;
    const TextColumns& textColumns_;
    MemoryBudget& budget_;
    std::vector<Column> columns_;
    std::size_t rows_ = 0;
};

void readAll(Chunks& chunks, std::string_view head, char delimiter, ColumnCollector& columns) {
    DelimitedReader reader(columns, delimiter);
    for (std::string_view chunk = head; !chunk.empty(); chunk = chunks.next())
        reader.feed(chunk);
    reader.finish();
}

std::vector<std::string> describeVariable(const Variable& variable, const Array& array, std::size_t column) {
    // A file with an unnamed column still tells which one it is.
    const std::string name =
        variable.name.empty() ? "(column " + std::to_string(column) + ")" : printable(variable.name);
    std::vector<double> values = presentValues(array);
    const std::string picture = barPicture(countBins(values, pictureWidth));
    const Summary summary = summarise(values);
    return {name,
            kindName(array.getType()),
            dimensionText(array),
            std::to_string(variable.missing),
            formatNumber(summary.minimum),
            formatNumber(summary.median),
            formatNumber(summary.mean),
            formatNumber(summary.maximum),
            picture};
}

/// The words of an enumeration, a line each with their count and a bar; nothing for other arrays.
std::string describeWords(const Variable& variable, const Array& array) {
    const std::vector<WordCount> words = countWords(presentWords(array));
    if (words.empty()) return {};
    TextTable table({TextTable::Align::left, TextTable::Align::right, TextTable::Align::left});
    for (const WordCount& word : words)
        table.addRow({"  " + word.word, std::to_string(word.count),
                      horizontalBar(word.count, words.front().count, barWidth)});
    const std::string title = printable(variable.name.empty() ? variable.field : variable.name);
    return '\n' + title + '\n' + table.str();
}

} // namespace

Table readTable(Chunks& chunks, std::string_view head, std::optional<char> delimiter,
                std::uint64_t maxMemory) {
    const char separator = delimiter.value_or(detectDelimiter(head));
    TextColumns textColumns;
    while (true) {
        MemoryBudget budget(maxMemory);
        ColumnCollector columns(separator == ';', !chunks.canRewind(), textColumns, budget);
        readAll(chunks, head, separator, columns);
        const TextColumns lost = columns.lostTexts();
        if (lost.empty()) return columns.finish();
        if (!textColumns.empty()) throw InputError("the file changed while it was read");
        textColumns = lost;
        chunks.rewind();
        head = chunks.first();
    }
}

std::string describe(const Table& table) {
    using enum TextTable::Align;
    TextTable lines({left, left, right, right, right, right, right, right, left});
    lines.addRow(
        {"name", "type", "dimensions", "missing", "minimum", "median", "mean", "maximum", "distribution"});
    std::string words;
    for (std::size_t k = 0; k < table.variables.size(); ++k) {
        const Variable& variable = table.variables[k];
        const Array array = table.columns[0][variable.field];
        lines.addRow(describeVariable(variable, array, k + 1));
        words += describeWords(variable, array);
    }
    return lines.str() + words;
}

std::vector<std::string> fieldNames(const std::vector<std::string>& texts) {
    const auto isLetter = [](char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); };
    const auto isDigit = [](char c) { return c >= '0' && c <= '9'; };
    std::set<std::string> taken;
    std::vector<std::string> names;
    for (const std::string& text : texts) {
        std::string name(text.empty() || !isLetter(text.front()) ? 1 : 0, 'x');
        for (const char c : text)
            name += isLetter(c) || isDigit(c) ? c : '_';
        const std::string stem = name;
        for (std::size_t number = 2; !taken.insert(name).second; ++number)
            name = stem + "_" + std::to_string(number);
        names.push_back(name);
    }
    return names;
}

} // namespace vexa::inspect
