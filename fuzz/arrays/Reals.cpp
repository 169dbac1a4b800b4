// Logical and real numeric arrays, and character arrays as text.
#include "Primitive.hpp"

#include <algorithm>
#include <array>

namespace vexa::fuzz {

Slot makeReal(World& world) {
    constexpr std::array makers{
        &Primitive<bool>::make,          &Primitive<double>::make,        &Primitive<float>::make,
        &Primitive<std::int8_t>::make,   &Primitive<std::uint8_t>::make,  &Primitive<std::int16_t>::make,
        &Primitive<std::uint16_t>::make, &Primitive<std::int32_t>::make,  &Primitive<std::uint32_t>::make,
        &Primitive<std::int64_t>::make,  &Primitive<std::uint64_t>::make, &Primitive<double>::make,
    };
    return makers[world.input.below(makers.size())](world);
}

namespace {

class Chars final : public Primitive<char16_t> {
public:
    using Primitive::Primitive;
    std::unique_ptr<Model> clone() const override { return std::make_unique<Chars>(*this); }
    void act(World& world, Array& array) override {
        return world.input.below(3) == 0 ? readText(array) : Primitive::act(world, array);
    }

private:
    void readText(const Array& array) const {
        operation = "characters: read as text";
        const CharArray chars = array;
        const std::u16string text(elements().begin(), elements().end());
        require(chars.toUTF16() == text && toUTF16(array) == text, "another text");
        const bool ascii = std::all_of(text.begin(), text.end(), [](char16_t unit) { return unit < 128; });
        const Outcome wanted = ascii ? nullptr : thrown<NonAsciiCharInRequestedAsciiOutputException>;
        requireOutcome(wanted, outcomeOf([&] {
                           require(chars.toAscii() == std::string(text.begin(), text.end()), "narrowed text");
                       }));
    }
};

} // namespace

Slot makeChars(World& world) {
    if (world.input.flip()) {
        const Dims dims = world.input.dims(20);
        const std::vector<char16_t> zeros(elementCount(dims));
        return {world.factory.createCharArray(dims), plain<Chars>(normalized(dims), zeros)};
    }
    const std::u16string text = world.input.text();
    return {world.factory.createCharArray(text),
            plain<Chars>(Dims{1, text.size()}, std::vector<char16_t>(text.begin(), text.end()))};
}

} // namespace vexa::fuzz
