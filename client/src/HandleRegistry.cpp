// Counts behind a lock.
#include "HandleRegistry.hpp"

#include <vexa/client/Objects.hpp>

#include <algorithm>
#include <iterator>

namespace vexa::client {

/// Never destroyed, since handles may outlive any static object.
HandleRegistry& HandleRegistry::shared() {
    static HandleRegistry& registry = *new HandleRegistry;
    return registry;
}

std::pair<HandleRegistry::Bytes, long> HandleRegistry::keyOf(const foundation::vexadata::ZVMID& engine,
                                                             long id) {
    Bytes bytes{};
    std::copy(std::begin(engine.bytes), std::end(engine.bytes), bytes.begin());
    return {bytes, id};
}

void HandleRegistry::addReference(const foundation::vexadata::ZVMID& engine, long id) {
    const std::lock_guard lock(mutex_);
    ++counts_[keyOf(engine, id)];
}

std::size_t HandleRegistry::count(const foundation::vexadata::ZVMID& engine, long id) const {
    const std::lock_guard lock(mutex_);
    const auto found = counts_.find(keyOf(engine, id));
    return found == counts_.end() ? 0 : found->second;
}

std::size_t countOfReferences(const foundation::vexadata::ZVMID& engine, long id) {
    return HandleRegistry::shared().count(engine, id);
}

} // namespace vexa::client
