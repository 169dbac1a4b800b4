// Records of variables that pass between a client and an engine.
#include <foundation/vexadata/VariableInfo.hpp>
#include <foundation/vexadata/detail/Text.hpp>

#include <algorithm>
#include <iterator>

namespace foundation::vexadata {

using vexa::data::detail::VariableInfoImplData;

VariableInfo::VariableInfo(std::shared_ptr<VariableInfoImplData> record) noexcept
    : record_(std::move(record)) {}
VariableInfo::VariableInfo(const VariableInfo&) noexcept = default;
VariableInfo& VariableInfo::operator=(const VariableInfo&) noexcept = default;
VariableInfo::~VariableInfo() = default;
IVariableInfo::VariableStatus VariableInfo::getStatus(std::size_t index) const {
    return record_->getStatus(index);
}
Array VariableInfo::getValue(std::size_t index) const { return Array(record_->getValue(index)); }

namespace detail {

DefaultVariableInfoImpl::DefaultVariableInfoImpl() = default;
DefaultVariableInfoImpl::DefaultVariableInfoImpl(std::vector<std::string> names,
                                                 std::vector<VariableStatus> statuses,
                                                 std::vector<Array> values)
    : statuses_(std::move(statuses)),
      values_(std::move(values)),
      inStep_(true),
      names_(std::move(names)),
      pointers_(str2Ptr()) {}
DefaultVariableInfoImpl::DefaultVariableInfoImpl(std::vector<const char*>& names)
    : statuses_(names.size(), NOT_SET), values_(names.size()), pointers_(names) {}
DefaultVariableInfoImpl::DefaultVariableInfoImpl(std::vector<std::string> names, IVariableInfo& other)
    : statuses_(names.size(), NOT_SET),
      values_(names.size()),
      inStep_(true),
      names_(std::move(names)),
      pointers_(str2Ptr()) {
    for (std::size_t k = 0; k < names_.size(); ++k) {
        DefaultVariableInfoImpl::setValue(k, other.getValue(k));
        DefaultVariableInfoImpl::setStatus(k, other.getStatus(k));
    }
}
DefaultVariableInfoImpl::DefaultVariableInfoImpl(DefaultVariableInfoImpl&&) noexcept = default;
DefaultVariableInfoImpl& DefaultVariableInfoImpl::operator=(DefaultVariableInfoImpl&&) noexcept = default;
DefaultVariableInfoImpl::~DefaultVariableInfoImpl() = default;

IVariableInfo::VariableStatus DefaultVariableInfoImpl::getStatus(std::size_t index) const {
    return statuses_[index];
}
Array DefaultVariableInfoImpl::getValue(std::size_t index) const { return values_[index]; }
void DefaultVariableInfoImpl::setStatus(std::size_t index, VariableStatus status) {
    statuses_[index] = status;
}
void DefaultVariableInfoImpl::setValue(std::size_t index, Array value) { values_[index] = value; }

std::vector<const char*> DefaultVariableInfoImpl::str2Ptr() const {
    std::vector<const char*> pointers;
    pointers.reserve(names_.size());
    std::transform(names_.begin(), names_.end(), std::back_inserter(pointers),
                   [](const std::string& name) { return name.c_str(); });
    return pointers;
}

void DefaultVariableInfoImpl::ptr2Str() {
    if (inStep_) {
        return;
    }
    std::vector<std::string> names;
    names.reserve(pointers_.size());
    for (const char* name : pointers_) {
        names.push_back(copied(name));
    }
    names_ = std::move(names);
    inStep_ = true;
}

} // namespace detail

} // namespace foundation::vexadata

namespace vexa::data::detail {

namespace fv = foundation::vexadata;

VariableInfoImplData::VariableInfoImplData(std::vector<const char*>& names, std::vector<fv::Array> values)
    : statuses_(names.size(), fv::IVariableInfo::NOT_SET), values_(std::move(values)), names_(&names) {
    values_.resize(std::max(names.size(), values_.size()), fv::Array(std::shared_ptr<impl::ArrayImpl>()));
}
VariableInfoImplData::~VariableInfoImplData() = default;

const char* VariableInfoImplData::getName(std::size_t index) const { return (*names_)[index]; }
void VariableInfoImplData::setStatus(std::size_t index, VariableStatus status) { statuses_[index] = status; }
void VariableInfoImplData::setValue(std::size_t index, impl::ArrayImpl* value) {
    values_[index] = fv::Array(value);
    statuses_[index] = fv::IVariableInfo::SET_BY_ENGINE;
}
VariableInfoImplData::VariableStatus VariableInfoImplData::getStatus(std::size_t index) const {
    return statuses_[index];
}
impl::ArrayImpl* VariableInfoImplData::getValue(std::size_t index) const {
    const fv::Array empty;
    const bool isNull = fv::detail::Access::impl(values_[index]) == nullptr;
    impl::ArrayImpl* value = fv::detail::Access::impl(isNull ? empty : values_[index]).get();
    value->retain();
    return value;
}

} // namespace vexa::data::detail
