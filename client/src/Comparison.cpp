#include "Comparison.hpp"

#include <foundation/vexadata/detail/TypeInformation.hpp>

#include <new>

namespace vexa::client {

using data::impl::ArrayImpl;

bool Comparison::equalPlaces(const ArrayHolder& a, const ArrayHolder& b) {
    for (std::size_t place = 0; place < a.numberOfPlaces(); ++place) {
        const ArrayImpl& left = a.heldIn(place);
        const ArrayImpl& right = b.heldIn(place);
        if (&left == &right || left.getArrayID() == right.getArrayID()) {
            continue;
        }
        if (left.getDimensions() != right.getDimensions() || left.getType() != right.getType()) {
            return false;
        }
        const bool equal = canHold(left.getType())
                               ? equalLater(left, right, a.isShared(place) && b.isShared(place))
                               : left.isEqual(&right);
        if (!equal) {
            return false;
        }
    }
    return true;
}

bool Comparison::equalProperties(const ArrayHolder& a, const ArrayHolder& b) {
    return !seen_.emplace(&a, &b).second || equalPlaces(a, b);
}

/// When the list cannot grow, the pair is compared at once, by recursion.
bool Comparison::equalLater(const ArrayImpl& a, const ArrayImpl& b, bool shared) {
    try {
        if (!shared || seen_.emplace(&a, &b).second) {
            left_.emplace_back(&a, &b);
        }
        return true;
    } catch (const std::bad_alloc&) {
        return a.isEqual(&b);
    }
}

bool Comparison::finish() {
    while (!left_.empty()) {
        const auto [a, b] = left_.back();
        left_.pop_back();
        const auto* own =
            foundation::vexadata::detail::dynamicCast<const Comparable>(a); // not of another back-end
        if (!(own != nullptr ? own->equalsIn(*this, *b) : a->isEqual(b))) {
            return false;
        }
    }
    return true;
}

} // namespace vexa::client
