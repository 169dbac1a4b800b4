// The embedded back-end registers itself when it is loaded, and holds the client's place from then on.
#include "support/Throws.hpp"

#include <foundation/vexadata/ArrayFactory.hpp>
#include <vexa/client/Client.hpp>

#include <gtest/gtest.h>

#include <stdexcept>

namespace {

using foundation::vexadata::ArrayFactory;
using vexa::data::impl::ArrayFactoryImpl;

ArrayFactoryImpl* noFactory() { return nullptr; }

TEST(ClientRegistrationTest, RegisteringAgainIsHarmless) {
    const auto before = ArrayFactory().getArrayFactoryImpl().get();
    ASSERT_NE(before, nullptr);
    EXPECT_TRUE(vexa::client::registerBackEnd());
    EXPECT_TRUE(vexa::client::registerBackEnd());
    EXPECT_EQ(ArrayFactory().getArrayFactoryImpl().get(), before) << "one factory serves all";
}

TEST(ClientRegistrationTest, AnotherClientBackEndIsRefused) {
    EXPECT_TRUE(support::throwsExactly<std::logic_error>(
        [] { ArrayFactoryImpl::registerClientFactoryFunction(&noFactory); },
        "attempted to assign clientFactoryFuncPtr twice to different values."));
    EXPECT_TRUE(vexa::client::registerBackEnd());
    EXPECT_EQ(static_cast<double>(ArrayFactory().createScalar(4.5)[0]), 4.5);
}

} // namespace
