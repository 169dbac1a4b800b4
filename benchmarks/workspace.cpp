// Variables of a workspace beside a hash table of shared pointers. Ratios of one run count.
#include "Contest.hpp"

#include <foundation/vexadata/VexaData.hpp>
#include <vexa/client/Workspace.hpp>

#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

using namespace foundation::vexadata;
using bench::Task;

namespace {

/// The same values by the same names, in a workspace and in a table.
struct Variables {
    std::vector<std::string> names;
    std::vector<const char*> texts;
    std::vector<Array> values;
    std::unordered_map<std::string, std::shared_ptr<double>> table;
    vexa::client::WorkspaceEngine engine;

    explicit Variables(std::size_t count) {
        ArrayFactory factory;
        for (std::size_t k = 0; k < count; ++k) {
            names.push_back("variable_" + std::to_string(k * 7919 % count));
            table[names.back()] = std::make_shared<double>(1.0);
            values.push_back(factory.createScalar(1.0));
        }
        for (const std::string& name : names) {
            texts.push_back(name.c_str());
        }
        engine.workspace().setVariables(texts, values);
    }
};

bool getTask(std::size_t count, double mostRatio) {
    const auto variables = std::make_shared<Variables>(count);
    const auto fromTable = [variables] {
        std::vector<std::shared_ptr<double>> found;
        found.reserve(variables->names.size());
        for (const std::string& name : variables->names) {
            found.push_back(variables->table.find(name)->second);
        }
        return static_cast<double>(found.size());
    };
    const auto fromWorkspace = [variables] {
        auto workspace = variables->engine.workspace();
        const VariableInfo found = workspace.getVariables(variables->texts);
        double total = 0;
        for (std::size_t k = 0; k < variables->texts.size(); ++k) {
            total += found.getStatus(k) == IVariableInfo::SET_BY_ENGINE;
        }
        return total;
    };
    return report(Task{"get " + std::to_string(count) + " variables (raw: unordered_map)",
                       static_cast<double>(count),
                       mostRatio,
                       {{"raw", fromTable}, {"vexadata", fromWorkspace}}});
}

bool setTask(std::size_t count) {
    const auto variables = std::make_shared<Variables>(count);
    const auto intoTable = [variables] {
        for (const std::string& name : variables->names) {
            std::shared_ptr<double>& value = variables->table[name];
            value = std::shared_ptr<double>(value);
        }
        return 0.0;
    };
    const auto intoWorkspace = [variables] {
        variables->engine.workspace().setVariables(variables->texts, variables->values);
        return 0.0;
    };
    return report(Task{"set " + std::to_string(count) + " variables (raw: unordered_map)",
                       static_cast<double>(count),
                       10,
                       {{"raw", intoTable}, {"vexadata", intoWorkspace}}});
}

} // namespace

int main() {
    bench::printSetting();
    bench::printHeading();
    bool agree = true;
    for (const std::size_t count : {100U, 1'000U, 10'000U, 100'000U}) {
        agree = getTask(count, 3) && agree;
    }
    agree = setTask(10'000) && agree;
    return agree ? 0 : 1;
}
