// The peers that were found when the benchmarks were configured, behind one spelling of a checked element.
#pragma once

#include "Contest.hpp"

#include <cstddef>

#ifdef VEXADATA_HAVE_EIGEN
#    include <Eigen/Dense>
#endif
#ifdef VEXADATA_HAVE_ARMADILLO
#    include <armadillo>
#endif
#ifdef VEXADATA_HAVE_XTENSOR
#    include <xtensor/xarray.hpp>
#    include <xtensor/xtensor.hpp>
#endif

namespace bench {

/// Column-major storage and nothing else.
class RawMatrix {
public:
    RawMatrix(double* data, std::size_t rows, std::size_t columns)
        : data_(data), rows_(rows), columns_(columns) {}
    double& operator()(std::size_t i, std::size_t j) const {
        require(i < rows_ && j < columns_);
        return data_[i + j * rows_];
    }

private:
    double* data_;
    std::size_t rows_;
    std::size_t columns_;
};

#ifdef VEXADATA_HAVE_EIGEN
/// Eigen checks in debug builds only; here it is checked like the others.
class EigenMatrix {
public:
    explicit EigenMatrix(Eigen::MatrixXd& matrix) : matrix_(matrix) {}
    double& operator()(std::size_t i, std::size_t j) const {
        const auto row = static_cast<Eigen::Index>(i);
        const auto column = static_cast<Eigen::Index>(j);
        require(row < matrix_.rows() && column < matrix_.cols());
        return matrix_(row, column);
    }

private:
    Eigen::MatrixXd& matrix_;
};
#endif

#ifdef VEXADATA_HAVE_ARMADILLO
/// Armadillo checks its call operator.
class ArmadilloMatrix {
public:
    explicit ArmadilloMatrix(arma::mat& matrix) : matrix_(matrix) {}
    double& operator()(std::size_t i, std::size_t j) const { return matrix_(i, j); }

private:
    arma::mat& matrix_;
};
#endif

#ifdef VEXADATA_HAVE_XTENSOR
/// `at` of either kind of xtensor container.
template <class Container>
class XtensorMatrix {
public:
    explicit XtensorMatrix(Container& matrix) : matrix_(matrix) {}
    double& operator()(std::size_t i, std::size_t j) const { return matrix_.at(i, j); }

private:
    Container& matrix_;
};
#endif

} // namespace bench
