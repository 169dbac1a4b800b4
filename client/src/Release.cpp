// A bound on the recursion of destructors.
#include "Release.hpp"

#include <new>
#include <utility>
#include <variant>

namespace vexa::client {

namespace {

using Arrays = std::vector<foundation::vexadata::Array>;
using PutAside = std::vector<std::variant<Arrays, std::vector<Held>>>;

/// Usual nesting stays below this, and is destroyed without allocating.
constexpr int mostInsideEachOther = 50;

struct Running {
    int depth;
    PutAside* putAside; // lives in the outermost call
};
thread_local Running running{0, nullptr};

template <class Places>
void release(Places&& places) noexcept {
    if (running.depth >= mostInsideEachOther) {
        try {
            running.putAside->emplace_back(std::move(places));
            return;
        } catch (const std::bad_alloc&) {} // without memory for the list, by recursion
    }
    ++running.depth;
    if (running.depth == 1) {
        PutAside putAside;
        running.putAside = &putAside;
        places.clear();
        while (!putAside.empty()) {
            const auto next = std::move(putAside.back());
            putAside.pop_back();
        }
    } else {
        places.clear();
    }
    --running.depth;
}

} // namespace

void releaseAll(Arrays&& places) noexcept { release(std::move(places)); }
void releaseAll(std::vector<Held>&& places) noexcept { release(std::move(places)); }

} // namespace vexa::client
