// Arrays as Armadillo's matrices and cubes, without a copy, and Armadillo's results as arrays. Needs
// Armadillo; nothing else of the library includes this header. Results that move into arrays need
// vexadata::client, too.
#pragma once

#include <foundation/vexadata/ArrayFactory.hpp>
#include <foundation/vexadata/ArrayView.hpp>
#include <foundation/vexadata/Print.hpp>
#include <foundation/vexadata/SparseArray.hpp>
#include <vexa/client/Adoption.hpp>

#include <algorithm>
#include <armadillo>
#include <cstddef>
#include <memory>
#include <stdexcept>
#include <string>
#include <type_traits>
#include <utility>

namespace vexa::interop {

namespace fv = foundation::vexadata;

/// An array as an `arma::Mat` or `arma::Cube` over its own storage: `*view` takes part in Armadillo's
/// expressions. Shares the array and keeps it alive; a write through a handle of the array gives that handle
/// a copy and leaves the view where it was. Stays where it is made: Armadillo copies the elements of a matrix
/// that is copied or moved. Cannot be resized: Armadillo throws std::logic_error.
template <class Matrix, class Elements>
class ArmadilloView {
public:
    /// Over `data` with these extents, which `elements` keeps alive.
    template <class... Extents>
    explicit ArmadilloView(Elements elements, typename std::remove_const_t<Matrix>::elem_type* data,
                           Extents... extents)
        : elements_(std::move(elements)), matrix_(data, static_cast<arma::uword>(extents)..., false, true) {}
    ArmadilloView(const ArmadilloView&) = delete;
    ArmadilloView& operator=(const ArmadilloView&) = delete;

