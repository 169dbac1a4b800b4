// Walking the elements of an array.
#pragma once

#include <foundation/vexadata/Range.hpp>
#include <foundation/vexadata/Reference.hpp>
#include <foundation/vexadata/detail/HeldError.hpp>
#include <foundation/vexadata/detail/TypeInformation.hpp>
#include <vexa/data/detail/ContiguousIteratorImpl.hpp>
#include <vexa/data/detail/IteratorImpl.hpp>
#include <vexa/data/detail/NonPrimitiveIteratorImpl.hpp>

#include <cstddef>
#include <iterator>
#include <memory>
#include <type_traits>
#include <utility>

namespace foundation::vexadata {

namespace detail {

/// What dereferencing gives: elements of primitive arrays themselves, other elements as handles by value.
template <class T>
struct IteratorTraits {
    static constexpr bool primitive = isPrimitiveElement<std::remove_const_t<T>>;
    using reference = std::conditional_t<
        primitive, T&,
        std::conditional_t<std::is_const_v<T>, ElementRefOf<std::remove_const_t<T>, true>, Reference<T>>>;
};

/// Where an iterator over elements stands that have no address of their own.
struct ElementCursor {
    ArrayImpl* array = nullptr;
    std::uint64_t position = 0;

    ElementCursor& operator++() noexcept { return *this += 1; }
    ElementCursor& operator--() noexcept { return *this += -1; }
    ElementCursor& operator+=(std::ptrdiff_t count) noexcept {
        position += static_cast<std::uint64_t>(count);
        return *this;
    }
    friend std::ptrdiff_t operator-(const ElementCursor& a, const ElementCursor& b) noexcept {
        return static_cast<std::ptrdiff_t>(a.position - b.position);
    }
    friend bool operator==(const ElementCursor& a, const ElementCursor& b) noexcept {
        return a.position == b.position;
    }
};

/// Lets `it->member` reach into a handle that exists only for the expression.
template <class Ref>
class ArrowProxy {
public:
    explicit ArrowProxy(Ref ref) : ref_(std::move(ref)) {}
    Ref* operator->() noexcept { return &ref_; }

private:
    Ref ref_;
};

} // namespace detail

/// A position in an array, in storage order. `TypedIterator<const T>` reads, `TypedIterator<T>` also writes;
/// the array was made private when the latter was made. Does not keep the array alive. A random-access
/// iterator, over primitive elements with real references; over other elements it hands out handles by value,
/// as that of `std::vector<bool>` does. Iterators that are compared or subtracted must come from one array.
/// Copies move independently.
///
/// The library's own kinds of iterators, over contiguous storage and over positions, move alone: their
/// `impl_` points at nothing and only owns what keeps the chain alive through which the array was reached.
/// All others forward every step to the back-end's iterator.
template <class T>
class TypedIterator {
    using Element = std::remove_const_t<T>;
    static_assert(detail::isElementType<Element>, "T is not an element type of arrays");
    using Traits = detail::IteratorTraits<T>;
    using Impl = vexa::data::detail::IteratorImpl;
    static constexpr bool primitive = Traits::primitive;
    using Cursor = std::conditional_t<primitive, T*, detail::ElementCursor>;

public:
    using iterator_category = std::random_access_iterator_tag;
#if defined(__cpp_lib_concepts)
    /// Primitive elements lie side by side, in every back-end: `std::span(a.begin(), a.end())` works.
    using iterator_concept = std::conditional_t<primitive, std::contiguous_iterator_tag, iterator_category>;
#endif
    using value_type = typename detail::ElementValue<Element>::type;
    using difference_type = std::ptrdiff_t;
    using reference = typename Traits::reference;
    using pointer = std::conditional_t<primitive, T*, detail::ArrowProxy<reference>>;

    /// Stands nowhere; may be assigned, destroyed and compared with another of its kind.
    TypedIterator() noexcept = default;
    /// Takes a back-end's iterator over.
    /// @throws std::bad_alloc after deleting it
    VEXADATA_INLINE explicit TypedIterator(Impl* impl) : TypedIterator(adopt(impl)) {}
    VEXADATA_INLINE TypedIterator(std::shared_ptr<Impl> impl) : TypedIterator(take(std::move(impl))) {}

