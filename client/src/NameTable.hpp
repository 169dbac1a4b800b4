// From names to their places in a list.
#pragma once

#include <cstddef>
#include <cstring>
#include <functional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace vexa::client {

/// A list of names, each of which may come several times. Never changes.
class NameTable {
public:
    static constexpr std::size_t none = static_cast<std::size_t>(-1);

    explicit NameTable(std::vector<std::string> names) : names_(std::move(names)) {
        std::size_t buckets = 2;
        while (buckets < 2 * names_.size()) {
            buckets *= 2;
        }
        buckets_.assign(buckets, none);
        for (std::size_t position = 0; position < names_.size(); ++position) {
            std::size_t bucket = firstBucket(names_[position]);
            while (buckets_[bucket] != none) {
                bucket = next(bucket);
            }
            buckets_[bucket] = position;
        }
    }

    std::size_t size() const noexcept { return names_.size(); }
    const std::string& operator[](std::size_t position) const noexcept { return names_[position]; }
    friend bool operator==(const NameTable& a, const NameTable& b) noexcept {
        return &a == &b || a.names_ == b.names_;
    }

    /// The first place of `name` that `accepts(place)`, in the order of the list; `none` when there is none.
    template <class Accepts>
    std::size_t find(const std::string& name, Accepts accepts) const {
        for (std::size_t bucket = firstBucket(name); buckets_[bucket] != none; bucket = next(bucket)) {
            const std::size_t place = buckets_[bucket];
            if (isAt(place, name) && accepts(place)) {
                return place;
            }
        }
        return none;
    }
    std::size_t find(const std::string& name) const {
        return find(name, [](std::size_t) { return true; });
    }

private:
    bool isAt(std::size_t place, const std::string& name) const noexcept {
        const std::string& candidate = names_[place];
        return candidate.size() == name.size() &&
               std::memcmp(candidate.data(), name.data(), name.size()) == 0;
    }
    std::size_t next(std::size_t bucket) const noexcept { return (bucket + 1) & (buckets_.size() - 1); }
    std::size_t firstBucket(const std::string& name) const noexcept {
        return std::hash<std::string_view>()(name) & (buckets_.size() - 1);
    }

    std::vector<std::string> names_;
    std::vector<std::size_t> buckets_; // places by hash, open addressing, half empty
};

/// A letter followed by letters, digits and underscores.
bool isIdentifier(const std::string& name) noexcept;
/// Letters, digits and underscores, not a digit first.
bool isVariableName(std::string_view name) noexcept;
/// Class names are anything without a NUL, at which some of those who read them would stop.
/// @throws InvalidClassNameException
void requireClassName(const std::string& name);

} // namespace vexa::client
