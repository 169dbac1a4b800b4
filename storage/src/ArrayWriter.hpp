// Arrays of any kind as CBOR. What holds other arrays is walked with a list of its own, so that nesting is as
// deep as memory allows.
#pragma once

#include "Encode.hpp"

#include <foundation/vexadata/Array.hpp>
#include <foundation/vexadata/ClassInfo.hpp>
#include <foundation/vexadata/Object.hpp>
#include <vexa/data/detail/CountedPtr.hpp>
#include <vexa/data/impl/ArrayImpl.hpp>

#include <cstdint>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

namespace vexa::storage {

using data::impl::ArrayImpl;
using fv::detail::Access;
using KeptArray = data::detail::CountedPtr<const ArrayImpl>;

class ArrayWriter;

/// An array that holds others, or an object, part of which is written.
class WriteFrame {
public:
    virtual ~WriteFrame();
    /// Writes the next part, which may put a frame on top of this one; false when there is none.
    virtual bool next(ArrayWriter& writer) = 0;
};

class ArrayWriter {
public:
    /// `what` is what errors call the array; shared values are numbered from `firstShared`.
    ArrayWriter(Output& out, std::string what, std::uint64_t firstShared = 0);

    /// @throws Error for handle objects
    void write(const fv::Array& array);
    /// The number of the next shared value.
    std::uint64_t nextShared() const noexcept { return nextShared_; }

    // For frames.

    /// Writes an array, or a reference to it when it was written before, which can only be when it has several
    /// owners; or begins one that holds others.
    void begin(const ArrayImpl& array, std::uint64_t owners);
    void push(std::unique_ptr<WriteFrame> frame) { frames_.push_back(std::move(frame)); }
    /// Writes the mark of a shared value that will be known by the address, or a reference to it: then true.
    bool refer(const void* address);
    /// Writes a class, and gives the identifiers of its properties.
    const std::vector<fv::VexaPropertyIdentifier>& putClass(const fv::ClassInfo& info) {
        return knownClass(info, 0).properties;
    }
    /// Keeps an object whose address is known from being freed.
    void keep(const fv::Object& object) { keptObjects_.push_back(object); }
    [[noreturn]] void refuse(const std::string& reason) const;
    Output& out() noexcept { return out_; }

private:
    struct KnownClass {
        fv::ClassInfo info; // keeps the address from being used again
        std::vector<fv::VexaPropertyIdentifier> properties;
        std::size_t ways; // up to superclasses, as many as there are, and one
    };
    const KnownClass& knownClass(const fv::ClassInfo& info, int depth);

    Output& out_;
    std::string what_;
    std::uint64_t nextShared_;
    std::unordered_map<const void*, std::uint64_t> numbers_;
    std::unordered_map<const void*, KnownClass> classes_;
    std::vector<KeptArray> keptArrays_;
    std::vector<fv::Object> keptObjects_;
    std::vector<std::unique_ptr<WriteFrame>> frames_;
};

/// How many handles and holders an array has that a handle, which is not a copy made for asking, leads to.
inline std::uint64_t ownersOf(const fv::Array& array) noexcept {
    const auto& impl = Access::impl(array);
    return static_cast<std::uint64_t>(impl.use_count()) + impl->referenceCount() - 1;
}

/// Another handle to an array.
template <class Handle>
Handle handleOf(const ArrayImpl& array) {
    array.retain();
    return Handle(const_cast<ArrayImpl*>(&array)); // nothing is written through it
}

/// The head of a map for a kind of array that no tag describes, and its first two entries.
void putKind(Output& out, std::size_t entries, ArrayType type, const std::vector<std::size_t>& dimensions);

// One function for each kind that holds no arrays.
template <class T>
void putNumbers(Output& out, const ArrayImpl& array);
void putLogical(Output& out, const ArrayImpl& array);
void putChars(Output& out, const ArrayImpl& array);
void putStrings(Output& out, const ArrayImpl& array);
void putEnum(Output& out, const ArrayImpl& array);
template <class T>
void putSparse(Output& out, const ArrayImpl& array);

// One frame for each kind that does. They write the beginning.
std::unique_ptr<WriteFrame> beginCells(ArrayWriter& writer, const ArrayImpl& array);
std::unique_ptr<WriteFrame> beginStructs(ArrayWriter& writer, const ArrayImpl& array);
std::unique_ptr<WriteFrame> beginObjects(ArrayWriter& writer, const ArrayImpl& array);

} // namespace vexa::storage