    /// Valid as long as this view.
    Matrix& operator*() noexcept { return matrix_; }
    const Matrix& operator*() const noexcept { return matrix_; }
    Matrix* operator->() noexcept { return &matrix_; }
    const Matrix* operator->() const noexcept { return &matrix_; }

private:
    Elements elements_;
    Matrix matrix_;
};

namespace detail {

/// @throws std::invalid_argument unless the elements lie column by column in `rank` dimensions
inline void requireColumns(const fv::Array& array, std::size_t rank) {
    const std::vector<std::size_t> extents = array.getDimensions();
    if (extents.size() != rank) {
        throw std::invalid_argument("Armadillo: an array of " + fv::dimensionText(array) +
                                    " elements is no " + (rank == 2 ? "matrix" : "cube"));
    }
    const bool isLine = array.getNumberOfElements() == *std::max_element(extents.begin(), extents.end());
    if (array.getMemoryLayout() == vexa::data::MemoryLayout::ROW_MAJOR && !isLine) {
        throw std::invalid_argument(
            "Armadillo: the elements lie row by row; withLayout(array, COLUMN_MAJOR) has them in the other order");
    }
}

template <class Matrix, std::size_t Rank, class T>
auto armadilloOver(fv::ArrayView<T, Rank> view) {
    using Value = std::remove_const_t<T>;
    // What is const is only handed out as a const matrix.
    auto* const data = const_cast<Value*>(view.data());
    if constexpr (Rank == 2) {
        return ArmadilloView<Matrix, fv::ArrayView<T, 2>>(view, data, view.extent(0), view.extent(1));
    } else {
        return ArmadilloView<Matrix, fv::ArrayView<T, 3>>(view, data, view.extent(0), view.extent(1),
                                                          view.extent(2));
    }
}

} // namespace detail

/// A matrix of numbers, read-only and without a copy.
/// @throws std::invalid_argument, with a text that says what the array is, when it has other than two
/// dimensions or lies row by row
template <class T>
auto armadilloView(const fv::TypedArray<T>& array) {
    detail::requireColumns(array, 2);
    return detail::armadilloOver<const arma::Mat<T>>(fv::readOnlyView(array));
}
/// The same for writing. The array is made private first, once.
/// @throws std::bad_alloc, the handle unchanged
template <class T>
auto writableArmadilloView(fv::TypedArray<T>& array) {
    detail::requireColumns(array, 2);
    return detail::armadilloOver<arma::Mat<T>>(fv::writableView(array));
}
/// The two for arrays of three dimensions.
template <class T>
auto armadilloCube(const fv::TypedArray<T>& array) {
    detail::requireColumns(array, 3);
    return detail::armadilloOver<const arma::Cube<T>>(fv::readOnlyView<3>(array));
}
template <class T>
auto writableArmadilloCube(fv::TypedArray<T>& array) {
    detail::requireColumns(array, 3);
    return detail::armadilloOver<arma::Cube<T>>(fv::writableView<3>(array));
}

/// A matrix, row, column or cube of Armadillo as an array, which it is moved into: nothing is copied, but for
/// the few elements that Armadillo keeps inside the matrix, and those of memory that is not its own. An
/// expression is evaluated first.
/// @throws std::bad_alloc
template <class T>
fv::TypedArray<T> fromArmadillo(arma::Mat<T> matrix) {
    const std::vector<std::size_t> dims = {matrix.n_rows, matrix.n_cols};
    auto owner = std::make_shared<arma::Mat<T>>(std::move(matrix));
    T* const data = owner->memptr();
    return client::adopt<T>(dims, data, std::move(owner));
}
template <class T>
fv::TypedArray<T> fromArmadillo(arma::Cube<T> cube) {
    const std::vector<std::size_t> dims = {cube.n_rows, cube.n_cols, cube.n_slices};
    auto owner = std::make_shared<arma::Cube<T>>(std::move(cube));
    T* const data = owner->memptr();
    return client::adopt<T>(dims, data, std::move(owner));
}
template <class T>
fv::TypedArray<T> fromArmadillo(arma::Col<T> column) {
    return fromArmadillo(arma::Mat<T>(std::move(column)));
}
template <class T>
fv::TypedArray<T> fromArmadillo(arma::Row<T> row) {
    return fromArmadillo(arma::Mat<T>(std::move(row)));
}
template <class T, class Expression>
fv::TypedArray<T> fromArmadillo(const arma::Base<T, Expression>& expression) {
    return fromArmadillo(arma::Mat<T>(expression.get_ref()));
}

/// A sparse matrix of numbers as one of Armadillo, which keeps a copy of its own. Zeros that are stored are
/// left out.
/// @throws std::bad_alloc
template <class T>
arma::SpMat<T> toArmadillo(const fv::SparseArray<T>& array) {
    static_assert(!std::is_same_v<T, bool>, "Armadillo has no matrices of logicals");
    static_assert(sizeof(arma::uword) == sizeof(std::size_t), "Armadillo's indices must have 64 bits");
    const std::size_t count = array.getNumberOfNonZeroElements();
    const auto list = [](const std::size_t* first, std::size_t length) {
        arma::Col<arma::uword> indices(length);
        std::copy_n(first, length, indices.begin());
        return indices;
    };
    arma::Col<T> values(count);
    std::copy(array.cbegin(), array.cend(), values.begin());
    return arma::SpMat<T>(list(array.getIr(), count), list(array.getJc(), array.getCols() + 1), values,
                          array.getRows(), array.getCols());
}

/// A sparse matrix of Armadillo as an array.
/// @throws errors of the back-end
template <class T>
fv::SparseArray<T> fromArmadillo(const fv::ArrayFactory& factory, const arma::SpMat<T>& matrix) {
    matrix.sync();
    const std::size_t count = matrix.n_nonzero;
    const std::size_t columns = matrix.n_cols;
    fv::buffer_ptr<T> values = factory.createBuffer<T>(count);
    fv::buffer_ptr<std::size_t> rows = factory.createBuffer<std::size_t>(count);
    fv::buffer_ptr<std::size_t> starts = factory.createBuffer<std::size_t>(columns + 1);
    std::copy_n(matrix.values, count, values.get());
    std::copy_n(matrix.row_indices, count, rows.get());
    std::copy_n(matrix.col_ptrs, columns + 1, starts.get());
    return factory.createVEXASparseArray<T>({static_cast<std::size_t>(matrix.n_rows), columns}, count,
                                            std::move(values), std::move(rows), std::move(starts));
}

} // namespace vexa::interop
