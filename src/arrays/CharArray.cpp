// Text of character arrays, through handles and through references.
#include <foundation/vexadata/CharArray.hpp>
#include <foundation/vexadata/detail/Text.hpp>

namespace foundation::vexadata {

namespace {

using Characters = detail::TypedArrayImpl<char16_t>;

std::u16string textOf(const vexa::data::impl::ArrayImpl& array) {
    const std::size_t length = array.getNumberOfElements();
    return detail::copied(static_cast<const Characters&>(array).getTypedDataPtr(), length);
}

const vexa::data::impl::ArrayImpl& held(const std::shared_ptr<detail::ReferenceImpl>& chain) {
    return detail::heldArray<CharArray, NotEnoughIndicesProvidedException>(chain);
}

} // namespace

CharArray::~CharArray() = default;

std::u16string CharArray::toUTF16() const { return textOf(*impl_); }

std::string CharArray::toAscii() const {
    const std::u16string text = toUTF16();
    return detail::narrowed(text.data(), text.size());
}

std::u16string CharArrayExt::toUTF16() const { return textOf(held(chain_)); }

std::string CharArrayExt::toAscii() const {
    const auto& array = static_cast<const Characters&>(held(chain_));
    const char16_t* text = array.getTypedDataPtr();
    std::size_t checked = 0;
    while (checked < array.getNumberOfElements()) { // in every step: back-ends observe the calls
        detail::requireText(text);
        if (detail::firstNonAscii(text + checked, 1) == 0) {
            detail::raise<NonAsciiCharInRequestedAsciiOutputException>();
        }
        ++checked;
    }
    return detail::narrowed(text, checked);
}

std::u16string toUTF16(const Array& array) {
    try {
        return CharArray(array).toUTF16();
    } catch (const InvalidArrayTypeException&) {
        const TypedArray<String> strings = array;
        // Asked of the back-end: `getDimensions` of the handle copies them, which may fail.
        const std::vector<std::size_t>& dimensions = detail::Access::impl(strings)->getDimensions();
        if (dimensions.size() == 2 && dimensions[0] == 1 && dimensions[1] == 1) {
            return strings[0];
        }
        throw; // strings that are no scalar count as the wrong type, deliberately
    }
}

} // namespace foundation::vexadata
