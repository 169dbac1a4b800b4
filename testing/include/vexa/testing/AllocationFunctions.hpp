// The allocation functions that FailingAllocations counts with: operator new and delete of every form, and,
// without a sanitizer, malloc and its relatives. Defines functions that are not inline: exactly one source of
// a program includes this. For the GNU C library. They are visible whatever the visibility of other
// functions, and an executable exports them to libraries that are loaded later if it is linked with -rdynamic
// (ENABLE_EXPORTS in CMake).
#pragma once

#include <vexa/testing/FailingAllocations.hpp>

#include <malloc.h>

#include <atomic>
#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <new>

#pragma GCC visibility push(default)

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
#    define VEXA_TESTING_SANITIZED 1
#elif defined(__has_feature)
#    if __has_feature(address_sanitizer) || __has_feature(thread_sanitizer) || __has_feature(memory_sanitizer)
#        define VEXA_TESTING_SANITIZED 1
#    endif
#endif

namespace {

struct Counters {
    bool counting = false;
    bool onwards = false;
    std::size_t allocations = 0;
    bool fired = false;
    std::size_t untilFailure = 0; // 0: none fails
    std::ptrdiff_t live = 0;
    std::ptrdiff_t bytes = 0;
};

// Constant-initialised, so that reaching it never allocates.
thread_local Counters counters;

/// False when the allocation that is about to happen has to fail.
bool admit() noexcept {
    if (!counters.counting) return true;
    ++counters.allocations;
    if (counters.untilFailure == 0 || --counters.untilFailure != 0) return true;
    counters.fired = true;
    counters.untilFailure = counters.onwards ? 1 : 0;
    return false;
}

void* counted(void* block) noexcept {
    if (counters.counting && block != nullptr) {
        ++counters.live;
        counters.bytes += static_cast<std::ptrdiff_t>(::malloc_usable_size(block));
    }
    return block;
}
/// Before it is freed.
void forget(void* block) noexcept {
    if (counters.counting && block != nullptr) {
        --counters.live;
        counters.bytes -= static_cast<std::ptrdiff_t>(::malloc_usable_size(block));
    }
}

std::atomic<bool>* refusals = nullptr;

/// What the system gave. A request that no check makes says nothing about the system.
void* given(void* block, std::size_t size) noexcept {
    constexpr std::size_t modest = std::size_t{64} << 20;
    if (block == nullptr && size <= modest && refusals != nullptr) *refusals = true;
    return block;
}

} // namespace

#ifdef VEXA_TESTING_SANITIZED

namespace {

void* rawAllocate(std::size_t size) noexcept { return given(std::malloc(size), size); }
void* rawAllocate(std::size_t alignment, std::size_t size) noexcept {
    return given(std::aligned_alloc(alignment, (size + alignment - 1) / alignment * alignment), size);
}
void rawFree(void* block) noexcept { std::free(block); }

} // namespace

#else

extern "C" {
/// The C library's own functions, which the ones below stand in front of.
void* __libc_malloc(std::size_t size);
void* __libc_calloc(std::size_t number, std::size_t size);
void* __libc_realloc(void* block, std::size_t size);
void* __libc_memalign(std::size_t alignment, std::size_t size);
void __libc_free(void* block);
}

namespace {

void* rawAllocate(std::size_t size) noexcept { return given(__libc_malloc(size), size); }
void* rawAllocate(std::size_t alignment, std::size_t size) noexcept {
    return given(__libc_memalign(alignment, size), size);
}
void* rawCalloc(std::size_t number, std::size_t size) noexcept {
    std::size_t bytes = 0;
    const bool absurd = __builtin_mul_overflow(number, size, &bytes);
    return given(__libc_calloc(number, size), absurd ? SIZE_MAX : bytes);
}
void rawFree(void* block) noexcept { __libc_free(block); }

void* outOfMemory() noexcept {
    errno = ENOMEM;
    return nullptr;
}

} // namespace

