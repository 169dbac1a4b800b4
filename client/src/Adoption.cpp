// Arguments of adoption are tested here; what the arrays do stands in DenseArrayImpl and BorrowedArray.
#include "BorrowedArray.hpp"
#include "Dimensions.hpp"
#include "Primitive.hpp"

#include <foundation/vexadata/detail/TypeInformation.hpp>
#include <vexa/client/Adoption.hpp>
#include <vexa/client/Exception.hpp>

#include <cstdint>

namespace vexa::client {

namespace fv = foundation::vexadata;
using data::MemoryLayout;
using data::impl::DenseArrayImpl;

namespace {

/// Number of elements of dimensions, of which a single entry n has become n by 1, and none 1 by 1.
/// @throws NumberOfElementsExceedsMaximumException
std::size_t complete(Dimensions& dims) {
    if (dims.empty()) {
        dims.assign(2, 1);
    }
    if (dims.size() == 1) {
        dims.push_back(1);
    }
    std::size_t product = 1;
    for (const std::size_t extent : dims) {
        if (__builtin_mul_overflow(product, extent, &product)) {
            throw fv::NumberOfElementsExceedsMaximumException();
        }
    }
    return product;
}

/// @throws InvalidBufferException
template <class T>
void requireStorage(const void* data, std::size_t count, MemoryLayout layout) {
    const bool known = layout == MemoryLayout::COLUMN_MAJOR || layout == MemoryLayout::ROW_MAJOR;
    const bool aligned = reinterpret_cast<std::uintptr_t>(data) % alignof(T) == 0;
    if (!known || !aligned || (data == nullptr && count != 0) || count > PTRDIFF_MAX / sizeof(T)) {
        throw InvalidBufferException();
    }
}

/// Makes an array by `make(tag)` after all tests.
template <class Make>
fv::Array adopted(Dimensions& dims, fv::ArrayType type, const void* data, MemoryLayout layout, Make make) {
    const std::size_t count = complete(dims);
    return fv::Array(
        forPrimitive<fv::MustBePrimitiveTypeException>(type, [&](auto tag) -> data::impl::ArrayImpl* {
            requireStorage<typename decltype(tag)::type>(data, count, layout);
            return make(tag);
        }));
}

} // namespace

fv::Array adopt(std::vector<std::size_t> dims, fv::ArrayType type, void* data, std::shared_ptr<void> owner,
                MemoryLayout layout) {
    return adopted(dims, type, data, layout, [&](auto tag) {
        using T = typename decltype(tag)::type;
        return DenseArrayImpl<T>::adopt(std::move(dims), static_cast<T*>(data), std::move(owner), layout);
    });
}

fv::Array adoptReadOnly(std::vector<std::size_t> dims, fv::ArrayType type, const void* data,
                        std::shared_ptr<const void> owner, MemoryLayout layout) {
    return adopted(dims, type, data, layout, [&](auto tag) {
        using T = typename decltype(tag)::type;
        return new BorrowedArray<T>(std::move(dims), static_cast<const T*>(data), std::move(owner), layout);
    });
}

std::shared_ptr<void> detail::ownerOf(const fv::Array& array) {
    const auto& impl = fv::detail::Access::impl(array);
    if (!fv::detail::Access::isPrivate(impl)) {
        return nullptr;
    }
    return fv::detail::withKind(array.getType(), [&](auto tag) -> std::shared_ptr<void> {
        if constexpr (tag.isPrimitive) {
            using Dense = DenseArrayImpl<typename decltype(tag)::type>;
            const auto* dense = fv::detail::dynamicCast<const Dense>(impl.get());
            return dense == nullptr ? nullptr : dense->owner();
        } else {
            return nullptr;
        }
    });
}

void detail::requireCount(const std::vector<std::size_t>& dims, std::size_t count) {
    Dimensions completed = dims;
    if (complete(completed) != count) {
        throw InvalidBufferException();
    }
}

} // namespace vexa::client
