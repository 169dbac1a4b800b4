// Arrays as tensors of DLPack, in which array libraries of one process hand each other their storage, and such
// tensors as arrays. Nothing of the library includes this header; programs that do link vexadata::client.
//
// The structures follow the published standard, version 1.0 (https://dmlc.github.io/dlpack/latest/). All
// functions are templates that only name members, so that they take the structures of the standard's own
// header as well: `toDLPack<::DLManagedTensor>(array)`.
//
// A tensor is released by its `deleter`, on any thread.
#pragma once

#include <foundation/vexadata/ArrayFactory.hpp>
#include <foundation/vexadata/Print.hpp>
#include <foundation/vexadata/detail/ByKind.hpp>
#include <vexa/client/Adoption.hpp>

#include <algorithm>
#include <complex>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <iterator>
#include <limits>
#include <memory>
#include <stdexcept>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

namespace vexa::interop {

namespace fv = foundation::vexadata;

/// The structures, by the names that the standard gives them and their members.
namespace dlpack {

/// Which memory: `device_type` 1 is the CPU's.
struct DLDevice {
    std::int32_t device_type;
    std::int32_t device_id;
};

/// Elements of `lanes` numbers of `bits` bits each. Codes: 0 signed, 1 unsigned integer, 2 floating point,
/// 5 complex (`bits` for both parts), 6 logical.
struct DLDataType {
    std::uint8_t code;
    std::uint8_t bits;
    std::uint16_t lanes;
};

/// The first element lies `byte_offset` behind `data`. Strides count elements; null means row by row.
struct DLTensor {
    void* data;
    DLDevice device;
    std::int32_t ndim;
    DLDataType dtype;
    std::int64_t* shape;
    std::int64_t* strides;
    std::uint64_t byte_offset;
};

struct DLManagedTensor {
    DLTensor dl_tensor;
    void* manager_ctx;
    void (*deleter)(DLManagedTensor* self);
};

struct DLPackVersion {
    std::uint32_t major;
    std::uint32_t minor;
};

/// The form since version 1.0. Bit 0 of `flags`: must not be written.
struct DLManagedTensorVersioned {
    DLPackVersion version;
    void* manager_ctx;
    void (*deleter)(DLManagedTensorVersioned* self);
    std::uint64_t flags;
    DLTensor dl_tensor;
};

static_assert(sizeof(DLTensor) == 48 && offsetof(DLTensor, dtype) == 20 && offsetof(DLTensor, shape) == 24);
static_assert(sizeof(DLManagedTensor) == 64 && offsetof(DLManagedTensor, manager_ctx) == 48);
static_assert(sizeof(DLManagedTensorVersioned) == 80 && offsetof(DLManagedTensorVersioned, flags) == 24 &&
              offsetof(DLManagedTensorVersioned, dl_tensor) == 32);

} // namespace dlpack

namespace detail {

inline constexpr std::uint64_t dlpackReadOnly = 1;
inline constexpr std::int32_t dlpackCpu = 1;

/// Whether a structure has a version and flags.
template <class Managed, class = void>
inline constexpr bool hasDLPackFlags = false;
template <class Managed>
inline constexpr bool hasDLPackFlags<Managed, std::void_t<decltype(Managed::flags)>> = true;

/// The standard's code for elements `T`; 255 when it has none.
template <class T>
constexpr std::uint8_t dlpackCode() {
    if constexpr (std::is_same_v<T, bool>) {
        return 6;
    } else if constexpr (std::is_same_v<T, std::complex<float>> || std::is_same_v<T, std::complex<double>>) {
        return 5;
    } else if constexpr (std::is_floating_point_v<T>) {
        return 2;
    } else if constexpr (std::is_integral_v<T> && !std::is_same_v<T, char16_t>) {
        return std::is_signed_v<T> ? 0 : 1;
    } else {
        return 255;
    }
}

/// @throws std::invalid_argument for a kind that has no tensors
inline dlpack::DLDataType dlpackTypeOf(fv::ArrayType type) {
    dlpack::DLDataType found{255, 0, 1};
    fv::detail::withPrimitive(type, [&](auto tag) {
        using T = typename decltype(tag)::type;
        found = {dlpackCode<T>(), static_cast<std::uint8_t>(8 * sizeof(T)), 1};
    });
    if (found.code == 255) {
        throw std::invalid_argument(std::string("DLPack: no tensor has elements of kind ") +
                                    fv::kindName(type));
    }
    return found;
}

/// @throws std::invalid_argument for elements that no array has
inline fv::ArrayType arrayTypeOf(const dlpack::DLDataType& type) {
    fv::ArrayType found = fv::ArrayType::UNKNOWN;
    fv::detail::forEachPrimitive([&](auto tag) {
        using T = typename decltype(tag)::type;
        if (type.code == dlpackCode<T>() && type.bits == 8 * sizeof(T)) {
            found = tag.arrayType;
        }
    });
    if (found == fv::ArrayType::UNKNOWN || type.lanes != 1 || type.code == 255) {
        static constexpr const char* names[] = {"int",    "uint",    "float", "handle",
                                                "bfloat", "complex", "bool"};
        throw std::invalid_argument(
            "DLPack: no array has elements of type " +
            (type.code < std::size(names) ? names[type.code] : "code " + std::to_string(type.code) + ", ") +
            std::to_string(type.bits) + (type.lanes == 1 ? "" : " x " + std::to_string(type.lanes)));
    }
    return found;
}

/// What a tensor holds on to: itself, its extents and strides, and the array.
template <class Managed>
struct ExportedTensor {
    Managed managed{};
    fv::Array array;
    std::vector<std::int64_t> extents; // and behind them the strides
};

/// Extents, and behind them strides, which say for an array without elements nothing.
/// @throws std::invalid_argument for an extent beyond 63 bits, which only arrays without elements have
inline std::vector<std::int64_t> extentsAndStrides(const fv::Array& array) {
    const std::vector<std::size_t>& dims = fv::detail::Access::impl(array)->getDimensions();
    const std::size_t rank = dims.size();
    std::vector<std::int64_t> result(2 * rank, 1);
    for (std::size_t k = 0; k < rank; ++k) {
        if (dims[k] > static_cast<std::size_t>(std::numeric_limits<std::int64_t>::max())) {
            throw std::invalid_argument("DLPack: an extent of " + std::to_string(dims[k]) +
                                        " is beyond the standard's type");
        }
        result[k] = static_cast<std::int64_t>(dims[k]);
    }
    if (!array.isEmpty()) {
        const bool byRow = array.getMemoryLayout() == data::MemoryLayout::ROW_MAJOR;
        std::int64_t stride = 1;
        for (std::size_t k = 0; k < rank; ++k) {
            const std::size_t dimension = byRow ? rank - 1 - k : k;
            result[rank + dimension] = stride;
            stride *= result[dimension];
        }
    }
    return result;
}

template <class Managed>
Managed* exportTensor(fv::Array array, bool readOnly) {
    const dlpack::DLDataType type = dlpackTypeOf(array.getType());
    auto made = std::make_unique<ExportedTensor<Managed>>();
    made->extents = extentsAndStrides(array);
    const auto rank = made->extents.size() / 2;
    const void* elements = fv::detail::Access::impl(array)->getUntypedDataPtr();
    if (elements == nullptr && !array.isEmpty()) {
        throw std::invalid_argument("DLPack: the back-end of the array lends no storage");
    }
    made->array = std::move(array);

    Managed& managed = made->managed;
    auto& tensor = managed.dl_tensor;
    tensor.data = const_cast<void*>(elements); // the structure knows no read-only data
    tensor.device.device_type = static_cast<decltype(tensor.device.device_type)>(dlpackCpu);
    tensor.ndim = static_cast<std::int32_t>(rank);
    tensor.dtype.code = type.code;
    tensor.dtype.bits = type.bits;
    tensor.dtype.lanes = type.lanes;
    tensor.shape = made->extents.data();
    tensor.strides = made->extents.data() + rank;
    if constexpr (hasDLPackFlags<Managed>) {
        managed.version.major = 1;
        managed.flags = readOnly ? dlpackReadOnly : 0;
    }
    managed.deleter = [](Managed* self) { delete static_cast<ExportedTensor<Managed>*>(self->manager_ctx); };
    managed.manager_ctx = made.get();
    return &made.release()->managed;
}

/// Owns a tensor that was taken over, from the moment at which nothing can fail any more.
template <class Managed>
struct ImportedTensor {
    Managed* managed = nullptr;

