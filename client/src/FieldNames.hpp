// The list of field names of a struct array.
#pragma once

#include <cstddef>
#include <cstring>
#include <string>
#include <vector>

namespace vexa::client {

/// Names in their order, and a quick way from a name to its place. Never changes.
class FieldNames {
public:
    /// Names begin with a letter and go on with letters, digits and underscores; none comes twice.
    /// @throws InvalidFieldNameException
    explicit FieldNames(std::vector<std::string> names);

    std::size_t size() const noexcept { return names_.size(); }
    const std::string& operator[](std::size_t position) const noexcept { return names_[position]; }
    friend bool operator==(const FieldNames& a, const FieldNames& b) noexcept { return a.names_ == b.names_; }

    /// @throws UnknownFieldException
    std::size_t positionOf(const std::string& name) const {
        std::size_t bucket = hashOf(name) & mask_;
        while (buckets_[bucket] != none) {
            const std::string& candidate = names_[buckets_[bucket]];
            if (candidate.size() == name.size() &&
                std::memcmp(candidate.data(), name.data(), name.size()) == 0) {
                return buckets_[bucket];
            }
            bucket = (bucket + 1) & mask_;
        }
        reportUnknown(name);
    }

private:
    static constexpr std::size_t none = static_cast<std::size_t>(-1);

    /// Of the length and the first and last eight bytes: names of one struct seldom agree in all of these.
    static std::size_t hashOf(const std::string& name) noexcept {
        std::size_t head = 0;
        std::size_t tail = 0;
        const std::size_t length = name.size();
        if (length >= sizeof head) {
            std::memcpy(&head, name.data(), sizeof head);
            std::memcpy(&tail, name.data() + length - sizeof tail, sizeof tail);
        } else {
            for (std::size_t k = 0; k < length; ++k) {
                head = head << 8 | static_cast<unsigned char>(name[k]);
            }
        }
        const std::size_t mixed = (head ^ (tail << 1) ^ length) * 0x9E3779B97F4A7C15U;
        return mixed >> 32;
    }
    [[noreturn]] static void reportUnknown(const std::string& name);

    std::vector<std::string> names_;
    std::vector<std::size_t> buckets_; // positions by hash, open addressing, half empty
    std::size_t mask_ = 0;
};

} // namespace vexa::client
