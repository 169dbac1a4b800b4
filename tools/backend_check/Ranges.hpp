// Iterators of any kind, for the checks that all have in common.
#pragma once

#include "Backend.hpp"

#include <vexa/data/detail/ForwardIteratorImpl.hpp>

#include <functional>
#include <string>
#include <vector>

namespace vexa::check {

/// What lies between two iterators.
struct Range {
    std::string what; ///< e.g. "2x3 double array"
    std::function<Iterator()> begin;
    std::function<Iterator()> end;
    std::size_t length;

    /// A new iterator at a position, by steps from the beginning.
    Iterator at(std::size_t position) const;
    /// All positions of a short range, some of a long one; the end is among them.
    std::vector<std::size_t> positions() const;
};

void expectToPassAll(const Range& range);
void expectDistances(const Range& range);
void expectMoves(const Range& range);
void expectEqualOnlyThere(const Range& range);
void expectIndependentClones(const Range& range);
/// `chain` is kept, replaced, cloned with its iterator, and released.
void expectToKeepChains(const Range& range, ReferenceImpl& chain);

/// Names, classes or properties between two iterators, each of which comes with one reference.
struct Sequence {
    std::string what;
    std::function<data::detail::ForwardIteratorImpl*()> begin;
    std::function<data::detail::ForwardIteratorImpl*()> end;
    std::function<std::string(data::detail::RefCounted&)> nameOf;
};

/// Walks a sequence in every way there is: by steps, by clones, with several objects held at once; counts
/// what it is given.
void expectSequence(const Sequence& sequence, const std::vector<std::string>& wanted);

} // namespace vexa::check
