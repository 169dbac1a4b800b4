// An array of a back-end of a test's own, with as little in it as the interface allows.
#pragma once

#include <vexa/data/impl/ArrayImpl.hpp>

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace vexa::testing {

/// A row of `length` elements of the interface `Interface`: its shape, and nothing inside. Operations that
/// make an object give null, `unshare` does nothing, no array is equal to it. What `Interface` leaves
/// abstract beyond that is up to the test.
template <class Interface, foundation::vexadata::ArrayType type, std::size_t length>
class BareArray : public Interface {
    using ArrayImpl = vexa::data::impl::ArrayImpl;

public:
    ArrayImpl* sharedCopy() const override { return nullptr; }
    vexa::data::detail::IteratorImpl* beginIterator(void*, bool) override { return nullptr; }
    vexa::data::detail::IteratorImpl* endIterator(void*, bool) override { return nullptr; }
    foundation::vexadata::ArrayType getType() const override { return type; }
    vexa::data::MemoryLayout getMemoryLayout() const override {
        return vexa::data::MemoryLayout::COLUMN_MAJOR;
    }
    vexa::data::detail::ReferenceImpl* createElementReference(std::size_t, const std::string&,
                                                              bool) override {
        return nullptr;
    }
    const std::vector<std::size_t>& getDimensions() const override { return dimensions_; }
    std::size_t getNumberOfElements() const override { return length; }
    bool isEmpty() const override { return length == 0; }
    std::uint64_t getArrayID() const override { return 1; }
    void unshare() override {}
    bool isEqual(const ArrayImpl*) const override { return false; }

private:
    std::vector<std::size_t> dimensions_{1, length};
};

} // namespace vexa::testing
