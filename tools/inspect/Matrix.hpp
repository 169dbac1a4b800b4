// Matrix Market files as sparse matrices.
#pragma once

#include "Chunks.hpp"
#include "Memory.hpp"

#include <foundation/vexadata/Array.hpp>

#include <string>
#include <string_view>

namespace vexa::inspect {

struct Matrix {
    foundation::vexadata::Array array; ///< sparse: logical for patterns, double, or complex double
    std::string symmetry;              ///< as in the file; the array holds both halves
};

/// Whether a text begins as Matrix Market files do.
bool isMatrixMarket(std::string_view head);

/// Reads a Matrix Market file to its end; `head` is its first chunk. Takes the coordinate form with real, integer, complex
/// or no values, general, symmetric, skew-symmetric or hermitian. Throws InputError.
Matrix readMatrix(Chunks& chunks, std::string_view head, std::uint64_t maxMemory);

/// Kind, size, non-zeros, density, and a picture of where the non-zeros are.
std::string describe(const Matrix& matrix);

/// "100x100, 460 non-zeros".
std::string heading(const Matrix& matrix);

} // namespace vexa::inspect
