// What can go wrong with any operation. The environment variable VEXADATA_FAULT names one operation and how
// it is wrong, such as "getField/leaked", and after an @ when, such as "sharedCopy/shares@cube"; faults.cmake
// lists those that are run.
#pragma once

#include <foundation/vexadata/Object.hpp>

#include <algorithm>
#include <atomic>
#include <cstdlib>
#include <cstring>
#include <new>
#include <stdexcept>
#include <string>
#include <string_view>
#include <type_traits>

namespace wrong {

inline std::string_view variable() {
    static const std::string_view name =
        std::getenv("VEXADATA_FAULT") == nullptr ? "" : std::getenv("VEXADATA_FAULT");
    return name;
}
/// Whether the fault shows at all by now. `condition` says when.
bool isTime();
inline std::string_view condition() {
    static const std::string_view when =
        variable().find('@') == variable().npos ? "" : variable().substr(variable().find('@') + 1);
    return when;
}
inline std::string_view chosen() {
    static const std::string_view name = variable().substr(0, variable().find('@'));
    return condition().empty() || isTime() ? name : "";
}

inline bool is(std::string_view operation, std::string_view how) {
    const std::string_view name = chosen();
    return name.size() == operation.size() + how.size() + 1 &&
           name.substr(0, operation.size()) == operation && name.substr(operation.size() + 1) == how;
}
inline bool isOf(std::string_view operation) {
    const std::string_view name = chosen();
    return name.size() > operation.size() && name[operation.size()] == '/' &&
           name.substr(0, operation.size()) == operation;
}

/// An operation of several, such as those of iterators over elements and over field values.
struct Operation {
    const char* prefix;
    const char* name;
};
inline bool isOf(const Operation& operation) {
    const std::string_view prefix = operation.prefix;
    const std::string_view name = operation.name;
    const std::string_view fault = chosen();
    const std::size_t length = prefix.size() + name.size();
    return fault.size() > length && fault[length] == '/' && fault.substr(0, prefix.size()) == prefix &&
           fault.substr(prefix.size(), name.size()) == name;
}
inline bool is(const Operation& operation, std::string_view how) {
    return isOf(operation) && chosen().substr(chosen().find('/') + 1) == how;
}

/// An allocation that no compiler leaves out.
inline void mayThrow() {
    char* volatile block = new char;
    delete block;
}

template <class T>
T* retained(T* object) {
    object->retain();
    return object;
}

/// Another position among `count`.
inline std::size_t place(std::string_view operation, std::size_t k, std::size_t count) {
    if (!isOf(operation) || count == 0) return k;
    if (is(operation, "first")) return 0;
    if (is(operation, "last")) return count - 1;
    if (is(operation, "next")) return (k + 1) % count;
    if (is(operation, "mirrored")) return count - 1 - k;
    if (is(operation, "byte")) return k % 256;
    return k;
}

/// Another number.
inline std::size_t number(std::string_view operation, std::size_t n) {
    if (!isOf(operation)) return n;
    if (is(operation, "more")) return n + 1;
    if (is(operation, "less")) return n == 0 ? 0 : n - 1;
    if (is(operation, "zero")) return 0;
    if (is(operation, "byte")) return n % 256;
    if (is(operation, "word")) return n % 65536;
    if (is(operation, "int")) return n % (std::size_t(1) << 32);
    return n;
}

template <class Name>
bool truth(const Name& operation, bool answer) {
    if (is(operation, "true")) return true;
    if (is(operation, "false")) return false;
    return answer;
}

/// Another text. "stale" is the first that was ever asked for.
inline std::string text(std::string_view operation, std::string given) {
    if (!isOf(operation)) return given;
    if (is(operation, "empty")) return "";
    if (is(operation, "cut")) return given.substr(0, given.empty() ? 0 : given.size() - 1);
    if (is(operation, "short")) return given.substr(0, 15);
    if (is(operation, "stale")) {
        static const std::string first = given;
        return first;
    }
    return given;
}
inline const char* lent(std::string_view operation, const char* given) {
    if (!isOf(operation) || given == nullptr) return given;
    if (is(operation, "null")) return nullptr;
    static std::string kept; // one for all
    if (is(operation, "one-buffer")) {
        kept = given;
        kept.reserve(100000);
        return kept.c_str();
    }
    static std::string other;
    other = text(operation, given);
    other.reserve(100000);
    return isOf(operation) && other != given ? other.c_str() : given;
}

/// Another count of references to what is given away.
template <class Name, class T>
T* counted(const Name& operation, T* object) {
    if (object == nullptr || !isOf(operation)) return object;
    if (is(operation, "leaked")) return retained(object);
    static int calls = 0;
    if (is(operation, "sometimes-leaked") && ++calls % 50 == 0) return retained(object);
    if (is(operation, "released")) object->release();
    if (is(operation, "null")) {
        object->release();
        return nullptr;
    }
    return object;
}

/// Whether any operation has thrown so far.
inline std::atomic<bool> failed{false};

/// Does `call` and goes wrong around it.
template <class Name, class F>
auto passed(const Name& operation, F call) -> decltype(call()) {
    using Result = decltype(call());
    if (!isOf(operation)) {
        if (condition() != "after-failure") return call();
        try {
            return call();
        } catch (...) {
            failed = true;
            throw;
        }
    }
    if (is(operation, "other-error")) {
        try {
            return call();
        } catch (...) {
            throw std::runtime_error("some error");
        }
    }
    if (is(operation, "throws")) throw std::runtime_error("no reason");
    if (is(operation, "exits")) std::_Exit(0);
    static int calls = 0;
    if (is(operation, "races")) ++calls;
    if (is(operation, "sometimes-loses") && ++calls % 50 == 0) {
        static char* volatile lost;
        lost = new char[24];
        static_cast<void>(lost);
    }
    if (is(operation, "loses-without-memory")) {
        char* volatile scratch = new char[8]; // lost when the call throws
        if constexpr (std::is_void_v<Result>) {
            call();
            delete[] scratch;
        } else {
            Result result = call();
            delete[] scratch;
            return result;
        }
        return Result();
    }
    if (is(operation, "silent-without-memory")) {
        try {
            mayThrow();
            return call();
        } catch (const std::bad_alloc&) {
            return Result();
        }
    }
    if (is(operation, "done-and-thrown")) { // an error for something that has happened
        if constexpr (std::is_void_v<Result>)
            call();
        else
            return call();
        mayThrow();
        return Result();
    }
    if (is(operation, "loses-when-refused")) {
        char* volatile scratch = new char[8];
        if constexpr (std::is_void_v<Result>) {
            call();
            delete[] scratch;
            return;
        } else {
            Result result = call();
            delete[] scratch;
            return result;
        }
    }
    return call();
}

} // namespace wrong
