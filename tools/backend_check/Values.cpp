#include "Values.hpp"

namespace vexa::check {

std::string_view nameOf(Pattern pattern) {
    static constexpr std::array<std::string_view, numberOfPatterns> names{"", "extreme values",
                                                                          "values alike"};
    return names[pattern];
}

namespace {

/// Not in alphabetical order, some short enough to be kept in place by strings, some not.
std::u16string unsortedText(std::size_t n) {
    std::u16string text;
    for (std::size_t k = 0; k < n * 7 % 61 + 1; ++k)
        text.push_back(static_cast<char16_t>(u'a' + (n * 5 + k) % 26));
    return text;
}

} // namespace

vexa::data::optional<std::u16string> textAt(std::size_t pattern, std::size_t n) {
    using namespace std::string_literals;
    if (pattern == counting) return unsortedText(n);
    if (pattern == alike)
        return u"prefix "s.append(n / 4 % 3 * 40, u'-') + static_cast<char16_t>(u'x' + 256 * (n % 200));
    switch (n % 9) {
    case 0:
        return u""s;
    case 1:
        return {};
    case 2:
        return u"a\0b"s;
    case 3:
        return u"\u00e9\xd83d\xde00"s;
    case 4:
        return std::u16string(300 + n, u'z');
    case 5:
        return u"\0"s;
    case 6:
        return u"sixsix"s;
    case 7:
        return u"sevenne"s;
    default:
        return u"ab"s;
    }
}

} // namespace vexa::check
