// A named set of variables that somebody else owns.
#pragma once

#include <foundation/vexadata/Forward.hpp>

#include <string>
#include <vector>

namespace foundation::vexadata {

/// Reads, writes, clears and lists variables. Binary contract: each virtual operation keeps its slot.
/// Names are NUL-terminated and borrowed for the call.
class VEXADATA_API ICustomWorkspace {
public:
    virtual ~ICustomWorkspace();
    virtual Array getVariable(const char* name) const = 0; ///< slot 2
    /// Slot 3. `names` must outlive the result, which refers to it.
    virtual VariableInfo getVariables(std::vector<const char*>& names) const = 0;
    virtual void setVariables(std::vector<const char*> names, std::vector<Array> values) = 0; ///< slot 4
    virtual void clearVariable(const char* name) = 0;                                         ///< slot 5
    virtual std::vector<std::string> getVariableNames() const = 0;                            ///< slot 6

protected:
    ICustomWorkspace() noexcept = default;
    ICustomWorkspace(const ICustomWorkspace&) noexcept = default;
    ICustomWorkspace& operator=(const ICustomWorkspace&) noexcept = default;
};

} // namespace foundation::vexadata
