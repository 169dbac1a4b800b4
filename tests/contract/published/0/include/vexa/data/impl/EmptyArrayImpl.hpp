// The array without content, behind default-constructed handles.
#pragma once

#include <vexa/data/impl/ArrayImpl.hpp>

#include <memory>

namespace vexa::data::impl {

/// Type UNKNOWN, dimensions 0 by 0, identity 0. Operations that no well-formed caller asks of it rethrow the
/// exception in flight, deliberately: without one they end the process.
class VEXADATA_API EmptyArrayImpl final : public ArrayImpl {
public:
    EmptyArrayImpl() noexcept;
    ~EmptyArrayImpl() override;

    /// The one instance that default-constructed handles share. Lives until the process ends, whatever the
    /// order of static destruction.
    static const std::shared_ptr<ArrayImpl>& processWide() noexcept;

    ArrayImpl* sharedCopy() const override;
    detail::IteratorImpl* beginIterator(void* unused, bool writable) override;
    detail::IteratorImpl* endIterator(void* unused, bool writable) override;
    ArrayType getType() const override;
    MemoryLayout getMemoryLayout() const override;
    detail::ReferenceImpl* createElementReference(std::size_t index, const std::string& fieldName,
                                                  bool forWrite) override;
    const std::vector<std::size_t>& getDimensions() const override;
    std::size_t getNumberOfElements() const override;
    const std::size_t* getJc() const override;
    const std::size_t* getIr() const override;
    std::size_t getRows() const override;
    std::size_t getCols() const override;
    bool isEmpty() const override;
    std::uint64_t getArrayID() const override;
    void unshare() override;
    bool isEqual(const ArrayImpl* other) const override;
};

} // namespace vexa::data::impl
