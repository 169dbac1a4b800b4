// How handles own back-end objects. Only this structure reaches a handle's pointer.
#pragma once

#include <foundation/vexadata/Forward.hpp>

#include <atomic>
#include <memory>

#if defined(__SANITIZE_THREAD__)
#    define VEXADATA_THREAD_SANITIZER 1
#elif defined(__has_feature)
#    if __has_feature(thread_sanitizer)
#        define VEXADATA_THREAD_SANITIZER 1
#    endif
#endif

namespace foundation::vexadata::detail {

/// Deleter of shared ownership: drops one reference.
struct ReleaseReference {
    template <class T>
    void operator()(T* object) const noexcept {
        if (object != nullptr) {
            object->release();
        }
    }
};

struct Access {
    /// Adopts the caller's one reference to `impl`, without adding any; the last owner drops it. Null gives
    /// an empty pointer and allocates nothing.
    /// @throws std::bad_alloc after dropping the reference
    template <class T>
    static std::shared_ptr<T> createSharedPtr(T* impl) {
        return impl == nullptr ? std::shared_ptr<T>() : std::shared_ptr<T>(impl, ReleaseReference());
    }

    /// The pointer inside a handle.
    template <class Handle>
    static auto& impl(Handle& handle) noexcept {
        return handle.impl_;
    }

    /// The place that an element handle refers to.
    template <class Ref>
    static auto& position(Ref& ref) noexcept {
        return ref.position_;
    }

    /// True when `owner` is the only handle of its object and the object has no other owner. What other
    /// threads did through handles that they have dropped is then visible.
    template <class T>
    static bool isPrivate(const std::shared_ptr<T>& owner) noexcept {
#ifdef VEXADATA_THREAD_SANITIZER
        // Fences are invisible to the sanitizer; copying counts up and down with acquire semantics.
        const std::shared_ptr<T> probe = owner;
        return probe.use_count() == 2 && probe->referenceCount() < 2;
#else
        if (owner.use_count() != 1) {
            return false;
        }
        std::atomic_thread_fence(std::memory_order_acquire); // use_count() alone orders nothing
        return owner->referenceCount() < 2;
#endif
    }

    /// Copy-on-write: gives the handle a copy of its own unless its object is private already.
    /// @throws std::bad_alloc and errors of the back-end; the handle is then unchanged
    template <class Handle>
    static void unshare(Handle& handle) {
        if (!isPrivate(handle.impl_)) {
            makeCopy(handle.impl_);
        }
    }

private:
    template <class T>
    [[gnu::cold, gnu::noinline]] static void makeCopy(std::shared_ptr<T>& owner) {
        owner = createSharedPtr<T>(owner->sharedCopy());
    }
};

} // namespace foundation::vexadata::detail
