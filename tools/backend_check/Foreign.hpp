// Arrays of another back-end than the one under test.
#pragma once

#include "Backend.hpp"

namespace vexa::check {

/// An array that the back-end under test cannot know, around one of its own: same contents, other classes.
Owned<ArrayImpl> foreign(Owned<ArrayImpl> array);

/// The empty array that handles without a value share, one reference for the caller.
Owned<ArrayImpl> emptyArray();

} // namespace vexa::check
