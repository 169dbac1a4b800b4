// Status and value of variables that are exchanged in bulk with a workspace.
#pragma once

#include <foundation/vexadata/Forward.hpp>

#include <cstddef>
#include <cstdint>

namespace foundation::vexadata {

/// Answers for variables by their position in a list of names. Binary contract: each virtual operation
/// keeps its slot. No operation checks its index.
class VEXADATA_API IVariableInfo {
public:
    /// Unscoped, so that it compares with the numbers that engines use.
    enum VariableStatus : std::uint32_t {
        NOT_SET = 0,      ///< what every variable starts with
        RESERVED = 1,     ///< agreed between engines and their clients
        SET_BY_ENGINE = 2 ///< the engine has given a value
    };

    virtual ~IVariableInfo();
    virtual VariableStatus getStatus(std::size_t index) const = 0; ///< slot 2
    virtual Array getValue(std::size_t index) const = 0;           ///< slot 3

protected:
    IVariableInfo() noexcept = default;
    IVariableInfo(const IVariableInfo&) noexcept = default;
    IVariableInfo& operator=(const IVariableInfo&) noexcept = default;
};

} // namespace foundation::vexadata
