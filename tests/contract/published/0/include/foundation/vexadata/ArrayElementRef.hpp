// `ArrayElementRef<isConst>`: what `a[i][j]` of an `Array` or of a cell array gives, to be used at once. One
// level deeper, into the array that such an element holds, leads `held()` (HeldElementRef.hpp). Elements of a
// `TypedArray<T>` have `ArrayElementTypedRef`; an element that is kept is a `Reference<T>` (Reference.hpp).
#pragma once

#include <foundation/vexadata/UntypedElement.hpp>

#include <cstddef>
#include <memory>
#include <utility>

namespace foundation::vexadata {

template <bool isConst>
class HeldElements;

/// What `Array::operator[]` returns: an element of any kind of array, or a partial subscript that needs
/// further indices. Values, texts and records are read and written when the array's kind is exactly theirs,
/// fields reached by name, and array handles are constructed from it and assigned to it when the element
/// holds an array. Validity and indices as for ArrayElementTypedRef.
template <bool isConst>
class ArrayElementRef : public detail::Indexing<ArrayElementRef<isConst>>,
                        public detail::UntypedElement<ArrayElementRef<isConst>, isConst> {
    using Untyped = detail::UntypedElement<ArrayElementRef<isConst>, isConst>;

public:
    /// For `operator[]` of the handles.
    VEXADATA_INLINE explicit ArrayElementRef(detail::ElementPosition position) noexcept
        : position_(std::move(position)) {}
    /// Shares the chain of an element that is known already.
    explicit ArrayElementRef(const std::shared_ptr<detail::ReferenceImpl>& chain) noexcept
        : position_(chain) {}
    ArrayElementRef(const ArrayElementRef&) = default;
    VEXADATA_INLINE ArrayElementRef(ArrayElementRef&& other) noexcept
        : position_(std::move(other.position_)) {}
    VEXADATA_INLINE ~ArrayElementRef() {}

    /// Appends an index. On an element that an iterator gave, which needs none, the index goes into the array
    /// that it holds.
    /// @throws StringIndexMustBeLastException, CantIndexIntoEmptyArrayException,
    /// TooManyIndicesProvidedException; index errors of the array held
    VEXADATA_INLINE ArrayElementRef operator[](std::size_t index) && {
        return position_.isFixed() ? inside(position_, index)
                                   : static_cast<detail::Indexing<ArrayElementRef>&&>(*this)[index];
    }
    ArrayElementRef operator[](std::size_t index) const& {
        return position_.isFixed() ? inside(position_, index)
                                   : static_cast<const detail::Indexing<ArrayElementRef>&>(*this)[index];
    }
    using Untyped::operator[];

    /// The way into the array that the element holds: `cells[i].held()[j]` is its element j.
    HeldElements<isConst> held() const&;
    HeldElements<isConst> held() &&;

    /// Writes the other element's content; never makes this handle refer elsewhere.
    ArrayElementRef& operator=(const ArrayElementRef& other) { return this->copyFrom(other); }
    using Untyped::operator=;

private:
    [[gnu::noinline]] static ArrayElementRef inside(detail::ElementPosition position, std::size_t index) {
        std::shared_ptr<detail::ReferenceImpl> chain = position.chain();
        return ArrayElementRef(detail::createReferenceWithIndex<isConst>(chain, index));
    }

    friend Untyped;
    const detail::ElementPosition& forRead() const noexcept { return position_; }
    const detail::ElementPosition& forWrite() const noexcept { return position_; }
    const detail::ElementPosition& kept() const noexcept { return position_; }
    template <class T>
    VEXADATA_INLINE const T* tryRecognised() const noexcept {
        return position_.template tryRecognised<T>(false);
    }
    template <class T>
    VEXADATA_INLINE T* tryRecognisedForWrite() const noexcept {
        return position_.template tryRecognised<T>(true);
    }

    friend struct detail::Access;
    detail::ElementPosition position_;
};

} // namespace foundation::vexadata
