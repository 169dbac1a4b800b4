// Dense arrays beside the raw loop and the peers. Ratios of one run count; absolute figures move with the
// machine.
#include "Contest.hpp"
#include "Peers.hpp"

#include <foundation/vexadata/VexaData.hpp>

#include <malloc.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <initializer_list>
#include <iterator>
#include <memory>
#include <numeric>
#include <random>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

using namespace foundation::vexadata;
using bench::Contender;
using bench::hide;
using bench::Task;

namespace {

constexpr std::size_t side = 512;
constexpr double elements = double(side) * double(side);

/// Element handles of an array behind the same spelling as a raw matrix.
struct Handles {
    TypedArray<double>& array;
    [[gnu::always_inline]] auto operator()(std::size_t i, std::size_t j) const { return array[i][j]; }
};
struct ReadOnlyHandles {
    const TypedArray<double>& array;
    [[gnu::always_inline]] auto operator()(std::size_t i, std::size_t j) const { return array[i][j]; }
};

template <class Matrix>
double addAll(const Matrix& matrix) {
    std::size_t n = side;
    hide(n);
    double total = 0;
    for (std::size_t j = 0; j < n; ++j) {
        for (std::size_t i = 0; i < n; ++i) {
            total += matrix(i, j);
        }
    }
    return total;
}

/// As addAll with a handle that ends in the same function, so that every call may have to clean up. It was four times slower
/// once.
template <class Get>
double addOwn(const TypedArray<double>& array, Get get) {
    const TypedArray<double> own = array;
    std::size_t n = side;
    hide(n);
    double total = 0;
    for (std::size_t j = 0; j < n; ++j) {
        for (std::size_t i = 0; i < n; ++i) {
            total += get(own, i, j);
        }
    }
    return total;
}

template <class Matrix>
double update(const Matrix& matrix) {
    std::size_t n = side;
    hide(n);
    for (std::size_t j = 0; j < n; ++j) {
        for (std::size_t i = 0; i < n; ++i) {
            matrix(i, j) = double(matrix(i, j)) * 0.5 + 1.0;
        }
    }
    return matrix(1, 2);
}

bool reportAll(std::initializer_list<const Task*> tasks) {
    bool agree = true;
    for (const Task* task : tasks) {
        agree = report(*task) && agree;
    }
    return agree;
}

struct Index {
    std::uint32_t i;
    std::uint32_t j;
};

std::vector<Index> shuffledIndices() {
    std::vector<Index> indices;
    for (std::uint32_t j = 0; j < side; ++j) {
        for (std::uint32_t i = 0; i < side; ++i) {
            indices.push_back({i, j});
        }
    }
    std::shuffle(indices.begin(), indices.end(), std::mt19937(7));
    return indices;
}

template <class Matrix>
double sumShuffled(const Matrix& matrix, const std::vector<Index>& indices) {
    double total = 0;
    for (const Index& index : indices) {
        total += matrix(index.i, index.j);
    }
    return total;
}

/// The matrices of all contenders, equal at the start.
struct Matrices {
    ArrayFactory factory;
    std::vector<double> raw;
    TypedArray<double> ours = factory.createArray<double>({side, side});
#ifdef VEXADATA_HAVE_EIGEN
    Eigen::MatrixXd eigen = Eigen::MatrixXd(side, side);
#endif
#ifdef VEXADATA_HAVE_ARMADILLO
    arma::mat arma = arma::mat(side, side);
#endif
#ifdef VEXADATA_HAVE_XTENSOR
    xt::xtensor<double, 2, xt::layout_type::column_major> fixed =
        xt::xtensor<double, 2, xt::layout_type::column_major>::from_shape({side, side});
    xt::xarray<double, xt::layout_type::column_major> dynamic =
        xt::xarray<double, xt::layout_type::column_major>::from_shape({side, side});
#endif

    Matrices() : raw(side * side) {
        for (std::size_t k = 0; k < raw.size(); ++k) {
            raw[k] = double(k % 1000);
        }
        std::copy(raw.begin(), raw.end(), ours.begin());
#ifdef VEXADATA_HAVE_EIGEN
        std::copy(raw.begin(), raw.end(), eigen.data());
#endif
#ifdef VEXADATA_HAVE_ARMADILLO
        std::copy(raw.begin(), raw.end(), arma.memptr());
#endif
#ifdef VEXADATA_HAVE_XTENSOR
        std::copy(raw.begin(), raw.end(), fixed.data());
        std::copy(raw.begin(), raw.end(), dynamic.data());
#endif
    }

    bench::RawMatrix rawMatrix() { return {raw.data(), side, side}; }

