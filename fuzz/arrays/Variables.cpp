// Variables of a workspace.
#include "World.hpp"

#include <vexa/client/Exception.hpp>

#include <algorithm>

namespace vexa::fuzz {

namespace {

bool isName(const std::string& name) { return !name.empty() && name.find(' ') == std::string::npos; }
Outcome nameError(const std::string& name) {
    return isName(name) ? nullptr : thrown<client::InvalidVariableNameException>;
}

} // namespace

void Variables::act(World& world) {
    switch (world.input.below(3)) {
    case 0:
        set(world);
        break;
    case 1:
        get(world);
        break;
    default:
        clear(world);
    }
    std::vector<std::string> names;
    for (const auto& [name, model] : models_) {
        names.push_back(name);
        model->check(engine_.workspace().getVariable(name.c_str()));
    }
    require(engine_.workspace().getVariableNames() == names, "names of variables");
}

/// Several at once, or none of them.
void Variables::set(World& world) {
    operation = "workspace: set variables";
    std::vector<std::string> names(1 + world.input.below(3));
    std::generate(names.begin(), names.end(), [&] { return world.input.name(); });
    std::vector<const char*> pointers;
    std::vector<Array> values;
    std::map<std::string, Plain> models = models_;
    for (const std::string& name : names) {
        const Slot value = world.pick();
        pointers.push_back(name.c_str());
        values.push_back(value.array);
        models.insert_or_assign(name, value.model);
    }
    const bool valid = std::all_of(names.begin(), names.end(), isName);
    if (succeeds(valid ? nullptr : thrown<client::InvalidVariableNameException>,
                 [&] { engine_.workspace().setVariables(pointers, values); })) {
        models_ = std::move(models);
    }
}

void Variables::get(World& world) {
    operation = "workspace: get variables";
    const std::string names[] = {world.input.name(), world.input.name()};
    std::vector<const char*> pointers{names[0].c_str(), names[1].c_str()};
    const Outcome wanted = nameError(names[0]) != nullptr ? nameError(names[0]) : nameError(names[1]);
    requireOutcome(wanted, outcomeOf([&] {
                       const VariableInfo info = engine_.workspace().getVariables(pointers);
                       for (std::size_t k = 0; k < pointers.size(); ++k) {
                           const auto found = models_.find(names[k]);
                           const bool set = info.getStatus(k) == IVariableInfo::SET_BY_ENGINE;
                           require(set == (found != models_.end()), "status of a variable");
                           (set ? found->second : emptyModel())->check(info.getValue(k));
                       }
                   }));
}

void Variables::clear(World& world) {
    operation = "workspace: clear a variable";
    const std::string name = world.input.name();
    if (succeeds(nameError(name), [&] { engine_.workspace().clearVariable(name.c_str()); })) {
        models_.erase(name);
    }
}

} // namespace vexa::fuzz
