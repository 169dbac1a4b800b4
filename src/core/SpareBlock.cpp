// Freeing the kept blocks when a thread ends.
#include "SpareBlock.hpp"

#include <pthread.h>

#include <array>

namespace foundation::vexadata::detail {

namespace {

/// A key with a destructor instead of thread-local objects with destructors: registering the first of these
/// in a thread ends the process when memory is out, whereas setting a key reports it.
class ThreadEnd {
public:
    ThreadEnd() noexcept : exists_(pthread_key_create(&key_, &callAll) == 0) {}
    ~ThreadEnd() {
        if (exists_) {
            pthread_key_delete(key_);
        }
    }
    ThreadEnd(const ThreadEnd&) = delete;
    ThreadEnd& operator=(const ThreadEnd&) = delete;

    bool add(void (*free)() noexcept) const noexcept {
        if (!exists_ || hasEnded_ || count_ == calls_.size() || pthread_setspecific(key_, &calls_) != 0) {
            return false;
        }
        calls_[count_++] = free;
        return true;
    }

private:
    static void callAll(void*) {
        hasEnded_ = true;
        while (count_ > 0) {
            calls_[--count_]();
        }
    }

    using Call = void (*)() noexcept;
    static inline thread_local constinit std::array<Call, 4> calls_{};
    static inline thread_local constinit std::size_t count_ = 0;
    static inline thread_local constinit bool hasEnded_ = false;

    pthread_key_t key_ = 0;
    bool exists_;
};

} // namespace

bool atThreadEnd(void (*free)() noexcept) noexcept {
    static const ThreadEnd end;
    return end.add(free);
}

} // namespace foundation::vexadata::detail
