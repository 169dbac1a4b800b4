#include "Primitive.hpp"

#include <array>

namespace vexa::fuzz {

Slot makeComplex(World& world) {
    constexpr std::array makers{
        &Primitive<std::complex<double>>::make,       &Primitive<std::complex<float>>::make,
        &Primitive<std::complex<std::int8_t>>::make,  &Primitive<std::complex<std::uint8_t>>::make,
        &Primitive<std::complex<std::int16_t>>::make, &Primitive<std::complex<std::uint16_t>>::make,
        &Primitive<std::complex<std::int32_t>>::make, &Primitive<std::complex<std::uint32_t>>::make,
        &Primitive<std::complex<std::int64_t>>::make, &Primitive<std::complex<std::uint64_t>>::make,
    };
    return makers[world.input.below(makers.size())](world);
}

} // namespace vexa::fuzz
