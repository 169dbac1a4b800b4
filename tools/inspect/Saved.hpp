// Arrays that were saved under names, as vexadata::storage reads and writes them.
#pragma once

#include "Memory.hpp"

#include <foundation/vexadata/Array.hpp>

#include <string>
#include <vector>

namespace vexa::inspect {

struct NamedArray {
    std::string name; ///< any UTF-8
    foundation::vexadata::Array array;
};

/// The variables of a file, in its order.
struct Saved {
    std::vector<NamedArray> variables;
    MemoryShare memory;
};

/// First a line for each variable that is neither a struct of columns nor sparse, as if they were columns; then
/// each of the others below its name, as a table or a matrix.
std::string describe(const Saved& saved, MemoryBudget& budget);

/// "3 variables".
std::string heading(const Saved& saved);

} // namespace vexa::inspect
