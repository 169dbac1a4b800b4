// Index chains: the objects behind every element reference. Binary contract: the members in this order, and
// the slot of each virtual operation; the destructor has slots 0 and 1.
#pragma once

#include <foundation/vexadata/ArrayType.hpp>
#include <foundation/vexadata/Forward.hpp>
#include <vexa/data/detail/IndexList.hpp>
#include <vexa/data/detail/RefCounted.hpp>

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace vexa::data::detail {

/// Remembers an array, the indices given so far, at most one field name, and, once computed, the position of
/// the element meant. The array is not counted: a chain is valid while its array lives, and holding it never
/// makes the array look shared. Not synchronised: even reading fills caches.
class VEXADATA_API ReferenceImpl : public RefCounted {
public:
    ~ReferenceImpl() override;

    /// Slot 2. The array indexed into; borrowed.
    virtual impl::ArrayImpl* getArrayImpl() const = 0;

    /// Slot 3. The array that the element holds (content of a cell, value of a field), borrowed from the
    /// cached element reference, or null when the element holds none. The reference is made at the first call
    /// with the flag of that call; a later call with `forWrite` true runs its `prepareForWrite`.
    /// @throws what `createReference` throws
    virtual impl::ArrayImpl* getElementArray(bool forWrite);

    /// Slot 4. Asks the array for a reference object to the element; an empty pointer when it has none.
    /// `forChain` tells a back-end that the element's array will be handed out; the base does not use it.
    /// @throws what `getLinearIndex` throws; errors of the array
    virtual std::shared_ptr<ReferenceImpl> createReference(bool forWrite, bool forChain);

    /// Slot 5. Run before every write through the chain. The base does nothing.
    virtual void prepareForWrite();

    /// Slot 6. As `getElementArray(false)`, through a second cache, for handing the array out as a
    /// value.
    virtual impl::ArrayImpl* getElementArrayForCopy();

    /// Slot 7. Position of the element, computed and checked at the first call; later calls, and indices
    /// added after it, do not move it. `unshare` is for back-ends; the base does not use it.
    /// @throws NotEnoughIndicesProvidedException, EArrayIndexOutOfRange
    virtual std::uint64_t getLinearIndex(bool unshare = false);

    /// Slot 8. Stores an array (borrowed: the receiver adds its own reference) into the element.
    /// @throws CantAssignArrayToThisArrayException from arrays that cannot hold arrays; index errors
    virtual void setArray(impl::ArrayImpl* array);

    /// Slot 9. Text of the element.
    virtual std::string getString();

    /// Slot 10. Sets the element from text.
    virtual void setString(std::string value);

    /// Slot 11. An element write of two machine words, whose meaning the array defines.
    virtual void setWords(std::uint64_t first, std::uint64_t second);

    /// Slot 12. Identity of the array that the element holds.
    /// @throws NotEnoughIndicesProvidedException when the element holds none
    virtual std::uint64_t getElementArrayID();

    /// Appends a numeric index. No bounds test is made here.
    /// @throws StringIndexMustBeLastException, CantIndexIntoEmptyArrayException,
    /// TooManyIndicesProvidedException,
    ///         in this order of testing; the chain is then unchanged
    void addIndex(std::uint64_t index);

    /// Sets the field name.
    /// @throws CanOnlyUseOneStringIndexException when there is one already
    void addIndex(std::string fieldName);

    /// Dimensions of the array, field name (empty without one), and how many indices were given.
    const std::vector<std::size_t>& dimensions() const noexcept { return dimensions_; }
    const std::string& stringIndex() const noexcept { return stringIndex_; }
    std::uint64_t indexCount() const noexcept { return count_; }
    /// As many as `indexCount` says; valid until the chain grows.
    const std::uint64_t* indices() const noexcept { return indices_.data(); }
    /// That of the array, as it was when the chain was bound to it.
    MemoryLayout memoryLayout() const noexcept { return layout_; }
    /// Whether the position has been computed or was known from the beginning; further indices do not move
    /// it.
    bool isLinearIndexKnown() const noexcept { return linearIndexKnown_; }

protected:
    ReferenceImpl() noexcept;
    /// Copies indices, name and position; the copy starts with empty caches of references.
    ReferenceImpl(const ReferenceImpl& other);
    ReferenceImpl& operator=(const ReferenceImpl&) = delete;

    /// Binds the chain to an array of these dimensions: room for one index for each.
    void bind(std::vector<std::size_t> dimensions, MemoryLayout layout);

    /// Fixes the position; indices are not looked at any more.
    void setKnownIndex(std::uint64_t linearIndex) noexcept;

private:
    void dropCaches() noexcept;

    std::uint64_t count_ = 0;
    std::vector<std::size_t> dimensions_;
    IndexList indices_;
    MemoryLayout layout_ = MemoryLayout::COLUMN_MAJOR;
    std::string stringIndex_;
    std::uint64_t linearIndex_ = 0;
    bool linearIndexKnown_ = false;
    std::shared_ptr<ReferenceImpl> elementReference_;
    ReferenceImpl* copyReference_ = nullptr; // owns one reference
};

/// A chain into an array reached through a handle, or with a known position.
class VEXADATA_API ArrayReferenceImpl : public ReferenceImpl {
public:
    /// A chain without indices into `array`, which is borrowed.
    explicit ArrayReferenceImpl(impl::ArrayImpl* array);
    ArrayReferenceImpl(impl::ArrayImpl* array, std::vector<std::size_t> dimensions, MemoryLayout layout);
    /// The element at a known position, without dimensions or indices: what a field access by name uses.
    ArrayReferenceImpl(impl::ArrayImpl* array, std::uint64_t linearIndex);
    ArrayReferenceImpl(const ArrayReferenceImpl& other);
    ~ArrayReferenceImpl() override;

    impl::ArrayImpl* getArrayImpl() const override;
    /// Makes the storage of the array referred into exclusively owned.
    void prepareForWrite() override;

private:
    impl::ArrayImpl* array_;
};

/// A chain to the element on which an iterator stands. Whether it may write was decided when the iterator was
/// made, so that `prepareForWrite` stays without effect.
class VEXADATA_API IteratorReference : public ReferenceImpl {
public:
    /// To the element at a position; the array is borrowed.
    IteratorReference(impl::ArrayImpl* array, std::uint64_t linearIndex);
    ~IteratorReference() override;

    impl::ArrayImpl* getArrayImpl() const override;

private:
    impl::ArrayImpl* array_;
};

} // namespace vexa::data::detail
