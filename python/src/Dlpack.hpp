// The two structures of DLPack, an open interface for tensors in memory, in its forms with and without version
// (https://dmlc.github.io/dlpack/latest/c_api.html). Layout and numbers are those of version 1.0.
#pragma once

#include <cstdint>

namespace vexa::python::dlpack {

struct Version {
    std::uint32_t major;
    std::uint32_t minor;
};

struct Device {
    std::int32_t type;
    std::int32_t id;
};
inline constexpr std::int32_t cpu = 1;

struct DataType {
    std::uint8_t code;
    std::uint8_t bits;
    std::uint16_t lanes;
};
enum Code : std::uint8_t { signedInteger = 0, unsignedInteger = 1, real = 2, complex = 5, logical = 6 };

struct Tensor {
    void* data;
    Device device;
    std::int32_t dimensions;
    DataType type;
    std::int64_t* shape;
    std::int64_t* strides; ///< in elements; null for the order of C
    std::uint64_t byteOffset;
};

/// Without a version: the consumer may write, and nobody can tell it otherwise.
struct Managed {
    Tensor tensor;
    void* context;
    void (*deleter)(Managed*);
};

struct ManagedVersioned {
    Version version;
    void* context;
    void (*deleter)(ManagedVersioned*);
    std::uint64_t flags;
    Tensor tensor;
};
inline constexpr std::uint64_t readOnly = 1;
inline constexpr std::uint64_t isCopied = 2;

inline constexpr const char* capsuleName = "dltensor";
inline constexpr const char* versionedName = "dltensor_versioned";
inline constexpr const char* usedName = "used_dltensor";
inline constexpr const char* usedVersionedName = "used_dltensor_versioned";

} // namespace vexa::python::dlpack
