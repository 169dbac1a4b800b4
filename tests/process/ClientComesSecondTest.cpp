// Another back-end holds the client's place before any library of this program is initialised.
#include "support/Throws.hpp"

#include <foundation/vexadata/ArrayFactory.hpp>
#include <vexa/client/Client.hpp>

#include <gtest/gtest.h>

#include <stdexcept>

namespace {

using foundation::vexadata::ArrayFactory;
using vexa::data::impl::ArrayFactoryImpl;

int calls = 0;
ArrayFactoryImpl* noFactory() {
    ++calls;
    return nullptr;
}

// Functions in this section run before the initialisers of the libraries, so registration has to work without
// them.
void registerFirst() { ArrayFactoryImpl::registerClientFactoryFunction(&noFactory); }
[[gnu::section(".preinit_array"), gnu::used]] void (*const beforeAll)() = &registerFirst;

TEST(ClientComesSecondTest, LoadingSucceedsAndTheFirstBackEndStays) {
    EXPECT_EQ(ArrayFactory().getArrayFactoryImpl(), nullptr);
    EXPECT_EQ(calls, 1);
    EXPECT_TRUE(ArrayFactoryImpl::registerClientFactoryFunction(&noFactory));
    EXPECT_TRUE(support::throwsExactly<std::logic_error>(
        [] { vexa::client::registerBackEnd(); },
        "attempted to assign clientFactoryFuncPtr twice to different values."));
    EXPECT_EQ(ArrayFactory().getArrayFactoryImpl(), nullptr);
}

} // namespace
