// Sparse matrices beside plain loops, Eigen and Armadillo. Ratios of one run count.
#include "Contest.hpp"

#include <foundation/vexadata/VexaData.hpp>

#ifdef VEXADATA_HAVE_EIGEN
#    include <Eigen/Sparse>
#endif
#ifdef VEXADATA_HAVE_ARMADILLO
#    include <armadillo>
#endif

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <numeric>
#include <random>
#include <vector>

using namespace foundation::vexadata;
using bench::Task;

namespace {

constexpr std::size_t side = 10'000;
constexpr std::size_t count = 100'000;

/// Distinct positions in no order.
struct Triplets {
    std::vector<std::size_t> rows;
    std::vector<std::size_t> columns;
    std::vector<double> values;

    Triplets() {
        std::mt19937_64 random(3);
        std::vector<std::size_t> places(count);
        for (std::size_t& place : places) {
            place = random() % (side * side);
        }
        std::sort(places.begin(), places.end());
        places.erase(std::unique(places.begin(), places.end()), places.end());
        std::shuffle(places.begin(), places.end(), random);
        for (const std::size_t place : places) {
            rows.push_back(place % side);
            columns.push_back(place / side);
            values.push_back(double(place % 1000 + 1));
        }
    }
};

/// Compressed columns as a plain program would build them: two passes of counting, by row and by column.
struct RawSparse {
    std::vector<std::size_t> starts;
    std::vector<std::size_t> rows;
    std::vector<double> values;

