#include "Progress.hpp"

#include "Memory.hpp"

#include <algorithm>

namespace vexa::inspect {

namespace {

constexpr std::uint64_t smallFile = 4'000'000;
constexpr std::chrono::milliseconds interval{100};

} // namespace

Progress::Progress(std::ostream* terminal, std::optional<std::uint64_t> total)
    : terminal_(terminal), total_(total) {}

Progress::~Progress() {
    if (shown_) *terminal_ << "\r\x1b[K" << std::flush;
}

void Progress::advance(std::uint64_t bytes) {
    done_ += bytes;
    if (terminal_ == nullptr || std::max(done_, total_.value_or(0)) < smallFile) return;
    const auto now = Clock::now();
    if (shown_ && now - lastShown_ < interval) return;
    lastShown_ = now;
    shown_ = true;
    *terminal_ << "\rread " << formatBytes(done_);
    if (total_.value_or(0) >= done_)
        *terminal_ << " of " << formatBytes(*total_) << " (" << done_ * 100 / *total_ << " %)";
    *terminal_ << "\x1b[K" << std::flush;
}

} // namespace vexa::inspect
