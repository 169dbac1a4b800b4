// Loading the library of a back-end.
#pragma once

#include "Backend.hpp"

#include <string>

namespace vexa::check {

/// Loads the library into this process, for good, and asks for the factory that it registered.
/// @throws Failure which says why there is none
Owned<ArrayFactoryImpl> loadBackend(const std::string& path);

/// Whether this command and the library that was loaded last were built for the thread sanitizer.
bool underThreadSanitizer();

} // namespace vexa::check
