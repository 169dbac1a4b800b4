// The embedded back-end: arrays in ordinary memory of this process.
#pragma once

#include <foundation/vexadata/Exception.hpp>

namespace vexa::client {

/// Registers the embedded back-end for stand-alone clients. Loading the library has done so already, unless another
/// back-end held the place; calling it again is harmless. Safe from any thread.
/// @return true
/// @throws std::logic_error when another back-end is registered for stand-alone clients
VEXADATA_API bool registerBackEnd();

/// A buffer was handed over that cannot be the storage of an array: there is none although the array has elements, or its
/// memory layout is neither column- nor row-major.
class VEXADATA_API InvalidBufferException final : public foundation::vexadata::Exception {
public:
    const char* what() const noexcept override;
    ~InvalidBufferException() override;
    InvalidBufferException() = default;
    InvalidBufferException(const InvalidBufferException&) = default;
    InvalidBufferException& operator=(const InvalidBufferException&) = default;
};

} // namespace vexa::client
