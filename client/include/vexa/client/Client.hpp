// The embedded back-end: arrays in ordinary memory of this process.
#pragma once

#include <vexa/client/Exception.hpp>

namespace vexa::client {

/// Registers the embedded back-end for stand-alone clients. Loading the library has done so already, unless
/// another back-end held the place; calling it again is harmless. Safe from any thread.
/// @return true
/// @throws std::logic_error when another back-end is registered for stand-alone clients
VEXADATA_API bool registerBackEnd();

} // namespace vexa::client
