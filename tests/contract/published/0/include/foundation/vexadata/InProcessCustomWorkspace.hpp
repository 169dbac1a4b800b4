// A workspace of an engine in this process, reached through C callbacks.
#pragma once

#include <foundation/vexadata/ICustomWorkspace.hpp>
#include <foundation/vexadata/VariableInfo.hpp>

#include <cstddef>
#include <string>
#include <vector>

namespace foundation::vexadata {

/// Binary contract: the members in this order. The context and the callbacks belong to the engine, which must
/// outlive the object; nothing is tested and nothing freed. What a callback throws passes through. Calls go
/// straight to the engine, on the caller's thread.
///
/// Iterators handed to a callback are this library's and live for the call: `get` gives the record of the
/// exchange
/// (VariableInfoImplData, borrowed) whatever the position, and the k-th step from the begin means variable k.
class VEXADATA_API InProcessCustomWorkspace : public ICustomWorkspace {
public:
    /// What the callbacks hand over.
    using Context = vexa::engine::IWorkspaceContext*;
    using ArrayImpl = vexa::data::impl::ArrayImpl;
    using Iterator = vexa::data::detail::ForwardIteratorImpl*;

    /// One reference for the caller; null when there is no such variable.
    using GetVariable = ArrayImpl* (*)(Context, const char* name);
    /// Reads or sets all variables between two iterators.
    using ExchangeVariables = void (*)(Context, Iterator begin, Iterator end);
    /// Removes a variable; a name that is not there is for the engine to judge.
    using DeleteVariable = void (*)(Context, const char* name);
    /// `count` names, valid until the token is given to the free callback.
    using ListNames = const char* const* (*)(Context, std::size_t& count, void*& token);
    /// Takes the token that `ListNames` gave.
    using Free = void (*)(void* token);

    /// Over the callbacks of an engine; none may be null.
    InProcessCustomWorkspace(Context context, GetVariable get, ExchangeVariables getAll,
                             ExchangeVariables setAll, DeleteVariable remove, ListNames list,
                             Free free) noexcept;
    ~InProcessCustomWorkspace() override;

    /// The variable, shared with the workspace until one side is written; an empty array when there is none.
    Array getVariable(const char* name) const override;
    VariableInfo getVariables(std::vector<const char*>& names) const override;
    /// A variable without a value in the list gets an empty array.
    void setVariables(std::vector<const char*> names, std::vector<Array> values) override;
    void clearVariable(const char* name) override;
    std::vector<std::string> getVariableNames() const override;

private:
    Context context_;
    GetVariable getVariable_;
    ExchangeVariables getVariables_;
    ExchangeVariables setVariables_;
    DeleteVariable deleteVariable_;
    ListNames listNames_;
    Free free_;
};

} // namespace foundation::vexadata
