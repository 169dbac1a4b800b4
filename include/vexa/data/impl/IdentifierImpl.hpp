// The objects behind names of classes, fields and properties. Binary contract: members in this order; no
// virtual operation but the destructor.
#pragma once

#include <foundation/vexadata/Forward.hpp>
#include <vexa/data/detail/RefCounted.hpp>

#include <memory>
#include <string>

namespace vexa::data::impl {

/// Name of a class, kept verbatim.
class VEXADATA_API VexaClassIdentifierImpl final : public detail::RefCounted {
public:
    /// Keeps a name.
    explicit VexaClassIdentifierImpl(std::string name) noexcept;
    ~VexaClassIdentifierImpl() override;
    /// As long as the object lives.
    const std::string& name() const noexcept { return name_; }

private:
    std::string name_;
};

/// Name of a field, kept verbatim.
class VEXADATA_API VexaIdentifierImpl final : public detail::RefCounted {
public:
    /// Keeps a name.
    explicit VexaIdentifierImpl(std::string name) noexcept;
    ~VexaIdentifierImpl() override;
    /// As long as the object lives.
    const std::string& name() const noexcept { return name_; }

private:
    std::string name_;
};

/// Name of a property, perhaps with the class that defines it, and a weak link to the class information that
/// it was last resolved against. Setting the link is not synchronised against readers.
class VEXADATA_API VexaPropertyIdentifierImpl final : public detail::RefCounted {
public:
    /// Keeps two names, the second empty when the first is unqualified; no link yet.
    VexaPropertyIdentifierImpl(std::string propertyName, std::string className) noexcept;
    ~VexaPropertyIdentifierImpl() override;

    /// What it holds; texts and link live as long as the object.
    const std::string& propertyName() const noexcept { return propertyName_; }
    const std::string& className() const noexcept { return className_; } ///< empty when unqualified
    const std::weak_ptr<ClassInfoImpl>& classLink() const noexcept { return classLink_; }
    void setClassLink(std::weak_ptr<ClassInfoImpl> link) noexcept { classLink_ = std::move(link); }

private:
    std::string propertyName_;
    std::string className_;
    std::weak_ptr<ClassInfoImpl> classLink_;
};

} // namespace vexa::data::impl
