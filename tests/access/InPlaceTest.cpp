// Elements of arrays that handles recognise are reached without asking the back-end; those of other classes by
// its operations. Whatever a program does, both must give the same values and the same errors.
#include "support/ForwardingFactory.hpp"
#include "support/Throws.hpp"

#include <foundation/vexadata/VexaData.hpp>

#include <gtest/gtest.h>

#include <cstddef>
#include <exception>
#include <functional>
#include <random>
#include <string>
#include <vector>

using namespace foundation::vexadata;
using foundation::vexadata::detail::Access;

namespace {

/// An array of the embedded back-end, or one of a class that no handle recognises around it.
template <class Handle>
Handle made(Handle array, bool recognised) {
    if (recognised) {
        return array;
    }
    vexa::data::impl::ArrayImpl* inner = Access::impl(array).get();
    inner->retain();
    return Handle(support::ForwardingBackEndFactory<>::wrap(inner));
}

const std::vector<std::vector<std::size_t>> shapes = {{1, 1}, {1, 5},    {5, 1},   {3, 4},
                                                      {0, 3}, {2, 3, 2}, {1, 1, 1}};

TypedArray<double> numbers(const std::vector<std::size_t>& shape, bool recognised) {
    auto array = ArrayFactory().createArray<double>(shape);
    double value = 1;
    for (double& element : array) {
        element = value++;
    }
    return array.getNumberOfElements() == 0 ? array : made(std::move(array), recognised);
}

std::string outcome(const std::function<double()>& step) {
    try {
        return std::to_string(step());
    } catch (const Exception& e) {
        return support::describe(typeid(e), e.what());
    } catch (const std::exception& e) {
        return support::describe(typeid(e), e.what());
    }
}

/// One step of a program: which of the ways of writing an access, at which indices, that may be out of range.
struct Step {
    int way;
    std::size_t i, j, k;
    double value;
};

class Program {
public:
    explicit Program(unsigned seed) : random_(seed) {}

    Step next(int ways) {
        const auto below = [&](std::size_t limit) { return random_() % limit; };
        return {static_cast<int>(below(static_cast<std::size_t>(ways))), below(6), below(6),
                below(3) == 0 ? 1U : 0U, static_cast<double>(random_() % 100)};
    }
    std::size_t shape() { return random_() % shapes.size(); }

private:
    std::mt19937 random_;
};

/// What a program works on. `kept` handles stay from step to step.
struct Numbers {
    TypedArray<double> array;
    TypedArray<double> copy = array;
    Array untyped = array;

    std::string run(const Step& step) {
        const auto& [way, i, j, k, value] = step;
        return outcome([&, i = i, j = j, k = k, value = value, way = way]() -> double {
            const auto& constant = array;
            switch (way) {
            case 0:
                return constant[i];
            case 1:
                return constant[i][j];
            case 2:
                return constant[i][j][k];
            case 3:
                return constant[i][j][k][0];
            case 4: {
                const auto row = constant[i];
                const auto element = row[j];
                return row[j] + element[k];
            }
            case 5: { // the rewrite of a single index stays
                const auto element = constant[i];
                const double first = element;
                return first + element[0];
            }
            case 6:
                array[i][j] = value;
                return constant[i][j];
            case 7:
                array[i] = value;
                return copy[i];
            case 8:
                array[i][j][k] += value;
                return copy[i][j][k];
            case 9:
                copy = array;
                return copy[i];
            case 10: {
                Reference<double> reference = array[i][j];
                array[i][j] = value;
                return reference;
            }
            case 11:
                untyped[i][j] = value;
                return untyped[i][j];
            case 12:
                untyped = array;
                return untyped[i];
            case 13: {
                auto element = array[i][j];
                auto other = array[j][i];
                element = other;
                return element;
            }
            default: {
                const Array& view = untyped;
                return static_cast<double>(view[i][j][k]);
            }
            }
        });
    }
};

struct Cells {
    explicit Cells(bool recognised)
        : array(made(ArrayFactory().createArray<Array>({2, 3}), recognised)), copy(array) {}
    TypedArray<Array> array;
    TypedArray<Array> copy;

    std::string run(const Step& step, std::size_t shape, bool recognised) {
        const auto& [way, i, j, k, value] = step;
        return outcome([&, i = i, j = j, k = k, value = value, way = way]() -> double {
            const std::size_t row = i % 3;
            const std::size_t column = j % 4;
            const auto& constant = array;
            switch (way) {
            case 0:
                array[row][column] = numbers(shapes[shape], recognised);
                return static_cast<double>(constant[row][column].getNumberOfElements());
            case 1:
                return constant[row][column].held()[i];
            case 2:
                return constant[row][column].held()[i][j];
            case 3:
                return constant[row][column].held()[i][j][k];
            case 4:
                array[row][column].held()[i][j] = value;
                return constant[row][column].held()[i][j];
            case 5:
                array[row][column].held()[i] += value;
                return copy[row][column].held()[i];
            case 6:
                copy = array;
                return 0;
            case 7: {
                const TypedArray<double> inner = constant[row][column];
                return inner[i][j];
            }
            case 8: {
                const TypedArray<std::int32_t> inner = constant[row][column];
                return inner[i];
            }
            case 9: {
                const auto element = constant[row][column].held()[i];
                array[row][column] = numbers(shapes[shape], recognised);
                return element[j];
            }
            case 10:
                return static_cast<double>(static_cast<float>(constant[row][column].held()[i]));
            default: {
                const Array inner = array[row][column];
                array[row][column].held()[i] = value;
                return static_cast<double>(inner[i]);
            }
            }
        });
    }
};

} // namespace

TEST(InPlace, NumbersAreAsThoseThatAreAskedFor) {
    for (unsigned seed = 0; seed < 60; ++seed) {
        Program program(seed);
        const auto& shape = shapes[program.shape()];
        Numbers recognised{numbers(shape, true)};
        Numbers asked{numbers(shape, false)};
        for (int n = 0; n < 120; ++n) {
            const Step step = program.next(15);
            ASSERT_EQ(recognised.run(step), asked.run(step))
                << "seed " << seed << ", step " << n << ", way " << step.way << " at " << step.i << ", "
                << step.j;
        }
    }
}

TEST(InPlace, CellsAreAsThoseThatAreAskedFor) {
    for (unsigned seed = 0; seed < 60; ++seed) {
        Program program(seed);
        Cells recognised(true);
        Cells asked(false);
        for (int n = 0; n < 120; ++n) {
            const Step step = program.next(12);
            const std::size_t shape = program.shape();
            ASSERT_EQ(recognised.run(step, shape, true), asked.run(step, shape, false))
                << "seed " << seed << ", step " << n << ", way " << step.way << " at " << step.i << ", "
                << step.j;
        }
    }
}

// A handle to an element that is used after the buffer went away finds nothing there.
TEST(InPlace, EndsWithTheStorage) {
    auto array = ArrayFactory().createArray<double>({2, 2}, {1, 2, 3, 4});
    const auto element = array[1][1];
    const auto single = array[0];
    const auto buffer = array.release();
    EXPECT_EQ(buffer[3], 4);
    EXPECT_THROW(static_cast<void>(static_cast<double>(element)), EArrayIndexOutOfRange);
    EXPECT_THROW(static_cast<void>(static_cast<double>(single)), NotEnoughIndicesProvidedException);
    EXPECT_THROW(array[0], CantIndexIntoEmptyArrayException);
}
