// Memory for what usually lives as long as one expression.
#pragma once

#include <cstddef>
#include <new>
#include <type_traits>
#include <utility>

namespace foundation::vexadata::detail {

/// Arranges that `free` is called with null when this thread ends. False when that cannot be had, or the
/// thread is ending already.
bool atThreadEnd(void (*free)() noexcept) noexcept;

/// Blocks of `size` bytes. Each thread keeps the one that it gave back last for its next request, which costs
/// a fifth of what the heap takes.
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

    // Found without a call; two words of the room that is reserved for this.
    [[gnu::tls_model("initial-exec")]] static inline thread_local constinit void* kept_ = nullptr;
    [[gnu::tls_model("initial-exec")]] static inline thread_local constinit bool keeps_ = false;
};

/// For the control blocks of handles and chains that are usually dropped where they were made.
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
