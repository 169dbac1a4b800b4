// The interface of enumeration array back-ends, which continues TypedArrayImpl: slots 42 to 44.
#pragma once

#include <foundation/vexadata/Forward.hpp>
#include <vexa/data/impl/TypedArrayImpl.hpp>

namespace vexa::data::impl {

/// An array of members of one enumeration class. Slot 19 of ArrayImpl answers with a member's name, slot 20
/// sets it.
class VEXADATA_API EnumArrayImpl : public TypedArrayImpl<foundation::vexadata::Enumeration> {
public:
    ~EnumArrayImpl() override;

    /// Begin and end (slots 5 and 6): positions 0 and the number of elements.
    detail::IteratorImpl* beginIterator(void* unused, bool writable) override;
    detail::IteratorImpl* endIterator(void* unused, bool writable) override;

    /// Slot 42. The class name, NUL-terminated, valid as long as the array lives. The buffer must hold at
    /// least as many bytes as the array has elements: a reference to the array copies that many.
    virtual const char* getClassName() const = 0;
    virtual void reservedOp42(); ///< slot 43, not called by this library
    /// Slot 44. Name of the member at an element, NUL-terminated, valid until the array is changed.
    virtual const char* getEnumNameAt(std::size_t index) const = 0;

    /// Copy of the name from slot 44.
    /// @throws std::logic_error for a null name
    std::string getEnumName(std::size_t index) const;

protected:
    EnumArrayImpl() noexcept = default;
    EnumArrayImpl(const EnumArrayImpl&) noexcept = default;
};

} // namespace vexa::data::impl
