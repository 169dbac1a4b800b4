// Runs a statement once and compares what it throws: class and message, both exactly.
#pragma once

#include <foundation/vexadata/Exception.hpp>

#include <cxxabi.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <exception>
#include <memory>
#include <string>
#include <string_view>
#include <typeinfo>
#include <utility>

namespace support {

inline std::string className(const std::type_info& type) {
    int status = 0;
    const std::unique_ptr<char, void (*)(void*)> name(
        abi::__cxa_demangle(type.name(), nullptr, nullptr, &status), std::free);
    return status == 0 ? name.get() : type.name();
}

/// One line for a failed comparison, e.g. `vexadata::EArrayIndexOutOfRange "Array index is out of range"`.
inline std::string describe(const std::type_info& type, const char* message) {
    return className(type) + " \"" + message + "\"";
}

/// Success when `statement` throws an `E` itself, not a class derived from it, with exactly this message.
/// Works for the library's exceptions and for standard ones.
template <class E, class Statement>
testing::AssertionResult throwsExactly(Statement&& statement, std::string_view message) {
    const std::string wanted = describe(typeid(E), std::string(message).c_str());
    const auto judge = [&](const std::type_info& type, const char* what) {
        if (type == typeid(E) && message == what) {
            return testing::AssertionSuccess();
        }
        return testing::AssertionFailure() << "expected " << wanted << ", got " << describe(type, what);
    };
    try {
        statement();
    } catch (const foundation::vexadata::Exception& e) {
        return judge(typeid(e), e.what());
    } catch (const std::exception& e) {
        return judge(typeid(e), e.what());
    } catch (...) {
        return testing::AssertionFailure() << "expected " << wanted << ", got an exception of another family";
    }
    return testing::AssertionFailure() << "expected " << wanted << ", got none";
}

/// The same with the one message that every `E` has.
template <class E, class Statement>
testing::AssertionResult throwsExactly(Statement&& statement) {
    return throwsExactly<E>(std::forward<Statement>(statement), E().what());
}

} // namespace support
