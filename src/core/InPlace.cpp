// Which classes of arrays handles reach into without a call: at most one of each kind in a process, the first
// that is named.
#include <vexa/data/detail/InPlace.hpp>

namespace vexa::data::detail {

namespace {

/// The address that stands for "no class". Not null: the type information of a class built with -fno-rtti is
/// null, and must not be taken for a recognised one.
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