    ImportedTensor() = default;
    ImportedTensor(const ImportedTensor&) = delete;
    ImportedTensor& operator=(const ImportedTensor&) = delete;
    ~ImportedTensor() {
        if (managed != nullptr && managed->deleter != nullptr) {
            managed->deleter(managed);
        }
    }
};

/// What a tensor says, tested.
struct TensorContents {
    fv::ArrayType type = fv::ArrayType::UNKNOWN;
    std::size_t size = 0;      // of an element, in bytes
    std::size_t alignment = 0; // likewise
    std::size_t count = 0;
    std::vector<std::size_t> dims;
    std::vector<std::int64_t> strides;
    unsigned char* first = nullptr; // null without elements
};

/// The number of elements.
/// @throws std::invalid_argument for extents that no memory holds
inline std::size_t tensorCount(const dlpack::DLTensor& tensor, std::size_t size) {
    if (tensor.ndim < 0) {
        throw std::invalid_argument("DLPack: a tensor of " + std::to_string(tensor.ndim) + " dimensions");
    }
    if (tensor.ndim > 0 && tensor.shape == nullptr) {
        throw std::invalid_argument("DLPack: a tensor of " + std::to_string(tensor.ndim) +
                                    " dimensions without a shape");
    }
    std::int64_t bytes = static_cast<std::int64_t>(size);
    for (std::int32_t k = 0; k < tensor.ndim; ++k) {
        if (tensor.shape[k] < 0) {
            throw std::invalid_argument("DLPack: dimension " + std::to_string(k) + " has an extent of " +
                                        std::to_string(tensor.shape[k]));
        }
        if (__builtin_mul_overflow(bytes, tensor.shape[k], &bytes)) {
            throw std::invalid_argument("DLPack: extents of " + std::to_string(tensor.shape[k]) +
                                        " and before are beyond all memory");
        }
    }
    return static_cast<std::size_t>(bytes) / size;
}

/// @throws std::invalid_argument when an element would lie where no address leads
inline void requireReach(const TensorContents& contents) {
    std::int64_t low = 0;
    std::int64_t high = 0;
    for (std::size_t k = 0; k < contents.dims.size(); ++k) {
        std::int64_t step = 0;
        const bool outside =
            __builtin_mul_overflow(contents.strides[k], static_cast<std::int64_t>(contents.size), &step) ||
            __builtin_mul_overflow(step, static_cast<std::int64_t>(contents.dims[k] - 1), &step) ||
            __builtin_add_overflow(step < 0 ? low : high, step, step < 0 ? &low : &high);
        if (outside) {
            throw std::invalid_argument("DLPack: a stride of " + std::to_string(contents.strides[k]) +
                                        " in dimension " + std::to_string(k) + " is beyond all memory");
        }
    }
}

/// @throws std::invalid_argument that says what no array can be made of
inline TensorContents contentsOf(const dlpack::DLTensor& tensor) {
    TensorContents contents;
    contents.type = arrayTypeOf(tensor.dtype);
    contents.size = tensor.dtype.bits / 8U;
    contents.alignment =
        tensor.dtype.code == dlpackCode<std::complex<double>>() ? contents.size / 2 : contents.size;
    if (tensor.device.device_type != dlpackCpu) {
        throw std::invalid_argument("DLPack: the elements lie on a device of type " +
                                    std::to_string(tensor.device.device_type) + ", not in the CPU's memory");
    }
    contents.count = tensorCount(tensor, contents.size);
    const auto rank = static_cast<std::size_t>(tensor.ndim);
    contents.dims.assign(tensor.shape, tensor.shape + rank);
    contents.strides.resize(rank);
    if (contents.count == 0) {
        return contents;
    }
    if (tensor.strides != nullptr) {
        std::copy_n(tensor.strides, rank, contents.strides.begin());
        requireReach(contents);
    } else {
        std::int64_t stride = 1;
        for (std::size_t k = rank; k-- > 0;) {
            contents.strides[k] = stride;
            stride *= tensor.shape[k];
        }
    }
    if (tensor.data == nullptr) {
        throw std::invalid_argument("DLPack: a tensor of " + std::to_string(contents.count) +
                                    " elements without data");
    }
    if (tensor.byte_offset > static_cast<std::uint64_t>(std::numeric_limits<std::ptrdiff_t>::max())) {
        throw std::invalid_argument("DLPack: an offset of " + std::to_string(tensor.byte_offset) + " bytes");
    }
    contents.first = static_cast<unsigned char*>(tensor.data) + tensor.byte_offset;
    if (rank == 0) {
        contents.dims = {1, 1};
        contents.strides = {1, 1};
    }
    return contents;
}

/// Whether the elements lie one behind the other, the first index fastest or, with `byRow`, the last.
inline bool liesInOrder(const TensorContents& contents, bool byRow) {
    const std::size_t rank = contents.dims.size();
    std::int64_t expected = 1;
    for (std::size_t k = 0; k < rank && contents.count != 0; ++k) {
        const std::size_t dimension = byRow ? rank - 1 - k : k;
        const auto extent = static_cast<std::int64_t>(contents.dims[dimension]);
        if (extent != 1 && contents.strides[dimension] != expected) {
            return false;
        }
        expected *= extent;
    }
    return true;
}

/// Copies elements of `size` bytes to where they lie column by column.
template <std::size_t size>
void gather(const TensorContents& contents, unsigned char* to) {
    std::vector<std::size_t> indices(contents.dims.size(), 0);
    std::ptrdiff_t place = 0;
    for (std::size_t count = 0; count < contents.count; ++count, to += size) {
        std::memcpy(to, contents.first + place * static_cast<std::ptrdiff_t>(size), size);
        for (std::size_t k = 0; k < indices.size(); ++k) {
            place += contents.strides[k];
            if (++indices[k] < contents.dims[k]) {
                break;
            }
            place -= contents.strides[k] * static_cast<std::int64_t>(indices[k]);
            indices[k] = 0;
        }
    }
}

inline fv::Array copyOf(TensorContents contents) {
    const fv::ArrayFactory factory;
    auto buffer = factory.createBuffer(contents.type, contents.count);
    auto* const to = static_cast<unsigned char*>(buffer.get());
    switch (contents.size) {
    case 1:
        gather<1>(contents, to);
        break;
    case 2:
        gather<2>(contents, to);
        break;
    case 4:
        gather<4>(contents, to);
        break;
    case 8:
        gather<8>(contents, to);
        break;
    default:
        gather<16>(contents, to);
    }
    return factory.createArrayFromBuffer(std::move(contents.dims), contents.type, std::move(buffer));
}

/// Whether the elements can be read where they lie.
inline bool isAligned(const TensorContents& contents) {
    return reinterpret_cast<std::uintptr_t>(contents.first) % contents.alignment == 0;
}

} // namespace detail

/// A logical, real or complex array as a tensor that shares its elements, column-major or row-major as they
/// lie, with strides always. The caller owns the tensor until a consumer takes it over, and whoever owns it
/// calls its `deleter` once; it holds a handle of the array, so that later writes through other handles leave
/// it as it is.
///
/// Nobody must write through the tensor: such writes would show in every handle that shares the array. A
/// `DLManagedTensorVersioned` says so by its flag. A `DLManagedTensor` has none: consumers then either take all
/// tensors as read-only, as NumPy 1 does, or none; for these there is `toWritableDLPack`.
/// @throws std::invalid_argument for other kinds; std::bad_alloc
template <class Managed = dlpack::DLManagedTensorVersioned>
Managed* toDLPack(const fv::Array& array) {
    return detail::exportTensor<Managed>(array, true);
}

/// A tensor for a consumer that writes: the array becomes the tensor's own, by a copy when other handles
/// share it. Hand it over with `std::move` to save that copy.
/// @throws std::invalid_argument for other kinds; std::bad_alloc
template <class Managed = dlpack::DLManagedTensorVersioned>
Managed* toWritableDLPack(fv::Array array) {
    detail::dlpackTypeOf(array.getType()); // before anything is copied
    fv::detail::Access::unshare(array);
    fv::detail::Access::impl(array)->unshare();
    return detail::exportTensor<Managed>(std::move(array), false);
}

/// A tensor as an array. Takes the tensor over: it is released with the last handle that shares its storage,
/// or at once when the elements were copied. No dimension gives 1 by 1, one gives n by 1.
///
/// Elements that lie column by column or row by row are shared. Writes through the array then go to the
/// producer's memory, unless the flag of a `DLManagedTensorVersioned` says that it must not be written: the
/// first write then gives the array storage of its own. Elements with other strides, or not aligned, are
/// copied. Logical elements must be bytes of 0 and 1; nobody looks.
///
/// @throws std::invalid_argument, saying what: null, another major version, a device that is not the CPU,
/// elements that no array has, extents or strides that no memory holds, missing data. std::bad_alloc. Whatever
/// is thrown, the tensor is still the caller's, and has not been released.
template <class Managed>
fv::Array fromDLPack(Managed* managed) {
    if (managed == nullptr) {
        throw std::invalid_argument("DLPack: no tensor");
    }
    bool readOnly = false;
    if constexpr (detail::hasDLPackFlags<Managed>) {
        if (managed->version.major != 1) {
            throw std::invalid_argument("DLPack: a tensor of version " +
                                        std::to_string(managed->version.major) + ", expected 1");
        }
        readOnly = (managed->flags & detail::dlpackReadOnly) != 0;
    }
    const auto& given = managed->dl_tensor;
    detail::TensorContents contents =
        detail::contentsOf({given.data,
                            {static_cast<std::int32_t>(given.device.device_type), given.device.device_id},
                            given.ndim,
                            {given.dtype.code, given.dtype.bits, given.dtype.lanes},
                            given.shape,
                            given.strides,
                            given.byte_offset});

    const auto owner = std::make_shared<detail::ImportedTensor<Managed>>();
    const bool byColumn = detail::liesInOrder(contents, false);
    if ((!byColumn && !detail::liesInOrder(contents, true)) || !detail::isAligned(contents)) {
        fv::Array copy = detail::copyOf(std::move(contents));
        owner->managed = managed;
        return copy;
    }
    const auto layout = byColumn ? data::MemoryLayout::COLUMN_MAJOR : data::MemoryLayout::ROW_MAJOR;
    fv::Array array =
        readOnly
            ? client::adoptReadOnly(std::move(contents.dims), contents.type, contents.first, owner, layout)
            : client::adopt(std::move(contents.dims), contents.type, contents.first, owner, layout);
    owner->managed = managed;
    return array;
}

} // namespace vexa::interop
