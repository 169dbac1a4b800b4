// The embedded engine's workspace: a table of variables behind the callbacks of InProcessCustomWorkspace.
#include "ArrayHolder.hpp"
#include "NameTable.hpp"

#include <foundation/vexadata/Array.hpp>
#include <vexa/client/Exception.hpp>
#include <vexa/client/Workspace.hpp>
#include <vexa/data/detail/ForwardIteratorImpl.hpp>
#include <vexa/data/detail/VariableInfoImplData.hpp>

#include <algorithm>
#include <cstring>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

namespace vexa::client {

namespace fv = foundation::vexadata;
using data::detail::ForwardIteratorImpl;
using data::detail::VariableInfoImplData;
using data::impl::ArrayImpl;
using fv::detail::Access;
using Context = fv::InProcessCustomWorkspace::Context;

/// Hashes a name without making a `std::string` of it. Deliberately not `noexcept`: for such hashes libstdc++
/// stores the hash in each node instead of computing it again for every node of a bucket.
struct NameHash {
    using is_transparent = void;
    std::size_t operator()(std::string_view name) const { return std::hash<std::string_view>()(name); }
};

/// The variables of a workspace, by their names.
class Variables {
public:
    /// Null when there is no such variable.
    ArrayImpl* find(const char* name) const {
        const auto found = values_.find(textOf(name));
        if (found == values_.end()) {
            requireValid(name); // a name that is found was tested when it was stored
            return nullptr;
        }
        return &*found->second;
    }
    void erase(const char* name) {
        requireValid(name);
        values_.erase(std::string(name));
    }
    /// The names in alphabetical order, lent until they are taken back. When the caller fails in between, the
    /// next call reuses the list.
    const std::vector<const char*>& lend() {
        lent_.clear();
        lent_.reserve(values_.size());
        for (const auto& [name, value] : values_) {
            lent_.push_back(name.c_str());
        }
        std::sort(lent_.begin(), lent_.end(),
                  [](const char* a, const char* b) { return std::strcmp(a, b) < 0; });
        return lent_;
    }
    void takeBack() noexcept { lent_ = {}; }

    /// Everything that can fail happens before the first variable changes.
    using Values = std::unordered_map<std::string, Held, NameHash, std::equal_to<>>;
    static void stage(Values& staged, const char* name, Held value) {
        requireValid(name);
        staged.insert_or_assign(name, std::move(value));
    }
    void take(Values staged) {
        values_.reserve(values_.size() + staged.size());
        while (!staged.empty()) {
            auto node = staged.extract(staged.begin());
            const auto found = values_.find(node.key());
            if (found != values_.end()) {
                std::swap(found->second, node.mapped());
            } else {
                values_.insert(std::move(node));
            }
        }
    }

private:
    static std::string_view textOf(const char* name) noexcept { return name == nullptr ? "" : name; }
    static void requireValid(const char* name) {
        if (!isVariableName(textOf(name))) {
            throw InvalidVariableNameException(std::string(textOf(name)));
        }
    }

    Values values_;
    std::vector<const char*> lent_; // point into the keys
};

namespace {

Variables& variablesOf(Context context) { return *reinterpret_cast<Variables*>(context); }

/// Calls `visit(record, k)` for every variable of an exchange.
template <class Visit>
void forEachVariable(const ForwardIteratorImpl* begin, const ForwardIteratorImpl* end, Visit visit) {
    const auto it = Access::createSharedPtr(begin->clone());
    auto& record = static_cast<VariableInfoImplData&>(*it->get()); // borrowed, one for all variables
    for (std::size_t k = 0; !it->equal(end); ++k, it->increment()) {
        visit(record, k);
    }
}

ArrayImpl* getVariable(Context context, const char* name) {
    ArrayImpl* array = variablesOf(context).find(name);
    if (array != nullptr) {
        array->retain();
    }
    return array;
}

void getVariables(Context context, ForwardIteratorImpl* begin, ForwardIteratorImpl* end) {
    const Variables& variables = variablesOf(context);
    // All are looked up before the first is handed over: the cache misses of short steps overlap.
    std::vector<ArrayImpl*> found;
    forEachVariable(begin, end, [&](const VariableInfoImplData& record, std::size_t k) {
        found.push_back(variables.find(record.getName(k)));
        __builtin_prefetch(found.back(), 1);
    });
    auto& record = static_cast<VariableInfoImplData&>(*begin->get());
    for (std::size_t k = 0; k < found.size(); ++k) {
        if (found[k] != nullptr) {
            found[k]->retain();
            record.setValue(k, found[k]);
        } else {
            record.setStatus(k, fv::IVariableInfo::NOT_SET);
        }
    }
}

void setVariables(Context context, ForwardIteratorImpl* begin, ForwardIteratorImpl* end) {
    Variables::Values staged;
    forEachVariable(begin, end, [&](VariableInfoImplData& record, std::size_t k) {
        Variables::stage(staged, record.getName(k), Held(record.getValue(k)));
    });
    variablesOf(context).take(std::move(staged));
}

void deleteVariable(Context context, const char* name) { variablesOf(context).erase(name); }

const char* const* listNames(Context context, std::size_t& count, void*& token) {
    Variables& variables = variablesOf(context);
    const std::vector<const char*>& names = variables.lend();
    count = names.size();
    token = &variables;
    return names.data();
}

void freeNames(void* token) { static_cast<Variables*>(token)->takeBack(); }

} // namespace

WorkspaceEngine::WorkspaceEngine() : variables_(std::make_unique<Variables>()) {}
WorkspaceEngine::~WorkspaceEngine() = default;

fv::InProcessCustomWorkspace WorkspaceEngine::workspace() noexcept {
    return fv::InProcessCustomWorkspace(reinterpret_cast<Context>(variables_.get()), &getVariable,
                                        &getVariables, &setVariables, &deleteVariable, &listNames,
                                        &freeNames);
}

} // namespace vexa::client
