// Where an access through an index chain goes. Every access that asks a chain comes here or to
// `arrayForWrite` (ReferenceFunctions.hpp), so that the order of the calls, which back-ends observe, has one
// home.
#pragma once

#include <vexa/data/detail/ReferenceImpl.hpp>

#include <cstddef>

namespace vexa::data::detail {

/// The array that a chain indexes into, borrowed, and the position of the element in it.
struct ChainTarget {
    impl::ArrayImpl* array;
    std::size_t index;
};

/// For a read. The chain is asked for the array before the position: finding the position may throw, and a
/// chain of a back-end may first make its array there.
inline ChainTarget targetOf(ReferenceImpl& chain) {
    impl::ArrayImpl* array = chain.getArrayImpl();
    return {array, chain.getLinearIndex()};
}

/// For a write. The write hook runs first, because it may put a copy in the place of the array that the chain
/// led to before.
inline ChainTarget targetForWrite(ReferenceImpl& chain) {
    chain.prepareForWrite();
    return targetOf(chain);
}

} // namespace vexa::data::detail
