// Counts the calls of `addReference` for each handle object, as an engine would count its references.
#pragma once

#include <foundation/vexadata/ZVMID.hpp>

#include <array>
#include <cstddef>
#include <map>
#include <mutex>
#include <utility>

namespace vexa::client {

/// One for the process. Safe from any thread.
class HandleRegistry {
public:
    static HandleRegistry& shared();

    void addReference(const foundation::vexadata::ZVMID& engine, long id);
    std::size_t count(const foundation::vexadata::ZVMID& engine, long id) const;

private:
    using Bytes = std::array<unsigned char, sizeof(foundation::vexadata::ZVMID)>;
    static std::pair<Bytes, long> keyOf(const foundation::vexadata::ZVMID& engine, long id);

    mutable std::mutex mutex_;
    std::map<std::pair<Bytes, long>, std::size_t> counts_;
};

} // namespace vexa::client
