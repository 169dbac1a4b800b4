// Arrays of another back-end than the one under test.
#pragma once

#include "Backend.hpp"

#include <vexa/data/impl/ObjectImpl.hpp>

namespace vexa::check {

/// An array that the back-end under test cannot know, around one of its own: same contents, other classes.
Owned<ArrayImpl> foreign(Owned<ArrayImpl> array);

/// The same of an object.
Owned<data::impl::ObjectImpl> foreignObject(Owned<data::impl::ObjectImpl> object);

/// A 1-by-1 double array of yet another one, which shares its storage with its copies until `unshare`.
Owned<ArrayImpl> sharingNumbers(double value);

/// The empty array that handles without a value share, one reference for the caller.
Owned<ArrayImpl> emptyArray();

} // namespace vexa::check
