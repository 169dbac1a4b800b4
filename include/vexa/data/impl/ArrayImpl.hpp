// The interface of every array back-end. Binary contract: each virtual operation keeps its slot, which is its
// place in the table of the class, counted from 0; the destructor has slots 0 and 1, and the kinds of array
// continue behind slot 36. An operation that this library never calls keeps its place.
//
// Element positions are linear, counted from 0 in the order of the memory layout. A "field name" is a string
// index of the chain through which the element was reached, usually empty. Unless stated otherwise an
// operation may throw, and its error reaches the caller of the handle unchanged. Back-ends need no locks:
// const operations must be safe on several threads at once, the others have the object to themselves.
#pragma once

#include <foundation/vexadata/ArrayType.hpp>
#include <foundation/vexadata/Forward.hpp>
#include <vexa/data/detail/RefCounted.hpp>

#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace vexa::data::impl {

using foundation::vexadata::ArrayType;

/// An array. Handles share it; the count it inherits tells how many adoptions and back-end owners there are.
class VEXADATA_API ArrayImpl : public detail::RefCounted {
public:
    ~ArrayImpl() override = default; // inline: `reservedOp1` keeps the one vtable in the library

    /// Slot 2. An independent copy, one reference for the caller. Writing to either never shows in the
    /// other, not even through iterators made before. Asked when a handle that shares its array is about to
    /// be written.
    virtual ArrayImpl* sharedCopy() const = 0;
    virtual void* reservedOp1(); ///< slot 3
    virtual void* reservedOp2(); ///< slot 4
    /// Slot 5. A new iterator at the first element, owned by the caller. `unused` is always null. With
    /// `writable` the storage must be exclusively owned before the iterator is handed out.
    virtual detail::IteratorImpl* beginIterator(void* unused, bool writable) = 0;
    /// Slot 6. The same past the last element.
    virtual detail::IteratorImpl* endIterator(void* unused, bool writable) = 0;
    virtual void reservedOp5();  ///< slot 7
    virtual void* reservedOp6(); ///< slot 8
    virtual void reservedOp7();  ///< slot 9
    virtual void reservedOp8();  ///< slot 10
    /// Slot 11. Must not throw.
    virtual ArrayType getType() const = 0;
    /// Slot 12. COLUMN_MAJOR or ROW_MAJOR for an array that is indexed. Must not throw.
    virtual MemoryLayout getMemoryLayout() const = 0;
    /// Slot 13. A new chain into what element `index` holds, one reference for the caller; null when
    /// elements hold no arrays. A chain made with `forWrite` false must still make that array exclusively
    /// owned when its `prepareForWrite` runs later.
    virtual detail::ReferenceImpl* createElementReference(std::size_t index, const std::string& fieldName,
                                                          bool forWrite) = 0;
    /// Slot 14. Slot 13 for reading. Implemented here for all arrays.
    virtual detail::ReferenceImpl* forwardingOp(std::size_t index, const std::string& fieldName);
    /// Slot 15. At least two. Valid, and at the same address, until the array is released by slot 34 or
    /// destroyed. Must not throw.
    virtual const std::vector<std::size_t>& getDimensions() const = 0;
    /// Slot 16. Product of the dimensions. Must not throw.
    virtual std::size_t getNumberOfElements() const = 0;
    virtual std::size_t reservedOp10() const; ///< slot 17
    /// Slot 18. Stores `array` (borrowed: add a reference to keep it) into an element.
    /// The default throws CantAssignArrayToThisArrayException.
    virtual void assignElementArray(std::size_t index, const std::string& fieldName, ArrayImpl* array);
    /// Slot 19. Text of an element. The default throws TypeMismatchException.
    virtual std::string castToString(std::size_t index, const std::string& fieldName) const;
    /// Slot 20. Sets an element from text. The default throws TypeMismatchException.
    virtual void setString(std::size_t index, const std::string& fieldName, std::string value);
    /// Slot 21. An element write of two machine words, whose meaning the array defines. The default does
    /// nothing.
    virtual void setElementWords(std::size_t index, std::uint64_t first, std::uint64_t second);
    /// Slot 22. A further element write that this library never calls; keeps its place.
    virtual void setElementOpB();
    /// Slot 23. Text of a string element: fills the address of its first UTF-16 unit, not necessarily
    /// terminated, and the number of units; null for a missing element. Valid until the array is changed. The
    /// default leaves both as they are.
    virtual void getStringElement(std::size_t index, const char16_t*& text, std::size_t& length) const;
    /// Slot 24. Column starts of a sparse array, one more than columns; valid until the array is changed.
    /// Slots 24 to 29 throw InvalidArrayTypeException unless overridden.
    virtual const std::size_t* getJc() const;
    /// Slot 25. Row indices of the non-zeros of a sparse array; valid until the array is changed.
    virtual const std::size_t* getIr() const;
    virtual std::size_t getRows() const;                    ///< slot 26
    virtual std::size_t getCols() const;                    ///< slot 27
    virtual std::size_t getNumberOfNonZeroElements() const; ///< slot 28
    /// Slot 29. Row and column, counted from 0, of the k-th stored non-zero.
    virtual std::pair<std::size_t, std::size_t> getIndex(std::size_t k) const;
    /// Slot 30. No elements. Must not throw.
    virtual bool isEmpty() const = 0;
    /// Slot 31. Identity of the underlying data: arrays with equal values count as equal unseen. Must not
    /// throw.
    virtual std::uint64_t getArrayID() const = 0;
    /// Slot 32. Makes the storage exclusively owned, in this same object, before a write through a
    /// reference.
    virtual void unshare() = 0;
    /// Slot 33. Fills in a copy of the elements in a new buffer and the function that frees it; both belong
    /// to the caller. The default throws InvalidArrayTypeException.
    virtual void copyOutBuffer(void*& data, void (*&deleter)(void*)) const;
    /// Slot 34. Hands the array's own buffer over in the same way. What the array reports afterwards is the
    /// back-end's choice, but for at least two dimensions. The default throws InvalidArrayTypeException.
    virtual void releaseBuffer(void*& data, void (*&deleter)(void*));
    /// Slot 35. First element of contiguous storage, valid until the array is changed or released; null when
    /// there is none, which is the default.
    virtual const void* getUntypedDataPtr() const;
    /// Slot 36. Element-wise equality with an array of equal dimensions and type; object arrays are asked
    /// without a test of these, and test them. Must not throw.
    virtual bool isEqual(const ArrayImpl* other) const = 0;

protected:
    ArrayImpl() noexcept = default;
    ArrayImpl(const ArrayImpl&) noexcept = default;
    ArrayImpl& operator=(const ArrayImpl&) = default;
};

} // namespace vexa::data::impl
