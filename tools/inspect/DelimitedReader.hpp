// Delimited text, taken in piece by piece and handed on cell by cell.
#pragma once

#include "Memory.hpp"

#include <csv.h>

#include <cstddef>
#include <cstdint>
#include <exception>
#include <string>
#include <string_view>

namespace vexa::inspect {

/// Receives what a DelimitedReader finds, in the order of the file.
class RowHandler {
public:
    virtual ~RowHandler() = default;
    /// The names of the columns, before any cell; `text` is valid during the call only.
    virtual void name(std::string_view text) = 0;
    /// `column` counts from 0 and is below the number of names; `text` is valid during the call only.
    virtual void cell(std::size_t column, std::string_view text) = 0;
    virtual void endRow() = 0;
};

/// Checks while it reads: each row has as many cells as the header, quotes are balanced, the text is UTF-8
/// without NUL. Lines end with LF, CRLF or CR. Blank lines are skipped, but where the header has one name a
/// blank line between two rows is an empty cell. Blanks around a cell are dropped.
///
/// Every fault is an InputError with its line; an InputError or std::bad_alloc of the handler gets the line
/// of the row. After an error the reader is of no further use.
class DelimitedReader {
public:
    /// `handler` and `budget` outlive the reader.
    DelimitedReader(RowHandler& handler, char delimiter, MemoryBudget& budget);
    ~DelimitedReader();
    DelimitedReader(const DelimitedReader&) = delete;
    DelimitedReader& operator=(const DelimitedReader&) = delete;

    /// The next bytes of the text; cells and lines may be cut anywhere.
    void feed(std::string_view chunk);
    /// The text is at its end.
    void finish();

private:
    static void cellCallback(void* text, std::size_t length, void* self) noexcept;
    static void rowCallback(int terminator, void* self) noexcept;

    void parse(std::string_view chunk);
    void accountForParser();
    void requireUtf8(std::string_view text, std::size_t column) const;
    void takeCell(std::string_view text);
    void beginRow();
    void endLine(int terminator);
    void endRow();
    void rethrowFailure();
    [[noreturn]] void failAtCell(const std::string& message) const;
    std::uint64_t lineInsideCell() const;

    RowHandler& handler_;
    csv_parser parser_;
    std::exception_ptr failure_; // exceptions must not pass through the parser, which is C
    MemoryShare longCells_;      // for what the parser takes beyond its first step
    std::size_t accounted_;      // of the parser's memory
    std::size_t width_ = 0;      // 0 until the header has been read
    std::size_t cellsInRow_ = 0;
    std::uint64_t line_ = 1;
    std::uint64_t rowLine_ = 1;
    std::uint64_t blankLines_ = 0;
    bool afterCarriageReturn_ = false;
};

} // namespace vexa::inspect
