// Enumeration arrays.
#pragma once

#include "ColumnMajorArray.hpp"

#include <vexa/data/impl/EnumArrayImpl.hpp>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

namespace vexa::client {

/// Members as codes in column-major order, and a table of their names, which copies share until one of them
/// adds a name. An array that was created with names has these members and no others; one created without
/// adds every name at its first use. The empty name means no member, which is what new elements hold.
class EnumArray final : public ColumnMajorArray<data::impl::EnumArrayImpl> {
    using Element = foundation::vexadata::Enumeration;

public:
    /// @throws WrongNumberOfNamesException unless there are as many members as elements, or none
    /// @throws UnknownMemberException, InvalidClassNameException for a name with a NUL
    EnumArray(Dimensions dimensions, const std::string& className, const std::vector<std::string>& members);
    ~EnumArray() override;

    ArrayImpl* sharedCopy() const override;
    ArrayType getType() const override;
    std::string castToString(std::size_t index, const std::string& fieldName) const override;
    void setString(std::size_t index, const std::string& fieldName, std::string value) override;
    bool isEqual(const ArrayImpl* other) const override;
    Element* getElementAddress(std::size_t index, const std::string& fieldName, bool forWrite) override;
    void setElementValue(std::size_t index, const std::string& fieldName, Element value) override;
    const Element* getTypedDataPtr() const override;
    const char* getClassName() const override;
    const char* getEnumNameAt(std::size_t index) const override;

private:
    using Code = std::uint32_t;

    struct Members final : data::detail::RefCounted {
        std::vector<std::string> names{1}; // the first, empty, is the name of elements without member
        std::unordered_map<std::string, Code> codes;
    };

    EnumArray(const EnumArray&);

    Code codeOf(const std::string& name);

    std::vector<Code> codes_;
    std::shared_ptr<Members> members_;
    bool learns_;
    std::shared_ptr<const char> className_; // as many bytes as elements at least; shared by copies
};

} // namespace vexa::client
