// The bytes of an input as choices.
#pragma once

#include <algorithm>
#include <complex>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace vexa::fuzz {

using Dims = std::vector<std::size_t>;
using Indices = std::vector<std::size_t>;

/// Dimensions as arrays report them: one entry n means n by 1.
Dims normalized(Dims dims);
std::size_t elementCount(const Dims& dims);

/// Borrows the bytes. Choices are taken from their end and values from their beginning, so that what a fuzzer
/// changes in one place does not change the meaning of all that follows. Without bytes every choice is 0.
class Input {
public:
    Input(const std::uint8_t* data, std::size_t size) : first_(data), last_(data + size) {}

    bool isEmpty() const { return first_ == last_; }
    /// Less than `count`, which is not 0.
    std::size_t below(std::size_t count);
    bool flip() { return below(2) == 1; }

    /// One to four dimensions with at most `most` elements; some arrays have none.
    Dims dims(std::size_t most);
    /// One index for each dimension, all in range; the array has elements.
    Indices validIndices(const Dims& dims);
    /// Mostly right ones; also too few, too many, out of range, a single one into a vector.
    Indices indices(const Dims& dims);

    /// Any value; small ones are more frequent.
    template <class T>
    T value();

    std::string narrow();
    std::u16string text();
    /// A few names, so that they meet again.
    std::string name();

private:
    template <class T>
    T bits() {
        T value{};
        const auto* const end = first_ + std::min<std::ptrdiff_t>(sizeof(T), last_ - first_);
        std::copy(first_, end, reinterpret_cast<std::uint8_t*>(&value));
        first_ = end;
        return value;
    }

    const std::uint8_t* first_;
    const std::uint8_t* last_;
};

template <class T>
struct ComplexPart {
    using type = void;
};
template <class T>
struct ComplexPart<std::complex<T>> {
    using type = T;
};

template <class T>
T Input::value() {
    using Part = typename ComplexPart<T>::type;
    if constexpr (!std::is_void_v<Part>) {
        const Part real = value<Part>();
        return {real, value<Part>()};
    } else if constexpr (std::is_same_v<T, bool>) {
        return flip();
    } else {
        const std::size_t choice = below(12);
        return choice == 0 ? bits<T>() : static_cast<T>(choice - 1);
    }
}

} // namespace vexa::fuzz
