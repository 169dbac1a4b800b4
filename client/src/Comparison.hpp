// Comparing nested arrays to any depth: with a list of pairs that are still to be compared instead of
// recursion.
#pragma once

#include "ArrayHolder.hpp"

#include <cstddef>
#include <functional>
#include <unordered_set>
#include <utility>
#include <vector>

namespace vexa::client {

class Comparison;

/// Implemented, beside their contract interface, by the arrays of this back-end that hold arrays.
class Comparable {
public:
    /// False when `other`, an array of equal type and dimensions, is different. Otherwise the arrays held
    /// that are still to be compared are left with `comparison`.
    virtual bool equalsIn(Comparison& comparison, const data::impl::ArrayImpl& other) const = 0;

protected:
    ~Comparable() = default;
};

/// A comparison of two arrays under way: pairs of arrays that they hold wait in a list, and a pair that
/// occurs many times is compared once.
class Comparison {
public:
    static bool equal(const Comparable& array, const data::impl::ArrayImpl& other) {
        Comparison comparison;
        return array.equalsIn(comparison, other) && comparison.finish();
    }

    /// Place by place, as many on both sides.
    bool equalPlaces(const ArrayHolder& a, const ArrayHolder& b);
    /// Properties of two objects of one class, which other objects and arrays may share: each pair is
    /// compared once.
    bool equalProperties(const ArrayHolder& a, const ArrayHolder& b);

private:
    using Pair = std::pair<const void*, const void*>;
    struct Hash {
        std::size_t operator()(const Pair& pair) const noexcept {
            return std::hash<const void*>()(pair.first) * 31 + std::hash<const void*>()(pair.second);
        }
    };

    bool finish();
    bool equalLater(const data::impl::ArrayImpl& a, const data::impl::ArrayImpl& b, bool shared);

    std::vector<std::pair<const data::impl::ArrayImpl*, const data::impl::ArrayImpl*>> left_;
    std::unordered_set<Pair, Hash> seen_;
};

} // namespace vexa::client
