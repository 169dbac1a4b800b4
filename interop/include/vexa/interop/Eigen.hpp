// Arrays as Eigen's matrices, without a copy, and Eigen's results as arrays. Needs Eigen 3.4; nothing else of
// the library includes this header.
#pragma once

#include <foundation/vexadata/ArrayFactory.hpp>
#include <foundation/vexadata/ArrayView.hpp>
#include <foundation/vexadata/Print.hpp>
#include <foundation/vexadata/SparseArray.hpp>

#include <Eigen/Core>
#include <Eigen/SparseCore>

#include <algorithm>
#include <cstddef>
#include <limits>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace vexa::interop {

namespace fv = foundation::vexadata;

namespace detail {

/// A base that is made before the map behind it.
template <class Owner>
struct Keeping {
    Owner keptOwner;
};

} // namespace detail

/// An Eigen map that keeps the array alive which it looks at. Takes part in Eigen's expressions as every
/// `Eigen::Map` does. Shares the array: while it lives, a write through a handle of the array gives that
/// handle a copy, and leaves the map where it was. Eigen's maps cannot be assigned to look elsewhere; neither
/// can this one: assigning writes elements.
template <class Map, class Owner>
class EigenView : private detail::Keeping<Owner>, public Map {
public:
    /// Keeps `owner`; the other arguments are those of `Map`.
    template <class... Arguments>
    explicit EigenView(Owner owner, Arguments... arguments)
        : detail::Keeping<Owner>{std::move(owner)}, Map(arguments...) {}
    EigenView(const EigenView&) = default;
    using Map::operator=;
    /// Writes elements.
    EigenView& operator=(const EigenView& other) {
        Map::operator=(other);
        return *this;
    }
};

namespace detail {

inline Eigen::Index extentOf(std::size_t extent) {
    if (extent > static_cast<std::size_t>(std::numeric_limits<Eigen::Index>::max())) {
        throw std::invalid_argument("Eigen: an extent of " + std::to_string(extent) +
                                    " is beyond its index type");
    }
    return static_cast<Eigen::Index>(extent);
}

/// Whether the elements of a matrix lie in the order that `options` say; those of rows and columns lie in
/// both.
template <int options>
void requireOrder(const fv::Array& array) {
    const std::vector<std::size_t> extents = array.getDimensions();
    if (extents.size() != 2) {
        throw std::invalid_argument("Eigen: an array of " + fv::dimensionText(array) +
                                    " elements is no matrix");
    }
    const bool byRow = array.getMemoryLayout() == vexa::data::MemoryLayout::ROW_MAJOR;
    if (byRow != ((options & Eigen::RowMajor) != 0) && std::min(extents[0], extents[1]) > 1) {
        throw std::invalid_argument(std::string("Eigen: the elements lie ") +
                                    (byRow ? "row by row; ask for eigenView<Eigen::RowMajor>"
                                           : "column by column; ask for eigenView<Eigen::ColMajor>"));
    }
}

template <class T, int options>
using Matrix = Eigen::Matrix<T, Eigen::Dynamic, Eigen::Dynamic, options>;

template <class T, int options>
auto viewOver(fv::ArrayView<T, 2> view) {
    using Plain = Matrix<std::remove_const_t<T>, options>;
    using Map = Eigen::Map<std::conditional_t<std::is_const_v<T>, const Plain, Plain>>;
    T* const data = view.data();
    const Eigen::Index rows = extentOf(view.extent(0));
    const Eigen::Index columns = extentOf(view.extent(1));
    return EigenView<Map, fv::ArrayView<T, 2>>(std::move(view), data, rows, columns);
}

/// A buffer for a matrix, filled by `assign(map)`, as an array.
template <class T, class Assign>
fv::TypedArray<T> arrayFrom(const fv::ArrayFactory& factory, Eigen::Index rows, Eigen::Index columns,
                            Assign assign) {
    const auto count = static_cast<std::size_t>(rows * columns);
    fv::buffer_ptr<T> values = factory.createBuffer<T>(count);
    assign(values.get());
    return factory.createArrayFromBuffer<T>(
        {static_cast<std::size_t>(rows), static_cast<std::size_t>(columns)}, std::move(values));
}

} // namespace detail

