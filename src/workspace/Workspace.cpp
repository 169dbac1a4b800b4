#include <foundation/vexadata/ICustomWorkspace.hpp>
#include <vexa/data/detail/VariableInfoImplData.hpp>

namespace foundation::vexadata {

IVariableInfo::~IVariableInfo() = default;
ICustomWorkspace::~ICustomWorkspace() = default;

} // namespace foundation::vexadata

namespace vexa::data::detail {

VariableInfoImplData::~VariableInfoImplData() = default;

} // namespace vexa::data::detail
