// A fixture over the ledger of doubles.
#pragma once

#include <vexa/testing/LiveObjects.hpp>

#include <gtest/gtest.h>

namespace support {

/// Fails when its test leaves counted objects behind, or destroys one too often.
class LedgerTest : public testing::Test {
protected:
    void SetUp() override { before_ = vexa::testing::LiveObjects::count(); }
    void TearDown() override {
        EXPECT_EQ(vexa::testing::LiveObjects::count(), before_) << "objects left alive, or freed twice";
    }

private:
    int before_ = 0;
};

} // namespace support
