// Each thread uses handles of its own; what they share are the arrays behind them. The thread sanitizer sees
// more here than the checks of values do.
#include "threads/Storm.hpp"

#include <vexa/data/impl/ArrayImpl.hpp>

#include <memory>
#include <string>
#include <utility>

namespace storm {

namespace {

class Storms : public testing::TestWithParam<std::size_t> {
protected:
    static const Kind& kind() { return vexa::testing::catalogue()[GetParam()]; }

    ArrayFactory factory;
};

/// A worker for each thread, all with handles of the same few arrays, which nobody else holds.
std::vector<std::unique_ptr<Worker>> deal(const Kind& kind, std::size_t seed) {
    constexpr std::size_t arrays = 8;
    ArrayFactory factory;
    std::vector<Held> shared;
    for (std::size_t k = 0; k < arrays; ++k) {
        const auto stamp = static_cast<double>(seed + k);
        shared.push_back({kind.make(factory, stamp), stamp});
    }
    std::vector<std::unique_ptr<Worker>> dealt;
    for (std::size_t k = 0; k < workers; ++k) {
        dealt.push_back(std::make_unique<Worker>(kind, shared, seed * workers + k + 1));
    }
    return dealt;
}

TEST_P(Storms, NobodySeesTheOthersWrites) {
    constexpr std::size_t operations = 100;
    const std::size_t rounds = 60 * times();
    for (std::size_t round = 0; round < rounds; ++round) { // most sharing is over after some writes
        auto dealt = deal(kind(), round);
        const std::uint64_t faults = run([&](std::size_t worker) {
            Worker& own = *dealt[worker];
            own.work(operations);
            const std::uint64_t found = own.faultsAtTheEnd();
            dealt[worker].reset(); // the last owner of an array may be any of them
            return found;
        });
        ASSERT_EQ(faults, 0U) << "round " << round;
    }
    report(std::uint64_t{rounds} * operations * workers);
}

/// All threads read one array, through handles and iterators of their own; one gives up its handle and
/// writes.
TEST_P(Storms, ReadersKeepWhatAWriterLeaves) {
    constexpr std::size_t reads = 10;
    const std::size_t rounds = 50 * times();
    const Kind& kind = this->kind();
    for (std::size_t round = 0; round < rounds; ++round) {
        std::vector<Array> handles(workers, kind.make(factory, 1));
        const std::uint64_t faults = run([&](std::size_t worker) {
            Array own = std::move(handles[worker]);
            ArrayFactory writer;
            std::uint64_t wrong = 0;
            for (std::size_t k = 0; k < reads; ++k) {
                if (worker == 0) {
                    kind.change(writer, own, 2 + static_cast<double>(k));
                } else {
                    wrong += kind.holds(own, 1) ? 0U : 1U;
                }
            }
            return wrong;
        });
        ASSERT_EQ(faults, 0U) << "round " << round;
    }
    report(std::uint64_t{rounds} * reads * workers);
}

/// Reading leaves no trace in a handle: one that nobody changes serves all threads.
TEST_P(Storms, OneConstantHandleIsReadByAll) {
    constexpr std::size_t reads = 50;
    const std::size_t rounds = 10 * times();
    const Kind& kind = this->kind();
    for (std::size_t round = 0; round < rounds; ++round) {
        const Array shared = kind.make(factory, 3);
        const std::uint64_t faults = run([&](std::size_t) {
            std::uint64_t wrong = 0;
            for (std::size_t k = 0; k < reads; ++k) {
                const Array copy = shared;
                wrong += kind.holds(shared, 3) && copy == shared ? 0U : 1U;
                wrong += shared.getArrayID() == copy.getArrayID() ? 0U : 1U;
            }
            return wrong;
        });
        ASSERT_EQ(faults, 0U) << "round " << round;
    }
    report(std::uint64_t{rounds} * reads * workers * 3);
}

/// Counts of what was made while the process had one thread, changed without locked instructions, must hold
/// on many.
TEST_P(Storms, ArraysOfTheTimeBeforeThreadsAreShared) {
    constexpr std::size_t cycles = 5, operations = 50;
    const Kind& kind = this->kind();
#ifndef VEXADATA_THREAD_SANITIZER // it has a thread of its own
    ASSERT_TRUE(vexa::data::detail::processIsSingleThreaded()) << "run each case alone, as ctest does";
#endif
    for (std::size_t cycle = 0; cycle < cycles; ++cycle) {
        // Arrays with counts above 1, in handles, in cells and in fields, dropped again in part.
        Array array = kind.make(factory, 7);
        auto* object = detail::Access::impl(array).get();
        TypedArray<Array> cells = factory.createArray<Array>({1, 3}, {array, array, array});
        StructArray records = factory.createStructArray({1, 1}, {"a", "b"});
        records[0]["a"] = array;
        records[0]["b"] = array;
        cells[2] = Array();
        const std::uint64_t before = object->referenceCount();
        std::vector<TypedArray<Array>> cellsOf(workers, cells);
        std::vector<StructArray> recordsOf(workers, records);
        const std::uint64_t faults = run([&](std::size_t worker) {
            std::uint64_t wrong = 0;
            for (std::size_t k = 0; k < operations; ++k) {
                const TypedArray<Array> ownCells = cellsOf[worker];
                const StructArray ownRecords = recordsOf[worker];
                const Array first = ownCells[1];
                const Array second = ownRecords[0]["b"];
                wrong += kind.holds(first, 7) && kind.holds(second, 7) ? 0U : 1U;
            }
            Array own = cellsOf[worker][1];
            ArrayFactory writer;
            kind.change(writer, own, 8);
            wrong += kind.holds(own, 8) ? 0U : 1U;
            return wrong;
        });
        ASSERT_EQ(faults, 0U) << "cycle " << cycle;
        EXPECT_EQ(object->referenceCount(), before) << "all that the threads took was given back";
        cells = factory.createArray<Array>({1, 1});
        cellsOf.clear();
        records = factory.createStructArray({1, 1}, {});
        recordsOf.clear();
        EXPECT_EQ(object->referenceCount(), 1U);
        EXPECT_FALSE(array.isShared());
        const auto identity = array.getArrayID();
        kind.change(factory, array, 9);
        EXPECT_EQ(array.getArrayID(), identity) << "alone again, it is written in place";
    }
    report(cycles * workers * (operations * 4 + 2));
}

INSTANTIATE_TEST_SUITE_P(Kinds, Storms, testing::Range<std::size_t>(0, vexa::testing::catalogue().size()),
                         [](const auto& each) { return vexa::testing::catalogue()[each.param].name; });

/// All threads copy and drop the same handles, and retain and release the same objects: the counts come out
/// even.
TEST(Storm, CountsComeOutEven) {
    const std::size_t rounds = 25'000 * times();
    ArrayFactory factory;
    std::vector<Array> arrays;
    for (const Kind& kind : vexa::testing::catalogue()) {
        arrays.push_back(kind.make(factory, 1));
    }
    run([&](std::size_t worker) {
        for (std::size_t k = 0; k < rounds; ++k) {
            const Array& array = arrays[(k + worker) % arrays.size()];
            const Array copy = array;
            detail::Access::impl(array)->retain();
            const Array other = copy;
            detail::Access::impl(other)->release();
        }
        return std::uint64_t{0};
    });
    for (const Array& array : arrays) {
        EXPECT_FALSE(array.isShared());
        EXPECT_EQ(detail::Access::impl(array)->referenceCount(), 1U);
    }
    report(std::uint64_t{rounds} * workers * 6); // handles counted up and down twice, the object once
}

TEST(Storm, EmptyHandlesAndFactoriesAreCopiedOnAllThreads) {
    constexpr std::size_t operations = 5000;
    const ArrayFactory shared;
    std::vector<ArrayFactory> factories(workers, shared);
    const std::uint64_t faults = run([&](std::size_t worker) {
        std::uint64_t wrong = 0;
        for (std::size_t k = 0; k < operations; ++k) {
            ArrayFactory copy = factories[worker];
            const ArrayFactory fresh; // asks the registered back-end
            const Array empty;        // shares the one of the process
            auto array = copy.createArray<double>({3, 1}, {1, 2, static_cast<double>(k)});
            wrong += array[2] == static_cast<double>(k) && empty.isEmpty() ? 0U : 1U;
            wrong += fresh.getArrayFactoryImpl() == nullptr ? 1U : 0U;
        }
        return wrong;
    });
    EXPECT_EQ(faults, 0U);
    report(operations * workers * 4);
}

TEST(Storm, OneConstantTypedHandleIsReadByAll) {
    constexpr std::size_t rounds = 200;
    ArrayFactory factory;
    const auto numbers = factory.createArray<double>({2, 2}, {1, 2, 3, 4});
    const TypedArray<Array> cells = factory.createArray<Array>({1, 2}, {numbers, numbers});
    const std::uint64_t faults = run([&](std::size_t) {
        std::uint64_t wrong = 0;
        for (std::size_t k = 0; k < rounds; ++k) {
            const double corner = numbers[1][1];
            const double sum = std::accumulate(numbers.begin(), numbers.end(), 0.0);
            const TypedArray<double> held = cells[1];
            const double first = getReadOnlyElements<double>(cells[0]).begin()[0];
            wrong += corner == 4 && sum == 10 && held[0][1] == 3.0 && first == 1 ? 0U : 1U;
            wrong += readOnlyView(numbers)(1, 0) == 2 ? 0U : 1U;
        }
        return wrong;
    });
    EXPECT_EQ(faults, 0U);
    report(std::uint64_t{rounds} * workers * 5);
}

TEST(Storm, ObjectsAreValuesOnAllThreads) {
    constexpr std::size_t rounds = 150, operations = 20;
    ArrayFactory factory;
    const ClassInfo pointClass = factory.createClassInfo("Point", {"x"});
    for (std::size_t round = 0; round < rounds; ++round) {
        ValueObject original = factory.createValueObject(pointClass);
        original["x"] = factory.createScalar(-1.0);
        std::vector<ValueObject> handles(workers, original);
        original = ValueObject();
        const std::uint64_t faults = run([&](std::size_t worker) {
            ValueObject own = std::move(handles[worker]);
            std::uint64_t wrong = 0;
            double expected = -1;
            for (std::size_t k = 0; k < operations; ++k) {
                const ValueObject before = own;
                const auto value = static_cast<double>(worker * operations + k);
                own["x"][0] = value;
                const TypedArray<double> old = before["x"];
                const TypedArray<double> now = std::as_const(own)["x"];
                wrong += old[0] == expected && now[0] == value && own != before ? 0U : 1U;
                expected = value;
            }
            return wrong;
        });
        ASSERT_EQ(faults, 0U) << "round " << round;
    }
    report(std::uint64_t{rounds} * operations * workers * 4);
}

} // namespace

} // namespace storm
