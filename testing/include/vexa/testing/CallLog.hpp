// Doubles that write down what was called.
#pragma once

#include <vexa/testing/ForwardingArrays.hpp>
#include <vexa/testing/ForwardingFactory.hpp>

#include <memory>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

namespace vexa::testing {

/// A hook that keeps the calls in their order, each as Call::text gives it. Not synchronised.
class CallLog : public Hook {
public:
    void operation(const Call& call) override {
        operations_.push_back(call.text());
        all_.push_back(operations_.back());
    }
    void query(const Call& call) override { all_.push_back(call.text()); }

    /// The operations: what reaches elements or changes something.
    const std::vector<std::string>& operations() const noexcept { return operations_; }
    /// The same with the queries between them.
    const std::vector<std::string>& all() const noexcept { return all_; }
    /// Forgets all calls so far.
    void clear() noexcept {
        operations_.clear();
        all_.clear();
    }
    /// The operations so far. Forgets all calls.
    std::vector<std::string> take() {
        std::vector<std::string> taken = std::move(operations_);
        clear();
        return taken;
    }

private:
    std::vector<std::string> operations_;
    std::vector<std::string> all_;
};

namespace detail {

template <class T>
struct DoubleOfTyped {
    using type = ForwardingNumbers<T>;
};
template <>
struct DoubleOfTyped<fv::Array> {
    using type = ForwardingCells;
};
template <class T>
using ForwardingOf = typename DoubleOfTyped<T>::type;

} // namespace detail

/// A handle to a recording double, and the log that the double shares with its copies.
template <class T>
struct Recorded {
    /// The handle and the log.
    fv::TypedArray<T> array;
    std::shared_ptr<CallLog> log;
};

/// Puts a forwarding double with a log in front of `inner`, which should not be used otherwise:
/// ForwardingNumbers or ForwardingCells, or a class derived from it.
///
///     auto made = recorded(factory.createArray<double>({2, 2}));
///     made.array[1][0] = 7.0;
///     made.log->take(); // "unshare()", "setElementValue(1, \"\", 7)"
template <template <class> class BackEnd = detail::ForwardingOf, class T>
Recorded<T> recorded(fv::TypedArray<T> inner) {
    auto log = std::make_shared<CallLog>();
    ArrayImpl* array = fv::detail::Access::impl(inner).get();
    array->retain();
    return {fv::TypedArray<T>(new BackEnd<T>(Inner<ArrayImpl>(array), log)), log};
}

} // namespace vexa::testing
