#include "MatrixMarketReader.hpp"

#include "Cell.hpp"
#include "InputError.hpp"
#include "Text.hpp"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdint>
#include <system_error>
#include <utility>
#include <vector>

namespace vexa::inspect {

namespace {

constexpr std::string_view blanks = " \t\r";
constexpr std::size_t longestLine = 1024; // of a banner, a size or an entry, which have five words at most

std::vector<std::string_view> wordsOf(std::string_view line) {
    std::vector<std::string_view> words;
    while (true) {
        const std::size_t start = line.find_first_not_of(blanks);
        if (start == std::string_view::npos) return words;
        line.remove_prefix(start);
        const std::size_t length = std::min(line.find_first_of(blanks), line.size());
        words.push_back(line.substr(0, length));
        line.remove_prefix(length);
    }
}

std::string lower(std::string_view word) {
    std::string result(word);
    std::transform(result.begin(), result.end(), result.begin(),
                   [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
    return result;
}

std::string quoted(std::string_view text) { return '\'' + printable(text) + '\''; }

bool parseIndex(std::string_view word, std::size_t& value) {
    const auto [end, error] = std::from_chars(word.data(), word.data() + word.size(), value);
    return error == std::errc() && end == word.data() + word.size();
}

template <class Value>
using Names = std::array<std::pair<std::string_view, Value>, 4>;

template <class Value>
Value lookUp(const Names<Value>& known, std::string_view word, const std::string& what, std::uint64_t line) {
    std::string names;
    for (const auto& [name, value] : known) {
        if (lower(word) == name) return value;
        names.append(names.empty() ? "" : ", ").append(name);
    }
    throw InputError("expected " + what + " (" + names + "), found " + quoted(word), line);
}

constexpr Names<MatrixField> fields{{{"complex", MatrixField::complex},
                                     {"integer", MatrixField::integer},
                                     {"pattern", MatrixField::pattern},
                                     {"real", MatrixField::real}}};
constexpr Names<MatrixSymmetry> symmetries{{{"general", MatrixSymmetry::general},
                                            {"hermitian", MatrixSymmetry::hermitian},
                                            {"skew-symmetric", MatrixSymmetry::skewSymmetric},
                                            {"symmetric", MatrixSymmetry::symmetric}}};

std::size_t numbersPerEntry(MatrixField field) {
    switch (field) {
    case MatrixField::pattern:
        return 0;
    case MatrixField::complex:
        return 2;
    default:
        return 1;
    }
}

} // namespace

void MatrixMarketReader::fail(const std::string& message) const { throw InputError(message, line_); }

void MatrixMarketReader::feed(std::string_view chunk) {
    while (!chunk.empty()) {
        const std::size_t length = chunk.find('\n');
        const bool whole = length != std::string_view::npos;
        const std::string_view piece = chunk.substr(0, length);
        chunk.remove_prefix(whole ? length + 1 : chunk.size());
        if (whole && partial_.empty()) {
            takeLine(piece);
            continue;
        }
        if (partial_.size() <= longestLine)
            partial_ += piece.substr(0, longestLine + 1); // comments may be longer
        if (whole) {
            takeLine(partial_);
            partial_.clear();
        }
    }
}

void MatrixMarketReader::finish() {
    if (!partial_.empty()) takeLine(partial_);
    ++line_;
    if (expects_ == Expects::banner) fail("expected the line '%%MatrixMarket matrix coordinate ...'");
    if (expects_ == Expects::size) fail("the file ends before the line of its size");
    if (found_ < announced_)
        fail("expected " + counted(announced_, "entry", "entries") + ", the file ends after " +
             std::to_string(found_));
}

void MatrixMarketReader::takeLine(std::string_view line) {
    ++line_;
    try {
        dispatchLine(line);
    } catch (const InputError& error) { // the budget does not know the line
        throw InputError(error.what(), line_);
    }
}

void MatrixMarketReader::dispatchLine(std::string_view line) {
    if (expects_ == Expects::banner) {
        takeBanner(line);
        return;
    }
    if (line.starts_with('%') || line.find_first_not_of(blanks) == std::string_view::npos) return;
    if (line.size() > longestLine) fail("the line is longer than " + std::to_string(longestLine) + " bytes");
    if (expects_ == Expects::size)
        takeSize(line);
    else
        takeEntry(line);
}

void MatrixMarketReader::takeBanner(std::string_view line) {
    const auto words = wordsOf(line.substr(0, longestLine));
    if (words.size() != 5 || lower(words[0]) != "%%matrixmarket")
        fail("expected '%%MatrixMarket matrix coordinate FIELD SYMMETRY', found " +
             counted(words.size(), "word"));
    if (lower(words[1]) != "matrix") fail("expected 'matrix', found " + quoted(words[1]));
    if (lower(words[2]) != "coordinate")
        fail("expected 'coordinate', found " + quoted(words[2]) + "; dense matrices are not read");
    field_ = lookUp(fields, words[3], "a field", line_);
    symmetry_ = lookUp(symmetries, words[4], "a symmetry", line_);
    if (symmetry_ == MatrixSymmetry::hermitian && field_ != MatrixField::complex)
        fail("a hermitian matrix has to be complex");
    if (symmetry_ == MatrixSymmetry::skewSymmetric && field_ == MatrixField::pattern)
        fail("a skew-symmetric matrix has to have values");
    expects_ = Expects::size;
}

void MatrixMarketReader::takeSize(std::string_view line) {
    const auto words = wordsOf(line);
    std::array<std::size_t, 3> sizes{};
    bool good = words.size() == sizes.size();
    for (std::size_t k = 0; good && k < sizes.size(); ++k)
        good = parseIndex(words[k], sizes[k]);
    if (!good) fail("expected three whole numbers, rows, columns and entries, found " + quoted(line));
    rowCount_ = sizes[0];
    columnCount_ = sizes[1];
    announced_ = sizes[2];
    if (symmetry_ != MatrixSymmetry::general && rowCount_ != columnCount_)
        fail("a symmetric matrix has to be square, not " + std::to_string(rowCount_) + " by " +
             std::to_string(columnCount_));
    std::size_t elements = 0;
    if (__builtin_mul_overflow(rowCount_, columnCount_, &elements))
        fail("a matrix of " + std::to_string(rowCount_) + " by " + std::to_string(columnCount_) +
             " has more than 2^64 - 1 elements");
    columnStarts_.take(std::uint64_t{sizeof(std::size_t)} * std::min(columnCount_, SIZE_MAX / 8 - 1) + 8);
    expects_ = Expects::entries;
}

void MatrixMarketReader::takeEntry(std::string_view line) {
    if (found_ == announced_) fail("expected " + counted(announced_, "entry", "entries") + ", found more");
    const auto words = wordsOf(line);
    const std::size_t wanted = 2 + numbersPerEntry(field_);
    if (words.size() != wanted) fail("expected " + counted(wanted, "number") + ", found " + quoted(line));
    std::size_t row = 0;
    std::size_t column = 0;
    if (!parseIndex(words[0], row) || !parseIndex(words[1], column))
        fail("expected a row and a column, found " + quoted(line));
    requirePlace(row, column);

    double parts[2] = {1, 0};
    for (std::size_t k = 2; k < wanted; ++k) {
        const auto value = parseNumber(words[k]);
        const bool whole = words[k].find_first_of(".eEnN") == std::string_view::npos;
        if (!value || (field_ == MatrixField::integer && !whole))
            fail(std::string("expected a ") + (field_ == MatrixField::integer ? "whole " : "") +
                 "number, found " + quoted(words[k]));
        parts[k - 2] = value->value;
        losses_.count(value->loss);
    }
    if (symmetry_ == MatrixSymmetry::hermitian && row == column && parts[1] != 0)
        fail("the diagonal of a hermitian matrix is real, found the imaginary part " + quoted(words[3]));
    add(row - 1, column - 1, {parts[0], parts[1]});
    ++found_;
}

void MatrixMarketReader::requirePlace(std::size_t row, std::size_t column) const {
    const auto require = [&](const char* what, std::size_t index, std::size_t most) {
        if (index < 1 || index > most)
            fail(std::string(what) + " " + std::to_string(index) + " is not between 1 and " +
                 std::to_string(most));
    };
    require("row", row, rowCount_);
    require("column", column, columnCount_);
    if (symmetry_ != MatrixSymmetry::general && row < column)
        fail("row " + std::to_string(row) + ", column " + std::to_string(column) +
             " lies above the diagonal, whose mirror image a symmetric matrix holds");
    if (symmetry_ == MatrixSymmetry::skewSymmetric && row == column)
        fail("the diagonal of a skew-symmetric matrix is zero and has no entries");
}

void MatrixMarketReader::add(std::size_t row, std::size_t column, std::complex<double> value) {
    rows_.push(row);
    columns_.push(column);
    if (field_ == MatrixField::complex)
        complexes_.push(value);
    else if (field_ != MatrixField::pattern)
        reals_.push(value.real());
    if (symmetry_ == MatrixSymmetry::general || row == column) return;
    rows_.push(column);
    columns_.push(row);
    if (symmetry_ == MatrixSymmetry::skewSymmetric) value = -value;
    if (symmetry_ == MatrixSymmetry::hermitian) value = std::conj(value);
    if (field_ == MatrixField::complex)
        complexes_.push(value);
    else if (field_ != MatrixField::pattern)
        reals_.push(value.real());
}

} // namespace vexa::inspect