    explicit RawSparse(const Triplets& from)
        : starts(side + 1), rows(from.rows.size()), values(from.rows.size()) {
        const std::size_t n = from.rows.size();
        std::vector<std::uint32_t> byRow(side + 1);
        for (const std::size_t row : from.rows) {
            bench::require(row < side);
            ++byRow[row + 1];
        }
        std::partial_sum(byRow.begin(), byRow.end(), byRow.begin());
        std::vector<std::uint32_t> order(n);
        for (std::size_t k = 0; k < n; ++k) {
            order[byRow[from.rows[k]]++] = std::uint32_t(k);
        }
        for (const std::size_t column : from.columns) {
            bench::require(column < side);
            ++starts[column + 1];
        }
        std::partial_sum(starts.begin(), starts.end(), starts.begin());
        std::vector<std::size_t> next = starts;
        for (const std::uint32_t k : order) {
            const std::size_t place = next[from.columns[k]]++;
            rows[place] = from.rows[k];
            values[place] = from.values[k];
        }
    }
};

template <class T>
buffer_ptr<T> bufferOf(ArrayFactory& factory, const std::vector<T>& values) {
    auto buffer = factory.createBuffer<T>(values.size());
    std::memcpy(buffer.get(), values.data(), values.size() * sizeof(T));
    return buffer;
}

SparseArray<double> make(const Triplets& from) {
    ArrayFactory factory;
    return factory.createSparseArray<double>({side, side}, from.rows.size(), bufferOf(factory, from.values),
                                             bufferOf(factory, from.rows), bufferOf(factory, from.columns));
}

/// Depends on every value and its place, exactly.
double weight(double value, std::size_t row, std::size_t column) { return value + double(row ^ column); }

/// A walk through compressed columns.
template <class Values>
double visit(const std::size_t* starts, const std::size_t* rows, Values values) {
    double total = 0;
    for (std::size_t column = 0; column < side; ++column) {
        for (std::size_t k = starts[column]; k < starts[column + 1]; ++k) {
            total += weight(values[k], rows[k], column);
        }
    }
    return total;
}

const Triplets& triplets() {
    static const Triplets made;
    return made;
}

bool buildTask() {
    Task task{"1e4 x 1e4 from 1e5 shuffled triplets", double(triplets().rows.size()), 0, {}, 6.3};
    // The arguments of the factory are buffers that it takes over: filling them is part of the work, as
    // building the lists of the peers is not.
    task.contenders.push_back({"raw", [] { return double(RawSparse(triplets()).rows[77]); }});
    task.contenders.push_back({"vexadata", [] { return double(make(triplets()).getIr()[77]); }});
#ifdef VEXADATA_HAVE_EIGEN
    static const auto list = [] {
        std::vector<Eigen::Triplet<double, std::int64_t>> entries;
        for (std::size_t k = 0; k < triplets().rows.size(); ++k) {
            entries.emplace_back(triplets().rows[k], triplets().columns[k], triplets().values[k]);
        }
        return entries;
    }();
    task.contenders.push_back({"Eigen", [] {
                                   Eigen::SparseMatrix<double, Eigen::ColMajor, std::int64_t> matrix(side,
                                                                                                     side);
                                   matrix.setFromTriplets(list.begin(), list.end());
                                   return double(matrix.innerIndexPtr()[77]);
                               }});
#endif
#ifdef VEXADATA_HAVE_ARMADILLO
    static arma::umat places(2, triplets().rows.size());
    for (std::size_t k = 0; k < triplets().rows.size(); ++k) {
        places(0, k) = triplets().rows[k];
        places(1, k) = triplets().columns[k];
    }
    static const arma::vec values(triplets().values);
    task.contenders.push_back({"Armadillo", [] {
                                   const arma::sp_mat matrix(places, values, side, side);
                                   return double(matrix.row_indices[77]);
                               }});
#endif
    return report(task);
}

bool visitTasks() {
    static const RawSparse raw(triplets());
    static const SparseArray<double> matrix = make(triplets());
    const bench::Contender rawWalk{
        "raw", [] { return visit(raw.starts.data(), raw.rows.data(), raw.values.data()); }};
    Task pieces{"visit value, row, column: the pieces", double(triplets().rows.size()), 1.2, {rawWalk}};
    pieces.contenders.push_back(
        {"vexadata", [] { return visit(matrix.getJc(), matrix.getIr(), &*matrix.begin()); }});
#ifdef VEXADATA_HAVE_EIGEN
    static const auto eigen = [] {
        std::vector<Eigen::Triplet<double, std::int64_t>> entries;
        for (std::size_t k = 0; k < triplets().rows.size(); ++k) {
            entries.emplace_back(triplets().rows[k], triplets().columns[k], triplets().values[k]);
        }
        Eigen::SparseMatrix<double, Eigen::ColMajor, std::int64_t> made(side, side);
        made.setFromTriplets(entries.begin(), entries.end());
        return made;
    }();
    pieces.contenders.push_back({"Eigen", [] {
                                     double total = 0;
                                     for (std::int64_t column = 0; column < eigen.outerSize(); ++column) {
                                         for (decltype(eigen)::InnerIterator it(eigen, column); it; ++it) {
                                             total += weight(it.value(), std::size_t(it.row()),
                                                             std::size_t(column));
                                         }
                                     }
                                     return total;
                                 }});
#endif
    Task indices{"the same, iterator and getIndex", double(triplets().rows.size()), 0, {rawWalk}, 15};
    indices.contenders.push_back({"vexadata", [] {
                                      double total = 0;
                                      const auto end = matrix.end();
                                      for (auto it = matrix.begin(); it != end; ++it) {
                                          const auto [row, column] = matrix.getIndex(it);
                                          total += weight(*it, row, column);
                                      }
                                      return total;
                                  }});
#ifdef VEXADATA_HAVE_ARMADILLO
    static arma::umat places(2, triplets().rows.size());
    for (std::size_t k = 0; k < triplets().rows.size(); ++k) {
        places(0, k) = triplets().rows[k];
        places(1, k) = triplets().columns[k];
    }
    static const arma::sp_mat armadillo(places, arma::vec(triplets().values), side, side);
    indices.contenders.push_back({"Armadillo", [] {
                                      double total = 0;
                                      for (auto it = armadillo.begin(); it != armadillo.end(); ++it) {
                                          total += weight(*it, it.row(), it.col());
                                      }
                                      return total;
                                  }});
#endif
    const bool agree = report(pieces);
    return report(indices) && agree;
}

} // namespace

int main() {
    bench::printSetting();
    bench::printHeading();
    const bool built = buildTask();
    const bool visited = visitTasks();
    return built && visited ? 0 : 1;
}
