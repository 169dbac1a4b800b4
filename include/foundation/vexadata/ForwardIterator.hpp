// Walking the names, classes and properties that a back-end keeps.
#pragma once

#include <foundation/vexadata/Range.hpp>
#include <foundation/vexadata/detail/Access.hpp>
#include <vexa/data/detail/ForwardIteratorImpl.hpp>

#include <cstddef>
#include <iterator>
#include <memory>
#include <type_traits>
#include <utility>

namespace foundation::vexadata {

/// A position in a sequence of names, classes or properties. Every dereference makes a new handle; nothing is
/// cached. Copies move independently. Errors of the back-end pass through.
template <class T>
class ForwardIterator {
    using Impl = vexa::data::detail::ForwardIteratorImpl;

public:
    using iterator_category = std::input_iterator_tag;
    using value_type = std::remove_const_t<T>;
    using difference_type = std::ptrdiff_t;
    using reference = T; // made anew at each dereference
    using pointer = void;

    /// Adopts the one reference that `impl` carries.
    /// @throws std::bad_alloc after dropping the reference
    explicit ForwardIterator(Impl* impl) : impl_(detail::Access::createSharedPtr(impl)) {}
    ForwardIterator(const ForwardIterator& other) : impl_(copyOf(other)) {}
    ForwardIterator(ForwardIterator&&) noexcept = default;
    ForwardIterator& operator=(const ForwardIterator& other) {
        impl_ = copyOf(other);
        return *this;
    }
    ForwardIterator& operator=(ForwardIterator&&) noexcept = default;
    ~ForwardIterator() = default;

    /// As of every input iterator.
    ForwardIterator& operator++() {
        impl_->increment();
        return *this;
    }
    ForwardIterator operator++(int) {
        ForwardIterator before(*this);
        impl_->increment();
        return before;
    }
    T operator*() const { return value_type(impl_->get()); }

    /// Whether both stand at one place; both must come from one sequence.
    bool operator==(const ForwardIterator& other) const { return impl_->equal(other.impl_.get()); }
    bool operator!=(const ForwardIterator& other) const { return !(*this == other); }

private:
    static std::shared_ptr<Impl> copyOf(const ForwardIterator& other) {
        return other.impl_ == nullptr ? nullptr : detail::Access::createSharedPtr(other.impl_->clone());
    }

    std::shared_ptr<Impl> impl_;
};

} // namespace foundation::vexadata
