// The text of Matrix Market files.
#pragma once

#include "GrowingBuffer.hpp"
#include "Losses.hpp"

#include <complex>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>

namespace vexa::inspect {

enum class MatrixField { real, integer, complex, pattern };
enum class MatrixSymmetry { general, symmetric, skewSymmetric, hermitian };

/// Takes the text in piece by piece and collects the entries, those of symmetric matrices with their mirror
/// images. Every fault is an InputError with its line. Memory grows with the entries that are there, whatever
/// number is announced.
class MatrixMarketReader {
public:
    explicit MatrixMarketReader(MemoryBudget& budget)
        : columnStarts_(budget), rows_(budget), columns_(budget), reals_(budget), complexes_(budget) {}

    /// The next bytes of the text; lines may be cut anywhere.
    void feed(std::string_view chunk);
    /// The text is at its end.
    void finish();

    MatrixField field() const noexcept { return field_; }
    MatrixSymmetry symmetry() const noexcept { return symmetry_; }
    std::size_t rowCount() const noexcept { return rowCount_; }
    std::size_t columnCount() const noexcept { return columnCount_; }

    /// What the values of the entries lost.
    const Losses& losses() const noexcept { return losses_; }

    /// What the matrix needs besides its entries; the reader answers for it no longer.
    MemoryShare releaseColumnStarts() noexcept { return std::move(columnStarts_); }

    /// Of the entries, counted from 0.
    GrowingBuffer<std::size_t>& rows() noexcept { return rows_; }
    GrowingBuffer<std::size_t>& columns() noexcept { return columns_; }
    GrowingBuffer<double>& reals() noexcept { return reals_; } ///< of real and integer matrices
    GrowingBuffer<std::complex<double>>& complexes() noexcept { return complexes_; } ///< of complex ones

private:
    enum class Expects { banner, size, entries };

    void takeLine(std::string_view line);
    void dispatchLine(std::string_view line);
    void takeBanner(std::string_view line);
    void takeSize(std::string_view line);
    void takeEntry(std::string_view line);
    void add(std::size_t row, std::size_t column, std::complex<double> value);
    void requirePlace(std::size_t row, std::size_t column) const;
    [[noreturn]] void fail(const std::string& message) const;

    MemoryShare columnStarts_; // of the matrix to come
    Expects expects_ = Expects::banner;
    MatrixField field_ = MatrixField::real;
    MatrixSymmetry symmetry_ = MatrixSymmetry::general;
    std::size_t rowCount_ = 0;
    std::size_t columnCount_ = 0;
    std::size_t announced_ = 0; // entries
    std::size_t found_ = 0;
    std::uint64_t line_ = 0;
    Losses losses_;
    std::string partial_; // a line that the last chunk cut
    GrowingBuffer<std::size_t> rows_;
    GrowingBuffer<std::size_t> columns_;
    GrowingBuffer<double> reals_;
    GrowingBuffer<std::complex<double>> complexes_;
};

} // namespace vexa::inspect