    TypedIterator(const TypedIterator& other) : impl_(copyImpl(other.impl_)), current_(other.current_) {}
    TypedIterator(TypedIterator&& other) noexcept = default;
    TypedIterator& operator=(const TypedIterator& other) {
        if (this != &other) {
            impl_ = copyImpl(other.impl_);
            current_ = other.current_;
        }
        return *this;
    }
    TypedIterator& operator=(TypedIterator&& other) noexcept = default;
    ~TypedIterator() = default;

    /// A read-only iterator at the same position.
    template <class U, std::enable_if_t<std::is_same_v<const U, T> && !std::is_const_v<U>, int> = 0>
    TypedIterator(const TypedIterator<U>& other) : impl_(copyImpl(other.impl_)), current_(other.current_) {}

    /// One element on, or back.
    void increment() {
        if (movesAlone()) {
            ++current_;
            return;
        }
        current_ = orRethrow(stepForward(impl_.get()));
    }
    void decrement() {
        if (movesAlone()) {
            --current_;
            return;
        }
        current_ = orRethrow(stepBack(impl_.get()));
    }
    /// Moves by `count` elements, back when negative.
    void advance(std::ptrdiff_t count) {
        if (movesAlone()) {
            current_ += count;
            return;
        }
        current_ = orRethrow(step(impl_.get(), count));
    }
    /// Whether both stand at one place.
    bool isEqual(const TypedIterator& other) const {
        return movesAlone() ? current_ == other.current_ : orRethrow(samePosition(*impl_, other.impl_.get()));
    }
    /// Number of elements from this position to the other's.
    std::ptrdiff_t distanceTo(const TypedIterator& other) const {
        if (movesAlone()) {
            return other.current_ - current_;
        }
        return orRethrow(distance(*impl_, *other.impl_));
    }
    /// The current element.
    reference getRef() const {
        if constexpr (primitive) {
            return *current_;
        } else {
            return movesAlone() ? reference(detail::ElementPosition::at(current_.array, current_.position))
                                : reference(ReferenceHolder(impl_->createReference()).chain());
        }
    }

    /// As of every random-access iterator; errors of the back-end pass through.
    reference operator*() const { return getRef(); }
    pointer operator->() const {
        if constexpr (primitive) {
            return current_;
        } else {
            return pointer(getRef());
        }
    }
    reference operator[](std::ptrdiff_t offset) const {
        if constexpr (primitive) {
            return movesAlone() ? current_[offset] : *stepAside(offset);
        } else {
            return (*this + offset).getRef();
        }
    }

    /// As of every random-access iterator; errors of the back-end pass through.
    TypedIterator& operator++() {
        increment();
        return *this;
    }
    TypedIterator operator++(int) {
        TypedIterator before(*this);
        increment();
        return before;
    }
    TypedIterator& operator--() {
        decrement();
        return *this;
    }
    TypedIterator operator--(int) {
        TypedIterator before(*this);
        decrement();
        return before;
    }
    TypedIterator& operator+=(std::ptrdiff_t count) {
        advance(count);
        return *this;
    }
    TypedIterator& operator-=(std::ptrdiff_t count) {
        advance(-count);
        return *this;
    }
    friend TypedIterator operator+(TypedIterator it, std::ptrdiff_t count) { return std::move(it += count); }
    friend TypedIterator operator+(std::ptrdiff_t count, TypedIterator it) { return std::move(it += count); }
    friend TypedIterator operator-(TypedIterator it, std::ptrdiff_t count) { return std::move(it -= count); }
    friend std::ptrdiff_t operator-(const TypedIterator& a, const TypedIterator& b) {
        return b.distanceTo(a);
    }
    friend bool operator==(const TypedIterator& a, const TypedIterator& b) { return a.isEqual(b); }
    friend bool operator!=(const TypedIterator& a, const TypedIterator& b) { return !a.isEqual(b); }
    friend bool operator<(const TypedIterator& a, const TypedIterator& b) { return a.distanceTo(b) > 0; }
    friend bool operator>(const TypedIterator& a, const TypedIterator& b) { return b < a; }
    friend bool operator<=(const TypedIterator& a, const TypedIterator& b) { return !(b < a); }
    friend bool operator>=(const TypedIterator& a, const TypedIterator& b) { return !(a < b); }

private:
    template <class U>
    friend class TypedIterator;

    bool movesAlone() const noexcept { return __builtin_expect(impl_.get() == nullptr, true); }