extern "C" {
/// As of the C library, counted, and failing when FailingAllocations says so.
void* malloc(std::size_t size) noexcept { return admit() ? counted(rawAllocate(size)) : outOfMemory(); }
void* calloc(std::size_t number, std::size_t size) noexcept {
    return admit() ? counted(rawCalloc(number, size)) : outOfMemory();
}
void* realloc(void* block, std::size_t size) noexcept {
    if (!admit()) return outOfMemory();
    forget(block);
    void* moved = given(__libc_realloc(block, size), size == 0 ? SIZE_MAX : size);
    if (moved == nullptr && size != 0) counted(block);
    return counted(moved);
}
void* aligned_alloc(std::size_t alignment, std::size_t size) noexcept {
    return admit() ? counted(rawAllocate(alignment, size)) : outOfMemory();
}
int posix_memalign(void** block, std::size_t alignment, std::size_t size) noexcept {
    void* fresh = aligned_alloc(alignment, size);
    if (fresh == nullptr) return ENOMEM;
    *block = fresh;
    return 0;
}
void free(void* block) noexcept {
    forget(block);
    __libc_free(block);
}
}

#endif

namespace {

template <class... Arguments>
void* orThrow(Arguments... arguments) {
    void* block = admit() ? counted(rawAllocate(arguments...)) : nullptr;
    if (block == nullptr) throw std::bad_alloc();
    return block;
}
template <class... Arguments>
void* orNull(Arguments... arguments) noexcept {
    return admit() ? counted(rawAllocate(arguments...)) : nullptr;
}
void drop(void* block) noexcept {
    forget(block);
    rawFree(block);
}

constexpr std::size_t bytes(std::align_val_t alignment) noexcept {
    return static_cast<std::size_t>(alignment);
}

} // namespace

/// As of the standard library, counted, and failing when FailingAllocations says so.
void* operator new(std::size_t size) { return orThrow(size); }
void* operator new[](std::size_t size) { return orThrow(size); }
void* operator new(std::size_t size, const std::nothrow_t&) noexcept { return orNull(size); }
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept { return orNull(size); }
void* operator new(std::size_t size, std::align_val_t alignment) { return orThrow(bytes(alignment), size); }
void* operator new[](std::size_t size, std::align_val_t alignment) { return orThrow(bytes(alignment), size); }
void operator delete(void* block) noexcept { drop(block); }
void operator delete[](void* block) noexcept { drop(block); }
void operator delete(void* block, std::size_t) noexcept { drop(block); }
void operator delete[](void* block, std::size_t) noexcept { drop(block); }
void operator delete(void* block, const std::nothrow_t&) noexcept { drop(block); }
void operator delete[](void* block, const std::nothrow_t&) noexcept { drop(block); }
void operator delete(void* block, std::align_val_t) noexcept { drop(block); }
void operator delete[](void* block, std::align_val_t) noexcept { drop(block); }
void operator delete(void* block, std::size_t, std::align_val_t) noexcept { drop(block); }
void operator delete[](void* block, std::size_t, std::align_val_t) noexcept { drop(block); }

#pragma GCC visibility pop

namespace vexa::testing {

void FailingAllocations::start() noexcept {
    counters = Counters();
    counters.counting = true;
}
void FailingAllocations::stop() noexcept { counters.counting = false; }
void FailingAllocations::failAt(std::size_t number, bool onwards) noexcept {
    counters.fired = false;
    counters.allocations = 0;
    counters.untilFailure = number;
    counters.onwards = onwards;
}
bool FailingAllocations::fired() noexcept { return counters.fired; }
std::size_t FailingAllocations::allocations() noexcept { return counters.allocations; }
std::ptrdiff_t FailingAllocations::liveBlocks() noexcept { return counters.live; }
void FailingAllocations::noteRefusals(std::atomic<bool>* note) noexcept { refusals = note; }
std::ptrdiff_t FailingAllocations::liveBytes() noexcept { return counters.bytes; }
bool FailingAllocations::seesMalloc() noexcept {
#ifdef VEXA_TESTING_SANITIZED
    return false;
#else
    return true;
#endif
}

} // namespace vexa::testing
