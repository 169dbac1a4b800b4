// The workspace of an engine in the same process: each operation is one callback of the engine.
#include <foundation/vexadata/InProcessCustomWorkspace.hpp>
#include <vexa/data/detail/PositionIterator.hpp>

#include <utility>

namespace foundation::vexadata {

using detail::Access;
using vexa::data::detail::ForwardIteratorImpl;
using vexa::data::detail::RefCounted;
using vexa::data::detail::VariableInfoImplData;

IVariableInfo::~IVariableInfo() = default;
ICustomWorkspace::~ICustomWorkspace() = default;

namespace {

using Record = std::shared_ptr<VariableInfoImplData>;

/// An iterator over the record. Unlike others, what it stands at is the record itself, and comes without a
/// reference: engines rely on it.
std::shared_ptr<ForwardIteratorImpl> variablesAt(const Record& record, std::size_t position) {
    const auto element = [record](std::size_t) -> RefCounted* { return record.get(); };
    return Access::createSharedPtr(vexa::data::detail::iteratorAt(element, position));
}

/// Calls an exchange over all variables of the record. The iterators are owned here, also when the engine
/// throws.
void exchange(InProcessCustomWorkspace::ExchangeVariables callback, InProcessCustomWorkspace::Context context,
              const Record& record, std::size_t count) {
    const std::shared_ptr<ForwardIteratorImpl> end = variablesAt(record, count);
    callback(context, variablesAt(record, 0).get(), end.get());
}

Record recordOf(std::vector<const char*>& names, std::vector<Array> values) {
    return Access::createSharedPtr(new VariableInfoImplData(names, std::move(values)));
}

} // namespace

InProcessCustomWorkspace::InProcessCustomWorkspace(Context context, GetVariable get, ExchangeVariables getAll,
                                                   ExchangeVariables setAll, DeleteVariable remove,
                                                   ListNames list, Free free) noexcept
    : context_(context),
      getVariable_(get),
      getVariables_(getAll),
      setVariables_(setAll),
      deleteVariable_(remove),
      listNames_(list),
      free_(free) {}
InProcessCustomWorkspace::~InProcessCustomWorkspace() = default;

Array InProcessCustomWorkspace::getVariable(const char* name) const {
    ArrayImpl* variable = getVariable_(context_, name);
    return variable == nullptr ? Array() : Array(variable);
}

VariableInfo InProcessCustomWorkspace::getVariables(std::vector<const char*>& names) const {
    const Record record = recordOf(names, {});
    exchange(getVariables_, context_, record, names.size());
    return VariableInfo(record);
}

void InProcessCustomWorkspace::setVariables(std::vector<const char*> names, std::vector<Array> values) {
    exchange(setVariables_, context_, recordOf(names, std::move(values)), names.size());
}

void InProcessCustomWorkspace::clearVariable(const char* name) { deleteVariable_(context_, name); }

std::vector<std::string> InProcessCustomWorkspace::getVariableNames() const {
    std::size_t count = 0;
    void* token = nullptr;
    const char* const* texts = listNames_(context_, count, token);
    std::vector<std::string> names(texts, texts + count); // a failure here leaves the token to the engine
    free_(token);
    return names;
}

} // namespace foundation::vexadata
