#include "Input.hpp"

#include <array>
#include <functional>
#include <numeric>

namespace vexa::fuzz {

Dims normalized(Dims dims) {
    if (dims.size() == 1) {
        dims.push_back(1);
    }
    return dims;
}

std::size_t elementCount(const Dims& dims) {
    return std::accumulate(dims.begin(), dims.end(), std::size_t{1}, std::multiplies<>());
}

std::size_t Input::below(std::size_t count) {
    std::size_t number = 0;
    for (std::size_t most = count - 1; most != 0 && !isEmpty(); most >>= 8U) {
        number = number << 8U | *--last_;
    }
    return number % count;
}

Dims Input::dims(std::size_t most) {
    if (below(8) == 0) {
        return {below(most + 1)};
    }
    Dims dims(2 + below(8) / 3);
    for (std::size_t& extent : dims) {
        extent = (below(16) + 3) / 4; // 0 is rare
    }
    for (std::size_t k = 0; elementCount(dims) > most; k = (k + 1) % dims.size()) {
        dims[k] = 1;
    }
    return dims;
}

Indices Input::validIndices(const Dims& dims) {
    Indices indices;
    for (const std::size_t extent : dims) {
        indices.push_back(below(extent));
    }
    return indices;
}

Indices Input::indices(const Dims& dims) {
    const std::size_t elements = elementCount(dims);
    const std::size_t choice = below(8);
    if (choice < 5 && elements != 0) {
        Indices indices = validIndices(dims);
        indices.resize(indices.size() + (choice == 4 ? below(3) : 0)); // surplus zeros
        return indices;
    }
    if (choice == 5) {
        return {below(elements + 2)};
    }
    Indices indices(1 + below(dims.size() + 2));
    for (std::size_t& index : indices) {
        index = choice == 6 ? below(5) : value<std::size_t>();
    }
    return indices;
}

std::string Input::narrow() {
    constexpr std::array<std::size_t, 6> lengths{0, 1, 3, 6, 7, 40};
    std::string text(lengths[below(lengths.size())], 'a');
    for (std::size_t k = 0; k < text.size() && k < 3; ++k) {
        text[k] = static_cast<char>('a' + below(3));
    }
    if (!text.empty() && below(16) == 0) {
        text.back() = '\xE9';
    }
    return text;
}

std::u16string Input::text() {
    std::u16string text;
    for (const char unit : narrow()) {
        text += static_cast<unsigned char>(unit);
    }
    if (!text.empty() && below(8) == 0) {
        text.front() = value<char16_t>();
    }
    return text;
}

std::string Input::name() {
    const std::array<const char*, 6> names{"a", "b", "c_1", "nobody", "", "not a name"};
    const std::size_t choice = below(12);
    return names[choice < names.size() ? choice : choice % 3];
}

} // namespace vexa::fuzz
