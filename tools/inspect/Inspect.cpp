#include "Inspect.hpp"

#include "Column.hpp"
#include "DelimitedReader.hpp"
#include "Delimiter.hpp"
#include "InputError.hpp"
#include "Text.hpp"
#include "TextTable.hpp"

#include <algorithm>
#include <string_view>
#include <utility>

namespace vexa::inspect {

namespace {

constexpr std::size_t chunkSize = 256 * 1024;
constexpr std::size_t pictureWidth = 12;

class ColumnCollector : public RowHandler {
public:
    ColumnCollector(bool decimalComma, MemoryBudget& budget) : decimalComma_(decimalComma), budget_(budget) {}

    void header(std::vector<std::string> names) override {
        budget_.take(names.size() * sizeof(Column));
        columns_.reserve(names.size());
        for (std::string& name : names)
            columns_.emplace_back(std::move(name), decimalComma_, budget_);
    }
    void cell(std::size_t column, std::string_view text) override { columns_[column].add(text); }
    void endRow() override { ++rows_; }

    Dataset finish() {
        takeForMedian();
        foundation::vexadata::ArrayFactory factory;
        Dataset data{rows_, {}};
        data.variables.reserve(columns_.size());
        for (Column& column : columns_)
            data.variables.push_back(makeVariable(column, rows_, factory));
        return data;
    }

private:
    /// The median of a column works on a copy of its values, one column at a time.
    void takeForMedian() {
        const bool numeric = std::any_of(columns_.begin(), columns_.end(), [](const Column& column) {
            return column.kind() != Column::Kind::text;
        });
        if (numeric) budget_.take(rows_ * sizeof(double));
    }

    bool decimalComma_;
    MemoryBudget& budget_;
    std::vector<Column> columns_;
    std::size_t rows_ = 0;
};

/// The text after a UTF-8 byte order mark.
std::string_view skipByteOrderMark(std::string_view head) {
    if (head.starts_with("\xFF\xFE") || head.starts_with("\xFE\xFF"))
        throw InputError("the text is UTF-16; expected UTF-8", 1);
    if (head.starts_with("\xEF\xBB\xBF")) head.remove_prefix(3);
    return head;
}

std::vector<std::string> describeVariable(const Variable& variable, std::size_t column) {
    // A file with an unnamed column still tells which one it is.
    const std::string name =
        variable.name.empty() ? "(column " + std::to_string(column) + ")" : printable(variable.name);
    std::vector<double> values = presentValues(variable);
    const std::string picture = barPicture(countBins(values, pictureWidth));
    const Summary summary = summarise(values);
    return {name,
            typeName(variable),
            dimensionText(variable),
            std::to_string(variable.missing),
            formatNumber(summary.minimum),
            formatNumber(summary.median),
            formatNumber(summary.mean),
            formatNumber(summary.maximum),
            picture};
}

} // namespace

Dataset load(Source& source, const Options& options, Progress& progress) {
    std::vector<char> buffer(chunkSize);
    auto nextChunk = [&] {
        const std::size_t length = source.read(buffer.data(), buffer.size());
        progress.advance(length);
        return std::string_view(buffer.data(), length);
    };
    std::string_view chunk = nextChunk();
    if (chunk.empty()) throw InputError("the file is empty; expected a header line", 1);
    chunk = skipByteOrderMark(chunk);

    const char delimiter = options.delimiter.value_or(detectDelimiter(chunk));
    MemoryBudget budget(options.maxMemory);
    ColumnCollector columns(delimiter == ';', budget);
    DelimitedReader reader(columns, delimiter);
    do {
        reader.feed(chunk);
        chunk = nextChunk();
    } while (!chunk.empty());
    reader.finish();
    return columns.finish();
}

std::string describe(const Dataset& data) {
    using enum TextTable::Align;
    TextTable table({left, left, right, right, right, right, right, right, left});
    table.addRow(
        {"name", "type", "dimensions", "missing", "minimum", "median", "mean", "maximum", "distribution"});
    for (std::size_t k = 0; k < data.variables.size(); ++k)
        table.addRow(describeVariable(data.variables[k], k + 1));
    return table.str();
}

} // namespace vexa::inspect
