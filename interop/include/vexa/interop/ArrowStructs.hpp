// The three structures of the Arrow C data interface, as Arrow publishes it
// (https://arrow.apache.org/docs/format/CDataInterface.html and CStreamInterface.html), and an owner for
// them. The names and the guards are the standard's, so that the header of any other library may be included
// too.
#pragma once

#include <cstdint>

#ifndef ARROW_C_DATA_INTERFACE
#    define ARROW_C_DATA_INTERFACE

#    define ARROW_FLAG_DICTIONARY_ORDERED 1
#    define ARROW_FLAG_NULLABLE 2
#    define ARROW_FLAG_MAP_KEYS_SORTED 4

extern "C" {

/// The type of an array. Texts end with NUL. The structure owns what its pointers lead to, and is not
/// released while `release` is not null. Moving it means copying its bytes and setting `release` of the
/// source to null.
struct ArrowSchema {
    const char* format;
    const char* name;
    const char* metadata;
    std::int64_t flags;
    std::int64_t n_children;
    struct ArrowSchema** children;
    struct ArrowSchema* dictionary;
    void (*release)(struct ArrowSchema*);
    void* private_data;
};

/// The elements `offset` to `offset + length` of an array; the rule of ownership is the same.
struct ArrowArray {
    std::int64_t length;
    std::int64_t null_count; // -1: not counted
    std::int64_t offset;
    std::int64_t n_buffers;
    std::int64_t n_children;
    const void** buffers;
    struct ArrowArray** children;
    struct ArrowArray* dictionary;
    void (*release)(struct ArrowArray*);
    void* private_data;
};
}
#endif

#ifndef ARROW_C_STREAM_INTERFACE
#    define ARROW_C_STREAM_INTERFACE

extern "C" {

/// Arrays of one type, one after the other; used by one thread at a time. The functions return 0 or a number
/// of `errno`; a released array means the end. The text of the last error lives until the next call.
struct ArrowArrayStream {
    int (*get_schema)(struct ArrowArrayStream*, struct ArrowSchema* out);
    int (*get_next)(struct ArrowArrayStream*, struct ArrowArray* out);
    const char* (*get_last_error)(struct ArrowArrayStream*);
    void (*release)(struct ArrowArrayStream*);
    void* private_data;
};
}
#endif

namespace vexa::interop {

/// Owns one of the structures, which begins released: give `get()` to whoever fills it, or to whoever takes
/// it over. Releases it at the end unless that has been done.
template <class Struct>
class OwnedArrow {
public:
    OwnedArrow() = default;
    OwnedArrow(OwnedArrow&& other) noexcept : value_(other.value_) { other.value_.release = nullptr; }
    OwnedArrow& operator=(OwnedArrow&& other) noexcept {
        if (this != &other) {
            reset();
            value_ = other.value_;
            other.value_.release = nullptr;
        }
        return *this;
    }
    ~OwnedArrow() { reset(); }

    /// Releases it now.
    void reset() noexcept {
        if (value_.release != nullptr) {
            value_.release(&value_);
            value_.release = nullptr; // for those who forget
        }
    }
    /// Moves it here from where a caller has it.
    void take(Struct* source) noexcept {
        reset();
        value_ = *source;
        source->release = nullptr;
    }
    /// Moves it to where a caller wants it; what lies there is overwritten.
    void moveTo(Struct* target) noexcept {
        *target = value_;
        value_.release = nullptr;
    }

    /// The structure, which this object still owns.
    Struct* get() noexcept { return &value_; }
    const Struct* get() const noexcept { return &value_; }        ///< the same
    Struct* operator->() noexcept { return &value_; }             ///< its members
    const Struct* operator->() const noexcept { return &value_; } ///< the same
    /// Whether it has something to release.
    explicit operator bool() const noexcept { return value_.release != nullptr; }

private:
    Struct value_{};
};

} // namespace vexa::interop
