// The record behind a bulk exchange of variables with a workspace. Binary contract: members in this order,
// and the slot of each virtual operation; the destructor has slots 0 and 1.
#pragma once

#include <foundation/vexadata/Array.hpp>
#include <foundation/vexadata/IVariableInfo.hpp>
#include <vexa/data/detail/RefCounted.hpp>

#include <cstddef>
#include <vector>

namespace vexa::data::detail {

/// Names, a status and a value for each variable. No operation checks its index. Not synchronised.
class VEXADATA_API VariableInfoImplData : public RefCounted {
public:
    /// Whether the engine has set a variable.
    using VariableStatus = foundation::vexadata::IVariableInfo::VariableStatus;

    /// For these names, which must outlive the record. Every status is NOT_SET; values that are not given are
    /// empty.
    explicit VariableInfoImplData(std::vector<const char*>& names,
                                  std::vector<foundation::vexadata::Array> values = {});
    ~VariableInfoImplData() override;

    /// Slot 2. Name of variable `index`; lives as long as the caller's list of names.
    virtual const char* getName(std::size_t index) const;
    /// Slot 3.
    virtual void setStatus(std::size_t index, VariableStatus status);
    /// Slot 4. Adopts one reference to `value` and sets the status to SET_BY_ENGINE. Null stands for an
    /// empty array.
    virtual void setValue(std::size_t index, impl::ArrayImpl* value);
    /// Slot 5.
    virtual VariableStatus getStatus(std::size_t index) const;
    /// Slot 6. The value's array with one reference added for the caller; never null.
    virtual impl::ArrayImpl* getValue(std::size_t index) const;

private:
    std::vector<VariableStatus> statuses_;
    std::vector<foundation::vexadata::Array> values_;
    std::vector<const char*>* names_ = nullptr; // the caller's, never copied
};

} // namespace vexa::data::detail