    /// Adds what `use` does with each peer's matrix.
    template <class Use>
    void addPeers([[maybe_unused]] std::vector<Contender>& contenders, [[maybe_unused]] Use use) {
#ifdef VEXADATA_HAVE_EIGEN
        contenders.push_back({"Eigen", [this, use] { return use(bench::EigenMatrix(eigen)); }});
#endif
#ifdef VEXADATA_HAVE_ARMADILLO
        contenders.push_back({"Armadillo", [this, use] { return use(bench::ArmadilloMatrix(arma)); }});
#endif
#ifdef VEXADATA_HAVE_XTENSOR
        contenders.push_back({"xtensor<2>", [this, use] { return use(bench::XtensorMatrix(fixed)); }});
        contenders.push_back({"xarray", [this, use] { return use(bench::XtensorMatrix(dynamic)); }});
#endif
    }
};

bool elementTasks() {
    auto m = std::make_unique<Matrices>();
    const auto indices = shuffledIndices();
    const auto add = [](const auto& matrix) { return addAll(matrix); };
    const auto change = [](const auto& matrix) { return update(matrix); };
    const auto pick = [&](const auto& matrix) { return sumShuffled(matrix, indices); };

    Task read{"checked read a[i][j], 512 x 512",
              elements,
              1.15,
              {{"raw", [&] { return add(m->rawMatrix()); }},
               {"ours", [&] { return add(ReadOnlyHandles{m->ours}); }}}};
    m->addPeers(read.contenders, add);
    Task own{"the same, of a handle made there",
             elements,
             1.15,
             {{"raw", [&] { return add(m->rawMatrix()); }},
              {"ours", [&] {
                   return addOwn(m->ours, [](const auto& array, std::size_t i, std::size_t j) {
                       return double(array[i][j]);
                   });
               }}}};
    Task shuffled{"checked read, shuffled",
                  elements,
                  1.7,
                  {{"raw", [&] { return pick(m->rawMatrix()); }},
                   {"ours", [&] { return pick(ReadOnlyHandles{m->ours}); }}}};
    m->addPeers(shuffled.contenders, pick);
    Task viewRead{
        "checked read through a view",
        elements,
        1.05,
        {{"raw", [&] { return add(m->rawMatrix()); }}, {"ours", [&] { return add(readOnlyView(m->ours)); }}}};
    Task viewShuffled{"checked read through a view, shuffled",
                      elements,
                      1.2,
                      {{"raw", [&] { return pick(m->rawMatrix()); }},
                       {"ours", [&] { return pick(readOnlyView(m->ours)); }}}};
    bool agree = reportAll({&read, &own, &shuffled, &viewRead, &viewShuffled});

    Task write{"checked a[i][j] = f(a[i][j])",
               elements,
               6.0,
               {{"raw", [&] { return change(m->rawMatrix()); }},
                {"ours", [&] { return change(Handles{m->ours}); }}}};
    m->addPeers(write.contenders, change);
    Task viewWrite{"checked v(i, j) = f(v(i, j)) through a view",
                   elements,
                   2.0,
                   {{"raw", [&] { return change(m->rawMatrix()); }},
                    {"ours", [&] { return change(writableView(m->ours)); }}}};
    return reportAll({&write, &viewWrite}) && agree;
}

double sumOf(const double* data, std::size_t count) {
    double total = 0;
    for (std::size_t k = 0; k < count; ++k) {
        total += data[k];
    }
    return total;
}

bool iterationTasks() {
    constexpr std::size_t count = 1000000;
    ArrayFactory factory;
    std::vector<double> raw(count);
    std::iota(raw.begin(), raw.end(), 0.0);
    auto ours = factory.createArrayWithData<double>({count}, raw.data(), count);
    const auto f = [](double x) { return x * 0.5 + 1.0; };
    Task transform{"transform of 1e6 in place, iterators",
                   double(count),
                   1.05,
                   {{"raw",
                     [&] {
                         double* data = raw.data();
                         hide(data);
                         for (std::size_t k = 0; k < count; ++k) {
                             data[k] = f(data[k]);
                         }
                         return raw[7];
                     }},
                    {"ours", [&] {
                         std::transform(ours.begin(), ours.end(), ours.begin(), f);
                         return static_cast<double>(ours[7]);
                     }}}};
    Task walk{"range-for sum of 1e6",
              double(count),
              1.05,
              {{"raw", [&] { return sumOf(raw.data(), count); }}, {"ours", [&] {
                                                                       double total = 0;
                                                                       for (const double x :
                                                                            std::as_const(ours)) {
                                                                           total += x;
                                                                       }
                                                                       return total;
                                                                   }}}};
    Task buffer{"sum of 1e6 through getBufferPtr",
                double(count),
                1.02,
                {{"raw", [&] { return sumOf(raw.data(), count); }},
                 {"ours", [&] { return sumOf(getBufferPtr(ours).get(), count); }}}};
    return reportAll({&transform, &walk, &buffer});
}

/// Does `once` so often that a clock can see it.
template <class Once>
std::function<double()> repeated(int times, Once once) {
    return [=] {
        double last = 0;
        for (int k = 0; k < times; ++k) {
            last = once();
        }
        return last;
    };
}

bool creationTask(const char* name, std::size_t n, int times, double most) {
    auto factory = std::make_shared<ArrayFactory>();
    Task task{name,
              double(times),
              most,
              {{"raw", repeated(times,
                                [=] {
                                    auto* data = static_cast<double*>(std::calloc(n * n, sizeof(double)));
                                    hide(data);
                                    const double first = data[0];
                                    std::free(data);
                                    return first;
                                })},
               {"ours", repeated(times, [=] {
                    auto array = factory->createArray<double>({n, n});
                    hide(array);
                    return 0.0;
                })}}};
#ifdef VEXADATA_HAVE_EIGEN
    task.contenders.push_back({"Eigen", repeated(times, [=] {
                                   Eigen::MatrixXd m =
                                       Eigen::MatrixXd::Zero(Eigen::Index(n), Eigen::Index(n));
                                   hide(m);
                                   return 0.0;
                               })});
#endif
#ifdef VEXADATA_HAVE_XTENSOR
    task.contenders.push_back({"xarray", repeated(times, [=] {
                                   xt::xarray<double> m = xt::zeros<double>({n, n});
                                   hide(m);
                                   return 0.0;
                               })});
#endif
    return report(task);
}

bool copyTasks() {
    ArrayFactory factory;
    auto array = factory.createArray<double>({1000, 1000});
    const auto shared = std::make_shared<double>(0.0);
    Task copy{"copy of a handle, and drop",
              1000,
              4.3,
              {{"raw", repeated(1000,
                                [&] {
                                    auto second = shared;
                                    hide(second);
                                    return 0.0;
                                })},
               {"ours", repeated(1000, [&] {
                    auto second = array;
                    hide(second);
                    return 0.0;
                })}}};
    return report(copy);
}

bool copyOnWriteTask(const char* name, std::size_t n, int times, double most) {
    ArrayFactory factory;
    std::vector<double> raw(n * n, 1.0);
    auto ours = factory.createArrayWithData<double>({n, n}, raw.data(), raw.size());
    Task task{name,
              double(times),
              most,
              {{"raw", repeated(times,
                                [&] {
                                    auto* copy = static_cast<double*>(std::malloc(n * n * sizeof(double)));
                                    std::memcpy(copy, raw.data(), n * n * sizeof(double));
                                    copy[1] = 2.0;
                                    hide(copy);
                                    const double written = copy[1];
                                    std::free(copy);
                                    return written;
                                })},
               {"ours", repeated(times, [&] {
                    auto copy = ours;
                    copy[1][0] = 2.0;
                    hide(copy);
                    return 2.0;
                })}}};
    return report(task);
}

/// All over the same two buffers, since four would not fit into the cache.
bool equalityTask() {
    constexpr std::size_t count = 1000000;
    ArrayFactory factory;
    const std::vector<double> values(count, 1.0);
    const auto a = factory.createArrayWithData<double>({count}, values.data(), count);
    const auto b = factory.createArrayWithData<double>({count}, values.data(), count);
    const auto left = getBufferPtr(a);
    const auto right = getBufferPtr(b);
    Task task{
        "equality of 1e6 equal doubles",
        double(count),
        1.1,
        {{"raw",
          [&] { return std::memcmp(left.get(), right.get(), count * sizeof(double)) == 0 ? 1.0 : 0.0; }},
         {"ours", [&] { return a == b ? 1.0 : 0.0; }},
         {"std::equal",
          [&] { return std::equal(left.get(), left.get() + count, right.get()) ? 1.0 : 0.0; }}}};
    return report(task);
}

std::size_t bytesInUse() {
    const struct mallinfo2 info = mallinfo2();
    return info.uordblks + info.hblkhd;
}

void reportMemory() {
    ArrayFactory factory;
    for (const std::size_t n : {std::size_t{2}, std::size_t{100}, std::size_t{1000}}) {
        const std::size_t count = 10000 / n; // many, so that blocks kept ready by the allocator do not matter
        std::vector<TypedArray<double>> arrays;
        arrays.reserve(count);
        const std::size_t before = bytesInUse();
        for (std::size_t k = 0; k < count; ++k) {
            arrays.push_back(factory.createArray<double>({n, n}));
        }
        const double each = double(bytesInUse() - before) / double(count);
        std::printf("a %zu x %zu double array takes %.0f bytes besides its %zu\n", n, n,
                    each - 8.0 * double(n * n), 8 * n * n);
    }
    std::printf("a handle takes %zu bytes, an element handle %zu\n", sizeof(TypedArray<double>),
                sizeof(ArrayElementTypedRef<double, false>));
}

} // namespace

int main(int argc, char** argv) {
    if (argc > 1 && std::string_view(argv[1]) == "--memory") {
        reportMemory();
        return 0;
    }
    bench::printSetting();
    bench::printHeading();
    const bool outcomes[] = {elementTasks(),
                             iterationTasks(),
                             creationTask("zeros 1000 x 1000, and drop", 1000, 4, 1.02),
                             creationTask("zeros 2 x 2, and drop", 2, 1000, 7.0),
                             copyTasks(),
                             copyOnWriteTask("copy of 1000 x 1000, first write", 1000, 4, 1.02),
                             copyOnWriteTask("copy of 2 x 2, first write", 2, 1000, 7.7),
                             equalityTask()};
    const bool agree =
        std::all_of(std::begin(outcomes), std::end(outcomes), [](bool outcome) { return outcome; });
    std::printf("\n");
    reportMemory();
    return agree ? 0 : 1;
}
