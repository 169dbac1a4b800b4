// Operations on arrays of every kind, beside plain containers; in the canary with a planted fault.
#include "arrays/World.hpp"

#include <cstddef>
#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
#ifdef VEXADATA_PLANTED_FAULT
    vexa::fuzz::World::isFaultPlanted = true;
#endif
    vexa::fuzz::World(data, size, foundation::vexadata::ArrayFactory()).run();
    return 0;
}