    /// What an iterator consists of, made out of line and returned by value: an iterator whose own address
    /// nobody has seen stays in registers.
    struct Parts {
        std::shared_ptr<Impl> impl;
        Cursor current;
    };
    VEXADATA_INLINE explicit TypedIterator(Parts parts) noexcept
        : impl_(std::move(parts.impl)), current_(parts.current) {}

    [[gnu::noinline]] static Parts adopt(Impl* impl) {
        if (isOurs(*impl) &&
            !static_cast<Ours*>(impl)->holdsReference()) { // not needed once its position is known
            const Cursor current = cursorOf(static_cast<const Ours&>(*impl));
            delete static_cast<Ours*>(impl); // over contiguous storage of a final class: no virtual call
            return {nullptr, current};
        }
        return take(std::shared_ptr<Impl>(impl));
    }
    [[gnu::noinline]] static Parts take(std::shared_ptr<Impl> owner) {
        const Cursor current = cursorOf(owner.get());
        return isOurs(*owner) ? Parts{std::shared_ptr<Impl>(std::move(owner), nullptr), current}
                              : Parts{std::move(owner), current};
    }

    /// The kinds of iterators whose position is known without asking them.
    using Ours =
        std::conditional_t<primitive, vexa::data::detail::ContiguousIteratorImpl<Element>,
                           vexa::data::detail::NonPrimitiveIteratorImpl<vexa::data::impl::MatchingDataOrder>>;
    static bool isOurs(const Impl& impl) noexcept { return detail::isExactly<Ours>(impl); }
    static std::shared_ptr<Impl> copyImpl(const std::shared_ptr<Impl>& impl) {
        return impl.get() == nullptr ? impl : std::shared_ptr<Impl>(impl->clone());
    }
    static Cursor cursorOf(const Ours& impl) {
        if constexpr (primitive) {
            return impl.current();
        } else {
            return {impl.array(), impl.position()};
        }
    }
    static Cursor cursorOf(Impl* impl) {
        if (isOurs(*impl)) {
            return cursorOf(static_cast<const Ours&>(*impl));
        }
        if constexpr (primitive) {
            return static_cast<T*>(impl->getElementAddress());
        } else {
            return {};
        }
    }

    // The forwarded steps. Out of line, with pointers by value and without exceptions of their own, so that a
    // loop which never takes them keeps its pointer and its sums in registers: a call that may throw would
    // make compilers store them at every step. An error is held back and thrown again by a function that does
    // not return.
    template <class R>
    struct Outcome {
        R value;
        void* error; // of detail::holdError; null when the step succeeded
    };
    template <class F>
    static auto guarded(F forward) noexcept -> Outcome<decltype(forward())> {
        try {
            return {forward(), nullptr};
        } catch (...) {
            return {{}, detail::holdError()};
        }
    }
    template <class R>
    static R orRethrow(Outcome<R> outcome) {
        if (outcome.error != nullptr) {
            detail::rethrowHeldError(outcome.error);
        }
        return outcome.value;
    }
    [[gnu::noinline, gnu::cold]] T* stepAside(std::ptrdiff_t offset) const {
        return (*this + offset).current_;
    }
    static Cursor moved(Impl* impl, void (Impl::*move)()) {
        (impl->*move)();
        return cursorOf(impl);
    }
    [[gnu::noinline, gnu::cold]] static Outcome<Cursor> stepForward(Impl* impl) noexcept {
        return guarded([&] { return moved(impl, &Impl::increment); });
    }
    [[gnu::noinline, gnu::cold]] static Outcome<Cursor> stepBack(Impl* impl) noexcept {
        return guarded([&] { return moved(impl, &Impl::decrement); });
    }
    [[gnu::noinline, gnu::cold]] static Outcome<Cursor> step(Impl* impl, std::ptrdiff_t count) noexcept {
        return guarded([&] {
            impl->advance(count);
            return cursorOf(impl);
        });
    }
    [[gnu::noinline, gnu::cold]] static Outcome<bool> samePosition(const Impl& a, const Impl* b) noexcept {
        return guarded([&] { return b != nullptr && a.isEqual(*b); });
    }
    [[gnu::noinline, gnu::cold]] static Outcome<std::ptrdiff_t> distance(const Impl& a,
                                                                         const Impl& b) noexcept {
        return guarded([&] { return static_cast<std::ptrdiff_t>(a.distanceTo(b)); });
    }

    std::shared_ptr<Impl> impl_;
    Cursor current_ = {};
};

} // namespace foundation::vexadata
