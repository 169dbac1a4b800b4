// The interfaces and records of the exchange of variables with a workspace, and the engine's table of
// callbacks.
#include "Table.hpp"

#include <foundation/vexadata/ICustomWorkspace.hpp>
#include <foundation/vexadata/IVariableInfo.hpp>
#include <foundation/vexadata/InProcessCustomWorkspace.hpp>
#include <foundation/vexadata/VariableInfo.hpp>
#include <vexa/data/detail/VariableInfoImplData.hpp>

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace contract {

using namespace foundation::vexadata;
using namespace foundation::vexadata::detail;
using namespace vexa::data::detail;
using namespace vexa::data::impl;
using Context = vexa::engine::IWorkspaceContext*;
using Exchange = void (*)(Context, ForwardIteratorImpl*, ForwardIteratorImpl*);

template struct Interface<IVariableInfo, 8, 4>;
template struct Operation<2, IVariableInfo::VariableStatus(std::size_t) const, &IVariableInfo::getStatus>;
template struct Operation<3, Array(std::size_t) const, &IVariableInfo::getValue>;
static_assert(std::is_same_v<std::underlying_type_t<IVariableInfo::VariableStatus>, std::uint32_t>);
static_assert(IVariableInfo::NOT_SET == 0 && IVariableInfo::RESERVED == 1 &&
              IVariableInfo::SET_BY_ENGINE == 2);

template struct Derived<VariableInfo, IVariableInfo, 24>;
template struct Interface<VariableInfo, 24, 4>;
template struct Member<8, std::shared_ptr<VariableInfoImplData>, &VariableInfo::record_>;

template struct Derived<DefaultVariableInfoImpl, IVariableInfo, 112>;
template struct Interface<DefaultVariableInfoImpl, 112, 6>;
template struct Operation<4, void(std::size_t, IVariableInfo::VariableStatus),
                          &DefaultVariableInfoImpl::setStatus>;
template struct Operation<5, void(std::size_t, Array), &DefaultVariableInfoImpl::setValue>;
template struct Member<8, std::vector<IVariableInfo::VariableStatus>, &DefaultVariableInfoImpl::statuses_>;
template struct Member<32, std::vector<Array>, &DefaultVariableInfoImpl::values_>;
template struct Member<56, bool, &DefaultVariableInfoImpl::inStep_>;
template struct Member<64, std::vector<std::string>, &DefaultVariableInfoImpl::names_>;
template struct Member<88, std::vector<const char*>, &DefaultVariableInfoImpl::pointers_>;

template struct Interface<VariableInfoImplData, 72, 7>;
template struct Operation<2, const char*(std::size_t) const, &VariableInfoImplData::getName>;
template struct Operation<3, void(std::size_t, IVariableInfo::VariableStatus),
                          &VariableInfoImplData::setStatus>;
template struct Operation<4, void(std::size_t, ArrayImpl*), &VariableInfoImplData::setValue>;
template struct Operation<5, IVariableInfo::VariableStatus(std::size_t) const,
                          &VariableInfoImplData::getStatus>;
template struct Operation<6, ArrayImpl*(std::size_t) const, &VariableInfoImplData::getValue>;
template struct Member<16, std::vector<IVariableInfo::VariableStatus>, &VariableInfoImplData::statuses_>;
template struct Member<40, std::vector<Array>, &VariableInfoImplData::values_>;
template struct Member<64, std::vector<const char*>*, &VariableInfoImplData::names_>;

template struct Interface<ICustomWorkspace, 8, 7>;
template struct Operation<2, Array(const char*) const, &ICustomWorkspace::getVariable>;
template struct Operation<3, VariableInfo(std::vector<const char*>&) const, &ICustomWorkspace::getVariables>;
template struct Operation<4, void(std::vector<const char*>, std::vector<Array>),
                          &ICustomWorkspace::setVariables>;
template struct Operation<5, void(const char*), &ICustomWorkspace::clearVariable>;
template struct Operation<6, std::vector<std::string>() const, &ICustomWorkspace::getVariableNames>;

template struct Derived<InProcessCustomWorkspace, ICustomWorkspace, 64>;
template struct Interface<InProcessCustomWorkspace, 64, 7>;
template struct Member<8, Context, &InProcessCustomWorkspace::context_>;
template struct Member<16, ArrayImpl* (*)(Context, const char*), &InProcessCustomWorkspace::getVariable_>;
template struct Member<24, Exchange, &InProcessCustomWorkspace::getVariables_>;
template struct Member<32, Exchange, &InProcessCustomWorkspace::setVariables_>;
template struct Member<40, void (*)(Context, const char*), &InProcessCustomWorkspace::deleteVariable_>;
template struct Member<48, const char* const* (*)(Context, std::size_t&, void*&),
                       &InProcessCustomWorkspace::listNames_>;
template struct Member<56, void (*)(void*), &InProcessCustomWorkspace::free_>;

} // namespace contract
