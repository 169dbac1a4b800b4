// How handles reach elements without asking the back-end. An array of a class that handles recognise carries
// an `InPlace`. They tell it by the address of its type information and ask every other array through its
// operations.
#pragma once

#include <foundation/vexadata/Export.hpp>

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <typeinfo>

namespace vexa::data::detail {

/// The elements of a column-major matrix. Without rows nothing is reached in place: the array has no
/// elements, another layout or another number of dimensions, and is asked as any other. Frozen: compiled into
/// clients.
template <class T>
struct InPlace {
    /// Extents, and the first element.
    std::size_t rows = 0;
    std::size_t columns = 0;
    T* data = nullptr;

    /// The element at one index into a row or column, or at two; null when it is not there.
    VEXADATA_INLINE T* element(std::uint64_t count, std::uint64_t first,
                               std::uint64_t second) const noexcept {
        if (count == 1) {
            if (rows == 1) {
                second = first;
                first = 0;
            } else if (columns != 1) {
                return nullptr;
            }
        }
        return first < rows && second < columns ? data + first + second * rows : nullptr;
    }
};

/// The same for elements whose storage is the back-end's own: a position is all that is known.
template <>
struct InPlace<const void> {
    /// Extents.
    std::size_t rows = 0;
    std::size_t columns = 0;
};

/// Kinds of arrays of which a back-end may have one class recognised.
enum class RecognisedKind : std::size_t { CELLS, STRINGS, STRUCTS };

/// The type information of the class that is recognised for each kind; never null.
VEXADATA_API extern std::atomic<const void*> recognisedClasses[3];

/// Has the class `type`, which must be final and derive from `impl::InPlaceArrayImpl`, recognised from now
/// on. One class a kind: later ones, and classes of back-ends that are not told of here, are asked as any
/// others. Safe from any thread.
/// @return whether it is the one
VEXADATA_API bool recognise(RecognisedKind kind, const std::type_info& type) noexcept;

/// The type information of the factory class that is recognised; never null.
VEXADATA_API extern std::atomic<const void*> recognisedFactory;

/// The same for one class of factories, final too, whose `createArrayImpl` makes every primitive array as
/// `impl::DenseArrayImpl::zeros`. Matrices with listed dimensions are then made without asking it.
VEXADATA_API bool recogniseFactory(const std::type_info& type) noexcept;

} // namespace vexa::data::detail