/// A matrix of numbers or logicals as an `Eigen::Map`, read-only and without a copy; `options` is the layout,
/// `Eigen::ColMajor` or `Eigen::RowMajor`, which is known when the program is compiled.
/// @throws std::invalid_argument, with a text that says what the array is, when it has other than two
/// dimensions or the other layout. A row or a column has both.
template <int options = Eigen::ColMajor, class T>
auto eigenView(const fv::TypedArray<T>& array) {
    detail::requireOrder<options>(array);
    return detail::viewOver<const T, options>(fv::readOnlyView(array));
}
/// The same for writing. The array is made private first, once.
/// @throws std::bad_alloc, the handle unchanged
template <int options = Eigen::ColMajor, class T>
auto writableEigenView(fv::TypedArray<T>& array) {
    detail::requireOrder<options>(array);
    return detail::viewOver<T, options>(fv::writableView(array));
}

/// The value of an expression of Eigen as an array, evaluated into its storage. A product is computed there
/// without a temporary.
/// @throws NumberOfElementsExceedsMaximumException; errors of the back-end
template <class Derived>
fv::TypedArray<typename Derived::Scalar> fromEigen(const fv::ArrayFactory& factory,
                                                   const Eigen::MatrixBase<Derived>& matrix) {
    using T = typename Derived::Scalar;
    return detail::arrayFrom<T>(factory, matrix.rows(), matrix.cols(), [&](T* values) {
        Eigen::Map<detail::Matrix<T, Eigen::ColMajor>>(values, matrix.rows(), matrix.cols()).noalias() =
            matrix;
    });
}
template <class Derived>
fv::TypedArray<typename Derived::Scalar> fromEigen(const fv::ArrayFactory& factory,
                                                   const Eigen::ArrayBase<Derived>& array) {
    return fromEigen(factory, array.matrix());
}

/// Eigen's sparse matrix over our compressed columns: places are as wide as ours.
template <class T>
using EigenSparse = Eigen::SparseMatrix<T, Eigen::ColMajor, std::ptrdiff_t>;

/// A sparse matrix as an `Eigen::Map`, read-only and without a copy. Shares the array as `eigenView` does.
template <class T>
auto eigenView(const fv::SparseArray<T>& array) {
    // Signed and unsigned integers of one width may look at each other's storage.
    const auto* starts = reinterpret_cast<const std::ptrdiff_t*>(array.getJc());
    const auto* rows = reinterpret_cast<const std::ptrdiff_t*>(array.getIr());
    const std::size_t count = array.getNumberOfNonZeroElements();
    const T* values = count == 0 ? nullptr : &*array.cbegin();
    return EigenView<Eigen::Map<const EigenSparse<T>>, fv::SparseArray<T>>(
        array, detail::extentOf(array.getRows()), detail::extentOf(array.getCols()), detail::extentOf(count),
        starts, rows, values);
}

/// The value of a sparse expression of Eigen as a sparse array; stored zeros stay stored.
/// @throws errors of the back-end
template <class Derived>
fv::SparseArray<typename Derived::Scalar> fromEigen(const fv::ArrayFactory& factory,
                                                    const Eigen::SparseMatrixBase<Derived>& matrix) {
    using T = typename Derived::Scalar;
    EigenSparse<T> plain = matrix;
    plain.makeCompressed();
    const auto count = static_cast<std::size_t>(plain.nonZeros());
    const auto columns = static_cast<std::size_t>(plain.cols());
    fv::buffer_ptr<T> values = factory.createBuffer<T>(count);
    fv::buffer_ptr<std::size_t> rows = factory.createBuffer<std::size_t>(count);
    fv::buffer_ptr<std::size_t> starts = factory.createBuffer<std::size_t>(columns + 1);
    std::copy_n(plain.valuePtr(), count, values.get());
    std::copy_n(plain.innerIndexPtr(), count, rows.get());
    std::copy_n(plain.outerIndexPtr(), columns + 1, starts.get());
    return factory.createVEXASparseArray<T>({static_cast<std::size_t>(plain.rows()), columns}, count,
                                            std::move(values), std::move(rows), std::move(starts));
}

} // namespace vexa::interop
