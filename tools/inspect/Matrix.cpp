#include "Matrix.hpp"

#include "MatrixMarketReader.hpp"
#include "Summary.hpp"
#include "Text.hpp"
#include "TextTable.hpp"
#include "Variable.hpp"

#include <foundation/vexadata/ArrayFactory.hpp>
#include <foundation/vexadata/Print.hpp>
#include <foundation/vexadata/Visit.hpp>

#include <algorithm>
#include <cctype>
#include <cmath>
#include <complex>
#include <utility>
#include <vector>

namespace vexa::inspect {

using foundation::vexadata::Array;
using foundation::vexadata::ArrayFactory;
using foundation::vexadata::ArrayType;
using foundation::vexadata::SparseArray;

namespace {

constexpr std::string_view banner = "%%matrixmarket";
constexpr std::size_t pictureSide = 24;

template <class T>
Array makeSparse(MatrixMarketReader& reader, GrowingBuffer<T>& values, MemoryBudget& budget,
                 MemoryShare& memory) {
    ArrayFactory factory;
    const std::size_t count = values.size();
    MemoryShare sorting(budget); // triplets, twice
    sorting.take(2 * count * (2 * sizeof(std::size_t) + sizeof(T)));
    auto rows = reader.rows().release(memory);
    auto columns = reader.columns().release(memory);
    return factory.createSparseArray<T>({reader.rowCount(), reader.columnCount()}, count,
                                        values.release(memory), std::move(rows), std::move(columns));
}

Array makePattern(MatrixMarketReader& reader, MemoryBudget& budget, MemoryShare& memory) {
    GrowingBuffer<bool> present(budget);
    for (std::size_t k = 0; k < reader.rows().size(); ++k)
        present.push(true);
    return makeSparse(reader, present, budget, memory);
}

Array makeMatrix(MatrixMarketReader& reader, MemoryBudget& budget, MemoryShare& memory) {
    switch (reader.field()) {
    case MatrixField::pattern:
        return makePattern(reader, budget, memory);
    case MatrixField::complex:
        return makeSparse(reader, reader.complexes(), budget, memory);
    default:
        return makeSparse(reader, reader.reals(), budget, memory);
    }
}

std::string nameOf(MatrixSymmetry symmetry) {
    switch (symmetry) {
    case MatrixSymmetry::symmetric:
        return "symmetric";
    case MatrixSymmetry::skewSymmetric:
        return "skew-symmetric";
    case MatrixSymmetry::hermitian:
        return "hermitian";
    default:
        return "general";
    }
}

/// The pieces of any sparse array, which live as long as it does.
struct Pieces {
    std::size_t rows, columns, count;
    const std::size_t* starts;
    const std::size_t* rowOf;
};
Pieces piecesOf(const Array& array) {
    return visit(array, []<class T>(const SparseArray<T>& sparse) {
        return Pieces{sparse.getRows(), sparse.getCols(), sparse.getNumberOfNonZeroElements(), sparse.getJc(),
                      sparse.getIr()};
    });
}

/// Magnitudes of complex values, values of the others; what is not a number is left out.
std::vector<double> presentMagnitudes(const Array& array) {
    return visit(array, []<class T>(const SparseArray<T>& sparse) {
        std::vector<double> values;
        values.reserve(sparse.getNumberOfNonZeroElements());
        for (const auto& value : sparse) {
            double number = 0;
            if constexpr (std::is_arithmetic_v<T>)
                number = static_cast<double>(value);
            else
                number = std::abs(value);
            if (!std::isnan(number)) values.push_back(number);
        }
        return values;
    });
}

/// The place of `index` out of `extent` among `cells` equal parts.
std::size_t cellOf(std::size_t index, std::size_t extent, std::size_t cells) {
    const auto cell = static_cast<std::size_t>(
        static_cast<long double>(index) * static_cast<long double>(cells) / static_cast<long double>(extent));
    return std::min(cell, cells - 1); // a quotient of large numbers may be rounded up
}

/// How many non-zeros lie in each cell of a grid over the matrix, row by row.
std::vector<std::size_t> countCells(const Pieces& matrix, std::size_t height, std::size_t width) {
    std::vector<std::size_t> counts(height * width);
    std::size_t column = 0;
    for (std::size_t k = 0; k < matrix.count; ++k) {
        // Straight to the column of the k-th non-zero, over however many empty ones.
        const auto* after = std::upper_bound(matrix.starts + column, matrix.starts + matrix.columns + 1, k);
        column = static_cast<std::size_t>(after - matrix.starts) - 1;
        const std::size_t line = cellOf(matrix.rowOf[k], matrix.rows, height);
        ++counts[line * width + cellOf(column, matrix.columns, width)];
    }
    return counts;
}

std::string line(const char* left, const char* right, std::size_t width) {
    std::string text = left;
    for (std::size_t k = 0; k < 2 * width; ++k)
        text += "─";
    return text + right + "\n";
}

/// A frame with a square for each part of the matrix, the darker the more non-zeros lie in it.
std::string spyPicture(const Pieces& matrix) {
    const std::size_t height = std::min(matrix.rows, pictureSide);
    const std::size_t width = std::min(matrix.columns, pictureSide);
    const std::vector<std::size_t> counts = countCells(matrix, height, width);
    const std::size_t most =
        std::max<std::size_t>(1, counts.empty() ? 1 : *std::max_element(counts.begin(), counts.end()));
    std::string picture = line("┌", "┐", width);
    for (std::size_t y = 0; y < height; ++y) {
        picture += "│";
        for (std::size_t x = 0; x < width; ++x) {
            const char* square = shade(counts[y * width + x], most);
            picture += square;
            picture += square;
        }
        picture += "│\n";
    }
    picture += line("└", "┘", width);
    if (matrix.rows > height || matrix.columns > width)
        picture += "a square: up to " + counted((matrix.rows + height - 1) / height, "row") + " by " +
                   counted((matrix.columns + width - 1) / width, "column") + '\n';
    return picture;
}

std::string percentage(double share) { return formatNumber(100 * share) + " %"; }

std::string notesOn(const Matrix& matrix, std::size_t missing) {
    std::string notes;
    if (matrix.array.getType() == ArrayType::SPARSE_COMPLEX_DOUBLE)
        notes += "note: minimum, median, mean and maximum are those of the magnitudes\n";
    if (missing != 0)
        notes += "note: " + counted(missing, "non-zero") + (missing == 1 ? " is" : " are") +
                 " NaN and missing from minimum, median, mean and maximum\n";
    const std::string losses = textOf(matrix.losses);
    return losses.empty() ? notes : notes + "note: " + losses + '\n';
}

} // namespace

bool isMatrixMarket(std::string_view head) {
    return head.size() >= banner.size() &&
           std::equal(banner.begin(), banner.end(), head.begin(),
                      [](char a, char b) { return a == std::tolower(static_cast<unsigned char>(b)); });
}

Matrix readMatrix(Chunks& chunks, std::string_view head, MemoryBudget& budget) {
    MatrixMarketReader reader(budget);
    for (std::string_view chunk = head; !chunk.empty(); chunk = chunks.next())
        reader.feed(chunk);
    reader.finish();
    MemoryShare memory = reader.releaseColumnStarts();
    const Array array = makeMatrix(reader, budget, memory);
    return {array, nameOf(reader.symmetry()), reader.losses(), std::move(memory)};
}

std::string heading(const Matrix& matrix) {
    return dimensionText(matrix.array) + ", " + counted(piecesOf(matrix.array).count, "non-zero");
}

std::string describe(const Matrix& matrix, MemoryBudget& budget) {
    using enum TextTable::Align;
    const Pieces pieces = piecesOf(matrix.array);
    const double elements = static_cast<double>(pieces.rows) * static_cast<double>(pieces.columns);
    MemoryShare copy(budget);
    copy.take(pieces.count * sizeof(double));
    std::vector<double> values = presentMagnitudes(matrix.array);
    const std::size_t missing = pieces.count - values.size();
    const Summary summary = summarise(values);
    TextTable table({left, left, left, right, right, right, right, right, right, right});
    table.addRow({"type", "symmetry", "dimensions", "non-zeros", "density", "missing", "minimum", "median",
                  "mean", "maximum"});
    table.addRow({kindName(matrix.array.getType()), matrix.symmetry, dimensionText(matrix.array),
                  std::to_string(pieces.count),
                  elements == 0 ? "-" : percentage(static_cast<double>(pieces.count) / elements),
                  std::to_string(missing), formatNumber(summary.minimum), formatNumber(summary.median),
                  formatNumber(summary.mean), formatNumber(summary.maximum)});
    const std::string notes = notesOn(matrix, missing);
    return table.str() + (notes.empty() ? "" : '\n' + notes) +
           (elements == 0 ? "" : '\n' + spyPicture(pieces));
}

} // namespace vexa::inspect
