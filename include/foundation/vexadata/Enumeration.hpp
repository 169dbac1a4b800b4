// The element of enumeration arrays.
#pragma once

#include <foundation/vexadata/Export.hpp>

#include <string>
#include <utility>

namespace foundation::vexadata {

/// A member of an enumeration class, told by its name. Names are compared byte for byte.
class Enumeration {
public:
    /// Without a name, as elements are that nobody has set.
    Enumeration() = default;
    /// The member of this name.
    explicit Enumeration(std::string name) noexcept : name_(std::move(name)) {}

    /// Empty without a name.
    const std::string& getName() const noexcept { return name_; }

    /// By the names.
    friend bool operator==(const Enumeration& a, const Enumeration& b) noexcept { return a.name_ == b.name_; }
    friend bool operator!=(const Enumeration& a, const Enumeration& b) noexcept { return !(a == b); }
    friend bool operator==(const Enumeration& a, const std::string& name) noexcept { return a.name_ == name; }
    friend bool operator!=(const Enumeration& a, const std::string& name) noexcept { return !(a == name); }
    friend bool operator==(const std::string& name, const Enumeration& a) noexcept { return a == name; }
    friend bool operator!=(const std::string& name, const Enumeration& a) noexcept { return !(a == name); }

private:
    std::string name_;
};

} // namespace foundation::vexadata
