// Names behind identifiers.
#include <vexa/data/impl/IdentifierImpl.hpp>

#include <utility>

namespace vexa::data::impl {

VexaClassIdentifierImpl::VexaClassIdentifierImpl(std::string name) noexcept : name_(std::move(name)) {}
VexaClassIdentifierImpl::~VexaClassIdentifierImpl() = default;

VexaIdentifierImpl::VexaIdentifierImpl(std::string name) noexcept : name_(std::move(name)) {}
VexaIdentifierImpl::~VexaIdentifierImpl() = default;

VexaPropertyIdentifierImpl::VexaPropertyIdentifierImpl(std::string propertyName,
                                                       std::string className) noexcept
    : propertyName_(std::move(propertyName)), className_(std::move(className)) {}
VexaPropertyIdentifierImpl::~VexaPropertyIdentifierImpl() = default;

} // namespace vexa::data::impl
