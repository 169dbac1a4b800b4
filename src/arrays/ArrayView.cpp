// Extents and strides of views.
#include <foundation/vexadata/ArrayView.hpp>
#include <vexa/data/detail/IndexRules.hpp>

#include <algorithm>

namespace foundation::vexadata::detail {

namespace {

/// Elements between neighbours along each dimension of dense storage.
void setStrides(const std::size_t* extents, std::size_t* strides, std::size_t rank, bool rowMajor) {
    std::size_t stride = 1;
    for (std::size_t k = 0; k < rank; ++k) {
        const std::size_t dimension = rowMajor ? rank - 1 - k : k;
        strides[dimension] = stride;
        stride *= extents[dimension];
    }
}

} // namespace

void describeLayout(const ArrayImpl& array, std::size_t rank, std::size_t* extents, std::size_t* strides) {
    const std::vector<std::size_t>& dims = array.getDimensions();
    if (rank == 1 && vexa::data::detail::isVector(dims)) {
        extents[0] = dims[0] * dims[1];
    } else if (dims.size() > rank) {
        raise<NotEnoughIndicesProvidedException>();
    } else {
        std::fill_n(std::copy(dims.begin(), dims.end(), extents), rank - dims.size(), 1);
    }
    setStrides(extents, strides, rank, array.getMemoryLayout() == vexa::data::MemoryLayout::ROW_MAJOR);
}

} // namespace foundation::vexadata::detail
