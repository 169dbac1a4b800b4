// What all forwarding doubles have in common: the one object below, and the hook.
#pragma once

#include <vexa/data/detail/CountedPtr.hpp>
#include <vexa/data/detail/ForwardIteratorImpl.hpp>
#include <vexa/data/detail/IteratorImpl.hpp>
#include <vexa/data/detail/RefCounted.hpp>
#include <vexa/data/detail/ReferenceImpl.hpp>
#include <vexa/testing/Hook.hpp>
#include <vexa/testing/LiveObjects.hpp>

#include <memory>
#include <type_traits>
#include <utility>
#include <vector>

namespace vexa::testing {

namespace fv = foundation::vexadata;

/// What a double owns of the object that it wraps, and what an operation returned.
template <class T>
using Inner = data::detail::CountedPtr<T>;

/// The inner side of a double. `T` is the interface of what is wrapped: ArrayImpl, ObjectImpl, ClassInfoImpl,
/// ArrayFactoryImpl, IteratorImpl, ForwardIteratorImpl or ReferenceImpl.
template <class T>
class Double : private LiveObjects::Counted {
public:
    /// What is wrapped. Borrowed: lives as long as the double, unless that goes on around another object.
    T& wrapped() const noexcept { return *inner_; }
    /// The hook, or null.
    const std::shared_ptr<Hook>& hook() const noexcept { return hook_; }

    /// What `object` wraps if it is a double, or else `object` itself; null for null. Borrowed.
    static const T* below(const T* object) noexcept {
        const auto* wrapper = dynamic_cast<const Double*>(object);
        return wrapper == nullptr ? object : wrapper->inner_.get();
    }
    static T* below(T* object) noexcept { return const_cast<T*>(below(static_cast<const T*>(object))); }

protected:
    /// Around an object.
    explicit Double(Inner<T> inner, std::shared_ptr<Hook> hook) noexcept
        : inner_(std::move(inner)), hook_(std::move(hook)) {}
    Double(const Double&) = delete;
    Double& operator=(const Double&) = delete;
    virtual ~Double() = default;

    /// What is wrapped, for an operation that is passed on; the hook sees it first.
    /// @throws what the hook throws
    template <class... Arguments>
    T& passOn(const char* name, const Arguments&... arguments) const {
        if (hook_ != nullptr) {
            hook_->operation(detail::CallOf<Arguments...>(name, arguments...));
        }
        return *inner_;
    }
    /// The same for a query.
    const T& ask(const char* name) const {
        if (hook_ != nullptr) {
            hook_->query(detail::CallOf<>(name));
        }
        return *inner_;
    }

    /// What an operation gives: `made`, or null if the hook wants that.
    template <class Made>
    Made* given(Made* made) const {
        if (hook_ == nullptr || made == nullptr || !hook_->givesNull()) {
            return made;
        }
        if constexpr (std::is_base_of_v<vexa::data::detail::RefCounted, Made>) {
            made->release();
        }
        return nullptr;
    }
    template <class Made>
    std::shared_ptr<Made> given(std::shared_ptr<Made> made) const {
        return hook_ == nullptr || made == nullptr || !hook_->givesNull() ? made : nullptr;
    }

    /// Goes on around another object.
    void rewrap(Inner<T> inner) noexcept { inner_ = std::move(inner); }
    /// Goes on around a copy if others hold what is wrapped, as an array does into which it was stored. What
    /// was lent before stays where it is.
    void separate() {
        if (inner_->referenceCount() > 1) {
            before_.reserve(before_.size() + 1);
            Inner<T> copy(inner_->sharedCopy());
            before_.push_back(std::exchange(inner_, std::move(copy)));
        }
    }

private:
    Inner<T> inner_;
    std::vector<Inner<T>> before_;
    std::shared_ptr<Hook> hook_;
};

} // namespace vexa::testing
