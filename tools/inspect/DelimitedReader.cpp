#include "DelimitedReader.hpp"

#include "InputError.hpp"
#include "Text.hpp"

#include <algorithm>
#include <cstring>
#include <new>

namespace vexa::inspect {

namespace {

constexpr std::size_t longestCell = std::size_t{16} << 20;
// The parser's own step of 128 bytes would make long cells slow.
constexpr std::size_t cellBufferStep = std::size_t{256} << 10;

std::uint64_t countNewlines(std::string_view text) {
    // Most cells hold none, and a call of memchr is the cheapest way to see that.
    if (text.empty() || std::memchr(text.data(), '\n', text.size()) == nullptr) return 0;
    return static_cast<std::uint64_t>(std::count(text.begin(), text.end(), '\n'));
}

} // namespace

DelimitedReader::DelimitedReader(RowHandler& handler, char delimiter, MemoryBudget& budget)
    : handler_(handler), parser_(), longCells_(budget), accounted_(cellBufferStep) {
    csv_init(&parser_, CSV_STRICT | CSV_STRICT_FINI | CSV_REPALL_NL);
    csv_set_blk_size(&parser_, cellBufferStep);
    csv_set_delim(&parser_, static_cast<unsigned char>(delimiter));
}

DelimitedReader::~DelimitedReader() { csv_free(&parser_); }

void DelimitedReader::feed(std::string_view chunk) {
    const std::size_t nul = chunk.find('\0');
    parse(chunk.substr(0, nul));
    accountForParser();
    if (nul != std::string_view::npos) throw InputError("NUL byte; expected text", lineInsideCell());
    if (parser_.entry_pos > longestCell)
        failAtCell("a cell is longer than 16 MB; is a closing quote missing?");
}

void DelimitedReader::finish() {
    const int result = csv_fini(&parser_, cellCallback, rowCallback, this);
    rethrowFailure();
    if (result != 0) failAtCell("unbalanced quote: the quoted cell that begins here is never closed");
    if (width_ == 0) throw InputError("no header line; expected the names of the columns", 1);
}

void DelimitedReader::parse(std::string_view chunk) {
    const std::size_t parsed =
        csv_parse(&parser_, chunk.data(), chunk.size(), cellCallback, rowCallback, this);
    rethrowFailure();
    if (parsed == chunk.size()) return;
    if (csv_error(&parser_) != CSV_EPARSE) failAtCell("not enough memory for a cell");
    failAtCell(parser_.quoted != 0
                   ? "unbalanced quote: text follows the closing quote of the cell that begins here"
                   : "unbalanced quote: a quote stands inside a cell that is not quoted");
}

void DelimitedReader::accountForParser() {
    const std::size_t size = csv_get_buffer_size(&parser_);
    if (size <= accounted_) return;
    try {
        longCells_.take(size - accounted_);
    } catch (const InputError& error) {
        throw InputError(error.what(), line_);
    }
    accounted_ = size;
}

void DelimitedReader::cellCallback(void* text, std::size_t length, void* self) noexcept {
    auto& reader = *static_cast<DelimitedReader*>(self);
    if (reader.failure_) return;
    try {
        reader.takeCell({static_cast<const char*>(text), length});
    } catch (...) {
        reader.failure_ = std::current_exception();
    }
}

void DelimitedReader::rowCallback(int terminator, void* self) noexcept {
    auto& reader = *static_cast<DelimitedReader*>(self);
    if (reader.failure_) return;
    try {
        reader.endLine(terminator);
    } catch (...) {
        reader.failure_ = std::current_exception();
    }
}

void DelimitedReader::takeCell(std::string_view text) {
    if (cellsInRow_ == 0) beginRow();
    const std::size_t column = cellsInRow_++;
    requireUtf8(text, column);
    if (width_ == 0) {
        handler_.name(text);
    } else if (column < width_) {
        handler_.cell(column, text);
    }
    line_ += countNewlines(text);
}

void DelimitedReader::requireUtf8(std::string_view text, std::size_t column) const {
    const auto place = findInvalidByte(text);
    if (!place) return;
    throw InputError("column " + std::to_string(column + 1) + ": the byte " +
                         printable(text.substr(*place, 1)) +
                         " is not UTF-8; expected UTF-8, or Latin-1 with --encoding latin1",
                     line_ + countNewlines(text.substr(0, *place)));
}

void DelimitedReader::beginRow() {
    rowLine_ = line_;
    afterCarriageReturn_ = false;
    const std::uint64_t emptyCells = width_ == 1 ? blankLines_ : 0;
    blankLines_ = 0;
    for (std::uint64_t k = 0; k < emptyCells; ++k) {
        handler_.cell(0, {});
        handler_.endRow();
    }
}

void DelimitedReader::endLine(int terminator) {
    const bool secondHalf = terminator == '\n' && afterCarriageReturn_;
    afterCarriageReturn_ = terminator == '\r';
    if (secondHalf) return;
    if (cellsInRow_ == 0) {
        ++blankLines_;
    } else {
        endRow();
    }
    ++line_;
}

void DelimitedReader::endRow() {
    if (width_ == 0) {
        width_ = cellsInRow_;
    } else if (cellsInRow_ != width_) {
        throw InputError("expected " + counted(width_, "cell") + " as in the header, found " +
                             std::to_string(cellsInRow_),
                         rowLine_);
    } else {
        handler_.endRow();
    }
    cellsInRow_ = 0;
}

void DelimitedReader::rethrowFailure() {
    if (!failure_) return;
    try {
        std::rethrow_exception(failure_);
    } catch (const InputError& error) {
        throw InputError(error.what(), error.line() != 0 ? error.line() : rowLine_);
    } catch (const std::bad_alloc&) {
        throw InputError("not enough memory for the columns", rowLine_);
    }
}

void DelimitedReader::failAtCell(const std::string& message) const {
    throw InputError("column " + std::to_string(cellsInRow_ + 1) + ": " + message, line_);
}

std::uint64_t DelimitedReader::lineInsideCell() const {
    return line_ + countNewlines({reinterpret_cast<const char*>(parser_.entry_buf), parser_.entry_pos});
}

} // namespace vexa::inspect
