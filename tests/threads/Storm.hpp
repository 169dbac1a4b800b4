// Many threads at once over the same arrays.
#pragma once

#include <vexa/testing/Catalogue.hpp>

#include <gtest/gtest.h>

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <functional>
#include <iostream>
#include <numeric>
#include <random>
#include <thread>
#include <vector>

namespace storm {

using namespace foundation::vexadata;

constexpr std::size_t workers = 4;

/// How many times more rounds than in a short run: as VEXADATA_SOAK in the environment has it.
inline std::size_t times() {
    const char* soak = std::getenv("VEXADATA_SOAK");
    return soak == nullptr ? 1 : std::strtoul(soak, nullptr, 10);
}

/// Runs `work(worker)` on all workers, which begin together; gives the sum of what they return.
inline std::uint64_t run(const std::function<std::uint64_t(std::size_t)>& work) {
    std::atomic<std::size_t> waiting{workers};
    std::vector<std::uint64_t> results(workers);
    std::vector<std::thread> threads;
    for (std::size_t worker = 0; worker < workers; ++worker) {
        threads.emplace_back([&, worker] {
            for (--waiting; waiting != 0;) {
                std::this_thread::yield();
            }
            results[worker] = work(worker);
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    return std::accumulate(results.begin(), results.end(), std::uint64_t{0});
}

/// Says how many operations a storm had.
inline void report(std::uint64_t operations) {
    testing::Test::RecordProperty("operations", std::to_string(operations));
    std::cout << operations << " operations on " << workers << " threads\n";
}

/// A handle that should hold its kind's contents for `stamp`.
struct Held {
    Array array;
    double stamp = 0;
};

using vexa::testing::Kind;

/// One worker's handles, some of which share an array with each other and with those of other workers.
/// Nothing but the counts in the arrays orders what the workers do.
class Worker {
public:
    Worker(const Kind& kind, std::vector<Held> handles, std::size_t seed)
        : kind_(kind), handles_(std::move(handles)), random_(static_cast<std::uint32_t>(seed)) {}

    /// Copies, reads, writes and drops at random.
    void work(std::size_t operations) {
        for (std::size_t k = 0; k < operations; ++k) {
            step();
        }
    }
    /// Handles that did not hold what they should.
    std::uint64_t faults() const { return faults_; }
    std::uint64_t faultsAtTheEnd() const {
        std::uint64_t faults = faults_;
        for (const Held& held : handles_) {
            faults += holds(held) ? 0U : 1U;
        }
        return faults;
    }

private:
    bool holds(const Held& held) const { return held.array.isEmpty() || kind_.holds(held.array, held.stamp); }
    void step() {
        Held& held = handles_[random_() % handles_.size()];
        switch (random_() % 5) {
        case 0: // copy
            held = handles_[random_() % handles_.size()];
            break;
        case 1: // drop
            held.array = Array();
            break;
        case 2: // write
            if (!held.array.isEmpty()) {
                held.stamp = static_cast<double>(random_() % 100000);
                kind_.change(factory_, held.array, held.stamp);
            }
            break;
        default: // read
            faults_ += holds(held) ? 0U : 1U;
        }
    }

    const Kind& kind_;
    ArrayFactory factory_;
    std::vector<Held> handles_;
    std::minstd_rand random_;
    std::uint64_t faults_ = 0;
};

} // namespace storm
