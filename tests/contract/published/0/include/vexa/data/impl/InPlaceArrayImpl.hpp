// What an array of cells, strings or records derives from when handles are to reach its elements in place.
#pragma once

#include <vexa/data/detail/InPlace.hpp>

#include <cstddef>
#include <vector>

namespace vexa::data::impl {

/// The interface of the kind of array, followed by the place of its elements, which the array keeps up to
/// date: nothing in it may be true of the array a moment ago only. See `detail::recognise`.
template <class Interface, class T>
class InPlaceArrayImpl : public Interface {
public:
    /// Where handles find the elements.
    const data::detail::InPlace<T>& inPlace() const noexcept { return inPlace_; }

protected:
    InPlaceArrayImpl() noexcept = default;
    /// A copy has other elements.
    InPlaceArrayImpl(const InPlaceArrayImpl& other) noexcept : Interface(other) {}
    ~InPlaceArrayImpl() override = default;

    /// Column-major elements; only those of a matrix that has some are reached in place.
    void showElements(const std::vector<std::size_t>& dimensions, T* data) noexcept {
        showPositions(dimensions);
        inPlace_.data = inPlace_.rows == 0 ? nullptr : data;
    }
    /// The same where the elements themselves are the back-end's own.
    void showPositions(const std::vector<std::size_t>& dimensions) noexcept {
        if (dimensions.size() == 2 && dimensions[0] != 0 && dimensions[1] != 0) {
            inPlace_.rows = dimensions[0];
            inPlace_.columns = dimensions[1];
        }
    }

private:
    data::detail::InPlace<T> inPlace_;
};

} // namespace vexa::data::impl
