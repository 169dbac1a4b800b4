#include "EnumArray.hpp"

#include "NameTable.hpp"

#include <foundation/vexadata/Enumeration.hpp>
#include <foundation/vexadata/detail/Access.hpp>
#include <vexa/client/Exception.hpp>
#include <vexa/data/detail/ElementMemory.hpp>

#include <algorithm>
#include <cstring>
#include <limits>
#include <new>
#include <utility>

namespace vexa::client {

using foundation::vexadata::detail::Access;

namespace {

/// The name, its NUL, and zeros up to as many bytes as the array has elements: references to the array copy
/// that many (docs/decisions.md). `calloc` gives the zeros of a large array as pages that take no memory
/// until they are read.
std::shared_ptr<const char> paddedName(const std::string& name, std::size_t elements) {
    const std::size_t bytes = std::max(name.size() + 1, elements);
    std::shared_ptr<char> padded(static_cast<char*>(data::detail::allocateZeros(bytes, 1)),
                                 &data::detail::freeElements);
    std::memcpy(padded.get(), name.data(), name.size());
    return padded;
}

} // namespace

EnumArray::EnumArray(Dimensions dimensions, const std::string& className,
                     const std::vector<std::string>& members)
    : ColumnMajorArray(std::move(dimensions)),
      codes_(allocatable<Code>(getNumberOfElements())),
      members_(Access::createSharedPtr(new Members)),
      learns_(true),
      className_(paddedName(className, codes_.size())) {
    requireClassName(className);
    if (!members.empty() && members.size() != codes_.size()) {
        throw WrongNumberOfNamesException(members.size(), codes_.size());
    }
    std::transform(members.begin(), members.end(), codes_.begin(),
                   [&](const std::string& name) { return codeOf(name); });
    learns_ = members.empty();
}
EnumArray::EnumArray(const EnumArray&) = default;
EnumArray::~EnumArray() = default;

ArrayImpl* EnumArray::sharedCopy() const { return new EnumArray(*this); }
ArrayType EnumArray::getType() const { return ArrayType::ENUM; }
EnumArray::Element* EnumArray::getElementAddress(std::size_t, const std::string&, bool) { return nullptr; }
const EnumArray::Element* EnumArray::getTypedDataPtr() const { return nullptr; }
const char* EnumArray::getClassName() const { return className_.get(); }
const char* EnumArray::getEnumNameAt(std::size_t index) const {
    return members_->names[codes_[index]].c_str();
}

std::string EnumArray::castToString(std::size_t index, const std::string&) const {
    return members_->names[codes_[index]];
}
void EnumArray::setString(std::size_t index, const std::string&, std::string value) {
    codes_[index] = codeOf(value);
}
void EnumArray::setElementValue(std::size_t index, const std::string&, Element value) {
    codes_[index] = codeOf(value.getName());
}

bool EnumArray::isEqual(const ArrayImpl* other) const {
    const auto& right = static_cast<const EnumArrayImpl&>(*other);
    if (std::strcmp(getClassName(), right.getClassName()) != 0) {
        return false;
    }
    for (std::size_t k = 0; k < codes_.size(); ++k) {
        if (std::strcmp(getEnumNameAt(k), right.getEnumNameAt(k)) != 0) {
            return false;
        }
    }
    return true;
}

/// The empty name means no member. Names with a NUL are refused: readers of C strings would see another name.
EnumArray::Code EnumArray::codeOf(const std::string& name) {
    if (name.empty()) {
        return 0;
    }
    const auto known = members_->codes.find(name);
    if (known != members_->codes.end()) {
        return known->second;
    }
    if (!learns_ || name.find('\0') != std::string::npos) {
        throw UnknownMemberException(name, getClassName());
    }
    if (members_->names.size() > std::numeric_limits<Code>::max()) {
        throw std::bad_alloc();
    }
    if (!Access::isPrivate(members_)) {
        members_ = Access::createSharedPtr(new Members(*members_));
    }
    const auto code = static_cast<Code>(members_->names.size());
    members_->names.push_back(name);
    try {
        members_->codes.emplace(name, code);
    } catch (...) {
        members_->names.pop_back();
        throw;
    }
    return code;
}

} // namespace vexa::client
