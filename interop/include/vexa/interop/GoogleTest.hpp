// Names of the library's errors in the reports of GoogleTest, which says of an exception that is no
// std::exception that it is unknown. Needs GoogleTest; nothing else of the library includes this header.
#pragma once

#include <foundation/vexadata/Explain.hpp>

#include <gtest/gtest.h>

#include <exception>
#include <iostream>
#include <string>

namespace vexa::interop {

/// Writes the message of the error that ended a test below GoogleTest's report. To be added before the tests
/// run: `testing::UnitTest::GetInstance()->listeners().Append(new vexa::interop::ErrorMessages)`, which then
/// owns it.
class ErrorMessages : public testing::EmptyTestEventListener {
    // GoogleTest reports an exception while it handles it.
    void OnTestPartResult(const testing::TestPartResult& result) override {
        const std::exception_ptr error = std::current_exception();
        if (error != nullptr && result.failed()) {
            std::cout << "the exception says: " << foundation::vexadata::message_of(error) << std::endl;
        }
    }
};

} // namespace vexa::interop
