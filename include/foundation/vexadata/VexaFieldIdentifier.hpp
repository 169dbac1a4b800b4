// Names of struct fields.
#pragma once

#include <foundation/vexadata/Forward.hpp>

#include <memory>
#include <string>

namespace foundation::vexadata {

/// The name of a field, kept verbatim. Copies share the name, which never changes.
class VEXADATA_API VexaFieldIdentifier {
public:
    /// @throws std::bad_alloc
    VexaFieldIdentifier(std::string name);
    /// Adopts the one reference that `impl` carries.
    /// @throws std::bad_alloc after dropping the reference
    explicit VexaFieldIdentifier(vexa::data::detail::RefCounted* impl);

    /// Equal names; an identifier that was moved from equals only itself.
    bool operator==(const VexaFieldIdentifier& other) const noexcept;
    bool operator!=(const VexaFieldIdentifier& other) const noexcept { return !(*this == other); }

    /// Empty after a move.
    std::string getString() const;

private:
    std::shared_ptr<vexa::data::impl::VexaIdentifierImpl> impl_;
};

} // namespace foundation::vexadata
