#include "ArrayWriter.hpp"

#include <foundation/vexadata/ValueObjectArray.hpp>
#include <foundation/vexadata/detail/ByKind.hpp>

#include <type_traits>
#include <utility>

namespace vexa::storage {

WriteFrame::~WriteFrame() = default;

ArrayWriter::ArrayWriter(Output& out, std::string what, std::uint64_t firstShared)
    : out_(out), what_(std::move(what)), nextShared_(firstShared) {}

void ArrayWriter::write(const fv::Array& array) {
    begin(*Access::impl(array), ownersOf(array));
    while (!frames_.empty()) {
        if (!frames_.back()->next(*this)) {
            frames_.pop_back();
        }
    }
}

void ArrayWriter::refuse(const std::string& reason) const {
    throw Error(out_.name(), Error::nowhere, what_ + " " + reason);
}

bool ArrayWriter::refer(const void* address) {
    const auto [known, isNew] = numbers_.try_emplace(address, nextShared_);
    if (isNew) {
        putTag(out_, tag::shareable);
        ++nextShared_;
    } else {
        putTag(out_, tag::reference);
        putUnsigned(out_, known->second);
    }
    return !isNew;
}

namespace {

/// Writes an array that holds no others; gives the frame of one that does.
std::unique_ptr<WriteFrame> put(ArrayWriter& writer, const ArrayImpl& array) {
    return fv::detail::withKind(array.getType(), [&](auto tag) -> std::unique_ptr<WriteFrame> {
        using Tag = decltype(tag);
        if constexpr (std::is_same_v<Tag, fv::detail::ElementTag<bool>>) {
            putLogical(writer.out(), array);
        } else if constexpr (std::is_same_v<Tag, fv::detail::ElementTag<char16_t>>) {
            putChars(writer.out(), array);
        } else if constexpr (tag.isPrimitive) {
            putNumbers<typename Tag::type>(writer.out(), array);
        } else if constexpr (tag.isSparse) {
            putSparse<typename Tag::type>(writer.out(), array);
        } else if constexpr (std::is_same_v<Tag, fv::detail::ElementTag<fv::String>>) {
            putStrings(writer.out(), array);
        } else if constexpr (std::is_same_v<Tag, fv::detail::ElementTag<fv::Enumeration>>) {
            putEnum(writer.out(), array);
        } else if constexpr (std::is_same_v<Tag, fv::detail::ElementTag<fv::Array>>) {
            return beginCells(writer, array);
        } else if constexpr (std::is_same_v<Tag, fv::detail::ElementTag<fv::StructElement>>) {
            return beginStructs(writer, array);
        } else if constexpr (std::is_same_v<Tag, fv::detail::ElementTag<fv::ValueObject>>) {
            return beginObjects(writer, array);
        } else if constexpr (std::is_same_v<Tag, fv::detail::ElementTag<fv::HandleObjectRef>>) {
            writer.refuse("has handle objects, which live in an engine and in no file");
        } else {
            writer.refuse("has an array of a kind that files do not know");
        }
        return nullptr;
    });
}

} // namespace

void ArrayWriter::begin(const ArrayImpl& array, std::uint64_t owners) {
    if (array.getType() == ArrayType::UNKNOWN) {
        putNull(out_);
        return;
    }
    if (owners > 1) {
        if (refer(&array)) {
            return;
        }
        keptArrays_.push_back(KeptArray::share(array));
    }
    if (std::unique_ptr<WriteFrame> frame = put(*this, array)) {
        push(std::move(frame));
    }
}

void putKind(Output& out, std::size_t entries, ArrayType type, const std::vector<std::size_t>& dimensions) {
    putMap(out, entries);
    putText(out, "kind");
    putText(out, nameOf(type));
    putText(out, "size");
    putDimensions(out, dimensions);
}

} // namespace vexa::storage
