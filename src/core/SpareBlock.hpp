// Memory for objects that usually live for one expression: each thread keeps one block of each size for the
// next of them.
#pragma once

#include <cstddef>
#include <new>
#include <type_traits>
#include <utility>

namespace foundation::vexadata::detail {

/// Arranges that `free` is called when this thread ends. False when that is impossible, or the thread is
/// already ending.
bool atThreadEnd(void (*free)() noexcept) noexcept;

/// Blocks of `size` bytes. Each thread keeps the one that it gave back last for its next request, which takes
/// a fifth of the time of the heap.
template <std::size_t size>
class SpareBlock {
public:
    /// @throws std::bad_alloc
    static void* take() {
        void* const block = std::exchange(kept_, nullptr);
        return block != nullptr ? block : ::operator new(size);
    }
    static void giveBack(void* block) noexcept {
        if (kept_ == nullptr && (keeps_ || (keeps_ = atThreadEnd(&freeKept)))) {
            kept_ = block;
        } else {
            ::operator delete(block);
        }
    }

private:
    static void freeKept() noexcept {
        keeps_ = false;
        ::operator delete(std::exchange(kept_, nullptr));
    }

    // This model is addressed without a call. It takes two words of the small area that the loader reserves
    // for libraries loaded later.
    [[gnu::tls_model("initial-exec")]] static inline thread_local constinit void* kept_ = nullptr;
    [[gnu::tls_model("initial-exec")]] static inline thread_local constinit bool keeps_ = false;
};

/// The same as an allocator, for the control blocks of shared pointers to such objects.
template <class T>
struct SpareAllocator {
    using value_type = T;

    SpareAllocator() = default;
    template <class U>
    SpareAllocator(const SpareAllocator<U>&) noexcept {}

    T* allocate(std::size_t) { return static_cast<T*>(SpareBlock<sizeof(T)>::take()); }
    void deallocate(T* block, std::size_t) noexcept { SpareBlock<sizeof(T)>::giveBack(block); }

    template <class U>
    friend bool operator==(const SpareAllocator&, const SpareAllocator<U>&) noexcept {
        return true;
    }
};

} // namespace foundation::vexadata::detail
