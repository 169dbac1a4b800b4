// Arrays to other libraries and back, beside what somebody would write by hand for one type and two dimensions.
#include "Contest.hpp"

#include <foundation/vexadata/VexaData.hpp>
#include <vexa/client/Adoption.hpp>
#include <vexa/interop/Arrow.hpp>
#include <vexa/interop/DLPack.hpp>
#if defined(VEXADATA_HAVE_EIGEN)
#    include <vexa/interop/Eigen.hpp>
#endif

#include <array>
#include <cstdint>
#include <cstdio>
#include <functional>
#include <memory>
#include <utility>
#include <vector>

using namespace foundation::vexadata;
using bench::hide;
using bench::Task;
using vexa::interop::OwnedArrow;
using vexa::interop::dlpack::DLManagedTensor;

namespace {

constexpr int times = 1000;

template <class Once>
std::function<double()> repeated(Once once) {
    return [=] {
        double last = 0;
        for (int k = 0; k < times; ++k) {
            last = once();
        }
        return last;
    };
}

/// A matrix of somebody who writes the exchange by hand.
struct Matrix {
    std::shared_ptr<double> data;
    std::array<std::int64_t, 2> shape;
};

struct Exported {
    DLManagedTensor tensor;
    std::shared_ptr<double> owner;
    std::array<std::int64_t, 4> extents;
};

DLManagedTensor* exported(const Matrix& matrix) {
    auto made = std::make_unique<Exported>();
    made->owner = matrix.data;
    made->extents = {matrix.shape[0], matrix.shape[1], 1, matrix.shape[0]};
    made->tensor.dl_tensor = {matrix.data.get(),        {1, 0}, 2, {2, 64, 1}, made->extents.data(),
                              made->extents.data() + 2, 0};
    made->tensor.manager_ctx = made.get();
    made->tensor.deleter = [](DLManagedTensor* self) { delete static_cast<Exported*>(self->manager_ctx); };
    return &made.release()->tensor;
}

Matrix imported(DLManagedTensor* tensor) {
    const auto& given = tensor->dl_tensor;
    bench::require(given.ndim == 2 && given.dtype.code == 2 && given.dtype.bits == 64 &&
                   given.dtype.lanes == 1 && given.strides[0] == 1 && given.strides[1] == given.shape[0]);
    return {std::shared_ptr<double>(static_cast<double*>(given.data),
                                    [tensor](double*) { tensor->deleter(tensor); }),
            {given.shape[0], given.shape[1]}};
}

/// A tensor that lives as long as the program, given again and again.
DLManagedTensor* lasting(std::vector<double>& values, std::array<std::int64_t, 4>& extents) {
    static DLManagedTensor tensor;
    tensor.dl_tensor = {values.data(), {1, 0}, 2, {2, 64, 1}, extents.data(), extents.data() + 2, 0};
    tensor.deleter = [](DLManagedTensor*) {};
    return &tensor;
}

} // namespace

int main() {
    bench::printSetting();
    bench::printHeading();
    const ArrayFactory factory;
    const auto ours = factory.createArray<double>({100, 100});
    const Matrix raw{std::shared_ptr<double>(new double[10000](), std::default_delete<double[]>()),
                     {100, 100}};
    std::vector<double> values(10000);
    std::array<std::int64_t, 4> extents{100, 100, 1, 100};
    DLManagedTensor* const tensor = lasting(values, extents);

    const Task out{"array to DLPack, and drop",
                   times,
                   0,
                   {{"raw", repeated([&] {
                         DLManagedTensor* made = exported(raw);
                         hide(made);
                         made->deleter(made);
                         return 0.0;
                     })},
                    {"ours", repeated([&] {
                         auto* made = vexa::interop::toDLPack<DLManagedTensor>(ours);
                         hide(made);
                         made->deleter(made);
                         return 0.0;
                     })}},
                   300};
    const Task in{"DLPack to array, and drop",
                  times,
                  0,
                  {{"raw", repeated([&] {
                        Matrix made = imported(tensor);
                        hide(made);
                        return 0.0;
                    })},
                   {"ours", repeated([&] {
                        Array made = vexa::interop::fromDLPack(tensor);
                        hide(made);
                        return 0.0;
                    })}},
                  300};
    const auto column = factory.createArray<double>({10000, 1});
    const Task there{"column to Arrow and back (raw: DLPack)",
                     times,
                     0,
                     {{"raw", repeated([&] {
                           Matrix made = imported(exported(raw));
                           hide(made);
                           return 0.0;
                       })},
                      {"ours", repeated([&] {
                           OwnedArrow<ArrowSchema> schema;
                           OwnedArrow<ArrowArray> array;
                           vexa::interop::toArrow(column, schema.get(), array.get());
                           Array made = vexa::interop::fromArrow(*schema.get(), array.get());
                           hide(made);
                           return 0.0;
                       })}},
                     1000};
    std::vector<double> moving(10000);
    const Task vector{"vector to array and back (raw: two moves)",
                      times,
                      0,
                      {{"raw", repeated([&] {
                            auto owner = std::make_shared<std::vector<double>>(std::move(moving));
                            hide(owner);
                            moving = std::move(*owner);
                            return moving[5];
                        })},
                       {"ours", repeated([&] {
                            auto made = vexa::client::fromVector({100, 100}, std::move(moving));
                            hide(made);
                            moving = vexa::client::toVector(std::move(made));
                            return moving[5];
                        })}},
                      300};
#if defined(VEXADATA_HAVE_EIGEN)
    const Task eigen{"array as a matrix of Eigen, and drop",
                     times,
                     0,
                     {{"raw", repeated([&] {
                           Eigen::Map<const Eigen::MatrixXd> map(values.data(), 100, 100);
                           hide(map);
                           return map(5, 5);
                       })},
                      {"ours", repeated([&] {
                           const auto view = vexa::interop::eigenView(ours);
                           hide(view);
                           return view(5, 5);
                       })}},
                     300};
    if (!bench::report(eigen)) {
        return 1;
    }
#endif
    const bool outcomes[] = {bench::report(vector), bench::report(out), bench::report(in),
                             bench::report(there)};
    for (const bool agree : outcomes) {
        if (!agree) {
            return 1;
        }
    }
    return 0;
}
