// Status and value of variables that were exchanged in bulk.
#pragma once

#include <foundation/vexadata/Array.hpp>
#include <foundation/vexadata/IVariableInfo.hpp>
#include <vexa/data/detail/VariableInfoImplData.hpp>

#include <cstddef>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace foundation::vexadata {

/// What a workspace said about a list of variables. Copies share it. No index is tested.
class VEXADATA_API VariableInfo : public IVariableInfo {
public:
    /// Shares a record.
    explicit VariableInfo(std::shared_ptr<vexa::data::detail::VariableInfoImplData> record) noexcept;
    VariableInfo(const VariableInfo&) noexcept;
    VariableInfo& operator=(const VariableInfo&) noexcept;
    ~VariableInfo() override;

    VariableStatus getStatus(std::size_t index) const override;
    /// The value, shared with the workspace until one side is written; an empty array for a variable without
    /// one.
    /// @throws std::bad_alloc
    Array getValue(std::size_t index) const override;

private:
    std::shared_ptr<vexa::data::detail::VariableInfoImplData> record_;
};

namespace detail {

/// A list of variables that owns its names, in two forms: as strings, and as pointers to text of theirs or of
/// somebody else. Binary contract: the members in this order; slots 4 and 5 follow those of
/// IVariableInfo. No index is tested. Can be moved, which leaves the pointers valid, but not copied, which
/// would not.
class VEXADATA_API DefaultVariableInfoImpl : public IVariableInfo {
public:
    DefaultVariableInfoImpl();
    /// Takes all three over.
    DefaultVariableInfoImpl(std::vector<std::string> names, std::vector<VariableStatus> statuses,
                            std::vector<Array> values);
    /// The texts are borrowed and must outlive the object. Every status is NOT_SET, every value empty.
    explicit DefaultVariableInfoImpl(std::vector<const char*>& names);
    /// Takes the names over, and copies as many values and statuses from `other`, which must have them.
    DefaultVariableInfoImpl(std::vector<std::string> names, IVariableInfo& other);
    DefaultVariableInfoImpl(DefaultVariableInfoImpl&&) noexcept;
    DefaultVariableInfoImpl& operator=(DefaultVariableInfoImpl&&) noexcept;
    ~DefaultVariableInfoImpl() override;

    VariableStatus getStatus(std::size_t index) const override;
    Array getValue(std::size_t index) const override;
    virtual void setStatus(std::size_t index, VariableStatus status); ///< slot 4
    virtual void setValue(std::size_t index, Array value);            ///< slot 5

    const char* getName(std::size_t index) const { return pointers_[index]; }
    std::vector<std::string>& getNames() noexcept { return names_; }
    std::vector<const char*>& getPtrNames() noexcept { return pointers_; }
    std::vector<Array>& getValues() noexcept { return values_; }
    std::vector<VariableStatus>& getStats() noexcept { return statuses_; }

    /// Pointers to the texts of the string names, valid while these are neither changed nor moved.
    std::vector<const char*> str2Ptr() const;
    /// Makes the string names from the pointers, unless they are in step already.
    /// @throws std::logic_error for a null pointer
    void ptr2Str();

private:
    std::vector<VariableStatus> statuses_;
    std::vector<Array> values_;
    bool inStep_ = false; // the string names say what the pointers say
    std::vector<std::string> names_;
    std::vector<const char*> pointers_;
};

} // namespace detail

} // namespace foundation::vexadata
