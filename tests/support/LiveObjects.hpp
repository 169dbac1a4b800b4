// A ledger of the test objects alive: what a handle, chain or iterator forgets to release shows up here.
#pragma once

#include <gtest/gtest.h>

#include <atomic>

namespace support {

class LiveObjects {
public:
    static int count() noexcept { return alive().load(); }

    /// Base of every object that is counted.
    class Counted {
    public:
        Counted() noexcept { ++alive(); }
        Counted(const Counted&) noexcept { ++alive(); }
        Counted& operator=(const Counted&) noexcept = default;

    protected:
        ~Counted() { --alive(); }
    };

private:
    static std::atomic<int>& alive() noexcept {
        static std::atomic<int> number{0};
        return number;
    }
};

/// A fixture that fails when its test leaves counted objects behind, or destroys one too often.
class LedgerTest : public testing::Test {
protected:
    void SetUp() override { before_ = LiveObjects::count(); }
    void TearDown() override {
        EXPECT_EQ(LiveObjects::count(), before_) << "objects left alive, or freed twice";
    }

private:
    int before_ = 0;
};

} // namespace support
