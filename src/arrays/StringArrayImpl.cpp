// What the contract gives every string array.
#include <foundation/vexadata/detail/Text.hpp>
#include <vexa/data/detail/NonPrimitiveIteratorImpl.hpp>
#include <vexa/data/impl/StringArrayImpl.hpp>

namespace vexa::data::impl {

using Iterator = detail::NonPrimitiveIteratorImpl<MatchingDataOrder>;

StringArrayImpl::~StringArrayImpl() = default;

detail::IteratorImpl* StringArrayImpl::beginIterator(void*, bool) { return new Iterator(this, 0); }
detail::IteratorImpl* StringArrayImpl::endIterator(void*, bool) {
    return new Iterator(this, getNumberOfElements());
}

std::string StringArrayImpl::castToString(std::size_t index, const std::string&) const {
    const char16_t* text = nullptr;
    std::size_t length = 0;
    getStringElement(index, text, length);
    return foundation::vexadata::detail::narrowed(text, text == nullptr ? 0 : length);
}

void StringArrayImpl::setString(std::size_t index, const std::string& fieldName, std::string value) {
    // Sign extension on purpose: the one widening path without a test for ASCII.
    std::u16string wide(value.size(), u'\0');
    for (std::size_t k = 0; k < value.size(); ++k) {
        wide[k] = static_cast<char16_t>(static_cast<signed char>(value[k]));
    }
    setStringElement(index, fieldName, std::move(wide));
}

} // namespace vexa::data::impl
