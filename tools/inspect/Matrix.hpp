// Matrix Market files as sparse matrices.
#pragma once

#include "Chunks.hpp"
#include "Losses.hpp"
#include "Memory.hpp"

#include <foundation/vexadata/Array.hpp>

#include <string>
#include <string_view>

namespace vexa::inspect {

struct Matrix {
    foundation::vexadata::Array array; ///< sparse: logical for patterns, double, or complex double
    std::string symmetry;              ///< as in the file, or "-"; the array holds both halves
    Losses losses;                     ///< of the entries in the file
    MemoryShare memory;
};

/// Whether a text begins as Matrix Market files do.
bool isMatrixMarket(std::string_view head);

/// Reads a Matrix Market file to its end; `head` is its first chunk. Takes the coordinate form with real,
/// integer, complex or no values, general, symmetric, skew-symmetric or hermitian. `budget` outlives the
/// matrix. Throws InputError.
Matrix readMatrix(Chunks& chunks, std::string_view head, MemoryBudget& budget);

/// Kind, size, non-zeros, density, figures, notes on what the figures leave out, and a picture of where the
/// non-zeros are.
std::string describe(const Matrix& matrix, MemoryBudget& budget);

/// "100x100, 460 non-zeros".
std::string heading(const Matrix& matrix);

} // namespace vexa::inspect
