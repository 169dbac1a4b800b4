// The embedded back-end behind doubles whose steps can be made to fail, one hook for all.
#pragma once

#include <vexa/testing/FailingBackEnd.hpp>

namespace failure {

using Failing = vexa::testing::FailingHook::Failing;

/// Allocates nothing, so that it is there in a process without memory.
inline vexa::testing::FailingHook steps;

inline foundation::vexadata::ArrayFactory throwingFactory() {
    return vexa::testing::failingFactory({std::shared_ptr<void>(), &steps});
}

} // namespace failure
