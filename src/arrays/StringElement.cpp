// String elements as text.
#include <foundation/vexadata/StringElement.hpp>

#include <stdexcept>

namespace foundation::vexadata {

bool detail::equalsText(const BorrowedText& element, std::string_view text) noexcept {
    if (element.length != text.size() || (element.text == nullptr && !text.empty())) {
        return false;
    }
    for (std::size_t k = 0; k < text.size(); ++k) {
        const char16_t unit = element.text[k];
        if (unit > 127 || unit != static_cast<char16_t>(static_cast<signed char>(text[k]))) {
            return false;
        }
    }
    return true;
}

VEXAStringReferenceExt::operator std::u16string() const {
    const detail::BorrowedText found = detail::textAt(position_);
    if (found.text == nullptr) {
        throw std::runtime_error("Missing string value");
    }
    return std::u16string(found.text, found.length);
}

String VEXAStringReferenceExt::value() const { return position_.value<String>(); }

std::string VEXAStringReferenceExt::toAscii() const { return detail::castToString(position_.chain()); }

} // namespace foundation::vexadata
