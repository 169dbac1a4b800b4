// The smart pointer to objects of the contract.
#pragma once

#include <vexa/data/detail/RefCounted.hpp>

#include <cstddef>
#include <type_traits>
#include <utility>

namespace vexa::data::detail {

/// One counted reference to an object, in the room of a pointer, for authors of back-ends: what an operation
/// returns is put in at once, and what an operation shall return is taken out with `detach`. Copies share the
/// object. Handles of client code have `std::shared_ptr` instead. Not synchronised; the count is.
template <class T>
class CountedPtr {
public:
    /// Points at nothing.
    CountedPtr() noexcept = default;
    CountedPtr(std::nullptr_t) noexcept {}
    /// Adopts the one reference that `object` carries, as everything does that an operation returns. Null is
    /// allowed.
    explicit CountedPtr(T* object) noexcept : object_(object) {}
    CountedPtr(const CountedPtr& other) noexcept : object_(other.object_) {
        if (object_ != nullptr) {
            object_->retain();
        }
    }
    CountedPtr(CountedPtr&& other) noexcept : object_(other.detach()) {}
    /// A reference to an object of a derived class.
    template <class Derived, std::enable_if_t<std::is_convertible_v<Derived*, T*>, int> = 0>
    CountedPtr(CountedPtr<Derived> other) noexcept : object_(other.detach()) {}
    /// Drops the reference that it has, and takes that of `other`.
    CountedPtr& operator=(CountedPtr other) noexcept {
        std::swap(object_, other.object_);
        return *this;
    }
    ~CountedPtr() {
        if (object_ != nullptr) {
            object_->release();
        }
    }

    /// One more reference to an object that somebody else owns.
    static CountedPtr share(T& object) noexcept {
        object.retain();
        return CountedPtr(&object);
    }

    /// The object, borrowed; null when it points at nothing.
    T* get() const noexcept { return object_; }
    T& operator*() const noexcept { return *object_; }
    T* operator->() const noexcept { return object_; }
    explicit operator bool() const noexcept { return object_ != nullptr; }
    /// Where the pointer lies.
    T* const* address() const noexcept { return &object_; }

    /// Drops the reference that it has, and adopts that of `object`.
    void reset(T* object = nullptr) noexcept { *this = CountedPtr(object); }
    /// Hands the reference over to the caller and points at nothing.
    [[nodiscard]] T* detach() noexcept { return std::exchange(object_, nullptr); }

    /// The same object, or none on either side.
    friend bool operator==(const CountedPtr& a, const CountedPtr& b) noexcept {
        return a.object_ == b.object_;
    }
    friend bool operator!=(const CountedPtr& a, const CountedPtr& b) noexcept { return !(a == b); }

private:
    T* object_ = nullptr;
};

} // namespace vexa::data::detail
