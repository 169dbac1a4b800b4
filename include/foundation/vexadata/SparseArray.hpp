// Sparse matrices.
#pragma once

#include <foundation/vexadata/Array.hpp>
#include <foundation/vexadata/TypedIterator.hpp>

#include <algorithm>
#include <complex>
#include <cstddef>
#include <memory>
#include <type_traits>
#include <utility>

namespace foundation::vexadata {

/// A two-dimensional array that stores its non-zeros only, column by column; `T` is `bool`, `double` or
/// `std::complex<double>`. Iterators walk the stored values. Members that are not const may give this handle
/// a copy of the array of its own; what is marked `noexcept` ends the process when the back-end fails or
/// memory runs out.
template <class T>
class VEXADATA_API SparseArray : public Array {
    static_assert(detail::sparseTypeOf<T> != ArrayType::UNKNOWN,
                  "T of SparseArray<T> must be bool, double or std::complex<double>");

public:
    using value_type = T;
    /// Iterators over the stored values.
    using iterator = TypedIterator<T>;
    using const_iterator = TypedIterator<const T>;

    /// @throws InvalidArrayTypeException when the array is not sparse with elements `T`; a moved argument is
    /// emptied even then
    SparseArray(const Array& array) : Array(array) { requireType(*this); }
    SparseArray(Array&& array) : Array(std::move(array)) { requireType(*this); }
    /// The array that an element holds.
    /// @throws TypeMismatchException when it is not sparse with elements `T`; index errors
    template <class Ref, std::enable_if_t<detail::isArrayReference<Ref>, int> = 0>
    SparseArray(const Ref& element) : SparseArray(detail::heldAs<SparseArray<T>>(element)) {}
    /// Adopts the one reference that `impl` carries; its kind is not checked.
    explicit SparseArray(vexa::data::impl::ArrayImpl* impl) : Array(impl) {}
    SparseArray(const SparseArray&) noexcept = default;
    SparseArray(SparseArray&&) noexcept = default;
    SparseArray& operator=(const SparseArray&) noexcept = default;
    SparseArray& operator=(SparseArray&&) noexcept = default;
    ~SparseArray() override {} // as in TypedArray

    /// @throws InvalidArrayTypeException when the array is not sparse with elements `T`; neither side has
    /// changed then
    SparseArray& operator=(const Array& array) {
        requireType(array);
        Array::operator=(array);
        return *this;
    }
    SparseArray& operator=(Array&& array) {
        requireType(array);
        Array::operator=(std::move(array));
        return *this;
    }
    template <class Ref, std::enable_if_t<detail::isArrayReference<Ref>, int> = 0>
    SparseArray& operator=(const Ref& element) {
        return *this = SparseArray(element);
    }

    /// The stored values for writing; the array is made private first. A value set to zero stays stored.
    iterator begin() noexcept {
        unshare<ReleaseForBegin>();
        return iterator(this->impl_->beginIterator(nullptr, true));
    }
    iterator end() noexcept {
        unshare<ReleaseForEnd>();
        return iterator(this->impl_->endIterator(nullptr, true));
    }
    /// The stored values, for reading.
    const_iterator cbegin() const noexcept {
        return const_iterator(this->impl_->beginIterator(nullptr, false));
    }
    const_iterator cend() const noexcept { return const_iterator(this->impl_->endIterator(nullptr, false)); }
    const_iterator begin() const noexcept { return cbegin(); }
    const_iterator end() const noexcept { return cend(); }

    /// Zeros that were stored count too.
    std::size_t getNumberOfNonZeroElements() const { return this->impl_->getNumberOfNonZeroElements(); }
    /// Row of each stored value. Valid until the array is changed or released.
    const std::size_t* getIr() const { return this->impl_->getIr(); }
    /// Where each column begins among the stored values, and behind the last where it ends. Valid as `getIr`.
    const std::size_t* getJc() const { return this->impl_->getJc(); }
    /// The two dimensions.
    std::size_t getRows() const { return this->impl_->getRows(); }
    std::size_t getCols() const { return this->impl_->getCols(); }

    /// The element at a row and a column, counted from 0: what is stored there, or zero. Looks through the
    /// values stored in the column; to walk many, use the iterators.
    /// @throws EArrayIndexOutOfRange
    template <class Row, class Column>
    T operator()(Row row, Column column) const {
        const auto wanted = static_cast<std::size_t>(row);
        const auto j = static_cast<std::size_t>(column);
        if (wanted >= getRows() || j >= getCols()) {
            detail::raise<EArrayIndexOutOfRange>();
        }
        const std::size_t* const rows = getIr();
        const std::size_t* const last = rows + getJc()[j + 1];
        const std::size_t* const found = std::find(rows + getJc()[j], last, wanted);
        return found == last ? T() : static_cast<T>(*(cbegin() + (found - rows)));
    }

    /// Row and column, counted from 0, of the stored value at which the iterator stands, known by its
    /// address. The iterator must come from this array as it is: this form makes the array private first, and
    /// a copy made then has other values.
    std::pair<std::size_t, std::size_t> getIndex(const iterator& it) noexcept {
        return this->impl_->getIndex(ordinal(it, begin()));
    }
    std::pair<std::size_t, std::size_t> getIndex(const const_iterator& it) const noexcept {
        return this->impl_->getIndex(ordinal(it, begin()));
    }

private:
    // Copies made by `begin` and by `end` are released through types of their own, which nobody else needs to
    // see.
    struct __attribute__((visibility("hidden"))) ReleaseForBegin : detail::ReleaseReference {};
    struct __attribute__((visibility("hidden"))) ReleaseForEnd : detail::ReleaseReference {};

    template <class Release>
    [[gnu::visibility("hidden")]] void unshare() noexcept {
        if (!detail::Access::isPrivate(this->impl_)) {
            this->impl_ = std::shared_ptr<vexa::data::impl::ArrayImpl>(this->impl_->sharedCopy(), Release());
        }
    }
    /// How many values are stored before the one at `it`.
    template <class U>
    static std::size_t ordinal(const TypedIterator<U>& it, const TypedIterator<U>& first) {
        return static_cast<std::size_t>(it.operator->() - first.operator->());
    }
    static ArrayType typeOf(const Array& array) noexcept { return array.getType(); }
    static void requireType(const Array& array) {
        if (typeOf(array) != detail::sparseTypeOf<T>) {
            detail::raise<InvalidArrayTypeException>();
        }
    }
};

extern template class VEXADATA_API SparseArray<bool>;
extern template class VEXADATA_API SparseArray<double>;
extern template class VEXADATA_API SparseArray<std::complex<double>>;

} // namespace foundation::vexadata
