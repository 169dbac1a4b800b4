// A pair of iterators for range-for loops.
#pragma once

#include <foundation/vexadata/Forward.hpp>

#include <utility>

namespace foundation::vexadata {

/// Begin and end, of type `Iterator<T>`. What they refer to must outlive it, as for the iterators.
template <template <class> class Iterator, class T>
class Range {
public:
    /// Two positions in one sequence.
    Range(Iterator<T> begin, Iterator<T> end) : begin_(std::move(begin)), end_(std::move(end)) {}

    /// Copies, which move independently.
    Iterator<T> begin() const { return begin_; }
    Iterator<T> end() const { return end_; }

private:
    Iterator<T> begin_;
    Iterator<T> end_;
};

} // namespace foundation::vexadata
