#include <vexa/data/detail/InPlace.hpp>

namespace vexa::data::detail {

namespace {

/// Stands for no class: arrays that were built without type information have none, which must not look recognised.
const char nothing = 0;

bool isOne(std::atomic<const void*>& recognised, const std::type_info& type) noexcept {
    const void* expected = &nothing;
    return recognised.compare_exchange_strong(expected, &type) || expected == &type;
}

} // namespace

std::atomic<const void*> recognisedClasses[3] = {&nothing, &nothing, &nothing};

bool recognise(RecognisedKind kind, const std::type_info& type) noexcept {
    return isOne(recognisedClasses[static_cast<std::size_t>(kind)], type);
}

std::atomic<const void*> recognisedFactory = &nothing;

bool recogniseFactory(const std::type_info& type) noexcept { return isOne(recognisedFactory, type); }

} // namespace vexa::data::detail
