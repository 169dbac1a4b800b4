// A ledger of the doubles alive: what a handle, chain or iterator forgets to release shows up here.
#pragma once

#include <atomic>

namespace vexa::testing {

/// How many objects that derive from `Counted` are alive in this process. All doubles do; a class of a test
/// may as well. Any thread may ask.
class LiveObjects {
public:
    /// Their number now. Equal before and after what is tested, or something was lost or freed twice.
    static int count() noexcept { return alive().load(); }

    /// Base of every object that is counted, copies too.
    class Counted {
    public:
        Counted() noexcept { ++alive(); }
        /// Each counts.
        Counted(const Counted&) noexcept { ++alive(); }
        Counted& operator=(const Counted&) noexcept = default;

    protected:
        ~Counted() { --alive(); }
    };

private:
    static std::atomic<int>& alive() noexcept {
        static std::atomic<int> number{0};
        return number;
    }
};

} // namespace vexa::testing
