// Arrays of the embedded back-end meet arrays of another one, the example.
#include "../../examples/own_backend/doubles.cpp"

#include <foundation/vexadata/ArrayFactory.hpp>

#include <gtest/gtest.h>

#include <cstdint>
#include <set>

namespace {

using foundation::vexadata::ArrayFactory;

TEST(ClientBesideAnotherTest, NoTwoArraysHaveOneIdentity) {
    ArrayFactory embedded;
    ArrayFactory other(foundation::vexadata::detail::Access::createSharedPtr(makeFactory()));
    ASSERT_FALSE(registered); // the embedded back-end came first and has the place
    std::set<std::uint64_t> identities;
    for (const double value : {1.0, 2.0, 3.0}) {
        auto ours = embedded.createArray<double>({1, 2}, {value, 0.0});
        auto theirs = other.createArray<double>({1, 2}, {-value, 0.0});
        EXPECT_NE(ours, theirs);
        EXPECT_NE(theirs, ours);
        theirs = embedded.createArrayFromBuffer<double>({1, 2},
                                                        theirs.release()); // a new identity for what is left
        identities.insert({ours.getArrayID(), theirs.getArrayID()});
        EXPECT_EQ(ours[0], -theirs[0]);
    }
    EXPECT_EQ(identities.size(), 6U);
    EXPECT_EQ(identities.count(0), 0U);
}

} // namespace
