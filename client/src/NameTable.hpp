// From names to their places in a list: a hash table with open addressing over keys that hold short names
// whole.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
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
        int bits = 1;
        while ((std::size_t{1} << bits) < 2 * names_.size()) {
            ++bits;
        }
        shift_ = 64 - bits;
        buckets_.resize(std::size_t{1} << bits);
        for (std::size_t place = 0; place < names_.size(); ++place) {
            const Key key = keyOf(names_[place]);
            std::size_t bucket = firstBucket(key);
            while (buckets_[bucket].place != none) {
                bucket = next(bucket);
            }
            buckets_[bucket] = {key, place};
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
        const Key key = keyOf(name);
        for (std::size_t bucket = firstBucket(key); buckets_[bucket].place != none; bucket = next(bucket)) {
            const Bucket& found = buckets_[bucket];
            if (found.key == key && (key.length <= shortest || names_[found.place] == name) &&
                accepts(found.place)) {
                return found.place;
            }
        }
        return none;
    }
    std::size_t find(const std::string& name) const {
        return find(name, [](std::size_t) { return true; });
    }

private:
    static constexpr std::size_t shortest = 16; // names up to this length are held whole by their keys

    /// The first 16 bytes of a name, filled up with zeros. Of a longer name the first word is mixed with all
    /// that follows.
    struct Key {
        std::uint64_t first = 0;
        std::uint64_t second = 0;
        std::size_t length = 0;

        friend bool operator==(const Key& a, const Key& b) noexcept {
            return ((a.first ^ b.first) | (a.second ^ b.second) | (a.length ^ b.length)) == 0;
        }
    };
    struct Bucket {
        Key key;
        std::size_t place = none;
    };

    static std::uint64_t load(const char* text) noexcept {
        std::uint64_t word = 0;
        std::memcpy(&word, text, sizeof word);
        return word;
    }
    /// Reads 16 bytes whatever the length, since every `std::string` of this ABI has room for them, and masks
    /// what lies behind the name: no branch depends on the length of short names.
    static Key keyOf(const std::string& name) noexcept {
        static constexpr std::array<char, 32> mask{-1, -1, -1, -1, -1, -1, -1, -1,
                                                   -1, -1, -1, -1, -1, -1, -1, -1};
        const char* text = name.data();
        const std::size_t length = name.size();
        const char* const kept = mask.data() + shortest - std::min(length, shortest);
        Key key{load(text) & load(kept), load(text + 8) & load(kept + 8), length};
        if (length > shortest) {
            for (std::size_t k = shortest; k + 8 < length; k += 8) {
                key.first = (key.first ^ (key.first >> 29)) * factor + load(text + k);
            }
            key.first = (key.first ^ (key.first >> 29)) * factor + load(text + length - 8);
        }
        return key;
    }

    std::size_t next(std::size_t bucket) const noexcept { return (bucket + 1) & (buckets_.size() - 1); }
    /// The upper bits of products depend on all bits of the factors.
    std::size_t firstBucket(const Key& key) const noexcept {
        return (key.first * factor + (key.second ^ key.length) * otherFactor) >> shift_;
    }

    static constexpr std::uint64_t factor = 0x9E3779B97F4A7C15;
    static constexpr std::uint64_t otherFactor = 0xC2B2AE3D27D4EB4F;

    std::vector<std::string> names_;
    std::vector<Bucket> buckets_; // by key, open addressing, half empty
    int shift_ = 0;
};

/// A letter followed by letters, digits and underscores.
bool isIdentifier(const std::string& name) noexcept;
/// Letters, digits and underscores, not a digit first.
bool isVariableName(std::string_view name) noexcept;
/// Class names may have any character but NUL: readers of C strings would see another name.
/// @throws InvalidClassNameException
void requireClassName(const std::string& name);

} // namespace vexa::client
